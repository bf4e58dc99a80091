#include "app/screenshot.h"

#include <memory>
#include <QApplication>
#include <QPixmap>
#include <QPushButton>
#include <QString>
#include <QTabWidget>
#include <QTimer>
#include <utility>

#include "app/diagram_view.h"
#include "app/qt_text.h"
#include "app/sounding_window.h"
#include "app/window_table.h"
#include "core/files.h"
#include "core/letter_case.h"
#include "core/numbers.h"
#include "program/displays.h"
#include "program/menu.h"

namespace vexa {
namespace {

constexpr int kLongestWaitMs = 20000;
constexpr int kSettleMs = 200;  // a window lays itself out after it has been opened

// A bitmap is saved in no time, where only the window's own is to be measured.
const char* FormatOf(const std::string& name) {
  return Lower(TextFromPath(PathFromText(name).extension())) == ".bmp" ? "BMP" : "PNG";
}

// The dialog that holds the input, else another window than the main one, else that.
QWidget* Opened(SoundingWindow& window) {
  if (QWidget* modal = QApplication::activeModalWidget()) return modal;
  for (QWidget* other : QApplication::topLevelWidgets()) {
    if (other != &window && other->isVisible() && !other->objectName().isEmpty()) return other;
  }
  return &window;
}

void PressButton(SoundingWindow& window, const WindowToShow& what) {
  const WindowRow* row = FindWindow(what.Name);
  if (row == nullptr || row->Press.empty()) return;
  if (auto* button = Opened(window)->findChild<QPushButton*>(ToQString(row->Press))) {
    button->click();
  }
}

// False when the window has no such page.
bool ChoosePage(QWidget& shown, const WindowToShow& what) {
  if (!what.Tab) return true;
  auto* tabs = shown.findChild<QTabWidget*>();
  if (tabs == nullptr || *what.Tab > tabs->count()) return false;
  tabs->setCurrentIndex(*what.Tab - 1);
  return true;
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
  if (!what.Name.empty()) window.Open(what.Name);
  *returned = true;
}

}  // namespace

bool CanShow(const Program& program, std::string_view name) {
  if (FindWindow(name) != nullptr || DisplayNamed(program.DisplayTable, name) != nullptr)
    return true;
  const std::vector<MenuRow> tree = MenuTree(program.DisplayTable);
  const MenuRow* entry = FindEntry(tree, name);
  return entry != nullptr && !entry->Does.IsMenu() && entry->Does.IsBuilt;
}

void OpenAfterPainting(SoundingWindow& window, const WindowToShow& what) {
  QTimer::singleShot(0, &window, [&window, what] {
    Open(window, what, [&window, what] {
      ChoosePage(*Opened(window), what);
      PressButton(window, what);
    });
  });
}

std::string TakeScreenshot(SoundingWindow& window, const WindowToShow& what,
                           const std::string& name) {
  std::string wrong = name + ": the picture cannot be saved";
  const auto grab = [&] {
    if (Opened(window)->grab().save(QString::fromStdString(name), FormatOf(name))) wrong.clear();
    QApplication::exit();
  };
  // Not from within the paint event: the window is whole only after it. What is opened may have the
  // diagram painted once more, and must not be opened again by that.
  bool begun = false;
  window.View().OnPainted([&] {
    if (std::exchange(begun, true)) return;
    QTimer::singleShot(0, &window, [&] {
      if (what.Name.empty()) {
        grab();
      } else {
        Open(window, what, [&] {
          if (!ChoosePage(*Opened(window), what)) {
            wrong = what.Name + " has no page " + Shortest(*what.Tab);
            QApplication::exit();
            return;
          }
          QTimer::singleShot(kSettleMs, &window, grab);
          PressButton(window, what);  // which returns only when a dialog that it opens is left
        });
      }
    });
  });
  QTimer::singleShot(kLongestWaitMs, &window, [] { QApplication::exit(); });
  window.show();
  QApplication::exec();
  return wrong;
}

}  // namespace vexa
