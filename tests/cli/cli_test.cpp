#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "cli/run_words.h"
#include "config/settings_store.h"
#include "core/files.h"
#include "support/settings.h"
#include "support/soundings.h"

namespace vexa::cli {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

class CommandLine : public CommandTest {
 protected:
  std::string Sounding(const std::string& name = "große Lage.RAW") {
    return Write(name, test::ReferenceConvective());
  }
};

TEST_F(CommandLine, WrongUsageEndsWith2AndSaysWhy) {
  const std::string file = Sounding();
  ExpectRefused({}, {{{}, 2, "Usage"},
                     {{"plot", file}, 2, "-o"},
                     {{"plot", file, "-o", "a.tif"}, 2, ".png"},
                     {{"plot", file, file, "-o", "a.svg"}, 2, "{name}"},
                     {{"plot", file, "-o", "a.svg", "--size", "0x9"}, 2, "20000"},
                     {{"plot", file, "-o", "a.svg", "--diagram", "stuve"}, 2, "tephigram"},
                     {{"plot", file, "-o", "a.svg", "--display", "map"}, 2, "Hodogram3D"},
                     {{"plot", file, "-o", "a.svg", "--display", "Overlay"}, 2, "several files"},
                     {{"plot", file, "-o", "a.svg", "--set", "Colour=1"}, 2, "no option"},
                     {{"plot", file, "-o", "a.svg", "--display", "hodografh"}, 2, "Hodograph?"},
                     {{"analyze", file, "--explain", "SWAET"}, 2, "did you mean SWEAT?"},
                     {{"convert", file, file, "-o", "a.RAW"}, 2, "one FILE"},
                     {{"analyze", file, "-n", "0"}, 2, "--sounding"},
                     {{"analyze", file, "--set", "Search depth=20"}, 2, "50 to 500"}});
  for (const char* command : {"plot", "analyze", "convert", "export", "list", "report", "print",
                              "settings", "check", "fetch"}) {
    const Ran help = RunWords({command, "--help"});
    EXPECT_EQ(help.Exit, kExitOk);
    EXPECT_NE(help.Out.find("Usage: vexa-cli " + std::string(command)), std::string::npos);
    EXPECT_EQ(RunWords({command, "--version"}).Exit, kExitOk);
  }
}

TEST_F(CommandLine, JsonCarriesTheAnalysisWithNullsForWhatIsMissing) {
  const Ran ran = RunWords({"analyze", Sounding(), "--format", "json"});
  ASSERT_EQ(ran.Exit, kExitOk) << ran.Err;
  const Json json = Json::parse(ran.Out);
  EXPECT_EQ(json["format"], "RAW");
  EXPECT_NEAR(json["position"]["longitude"], -97.4, 1e-4);
  EXPECT_TRUE(json["station"]["wmo"].is_null());
  const Json& dewpoints = json["temperature levels"]["dew point"];
  ASSERT_EQ(dewpoints.size(), 27u);
  EXPECT_TRUE(dewpoints[26].is_null());
  // Worked values of this sounding: LCL 847.91 hPa, EL 187.5 hPa, CAPE 3365, CIN -102.3 J/kg.
  const Json& surface = json["parcels"]["surface"];
  EXPECT_NEAR(surface["LCL"]["pressure"], 847.91, 0.02);
  EXPECT_NEAR(surface["EL"]["pressure"], 187.5, 0.1);
  EXPECT_NEAR(surface["CAPE"], 3365, 1);
  EXPECT_NEAR(surface["CIN"], -102.3, 0.2);
  // Right mover 244.6°/21.3 kt with 297.6 m²/s² of helicity below 3 km.
  const Json& mover = json["storm motion"]["right mover"];
  EXPECT_NEAR(mover["direction"], 244.6, 0.11);
  EXPECT_NEAR(mover["helicity 0-3 km"], 297.6, 0.11);
  const Json& kIndex = json["indices"]["KI"];
  EXPECT_NEAR(kIndex["value"], 31.9, 0.01);
  EXPECT_TRUE(kIndex["reason"].is_null());
  // Heights beyond the figures that mark missing values elsewhere: the EL of 187.5 hPa.
  EXPECT_GT(json["indices"]["lfcEL Hgt"]["value"], 12000);
  // The order of the keys and the text of the numbers are promised too.
  std::size_t at = 0;
  for (const char* key :
       {"\"file\": ", "\"station\": ", "\"elevation\": 357,", "\"temperature levels\"",
        "\"dew point\"", "18.8,", "\"wind levels\"", "\"parcels\"", "\"surface\"", "\"LCL\"",
        "\"mean layer\"", "\"indices\""}) {
    at = ran.Out.find(key, at);
    ASSERT_NE(at, std::string::npos) << key;
  }

  SoundingRecord dry = test::Profile({{900, 10, 999.9}, {500, -20, 999.9}});
  SetElevationUnknown(dry);
  dry.StationTitle = "M\xFCnchen";  // no UTF-8
  const Ran poor = RunWords({"analyze", Write("dry.RAW", dry), "--format=json"});
  ASSERT_EQ(poor.Exit, kExitOk) << poor.Err;
  const Json none = Json::parse(poor.Out);
  EXPECT_TRUE(none["elevation"].is_null());
  EXPECT_TRUE(none["position"].is_null());
  EXPECT_TRUE(none["parcels"]["surface"]["CAPE"].is_null());
  EXPECT_TRUE(none["parcels"]["surface"]["LCL"].is_null());
}

// What programs read has the units of its names, whatever the displays show.
TEST_F(CommandLine, UnitsForProgramsDoNotFollowTheDisplays) {
  const std::string file = Sounding();
  const Ran csv = RunWords({"analyze", file, "--format", "csv"});
  ASSERT_EQ(csv.Exit, kExitOk) << csv.Err;
  EXPECT_EQ(RunWords({"analyze", file, "--format", "csv", "--set", "Wind speed units=M/S"}).Out,
            csv.Out);
  EXPECT_NE(csv.Out.find(",T1/T2 Gust (kt),"), std::string::npos);
  EXPECT_NE(csv.Out.find(",28/40,"), std::string::npos);
  EXPECT_NE(csv.Out.find(",surface cut,"), std::string::npos);
  const Ran json = RunWords({"analyze", file, "--format", "json", "--set", "Wind speed units=M/S"});
  const Json all = Json::parse(json.Out);
  const Json& gust = all["indices"]["T1/T2 Gust"];
  EXPECT_EQ(gust["text"], "28/40");
  EXPECT_EQ(gust["unit"], "kt");
  EXPECT_EQ(all["parcels"]["surface"]["cut"], false);
}

// The cells of a table of which none has a comma.
std::vector<std::vector<std::string>> CsvOf(const std::string& text) {
  std::vector<std::vector<std::string>> rows;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    rows.emplace_back();
    std::istringstream row(line + ',');
    for (std::string cell; std::getline(row, cell, ',');) rows.back().push_back(cell);
  }
  return rows;
}

