#include "sounding/sounding_source.h"

#include <optional>
#include <utility>

#include "core/data_checks.h"
#include "ingest/decoder.h"
#include "ingest/native.h"

namespace vexa {

struct SoundingSource::Opened {
  SourceText Text;
  Source From{};
  std::vector<std::string> Notes{};
  ingest::LoadContext Context{};  // with what was found out about the text
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

Outcome<SoundingSource> SoundingSource::Open(const std::filesystem::path& file) {
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
  return ingest::ListSoundings(opened_->Text);
}

Loading SoundingSource::Load(int index, const LoadPolicy& policy) {
  ingest::LoadContext& context = opened_->Context;
  context.Ask = policy.Ask;
  context.Stations = policy.Stations;
  context.Index = index;
  context.Notes = std::exchange(opened_->Notes, {});
  LoadedSounding sounding{.From = opened_->From};
  sounding.From.Index = index;
  std::optional<Fault> fault = Guarded("LoadSounding", [&] {
    return ingest::DecodeSounding(opened_->Text, context, sounding.Record);
  });
  const bool keeps =
      !fault || (fault->Number != kFaultTooFewLevels && ingest::IsNative(opened_->Text) &&
                 sounding.Record.NumTempLevels() > 1);
  Loading loading{.Failed = std::move(fault), .Count = context.Count};
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
