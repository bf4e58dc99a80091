// The waves command: its three forms for the winter reference sounding, whose figures are those of
// the model's description worked by hand, and what it says of air that carries no waves.
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "cli/run_words.h"
#include "core/files.h"
#include "support/soundings.h"

namespace vexa::cli {
namespace {

class WavesTest : public CommandTest {
 protected:
  std::string Saved(const SoundingRecord& sounding) { return Write("a.RAW", sounding); }
  static Ran Waves(const std::string& file, std::vector<std::string> more) {
    std::vector<std::string> words = {"waves", file};
    words.insert(words.end(), more.begin(), more.end());
    return RunWords(words);
  }
};

TEST_F(WavesTest, GivesEveryTermAsJsonAndARowForEachWaveAsCsv) {
  const std::string file = Saved(test::ReferenceWinter());
  const Ran ran = Waves(file, {"--mountain", "default", "--format", "json"});
  const auto json = nlohmann::json::parse(ran.Out);
  EXPECT_TRUE(json["default mountain"]);
  ASSERT_EQ(json["waves"].size(), 2U);
  const auto& wave = json["waves"][0];
  EXPECT_EQ(wave["kind"], "predominant");
  EXPECT_NEAR(wave["wavelength"], 3.158, 0.0006);
  EXPECT_NEAR(wave["interface"]["D"], 5.721, 0.0006);
  EXPECT_NEAR(wave["x"], 2.508, 0.0006);
  EXPECT_NEAR(wave["r"], 57.96, 0.006);
  EXPECT_NEAR(wave["maximum vertical velocity"], 11.07, 0.006);
  EXPECT_NEAR(wave["mean wind below"], 8.10, 0.006);
  EXPECT_NEAR(wave["density term"], 1.0657, 0.00006);
  const auto& levels = json["mountains"][0]["levels"];
  EXPECT_TRUE(std::ranges::any_of(levels, [](const auto& level) {
    return level["pressure"] == 850.0 &&
           level["passed over"] == "a stronger wave lies within 300 m";
  }));
  const Ran csv = Waves(file, {"--mountain", "default", "--format", "csv"});
  EXPECT_NE(csv.Out.find(",predominant,1,3.158,"), std::string::npos) << csv.Out;
  EXPECT_EQ(std::ranges::count(csv.Out, '\n'), 3);
}

TEST_F(WavesTest, RefusesWhatIsNoMountain) {
  const std::string file = Saved(test::ReferenceWinter());  // 394 ft above the sea
  const char* const low = "Mountain height must be greater than the sounding station elevation.";
  ExpectRefused(
      {"waves", file, "--units", "english"},
      {{{"--mountain", "99,2,0"}, 2, "Mountain #1 - Height  Data is out of range."},
       {{"--mountain", "4000,2,0", "--second", "4000,2,0,0.5"}, 2, "Mountain #1 - #2 Distance"},
       {{"--mountain", "4000,2"}, 2, "--mountain takes three numbers"},
       {{"--second", "4000,2,0,10"}, 2, "--second needs a --mountain"},
       {{"--decay", "101,1"}, 2, "--decay takes"},
       {{"--mountain", "390,2,0"}, 1, low},
       {{"--mountain", "4000,2,0", "--second", "390,2,0,10"}, 1, low}});
}

TEST_F(WavesTest, SaysWhyThereIsNone) {
  const std::string calm = Saved(test::WithoutWinds(test::ReferenceWinter()));
  for (const char* format : {"text", "json"}) {
    EXPECT_NE(Waves(calm, {"--format", format}).Out.find("The sounding has no winds."),
              std::string::npos);
  }
  const std::string file = Saved(test::Profile({{1000, 10, 5}}, {{100, 270, 20}}));
  const Ran ran = Waves(file, {});
  EXPECT_EQ(ran.Exit, kExitInputFailed);
  EXPECT_TRUE(ran.Err.starts_with("vexa-cli: " + file + ": ")) << ran.Err;
  EXPECT_EQ(ran.Out, "");
}

// A station of the mountain file, and a program folder for it.
class WavesOfAStation : public WavesTest {
 protected:
  WavesOfAStation() {
    std::filesystem::create_directory(root);
    sounding.StationTitle = "16080 - Milano";
    file = Saved(sounding);
  }
  void WriteMountains(const std::string& records) {
    EXPECT_FALSE(SaveFile(mountains, std::string(17, '\n') + "old\n" + records));
  }
  Ran Run(std::vector<std::string> words) {
    words.insert(words.end(), {"--root", TextFromPath(root)});
    return RunWords(words);
  }
  const std::filesystem::path root = folder_.Path() / "root", mountains = root / "VEXA.MTN";
  SoundingRecord sounding = test::ReferenceWinter();
  std::string file{};
};

// The analysis, the listing, the picture and this command ask the same file for the same ridge.
TEST_F(WavesOfAStation, AllFormsTakeItsMountain) {
  WriteMountains("16080,3675,2,0,0,0,0,0\n99999\n");
  const auto waves = nlohmann::json::parse(Run({"waves", file, "--format", "json"}).Out);
  const auto analysed = nlohmann::json::parse(Run({"analyze", file, "--format", "json"}).Out);
  EXPECT_FALSE(waves["default mountain"]);
  EXPECT_FALSE(analysed["waves"]["default mountain"]);
  EXPECT_EQ(analysed["waves"]["waves"], waves["waves"]);
  ASSERT_FALSE(waves["waves"].empty());
  // The half-width of 2 nm is that of every wave, where the default mountain has one for each.
  for (const auto& wave : waves["waves"]) EXPECT_NEAR(wave["half-width"], 3.704, 1e-9);
  const std::string listed = Run({"list", file, "--listing", "summary"}).Out;
  std::filesystem::remove(mountains);
  EXPECT_NE(listed, Run({"list", file, "--listing", "summary"}).Out);
}

// A record that ends early is told of with its line, once for all soundings of a command; the
// default mountain stands in, so that the command goes on.
TEST_F(WavesOfAStation, EveryCommandTellsOfADamagedMountainFile) {
  WriteMountains("16080,3675,2\n");
  const std::string picture = In("waves.svg");
  const std::string told = "VEXA.MTN, line 20: station 16080 lacks one of its seven numbers";
  for (const std::vector<std::string>& words :
       {std::vector<std::string>{"waves", file, file},
        {"analyze", file, file, "--format", "json"},
        {"list", file, "--listing", "summary"},
        {"plot", file, file, "--display", "WaveSeries", "-o", picture}}) {
    const Ran ran = Run(words);
    EXPECT_EQ(ran.Exit, kExitOk) << words.front();
    EXPECT_EQ(ran.Err, "vexa-cli: " + TextFromPath(mountains) +
                           ": Data file is corrupt, incomplete, or has incorrect format. (" + told +
                           ")\n")
        << words.front();
  }
  EXPECT_TRUE(std::filesystem::exists(picture));
  sounding.Time = {2010, 12, 10, 12, 0};
  const std::string later = Write("later.RAW", sounding);
  const Ran section =
      Run({"section", file, later, "--kind", "time", "--field", "WAVE", "-o", picture});
  const std::size_t at = section.Err.find(told);
  EXPECT_NE(at, std::string::npos) << section.Err;
  EXPECT_EQ(section.Err.find(told, at + 1), std::string::npos) << section.Err;
}

}  // namespace
}  // namespace vexa::cli
