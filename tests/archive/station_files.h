// Station files made for the tests, whose indices can be worked out by hand, and what a catalogue
// holds as one text.
#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

#include "archive/add.h"
#include "archive/catalogue.h"
#include "archive/query.h"
#include "core/files.h"
#include "support/igra_file.h"
#include "support/soundings.h"

namespace vexa::archive {

using test::IgraFile, test::IgraSounding;

inline void Write(const std::filesystem::path& path, const std::string& text) {
  std::filesystem::create_directories(path.parent_path());
  std::ofstream(path, std::ios::binary) << text;
}

inline Catalogue Opened(const std::filesystem::path& path, Opening opening = {.MayMake = true}) {
  Outcome<Catalogue> catalogue = Catalogue::Open(path, opening);
  if (!catalogue) throw std::runtime_error(catalogue.Error().Detail);
  return std::move(catalogue.Value());
}

inline AddReport Add(Catalogue& catalogue, const std::vector<std::string>& given,
                     AddRequest request = {}) {
  request.Given = given;
  const Outcome<AddReport> report = AddFiles(catalogue, request);
  EXPECT_TRUE(report) << (report ? "" : report.Error().Detail);
  return report ? report.Value() : AddReport{};
}

/// What the soundings that meet a condition have in some columns: a line each, between blanks.
inline std::string Told(Catalogue& catalogue, std::string_view where,
                        const std::vector<const char*>& names, Question question = {}) {
  const Outcome<Condition> condition = ParseCondition(where);
  if (!condition) return condition.Error().Detail;
  question.Where = condition.Value();
  for (const char* name : names) question.Columns.push_back(FindColumn(name));
  std::string text;
  const auto fault = Ask(catalogue, question, [&](std::span<const Cell> cells) {
    for (const Cell& cell : cells) text += CellText(cell) + " ";
    text += "\n";
    return true;
  });
  return fault ? fault->Detail : text;
}

/// Everything that a catalogue tells.
inline std::string Everything(Catalogue& catalogue) {
  std::vector<const char*> names;
  for (const Column& column : Columns()) names.push_back(column.Name.c_str());
  return Told(catalogue, "", names);
}

}  // namespace vexa::archive
