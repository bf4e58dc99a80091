#include "ingest/source_stream.h"

#include <zlib.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string_view>
#include <utility>

#include "core/files.h"
#include "core/gzip.h"
#include "core/numbers.h"
#include "core/path_forms.h"
#include "core/platform.h"
#include "ingest/archive.h"
#include "ingest/decoder.h"
#include "ingest/unpack.h"
#include "ingest/zip_library.h"

namespace vexa::ingest {
namespace stream {

constexpr std::size_t kLongestSounding = std::size_t{64} << 20;  // bytes
constexpr std::size_t kMostPacked = 16;  // a text is seldom longer than so many times its gzip file
constexpr std::size_t kLongestMember = std::size_t{256} << 20;  // bytes, of what is read whole

inline Fault CannotUnpack(const std::string& name, std::string_view reason) {
  return {kFaultEndOfFile, "SourceStream", name + ": the archive " + std::string(reason), name};
}

// Bytes as they come from a file, a gzip stream or a member of a ZIP file.
class RunningBytes {
 public:
  virtual ~RunningBytes() = default;
  /// Up to so many bytes behind the others; false where they are damaged.
  virtual bool Read(std::string& into, std::size_t count) = 0;
  bool AtEnd() const { return atEnd_; }

 protected:
  template <class Get>
  bool Append(std::string& into, std::size_t count, Get get) {
    const std::size_t before = into.size();
    into.resize(before + count);
    const auto got = get(into.data() + before, count);
    into.resize(before + (got > 0 ? static_cast<std::size_t>(got) : 0));
    atEnd_ = got >= 0 && static_cast<std::size_t>(got) < count;
    return got >= 0;
  }

 private:
  bool atEnd_ = false;
};

inline gzFile OpenGzip(const std::filesystem::path& path) {
#ifdef _WIN32
  return gzopen_w(LongForm(path).c_str(), "rb");
#else
  return gzopen(path.c_str(), "rb");
#endif
}

// Reads plain files as they are, too.
class GzipBytes : public RunningBytes {
 public:
  explicit GzipBytes(const std::filesystem::path& path) : file_(OpenGzip(path)) {}
  ~GzipBytes() override {
    if (file_ != nullptr) gzclose(file_);
  }
  GzipBytes(const GzipBytes&) = delete;
  GzipBytes& operator=(const GzipBytes&) = delete;
  bool IsOpen() const { return file_ != nullptr; }
  bool Read(std::string& into, std::size_t count) override {
    const bool isRead = Append(into, count, [this](char* to, std::size_t bytes) {
      return gzread(file_, to, static_cast<unsigned>(bytes));
    });
    int error = Z_OK;
    gzerror(file_, &error);
    return isRead && (error == Z_OK || error == Z_STREAM_END);  // a cut stream ends in another
  }

 private:
  gzFile file_;
};

struct MemberEnd {
  void operator()(zip_file_t* file) const { zip_fclose(file); }
};
using MemberFile = std::unique_ptr<zip_file_t, MemberEnd>;

class MemberBytes : public RunningBytes {
 public:
  explicit MemberBytes(MemberFile file) : file_(std::move(file)) {}
  bool Read(std::string& into, std::size_t count) override {
    return Append(into, count, [this](char* to, std::size_t bytes) {
      zip_int64_t all = 0;
      while (static_cast<std::size_t>(all) < bytes) {
        const zip_int64_t got =
            zip_fread(file_.get(), to + all, bytes - static_cast<std::size_t>(all));
        if (got < 0) return got;
        if (got == 0) break;
        all += got;
      }
      return all;
    });
  }

 private:
  MemberFile file_;
};

struct ArchiveEnd {
  void operator()(zip_t* archive) const { zip_discard(archive); }
};
using ArchiveFile = std::unique_ptr<zip_t, ArchiveEnd>;

// A long text whose soundings stand by themselves, cut between them.
class Series {
 public:
  Series(std::string name, std::unique_ptr<RunningBytes> bytes, std::string begun,
         std::size_t piece)
      : name_(std::move(name)), bytes_(std::move(bytes)), rest_(std::move(begun)), piece_(piece) {}

  // None behind the last.
  Outcome<std::optional<SourceText>> Next() {
    count_ = 0;
    while (true) {
      while (!bytes_->AtEnd() && rest_.size() < wanted_) {
        if (!bytes_->Read(rest_, piece_)) return CannotUnpack(name_, "is damaged or cut off");
      }
      if (rest_.empty()) return std::optional<SourceText>();
      SourceText window(name_, std::move(rest_), linesBefore_);
      rest_.clear();
      if (bytes_->AtEnd()) return std::optional(std::move(window));
      const std::vector<SourceEntry> entries = ListSoundings(window);
      const int cut = entries.size() < 2 ? 0 : entries.back().FirstLine;
      if (cut > 1) {
        SourceText whole = window.Part(1, cut);
        rest_ = window.Bytes().substr(whole.Bytes().size());
        linesBefore_ += cut - 1;
        wanted_ = piece_;
        count_ = static_cast<int>(entries.size()) - 1;
        return std::optional(std::move(whole));
      }
      rest_ = window.Bytes();
      wanted_ = rest_.size() + piece_;
      if (wanted_ > kLongestSounding) {
        return Fault{kFaultFormat, "SourceStream", name_ + ": longer than any sounding", name_};
      }
    }
  }

