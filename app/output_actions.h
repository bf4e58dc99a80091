// What leaves the program by a menu entry or a window's own menu: an image file, the clipboard,
// paper, the data as text. It needs the toolkit, so it stands here and not among the program's
// commands.
#pragma once

#include <functional>
#include <QDialog>
#include <QSize>
#include <span>
#include <string_view>

#include "app/window_table.h"
#include "output/paint/dib_section.h"
#include "picture/picture.h"
#include "program/program.h"

class QSpinBox;
class QWidget;

namespace vexa {

class DisplayWindow;

std::span<const WindowRow> OutputWindows();

/// Size, resolution and JPEG quality of an image file.
class SaveImageWindow : public QDialog {
 public:
  SaveImageWindow(QSize displaySize, QWidget* parent);
  QSize SizePx() const;
  paint::ImageSettings Settings() const;

 private:
  QSpinBox* width_ = nullptr;
  QSpinBox* height_ = nullptr;
  QSpinBox* dpi_ = nullptr;
  QSpinBox* quality_ = nullptr;
};

/// Gives a display's window a menu of its own: to save, copy and print the picture, with the keys
/// Ctrl+S, Ctrl+C and Ctrl+P, to show what it says as a text and to open its options.
///
/// open  opens a form by its name at a page
void AddDisplayMenu(DisplayWindow& window, Program& program, const DisplayRow& display,
                    std::function<void(std::string_view form, std::string_view page)> open);

}  // namespace vexa