// The reference sounding up to 800 hPa, beneath its LFC: programs read no number, people a dash; of
// the cold one the answer is that there is none.
TEST_F(CommandLine, CapeBeyondTheEndOfTheDataIsNoNumber) {
  const SoundingRecord low = test::Profile({{970, 28, 18.8}, {900, 21.8, 16.8}, {800, 17.2, 4}});
  const SoundingRecord cold = test::Profile({{1000, 0, -10}, {850, 7, -15}, {100, -50, -80}});
  const std::string shortFile = Write("short.RAW", low);
  const std::string coldFile = Write("cold.RAW", cold);
  const auto parcel = [](const std::string& file) {
    return Json::parse(RunWords({"analyze", file, "--format", "json"}).Out)["parcels"]["surface"];
  };
  const Json open = parcel(shortFile), none = parcel(coldFile);
  EXPECT_TRUE(open["CAPE"].is_null());
  EXPECT_TRUE(open["CIN"].is_null());
  EXPECT_EQ(open["cut"], true);
  EXPECT_EQ(open["no CAPE"], "the sounding ends below a possible LFC");
  EXPECT_EQ(none["CAPE"], 0);
  EXPECT_EQ(none["cut"], false);
  EXPECT_EQ(none["no CAPE"], "NoCAPE");
  EXPECT_TRUE(parcel(Sounding())["no CAPE"].is_null());

  const auto csv = CsvOf(RunWords({"analyze", shortFile, coldFile, "--format", "csv"}).Out);
  ASSERT_EQ(csv.size(), 3u);
  const auto cell = [&csv](std::size_t row, std::string_view name) {
    const auto at = std::ranges::find(csv[0], name) - csv[0].begin();
    return csv[row].at(static_cast<std::size_t>(at));
  };
  EXPECT_EQ(cell(1, "surface CAPE (J/kg)") + cell(1, "surface cut"), "yes");
  EXPECT_EQ(cell(2, "surface CAPE (J/kg)") + cell(2, "surface cut"), "0no");
  EXPECT_NE(RunWords({"analyze", shortFile}).Out.find("\nCAPE" + std::string(27, ' ') + "--"),
            std::string::npos);
  EXPECT_NE(RunWords({"list", coldFile, "-l", "cape"}).Out.find("NoCAPE"), std::string::npos);
  EXPECT_NE(RunWords({"analyze", coldFile, "--explain", "CAPE total"}).Out.find("NoCAPE"),
            std::string::npos);
}

