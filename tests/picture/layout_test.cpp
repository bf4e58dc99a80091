#include "picture/layout.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "picture/page_layouts.h"

namespace vexa {
namespace {

std::vector<RegionRow> AllBoxes(const LayoutRow& layout) {
  return {layout.Regions.begin(), layout.Regions.end()};
}

struct Size {
  double WidthPx;
  double HeightPx;
};

// From a dock to an ultra-wide window, both ways of A4 and a stamp.
constexpr Size kSizes[] = {{320, 240},   {500, 300},   {640, 480},  {800, 600},   {900, 1400},
                           {1024, 768},  {1280, 800},  {1440, 900}, {1600, 1200}, {1920, 1080},
                           {3440, 1440}, {2400, 800},  {800, 1200}, {1123, 794},  {794, 1123},
                           {1000, 1000}, {5120, 1440}, {60, 40}};

std::string Named(const LayoutRow& layout, const Size& size) {
  return std::string(layout.Name) + " " + std::to_string(static_cast<int>(size.WidthPx)) + "x" +
         std::to_string(static_cast<int>(size.HeightPx));
}

bool Overlap(const Rect& a, const Rect& b) {
  return a.Left < b.Right - 1e-6 && b.Left < a.Right - 1e-6 && a.Top < b.Bottom - 1e-6 &&
         b.Top < a.Bottom - 1e-6;
}

TEST(CutPage, RegionsLieOnThePageApartAndNoneIsLost) {
  for (const LayoutRow& layout : PageLayouts()) {
    for (const Size& size : kSizes) {
      SCOPED_TRACE(Named(layout, size));
      const std::vector<RegionRow> rows = AllBoxes(layout);
      const PageLayout cut = CutPage(WindowSurface(size.WidthPx, size.HeightPx), rows);
      EXPECT_EQ(cut.Regions.size() + cut.LeftOut.size(), rows.size());
      EXPECT_NE(cut.Find("diagram"), nullptr);
      std::set<std::string_view> names;
      for (const RegionRow& row : rows) {
        if (cut.Find(row.Name) != nullptr) names.insert(row.Name);
      }
      for (const RegionRow& row : cut.LeftOut) names.insert(row.Name);
      EXPECT_EQ(names.size(), rows.size());
      for (std::size_t i = 0; i < cut.Regions.size(); ++i) {
        const Rect& where = cut.Regions[i].Where;
        EXPECT_GE(where.Left, 0) << cut.Regions[i].Name;
        EXPECT_GE(where.Top, 0) << cut.Regions[i].Name;
        EXPECT_LE(where.Right, cut.Page.Right) << cut.Regions[i].Name;
        EXPECT_LE(where.Bottom, cut.Page.Bottom) << cut.Regions[i].Name;
        EXPECT_GT(where.Width(), 0) << cut.Regions[i].Name;
        EXPECT_GT(where.Height(), 0) << cut.Regions[i].Name;
        for (std::size_t j = i + 1; j < cut.Regions.size(); ++j) {
          EXPECT_FALSE(Overlap(where, cut.Regions[j].Where))
              << cut.Regions[i].Name << " on " << cut.Regions[j].Name;
        }
      }
      for (const RegionRow& row : rows) {
        const Rect* where = cut.Find(row.Name);
        if (where == nullptr || row.At == Place::Main) continue;
        EXPECT_GE(where->Width(), row.LeastWidth - 1e-6) << row.Name;
        EXPECT_GE(where->Height(), row.LeastHeight - 1e-6) << row.Name;
      }
    }
  }
}

// Where the boxes go is what a reader of the window sees first.
TEST(CutPage, BoxesGoRightOnWidePagesAndBeneathOnTallOnes) {
  const LayoutRow& forecaster = *FindLayout("forecaster");
  const auto hodograph = [&](double width, double height) {
    const PageLayout cut = CutPage(WindowSurface(width, height), forecaster.Regions);
    const Rect* box = cut.Find("parcels");
    const Rect* diagram = cut.Find("diagram");
    if (box == nullptr) return std::string("none");
    return std::string(box->Left >= diagram->Right ? "right" : "beneath");
  };
  EXPECT_EQ(hodograph(1280, 800), "right");
  EXPECT_EQ(hodograph(1920, 1080), "right");
  EXPECT_EQ(hodograph(3440, 1440), "right");
  EXPECT_EQ(hodograph(800, 600), "right");
  EXPECT_EQ(hodograph(700, 800), "beneath");
  EXPECT_EQ(hodograph(900, 1400), "beneath");
  EXPECT_EQ(hodograph(794, 1123), "beneath");
  EXPECT_EQ(hodograph(320, 240), "none");
}

TEST(CutPage, SaysWhatIsLeftOutAndWhere) {
  const RegionRow rows[] = {
      {.Name = "main", .At = Place::Main, .LeastWidth = 100, .LeastHeight = 100},
      {.Name = "a",
       .At = Place::Foot,
       .LeastHeight = 5000,
       .Priority = 1,
       .Caption = "indices",
       .Elsewhere = "F4"},
      {.Name = "b", .At = Place::Foot, .LeastHeight = 50, .Priority = 2},
      {.Name = "c", .At = Place::Foot, .LeastHeight = 6000, .Priority = 3, .Caption = "winds"}};
  EXPECT_EQ(LeftOutText(CutPage(WindowSurface(100, 100), rows)), "Not shown: indices (F4), winds");
  EXPECT_EQ(LeftOutText(CutPage(WindowSurface(1000, 2000), rows)), "");
}

TEST(Surface, OneSizeInPointsIsOneSizeOnEverySurface) {
  // 600 by 450 points are 800 by 600 pixels at 96 dpi and 2500 by 1875 at 300.
  const Surface window = WindowSurface(800, 600);
  for (const Surface& other : {ImageSurface(800, 600), ImageSurface(2500, 1875, 300),
                               PaperSurface(600, 450), WindowSurface(1600, 1200, 2)}) {
    EXPECT_DOUBLE_EQ(other.Width, window.Width);
    EXPECT_DOUBLE_EQ(other.Height, window.Height);
  }
  EXPECT_NEAR(PaperSurfaceMm(254, 127).Width, PaperSurface(720, 360).Width, 1e-9);
}

}  // namespace
}  // namespace vexa
