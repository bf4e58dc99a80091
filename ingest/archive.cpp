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

// What can be unpacked; the first fault where nothing can.
std::optional<Fault> AddTexts(const std::string& name, const std::string& bytes, int depth,
                              std::vector<SourceText>& texts, std::vector<std::string>& notes) {
  Outcome<std::vector<PackedFile>> files = Unpack(bytes);
  if (!files) return In(name, files.Error());
  std::optional<Fault> first;
  const std::size_t before = texts.size();
  for (PackedFile& file : files.Value()) {
    const std::string inside = NameInside(file, name);
    std::optional<Fault> fault;
    if (!file.Trouble.empty()) fault = Fault{kFaultEndOfFile, "Unpack", file.Trouble};
    if (!fault && depth < kDeepest && IsPacked(file.Bytes)) {
      fault = AddTexts(inside, file.Bytes, depth + 1, texts, notes);
    } else if (!fault) {
      texts.emplace_back(inside, std::move(file.Bytes));
      texts.back().SetWrittenOn(file.WrittenOn);
    }
    if (!fault) continue;
    notes.push_back(inside + " was left out: " + fault->Detail + '.');
    if (!first) first = In(name, *fault);
  }
  return texts.size() == before ? first : std::nullopt;
}

// Bulletins of the same date make one text, with room between the reports.
bool ReadsOn(const Decoder* before, const SourceText& text, const Decoder& decoder,
             const SourceText& next) {
  return before == &decoder && decoder.IsInParts &&
         DateInName(text.Name()) == DateInName(next.Name()) && text.WrittenOn() == next.WrittenOn();
}

std::optional<std::chrono::sys_days> DayWritten(const std::filesystem::path& path) {
  std::error_code failed;
  const auto written = std::filesystem::last_write_time(path, failed);
  if (failed) return std::nullopt;
  // The file system's clock has an epoch of its own; both are read at the same moment.
  const auto age = std::filesystem::file_time_type::clock::now() - written;
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

SourceText MakeArchive(const std::string& name, std::vector<SourceText> texts,
                       std::vector<std::string>& notes) {
  std::vector<SourceText> known;
  std::vector<std::string> leftOut;
  const Decoder* before = nullptr;
  for (SourceText& text : texts) {
    const Decoder* decoder = FindDecoder(text);
    if (decoder == nullptr) {
      leftOut.push_back(text.Name());
      continue;
    }
    if (!known.empty() && ReadsOn(before, known.back(), *decoder, text)) {
      SourceText both(known.back().Name(), known.back().Bytes() + "\r\n" + text.Bytes());
      both.SetWrittenOn(known.back().WrittenOn());
      known.back() = std::move(both);
    } else {
      known.push_back(std::move(text));
    }
    before = decoder;
  }
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
  if (!IsPacked(bytes)) return SourceText(name, std::move(bytes));
  std::vector<SourceText> texts;
  if (auto fault = AddTexts(name, bytes, 1, texts, notes)) return *fault;
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
