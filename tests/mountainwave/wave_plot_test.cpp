// The wave diagram and the sweep, looked at item by item.
#include "mountainwave/wave_plot.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "config/options.h"
#include "mountainwave/wave_sweep.h"
#include "support/soundings.h"

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

int CountOf(const Picture& page, std::string_view tag) {
  return static_cast<int>(
      std::ranges::count_if(page.Items(), [tag](const Item& item) { return item.Tag == tag; }));
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
  EXPECT_EQ(CountOf(all.Page, "terrain"), 1);
  EXPECT_EQ(CountOf(all.Page, "interface"), 2);  // 880 and 250 hPa
  EXPECT_GT(CountOf(all.Page, "updraught"), 20);
  EXPECT_GT(CountOf(all.Page, "downdraught"), 20);
  EXPECT_EQ(CountOf(all.Page, "streamline") > 5, true);
  EXPECT_EQ(CountOf(all.Page, "rotor"), 6);  // three crests, circle and letter
  EXPECT_EQ(CountOf(all.Page, "normal wind"), 1);
  EXPECT_EQ(CountOf(all.Page, "Scorer parameter"), 1);
  scene.Set.LabelsOnly = true;
  scene.Set.WindProfile = scene.Set.ScorerProfile = false;
  const WavePlot labels = PlotWaves(scene.Input(), kPage);
  for (const char* tag : {"updraught", "streamline", "rotor", "normal wind", "Scorer parameter"}) {
    EXPECT_EQ(CountOf(labels.Page, tag), 0) << tag;
  }
  EXPECT_EQ(CountOf(labels.Page, "interface"), 2);
  EXPECT_GT(labels.At.Frame().Width(), all.At.Frame().Width());
  // Everything stays on the page, on narrow ones too.
  for (const Surface& surface : {Surface{12000, 9000}, Surface{7000, 9000}, Surface{20000, 7000}}) {
    scene.Set = {};
    scene.Set.Scale = WaveScale::Pressure;
    const WavePlot plot = PlotWaves(scene.Input(), surface);
    for (const Item& item : plot.Page.Items()) {
      const auto* line = std::get_if<Polyline>(&item.Shape);
      if (line == nullptr) continue;
      for (const Point& point : line->Points) {
        EXPECT_TRUE(point.X >= 0 && point.X <= surface.Width && point.Y >= -1 &&
                    point.Y <= surface.Height)
            << item.Tag << " " << point.X << " " << point.Y;
      }
    }
  }
}

TEST(WavePlot, SaysWhyThereIsNothing) {
  Scene scene;
  scene.Sounding.WindHgt.Clear();
  scene.Sounding.WindDir.Clear();
  scene.Sounding.WindSpd.Clear();
  const WavePlot plot = PlotWaves(scene.Input(), kPage);
  EXPECT_EQ(CountOf(plot.Page, "remark"), 2);
  EXPECT_EQ(CountOf(plot.Page, "streamline"), 0);
  scene.Sounding = {};
  EXPECT_EQ(CountOf(PlotWaves(scene.Input(), kPage).Page, "remark"), 2);
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
  const Picture chart =
      PlotSweep(sweep, {.Relief = 1000, .HalfWidthKm = 3, .Axis = 200}, kMetricUnits, Options{});
  EXPECT_EQ(CountOf(chart, "marked ridge"), 1);
  EXPECT_GT(CountOf(chart, "sweep"), 0);
}

}  // namespace
}  // namespace vexa::mountainwave
