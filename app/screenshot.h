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

/// The command that opens a window or form of this name, or that stands behind a menu entry of this
/// name; None when there is none and for displays that this version lacks.
Command CommandToShow(std::string_view name);

/// The names of all windows and dialogs, each of which CommandToShow takes.
std::vector<std::string_view> WindowNames();

/// The one that chooses among the soundings of a file; it comes up for a file of several.
inline constexpr std::string_view kChooserName = "ChooseSounding";

struct WindowToShow {
  Command Opens = Command::None;  // None: the main window alone
  std::optional<int> Tab{};       // its page, from 1
  std::string Name{};             // as it was asked for
};

/// Opens it over the main window once that has been painted.
void OpenAfterPainting(SoundingWindow& window, const WindowToShow& what);

/// Waits for the picture to be on the window, opens what is wanted and saves that as a PNG image.
/// A window system that never shows the window ends the wait. Gives why no image was saved, nothing
/// when one was.
std::string TakeScreenshot(SoundingWindow& window, const WindowToShow& what,
                           const std::string& name);

}  // namespace vexa
