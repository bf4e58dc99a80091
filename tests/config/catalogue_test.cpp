#include "config/catalogue.h"

#include <gtest/gtest.h>

#include <cctype>
#include <random>
#include <set>
#include <string>

#include "core/numbers.h"

namespace vexa {
namespace {

std::string AnyValue(const OptionRow& row, std::mt19937& random) {
  if (!row.Words.empty()) {
    std::uniform_int_distribution<std::size_t> pick(0, row.Words.size() - 1);
    return std::string(row.Words[pick(random)]);
  }
  const double value = std::uniform_real_distribution<double>(row.Least, row.Most)(random);
  return row.Kind == OptionKind::Whole ? Shortest(ToWhole(value)) : Shortest(value);
}

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

TEST(Catalogue, ARowChangesItsOptionAndNoOther) {
  std::mt19937 random(11);
  for (const OptionRow& row : Catalogue()) {
    SCOPED_TRACE(row.Key);
    const auto index = static_cast<std::size_t>(&row - Catalogue().data());
    for (int i = 0; i < 8; ++i) {
      Options options;
      const std::string value = AnyValue(row, random);
      ASSERT_TRUE(row.Read(options, "  " + value + " "));
      EXPECT_EQ(row.Write(options), value);
      std::vector<std::string> expected = WriteAll(Options{});
      expected[index] = value;
      EXPECT_EQ(WriteAll(options), expected);
    }
  }
}

TEST(Catalogue, ThroughTheTableEveryOptionComesBack) {
  std::mt19937 random(12);
  for (int i = 0; i < 50; ++i) {
    Options options;
    for (const OptionRow& row : Catalogue()) ASSERT_TRUE(row.Read(options, AnyValue(row, random)));
    Options back;
    for (const OptionRow& row : Catalogue()) ASSERT_TRUE(row.Read(back, row.Write(options)));
    EXPECT_EQ(back, options);
  }
  // The defaults are values that the rows themselves would take.
  Options back;
  for (const OptionRow& row : Catalogue()) EXPECT_TRUE(row.Read(back, row.Write({}))) << row.Key;
  EXPECT_EQ(back, Options{});
}

TEST(SetOption, RefusalsSayWhatItTakesAndChangeNothing) {
  struct Case {
    const char *Assignment, *Says;
  };
  const Case cases[] = {
      {"Temp MIN=-121", "-120 to 40"},
      {"Temp MIN=cold", "-120 to 40"},
      {"Y-Grid interval=2.5", "1 to 100, whole"},
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
}

}  // namespace
}  // namespace vexa
