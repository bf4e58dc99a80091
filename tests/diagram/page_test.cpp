// What holds of the diagram's page at every size, in every layout and on every surface.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "config/options.h"
#include "diagram/sounding_plot.h"
#include "picture/clip.h"
#include "support/page_checks.h"
#include "support/soundings.h"
#include "support/tagged_items.h"

namespace vexa::diagram {
namespace {

struct Size {
  double WidthPx;
  double HeightPx;
};

// From a dock to an ultra-wide window, and A4 both ways.
constexpr Size kSizes[] = {{320, 240},  {500, 380},   {800, 600},  {1280, 800}, {1920, 1080},
                           {900, 1400}, {3440, 1440}, {1123, 794}, {794, 1123}};

struct PageCase {
  const char* About;
  SoundingRecord Sounding;
  DiagramType Type = DiagramType::SkewT;
  DisplaySettings Set{};
};

std::vector<PageCase> Cases() {
  return {{"convective", test::ReferenceConvective()},
          {"winter", test::ReferenceWinter()},
          {"emagram", test::ReferenceConvective(), DiagramType::Emagram},
          {"tephigram", test::ReferenceWinter(), DiagramType::Tephigram},
          {"two levels", test::Profile({{1000, 20, 15}, {500, -10, -30}})},
          {"nothing", test::Profile({})}};
}

std::vector<PageBox> EmptyBoxes(const LayoutRow& layout) {
  std::vector<PageBox> boxes;
  for (const RegionRow& row : layout.Regions) {
    if (row.At == Place::Side && row.Name != "analysis") boxes.push_back({.Name = row.Name});
  }
  return boxes;
}

SoundingPlot Draw(const PageCase& c, const LayoutRow& layout, const Surface& on) {
  DisplaySettings options = c.Set;
  options.Diagram = c.Type;
  options.FreezeLine = options.TropoLine = options.WetLabel = options.TempDualScale = true;
  const analysis::AnalysisResults results = analysis::Analyse(c.Sounding, options);
  return *PlotSounding({.Sounding = c.Sounding,
                        .Results = results,
                        .Set = options,
                        .On = on,
                        .Advection = {{1000, 850, 1.2}, {850, 700, -12}, {700, 690, 0.1}},
                        .Layout = &layout,
                        .Boxes = EmptyBoxes(layout),
                        .Configuration = "VEXA Config #1: summer"});
}

// Its page in every layout and at every size.
void ForEachPage(const PageCase& c, const std::function<void(const SoundingPlot&)>& check) {
  for (const LayoutRow& layout : PageLayouts()) {
    for (const Size& size : kSizes) {
      SCOPED_TRACE(testing::Message() << c.About << ", " << layout.Name << ' ' << size.WidthPx
                                      << 'x' << size.HeightPx);
      check(Draw(c, layout, WindowSurface(size.WidthPx, size.HeightPx)));
    }
  }
}

bool Overlap(const Rect& a, const Rect& b) {
  return a.Left < b.Right && b.Left < a.Right && a.Top < b.Bottom && b.Top < a.Bottom;
}

TEST(DiagramPage, TextsAreLegibleOnThePageAndApart) {
  for (const PageCase& c : Cases()) {
    ForEachPage(c, [](const SoundingPlot& plot) {
      const Rect page{-1, -1, plot.Page.Width() + 1, plot.Page.Height() + 1};
      std::vector<const Label*> labels;
      for (const Item& item : plot.Page.Items()) {
        const auto* label = std::get_if<Label>(&item.Shape);
        if (label == nullptr) continue;
        EXPECT_GE(label->Size, LetterSize(Type::Note)) << label->Text;
        const Rect place = test::PlaceOf(*label);
        EXPECT_TRUE(page.Contains({place.Left, place.Top}) &&
                    page.Contains({place.Right, place.Bottom}))
            << item.Tag << ": " << label->Text;
        for (const Label* other : labels) {
          EXPECT_FALSE(Overlap(place, test::PlaceOf(*other)))
              << item.Tag << ": " << label->Text << " on " << other->Text;
        }
        labels.push_back(label);
      }
    });
  }
}

// Near 1000 hPa the numbers stand above the ground, where the traces begin: 14.9 g/kg at the dew
// point's foot, 26.9 at that of the temperature.
TEST(DiagramPage, MixingRatioNumbersKeepOffTheTraces) {
  const PageCase low{"low", test::Profile({{1012, 30, 20}, {900, 22, 17}, {500, -10, -30}})};
  ForEachPage(low, [](const SoundingPlot& plot) {
    const auto numbers = test::Tagged<Label>(plot.Page, "mixing ratio label");
    for (const Label& label : numbers) {
      for (const char* trace : {"temperature", "dew point", "parcel"}) {
        for (const Polyline& line : test::Tagged<Polyline>(plot.Page, trace)) {
          EXPECT_TRUE(ClipPolyline(line.Points, test::PlaceOf(label)).empty())
              << trace << " through " << label.Text;
        }
      }
    }
    EXPECT_GE(numbers.size(), 3u);
  });
}

// Warm air under a cold tropopause: levels up to the parcel's highest, above 10 km.
TEST(DiagramPage, MarksBesideTheFrameAreWholeOrShort) {
  PageCase deep{"deep", test::Profile({{1000, 26, 18},
                                       {850, 14, 11},
                                       {700, 4, -4},
                                       {500, -13, -28},
                                       {300, -42, -58},
                                       {250, -46, -60},
                                       {200, -46, -70},
                                       {100, -46, -80}})};
  const struct {
    LengthUnits Length;
    HeightMode From;
    const char* End;
  } cases[] = {{LengthUnits::Meter, HeightMode::Msl, " m"},
               {LengthUnits::Feet, HeightMode::Msl, " ft"},
               {LengthUnits::Feet, HeightMode::Agl, " ft AGL"}};
  for (const auto& c : cases) {
    deep.Set.GpmUnits = c.Length;
    deep.Set.Heights = c.From;
    ForEachPage(deep, [&](const SoundingPlot& plot) {
      const auto texts = test::Texts(plot.Page, "parcel level label");
      const auto isLcl = [](const std::string& text) { return text.starts_with("LCL"); };
      EXPECT_TRUE(plot.Page.Width() < 900 * kUnitsPerPixel || std::ranges::any_of(texts, isLcl));
      for (const std::string& text : texts) {
        const bool isShort = text.size() <= 3 && plot.Layout.Find("marks") == nullptr;
        EXPECT_TRUE(text.ends_with(c.End) || isShort) << text;
      }
    });
  }
}

// 600 by 450 points: 800 x 600 pixels at 96 dpi, 2500 x 1875 at 300.
TEST(DiagramPage, OneSizeIsOnePictureOnEverySurface) {
  const PageCase c{"convective", test::ReferenceConvective()};
  const auto svg = [&](const Surface& on) {
    return ToSvg(Draw(c, PageLayouts().front(), on).Page, 800, 600);
  };
  const std::string window = svg(WindowSurface(800, 600));
  for (const Surface& on :
       {ImageSurface(800, 600), ImageSurface(2500, 1875, 300), PaperSurface(600, 450),
        WindowSurface(1600, 1200, 2), PaperSurfaceMm(600 / 72.0 * 25.4, 450 / 72.0 * 25.4)}) {
    EXPECT_TRUE(svg(on) == window);
  }
}

// The grid of the page before stands again only where it would be drawn the same.
TEST(DiagramPage, APageOnTheGridOfAnotherIsThePageAlone) {
  struct GridCase {
    const char* About;
    SoundingRecord Sounding = test::ReferenceConvective();
    void (*Change)(DisplaySettings&) = [](DisplaySettings&) {};
    Surface On = WindowSurface(800, 600);
    std::optional<Rect> Zoom{};
    bool SameGrid = false;
  };
  const SoundingRecord first = test::ReferenceConvective();
  SoundingRecord moister = first;
  moister.Dewpt(3) += 1;
  const GridCase cases[] = {
      {.About = "the same", .SameGrid = true},
      {.About = "another dew point", .Sounding = moister, .SameGrid = true},
      {.About = "another size", .On = WindowSurface(820, 600)},
      {.About = "a part enlarged", .Zoom = Rect{0.2, 0.2, 0.7, 0.7}},
      {.About = "other axes", .Sounding = test::ReferenceWinter()},
      {.About = "no dry adiabats", .Change = [](DisplaySettings& set) { set.DryAdiabats = false; }},
      {.About = "another ink", .Change = [](DisplaySettings& set) { set.WetColor = 12; }},
      {.About = "a tephigram",
       .Change = [](DisplaySettings& set) { set.Diagram = DiagramType::Tephigram; }},
  };
  const DisplaySettings plain;
  const auto draw = [&](const GridCase& c, const DisplaySettings& set, const SoundingPlot* before) {
    const analysis::AnalysisResults results = analysis::Analyse(c.Sounding, set);
    return *PlotSounding({.Sounding = c.Sounding,
                          .Results = results,
                          .Set = set,
                          .On = c.On,
                          .Zoom = c.Zoom,
                          .Before = before});
  };
  const SoundingPlot before = draw({.About = "first"}, plain, nullptr);
  for (const GridCase& c : cases) {
    SCOPED_TRACE(c.About);
    DisplaySettings set = plain;
    c.Change(set);
    const SoundingPlot alone = draw(c, set, nullptr);
    const SoundingPlot after = draw(c, set, &before);
    EXPECT_TRUE(after.Page.Items() == alone.Page.Items());
    EXPECT_EQ(std::ranges::equal(alone.Page.Ground(), before.Page.Ground()), c.SameGrid);
  }
}

// "Lift Mode" and "LFC" are two words wherever the box stands.
TEST(DiagramPage, LabelsAndValuesOfTheAnalysisBoxStandApartAndAligned) {
  const PageCase c{"convective", test::ReferenceConvective()};
  for (const double width : {900.0, 1280.0, 2400.0}) {
    const SoundingPlot plot = Draw(c, PageLayouts().front(), WindowSurface(width, 800));
    const auto labels = test::Tagged<Label>(plot.Page, "index label");
    const auto values = test::Tagged<Label>(plot.Page, "index value");
    ASSERT_EQ(labels.size(), values.size());
    ASSERT_FALSE(labels.empty());
    std::map<double, std::set<int>> points;  // of each column, by tenths of a pixel
    for (std::size_t i = 0; i < labels.size(); ++i) {
      const Label &label = labels[i], &value = values[i];
      EXPECT_GE(test::PlaceOf(value).Left - test::PlaceOf(label).Right, 5 * kUnitsPerPixel)
          << label.Text << value.Text;
      const std::size_t point = value.Text.find('.');
      if (point == std::string::npos) continue;
      const double at = value.At.X + 0.6 * value.Size * static_cast<double>(point);
      points[label.At.X].insert(static_cast<int>(at / kUnitsPerPixel * 10));
    }
    for (const auto& [column, places] : points) EXPECT_EQ(places.size(), 1U) << column;
  }
}

}  // namespace
}  // namespace vexa::diagram
