// The hodograph's window: the picture, the controls of storm motion, frame and comparison, and the
// wind table. It turns controls into commands and shows what they left behind.
#pragma once

#include <optional>
#include <QString>
#include <QWidget>
#include <string>
#include <utility>
#include <vector>

#include "app/display_window.h"
#include "hodograph/hodograph_plot.h"
#include "program/hodograph_commands.h"
#include "program/level_drag.h"
#include "program/program.h"

class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QGridLayout;
class QLabel;
class QPlainTextEdit;
class QPushButton;
class QVBoxLayout;

namespace vexa {

class HodographWindow : public DisplayWindow {
 public:
  HodographWindow(Program& program, const DisplayRow& row, Events events, QWidget* parent);
  ~HodographWindow() override;

  void Follow() override;
  const Picture& Page() const override { return plot_.Page; }
  const hodograph::HodographPlot& Plot() const { return plot_; }

 protected:
  void Compose() override;
  void Escape() override;
  void hideEvent(QHideEvent* event) override;

 private:
  void BuildMotion(QVBoxLayout& column);
  void BuildPlotting(QVBoxLayout& column);
  void BuildDepth(QGridLayout& into);
  void BuildComparison(QVBoxLayout& column);
  void BuildTable(QVBoxLayout& column);
  void BuildDragging();
  bool TakeHold(Point at);
  void EndDrag(Changes changes);
  QCheckBox* AddSwitch(QGridLayout& into, const char* name, const QString& text,
                       bool HodographSettings::*setting);
  void Draw(const hodograph::HodographInput& input);
  void ShowControls();
  void ShowSpeed(QDoubleSpinBox* box, const RowInfo& row, double knots);
  void ShowTable();
  void ShowCursor(const std::optional<Point>& at);
  void Enter();

  hodograph::HodographPlot plot_{};
  std::string listed_{};  // wind table that the files hold
  // While the storm vector or a wind is dragged: the mapping that stays, and what it was before.
  std::optional<hodograph::HodographMapping> dragMapping_{};
  std::optional<LevelDrag> windDrag_{};
  StormEntry beforeDrag_{};

  QLabel* cursor_ = nullptr;
  QLabel* floating_ = nullptr;
  QComboBox* mode_ = nullptr;
  QComboBox* mover_ = nullptr;
  QDoubleSpinBox* direction_ = nullptr;
  QDoubleSpinBox* speed_ = nullptr;
  QCheckBox* hold_ = nullptr;
  QComboBox* frame_ = nullptr;
  QComboBox* rings_ = nullptr;
  QDoubleSpinBox* limit_ = nullptr;
  QComboBox* depthMode_ = nullptr;
  QDoubleSpinBox* depth_ = nullptr;
  QComboBox* compare_ = nullptr;
  QPlainTextEdit* table_ = nullptr;
  QPlainTextEdit* tableHeader_ = nullptr;
  std::vector<std::pair<QCheckBox*, bool HodographSettings::*>> switches_{};
};

}  // namespace vexa
