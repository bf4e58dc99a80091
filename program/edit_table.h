// A table of levels while it is edited: texts in cells, which may be wrong for a while. It says
// what is wrong where, takes rows from a spreadsheet, and makes levels of a sounding once all is
// well.
#pragma once

#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/fault.h"
#include "core/sounding_record.h"

namespace vexa {

enum class LevelKind { Temps, Winds, Clouds };

/// What is wrong with a row, the first thing found. Rows and columns count from 0.
struct TableProblem {
  int Row = 0;
  int Column = 0;
  std::string Reason{};
};

class EditTable {
 public:
  EditTable(LevelKind kind, const SoundingRecord& record);

  LevelKind Kind() const { return kind_; }
  /// Captions of the columns, with units.
  std::span<const std::string_view> Captions() const;
  int Columns() const { return static_cast<int>(Captions().size()); }
  int Rows() const { return static_cast<int>(rows_.size()); }
  const std::string& Text(int row, int column) const;

  /// A missing dew point is an empty cell. The decimal comma of a spreadsheet becomes a full stop.
  void Set(int row, int column, std::string_view text);
  void Insert(int row);
  void Erase(int row);

  /// Puts a row where its pressure or height belongs; gives its row. Fault 380 when a text is no
  /// value or the level is there already.
  Outcome<int> AddInOrder(const std::vector<std::string>& texts);

  /// Fills cells from a row and column on with lines of cells parted by tabs, semicolons or blanks;
  /// a first line without any figure is a heading and left out. Rows are added at the end as
  /// needed. Gives the number of rows filled.
  int Paste(int row, int column, std::string_view text);
  /// Rows as a spreadsheet takes them.
  std::string Copy(int firstRow, int rows) const;

  /// Whether nothing stands in a row.
  bool IsBlank(int row) const;
  /// One for each row with something wrong; rows without any text don't count as levels.
  std::vector<TableProblem> Problems() const;

  /// Replaces these levels of a sounding. Fault 380 with the first problem, 2222 for fewer than
  /// two temperature levels; the sounding stays then.
  [[nodiscard]] std::optional<Fault> ApplyTo(SoundingRecord& record) const;

 private:
  using Row = std::array<std::string, 4>;

  bool IsBlank(const Row& row) const;
  std::optional<TableProblem> Unreadable(int row) const;
  SoundingRecord Trial(std::vector<int>& rows, std::vector<TableProblem>& problems) const;

  LevelKind kind_;
  std::vector<Row> rows_{};
};

}  // namespace vexa
