#include "sounding/analysed_sounding.h"

#include <utility>

#include "core/numbers.h"
#include "sounding/sounding_source.h"

namespace vexa {

Loading LoadSounding(const Source& from, const LoadPolicy& policy) {
  Outcome<SoundingSource> source = SoundingSource::Open(from.File);
  if (!source) return {.Failed = source.Error()};
  Loading loading = source.Value().Load(from.Index, policy);
  if (loading.Sounding && loading.Count > 1) {
    std::vector<std::string>& notes = loading.Sounding->Notes;
    notes.insert(notes.begin(), "This is number " + Shortest(from.Index + 1) + " of the file's " +
                                    Shortest(loading.Count) + " soundings.");
  }
  return loading;
}

const analysis::AnalysisResults& AnalysedSounding::Results(const AnalysisSettings& set,
                                                           analysis::AdiabatTable* table) const {
  if (!results_ || !(*under_ == set)) {
    results_ = std::make_unique<analysis::AnalysisResults>(
        table != nullptr ? analysis::Analyse(Record(), set, *table)
                         : analysis::Analyse(Record(), set));
    under_ = std::make_unique<AnalysisSettings>(set);
  }
  return *results_;
}

Outcome<SharedSounding> LoadAnalysed(const Source& from, const LoadPolicy& policy) {
  Loading loading = LoadSounding(from, policy);
  if (loading.Failed) return *std::move(loading.Failed);
  return SharedSounding(std::make_shared<const AnalysedSounding>(*std::move(loading.Sounding)));
}

}  // namespace vexa
