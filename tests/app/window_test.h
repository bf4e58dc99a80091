// What the tests of windows share: a program with its window at home in a folder of its own, nobody
// in front of it, and the events of mouse and keys.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QShortcut>
#include <stdexcept>
#include <string>
#include <vector>

#include "app/sounding_window.h"
#include "core/files.h"
#include "core/raw_file.h"
#include "picture/stroke.h"
#include "support/soundings.h"

namespace vexa::test {

/// A control of a window by its name.
template <class Control>
Control& In(QWidget& window, const char* name) {
  auto* found = window.findChild<Control*>(QString::fromUtf8(name));
  if (found == nullptr) throw std::runtime_error(name);
  return *found;
}

/// Where a widget that shows a whole page shows a place of it.
inline QPointF PlaceOn(const QWidget& view, const Picture& page, Point at) {
  const PageFit fit =
      FitPage(page.Width(), page.Height(),
              {0, 0, static_cast<double>(view.width()), static_cast<double>(view.height())});
  return {fit.Left + at.X * fit.Scale, fit.Top + at.Y * fit.Scale};
}

inline void Mouse(QWidget& on, QEvent::Type type, QPointF at,
                  Qt::MouseButton button = Qt::LeftButton,
                  Qt::KeyboardModifiers held = Qt::NoModifier) {
  const bool isUp = type == QEvent::MouseButtonRelease;
  QMouseEvent event(type, at, on.mapToGlobal(at), button,
                    isUp ? Qt::MouseButtons(Qt::NoButton) : Qt::MouseButtons(button), held);
  QApplication::sendEvent(&on, &event);
}

inline void PressKey(QWidget& on, int key, const QString& text = {},
                     Qt::KeyboardModifiers held = Qt::NoModifier) {
  QKeyEvent event(QEvent::KeyPress, key, held, text);
  QApplication::sendEvent(&on, &event);
}

struct Nobody : WindowInteraction {
  explicit Nobody(CommandGate& gate) : WindowInteraction(gate, Attendance::Unattended) {}
};

template <class User = Nobody>
class WindowTest : public testing::Test {
 protected:
  WindowTest() {
    program.Doc.AskThrough(&user);
    program.Where = FoldersBelow(folder.Path());
    std::filesystem::create_directories(program.Where.Data);
    window.resize(900, 700);
    window.show();
    QApplication::processEvents();
  }
  std::filesystem::path Saved(const std::string& name, const SoundingRecord& record) {
    return SavedText(name, WriteRaw(record));
  }
  std::filesystem::path SavedText(const std::string& name, const std::string& bytes) {
    const std::filesystem::path path = folder.Path() / PathFromText(name);
    std::filesystem::create_directories(path.parent_path());
    EXPECT_FALSE(SaveFile(path, bytes));
    return path;
  }
  /// The sounding as a file that the window has opened.
  void Open(const SoundingRecord& record) {
    window.OpenFiles({Saved("a.RAW", record)});
    QApplication::processEvents();
  }
  QAction& Entry(const char* name) { return In<QAction>(window, name); }
  void Choose(const char* entry) {
    Entry(entry).trigger();
    QApplication::processEvents();
  }
  template <class Window>
  Window& Shown(const char* display) {
    return dynamic_cast<Window&>(*window.Display(display));
  }

  TemporaryFolder folder;
  Program program;
  User user{program.Gate};
  SoundingWindow window{program, user};
};

}  // namespace vexa::test
