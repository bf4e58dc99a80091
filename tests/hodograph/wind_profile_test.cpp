#include "hodograph/wind_profile.h"

#include <gtest/gtest.h>

#include "analysis/analysis.h"
#include "config/options.h"
#include "core/markers.h"
#include "hodograph/comparison.h"
#include "hodograph/compass.h"
#include "support/soundings.h"

namespace vexa::hodograph {
namespace {

TEST(CompassName, SectorsAreCentredOnTheirPoints) {
  const std::pair<int, const char*> cases[] = {{0, "N"},     {11, "N"},   {12, "NNE"}, {33, "NNE"},
                                               {34, "NE"},   {90, "E"},   {101, "E"},  {102, "ESE"},
                                               {180, "S"},   {225, "SW"}, {281, "W"},  {282, "WNW"},
                                               {348, "NNW"}, {349, "N"},  {360, "N"}};
  for (const auto& [degrees, name] : cases) EXPECT_EQ(CompassName(degrees), name) << degrees;
}

TEST(WindProfile, LeavesOutMissingWindsAndEndsAtTheLimit) {
  const SoundingRecord sounding = test::Profile(
      {}, {{100, 180, 10}, {1100, kMissing, 20}, {2100, 270, 30}, {6100, 270, 50}}, 100);
  Options options;
  ASSERT_EQ(WindProfile(sounding, options).size(), 3u);
  EXPECT_EQ(WindProfile(sounding, options).back().Height, 6000);
  options.HodoDepthMode = HodoDepth::Limit;
  options.HodoDepthLimitKm = 4;
  const std::vector<ProfileWind> limited = WindProfile(sounding, options);
  ASSERT_EQ(limited.size(), 3u);
  EXPECT_EQ(limited.back().Height, 4000);
  EXPECT_NEAR(limited.back().Vector.U, -40, 1e-6);  // half-way between 30 and 50 kt from the west
  options.HodoDepthLimitKm = 1;                     // below the second wind
  EXPECT_EQ(WindProfile(sounding, options).size(), 2u);
}

TEST(WindProfile, CutsTheTraceAtEveryBandThatALayerCrosses) {
  // One layer from 2 to 12 km passes three edges at once.
  const std::vector<ProfileWind> winds = {{2000, {0, 0}}, {12000, {-100, 0}}, {13000, {-90, 0}}};
  const std::vector<TracePiece> pieces = CutAtBands(winds);
  ASSERT_EQ(pieces.size(), 5u);
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    EXPECT_EQ(pieces[i].Band, static_cast<int>(i) + 1);
    if (i == 0) continue;
    EXPECT_EQ(pieces[i].Winds.front().Height, pieces[i - 1].Winds.back().Height);
  }
  EXPECT_EQ(pieces[1].Winds.front().Height, 3000);
  EXPECT_NEAR(pieces[1].Winds.front().Vector.U, -10, 1e-9);
  EXPECT_EQ(pieces[4].Winds.size(), 2u);  // the edge and 13 km

  // A level on the edge is not doubled.
  const std::vector<TracePiece> onEdge = CutAtBands({{2000, {}}, {3000, {-1, 0}}, {4000, {-2, 0}}});
  ASSERT_EQ(onEdge.size(), 2u);
  EXPECT_EQ(onEdge[0].Winds.size(), 2u);
  EXPECT_EQ(onEdge[1].Winds.size(), 2u);
  EXPECT_TRUE(CutAtBands({}).empty());
}

// A wind of 20 kt from the west whose readings jump by 10 kt from metre to metre, and one of few
// levels.
TEST(WindProfile, IsSmoothedWhereItsLevelsCrowd) {
  std::vector<ProfileWind> noisy;
  for (int i = 0; i <= 500; ++i) noisy.push_back({10.0 * i, {i % 2 == 0 ? -30.0 : -10.0, 0}});
  const std::vector<ProfileWind> smooth = Smoothed(noisy);
  ASSERT_EQ(smooth.size(), 51u);
  EXPECT_EQ(smooth.front().Vector.U, -30);
  EXPECT_EQ(smooth.back().Height, 5000);
  for (std::size_t i = 1; i + 1 < smooth.size(); ++i) EXPECT_NEAR(smooth[i].Vector.U, -20, 0.4);
  const std::vector<ProfileWind> few = {{0, {-1, 0}}, {400, {-9, 0}}, {800, {0, 0}}};
  EXPECT_EQ(Smoothed(few).size(), 3u);
}

TEST(Comparison, WritesAndReadsSlots) {
  const test::TemporaryFolder folder;
  std::vector<Fault> faults;
  EXPECT_TRUE(LoadComparisons(folder.Path(), faults).empty());
  EXPECT_TRUE(faults.empty());
  const SoundingRecord sounding = test::ReferenceWinter();
  ASSERT_FALSE(KeepComparison(folder.Path(), 2, sounding));
  ASSERT_FALSE(EmptyComparison(folder.Path(), 1));
  const std::vector<ComparedWinds> read = LoadComparisons(folder.Path(), faults);
  ASSERT_EQ(read.size(), 1u);
  EXPECT_EQ(read[0].Slot, 2);
  EXPECT_EQ(read[0].Title, "Reference B, winter");
  ASSERT_EQ(read[0].Winds.size(), 16u);
  EXPECT_EQ(read[0].Winds[1].Height, 180);
  EXPECT_NEAR(analysis::FromComponents(read[0].Winds[1].Vector).Dir, 255, 0.06);
  EXPECT_TRUE(std::filesystem::exists(folder.Path() / "VEXAcalculations" / "Compare 2.dat"));
}

TEST(Comparison, DamagedFilesNameTheLine) {
  const struct {
    const char* about;
    const char* text;
    int line;  // 0: an unused slot
  } cases[] = {
      {"unused", "empty\r\n", 0},
      {"nothing at all", "", 0},
      {"a word for a speed", "A\r\n0,180,10\r\n500,190,x\r\n", 3},
      {"two values", "A\n0,180\n", 2},
      {"four values", "A\n0,180,10,5\n", 2},
      {"a direction of 400", "A\n0,400,10\n", 2},
      {"heights that fall", "A\n500,180,10\n\n400,180,10\n", 4},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.about);
    const auto parsed = ParseComparison(c.text, 1);
    ASSERT_EQ(parsed.Ok(), c.line == 0);
    EXPECT_TRUE(parsed.Ok() ? !parsed.Value()
                            : parsed.Error().Detail.find("line " + std::to_string(c.line)) !=
                                  std::string::npos);
  }
}

}  // namespace
}  // namespace vexa::hodograph
