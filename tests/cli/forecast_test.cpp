// The command that steps soundings ahead.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "cli/run_words.h"
#include "core/files.h"
#include "support/soundings.h"

namespace vexa::cli {
namespace {

using Json = nlohmann::json;

// The wind is 270 degrees, 30 kt everywhere: 55.56 km an hour. On the 45th parallel one degree of
// longitude is 78.6 km.
class ForecastCommand : public CommandTest {
 protected:
  std::string Sounding(const std::string& name, double lon, double warmer, int hour) {
    SoundingRecord record = test::Profile(
        {{1000, 20 + warmer, 10}, {900, 14 + warmer, 4}, {500, -20 + warmer, -40}},
        {{0, 270, 30}, {500, 270, 30}, {1000, 270, 30}, {3000, 270, 30}, {6000, 270, 30}});
    SetDecimalPosition(record, 45, lon);
    record.StationTitle =
        name + "  " + (hour < 10 ? "0" : "") + std::to_string(hour) + "Z 22 May 2023";
    return Write(name + std::to_string(hour) + ".RAW", record);
  }
};

TEST_F(ForecastCommand, WritesTheSeries) {
  const std::string here = Sounding("here", 10, 0, 12);
  Sounding("west", 7, 4, 12);
  Sounding("east", 13, 8, 12);
  const std::vector<std::string> words = {"forecast", here,   "--among",    In(""),
                                          "--hours",  "3",    "-o",         In("out"),
                                          "--format", "json", "--boundary", "0"};
  const Ran ran = RunWords(words);
  ASSERT_EQ(ran.Exit, 0) << ran.Err;
  const Json json = Json::parse(ran.Out);
  ASSERT_EQ(json["nearby"].size(), 2U);
  EXPECT_NEAR(json["nearby"][0]["range"].get<double>(), 235.8, 0.2);
  ASSERT_EQ(json["hours"].size(), 3U);
  const Json& third = json["hours"][2];
  EXPECT_EQ(third["time"], "2023-05-22T15:00Z");
  ASSERT_EQ(third["made of"].size(), 2U) << "east lies downwind";
  // 166.7 km from here and 69.1 km from west: 1/166.7² and 1/69.1² are 0.1467 and 0.8533 of both.
  EXPECT_NEAR(third["made of"][1]["weight"].get<double>(), 0.853, 0.003);
  for (const char* end : {"_03h_Forecast.RAW", "_Forecast.CSV", "_Forecast.JSON"}) {
    EXPECT_TRUE(StampOf(PathFromText(In("out/here12") + end))) << end;
  }

  const Ran again = RunWords(words);
  EXPECT_EQ(again.Exit, 1);
  EXPECT_NE(again.Err.find("File already exists"), std::string::npos);
}

// The later sounding at the station is the one that was upwind: the air came, 4 degrees warmer.
TEST_F(ForecastCommand, Verifies) {
  Sounding("here", 10, 0, 12);
  Sounding("west", 7, 4, 12);
  Sounding("here", 10, 4, 16);
  const Ran ran = RunWords({"forecast", "--verify", In(""), "--format", "csv", "--boundary", "0"});
  ASSERT_EQ(ran.Exit, 0) << ran.Err;
  const std::string row = "\n4,850,T,1,-";
  const std::size_t at = ran.Out.find(row);
  ASSERT_NE(at, std::string::npos) << ran.Out;
  const std::string line = ran.Out.substr(at, ran.Out.find('\n', at + 1) - at);
  EXPECT_TRUE(line.ends_with(",-4,4")) << "persistence misses all of it: " << line;
}

TEST_F(ForecastCommand, RefusesWithAReason) {
  const std::string here = Sounding("here", 10, 0, 12);
  const std::string all = In("");
  ExpectRefused(
      {"forecast"},
      {{{here}, 2, "--among"},
       {{here, here, "--among", all}, 2, "one file"},
       {{here, "--among", all, "--main", "5001"}, 2, "Range is 0 to 5000 meters, AGL."},
       {{here, "--among", all, "--percentage", "0.5"}, 2, "Only integer values are allowed."},
       {{here, "--among", all}, 1, "No upwind data."},
       {{here, "--mode", "Single", "--main", "0", "--boundary", "0"}, 1, "must be checked"},
       {{"--verify", all, "-o", In("x")}, 2, "--verify"}});
}

}  // namespace
}  // namespace vexa::cli
