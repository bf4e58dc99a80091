// The catalogue of options: a row for each, in the order of the settings report. Reading, writing,
// the report, the dialogs and the command line walk this table; none of them names an option.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

#include "config/options.h"
#include "core/fault.h"
#include "core/numbers.h"

namespace vexa {

enum class OptionKind { YesNo, TrueFalse, Choice, Whole, Number };

struct OptionRow {
  std::string_view Label{};  // as in the report: leading blanks and "= " are part of it
  std::string_view Key{};    // unique, without "=": what --set takes
  std::string_view Place{};  // form and tab
  OptionKind Kind = OptionKind::Choice;
  double Least = 0;  // range of Whole and Number
  double Most = 0;
  std::span<const std::string_view> Words{};  // of Choice
  bool SameRecord = false;                    // stands on the record of the row before it
  bool InReport = true;
  std::string (*Write)(const Options&) = nullptr;
  /// False when the text is not one of the words or lies outside the range; nothing changes then.
  bool (*Read)(Options&, std::string_view) = nullptr;
};

std::span<const OptionRow> Catalogue();

/// The row of a key, compared without regard to case; null when there is none.
const OptionRow* FindOption(std::string_view key);

/// Sets one option from "KEY=VALUE". Fault 380 names the key or the words and range it takes.
[[nodiscard]] std::optional<Fault> SetOption(Options& options, std::string_view assignment);

/// What a row takes: its words, or its range.
std::string Accepts(const OptionRow& row);

}  // namespace vexa
