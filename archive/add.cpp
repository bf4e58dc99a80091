#include "archive/add.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>
#include <vector>

#include "analysis/adiabat_table.h"
#include "core/error_report.h"
#include "core/files.h"
#include "core/letter_case.h"
#include "core/numbers.h"
#include "core/path_forms.h"
#include "core/platform.h"
#include "ingest/decoder.h"
#include "sounding/sounding_source.h"

namespace vexa::archive {
namespace {

namespace fs = std::filesystem;

std::string Reason(const Fault& fault) {
  CurrentSounding nobody;
  std::string text = fault.Detail.empty() ? FaultMessage(nobody, fault) : fault.Detail;
  std::ranges::replace(text, '\n', ' ');
  return text;
}

// A file with the ending of our own soundings is to be one, an empty one too.
bool IsNamedAsSounding(const std::string& file) {
  return Lower(TextFromPath(PathFromText(file).extension())) == ".raw";
}

// The files below a folder in the order of their names, one folder's names in memory at a time.
template <class Use>
bool ForEachFile(const fs::path& folder, const Use& use) {
  std::vector<FolderEntry> entries = EntriesOf(folder);
  std::erase_if(entries, [](const FolderEntry& entry) {
    return TextFromPath(entry.Path.filename()).starts_with('.');
  });
  std::ranges::sort(entries, {}, &FolderEntry::Path);
  for (const FolderEntry& entry : entries) {
    if (entry.Type == fs::file_type::directory) {
      if (!ForEachFile(entry.Path, use)) return false;
    } else if (IsOrdinaryFile(entry.Path)) {
      if (!use(entry.Path)) return false;
    }
  }
  return true;
}

class Adder {
 public:
  Adder(Catalogue& catalogue, const AddRequest& request)
      : catalogue_(catalogue), request_(request), fingerprint_(Fingerprint(request.Settings)) {}

  AddReport Run() {
    for (const std::string& given : request_.Given) {
      const fs::path path = PathFromText(given);
      if (IsFolder(path)) {
        if (!ForEachFile(path, [&](const fs::path& file) { return Add(file, false); })) break;
      } else if (!Add(path, true)) {
        break;
      }
    }
    EndBatch();
    return report_;
  }

 private:
  // False when it is to end.
  bool Add(const fs::path& path, bool wasNamed) {
    const std::string name = TextFromPath(path);
    if (!request_.Share.Holds(name)) return true;
    fs::path whole = NormalPath(WholePath(path));
    std::optional<FileState> now = StateOf(whole, false);
    if (!now) return TellFile(name, "the file cannot be read");
    const std::optional<FileState> before = catalogue_.Find(now->Path);
    const bool isSame = before && before->Settings == fingerprint_;
    if (isSame && before->IsWhole && before->Size == now->Size && before->Written == now->Written) {
      return Unchanged(name, *before);
    }
    now = StateOf(whole, true);
    if (!now) return TellFile(name, "the file cannot be read");
    now->Settings = fingerprint_;
    Outcome<ingest::SourceStream> stream = ingest::SourceStream::Open(whole, request_.Piece);
    BeginBatch();
    if (isSame && before->Stamp == now->Stamp) {
      now->Id = before->Id;
      now->Done = before->Done;
      now->IsWhole = before->IsWhole;
      now->Trouble = before->Trouble;
      catalogue_.Update(*now);
      if (now->IsWhole) return Unchanged(name, *now);
    } else {
      isBegun_ = false;
    }
    file_ = *std::move(now);
    name_ = name;
    if (file_.Id != 0) isBegun_ = true;
    return stream ? AddPieces(stream.Value(), wasNamed) : EndFile(stream.Error(), wasNamed);
  }

  bool Unchanged(const std::string& name, const FileState& file) {
    ++report_.UnchangedFiles;
    return file.Trouble.empty() || TellFile(name, file.Trouble);
  }

  bool TellFile(const std::string& name, const std::string& reason) {
    ++report_.TroubledFiles;
    if (request_.OnTrouble) request_.OnTrouble(name, reason);
    return true;
  }

  // A file is begun with its first sounding, so that what is none leaves nothing behind.
  void BeginFile() {
    if (isBegun_) return;
    file_ = catalogue_.Begin(std::move(file_));
    isBegun_ = true;
  }

  bool AddPieces(ingest::SourceStream& stream, bool wasNamed) {
    skip_ = file_.Done;
    seen_ = 0;
    while (true) {
      Outcome<std::optional<SourceText>> piece = stream.Next();
      for (const std::string& note : stream.TakeNotes()) {
        if (request_.OnNote) request_.OnNote(name_, note);
      }
      if (!piece) return EndFile(piece.Error(), wasNamed);
      if (!piece.Value()) return EndFile(std::nullopt, wasNamed);
      const SourceText& text = *piece.Value();
      std::optional<Fault> strange;
      bool goesOn = true;
      if (text.Members().empty()) {
        goesOn = AddText(text, MemberName(text), strange);
      } else {
        for (const SourceText& member : text.Members()) {
          goesOn = goesOn && AddText(member, member.Name(), strange);
        }
      }
      if (!goesOn) return false;
      if (strange) return EndFile(strange, wasNamed);
    }
  }

