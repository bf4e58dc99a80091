#include "app/tool_bar.h"

#include <QAction>
#include <QLabel>
#include <QMainWindow>
#include <QMenu>
#include <QToolButton>
#include <span>
#include <string_view>

#include "app/qt_text.h"
#include "app/svg_icon.h"

namespace vexa {
namespace {

constexpr int kIconPx = 20;

struct ToolRow {
  std::string_view Icon;
  std::string_view Text;   // empty: the icon alone
  std::string_view Entry;  // of the menu, or a menu that drops down; empty: these choices drop down
  std::span<const std::string_view> Choices{};
  bool HasPlaceBehind = false;  // "3/8"
};

constexpr std::string_view kDiagrams[] = {"mnuSkewT", "mnuEmagram", "mnuTephigram"};

constexpr ToolRow kTools[] = {
    {"open", "Open", "mnuOpen"},
    {"back", "", "mnuStepBack", {}, true},
    {"forward", "", "mnuStepForward"},
    {"diagram", "Diagram", "", kDiagrams},
    {"layout", "Layout", "mnuLayouts"},
    {"zoom", "Zoom", "mnuZoom"},
    {"hodograph", "Hodograph", "mnuHodograph"},
    {"print", "Print", "mnuPrint"},
};

QAction* EntryOf(const QMainWindow& window, std::string_view name) {
  return window.findChild<QAction*>(ToQString(name));
}

QMenu* MenuOf(const ToolRow& row, const QMainWindow& window, QWidget* parent) {
  if (row.Choices.empty()) return window.findChild<QMenu*>(ToQString(row.Entry));
  auto* menu = new QMenu(parent);
  for (const std::string_view choice : row.Choices) menu->addAction(EntryOf(window, choice));
  return menu;
}

}  // namespace

ToolBar::ToolBar(const Program& program, QMainWindow& window)
    : QToolBar(QStringLiteral("Tool bar"), &window), program_(program) {
  setObjectName(QStringLiteral("ToolBar"));
  setMovable(false);
  setContextMenuPolicy(Qt::PreventContextMenu);
  setIconSize({kIconPx, kIconPx});
  setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  for (const ToolRow& row : kTools) {
    const QIcon icon = IconNamed(row.Icon);
    if (QAction* entry = EntryOf(window, row.Entry); entry != nullptr && !row.Entry.empty()) {
      auto* button = new QToolButton(this);
      button->setDefaultAction(entry);
      entry->setIconVisibleInMenu(false);
      entry->setIcon(icon);
      entry->setIconText(ToQString(row.Text));
      button->setToolButtonStyle(row.Text.empty() ? Qt::ToolButtonIconOnly
                                                  : Qt::ToolButtonTextBesideIcon);
      button->setAccessibleName(entry->statusTip());
      addWidget(button);
    } else {
      auto* button = new QToolButton(this);
      button->setObjectName(QStringLiteral("cmd") + ToQString(row.Text));
      button->setIcon(icon);
      button->setText(ToQString(row.Text));
      button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
      button->setPopupMode(QToolButton::InstantPopup);
      button->setMenu(MenuOf(row, window, button));
      addWidget(button);
    }
    if (!row.HasPlaceBehind) continue;
    label_ = new QLabel(this);
    label_->setObjectName(QStringLiteral("PlaceInList"));
    place_ = addWidget(label_);
  }
  for (QToolButton* button : findChildren<QToolButton*>()) button->setFocusPolicy(Qt::TabFocus);
  Follow();
}

void ToolBar::Follow() {
  const std::size_t count = program_.Listed.Size();
  label_->setText(QStringLiteral("%1/%2").arg(program_.Listed.Now() + 1).arg(count));
  place_->setVisible(count > 1);
}

}  // namespace vexa
