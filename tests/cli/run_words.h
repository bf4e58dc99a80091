// Runs command lines and keeps what a user would see.
#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include "cli/commands.h"
#include "cli/toolkit.h"
#include "core/files.h"
#include "support/soundings.h"

namespace vexa::cli {

struct Ran {
  int Exit = 0;
  std::string Out{};
  std::string Err{};
};

inline Ran RunWith(Toolkit* toolkit, const std::vector<std::string>& words) {
  Ran ran;
  Console console{[&](std::string_view text) { ran.Out += text; },
                  [&](std::string_view text) { ran.Err += text; }, toolkit};
  ran.Exit = RunCommandLine(words, console);
  return ran;
}

inline Ran RunWords(const std::vector<std::string>& words) {
  return RunWith(MakeToolkit().get(), words);
}

// What a command is given behind its first words, how it ends, and a part of what it says then.
struct Refused {
  std::vector<std::string> Words;
  int Exit;
  const char* Says;
};

inline void ExpectRefused(const std::vector<std::string>& first,
                          std::initializer_list<Refused> cases) {
  for (const Refused& one : cases) {
    SCOPED_TRACE(one.Says);
    std::vector<std::string> words = first;
    words.insert(words.end(), one.Words.begin(), one.Words.end());
    const Ran ran = RunWords(words);
    EXPECT_EQ(ran.Exit, one.Exit);
    EXPECT_NE(ran.Err.find(one.Says), std::string::npos) << ran.Err;
    EXPECT_TRUE(one.Exit != kExitUsage || ran.Out.empty());
  }
}

// A folder for what commands read and write.
class CommandTest : public testing::Test {
 protected:
  std::string In(const std::string& name) const {
    return TextFromPath(folder_.Path() / PathFromText(name));
  }
  template <class Bytes>
  std::string Write(const std::string& name, const Bytes& bytes) const {
    return TextFromPath(folder_.Write(name, bytes));
  }
  std::string Text(const std::string& name) const {
    const auto text = ReadFile(PathFromText(In(name)));
    return text ? text.Value() : "no file";
  }

  test::TemporaryFolder folder_{};
};

// Skips a test, saying so, in a build without the toolkit.
#define VEXA_NEEDS_TOOLKIT() \
  if (!::vexa::cli::MakeToolkit()) GTEST_SKIP() << "this build has no toolkit"

}  // namespace vexa::cli
