// The collection of real soundings in the formats of several soundings a file and in coded form.
// Counts and levels were taken from the files by eye and with throw-away decoders of their own; for
// 83779 they are the publisher's, for the interpreted surface heights those of the station lists.
#include <gtest/gtest.h>

#include <string>

#include "analysis/analysis_settings.h"
#include "analysis/interpolate.h"
#include "core/data_checks.h"
#include "core/files.h"
#include "core/units.h"
#include "ingest/decoded.h"
#include "ingest/decoder.h"
#include "support/soundings.h"

namespace vexa::ingest {
namespace {

using test::TempRow;

SoundingRecord DecodeFile(const std::filesystem::path& path, int index) {
  const Decoded decoded =
      DecodeSource(SourceText(path.filename().string(), ReadFile(path).Value()), index);
  EXPECT_FALSE(decoded.Failed) << decoded.Failed->Detail;
  return decoded.Record;
}

struct Counted {
  const char* File;
  int Index, Soundings, Temps, Winds;
  TempRow First;
  double Elevation, Dir, Spd;  // of the lowest wind
};

// clang-format off
const Counted kCounted[] = {
    {"fsl/87576_Ezeiza_DEC2021_ms.fsl", 0, 30, 14, 52, {1014, 18.4, 14.9}, 20, 120, FromMs(2.1)},
    {"fsl/gsl_op40_DEN_20210903_01z.txt", 2, 3, 59, 59, {827.9, 23.3, 7.8}, 1724, 219, 3},
    {"fsl/gsl_gfs_-24.776_134.755_20220801_12z.txt", 0, 8, 31, 31, {1000, 18.6, 0.7}, 150, 92, 9},
    {"igra/AUM00011035-data_20150601-10.txt", 0, 20, 46, 102, {993, 16.2, 12.3}, 197, 290,
     FromMs(1)},
    {"igra/USM00070026-data_3soundings.txt", 0, 3, 58, 154, {1009.8, 0, 0}, 12, 20, FromMs(5.1)},
    {"bufkit/rap_oun_2018121904.buf", 0, 22, 50, 50, {971.6, 7.14, 4.78}, 358, 147.26, 6.47},
    {"class/KABQ_202305222306_1s_first1200.cls", 0, 1, 1200, 1200, {837.5, 24.1, 2.9}, 1619, 275,
     FromMs(3.6)},
    {"class/KABQ_202305221104_every60s.cls", 0, 1, 102, 102, {840, 11.9, 9.1}, 1619, 298,
     FromMs(1.5)},
    {"wyoming/csv_OUN_1999050400.csv", 0, 1, 31, 30, {959, 22.2, 19}, 345, 160, FromMs(9.3)},
    {"wyoming/csv_82244_2012010100_no_position.csv", 0, 1, 62, 62, {1002, 29, 24.1}, 56, 360,
     FromMs(2.1)},
    {"iem/OUN_1999050400.json", 0, 1, 27, 58, {959, 22.3, 19.1}, 362, 160, 18},
};
// clang-format on

TEST(RealFormats, CountsAndFirstLevels) {
  for (const Counted& c : kCounted) {
    SCOPED_TRACE(std::string(c.File) + ' ' + std::to_string(c.Index));
    VEXA_REAL_DATA(path, c.File);
    const SourceText source(path.filename().string(), ReadFile(path).Value());
    EXPECT_EQ(ListSoundings(source).size(), static_cast<std::size_t>(c.Soundings));
    const SoundingRecord record = DecodeFile(path, c.Index);
    EXPECT_EQ(CheckRecord(record), QcFinding{});
    EXPECT_EQ(record.NumTempLevels(), c.Temps);
    EXPECT_EQ(record.NumWindLevels(), c.Winds);
    EXPECT_FALSE(record.ElevUnknown);
    EXPECT_EQ(record.ElevM, c.Elevation);
    if (c.First.Press == 0) continue;
    EXPECT_EQ(record.Press(1), c.First.Press);
    EXPECT_EQ(record.Temp(1), c.First.Temp);
    EXPECT_EQ(record.Dewpt(1), c.First.Dewpt);
    EXPECT_EQ(record.WindDir(1), c.Dir);
    EXPECT_DOUBLE_EQ(record.WindSpd(1), c.Spd);
  }
}

struct Mandatory {
  double Press, Height, Temp, Dewpt, Dir, Spd;
};
struct CodedFile {
  const char* File;
  bool InMs;
  Mandatory
      Surface;  // its height is that of the station list, met within 25 m; at sea that of a deck
  std::vector<Mandatory> Levels;
};

// clang-format off
const CodedFile kCoded[] = {
    {"temp/03808_Camborne_20260206_00z.txt", false, {967, 87, 9.4, 8.8, 140, 10},
     {{850, 1144, 2.6, 1.8, 170, 13}, {500, 5240, -23.9, -26.7, 200, 13},
      {10, 31400, -45.5, -84.5, 130, 28}}},
    {"temp/04360_Tasiilaq_20260206_00z.txt", true, {1007, 54, -4.3, -9, 80, 3},
     {{850, 1383, -8.5, -16.5, 300, 5}, {300, 8700, -55.3, -66.3, 305, 18},
      {10, 30270, -42.3, -77.3, 225, 80}}},
    {"temp/42182_New_Delhi_20260206_00z.txt", false, {986, 211, 9.6, 8.3, 360, 0},
     {{850, 1523, 13, -8, 315, 26}, {700, 3129, 5.2, -21.8, 275, 16},
      {259, 10348, -49.1, -66.1, 260, 62}, {78, 17800, -76.3, -92.3, 290, 36}}},  // tropopauses
    {"temp/83779_Marte_20230223_12z.txt", false, {938, 722, 21.2, 18.8, 10, 8},
     {{925, 843, 20, 18.1, 75, 6}, {700, 3207, 8, 5, 340, 4}, {400, 7610, -18.3, -32.3, 300, 17},
      {70, 18650, -71.5, -89.5, 150, 20}, {30, 23800, -58.3, -91.3, 85, 35}}},
    {"temp/89009_South_Pole_20220713_00z.txt", false, {668, 2835, -64.5, -70.5, 95, 12},
     {{500, 4810, -43.1, -45.8, 95, 24}, {300, 8130, -61.7, -68.7, 150, 6}}},
    {"temp/ship_9ZT9MRK_20260206_00z.txt", true, {997, 10, 4, -6, 70, 10},
     {{850, 1311, -4.1, -15.1, 80, 5}, {100, 15550, -61.3, -90.3, 200, 20},
      {20, 25700, -51.3, -83.3, 220, 62}}},
    {"temp/dropsonde_Maria_20170920_0231z.txt", false, {1007, 5, 29.4, 23.4, 285, 21},
     {{925, 755, 22.2, 20.5, 300, 27}, {500, 5870, -4.7, -13.7, 295, 22}}},
};
// clang-format on

// The wind of a level is found at its pressure, whatever height the message says.
void ExpectMandatory(const SoundingRecord& record, const Mandatory& level, double factor) {
  SCOPED_TRACE(level.Press);
  bool hasTemp = false;
  for (int i = 1; i <= record.NumTempLevels(); ++i) {
    hasTemp = hasTemp || (record.Press(i) == level.Press && record.Temp(i) == level.Temp &&
                          record.Dewpt(i) == level.Dewpt);
  }
  EXPECT_TRUE(hasTemp);
  const analysis::LevelProfile profile = analysis::DeriveLevels(record, AnalysisSettings{});
  const analysis::Wind wind = analysis::GetWIND(record, profile, level.Press);
  EXPECT_EQ(wind.Dir, level.Dir);
  EXPECT_NEAR(wind.Spd, level.Spd * factor, 0.11);
}

TEST(RealFormats, CodedLevels) {
  for (const CodedFile& c : kCoded) {
    SCOPED_TRACE(c.File);
    VEXA_REAL_DATA(path, c.File);
    const SoundingRecord record = DecodeFile(path, 0);
    const double factor = c.InMs ? kMsToKnot : 1;
    ExpectMandatory(record, c.Surface, factor);
    for (const Mandatory& level : c.Levels) ExpectMandatory(record, level, factor);
  }
}

}  // namespace
}  // namespace vexa::ingest
