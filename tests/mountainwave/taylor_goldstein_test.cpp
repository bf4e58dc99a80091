// The model against the equation that it stands for: trapped waves of ψ″ + (l²(z) − k²)ψ = 0 with
// ψ = 0 at the ground, found by numbers alone. On a grid the equation is a tridiagonal matrix whose
// eigenvalues are the k²; how many lie above a value follows from the signs of its pivots (Sturm),
// and halving finds each. Nothing of the model is used but the profile of l².
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <vector>

#include "config/options.h"
#include "core/known_stations.h"
#include "mountainwave/wave_model.h"
#include "sounding/analysed_sounding.h"
#include "support/soundings.h"

namespace vexa::mountainwave {
namespace {

constexpr double kStepKm = 0.025;

// Number of eigenvalues above k2. At the top the wave dies away into air of the last l².
int CountAbove(const std::vector<double>& l2, double k2) {
  const double h2 = kStepKm * kStepKm;
  int count = 0;
  double pivot = 1;
  for (std::size_t i = 0; i < l2.size(); ++i) {
    double diagonal = -2 / h2 + l2[i] - k2;
    if (i + 1 == l2.size()) {
      const double nu = std::sqrt(std::max(0.0, k2 - l2[i]));
      diagonal += std::exp(-nu * kStepKm) / h2;
    }
    pivot = diagonal - (i == 0 ? 0 : 1 / (h2 * h2) / pivot);
    if (pivot == 0) pivot = 1e-300;
    if (pivot > 0) ++count;
  }
  return count;
}

// The wave numbers k of the trapped waves, km⁻¹, the longest wave last.
std::vector<double> TrappedWaves(const std::function<double(double)>& l2At, double topKm) {
  std::vector<double> l2;
  for (double z = kStepKm; z < topKm; z += kStepKm) l2.push_back(l2At(z));
  const double least = std::max(0.0, l2.back());
  const double most = *std::max_element(l2.begin(), l2.end());
  std::vector<double> waves;
  const int count = CountAbove(l2, least + 1e-6);
  for (int n = 1; n <= count; ++n) {
    double low = least;
    double high = std::max(most, least);
    for (int i = 0; i < 60; ++i) {
      const double middle = (low + high) / 2;
      (CountAbove(l2, middle) >= n ? low : high) = middle;
    }
    waves.push_back(std::sqrt(low));
  }
  return waves;
}

// l² of a layered profile at a height in km.
double L2At(const std::vector<ScorerLayer>& layers, double z) {
  for (const ScorerLayer& layer : layers) {
    if (z * 1000 < layer.Top) return layer.L2();
  }
  return layers.back().L2();
}

// Where the least l² below 12 km lies: the lid under which waves are trapped. What the air above it
// lets through is left out here as in the model.
double LidKm(const std::vector<ScorerLayer>& layers) {
  constexpr double kHighest = 12000;  // m
  const ScorerLayer* lid = &layers.front();
  for (const ScorerLayer& layer : layers) {
    if (layer.Top <= kHighest && layer.L2() < lid->L2()) lid = &layer;
  }
  return lid->Top / 1000;
}

// Two layers, of l² 0.80 below and 0.15 above 3 km: both find the same single wave.
TEST(TaylorGoldstein, TwoLayers) {
  constexpr double kDepth = 3 + kStepKm / 2;  // midway between two points
  const auto waves = TrappedWaves([](double z) { return z < kDepth ? 0.80 : 0.15; }, 30);
  ASSERT_EQ(waves.size(), 1U);
  const double angle = ModeAngle(kDepth * std::sqrt(0.80 - 0.15), 1);
  EXPECT_NEAR(ModeOf(0.80 - 0.15, 0.15, 1, angle).K, waves[0], 1e-4);
}

// Soundings of the collection with strong winds; docs/mountainwave.md has what both say of each.
TEST(TaylorGoldstein, RealSoundingsWithStrongWinds) {
  VEXA_REAL_DATA(data, "");
  const char* const files[] = {"temp/72712_Caribou_20220713_00z.txt",
                               "temp/42182_New_Delhi_20260206_00z.txt",
                               "temp/70308_St_Paul_20220713_00z.txt",
                               "temp/94672_Adelaide_20260206_00z.txt",
                               "spc/hail_99050400.OUN",
                               "spc/hail_04040400.EPZ",
                               "spc/supercell_11052219.SGF",
                               "spc/14061619.OAX",
                               "temp/03808_Camborne_20260206_00z.txt",
                               "bufkit/rap_oun_2018121904.buf"};
  const StationList stations = KnownStations(data, test::SourceFolder() / "share");
  int waves = 0, met = 0, firstMet = 0;
  for (const char* file : files) {
    SCOPED_TRACE(file);
    const Loading loaded = LoadSounding({.File = data / file}, {.Stations = &stations});
    ASSERT_TRUE(loaded.Sounding);
    const SoundingRecord& record = loaded.Sounding->Record;
    const WaveResults results =
        ComputeWaves(record, analysis::DeriveLevels(record, Options{}), std::nullopt);
    const RidgeWaves& ridge = results.Ridges.front();
    EXPECT_GT(ridge.Flow.CrestWind, kLeastCrestWindMs);
    ASSERT_FALSE(ridge.Waves.empty());
    const std::vector<double> trapped =
        TrappedWaves([&](double z) { return L2At(ridge.Layers, z); }, LidKm(ridge.Layers));
    const auto isMet = [&trapped](const Wave& wave) {
      return std::ranges::any_of(trapped, [&wave](double k) {
        const double length = 2 * kPi / k;
        return length >= kLeastLengthKm && length <= kMostLengthKm &&
               std::fabs(std::log(length / wave.Of.LengthKm)) < std::log(1.2);
      });
    };
    waves += static_cast<int>(ridge.Waves.size());
    met += static_cast<int>(std::ranges::count_if(ridge.Waves, isMet));
    firstMet += isMet(ridge.Waves.front()) ? 1 : 0;
  }
  // As the documents say 71 of 319, and the predominant one of five soundings.
  EXPECT_GE(6 * met, waves);
  EXPECT_GE(firstMet, 5);
}

}  // namespace
}  // namespace vexa::mountainwave
