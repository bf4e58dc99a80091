// Expected values of the reference soundings: an independent program in double precision, with the
// last digit shown; convective energies by another that bisects every step.
#include "analysis/parcel.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "analysis/adiabat_table.h"
#include "analysis/analysis.h"
#include "analysis/index_table.h"
#include "analysis/interpolate.h"
#include "analysis/moist_air.h"
#include "config/options.h"
#include "support/soundings.h"

namespace vexa::analysis {
namespace {

using test::Profile;

Options With(TempBase base, int step = 1) {
  Options options;
  options.CapeTempBase = base;
  options.CapeInterval = step;
  return options;
}

const ParcelAscent& Forced(const AnalysisResults& results, LiftType type) {
  return results.Forced[static_cast<std::size_t>(type)];
}

TEST(Parcel, SurfaceParcelOfTheConvectiveReference) {
  const AnalysisResults results = Analyse(test::ReferenceConvective(), With(TempBase::Dry));
  const ParcelAscent& parcel = Forced(results, LiftType::Surface);
  EXPECT_NEAR(results.CapeDepthTopPress, 682.7, 0.05);
  EXPECT_NEAR(parcel.Condensation.Press, 847.91, 0.01);
  EXPECT_NEAR(parcel.Condensation.Temp, 16.65, 0.01);
  EXPECT_NEAR(parcel.Condensation.Height, 1531, 1);
  EXPECT_NEAR(parcel.FreeLevel.Press, 721.7, 0.1);
  EXPECT_NEAR(parcel.FreeLevel.Height, 2897, 1);
  EXPECT_NEAR(parcel.Equilibrium.Press, 187.5, 0.1);
  EXPECT_NEAR(parcel.Equilibrium.Height, 12509, 1);
  EXPECT_EQ(parcel.MaximumParcel.Press, 96);
  EXPECT_NEAR(parcel.MaximumParcel.Height, 16686, 1);
  EXPECT_NEAR(parcel.CapeTotal, 3365, 1);
  EXPECT_NEAR(parcel.CapePlusOnly, 3365, 1);
  EXPECT_NEAR(parcel.CinTotal, -102.3, 0.1);
  EXPECT_NEAR(parcel.CapeDepth, 12.2, 0.1);
  EXPECT_EQ(parcel.HailBasePress, 442);
  EXPECT_EQ(parcel.HailTopPress, 302);
  EXPECT_NEAR(parcel.CapeHail, 1264, 1);
  EXPECT_EQ(parcel.ParcelTemps.size(), 921u);  // 970 … 50 hPa
  EXPECT_EQ(parcel.EnvTemps.size(), 921u);
  EXPECT_EQ(parcel.Increments.size(), 784u);  // 970 … 187 hPa
}

TEST(Parcel, OtherLiftsBasesAndSteps) {
  using enum TempBase;
  using enum LiftType;
  const struct {
    TempBase Base;
    int Step;
    LiftType Type;
    double Lfc, El, Cape, Cin, Depth;
  } cases[] = {{Virtual, 1, Surface, 750.9, 187.4, 3532, -52.5, 35.6},
               {Dry, 5, Surface, 721.7, 187.5, 3363, -102.3, 10.9},
               {Virtual, 5, Surface, 750.9, 187.4, 3531, -52.5, 33.5},
               {Dry, 1, MeanLayer, 708.9, 190.6, 3039, -119.1, 5.3},
               {Virtual, 1, MeanLayer, 735.8, 190.6, 3190, -70.1, 21.6},
               {Dry, 1, MostUnstable, 721.7, 187.5, 3365, -102.3, 12.2}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.Cape);
    const AnalysisResults results = Analyse(test::ReferenceConvective(), With(c.Base, c.Step));
    const ParcelAscent& parcel = Forced(results, c.Type);
    EXPECT_NEAR(parcel.FreeLevel.Press, c.Lfc, 0.1);
    EXPECT_NEAR(parcel.Equilibrium.Press, c.El, 0.1);
    EXPECT_NEAR(parcel.CapeTotal, c.Cape, 1);
    EXPECT_NEAR(parcel.CinTotal, c.Cin, 0.15);
    EXPECT_NEAR(parcel.CapeDepth, c.Depth, 0.1);
  }
  const AnalysisResults coarse = Analyse(test::ReferenceConvective(), With(TempBase::Dry, 25));
  EXPECT_NEAR(Forced(coarse, LiftType::Surface).CapeTotal, 3331, 1);
  const AnalysisResults second = Analyse(test::ReferenceConvective(), With(TempBase::Dry, 2));
  EXPECT_NEAR(Forced(second, LiftType::Surface).CapeTotal, 3365, 1.5);
}

TEST(Parcel, SourcesAndFreeConvection) {
  Options options;
  options.BaseLevel = CapeBase::Ccl;
  const AnalysisResults results = Analyse(test::ReferenceConvective(), options);
  const ParcelStart& mean = Forced(results, LiftType::MeanLayer).Start;
  EXPECT_EQ(mean.Press, 970);
  EXPECT_NEAR(mean.Temp, 28.21, 0.01);
  EXPECT_NEAR(mean.Dewpt, 18.03, 0.01);
  EXPECT_NEAR(results.MeanLayerMixingRatio, 0.013551, 1e-6);

  EXPECT_NEAR(results.ConvectiveCondensation.Press, 763.10, 0.01);
  EXPECT_NEAR(results.ConvectiveCondensation.Temp, 14.27, 0.01);
  EXPECT_NEAR(results.ConvectiveCondensation.Height, 2429, 1);
  EXPECT_NEAR(results.ConvectiveTemp, 34.66, 0.01);
  EXPECT_EQ(results.Mode, LiftMode::Ccl);
  const ParcelAscent& parcel = results.Chosen();
  EXPECT_EQ(parcel.FreeLevel.Press, parcel.Condensation.Press);
  EXPECT_NEAR(parcel.Equilibrium.Press, 177.4, 0.1);
  EXPECT_NEAR(parcel.Equilibrium.Height, 12855, 1);
  EXPECT_NEAR(parcel.CapeTotal, 4453.5, 1);
  EXPECT_EQ(parcel.CinTotal, 0);
}

// A sounding that ends before its parcel got free answers only where nothing above could free it:
// when the air at its end has a higher potential temperature than the parcel's equivalent one.
// Beside each case that pair, from Bolton (1980) by hand.
TEST(Parcel, TheEndBelowAPossibleLfcIsNoAnswer) {
  const SoundingRecord reference = test::ReferenceConvective();
  const SoundingRecord short2km = test::EndingAt(reference, 800);
  const struct {
    const char* About;
    SoundingRecord Sounding;
    const char* Cape;
    const char* Depth;  // 0-3 km
    std::string_view Marker;
  } cases[] = {
      {"whole", reference, "3365", "12", ""},
      {"cut below its LFC", short2km, "--", "--", kOpenCape},
      {"stable to its end: 293 K above 278 K", Profile({{1000, 0, -10}, {850, 7, -15}}), "0", "0",
       kNoCape},
      {"moist beneath: 311 K below 330 K, 3 km passed",
       Profile({{1000, 20, 18}, {900, 18, 5}, {690, 7, -15}}), "--", "0", kOpenCape},
      {"the same up to the stratosphere: 434 K",
       Profile({{1000, 20, 18}, {900, 18, 5}, {690, 7, -15}, {100, -48, -80}}), "0", "0", kNoCape},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.About);
    const AnalysisResults results = Analyse(c.Sounding, With(TempBase::Dry));
    const ParcelAscent& parcel = Forced(results, LiftType::Surface);
    EXPECT_EQ(EnergyText(parcel, &ParcelAscent::CapeTotal), c.Cape);
    EXPECT_EQ(EnergyText(parcel, &ParcelAscent::CapeDepth), c.Depth);
    EXPECT_EQ(parcel.HasAnswer(&ParcelAscent::CinTotal), c.Marker != kOpenCape);
    EXPECT_EQ(CapeMarker(parcel), c.Marker);
  }
  const AnalysisResults results = Analyse(short2km, {});
  EXPECT_EQ(Forced(results, LiftType::Surface).HailBasePress, kNone);
  for (const char* label : {"CAPE total", "BRN", "EHI 0-xkm", "MVV", "Hail"}) {
    EXPECT_EQ(IndexOf(results, *FindIndex(label))->Reason, kOpenCape) << label;
  }
}