TEST_F(CommandLine, OneBadFileLeavesTheOthersDone) {
  const std::string good = Sounding();
  const std::string bad = Write("bad.RAW", "\"VEXA 5.7\",\"cut\",1,30,0\r\n35.1,\"N\",");
  const Ran csv = RunWords({"analyze", bad, good, In("missing.RAW"), good, "--format", "csv"});
  EXPECT_EQ(csv.Exit, kExitInputFailed);
  EXPECT_NE(csv.Err.find("line 2"), std::string::npos) << csv.Err;
  EXPECT_NE(csv.Err.find("does not exist"), std::string::npos) << csv.Err;
  const auto rows = CsvOf(csv.Out);
  ASSERT_EQ(rows.size(), 3u);
  EXPECT_EQ(rows[0].size(), rows[1].size() - 1) << "the title's comma stands in quotes";
  EXPECT_EQ(rows[1], rows[2]);

  const Ran json = RunWords({"analyze", good, bad, good, "--format", "json"});
  EXPECT_EQ(Json::parse(json.Out).size(), 2u);
}

TEST_F(CommandLine, ExplainsAnIndex) {
  const Ran ran = RunWords({"analyze", Sounding(), "--explain", "ki", "--explain", "SWEAT"});
  EXPECT_EQ(ran.Exit, kExitOk) << ran.Err;
  for (const char* part :
       {"K Index: 31.9 C", "T 850 hPa", "18.6 C", "George 1960", "SWEAT Index"}) {
    EXPECT_NE(ran.Out.find(part), std::string::npos) << part << "\n" << ran.Out;
  }
  EXPECT_EQ(RunWords({"analyze", Sounding(), "--explain", "XYZ"}).Exit, kExitUsage);
  ASSERT_EQ(RunWords({"analyze", Sounding(), "--trace-liftsat", In("trace.txt")}).Exit, kExitOk);
  const std::string trace = Text("trace.txt");
  EXPECT_NE(trace.find("level 1, 970 hPa\nTX =346"), std::string::npos) << trace.substr(0, 300);
  EXPECT_NE(trace.find(" Count =1 T1 ="), std::string::npos);
}

TEST_F(CommandLine, WithoutTheToolkitItSaysWhatItLacks) {
  const std::string file = Sounding();
  const std::pair<std::vector<std::string>, const char*> lacks[] = {
      {{"plot", file, "-o", In("a.png")}, ".png pictures, only .svg"},
      {{"print", file, "-o", In("a.pdf")}, "PDF documents"},
      {{"report", file, "-o", In("case")}, "PNG images"},
      {{"fetch", "72357", "-s", "A", "-t", "1999-05-04T00", "--sources",
        Write("s.url", "[A]\naddress = http://127.0.0.1:9/@N\n")},
       "downloads"},
  };
  for (const auto& [words, what] : lacks) {
    const Ran ran = RunWith(nullptr, words);
    EXPECT_EQ(ran.Exit, kExitUsage);
    EXPECT_EQ(ran.Err, "vexa-cli " + words.front() +
                           ": this program was built without the toolkit and makes no " + what +
                           "\n");
  }
  EXPECT_FALSE(fs::exists(In("case")));
}

