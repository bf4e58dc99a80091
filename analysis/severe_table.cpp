#include "analysis/severe_table.h"

#include <algorithm>
#include <cmath>

#include "analysis/exact.h"
#include "analysis/index_table.h"
#include "core/files.h"
#include "core/numbers.h"
#include "core/record_text.h"
#include "core/user_file.h"

namespace vexa::analysis {
namespace {

constexpr std::string_view kHeader = "This is a VEXA system file -- Do Not Alter.";
constexpr int kMostRows = 500;

// Thresholds from the literature that the index table names.
constexpr SevereEntry kEntries[] = {
    {.Text = ".TBL"},
    {"200 mb Wind Speed (kt)", "200mb Wind", SevereWhen::Above, {{75, 100, 125}, {}}},
    {"500 mb Wind Speed (kt)", "500mb Wind", SevereWhen::Above, {{35, 50, 65}, {}}},
    {"850 mb Wind Speed (kt)", "850mb Wind", SevereWhen::Above, {{20, 30, 40}, {}}},
    {"850 mb Dewpoint (C)", "850mb Td", SevereWhen::Above, {{8, 12, 16}, {}}},
    {"700 - 500 mb lapse rate (C/km)", "700-500 LR", SevereWhen::Above, {{6, 7, 8}, {}}},
    {"Boyden Index", "Boyden", SevereWhen::Above, {{94, 96, 98}, {}}},
    {"BRN - Bulk Richardson No.",
     "BRN",
     SevereWhen::Below,
     {{100, 50, 35}, {}},
     LengthUnits::Meter,
     100},
    {"BRN Shear (m\xC2\xB2/s\xC2\xB2)", "BRN Shear", SevereWhen::Above, {{20, 40, 80}, {}}},
    {"CAP Strength", "CAP", SevereWhen::Below, {{4, 2, 1}, {}}},
    {"CAPE 0-x km, AGL", "CAPE 0-xkm", SevereWhen::Above, {{25, 75, 150}, {}}},
    {"CAPE Total", "CAPE total", SevereWhen::Above, {{500, 1500, 2500}, {}}},
    {"KO Index", "KO", SevereWhen::Below, {{6, 2, -2}, {}}},
    {"Craven SigSvr Parameter (mixed-layer lift)", "Craven", SevereWhen::Above, {{10, 20, 40}, {}}},
    {"CT - Cross Totals", "CT", SevereWhen::Above, {{18, 22, 26}, {}}},
    {"DCAPE 0-6 km, MSL", "DCAPE 6km", SevereWhen::Above, {{500, 900, 1300}, {}}},
    {"Delta Theta-e (ePT)", "Delta ePT", SevereWhen::Above, {{0.5, 0.67, 1}, {}}},
    {"EHI - Energy Helicity Index", "EHI 0-xkm", SevereWhen::Above, {{0.5, 1, 2}, {}}},
    {"GOES HMI (Hybrid Microburst Index)", "GOES HMI", SevereWhen::Above, {{4, 8, 16}, {}}},
    {"Hail (inches)", "Hail", SevereWhen::Above, {{0.25, 0.75, 2}, {}}},
    {"JI - Jefferson Index", "JI", SevereWhen::Above, {{25, 28, 31}, {}}},
    {"K Index", "KI", SevereWhen::Above, {{20, 30, 40}, {}}},
    {"LFC-LCL height (m)", "LFC-LCL", SevereWhen::Below, {{1500, 1000, 500}, {}}},
    {"LFC - Level of Free Convection (mb)", "LFC Prs", SevereWhen::Above, {{700, 800, 850}, {}}},
    {"LI - Lifted Index", "LI", SevereWhen::Below, {{0, -4, -7}, {}}},
    {"MDPI - Microburst Day Potential Index", "MDPI", SevereWhen::Above, {{0.6, 0.8, 1}, {}}},
    {"NCAPE  (Normalized CAPE)", "NCAPE", SevereWhen::Above, {{0.1, 0.2, 0.3}, {}}},
    {"S Index", "S{TT}", SevereWhen::Above, {{40, 46, 50}, {}}},
    {"SI - Showalter Index", "SI", SevereWhen::Below, {{1, -3, -6}, {}}},
    {"srH - storm-relative Helicity (0-3 km)",
     "s-rH 0-3km",
     SevereWhen::Above,
     {{100, 200, 300}, {}}},
    {"Supercell Composite Parameter (SCP)", "Supercell", SevereWhen::Above, {{1, 4, 8}, {}}},
    {"Surface Dewpoint (C)", "Surface Td", SevereWhen::Above, {{10, 15, 20}, {}}},
    {"SWEAT Index", "SWEAT", SevereWhen::Above, {{250, 300, 400}, {}}},
    {"T1/T2 Gust (kt)", "T1/T2 Gust", SevereWhen::Above, {{35, 50, 65}, {}}},
    {"TI - Thompson Index", "TI", SevereWhen::Above, {{25, 35, 40}, {}}},
    {"TQ Index", "TQ Index", SevereWhen::Above, {{12, 14, 17}, {}}},
    {"TT - Total Totals", "TT", SevereWhen::Above, {{44, 50, 55}, {}}},
    {"VGP - Vorticity Generation Parameter", "VGP 0-xkm", SevereWhen::Above, {{0.2, 0.4, 0.6}, {}}},
    {"VT - Vertical Totals", "VT", SevereWhen::Above, {{26, 30, 34}, {}}},
    {"WBZ - WetBulb Zero Hgt (ft,AGL)",
     "WBZ Hgt",
     SevereWhen::Within,
     {{5000, 6000, 7000}, {12000, 11000, 10000}},
     LengthUnits::Feet},
    {"Windex (kt)", "WindEX", SevereWhen::Above, {{35, 50, 65}, {}}},
    {"WMSI - Wet Microburst Severity Index", "WMSI", SevereWhen::Above, {{10, 50, 80}, {}}},
    {.Text = kSevereTableError},
};

const SevereEntry& EntryOf(const SevereRow& row) {
  return kEntries[static_cast<std::size_t>(row.Entry) - 1];
}

bool Reaches(SevereWhen when, const SevereLimits& limits, std::size_t step, double amount) {
  const double value = Exact(amount);
  switch (when) {
    case SevereWhen::Above:
      return value >= limits.From[step];
    case SevereWhen::Below:
      return value <= limits.From[step];
    case SevereWhen::Within:
      return value >= limits.From[step] && value <= limits.To[step];
    case SevereWhen::Never:
      break;
  }
  return false;
}

// Files of before numbered their entries from 2. Never changed: an entry that is new has no number.
constexpr std::string_view kNumbered[] = {
    "200mb Wind", "500mb Wind", "850mb Wind", "850mb Td",   "700-500 LR", "Boyden", "BRN",
    "BRN Shear",  "CAP",        "CAPE 0-xkm", "CAPE total", "KO",         "Craven", "CT",
    "DCAPE 6km",  "Delta ePT",  "EHI 0-xkm",  "GOES HMI",   "Hail",       "JI",     "KI",
    "LFC-LCL",    "LFC Prs",    "LI",         "MDPI",       "NCAPE",      "S{TT}",  "SI",
    "s-rH 0-3km", "Supercell",  "Surface Td", "SWEAT",      "T1/T2 Gust", "TI",     "TQ Index",
    "TT",         "VGP 0-xkm",  "VT",         "WBZ Hgt",    "WindEX",     "WMSI"};
constexpr int kFirstNumber = 2;

// The entry whose index has this label; 0 for none.
int EntryOfIndex(std::string_view label) {
  const auto found = std::ranges::find_if(kEntries, [label](const SevereEntry& entry) {
    return entry.When != SevereWhen::Never && entry.Index == label;
  });
  return found == std::end(kEntries) ? 0 : static_cast<int>(found - std::begin(kEntries)) + 1;
}

// An entry as a file names it: by the label of its index, or by its old number.
int EntryNamed(const RecordField& field) {
  if (field.Quoted) return EntryOfIndex(field.Text);
  const double number = ParseNumber(field.Text).value_or(0) - kFirstNumber;
  const bool isOne = number >= 0 && number < std::ssize(kNumbered) && number == std::floor(number);
  return isOne ? EntryOfIndex(kNumbered[static_cast<std::size_t>(number)]) : 0;
}

Outcome<SevereRow> ReadRow(RecordReader& reader) {
  const Outcome<RecordField> name = reader.Next("the entry");
  if (!name) return name.Error();
  const int entry = EntryNamed(name.Value());
  if (entry == 0) {
    Fault fault = reader.DamagedAt(name.Value().Line, kSevereTableError);
    fault.Number = kFaultInvalidValue;
    return fault;
  }
  SevereRow row{.Entry = entry};
  for (auto* limits : {&row.Limits.From, &row.Limits.To}) {
    for (double& limit : *limits) {
      const Outcome<double> number = reader.Number("a threshold");
      if (!number) return number.Error();
      limit = number.Value();
    }
  }
  const std::string wrong = CheckLimits(row);
  if (!wrong.empty()) return reader.DamagedAt(reader.Line(), wrong);
  return row;
}

Outcome<SevereTable> ReadTable(std::string_view text, const std::string& name) {
  RecordReader reader(text, name);
  if (const auto header = reader.Text("the header"); !header) return header.Error();
  SevereTable table;
  const Outcome<std::string> title = reader.Text("the title");
  if (!title) return title.Error();
  table.Title = title.Value();
  const Outcome<int> count = reader.Count("the number of rows");
  if (!count) return count.Error();
  if (count.Value() > kMostRows) {
    return reader.DamagedAt(reader.Line(), "more than 500 rows");
  }
  for (int i = 0; i < count.Value(); ++i) {
    const Outcome<SevereRow> row = ReadRow(reader);
    if (!row) return row.Error();
    table.Rows.push_back(row.Value());
  }
  if (!reader.AtEnd()) return reader.DamagedAt(reader.Line(), "more rows than the table counts");
  return table;
}

}  // namespace

std::span<const SevereEntry> SevereEntries() {
  return kEntries;
}

bool IsSevereEntry(int number) {
  return number >= 1 && number <= static_cast<int>(std::size(kEntries)) &&
         kEntries[number - 1].When != SevereWhen::Never;
}

SevereRow DefaultSevereRow(int entry) {
  return {entry, kEntries[static_cast<std::size_t>(entry) - 1].Limits};
}

SevereTable DefaultSevereTable() {
  SevereTable table;
  for (int number = 1; number <= static_cast<int>(std::size(kEntries)); ++number) {
    if (IsSevereEntry(number)) table.Rows.push_back(DefaultSevereRow(number));
  }
  return table;
}

int SevereStep(const SevereRow& row, double value) {
  int step = 0;
  for (std::size_t i = 0; i < row.Limits.From.size(); ++i) {
    if (Reaches(EntryOf(row).When, row.Limits, i, value)) step = static_cast<int>(i) + 1;
  }
  return step;
}

std::string CheckLimits(const SevereRow& row) {
  const SevereWhen when = EntryOf(row).When;
  for (std::size_t i = 0; i < row.Limits.From.size(); ++i) {
    const double from = row.Limits.From[i];
    if (!std::isfinite(from) || !std::isfinite(row.Limits.To[i])) return "a limit is no number";
    if (when == SevereWhen::Within && row.Limits.To[i] < from) {
      return "a range ends below its beginning";
    }
    if (i == 0) continue;
    const double before = row.Limits.From[i - 1];
    if (when == SevereWhen::Above && from < before) return "the limits must rise";
    if (when == SevereWhen::Below && from > before) return "the limits must fall";
    if (when == SevereWhen::Within && (from < before || row.Limits.To[i] > row.Limits.To[i - 1])) {
      return "each range must lie within the one before it";
    }
  }
  return {};
}

std::vector<SevereValue> FillSevereTable(const SevereTable& table, const AnalysisResults& results) {
  std::vector<SevereValue> values;
  for (const SevereRow& row : table.Rows) {
    if (!IsSevereEntry(row.Entry)) {
      values.push_back({.Text = kSevereTableError, .Shown = "--"});
      continue;
    }
    const SevereEntry& entry = EntryOf(row);
    SevereValue value{.Text = entry.Text, .Shown = "--", .Index = FindIndex(entry.Index)};
    const IndexValue* index = value.Index ? IndexOf(results, *value.Index) : nullptr;
    if (index != nullptr && index->Exists()) {
      const ShownIndex shown = ShowIndex(*index, {.Length = entry.Length});
      value.Shown = std::string(shown.Bound) + shown.Number;
      const bool isMirrored = value.Index->IsTurning && !results.Storm.RightIsCyclonic;
      const bool says = results.Chosen().CapeTotal >= entry.LeastCape;
      value.Step = says ? SevereStep(row, isMirrored ? -shown.Amount : shown.Amount) : 0;
      if (!says) value.Note = "CAPE under " + Mask(entry.LeastCape, "##0") + " J/kg";
      if (isMirrored && shown.Amount != 0) {
        value.Note = shown.Amount < 0 ? "cyclonic" : "anticyclonic";
      }
    } else if (index != nullptr) {
      value.Reason = index->Reason;
    }
    values.push_back(std::move(value));
  }
  return values;
}

std::string WriteSevereTable(const SevereTable& table) {
  RecordWriter writer;
  writer.Text(kHeader).EndRecord();
  writer.Text(table.Title).Number(static_cast<int>(table.Rows.size())).EndRecord();
  for (const SevereRow& row : table.Rows) {
    writer.Text(EntryOf(row).Index);
    for (const auto* limits : {&row.Limits.From, &row.Limits.To}) {
      for (const double limit : *limits) writer.Number(limit);
    }
    writer.EndRecord();
  }
  return writer.Take();
}

std::optional<Fault> SaveTable(const std::filesystem::path& path, const SevereTable& table) {
  return SaveUserFile(path, WriteSevereTable(table), [&path](std::string_view text) {
    const Outcome<SevereTable> read = ReadTable(text, TextFromPath(path.filename()));
    return read ? std::string() : read.Error().Detail;
  });
}

Outcome<SevereTable> RestoreTable(const std::filesystem::path& path) {
  const Outcome<std::string> text = ReadFile(path);
  if (!text) return text.Error();
  return ReadTable(text.Value(), TextFromPath(path.filename()));
}

}  // namespace vexa::analysis
