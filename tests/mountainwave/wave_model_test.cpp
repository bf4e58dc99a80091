// The two-layer model. Worked numbers were computed apart from this code, in double precision from
// the formulas of the headers; those of the winter reference sounding likewise.
#include "mountainwave/wave_model.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <tuple>
#include <vector>

#include "analysis/moist_air.h"
#include "config/options.h"
#include "core/units.h"
#include "support/soundings.h"

namespace vexa::mountainwave {
namespace {

WaveResults Waves(const SoundingRecord& sounding, const Site& site = std::nullopt) {
  return ComputeWaves(sounding, analysis::DeriveLevels(sounding, Options{}), site);
}

// Two layers with l² 0.80 below and 0.15 above 3 km, Um 10 and UH 18 m/s, densities 1.30 to 1.
Interface TwoLayers() {
  Interface at{.DepthKm = 3, .L2Below = 0.80, .L2Above = 0.15, .Fall = 0.65};
  at.Threshold = TrappingThreshold(at.DepthKm);
  at.X = at.DepthKm * std::sqrt(at.Fall);
  at.MeanWind = 10;
  at.WindHere = 18;
  at.DensityRatio = std::sqrt(1.30);
  at.Highest = ModeOf(at.Fall, at.L2Above, HighestMode(at.X), static_cast<double>(Response(at.X)));
  return at;
}

TEST(Airstream, TermsOfTheScorerParameter) {
  EXPECT_NEAR(analysis::DryTheta(900, 10), 291.81, 0.005);
  EXPECT_NEAR(analysis::DryTheta(847, 8), 294.82, 0.005);
  const double stability = StaticStability(291.81, 294.82, 500);
  EXPECT_NEAR(stability, 2.0126e-4, 2e-7);  // 2.0096e-4 with unrounded temperatures, as next
  EXPECT_NEAR(StaticStability(analysis::DryTheta(900, 10), analysis::DryTheta(847, 8), 500),
              2.0096e-4, 1e-8);
  EXPECT_NEAR(StabilityTerm(2.0096e-4, 12.86), 1.2151, 5e-5);
  EXPECT_NEAR(CurvatureTerm((15.432 - 10.288) / 500, (18.0 - 15.432) / 500, 0.5, 15.432), -0.6677,
              5e-5);
  EXPECT_EQ(StaticStability(300, 299, 500), 0);
  EXPECT_EQ(StabilityTerm(1e-4, 0), 0);
  EXPECT_EQ(CurvatureTerm(0, 1e-3, 0.5, 0), 0);
}

TEST(Airstream, CurvatureTakesTheNeighboursOfALayer) {
  // Shears of the layers by hand: 0.01, 0.02, 0.005 s⁻¹ over 500 m each; the mean winds are 7.5,
  // 15 and 21.25 m/s.
  const std::vector<FlowLevel> levels = {{.Height = 0, .Theta = 290, .Wind = 5},
                                         {.Height = 500, .Theta = 290, .Wind = 10},
                                         {.Height = 1000, .Theta = 290, .Wind = 20},
                                         {.Height = 1500, .Theta = 290, .Wind = 22.5}};
  const std::vector<ScorerLayer> layers = ScorerProfile(levels);
  ASSERT_EQ(layers.size(), 3U);
  EXPECT_NEAR(layers[0].CurvatureTerm, 1e3 * (0.02 - 0.01) / (0.5 * 7.5), 1e-5);
  EXPECT_NEAR(layers[1].CurvatureTerm, 1e3 * (0.005 - 0.01) / (1.0 * 15), 1e-6);
  EXPECT_NEAR(layers[2].CurvatureTerm, 1e3 * (0.005 - 0.02) / (0.5 * 21.25), 1e-5);
  EXPECT_NEAR(layers[1].L2(), 1.0 / 3, 1e-6);
}

TEST(WaveModel, ResponseInThreePieces) {
  struct Case {
    double x, law, exact;
    int mode;
  };
  const Case cases[] = {
      {1.5708, 88.71, 90, 1}, {2, 71.21, 71.40, 1},    {2.5, 58.12, 58.23, 1},
      {4, 37.89, 38.22, 1},   {4.71, 81.63, 90, 2},    {5, 76.21, 78.89, 2},
      {7, 51.76, 50.50, 2},   {7.84, 45.43, 44.60, 2}, {7.841, 81.57, 90, 3},
      {11, 51.91, 50.90, 3},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.x);
    EXPECT_NEAR(Response(c.x), c.law, 0.01);
    EXPECT_EQ(HighestMode(c.x), c.mode);
    // At the thresholds the angle stands at its end, where it hardly depends on x.
    EXPECT_NEAR(ModeAngle(c.x, c.mode), c.exact, c.exact == 90 ? 4 : 0.01);
  }
}

TEST(WaveModel, TrappingIsStrictAndPiIsSinglePrecision) {
  EXPECT_FALSE(IsTrapped(TrappingThreshold(1), 1));
  EXPECT_FALSE(IsTrapped(2.4674, 1));
  EXPECT_FALSE(IsTrapped(2.4674013, 1));  // more than a quarter of the true π²
  EXPECT_TRUE(IsTrapped(2.4675, 1));
}

TEST(WaveModel, ExponentsAreGuarded) {
  EXPECT_EQ(GuardedExp(709.5), 8.2e307);
  EXPECT_EQ(GuardedExp(1e9), 8.2e307);
  EXPECT_DOUBLE_EQ(GuardedExp(709), std::exp(709.0));
}

TEST(WaveModel, WorkedExampleOfTwoLayers) {
  const Interface at = TwoLayers();
  EXPECT_NEAR(at.Threshold, 0.27416, 5e-6);
  EXPECT_NEAR(at.X, 2.41868, 5e-6);
  EXPECT_NEAR(at.Highest.Angle, 59.8963, 5e-5);
  EXPECT_NEAR(at.Highest.Mu, 0.69748, 5e-6);
  EXPECT_NEAR(at.Highest.Nu, 0.40438, 5e-6);
  EXPECT_NEAR(at.Highest.K, 0.559928, 5e-7);
  EXPECT_NEAR(at.Highest.LengthKm, 11.2214, 5e-5);
  EXPECT_NEAR(FromKm(at.Highest.LengthKm, WaveDistance::NauticalMiles), 6.055, 5e-4);
  struct Case {
    const char* about;
    std::optional<double> halfWidth;
    double b, amplitude, velocity, fpm;
  };
  const Case cases[] = {
      {"default mountain", std::nullopt, 1.78594, 514.9, 5.998, 1180.8},
      {"5 km", 5.0, 5, 238.4, 2.777, 546.6},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.about);
    const Wave wave = WaveOf(at, at.Highest, 1000, c.halfWidth);
    EXPECT_NEAR(wave.HalfWidthKm, c.b, 5e-6);
    EXPECT_NEAR(wave.Amplitude, c.amplitude, 0.05);
    EXPECT_NEAR(wave.MaxVelocity, c.velocity, 5e-4);
    EXPECT_NEAR(FromMs(wave.MaxVelocity, VerticalUnits::FeetPerMinute), c.fpm, 0.1);
  }
}