  int Count() const { return count_; }
  bool IsAtEnd() const { return bytes_->AtEnd() && rest_.empty(); }

 private:
  std::string name_;
  std::unique_ptr<RunningBytes> bytes_;
  std::string rest_;
  std::size_t piece_;
  std::size_t wanted_ = 0;
  int linesBefore_ = 0;
  int count_ = 0;
};

}  // namespace stream

using namespace stream;

namespace {

// As they stand in the file, packed or not.
std::string FirstBytes(const std::filesystem::path& file) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> stream(OpenFile(file, "rb"), std::fclose);
  std::string bytes(4, '\0');
  bytes.resize(stream ? std::fread(bytes.data(), 1, bytes.size(), stream.get()) : 0);
  return bytes;
}

bool BeginsSeries(const std::string& name, const std::string& bytes) {
  const std::size_t end = bytes.rfind('\n');
  if (end == std::string::npos) return false;
  const Decoder* decoder = FindDecoder(SourceText(name, bytes.substr(0, end + 1)));
  return decoder != nullptr && decoder->IsSeries;
}

}  // namespace

struct SourceStream::State {
  std::filesystem::path File{};
  std::string Name{};
  std::size_t Piece = kPiece;
  std::optional<SourceText> Whole{};
  std::optional<Series> Running{};
  ArchiveFile Zip{};
  zip_uint64_t NextMember = 0;
  zip_uint64_t Members = 0;
  std::vector<SourceText> Group{};  // members that wait to be given
  std::size_t GroupBytes = 0;
  bool HasGiven = false;
  std::vector<std::string> Notes{};

  std::optional<Fault> ReadWhole() {
    Outcome<SourceText> source = ReadSource(File, Notes);
    if (!source) return source.Error();
    Whole = std::move(source.Value());
    return std::nullopt;
  }

  // A plain file or a gzip stream: whole unless it is long and can be cut.
  std::optional<Fault> OpenBytes(std::string name) {
    auto bytes = std::make_unique<GzipBytes>(File);
    std::string begun;
    const bool isRead = bytes->IsOpen() && bytes->Read(begun, Piece);
    if (!isRead || bytes->AtEnd() || !BeginsSeries(name, begun)) return ReadWhole();
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (begun.starts_with(kByteOrderMark)) begun.erase(0, kByteOrderMark.size());
    Running.emplace(std::move(name), std::move(bytes), std::move(begun), Piece);
    return std::nullopt;
  }

  std::optional<Fault> OpenArchive() {
    int error = 0;
    const std::u8string name = LongForm(File).u8string();
    if (HasZip()) {
      Zip.reset(zip_open(reinterpret_cast<const char*>(name.c_str()), ZIP_RDONLY, &error));
    }
    if (!Zip) return ReadWhole();  // which says why
    Members =
        static_cast<zip_uint64_t>(std::max<zip_int64_t>(0, zip_get_num_entries(Zip.get(), 0)));
    std::size_t bytes = 0;
    for (zip_uint64_t i = 0; i < Members && bytes <= Piece; ++i) {
      zip_stat_t about;
      if (zip_stat_index(Zip.get(), i, 0, &about) == 0) bytes += about.size;
    }
    if (bytes > Piece) return std::nullopt;
    Zip.reset();
    return ReadWhole();
  }

  void LeaveOut(const std::string& name, std::string_view reason) {
    Notes.push_back(name + " was left out: " + std::string(reason) + '.');
  }

  SourceText TakeGroup(std::vector<SourceText> next = {}) {
    std::vector<SourceText> texts = std::exchange(Group, std::move(next));
    GroupBytes = 0;
    for (const SourceText& text : Group) GroupBytes += text.Bytes().size();
    HasGiven = true;
    return MakeArchive(Name, std::move(texts), Notes);
  }

  // The texts of a member that is no long series: one, or those of an archive in the archive.
  std::vector<SourceText> TextsOf(const std::string& name, std::string bytes,
                                  const std::optional<std::chrono::sys_days>& day) {
    Outcome<SourceText> source = ReadSource(name, std::move(bytes), Notes);
    if (!source) {
      LeaveOut(name, source.Error().Detail);
      return {};
    }
    SourceText& text = source.Value();
    if (!text.WrittenOn()) text.SetWrittenOn(day);
    std::vector<SourceText> texts = text.Members();
    if (texts.empty()) texts.push_back(std::move(text));
    std::erase_if(texts, [this](const SourceText& one) {
      const bool isStrange = FindDecoder(one) == nullptr;
      if (isStrange) LeaveOut(one.Name(), "in none of the known formats");
      return isStrange;
    });
    return texts;
  }

