// The main window without its widgets: the sounding in work, the settings, what was computed and
// drawn from them, and the circle in which every change runs: a command changes something, Refresh
// computes and draws anew what follows from it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/adiabat_table.h"
#include "analysis/severe_table.h"
#include "config/options.h"
#include "config/settings_store.h"
#include "config/window_settings.h"
#include "core/folders.h"
#include "core/session_file.h"
#include "core/station_list.h"
#include "diagram/sounding_plot.h"
#include "program/command_gate.h"
#include "program/display_row.h"
#include "program/usual_values.h"
#include "program/view_state.h"
#include "sounding/document.h"
#include "sounding/sounding_set.h"

namespace vexa {

/// What a command changed, hence what is to be shown anew. Whether something is to be computed anew
/// as well, the document knows.
struct Changes {
  bool Sounding = false;
  bool View = false;  // settings, or how the diagram is looked at
  bool Any() const { return Sounding || View; }
  bool operator==(const Changes&) const = default;
};

struct Program {
  Program() = default;
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  Document Doc{};  // the sounding in work
  const CurrentSounding& Current = Doc.Current();
  const analysis::AnalysisResults& Results = Doc.Results();  // of it under Set
  SettingsStore Settings{};
  SettingsStore Written{};               // the settings as their files have them
  Options& Set = Settings.Set;           // what analyses and drawings read
  std::vector<std::string> Notices{};    // to be shown once in the status line
  std::string Resolution{};              // of the screen, "1024x768"
  analysis::AdiabatTable Adiabats{};     // filled as soundings are analysed
  std::vector<SharedSounding> Others{};  // overlay and comparison
  Folders Where{};
  std::filesystem::path HelpFile{};  // empty: none was found
  UsualValues Usual{};               // what a catalogue tells of the sounding in work
  StationList Stations{};            // of the root folder, for soundings that give a number only

  analysis::SevereTable Severe = analysis::DefaultSevereTable();

  std::span<const DisplayRow> DisplayTable = AllDisplays();
  DisplayStates Displays{};  // whose windows are up, and what one display alone keeps

  SoundingSet Listed{};  // opened together, for stepping
  /// Asks which of a file's soundings to open, by their titles; none: the user cancels. Not set,
  /// the first is opened.
  std::function<std::vector<int>(const std::vector<std::string>& titles)> ChooseSoundings{};

  bool DownloadTimer = false;  // a batch waits for its hour
  bool Beeper = false;         // the alarm sounds

  SessionPlace OwnSession{};             // where the session is kept
  std::optional<Session> KeptSession{};  // as it was written last
  ViewState View{};                      // how the diagram is looked at

  std::optional<diagram::SoundingPlot> Plot{};  // the last picture that was finished
  bool TephigramWarned = false;                 // its warning was shown
  bool DcapeHinted = false;                     // that it can be had faster
  bool Leaving = false;                         // Exit was chosen
  CommandGate Gate{};
};

struct MenuRow;

/// Carries out a menu entry's own part: its function, or the state of its display. What it opens is
/// opened by the window. While another command runs nothing happens.
Changes RunCommand(Program& program, const MenuRow& entry);
/// The same of an entry by its name.
Changes RunCommand(Program& program, std::string_view entry);

/// Computes and draws anew what the changes made stale. False while another command runs and when
/// the user stopped the drawing: the picture before stays then.
bool Refresh(Program& program, Changes changes);

/// Composes the diagram anew for another size of its window, without progress. False when it has
/// that size already, or when a command is at work, which will draw for the new size itself.
bool ComposeFor(Program& program, const Surface& on);

/// Loads the first of these files that can be loaded and lists all of them for stepping; what
/// cannot be loaded is reported. Without any success the sounding in work stays.
Changes OpenSoundings(Program& program, const std::vector<std::filesystem::path>& paths);

/// Loads one sounding of a file, which alone is listed then.
Changes OpenSounding(Program& program, const std::filesystem::path& path, int index);

/// Lists soundings for stepping behind the one in work, which stays; without one in work the first
/// of them is loaded.
Changes StepThrough(Program& program, std::vector<SoundingSet::Member> soundings);

/// Draws soundings over the one in work. What cannot be read is reported and left out.
Changes OverlayThese(Program& program, const std::vector<SoundingSet::Member>& soundings);

/// Opens a text that came without a file, kept as kPastedFile in the data folder; what is no
/// sounding is reported and kept nowhere.
Changes OpenText(Program& program, const std::string& text);
inline constexpr std::string_view kPastedFile = "Pasted.txt";

/// Loads the listed sounding of this index.
Changes SequenceSounding(Program& program, std::size_t index);

/// Caption of the main window: the program title, the sounding's and the place in the list.
std::string SoundingBanner(const Program& program);

/// What is wrong with the sounding in work, for the status indicator; empty when nothing is.
std::string FaultIndicator(const Program& program);

/// The notices as one line, each a sentence and a blank; they are shown once.
std::string TakeNotices(Program& program);

/// What the last load left out or had to work out, on one line; empty when nothing.
std::string LoadRemarks(const Program& program, std::string_view between = "; ");

}  // namespace vexa
