#include "archive/station_files.h"

namespace vexa::archive {
namespace {

TEST(Query, RefusalsSayWhatAndWhere) {
  const std::pair<const char*, const char*> cases[] = {
      {"CAPPE > 3", "character 1: there is no column \"CAPPE\""},
      {"\"CAPE totl\" > 3", "character 1: there is no column \"CAPE totl\""},
      {"KI >", "character 5: a column, a number or a text is expected"},
      {"KI 30",
       "character 4: a comparison (= != < <= > >=, in, is, has) is expected before \"30\""},
      {"KI > 30 TT > 50", "character 9: \"and\", \"or\" or the end is expected before \"TT\""},
      {"(KI > 30", "character 9: \")\" is expected"},
      {"KI > 3x", "character 6: \"3x\" is not a number"},
      {"name = 'Omaha", "character 8: the quotation mark ' has no second one"},
      {"name > 7",
       "character 8: \"name\" and \"7\" cannot be compared: one is a number, the other a "
       "text"},
      {"KI > 'x'",
       "character 6: \"KI\" and \"x\" cannot be compared: one is a number, the other a text"},
      {"KI = 1; DROP TABLE files", "character 7: \";\" has no meaning here"},
      {"KI is lost", "character 7: \"missing\" is expected before \"lost\""},
  };
  for (const auto& [text, reason] : cases) {
    const Outcome<Condition> condition = ParseCondition(text);
    ASSERT_FALSE(condition) << text;
    EXPECT_EQ(condition.Error().Detail, reason) << text;
  }
  EXPECT_FALSE(ParseCondition(std::string(5000, '(') + "KI>1"));
}

// K indices and totals by hand, see IgraSounding.
TEST(Query, GivesTheSoundingsThatMeetIt) {
  test::TemporaryFolder folder;
  Catalogue catalogue = Opened(folder.Path() / "c.vexa");
  Write(folder.Path() / "a.txt", IgraSounding(72558, 1999, 6, 3, 12) +
                                     IgraSounding(72558, 1999, 6, 4, 0, 2) +
                                     IgraSounding(72558, 2001, 7, 4, 0, -3));
  Write(folder.Path() / "b.txt", IgraSounding(72401, 1999, 6, 4, 0, 1));
  Add(catalogue, {TextFromPath(folder.Path() / "a.txt"), TextFromPath(folder.Path() / "b.txt")});
  const std::string a = "1999-06-03T12:00Z 40 55 \n", b = "1999-06-04T00:00Z 42 55 \n",
                    c = "2001-07-04T00:00Z 37 55 \n", d = "1999-06-04T00:00Z 41 55 \n";
  const std::pair<const char*, std::string> cases[] = {
      {"", d + a + b + c},
      {"station=72558 and month=6", a + b},
      {"STATION = 72558 AND NOT month = 6", c},
      {"ki > 40 or year = 2001", d + b + c},
      {"(KI > 40 or year = 2001) and station != 72401", b + c},
      {"KI > 41 or year = 2001 and month = 6", b},  // "and" binds closer
      {"40 < KI <= 42", d + b},
      {"month in (7, 8)", c},
      {"time >= '1999-06-04' and time < \"2000\"", d + b},
      {"name has 'GTS'", ""},
      {"verdict = \"OK\" and file has 'b.TXT'", d},
      {"\"CAPE total\" is not missing and TT = 55", d + a + b + c},
      {"KI = 4e1", a},
      {"name = ''' or 1=1'", ""},
  };
  for (const auto& [where, soundings] : cases) {
    EXPECT_EQ(Told(catalogue, where, {"time", "KI", "TT"}), soundings) << where;
  }
  EXPECT_EQ(
      Told(catalogue, "", {"KI"}, {.SortBy = FindColumn("KI"), .IsDescending = true, .Most = 2}),
      "42 \n41 \n");
}

TEST(ArchiveColumns, CountsAreGroupedByThousands) {
  EXPECT_EQ(GroupedCount(0) + " " + GroupedCount(999) + " " + GroupedCount(1000), "0 999 1,000");
  EXPECT_EQ(GroupedCount(1234567), "1,234,567");
}

}  // namespace
}  // namespace vexa::archive
