#include "config/catalogue.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "config/row_builder.h"
#include "core/letter_case.h"
#include "core/numbers.h"

namespace vexa {
namespace {

constexpr double kLeastTempSpan = 40;  // °C
constexpr double kHottestTempMax = 60;

struct CrossRule {
  bool (*Holds)(const Options&);
  std::string_view Text;
  std::string_view Keys[2];
};

constexpr CrossRule kCrossRules[] = {
    {[](const Options& set) { return set.ShearLayerBottomKm < set.ShearLayerTopKm; },
     "Shear SR Layer Bot must lie below Shear SR Layer Top",
     {"Shear SR Layer Bot", "Shear SR Layer Top"}},
    {[](const Options& set) {
       return set.TempMin + kLeastTempSpan <= set.TempMax && set.TempMax <= kHottestTempMax;
     },
     "Temp MAX must lie between Temp MIN + 40 and 60",
     {"Temp MIN", "Temp MAX"}},
};

std::vector<OptionRow> AllRows() {
  std::vector<OptionRow> all;
  for (const std::vector<OptionRow>& rows : {ProgramRows(), DiagramRows(), SystemRows()}) {
    all.insert(all.end(), rows.begin(), rows.end());
  }
  return all;
}

}  // namespace

std::span<const OptionRow> Catalogue() {
  static const std::vector<OptionRow> kRows = AllRows();
  return kRows;
}

const OptionRow* FindOption(std::string_view key) {
  const std::span<const OptionRow> rows = Catalogue();
  const auto found = std::ranges::find_if(
      rows, [key](const OptionRow& row) { return SameText(row.Key, Trim(key)); });
  return found == rows.end() ? nullptr : &*found;
}

std::string Accepts(const RowInfo& row) {
  if (row.Kind == OptionKind::Text) return "any text";
  std::string text;
  const auto list = [&text](const std::string& item) {
    if (!text.empty()) text += ", ";
    text += item;
  };
  for (const std::string_view word : row.Words) list('"' + std::string(word) + '"');
  for (const double number : row.Numbers) list(Shortest(number));
  if (!text.empty()) return text;
  return Shortest(row.Least) + " to " + Shortest(row.Most) +
         (row.Kind == OptionKind::Number ? "" : ", whole");
}

bool ChangeOption(Options& options, const OptionRow& row, std::string_view text) {
  const std::string before = row.Write(options);
  if (!row.Read(options, text)) return false;
  if (row.Follow != nullptr && row.Write(options) != before) row.Follow(options);
  return true;
}

std::optional<Fault> SetOption(Options& options, std::string_view assignment) {
  const auto fault = [](std::string detail) {
    return Fault{kFaultInvalidValue, "SetOption", std::move(detail)};
  };
  const std::size_t equals = assignment.find('=');
  if (equals == std::string_view::npos) {
    return fault('"' + std::string(assignment) + "\" is not KEY=VALUE");
  }
  const std::string_view key = Trim(assignment.substr(0, equals));
  const std::string_view value = Trim(assignment.substr(equals + 1));
  const OptionRow* row = FindOption(key);
  if (row == nullptr) return fault("there is no option \"" + std::string(key) + '"');
  if (!ChangeOption(options, *row, value)) {
    return fault('"' + std::string(key) + "\" does not take \"" + std::string(value) +
                 "\"; it takes " + Accepts(*row));
  }
  return std::nullopt;
}

std::optional<Fault> CheckOptions(const Options& options) {
  for (const CrossRule& rule : kCrossRules) {
    if (!rule.Holds(options)) {
      return Fault{kFaultInvalidValue, "CheckOptions", std::string(rule.Text)};
    }
  }
  return std::nullopt;
}

std::vector<std::string> RepairOptions(Options& options) {
  std::vector<std::string> repaired;
  for (const CrossRule& rule : kCrossRules) {
    if (rule.Holds(options)) continue;
    for (const std::string_view key : rule.Keys) {
      const OptionRow& row = *FindOption(key);
      row.Read(options, row.Write(Options{}));
    }
    repaired.emplace_back(rule.Text);
  }
  return repaired;
}

}  // namespace vexa
