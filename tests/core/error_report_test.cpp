#include "core/error_report.h"

#include <gtest/gtest.h>

#include "support/soundings.h"

namespace vexa {
namespace {

TEST(ErrorReport, MessagesByNumberAndCircumstance) {
  struct Case {
    int Number;
    const char* Begins;  // the message
    bool Auto = false, Dataset = false, Attended = true;
  };
  const Case cases[] = {
      {58, "a b.RAW already exists.\nReplace existing file?"},
      {62, "Data file is corrupt, incomplete, or has incorrect format."},
      {62, "Data for a b.RAW can not be found.", true},
      {2224, "VEXA encountered one of the following problems ...\n"},
      {2224, "This sounding has bad data or a non-standard format.\n", false, true},
      {2224, "Non-standard format and/or bad data.", false, true, false},
      {4711, "Unexpected error from LoadRAW error = 4711"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.Begins);
    test::ScriptedInteraction scripted;
    SilentInteraction quiet;
    CurrentSounding current{.FileName = "a b.RAW",
                            .Procedure = "LoadRAW",
                            .AutoLoading = c.Auto,
                            .DatasetMode = c.Dataset};
    current.Ask = &quiet;
    if (c.Attended) {
      current.Ask = &scripted;
      scripted.Expect("VEXA", Answer::Yes);
    }
    const Answer answer = ErrorReport(current, Fault{.Number = c.Number, .Detail = "line 7: why"});
    const Box& box = c.Attended ? scripted.Boxes[0] : quiet.Boxes[0];
    EXPECT_EQ(current.StatusText.find(c.Begins), 0u);
    EXPECT_EQ(box.Text, current.StatusText + "\nline 7: why");
    EXPECT_EQ(box.Icon, BoxIcon::Exclamation);
    EXPECT_EQ(current.LastFault->Number, c.Number);
    EXPECT_EQ(answer, c.Attended ? Answer::Yes : Answer::Ok);
  }
}

TEST(ErrorReport, NobodyThereNeverReplacesAFile) {
  SilentInteraction quiet;
  CurrentSounding current{.Ask = &quiet};
  EXPECT_EQ(ErrorReport(current, Fault{58, "SaveRAW", "", "other.RAW"}), Answer::No);
  EXPECT_EQ(quiet.Boxes[0].Text.substr(0, 25), "other.RAW already exists.");
}

}  // namespace
}  // namespace vexa