  // Of a file with one text the name inside an archive; a gzip stream has none.
  std::string MemberName(const SourceText& text) const {
    const fs::path path = PathFromText(file_.Path);
    const bool isItself =
        text.Name() == TextFromPath(path.filename()) || text.Name() == TextFromPath(path.stem());
    return isItself ? std::string() : text.Name();
  }

  // strange  set where the text is in none of the known formats
  bool AddText(const SourceText& text, const std::string& member, std::optional<Fault>& strange) {
    int count = 1;
    if (skip_ > seen_) {
      count = std::max(1, static_cast<int>(ingest::ListSoundings(text).size()));
      if (seen_ + count <= skip_) {
        seen_ += count;
        return true;
      }
    }
    SoundingSource source{SourceText(text)};
    const int first = seen_;
    for (int i = std::max(0, skip_ - first); i < count; ++i) {
      Loading loading = source.Load(i, {.Stations = request_.Stations});
      count = loading.Count;
      if (loading.Failed && loading.Failed->Number == kFaultFormat && count == 1) {
        strange = *loading.Failed;
        return true;
      }
      BeginFile();
      Keep(std::move(loading), first + i, member);
      file_.Done = first + i + 1;
      if (!CountOne()) return false;
    }
    seen_ = first + count;
    return true;
  }

  void Keep(Loading loading, int index, const std::string& member) {
    std::optional<Fault> fault = std::move(loading.Failed);
    if (!fault) {
      LoadedSounding& loaded = *loading.Sounding;
      loaded.From = {.File = PathFromText(file_.Path), .Index = index};
      const AnalysedSounding sounding(std::move(loaded));
      const analysis::AnalysisResults* results = nullptr;
      fault = Guarded("AddFiles", [&]() -> std::optional<Fault> {
        results = &sounding.Results(request_.Settings, &adiabats_);
        return std::nullopt;
      });
      if (!fault) {
        catalogue_.Enter(file_.Id, {sounding, *results, fingerprint_, member});
        ++report_.Soundings;
        if (sounding.Finding().Number != 0) ++report_.Doubtful;
        return;
      }
    }
    ++report_.Refused;
    const std::string reason = Reason(*fault);
    catalogue_.Refuse(file_.Id, index + 1, reason);
    if (request_.OnTrouble) request_.OnTrouble(name_ + "#" + std::to_string(index + 1), reason);
  }

  // The file is done, with all its soundings or with what could be read.
  bool EndFile(const std::optional<Fault>& fault, bool wasNamed) {
    const bool isOther = fault && fault->Number == kFaultFormat && !isBegun_ && !wasNamed &&
                         !IsNamedAsSounding(file_.Path);
    if (isOther) {
      ++report_.OtherFiles;
      return true;
    }
    if (fault) {
      file_.Trouble = Reason(*fault);
      TellFile(name_, file_.Trouble);
    } else {
      ++report_.Files;
    }
    BeginFile();
    file_.IsWhole = true;
    catalogue_.Update(file_);
    return CountOne();
  }

  void BeginBatch() {
    if (transaction_) return;
    transaction_.emplace(catalogue_.Store());
    catalogue_.NameSettings(fingerprint_, SettingsText(request_.Settings));
    catalogue_.CountChange();
  }

  void EndBatch() {
    if (!transaction_) return;
    transaction_->Commit();
    transaction_.reset();
    inBatch_ = 0;
  }

  bool CountOne() {
    if (++inBatch_ < request_.Batch) return true;
    catalogue_.Update(file_);  // so far
    EndBatch();
    if (request_.GoesOn && !request_.GoesOn(report_.Soundings)) {
      report_.IsStopped = true;
      return false;
    }
    BeginBatch();
    return true;
  }

  Catalogue& catalogue_;
  const AddRequest& request_;
  std::string fingerprint_;
  analysis::AdiabatTable adiabats_{};
  AddReport report_{};
  std::optional<Transaction> transaction_{};
  int inBatch_ = 0;
  FileState file_{};  // that is read
  std::string name_{};
  bool isBegun_ = false;
  int skip_ = 0;  // soundings of it that were entered before
  int seen_ = 0;
};

}  // namespace

Outcome<AddReport> AddFiles(Catalogue& catalogue, const AddRequest& request) {
  AddReport report;
  if (const auto fault = Stored([&] { report = Adder(catalogue, request).Run(); })) return *fault;
  return report;
}

}  // namespace vexa::archive
