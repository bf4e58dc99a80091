// Opens any window of the program by its name, for a start with a window up and for pictures of
// windows.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "program/program.h"

class QWidget;

namespace vexa {

class SoundingWindow;

/// Whether there is a window, a display or a menu entry of this name that can be opened.
bool CanShow(const Program& program, std::string_view name);

struct WindowToShow {
  std::string Name{};        // empty: the main window alone
  std::optional<int> Tab{};  // its page, from 1
};

/// Opens it over the main window once that has been painted.
void OpenAfterPainting(SoundingWindow& window, const WindowToShow& what);

/// Waits for the picture to be on the window, opens what is wanted and saves that as a PNG image.
/// A window system that never shows the window ends the wait. Gives why no image was saved, nothing
/// when one was.
std::string TakeScreenshot(SoundingWindow& window, const WindowToShow& what,
                           const std::string& name);

}  // namespace vexa
