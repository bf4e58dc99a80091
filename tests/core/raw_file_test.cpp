#include "core/raw_file.h"

#include <gtest/gtest.h>

#include <clocale>
#include <random>

#include "core/markers.h"
#include "core/numbers.h"
#include "support/soundings.h"

namespace vexa {
namespace {

struct Read {
  SoundingRecord Record{};
  std::optional<Fault> Failed{};
  std::vector<RefusedWind> Refused{};
};

Read ReadText(std::string_view text, RawVariant variant = RawVariant::Plain) {
  Read read;
  read.Failed = ReadRaw(text, "x.RAW", variant, read.Record, read.Refused);
  return read;
}

std::string FileText(const std::string& name) {
  return ReadFile(test::TestData(name)).Value();
}

TEST(LoadRAW, ReadsEveryFieldOfAFullFile) {
  CurrentSounding current{.DataFolder = test::TestData(""), .FileName = "native_5_7.RAW"};
  test::ScriptedInteraction user;
  user.Expect("Wind height error", Answer::Ok);
  current.Ask = &user;
  ASSERT_EQ(LoadRAW(current), Status::Ok) << current.StatusText;
  EXPECT_EQ(user.Boxes[0].Text,
            "Level #2 = -5 meters.\nThis wind level will not be used for this sounding.");
  EXPECT_EQ(user.Boxes[0].Icon, BoxIcon::Exclamation);

  const SoundingRecord& record = current.Record;
  EXPECT_EQ(record.FileTag, "VEXA 5.7");
  EXPECT_EQ(record.StationTitle, "Testfeld M\u00FCnster  12Z 03 Mar 2001");
  EXPECT_EQ(record.LatParts, (AngleParts{"51", "57", "45"}));
  EXPECT_DOUBLE_EQ(record.LatSigned, 51.9625);
  EXPECT_DOUBLE_EQ(record.LonSigned, 7.5);
  EXPECT_EQ(record.ElevM, 62);
  EXPECT_NEAR(record.ElevFt, 203.412, 0.001);
  EXPECT_EQ(record.CloudOption, "NO");
  EXPECT_EQ(record.Press, Levels<double>({1010.5, 925, 850, 700, 500}));
  EXPECT_EQ(record.Dewpt, Levels<double>({9.1, 5.5, -3.25, 999.9, 999.9}));
  EXPECT_EQ(record.WindHgt, Levels<double>({62, 1500, 5600}));
  EXPECT_EQ(record.WindSpd, Levels<double>({8, 22.5, 41}));
  ASSERT_EQ(record.NumCloudLayers(), 2);
  EXPECT_EQ(record.Clouds(1), (CloudLayer{"SC", 15, "030", 3}));
  EXPECT_EQ(record.ExtraRecord1[0], 3500);
  EXPECT_EQ(record.ExtraRecord2[3], 4);
  EXPECT_TRUE(record.ExtraRecordsPresent);
  EXPECT_EQ(record.DataFormat, "RAW");
}

TEST(LoadRAW, FilesBefore212HaveNoCloudLine) {
  const Read read = ReadText(FileText("native_1_9.RAW"));
  ASSERT_FALSE(read.Failed) << read.Failed->Detail;
  EXPECT_EQ(read.Record.Press, Levels<double>({1000, 850, 700}));
  EXPECT_EQ(read.Record.NumWindLevels(), 2);
  EXPECT_DOUBLE_EQ(read.Record.LatSigned, -0.5);
  EXPECT_NEAR(read.Record.LonSigned, -(179 + 59.0 / 60 + 59.0 / 3600), 1e-9);
  EXPECT_TRUE(read.Record.ElevUnknown);
  EXPECT_EQ(read.Record.ElevM, 0);
  // Saved again it has the cloud line, so it must not say that it is old.
  const Read again = ReadText(WriteRaw(read.Record));
  ASSERT_FALSE(again.Failed);
  EXPECT_EQ(again.Record.FileTag, "VEXA 5.7");
  EXPECT_EQ(again.Record.Press, read.Record.Press);
  EXPECT_TRUE(again.Record.ElevUnknown);
}

TEST(RecogniseRaw, ByTheTagsVersion) {
  const std::string rest = ",\"t\",1,2,0\r\n45,\"N\",8,\"E\",120\r\n";
  for (const char* tag : {"\"old 1.0\"", "\"old 0.5\"", "\"VEXA\""}) {
    EXPECT_EQ(RecogniseRaw(tag + rest), RawVariant::Plain) << tag;
  }
  for (const char* tag : {"\"notes\"", "\"no 0.0\"", "VEXA"})
    EXPECT_FALSE(RecogniseRaw(tag + rest)) << tag;
}

// A station at 33.56.51 south, 70.40.10 west, whoever typed the letters.
TEST(LoadRAW, HemispheresMayBeSmallLetters) {
  const std::string rest = "\"AUTO\",0,\"AUTO\",0,0,\"\",\"\"\r\n1000,10,5\r\n900,4,2\r\n";
  for (const char* position : {"33.5651,\"s\",70.401,\"w\"", "33.5651,\" S\",70.401,\"W \""}) {
    const Read read =
        ReadText("\"VEXA 5.7\",\"t\",1,2,0\r\n" + std::string(position) + ",520\r\n" + rest);
    ASSERT_FALSE(read.Failed) << read.Failed->Detail;
    EXPECT_EQ(read.Record.LatHemi + read.Record.LonHemi, "SW");
    EXPECT_NEAR(read.Record.LatSigned, -(33 + 56.0 / 60 + 51.0 / 3600), 1e-9);
    EXPECT_NEAR(read.Record.LonSigned, -(70 + 40.0 / 60 + 10.0 / 3600), 1e-5);
  }
}

TEST(LoadRAW, FieldsMayBreakAnywhere) {
  std::string text = FileText("native_5_7.RAW");
  const SoundingRecord whole = ReadText(text).Record;
  std::string oneByOne;
  for (const char c : text) oneByOne += c == ',' ? '\n' : c;
  EXPECT_EQ(ReadText(oneByOne).Record, whole);
  std::string oneLine;
  for (const char c : text) {
    if (c == '\n') oneLine += " , ";
    if (c != '\n' && c != '\r') oneLine += c;
  }
  EXPECT_EQ(ReadText(oneLine + "\x1A garbage").Record, whole);
}

// A row is read at once where it is plain, its fields one by one where it is not: nothing but time
// is to tell the two.
TEST(LoadRAW, RowsMayBeWrittenInAnyWay) {
  const std::string head =
      "\"VEXA 5.7\",\"t\",1,3,1\r\n45,\"N\",8,\"E\",120\r\n\"AUTO\",0,\"AUTO\",0,0,\"\",\"\"\r\n";
  const std::string rows[] = {
      "1000,10,5\r\n900.5,-4,2.25\r\n800,-10,-12\r\n130,270,15\r\n",
      "1000,10,5\n900.5,-4,2.25\n800,-10,-12\n130,270,15",
      "1000,10,5\r900.5,-4,2.25\r800,-10,-12\r130,270,15\r",
      "1000,10,5\r\r\n900.5,-4,2.25,\r\n 800 , -10,-12 \r\n130,270,15\r\n",
      "1000,10,5,900.5\r\n-4,2.25,800\r\n\r\n-10,-12,130\r\n270,15\r\n",
      "+1000,1e1,5.\r\n9.005E2,-4.0000000000000000000000000000,2.2500000000000000000000000000\r\n"
      "800,-10,-12\r\n130,270,15\x1A,7\r\n",
  };
  for (const std::string& text : rows) {
    const Read read = ReadText(head + text);
    EXPECT_FALSE(read.Failed) << text << read.Failed->Detail;
    EXPECT_EQ(read.Record.Press, Levels<double>({1000, 900.5, 800})) << text;
    EXPECT_EQ(read.Record.Temp, Levels<double>({10, -4, -10})) << text;
    EXPECT_EQ(read.Record.Dewpt, Levels<double>({5, 2.25, -12})) << text;
    EXPECT_EQ(read.Record.WindHgt, Levels<double>({130})) << text;
    EXPECT_EQ(read.Record.WindSpd, Levels<double>({15})) << text;
  }
  const Read four = ReadText(head + "1000,10,5\r\n900,4,2\r\n800,-10,-12x\r\n130,270,15\r\n");
  ASSERT_TRUE(four.Failed);
  EXPECT_EQ(four.Failed->Detail, "x.RAW, line 6: the dew point should be a number, not \"-12x\"");
}

TEST(LoadRAW, DamageNamesLineAndReasonAndKeepsWhatWasRead) {
  const std::string head = "\"VEXA 5.7\",\"t\",1,2,1\r\n45,\"N\",8,\"E\",120\r\n";
  const std::string clouds = "\"AUTO\",0,\"AUTO\",0,0,\"\",\"\"\r\n";
  struct Case {
    const char* about;
    std::string text;
    const char* detail;
    int levels;
  };
  const Case cases[] = {
      {"count below 0", "\"VEXA 5.7\",\"t\",1,-2,1\r\n",
       "x.RAW, line 1: the number of temperature levels should be a count, not \"-2\"", 0},
      {"latitude", "\"VEXA 5.7\",\"t\",1,2,1\r\n95,\"N\",8,\"E\",120\r\n",
       "x.RAW, line 2: the latitude lies outside 0 to 90", 0},
      {"hemisphere", "\"VEXA 5.7\",\"t\",1,2,1\r\n45,\"N\",8,\"N\",120\r\n",
       "x.RAW, line 2: the longitude's hemisphere should be E or W, not \"N\"", 0},
      {"text for a number", head + clouds + "1000,10,5\r\n900,\"4\",2\r\n",
       "x.RAW, line 5: the temperature should be a number, not \"4\"", 1},
      {"ends in the winds", head + clouds + "1000,10,5\r\n900,4,2\r\n130,270\r\n",
       "x.RAW, line 7: the data end where the wind speed should stand", 2},
      {"two billion levels",
       "\"VEXA 5.7\",\"t\",1,2000000000,2000000000\r\n45,\"N\",8,\"E\",1\r\n" + clouds +
           "1000,10,5\r\n",
       "x.RAW, line 5: the data end where the pressure should stand", 1},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.about);
    const Read read = ReadText(c.text);
    ASSERT_TRUE(read.Failed);
    EXPECT_EQ(read.Failed->Number, kFaultEndOfFile);
    EXPECT_EQ(read.Failed->Detail, c.detail);
    EXPECT_EQ(read.Record.NumTempLevels(), c.levels);
    EXPECT_EQ(read.Record.DataFormat, "");
  }
}

SoundingRecord AnySounding(std::mt19937& random) {
  const auto number = [&random](double least, double most) {
    return std::uniform_real_distribution<double>(least, most)(random);
  };
  SoundingRecord record = test::Profile({});
  record.StationTitle = "any";
  record.LatHemi = number(0, 1) < 0.5 ? "N" : "S";
  record.LonHemi = number(0, 1) < 0.5 ? "E" : "W";
  record.LatValue = Rounded(std::floor(number(0, 90)) + std::floor(number(0, 60)) / 100, 2);
  record.LonValue = static_cast<float>(Rounded(std::floor(number(0, 180)) + 0.3059, 4));
  ParseLatLon(record);
  SetElevation(record, static_cast<int>(number(-100, 5000)));
  for (int i = 0; i < 30; ++i) {
    record.AddTemp(number(1, 1050), number(-90, 45), i % 5 == 0 ? kMissing : number(-120, 30));
    record.AddWind(number(0, 30000), number(0, 360), number(0, 200));
  }
  record.Clouds.Add({"CU", number(0, 100), "065", 2});
  record.NumExtraRecords = 2;
  record.ExtraRecordsPresent = true;
  record.ExtraRecord1 = {number(0, 9000), 2, 3};
  record.ExtraRecord2 = {1, 2, 3, number(-1, 1)};
  return record;
}

TEST(SaveRAW, WhatIsWrittenReadsBackTheSame) {
  const std::string before = std::setlocale(LC_ALL, nullptr);
  std::setlocale(LC_ALL, "de_DE.UTF-8");  // decimal commas, where installed
  std::mt19937 random(57);
  for (int i = 0; i < 40; ++i) {
    const SoundingRecord record = AnySounding(random);
    for (const RawVariant variant : {RawVariant::Plain, RawVariant::Quick}) {
      const std::string text = WriteRaw(record, variant, "name 5.7");
      EXPECT_EQ(RecogniseRaw(text), variant);
      const Read read = ReadText(text, variant);
      ASSERT_FALSE(read.Failed) << read.Failed->Detail;
      EXPECT_EQ(read.Record, record);
    }
  }
  std::setlocale(LC_ALL, before.c_str());
}

TEST(SaveRAW, WritesTheFileByteByByte) {
  SoundingRecord record = test::Profile({{1013, -56.3, 999.9}}, {{62, 360, 12.5}}, 62);
  record.StationTitle = "a \"b\"";
  SetDecimalPosition(record, -35.5, 97.999999);  // 35 degrees 30 minutes; 98 degrees
  EXPECT_EQ(WriteRaw(record),
            "\"VEXA 5.7\",\"a 'b'\",1,1,1\r\n35.3,\"S\",98,\"E\",62\r\n"
            "\"AUTO\",0,\"AUTO\",0,0,\"\",\"\"\r\n1013,-56.3,999.9\r\n62,360,12.5\r\n");
}

TEST(SaveRAW, DecimalPositionsKeepTheSecond) {
  std::mt19937 random(3);
  for (int i = 0; i < 2000; ++i) {
    SoundingRecord record = test::Profile({});
    SetDecimalPosition(record, std::uniform_real_distribution<double>(-90, 90)(random),
                       std::uniform_real_distribution<double>(-180, 180)(random));
    const Read read = ReadText(WriteRaw(record));
    ASSERT_FALSE(read.Failed);
    EXPECT_EQ(read.Record.LatLonNotation, "dms");
    EXPECT_NEAR(read.Record.LatSigned, record.LatSigned, 0.50001 / 3600);
    EXPECT_NEAR(read.Record.LonSigned, record.LonSigned, 0.50001 / 3600);
  }
}

TEST(SaveRAW, DosFilesEndAtFortyEightLevels) {
  const test::TemporaryFolder folder;
  SilentInteraction quiet;
  CurrentSounding current{.DataFolder = folder.Path(), .FileName = "dos \u00E4.RAW", .Ask = &quiet};
  current.Record = test::Profile({}, {{10, 20, 5}});
  current.Record.StationTitle = std::string(60, 'T');
  for (int i = 0; i < 60; ++i) current.Record.AddTemp(1000 - i, 20, 10);
  current.Record.FileFlavour = "DOS";
  ASSERT_EQ(SaveRAW(current), Status::Ok);
  EXPECT_EQ(current.Record.FileFlavour, "Windows");
  EXPECT_EQ(current.Record.NumTempLevels(), 60);
  ASSERT_EQ(LoadRAW(current), Status::Ok);
  EXPECT_EQ(current.Record.NumTempLevels(), 48);
  EXPECT_EQ(current.Record.NumWindLevels(), 1);
  EXPECT_EQ(current.Record.StationTitle, std::string(54, 'T'));
}

TEST(LoadRAWquick, RefusesASoundingOfOneLevel) {
  const test::TemporaryFolder folder;
  test::ScriptedInteraction user;
  CurrentSounding current{
      .Record = test::ReferenceWinter(), .QuickFolder = folder.Path(), .Ask = &user};
  ASSERT_EQ(SaveRAWquick(current, "a 1"), Status::Ok);
  const SoundingRecord winter = current.Record;
  current.Record = test::Profile({{1000, 20, 10}});
  ASSERT_EQ(SaveRAWquick(current, "b 2"), Status::Ok);

  ASSERT_EQ(LoadRAWquick(current, "a 1"), Status::Ok);
  EXPECT_EQ(current.Record.Press, winter.Press);
  EXPECT_EQ(current.Record.WindSpd, winter.WindSpd);
  user.Expect("Insufficient Data", Answer::Ok);
  EXPECT_EQ(LoadRAWquick(current, "b 2"), Status::Error);
  EXPECT_EQ(current.StatusText, "ERROR");
  EXPECT_EQ(user.Boxes[0].Icon, BoxIcon::Stop);
  EXPECT_EQ(user.Boxes[0].Text, "b 2 has insufficient Pressure/Temperature data levels.");
}

// The shore of the Dead Sea lies at -430 m. A file that only counts such winds in its rows has
// errors in them, as has one whose rows were changed since.
TEST(RawFile, WindsBelowTheSeaAreReadAgain) {
  const SoundingRecord shore =
      test::Profile({{1060, 30, 20}, {1000, 26, 18}},
                    {{-430, 180, 5}, {-22.5, 190, 8}, {0, 195, 9}, {600, 200, 11}}, -430);
  const std::string text = WriteRaw(shore);
  const Read again = ReadText(text);
  EXPECT_TRUE(again.Refused.empty());
  EXPECT_EQ(again.Record.WindHgt.Values(), (std::vector<double>{-430, -22.5, 0, 600}));
  EXPECT_EQ(again.Record.WindDir.Values(), (std::vector<double>{180, 190, 195, 200}));
  EXPECT_TRUE(again.Record.HasWorkWinds());

  const std::string mark = "\"WINDS BELOW SEA LEVEL\",2\r\n";
  ASSERT_TRUE(text.ends_with(mark));
  std::string changed = text;
  changed.replace(changed.find("600,200"), 3, "-60");
  for (const auto& [damaged, rows] :
       {std::pair(text.substr(0, text.size() - mark.size()), 2), std::pair(changed, 3)}) {
    const Read reading = ReadText(damaged);
    EXPECT_EQ(reading.Refused.size(), static_cast<std::size_t>(rows));
    EXPECT_EQ(reading.Record.NumWindLevels(), 4 - rows);
    EXPECT_EQ(reading.Record.WorkWindDir.Count(), 4 - rows);
  }
  // Cut behind the 48th wind, of which the first alone lies that low.
  SoundingRecord low = test::Profile({{1060, 30, 20}, {1000, 26, 18}});
  low.FileFlavour = "DOS";
  for (int i = 0; i < 60; ++i) low.AddWind(i == 0 || i > 50 ? -9 - i : i, 180, 5);
  EXPECT_TRUE(WriteRaw(low).ends_with("\"WINDS BELOW SEA LEVEL\",1\r\n"));
}

}  // namespace
}  // namespace vexa
