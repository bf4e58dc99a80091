// The collection of real soundings. Counts and levels were taken from the files by eye and with a
// throw-away script that cuts columns and commas; of repeated pressures the first
// temperature counts, and every wind but one that repeats the height as well.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <string>

#include "core/data_checks.h"
#include "core/files.h"
#include "core/markers.h"
#include "ingest/decoded.h"
#include "ingest/decoder.h"
#include "sounding/analysed_sounding.h"
#include "support/soundings.h"

namespace vexa::ingest {
namespace {

using test::TempRow;
using test::WindRow;

struct Collected {
  const char* File;
  int Temps, Dewpts, Winds;
  TempRow First, Last;
  WindRow LowestWind, HighestWind;
  double Elevation;
  double LatSigned, LonSigned;
  const char* Title;
};

// clang-format off
const Collected kCollection[] = {
    {"wyoming/html_72357_OUN_1999050400.html", 31, 31, 30, {959, 22.2, 19}, {251, -52.5, -56.7},
     {345, 160, 18}, {10058, 250, 70}, 345, 35.18, -97.44,
     "72357 - OUN - Norman  00Z 04 May 1999"},
    {"wyoming/html_72681_BOI_2010120912.html", 130, 28, 131, {919, -0.1, -0.2},
     {7.5, -56.9, kMissing}, {874, 240, 3}, {32309, 310, 20}, 874, 43.56, -116.21,
     "72681 - BOI - Boise  12Z 09 Dec 2010"},
    {"wyoming/html_72349_1976030400_no_id.html", 54, 25, 52, {961, 5.6, 5.3},
     {23, -57.1, kMissing}, {438, 80, 15}, {23560, 325, 29}, 438, 36.88, -93.9,
     "72349  00Z 04 Mar 1976"},
    // The surface has no height: 74 m - 29.27 m/K * 305.6 K * ln(1002/1000).
    {"wyoming/html_82244_2012010100_no_position.html", 69, 69, 69, {1002, 29, 24.1},
     {50, -62.1, -83.1}, {56, 360, 4}, {20590, 340, 8}, 56, 0, 0,
     "82244 - Santarem  00Z 01 Jan 2012"},
    {"wyoming/text_83779_Marte_2023022312_ms.txt", 93, 93, 94, {938, 21.2, 18.8},
     {28.3, -57.7, -92.7}, {722, 10, FromMs(4.1)}, {24167, 88, FromMs(21.6)}, 722, -23.52, -46.63,
     "83779 - MARTE CIV/MIL, Brazil  12Z 23 Feb 2023"},
    {"wyoming/table_only_nov11.txt", 53, 53, 26, {978, 20.4, 16.5}, {23.5, -47.3, -60.3},
     {180, 180, 16}, {5791, 240, 81}, 180, 0, 0, "table_only_nov11.txt"},
    {"spc/14061619.OAX", 150, 150, 69, {965, 27.8, 23.8}, {7.8, -31.9, -71.9}, {350, 150, 23},
     {33223, 90, 39.01}, 350, 0, 0, "OAX  19Z 16 Jun 2014"},
    {"spc/hail_91051700.TBW", 98, 78, 100, {1014, 32.33, 21.35}, {100, -71.6, kMissing},
     {13, 150, 8}, {16539, 254, 10}, 13, 0, 0, "TBW  00Z 17 May 1991"},
};
// clang-format on

void ExpectDerivedWind(const SoundingRecord& record, int level, const WindRow& row) {
  // The profile's height of its pressure; a surface that was changed for a storm moves it.
  EXPECT_NEAR(record.WindHgt(level), row.Height, 0.05 + 0.004 * (row.Height - record.ElevM));
  EXPECT_EQ(record.WindDir(level), row.Dir);
  EXPECT_EQ(record.WindSpd(level), row.Spd);
}

TEST(RealFiles, CountsAndLevels) {
  for (const Collected& sample : kCollection) {
    SCOPED_TRACE(sample.File);
    VEXA_REAL_DATA(path, sample.File);
    const Loading loading = LoadSounding({.File = path}, {});
    ASSERT_FALSE(loading.Failed) << loading.Failed->Detail;
    const SoundingRecord& record = loading.Sounding->Record;
    EXPECT_EQ(record.NumTempLevels(), sample.Temps);
    EXPECT_EQ(record.NumWindLevels(), sample.Winds);
    int dewpts = 0;
    for (const double dewpt : record.Dewpt.Values()) dewpts += IsMissing(dewpt) ? 0 : 1;
    EXPECT_EQ(dewpts, sample.Dewpts);
    ExpectTemp(record, 1, sample.First);
    ExpectTemp(record, record.NumTempLevels(), sample.Last);
    ExpectDerivedWind(record, 1, sample.LowestWind);
    ExpectDerivedWind(record, record.NumWindLevels(), sample.HighestWind);
    EXPECT_FALSE(record.ElevUnknown);
    EXPECT_EQ(record.ElevM, sample.Elevation);
    EXPECT_NEAR(record.LatSigned, sample.LatSigned, 1e-9);
    EXPECT_NEAR(record.LonSigned, sample.LonSigned, 1e-9);
    EXPECT_EQ(record.StationTitle, sample.Title);
  }
}

TEST(RealFiles, EverySoundingOfTheseFormatsLoadsWhole) {
  VEXA_REAL_DATA(wyoming, "wyoming");
  VEXA_REAL_DATA(spc, "spc");
  int loaded = 0;
  for (const std::filesystem::path& folder : {wyoming, spc}) {
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
      const std::string name = entry.path().filename().string();
      if (name.starts_with("csv_") || name.find("no_data") != name.npos ||
          name.ends_with(".json")) {
        continue;
      }
      SCOPED_TRACE(name);
      const Loading loading = LoadSounding({.File = entry.path()}, {});
      ASSERT_FALSE(loading.Failed) << loading.Failed->Detail;
      EXPECT_EQ(loading.Sounding->Finding, QcFinding{});
      // Only the listing without a surface height had anything worked out, and only one repeats a
      // pressure with another temperature and another wind.
      const auto changes = name.find("no_position") != name.npos ? 1
                           : name == "hail_91051700.TBW"         ? 2
                                                                 : 0;
      EXPECT_EQ(std::ranges::count_if(loading.Sounding->Notes,
                                      [](const std::string& note) {
                                        return !note.starts_with("Heights that do not");
                                      }),
                changes);
      ++loaded;
    }
  }
  EXPECT_EQ(loaded, 26);
}

TEST(RealFiles, AServersRefusalKeepsItsWords) {
  VEXA_REAL_DATA(path, "wyoming/html_no_data_BOI_2010120901.html");
  const Loading loading = LoadSounding({.File = path}, {});
  ASSERT_TRUE(loading.Failed);
  EXPECT_NE(
      loading.Failed->Detail.find("Can't get 72681 BOI Boise Observations at 01Z 09 Dec 2010."),
      std::string::npos);
}

// Whatever stands in a file or is cut off it: an orderly sounding or a fault that says why.
void ExpectOrderly(const std::string& name, std::string text) {
  SCOPED_TRACE(name + " of " + std::to_string(text.size()) + " bytes");
  const auto& [record, fault, notes] = DecodeText(name, std::move(text));
  if (fault) {
    EXPECT_NE(fault->Detail.find(name), std::string::npos) << fault->Detail;
  } else {
    EXPECT_GE(record.NumTempLevels() > 0 ? record.NumTempLevels() : record.NumWindLevels(), 2);
  }
  for (int i = 2; i <= record.NumTempLevels(); ++i) EXPECT_LT(record.Press(i), record.Press(i - 1));
}

TEST(AnyFile, CutAnywhereNeverCrashes) {
  struct Folder {
    std::filesystem::path Path;
    std::size_t Cuts;  // of each file
  };
  std::vector<Folder> folders = {{test::TestData(""), 30}};
  if (const auto real = test::RealData("")) folders.push_back({*real, 7});
  int files = 0;
  for (const auto& [folder, cuts] : folders) {
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
      constexpr std::uintmax_t kLargest = 200000;
      if (!entry.is_regular_file() || entry.file_size() > kLargest) continue;
      const std::string text = ReadFile(entry.path()).Value();
      const std::string name = entry.path().filename().string();
      const std::size_t step = std::max<std::size_t>(1, text.size() / cuts);
      for (std::size_t size = 0; size < text.size(); size += step) {
        ExpectOrderly(name, text.substr(0, size));
      }
      ExpectOrderly(name, text);
      ++files;
    }
  }
  EXPECT_GE(files, 8);
}