TEST(WaveModel, WinterReferenceSounding) {
  const WaveResults results = Waves(test::ReferenceWinter());
  const RidgeWaves& behind = results.Ridges.front();
  struct Case {
    double press, depth, fall, x, angle, length, amplitude, velocity;
    PassedOver why;
  };
  const Case cases[] = {
      {880, 1.048, 5.721, 2.508, 57.96, 3.158, 362, 11.07, PassedOver::No},
      {850, 1.323, 1.522, 1.631, 85.71, 6.875, 193, 2.58, PassedOver::Nearby},
      {250, 9.865, 0.0440, 2.070, 69.01, 11.62, 72, 1.92, PassedOver::No},
  };
  int trapped = 0;
  for (const Interface& at : behind.Interfaces) trapped += at.X > 0 ? 1 : 0;
  EXPECT_EQ(trapped, 3);
  for (const Case& c : cases) {
    SCOPED_TRACE(c.press);
    const auto at = std::ranges::find(behind.Interfaces, c.press, &Interface::Press);
    ASSERT_NE(at, behind.Interfaces.end());
    EXPECT_NEAR(at->DepthKm, c.depth, 6e-4);
    EXPECT_NEAR(at->Fall, c.fall, 6e-4);
    EXPECT_NEAR(at->X, c.x, 6e-4);
    EXPECT_NEAR(at->Highest.Angle, c.angle, 6e-3);
    EXPECT_NEAR(at->Highest.LengthKm, c.length, c.length > 10 ? 6e-3 : 6e-4);
    EXPECT_EQ(at->Why, c.why);
    const Wave wave = WaveOf(*at, at->Highest, 1000, std::nullopt);
    EXPECT_NEAR(wave.Amplitude, c.amplitude, 0.6);
    EXPECT_NEAR(wave.MaxVelocity, c.velocity, 6e-3);
  }
  const Wave* first = behind.Predominant();
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(first->At.Press, 880);
  ASSERT_EQ(behind.Waves.size(), 2U);
  EXPECT_EQ(behind.Waves[1].Kind, WaveKind::Subordinate);
}

