// Where the diagram decides: axes and tops, bands of what is usual, the strip of advection, the
// cursor, each from both sides of its limits. On the emagram temperatures and logarithms of
// pressure are straight, so that places follow by hand.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "diagram/cursor_marks.h"
#include "diagram/drawn.h"
#include "diagram/mark_column.h"
#include "diagram/page_regions.h"
#include "diagram/palette.h"
#include "diagram/panel.h"
#include "diagram/scaling.h"
#include "diagram/wind_column.h"

namespace vexa::diagram {
namespace {

using test::Profile;

constexpr Rect kPlotArea{1300, 620, 7900, 8220};

// The next line of the list at or above the data; winds alone reach as high as the standard
// atmosphere has them, 9164 m for 300 hPa.
TEST(DiagramLimits, TopsFollowTheHighestLevel) {
  const struct {
    double Highest;
    bool IsHigh;
    double Top;
  } cases[] = {{700, false, 700}, {699, false, 500}, {500, false, 500}, {499, false, 400},
               {400, false, 400}, {399, false, 300}, {300, false, 300}, {299, false, 200},
               {200, false, 200}, {199, false, 100}, {100, false, 100}, {90, false, 100},
               {101, true, 100},  {100, true, 100},  {99, true, 50},    {50, true, 50},
               {49, true, 30},    {30, true, 30},    {29, true, 10},    {10, true, 10},
               {9, true, 10}};
  for (const auto& c : cases) {
    Options options;
    options.Above100mb = c.IsHigh;
    options.AutoHighEmagram = false;
    const SoundingRecord sounding = Profile({{1000, 15, 10}, {c.Highest, -40, 999.9}});
    EXPECT_EQ(ChooseDiagram(sounding, options).TopPress, c.Top) << c.Highest;
  }
  EXPECT_EQ(ChooseDiagram(Profile({}, {{0, 270, 10}, {9160, 270, 10}}), Options{}).TopPress, 300);
  EXPECT_EQ(ChooseDiagram(Profile({}, {{0, 270, 10}, {9170, 270, 10}}), Options{}).TopPress, 200);
}

// 2 °C are kept free on the cold side and 9 % of the range on the warm one; ranges begin at tens,
// as near to -40 as they can, and grow by ten.
TEST(DiagramLimits, TemperatureAxisHoldsTheSounding) {
  const struct {
    double Coldest, Warmest;
    TempRange Range;
  } cases[] = {{-38, 32.8, {-40, 40}},   {-28, 32.9, {-30, 50}},   {-28.1, 32.9, {-40, 50}},
               {-38.1, 22.8, {-50, 30}}, {-38.1, 22.9, {-50, 40}}, {-48, 12, {-50, 30}},
               {-60, 40, {-70, 60}},     {10, 60, {-10, 70}},      {45, 45, {-20, 60}},
               {-90, -60, {-100, -20}}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.Coldest);
    const SoundingRecord sounding =
        Profile({{1000, c.Warmest, 999.9}, {500, c.Coldest, 999.9}, {300, c.Coldest, 999.9}});
    Options options;
    const TempRange range =
        ChooseTempRange(sounding, options, {DiagramType::Emagram, 300, false}, kPlotArea);
    EXPECT_EQ(range.Min, c.Range.Min) << c.Warmest;
    EXPECT_EQ(range.Max, c.Range.Max) << c.Warmest;
  }
  // Dew points widen it as temperatures do; levels above the top do not.
  const SoundingRecord dry = Profile({{1000, 20, -45}, {500, -20, -30}, {200, -70, 999.9}});
  const TempRange range =
      ChooseTempRange(dry, Options{}, {DiagramType::Emagram, 300, false}, kPlotArea);
  EXPECT_EQ(range.Min, -50);
  EXPECT_EQ(range.Max, 30);
  Options narrow;
  narrow.TempScaling = Scaling::Manual;
  narrow.TempMin = 0;
  narrow.TempMax = 39;
  EXPECT_EQ(ChooseTempRange(dry, narrow, {}, kPlotArea).Max, 40);
}

std::vector<std::vector<Point>> Areas(const Picture& page, std::string_view tag) {
  std::vector<std::vector<Point>> rings;
  for (const Area& area : Tagged<Area>(page, tag)) rings.push_back(area.Rings.front());
  return rings;
}

Rect BoundsOf(const std::vector<Point>& points) {
  Rect box{1e9, 1e9, -1e9, -1e9};
  for (const Point& p : points) {
    box = {std::min(box.Left, p.X), std::min(box.Top, p.Y), std::max(box.Right, p.X),
           std::max(box.Bottom, p.Y)};
  }
  return box;
}

TEST(UsualBands, ReachFromTheLowToTheHighValueOfEachLevel) {
  Usual usual;
  usual.Levels = {{1000, UsualBand{10, 15, 22}, UsualBand{1, 3, 5}, {}},
                  {700, UsualBand{-4, 3, 8}, {}, {}},
                  {600, UsualBand{-9, -6, 0}, UsualBand{-20, -15, -11}, {}},
                  {500, {}, {}, {}},
                  {400, UsualBand{-35, -30, -25}, UsualBand{-39, -38, -36}, {}},
                  {300, UsualBand{-38, -36, -34}, UsualBand{-39, -38, -37}, {}},
                  {200, {}, {}, {}},
                  {90, UsualBand{10, 20, 30}, {}, {}}};
  Drawn drawn = OnEmagram();
  drawn.Spread = &usual;
  EXPECT_TRUE(Areas(drawn().Page, "usual temperature").empty());
  drawn.Set.UsualTemps = true;
  const SoundingPlot plot = drawn();
  const DiagramMapping& at = plot.Mapping;
  // A level without a value parts the band; a dew point alone between two such makes none.
  const auto temps = Areas(plot.Page, "usual temperature");
  ASSERT_EQ(temps.size(), 2u);
  const Rect low = BoundsOf(temps[0]);
  EXPECT_NEAR(low.Right, at.ToPoint(22, 1000).X, 0.5);
  EXPECT_NEAR(low.Bottom, at.ToPoint(22, 1000).Y, 0.5);
  EXPECT_NEAR(low.Left, at.ToPoint(-9, 600).X, 0.5);
  EXPECT_NEAR(low.Top, at.ToPoint(0, 600).Y, 0.5);
  EXPECT_EQ(Areas(plot.Page, "usual dew point").size(), 1u);
  const auto medians = Lines(plot.Page, "usual temperature median");
  ASSERT_EQ(medians.size(), 2u);
  // Three corners between two levels, by equal steps of temperature and of the logarithm.
  ASSERT_EQ(medians[0].size(), 9u);
  const Point half = at.ToPoint(9, std::sqrt(1000.0 * 700));
  EXPECT_NEAR(medians[0][2].X, half.X, 0.5);
  EXPECT_NEAR(medians[0][2].Y, half.Y, 0.5);
  EXPECT_NEAR(medians[1].back().Y, at.ToPoint(0, 300).Y, 0.5);
}

// The scale ends at the next 50 kt above the band and the sounding's own speed.
TEST(UsualBands, WindsStandOnAScaleOfTheirOwn) {
  const auto drawn = [](double high, double own) {
    Drawn diagram = OnEmagram(
        Profile({{1000, 20, 10}, {850, 12, 5}, {500, -12, -30}, {250, -48, -60}, {100, -60, -80}},
                {{100, 180, 10}, {5000, 270, own}, {5500, 999.9, 999.9}, {30000, 270, 300}}));
    diagram.Set.UsualWinds = true;
    Usual usual;
    diagram.Spread = &usual;
    usual.Levels = {{900, {}, {}, UsualBand{0, 25, high}},
                    {700, {}, {}, UsualBand{0, 25, high}},
                    {200, {}, {}, {}},
                    {90, {}, {}, UsualBand{0, 200, 400}}};
    return diagram();
  };
  EXPECT_EQ(Texts(drawn(40, 30).Page, "wind scale"), LabelTexts{"0-50 kts"});
  EXPECT_EQ(Texts(drawn(50, 50).Page, "wind scale"), LabelTexts{"0-50 kts"});
  EXPECT_EQ(Texts(drawn(51, 50).Page, "wind scale"), LabelTexts{"0-100 kts"});
  EXPECT_EQ(Texts(drawn(40, 101).Page, "wind scale"), LabelTexts{"0-150 kts"});
  const SoundingPlot plot = drawn(50, 50);
  const auto band = Areas(plot.Page, "usual wind");
  ASSERT_EQ(band.size(), 1u);
  const Rect column = BoundsOf(band[0]);
  EXPECT_NEAR(column.Bottom, plot.Mapping.ToPoint(0, 900).Y, 0.5);
  EXPECT_NEAR(column.Top, plot.Mapping.ToPoint(0, 700).Y, 0.5);
  const auto median = Lines(plot.Page, "usual wind median");
  ASSERT_EQ(median.size(), 1u);
  EXPECT_NEAR(median[0].front().X, (column.Left + column.Right) / 2, 0.5);
  const auto own = Lines(plot.Page, "wind speed");
  ASSERT_EQ(own.size(), 1u);
  EXPECT_NEAR(own[0].front().X, column.Left + column.Width() * 10 / 50, 0.5);
  EXPECT_NEAR(own[0].back().X, column.Right, 0.5);
  EXPECT_TRUE(Areas(plot.Page, "usual temperature").empty());
}

const LayoutRow* LayoutWithAdvection() {
  for (const LayoutRow& row : PageLayouts()) {
    for (const RegionRow& region : row.Regions) {
      if (region.Name == kAdvectionRegion) return &row;
    }
  }
  return nullptr;
}

SoundingPlot WithAdvection(std::vector<AdvectionBar> bars) {
  Drawn drawn = OnEmagram();
  drawn.On = WindowSurface(1920, 1080);
  drawn.Bars = std::move(bars);
  drawn.Layout = LayoutWithAdvection();
  return drawn();
}

// To the right where it warms, on a whole number of degrees an hour that holds every bar.
TEST(AdvectionStrip, BarsReachAsFarAsTheirLayersAndAmounts) {
  const SoundingPlot plot = WithAdvection({{1000, 850, 1.2}, {850, 700, -2.5}, {700, 695, 0.4}});
  const auto bars = Areas(plot.Page, "advection");
  ASSERT_EQ(bars.size(), 3u);
  const auto edges = Lines(plot.Page, "advection edge");
  ASSERT_EQ(edges.size(), 2u);
  const double left = edges[0].front().X, right = edges[1].front().X, half = (right - left) / 2;
  const auto y = [&](double press) { return plot.Mapping.ToPoint(0, press).Y; };
  const Palette inks = PaletteFor({});
  const struct {
    double Cph, Base, Top;
  } expected[] = {{1.2, 1000, 850}, {-2.5, 850, 700}, {0.4, 700, 695}};
  for (std::size_t i = 0; i < 3; ++i) {
    SCOPED_TRACE(i);
    const Rect bar = BoundsOf(bars[i]);
    const double end = left + half + half * expected[i].Cph / 3;
    const bool isWarm = expected[i].Cph > 0;
    EXPECT_NEAR(isWarm ? bar.Right : bar.Left, end, 0.5);
    EXPECT_EQ(Tagged<Area>(plot.Page, "advection")[i].Stroke.Ink,
              isWarm ? inks.WarmFront : inks.ColdFront);
    EXPECT_NEAR(bar.Bottom, y(expected[i].Base), 0.5);
    EXPECT_NEAR(bar.Top, y(expected[i].Top), 0.5);
  }
  EXPECT_EQ(Texts(plot.Page, "advection value"), (LabelTexts{"+1.2", "-2.5"}));  // one is too thin
  EXPECT_NEAR(Tagged<Label>(plot.Page, "advection value")[0].At.Y, (y(1000) + y(850)) / 2, 0.5);
  EXPECT_EQ(Texts(plot.Page, "advection scale"), (LabelTexts{"-3", "+3"}));
  EXPECT_EQ(SpotsOf(plot, "advection").front().find("Warm advection +1.2"), 0u);
  EXPECT_NE(SpotsOf(plot, "advection").front().find("1000 to 850"), std::string::npos);
  EXPECT_EQ(SpotsOf(plot, "advection")[1].find("Cold advection -2.5"), 0u);
}

TEST(AdvectionStrip, LayersThatTheDiagramCuts) {
  const SoundingPlot plot = WithAdvection(
      {{1200, 1060, 9}, {1100, 900, 0.2}, {200, 60, -0.3}, {99, 60, 9}, {400, 400, 1}});
  const auto bars = Areas(plot.Page, "advection");
  ASSERT_EQ(bars.size(), 2u);
  EXPECT_NEAR(BoundsOf(bars[0]).Bottom, plot.Mapping.Frame().Bottom, 0.5);
  EXPECT_NEAR(BoundsOf(bars[1]).Top, plot.Mapping.Frame().Top, 0.5);
  EXPECT_TRUE(SpotsOf(WithAdvection({}), "advection").empty());
  EXPECT_EQ(Texts(WithAdvection({{900, 800, 0.4}}).Page, "advection scale"),
            (LabelTexts{"-1", "+1"}));
}

// The tephigram ends at 100 hPa: that is said of data beyond it, and only where it is wanted.
TEST(PageLimits, TephigramWarnsOfDataBeyondIt) {
  const struct {
    DiagramType Type;
    double Top;
    bool IsWanted, Warns;
  } cases[] = {{DiagramType::Tephigram, 90, true, true},
               {DiagramType::Tephigram, 90, false, false},
               {DiagramType::Tephigram, 100, true, false},
               {DiagramType::SkewT, 90, true, false}};
  for (const auto& c : cases) {
    Drawn drawn(Profile({{1000, 20, 10}, {500, -15, -30}, {c.Top, -60, 999.9}}));
    drawn.Set.Diagram = c.Type;
    drawn.Set.TephigramWarning = c.IsWanted;
    EXPECT_EQ(!drawn().Warning.empty(), c.Warns) << c.Top;
  }
}

// The pilot's page shows 6 km above the ground: in standard air 472 hPa, so up to 470.
TEST(PageLimits, DepthOfALayoutEndsTheDiagram) {
  Drawn drawn(Profile({{1013.25, 15, 5},
                       {898.75, 8.5, 0},
                       {540.2, -17.5, -30},
                       {472.2, -24, -40},
                       {264.36, -49.9, -60},
                       {100, -56, -70}}));
  drawn.Layout = FindLayout("pilot");
  EXPECT_EQ(drawn().Mapping.TopPress(), 470);
  drawn.Set.AutoMbSelect = false;
  drawn.Set.MbLimit = 300;
  EXPECT_EQ(drawn().Mapping.TopPress(), 300);
  drawn.Set.AutoMbSelect = true;
  drawn.Set.Diagram = DiagramType::Tephigram;
  EXPECT_EQ(drawn().Mapping.TopPress(), 100);
  drawn.Layout = nullptr;
  drawn.Set.Diagram = DiagramType::SkewT;
  EXPECT_EQ(drawn().Mapping.TopPress(), 100);
  // One that ends below shows what it has.
  Drawn low(Profile({{1000, 20, 10}, {700, 5, -5}}));
  low.Layout = FindLayout("pilot");
  EXPECT_EQ(low().Mapping.TopPress(), 700);
  // Two levels are enough: 6 km lie between 500 hPa and 400 hPa.
  low.Sounding = Profile({{1000, 15, 10}, {300, -45, -60}});
  EXPECT_NEAR(low().Mapping.TopPress(), 450, 50);
}

TEST(PageLimits, WindsHaveAColumnWhereThereAreSome) {
  const SoundingRecord calm = Profile({{1000, 20, 10}, {500, -15, -30}, {100, -60, 999.9}});
  const SoundingRecord windy = Profile({{1000, 20, 10}, {500, -15, -30}}, {{100, 180, 10}});
  const auto hasColumn = [](const SoundingRecord& first, MultiMode mode,
                            std::vector<OverlaySounding> others) {
    Drawn drawn(first);
    drawn.Mode = mode;
    drawn.Others = std::move(others);
    return drawn().Layout.Find("wind") != nullptr;
  };
  EXPECT_FALSE(hasColumn(calm, MultiMode::Single, {}));
  EXPECT_TRUE(hasColumn(windy, MultiMode::Single, {}));
  EXPECT_TRUE(hasColumn(calm, MultiMode::Compare, {{&windy}}));
  EXPECT_FALSE(hasColumn(calm, MultiMode::Compare, {{&calm}}));
  EXPECT_FALSE(hasColumn(calm, MultiMode::Overlay, {{&windy}}));
  EXPECT_FALSE(hasColumn(calm, MultiMode::Compare, {{nullptr}}));
}

// Overlaid soundings have a row each below the diagram, up to six with the first.
TEST(PageLimits, RowsOfTitles) {
  Drawn drawn(PlainSounding());
  const auto rows = [&](MultiMode mode, std::size_t others) {
    const std::vector<OverlaySounding> list(others, {&drawn.Sounding});
    return OtherTitleRows({.Sounding = drawn.Sounding,
                           .Results = drawn.Results,
                           .Set = drawn.Set,
                           .On = kPage,
                           .Mode = mode,
                           .Others = list});
  };
  EXPECT_EQ(rows(MultiMode::Single, 3), 0);
  EXPECT_EQ(rows(MultiMode::Loop, 3), 0);
  EXPECT_EQ(rows(MultiMode::Compare, 1), 2);
  EXPECT_EQ(rows(MultiMode::Overlay, 4), 5);
  EXPECT_EQ(rows(MultiMode::Overlay, 5), 6);
  EXPECT_EQ(rows(MultiMode::Overlay, 9), 6);
  drawn.On = WindowSurface(500, 700);
  drawn.Mode = MultiMode::Overlay;
  drawn.Others = std::vector<OverlaySounding>(5, {&drawn.Sounding});
  EXPECT_EQ(Tagged(drawn().Page, "other title").size(), 6u);
}

TEST(PageLimits, PositionsHaveTheirHemisphereAndHeight) {
  Drawn drawn(PlainSounding());
  SetDecimalPosition(drawn.Sounding, -33.5, -70.25);
  EXPECT_EQ(PositionText(drawn.Sounding), "33.50S  70.25W");
  SetElevation(drawn.Sounding, 520);
  EXPECT_EQ(FirstText(drawn().Page, "position"), "33.50S  70.25W   520 m");
  drawn.Sounding.ElevUnknown = true;
  EXPECT_EQ(FirstText(drawn().Page, "position"), "33.50S  70.25W");
  drawn.Mode = MultiMode::Overlay;
  drawn.Sounding.StationTitle = "Santiago";
  const SoundingRecord other = drawn.Sounding;
  drawn.Others = {{&other}};
  EXPECT_NE(FirstText(drawn().Page, "other title").find("// 33.5S 70.3W"), std::string::npos);
  SetDecimalPosition(drawn.Sounding, 0.25, 0.5);
  EXPECT_EQ(PositionText(drawn.Sounding), "0.25N  0.50E");
  EXPECT_NE(FirstText(drawn().Page, "other title").find("// 0.3N 0.5E"), std::string::npos);
}

// Heights beside the pressures want a diagram 500 pixels wide.
TEST(PageLimits, HeightsBesideThePressuresWantRoom) {
  Drawn drawn(PlainSounding());
  int with = 0, without = 0;
  for (double width = 400; width <= 900; width += 20) {
    drawn.On = WindowSurface(width, 900);
    const SoundingPlot plot = drawn();
    const bool has = !Texts(plot.Page, "pressure height label").empty();
    EXPECT_EQ(has, plot.Layout.Find("diagram")->Width() >= 500 * kUnitsPerPixel) << width;
    ++(has ? with : without);
  }
  EXPECT_GT(with, 2);
  EXPECT_GT(without, 2);
  drawn.Extra.PressHeights = false;
  EXPECT_TRUE(Texts(drawn().Page, "pressure height label").empty());
}

TEST(MarkColumn, MovesApartOnlyWhatTouches) {
  MarkColumn column;
  for (const double y : {5000.0, 1000.0, 1040.0, 1060.0}) column.Add({y, "", "", {}, 0});
  const std::vector<Mark>& marks = column.Arrange(0, 9000, 100);
  // Three around 1033 spread to 100 apart about their mean; the fourth keeps its place.
  EXPECT_NEAR(marks[0].PlacedY, 933.33, 0.01);
  EXPECT_NEAR(marks[1].PlacedY, 1033.33, 0.01);
  EXPECT_NEAR(marks[2].PlacedY, 1133.33, 0.01);
  EXPECT_DOUBLE_EQ(marks[3].PlacedY, 5000);
}

// The mark with the largest priority goes when they do not fit.
TEST(MarkColumn, LeavesOutWhatHasNoRoom) {
  for (const double room : {200.0, 199.0}) {
    MarkColumn column;
    column.Add({150, "kept", "", {}, 0});
    column.Add({160, "least", "", {}, 2});
    column.Add({170, "kept too", "", {}, 1});
    const std::vector<Mark>& marks = column.Arrange(100, 100 + room, 100);
    EXPECT_EQ(marks.size(), room == 200 ? 3u : 2u);
    EXPECT_EQ(marks[0].PlacedY, room == 200 ? 100 : 110);  // two about their mean
    EXPECT_EQ(marks.back().PlacedY, room == 200 ? 300 : 210);
  }
}

// Those at the lower end are pushed up.
TEST(MarkColumn, EndsAtItsLowerEnd) {
  MarkColumn column;
  column.Add({290, "", "", {}, 0});
  column.Add({295, "", "", {}, 0});
  const std::vector<Mark>& marks = column.Arrange(100, 300, 100);
  EXPECT_EQ(marks[0].PlacedY, 200);
  EXPECT_EQ(marks[1].PlacedY, 300);
}

TEST(WindColumnLimits, NumbersLeaveRoomForAComparedSounding) {
  Drawn drawn(PlainSounding());
  const SoundingRecord other = PlainSounding();
  drawn.Layout = FindLayout("pilot");
  EXPECT_FALSE(Texts(drawn().Page, "wind number").empty());
  drawn.Mode = MultiMode::Compare;
  const analysis::AnalysisResults results = analysis::Analyse(other, drawn.Set);
  drawn.Others = {{&other, &results}};
  EXPECT_TRUE(Texts(drawn().Page, "wind number").empty());
  drawn.Mode = MultiMode::Single;
  drawn.Others.clear();
  drawn.Layout = nullptr;
  EXPECT_TRUE(Texts(drawn().Page, "wind number").empty());
}

// CAPE is told in total, up to its depth, or both, as its option says; the MPL by its own.
TEST(PanelLimits, LeavesOutWhatIsSwitchedOff) {
  const auto has = [](const char* label, CapeDepthDisplay depth, bool mpl) {
    Drawn drawn(test::ReferenceConvective());
    drawn.Set.CapeDepth = depth;
    drawn.Set.MplDisplay = mpl;
    drawn.Set.Thermo = ThermoDisplay::Custom;
    drawn.Set.CustomPanel = "CAPE total,CAPE 0-xkm,MPL Prs,KI";
    for (std::string text : Texts(drawn().Page, "index label")) {
      text.erase(0, text.find_first_not_of(' '));
      if (text == label) return true;
    }
    return false;
  };
  using enum CapeDepthDisplay;
  EXPECT_TRUE(has("CAPE total", Total, true));
  EXPECT_FALSE(has("CAPE total", LfcLayer, true));
  EXPECT_TRUE(has("CAPE 0-xkm", LfcLayer, true));
  EXPECT_FALSE(has("CAPE 0-xkm", Total, true));
  EXPECT_TRUE(has("MPL Prs", Total, true));
  EXPECT_FALSE(has("MPL Prs", Total, false));
  EXPECT_TRUE(has("KI", Total, false));
}

// Heads stand over their columns.
TEST(PanelLimits, ColumnsOfTheLiftTable) {
  const LabelTexts lines = Texts(Drawn(test::ReferenceConvective())().Page, "lift table");
  ASSERT_EQ(lines.size(), 6u);
  for (const std::string& line : lines) EXPECT_EQ(line.size(), lines.front().size()) << line;
}

TEST(CursorMarks, LockOnLevelsThatAreShown) {
  const SoundingRecord sounding =
      Profile({{1060, 25, 10}, {850, 12, 999.9}, {850, 12, 5}, {500, -41, -30}, {110, -60, -80}});
  const DiagramMapping at(DiagramType::Emagram, kPlotArea, -40, 40, 100);
  const auto marks = [&](int level) {
    CursorState cursor;
    cursor.Level = level;
    cursor.Text = "here";
    return CursorMarks(Picture(9200, 8840, {}), at, sounding, cursor, {}, {});
  };
  using Rings = std::vector<Point>;
  const auto rings = [&](int level) {
    Rings found;
    for (const Circle& ring : Tagged<Circle>(marks(level), "locked cursor")) {
      found.push_back(ring.Center);
    }
    return found;
  };
  for (const int hidden : {-1, 0, 1, 6}) EXPECT_TRUE(marks(hidden).Items().empty()) << hidden;
  EXPECT_EQ(rings(2), Rings{at.ToPoint(12, 850)});  // no dew point
  EXPECT_EQ(rings(3), (Rings{at.ToPoint(12, 850), at.ToPoint(5, 850)}));
  EXPECT_EQ(rings(4), Rings{at.ToPoint(-30, 500)});  // the temperature lies beside the frame
  EXPECT_TRUE(rings(5).empty());
  EXPECT_FALSE(marks(5).Items().empty());
  const DiagramMapping low(DiagramType::Emagram, kPlotArea, -40, 40, 200);
  CursorState above;
  above.Level = 5;
  EXPECT_TRUE(CursorMarks(Picture(9200, 8840, {}), low, sounding, above, {}, {}).Items().empty());
  // Written over its isobar, under it where the frame ends.
  const auto textY = [&](int level) {
    return Tagged<Label>(marks(level), "locked cursor text").at(0).At.Y;
  };
  EXPECT_LT(textY(3), at.ToPoint(0, 850).Y);
  EXPECT_GT(textY(5), at.ToPoint(0, 110).Y);
  // Of two levels at one pressure the first; the last one counts as well.
  EXPECT_EQ(NearestLevel(at, sounding, at.ToPoint(0, 840)), 2);
  EXPECT_EQ(NearestLevel(at, sounding, at.ToPoint(0, 101)), 5);
  EXPECT_FALSE(NearestLevel(at, Profile({{0, 10, 5}}), at.ToPoint(0, 700)));
}

}  // namespace
}  // namespace vexa::diagram
