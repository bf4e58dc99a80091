#include "hodograph/hodogram_plot.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "support/soundings.h"
#include "support/tagged_items.h"

namespace vexa::hodograph {
namespace {

constexpr Surface kPage = ImageSurface(1000, 750);

// A west wind of 10 kt carries a balloon that rises 3000 m at 5 m/s for 600 s: 3086.4 m eastwards;
// then 20 kt from the south for 200 s.
TEST(Trajectory, IsCarriedByTheMeanWindOfEachLayer) {
  const SoundingRecord sounding =
      test::Profile({}, {{0, 270, 10}, {3000, 270, 10}, {3001, 180, 20}, {4001, 180, 20}});
  const std::vector<TrajectoryPoint> points = Trajectory(sounding, {});
  ASSERT_GE(points.size(), 4u);
  EXPECT_EQ(points.front().East, 0);
  const auto at3km = std::ranges::find(points, 3000, &TrajectoryPoint::Height);
  ASSERT_NE(at3km, points.end());
  EXPECT_NEAR(at3km->East, 3086.4, 0.01);
  EXPECT_NEAR(at3km->North, 0, 0.01);
  EXPECT_NEAR(points.back().North, 2057.6, 2);  // 20 kt x 0.5144 x 200 s
  EXPECT_NEAR(points.back().East, 3086.4, 2);
}

TEST(Hodogram, ViewsFromAllSides) {
  const Hodogram hodogram = MakeHodogram(test::Profile({}, {{0, 270, 20}, {4000, 270, 20}}), {});
  const struct {
    const char* about;
    double azimuth, tilt;
    int right, up;  // where the balloon, which drifts eastwards, ends as seen from its start
    int northRight, northUp;
  } cases[] = {
      {"level, looking north", 0, 0, 1, 1, 0, 0},
      {"level, looking east", 90, 0, 0, 1, -1, 0},
      {"level, looking south", 180, 0, -1, 1, 0, 0},
      {"from above, north ahead", 0, 90, 1, 0, 0, 1},
      {"from above, east ahead", 90, 90, 0, 1, -1, 0},
  };
  const auto sign = [](double value) { return std::fabs(value) < 1 ? 0 : value > 0 ? 1 : -1; };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.about);
    Hodogram3DSettings view;
    view.Azimuth = c.azimuth;
    view.Tilt = c.tilt;
    const Picture page = PlotHodogram(hodogram, view, kPage);
    const auto leads = [&](std::string_view tag) {
      const auto lines = test::Tagged<Polyline>(page, tag);
      const Point from = lines.front().Points.front(), to = lines.back().Points.back();
      return std::pair(sign(to.X - from.X), sign(from.Y - to.Y));
    };
    EXPECT_EQ(leads("trajectory"), std::pair(c.right, c.up));
    EXPECT_EQ(leads("north pointer"), std::pair(c.northRight, c.northUp));
  }
}

TEST(Hodogram, StaysOnThePageFromEverySide) {
  const Hodogram hodogram = MakeHodogram(test::ReferenceWinter(), {});
  Hodogram3DSettings view;
  for (int azimuth = 0; azimuth < 360; azimuth += 15) {
    for (int tilt = -90; tilt <= 90; tilt += 15) {
      view.Azimuth = azimuth;
      view.Tilt = tilt;
      const Picture page = PlotHodogram(hodogram, view, kPage);
      for (const Item& item : page.Items()) {
        const auto* line = std::get_if<Polyline>(&item.Shape);
        if (line == nullptr) continue;
        for (const Point& point : line->Points) {
          ASSERT_TRUE((Rect{0, 0, page.Width(), page.Height()}.Contains(point)))
              << item.Tag << " at azimuth " << azimuth << ", tilt " << tilt;
        }
      }
    }
  }
}

TEST(Hodogram, FewWindsGiveASentence) {
  for (const SoundingRecord& sounding : {test::Profile({}), test::Profile({}, {{0, 200, 10}}),
                                         test::Profile({}, {{0, 360, 0}, {9000, 360, 0}})}) {
    const Picture page = PlotHodogram(MakeHodogram(sounding, {}), {}, kPage);
    EXPECT_EQ(!test::Tagged(page, "remark").empty(), sounding.NumWindLevels() < 2);
  }
}

TEST(Hodogram, TurningWrapsTheAzimuthAndKeepsTheTilt) {
  Hodogram3DSettings view;
  view.Azimuth = 358;
  view.Tilt = 88;
  view = Turned(view, 5, 5);
  EXPECT_NEAR(view.Azimuth, 3, 1e-9);
  EXPECT_EQ(view.Tilt, 90);
  EXPECT_NEAR(Turned(view, -5, 0).Azimuth, 358, 1e-9);
}

}  // namespace
}  // namespace vexa::hodograph
