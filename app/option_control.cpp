#include "app/option_control.h"

#include <array>
#include <cstddef>
#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QHBoxLayout>
#include <QIcon>
#include <QLineEdit>
#include <QLocale>
#include <QMenu>
#include <QPainter>
#include <QPixmap>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QToolButton>
#include <QWheelEvent>
#include <QWidget>
#include <utility>
#include <vector>

#include "config/row_builder.h"
#include "core/numbers.h"

namespace vexa {
namespace {

constexpr std::size_t kMostRadioButtons = 3;

constexpr std::array<std::string_view, 16> kColorNames = {
    "black", "navy", "green", "teal", "red",   "purple",  "brown", "light gray",
    "gray",  "blue", "lime",  "cyan", "coral", "magenta", "ocher", "white"};

QString WithUnit(const std::string& number, std::string_view unit) {
  return ToQString(unit.empty() ? number : number + " " + std::string(unit));
}

// The wheel scrolls the page, not the control that happens to lie under it.
template <class Base>
class Calm : public Base {
 public:
  explicit Calm(QWidget* parent) : Base(parent) { this->setFocusPolicy(Qt::StrongFocus); }

 protected:
  void wheelEvent(QWheelEvent* event) override {
    if (this->hasFocus()) {
      Base::wheelEvent(event);
    } else {
      event->ignore();
    }
  }
};

// Numbers in the spelling of the files, whatever the locale. What lies outside the range may be
// typed, since a longer number begins with it, but is not taken.
class NumberBox : public Calm<QDoubleSpinBox> {
 public:
  NumberBox(const RowInfo& row, std::function<void()> refused, QWidget* parent)
      : Calm(parent), refused_(std::move(refused)) {
    constexpr int kMostDecimals = 6;
    setLocale(QLocale::c());
    setDecimals(row.Kind == OptionKind::Whole ? 0 : kMostDecimals);
    setRange(row.Least, row.Most);
    setSingleStep(row.Kind == OptionKind::Whole || row.Most - row.Least > 20 ? 1 : 0.5);
    setKeyboardTracking(false);
    if (!row.Unit.empty()) setSuffix(" " + ToQString(row.Unit));
  }

  QString textFromValue(double value) const override { return ToQString(Shortest(value)); }
  double valueFromText(const QString& text) const override {
    return ParseNumber(Bare(text)).value_or(value());
  }
  QValidator::State validate(QString& text, int&) const override {
    const std::string bare = Bare(text);
    const std::optional<double> number = ParseNumber(bare);
    if (!number) {
      const bool begins = bare.find_first_not_of("+-.0123456789") == std::string::npos;
      return begins ? QValidator::Intermediate : QValidator::Invalid;
    }
    const bool isWhole = decimals() > 0 || bare.find('.') == std::string::npos;
    const bool fits = isWhole && *number >= minimum() && *number <= maximum();
    return fits ? QValidator::Acceptable : QValidator::Intermediate;
  }
  void fixup(QString& text) const override {
    text = textFromValue(value()) + suffix();
    if (refused_) refused_();
  }

 private:
  std::string Bare(QString text) const {
    if (text.endsWith(suffix())) text.chop(suffix().size());
    return text.trimmed().toStdString();
  }

