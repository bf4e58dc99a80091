#include "diagram/title_text.h"

#include <gtest/gtest.h>

#include "config/options.h"

namespace vexa::diagram {
namespace {

// A date with an hour gives way to its month; the time of the sounding stands in for one.
TEST(SoundingTitle, ShowsMonthAndYearInsteadOfTheDate) {
  constexpr ObservationTime kNone{}, kMay{1999, 5, 4, 0, 0};
  const struct {
    const char* Title;
    ObservationTime Time;
    const char* Shown;
  } cases[] = {{"72357 - OUN - Norman  00Z 04 MAY 1999", kNone, "72357 - OUN - Norman  MAY 1999"},
               {"Norman  2330Z 3 May 1999", kNone, "Norman  May 1999"},
               {"12Z 05 MAR 2024", kNone, "MAR 2024"},
               {"Norman, mean", kMay, "Norman, mean  MAY 1999"},
               {"Flight 12 MAR 2024", kNone, "Flight 12 MAR 2024"},
               {"Oun 6Z 04 MAY 1999", kNone, "Oun 6Z 04 MAY 1999"},
               {"Oun 600Z 4 MAY 1999", kNone, "Oun MAY 1999"},
               {"Oun 06000Z 04 MAY 1999", kNone, "Oun 06000Z 04 MAY 1999"},
               {"Oun 06Z 104 MAY 1999", kNone, "Oun 06Z 104 MAY 1999"},
               {"Oun 06Z 04 MAY 999", kNone, "Oun 06Z 04 MAY 999"},
               {"Oun 06Z 04 MAY 19999", kNone, "Oun 06Z 04 MAY 19999"},
               {"Oun", {2021, 1, 4, 0, 0}, "Oun  JAN 2021"},
               {"Oun", {2021, 12, 4, 0, 0}, "Oun  DEC 2021"},
               {"Oun", {2021, 0, 4, 0, 0}, "Oun"},
               {"Oun", {2021, 13, 4, 0, 0}, "Oun"},
               {"", kNone, ""}};
  Options options;
  for (const auto& c : cases) {
    SoundingRecord record;
    record.StationTitle = c.Title;
    record.Time = c.Time;
    options.MonthYear = false;
    EXPECT_EQ(SoundingTitle(record, options), c.Title);
    options.MonthYear = true;
    EXPECT_EQ(SoundingTitle(record, options), c.Shown);
  }
}

}  // namespace
}  // namespace vexa::diagram