ParcelAscent Lifted(std::initializer_list<test::TempRow> temps, const Options& options = {}) {
  return Forced(Analyse(Profile(temps), options), LiftType::Surface);
}

TEST(Parcel, OfStableAirEndsWithoutEnergy) {
  const ParcelAscent parcel = Lifted({{1000, 10, 5}, {700, 10, 0}, {400, 10, -5}, {200, 10, -20}});
  EXPECT_TRUE(parcel.Condensation.Exists());
  EXPECT_FALSE(parcel.FreeLevel.Exists() || parcel.Equilibrium.Exists());
  EXPECT_FALSE(parcel.MaximumParcel.Exists());
  EXPECT_EQ(parcel.CapeTotal, 0);
  EXPECT_EQ(parcel.CinTotal, 0);  // not a negative CIN alone
  // Between two steps of 25 hPa the parcel is warmer for a moment at its LCL, about 928 hPa.
  const ParcelAscent notch = Lifted(
      {{1000, 20, 15}, {950, 17, 10}, {929, 12, 8}, {925, 16, 5}, {500, 5, -30}, {300, 0, -40}},
      With(TempBase::Dry, 25));
  EXPECT_TRUE(notch.Equilibrium.Exists());
  EXPECT_EQ(notch.CapeTotal, 0);
  EXPECT_EQ(notch.CinTotal, 0);
  EXPECT_LT(notch.Increments.back(), 0);
  // A warm, very dry start: condensation above the top of the sounding.
  const ParcelAscent dry = Lifted({{1000, 30, -20}, {900, 22, -22}});
  EXPECT_LT(dry.Condensation.Press, 900);
  EXPECT_EQ(dry.Condensation.Height, kNone);
  EXPECT_FALSE(dry.FreeLevel.Exists());
  EXPECT_EQ(dry.ParcelTemps.size(), 101u);
}

