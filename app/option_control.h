// The control of one setting, built from its row: the kind, the words, the range and the unit say
// which it is. It speaks in the row's own texts, as files and the command line do.
#pragma once

#include <functional>
#include <QColor>
#include <QString>
#include <string>
#include <string_view>

#include "app/qt_text.h"
#include "config/setting_row.h"

class QDoubleSpinBox;
class QWidget;

namespace vexa {

/// What a control tells its form.
struct ControlEvents {
  std::function<void(const std::string& text)> Entered{};  // the user chose or typed a value
  std::function<void()> Refused{};                         // what was typed lies outside the range
  std::function<QColor(int index)> Swatch{};               // the colour of an index
};

struct OptionControl {
  QWidget* Widget = nullptr;  // object name: the row's key
  bool ShowsCaption = false;  // a check box carries its caption itself
  std::function<void(const std::string& text)> Show{};
  std::function<void(const QString& text)> Name{};  // sets that caption
};

/// A box for the row's number: its range and unit, spelled as in files, with as many decimals as
/// are typed. What lies outside the range is not taken and told to refused.
QDoubleSpinBox* MakeNumberBox(const RowInfo& row, QWidget* parent,
                              std::function<void()> refused = {});

/// Builds a control: words as radio buttons or, beyond three, a list; yes and no as a check box;
/// ranges as a spin box with the unit; fixed numbers as a list; colours as a swatch with a menu of
/// the sixteen; texts and numbers that may be left empty as a line.
OptionControl MakeOptionControl(const RowInfo& row, ControlEvents events, QWidget* parent);

}  // namespace vexa
