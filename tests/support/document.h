// For tests of the program: a sounding put in work without a file.
#pragma once

#include <filesystem>
#include <utility>

#include "program/program.h"

namespace vexa::test {

inline void Show(Program& program, SoundingRecord record, const std::filesystem::path& file = {}) {
  program.Doc.Take(Document::GiveUpEdits(), {.From = {.File = file}, .Record = std::move(record)});
}

}  // namespace vexa::test
