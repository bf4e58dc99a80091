#include "cli/archive_table.h"

#include <algorithm>
#include <utility>

#include "cli/answers.h"
#include "core/numbers.h"
#include "report/json.h"

namespace vexa::cli {
namespace {

using archive::Cell;
using archive::CellText;
using archive::Column;
using archive::ColumnKind;

std::string HeadOf(const Column& column) {
  return column.Unit.empty() ? column.Name : column.Name + " (" + column.Unit + ")";
}

// Columns as wide as the first soundings ask for.
class TextTable : public ArchiveTable {
 public:
  TextTable(std::vector<const Column*> columns, Console& console)
      : columns_(std::move(columns)), console_(console) {
    std::vector<std::string> heads;
    for (const Column* column : columns_) heads.push_back(HeadOf(*column));
    waiting_.push_back(std::move(heads));
  }
  void Add(std::span<const Cell> cells) override {
    ++count_;
    std::vector<std::string> row;
    for (const Cell& cell : cells) row.push_back(cell.index() == 0 ? "--" : CellText(cell));
    if (!widths_.empty()) return Write(row);
    waiting_.push_back(std::move(row));
    constexpr std::size_t kMostWaiting = 200;
    if (waiting_.size() > kMostWaiting) WriteWaiting();
  }
  void End() override {
    if (widths_.empty()) WriteWaiting();
    console_.Out(archive::GroupedCount(count_) + (count_ == 1 ? " sounding\n" : " soundings\n"));
  }

 private:
  void WriteWaiting() {
    widths_.assign(columns_.size(), 0);
    for (const auto& row : waiting_) {
      for (std::size_t i = 0; i < row.size(); ++i) {
        widths_[i] = std::max(widths_[i], static_cast<int>(row[i].size()));
      }
    }
    for (const auto& row : std::exchange(waiting_, {})) Write(row);
  }
  void Write(const std::vector<std::string>& row) {
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i) {
      const bool isText = columns_[i]->Kind == ColumnKind::Text;
      line += (i == 0 ? "" : "  ") +
              (isText ? PadRight(row[i], widths_[i]) : PadLeft(row[i], widths_[i]));
    }
    line.erase(line.find_last_not_of(' ') + 1);
    console_.Out(line + "\n");
  }

  std::vector<const Column*> columns_;
  Console& console_;
  std::vector<std::vector<std::string>> waiting_{};
  std::vector<int> widths_{};
  std::int64_t count_ = 0;
};

class CsvTable : public ArchiveTable {
 public:
  CsvTable(const std::vector<const Column*>& columns, Console& console) : console_(console) {
    std::string head;
    for (const Column* column : columns) head += ',' + CsvField(HeadOf(*column));
    console_.Out(head.substr(1) + "\n");
  }
  void Add(std::span<const Cell> cells) override {
    std::string line;
    for (const Cell& cell : cells) line += ',' + CsvField(CellText(cell));
    console_.Out(line.substr(1) + "\n");
  }

 private:
  Console& console_;
};

class JsonTable : public ArchiveTable {
 public:
  JsonTable(std::vector<const Column*> columns, Console& console)
      : columns_(std::move(columns)), console_(console) {
    console_.Out("[");
  }
  void Add(std::span<const Cell> cells) override {
    report::Json row = report::Json::object();
    for (std::size_t i = 0; i < cells.size(); ++i) {
      report::Json& value = row[HeadOf(*columns_[i])];
      if (const auto* whole = std::get_if<std::int64_t>(&cells[i])) {
        value = *whole;
      } else if (const auto* number = std::get_if<double>(&cells[i])) {
        value = report::Number(*number);
      } else if (const auto* text = std::get_if<std::string>(&cells[i])) {
        value = *text;
      }
    }
    console_.Out((count_++ == 0 ? "\n" : ",\n") + report::JsonText(row));
  }
  void End() override { console_.Out("\n]\n"); }

 private:
  std::vector<const Column*> columns_;
  Console& console_;
  std::int64_t count_ = 0;
};

class NameList : public ArchiveTable {
 public:
  explicit NameList(Console& console) : console_(console) {}
  void Add(std::span<const Cell> cells) override {
    console_.Out(CellText(cells[0]) + "#" + CellText(cells[1]) + "\n");
  }

 private:
  Console& console_;
};

}  // namespace

std::unique_ptr<ArchiveTable> MakeArchiveTable(std::string_view format,
                                               std::vector<const Column*> columns,
                                               Console& console) {
  if (format == "csv") return std::make_unique<CsvTable>(columns, console);
  if (format == "json") return std::make_unique<JsonTable>(std::move(columns), console);
  if (format == "list") return std::make_unique<NameList>(console);
  return std::make_unique<TextTable>(std::move(columns), console);
}

}  // namespace vexa::cli