TEST_F(CommandLine, SettingsReachThePicture) {
  const std::string file = Sounding();
  const auto svg = [&](std::vector<std::string> more) {
    std::vector<std::string> words = {"plot", file, "-o", In("{name}.svg")};
    words.insert(words.end(), more.begin(), more.end());
    EXPECT_EQ(RunWords(words).Exit, kExitOk);
    return Text("große Lage.svg");
  };
  EXPECT_EQ(svg({"--diagram", "emagram"}), svg({"--set", "diagram type = emagram"}));
  SettingsStore kept;
  kept.Active = kept.System.Current = Configuration::Second;
  kept.System.Configurations[1].Name = "Night";
  ASSERT_FALSE(test::SaveAllSettings(PathFromText(In("")), kept));
  const std::string night = svg({"--root", In(""), "--set", "GPM units=FEET"});
  EXPECT_NE(night.find("VEXA Config #2: Night"), std::string::npos);
  EXPECT_NE(night, svg({"--root", In("")}));
  const Ran twice = RunWords({"plot", file, file, "-o", In("{name}.svg")});
  EXPECT_EQ(twice.Exit, kExitInputFailed) << "no input's picture may replace another's";
}

TEST_F(CommandLine, PlotsSeveralFilesTogether) {
  const std::string first = Sounding();
  const std::string second = Write("winter.RAW", test::ReferenceWinter());
  for (const char* display : {"Overlay", "compare"}) {
    const Ran ran = RunWords({"plot", first, second, "-o", In("all.svg"), "--display", display});
    EXPECT_EQ(ran.Exit, 0) << ran.Err;
    const std::string picture = Text("all.svg");
    for (const char* title : {"Reference A, convective // 35.2N", "Reference B, winter // 45.0N"}) {
      EXPECT_NE(picture.find(title), std::string::npos) << title;
    }
  }
}

TEST_F(CommandLine, ConvertWritesANativeFileOfTheSameSounding) {
  const std::string page = TextFromPath(test::TestData("wyoming_page.html"));
  ASSERT_EQ(RunWords({"convert", page, "-o", In("out.RAW")}).Exit, kExitOk);
  const auto levels = [](const Ran& ran) { return Json::parse(ran.Out)["temperature levels"]; };
  EXPECT_EQ(levels(RunWords({"analyze", page, "--format", "json"})),
            levels(RunWords({"analyze", In("out.RAW"), "--format", "json"})));
  EXPECT_EQ(RunWords({"convert", In("missing"), "-o", In("out.RAW")}).Exit, kExitInputFailed);
  EXPECT_TRUE(fs::exists(folder_.Path() / "out.RAW")) << "a failed conversion takes nothing away";
}

TEST_F(CommandLine, SettingsListsEveryOption) {
  const Ran plain = RunWords({"settings"});
  EXPECT_EQ(plain.Exit, 0);
  EXPECT_NE(plain.Out.find("\r\nMB limit = 100\r\n"), std::string::npos);
  SettingsStore kept;
  kept.Set.MbLimit = 300;
  ASSERT_FALSE(test::SaveAllSettings(PathFromText(In("")), kept));
  EXPECT_EQ(RunWords({"settings", "--root", In(""), "-o", In("list.txt")}).Exit, 0);
  const std::string listed = Text("list.txt");
  EXPECT_NE(listed.find("\r\nMB limit = 300\r\n"), std::string::npos);

  EXPECT_NE(RunWords({"settings", "--root", In("list.txt")}).Err.find("is no folder"),
            std::string::npos);
  Write("VEXAMAIN.SYS", "header\r\n\"perhaps\"\r\n");
  EXPECT_NE(RunWords({"settings", "--root", In("")}).Err.find("VEXAMAIN.SYS"), std::string::npos);
  EXPECT_EQ(RunWords({"settings", "a.RAW"}).Exit, 2);
  const Ran apart = RunWords({"settings", "--set", "Temp MIN=30"});
  EXPECT_EQ(apart.Exit, 2);
  EXPECT_NE(apart.Err.find("Temp MAX must lie"), std::string::npos) << apart.Err;
}

