// Which soundings stand around a station and which lie upwind; what is typed for a forecast.
#include "forecast/region.h"

#include <gtest/gtest.h>

#include "analysis/analysis_settings.h"
#include "forecast/listings.h"
#include "support/soundings.h"

namespace vexa::forecast {
namespace {

SharedProfile At(double lat, double lon, int hour = 12, int wmo = 0, double dir = 270,
                 double speed = 20, int levels = 3) {
  SoundingRecord sounding =
      test::Profile({{1000, 20, 10}},
                    {{0, dir, speed}, {500, dir, speed}, {1000, dir, speed}, {3000, dir, speed}});
  for (int i = 1; i < levels; ++i) sounding.AddTemp(1000 - 100 * i, 20 - 6 * i, 10 - 6 * i);
  SetDecimalPosition(sounding, lat, lon);
  sounding.Time = {2023, 5, 22, hour, 0};
  sounding.WmoNumber = wmo;
  sounding.StationTitle = "at hour " + std::to_string(hour);
  return ProfileOf(sounding, "file", AnalysisSettings{});
}

TEST(Region, WhoStandsAround) {
  struct Case {
    const char* about;
    SharedProfile other;
    std::size_t near;
  };
  // One degree of longitude is 78.6 km on the 45th parallel, one of latitude 111.2 km.
  const Case cases[] = {
      {"within the radius", At(45, -2), 1},
      {"outside of it", At(45, -4), 0},
      {"itself", At(45, 0), 0},
      {"943 m away", At(45, -0.012), 0},
      {"1061 m away", At(45, -0.0135), 1},
      {"its own station, moved a little", At(45.1, 0, 12, 7777), 0},
      {"three hours later", At(45, -2, 15), 1},
      {"four hours later", At(45, -2, 16), 0},
      {"three hours before", At(45, -2, 9), 1},
      {"a single temperature level", At(45, -2, 12, 0, 270, 20, 1), 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.about);
    EXPECT_EQ(RegionAround(At(45, 0, 12, 7777), {c.other}, 200).Near.size(), c.near);
  }
}

TEST(Region, OneOfEachStation) {
  const auto chosen = [](std::vector<SharedProfile> found) {
    const Region region = RegionAround(At(45, 0), found, 500);
    EXPECT_EQ(region.Near.size(), 1u);
    return region.Near.empty() ? 0 : region.Near[0].Of->Sounding.Time.Hour;
  };
  EXPECT_EQ(chosen({At(45, -2, 10), At(45, -2, 12), At(45, -2, 13)}), 12) << "the same hour first";
  EXPECT_EQ(chosen({At(45, -2, 10), At(45, -2, 13), At(45, -2, 11)}), 13) << "else the newest";
}

TEST(Region, UpwindIsWithin45DegreesOfTheLowWind) {
  Region region;
  region.Main = At(45, 0, 12, 0, 350, 20);
  for (const double bearing : {304.0, 305.5, 350.0, 34.5, 36.0, 170.0}) {
    region.Near.push_back({.Of = region.Main, .Bearing = bearing, .RangeKm = 100});
  }
  ChooseUpwind(region);
  std::vector<double> upwind;
  for (const Neighbour& one : region.Near) {
    if (one.IsUpwind) upwind.push_back(one.Bearing);
  }
  EXPECT_EQ(upwind, (std::vector<double>{305.5, 350, 34.5}));

  region.Main = At(45, 0, 12, 0, 350, 2.05);
  ChooseUpwind(region);
  EXPECT_TRUE(region.HasUpwind());
  region.Main = At(45, 0, 12, 0, 350, 1.95);
  ChooseUpwind(region);
  EXPECT_FALSE(region.HasUpwind()) << "too light a wind to have a direction";
  EXPECT_EQ(RegionListing(region).back(), "No upwind data.");

  const std::size_t boxed[] = {4, 5};
  ChooseUpwind(region, boxed, 90);
  EXPECT_TRUE(region.IsManual);
  EXPECT_TRUE(region.Near[4].IsUpwind && region.Near[5].IsUpwind && !region.Near[2].IsUpwind);
  EXPECT_NEAR(region.Near[4].AlongKm, 58.78, 0.01);  // 100 km · cos(36 - 90)
  ChooseUpwind(region);
  EXPECT_FALSE(region.IsManual || region.HasUpwind());
}

TEST(Region, ListsStandUnderTheirHeader) {
  Region region;
  region.Main = At(45, 0);
  region.Near = {{.Of = region.Main, .Bearing = 267.4, .RangeKm = 392.8},
                 {.Of = region.Main, .Bearing = 90, .RangeKm = 1999.6}};
  ChooseUpwind(region);
  const std::vector<std::string> lines = RegionListing(region);
  ASSERT_EQ(lines.size(), 10u);
  EXPECT_EQ(lines[1].size(), lines[2].size() - 1);
  EXPECT_EQ(lines[3],
            "    1  at hour 12                                267       393    212   *  ");
  EXPECT_EQ(lines[4], "    2  at hour 12                                 90      2000   1080");
  EXPECT_EQ(lines[9], lines[3].substr(0, lines[2].size())) << "upwind ones keep their number";
}

TEST(Region, WorkingFiles) {
  const test::TemporaryFolder folder;
  Region region = RegionAround(At(45, 0), {At(45, -2), At(45, 2)}, 500);
  ASSERT_FALSE(SaveWorkFiles(folder.Path() / "new", region));
  const auto lines = [&](std::string_view name) {
    const std::string text = ReadFile(folder.Path() / "new" / name).Value();
    return std::count(text.begin(), text.end(), '\n');
  };
  const bool tellsCase = !std::filesystem::exists(folder.Path() / "NEW");
  EXPECT_EQ(lines(kFoundInRange), 4);
  EXPECT_EQ(lines(kFoundFiles), 2);
  EXPECT_EQ(lines(tellsCase ? kCandidates : kCandidatesElse), 1);
  EXPECT_NE(std::filesystem::exists(folder.Path() / "new" / kCandidatesElse), tellsCase);
  EXPECT_TRUE(SaveWorkFiles(folder.Path() / "new" / "InRangX.txt" / "in a file", region));
  if (!tellsCase) return;
  // Here a link makes them one file.
  std::filesystem::create_directory(folder.Path() / "one");
  std::filesystem::create_symlink(kFoundInRange, folder.Path() / "one" / kCandidates);
  ASSERT_FALSE(SaveWorkFiles(folder.Path() / "one", region));
  EXPECT_EQ(ReadFile(folder.Path() / "one" / kFoundInRange).Value(),
            ReadFile(folder.Path() / "new" / kFoundInRange).Value());
  EXPECT_EQ(ReadFile(folder.Path() / "one" / kCandidatesElse).Value(),
            ReadFile(folder.Path() / "new" / kCandidates).Value());
}

}  // namespace
}  // namespace vexa::forecast