TEST(WaveModel, OnlyTheWindAcrossTheRidgeCounts) {
  const SoundingRecord sounding = test::ReferenceWinter();
  const Air air = AirOf(sounding, analysis::DeriveLevels(sounding, Options{}));
  // At the crest, 1120 m above the sea, the wind is some 272/24 kt: 12.5 m/s.
  struct Case {
    const char* about;
    double axis, wind;
    bool flows;
  };
  const Case cases[] = {
      {"any axis", 0, 12.47, true},
      {"square to the ridge", 182, 12.47, true},
      {"the ridge looked at from the other end", 2, 12.47, true},
      {"a little less than 60 degrees off the normal", 123.5, 12.47 * 0.51, true},
      {"more than 60 degrees off", 120, 12.47 * 0.457, false},
      {"along the ridge", 93, 0, false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.about);
    const CrossFlow flow = FlowAcross(air, 1000, c.axis);
    EXPECT_NEAR(flow.CrestWind, c.wind, 0.15);
    EXPECT_EQ(flow.WhyNone.empty(), c.flows);
  }
}

TEST(WaveModel, FlowEndsBelowTheCriticalLevel) {
  SoundingRecord sounding = test::ReferenceWinter();
  test::ChangeWinds(sounding, [](WindLevel& wind) {
    if (wind.Height >= 5000) wind.Dir = 95;  // turned round
  });
  const Air air = AirOf(sounding, analysis::DeriveLevels(sounding, Options{}));
  const CrossFlow flow = FlowAcross(air, 1000, 5);
  ASSERT_TRUE(flow.CriticalHeight);
  EXPECT_LT(flow.Levels.back().Height, *flow.CriticalHeight);
  EXPECT_GT(flow.Levels.back().Height, 3500);
  EXPECT_LT(*flow.CriticalHeight, 4900);
}

TEST(WaveModel, BreakingWavesAreHeldWhereTheyOverturn) {
  const Interface at = TwoLayers();
  const Wave low = WaveOf(at, at.Highest, 1000, std::nullopt);
  // 0.5149 km · μ/sin(μH), greatest at the ground: 0.5149 · 0.69748/sin(2.0924) = 0.4145.
  EXPECT_NEAR(low.Steepness, 0.4145, 1e-3);
  const Wave high = WaveOf(at, at.Highest, 4000, std::nullopt);
  EXPECT_NEAR(high.Steepness, 4 * 0.4145, 4e-3);
  EXPECT_TRUE(high.Breaks());
  EXPECT_NEAR(high.Amplitude, 514.9 / 0.4145, 3);
  EXPECT_NEAR(high.MaxVelocity / high.Amplitude, low.MaxVelocity / low.Amplitude, 1e-9);
}

