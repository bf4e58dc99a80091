#include "program/edit_table.h"

#include <algorithm>
#include <cctype>
#include <utility>

#include "core/markers.h"
#include "core/numbers.h"
#include "core/record_edits.h"

namespace vexa {
namespace {

struct KindRow {
  std::string_view Procedure;
  std::vector<std::string_view> Captions;
  std::vector<std::string_view> Fields;  // as the faults of an edit call them
};

const KindRow& About(LevelKind kind) {
  static const KindRow kKinds[] = {
      {"EditTempLevels",
       {"Pressure (mb)", "Temperature (C)", "Dew Point (C)"},
       {"pressure", "temperature", "dew point"}},
      {"EditWindLevels",
       {"Height (m MSL)", "Direction (deg)", "Speed (kts)"},
       {"height", "direction", "speed"}},
      {"EditCloudLayers",
       {"Type", "Base (100 ft)", "Top (100 ft)", "Code"},
       {"type", "base", "top", "code"}},
  };
  return kKinds[static_cast<std::size_t>(kind)];
}

bool IsText(LevelKind kind, int column) {
  return kind == LevelKind::Clouds && column == 0;
}

// Cells that may stay empty: the dew point, a cloud's top and its code.
bool IsOptional(LevelKind kind, int column) {
  return kind == LevelKind::Temps ? column == 2 : kind == LevelKind::Clouds && column >= 2;
}

double NumberIn(const std::string& text) {
  return ParseNumber(text).value_or(0);
}

TempLevel TempOf(std::span<const std::string> cells) {
  return {NumberIn(cells[0]), NumberIn(cells[1]),
          Trim(cells[2]).empty() ? kMissing : NumberIn(cells[2])};
}

WindLevel WindOf(std::span<const std::string> cells) {
  return {NumberIn(cells[0]), NumberIn(cells[1]), NumberIn(cells[2])};
}

CloudLayer CloudOf(std::span<const std::string> cells) {
  std::string type(Trim(cells[0]));
  std::ranges::transform(type, type.begin(), [](char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  });
  return {type, NumberIn(cells[1]), std::string(Trim(cells[2])), ToWhole(NumberIn(cells[3]))};
}

// Checks a level in place among its neighbours, by an edit that changes nothing.
std::optional<Fault> CheckAt(LevelKind kind, SoundingRecord& record, int level) {
  switch (kind) {
    case LevelKind::Temps:
      return ChangeTempLevel(record, level,
                             {record.Press(level), record.Temp(level), record.Dewpt(level)});
    case LevelKind::Winds:
      return ChangeWindLevel(record, level,
                             {record.WindHgt(level), record.WindDir(level), record.WindSpd(level)});
    case LevelKind::Clouds:
      return ChangeCloudLayer(record, level, CloudLayer(record.Clouds(level)));
  }
  return std::nullopt;
}

Outcome<int> AddTo(LevelKind kind, SoundingRecord& record, std::span<const std::string> cells) {
  switch (kind) {
    case LevelKind::Temps:
      return AddTempLevel(record, TempOf(cells));
    case LevelKind::Winds:
      return AddWindLevel(record, WindOf(cells));
    case LevelKind::Clouds:
      break;
  }
  return AddCloudLayer(record, CloudOf(cells));
}

// "Level 17, pressure: too high" parted into the column of the field and the reason.
TableProblem ProblemOf(LevelKind kind, int row, const std::string& detail) {
  const std::size_t colon = detail.find(": ");
  TableProblem problem{row, 0, detail.substr(colon == std::string::npos ? 0 : colon + 2)};
  const std::vector<std::string_view>& fields = About(kind).Fields;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const std::string mark = ", " + std::string(fields[i]) + ": ";
    if (detail.find(mark) != std::string::npos) {
      problem.Column = static_cast<int>(i);
      problem.Reason = std::string(fields[i]) + ' ' + problem.Reason;
    }
  }
  return problem;
}

std::vector<std::string_view> Cells(std::string_view line) {
  const std::string_view separators = line.find('\t') != std::string_view::npos  ? "\t"
                                      : line.find(';') != std::string_view::npos ? ";"
                                                                                 : " ";
  std::vector<std::string_view> cells;
  if (separators == " ") line = Trim(line);
  while (true) {
    const std::size_t end = line.find(separators);
    cells.push_back(Trim(line.substr(0, end)));
    if (end == std::string_view::npos) return cells;
    line.remove_prefix(end + 1);
    if (separators == " ") line = Trim(line);
  }
}

bool HasFigure(std::string_view line) {
  return std::ranges::any_of(line, [](char c) { return c >= '0' && c <= '9'; });
}

// Working winds keep their values where the level stayed, and take the new ones elsewhere.
void ApplyWinds(SoundingRecord& record, const SoundingRecord& from) {
  if (record.NumWindLevels() == 0 || record.HasWorkWinds()) {
    Levels<float> dir, spd;
    for (int j = 1; j <= from.NumWindLevels(); ++j) {
      const auto& heights = record.WindHgt.Values();
      const auto at = std::ranges::find(heights, from.WindHgt(j));
      const int i = static_cast<int>(at - heights.begin()) + 1;
      const bool stayed = at != heights.end() && record.WindDir(i) == from.WindDir(j) &&
                          record.WindSpd(i) == from.WindSpd(j);
      dir.Add(stayed ? record.WorkWindDir(i) : static_cast<float>(from.WindDir(j)));
      spd.Add(stayed ? record.WorkWindSpd(i) : static_cast<float>(from.WindSpd(j)));
    }
    record.WorkWindDir = std::move(dir);
    record.WorkWindSpd = std::move(spd);
  }
  record.WindHgt = from.WindHgt;
  record.WindDir = from.WindDir;
  record.WindSpd = from.WindSpd;
}

}  // namespace

