// The cross-section's window: its menus, the field selector, the picture and what the pointer
// reads.
#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string_view>

#include "app/display_window.h"
#include "crosssection/section_plot.h"
#include "program/section_display.h"

class QAction;
class QFrame;
class QLabel;
class QMenu;
class QMenuBar;
class QPushButton;
class QVBoxLayout;

namespace vexa {

class DiagramView;

class CrossSectionWindow final : public DisplayWindow {
 public:
  CrossSectionWindow(Program& program, const DisplayRow& row, Events events, QWidget* parent);
  ~CrossSectionWindow() override;

  void Follow() override;
  const Picture& Page() const override { return plot_.Page; }

 protected:
  void Compose() override { Draw(); }
  void closeEvent(QCloseEvent* event) override;
  void Escape() override;

 private:
  QMenuBar* BuildMenus();
  void FillFileMenu(QMenu& file);
  void FillSectionMenu(QMenu& section);
  void FillOptionsMenu(QMenu& options);
  QWidget* BuildSelector();
  void Add(QMenu& menu, const char* name, const char* caption, const char* key,
           std::function<void()> does);
  void Choose(std::string_view code);
  void Changed();
  void Draw();
  void ShowControls();
  void Read(const std::optional<Point>& at);
  std::optional<std::filesystem::path> ChosenDataset(const char* title);
  void Open();
  void Save();
  void Edit();
  void ShowSoundings();
  void Transfer();
  /// The small diagram of a column; of none it goes.
  void ShowMini(std::optional<std::size_t> column);
  /// Does what an entry of the window's own menu does.
  void Press(const char* entry);

  crosssection::SectionPlot plot_{};
  std::optional<crosssection::FieldAnalysis> field_{};
  std::optional<std::size_t> under_{};  // the column under the pointer
  std::map<std::string_view, QPushButton*> buttons_{};
  QMenu* recent_ = nullptr;
  QAction* autoLoad_ = nullptr;
  QAction* inTime_ = nullptr;
  QAction* along_ = nullptr;
  QAction* interpolate_ = nullptr;
  QAction* update_ = nullptr;
  QLabel* readout_ = nullptr;
  QFrame* mini_ = nullptr;
  DiagramView* miniView_ = nullptr;
  Picture miniPage_{};
  std::optional<std::size_t> miniOf_{};
};

}  // namespace vexa