TEST(WaveModel, LowerModesAreHarmonics) {
  // Deep stable layer under a weakly stable one: x = 5.4, so that one lower mode is left.
  Interface at{.DepthKm = 6, .L2Below = 0.90, .L2Above = 0.09, .Fall = 0.81};
  at.X = 5.4;
  const double angle = ModeAngle(at.X, 1);
  EXPECT_NEAR(Radians(angle) + at.X * std::sin(Radians(angle)), kPi, 1e-9);
  const Mode first = ModeOf(at.Fall, at.L2Above, 1, angle);
  const Mode second = ModeOf(at.Fall, at.L2Above, 2, ModeAngle(at.X, 2));
  EXPECT_GT(first.K, second.K);  // the lower mode is the shorter wave
  // The free-mode condition of the two layers, tan μH = −μ/ν.
  for (const Mode& mode : {first, second}) {
    EXPECT_NEAR(std::tan(mode.Mu * at.DepthKm), -mode.Mu / mode.Nu, 1e-4);
    EXPECT_NEAR(at.L2Below - mode.K * mode.K, mode.Mu * mode.Mu, 1e-9);
  }
}

TEST(WaveModel, TwoWavesAdd) {
  const double length = 10;
  const double k = 2 * kPi / length;
  EXPECT_NEAR(CombinedAmplitude(1, 0.6, k, length), 1.600, 5e-4);
  EXPECT_NEAR(CombinedAmplitude(1, 0.6, k, 1.5 * length), 0.400, 5e-4);
  EXPECT_NEAR(CombinedAmplitude(1, 0.6, k, 1.25 * length), 1.166, 5e-4);
  EXPECT_NEAR(CombinedAmplitude(1, 1, k, 0.5 * length), 0, 1e-5);
  // The field behind the second ridge is that sum.
  const Wave wave = WaveOf(TwoLayers(), TwoLayers().Highest, 1000, std::nullopt);
  const double waveLength = wave.Of.LengthKm;
  for (const double distance : {1.0, 1.25, 1.5}) {
    WaveResults two{.IsDefault = false, .DistanceKm = distance * waveLength, .Ridges = {{}, {}}};
    two.Ridges[0].Waves = {wave};
    two.Ridges[1].Waves = {wave};
    two.Ridges[1].Waves[0].Mountain = 2;
    two.Ridges[1].Waves[0].MaxVelocity *= 0.6;
    double most = 0;
    for (double x = two.DistanceKm; x < two.DistanceKm + waveLength; x += waveLength / 500) {
      most = std::max(most, MotionAt(two, {}, x, 2).Velocity);
    }
    EXPECT_NEAR(most, CombinedAmplitude(1, 0.6, wave.Of.K, two.DistanceKm) * VelocityAt(wave, 2),
                0.002);
  }
}

TEST(WaveModel, DecayDownstream) {
  EXPECT_NEAR(LeftAfter(30, {20, 1}, 10), 0.512, 5e-4);
  EXPECT_NEAR(LeftAfter(30, {20, 2}, 10), 0.7155, 5e-5);
  EXPECT_NEAR(LeftAfter(10, {100, 1}, 10), 0.001, 1e-9);
  EXPECT_EQ(LeftAfter(50, {0, 1}, 10), 1);
}

TEST(WaveModel, FieldAgreesWithTheWave) {
  Wave wave = WaveOf(TwoLayers(), TwoLayers().Highest, 1000, std::nullopt);
  EXPECT_NEAR(ShareAt(wave, 0), 0, 1e-12);
  double most = 0;
  for (double z = 0; z < 12; z += 0.01) most = std::max(most, VelocityAt(wave, z));
  EXPECT_NEAR(most, wave.MaxVelocity, 0.02);
  EXPECT_NEAR(ShareAt(wave, 3 - 1e-9), ShareAt(wave, 3 + 1e-9), 1e-6);
  // At the interface w is the slope of the streamline times the wind there.
  WaveResults results;
  results.Ridges = {{.Waves = {wave}}};
  const double x = 5.3;
  const double slope = (MotionAt(results, {}, x + 0.001, 3).Displacement -
                        MotionAt(results, {}, x - 0.001, 3).Displacement) /
                       2.0;
  EXPECT_NEAR(MotionAt(results, {}, x, 3).Velocity, slope * wave.At.WindHere, 0.03);
  // The trough comes first; ahead of the ridge nothing moves.
  EXPECT_LT(MotionAt(results, {}, wave.Of.LengthKm / 4, 1.5).Displacement, -100);
  EXPECT_LT(MotionAt(results, {}, 0.01, 1.5).Velocity, 0);
  EXPECT_EQ(MotionAt(results, {}, -1, 1.5).Velocity, 0);
}

