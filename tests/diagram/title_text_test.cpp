#include "diagram/title_text.h"

#include <gtest/gtest.h>

#include "config/options.h"

namespace vexa::diagram {
namespace {

TEST(SoundingTitle, ShowsMonthAndYearInsteadOfTheDate) {
  struct Case {
    const char* about;
    const char* title;
    ObservationTime time;
    const char* shown;
  };
  const Case cases[] = {
      {"a caption of ours",
       "72357 - OUN - Norman  00Z 04 MAY 1999",
       {},
       "72357 - OUN - Norman  MAY 1999"},
      {"with minutes", "Norman  2330Z 3 May 1999", {}, "Norman  May 1999"},
      {"the date alone", "12Z 05 MAR 2024", {}, "MAR 2024"},
      {"no date in the title", "Norman, mean", {1999, 5, 4, 0, 0}, "Norman, mean  MAY 1999"},
      {"no date at all", "Flight 12 MAR 2024", {}, "Flight 12 MAR 2024"},
      {"an hour of one figure", "Oun 6Z 04 MAY 1999", {}, "Oun 6Z 04 MAY 1999"},
      {"of three", "Oun 600Z 4 MAY 1999", {}, "Oun MAY 1999"},
      {"of five", "Oun 06000Z 04 MAY 1999", {}, "Oun 06000Z 04 MAY 1999"},
      {"a day of three figures", "Oun 06Z 104 MAY 1999", {}, "Oun 06Z 104 MAY 1999"},
      {"a year of three", "Oun 06Z 04 MAY 999", {}, "Oun 06Z 04 MAY 999"},
      {"of five", "Oun 06Z 04 MAY 19999", {}, "Oun 06Z 04 MAY 19999"},
      {"the first month", "Oun", {2021, 1, 4, 0, 0}, "Oun  JAN 2021"},
      {"the last month", "Oun", {2021, 12, 4, 0, 0}, "Oun  DEC 2021"},
      {"a month before the first", "Oun", {2021, 0, 4, 0, 0}, "Oun"},
      {"one behind the last", "Oun", {2021, 13, 4, 0, 0}, "Oun"},
      {"nothing", "", {}, ""},
  };
  Options options;
  for (const Case& c : cases) {
    SCOPED_TRACE(c.about);
    SoundingRecord record;
    record.StationTitle = c.title;
    record.Time = c.time;
    options.MonthYear = false;
    EXPECT_EQ(SoundingTitle(record, options), c.title);
    options.MonthYear = true;
    EXPECT_EQ(SoundingTitle(record, options), c.shown);
  }
}

}  // namespace
}  // namespace vexa::diagram
