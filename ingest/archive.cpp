#include "ingest/archive.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <filesystem>
#include <numeric>
#include <system_error>
#include <utility>

#include "core/files.h"
#include "core/numbers.h"
#include "ingest/source_header.h"
#include "ingest/unpack.h"

namespace vexa::ingest {
namespace {

constexpr int kDeepest = 2;  // packed files in an archive are unpacked, no deeper ones

std::string NameInside(const PackedFile& file, const std::string& archive) {
  const std::size_t folder = file.Name.find_last_of("/\\") + 1;  // 0 where there is none
  const std::string inside = file.Name.substr(folder);
  return inside.empty() ? TextFromPath(PathFromText(archive).stem()) : inside;
}

Fault In(const std::string& name, Fault fault) {
  fault.Detail = name + ": " + fault.Detail;
  fault.File = name;
  return fault;
}

// The lines of a text are remembered each by its place.
std::optional<Fault> TooManyLines(const std::string& name, std::string_view bytes) {
  constexpr std::size_t kMostLines = 8'000'000;  // the longest archive of a station has half
  if (bytes.size() <= kMostLines) return std::nullopt;
  std::size_t lines = 0;
  for (auto at = bytes.find('\n'); at != bytes.npos; at = bytes.find('\n', at + 1)) ++lines;
  if (lines <= kMostLines) return std::nullopt;
  return Fault{kFaultFormat, "ReadSource", name + ": more lines than any sounding", name};
}

// What can be unpacked; the first fault where nothing can, and where the room is used up.
std::optional<Fault> AddTexts(const std::string& name, const std::string& bytes, int depth,
                              UnpackRoom& room, std::vector<SourceText>& texts,
                              std::vector<std::string>& notes) {
  Outcome<std::vector<PackedFile>> files = Unpack(bytes, room);
  if (!files) return In(name, files.Error());
  std::optional<Fault> first;
  const std::size_t before = texts.size();
  for (PackedFile& file : files.Value()) {
    const std::string inside = NameInside(file, name);
    std::optional<Fault> fault;
    if (!file.Trouble.empty()) fault = Fault{kFaultEndOfFile, "Unpack", file.Trouble};
    if (!fault && depth < kDeepest && IsPacked(file.Bytes)) {
      fault = AddTexts(inside, file.Bytes, depth + 1, room, texts, notes);
      if (room.IsUsedUp) return fault;
      file.Bytes = {};
    } else if (!fault && !(fault = TooManyLines(inside, file.Bytes))) {
      texts.emplace_back(inside, std::move(file.Bytes));
      texts.back().SetWrittenOn(file.WrittenOn);
    }
    if (!fault) continue;
    notes.push_back(inside + " was left out: " + fault->Detail + '.');
    if (!first) first = In(name, *fault);
  }
  return texts.size() == before ? first : std::nullopt;
}

// Bulletins of the same date make one text.
bool ReadsOn(const Decoder* before, const SourceText& text, const Decoder& decoder,
             const SourceText& next) {
  return before == &decoder && decoder.IsInParts &&
         DateInName(text.Name()) == DateInName(next.Name()) && text.WrittenOn() == next.WrittenOn();
}

// With room between the reports.
SourceText Joined(std::vector<SourceText> parts) {
  if (parts.size() == 1) return std::move(parts.front());
  std::string bytes;
  for (const SourceText& part : parts) bytes += (bytes.empty() ? "" : "\r\n") + part.Bytes();
  SourceText whole(parts.front().Name(), std::move(bytes));
  whole.SetWrittenOn(parts.front().WrittenOn());
  return whole;
}

std::optional<std::chrono::sys_days> DayWritten(const std::filesystem::path& path) {
  const std::optional<FileStamp> stamp = StampOf(path);
  if (!stamp) return std::nullopt;
  // The file system's clock has an epoch of its own; both are read at the same moment.
  const auto age = std::filesystem::file_time_type::clock::now() - stamp->Written;
  return std::chrono::floor<std::chrono::days>(
      std::chrono::system_clock::now() -
      std::chrono::duration_cast<std::chrono::system_clock::duration>(age));
}

void NoteLeftOut(const std::vector<std::string>& names, std::vector<std::string>& notes) {
  constexpr std::size_t kMostNamed = 3;
  if (names.empty()) return;
  std::string text;
  for (std::size_t i = 0; i < std::min(names.size(), kMostNamed); ++i) {
    text += (i == 0 ? "" : ", ") + names[i];
  }
  if (names.size() > kMostNamed) {
    text += " and " + Shortest(static_cast<int>(names.size() - kMostNamed)) + " more";
  }
  notes.push_back("Of the archive " + text + (names.size() == 1 ? " was" : " were") +
                  " left out: in none of the known formats.");
}

int CountIn(const SourceText& text) {
  return std::max(1, static_cast<int>(ListSoundings(text).size()));
}

// The text that holds the sounding of a number, which becomes the number inside that text. A
// number beyond the end stays beyond the end of the last text.
std::size_t FindMember(const std::vector<int>& held, int& index) {
  std::size_t member = 0;
  while (member + 1 < held.size() && index >= held[member]) index -= held[member++];
  return member;
}

std::vector<int> HeldBy(const SourceText& archive) {
  std::vector<int> held;
  for (const SourceText& text : archive.Members()) held.push_back(CountIn(text));
  return held;
}

}  // namespace

bool ReadsOn(const SourceText& text, const SourceText& next) {
  const Decoder* decoder = FindDecoder(next);
  return decoder != nullptr && ReadsOn(FindDecoder(text), text, *decoder, next);
}

SourceText MakeArchive(const std::string& name, std::vector<SourceText> texts,
                       std::vector<std::string>& notes) {
  std::vector<SourceText> known, parts;
  const auto endText = [&] {
    if (!parts.empty()) known.push_back(Joined(std::exchange(parts, {})));
  };
  std::vector<std::string> leftOut;
  const Decoder* before = nullptr;
  for (SourceText& text : texts) {
    const Decoder* decoder = FindDecoder(text);
    if (decoder == nullptr) {
      leftOut.push_back(text.Name());
      continue;
    }
    if (!parts.empty() && !ReadsOn(before, parts.front(), *decoder, text)) endText();
    parts.push_back(std::move(text));
    before = decoder;
  }
  endText();
  if (known.empty()) return std::move(texts.front());
  NoteLeftOut(leftOut, notes);
  if (known.size() == 1) return std::move(known.front());
  return {name, std::move(known)};
}

Outcome<SourceText> ReadSource(const std::filesystem::path& path, std::vector<std::string>& notes) {
  Outcome<std::string> bytes = ReadFile(path);
  if (!bytes) return bytes.Error();
  Outcome<SourceText> source =
      ReadSource(TextFromPath(path.filename()), std::move(bytes.Value()), notes);
  if (source && !source.Value().WrittenOn()) source.Value().SetWrittenOn(DayWritten(path));
  return source;
}

Outcome<SourceText> ReadSource(const std::string& name, std::string bytes,
                               std::vector<std::string>& notes) {
  if (!IsPacked(bytes)) {
    if (auto fault = TooManyLines(name, bytes)) return *fault;
    return SourceText(name, std::move(bytes));
  }
  std::vector<SourceText> texts;
  UnpackRoom room;
  if (auto fault = AddTexts(name, bytes, 1, room, texts, notes)) return *fault;
  if (texts.empty()) {
    return Fault{kFaultEndOfFile, "ReadSource", name + ": the archive is empty", name};
  }
  return MakeArchive(name, std::move(texts), notes);
}

SoundingPlace PlaceOf(const SourceText& source, int index) {
  if (source.Members().empty()) return {&source, index};
  const std::size_t member = FindMember(HeldBy(source), index);
  return {&source.Members()[member], index};
}

std::vector<SourceEntry> ListArchive(const SourceText& archive) {
  std::vector<SourceEntry> all;
  for (const SourceText& text : archive.Members()) {
    std::vector<SourceEntry> entries = ListSoundings(text);
    if (entries.size() <= 1) entries = {{.Title = text.Name()}};
    std::ranges::move(entries, std::back_inserter(all));
  }
  return all;
}

std::optional<Fault> DecodeFromArchive(const SourceText& archive, LoadContext& context,
                                       SoundingRecord& into) {
  if (context.Held.empty()) context.Held = HeldBy(archive);
  const int whole = context.Index;
  const int count = std::accumulate(context.Held.begin(), context.Held.end(), 0);
  if (const auto index = ChooseSounding(static_cast<std::size_t>(count), archive, context);
      !index) {
    return index.Error();
  }
  const std::size_t member = FindMember(context.Held, context.Index);
  if (member != context.Member) context.Kept.reset();
  context.Member = member;
  std::optional<Fault> fault = DecodeSounding(archive.Members()[member], context, into);
  context.Index = whole;
  context.Count = count;
  return fault;
}

}  // namespace vexa::ingest