  std::function<void()> refused_;
};

OptionControl MakeCheckBox(const RowInfo& row, ControlEvents events, QWidget* parent) {
  auto* box = new QCheckBox(parent);
  QObject::connect(box, &QCheckBox::clicked, box,
                   [words = row.Words, entered = std::move(events.Entered)](bool checked) {
                     entered(std::string(words[checked ? 1 : 0]));
                   });
  return {box, true,
          [box, words = row.Words](const std::string& text) { box->setChecked(text == words[1]); },
          [box](const QString& text) { box->setText(text); }};
}

QString CaptionOf(const RowInfo& row, std::size_t choice) {
  return ToQString(row.Choices.empty() ? row.Words[choice] : row.Choices[choice].Caption);
}

OptionControl MakeRadioButtons(const RowInfo& row, ControlEvents events, QWidget* parent) {
  auto* strip = new QWidget(parent);
  auto* line = new QHBoxLayout(strip);
  line->setContentsMargins(0, 0, 0, 0);
  auto* group = new QButtonGroup(strip);
  for (std::size_t i = 0; i < row.Words.size(); ++i) {
    auto* button = new QRadioButton(CaptionOf(row, i), strip);
    if (!row.Choices.empty()) button->setToolTip(ToQString(row.Choices[i].Hint));
    button->setObjectName(ToQString(std::string(row.Key) + "=" + std::string(row.Words[i])));
    group->addButton(button, static_cast<int>(i));
    line->addWidget(button);
  }
  line->addStretch(1);
  QObject::connect(group, &QButtonGroup::idClicked, strip,
                   [words = row.Words, entered = std::move(events.Entered)](int id) {
                     entered(std::string(words[static_cast<std::size_t>(id)]));
                   });
  const auto show = [group, strip, words = row.Words](const std::string& text) {
    for (std::size_t i = 0; i < words.size(); ++i) {
      if (words[i] != text) continue;
      QAbstractButton* button = group->button(static_cast<int>(i));
      button->setChecked(true);
      strip->setFocusProxy(button);
    }
  };
  return {strip, false, show, {}};
}

OptionControl MakeList(const RowInfo& row, ControlEvents events, QWidget* parent) {
  std::vector<std::string> values;
  auto* list = new Calm<QComboBox>(parent);
  for (std::size_t i = 0; i < row.Words.size(); ++i) {
    values.emplace_back(row.Words[i]);
    list->addItem(CaptionOf(row, i));
    if (!row.Choices.empty()) {
      list->setItemData(static_cast<int>(i), ToQString(row.Choices[i].Hint), Qt::ToolTipRole);
    }
  }
  for (const double number : row.Numbers) {
    values.push_back(Shortest(number));
    list->addItem(WithUnit(values.back(), row.Unit));
  }
  QObject::connect(list, &QComboBox::activated, list,
                   [values, entered = std::move(events.Entered)](int index) {
                     entered(values[static_cast<std::size_t>(index)]);
                   });
  const auto show = [list, values](const std::string& text) {
    for (std::size_t i = 0; i < values.size(); ++i) {
      if (values[i] == text) list->setCurrentIndex(static_cast<int>(i));
    }
  };
  return {list, false, show, {}};
}

OptionControl MakeNumber(const RowInfo& row, ControlEvents events, QWidget* parent) {
  QDoubleSpinBox* box = MakeNumberBox(row, parent, std::move(events.Refused));
  QObject::connect(
      box, &QDoubleSpinBox::valueChanged, box,
      [entered = std::move(events.Entered)](double value) { entered(Shortest(value)); });
  const auto show = [box](const std::string& text) {
    const QSignalBlocker silent(box);
    box->setValue(ParseNumber(text).value_or(0));
  };
  return {box, false, show, {}};
}

OptionControl MakeLine(ControlEvents events, QWidget* parent) {
  auto* line = new QLineEdit(parent);
  QObject::connect(line, &QLineEdit::editingFinished, line,
                   [line, entered = std::move(events.Entered)] {
                     if (line->isModified()) entered(line->text().toStdString());
                     line->setModified(false);
                   });
  return {line, false, [line](const std::string& text) { line->setText(ToQString(text)); }, {}};
}

QIcon SwatchIcon(const QColor& color) {
  QPixmap picture(28, 16);
  picture.fill(color);
  QPainter painter(&picture);
  painter.setPen(Qt::gray);
  painter.drawRect(0, 0, picture.width() - 1, picture.height() - 1);
  return QIcon(picture);
}

OptionControl MakeSwatch(ControlEvents events, QWidget* parent) {
  auto* button = new QToolButton(parent);
  button->setPopupMode(QToolButton::InstantPopup);
  button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  button->setFocusPolicy(Qt::StrongFocus);
  button->setIconSize({28, 16});
  auto* menu = new QMenu(button);
  button->setMenu(menu);
  std::vector<QAction*> entries;
  for (std::size_t i = 0; i < kColorNames.size(); ++i) {
    QAction* entry = menu->addAction(ToQString(kColorNames[i]));
    entry->setIconVisibleInMenu(true);
    QObject::connect(entry, &QAction::triggered, button,
                     [i, entered = events.Entered] { entered(Shortest(static_cast<int>(i))); });
    entries.push_back(entry);
  }
  const auto show = [button, entries, swatch = std::move(events.Swatch)](const std::string& text) {
    for (std::size_t i = 0; i < entries.size(); ++i) {
      entries[i]->setIcon(SwatchIcon(swatch(static_cast<int>(i))));
    }
    const auto index = static_cast<std::size_t>(ParseWhole(text).value_or(0));
    button->setIcon(entries[index]->icon());
    button->setText(entries[index]->text());
  };
  return {button, false, show, {}};
}

OptionControl MakeByKind(const RowInfo& row, ControlEvents events, QWidget* parent) {
  switch (row.Kind) {
    case OptionKind::YesNo:
    case OptionKind::TrueFalse:
      return MakeCheckBox(row, std::move(events), parent);
    case OptionKind::Choice:
      return row.Words.size() <= kMostRadioButtons
                 ? MakeRadioButtons(row, std::move(events), parent)
                 : MakeList(row, std::move(events), parent);
    case OptionKind::Whole:
    case OptionKind::Number:
      if (row.MayBeEmpty) return MakeLine(std::move(events), parent);
      return row.Numbers.empty() ? MakeNumber(row, std::move(events), parent)
                                 : MakeList(row, std::move(events), parent);
    case OptionKind::Color:
      return MakeSwatch(std::move(events), parent);
    case OptionKind::Text:
      break;
  }
  return MakeLine(std::move(events), parent);
}

}  // namespace

QDoubleSpinBox* MakeNumberBox(const RowInfo& row, QWidget* parent, std::function<void()> refused) {
  return new NumberBox(row, std::move(refused), parent);
}

OptionControl MakeOptionControl(const RowInfo& row, ControlEvents events, QWidget* parent) {
  OptionControl control = MakeByKind(row, std::move(events), parent);
  control.Widget->setObjectName(ToQString(row.Key));
  control.Widget->setToolTip(ToQString(row.Hint));
  control.Widget->setStatusTip(ToQString(row.Hint));
  control.Widget->setAccessibleName(ToQString(row.Caption));
  control.Widget->setAccessibleDescription(ToQString(row.Hint));
  return control;
}

}  // namespace vexa
