// The program's own reader of BUFR messages. bufr_subsets.bufr was written for these tests by a
// program of its own from the values below and the WMO's tables; what the library makes of it, and
// of every real message, must be the same.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <iterator>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "bufr_message.h"
#include "core/files.h"
#include "core/markers.h"
#include "core/numbers.h"
#include "core/units.h"
#include "ingest/bufr_reader.h"
#include "ingest/decoder.h"
#include "support/soundings.h"

namespace vexa::ingest {
namespace {

using test::BitsOf;
using test::BufrMessage;

std::string FileBytes(const std::filesystem::path& path) {
  return ReadFile(path).Value();
}

struct Unpacked {
  bool IsKnown = false;
  std::vector<BufrSubset> Subsets{};
  std::string Reason{};
};

Unpacked ByReader(std::string_view message) {
  Unpacked unpacked;
  const std::optional<BufrHead> head = ReadHead(message);
  std::optional<BufrReader> reader = head ? BufrReader::For(*head) : std::nullopt;
  unpacked.IsKnown = reader.has_value();
  if (!reader) return unpacked;
  for (BufrPlace place; place.Subset < head->Subsets;) {
    BufrSubset& subset = unpacked.Subsets.emplace_back();
    const auto fault =
        reader->Read(place, [&subset](const BufrValue& value) { subset.push_back(value); });
    if (!fault) continue;
    unpacked.Reason = fault->Detail;
    break;
  }
  return unpacked;
}

TEST(BufrReader, SubsetsCompressedAndOneAfterAnother) {
  struct Case {
    const char* Title;
    double Lat, Elevation;
    std::vector<double> Press, Temp, Dewpt, SpdMs;
  };
  // clang-format off
  const Case cases[] = {
      {"99201  12Z 01 Mar 2024", 51.5, 20,
       {1000, 850, 500}, {20, 10, -15}, {15, 5, kMissing}, {5, 10, 20}},
      {"99202  12Z 01 Mar 2024", -33.25, 60,
       {990, 850, 500}, {18.5, 9, -16.5}, {17, 8, -30.5}, {4, 12}},
      {"99301  00Z 01 Mar 2024", 10.5, 100,
       {1000.12, 850}, {11.125, 2.5}, {9, -3}, {3, 8}},
      {"99302  00Z 01 Mar 2024", 10.5, 100,
       {999.99, 700, 500}, {12, -4.375, -20}, {8, -9, -31}, {2, 9.5, 14}},
  };
  // clang-format on
  const SourceText source("bufr_subsets.bufr", FileBytes(test::TestData("bufr_subsets.bufr")));
  ASSERT_EQ(ListSoundings(source).size(), std::size(cases));
  LoadContext context;
  for (const Case& c : cases) {
    SCOPED_TRACE(c.Title);
    SoundingRecord record;
    const auto fault = DecodeSounding(source, context, record);
    ASSERT_FALSE(fault) << fault->Detail;
    EXPECT_EQ(record.StationTitle, c.Title);
    EXPECT_EQ(record.LatSigned, c.Lat);
    EXPECT_EQ(record.ElevM, c.Elevation);
    EXPECT_EQ(record.Press.Values(), c.Press);
    EXPECT_EQ(record.Temp.Values(), c.Temp);
    EXPECT_EQ(record.Dewpt.Values(), c.Dewpt);
    std::vector<double> knots = c.SpdMs;
    for (double& speed : knots) speed *= kMsToKnot;
    EXPECT_EQ(record.WindSpd.Values(), knots);
    ++context.Index;
  }
  // A text that differs between compressed subsets; the same names are in no sounding.
  std::vector<std::string> notes;
  const Unpacked first = ByReader(SplitBufr(source.Bytes(), notes).front());
  EXPECT_EQ(first.Subsets[0][2].Text, "Alpha");
  EXPECT_EQ(first.Subsets[1][2].Text, "Beta Two");
}

std::string MessageOf(const std::string& descriptors, const std::string& bits, unsigned subsets = 1,
                      bool isCompressed = false) {
  std::istringstream words(descriptors);
  return BufrMessage({std::istream_iterator<int>(words), {}}, BitsOf(bits), subsets, isCompressed);
}

// Values and bits by hand: 0 10 009 is a height of 17 bits from -1000 m, 0 12 001 a temperature of
// 12 bits in tenths of K, 0 07 004 a pressure of 14 bits in tens of Pa, 0 31 021 a mark of 6 bits.
TEST(BufrReader, OperatorsChangeHowValuesLie) {
  const struct {
    const char *About, *Descriptors, *Bits, *Values;  // "-" where there is none
  } cases[] = {
      {"a figure more, of the reference too", "207001 10009 207000 10009", "12516:21 1251:17",
       "251.6 251 "},
      {"a width and a scale of its own", "201130 202129 12001 202000 12001 201000 12001",
       "12345:14 2931:14 2931:12", "123.45 293.1 293.1 "},
      {"missing has all bits set, of the width that holds", "201130 12001 12001 201000 12001",
       "4095:14 16383:14 4095:12", "409.5 - - "},
      {"qualities of qualities", "204002 31021 204003 31021 12001 204000 12001 204000 12001",
       "1:6 1:6 31:5 2931:12 3:2 2931:12 2931:12", "1 1 293.1 293.1 293.1 "},
      {"a local element with its quality", "204002 31021 206005 63001 12001 204000",
       "1:6 3:2 9:5 3:2 2931:12", "1 293.1 "},
      {"three times one that is there once", "101000 31011 12001 10009", "3:8 2931:12 1251:17",
       "3 293.1 293.1 293.1 251 "},
      {"a reference of its own, the sign first: -500 m",
       "203012 10009 203255 10009 12001 203000 10009", "1:1 500:11 1251:17 2931:12 1251:17",
       "751 293.1 251 "},
      {"a positive one", "203012 10009 203255 10009", "0:1 500:11 1251:17", "1751 "},
      {"62 bits of a value", "201178 12001", "0*50 2931:12", "293.1 "},
      {"62 bits of a reference", "203062 10009 203255 10009", "1:1 0*50 500:11 1251:17", "751 "},
      {"of three elements only the place has data", "221003 12001 7004 12001 12001",
       "8500:14 2931:12", "- 85000 - 293.1 "},
      {"repeated as told, twice two", "103000 31001 101002 12001 10009",
       "2:8 2931:12 2931:12 1000:17 2931:12 2931:12 1001:17", "2 293.1 293.1 0 293.1 293.1 1 "},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.About);
    const Unpacked unpacked = ByReader(MessageOf(c.Descriptors, c.Bits));
    ASSERT_EQ(unpacked.Reason, "");
    ASSERT_EQ(unpacked.Subsets.size(), 1U);
    std::string values;
    for (const BufrValue& value : unpacked.Subsets[0]) {
      values += (value.Number ? Shortest(*value.Number) : "-") + ' ';
    }
    EXPECT_EQ(values, c.Values);
  }
}

// What speaks of the quality of a subset's values stands between it and the next one.
TEST(BufrReader, QualityBetweenSubsetsIsPassedOver) {
  const Unpacked unpacked =
      ByReader(MessageOf("12001 222000 236000 101001 31031 1031 1032 101001 33007",
                         "2931:12 1:1 98:16 1:8 70:7 2842:12 1:1 98:16 1:8 70:7", 2));
  ASSERT_EQ(unpacked.Reason, "");
  ASSERT_EQ(unpacked.Subsets.size(), 2U);
  for (std::size_t i = 0; i < 2; ++i) {
    ASSERT_EQ(unpacked.Subsets[i].size(), 1U);
    EXPECT_EQ(unpacked.Subsets[i][0].Number, i == 0 ? 293.1 : 284.2);
  }
}

// 0 12 101 is a temperature of 16 bits in hundredths of K, 0 31 002 a count of 16 bits.
TEST(BufrReader, ADamagedMessageEndsInAFault) {
  std::string nested, untold;
  for (int depth = 30; depth > 0; --depth) {
    nested += Shortest(100255 + 1000 * depth) + ' ';
    untold += Shortest(100000 + 2000 * depth) + " 31000 ";
  }
  const std::string early = "its data end too early";
  const std::string width = "an element has no bits or too many";
  const struct {
    const char* About;
    std::string Reason, Descriptors, Bits;
    unsigned Subsets = 1;
    bool IsCompressed = false;
  } cases[] = {
      {"the data end within a value", early, "7004 12101", "1:1"},
      {"a count leads beyond the data", early, "101000 31002 12101", "60000:16"},
      {"255 to the power of 30 operators", "it repeats without an end", nested + "201130", "0:1"},
      {"an operator leaves no bits", width, "201100 12101", "7:30"},
      {"an operator makes too many", width, "201255 12101", "1*200"},
      {"one too many", width, "201191 12001", "0*200"},
      {"too long a reference", "a reference has too many bits", "203063 10009 203255", "0*200"},
      {"a quality that is", "a quality has too many bits", "204063 12101", "0*200"},
      {"a precision that is", "a precision is too high", "207063 12101", "0*200"},
      {"the subsets are of different length", "its compressed subsets differ in length",
       "101000 31002 12101", "1:16 2:6 1:4 0*50", 2, true},
      {"the second subset is cut off", early, "7004 12101", "0*32", 2},
      {"one value of many compressed subsets", early, "12101", "1:16 63:6 0*70", 9000, true},
      {"nothing, 65535 times", "", "100000 31002 31000", "65535:16 1:1"},
      {"depths that the data tell", "", untold + "201130 201000", "1*40"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.About);
    const Unpacked unpacked = ByReader(MessageOf(c.Descriptors, c.Bits, c.Subsets, c.IsCompressed));
    ASSERT_TRUE(unpacked.IsKnown);
    EXPECT_EQ(unpacked.Reason, c.Reason.empty() ? "" : "a message cannot be unpacked: " + c.Reason);
  }
}

TEST(BufrReader, WhatTheTablesLackIsLeftToTheLibrary) {
  const std::string missing = std::string(64, '1');
  struct Case {
    const char* About;
    bool IsKnown;
    std::vector<int> Descriptors;
    unsigned Subsets = 1;
  };
  const Case cases[] = {
      {"an element of a centre", false, {12101, 12250}},
      {"a sequence of a centre", false, {309196}},
      {"an element of a centre with its width told", true, {206012, 12250, 12101}},
      {"new reference values", true, {203010, 12101, 203255}},
      {"quality, and then of a centre", true, {12101, 222000, 101001, 31031, 1201}},
      {"quality between two subsets", true, {12101, 222000, 101001, 31031, 33007}, 2},
      {"substitutes between two subsets", false, {12101, 223000, 101001, 31031, 223255}, 2},
      {"a layout that came with version 14", false, {14002, 12101}},
      {"a sequence that changed with version 18", false, {309070}},
      {"a replication of what does not follow", false, {103000, 31001, 12101}},
      {"a replication without its count", false, {101000, 12101, 12101}},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(ByReader(BufrMessage(c.Descriptors, missing, c.Subsets)).IsKnown, c.IsKnown)
        << c.About;
  }
}

// Whatever a damage does, reading ends: in the sanitized build nothing is read outside.
TEST(BufrReader, AnyDamageIsSurvived) {
  std::mt19937 random(20240301);
  std::vector<std::string> notes;
  int read = 0, refused = 0;
  for (const char* name : {"bufr_subsets.bufr", "bufr_five.bufr"}) {
    const std::string bytes = FileBytes(test::TestData(name));
    for (const std::string_view message : SplitBufr(bytes, notes)) {
      for (int round = 0; round < 500; ++round) {
        std::string damaged(message);
        constexpr std::size_t kDescriptorsAt = 34;
        for (unsigned flips = 1 + random() % 4; flips > 0; --flips) {
          const std::size_t at = kDescriptorsAt + random() % (message.size() - kDescriptorsAt - 4);
          damaged[at] = static_cast<char>(damaged[at] ^ 1 << random() % 8);
        }
        const Unpacked unpacked = ByReader(damaged);
        (unpacked.Reason.empty() ? read : refused) += unpacked.IsKnown ? 1 : 0;
      }
    }
  }
  EXPECT_GT(read, 1000);
  EXPECT_GT(refused, 100);
}

#ifdef VEXA_HAS_BUFR_LIBRARY

// Without counts and marks, of which the library makes attributes of the values that they speak of.
BufrSubset WithoutMarks(BufrSubset subset) {
  constexpr int kClass = 1000, kMarks = 31;
  std::erase_if(subset, [](const BufrValue& value) { return value.Descriptor / kClass == kMarks; });
  return subset;
}

// Compares all values before those that speak of quality, which the reader passes over.
int CompareWithLibrary(std::string_view message) {
  const Unpacked ours = ByReader(message);
  if (!ours.IsKnown) return 0;
  EXPECT_EQ(ours.Reason, "");
  const Outcome<std::vector<BufrSubset>> theirs = UnpackByLibrary(message);
  if (!theirs || theirs.Value().size() != ours.Subsets.size()) {
    ADD_FAILURE() << (theirs ? "another number of subsets" : theirs.Error().Detail);
    return 0;
  }
  int compared = 0;
  for (std::size_t s = 0; s < ours.Subsets.size(); ++s) {
    const BufrSubset one = WithoutMarks(ours.Subsets[s]), other = WithoutMarks(theirs.Value()[s]);
    for (std::size_t i = 0; i < one.size(); ++i, ++compared) {
      // Of compressed texts the library says nothing where they differ.
      const bool isSame = i < other.size() && one[i].Descriptor == other[i].Descriptor &&
                          one[i].Number.has_value() == other[i].Number.has_value() &&
                          (one[i].Text == other[i].Text || other[i].Text.empty());
      // The library's noise in the last figure is rounded away, except for large numbers.
      const double number = one[i].Number.value_or(0);
      const double most = std::fabs(number) < 1e6 ? 0 : 1e-15 * std::fabs(number);
      if (isSame && std::fabs(number - other[i].Number.value_or(0)) <= most) continue;
      ADD_FAILURE() << "subset " << s << ", value " << i << ", descriptor " << one[i].Descriptor;
      return compared;
    }
  }
  return compared;
}

int CompareFile(const std::filesystem::path& path) {
  SCOPED_TRACE(path.filename().string());
  const std::string bytes = FileBytes(path);
  std::vector<std::string> notes;
  int compared = 0;
  for (const std::string_view message : SplitBufr(bytes, notes)) {
    compared += CompareWithLibrary(message);
  }
  return compared;
}

TEST(BufrReader, AgreesWithTheLibrary) {
  EXPECT_GT(CompareFile(test::TestData("bufr_five.bufr")), 100);
  EXPECT_GT(CompareFile(test::TestData("bufr_subsets.bufr")), 140);
  VEXA_REAL_DATA(folder, "bufr");
  int compared = 0;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    compared += CompareFile(entry.path());
  }
  EXPECT_GT(compared, 90000);
}

#endif

}  // namespace
}  // namespace vexa::ingest
