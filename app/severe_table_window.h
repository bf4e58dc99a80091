// Arranges the severe-weather table: which entries, in which order, with which thresholds; kept in
// and restored from table files.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string_view>

#include "analysis/severe_table.h"
#include "app/editor_dialog.h"

class QComboBox;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QTableWidget;
class QVBoxLayout;

namespace vexa {

class SevereTableWindow : public EditorDialog {
 public:
  /// accepted  is given the new arrangement each time the user applies it
  SevereTableWindow(const analysis::SevereTable& table,
                    std::function<void(const analysis::SevereTable&)> accepted, QWidget* parent);

  /// The arrangement as it stands in the window; limits that are none keep their last value.
  const analysis::SevereTable& Table() const { return table_; }

  void SaveTo(const std::filesystem::path& path);
  void RestoreFrom(const std::filesystem::path& path);

 protected:
  std::string Typed() const override;

 private:
  void BuildTable(QVBoxLayout& layout);
  void BuildRowButtons(QVBoxLayout& layout);
  void BuildFileButtons(QVBoxLayout& layout);
  void AddButton(const QString& text, QHBoxLayout& into, std::function<void()> does);
  std::optional<std::filesystem::path> AskForFile(std::string_view title, bool saving) const;
  void Fill();
  void ReadCell(int row, int column);
  void Move(int step);
  void Add();
  void Remove();
  void Say(const QString& text);
  bool Apply();

  analysis::SevereTable table_;
  std::function<void(const analysis::SevereTable&)> accepted_;
  QLineEdit* title_ = nullptr;
  QTableWidget* rows_ = nullptr;
  QComboBox* offered_ = nullptr;
  QLabel* remark_ = nullptr;
  bool filling_ = false;
};

}  // namespace vexa
