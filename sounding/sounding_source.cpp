#include "sounding/sounding_source.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <system_error>
#include <utility>

#include "core/data_checks.h"
#include "core/files.h"
#include "core/numbers.h"
#include "ingest/decoder.h"
#include "ingest/native.h"
#include "ingest/source_stream.h"

namespace vexa {

struct SoundingSource::Opened {
  SourceText Text;
  Source From{};
  std::vector<std::string> Notes{};
  ingest::LoadContext Context{};  // with what was found out about the text
  std::optional<int> Only{};      // the sounding that was named, from 0
  int Before = 0;                 // soundings of the file ahead of the text
};

namespace {

// Memory may run out while a file is unpacked.
template <class Read>
Outcome<SourceText> Guarding(Read read) {
  std::optional<Outcome<SourceText>> text;
  const std::optional<Fault> fault = Guarded("LoadSounding", [&]() -> std::optional<Fault> {
    text = read();
    return std::nullopt;
  });
  if (fault) return *fault;
  return std::move(*text);
}

// "FILE#3", where there is no file of this very name.
std::optional<Source> NamedSounding(const std::filesystem::path& file) {
  if (IsThere(file)) return std::nullopt;
  const std::string name = TextFromPath(file);
  const std::size_t mark = name.rfind('#');
  if (mark == std::string::npos || mark == 0) return std::nullopt;
  const std::optional<int> number = ParseWhole(std::string_view(name).substr(mark + 1));
  Source source{.File = PathFromText(std::string_view(name).substr(0, mark))};
  if (!number || *number < 1 || !IsThere(source.File)) return std::nullopt;
  source.Index = *number - 1;
  return source;
}

}  // namespace

// Reads on to the text with the sounding, so that a long file takes no more memory than a short
// one.
Outcome<SoundingSource> SoundingSource::OpenNamed(const Source& named) {
  const std::optional<FileStamp> stamp = StampOf(named.File);
  Outcome<ingest::SourceStream> stream = ingest::SourceStream::Open(named.File);
  if (!stream) return stream.Error();
  std::vector<std::string> notes;
  std::string name;
  int before = 0, texts = 0;
  while (true) {
    Outcome<std::optional<SourceText>> text = stream.Value().Next();
    std::ranges::move(stream.Value().TakeNotes(), std::back_inserter(notes));
    if (!text) return text.Error();
    if (!text.Value()) break;
    const int count = std::max(1, static_cast<int>(ingest::ListSoundings(*text.Value()).size()));
    if (named.Index < before + count) {
      SoundingSource source(*std::move(text.Value()));
      source.opened_->From = {.File = named.File, .Stamp = stamp};
      source.opened_->Notes = std::move(notes);
      source.opened_->Only = named.Index - before;
      source.opened_->Before = before;
      return source;
    }
    before += count;
    ++texts;
    name = text.Value()->Name();
  }
  if (texts == 1) {  // loading tells what it holds
    Outcome<SoundingSource> source = Open(named.File);
    if (source) source.Value().opened_->Only = named.Index;
    return source;
  }
  return Fault{kFaultEndOfFile, "LoadSounding",
               name + ": it holds " + Shortest(before) + " soundings, number " +
                   Shortest(named.Index + 1) + " was asked for"};
}

Outcome<SoundingSource> SoundingSource::Open(const std::filesystem::path& file) {
  if (const std::optional<Source> named = NamedSounding(file)) return OpenNamed(*named);
  const std::optional<FileStamp> stamp = StampOf(file);  // of what is read, not of what comes after
  std::vector<std::string> notes;
  Outcome<SourceText> text = Guarding([&] { return ingest::ReadSource(file, notes); });
  if (!text) return text.Error();
  SoundingSource source(std::move(text.Value()));
  source.opened_->From = {.File = file, .Stamp = stamp};
  source.opened_->Notes = std::move(notes);
  return source;
}

Outcome<SoundingSource> SoundingSource::Open(const std::string& name, std::string bytes) {
  std::vector<std::string> notes;
  Outcome<SourceText> text =
      Guarding([&] { return ingest::ReadSource(name, std::move(bytes), notes); });
  if (!text) return text.Error();
  SoundingSource source(std::move(text.Value()));
  source.opened_->Notes = std::move(notes);
  return source;
}

SoundingSource::SoundingSource(SourceText text)
    : opened_(std::make_unique<Opened>(Opened{.Text = std::move(text)})) {}

SoundingSource::SoundingSource(SoundingSource&& other) noexcept = default;
SoundingSource& SoundingSource::operator=(SoundingSource&& other) noexcept = default;
SoundingSource::~SoundingSource() = default;

const SourceText& SoundingSource::Text() const {
  return opened_->Text;
}

void SoundingSource::SetWrittenOn(const std::optional<std::chrono::sys_days>& day) {
  opened_->Text.SetWrittenOn(day);
}

std::vector<ingest::SourceEntry> SoundingSource::List() const {
  std::vector<ingest::SourceEntry> all = ingest::ListSoundings(opened_->Text);
  if (!opened_->Only) return all;
  const auto only = static_cast<std::size_t>(*opened_->Only);
  if (only >= all.size()) return {};
  return {std::move(all[only])};
}

Loading SoundingSource::Load(int given, const LoadPolicy& policy) {
  if (opened_->Only && given != 0) {
    return {.Failed = Fault{kFaultEndOfFile, "LoadSounding", "one sounding was named by #"}};
  }
  const int index = opened_->Only.value_or(given);
  ingest::LoadContext& context = opened_->Context;
  context.Ask = policy.Ask;
  context.Stations = policy.Stations;
  context.Index = index;
  context.Notes = std::exchange(opened_->Notes, {});
  LoadedSounding sounding{.From = opened_->From};
  sounding.From.Index = opened_->Before + index;
  std::optional<Fault> fault = Guarded("LoadSounding", [&] {
    return ingest::DecodeSounding(opened_->Text, context, sounding.Record);
  });
  const bool keeps =
      !fault || (fault->Number != kFaultTooFewLevels && ingest::IsNative(opened_->Text) &&
                 sounding.Record.NumTempLevels() > 1);
  Loading loading{.Failed = std::move(fault), .Count = opened_->Only ? 1 : context.Count};
  if (keeps) {
    sounding.Notes = std::move(context.Notes);
    sounding.Finding = CheckRecord(sounding.Record);
    loading.Sounding = std::move(sounding);
  } else {
    loading.Notes = std::move(context.Notes);
  }
  return loading;
}

}  // namespace vexa
