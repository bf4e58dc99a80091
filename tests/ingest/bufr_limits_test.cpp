// The octets that head a BUFR message and what its values say of station, time and levels, by the
// WMO's Manual on Codes (FM 94, tables A, B and the flags of 0 08 001 and 0 08 042).
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "bufr_message.h"
#include "core/units.h"
#include "ingest/bufr_messages.h"
#include "ingest/bufr_report.h"

namespace vexa::ingest {
namespace {

using test::Bits;
using test::BufrMessage;

std::string Plain() {
  return BufrMessage({12101}, Bits(29315, 16));
}

std::string With(std::size_t at, int octet) {
  std::string message = Plain();
  message[at] = static_cast<char>(octet);
  return message;
}

TEST(BufrLimits, HeadOfEdition3) {
  constexpr std::size_t kEdition = 7, kMaster = 11, kUpdate = 14, kFlags = 15, kCategory = 16,
                        kVersion = 18, kYear = 20, kHour = 23;
  const std::string message = Plain();  // the head looks into it
  const std::optional<BufrHead> plain = ReadHead(message);
  ASSERT_TRUE(plain);
  EXPECT_EQ(plain->Time, (ObservationTime{2024, 3, 5, 12, 0}));
  EXPECT_EQ(plain->Category, 2);
  EXPECT_EQ(plain->TableVersion, 13);
  EXPECT_EQ(plain->Subsets, 1U);
  EXPECT_FALSE(plain->IsCompressed);
  EXPECT_EQ(plain->DescriptorCount(), 1U);
  EXPECT_EQ(plain->DescriptorAt(0), 12101);
  EXPECT_EQ(plain->Data.size(), 2U);
  EXPECT_EQ(ReadHead(With(kMaster, 10))->MasterTable, 10);
  EXPECT_EQ(ReadHead(With(kUpdate, 3))->Update, 3);
  EXPECT_EQ(ReadHead(With(kCategory, 4))->Category, 4);
  EXPECT_EQ(ReadHead(With(kVersion, 39))->TableVersion, 39);
  // The year of the century; 100 is its last.
  for (const auto& [octet, year] :
       {std::pair{0, 2000}, {79, 2079}, {80, 1980}, {99, 1999}, {100, 2000}}) {
    EXPECT_EQ(ReadHead(With(kYear, octet))->Time.Year, year) << octet;
  }
  EXPECT_FALSE(ReadHead(With(kHour, 24))->Time.Known());
  EXPECT_TRUE(ReadHead(With(kEdition, 2)));
  EXPECT_FALSE(ReadHead(With(kEdition, 1)));
  EXPECT_FALSE(ReadHead(With(kEdition, 4)));  // of another length
  EXPECT_FALSE(ReadHead(With(kEdition, 5)));
  EXPECT_FALSE(ReadHead(With(kFlags, 0x80)));  // a section 2 that is not there
  EXPECT_TRUE(ReadHead(With(kFlags, 0x40)));
  EXPECT_TRUE(ReadHead(BufrMessage({12101}, "0", 2, true))->IsCompressed);
  EXPECT_TRUE(ReadHead(BufrMessage({12101}, "")));
  EXPECT_FALSE(ReadHead(BufrMessage({222000, 101001, 12101}, "0")));  // no bitmap
}

TEST(BufrLimits, HeadOfEdition4AndItsOptionalSection) {
  std::string message("BUFR\0\0\0\4", 8);
  message += std::string("\0\0\x16\0\0\x62\0\0\1\x80\2\0\0\x0d\0\x07\xE8\3\5\x0c\x1e\0", 22);
  message += std::string("\0\0\5\0x", 5);
  message += std::string("\0\0\x09\0\0\1\x80\x0c\x65", 9);
  message += std::string("\0\0\6\0\x72\x83", 6) + "7777";
  message[6] = static_cast<char>(message.size());
  const std::optional<BufrHead> head = ReadHead(message);
  ASSERT_TRUE(head);
  EXPECT_EQ(head->Time, (ObservationTime{2024, 3, 5, 12, 30}));
  EXPECT_EQ(head->Update, 1);
  EXPECT_EQ(head->Category, 2);
  EXPECT_EQ(head->TableVersion, 13);
  EXPECT_EQ(head->DescriptorAt(0), 12101);
  EXPECT_EQ(head->Data, "\x72\x83");
  std::vector<std::string> notes;
  EXPECT_EQ(SplitBufr("x" + message + "y" + message, notes).size(), 2U);
  EXPECT_TRUE(notes.empty());
  // Each section's length, a bit more and less.
  for (const std::size_t length : {10U, 32U, 37U, 46U}) {
    for (const int by : {-1, 1}) {
      std::string damaged = message;
      damaged[length] = static_cast<char>(damaged[length] + by);
      EXPECT_FALSE(ReadHead(damaged)) << length << ' ' << by;
    }
  }
  // A message that a file cuts off, and what only begins like one.
  for (const std::string& rest :
       {message.substr(0, message.size() - 1), std::string("BUFR"), std::string("BUFR\0\0\x08", 7),
        std::string("BUFR\0\0\x08\4", 8)}) {
    notes.clear();
    EXPECT_EQ(SplitBufr(message + rest, notes).size(), 1U);
    EXPECT_EQ(notes, std::vector<std::string>{"Messages that are damaged or cut off, left out: 1"});
  }
  for (const auto& [octets, text] : {std::pair{std::string(" AB "), "AB"},
                                     {std::string("A\0B", 3), "A"},
                                     {"\xFF\xFF", ""},
                                     {"A\x1F", ""},
                                     {"A~", "A~"},
                                     {"A\x7F", ""}}) {
    EXPECT_EQ(MessageText(octets), text);
  }
}

BufrReport ReportOf(const BufrSubset& values, const ObservationTime& nominal = {}) {
  ReportBuilder builder;
  for (const BufrValue& value : values) builder.Take(value);
  return std::move(builder).Finish(BufrHead{.Time = nominal});
}

TEST(BufrLimits, NamesOfStations) {
  const auto numbered = [](double block, double number) {
    return BufrSubset{{1001, block, ""}, {1002, number, ""}, {1011, {}, "SHIP"}};
  };
  const auto wigos = [](double series, double issuer, std::string local) {
    return BufrSubset{{1125, series, ""}, {1126, issuer, ""}, {1128, {}, std::move(local)}};
  };
  const struct {
    const char* About;
    BufrSubset Values;
    int Number;
    const char* Letters;
  } cases[] = {
      {"a number", numbered(60, 155), 60155, ""},
      {"the first", numbered(1, 1), 1001, ""},
      {"the last", numbered(99, 999), 99999, ""},
      {"no block", numbered(0, 155), 0, "SHIP"},
      {"block 100", numbered(100, 155), 0, "SHIP"},
      {"number 0", numbered(60, 0), 0, "SHIP"},
      {"number 1000", numbered(60, 1000), 0, "SHIP"},
      {"a number among identifiers", wigos(0, 20000, "06610"), 6610, ""},
      {"of another series", wigos(1, 20000, "06610"), 0, "06610"},
      {"of another issuer", wigos(0, 20001, "06610"), 0, "06610"},
      {"of six figures", wigos(0, 20000, "066100"), 0, "066100"},
      {"letters", wigos(0, 20000, "ABCDE"), 0, "ABCDE"},
      {"nothing", {}, 0, ""},
  };
  for (const auto& c : cases) {
    const BufrReport report = ReportOf(c.Values);
    EXPECT_EQ(report.Heading.Station.Number, c.Number) << c.About;
    EXPECT_EQ(report.Heading.Station.Letters, c.Letters) << c.About;
  }
}

TEST(BufrLimits, TheNominalHourIsThatOfItsRelease) {
  const ObservationTime noon{2024, 3, 5, 12, 0};
  const struct {
    ObservationTime Nominal;
    double Hour, Minute;
    ObservationTime Time;
  } cases[] = {{noon, 11, 5, noon},
               {noon, 9, 0, noon},
               {noon, 8, 59, {2024, 3, 5, 8, 59}},
               {noon, 15, 0, noon},
               {noon, 15, 1, {2024, 3, 5, 15, 1}},
               {noon, 25, 0, noon},
               {{}, 11, 5, {2024, 3, 5, 11, 5}},
               {{}, 25, 0, {}}};
  for (const auto& c : cases) {
    const BufrSubset values = {{4001, 2024, ""},   {4002, 3, ""},        {4003, 5, ""},
                               {4004, c.Hour, ""}, {4005, c.Minute, ""}, {5001, 10, ""},
                               {6002, -20, ""},    {7001, 30, ""},       {7031, 40, ""}};
    const BufrReport report = ReportOf(values, c.Nominal);
    EXPECT_EQ(report.Heading.Time, c.Time) << c.Hour << ' ' << c.Minute;
    EXPECT_EQ(report.Heading.Lat, 10);
    EXPECT_EQ(report.Heading.Lon, -20);
    EXPECT_EQ(report.Heading.Elevation, 30);
  }
  EXPECT_TRUE(AreWithin(noon, {2024, 3, 5, 12, 30}, 30));
  EXPECT_FALSE(AreWithin(noon, {2024, 3, 5, 12, 31}, 30));
  EXPECT_FALSE(AreWithin(noon, {}, 30));
}

TEST(BufrLimits, ElementsOfLevels) {
  const struct {
    const char* About;
    BufrValue Value;
    std::optional<double> SourceLevel::*Into;
    double Is;
  } cases[] = {
      {"pascals", {7004, 85000.0, ""}, &SourceLevel::Press, 850},
      {"a geopotential height", {7009, 1500.0, ""}, &SourceLevel::Height, 1500},
      {"another", {10009, 1500.0, ""}, &SourceLevel::Height, 1500},
      {"a height", {10007, 1500.0, ""}, &SourceLevel::Height, 1500},
      {"one of the release", {7007, 1500.0, ""}, &SourceLevel::Height, 1500},
      {"a geopotential", {10003, 9806.65, ""}, &SourceLevel::Height, 1000},
      {"another", {10008, 9806.65, ""}, &SourceLevel::Height, 1000},
      {"kelvins", {12101, 273.15, ""}, &SourceLevel::Temp, 0},
      {"tenths of them", {12001, 293.1, ""}, &SourceLevel::Temp, 19.95},
      {"a dew point", {12103, 263.15, ""}, &SourceLevel::Dewpt, -10},
      {"another", {12003, 263.1, ""}, &SourceLevel::Dewpt, -10.05},
      {"a direction", {11001, 225.0, ""}, &SourceLevel::Dir, 225},
      {"metres per second", {11002, 10.0, ""}, &SourceLevel::Spd, 10 * kMsToKnot},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.About);
    const BufrReport report = ReportOf({{8042, 0.0, ""}, c.Value});
    ASSERT_EQ(report.Levels.size(), 1U);
    const std::optional<double> is = report.Levels[0].Values.*c.Into;
    ASSERT_TRUE(is);
    EXPECT_NEAR(*is, c.Is, 1e-9);
  }
}

TEST(BufrLimits, WhereLevelsBegin) {
  const BufrValue mark{8042, 0.0, ""}, oldMark{8001, 0.0, ""}, second{4086, 1.0, ""};
  const BufrValue press{7004, 85000.0, ""}, higher{7004, 70000.0, ""}, temp{12101, 280.0, ""};
  const struct {
    const char* About;
    BufrSubset Values;
    std::size_t Levels;
  } cases[] = {
      {"marks", {mark, press, temp, mark, higher, temp}, 2},
      {"seconds ahead of marks", {second, mark, press, temp, second, mark, higher, temp}, 2},
      {"marks behind the pressure", {press, oldMark, temp, higher, oldMark, temp}, 2},
      {"a pressure alone", {press, temp, higher, temp}, 2},
      {"an element that comes again", {mark, press, temp, temp}, 1},
      {"what stands ahead of levels", {temp, {7030, 5.0, ""}}, 0},
  };
  for (const auto& c : cases) {
    const BufrReport report = ReportOf(c.Values);
    EXPECT_EQ(report.Levels.size(), c.Levels) << c.About;
    if (c.Levels > 0) {
      EXPECT_EQ(report.Levels[0].Values.Press, 850) << c.About;
      EXPECT_NEAR(report.Levels.back().Values.Temp.value_or(0), 6.85, 1e-9) << c.About;
    }
  }
  // Bit 1 is the surface, of 18 bits as of 7, counted from the left.
  const struct {
    int Descriptor;
    double Flags;
    bool IsGround;
  } marks[] = {{8042, 131072, true}, {8042, 65536, false},  {8042, 196608, true},
               {8042, 262143, true}, {8042, 131071, false}, {8001, 63, false},
               {8001, 64, true},     {8001, 32, false},     {8001, 96, true}};
  for (const auto& [descriptor, flags, isGround] : marks) {
    const BufrReport report = ReportOf({press, {descriptor, flags, ""}, temp});
    EXPECT_EQ(report.Levels.back().IsGround, isGround) << descriptor << ' ' << flags;
  }
  // A level without a wind's direction counts where the wind is calm.
  for (const auto& [speed, isUseful] : {std::pair{0.0, true}, {1.0, false}}) {
    EXPECT_EQ(ReportOf({press, {11002, speed, ""}}).IsUseful(), isUseful);
  }
  EXPECT_TRUE(ReportOf({press, temp}).IsUseful());
  EXPECT_FALSE(ReportOf({press, {11001, 90.0, ""}}).IsUseful());
}

// 0 07 030 is the height of the station's ground, 0 07 007 that of the release, which is where the
// level marked as surface was measured: where the two agree the ascent starts there.
TEST(BufrLimits, AnAscentStartsWhereTheSondeWasReleased) {
  using Height = std::optional<double>;
  const struct {
    Height Station, Release, Surface;
    double Elevation;
  } cases[] = {{{}, 22, 21, 21},   {{}, 22, 23, 23}, {{}, 22, 20.9, 22},
               {{}, 22, 23.1, 22}, {4, 22, 22, 22},  {4, 22, 23, 23},
               {4, 22, 4, 4},      {4, {}, 22, 4},   {{}, 22, {}, 22}};
  for (const auto& c : cases) {
    BufrSubset values;
    if (c.Station) values.push_back({7030, *c.Station, ""});
    if (c.Release) values.push_back({7007, *c.Release, ""});
    values.insert(values.end(), {{8042, 131072.0, ""}, {7004, 100000.0, ""}});
    if (c.Surface) values.push_back({10009, *c.Surface, ""});
    values.push_back({12101, 280.0, ""});
    EXPECT_EQ(ReportOf(values).Heading.Elevation, c.Elevation)
        << c.Station.value_or(-1) << ' ' << c.Surface.value_or(-1);
  }
}

}  // namespace
}  // namespace vexa::ingest
