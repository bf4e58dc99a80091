#include <gtest/gtest.h>

#include <algorithm>

#include "cli/run_words.h"
#include "core/files.h"
#include "support/soundings.h"

namespace vexa::cli {
namespace {

std::size_t LinesIn(const std::string& text) {
  return static_cast<std::size_t>(std::ranges::count(text, '\n'));
}

class ArchiveCommand : public CommandTest {
 protected:
  static std::string Data(const std::string& name) { return TextFromPath(test::TestData(name)); }
};

// What is kept is what `analyze` tells of the same sounding.
TEST_F(ArchiveCommand, AnswersAsAnalyzeDoes) {
  const std::string igra = Data("igra_station.txt"), fsl = Data("fsl_two.fsl");
  const Ran added = RunWords({"archive", "add", In("c"), igra, fsl});
  EXPECT_EQ(added.Exit, kExitOk) << added.Err;
  EXPECT_EQ(
      added.Out,
      "4 soundings entered from 2 files, 0 files unchanged, 0 refused, 0 doubtful, 0 files with "
      "a fault\n");
  const Ran list = RunWords(
      {"archive", "query", In("c"), "format = 'FSL'", "--format", "list", "--sort", "time"});
  EXPECT_EQ(list.Out, fsl + "#1\n" + fsl + "#2\n");
  Write("list", list.Out);

  const Ran all = RunWords({"analyze", "@" + In("list"), "--format", "csv"});
  EXPECT_EQ(all.Exit, kExitOk) << all.Err;
  const std::string second = RunWords({"analyze", fsl, "-n", "2", "--format", "csv"}).Out;
  const auto rowOf = [](const std::string& csv) {
    const std::string row = csv.substr(0, csv.size() - 1);
    return row.substr(row.find(',', row.rfind('\n')));  // without the file's name
  };
  EXPECT_EQ(rowOf(all.Out), rowOf(second));
  EXPECT_EQ(LinesIn(all.Out), 3U);

  const Ran asked = RunWords({"archive", "query", In("c"), "time > '1998-02-04'", "--columns",
                              "sounding,KI,TT", "--format", "csv", "--most", "1"});
  EXPECT_EQ(asked.Exit, kExitOk) << asked.Err;
  EXPECT_EQ(asked.Out.substr(0, asked.Out.find('\n')), "sounding,KI (C),TT (C)");
  const Ran json = RunWords({"archive", "query", In("c"), "month=2", "--format", "json"});
  EXPECT_TRUE(json.Out.starts_with("[\n") && json.Out.ends_with("\n]\n")) << json.Out;
  EXPECT_EQ(RunWords({"archive", "check", In("c"), "--files"}).Out,
            "4 soundings of 2 files, 0 refused, 0 files with a fault; the catalogue is sound\n");
}

TEST_F(ArchiveCommand, OneSoundingOfAFileIsNamed) {
  const std::string fsl = Data("fsl_two.fsl");
  const Ran third = RunWords({"analyze", fsl + "#3"});
  EXPECT_EQ(third.Exit, kExitInputFailed);
  EXPECT_NE(third.Err.find("#3"), std::string::npos);
  EXPECT_EQ(RunWords({"analyze", fsl + "#0"}).Exit, kExitInputFailed);
  EXPECT_EQ(RunWords({"list", fsl + "#2"}).Out, RunWords({"list", fsl, "-n", "2"}).Out);
  EXPECT_EQ(RunWords({"analyze", "@" + In("none")}).Exit, kExitInputFailed);
}

TEST_F(ArchiveCommand, SharesAreAllOfIt) {
  const std::string folder = TextFromPath(test::SourceFolder() / "examples");
  const std::string whole = RunWords({"analyze", folder, "--format", "csv"}).Out;
  const std::string head = whole.substr(0, whole.find('\n') + 1);
  std::vector<std::string> rows;
  for (const char* share : {"1/3", "2/3", "3/3"}) {
    const Ran part = RunWords({"analyze", folder, "--format", "csv", "--shard", share});
    EXPECT_EQ(part.Out.substr(0, head.size()), head);
    std::string rest = part.Out.substr(head.size());
    for (std::size_t end; (end = rest.find('\n')) != std::string::npos; rest.erase(0, end + 1)) {
      rows.push_back(rest.substr(0, end + 1));
    }
  }
  std::ranges::sort(rows);
  std::string all = head;
  for (const std::string& row : rows) all += row;
  EXPECT_EQ(all, whole);
  EXPECT_EQ(RunWords({"analyze", folder, "--shard", "4/3"}).Exit, kExitUsage);
}

TEST_F(ArchiveCommand, WrongWordsAreRefused) {
  ExpectRefused(
      {"archive"},
      {{{"ad", "c"}, 2, "did you mean add?"},
       {{"add"}, 2, "archive add wants a catalogue"},
       {{"add", "c"}, 2, "wants a file behind the catalogue"},
       {{"check", "c", "x"}, 2, "takes nothing behind the catalogue"},
       {{"check", "c", "--sort", "KI"}, 2, "archive check takes no --sort"},
       {{"query", "c", "--columns", "KJ"}, 2, "there is no column \"KJ\"; did you mean KI?"},
       {{"query", In("none")}, 3, "there is no such catalogue\n"}});
}

}  // namespace
}  // namespace vexa::cli