TEST_F(CommandLine, CheckTellsOfFilesAndFolders) {
  fs::create_directories(folder_.Path() / "below");
  fs::create_directories(folder_.Path() / ".hidden");
  Sounding("below/a.RAW");
  Sounding("below/.a.RAW");
  Sounding(".hidden/a.RAW");
  Write("below/README.md", "no sounding\n");
  Write("analysis.json", "{\"parcels\": 1}\n");
  Write("empty.txt", "\n");
  SoundingRecord bad = test::ReferenceConvective();
  bad.Temp(2) = 75;
  Write("c.RAW", bad);
  const Ran ran = RunWords({"check", TextFromPath(folder_.Path())});
  EXPECT_EQ(ran.Exit, kExitInputFailed);
  EXPECT_NE(ran.Out.find("a.RAW: RAW, "), std::string::npos) << ran.Out;
  EXPECT_NE(ran.Out.find("empty.txt: FAULT: empty.txt: the file is empty\n"), std::string::npos);
  EXPECT_NE(ran.Out.find(" Level 2.\n"), std::string::npos) << ran.Out;
  EXPECT_TRUE(ran.Out.ends_with("\n3 files, 3 soundings, 2 faults; 2 other files passed over\n"))
      << ran.Out;
  // "1X856" is no group, and a wind that part PPBB gives at 12000 ft comes from elsewhere.
  const Ran coded =
      RunWords({"check", TextFromPath(test::TestData("coded_bulletins_20240305.txt"))});
  EXPECT_EQ(coded.Exit, kExitOk);
  EXPECT_NE(coded.Out.find("23 winds, OK, but 2 places may be garbled\n"), std::string::npos)
      << coded.Out;
  EXPECT_NE(coded.Out.find("5 winds, OK\n"), std::string::npos) << coded.Out;
  // A file that is named is to be a sounding.
  const Ran named = RunWords({"check", In("below/README.md")});
  EXPECT_EQ(named.Exit, kExitInputFailed);
  EXPECT_NE(named.Out.find("FAULT: README.md: in none of the known formats"), std::string::npos);
  EXPECT_EQ(RunWords({"check", "-q", In("below/a.RAW")}).Out, "1 file, 1 sounding, 0 faults\n");
}

// One line, one rule for the exit code, whatever is done with the sounding.
TEST_F(CommandLine, DoubtfulDataAreToldAlikeByEveryCommand) {
  SoundingRecord hot = test::ReferenceConvective();
  hot.Temp(2) = 75;
  const std::string file = Write("hot.RAW", hot);
  std::vector<std::vector<std::string>> commands = {
      {"analyze", file},
      {"analyze", file, "--explain", "KI"},
      {"plot", file, "-o", In("a.svg")},
      {"plot", Sounding(), file, "-o", In("b.svg"), "--display", "Overlay"},
      {"list", file, "-l", "cape"},
      {"export", file, "-o", In("a.csv")},
      {"convert", file, "-o", In("b.RAW")}};
  if (MakeToolkit()) {
    commands.push_back({"print", file, "-o", In("a.pdf")});
    commands.push_back({"report", file, "-o", In("case")});
  }
  const std::string says = "Temperature is greater than 70C. Level 2.";
  for (const std::vector<std::string>& words : commands) {
    SCOPED_TRACE(words.front());
    const Ran ran = RunWords(words);
    EXPECT_EQ(ran.Err, "vexa-cli: " + file + ": the data are doubtful: " + says + "\n");
    EXPECT_EQ(ran.Exit, kExitInputFailed);
  }
  const Json json = Json::parse(RunWords({"analyze", file, "--format", "json"}).Out);
  EXPECT_EQ(json["finding"]["number"], 6);
  EXPECT_EQ(json["finding"]["level"], 2);
  const Json left =
      Json::parse(RunWords({"export", file, "-o", In("a.csv"), "--json"}).Out)["rejected"][0];
  EXPECT_EQ(left["finding"], json["finding"]);
  const Json good = Json::parse(RunWords({"analyze", Sounding(), "--format", "json"}).Out);
  EXPECT_TRUE(good["finding"].is_null());
}

// A fault of writing is the output's, one of reading the input's.
TEST_F(CommandLine, OutputFaultsNameTheOutput) {
  const std::string file = Sounding();
  const std::string below = In("gr\xC3\xB6\xC3\x9F");  // a file is no folder
  Write("gr\xC3\xB6\xC3\x9F", "");
  for (const char* command : {"convert", "plot", "report"}) {
    if (std::string_view(command) == "report" && !MakeToolkit()) continue;
    SCOPED_TRACE(command);
    const std::string output = below + "/a.svg";
    const Ran ran = RunWords({command, file, "-o", output});
    EXPECT_EQ(ran.Exit, kExitInputFailed);
    EXPECT_TRUE(ran.Err.starts_with("vexa-cli: " + output + ": ")) << ran.Err;
    EXPECT_EQ(ran.Err.find(file), std::string::npos) << ran.Err;
  }
}

