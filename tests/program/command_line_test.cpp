#include "program/command_line.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace vexa {
namespace {

constexpr std::string_view kKinds[] = {"text", "Json"};
constexpr ArgumentRow kReadOptions[] = {
    {"--output", "-o", "OUT", "where to"},      {"--kind", "", "KIND", "of what", kKinds},
    {"--jobs", "-j", "N", "threads", {}, 1, 8}, {"--quiet", "-q", "", "says less"},
    {"--notes", "-n", "", "says more"},         kSetOption};
constexpr CommandForm kRead = {"read", "FILE... [options]", "Reads files.", kReadOptions};
constexpr CommandForm kWait = {"wait", "", "Waits.", {}, 0, 0};
constexpr CommandForm kTool = {.Name = "tool", .Usage = "COMMAND", .Summary = "A tool."};
constexpr const CommandForm* kCommands[] = {&kRead, &kWait};

using Words = std::vector<std::string>;

CommandLine Read(const Words& words) {
  return ReadCommandLine(words, kTool, kCommands);
}

TEST(ReadCommandLine, SortsOptionsAndFiles) {
  struct Case {
    const char* about;
    Words given;
    Words files;
    Words outputs;
    bool quiet;
  };
  const Case cases[] = {
      {"files only", {"a.txt", "b c.txt"}, {"a.txt", "b c.txt"}, {}, false},
      {"value in a word of its own", {"-o", "x.png", "a"}, {"a"}, {"x.png"}, false},
      {"value behind an equals sign", {"--output=x=y.png", "a"}, {"a"}, {"x=y.png"}, false},
      {"value joined to its letter", {"-ox.png", "a"}, {"a"}, {"x.png"}, false},
      {"letters joined", {"-nqo", "x.png", "a"}, {"a"}, {"x.png"}, true},
      {"no value behind the sign", {"--output=", "a"}, {"a"}, {""}, false},
      {"an option's name behind the sign", {"--output=--set", "a"}, {"a"}, {"--set"}, false},
      {"a value that looks like an option", {"a", "--output", "-x"}, {"a"}, {"-x"}, false},
      {"options between files", {"a", "-q", "b"}, {"a", "b"}, {}, true},
      {"two dashes end the options", {"--", "-o", "--help"}, {"-o", "--help"}, {}, false},
      {"one dash is a file", {"-"}, {"-"}, {}, false},
      {"a file as a command is called", {"wait", "read"}, {"wait", "read"}, {}, false},
      {"brackets are no list", {"[a,b]", "-o", "[c,d]"}, {"[a,b]"}, {"[c,d]"}, false},
      {"the last of several stands", {"-o", "a", "-o", "b", "c"}, {"c"}, {"a", "b"}, false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.about);
    Words words = c.given;
    words.insert(words.begin(), "read");
    const CommandLine read = Read(words);
    ASSERT_FALSE(read.Wrong) << read.Wrong->Detail;
    EXPECT_EQ(read.Command, &kRead);
    EXPECT_EQ(read.Given.Files, c.files);
    EXPECT_EQ(read.Given.Values("--output"), c.outputs);
    EXPECT_EQ(read.Given.Value("--output").value_or(""), c.outputs.empty() ? "" : c.outputs.back());
    EXPECT_EQ(read.Given.Has("--quiet"), c.quiet);
  }
  const CommandLine read = Read({"read", "a", "-j8", "--kind", "JSON"});
  EXPECT_EQ(read.Given.Whole("--jobs"), 8);
  EXPECT_EQ(read.Given.Value("--kind"), "Json") << "as the table writes it";
}

TEST(ReadCommandLine, SaysWhatIsWrong) {
  const std::pair<Words, const char*> cases[] = {
      {{}, "no command"},
      {{"reed", "a"}, "no command \"reed\"; did you mean read?"},
      {{"wander", "a"}, "no command \"wander\""},
      {{"--quiet", "read", "a"}, "\"--quiet\""},
      {{"read"}, "no FILE"},
      {{"wait", "a"}, "no FILE"},
      {{"read", "a", "--otput", "b"}, "unknown option --otput; did you mean --output?"},
      {{"read", "a", "--fast=1"}, "unknown option --fast"},
      {{"read", "a", "-x"}, "unknown option -x"},
      {{"read", "a", "-o", "--set", "K=1"}, "-o wants OUT, and --set is an option"},
      {{"read", "a", "--output", "--set=K=1"}, "--output wants OUT"},
      {{"read", "a", "-o"}, "OUT"},
      {{"read", "a", "--quiet=1"}, "quiet"},
      {{"read", "a", "--kind", "xml"}, "{text,Json}"},
      {{"read", "a", "-j", "9"}, "1 to 8"},
      {{"read", "a", "-j", "1.5"}, "1 to 8"},
      {{"read", "a", "-j", "0"}, "1 to 8"},
  };
  for (const auto& [words, says] : cases) {
    SCOPED_TRACE(says);
    const CommandLine read = Read(words);
    ASSERT_TRUE(read.Wrong);
    EXPECT_EQ(read.Wrong->Number, kFaultInvalidValue);
    EXPECT_NE(read.Wrong->Detail.find(says), std::string::npos) << read.Wrong->Detail;
    EXPECT_TRUE(read.Answer.empty());
  }
}

TEST(ReadCommandLine, AnswersWithHelpAndVersion) {
  EXPECT_NE(Read({"--help"}).Answer.find("Reads files."), std::string::npos);
  // Asked for, help comes whatever else is wrong.
  const std::string help = Read({"read", "--kind", "xml", "--help"}).Answer;
  for (const char* part : {"Usage: tool read FILE... [options]", "-o,--output OUT", "{text,Json}",
                           "1 to 8", "KEY=VALUE"}) {
    EXPECT_NE(help.find(part), std::string::npos) << part << "\n" << help;
  }
  const std::string version = "tool " + std::string(ProgramVersion()) + "\n";
  EXPECT_EQ(Read({"--version"}).Answer, version);
  EXPECT_EQ(Read({"read", "--version"}).Answer, version);
}

TEST(ParseSize, TakesPixelsWithinReason) {
  const Outcome<PixelSize> size = ParseSize("1600x900");
  ASSERT_TRUE(size.Ok());
  EXPECT_EQ(size.Value().Width, 1600);
  EXPECT_EQ(size.Value().Height, 900);
  for (const char* wrong : {"", "1600", "x", "1600x", "0x100", "-5x100", "1e9x100", "15x100",
                            "1600x20001", "16.5x100", "100x100x100"}) {
    EXPECT_FALSE(ParseSize(wrong).Ok()) << wrong;
  }
}

}  // namespace
}  // namespace vexa
