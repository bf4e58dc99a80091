// The forecast's windows: ForecastHodo with the settings, the lists and the hodograph of each hour,
// ForecastMap with the soundings around, on which upwind ones are boxed by hand, and the form that
// says where series are saved.
#pragma once

#include <functional>
#include <optional>
#include <QDialog>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "app/display_window.h"
#include "app/map_window.h"
#include "app/window_table.h"
#include "program/forecast_display.h"

class QCheckBox;
class QGridLayout;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QSpinBox;
class QVBoxLayout;

namespace vexa {

class ForecastHodo final : public DisplayWindow {
 public:
  ForecastHodo(Program& program, const DisplayRow& row, Events events, QWidget* parent);
  ~ForecastHodo() override;

  void Follow() override;
  const Picture& Page() const override { return page_; }

 protected:
  void Compose() override { Draw(); }

 private:
  /// A typed setting: what shows it, and what takes it with the box that refuses it.
  struct Entry {
    QLineEdit* Line = nullptr;
    std::function<std::string()> Text{};
    std::function<std::optional<Box>(std::string_view)> Take{};
  };
  QWidget* BuildForm();
  void BuildLayers(QGridLayout& form);
  void BuildSurface(QGridLayout& form);
  void BuildSteps(QVBoxLayout& column);
  QLineEdit* AddEntry(const char* name, const char* caption, Entry entry);
  QPushButton* AddButton(const char* name, const char* caption, std::function<void()> does);
  void Take(Entry& entry);
  void Changed(Changes changes);
  void ShowState();
  void Draw();

  Picture page_{};
  std::vector<Entry> entries_{};
  std::vector<std::function<void()>> shows_{};
  QLineEdit* description_ = nullptr;
  QSpinBox* hour_ = nullptr;
  QPushButton* autoSave_ = nullptr;
  QLabel* status_ = nullptr;
  QPlainTextEdit* lists_ = nullptr;
};

/// A drag boxes winds, the next one draws the line from the station to where the air comes from.
/// With the shift key it moves the map.
class ForecastMap final : public MapWindow {
 public:
  ForecastMap(Program& program, const DisplayRow& row, Events events, QWidget* parent);

  void Follow() override;

 protected:
  map::AreaMap Map(const Surface& on, const map::MapFrame* frame) override;
  bool Grasp(vexa::Point at) override;
  void DragTo(vexa::Point at) override;
  void Release(vexa::Point at, bool moved) override;
  std::string TextAt(vexa::Point at) const override;
  void Escape() override;

 private:
  vexa::Point pressed_{};
};

/// Where a series is saved, and whether.
class ForecastAutoSave : public QDialog {
 public:
  ForecastAutoSave(Program& program, std::function<void()> changed, QWidget* parent);

 private:
  void ShowState();

  Program& program_;
  std::function<void()> changed_;
  QLineEdit* folder_ = nullptr;
  QPushButton* switch_ = nullptr;
};

std::span<const WindowRow> ForecastWindows();

}  // namespace vexa