TEST(WaveModel, PoorSoundingsGiveASentence) {
  const SoundingRecord winter = test::ReferenceWinter();
  SoundingRecord windless = test::WithoutWinds(winter);
  SoundingRecord aloft = windless;
  aloft.AddWind(6000, 290, 60);
  aloft.AddWind(9000, 290, 80);
  SoundingRecord shallow = windless;
  shallow.AddWind(120, 290, 20);
  shallow.AddWind(900, 290, 30);
  SoundingRecord calm = winter;
  test::ChangeWinds(calm, [](WindLevel& wind) { wind.Spd = 0; });
  const MountainParameters low{.First = {300, 2, 0}};
  const SoundingRecord single = test::Profile({{1000, 10, 5}}, {{0, 270, 20}, {3000, 270, 30}});
  const std::tuple<SoundingRecord, Site, const char*> cases[] = {
      {windless, {}, "The sounding has no winds."},
      {aloft, {}, "The winds begin above the mountain's crest."},
      {shallow, {}, "The winds end below the mountain's crest."},
      {calm, {}, "The wind across the ridge at its crest is too weak."},
      {winter, low, "The mountain does not rise above the station."},
      {single, {}, "The sounding has fewer than three levels with temperature and wind."},
      {SoundingRecord{}, {}, "The sounding has no winds."},
  };
  for (const auto& [sounding, site, why] : cases) {
    const WaveResults results = Waves(sounding, site);
    EXPECT_FALSE(results.Any()) << why;
    EXPECT_EQ(results.Ridges.front().Flow.WhyNone, why);
  }
}

// 5 m/s are 9.72 kt of 0.5144 m/s; a wind from the west is 60 degrees off the normal of a ridge
// along 120 degrees.
TEST(WaveModel, TheCrestNeedsFiveMetresASecondWithin60Degrees) {
  for (const auto& [knots, axis, flows] :
       {std::tuple(9.70, 180, false), std::tuple(9.74, 180, true), std::tuple(40.0, 119, false),
        std::tuple(40.0, 121, true)}) {
    SoundingRecord steady = test::ReferenceWinter();
    test::ChangeWinds(steady, [speed = knots](WindLevel& wind) {
      wind.Dir = 270;
      wind.Spd = speed;
    });
    const Air air = AirOf(steady, analysis::DeriveLevels(steady, Options{}));
    EXPECT_EQ(FlowAcross(air, 1000, axis).WhyNone.empty(), flows) << knots << ' ' << axis;
  }
}

// As a mountain grows and as the wind freshens, waves come in at the limits, 0.25 m/s and 2 km.
TEST(WaveModel, FaintAndShortWavesAreLeftOut) {
  double faintest = 100, shortest = 100;
  for (double feet = 500; feet < 9000; feet *= 1.005) {
    const MountainParameters growing{.First = {feet, 3, 0}};
    const WaveResults results = Waves(test::ReferenceWinter(), growing);
    for (const Wave* wave : results.All()) faintest = std::min(faintest, wave->MaxVelocity);
  }
  EXPECT_GE(faintest, 0.25);
  EXPECT_LT(faintest, 0.255);
  for (double share = 0.4; share < 1; share *= 1.005) {
    SoundingRecord fresher = test::ReferenceWinter();
    test::ChangeWinds(fresher, [share](WindLevel& wind) { wind.Spd *= share; });
    const WaveResults results = Waves(fresher);
    for (const Wave* wave : results.All()) shortest = std::min(shortest, wave->Of.LengthKm);
  }
  EXPECT_GE(shortest, 2);
  EXPECT_LT(shortest, 2.05);
}