EditTable::EditTable(LevelKind kind, const SoundingRecord& record) : kind_(kind) {
  switch (kind) {
    case LevelKind::Temps:
      for (int i = 1; i <= record.NumTempLevels(); ++i) {
        const double dewpt = record.Dewpt(i);
        rows_.push_back({Shortest(record.Press(i)), Shortest(record.Temp(i)),
                         IsMissing(dewpt) ? std::string() : Shortest(dewpt)});
      }
      break;
    case LevelKind::Winds:
      for (int i = 1; i <= record.NumWindLevels(); ++i) {
        rows_.push_back({Shortest(record.WindHgt(i)), Shortest(record.WindDir(i)),
                         Shortest(record.WindSpd(i))});
      }
      break;
    case LevelKind::Clouds:
      for (int i = 1; i <= record.NumCloudLayers(); ++i) {
        const CloudLayer& layer = record.Clouds(i);
        rows_.push_back({layer.Type, Shortest(layer.Base), layer.Top, Shortest(layer.Code)});
      }
      break;
  }
}

std::span<const std::string_view> EditTable::Captions() const {
  return About(kind_).Captions;
}

const std::string& EditTable::Text(int row, int column) const {
  return rows_.at(static_cast<std::size_t>(row)).at(static_cast<std::size_t>(column));
}

void EditTable::Set(int row, int column, std::string_view text) {
  std::string cell(Trim(text));
  if (!IsText(kind_, column) && std::ranges::count(cell, ',') == 1 &&
      cell.find('.') == std::string::npos) {
    std::ranges::replace(cell, ',', '.');
  }
  rows_.at(static_cast<std::size_t>(row)).at(static_cast<std::size_t>(column)) = std::move(cell);
}

void EditTable::Insert(int row) {
  rows_.insert(rows_.begin() + std::clamp(row, 0, Rows()), Row{});
}

void EditTable::Erase(int row) {
  if (row >= 0 && row < Rows()) rows_.erase(rows_.begin() + row);
}

Outcome<int> EditTable::AddInOrder(const std::vector<std::string>& texts) {
  EditTable single(kind_, {});
  single.Insert(0);
  for (int i = 0; i < Columns() && i < static_cast<int>(texts.size()); ++i) {
    single.Set(0, i, texts[static_cast<std::size_t>(i)]);
  }
  const std::string procedure(About(kind_).Procedure);
  if (const auto problem = single.Unreadable(0)) {
    return Fault{kFaultInvalidValue, procedure, problem->Reason};
  }
  std::vector<int> rows;
  std::vector<TableProblem> ignored;
  SoundingRecord trial = Trial(rows, ignored);
  const Outcome<int> level = AddTo(kind_, trial, single.rows_.front());
  if (!level) return level.Error();
  const auto index = static_cast<std::size_t>(level.Value()) - 1;
  const int row = index < rows.size() ? rows[index] : Rows();
  rows_.insert(rows_.begin() + row, single.rows_.front());
  return row;
}

