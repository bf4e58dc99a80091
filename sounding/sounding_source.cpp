#include "sounding/sounding_source.h"

#include <optional>
#include <utility>

#include "core/data_checks.h"
#include "core/files.h"
#include "core/no_such_sounding.h"
#include "ingest/decoder.h"
#include "ingest/native.h"
#include "sounding/sounding_reader.h"
#include "sounding/sounding_walk.h"

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

}  // namespace

Outcome<SoundingSource> SoundingSource::OpenNamed(const Source& named) {
  const std::optional<FileStamp> stamp = StampOf(named.File);
  Outcome<SoundingWalk::Place> place = SoundingWalk(named.File).Take(named.Index);
  if (!place) return place.Error();
  Opened& opened = *place.Value().Source.opened_;
  opened.From = {.File = named.File, .Stamp = stamp};
  opened.Notes = std::move(place.Value().Notes);
  opened.Only = named.Index - place.Value().Before;
  opened.Before = place.Value().Before;
  return std::move(place.Value().Source);
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
    return {.Failed = Fault{kFaultNoSuchSounding, "LoadSounding", "one sounding was named by #"}};
  }
  const int index = opened_->Only.value_or(given);
  ingest::LoadContext& context = opened_->Context;
  context.Ask = policy.Ask;
  context.Stations = policy.Stations;
  context.Index = index;
  context.Notes = std::exchange(opened_->Notes, {});
  context.Garbled = 0;
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
    sounding.Garbled = context.Garbled;
    sounding.Finding = CheckRecord(sounding.Record);
    loading.Sounding = std::move(sounding);
  } else {
    loading.Notes = std::move(context.Notes);
  }
  return loading;
}

}  // namespace vexa
