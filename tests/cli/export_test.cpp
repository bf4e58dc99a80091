#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "cli/run_words.h"
#include "core/files.h"
#include "core/raw_file.h"
#include "support/soundings.h"

namespace vexa::cli {
namespace {

class ExportCommand : public testing::Test {
 protected:
  std::string Write(const std::string& name, const std::string& text) {
    EXPECT_FALSE(SaveFile(folder_.Path() / name, text));
    return In(name);
  }
  std::string In(const std::string& name) const { return TextFromPath(folder_.Path() / name); }
  std::string Text(const std::string& name) {
    const auto text = ReadFile(folder_.Path() / name);
    return text ? text.Value() : "no file";
  }

  test::TemporaryFolder folder_{};
};

TEST_F(ExportCommand, WritesWhatTheOptionsAskFor) {
  const std::string a = Write("a.RAW", WriteRaw(test::ReferenceConvective()));
  const std::string b = Write("b.RAW", WriteRaw(test::ReferenceWinter()));
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
  const std::string a = Write("a.RAW", WriteRaw(test::ReferenceConvective()));
  const Ran one = RunWords({"list", a, "--listing", "cape"});
  EXPECT_EQ(one.Exit, kExitOk) << one.Err;
  EXPECT_TRUE(one.Out.starts_with("VEXA:  Reference A, convective  //  ")) << one.Out;
  EXPECT_NE(one.Out.find("Level   (mb)  (layer)"), std::string::npos);
  EXPECT_EQ(one.Out.find("NEWPAGE"), std::string::npos);
  const Ran all = RunWords({"list", a});
  EXPECT_NE(all.Out.find(" Pressure Levels"), std::string::npos);
  EXPECT_EQ(RunWords({"list", a, "-l", "all"}).Exit, kExitUsage);
}

TEST_F(ExportCommand, TheReportFolderRepeatsTheCase) {
  VEXA_NEEDS_TOOLKIT();
  const std::string a = Write("a.RAW", WriteRaw(test::ReferenceConvective()));
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
