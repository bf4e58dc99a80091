#include "core/sounding_record.h"

#include <gtest/gtest.h>

namespace vexa {
namespace {

TEST(ParseLatLon, ReadsDegreesMinutesSeconds) {
  struct Case {
    const char* about;
    double Value;
    AngleParts Parts;
    double Decimal;
  };
  const Case cases[] = {
      {"no decimal point", 35, {"35", "00", "00"}, 35},
      {"one digit of minutes is tens", 35.5, {"35", "50", "00"}, 35 + 50.0 / 60},
      {"minutes below ten", 35.05, {"35", "05", "00"}, 35 + 5.0 / 60},
      {"seconds", 51.5745, {"51", "57", "45"}, 51 + 57.0 / 60 + 45.0 / 3600},
      {"one digit of seconds is tens", 51.573, {"51", "57", "30"}, 51 + 57.5 / 60},
      {"below one degree", 0.3, {"0", "30", "00"}, 0.5},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.about);
    SoundingRecord record;
    record.LatValue = c.Value;
    record.LatHemi = "S";
    record.LonValue = static_cast<float>(c.Value + 100);
    record.LonHemi = "E";
    ParseLatLon(record);
    EXPECT_EQ(record.LatParts, c.Parts);
    EXPECT_DOUBLE_EQ(record.LatSigned, -c.Decimal);
    EXPECT_EQ(record.LonParts.Minutes, c.Parts.Minutes);
    EXPECT_EQ(record.LonParts.Seconds, c.Parts.Seconds);
    EXPECT_NEAR(record.LonSigned, c.Decimal + 100, 1e-9);
  }
}

TEST(SoundingRecord, AWindHasADirectionAndASpeedAndTheEquatorIsNorth) {
  SoundingRecord record;
  record.AddWind(10, 999.9, 5);
  record.AddWind(20, 90, 999.9);
  record.AddWind(30, 90, 5);
  EXPECT_FALSE(record.HasWind(1) || record.HasWind(2));
  EXPECT_TRUE(record.HasWind(3));
  SetDecimalPosition(record, 0, 0);
  EXPECT_EQ(record.LatHemi + record.LonHemi, "NE");
}

TEST(CutTitle, KeepsWholeCharacters) {
  EXPECT_EQ(CutTitle(std::string(60, 'x')), std::string(54, 'x'));
  std::string umlauts;
  for (int i = 0; i < 60; ++i) umlauts += "\u00FC";
  EXPECT_EQ(CutTitle(umlauts), umlauts.substr(0, 108));
  // Files from before UTF-8 hold single bytes.
  EXPECT_EQ(CutTitle("M\xFCnchen // 4 MAY"), "M\u00FCnchen // 4 MAY");
  EXPECT_EQ(CutTitle(std::string(60, '\xFC')), umlauts.substr(0, 108));
}

}  // namespace
}  // namespace vexa
