// A page of an option form: the controls of its settings in a scrolling column, each with its
// caption and the letter that chooses it. Array elements stand in boxes of their own.
#pragma once

#include <functional>
#include <QScrollArea>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "app/option_control.h"
#include "config/setting_row.h"

class QFormLayout;
class QLabel;

namespace vexa {

/// A setting as a page sees it, whatever struct it is in.
struct OptionField {
  const RowInfo* Row = nullptr;
  std::string Box{};  // title of the box it stands in; empty: none
  std::function<std::string()> Write{};
  std::function<bool(std::string_view text)> Read{};  // false: not taken
  std::function<void()> Restore{};                    // its default
  std::function<bool()> Matters{};                    // false: without effect at present
};

struct PageEvents {
  std::function<void()> Changed{};
  /// A value was not taken; the text names the setting and its range.
  std::function<void(const QString& text, QWidget* at)> Refused{};
  std::function<QColor(int index)> Swatch{};
  std::string PressureUnit = "mb";  // behind pressures, as everywhere else
};

class OptionPage : public QScrollArea {
 public:
  OptionPage(std::vector<OptionField> fields, PageEvents events, QWidget* parent);

  /// Shows in every control what its setting is now.
  void ShowValues();
  /// Gives every setting of the page its default.
  void RestoreDefaults();

 private:
  std::string_view UnitOf(const RowInfo& row) const;
  void AddField(const OptionField& field, QFormLayout& column);
  QString Lettered(std::string_view caption);

  std::vector<OptionField> fields_;
  PageEvents events_;
  std::vector<OptionControl> controls_{};
  std::vector<QLabel*> labels_{};  // of each control; null where it shows its caption itself
  std::set<char> letters_{};       // taken for captions
};

}  // namespace vexa
