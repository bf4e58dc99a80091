// The severe-weather table: which indices it offers, their thresholds in three steps, and the
// arrangement that a user keeps in a table file.
#pragma once

#include <array>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/analysis.h"
#include "core/fault.h"

namespace vexa::analysis {

inline constexpr std::string_view kSevereTableError = "Severe Weather Table index error.";

/// What makes a value severe.
enum class SevereWhen { Never, Above, Below, Within };

/// The three steps, from the first sign to the worst; a step Within a range has an upper end too.
struct SevereLimits {
  std::array<double, 3> From{};
  std::array<double, 3> To{};
  bool operator==(const SevereLimits&) const = default;
};

struct SevereEntry {
  std::string_view Text{};   // as the table writes it
  std::string_view Index{};  // trimmed panel label; empty for the first and last entry
  SevereWhen When = SevereWhen::Never;
  SevereLimits Limits{};  // in the unit that Text names
  LengthUnits Length = LengthUnits::Meter;
  double LeastCape = 0;  // J/kg without which a value says nothing: a quotient of CAPE is low then
};

/// All entries; entry number n stands at n - 1. The first is the kind of the table's file, the last
/// the message for a number that is none.
std::span<const SevereEntry> SevereEntries();

/// Entries 2 to 42 can stand in a table.
bool IsSevereEntry(int number);

struct SevereRow {
  int Entry = 2;
  SevereLimits Limits{};
  bool operator==(const SevereRow&) const = default;
};

struct SevereTable {
  std::string Title{};
  std::vector<SevereRow> Rows{};
  bool operator==(const SevereTable&) const = default;
};

/// Every entry in its order with the published thresholds.
SevereTable DefaultSevereTable();

/// A row of an entry with its published thresholds.
SevereRow DefaultSevereRow(int entry);

/// Steps that a value in the entry's unit reaches: 0 (none), 1 yellow, 2 orange, 3 red.
int SevereStep(const SevereRow& row, double value);

/// Why the limits of a row are none: steps must grow worse, ranges must hold something. Empty when
/// they are in order.
std::string CheckLimits(const SevereRow& row);

struct SevereValue {
  std::string_view Text{};
  std::string Shown{};   // in the unit that Text names; "--" without a value
  std::string Reason{};  // why there is none
  std::string Note{};    // what to know about the value
  int Step = 0;
  const IndexRow* Index = nullptr;
};

/// The rows of a table filled from the indices of a sounding.
std::vector<SevereValue> FillSevereTable(const SevereTable& table, const AnalysisResults& results);

/// A table file: its title and a record for each row, with entry number, three limits and three
/// upper ends.
std::string WriteSevereTable(const SevereTable& table);
/// Faults as of SaveUserFile.
[[nodiscard]] std::optional<Fault> SaveTable(const std::filesystem::path& path,
                                             const SevereTable& table);

/// Reads a table back. Faults: 53, 75 as any file; 62 with line and reason for a damaged one; 380
/// with kSevereTableError for an entry number that is none.
Outcome<SevereTable> RestoreTable(const std::filesystem::path& path);

}  // namespace vexa::analysis
