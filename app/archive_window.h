// Searches a catalogue of soundings: a form or a condition in words, the soundings that meet it as
// a table to be sorted, and a double click that opens one. Of the sounding in work it also tells
// how usual its indices are and which soundings are most like it; what was found can be stepped
// through and drawn over it.
#pragma once

#include <functional>
#include <optional>
#include <QDialog>
#include <span>
#include <string>
#include <vector>

#include "app/window_table.h"
#include "archive/catalogue.h"
#include "program/program.h"
#include "sounding/analysed_sounding.h"

class QCheckBox;
class QComboBox;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QTableWidget;

namespace vexa {

class ArchiveWindow : public QDialog {
 public:
  /// changed  is given what is to be shown anew
  ArchiveWindow(Program& program, std::function<void(Changes)> changed, QWidget* parent);

  /// The condition that the form and the line below it make together.
  std::string Condition() const;
  void Search();
  /// Of the sounding in work: its indices among those of its station, month and hour.
  void ShowUsual();
  /// The soundings most like the one in work.
  void ShowAlike();

 private:
  void BuildForm();
  QHBoxLayout* BuildButtons();
  void ChooseCatalogue();
  std::optional<archive::Catalogue> OpenCatalogue();
  std::optional<AnalysedSounding> InWork();
  void Begin(const std::vector<std::string>& heads);
  void AddRow(std::span<const archive::Cell> cells);
  void MarkPlace(const archive::Cell& file, const archive::Cell& sounding);
  void End(const std::string& remark);
  void OpenRow(int row);
  std::optional<SoundingSet::Member> MemberOf(int row) const;
  std::vector<SoundingSet::Member> Chosen(int most) const;
  void FollowOption();
  void ChooseForPercentiles(bool isChosen);
  void Say(const std::string& text);

  Program& program_;
  std::function<void(Changes)> changed_;
  QLineEdit* catalogue_ = nullptr;
  QCheckBox* percentiles_ = nullptr;
  QLineEdit* station_ = nullptr;
  QComboBox* month_ = nullptr;
  QComboBox* index_ = nullptr;
  QComboBox* sign_ = nullptr;
  QLineEdit* value_ = nullptr;
  QLineEdit* further_ = nullptr;
  QTableWidget* rows_ = nullptr;
  QLabel* remark_ = nullptr;
};

std::span<const WindowRow> ArchiveWindows();

}  // namespace vexa
