// The window of fronts: its picture with the controls above it, and the form by which its settings
// are entered and the layer of the front is chosen. In the image mode a click on the picture, or a
// drag over several layers, chooses them.
#pragma once

#include <cstddef>
#include <optional>
#include <QDialog>

#include "app/display_window.h"
#include "app/window_table.h"

class QListWidget;
class QRadioButton;
class QCheckBox;
class QLabel;

namespace vexa {

class OptionPage;

/// Settings of fronts and the list of the layers; stays open while the picture is worked with.
class HodoFrontForm : public QDialog {
 public:
  /// changed  draws what a change made stale
  HodoFrontForm(Program& program, std::function<void(Changes)> changed, QWidget* parent);

  /// Shows the state of the program.
  void Follow();

 private:
  QWidget* BuildControl();
  QWidget* BuildLayers();
  void ShowLayers();

  Program& program_;
  std::function<void(Changes)> changed_;
  QRadioButton* automatic_ = nullptr;
  QRadioButton* manual_ = nullptr;
  QCheckBox* hold_ = nullptr;
  QCheckBox* imageMode_ = nullptr;
  OptionPage* settings_ = nullptr;
  QListWidget* layers_ = nullptr;
  QLabel* message_ = nullptr;
};

class FrontWindow final : public PlainDisplayWindow {
 public:
  FrontWindow(Program& program, const DisplayRow& row, Events events, QWidget* parent);

  void Follow() override;

 private:
  void OpenForm();
  bool Press(vexa::Point at);
  void DragOver(std::optional<vexa::Point> at);

  std::optional<std::size_t> first_{};  // the layer at which a drag began
  std::optional<std::size_t> last_{};
  HodoFrontForm* form_ = nullptr;
};

/// The form of the display of fronts, by its name.
std::span<const WindowRow> FrontWindows();

}  // namespace vexa
