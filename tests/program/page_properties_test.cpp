// What holds of the diagram's page with all its boxes, whatever it shows and wherever it goes.
#include <gtest/gtest.h>

#include <algorithm>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "core/markers.h"
#include "diagram/sounding_plot.h"
#include "picture/page_layouts.h"
#include "program/program.h"
#include "program/view_commands.h"
#include "support/document.h"
#include "support/page_checks.h"
#include "support/soundings.h"
#include "support/tagged_items.h"

namespace vexa {
namespace {

struct PageCase {
  const char* About;
  Surface On;
};

// From a dock to an ultra-wide window, a screen with large letters, and the sheets both ways.
constexpr PageCase kPages[] = {
    {"dock", WindowSurface(320, 240)},
    {"800 x 600", WindowSurface(800, 520)},
    {"1024 x 768", WindowSurface(1024, 690)},
    {"1280 x 800", WindowSurface(1280, 720)},
    {"1920 x 1080 at 200 %", WindowSurface(1920, 1000, 2)},
    {"image 1920 x 1080", ImageSurface(1920, 1080)},
    {"3440 x 1440", WindowSurface(3440, 1360)},
    {"900 x 1400", WindowSurface(900, 1320)},
    {"A4 upright", PaperSurfaceMm(190, 277)},
    {"Letter across", PaperSurface(742, 562)},
};

SoundingRecord WithoutMoisture() {
  SoundingRecord sounding = test::ReferenceWinter();
  for (int i = 1; i <= sounding.NumTempLevels(); ++i) sounding.Dewpt(i) = kMissing;
  return sounding;
}

SoundingRecord WindsAlone() {
  SoundingRecord sounding;
  SetElevation(sounding, 120);
  sounding.StationTitle = "A station with quite a long name that fills the title of a narrow page";
  for (int i = 0; i < 40; ++i) sounding.AddWind(120 + 300.0 * i, 9.0 * i, 3.0 * i);
  return sounding;
}

// Three thousand levels with a wind at each and inversions all the way up.
SoundingRecord HighDensity() {
  SoundingRecord sounding;
  SetElevation(sounding, 5);
  for (int i = 0; i < 3000; ++i) {
    sounding.AddTemp(1000 - 0.32 * i, 25 - 0.025 * i + (i % 40 < 8 ? 1.5 : 0), 15 - 0.03 * i);
    sounding.AddWind(10.0 * i, 180 + (i / 20) % 180, i % 90);
  }
  return sounding;
}

// The soundings in turn, so that each of them meets each layout on several pages.
std::vector<SoundingRecord> Soundings() {
  return {
      test::ReferenceConvective(), test::ReferenceWinter(), WithoutMoisture(), WindsAlone(),
      test::Profile({{1000, 20, 15}, {850, 8, 2}, {700, 0, -8}, {500, -15, -30}, {300, -45, -60}}),
      HighDensity(),
      // Oymyakon and the South Pole as they were observed in winter: cold air under an inversion.
      test::Profile({{928, -42.7, -45.0},
                     {850, -29.3, -33.2},
                     {700, -28.9, -32.7},
                     {500, -42.7, -46.2},
                     {321, -54.1, -57.8},
                     {20, -51.9, -55.8}},
                    {{740, 240, 2}, {1343, 10, 8}, {2747, 65, 8}, {5080, 40, 16}, {8440, 65, 16}},
                    740),
      test::Profile({{668, -64.5, -70.5}, {500, -43.1, -45.8}, {300, -61.7, -68.7}},
                    {{2835, 95, 12}, {4810, 95, 24}, {8130, 150, 6}}, 2835),
      // A marine inversion under dry air.
      test::Profile({{997, 22.8, 14.8},
                     {950, 18, 15},
                     {930, 30, 2},
                     {850, 24.4, -24.6},
                     {700, 14.8, -4.2},
                     {500, -5.5, -16.5},
                     {300, -31.1, -45.1},
                     {114, -73.3, -81.3}},
                    {{134, 255, 10}, {1513, 215, 4}, {5930, 195, 15}, {9750, 205, 24}}, 134),
      test::Profile({})};
}

std::string Named(const Item& item) {
  const auto* label = std::get_if<Label>(&item.Shape);
  return item.Tag + (label == nullptr ? "" : ": " + label->Text);
}

// The rectangle around what an item draws.
std::optional<Rect> ExtentOf(const Item& item) {
  std::vector<Point> points;
  if (const auto* label = std::get_if<Label>(&item.Shape)) return test::PlaceOf(*label);
  if (const auto* circle = std::get_if<Circle>(&item.Shape)) {
    const auto [x, y] = circle->Center;
    return Rect{x - circle->Radius, y - circle->Radius, x + circle->Radius, y + circle->Radius};
  }
  if (const auto* line = std::get_if<Polyline>(&item.Shape)) points = line->Points;
  if (const auto* area = std::get_if<Area>(&item.Shape)) {
    for (const auto& ring : area->Rings) points.insert(points.end(), ring.begin(), ring.end());
  }
  if (points.empty()) return std::nullopt;
  const auto [left, right] = std::ranges::minmax(points, {}, &Point::X);
  const auto [top, bottom] = std::ranges::minmax(points, {}, &Point::Y);
  return Rect{left.X, top.Y, right.X, bottom.Y};
}

bool Overlap(const Rect& a, const Rect& b, double by) {
  return a.Left + by < b.Right && b.Left + by < a.Right && a.Top + by < b.Bottom &&
         b.Top + by < a.Bottom;
}

bool IsWithin(const Rect& inner, const Rect& outer, double by) {
  return inner.Left >= outer.Left - by && inner.Right <= outer.Right + by &&
         inner.Top >= outer.Top - by && inner.Bottom <= outer.Bottom + by;
}

// Where a straight line runs through a rectangle.
bool Crosses(Point from, Point to, const Rect& place) {
  double enters = 0;
  double leaves = 1;
  const auto cut = [&](double start, double way, double low, double high) {
    if (way == 0) return start > low && start < high;
    const auto [near, far] = std::minmax({(low - start) / way, (high - start) / way});
    enters = std::max(enters, near);
    leaves = std::min(leaves, far);
    return enters < leaves;
  };
  return cut(from.X, to.X - from.X, place.Left, place.Right) &&
         cut(from.Y, to.Y - from.Y, place.Top, place.Bottom);
}

// Lines of these kinds that run through texts of those.
template <class IsLine, class IsText>
void ExpectNoneThrough(const Picture& page, IsLine&& isLine, IsText&& isText) {
  for (const Item& item : page.Items()) {
    const auto* line = std::get_if<Polyline>(&item.Shape);
    if (line == nullptr || !isLine(item.Tag)) continue;
    for (const Item& other : page.Items()) {
      if (!std::holds_alternative<Label>(other.Shape) || !isText(other.Tag)) continue;
      const Rect place = test::PlaceOf(std::get<Label>(other.Shape));
      for (std::size_t i = 1; i < line->Points.size(); ++i) {
        EXPECT_FALSE(Crosses(line->Points[i - 1], line->Points[i], place))
            << item.Tag << " through " << Named(other);
      }
    }
  }
}

// Leaders, ticks and the lines of levels stop before the texts of others; what names a level or a
// trace stands off the traces.
void ExpectNoLineThroughAText(const Picture& page) {
  const auto isOneOf = [](std::span<const std::string_view> tags) {
    return [tags](std::string_view tag) { return std::ranges::find(tags, tag) != tags.end(); };
  };
  constexpr std::string_view kLeaders[] = {"leader",     "parcel level", "freezing level",
                                           "tropopause", "front",        "custom line"};
  ExpectNoneThrough(page, isOneOf(kLeaders), [](std::string_view) { return true; });
  constexpr std::string_view kTraces[] = {"temperature", "dew point"};
  constexpr std::string_view kNames[] = {
      "trace name",      "parcel level label", "freezing level label", "tropopause label",
      "inversion label", "front label",        "custom line label"};
  ExpectNoneThrough(page, isOneOf(kTraces), isOneOf(kNames));
}

// Twice the area of a triangle, with the sign of its turn.
double Turn(Point a, Point b, Point c) {
  return (b.X - a.X) * (c.Y - a.Y) - (b.Y - a.Y) * (c.X - a.X);
}

// A leader that crosses a trace could be taken for one.
void ExpectNoLeaderAcrossATrace(const Picture& page) {
  for (const char* tag : {"temperature", "dew point"}) {
    for (const Polyline& line : test::Tagged<Polyline>(page, tag)) {
      const std::vector<Point>& trace = line.Points;
      for (const Polyline& leader : test::Tagged<Polyline>(page, "leader")) {
        const Point a = leader.Points.front(), b = leader.Points.back();
        for (std::size_t i = 1; i < trace.size(); ++i) {
          const Point c = trace[i - 1], d = trace[i];
          const bool isCrossed =
              Turn(a, b, c) * Turn(a, b, d) < 0 && Turn(c, d, a) * Turn(c, d, b) < 0;
          EXPECT_FALSE(isCrossed) << "a leader across the " << tag;
        }
      }
    }
  }
}

// What touches a box of the side block lies in it; everything lies on the page.
void ExpectInsideItsRegion(const Picture& page, const LayoutRow& layout, const PageLayout& cut) {
  constexpr double kLineWidth = 2 * kUnitsPerPixel;
  for (const Item& item : page.Items()) {
    const std::optional<Rect> extent = ExtentOf(item);
    if (!extent) continue;
    EXPECT_TRUE(IsWithin(*extent, cut.Page, kLineWidth)) << Named(item);
    for (const RegionRow& row : layout.Regions) {
      const Rect* box = row.At == Place::Side ? cut.Find(row.Name) : nullptr;
      if (box == nullptr || !Overlap(*extent, *box, kLineWidth)) continue;
      EXPECT_TRUE(IsWithin(*extent, *box, kLineWidth)) << Named(item) << " in " << row.Name;
    }
  }
}

// By the table: a region is on the page, or the page says that it is not, or nobody fills it.
void ExpectEveryRegion(const LayoutRow& layout, const PageLayout& cut, bool hasWinds) {
  const std::string missing = LeftOutText(cut);
  for (const RegionRow& row : layout.Regions) {
    const bool isLeftOut =
        std::ranges::find(cut.LeftOut, row.Name, &RegionRow::Name) != cut.LeftOut.end();
    const bool isSaid = row.Caption.empty() || missing.find(row.Caption) != missing.npos;
    // The column of winds stands where there are some, the strip of advection where it is known.
    const bool isFilled = row.At == Place::Side ? row.Name == "parcels" || row.Name == "indices"
                                                : row.Name != diagram::kAdvectionRegion &&
                                                      (hasWinds || row.Name != "wind");
    EXPECT_TRUE(cut.Find(row.Name) != nullptr || (isLeftOut && isSaid) || !isFilled) << row.Name;
  }
}

TEST(PageProperties, HoldForEveryLayoutAndSounding) {
  const std::vector<SoundingRecord> soundings = Soundings();
  constexpr DiagramType kTypes[] = {DiagramType::SkewT, DiagramType::Tephigram, DiagramType::SkewT,
                                    DiagramType::Emagram};
  std::size_t turn = 0;
  std::size_t shown = 0;
  for (const SoundingRecord& sounding : soundings) {
    Program program;
    program.Set.FreezeLine = program.Set.TropoLine = true;
    program.Set.Diagram = kTypes[shown++ % std::size(kTypes)];
    test::Show(program, sounding);
    ASSERT_TRUE(Refresh(program, {.Sounding = true}));
    for (const LayoutRow& layout : PageLayouts()) {
      program.View.Layout = &layout;
      // A third of the pages for each, the next third for the next: all of them would take minutes
      // in a build with sanitizers.
      for (std::size_t i = turn++ % 3; i < std::size(kPages); i += 3) {
        SCOPED_TRACE(std::string(layout.Name) + ", " + kPages[i].About + ", " +
                     sounding.StationTitle);
        const auto plot = PlotShown(program, program.Set, kPages[i].On);
        ASSERT_TRUE(plot);
        test::ExpectOrderly(plot->Page, plot->Layout.Page, 0);
        ExpectNoLineThroughAText(plot->Page);
        ExpectNoLeaderAcrossATrace(plot->Page);
        ExpectInsideItsRegion(plot->Page, layout, plot->Layout);
        ExpectEveryRegion(layout, plot->Layout, sounding.NumWindLevels() > 0);
      }
    }
    ++turn;
  }
}

}  // namespace
}  // namespace vexa
