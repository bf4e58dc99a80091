// The whole analysis: the ground in terms of altimetry, and soundings of every odd shape, from
// which no NaN may come.
#include "analysis/analysis.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>

#include "analysis/index_table.h"
#include "config/options.h"
#include "support/soundings.h"

namespace vexa::analysis {
namespace {

using test::Profile;

TEST(Surface, InTermsOfAltimetry) {
  SoundingRecord sounding = test::ReferenceConvective();
  const SurfaceState surface = Analyse(sounding, {}).Surface;
  EXPECT_TRUE(surface.Exists);
  EXPECT_NEAR(surface.Qnh, 1012.12, 0.01);
  EXPECT_NEAR(surface.PressureAltitude, 366.4, 0.1);
  EXPECT_NEAR(surface.DensityAltitude, 991, 1);
  EXPECT_NEAR(surface.IsaDeviation, 28 - (15 - 0.0065 * 366.4), 0.01);
  EXPECT_FALSE(surface.Estimated);
  sounding.Dewpt(1) = kMissing;
  EXPECT_TRUE(Analyse(sounding, {}).Surface.Estimated);
  sounding = test::ReferenceConvective();
  SetElevationUnknown(sounding);
  EXPECT_TRUE(Analyse(sounding, {}).Surface.Estimated);
  EXPECT_EQ(Analyse(sounding, {}).Surface.Qnh, kNone);
  EXPECT_FALSE(Analyse(SoundingRecord{}, {}).Surface.Exists);
}

// Every number of the results; heights and markers are finite, so all must be.
class Numbers {
 public:
  explicit Numbers(const AnalysisResults& results) {
    const LevelProfile& levels = results.Levels;
    Add(levels.Height, levels.WetBulb, levels.ThetaE, levels.Theta, levels.VirtualTemp);
    Add(levels.MixingRatio, levels.RelHumidity, results.Soaring.ThermalIndex);
    const SurfaceState& surface = results.Surface;
    Add(surface.Press, surface.Qnh, surface.PressureAltitude, surface.DensityAltitude);
    Add(surface.IsaDeviation, results.CapeDepthTopPress, results.ConvectiveTemp);
    Add(results.MeanLayerMixingRatio, results.ConvectiveCondensation);
    const auto& [surfaceBased, meanLayer, mostUnstable] = results.Forced;
    for (const ParcelAscent* ascent :
         {&surfaceBased, &meanLayer, &mostUnstable, &results.Convective}) {
      Add(ascent->Condensation, ascent->FreeLevel, ascent->Equilibrium, ascent->MaximumParcel);
      Add(ascent->CapeTotal, ascent->CapePlusOnly, ascent->CinTotal, ascent->CapeDepth);
      Add(ascent->CapeHail, ascent->HailBasePress);
      Add(ascent->ParcelTemps, ascent->EnvTemps, ascent->Increments);
    }
    const LayerResults& layers = results.Layers;
    Add(results.Inversions, results.FreezingLevels, results.Tropopauses, layers.Clouds);
    Add(layers.Icing, layers.Turbulence, layers.HighTurbulence, layers.LowShear);
    Add(layers.Contrails, layers.Lightning, layers.CarbIcing);
    for (const Duct& duct : layers.Ducts) Add(duct.DuctBase, duct.Gradient);
    const LevelListing& listing = layers.Listing;
    Add(listing.Density, listing.DValue, listing.Refractivity, listing.Modified);
    Add(listing.Potential, listing.Gradient, listing.WaterBelow);
    const WinterResults& winter = results.Winter;
    Add(winter.WarmArea, winter.ColdArea, winter.SurfaceWarmArea, winter.SnowRatio);
    Add(winter.SnowSquall, winter.Thickness1000to500, results.Descent.Energy);
    Add(results.Descent.SurfaceTemp, results.Soaring.Lift, results.Soaring.TriggerTemp);
    Add(results.Soaring.ThermalTop, results.Soaring.PilotLevel);
  }
  int Bad = 0;

