// For tests of the program: a sounding put in work without a file, and a program with its user.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <utility>

#include "program/program.h"
#include "support/soundings.h"

namespace vexa::test {

inline void Show(Program& program, SoundingRecord record, const std::filesystem::path& file = {}) {
  program.Doc.Take(Document::GiveUpEdits(), {.From = {.File = file}, .Record = std::move(record)});
}

/// A program at home in a folder of its own.
class ProgramAtHome : public testing::Test {
 protected:
  ProgramAtHome() {
    program.Doc.AskThrough(&user);
    program.Where = FoldersBelow(folder.Path());
    std::filesystem::create_directories(program.Where.Data);
  }
  /// Files of its folder: a sounding, or any bytes.
  template <class Bytes>
  std::filesystem::path Saved(std::string_view name, const Bytes& bytes) const {
    return folder.Write(std::string(name), bytes);
  }
  /// Refreshes after a command.
  void Do(Changes changes) { ASSERT_TRUE(Refresh(program, changes)); }
  void Do(std::string_view command) { Do(RunCommand(program, command)); }

  const TemporaryFolder folder{};
  ScriptedInteraction user{};
  Program program{};
};

}  // namespace vexa::test
