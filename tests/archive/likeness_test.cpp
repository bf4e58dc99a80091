// What is usual and what is alike, in catalogues whose values are known by hand.
#include <cmath>

#include "analysis/analysis.h"
#include "archive/analogues.h"
#include "archive/climate.h"
#include "archive/station_files.h"
#include "sounding/sounding_source.h"

namespace vexa::archive {
namespace {

// Hyndman and Fan, definition 7, of 15, 20, 35, 40, 50: worked by hand.
TEST(Distribution, PercentilesAndRanks) {
  const Distribution spread({40, 15, 50, 35, 20});
  const std::pair<double, double> cases[] = {{0, 15},  {5, 16},  {30, 23}, {40, 29},
                                             {50, 35}, {90, 46}, {100, 50}};
  for (const auto& [percent, value] : cases) {
    EXPECT_NEAR(spread.Percentile(percent), value, 1e-9) << percent;
  }
  EXPECT_EQ(spread.RankOf(14), 0);
  EXPECT_EQ(spread.RankOf(35), 50);  // two below, half of itself
  EXPECT_EQ(spread.RankOf(36), 60);
  EXPECT_EQ(spread.RankOf(60), 100);
  EXPECT_EQ(Distribution({7}).Percentile(90), 7);
  EXPECT_EQ(Distribution({7, 7, 7}).RankOf(7), 50);
}

TEST(Climate, WordsOfARank) {
  Climate climate{.Of = {.Month = 6}, .Ascents = 1240, .FirstYear = 1973, .LastYear = 2024};
  EXPECT_EQ(RankText(97.2, 1240, climate), "97th of 1,240 June ascents, 1973-2024");
  EXPECT_EQ(RankText(100, 1200, climate), "99th of 1,200 June ascents, 1973-2024");
  EXPECT_EQ(RankText(0, 1240, climate), "1st of 1,240 June ascents, 1973-2024");
  EXPECT_EQ(RankText(11, 1240, climate), "11th of 1,240 June ascents, 1973-2024");
  EXPECT_EQ(RankText(22, 1240, climate), "22nd of 1,240 June ascents, 1973-2024");
  climate.Of = {.DayOfYear = 60, .WindowDays = 10, .Hour = 0};
  climate.FirstYear = 2024;
  EXPECT_EQ(climate.SampleText(), "1,240 00 UTC ascents within 10 days, 2024");
}

class CatalogueOfLikeness : public testing::Test {
 protected:
  void SetUp() override {
    // 60 ascents from the first of June to the 30th of July 1999 at noon, K index 40 + 0.1 a day,
    // three at midnight and some of another station.
    std::string text = IgraFile(72558, 60);
    for (int i = 1; i <= 3; ++i) text += IgraSounding(72558, 2003, 6, i, 0, -10);
    Write(folder_.Path() / "a.txt", text);
    Write(folder_.Path() / "b.txt", IgraFile(72401, 40, 2001));
    catalogue_.emplace(Opened(folder_.Path() / "c"));
    Add(*catalogue_,
        {TextFromPath(folder_.Path() / "a.txt"), TextFromPath(folder_.Path() / "b.txt")});
  }
  std::vector<Analogue> Nearest(double warmer, const AnalogueRequest& request) {
    auto source = SoundingSource::Open("x", IgraSounding(72558, 1999, 6, 10, 12, warmer));
    const AnalysedSounding sounding(*std::move(source.Value().Load(0, {}).Sounding));
    const auto vectors = Vectors::Of(*catalogue_);
    EXPECT_TRUE(vectors) << vectors.Error().Detail;
    return vectors.Value().Nearest({sounding, sounding.Results({})}, request);
  }
  std::string Told(const std::vector<Analogue>& found) {
    const Column* const columns[] = {FindColumn("station"), FindColumn("time")};
    std::string text;
    for (const Analogue& one : found) {
      const auto cells = RowOf(*catalogue_, one.Id, columns).Value();
      text += CellText(cells[0]) + " " + CellText(cells[1]).substr(0, 13) + "\n";
    }
    return text;
  }
  test::TemporaryFolder folder_{};
  std::optional<Catalogue> catalogue_{};
};

TEST_F(CatalogueOfLikeness, ClimateOfAStation) {
  const Outcome<Climate> june =
      ClimateOf(*catalogue_, {.Station = 72558, .Month = 6, .Hour = 12, .LeastSample = 30});
  ASSERT_TRUE(june);
  EXPECT_EQ(june.Value().SampleText(), "30 June 12 UTC ascents, 1999");
  const Distribution* ki = june.Value().Find(*FindColumn("KI"));
  ASSERT_NE(ki, nullptr);
  EXPECT_EQ(ki->Count(), 30);  // 40.0 to 42.9
  EXPECT_NEAR(ki->Percentile(50), 41.45, 1e-5);
  EXPECT_NEAR(ki->Percentile(10), 40.29, 1e-5);
  // At 850 hPa 20.0 to 22.9 °C, dew points 15.0 to 17.9, 8 m/s from 190 degrees always.
  const LevelClimate& level = june.Value().Levels[2];
  EXPECT_NEAR((*level.Temp)[1], 21.45, 1e-5);
  EXPECT_NEAR((*level.Dewpt)[2], 17.61, 1e-5);
  EXPECT_NEAR((*level.Speed)[0], 8 / 0.5144, 0.1);
  EXPECT_FALSE(june.Value().Levels[0].Temp);  // 1000 hPa lies below the ground

  const auto countOf = [&](ClimateRequest request) {
    request.Station = 72558;
    return ClimateOf(*catalogue_, request).Value().Ascents;
  };
  EXPECT_EQ(countOf({.Month = 6}), 33);
  EXPECT_EQ(countOf({.Hour = 23}), 3);  // midnight is an hour later
  EXPECT_EQ(countOf({.DayOfYear = DayOfYear(6, 1), .WindowDays = 3, .Hour = 12}), 4);
  EXPECT_EQ(countOf({.DayOfYear = DayOfYear(1, 1), .WindowDays = 183}), 63);  // round the year
  EXPECT_TRUE(
      ClimateOf(*catalogue_, {.Station = 72558, .Month = 6, .Hour = 0}).Value().Indices.empty());
  EXPECT_TRUE(ClimateOf(*catalogue_, {.Station = 1}).Value().Indices.empty());
}

TEST_F(CatalogueOfLikeness, TheNearestAreFoundInOrder) {
  // The day that is as warm, then its neighbours, of both stations alike.
  const std::vector<Analogue> found =
      Nearest(0.9, {.DayOfYear = DayOfYear(6, 10), .Hour = 12, .Station = 72558, .Most = 3});
  ASSERT_EQ(found.size(), 3U);
  EXPECT_EQ(found[0].Distance, 0);
  EXPECT_EQ(Told({found[0]}), "72558 1999-06-10T12\n");
  EXPECT_GT(found[1].Distance, 0);
  EXPECT_LE(found[1].Distance, found[2].Distance);
  const std::string neighbours = Told({found[1], found[2]});
  EXPECT_NE(neighbours.find("1999-06-09"), std::string::npos) << neighbours;
  EXPECT_NE(neighbours.find("1999-06-11"), std::string::npos) << neighbours;

  EXPECT_EQ(Told(Nearest(0.9, {.Most = 2})), "72558 1999-06-10T12\n72401 2001-06-10T12\n");
  EXPECT_EQ(Told(Nearest(
                5.9, {.DayOfYear = DayOfYear(6, 1), .WindowDays = 5, .Station = 72401, .Most = 1})),
            "72401 2001-06-06T12\n");
  EXPECT_EQ(Told(Nearest(9, {.Hour = 22, .Most = 1})).substr(0, 16), "72558 2003-06-01");
  EXPECT_TRUE(Nearest(9, {.Hour = 6, .Most = 1}).empty());

  // What is entered later is found: what was kept is made anew.
  Write(folder_.Path() / "z.txt", IgraSounding(72558, 2005, 6, 10, 12, 30));
  Add(*catalogue_, {TextFromPath(folder_.Path() / "z.txt")});
  EXPECT_EQ(Told(Nearest(30, {.Most = 1})), "72558 2005-06-10T12\n");
}

// Two quantities alone, by hand: everything else is the same everywhere.
TEST(Analogues, DistanceIsInStandardDeviations) {
  test::TemporaryFolder folder;
  Catalogue catalogue = Opened(folder.Path() / "c");
  // Temperatures at 20 pressures differ by 1 degree of a deviation of 1/sqrt(2) from each other,
  // and so do the dew points; the winds are the same.
  Write(folder.Path() / "a.txt",
        IgraSounding(72558, 1999, 6, 1, 12, 0) + IgraSounding(72558, 1999, 6, 2, 12, 1));
  Add(catalogue, {TextFromPath(folder.Path() / "a.txt")});
  auto source = SoundingSource::Open("x", IgraSounding(72558, 1999, 6, 10, 12, 0));
  const AnalysedSounding sounding(*std::move(source.Value().Load(0, {}).Sounding));
  const auto vectors = Vectors::Of(catalogue);
  ASSERT_TRUE(vectors);
  const auto found = vectors.Value().Nearest({sounding, sounding.Results({})}, {.Most = 2});
  ASSERT_EQ(found.size(), 2U);
  EXPECT_EQ(found[0].Distance, 0);
  // Of two values each is sqrt(2) deviations from the other: 2 in three parts of four, the winds 0.
  EXPECT_NEAR(found[1].Distance, std::sqrt(1.5), 0.1);
}

}  // namespace
}  // namespace vexa::archive
