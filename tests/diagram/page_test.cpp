// What holds of the diagram's page at every size, in every layout and on every surface.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "config/options.h"
#include "diagram/sounding_plot.h"
#include "support/page_checks.h"
#include "support/soundings.h"

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
  DisplaySettings options;
  options.Diagram = c.Type;
  options.FreezeLine = options.TropoLine = options.WetLabel = options.TempDualScale = true;
  const analysis::AnalysisResults results = analysis::Analyse(c.Sounding, options);
  return *PlotSounding({.Sounding = c.Sounding,
                        .Results = results,
                        .Set = options,
                        .Advection = {{1000, 850, 1.2}, {850, 700, -12}, {700, 690, 0.1}},
                        .On = on,
                        .Layout = &layout,
                        .Boxes = EmptyBoxes(layout),
                        .Configuration = "VEXA Config #1: summer"});
}

bool Overlap(const Rect& a, const Rect& b) {
  return a.Left < b.Right && b.Left < a.Right && a.Top < b.Bottom && b.Top < a.Bottom;
}

TEST(DiagramPage, TextsAreLegibleOnThePageAndApart) {
  for (const PageCase& c : Cases()) {
    for (const LayoutRow& layout : PageLayouts()) {
      for (const Size& size : kSizes) {
        SCOPED_TRACE(std::string(c.About) + ", " + std::string(layout.Name) + " " +
                     std::to_string(static_cast<int>(size.WidthPx)) + "x" +
                     std::to_string(static_cast<int>(size.HeightPx)));
        const SoundingPlot plot = Draw(c, layout, WindowSurface(size.WidthPx, size.HeightPx));
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
      }
    }
  }
}

TEST(DiagramPage, EveryRegionIsThereOrNamed) {
  const PageCase c{"convective", test::ReferenceConvective()};
  for (const LayoutRow& layout : PageLayouts()) {
    for (const Size& size : kSizes) {
      const SoundingPlot plot = Draw(c, layout, WindowSurface(size.WidthPx, size.HeightPx));
      EXPECT_EQ(plot.Layout.Regions.size() + plot.Layout.LeftOut.size(), layout.Regions.size());
      const Rect* diagram = plot.Layout.Find("diagram");
      ASSERT_NE(diagram, nullptr);
      const Rect frame = plot.Mapping.Frame();
      EXPECT_TRUE(diagram->Contains({frame.Left, frame.Top}) &&
                  diagram->Contains({frame.Right, frame.Bottom}));
      EXPECT_GT(frame.Width(), 0);
      EXPECT_GT(frame.Height(), 0);
    }
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
       {ImageSurface(800, 600), ImageSurface(2500, 1875, 300), PaperSurface(600, 450)}) {
    EXPECT_TRUE(svg(on) == window);
  }
}

// What the cursor reads is what was placed, and the same air lies at the same share of every frame.
TEST(DiagramPage, TheMappingInvertsAndLeansAlikeAtEverySize) {
  const PageCase c{"convective", test::ReferenceConvective()};
  double share = 0;
  for (const Size& size : kSizes) {
    const SoundingPlot plot =
        Draw(c, PageLayouts().front(), WindowSurface(size.WidthPx, size.HeightPx));
    const DiagramMapping& at = plot.Mapping;
    const Point there = at.ToPoint(-40, 250);
    const DiagramCoordinates back = at.ToCoordinates(there);
    EXPECT_NEAR(back.Temp, -40, 1e-3);
    EXPECT_NEAR(back.Press, 250, 1e-2);
    const double across = (there.X - at.Frame().Left) / at.Frame().Width();
    if (share == 0) share = across;
    EXPECT_NEAR(across, share, 1e-6);
  }
}

}  // namespace
}  // namespace vexa::diagram
