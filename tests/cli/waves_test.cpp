// The waves command: its three forms for the winter reference sounding, whose figures are those of
// the model's description worked by hand, and what it says of air that carries no waves.
#include <gtest/gtest.h>

#include <cctype>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "cli/run_words.h"
#include "core/files.h"
#include "core/letter_case.h"
#include "core/raw_file.h"
#include "support/soundings.h"

namespace vexa::cli {
namespace {

class WavesTest : public testing::Test {
 protected:
  std::string Saved(const SoundingRecord& sounding) {
    return TextFromPath(folder.Write("a.RAW", sounding));
  }
  static Ran Waves(const std::string& file, std::vector<std::string> more) {
    std::vector<std::string> words = {"waves", file};
    words.insert(words.end(), more.begin(), more.end());
    return RunWords(words);
  }
  test::TemporaryFolder folder;
};

bool HasWord(const std::string& text, std::string_view word) {
  std::string read;
  for (const char c : Lower(text) + ' ') {
    if (std::isalnum(static_cast<unsigned char>(c)) != 0) {
      read += c;
    } else if (read == word) {
      return true;
    } else {
      read.clear();
    }
  }
  return false;
}

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
  bool hasNearby = false;
  for (const auto& level : json["mountains"][0]["levels"]) {
    hasNearby = hasNearby || (level["pressure"] == 850.0 &&
                              level["passed over"] == "a stronger wave lies within 300 m");
  }
  EXPECT_TRUE(hasNearby);
  const Ran csv = Waves(file, {"--mountain", "default", "--format", "csv"});
  EXPECT_NE(csv.Out.find(",predominant,1,3.158,"), std::string::npos) << csv.Out;
  EXPECT_EQ(std::ranges::count(csv.Out, '\n'), 3);
}

SoundingRecord OneLevel() {
  return test::Profile({{1000, 10, 5}}, {{100, 270, 20}});
}

// Temperatures that fall faster than by the dry adiabat all the way.
SoundingRecord NothingStable() {
  return test::Profile({{1000, 30, 5}, {850, 14, 0}, {700, -4, -9}, {500, -32, -40}},
                       {{100, 270, 20}, {1500, 270, 30}, {3000, 270, 40}, {5800, 270, 60}});
}

// 100 degrees warmer within 100 m, under 1 kt, 250 kt and 1 kt again.
SoundingRecord HugeStability() {
  return test::Profile(
      {{1000, -70, -75}, {985, 30, 5}, {850, 50, 0}, {700, -60, -70}, {500, 40, 5}},
      {{100, 270, 1}, {250, 270, 250}, {1500, 90, 1}, {3000, 270, 250}, {5800, 270, 1}});
}

TEST_F(WavesTest, SaysWhyThereIsNoneAndNeverNaN) {
  struct Case {
    const char* about;
    SoundingRecord sounding;
    const char* reason;  // empty: there may be waves
  };
  const Case cases[] = {
      {"no winds", test::WithoutWinds(test::ReferenceWinter()), "The sounding has no winds."},
      {"nothing stable", NothingStable(), ""},
      {"huge stability", HugeStability(), ""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.about);
    const std::string file = Saved(c.sounding);
    std::string all;
    for (const char* mountain : {"default", "4000,2,0", "4000,0.1,180", "32000,50,0"}) {
      const std::vector<std::string> words = {"--mountain", mountain, "--units", "english"};
      for (const char* format : {"text", "csv", "json"}) {
        std::vector<std::string> form = words;
        form.insert(form.end(), {"--format", format, "--decay", "100,0.1"});
        all += Waves(file, form).Out;
      }
      std::vector<std::string> explained = words;
      explained.emplace_back("--explain");
      all += Waves(file, explained).Out;
    }
    EXPECT_FALSE(HasWord(all, "nan"));
    EXPECT_FALSE(HasWord(all, "inf"));
    EXPECT_NE(all.find("There are no waves present."), std::string::npos);
    EXPECT_NE(all.find(c.reason), std::string::npos);
  }
}

TEST_F(WavesTest, RefusesWhatIsNoMountain) {
  const std::string file = Saved(test::ReferenceWinter());  // 394 ft above the sea
  struct Case {
    std::vector<std::string> words;
    const char* says;
    int exit;
  };
  const Case cases[] = {
      {{"--mountain", "99,2,0"}, "Mountain #1 - Height  Data is out of range.", kExitUsage},
      {{"--mountain", "4000,2,0", "--second", "4000,2,0,0.5"},
       "Mountain #1 - #2 Distance",
       kExitUsage},
      {{"--mountain", "4000,2"}, "--mountain takes three numbers", kExitUsage},
      {{"--second", "4000,2,0,10"}, "--second needs a --mountain", kExitUsage},
      {{"--decay", "101,1"}, "--decay takes", kExitUsage},
      {{"--mountain", "390,2,0"},
       "Mountain height must be greater than the sounding station elevation.",
       kExitInputFailed},
      {{"--mountain", "4000,2,0", "--second", "390,2,0,10"},
       "Mountain height must be greater than the sounding station elevation.",
       kExitInputFailed},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.words.back());
    std::vector<std::string> words = c.words;
    words.insert(words.end(), {"--units", "english"});
    const Ran ran = Waves(file, words);
    EXPECT_EQ(ran.Exit, c.exit);
    EXPECT_NE(ran.Err.find(c.says), std::string::npos) << ran.Err;
    EXPECT_EQ(ran.Out.find("Wavelength"), std::string::npos);
  }
}

