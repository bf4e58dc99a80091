// The option forms, generated from the catalogue: tabs of controls, a preview on the diagram while
// the user tries values, and the ways out of it.
#pragma once

#include <functional>
#include <QDialog>
#include <span>
#include <string_view>
#include <vector>

#include "app/option_page.h"
#include "app/window_table.h"
#include "program/program.h"
#include "program/settings_commands.h"

class QDialogButtonBox;
class QLabel;
class QTabWidget;
class QTimer;

namespace vexa {

struct FormTab {
  std::string_view Caption{};
  std::string_view Place{};          // of the rows that it shows
  bool ShowsConfigurations = false;  // and the names of the configurations
};

struct FormRow {
  std::string_view Name{};  // object name
  std::string_view Title{};
  std::span<const FormTab> Tabs{};
};

std::span<const FormRow> OptionForms();
std::span<const WindowRow> FormWindows();

/// The form of a name; null when there is none.
const FormRow* FindForm(std::string_view name);
/// The name of the form that has this page, "Diagram/Tab 6"; empty when none has.
std::string_view FormOfPage(std::string_view place);

class ConfigWindow : public QDialog {
 public:
  /// `show` draws what a change made stale.
  ConfigWindow(Program& program, const FormRow& form, std::function<void(Changes)> show,
               QWidget* parent);

  /// Brings a page to the front, by the place of its rows.
  void ShowPage(std::string_view place);

  void accept() override;
  /// Takes everything back to what was in force when the form was opened.
  void reject() override;

 protected:
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  OptionPage* MakePage(const FormTab& tab);
  void BuildButtons();
  void Edited();
  void Preview();
  void Apply();
  void RestoreDefaults();
  void Say(const QString& text, bool isWrong);
  template <class Then>
  void WhenIdle(Then then);

  Program& program_;
  std::function<void(Changes)> show_;
  SettingsDraft opened_;
  SettingsDraft draft_;
  bool wasApplied_ = false;
  const FormRow& form_;
  std::vector<OptionPage*> pages_{};
  QTabWidget* tabs_ = nullptr;
  QLabel* message_ = nullptr;
  QDialogButtonBox* buttons_ = nullptr;
  QTimer* preview_ = nullptr;
};

}  // namespace vexa
