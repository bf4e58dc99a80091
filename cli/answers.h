// How a command says what it found of one sounding after the other: as text for people, with a
// blank line between two; as JSON, several of them in an array; as rows of CSV under one header.
// One is written and forgotten before the next is read.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/console.h"
#include "program/command_line.h"

namespace vexa::cli {

inline constexpr std::string_view kAnswerFormats[] = {"text", "json", "csv"};
inline constexpr ArgumentRow kFormatOption = {
    "--format", "", "FORMAT", "form of the report, text without it", kAnswerFormats};

/// One sounding in each of the forms, of which only the one that was asked for is made: text and
/// rows with their line ends, JSON without one.
struct Answer {
  std::function<std::string()> Text, Json, Csv;
};

class Answers {
 public:
  /// csvHeader  the line of names, without its end
  Answers(const Arguments& arguments, std::string_view csvHeader, Console& console);
  void Add(const Answer& answer);
  void End();

 private:
  enum class Form { Text, Json, Csv };
  Form form_;
  bool several_;
  Console& console_;
  int count_ = 0;
};

/// Each with a line end.
std::string Lines(const std::vector<std::string>& lines);

/// In quotation marks where a comma, a quotation mark or a line end would tear it.
std::string CsvField(std::string_view text);

}  // namespace vexa::cli
