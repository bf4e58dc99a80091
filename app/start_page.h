// What stands over the empty diagram while no sounding is open: the ways to one. Each is an entry
// of the menu; the page goes when a sounding is there. A start with a sounding never makes it.
#pragma once

#include <QFrame>
#include <vector>

#include "program/program.h"

class QAction;
class QMainWindow;
class QPushButton;

namespace vexa {

class StartPage : public QFrame {
 public:
  /// over  the widget in whose middle it stands; its window has the entries
  StartPage(const Program& program, const QMainWindow& window, QWidget* over);

  /// Shows the files that were opened last, or goes.
  void Follow();

 private:
  void Build();
  QPushButton* AddButton(QAction* entry, const QIcon& icon);

  struct RecentButton {
    QPushButton* Button = nullptr;
    QAction* Entry = nullptr;
  };
  const Program& program_;
  const QMainWindow& window_;
  std::vector<RecentButton> recent_{};
  QWidget* recentHead_ = nullptr;
};

}  // namespace vexa