int EditTable::Paste(int row, int column, std::string_view text) {
  int filled = 0;
  bool isFirst = true;
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    if (Trim(line).empty()) continue;
    if (std::exchange(isFirst, false) && !HasFigure(line)) continue;
    while (row + filled >= Rows()) Insert(Rows());
    const std::vector<std::string_view> cells = Cells(line);
    for (std::size_t i = 0; i < cells.size() && column + static_cast<int>(i) < Columns(); ++i) {
      Set(row + filled, column + static_cast<int>(i), cells[i]);
    }
    ++filled;
  }
  return filled;
}

std::string EditTable::Copy(int firstRow, int rows) const {
  std::string text;
  for (int row = firstRow; row < std::min(firstRow + rows, Rows()); ++row) {
    for (int column = 0; column < Columns(); ++column) {
      if (column > 0) text += '\t';
      text += Text(row, column);
    }
    text += '\n';
  }
  return text;
}

bool EditTable::IsBlank(int row) const {
  return IsBlank(rows_.at(static_cast<std::size_t>(row)));
}

bool EditTable::IsBlank(const Row& row) const {
  return std::ranges::all_of(row, [](const std::string& cell) { return cell.empty(); });
}

std::optional<TableProblem> EditTable::Unreadable(int row) const {
  for (int column = 0; column < Columns(); ++column) {
    const std::string& cell = Text(row, column);
    if (IsText(kind_, column) || (cell.empty() && IsOptional(kind_, column))) continue;
    if (ParseNumber(cell)) continue;
    const std::string field(About(kind_).Fields[static_cast<std::size_t>(column)]);
    return TableProblem{row, column,
                        field + (cell.empty() ? " is wanted" : " \"" + cell + "\" is no number")};
  }
  return std::nullopt;
}

// The levels of all rows that can be read; `rows` gets the row of each.
SoundingRecord EditTable::Trial(std::vector<int>& rows, std::vector<TableProblem>& problems) const {
  SoundingRecord record;
  for (int row = 0; row < Rows(); ++row) {
    const Row& cells = rows_[static_cast<std::size_t>(row)];
    if (IsBlank(cells)) continue;
    if (std::optional<TableProblem> problem = Unreadable(row)) {
      problems.push_back(*std::move(problem));
      continue;
    }
    rows.push_back(row);
    if (kind_ == LevelKind::Temps) {
      const TempLevel level = TempOf(cells);
      record.AddTemp(level.Press, level.Temp, level.Dewpt);
    } else if (kind_ == LevelKind::Winds) {
      const WindLevel level = WindOf(cells);
      record.AddWind(level.Height, level.Dir, level.Spd);
    } else {
      record.Clouds.Add(CloudOf(cells));
    }
  }
  return record;
}

std::vector<TableProblem> EditTable::Problems() const {
  std::vector<int> rows;
  std::vector<TableProblem> problems;
  SoundingRecord trial = Trial(rows, problems);
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (const auto fault = CheckAt(kind_, trial, static_cast<int>(i) + 1)) {
      problems.push_back(ProblemOf(kind_, rows[i], fault->Detail));
    }
  }
  std::ranges::sort(problems, {}, &TableProblem::Row);
  return problems;
}

std::optional<Fault> EditTable::ApplyTo(SoundingRecord& record) const {
  const std::string procedure(About(kind_).Procedure);
  if (const std::vector<TableProblem> problems = Problems(); !problems.empty()) {
    return Fault{kFaultInvalidValue, procedure,
                 "Row " + Shortest(problems.front().Row + 1) + ": " + problems.front().Reason};
  }
  std::vector<int> rows;
  std::vector<TableProblem> none;
  SoundingRecord trial = Trial(rows, none);
  switch (kind_) {
    case LevelKind::Temps:
      if (trial.NumTempLevels() < 2) {
        return Fault{kFaultTooFewLevels, procedure, "two temperature levels are wanted at least"};
      }
      record.Press = std::move(trial.Press);
      record.Temp = std::move(trial.Temp);
      record.Dewpt = std::move(trial.Dewpt);
      break;
    case LevelKind::Winds:
      ApplyWinds(record, trial);
      break;
    case LevelKind::Clouds:
      record.Clouds = std::move(trial.Clouds);
      break;
  }
  return std::nullopt;
}

}  // namespace vexa
