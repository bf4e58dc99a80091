// What thinning a dense sounding changes in its analysis: nothing at the mandatory levels, little
// in the energies.
#include "core/level_filter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "analysis/interpolate.h"
#include "analysis/real_sounding.h"
#include "core/markers.h"

namespace vexa::analysis {
namespace {

double Cape(const AnalysisResults& results, std::size_t type) {
  return results.Forced[type].CapeTotal;
}

// Holds the analysis of a sounding against that of its thinned copy.
void ExpectTheSameAnalysis(const SoundingRecord& full, const SoundingRecord& thin) {
  const AnalysisResults before = Analyse(full, {});
  const AnalysisResults after = Analyse(thin, {});
  for (std::size_t type = 0; type < before.Forced.size(); ++type) {
    const double cape = Cape(before, type);
    // Two percent, or for energies near nothing as many J/kg as cannot matter.
    EXPECT_NEAR(Cape(after, type), cape, std::max(0.02 * cape, 5.0)) << "lift type " << type;
  }
  for (const char* label : {"KI", "TT"}) {
    EXPECT_EQ(IndexOf(after, *FindIndex(label))->Value, IndexOf(before, *FindIndex(label))->Value);
  }
}

// Every value that was left out lies within the tolerance of the line through those that stayed.
void ExpectWithinTolerance(const SoundingRecord& full, const SoundingRecord& thin) {
  const FilterTolerance tolerance;
  const LevelProfile levels = Analyse(thin, {}).Levels;
  for (int i = 1; i <= full.NumTempLevels(); ++i) {
    const Sample temp = SampleAt(levels, full.Press(i), Quantity::Temp);
    const Sample dewpt = SampleAt(levels, full.Press(i), Quantity::Dewpt);
    ASSERT_TRUE(temp.Ok() && dewpt.Ok() == !IsMissing(full.Dewpt(i))) << full.Press(i);
    EXPECT_NEAR(temp.Value, full.Temp(i), tolerance.Temp + 1e-9) << full.Press(i);
    if (dewpt.Ok()) {
      EXPECT_NEAR(dewpt.Value, full.Dewpt(i), tolerance.Dewpt + 1e-9) << full.Press(i);
    }
  }
  for (int i = 1; i <= full.NumWindLevels(); ++i) {
    const WindVector at = Components(WindAtHeight(thin, full.WindHgt(i)).Value);
    const WindVector was = Components({full.WindDir(i), full.WindSpd(i)});
    EXPECT_LE(std::hypot(at.U - was.U, at.V - was.V), tolerance.Wind + 1e-9) << full.WindHgt(i);
  }
}

TEST(LevelFilter, RealSoundingsKeepTheirAnalysis) {
  VEXA_REAL_DATA(wyoming, "wyoming");
  VEXA_REAL_DATA(spc, "spc");
  const auto isSame = [](const SoundingRecord& full) {
    ExpectTheSameAnalysis(full, FilterLevels(full));
  };
  EXPECT_GE(ForEachSounding(wyoming, isSame) + ForEachSounding(spc, isSame), 26);
}

TEST(LevelFilter, RealDenseSoundingsKeepTheirAnalysis) {
  VEXA_REAL_DATA(folder, "class");
  int dense = 0;
  int withEnergy = 0;
  for (const char* name : {"KABQ_202305222306_1s_first1200.cls", "NWS_20230522_5mb_several.cls"}) {
    bool hasMore = true;
    for (int index = 0; hasMore; ++index) {
      const Loading loading = LoadSounding({.File = folder / name, .Index = index}, {});
      ASSERT_FALSE(loading.Failed) << loading.Failed->Detail;
      hasMore = loading.HasMore || index + 1 < loading.Count;
      const SoundingRecord& full = loading.Sounding->Record;
      SCOPED_TRACE(full.Press(1));
      ASSERT_GT(full.NumTempLevels(), 100);
      const SoundingRecord thin = FilterLevels(full);
      dense += IsHighDensity(full) ? 1 : 0;
      withEnergy += Cape(Analyse(full, {}), 2) > 500 ? 1 : 0;
      if (IsHighDensity(full)) {
        EXPECT_LT(thin.NumTempLevels(), full.NumTempLevels() / 5);
      }
      ExpectTheSameAnalysis(full, thin);
      ExpectWithinTolerance(full, thin);
    }
  }
  EXPECT_GT(dense, 0);
  EXPECT_GT(withEnergy, 0);
}

}  // namespace
}  // namespace vexa::analysis
