// vexa-cli fronts: its three forms, its settings, and what it refuses.
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "cli/run_words.h"
#include "support/soundings.h"

namespace vexa::cli {
namespace {

using Json = nlohmann::json;

class Fronts : public CommandTest {
 protected:
  Ran Run(std::vector<std::string> words) const {
    words.insert(words.begin(), {"fronts", file_});
    return RunWords(words);
  }
  const std::string file_ = Write("winter.RAW", test::ReferenceWinter());
};

TEST_F(Fronts, JsonTellsWhatEachLayerMissed) {
  const Json json = Json::parse(Run({"--format", "json"}).Out);
  EXPECT_EQ(json["front"]["character"], "Anabatic Warm Front");
  EXPECT_EQ(json["front"]["zone"]["base"], 500);
  EXPECT_EQ(json["front"]["zone"]["top"], 1500);
  EXPECT_TRUE(json["zones"][0]["missed"].is_null());
  EXPECT_EQ(json["layers"][0]["missed"], "below the lower frontal limit");
  EXPECT_TRUE(json["layers"][1]["missed"].is_null());
}

TEST_F(Fronts, ExplainTellsWhyThereIsNone) {
  // The zone has 0.58 degrees an hour.
  const Ran ran = Run({"--explain", "--advection", "0.6"});
  EXPECT_NE(ran.Out.find("No front found"), std::string::npos);
  EXPECT_NE(ran.Out.find("+ 0.6 C/h: advection below the threshold"), std::string::npos);
  EXPECT_NE(ran.Out.find("gradient below the threshold"), std::string::npos);
}

TEST_F(Fronts, SettingsOfTheRunAreTaken) {
  const std::pair<std::vector<std::string>, const char*> cases[] = {
      {{}, "  Layer     Frontal   Thermal Wind   Gradient*    Advection"},
      {{}, "Front character: Anabatic Warm Front"},
      {{"--slope", "200"}, "Frontal distance: 300 km"},  // 200 times 1.5 km
      {{"--slope", "automatic"}, "Frontal slope = 1/120"},
      {{"--interval", "1000", "--mode", "Sliding"}, "Thermal wind mode = Sliding"},
      {{"--lower", "3000"}, "Lower frontal limit = 3000 m, AGL"},
      {{"--gradient", "0.5"}, "No front found."},
      {{"--advection", "0"}, "Advection threshold = 0.00"},
  };
  for (const auto& [words, says] : cases) {
    const Ran ran = Run(words);
    EXPECT_EQ(ran.Exit, 0);
    EXPECT_NE(ran.Out.find(says), std::string::npos) << says << "\n" << ran.Out;
  }
}

TEST_F(Fronts, WhatIsOutOfRangeIsRefused) {
  ExpectRefused({"fronts", file_},
                {{{"--gradient", "0.6"}, 2, "--gradient takes a number from 0.005 to 0.5"},
                 {{"--advection", "-1"}, 2, "--advection takes a number from 0 to 5"},
                 {{"--slope", "steep"}, 2, "--slope takes a number from 20 to 500 or automatic"},
                 {{"--interval", "99"}, 2, "100"},
                 {{"--angle", "91"}, 2, "90"},
                 {{"--mode", "Falling"}, 2, "Sliding"}});
}

TEST_F(Fronts, CsvIsARowASounding) {
  const std::string csv = Run({"--format", "csv"}).Out;
  EXPECT_EQ(std::count(csv.begin(), csv.end(), '\n'), 2);
  EXPECT_NE(csv.find(",Anabatic Warm Front,500,1500,"), std::string::npos);
}

}  // namespace
}  // namespace vexa::cli
