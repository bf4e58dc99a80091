#include "archive/columns.h"

#include <algorithm>
#include <charconv>

#include "analysis/index_table.h"
#include "archive/stable_hash.h"
#include "config/catalogue.h"
#include "core/letter_case.h"
#include "core/numbers.h"
#include "core/shown_values.h"
#include "core/station.h"

namespace vexa::archive {
namespace {

constexpr int kDecimals = 3;  // of indices, as in the reports

const SoundingRecord& RecordOf(const Entered& entered) {
  return entered.Sounding.Record();
}

Cell TextOrNone(std::string_view text) {
  const std::string_view trimmed = Trim(text);
  return trimmed.empty() ? Cell() : Cell(std::string(trimmed));
}

template <int ObservationTime::*kPart>
Cell PartOfTime(const Entered& entered) {
  const ObservationTime& time = RecordOf(entered).Time;
  return time.Known() ? Cell(std::int64_t{time.*kPart}) : Cell();
}

template <double SoundingRecord::*kAngle>
Cell Angle(const Entered& entered) {
  const SoundingRecord& record = RecordOf(entered);
  const bool isPlaced = !record.LatHemi.empty() && !record.LonHemi.empty();
  return isPlaced ? Cell(record.*kAngle) : Cell();
}

// The indices whose value is only a bound because the sounding ends too early.
Cell Bounds(const Entered& entered) {
  std::string names;
  for (const analysis::IndexValue& index : entered.Results.Indices) {
    if (!index.IsBound || !index.Exists()) continue;
    names += (names.empty() ? "" : ", ") + std::string(Trim(index.Row->Label));
  }
  return TextOrNone(names);
}

std::vector<Column> FixedColumns() {
  return {
      {.Name = "file",
       .Kind = ColumnKind::Text,
       .LongName = "file of the sounding",
       .IsOfFile = true},
      {"sounding", ColumnKind::Whole, "", "which sounding of its file, from 1", nullptr,
       [](const Entered& e) { return Cell(std::int64_t{e.Sounding.From().Index + 1}); }},
      {"member", ColumnKind::Text, "", "file inside an archive", nullptr,
       [](const Entered& e) { return TextOrNone(e.Member); }},
      {"station", ColumnKind::Whole, "", "WMO number of the station", nullptr,
       [](const Entered& e) {
         const int number = StationNumber(RecordOf(e));
         return number == 0 ? Cell() : Cell(std::int64_t{number});
       }},
      {"name", ColumnKind::Text, "", "title of the sounding", nullptr,
       [](const Entered& e) { return TextOrNone(RecordOf(e).StationTitle); }},
      {"time", ColumnKind::Text, "", "time of the observation, UTC", nullptr,
       [](const Entered& e) { return TextOrNone(IsoTimeText(RecordOf(e).Time)); }},
      {"year", ColumnKind::Whole, "", "", nullptr, PartOfTime<&ObservationTime::Year>},
      {"month", ColumnKind::Whole, "", "", nullptr, PartOfTime<&ObservationTime::Month>},
      {"day", ColumnKind::Whole, "", "", nullptr, PartOfTime<&ObservationTime::Day>},
      {"hour", ColumnKind::Whole, "", "", nullptr, PartOfTime<&ObservationTime::Hour>},
      {"latitude", ColumnKind::Number, "degrees_north", "", nullptr,
       Angle<&SoundingRecord::LatSigned>},
      {"longitude", ColumnKind::Number, "degrees_east", "", nullptr,
       Angle<&SoundingRecord::LonSigned>},
      {"elevation", ColumnKind::Whole, "m", "of the station", nullptr,
       [](const Entered& e) {
         const SoundingRecord& record = RecordOf(e);
         return record.ElevUnknown ? Cell() : Cell(std::int64_t{record.ElevM});
       }},
      {"format", ColumnKind::Text, "", "format of the file", nullptr,
       [](const Entered& e) { return TextOrNone(RecordOf(e).DataFormat); }},
      {"temperatures", ColumnKind::Whole, "", "levels with a temperature", nullptr,
       [](const Entered& e) { return Cell(std::int64_t{RecordOf(e).NumTempLevels()}); }},
      {"winds", ColumnKind::Whole, "", "levels with a wind", nullptr,
       [](const Entered& e) { return Cell(std::int64_t{RecordOf(e).NumWindLevels()}); }},
      {"verdict", ColumnKind::Text, "", "OK, or what the check of the data finds", nullptr,
       [](const Entered& e) {
         const std::string finding = FindingText(e.Sounding.Finding());
         return Cell(finding.empty() ? std::string("OK") : finding);
       }},
      {"settings", ColumnKind::Text, "", "fingerprint of the settings of the analysis", nullptr,
       [](const Entered& e) { return Cell(e.Settings); }},
      {"bounds", ColumnKind::Text, "",
       "indices that are at least this where the sounding ends early", nullptr, Bounds},
  };
}

std::vector<Column> MakeColumns() {
  std::vector<Column> columns = FixedColumns();
  for (const analysis::IndexRow& row : analysis::IndexTable()) {
    columns.push_back(
        {.Name = std::string(Trim(row.Label)),
         .Kind = row.Kind == analysis::Measure::Word ? ColumnKind::Text : ColumnKind::Number,
         .Unit = std::string(row.Unit),
         .LongName = std::string(row.Name),
         .Index = &row});
  }
  return columns;
}

// Every option, those outside the analysis at their defaults.
Options OptionsOf(const AnalysisSettings& settings) {
  Options options;
  static_cast<AnalysisSettings&>(options) = settings;
  return options;
}

}  // namespace

const std::vector<Column>& Columns() {
  static const std::vector<Column> columns = MakeColumns();
  return columns;
}

const Column* FindColumn(std::string_view name) {
  const std::vector<Column>& columns = Columns();
  const auto found = std::ranges::find_if(
      columns, [&](const Column& column) { return SameText(column.Name, name); });
  return found == columns.end() ? nullptr : &*found;
}

int StationNumber(const SoundingRecord& sounding) {
  return sounding.WmoNumber != 0 ? sounding.WmoNumber : StationNumberInTitle(sounding.StationTitle);
}

Cell IndexCell(const analysis::IndexRow& row, const analysis::AnalysisResults& results) {
  const analysis::IndexValue* index = analysis::IndexOf(results, row);
  if (index == nullptr || !index->Exists()) return {};
  if (row.Kind == analysis::Measure::Word) return TextOrNone(index->Text);
  return Rounded(index->Value, kDecimals);
}

Cell ValueOf(const Column& column, const Entered& entered) {
  if (column.Index != nullptr) return IndexCell(*column.Index, entered.Results);
  return column.Value != nullptr ? column.Value(entered) : Cell();
}

std::string CellText(const Cell& cell) {
  if (const auto* whole = std::get_if<std::int64_t>(&cell)) return std::to_string(*whole);
  if (const auto* number = std::get_if<double>(&cell)) return Shortest(*number);
  if (const auto* text = std::get_if<std::string>(&cell)) return *text;
  return {};
}

std::string GroupedCount(std::int64_t number) {
  constexpr std::size_t kGroup = 3;
  const std::string digits = std::to_string(number);
  std::string text;
  for (std::size_t i = 0; i < digits.size(); ++i) {
    if (i > 0 && (digits.size() - i) % kGroup == 0) text += ',';
    text += digits[i];
  }
  return text;
}

std::string SettingsText(const AnalysisSettings& settings) {
  const Options options = OptionsOf(settings);
  const Options defaults;
  std::string text;
  for (const OptionRow& row : vexa::Catalogue()) {
    const std::string value = row.Write(options);
    if (value == row.Write(defaults)) continue;
    text += (text.empty() ? "" : ", ") + std::string(row.Key) + "=" + value;
  }
  return text.empty() ? "defaults" : text;
}

std::string Fingerprint(const AnalysisSettings& settings) {
  StableHash hash;
  hash.Add(SettingsText(settings));
  for (const Column& column : Columns()) hash.Add(column.Name + "|" + column.Unit + "\n");
  constexpr std::size_t kDigits = 16;
  char digits[kDigits];
  const auto end = std::to_chars(digits, digits + kDigits, hash.Value(), kDigits).ptr;
  const std::string text(digits, end);
  return std::string(kDigits - text.size(), '0') + text;
}

}  // namespace vexa::archive
