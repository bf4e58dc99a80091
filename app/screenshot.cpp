#include "app/screenshot.h"

#include <memory>
#include <QApplication>
#include <QPixmap>
#include <QString>
#include <QTabWidget>
#include <QTimer>

#include "app/config_window.h"
#include "app/diagram_view.h"
#include "app/sounding_window.h"
#include "program/displays.h"
#include "program/menu.h"

namespace vexa {
namespace {

constexpr int kLongestWaitMs = 20000;
constexpr int kSettleMs = 200;  // a window lays itself out after it has been opened

struct NameRow {
  std::string_view Name;
  Command Opens;
};

constexpr NameRow kNames[] = {
    {"Hodograph", Command::Hodograph},     {"Hodogram3D", Command::Hodogram},
    {"InfoPanel", Command::Analyze},       {"PrintPlot", Command::PrintImage},
    {"SevereTable", Command::SevereTable}, {"HelpWindow", Command::HelpContents},
};

// The dialog that holds the input, else another window than the main one, else that.
QWidget* Opened(SoundingWindow& window) {
  if (QWidget* modal = QApplication::activeModalWidget()) return modal;
  for (QWidget* other : QApplication::topLevelWidgets()) {
    if (other != &window && other->isVisible() && !other->objectName().isEmpty()) return other;
  }
  return &window;
}

void ChoosePage(QWidget& shown, const WindowToShow& what) {
  auto* tabs = shown.findChild<QTabWidget*>();
  if (tabs != nullptr && what.Tab) tabs->setCurrentIndex(*what.Tab - 1);
}

// A dialog keeps its command from returning, so what follows is done by the clock: once the command
// has returned or a dialog is up.
template <class Then>
void Open(SoundingWindow& window, const WindowToShow& what, Then then) {
  const auto returned = std::make_shared<bool>(false);
  auto* clock = new QTimer(&window);
  QObject::connect(clock, &QTimer::timeout, &window, [clock, returned, then] {
    if (!*returned && QApplication::activeModalWidget() == nullptr) return;
    clock->stop();
    clock->deleteLater();
    then();
  });
  clock->start(kSettleMs);
  if (what.Opens != Command::None) window.Run(what.Opens);
  *returned = true;
}

}  // namespace

Command CommandToShow(std::string_view name) {
  for (const NameRow& row : kNames) {
    if (row.Name == name) return row.Opens;
  }
  if (const FormRow* form = FindForm(name)) return form->Opens;
  for (const DisplayRow& display : Displays()) {
    if (display.Name == name) return display.Opens;
  }
  for (const MenuRow& entry : MenuTree()) {
    if (entry.Name == name && entry.Does != Command::NotBuilt) return entry.Does;
  }
  return Command::None;
}

void OpenAfterPainting(SoundingWindow& window, const WindowToShow& what) {
  QTimer::singleShot(0, &window, [&window, what] {
    Open(window, what, [&window, what] { ChoosePage(*Opened(window), what); });
  });
}

bool TakeScreenshot(SoundingWindow& window, const WindowToShow& what, const std::string& name) {
  bool saved = false;
  const auto grab = [&] {
    saved = Opened(window)->grab().save(QString::fromStdString(name), "PNG");
    QApplication::exit();
  };
  // Not from within the paint event: the window is whole only after it.
  window.View().OnPainted([&] {
    QTimer::singleShot(0, &window, [&] {
      if (what.Opens == Command::None) {
        grab();
      } else {
        Open(window, what, [&] {
          ChoosePage(*Opened(window), what);
          QTimer::singleShot(kSettleMs, &window, grab);
        });
      }
    });
  });
  QTimer::singleShot(kLongestWaitMs, &window, [] { QApplication::exit(); });
  window.show();
  QApplication::exec();
  return saved;
}

}  // namespace vexa
