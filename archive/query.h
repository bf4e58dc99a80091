// Questions to a catalogue: 'station=72558 and month=6 and "CAPE total">3000'. The expression is
// read here, names of columns are looked up, and every value is handed to the database apart from
// the words of the statement, so nothing that a user types is run.
//
//   expression  = and-terms joined by "or"; terms joined by "and"; "not" before a term; ( )
//   comparison  = COLUMN = != < <= > >= VALUE, the other way round, or a < COLUMN < b
//               | COLUMN in (VALUE, ...) | COLUMN is missing | COLUMN is not missing
//               | COLUMN has 'part of a text', letter case apart
//   COLUMN      = a word, or between "" where it has other signs; letter case does not count
//   VALUE       = a number, or a text between '' (between "" too where no column has that name)
#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "archive/catalogue.h"

namespace vexa::archive {

/// What a condition becomes: words for the database, with a place for each of the values.
struct Condition {
  std::string Sql = "1";
  std::vector<Cell> Values{};
  std::vector<const Column*> Columns{};  // that it names, each once
};

/// Fault 380 says what is wrong and where: "character 12: there is no column \"CAPPE\"". An empty
/// text is met by every sounding.
Outcome<Condition> ParseCondition(std::string_view text);

/// What is told of each sounding unless more is asked for: what it is, what the condition is about,
/// and at the end its file and its place in it.
std::vector<const Column*> UsualColumns(const Condition& condition);

struct Question {
  Condition Where{};
  std::vector<const Column*> Columns{};  // to give
  const Column* SortBy = nullptr;        // null: station, time, file, place in the file
  bool IsDescending = false;             // what is missing comes last either way
  std::int64_t Most = 0;                 // soundings; 0: all
};

/// Gives one sounding after the other; false from `use` ends it. Fault: as the database's.
std::optional<Fault> Ask(Catalogue& catalogue, const Question& question,
                         const std::function<bool(std::span<const Cell>)>& use);

/// The words that name a column in a statement about soundings s of files f.
std::string SqlOf(const Catalogue& catalogue, const Column& column);
/// The same of a condition; columns that the catalogue lacks are missing in all its soundings.
std::string SqlOf(const Catalogue& catalogue, const Condition& condition);

}  // namespace vexa::archive
