#include "core/error_report.h"

#include <gtest/gtest.h>

#include "support/soundings.h"

namespace vexa {
namespace {

TEST(ErrorReport, MessagesByNumberAndCircumstance) {
  struct Case {
    int Number;
    const char* Message;
    bool Auto = false, Dataset = false, Attended = true;
  };
  const Case cases[] = {
      {48, "A library that this needs is not there."},
      {53, "a b.RAW does not exist."},
      {58, "a b.RAW already exists.\nReplace existing file?"},
      {62, "Data file is corrupt, incomplete, or has incorrect format."},
      {62, "Data for a b.RAW can not be found.", true},
      {1209, "Warning ...  a b.RAW\nhas a format problem, or this is a new/different data type."},
      {2224,
       "VEXA encountered one of the following problems ...\n"
       "   - Datafile contains data in a non-standard format.\n"
       "   - One or more data items are way out of normal limits.\n"
       "   - Data is in a format not recognized by VEXA.\n"
       "Resulting data calculations are not reliable."},
      {2224,
       "This sounding has bad data or a non-standard format.\n"
       "This sounding will not be used for this dataset.",
       false, true},
      {2224, "Non-standard format and/or bad data.", false, true, false},
      {4711, "Unexpected error from LoadRAW error = 4711"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.Message);
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
    EXPECT_EQ(box.Text, std::string(c.Message) + "\nline 7: why");
    EXPECT_EQ(box.Icon, BoxIcon::Exclamation);
    EXPECT_EQ(current.StatusText, c.Message);
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
