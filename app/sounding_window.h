// The main window, `Sounding`: menu, diagram, progress panel and cursor readout. It turns events
// into commands and shows what they left behind; it decides nothing about soundings.
#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <QMainWindow>
#include <QTimer>
#include <string_view>
#include <utility>
#include <vector>

#include "app/window_interaction.h"
#include "picture/picture.h"
#include "program/menu.h"
#include "program/program.h"

class QAction;
class QLabel;
class QProgressBar;
class QScrollBar;

namespace vexa {

class DataWindows;
class DiagramControl;
class DiagramView;
class DisplayWindow;
class Panel;
class StartPage;
class ToolBar;

class SoundingWindow : public QMainWindow {
 public:
  SoundingWindow(Program& program, WindowInteraction& interaction);
  ~SoundingWindow() override;
  void setVisible(bool visible) override;
  SoundingWindow(const SoundingWindow&) = delete;
  SoundingWindow& operator=(const SoundingWindow&) = delete;

  /// Opens files as if chosen from the menu.
  void OpenFiles(const std::vector<std::filesystem::path>& paths);
  /// Carries out a menu entry, by its name. What cannot be chosen now says in the status line what
  /// it lacks.
  void Run(std::string_view entry);
  /// Opens a window, a display or what stands behind a menu entry, by its name; false when there is
  /// nothing of this name.
  bool Open(std::string_view name, std::string_view at = {});
  /// Draws what the changes made stale and shows it.
  void Show(Changes changes);

  void ShowStatus(std::string_view text);
  /// Has displays and panels show the state of the program.
  void FollowDisplays();
  /// Brings the diagram to the front.
  void ToFront();
  void TogglePanel(std::string_view name);
  /// Takes most of the screen, in its middle, as at the first start.
  void PlaceFirst();
  /// Takes the size and place that the window had when the program was left.
  void PlaceAsBefore();
  /// Lays the window out while it is hidden: its first picture has the size in which it is shown.
  void LayOut();

  /// Opens the displays that were shown when the program was left.
  void RestoreDisplays();

  DiagramView& View() { return *view_; }
  DiagramControl& Control() { return *control_; }
  DataWindows& Data() { return *data_; }
  /// The window of a display, by its id; null until it is opened.
  DisplayWindow* Display(std::string_view id);

 protected:
  void closeEvent(QCloseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
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
  void PlacePanels();
  void DisplaysCheck();
  void ShowReadout(const std::optional<Point>& at);
  void Run(const MenuRow& entry);

  Program& program_;
  WindowInteraction& interaction_;
  DiagramView* view_ = nullptr;
  std::unique_ptr<DiagramControl> control_;
  QScrollBar* sequence_ = nullptr;
  QProgressBar* bar_ = nullptr;  // while a routine tells how far it is
  QLabel* progress_ = nullptr;
  QLabel* readout_ = nullptr;
  ToolBar* tools_ = nullptr;
  StartPage* start_ = nullptr;
  QTimer fit_;  // of the diagram to another size
  std::vector<Panel*> panels_{};
  std::unique_ptr<DataWindows> data_;
  std::map<std::string_view, std::unique_ptr<DisplayWindow>> displays_;  // by id
  std::vector<MenuRow> menu_;
  std::vector<std::pair<QAction*, const MenuRow*>> entries_{};
};

}  // namespace vexa
