// The status line says what a grey menu entry lacks while the pointer rests on it; of the others
// the toolkit does so itself.
#pragma once

#include <QMainWindow>
#include <QObject>

namespace vexa {

class MenuHints : public QObject {
 public:
  /// To be installed as an event filter on the menus of `window`, which owns it.
  explicit MenuHints(QMainWindow* window) : QObject(window), window_(window) {}

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QMainWindow* window_;
};

}  // namespace vexa