// Saturated air at the ground under a lapse rate far beyond the saturated one; no level ends the
// ascent, so its top does.
TEST(Parcel, WarmerFromTheFirstStepToTheTop) {
  const ParcelAscent parcel = Lifted({{1000, 25, 25}, {700, -5, -10}, {400, -45, -50}});
  EXPECT_EQ(parcel.CinTotal, 0);
  EXPECT_NEAR(parcel.FreeLevel.Press, 1000, 1.01);
  EXPECT_EQ(parcel.Equilibrium.Press, 400);
  EXPECT_FALSE(parcel.MaximumParcel.Exists());
  EXPECT_GT(parcel.CapeTotal, 1000);
}

TEST(Parcel, LimitsOfItsLayers) {
  Options options;
  const auto results = [&] { return Analyse(test::ReferenceConvective(), options); };
  for (const double limit : {300.0, 150.0}) {
    options.ElLowerLimit = limit;
    const ParcelAscent parcel = results().Chosen();
    EXPECT_EQ(parcel.Equilibrium.Exists(), limit == 300);
    EXPECT_EQ(parcel.CapeTotal > 0, limit == 300);
    EXPECT_EQ(parcel.CinTotal < 0, limit == 300);
  }
  options = {};
  options.Heights = HeightMode::Agl;
  EXPECT_NEAR(results().CapeDepthTopPress, 682.7, 0.05);  // as above the sea
  options.CapeDepthKm = 30;                               // takes all
  EXPECT_EQ(results().CapeDepthTopPress, kNotReached);
  EXPECT_EQ(results().Chosen().CapeDepth, results().Chosen().CapeTotal);
}