TEST_F(WavesTest, OneLevelIsNoSounding) {
  const std::string file = Saved(OneLevel());
  const Ran ran = Waves(file, {});
  EXPECT_EQ(ran.Exit, kExitInputFailed);
  EXPECT_TRUE(ran.Err.starts_with("vexa-cli: " + file + ": ")) << ran.Err;
  EXPECT_EQ(ran.Out, "");
}

// The analysis, the listing, the picture and this command ask the same file for the same ridge.
TEST_F(WavesTest, AllFormsTakeTheMountainOfTheStation) {
  SoundingRecord sounding = test::ReferenceWinter();
  sounding.StationTitle = "16080 - Milano";
  const std::string file = Saved(sounding);
  const std::filesystem::path root = folder.Path() / "root";
  std::filesystem::create_directory(root);
  ASSERT_FALSE(
      SaveFile(root / "VEXA.MTN", std::string(17, '\n') + "old\n16080,3675,2,0,0,0,0,0\n99999\n"));
  const std::vector<std::string> at = {"--root", TextFromPath(root)};
  const auto with = [&](std::vector<std::string> words) {
    words.insert(words.end(), at.begin(), at.end());
    return RunWords(words);
  };
  const auto waves = nlohmann::json::parse(with({"waves", file, "--format", "json"}).Out);
  const auto analysed = nlohmann::json::parse(with({"analyze", file, "--format", "json"}).Out);
  EXPECT_FALSE(waves["default mountain"]);
  EXPECT_FALSE(analysed["waves"]["default mountain"]);
  EXPECT_EQ(analysed["waves"]["waves"], waves["waves"]);
  ASSERT_FALSE(waves["waves"].empty());
  // The half-width of 2 nm is that of every wave, where the default mountain has one for each.
  for (const auto& wave : waves["waves"]) EXPECT_NEAR(wave["half-width"], 3.704, 1e-9);
  const std::string listed = with({"list", file, "--listing", "summary"}).Out;
  std::filesystem::remove(root / "VEXA.MTN");
  EXPECT_NE(listed, with({"list", file, "--listing", "summary"}).Out);
}

// A record that ends early is told of with its line, once for all soundings of a command; the
// default mountain stands in, so that the command goes on.
TEST_F(WavesTest, EveryCommandTellsOfADamagedMountainFile) {
  SoundingRecord sounding = test::ReferenceWinter();
  sounding.StationTitle = "16080 - Milano";
  const std::string file = Saved(sounding);
  const std::filesystem::path root = folder.Path() / "root";
  std::filesystem::create_directory(root);
  ASSERT_FALSE(SaveFile(root / "VEXA.MTN", std::string(17, '\n') + "old\n16080,3675,2\n"));
  const std::string picture = TextFromPath(folder.Path() / "waves.svg");
  for (std::vector<std::string> words :
       {std::vector<std::string>{"waves", file, file},
        {"analyze", file, file, "--format", "json"},
        {"list", file, "--listing", "summary"},
        {"plot", file, file, "--display", "WaveSeries", "-o", picture}}) {
    words.insert(words.end(), {"--root", TextFromPath(root)});
    const Ran ran = RunWords(words);
    EXPECT_EQ(ran.Exit, kExitOk) << words.front();
    EXPECT_EQ(ran.Err,
              "vexa-cli: " + TextFromPath(root / "VEXA.MTN") +
                  ": Data file is corrupt, incomplete, or has incorrect format. (VEXA.MTN, "
                  "line 20: station 16080 lacks one of its seven numbers)\n")
        << words.front();
  }
  EXPECT_TRUE(std::filesystem::exists(picture));
  sounding.Time = {2010, 12, 10, 12, 0};
  const std::string later = TextFromPath(folder.Path() / "later.RAW");
  ASSERT_FALSE(SaveFile(PathFromText(later), WriteRaw(sounding)));
  const Ran section = RunWords({"section", file, later, "--kind", "time", "--field", "WAVE", "-o",
                                picture, "--root", TextFromPath(root)});
  const std::size_t told = section.Err.find("VEXA.MTN, line 20: station 16080 lacks");
  EXPECT_NE(told, std::string::npos) << section.Err;
  EXPECT_EQ(section.Err.find("VEXA.MTN, line 20", told + 1), std::string::npos) << section.Err;
}

}  // namespace
}  // namespace vexa::cli
