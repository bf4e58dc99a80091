#include "picture/layout.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "picture/page_layouts.h"

namespace vexa {
namespace {

struct Size {
  double WidthPx;
  double HeightPx;
};

// From a dock to an ultra-wide window, both ways of A4 and a stamp.
constexpr Size kSizes[] = {{320, 240},   {500, 300},   {640, 480},  {800, 600},   {900, 1400},
                           {1024, 768},  {1280, 800},  {1440, 900}, {1600, 1200}, {1920, 1080},
                           {3440, 1440}, {2400, 800},  {800, 1200}, {1123, 794},  {794, 1123},
                           {1000, 1000}, {5120, 1440}, {60, 40}};

bool Overlap(const Rect& a, const Rect& b) {
  return a.Left < b.Right - 1e-6 && b.Left < a.Right - 1e-6 && a.Top < b.Bottom - 1e-6 &&
         b.Top < a.Bottom - 1e-6;
}

TEST(CutPage, RegionsLieOnThePageApartAndNoneIsLost) {
  for (const LayoutRow& layout : PageLayouts()) {
    for (const Size& size : kSizes) {
      SCOPED_TRACE(testing::Message()
                   << layout.Name << ' ' << size.WidthPx << 'x' << size.HeightPx);
      const auto& rows = layout.Regions;
      const PageLayout cut = CutPage(WindowSurface(size.WidthPx, size.HeightPx), rows);
      EXPECT_EQ(cut.Regions.size() + cut.LeftOut.size(), rows.size());
      EXPECT_NE(cut.Find("diagram"), nullptr);
      for (std::size_t i = 0; i < cut.Regions.size(); ++i) {
        const Rect& where = cut.Regions[i].Where;
        EXPECT_TRUE(0 <= where.Left && where.Left < where.Right && where.Right <= cut.Page.Right &&
                    0 <= where.Top && where.Top < where.Bottom && where.Bottom <= cut.Page.Bottom)
            << cut.Regions[i].Name;
        for (std::size_t j = i + 1; j < cut.Regions.size(); ++j) {
          EXPECT_FALSE(Overlap(where, cut.Regions[j].Where))
              << cut.Regions[i].Name << " on " << cut.Regions[j].Name;
        }
      }
      for (const RegionRow& row : rows) {
        const Rect* where = cut.Find(row.Name);
        EXPECT_NE(where == nullptr,
                  std::ranges::count(cut.LeftOut, row.Name, &RegionRow::Name) == 0);
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
  EXPECT_EQ(hodograph(3440, 1440), "right");
  EXPECT_EQ(hodograph(800, 600), "right");
  EXPECT_EQ(hodograph(700, 800), "beneath");
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

}  // namespace
}  // namespace vexa
