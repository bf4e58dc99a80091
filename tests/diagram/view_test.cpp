// How a diagram is looked at: enlarged regions, other soundings beside the first, extra lines.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "diagram/cursor_marks.h"
#include "diagram/drawn.h"
#include "diagram/palette.h"
#include "support/soundings.h"

namespace vexa::diagram {
namespace {

using test::Profile;

constexpr Rect kFrame{1300, 620, 7900, 8220};

constexpr DiagramType kTypes[] = {DiagramType::SkewT, DiagramType::Emagram, DiagramType::Tephigram};

std::vector<Point> PointsOf(const Picture& page, std::string_view tag) {
  std::vector<Point> points;
  for (const auto& line : Lines(page, tag)) points.insert(points.end(), line.begin(), line.end());
  return points;
}

// A part of the frame as shares of it.
Rect SharesOf(const Rect& part) {
  return {(part.Left - kFrame.Left) / kFrame.Width(), (part.Top - kFrame.Top) / kFrame.Height(),
          (part.Right - kFrame.Left) / kFrame.Width(),
          (part.Bottom - kFrame.Top) / kFrame.Height()};
}

TEST(Zoom, EnlargesARegionToTheFrameAndReadsBack) {
  for (const DiagramType type : kTypes) {
    SCOPED_TRACE(static_cast<int>(type));
    const DiagramMapping whole(type, kFrame, -40, 40, 100);
    const Point middle = whole.ToPoint(5, 700);
    // A quarter of the width and height: four times as large.
    const Rect region{middle.X - kFrame.Width() / 8, middle.Y - kFrame.Height() / 8,
                      middle.X + kFrame.Width() / 8, middle.Y + kFrame.Height() / 8};
    const DiagramMapping zoomed = whole.Zoomed(SharesOf(region));
    const Point shown = zoomed.ToPoint(5, 700);
    EXPECT_NEAR(shown.X, (kFrame.Left + kFrame.Right) / 2, 1e-3);
    EXPECT_NEAR(shown.Y, (kFrame.Top + kFrame.Bottom) / 2, 1e-3);
    const Point far = zoomed.ToPoint(12, 620);
    EXPECT_NEAR(far.X - shown.X, 4 * (whole.ToPoint(12, 620).X - middle.X), 1e-2);
    EXPECT_NEAR(far.Y - shown.Y, 4 * (whole.ToPoint(12, 620).Y - middle.Y), 1e-2);
    const DiagramCoordinates back = zoomed.ToCoordinates(far);
    EXPECT_NEAR(back.Temp, 12, 1e-3);
    EXPECT_NEAR(back.Press, 620, 1e-2);
    EXPECT_GT(zoomed.TopPress(), 400);
    EXPECT_LT(zoomed.BottomPress(), 1050);
    EXPECT_NEAR(zoomed.Whole().ToPoint(5, 700).X, middle.X, 1e-9);
  }
}

TEST(Zoom, ChosenWheeledAndPannedRegionsStayInTheFrame) {
  const DiagramMapping whole(DiagramType::SkewT, kFrame, -40, 40, 100);
  // 660 x 760 units are a tenth of the frame; a flat choice grows to the frame's proportions.
  const Rect flat = ZoomRegion(whole, {3000, 4000, 3660, 4100});
  EXPECT_NEAR(flat.Width(), 0.1, 1e-9);
  EXPECT_NEAR(flat.Height(), 0.1, 1e-9);
  EXPECT_NEAR((flat.Top + flat.Bottom) / 2, (4050.0 - 620) / 7600, 1e-9);
  EXPECT_EQ(ZoomRegion(whole, {0, 0, 100, 100}).Left, 0);

  const Point fixed{5000, 3000};
  const auto wheeled = ZoomAbout(whole, fixed, 2);
  ASSERT_TRUE(wheeled);
  const DiagramMapping twice = whole.Zoomed(*wheeled);
  EXPECT_NEAR(twice.ToCoordinates(fixed).Press, whole.ToCoordinates(fixed).Press, 1e-6);
  EXPECT_NEAR(twice.ToCoordinates(fixed).Temp, whole.ToCoordinates(fixed).Temp, 1e-6);
  EXPECT_FALSE(ZoomAbout(twice, fixed, 0.5));
  EXPECT_NEAR(ZoomAbout(whole, fixed, 1e6)->Width(), 1.0 / 20, 1e-9);

  const Rect moved = PanBy(twice, 100, 0);
  EXPECT_NEAR(moved.Left, wheeled->Left - 50 / 6600.0, 1e-9);
  EXPECT_EQ(PanBy(twice, -1e6, -1e6).Right, 1);
  EXPECT_EQ(PanBy(twice, 1e6, 1e6).Top, 0);
}

TEST(Zoom, NothingOfTheDiagramLeavesItsFrame) {
  for (const DiagramType type : kTypes) {
    SCOPED_TRACE(static_cast<int>(type));
    Drawn drawn(test::ReferenceConvective());
    drawn.Set.Diagram = type;
    drawn.Extra = {true, true, true, true};
    drawn.Set.WetLabel = drawn.Set.DryLabel = drawn.Set.SatLabel = true;
    for (const Rect& region : {Rect{0.25, 0.05, 0.5, 0.3}, Rect{0.56, 0.57, 0.81, 0.82}}) {
      drawn.Zoom = region;
      const SoundingPlot plot = drawn();
      const Rect frame = plot.Mapping.Frame();
      for (const Item& item : plot.Page.Items()) {
        if (item.Tag.starts_with("wind") || item.Tag == "hodograph") continue;
        const auto* label = std::get_if<Label>(&item.Shape);
        // Left, right and below stand axis labels; above and below it nothing else.
        if (label != nullptr && label->At.X > frame.Left && label->At.X < frame.Right) {
          EXPECT_GT(label->At.Y, 0) << item.Tag;
          EXPECT_LT(label->At.Y, plot.Page.Height()) << item.Tag << label->Text;
        }
        const auto* circle = std::get_if<Circle>(&item.Shape);
        if (circle != nullptr && circle->Center.X < frame.Right) {
          EXPECT_TRUE(frame.Contains(circle->Center)) << item.Tag;
        }
      }
      EXPECT_GE(Tagged(plot.Page, "pressure label").size(), 3u);
      EXPECT_GE(Tagged(plot.Page, "temperature label").size(), 2u);
    }
  }
}

TEST(OtherSoundings, TheAxesMakeRoomForThemUnlessSetByHand) {
  const SoundingRecord cold = Profile({{1000, -45, -50}, {700, -48, -55}, {300, -60, -70}});
  Drawn drawn(test::ReferenceConvective());
  drawn.Others = {{&cold}};
  drawn.Mode = MultiMode::Overlay;
  EXPECT_LE(drawn().Mapping.TempMin(), -50);
  EXPECT_EQ(Tagged(drawn().Page, "other title").size(), 2u);
  drawn.Mode = MultiMode::Single;
  EXPECT_EQ(drawn().Mapping.TempMin(), -40);
  drawn.Mode = MultiMode::Compare;
  EXPECT_TRUE(Texts(drawn().Page, "other title").at(1).starts_with("#2 - "));
  Drawn low(test::EndingAt(test::ReferenceConvective(), 700));
  low.Others = {{&cold}};
  low.Mode = MultiMode::Overlay;
  EXPECT_EQ(low().Mapping.TopPress(), 300);
  low.Set.Diagram = DiagramType::Tephigram;
  EXPECT_EQ(low().Mapping.TopPress(), 100);
}

TEST(OtherSoundings, AHeldScaleIsKeptByItsType) {
  const DiagramMapping held(DiagramType::SkewT, kFrame, -60, 10, 200);
  Drawn drawn(test::ReferenceConvective());
  drawn.Scale = &held;
  EXPECT_EQ(drawn().Mapping.TempMin(), -60);
  drawn.Set.Diagram = DiagramType::Emagram;
  EXPECT_NE(drawn().Mapping.TempMin(), -60);
}

TEST(ExtraLines, StandWhereTheirNumbersAre) {
  Drawn drawn(test::ReferenceConvective());
  EXPECT_TRUE(Tagged(drawn().Page, "contrail").empty());
  drawn.Extra = {true, true, true, true};
  drawn.Set.SoarTm = 31;
  const SoundingPlot plot = drawn();
  // Critical temperatures at 60 %, Schumann (1996) with a contrail factor of 0.040, computed apart.
  for (const auto& [press, temp] :
       {std::pair(300, -47.0), {250, -48.8}, {200, -51.0}, {150, -53.7}}) {
    SCOPED_TRACE(press);
    const Point at = plot.Mapping.ToPoint(temp, press);
    const auto points = PointsOf(plot.Page, "contrail");
    const auto nearest = std::ranges::min_element(
        points, {}, [&](Point p) { return std::hypot(p.X - at.X, p.Y - at.Y); });
    EXPECT_NEAR(nearest->X, at.X, 0.15 * plot.Mapping.Frame().Width() / 80);
    EXPECT_NEAR(nearest->Y, at.Y, 1);
  }
  EXPECT_EQ(Texts(plot.Page, "contrail label").size(), 1u);
  EXPECT_EQ(Texts(plot.Page, "soaring label").size(), 1u);
  // Purple and green by the menu.
  const auto inkOf = [&](std::string_view tag) {
    return Tagged<Polyline>(plot.Page, tag).at(0).Stroke.Ink;
  };
  EXPECT_EQ(inkOf("contrail"), LegibleColor(PaletteFor(drawn.Set), 2));
  EXPECT_EQ(inkOf("height correction"), LegibleColor(PaletteFor(drawn.Set), 5));
  // At 31 degrees thermals of this sounding reach 839.5 hPa, worked out apart.
  const auto thermal = PointsOf(plot.Page, "soaring");
  EXPECT_NEAR(plot.Mapping.PressAt(thermal.back().Y), 839.5, 1.5);
  EXPECT_NEAR(plot.Mapping.PressAt(thermal.front().Y), 970, 1e-2);
}

TEST(ExtraLines, HeightCorrectionIsTheHeightAboveTheStandardOne) {
  // A station at 100 m with sea level's standard pressure stands 100 m too high for it.
  Drawn drawn(Profile({{1013.25, 15, 5}, {905, 8.5, 0}}, {}, 100));
  drawn.Extra.HeightCorrection = true;
  const SoundingPlot plot = drawn();
  EXPECT_NEAR(plot.Mapping.PressAt(PointsOf(plot.Page, "height correction").back().Y), 905, 0.1);
  EXPECT_NEAR(PointsOf(plot.Page, "height correction").at(0).X -
                  PointsOf(plot.Page, "height correction zero").at(0).X,
              2 * 100, 1);
}

// Up to the top of the diagram no value stands on the line's name.
TEST(ExtraLines, HeightCorrectionsKeepOffTheirName) {
  Drawn drawn(Profile({{1000, 15, 5}, {700, 0, -5}, {300, -45, -50}, {100, -60, -70}}, {}, 100));
  drawn.Extra.HeightCorrection = true;
  const SoundingPlot plot = drawn();
  const Label name = Tagged<Label>(plot.Page, "height correction label").at(0);
  const auto values = Tagged<Label>(plot.Page, "height correction value");
  EXPECT_GE(values.size(), 4u);
  for (const Label& value : values) {
    EXPECT_GT(value.At.Y - name.At.Y, (value.Size + name.Size) / 2) << value.Text;
  }
}

}  // namespace
}  // namespace vexa::diagram
