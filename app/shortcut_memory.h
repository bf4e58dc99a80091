// Remembers which menu entry was chosen by its key last; Ctrl+. chooses it again.
#pragma once

#include <QObject>
#include <vector>

class QAction;
class QWidget;

namespace vexa {

struct Program;

class ShortcutMemory : public QObject {
 public:
  /// `window` owns it and has the key. ShortCutValue counts the watched entries from 1; 0: none
  /// yet.
  ShortcutMemory(Program& program, QWidget* window);

  /// Entries are watched in the order of the menus, those without a key, too.
  void Watch(QAction* entry);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Repeat();

  Program& program_;
  std::vector<QAction*> entries_{};
};

}  // namespace vexa
