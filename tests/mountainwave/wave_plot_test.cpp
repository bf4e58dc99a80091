// The wave diagram and the sweep, looked at item by item.
#include "mountainwave/wave_plot.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "config/options.h"
#include "mountainwave/wave_sweep.h"
#include "support/page_checks.h"
#include "support/soundings.h"
#include "support/tagged_items.h"

namespace vexa::mountainwave {
namespace {

constexpr Surface kPage = ImageSurface(1000, 750);

struct Scene {
  SoundingRecord Sounding = test::ReferenceWinter();
  Site Mountains{};
  WaveOptions Set{};
  Options Look{};
  analysis::LevelProfile Levels{};
  WaveResults Waves{};

  WavePlotInput Input() {
    Levels = analysis::DeriveLevels(Sounding, Look);
    Waves = ComputeWaves(Sounding, Levels, Mountains);
    return {{Sounding, Mountains, Waves, Set}, Levels, Look};
  }
};

// A window of 800 x 600, an ultra-wide one, a tall dock and a sheet of A4.
constexpr Surface kChartPages[] = {WindowSurface(780, 480), WindowSurface(3400, 1300),
                                   WindowSurface(420, 1200), PaperSurfaceMm(190, 277)};

// In order, and its frames take the page but for a margin of numbers and captions.
void ExpectFilled(const Picture& chart, const Surface& surface) {
  SCOPED_TRACE(testing::Message() << surface.Width << " x " << surface.Height);
  test::ExpectOrderly(chart, {0, 0, surface.Width, surface.Height});
  Rect frames{surface.Width, surface.Height, 0, 0};
  for (const Polyline& frame : test::Tagged<Polyline>(chart, "frame")) {
    for (const Point& at : frame.Points) {
      frames = {std::min(frames.Left, at.X), std::min(frames.Top, at.Y),
                std::max(frames.Right, at.X), std::max(frames.Bottom, at.Y)};
    }
  }
  EXPECT_LT(frames.Left, Px(80));
  EXPECT_LT(frames.Top, Px(80));
  EXPECT_GT(frames.Right, surface.Width - Px(40));
  EXPECT_GT(frames.Bottom, surface.Height - Px(90));
}

TEST(WavePlot, MappingRunsBothWays) {
  Scene scene;
  const WavePlotInput input = scene.Input();
  for (const bool byPress : {false, true}) {
    const WaveMapping at({900, 500, 9000, 8000}, -5, 40, 12, byPress, input.Levels);
    for (const double km : {-5.0, 0.0, 13.3, 40.0}) EXPECT_NEAR(at.KmAt(at.X(km)), km, 1e-9);
    for (const double z : {0.0, 0.1, 3.3, 11.9, 12.0}) {
      EXPECT_NEAR(at.HeightAt(at.Y(z)), z, 1e-6);
    }
    EXPECT_EQ(at.Y(0), 8000);
    EXPECT_NEAR(at.Y(12), 500, 1e-6);
  }
  // Halfway between ln 1005 and ln 194 lies 441.6 hPa, by hand between 450 hPa at 6.036 km and
  // 400 hPa at 6.835 km above the station.
  const WaveMapping press({0, 0, 1000, 1000}, 0, 10, 11.5, true, input.Levels);
  EXPECT_NEAR(press.HeightAt(500), 6.16, 0.03);
}

TEST(WavePlot, ShowsWhatIsAskedFor) {
  Scene scene;
  const WavePlot all = PlotWaves(scene.Input(), kPage);
  EXPECT_EQ(test::CountOf(all.Page, "terrain"), 1);
  EXPECT_EQ(test::CountOf(all.Page, "interface"), 2);  // 880 and 250 hPa
  EXPECT_GT(test::CountOf(all.Page, "updraught"), 20);
  EXPECT_GT(test::CountOf(all.Page, "downdraught"), 20);
  EXPECT_GT(test::CountOf(all.Page, "streamline"), 5);
  EXPECT_EQ(test::CountOf(all.Page, "rotor"), 6);  // three crests, circle and letter
  EXPECT_EQ(test::CountOf(all.Page, "normal wind"), 1);
  EXPECT_EQ(test::CountOf(all.Page, "Scorer parameter"), 1);
  scene.Set.LabelsOnly = true;
  scene.Set.WindProfile = scene.Set.ScorerProfile = false;
  const WavePlot labels = PlotWaves(scene.Input(), kPage);
  for (const char* tag : {"updraught", "streamline", "rotor", "normal wind", "Scorer parameter"}) {
    EXPECT_EQ(test::CountOf(labels.Page, tag), 0) << tag;
  }
  EXPECT_EQ(test::CountOf(labels.Page, "interface"), 2);
  EXPECT_GT(labels.At.Frame().Width(), all.At.Frame().Width());
}

TEST(WavePlot, PagesOfAllSizesAreOrderly) {
  // Windows on screens of 800 x 600 and of 1920 x 1080, A4 upright and across.
  const std::pair<Surface, WaveScale> pages[] = {{ImageSurface(760, 480), WaveScale::Pressure},
                                                 {ImageSurface(1900, 980), WaveScale::Feet},
                                                 {PaperSurfaceMm(210, 297), WaveScale::Kilometers},
                                                 {PaperSurfaceMm(297, 210), WaveScale::Pressure}};
  for (const auto& [surface, scale] : pages) {
    SCOPED_TRACE(testing::Message() << surface.Width << " x " << surface.Height);
    Scene scene;
    scene.Mountains = MountainParameters{{3000, 1, 0}, 5, {2500, 0.8, 0}};
    scene.Set.Scale = scale;
    const Rect page{0, 0, surface.Width, surface.Height};
    const Picture waves = PlotWaves(scene.Input(), surface).Page;
    test::ExpectOrderly(waves, page);
    // A profile stands in its column or is named as left out.
    EXPECT_EQ(test::CountOf(waves, "Scorer parameter") + test::CountOf(waves, "left out"), 1);
    scene.Sounding = test::WithoutWinds(scene.Sounding);
    test::ExpectOrderly(PlotWaves(scene.Input(), surface).Page, page);
  }
}

TEST(WavePlot, ShowsTheSelectedWave) {
  Scene scene;
  static_cast<void>(scene.Input());  // computes them
  const std::vector<const Wave*> waves = scene.Waves.All();
  ASSERT_EQ(waves.size(), 2U);
  const WaveSource second{scene.Sounding, scene.Mountains, scene.Waves, scene.Set, waves[1]};
  const WavePlotInput selected{second, scene.Levels, scene.Look};
  // Half a wavelength of 11.62 km behind the ridge the second wave rises fastest, at z = π/2μ with
  // μ = √0.0440·sin 69.01°: 8.02 km; its 1.92 m/s are read there.
  const WavePlot plot = PlotWaves(selected, kPage);
  const std::string read =
      ReadWaves({second, scene.Levels, scene.Look}, plot.At, {plot.At.X(5.81), plot.At.Y(8.02)});
  EXPECT_NE(read.find("378 fpm"), std::string::npos) << read;
  // Diagrams that end at 500 hPa are lowered in pressure to show it, and left alone for the first.
  scene.Set.UpperLimit = 500;
  EXPECT_LT(AdjustedTo(selected).UpperLimit, 250);
  EXPECT_EQ(AdjustedTo(scene.Input()), scene.Set);
}

TEST(WavePlot, IsentropesCrowdWhereTheAirIsStable) {
  Scene scene;
  scene.Set.Traces = WaveTraces::Isentropes;
  const WavePlot plot = PlotWaves(scene.Input(), kPage);
  std::vector<double> heights;  // where the lines enter at the left
  for (const Polyline& line : test::Tagged<Polyline>(plot.Page, "streamline")) {
    const Point& first = line.Points.front();
    if (first.X < plot.At.Frame().Left + 1) heights.push_back(plot.At.HeightAt(first.Y));
  }
  ASSERT_GT(heights.size(), 6U);
  std::vector<double> steps;
  for (std::size_t i = 1; i < heights.size(); ++i) steps.push_back(heights[i] - heights[i - 1]);
  const auto [least, most] = std::ranges::minmax(steps);
  EXPECT_GT(least, 0);
  EXPECT_GT(most, 2 * least);  // the stratosphere beside the troposphere
}

TEST(WavePlot, SaysWhyThereIsNothing) {
  Scene scene;
  scene.Sounding = test::WithoutWinds(scene.Sounding);
  const WavePlot plot = PlotWaves(scene.Input(), kPage);
  EXPECT_EQ(test::CountOf(plot.Page, "remark"), 2);
  EXPECT_EQ(test::CountOf(plot.Page, "streamline"), 0);
  scene.Sounding = {};
  EXPECT_EQ(test::CountOf(PlotWaves(scene.Input(), kPage).Page, "remark"), 2);
}

TEST(WavePlot, PointerReadsTheField) {
  Scene scene;
  scene.Set.Units = kMetricUnits;
  const WavePlotInput input = scene.Input();
  const WavePlot plot = PlotWaves(input, kPage);
  EXPECT_EQ(ReadWaves(input, plot.At, {plot.At.Frame().Left - 1, 5000}), "");
  // Half a wavelength behind the ridge the air rises fastest, 11.07 m/s where sin μz is 1: at
  // π/2μ = 0.775 km (μ = √5.721·sin 57.96°), 895 m above the sea.
  const std::string read = ReadWaves(input, plot.At, {plot.At.X(3.158 / 2), plot.At.Y(0.775)});
  EXPECT_TRUE(read.starts_with("Vertical velocity 11.") ||
              read.starts_with("Vertical velocity 10."))
      << read;
  EXPECT_TRUE(read.ends_with(" m/s, 1.6 km downstream, 895 m")) << read;
}

TEST(WaveSweep, IsTheModelAtEveryPoint) {
  Scene scene;
  const WavePlotInput input = scene.Input();
  const Air air = AirOf(scene.Sounding, input.Levels);
  const Sweep sweep = SweepMountain(air, 1000, 24, 5);
  int calm = 0;
  for (int axis = 0; axis < sweep.Axes; ++axis) {
    for (int width = 0; width < sweep.Widths; ++width) {
      const RidgeWaves behind = WavesBehind(
          air, {.Relief = 1000, .HalfWidthKm = sweep.WidthOf(width), .Axis = sweep.AxisOf(axis)},
          1);
      const double velocity =
          behind.Predominant() == nullptr ? 0 : behind.Predominant()->MaxVelocity;
      EXPECT_NEAR(sweep.At(axis, width), velocity, 1e-9);
      calm += velocity == 0 ? 1 : 0;
    }
  }
  EXPECT_GT(calm, 0);
  EXPECT_LT(calm, sweep.Axes * sweep.Widths);
  // A ridge looked at from its other end is the same ridge.
  EXPECT_NEAR(sweep.At(2, 2), sweep.At(14, 2), 1e-6);
  for (const Surface& surface : kChartPages) {
    const Picture chart = PlotSweep(sweep, {.Relief = 1000, .HalfWidthKm = 3, .Axis = 200},
                                    kMetricUnits, Options{}, surface);
    EXPECT_EQ(test::CountOf(chart, "marked ridge"), 1);
    EXPECT_GT(test::CountOf(chart, "sweep"), 0);
    ExpectFilled(chart, surface);
  }
}

TEST(WaveSweep, SoundingsInTurnShowTheirOwnAir) {
  Scene scene;
  const RidgeForm form{.Relief = 1000, .HalfWidthKm = 1, .Axis = 180};
  const Air air = AirOf(scene.Sounding, scene.Input().Levels);
  const SeriesMember windy = MemberOf(air, "12 UTC", form, 36);
  const RidgeWaves behind = WavesBehind(air, form, 1);
  ASSERT_NE(behind.Predominant(), nullptr);
  EXPECT_EQ(windy.Velocity, behind.Predominant()->MaxVelocity);
  EXPECT_NEAR(windy.ByAxis[17], windy.Velocity, 1e-9);  // 180 degrees
  scene.Sounding = test::WithoutWinds(scene.Sounding);
  const SeriesMember calm = MemberOf(AirOf(scene.Sounding, scene.Input().Levels), "18 UTC", form);
  EXPECT_EQ(calm.Velocity, 0);
  std::vector<SeriesMember> members(40, windy);
  members.push_back(calm);
  for (const Surface& surface : kChartPages) {
    const Picture chart = PlotSeries(members, form, kMetricUnits, Options{}, surface);
    EXPECT_EQ(test::CountOf(chart, "series bar"), 40);
    ExpectFilled(chart, surface);
  }
}

}  // namespace
}  // namespace vexa::mountainwave
