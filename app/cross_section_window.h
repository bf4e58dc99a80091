// The cross-section's window: its menus, the field selector, the picture and what the pointer
// reads.
#pragma once

#include <map>
#include <optional>
#include <string_view>

#include "app/display_window.h"
#include "crosssection/section_plot.h"
#include "program/section_display.h"

class QAction;
class QLabel;
class QMenu;
class QMenuBar;
class QPushButton;
class QVBoxLayout;

namespace vexa {

class CrossSectionWindow final : public DisplayWindow {
 public:
  CrossSectionWindow(Program& program, const DisplayRow& row, Events events, QWidget* parent);
  ~CrossSectionWindow() override;

  void Follow() override;
  const Picture& Page() const override { return plot_.Page; }

 protected:
  void Compose() override { Draw(); }
  void closeEvent(QCloseEvent* event) override;

 private:
  QMenuBar* BuildMenus();
  QWidget* BuildSelector();
  void Add(QMenu& menu, const char* name, const char* caption, const char* key,
           std::function<void()> does);
  void Choose(std::string_view code);
  void Changed();
  void Draw();
  void ShowControls();
  void Read(const std::optional<Point>& at);
  void Open();
  void Save();
  void Transfer();

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
};

}  // namespace vexa