TEST_F(CommandLine, ThePlaceOfTheNameIsFilledInWhereverItStands) {
  const std::string first = Sounding("a.RAW"), second = Sounding("{name}.RAW");
  fs::create_directories(In("a"));
  fs::create_directories(In("{name}"));
  const Ran ran = RunWords({"plot", first, second, "-o", In("{name}/{name}_x.svg")});
  EXPECT_EQ(ran.Exit, kExitOk) << ran.Err;
  EXPECT_TRUE(fs::exists(In("a/a_x.svg")));
  EXPECT_TRUE(fs::exists(In("{name}/{name}_x.svg")));
}

TEST_F(CommandLine, WindsBelowTheSeaAreKept) {
  const std::string file = Write("low.txt",
                                 "Station name\tDead Sea\nBalloon release date and time\t"
                                 "2020-02-18T22:19:51\nLatitude\t31.5\nLongitude\t35.5\n"
                                 "Release point height\t-400 m\n\n"
                                 "HeightMSL\tP\tTemp\tRH\tSpeed\tDir\nm\thPa\tC\t%\tm/s\tdeg\n"
                                 "-400\t1060\t30\t40\t3\t180\n600\t950\t22\t40\t5\t200\n"
                                 "1500\t850\t14\t40\t8\t220\n3000\t700\t2\t40\t9\t230\n");
  EXPECT_EQ(RunWords({"convert", file, "-o", In("a.RAW")}).Err, "");
  const Json before = Json::parse(RunWords({"analyze", file, "--format", "json"}).Out);
  const Json after = Json::parse(RunWords({"analyze", In("a.RAW"), "--format", "json"}).Out);
  EXPECT_EQ(after["wind levels"], before["wind levels"]);
  EXPECT_EQ(after["wind levels"]["height"][0], -400);
}

TEST_F(CommandLine, AFolderStandsForItsSoundings) {
  fs::create_directories(folder_.Path() / "in/below");
  fs::create_directories(folder_.Path() / "none");
  Sounding("in/b.RAW");
  Write("in/below/a.RAW", test::ReferenceWinter());
  Write("in/README.md", "no sounding\n");
  Write("none/README.md", "no sounding\n");
  for (int run = 1; run <= 2; ++run) {  // what the first has written is no input of the second
    SCOPED_TRACE(run);
    const Ran ran = RunWords({"export", In("in"), "-o", In("in/all.txt"), "--json"});
    EXPECT_EQ(ran.Exit, kExitOk) << ran.Err;
    const Json done = Json::parse(ran.Out);
    EXPECT_EQ(done["output"], In("in/all.txt"));
    EXPECT_EQ(done["soundings"], 2);
    EXPECT_TRUE(done["reject file"].is_null());
    EXPECT_TRUE(done["rejected"].empty());
  }
  const Ran csv = RunWords({"analyze", In("none"), In("in"), "--format", "csv"});
  EXPECT_EQ(csv.Exit, kExitInputFailed);
  EXPECT_NE(csv.Err.find("there is no sounding in the folder"), std::string::npos) << csv.Err;
  EXPECT_EQ(std::ranges::count(csv.Out, '\n'), 1 + 3) << csv.Out;  // with the dump of all
  const Ran some = RunWords({"export", In("in/b.RAW"), In("gone"), "-o", In("o.csv"), "--json"});
  EXPECT_EQ(some.Exit, kExitInputFailed);
  const Json done = Json::parse(some.Out);
  EXPECT_EQ(done["reject file"], In("BAD_o.csv"));
  ASSERT_EQ(done["rejected"].size(), 1u);
  EXPECT_EQ(done["rejected"][0]["file"], In("gone"));
}

// Nothing is asked of any server: every one of these ends ahead of that.
TEST_F(CommandLine, FetchChecksItsWordsFirst) {
  const std::string sources = Write("s.url", "[A]\naddress = http://127.0.0.1:9/@Y@M@D@H/@N\n");
  VEXA_NEEDS_TOOLKIT();
  const std::string time = "1999-05-04T00";
  ExpectRefused({"fetch", "--sources", sources},
                {{{"72357", "-s", "B", "-t", time}, 2, "no source \"B\""},
                 {{"72357", "-s", "A", "-t", "yesterday"}, 2, "is no time"},
                 {{"-s", "A", "-t", time}, 2, "no station"},
                 {{"72357", "-s", "A"}, 2, "no date"},
                 {{"OUN", "-s", "A", "-t", time, "--fresh"}, 1, "(@N): not given"}});
  EXPECT_NE(RunWords({"fetch", "--sources", sources, "-l"}).Out.find("@Y@M@D@H"),
            std::string::npos);
}

}  // namespace
}  // namespace vexa::cli
