#include "app/menu_hints.h"

#include <QAction>
#include <QEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QStatusBar>

namespace vexa {

bool MenuHints::eventFilter(QObject* watched, QEvent* event) {
  const auto* menu = qobject_cast<QMenu*>(watched);
  if (menu != nullptr && event->type() == QEvent::MouseMove) {
    const QAction* entry = menu->actionAt(static_cast<QMouseEvent*>(event)->pos());
    if (entry != nullptr && !entry->isEnabled()) {
      window_->statusBar()->showMessage(entry->statusTip());
    }
  } else if (menu != nullptr && event->type() == QEvent::Hide) {
    window_->statusBar()->clearMessage();
  }
  return QObject::eventFilter(watched, event);
}

}  // namespace vexa
