// Runs command lines and keeps what a user would see.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "cli/commands.h"
#include "cli/toolkit.h"

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

// Skips a test, saying so, in a build without the toolkit.
#define VEXA_NEEDS_TOOLKIT() \
  if (!::vexa::cli::MakeToolkit()) GTEST_SKIP() << "this build has no toolkit"

}  // namespace vexa::cli
