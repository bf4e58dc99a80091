#include "sounding/analysed_sounding.h"

#include <utility>

#include "ingest/decoder.h"
#include "ingest/native.h"

namespace vexa {
namespace {

// Number 53, 75 and their like: the file itself could not be had.
Loading Failure(Fault fault) {
  return {.Sounding = std::nullopt, .Failed = std::move(fault)};
}

}  // namespace

Loading LoadSounding(const SourceText& text, const Source& from, const LoadPolicy& policy,
                     std::vector<std::string> notes) {
  LoadedSounding sounding{.From = from};
  ingest::LoadContext context{.Ask = policy.Ask,
                              .Index = from.Index,
                              .Stations = policy.Stations,
                              .Notes = std::move(notes)};
  std::optional<Fault> fault = Guarded(
      "LoadSounding", [&] { return ingest::DecodeSounding(text, context, sounding.Record); });
  const bool keeps = !fault || (fault->Number != kFaultTooFewLevels && ingest::IsNative(text) &&
                                sounding.Record.NumTempLevels() > 1);
  if (!keeps) return Failure(std::move(*fault));
  ingest::NoteNumber(context);
  sounding.Count = context.Count;
  sounding.Notes = std::move(context.Notes);
  sounding.Finding = CheckRecord(sounding.Record);
  return {.Sounding = std::move(sounding), .Failed = std::move(fault)};
}

Loading LoadSounding(const Source& from, const LoadPolicy& policy) {
  Source stamped = from;
  stamped.Stamp = StampOf(from.File);  // of what is read, not of what comes after
  std::vector<std::string> notes;
  std::optional<Outcome<SourceText>> text;
  const std::optional<Fault> fault = Guarded("LoadSounding", [&]() -> std::optional<Fault> {
    text = ingest::ReadSource(from.File, notes);
    return std::nullopt;
  });
  if (fault) return Failure(*fault);
  if (!*text) return Failure(text->Error());
  return LoadSounding(text->Value(), stamped, policy, std::move(notes));
}

const analysis::AnalysisResults& AnalysedSounding::Results(const Options& set) const {
  if (!results_ || !(*under_ == set)) {
    results_ = std::make_unique<analysis::AnalysisResults>(analysis::Analyse(Record(), set));
    under_ = std::make_unique<Options>(set);
  }
  return *results_;
}

Outcome<SharedSounding> LoadAnalysed(const Source& from, const LoadPolicy& policy) {
  Loading loading = LoadSounding(from, policy);
  if (loading.Failed) return *std::move(loading.Failed);
  return SharedSounding(std::make_shared<const AnalysedSounding>(*std::move(loading.Sounding)));
}

}  // namespace vexa
