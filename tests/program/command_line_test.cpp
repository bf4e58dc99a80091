#include "program/command_line.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace vexa {
namespace {

constexpr ArgumentRow kRows[] = {
    {"--output", "-o", "OUT", ""}, {"--set", "", "KEY=VALUE", ""}, {"--help", "-h", "", ""}};

using Words = std::vector<std::string>;

TEST(ParseArguments, ReadsOptionsAndFiles) {
  struct Case {
    const char* about;
    Words given;
    Words files;
    Words outputs;
    bool help;
  };
  const Case cases[] = {
      {"files only", {"a.txt", "b c.txt"}, {"a.txt", "b c.txt"}, {}, false},
      {"value in a word of its own", {"-o", "x.png", "a"}, {"a"}, {"x.png"}, false},
      {"value behind an equals sign", {"--output=x=y.png"}, {}, {"x=y.png"}, false},
      {"a value that looks like an option", {"--output", "-x"}, {}, {"-x"}, false},
      {"options between files", {"a", "-h", "b"}, {"a", "b"}, {}, true},
      {"two dashes end the options", {"--", "-o", "--help"}, {"-o", "--help"}, {}, false},
      {"one dash is a file", {"-"}, {"-"}, {}, false},
      {"the last of several stands", {"-o", "a", "-o", "b"}, {}, {"a", "b"}, false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.about);
    const Outcome<Arguments> parsed = ParseArguments(c.given, kRows);
    ASSERT_TRUE(parsed.Ok());
    EXPECT_EQ(parsed.Value().Files, c.files);
    EXPECT_EQ(parsed.Value().Values("--output"), c.outputs);
    EXPECT_EQ(parsed.Value().Value("--output").value_or(""),
              c.outputs.empty() ? "" : c.outputs.back());
    EXPECT_EQ(parsed.Value().Has("--help"), c.help);
  }
  for (const Words& wrong :
       {Words{"--wrong"}, Words{"-o"}, Words{"--help=yes"}, Words{"-x", "a"}}) {
    EXPECT_FALSE(ParseArguments(wrong, kRows).Ok()) << wrong.front();
  }
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

TEST(SetOptions, StopsAtTheFirstFault) {
  Options options;
  EXPECT_FALSE(SetOptions(options, {"Diagram type=tephigram", "Temp MIN=-50"}));
  EXPECT_EQ(options.Diagram, DiagramType::Tephigram);
  EXPECT_EQ(options.TempMin, -50);
  const auto fault = SetOptions(options, {"no such key=1"});
  ASSERT_TRUE(fault);
  EXPECT_EQ(fault->Number, kFaultInvalidValue);
}

}  // namespace
}  // namespace vexa
