// What leaves the program by a menu entry or a window's own menu: an image file, the clipboard,
// paper, the data as text. It needs the toolkit, so it stands here and not among the program's
// commands.
#pragma once

#include <functional>
#include <QDialog>
#include <QSize>

#include "output/paint/dib_section.h"
#include "picture/picture.h"
#include "program/program.h"

class QSpinBox;
class QWidget;

namespace vexa {

/// Carries out a command of these; false for any other.
bool RunOutputCommand(Program& program, Command command, QWidget* window, QSize displaySize);

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

/// Gives a window that shows a picture a menu of its own to save, copy and print it, with the keys
/// Ctrl+S, Ctrl+C and Ctrl+P.
void AddPictureMenu(QWidget& window, Program& program, std::function<const Picture&()> picture);

}  // namespace vexa
