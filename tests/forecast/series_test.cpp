// A forecast stepped ahead: its hours, its end, its files.
#include "forecast/series_files.h"

#include <gtest/gtest.h>

#include "forecast/listings.h"
#include "support/full_disk.h"
#include "support/soundings.h"

namespace vexa::forecast {
namespace {

const AnalysisSettings kSet{};

// Wind 240/30 everywhere; one sounding upwind, so far along the wind.
ForecastSeries Upwind(double rangeKm) {
  SoundingRecord sounding =
      test::Profile({{1000, 20, 10}, {900, 14, 4}, {500, -20, -30}},
                    {{0, 240, 30}, {500, 240, 30}, {1000, 240, 30}, {3000, 240, 30}}, 10);
  SetDecimalPosition(sounding, 45, 10);
  sounding.Time = {2023, 12, 31, 23, 30};
  Region region;
  region.Main = ProfileOf(sounding, "/here/TODAY.RAW", kSet);
  sounding.Temp(2) = 18;
  region.Near = {{.Of = ProfileOf(sounding, "other", kSet), .Bearing = 240, .RangeKm = rangeKm}};
  ChooseUpwind(region);
  return ForecastSeries(std::move(region));
}

int HoursOf(ForecastSeries& series, const ForecastSettings& set, SeriesEnd& end) {
  while ((end = series.Advance(set, kSet)) == SeriesEnd::No) {
  }
  return static_cast<int>(series.Steps().size());
}

// 55.56 km an hour: 405.7 + 50 km is 8.2 hours away.
TEST(Series, Ends) {
  SeriesEnd end{};
  ForecastSeries series = Upwind(405.7);
  EXPECT_EQ(HoursOf(series, {}, end), 8);
  EXPECT_EQ(end, SeriesEnd::Threshold);
  EXPECT_EQ(EndBox(end).Text,
            "=====  No available upwind data.         =====  Forecast data threshold exceeded.");
  // Eight hours are 444.48 km, of which 50 may lie behind the last sounding.
  for (const auto& [rangeKm, hours] : {std::pair(394.3, 7), std::pair(394.6, 8)}) {
    ForecastSeries near = Upwind(rangeKm);
    EXPECT_EQ(HoursOf(near, {}, end), hours) << rangeKm;
  }
  ForecastSeries far = Upwind(1999);
  EXPECT_EQ(HoursOf(far, {}, end), 24);
  EXPECT_EQ(EndBox(end).Title, "Max forecast hour reached");

  ForecastSeries alone = Upwind(405.7);
  EXPECT_EQ(HoursOf(alone, {.Mode = ForecastMode::Single}, end), 24);
  EXPECT_EQ(end, SeriesEnd::LastHour);

  ForecastSeries none;
  Region region = Upwind(100).Around();
  region.Near[0].Bearing = 60;
  ChooseUpwind(region);
  none.SetRegion(region);
  EXPECT_EQ(none.Advance({}, kSet), SeriesEnd::NoUpwind);
  const ForecastSettings off{
      .Mode = ForecastMode::Single, .UsesMain = false, .UsesBoundary = false};
  EXPECT_EQ(none.Advance(off, kSet), SeriesEnd::LayersOff);
  EXPECT_TRUE(none.Steps().empty());
}

TEST(Series, BeginsAgainAtTheOriginalButTheGroundGoesOn) {
  ForecastSeries series = Upwind(2000);
  const ForecastSettings set{
      .UsesBoundary = false, .SurfaceChange = 0.1, .SurfaceSpread = Spread::None};
  for (int i = 0; i < 3; ++i) ASSERT_EQ(series.Advance(set, kSet), SeriesEnd::No);
  const ForecastStep& third = series.Steps()[2];
  EXPECT_NEAR(third.Sounding.Temp(1), 20.3, 1e-9);
  // 900 hPa: 14 and 18 °C with the weights of 166.68 and 1833.32 km, 0.991801 and 0.008199.
  EXPECT_NEAR(third.Sounding.Temp(3), 14 + 4 * 0.008199, 0.006);
  EXPECT_EQ(third.Sounding.Time, (ObservationTime{2024, 1, 1, 2, 30}));
  EXPECT_EQ(third.Sounding.StationTitle, "test_Forecast  0230Z 01 Jan 2024");
  EXPECT_EQ(third.Sounding.DataFormat, "RAW");
  EXPECT_EQ(third.Sounding.Press(1), 1000);
  EXPECT_EQ(third.Sounding.ElevM, 10);
  series.StepBack();
  ASSERT_EQ(series.Advance(set, kSet, "front passes"), SeriesEnd::No);
  EXPECT_NEAR(series.Steps()[2].Sounding.Temp(1), 20.3, 1e-9);
  EXPECT_EQ(series.Steps()[2].Sounding.StationTitle, "front passes_Forecast  0230Z 01 Jan 2024");
}

// In a dense network hundreds of soundings have a share that nobody could see.
TEST(Series, AnHourNamesTheSoundingsThatCount) {
  ForecastStep step;
  step.Choice = {.Hour = 2, .RateKt = 17.5, .WindFrom = 262, .UpwindKm = 65};
  step.Choice.Parts = {{{}, 40, 0.05}, {0, 10, 0.9}, {1, 50, 0.041}, {2, 200, 0.005}};
  for (std::size_t i = 3; i < 7; ++i) step.Choice.Parts.push_back({i, 900, 0.001});
  EXPECT_EQ(
      StepText(step),
      "  2 hrs  Advection rate: 17.5 kts from 262, 65 km upwind: itself 5% #1 90% #2 4% #3 1%, "
      "4 more under 1% each");
}

TEST(Series, Names) {
  EXPECT_EQ(ForecastFileName("/a/TODAY.RAW", 6), "TODAY_06h_Forecast.RAW");
  EXPECT_EQ(SeriesFileName("/a/TODAY.RAW"), "TODAY_Forecast.CSV");
  const ObservationTime time{1999, 5, 4, 6, 0};
  EXPECT_EQ(ForecastTitle("72357 - OUN - Norman  00Z 04 May 1999", time, 6),
            "72357 - OUN - Norman_Forecast  06Z 04 May 1999");
  EXPECT_EQ(ForecastTitle("no time", {}, 6), "no time +6 hrs_Forecast");
  EXPECT_EQ(ForecastTitle(std::string(60, 'x'), time, 12).size(), 54u);
  EXPECT_EQ(ForecastTitle(std::string(60, 'x'), {}, 12).size(), 54u);
}

TEST(Series, IsATableOfItsHours) {
  ForecastSeries series = Upwind(405.7);
  ASSERT_EQ(series.Advance({}, kSet), SeriesEnd::No);
  const std::string csv = SeriesCsv(series, kSet);
  EXPECT_EQ(csv.find("This is a VEXA Forecast Time-Series CSV File.\nVEXA/CSV,test\n"
                     "LAT, 45.00\nLON, 10.00\nELEV, 10\nVEXA/DATA\nHOUR,"),
            0u);
  EXPECT_NE(csv.find("\n0,2023-12-31T23:30Z,0.00,0,1000.00,10,20.00,10.00,240,30.00\n"),
            std::string::npos);
  EXPECT_NE(csv.find("\n1,2024-01-01T00:30Z,30.00,240,1000.00,10,"), std::string::npos);
}

TEST(Series, ComesWholeOrNotAtAll) {
  const test::TemporaryFolder folder;
  ForecastSeries series = Upwind(405.7);
  for (int i = 0; i < 2; ++i) ASSERT_EQ(series.Advance({}, kSet), SeriesEnd::No);
  const std::vector<SeriesFile> files = FilesOf(series, kSet);
  ASSERT_EQ(files.size(), 3u);
  EXPECT_EQ(FilesOf(series, kSet, 1).front().Name, "TODAY_02h_Forecast.RAW");
  folder.Write("TODAY_01h_Forecast.RAW", "old");
  EXPECT_EQ(Existing(folder.Path(), files), std::vector<std::string>{"TODAY_01h_Forecast.RAW"});
  test::FullDisk disk(3);
  const auto fault = SaveTogether(folder.Path(), files, disk);
  ASSERT_TRUE(fault);
  EXPECT_EQ(fault->Number, kFaultDiskFull);
  EXPECT_EQ(ReadFile(folder.Path() / "TODAY_01h_Forecast.RAW").Value(), "old");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path()), {}), 1);
  ASSERT_FALSE(SaveTogether(folder.Path(), files));
  EXPECT_EQ(ReadFile(folder.Path() / "TODAY_Forecast.CSV").Value(), files[2].Text);
}

}  // namespace
}  // namespace vexa::forecast