// A moist layer at 750 hPa has the largest θe, but a parcel from the ground also gains what lies
// below it.
TEST(Parcel, MultiLiftTakesTheLargestCape) {
  const SoundingRecord sounding = Profile({{1000, 25, 22.5},
                                           {900, 16, 8},
                                           {800, 12, 5},
                                           {750, 12.85, 12.85},
                                           {500, -10, -30},
                                           {300, -42, -60},
                                           {200, -56, -70},
                                           {150, -50, 999.9}});
  Options options;
  const ParcelAscent single = Analyse(sounding, options).Chosen();
  options.MultiLift = true;
  const ParcelAscent best = Analyse(sounding, options).Chosen();
  EXPECT_EQ(single.Start.Press, 750);
  EXPECT_EQ(best.Start.Press, 1000);
  EXPECT_GT(best.CapeTotal, single.CapeTotal + 10);
}

// What the diagram shades is what was summed.
TEST(Parcel, IncrementsAddUpToTheTotals) {
  for (const TempBase base : {TempBase::Dry, TempBase::Virtual}) {
    for (const int step : {1, 3, 5, 25}) {
      // A hot ground, whose air is warmer for the first steps already.
      SoundingRecord sounding = test::ReferenceConvective();
      sounding.Temp(1) += 1;
      const AnalysisResults results = Analyse(sounding, With(base, step));
      const ParcelAscent& parcel = results.Chosen();
      double cape = 0, cin = 0, positive = 0;
      for (std::size_t i = 1; i < parcel.Increments.size(); ++i) {
        const double press = parcel.FirstPress - static_cast<double>(i) * parcel.Step;
        const double increment = parcel.Increments[i];
        if (increment <= 0) cin += increment;
        if (increment > 0) positive += increment;
        if (increment > 0 && press < parcel.FreeLevel.Press) cape += increment;
      }
      EXPECT_GT(parcel.Increments[1], 0);
      EXPECT_NEAR(parcel.CapePlusOnly, positive, 1e-2);
      EXPECT_NEAR(parcel.CapeTotal, cape, 1e-2);
      EXPECT_NEAR(parcel.CinTotal, cin, 1e-2);
    }
  }
}

// Fog under warmer air: a saturated parcel is as warm as its surroundings where it starts and
// colder above, whatever the last digits of its temperature.
TEST(Parcel, SaturatedGroundIsNoFreeLevel) {
  for (double tenths = -50; tenths <= 300; ++tenths) {
    const double temp = tenths / 10;
    const SoundingRecord fog = test::Profile({{990.4, temp, temp},
                                              {950, temp + 1, temp - 1},
                                              {700, temp - 6, temp - 12},
                                              {500, temp - 15, temp - 25},
                                              {300, temp - 30, temp - 50}});
    const AnalysisResults results = Analyse(fog, With(TempBase::Virtual));
    const ParcelAscent& parcel = results.Forced[0];
    EXPECT_FALSE(parcel.FreeLevel.Exists()) << temp << " C: free at " << parcel.FreeLevel.Press;
    EXPECT_FALSE(parcel.Equilibrium.Exists()) << temp;
  }
}

