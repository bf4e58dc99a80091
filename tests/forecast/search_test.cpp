// The search among files and its catalogue, verification, and what the mouse chooses on the map.
#include "forecast/search.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "analysis/analysis_settings.h"
#include "config/options.h"
#include "core/files.h"
#include "forecast/forecast_map.h"
#include "forecast/verification.h"
#include "ingest/sounding_files.h"
#include "support/soundings.h"
#include "support/tagged_items.h"

namespace vexa::forecast {
namespace {

const AnalysisSettings kUsual{};

SoundingRecord Blown(const std::string& hour, double lon, double warmer = 0) {
  SoundingRecord sounding =
      test::Profile({{1000, 20 + warmer, 10}, {850, 12 + warmer, 4}, {500, -20 + warmer, -40}},
                    {{0, 270, 30}, {500, 270, 30}, {1000, 270, 30}, {3000, 270, 30}});
  SetDecimalPosition(sounding, 45, lon);
  sounding.StationTitle =
      "at " + std::to_string(static_cast<int>(lon)) + "  " + hour + "Z 22 May 2023";
  return sounding;
}

class Search : public testing::Test {
 protected:
  void Put(const std::string& name, const SoundingRecord& sounding) {
    folder_.Write(name, sounding);
  }
  std::vector<std::filesystem::path> Files() const { return ingest::FilesBelow(folder_.Path()); }