// 4 km of air whose l² is 0.25 km⁻² more than that above: x = 2 and r = 71.206°, so that by hand
// k² = l² above + 0.25·cos² r = l² above + 0.025947 km⁻².
TEST(WaveModel, WavesAreFrom2To64KmLong) {
  for (const auto& [above, lengthKm, why] :
       {std::tuple(9.943099F, 1.99, PassedOver::Length),
        std::tuple(9.745697F, 2.01, PassedOver::No), std::tuple(-0.0161562F, 63.5, PassedOver::No),
        std::tuple(-0.0164574F, 64.5, PassedOver::Length)}) {
    const CrossFlow flow{.Levels = {{.Density = 1, .Wind = 10},
                                    {.Height = 4000, .Density = 1, .Wind = 10},
                                    {.Height = 8000, .Density = 1, .Wind = 10}},
                         .GroundDensity = 1};
    const std::vector<Interface> interfaces =
        FindInterfaces(flow, {{.StabilityTerm = above + 0.25F}, {.StabilityTerm = above}});
    ASSERT_EQ(interfaces.size(), 1U);
    EXPECT_NEAR(interfaces[0].Highest.LengthKm, lengthKm, 0.01);
    EXPECT_EQ(interfaces[0].Why, why) << lengthKm;
  }
}

TEST(WaveModel, WildProfilesGiveNoNumbersThatAreNone) {
  const auto allFinite = [](const WaveResults& results) {
    for (const Wave* wave : results.All()) {
      for (const double value : {wave->Amplitude, wave->MaxVelocity, wave->Of.LengthKm,
                                 VelocityAt(*wave, 1), VelocityAt(*wave, 20)}) {
        if (!std::isfinite(value)) return false;
      }
      if (VelocityAt(*wave, wave->At.DepthKm) > wave->MaxVelocity * 1.0001) return false;
    }
    return true;
  };
  struct Case {
    const char* about;
    double lapse;  // °C from level to level
    double speed;  // kt at the ground
    double shear;  // kt from level to level
  };
  const Case cases[] = {
      {"huge stability", 40, 25, 0}, {"unstable", -30, 20, 5}, {"jet", -2, 10, 40}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.about);
    SoundingRecord sounding;
    for (int i = 0; i < 18; ++i) {
      const double press = 1000 * std::pow(0.88, i);
      const double flip = i % 5 == 0 ? 12 : 0;  // jumps of the stability
      sounding.AddTemp(press, std::max(-100.0, 10 + c.lapse * i * 0.5 + flip), kMissing);
      sounding.AddWind(1000.0 * i, 270, std::max(0.0, c.speed + c.shear * i));
    }
    EXPECT_TRUE(allFinite(Waves(sounding)));
    EXPECT_TRUE(allFinite(Waves(
        sounding, MountainParameters{
                      .First = {32000, 0.1, 360}, .DistanceNm = 500, .Second = {100, 50, 1}})));
  }
}

TEST(WaveModel, SecondMountainStandsAlone) {
  const SoundingRecord sounding = test::ReferenceWinter();
  const MountainParameters along{.First = {4000, 2, 0}, .DistanceNm = 5, .Second = {4000, 2, 95}};
  const WaveResults results = Waves(sounding, along);
  ASSERT_EQ(results.Ridges.size(), 2U);
  EXPECT_FALSE(results.Ridges[0].Waves.empty());
  EXPECT_TRUE(results.Ridges[1].Waves.empty());
  const MountainParameters twice{.First = {4000, 2, 0}, .DistanceNm = 5, .Second = {4000, 2, 0}};
  const WaveResults both = Waves(sounding, twice);
  ASSERT_EQ(both.Ridges[1].Waves.size(), results.Ridges[0].Waves.size());
  EXPECT_EQ(both.Ridges[1].Waves[0].MaxVelocity, results.Ridges[0].Waves[0].MaxVelocity);
  EXPECT_EQ(both.Ridges[1].Waves[0].Mountain, 2);
  EXPECT_EQ(both.All()[1]->Kind, WaveKind::Predominant);
}

}  // namespace
}  // namespace vexa::mountainwave