 private:
  template <class... Values>
  void Add(const Values&... values) {
    (AddOne(values), ...);
  }
  template <class Value>
  void AddOne(const Value& value) {
    if constexpr (requires { value.Values(); }) {
      AddOne(value.Values());
    } else if constexpr (requires { value.begin(); }) {
      for (const auto& one : value) AddOne(one);
    } else if constexpr (requires { value.Base; }) {
      Add(value.Base, value.Top);
      if constexpr (requires { value.Value; }) AddOne(value.Value);
    } else if constexpr (requires { value.Press; }) {
      Add(value.Press, value.Height, value.Temp);
    } else {
      Bad += std::isfinite(value) ? 0 : 1;
    }
  }
};

void ExpectFinite(const SoundingRecord& sounding) {
  for (const CapeBase mode : {CapeBase::Lfc, CapeBase::Ccl}) {
    for (const SaturationOver over : {SaturationOver::Water, SaturationOver::Ice}) {
      Options options;
      options.BaseLevel = mode;
      options.Saturation = over;
      options.CapeTempBase = mode == CapeBase::Ccl ? TempBase::Virtual : TempBase::Dry;
      options.MultiLift = sounding.NumTempLevels() < 100;
      options.Ice = mode == CapeBase::Ccl ? IceType::Usaf : IceType::SmithFeddes;
      options.ShearNormalization = over == SaturationOver::Water;
      const AnalysisResults results = Analyse(sounding, options);
      EXPECT_EQ(Numbers(results).Bad, 0);
      for (const IndexValue& index : results.Indices) {
        EXPECT_TRUE(std::isfinite(index.Value)) << index.Row->Label;
        EXPECT_NE(index.Exists(), !index.Reason.empty()) << index.Row->Label;
      }
      if (over == SaturationOver::Ice || mode == CapeBase::Ccl) continue;
      for (const IndexRow& row : IndexTable()) {
        EXPECT_FALSE(Explain(row, sounding, results, options).empty()) << row.Label;
      }
      for (const ParcelAscent& forced : results.Forced) {
        EXPECT_LE(forced.CinTotal, 0);
        EXPECT_GE(forced.CinTotal, -99999);
        EXPECT_GE(forced.CapeTotal, forced.CapeDepth);
      }
    }
  }
}

TEST(Analyse, OddShapesGiveMarkersAndNeverNaN) {
  SoundingRecord tall;
  for (int i = 0; i < 10000; ++i) {
    const double press = 1015 * std::pow(3.0 / 1015, i / 9999.0);
    tall.AddTemp(press, std::max(25 - 45 * std::log10(1015 / press) * 2, -65.0),
                 i % 7 == 0 ? kMissing : -70);
  }
  const struct {
    const char* About;
    SoundingRecord Sounding;
  } cases[] = {
      {"empty", Profile({})},
      {"one level", Profile({{1000, 20, 15}})},
      {"two levels", Profile({{1000, 20, 15}, {500, -10, -20}})},
      {"two levels within one hPa", Profile({{1000.7, 20, 15}, {1000.2, 19, 15}})},
      {"no dew point anywhere", Profile({{1000, 20, 999.9}, {500, -10, 999.9}, {200, -50, 999.9}})},
      {"begins aloft", Profile({{480, -15, -20}, {300, -45, -60}, {100, -60, 999.9}})},
      {"ends below 500 hPa", Profile({{690, 5, 0}, {520, -10, -20}}, {{3200, 180, 10}}, 3200)},
      {"only stratosphere", Profile({{60, -60, -85}, {20, -50, -80}, {2, -20, 999.9}})},
      {"below one hPa", Profile({{0.9, -10, -90}, {0.5, -20, -90}})},
      {"pressures of no planet", Profile({{5000, 400, 380}, {1300, 60, 59}, {800, 50, 49}})},
      {"a missing temperature that got through",
       Profile({{1000, 20, 15}, {900, 999.9, 999.9}, {500, -10, -20}})},
      {"colder than anything",
       Profile({{1000, -300, -400}, {500, -273.16, -273.16}, {400, -500, -500}})},
      {"boiling", Profile({{1000, 100, 100}, {300, 69, 69}, {100, 50, 50}})},
      {"equal pressures", Profile({{1000, 20, 15}, {1000, 20, 15}, {1000, 10, 5}})},
      {"upside down", Profile({{200, -50, -60}, {500, -10, -20}, {1000, 20, 15}})},
      {"no pressure", Profile({{0, 20, 15}, {-5, 10, 5}, {500, -10, -20}})},
      {"dew point above temperature", Profile({{1000, 10, 30}, {500, -10, 5}, {300, -40, -30}})},
      {"ten thousand levels", tall},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.About);
    ExpectFinite(c.Sounding);
  }
  std::mt19937 random(99);
  std::uniform_real_distribution<double> press(-10, 1200);
  std::uniform_real_distribution<double> temp(-120, 80);
  for (int n = 0; n < 60; ++n) {
    SCOPED_TRACE("noise " + std::to_string(n));
    SoundingRecord noise;
    for (int i = 0; i < 12; ++i) {
      noise.AddTemp(press(random), temp(random), i % 4 == 3 ? kMissing : temp(random));
      noise.AddWind(1500 * i + temp(random), 3 * std::fabs(temp(random)), std::fabs(temp(random)));
    }
    ExpectFinite(noise);
  }
}

}  // namespace
}  // namespace vexa::analysis