  test::TemporaryFolder folder_{};
};

TEST_F(Search, ReadsOnlyWhatChanged) {
  Put("a.RAW", Blown("12", 7));
  Put("b.RAW", Blown("12", 8));
  folder_.Write("notes.txt", "no sounding");
  Catalogue first;
  ASSERT_TRUE(first.Update(Files(), {}, {}));
  EXPECT_EQ(first.FilesRead(), 3);
  Catalogue second(first.Text());
  EXPECT_EQ(second.Text(), first.Text());
  ASSERT_TRUE(second.Update(Files(), {}, {}));
  EXPECT_EQ(second.FilesRead(), 0) << "not even the file that holds no sounding";
  ASSERT_EQ(second.Of(folder_.Path() / "b.RAW").size(), 1u);
  EXPECT_EQ(second.Of(folder_.Path() / "b.RAW")[0], first.Of(folder_.Path() / "b.RAW")[0]);
  EXPECT_EQ(second.Of(folder_.Path() / "b.RAW")[0].Time, (ObservationTime{2023, 5, 22, 12, 0}));

  SoundingRecord longer = Blown("13", 8);
  longer.AddTemp(400, -40, -60);
  Put("b.RAW", longer);
  ASSERT_TRUE(second.Update(Files(), {}, {}));
  EXPECT_EQ(second.FilesRead(), 1);
  EXPECT_EQ(second.Of(folder_.Path() / "b.RAW")[0].Time.Hour, 13);

  const std::string whole = first.Text();
  Catalogue torn(whole.substr(0, whole.size() * 2 / 3));
  ASSERT_TRUE(torn.Update(Files(), {}, {}));
  EXPECT_GT(torn.FilesRead(), 0);
  EXPECT_EQ(torn.Text(), second.Text()) << "what was torn off is read from the files";
  Catalogue foreign("a,b,c\n1,2,3\n");
  ASSERT_TRUE(foreign.Update(Files(), {}, {}));
  EXPECT_EQ(foreign.Text(), second.Text());
}

TEST_F(Search, StopsWhenTheUserWants) {
  for (int i = 0; i < 5; ++i) Put(std::to_string(i) + ".RAW", Blown("12", 5 + i));
  test::ScriptedInteraction user;
  user.StopAfter = 2;
  Catalogue catalogue;
  const SearchResult stopped =
      SearchAround(Blown("12", 10), 1000, Files(), catalogue, {}, kUsual, Progress(user));
  EXPECT_TRUE(stopped.Stopped);
  EXPECT_EQ(catalogue.FilesRead(), 2) << "what was read is kept";
  SearchAround(Blown("12", 10), 1000, Files(), catalogue, {}, kUsual, {});
  EXPECT_EQ(catalogue.FilesRead(), 3);
}

TEST_F(Search, LoadsWhatStandsAround) {
  Put("near.RAW", Blown("12", 8));
  Put("far.RAW", Blown("12", -20));
  Put("late.RAW", Blown("18", 8.5));
  Catalogue catalogue;
  SoundingRecord main = Blown("12", 10);
  main.Time = {2023, 5, 22, 12, 0};
  const SearchResult found = SearchAround(main, 500, Files(), catalogue, {}, kUsual, {});
  ASSERT_EQ(found.Found.size(), 1u);
  EXPECT_TRUE(found.Found[0]->Source.ends_with("near.RAW"));
  EXPECT_TRUE(found.Failed.empty());
}

// Air 4 degrees warmer comes from the west and is there after four hours; persistence misses it by
// all of that.
TEST(Verification, ForecastBesidePersistence) {
  const auto at = [](int hour, double lon, double warmer) {
    SoundingRecord sounding = Blown(hour == 12 ? "12" : "16", lon, warmer);
    sounding.Time = {2023, 5, 22, hour, 0};
    return ProfileOf(sounding, "file", kUsual);
  };
  const std::vector<SharedProfile> all = {at(12, 10, 0), at(12, 7, 4), at(16, 10, 4),
                                          at(16, 10, 4)};
  const ForecastSettings set{.UsesBoundary = false};
  const Verification found = Verify(all, set, kUsual);
  EXPECT_EQ(found.Pairs, 1) << "the repeated sounding counts once";
  EXPECT_EQ(found.Forecasts, 1);
  const auto row = std::ranges::find(found.Rows, 850, &VerificationRow::Press);
  ASSERT_NE(row, found.Rows.end());
  EXPECT_EQ(row->Hours, 4);
  EXPECT_EQ(row->Forecast[0].Count(), 1);
  EXPECT_NEAR(row->Persistence[0].Bias(), -4, 1e-9);
  EXPECT_NEAR(row->Persistence[0].Rmse(), 4, 1e-9);
  // 222.2 km from the station and 13.6 km from the one in the west: 4·0.0037 are lacking.
  EXPECT_NEAR(row->Forecast[0].Bias(), -0.015, 0.01);
  EXPECT_NEAR(row->Forecast[2].Rmse(), 0, 1e-9) << "the wind is the same everywhere";
}

TEST(Verification, ErrorsAddUp) {
  ErrorSum sum;
  for (const double difference : {1.0, -3.0, 2.0}) sum.Add(difference, difference * difference);
  EXPECT_EQ(sum.Bias(), 0);
  EXPECT_NEAR(sum.Rmse(), std::sqrt(14.0 / 3), 1e-12);
}

TEST(ForecastMap, BoxesAndLines) {
  const auto at = [](double lon) { return ProfileOf(Blown("12", lon), "file", kUsual); };
  Region region = RegionAround(at(10), {at(8), at(12), at(7)}, 500);
  const Options look{};
  const std::vector<map::MapLine> none;
  const map::AreaMap page =
      PlotForecastMap({.Of = region, .Lines = none, .Set = look}, WindowSurface(900, 700));
  EXPECT_EQ(test::CountOf(page.Page, "main sounding"), 1);
  EXPECT_EQ(test::CountOf(page.Page, "upwind sounding"), 2);
  EXPECT_EQ(test::CountOf(page.Page, "nearby sounding"), 1);
  EXPECT_EQ(MapCaption(region), "Mean 1 km winds for 3 Soundings within 500 km of at 10");

  const Point west = *page.At.ToPage({45, 8}), farther = *page.At.ToPage({45, 7});
  EXPECT_EQ(NeighbourAt(region, page.At, {west.X + 20, west.Y}), 0u);
  EXPECT_FALSE(NeighbourAt(region, page.At, *page.At.ToPage({46, 10})));
  // From the lower right corner to the upper left one.
  const auto boxed =
      NeighboursIn(region, page.At, {west.X + 50, west.Y + 50, farther.X - 50, farther.Y - 50});
  EXPECT_EQ(boxed.size(), 2u);
  EXPECT_NEAR(*BearingTo(region, page.At, *page.At.ToPage({45, 12})), 89.29, 0.1);
  EXPECT_FALSE(BearingTo(region, page.At, *page.At.ToPage({45, 10})));
}

}  // namespace
}  // namespace vexa::forecast
