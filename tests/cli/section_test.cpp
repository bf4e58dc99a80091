// The command that draws soundings side by side.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "cli/run_words.h"
#include "core/files.h"
#include "support/soundings.h"

namespace vexa::cli {
namespace {

using Json = nlohmann::json;

class SectionCommand : public CommandTest {
 protected:
  std::string Sounding(const std::string& name, double lon, bool withWinds = true) {
    SoundingRecord record = test::ReferenceConvective();
    SetDecimalPosition(record, 35, lon);
    record.StationTitle = name;
    if (!withWinds) record = test::WithoutWinds(record);
    return Write(name + ".RAW", record);
  }

  const std::string west = Sounding("west", -100), east = Sounding("east", -97);
};

TEST_F(SectionCommand, GivesTheGrid) {
  const Ran ran = RunWords({"section", east, west, "--format", "json", "-f", "TMP,PT", "--scale",
                            "km", "--resolution", "low"});
  ASSERT_EQ(ran.Exit, 0) << ran.Err;
  const Json json = Json::parse(ran.Out);
  EXPECT_EQ(json["columns"][0]["station"], "east");  // from the first as listed
  // By hand: 3° along the parallel of 35° on a sphere of 6371 km.
  EXPECT_NEAR(json["columns"][1]["x"].get<double>(), 273.25, 0.05);
  EXPECT_EQ(json["x"].size(), 41U);
  EXPECT_EQ(json["rows"].size(), 31U);
  ASSERT_EQ(json["fields"].size(), 2U);
  EXPECT_EQ(json["fields"][1]["unit"], "K");
  ASSERT_EQ(json["fields"][0]["values"].size(), 31U);
  EXPECT_TRUE(json["fields"][0]["values"][0][0].is_null());  // under the ground
  const Ran csv = RunWords({"section", east, west, "--format", "csv", "--resolution", "low"});
  EXPECT_TRUE(csv.Out.starts_with("field,unit,x (km),pressure (hPa),value\nTMP,C,0,1050,\n"));
  EXPECT_EQ(std::ranges::count(csv.Out, '\n'), 1 + 41 * 31);
}

// The parts of a classic netCDF file that can be told by hand from its published form: the mark
// with version 2 for offsets of 64 bits, and the names and texts as they stand.
TEST_F(SectionCommand, GivesTheGridAsNetcdf) {
  const std::string file = In("grid.nc");
  const Ran ran = RunWords({"section", west, east, "--format", "netcdf", "-o", file, "-f",
                            "TMP,ICE", "--resolution", "low"});
  if (ran.Err.find("built without the netCDF library") != std::string::npos) {
    EXPECT_NE(ran.Err.find("A library that this needs is not there."), std::string::npos)
        << ran.Err;
    GTEST_SKIP() << ran.Err;
  }
  // No icing is there, which is told; its grid of zeros is written all the same.
  ASSERT_EQ(ran.Exit, 1) << ran.Err;
  EXPECT_NE(ran.Err.find("ICE: Data found but not plotted ..."), std::string::npos) << ran.Err;
  const std::string bytes = Text("grid.nc");
  EXPECT_EQ(bytes.substr(0, 4), std::string("CDF\2"));
  for (const char* text : {"CF-1.8", "air_temperature", "degC", "air_pressure", "degrees_north",
                           "flag_meanings", "station_altitude"}) {
    EXPECT_NE(bytes.find(text), std::string::npos) << text;
  }
  EXPECT_GT(bytes.size(), 2U * 41 * 31 * 4);
}

TEST_F(SectionCommand, DrawsOnePictureOrOneEach) {
  const auto page = [this](const char* name, std::vector<std::string> words) {
    words.insert(words.end(), {west, east, "-o", In(name)});
    const Ran ran = RunWords(words);
    EXPECT_EQ(ran.Exit, 0) << ran.Err;
    return Text(name);
  };
  const auto has = [](const std::string& text, const char* part) {
    EXPECT_NE(text.find(part), std::string::npos) << part;
  };
  const std::string together = page("all.svg", {"section", "-f", "TMP,RH"});
  has(together, "Temperature (C)");
  has(together, "Relative Humidity (%)");
  page("{field}.svg", {"section", "-f", "TMP,RH"});
  EXPECT_TRUE(StampOf(PathFromText(In("TMP.svg"))) && StampOf(PathFromText(In("RH.svg"))));
  has(page("a.svg", {"plot", "--display", "CrossSection"}), "Temperature (C)");
  has(page("a.svg", {"plot", "--display", "AreaMapForm"}), "2 of 2 stations in the section");
}

TEST_F(SectionCommand, SaysInASentenceWhatIsWrong) {
  const std::string again = Sounding("again", -100);
  const std::string calm = Sounding("calm", -97, false);
  const std::string file = In("out.svg");
  ExpectRefused({"section"},
                {{{west, "-o", file}, 1, "One sounding alone makes no cross-section"},
                 {{west, again, "-o", file}, 1, "DataRange = 0"},
                 {{west, calm, "-k", "time", "-o", file}, 1, "is not known"},
                 {{west, calm, "-f", "WND", "-o", file}, 1, "Results will not be reliable."},
                 {{west, calm, In("none.RAW"), "-o", file}, 1, "none.RAW"},
                 {{west, calm, "-f", "TMPP", "-o", file}, 2, "did you mean TMP?"},
                 {{west, calm}, 2, "-o"},
                 {{west, calm, "-o", file, "--interval", "0"}, 2, "above 0"},
                 {{west, calm, "-o", file, "--from", "noon"}, 2, "2024-03-05T12:00"},
                 {{west, calm, "--format", "csv", "-o", west}, 2, "would be lost"}});
}

TEST_F(SectionCommand, TakesEverySoundingOfAFile) {
  const std::string file = TextFromPath(test::TestData("igra_station.txt"));
  const Ran check = RunWords({"check", file});
  const Ran ran =
      RunWords({"section", file, "-k", "time", "--format", "json", "--resolution", "low"});
  const Json json = Json::parse(ran.Out);
  ASSERT_GE(json["columns"].size(), 2U) << ran.Err << check.Out;
  EXPECT_EQ(json["x unit"], "hours");
  EXPECT_EQ(json["columns"][0]["x"], 0);
  const std::size_t count = json["columns"].size();
  std::vector<std::string> words = {"section", "-k", "time", "--format", "json"};
  for (std::size_t i = count; i > 0; --i) words.push_back(file + "#" + std::to_string(i));
  const Json named = Json::parse(RunWords(words).Out);  // in any order
  ASSERT_EQ(named["columns"].size(), count);
  for (std::size_t i = 0; i < count; ++i) {
    EXPECT_EQ(named["columns"][i]["time"], json["columns"][i]["time"]);
  }
  const std::string last = json["columns"].back()["time"].get<std::string>();
  const Ran late = RunWords({"section", file, "-k", "time", "--format", "json", "--from", last});
  EXPECT_NE(late.Err.find("One sounding alone"), std::string::npos) << late.Err;
}

}  // namespace
}  // namespace vexa::cli
