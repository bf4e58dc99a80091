// Mountains as they are entered and read from files, the settings of the wave display, and the
// texts that tell of waves.
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "core/files.h"
#include "core/numbers.h"
#include "core/source_text.h"
#include "core/station_file.h"
#include "mountainwave/mountain_file.h"
#include "mountainwave/wave_listing.h"
#include "mountainwave/wave_settings.h"
#include "support/soundings.h"

namespace vexa::mountainwave {
namespace {

std::string Heading(int lines, const std::string& last) {
  std::string text;
  for (int i = 1; i < lines; ++i) text += "heading, line " + std::to_string(i) + "\r\n";
  return text + last + "\r\n";
}
const std::string kOld = Heading(18, "the end of the heading");
std::string NewHeading(const std::string& units) {
  return Heading(18, "NOTE: of the new layout") + "\r\n\r\n" + units + "\r\n\r\n";
}

TEST(Mountains, EveryRangeNamesItsField) {
  using Entry = MountainEntry;
  const std::string height = "Mountain #1 - Height", width = "Mountain #1 - Half-Width",
                    axis = "Mountain #1 - Axis", distance = "Mountain #1 - #2 Distance";
  struct Limit {
    double Entry::*Member;
    double Value;
    std::string Field;
    WaveUnits Units = kEnglishUnits;
  };
  const Limit limits[] = {
      {&Entry::Height, 99, height},
      {&Entry::Height, 100, ""},
      {&Entry::Height, 32000, ""},
      {&Entry::Height, 32001, height},
      {&Entry::Height, 34, height, kMetricUnits},
      {&Entry::HalfWidth, 0.09, width},
      {&Entry::HalfWidth, 90.1, width, {LengthUnits::Feet, WaveDistance::Kilometers}},
      {&Entry::Axis, 361, axis},
      {&Entry::Axis, std::nan(""), axis},
      {&Entry::Height2, 0, "Mountain #2 - Height"},
      {&Entry::HalfWidth2, 51, "Mountain #2 - Half-Width"},
      {&Entry::Axis2, -1, "Mountain #2 - Axis"},
      {&Entry::Distance, 0.9, distance},
      {&Entry::Distance, 551, distance, {LengthUnits::Feet, WaveDistance::Miles}},
  };
  for (const Limit& limit : limits) {
    SCOPED_TRACE(limit.Value);
    Entry entry{10000, 5, 0, true, 10, 9000, 4, 360};
    entry.*limit.Member = limit.Value;
    EXPECT_EQ(OutOfRange(entry, limit.Units), limit.Field);
  }
  EXPECT_EQ(OutOfRange({0, 0, 0}, kEnglishUnits), height) << "the first wrong value first";
  EXPECT_EQ(OutOfRange({500, 1, 0}, kEnglishUnits), "") << "nothing of a second";
  EXPECT_EQ(HalfWidthPrompt(WaveDistance::Kilometers)[1], "Half-width range:  0.2 - 90.0 km.");
  EXPECT_EQ(HeightPrompt(LengthUnits::Feet)[1], "Height range:  100 - 32,000 feet.");
}

TEST(MountainFile, BothLayoutsAndUnits) {
  const std::string records =
      "72489,3048,18.52,180,0,0,0,0\n72476, "
      "1000,1.852,10,\n37.04,500,\n3.704,20\n99999\n11111,1,1,1,0,0,0,0\n";
  struct Layout {
    const char* About;
    std::string Text;
    bool IsMetric;
  };
  const Layout layouts[] = {
      {"old", kOld, false},
      {"new, feet", NewHeading("Units is feet"), false},
      {"new, metres", NewHeading("Units is meters"), true},
      {"new, in column 9", NewHeading("Units is\tfeet "), false},
      {"new, one column early", NewHeading("Units isfeet"), true},
      {"new, nothing", NewHeading(""), true},
  };
  for (const Layout& layout : layouts) {
    SCOPED_TRACE(layout.About);
    const auto look = [&](int station) {
      const MountainLookup looked = FindMountains(layout.Text + records, "VEXA.MTN", station);
      EXPECT_FALSE(looked.Wrong);
      return looked.Found;
    };
    const auto first = look(72489);
    ASSERT_TRUE(first);
    EXPECT_NEAR(first->First.HeightFt, layout.IsMetric ? 10000 : 3048, 1e-9);   // ÷ 0.3048
    EXPECT_NEAR(first->First.HalfWidthNm, layout.IsMetric ? 10 : 18.52, 1e-9);  // ÷ 1.852
    EXPECT_FALSE(first->HasSecond());
    // A record over several lines, two mountains.
    const auto second = look(72476);
    ASSERT_TRUE(second && second->HasSecond());
    EXPECT_EQ(second->Second.Axis, 20);
    EXPECT_FALSE(look(11111));  // behind the end
    EXPECT_FALSE(look(0));
  }
}

TEST(MountainFile, DamageIsNamedWithItsLine) {
  const std::pair<std::string, const char*> cases[] = {
      {kOld + "1,2,3,x,0,0,0,0\n99999\n", "19: station 1 lacks one of its seven numbers"},
      {kOld + "1,2,3,4,0,0,0,0\n", "20: ends without the station number 99999"},
      {kOld + "1,2,3,4,0\n", "20: station 1 lacks one of its seven numbers"},
      {"1,2\n", "1: ends in its heading"},
      {NewHeading("Units is feet") + "name,2,3,4,0,0,0,0\n",
       "23: no station number stands where one should"},
      {kOld + "5,900,0,4,0,0,0,0\n99999\n",
       "19: station 5: mountain #1 has no height or half-width, or its axis is not 0 to 360"},
  };
  for (const auto& [text, detail] : cases) {
    const MountainLookup looked = FindMountains(text, "VEXA.MTN", 5);
    ASSERT_TRUE(looked.Wrong) << detail;
    EXPECT_EQ(looked.Wrong->Detail, "VEXA.MTN, line " + std::string(detail));
    EXPECT_TRUE(MountainFileBox(*looked.Wrong)
                    .Text.starts_with("There is a problem with the VEXA.MTN mountain parameter "
                                      "file.  \nReload original file from the distribution CD"));
  }
  // Behind the station that a sounding would stop at, its editor alone looks.
  const std::string text = kOld + "1,100,1,0,0,0,0,0\n2,100,1,500,0,0,0,0\n99999\n";
  EXPECT_FALSE(FindMountains(text, "VEXA.MTN", 1).Wrong);
  EXPECT_TRUE(FindMountains(text, "VEXA.MTN", kEveryStation).Wrong);
  const test::TemporaryFolder folder;
  const MountainLookup missing = FindMountains(folder.Path() / "VEXA.MTN", 5);
  ASSERT_TRUE(missing.Wrong);
  EXPECT_TRUE(MountainFileBox(*missing.Wrong)
                  .Text.starts_with("The VEXA.MTN data file could not be found.\n"));
}

TEST(MountainFile, TheShippedOneIsWhole) {
  const auto share = test::SourceFolder() / "share";
  const std::string text = ReadFile(share / "VEXA.MTN").Value();
  const StationList stations =
      ReadStations(ReadFile(share / kStationFileName).Value(), kStationFileName).List;
  EXPECT_FALSE(FindMountains(text, "VEXA.MTN", 99998).Wrong);
  const SourceText lines("VEXA.MTN", text);
  int records = 0;
  for (int line = 23; lines.Line(line) != "99999"; ++line) {
    SCOPED_TRACE(line);
    const auto number = ParseWhole(lines.Line(line).substr(0, 5));
    ASSERT_TRUE(number);
    const Station* station = stations.Find(*number);
    ASSERT_NE(station, nullptr);
    const MountainLookup looked = FindMountains(text, "VEXA.MTN", *number);
    ASSERT_TRUE(looked.Found);
    const MountainEntry entry = ToEntry(*looked.Found, kEnglishUnits);
    EXPECT_EQ(OutOfRange(entry, kEnglishUnits), "");
    EXPECT_GT(entry.Height * 0.3048, station->ElevM);
    ++records;
  }
  EXPECT_GE(records, 36);
}

TEST(WaveSettings, RoundTripInTheirRecords) {
  WaveOptions options;
  options.Units = kMetricUnits;
  options.Units.Distance = WaveDistance::Miles;
  options.Scale = WaveScale::Pressure;
  options.DecayOn = true;
  options.DecayPercent = 35.5;
  options.DecayWavelength = 2;
  options.UpperLimit = 250;
  options.Length = 80;
  options.Shading = options.Terrain = options.WindProfile = options.ScorerProfile = false;
  options.Line = WaveLine::Thin;
  options.LabelsOnly = true;
  options.Traces = WaveTraces::Isentropes;
  EXPECT_EQ(ReadWaveOptions(Write(options)), options);
  EXPECT_EQ(ReadWaveOptions(Write(WaveOptions{})), WaveOptions{});
  WaveState state{.Sounding = "/data/two of \"them\".RAW#2", .Choice = MountainChoice::Entered};
  for (const MountainParameters& entered :
       {MountainParameters{{6562.5, 5.25, 340}, 20, {5000, 2.5, 45}},
        {{6562.5, 5.25, 340}, 0, {}}}) {
    state.Entered = entered;
    EXPECT_EQ(ReadWaveState(Write(state)), state);
  }
  EXPECT_TRUE(Write(state).starts_with("\"This is a VEXA system file -- Do Not Alter.\""));
  // A file that ends early: what was read stays, the rest has its defaults.
  const std::string text = Write(options);
  const WaveOptions cut = ReadWaveOptions(text.substr(0, text.find("\"yes\"")));
  EXPECT_EQ(cut.Units, options.Units);
  EXPECT_EQ(cut.DecayPercent, WaveOptions{}.DecayPercent);
  EXPECT_EQ(ReadWaveState(""), WaveState{});
  // Mountains that are none leave those of the station.
  for (const char* damaged : {"6500 5", "6500 5 400", "-1 5 340", "6500 5 x"}) {
    const std::string damagedText =
        "\"header\"\n\"a.RAW\"\n\"" + std::string(damaged) + "\",\"\"\n";
    EXPECT_EQ(ReadWaveState(damagedText).Choice, MountainChoice::Station) << damaged;
    EXPECT_EQ(ReadWaveState(damagedText).Sounding, "a.RAW");
  }
}

TEST(Mountains, AreKeptInASounding) {
  SoundingRecord sounding = test::ReferenceWinter();
  const MountainParameters two{{6500, 5, 340}, 20, {5000, 2.5, 45}};
  StoreMountains(sounding, two);
  EXPECT_EQ(MountainsOf(sounding), two);
  const MountainParameters one{{6500, 5, 340}, 0, {}};
  StoreMountains(sounding, one);
  EXPECT_EQ(MountainsOf(sounding), one);
  EXPECT_EQ(sounding.NumExtraRecords, 1);
  StoreMountains(sounding, Site{});
  EXPECT_EQ(MountainsOf(sounding), Site{});
}

// A wave of round numbers: 11.2214 km are 6.055 nm and 6.973 mi, 514.9 m 1689 ft, 5.998 m/s 1181
// fpm.
WaveResults OneWave() {
  Wave wave{.Kind = WaveKind::Predominant};
  wave.At.Press = 700;
  wave.At.Height = 3000;
  wave.Of.LengthKm = 11.2214;
  wave.HalfWidthKm = 1.78594;
  wave.Amplitude = 514.9;
  wave.MaxVelocity = 5.998;
  WaveResults results;
  results.Ridges = {{.Waves = {wave}}};
  return results;
}

std::string Listed(const WaveSource& source) {
  std::string text;
  for (const std::string& line : WaveListing(source)) text += line + '\n';
  return text;
}

TEST(WaveListing, DefaultMountainInFeet) {
  SoundingRecord sounding = test::ReferenceWinter();
  sounding.Time = {2010, 1, 5, 12, 0};
  const WaveResults waves = OneWave();
  EXPECT_EQ(Listed({sounding, Site{}, waves, {}}),
            ReadFile(test::TestData("listings/waves_default_mountain.txt")).Value());
}

TEST(WaveListing, TwoMountainsInMetres) {
  const SoundingRecord sounding = test::ReferenceWinter();
  WaveResults waves = OneWave();
  waves.IsDefault = false;
  Wave harmonic = waves.Ridges[0].Waves[0];
  harmonic.Kind = WaveKind::Harmonic;
  harmonic.MaxVelocity = 3;
  waves.Ridges[0].Waves.push_back(harmonic);
  waves.Ridges.emplace_back();
  WaveOptions set;
  set.Units = kMetricUnits;
  set.DecayOn = true;
  const MountainParameters mountains{{10000, 5, 0}, 20, {5000, 2.5, 45}};
  EXPECT_EQ(Listed({sounding, mountains, waves, set}),
            ReadFile(test::TestData("listings/waves_two_mountains.txt")).Value());
}

}  // namespace
}  // namespace vexa::mountainwave