// Every level's descent, walked by whole hPa with the search for the saturated temperature at each.
TEST(Downdraft, BeginsAtTheLevelThatGivesTheMost) {
  SoundingRecord sounding;
  AdiabatTable table;
  std::mt19937 random(99);
  std::uniform_real_distribution<double> depression(0, 25);
  for (double press = 987.6; press > 420; press -= 31.7) {
    const double temp = 27 - 0.085 * (987.6 - press);
    sounding.AddTemp(press, temp, temp - depression(random));
  }
  for (const TempBase base : {TempBase::Dry, TempBase::Virtual}) {
    for (const SaturationOver over : {SaturationOver::Water, SaturationOver::Ice}) {
      Options options = With(base);
      options.Saturation = over;
      const AnalysisResults results = Analyse(sounding, options);
      const LevelProfile& levels = results.Levels;
      const auto colderBy = [&](int source, double press) {
        const double parcel = LiftSat(levels.ThetaE(source), press, over).Temp;
        const Quantity quantity =
            base == TempBase::Virtual ? Quantity::VirtualTemp : Quantity::Temp;
        const double mixing = ThetaPoint(press, parcel, over).MixingRatio;
        return SampleAt(levels, press, quantity).Value -
               (base == TempBase::Virtual ? VirtualTemp(parcel, mixing) : parcel);
      };
      double most = 0;
      int best = 0;
      for (int source = 2; source <= levels.Count() && levels.Height(source) <= 6000; ++source) {
        double energy = 0;
        double below = levels.Press(1);
        while (below > levels.Press(source)) {
          const double above = std::max(std::ceil(below) - 1, levels.Press(source));
          energy += 287.04 * (colderBy(source, below) + colderBy(source, above)) / 2 *
                    std::log(below / above);
          below = above;
        }
        if (energy > most) std::tie(most, best) = std::pair(energy, source);
      }
      ASSERT_GT(best, 2);
      EXPECT_EQ(results.Descent.Source.Press, levels.Press(best));
      EXPECT_NEAR(results.Descent.Energy, most, 0.2);
      EXPECT_NEAR(Analyse(sounding, options, table).Descent.Energy, most, 0.4);
    }
  }
}

// Pressures that rise at first, as of a damaged message: what sinks begins above the ground.
TEST(Downdraft, BeginsAboveTheGround) {
  for (const DcapeMode mode : {DcapeMode::Fast, DcapeMode::Best}) {
    Options options;
    options.Dcape = mode;
    for (const double highest : {1012.4, 1100.5}) {
      const auto descent =
          Analyse(Profile({{1000, 20, 15}, {highest, 20, 15}, {highest - 5, 18, -5}}), options)
              .Descent;
      EXPECT_TRUE(NotAvailable(descent.Energy)) << highest;
      const auto above = Analyse(Profile({{1000, 20, 15},
                                          {highest, 20, 15},
                                          {highest - 5, 18, -5},
                                          {900, 14, 4},
                                          {700, 2, -10}}),
                                 options)
                             .Descent;
      EXPECT_LT(above.Source.Press, 1000) << highest;
    }
  }
}

// The march along an adiabat against the search at each single pressure, up to where that ends.
TEST(SolveAdiabat, AgreesWithLiftSatAtEveryPressure) {
  for (const double thetaE : {215.0, 260.0, 300.0, 346.0, 420.0, 640.0}) {
    for (const SaturationOver over : {SaturationOver::Water, SaturationOver::Ice}) {
      std::vector<double> temps(1100);
      std::vector<double> virtuals(1100);
      SolveAdiabat(thetaE, over, 1100, 1, temps.data(), virtuals.data());
      for (int press = 1; press <= 1100; press += 3) {
        const LiftSatResult lifted = LiftSat(thetaE, press, over);
        const auto at = static_cast<std::size_t>(1100 - press);
        if (lifted.Failed) {
          EXPECT_LE(temps[at], -120);
          continue;
        }
        ASSERT_NEAR(temps[at], lifted.Temp, 2e-5) << thetaE << " K, " << press << " hPa";
        const double mixing = ThetaPoint(press, lifted.Temp, over).MixingRatio;
        ASSERT_NEAR(virtuals[at], VirtualTemp(lifted.Temp, mixing), 4e-5) << press;
      }
    }
  }
}

}  // namespace
}  // namespace vexa::analysis
