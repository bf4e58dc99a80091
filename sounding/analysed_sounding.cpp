#include "sounding/analysed_sounding.h"

#include <utility>

#include "sounding/sounding_reader.h"

namespace vexa {

Loading LoadSounding(const Source& from, const LoadPolicy& policy) {
  return SoundingReader().Load(from, policy);
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

Outcome<SharedSounding> Share(Loading loading) {
  if (loading.Failed) return *std::move(loading.Failed);
  return SharedSounding(std::make_shared<const AnalysedSounding>(*std::move(loading.Sounding)));
}

Outcome<SharedSounding> LoadAnalysed(const Source& from, const LoadPolicy& policy) {
  return Share(LoadSounding(from, policy));
}

}  // namespace vexa
