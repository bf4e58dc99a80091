// What holds of the diagram's page with all its boxes, whatever it shows and wherever it goes.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>
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

// The soundings in turn, so that each of them meets each layout on several pages.
std::vector<SoundingRecord> Soundings() {
  return {
      test::ReferenceConvective(),
      test::ReferenceWinter(),
      WithoutMoisture(),
      WindsAlone(),
      test::Profile({{1000, 20, 15}, {850, 8, 2}, {700, 0, -8}, {500, -15, -30}, {300, -45, -60}}),
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

void ExpectApart(const Picture& page) {
  std::vector<const Item*> labels;
  for (const Item& item : page.Items()) {
    if (!std::holds_alternative<Label>(item.Shape)) continue;
    const auto& label = std::get<Label>(item.Shape);
    EXPECT_GE(label.Size, LetterSize(Type::Note)) << Named(item);
    const Rect place = test::PlaceOf(label);
    for (const Item* other : labels) {
      EXPECT_FALSE(Overlap(place, test::PlaceOf(std::get<Label>(other->Shape)), 0))
          << Named(item) << " on " << Named(*other);
    }
    labels.push_back(&item);
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
void ExpectEveryRegion(const LayoutRow& layout, const PageLayout& cut) {
  const std::string missing = LeftOutText(cut);
  for (const RegionRow& row : layout.Regions) {
    const bool isLeftOut =
        std::ranges::find(cut.LeftOut, row.Name, &RegionRow::Name) != cut.LeftOut.end();
    const bool isSaid = row.Caption.empty() || missing.find(row.Caption) != missing.npos;
    // The strip of advection stands where there are winds for it.
    const bool isFilled = row.At == Place::Side ? row.Name == "parcels" || row.Name == "indices"
                                                : row.Name != diagram::kAdvectionRegion;
    EXPECT_TRUE(cut.Find(row.Name) != nullptr || (isLeftOut && isSaid) || !isFilled) << row.Name;
  }
}

TEST(PageProperties, HoldForEveryLayoutAndSounding) {
  const std::vector<SoundingRecord> soundings = Soundings();
  std::size_t turn = 0;
  for (const SoundingRecord& sounding : soundings) {
    Program program;
    program.Set.FreezeLine = program.Set.TropoLine = true;
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
        ExpectApart(plot->Page);
        ExpectInsideItsRegion(plot->Page, layout, plot->Layout);
        ExpectEveryRegion(layout, plot->Layout);
      }
    }
    ++turn;
  }
}

}  // namespace
}  // namespace vexa
