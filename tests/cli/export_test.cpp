#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "cli/run_words.h"
#include "support/soundings.h"

namespace vexa::cli {
namespace {

class ExportCommand : public CommandTest {};

TEST_F(ExportCommand, WritesWhatTheOptionsAskFor) {
  const std::string a = Write("a.RAW", test::ReferenceConvective());
  const std::string b = Write("b.RAW", test::ReferenceWinter());
  const Ran text = RunWords({"export", a, b, "-o", In("all.txt"), "--jobs", "2", "--set",
                             "DumpData1=FT", "--set", "DumpData2=AGL", "--set", "DumpData4=F"});
  EXPECT_EQ(text.Exit, kExitOk) << text.Err;
  EXPECT_EQ(text.Out, "File all.txt has been created\nwith 2 soundings processed.\n");
  EXPECT_NE(Text("all.txt").find("HT(ft AGL), T(F)"), std::string::npos);
  const Ran one = RunWords({"export", a, b, "-o", In("one.csv"), "--range", "0002-0002"});
  EXPECT_EQ(one.Exit, kExitOk) << one.Err;
  EXPECT_TRUE(Text("one.csv").starts_with("Sounding Information,\"Reference B, winter\""));

  const Ran some = RunWords({"export", a, In("none.RAW"), "-o", In("some.txt")});
  EXPECT_EQ(some.Exit, kExitInputFailed);
  EXPECT_NE(some.Err.find("none.RAW does not exist"), std::string::npos) << some.Err;
  EXPECT_NE(Text("BAD_some.txt").find("does not exist"), std::string::npos);
  const Ran back = RunWords({"analyze", In("all.txt")});
  EXPECT_EQ(back.Exit, kExitOk) << back.Err;

  const std::vector<std::string> wrong[] = {{"export", a},
                                            {"export", a, "-o", "x.txt", "--jobs", "0"},
                                            {"export", a, "-o", "x.txt", "--range", "0001-0002"},
                                            {"export", a, "-o", "x.txt", "--range", "1"}};
  for (const auto& words : wrong) EXPECT_EQ(RunWords(words).Exit, kExitUsage);
}

TEST_F(ExportCommand, ListsWhatIsAskedFor) {
  const std::string a = Write("a.RAW", test::ReferenceConvective());
  const Ran one = RunWords({"list", a, "--listing", "cape"});
  EXPECT_EQ(one.Exit, kExitOk) << one.Err;
  EXPECT_TRUE(one.Out.starts_with("VEXA:  Reference A, convective  //  ")) << one.Out;
  EXPECT_NE(one.Out.find("Level   (mb)  (layer)"), std::string::npos);
  EXPECT_EQ(one.Out.find("NEWPAGE"), std::string::npos);
  const Ran all = RunWords({"list", a});
  EXPECT_NE(all.Out.find(" Pressure Levels"), std::string::npos);
  EXPECT_EQ(RunWords({"list", a, "-l", "all"}).Exit, kExitUsage);
}

// One and the same on every system: files for other programs with both characters, as the settings
// report that is made of them, answers and pictures with the line feed alone (docs/windows.md).
TEST_F(ExportCommand, LinesEndAlikeOnEverySystem) {
  const std::string a = Write("a.RAW", test::ReferenceConvective());
  struct Case {
    std::vector<std::string> Words;
    const char* File;  // null: what is printed
    bool WithReturns;
  };
  const Case cases[] = {
      {{"analyze", a}, nullptr, false},
      {{"analyze", a, "--format", "csv"}, nullptr, false},
      {{"analyze", a, "--format", "json"}, nullptr, false},
      {{"list", a}, nullptr, false},
      {{"settings"}, nullptr, true},
      {{"plot", a, "-o", In("a.svg")}, "a.svg", false},
      {{"export", a, "-o", In("a.txt")}, "a.txt", true},
      {{"export", a, "-o", In("a.csv")}, "a.csv", true},
      {{"convert", a, "-o", In("b.RAW")}, "b.RAW", true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.Words[0] + ' ' + c.Words.back());
    const Ran ran = RunWords(c.Words);
    ASSERT_EQ(ran.Exit, kExitOk) << ran.Err;
    const std::string text = c.File == nullptr ? ran.Out : Text(c.File);
    const auto feeds = std::ranges::count(text, '\n');
    EXPECT_GT(feeds, 1);
    EXPECT_EQ(std::ranges::count(text, '\r'), c.WithReturns ? feeds : 0);
    std::ptrdiff_t both = 0;
    for (std::size_t at = text.find("\r\n"); at != text.npos; at = text.find("\r\n", at + 2))
      ++both;
    EXPECT_EQ(both, c.WithReturns ? feeds : 0);
  }
}

TEST_F(ExportCommand, TheReportFolderRepeatsTheCase) {
  VEXA_NEEDS_TOOLKIT();
  const std::string a = Write("a.RAW", test::ReferenceConvective());
  const Ran ran = RunWords({"report", a, "-o", In("case"), "--set", "Diagram type=emagram"});
  ASSERT_EQ(ran.Exit, kExitOk) << ran.Err;
  EXPECT_EQ(Text("case/source/a.RAW"), Text("a.RAW"));
  EXPECT_NE(Text("case/VEXA.SET").find("emagram"), std::string::npos);
  EXPECT_TRUE(Text("case/diagram.png").starts_with("\x89PNG"));
  EXPECT_NE(Text("case/versions.json").find("CAPEInterval.Dat"), std::string::npos);
  // The native file in the folder gives the analysis in the folder.
  const Ran again = RunWords({"analyze", In("case/sounding.RAW"), "--format", "json"});
  const auto afterFile = [](const std::string& json) { return json.substr(json.find("format")); };
  EXPECT_EQ(afterFile(again.Out), afterFile(Text("case/analysis.json")));
  EXPECT_EQ(RunWords({"report", In("none.RAW"), "-o", In("other")}).Exit, kExitInputFailed);
  EXPECT_EQ(Text("other/versions.json"), "no file");
}

}  // namespace
}  // namespace vexa::cli
