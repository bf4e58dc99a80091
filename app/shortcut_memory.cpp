#include "app/shortcut_memory.h"

#include <algorithm>
#include <QAction>
#include <QEvent>
#include <QKeySequence>
#include <QShortcut>
#include <QString>
#include <QWidget>

#include "program/program.h"

namespace vexa {

ShortcutMemory::ShortcutMemory(Program& program, QWidget* window)
    : QObject(window), program_(program) {
  auto* again = new QShortcut(QKeySequence(QStringLiteral("Ctrl+.")), window);
  again->setObjectName(QStringLiteral("RepeatKey"));
  connect(again, &QShortcut::activated, this, [this] { Repeat(); });
}

void ShortcutMemory::Watch(QAction* entry) {
  if (entry->shortcut().isEmpty()) return;
  entries_.push_back(entry);
  entry->installEventFilter(this);
}

bool ShortcutMemory::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Shortcut) {
    const auto entry = std::ranges::find(entries_, watched);
    program_.Set.System.ShortCutValue = static_cast<int>(entry - entries_.begin()) + 1;
  }
  return QObject::eventFilter(watched, event);
}

void ShortcutMemory::Repeat() {
  const auto number = static_cast<std::size_t>(program_.Set.System.ShortCutValue);
  if (number < 1 || number > entries_.size()) return;
  entries_[number - 1]->trigger();
}

}  // namespace vexa
