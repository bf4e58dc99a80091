#include "core/sounding_record.h"

#include <gtest/gtest.h>

namespace vexa {
namespace {

TEST(ParseLatLon, ReadsDegreesMinutesSeconds) {
  const struct {
    const char* About;
    double Value;
    AngleParts Parts;
    double Decimal;
  } cases[] = {
      {"no decimal point", 35, {"35", "00", "00"}, 35},
      {"one digit of minutes is tens", 35.5, {"35", "50", "00"}, 35 + 50.0 / 60},
      {"minutes below ten", 35.05, {"35", "05", "00"}, 35 + 5.0 / 60},
      {"one digit of seconds is tens", 51.573, {"51", "57", "30"}, 51 + 57.5 / 60},
      {"below one degree", 0.3, {"0", "30", "00"}, 0.5},
  };
  for (const auto& c : cases) {
    SoundingRecord record;
    record.LatValue = c.Value;
    record.LatHemi = "S";
    ParseLatLon(record);
    EXPECT_EQ(record.LatParts, c.Parts) << c.About;
    EXPECT_DOUBLE_EQ(record.LatSigned, -c.Decimal) << c.About;
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
