// The window of the mountain-wave display: the diagram, the wave that it shows, and the menus that
// lead to its forms and files.
#pragma once

#include <optional>
#include <string>

#include "app/display_window.h"
#include "mountainwave/wave_plot.h"
#include "program/wave_view.h"

class QComboBox;
class QLabel;
class QMenu;

namespace vexa {

class MountainWave : public DisplayWindow {
 public:
  MountainWave(Program& program, const DisplayRow& row, Events events, QWidget* parent);
  ~MountainWave() override;

  void Follow() override;
  const Picture& Page() const override { return plot_.Page; }
  const mountainwave::WavePlot& Plot() const { return plot_; }

  /// Reads a display's state or its options, with the sounding that the state names.
  void OpenFile(const std::filesystem::path& file);

 protected:
  void Compose() override;
  void hideEvent(QHideEvent* event) override;

 private:
  void BuildMenus(QWidget& above);
  void BuildControls(QWidget& above);
  void AddEntry(QMenu& menu, const char* name, const char* caption, std::function<void()> does);
  void Press(const char* entry);
  void ShowControls();
  void ShowReading(const std::optional<vexa::Point>& at);
  void ChooseFileToOpen();
  void SaveState();
  void Place();
  void TellOfMountainFile();

  ShownWaves shown_{};
  mountainwave::WavePlot plot_{};
  QComboBox* wave_ = nullptr;
  QComboBox* mountains_ = nullptr;
  QComboBox* layers_ = nullptr;
  QLabel* reading_ = nullptr;
  std::string told_{};  // the fault of the mountain file that was told last
};

}  // namespace vexa
