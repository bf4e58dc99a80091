// What leaves the program by a menu entry or a window's own menu: an image file, the clipboard,
// paper, the data as text. It needs the toolkit, so it stands here and not among the program's
// commands.
#pragma once

#include <functional>
#include <optional>
#include <QDialog>
#include <QSize>
#include <string>

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

/// Writes a picture as the image file that its name says. Fault 52 for another kind, 61 with the
/// text of the failure; nothing is written then.
[[nodiscard]] std::optional<Fault> SaveImageAs(const Picture& picture, const std::string& name,
                                               QSize sizePx, const paint::ImageSettings& settings);

/// Gives a window that shows a picture a menu of its own to save, copy and print it, with the keys
/// Ctrl+S, Ctrl+C and Ctrl+P.
void AddPictureMenu(QWidget& window, Program& program, std::function<const Picture&()> picture);

}  // namespace vexa
