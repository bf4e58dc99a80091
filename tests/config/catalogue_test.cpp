#include "config/catalogue.h"

#include <gtest/gtest.h>

#include <cctype>
#include <random>
#include <set>
#include <string>

#include "config/random_settings.h"
#include "core/numbers.h"

namespace vexa {
namespace {

using test::AnyValue;

std::vector<std::string> WriteAll(const Options& options) {
  std::vector<std::string> texts;
  for (const OptionRow& row : Catalogue()) texts.push_back(row.Write(options));
  return texts;
}

TEST(Catalogue, KeysAreUniqueAndNeedNoQuoting) {
  std::set<std::string> seen;
  for (const OptionRow& row : Catalogue()) {
    std::string lower(row.Key);
    for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    EXPECT_TRUE(seen.insert(lower).second) << row.Key;
    EXPECT_EQ(Trim(row.Key), row.Key);
    EXPECT_EQ(row.Key.find('='), std::string_view::npos);
    EXPECT_EQ(FindOption(lower), &row);
  }
}

TEST(Catalogue, ADialogFindsWhatItNeedsInEveryRow) {
  for (const OptionRow& row : Catalogue()) {
    SCOPED_TRACE(row.Key);
    EXPECT_FALSE(row.Caption.empty());
    EXPECT_FALSE(row.Place.empty());
    EXPECT_GT(row.Hint.size(), 12u) << row.Hint;
    EXPECT_TRUE(row.Choices.empty() || row.Choices.size() == row.Words.size());
    EXPECT_EQ(row.Words.empty(), row.Kind > OptionKind::Choice);
    const bool hasRange = row.Kind == OptionKind::Whole || row.Kind == OptionKind::Number ||
                          row.Kind == OptionKind::Color;
    EXPECT_EQ(row.Least < row.Most, hasRange);
    EXPECT_TRUE(row.Unit.empty() || hasRange);
    if (row.Key.ends_with("color") || row.Key.ends_with("Color")) {
      EXPECT_EQ(row.Kind, row.Key == "Screen color" ? OptionKind::Choice : OptionKind::Color);
    }
  }
}

TEST(Catalogue, ARowChangesItsOptionAndNoOther) {
  std::mt19937 random(11);
  for (const OptionRow& row : Catalogue()) {
    SCOPED_TRACE(row.Key);
    const auto index = static_cast<std::size_t>(&row - Catalogue().data());
    for (int i = 0; i < 8; ++i) {
      Options options;
      const std::string value = AnyValue(row, random);
      const std::string blanks = row.Kind == OptionKind::Text ? "" : "  ";
      ASSERT_TRUE(row.Read(options, blanks + value + blanks));
      EXPECT_EQ(row.Write(options), value);
      std::vector<std::string> expected = WriteAll(Options{});
      expected[index] = value;
      EXPECT_EQ(WriteAll(options), expected);
    }
  }
}

TEST(SetOption, RefusalsSayWhatItTakesAndChangeNothing) {
  struct Case {
    const char *Assignment, *Says;
  };
  const Case cases[] = {
      {"Temp MIN=-121", "-120 to 40"},
      {"Temp MIN=cold", "-120 to 40"},
      {"CAPE interval=2.5", "1 to 50, whole"},
      {"Y-Grid interval=20", "25, 50, 100, 1, 2, 5, 10"},
      {"MB limit=150", "700, 500, 400, 300, 200, 100, 50, 30, 10"},
      {"Temp grid interval=7", "5, 10, 20"},
      {"Td color=16", "0 to 15, whole"},
      {"LiftEq=3", "1, 2"},
      {"Diagram type=skew", "\"skewt\", \"emagram\", \"tephigram\""},
      {"Freeze line=yes", "\"false\", \"true\""},
      {"No such=1", "No such"},
      {"Temp MIN", "KEY=VALUE"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.Assignment);
    Options options;
    const std::optional<Fault> fault = SetOption(options, c.Assignment);
    ASSERT_TRUE(fault);
    EXPECT_EQ(fault->Number, kFaultInvalidValue);
    EXPECT_NE(fault->Detail.find(c.Says), std::string::npos) << fault->Detail;
    EXPECT_EQ(options, Options{});
  }
  Options options;
  EXPECT_FALSE(SetOption(options, " diagram TYPE = Tephigram"));
  EXPECT_EQ(options.Diagram, DiagramType::Tephigram);
  EXPECT_FALSE(SetOption(options, "Temp MIN=-62.5"));
  EXPECT_EQ(options.TempMin, -62.5);
  EXPECT_FALSE(SetOption(options, "PrintTitleMemory=a = b"));
  EXPECT_EQ(options.System.PrintTitleMemory, "a = b");
}

TEST(SetOption, OtherOptionsFollow) {
  struct Case {
    const char* About;
    std::vector<const char*> Assignments;
    double CapeKm, EhiKm, VgpKm;
  };
  const Case cases[] = {
      {"the index depths follow CAPE's", {"CAPE depth xKm depth=2"}, 2, 2, 2},
      {"as far as they reach", {"CAPE depth xKm depth=8"}, 8, 6, 6},
      {"and may be set apart", {"CAPE depth xKm depth=2", "EHI depth=1"}, 2, 1, 2},
      {"until CAPE's changes", {"EHI depth=1", "CAPE depth xKm depth=3"}, 3, 1, 3},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.About);
    Options options;
    for (const char* assignment : c.Assignments) ASSERT_FALSE(SetOption(options, assignment));
    EXPECT_EQ(options.CapeDepthKm, c.CapeKm);
    EXPECT_EQ(options.EhiDepthKm, c.EhiKm);
    EXPECT_EQ(options.VgpDepthKm, c.VgpKm);
  }
  // The grid's 50 hPa would be 50 km.
  Options options;
  ASSERT_FALSE(SetOption(options, "Y-Grid units=KM"));
  EXPECT_EQ(options.YGridInterval, 1);
  ASSERT_FALSE(SetOption(options, "Y-Grid units=MB"));
  EXPECT_EQ(options.YGridInterval, 50);
}

TEST(CheckOptions, WhatMustHoldBetweenOptions) {
  struct Case {
    double Bottom, Top, Min, Max;
    bool Holds;
  };
  const Case cases[] = {
      {0, 6, -40, 40, true},  {5.9, 6, 20, 60, true}, {6, 6, -40, 40, false},
      {7, 6, -40, 40, false}, {0, 6, -40, -1, false}, {0, 6, -40, 0, true},
      {0, 6, 21, 60, false},  {0, 6, -40, 61, false},
  };
  for (const Case& c : cases) {
    Options options;
    options.ShearLayerBottomKm = c.Bottom;
    options.ShearLayerTopKm = c.Top;
    options.TempMin = c.Min;
    options.TempMax = c.Max;
    EXPECT_EQ(CheckOptions(options) == std::nullopt, c.Holds)
        << c.Bottom << ' ' << c.Top << ' ' << c.Min << ' ' << c.Max;
    EXPECT_EQ(RepairOptions(options).empty(), c.Holds);
    EXPECT_EQ(CheckOptions(options), std::nullopt);
  }
}

}  // namespace
}  // namespace vexa