  // Opens a member; its texts where it has to be read whole.
  std::vector<SourceText> OpenMember(zip_uint64_t index) {
    zip_stat_t about;
    if (zip_stat_index(Zip.get(), index, 0, &about) != 0) return {};
    const std::string path = (about.valid & ZIP_STAT_NAME) != 0 ? about.name : "";
    const std::string name = path.substr(path.find_last_of("/\\") + 1);
    if (name.empty()) return {};  // a folder
    MemberFile file(zip_fopen_index(Zip.get(), index, 0));
    if (!file) {
      LeaveOut(name, "it cannot be unpacked");
      return {};
    }
    auto bytes = std::make_unique<MemberBytes>(std::move(file));
    // A small member takes no more room than it has: thousands of them may wait in a group.
    const bool isSized = (about.valid & ZIP_STAT_SIZE) != 0 && about.size < Piece;
    std::string begun;
    bool isRead = bytes->Read(begun, isSized ? static_cast<std::size_t>(about.size) + 1 : Piece);
    if (isRead && !bytes->AtEnd() && BeginsSeries(name, begun)) {
      Running.emplace(name, std::move(bytes), std::move(begun), Piece);
      return {};
    }
    while (isRead && !bytes->AtEnd() && begun.size() < kLongestMember) {
      isRead = bytes->Read(begun, Piece);
    }
    if (!isRead || !bytes->AtEnd()) {
      LeaveOut(name, isRead ? "larger than any sounding" : "it is damaged or cut off");
      return {};
    }
    // The archive states the packer's date, which the library takes for one of here.
    std::optional<std::chrono::sys_days> day;
    if ((about.valid & ZIP_STAT_MTIME) != 0) day = LocalDay(about.mtime);
    begun.shrink_to_fit();
    return TextsOf(name, std::move(begun), day);
  }

  Outcome<std::optional<SourceText>> NextOfArchive() {
    while (true) {
      if (Running && Group.empty()) {
        Outcome<std::optional<SourceText>> piece = Running->Next();
        if (piece && piece.Value()) {
          HasGiven = true;
          return piece;
        }
        if (!piece) LeaveOut("the rest of it", piece.Error().Detail);
        Running.reset();
      }
      if (Running || (NextMember == Members && !Group.empty())) return std::optional(TakeGroup());
      if (NextMember == Members) break;
      std::vector<SourceText> texts = OpenMember(NextMember++);
      if (texts.empty()) continue;
      const bool isFull = GroupBytes > Piece && !ReadsOn(Group.back(), texts.front());
      if (isFull) return std::optional(TakeGroup(std::move(texts)));
      for (SourceText& text : texts) {
        GroupBytes += text.Bytes().size();
        Group.push_back(std::move(text));
      }
    }
    if (HasGiven) return std::optional<SourceText>();
    return Fault{kFaultFormat, "SourceStream", Name + ": nothing in the archive is a sounding",
                 Name};
  }
};

SourceStream::SourceStream(std::unique_ptr<State> state) : state_(std::move(state)) {}
SourceStream::SourceStream(SourceStream&& other) noexcept = default;
SourceStream& SourceStream::operator=(SourceStream&& other) noexcept = default;
SourceStream::~SourceStream() = default;

Outcome<SourceStream> SourceStream::Open(const std::filesystem::path& file, std::size_t piece) {
  auto state = std::make_unique<State>();
  state->File = file;
  state->Name = TextFromPath(file.filename());
  state->Piece = piece;
  const std::string opening = FirstBytes(file);
  const std::optional<FileStamp> stamp = StampOf(file);
  const bool isGzip = opening.starts_with(kGzipMark);
  std::optional<Fault> fault;
  if (stamp && !isGzip && IsPacked(opening)) {
    fault = state->OpenArchive();
  } else if (stamp && stamp->Size > (isGzip ? piece / kMostPacked : piece)) {
    fault = state->OpenBytes(TextFromPath(isGzip ? file.stem() : file.filename()));
  } else {
    fault = state->ReadWhole();
  }
  if (fault) return *fault;
  return SourceStream(std::move(state));
}

Outcome<std::optional<SourceText>> SourceStream::Next() {
  State& state = *state_;
  std::optional<Outcome<std::optional<SourceText>>> next;
  const std::optional<Fault> fault = Guarded("SourceStream", [&]() -> std::optional<Fault> {
    if (state.Zip) {
      next.emplace(state.NextOfArchive());
    } else if (state.Running) {
      next.emplace(state.Running->Next());
    } else {
      next.emplace(std::exchange(state.Whole, std::nullopt));
    }
    return std::nullopt;
  });
  if (fault) return *fault;
  return std::move(*next);
}

int SourceStream::Count() const {
  return state_->Running ? state_->Running->Count() : 0;
}

bool SourceStream::IsAtEnd() const {
  const State& state = *state_;
  if (state.Running && !state.Running->IsAtEnd()) return false;
  return !state.Zip || (state.NextMember == state.Members && state.Group.empty());
}

std::vector<std::string> SourceStream::TakeNotes() {
  return std::exchange(state_->Notes, {});
}

}  // namespace vexa::ingest
