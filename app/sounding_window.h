// The main window, `Sounding`: menu, diagram, progress panel and cursor readout. It turns events
// into commands and shows what they left behind; it decides nothing about soundings.
#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <QMainWindow>
#include <QPointer>
#include <utility>
#include <vector>

#include "app/window_interaction.h"
#include "picture/picture.h"
#include "program/program.h"

class QAction;
class QLabel;
class QProgressBar;
class QScrollBar;

namespace vexa {

class AnalysisDock;
class DataWindows;
class DiagramControl;
class DiagramView;
class DisplayWindow;
class HodogramWindow;
class HodographWindow;
class ParcelDock;
struct DisplayRow;
struct FormRow;
struct MenuRow;

class SoundingWindow : public QMainWindow {
 public:
  SoundingWindow(Program& program, WindowInteraction& interaction);
  ~SoundingWindow() override;
  SoundingWindow(const SoundingWindow&) = delete;
  SoundingWindow& operator=(const SoundingWindow&) = delete;

  /// Opens files as if chosen from the menu.
  void OpenFiles(const std::vector<std::filesystem::path>& paths);
  /// Carries out a menu entry's command.
  void Run(Command command);
  /// Draws what the changes made stale and shows it.
  void Show(Changes changes);

  /// Opens an option form over the window.
  void ShowForm(const FormRow& form);
  /// Takes the size and place that the window had when the program was left.
  void PlaceAsBefore();

  /// Opens the displays that were shown when the program was left.
  void RestoreDisplays();

  DiagramView& View() { return *view_; }
  DiagramControl& Control() { return *control_; }
  HodographWindow* Hodograph() { return hodograph_.get(); }  // null while it is not up
  HodogramWindow* Hodogram() { return hodogram_.get(); }

 protected:
  void closeEvent(QCloseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void RememberPlace();
  void RememberDisplays();
  void BuildMenus();
  void BuildPanels();
  void ShowState();
  void FitDiagram();
  void ShowDisplays();
  void DisplaysCheck();
  void ShowStatus(std::string_view text);
  void ShowReadout(const std::optional<Point>& at);
  void OpenDisplay(const DisplayRow& row);
  void OpenSevereTable();
  void OtherDisplays();
  bool RunOnDiagram(Command command);

  Program& program_;
  WindowInteraction& interaction_;
  DiagramView* view_ = nullptr;
  std::unique_ptr<DiagramControl> control_;
  ParcelDock* parcels_ = nullptr;
  std::unique_ptr<HodographWindow> hodograph_;
  std::unique_ptr<HodogramWindow> hodogram_;
  QScrollBar* sequence_ = nullptr;
  QProgressBar* bar_ = nullptr;  // while a routine tells how far it is
  QLabel* progress_ = nullptr;
  QLabel* readout_ = nullptr;
  AnalysisDock* dock_ = nullptr;
  std::unique_ptr<DataWindows> data_;
  std::map<const DisplayRow*, QPointer<DisplayWindow>> displays_{};
  std::vector<std::pair<QAction*, const MenuRow*>> entries_{};
};

}  // namespace vexa