// Everything that a file holds, in one text for each of its soundings.
std::vector<Decoded> AllOf(const std::string& name, const std::string& text) {
  const SourceText source(name, text);
  std::vector<Decoded> soundings;
  const std::size_t count = std::max<std::size_t>(1, ListSoundings(source).size());
  for (std::size_t i = 0; i < count; ++i) {
    soundings.push_back(DecodeSource(source, static_cast<int>(i)));
  }
  return soundings;
}

std::string WithLineEnds(const std::string& text, std::string_view ends) {
  std::string out;
  for (const char c : text) {
    if (c == '\n') {
      out += ends;
    } else if (c != '\r') {
      out += c;
    }
  }
  return out;
}

// Files go from one system to the other, and editors write the ends of their own.
TEST(AnyFile, IsReadAlikeWithEitherLineEnds) {
  std::set<std::string> formats;
  for (const auto& entry : std::filesystem::directory_iterator(test::TestData(""))) {
    if (!entry.is_regular_file()) continue;
    const std::string name = entry.path().filename().string();
    SCOPED_TRACE(name);
    const std::string text = ReadFile(entry.path()).Value();
    if (text.find('\0') != text.npos) continue;  // a message or an archive
    const std::vector<Decoded> plain = AllOf(name, WithLineEnds(text, "\n"));
    const std::vector<Decoded> other = AllOf(name, WithLineEnds(text, "\r\n"));
    ASSERT_EQ(plain.size(), other.size());
    for (std::size_t i = 0; i < plain.size(); ++i) {
      EXPECT_EQ(plain[i].Failed, other[i].Failed);
      EXPECT_EQ(plain[i].Notes, other[i].Notes);
      EXPECT_EQ(plain[i].Record, other[i].Record);
      formats.insert(plain[i].Record.DataFormat);
    }
  }
  EXPECT_GE(formats.size(), 12U);
}

}  // namespace
}  // namespace vexa::ingest
