// The windows and dialogs of the application as a table: what a menu entry opens, by name. A row of
// the menu names one; so does the command line's --show. Displays have a table of their own
// (program/display_row.h) and a window for each of its rows.
#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "program/program.h"

namespace vexa {

class Panel;
class SoundingWindow;

/// What a window opens on.
struct Opening {
  Program& In;
  SoundingWindow& Over;
  std::string_view Name{};  // of the row
  std::string_view At{};    // page or topic; empty: the first

  /// Draws what was changed.
  void Show(Changes changes) const;
};

struct WindowRow {
  std::string_view Name{};  // object name of the window, or what an action is called
  void (*Open)(const Opening&) = nullptr;
  bool IsWindow = true;      // false: something that only a window can do, without one of its own
  bool WhileBusy = false;    // also while a command runs
  std::string_view Press{};  // button of the opened window that opens the one meant
};

/// The row of a name; null when there is none.
const WindowRow* FindWindow(std::string_view name);

/// The names of all windows and dialogs, those of the displays among them.
std::vector<std::string_view> WindowNames(std::span<const DisplayRow> displays);

/// The one that chooses among the soundings of a file; it comes up for a file of several.
inline constexpr std::string_view kChooserName = "ChooseSounding";

/// The panels beside the diagram; the window owns them.
std::vector<Panel*> MakePanels(Program& program, SoundingWindow& window);

}  // namespace vexa
