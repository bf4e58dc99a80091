// What the mountain-wave windows keep while the program runs: the options of the diagram, the
// mountains and the selected wave. All pictures and listings ask here which waves there are.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "core/fault.h"
#include "diagram/sounding_plot.h"
#include "mountainwave/wave_listing.h"
#include "mountainwave/wave_plot.h"
#include "mountainwave/wave_settings.h"
#include "program/program.h"

namespace vexa {

struct WaveView {
  std::optional<mountainwave::WaveOptions> Options{};  // none: the units of the program
  mountainwave::WaveState State{};
  int EnteredFor = 0;                    // the station for which mountains were entered; 0: for any
  std::filesystem::path MountainFile{};  // empty: VEXA.MTN of the program's folder
};

/// The waves of a sounding with what they were computed from.
struct ShownWaves {
  mountainwave::Site Mountains{};
  mountainwave::WaveResults Waves{};
  mountainwave::WaveOptions Set{};
  const mountainwave::Wave* Selected = nullptr;

  mountainwave::WaveSource From(const SoundingRecord& sounding) const {
    return {sounding, Mountains, Waves, Set, Selected};
  }
};

/// The user's options of the wave diagram, else those that go with the program's units.
mountainwave::WaveOptions WaveOptionsOf(const Program& program, const Options& set);

/// The mountain file of the program's folder; empty when there is no folder.
std::filesystem::path MountainFileOf(const Program& program);
/// What is wrong with it, as far as the sounding in work asks it.
std::optional<Fault> MountainFileFault(const Program& program);

/// The mountains of a sounding: its own or those of its station; where there are none those that
/// were entered last, else the default mountain. Mountains that were entered for this station come
/// first, and so does the default mountain when it was chosen.
mountainwave::Site MountainsNow(const Program& program, const SoundingRecord& sounding);
mountainwave::Site MountainsNow(const Program& program);

ShownWaves WavesOf(const Program& program, const Options& set, const SoundingRecord& sounding,
                   const analysis::LevelProfile& levels);
ShownWaves WavesNow(const Program& program, const Options& set);

/// The waves that the thermodynamic diagram marks, the weakest first.
std::vector<diagram::LayerMark> WaveMarks(const Program& program, const Options& set);

// What the forms change. Each is followed by a drawing of all displays.

Changes EnterMountains(Program& program, const mountainwave::MountainParameters& mountains);
Changes ChooseMountains(Program& program, mountainwave::MountainChoice choice);
/// By the order of the listing, from 1. Where the wave stands outside the diagram the user is told,
/// and its upper limit or its length becomes one that shows it.
Changes SelectWave(Program& program, int wave);
Changes ChangeWaveOptions(Program& program, const mountainwave::WaveOptions& options);
/// Whether the thermodynamic diagram marks waves: none, the selected one or all.
Changes MarkWaves(Program& program, WaveLayers layers);

// Their files.

/// Reads the options and the state that the program's folder has.
void LoadWaveFiles(Program& program);
/// Writes them where they differ from what is there.
[[nodiscard]] std::optional<Fault> KeepWaveOptions(const Program& program);
[[nodiscard]] std::optional<Fault> KeepWaveState(const Program& program);

inline constexpr std::string_view kWaveFileFilter =
    "Wave display (*.WVS)|*.WVS|Wave options (*.WAV)|*.WAV";

/// Whether a name ends in .WVS or .WAV.
bool IsWaveFile(const std::filesystem::path& path);
/// A sounding and its place in its file.
struct WaveSounding {
  std::filesystem::path File{};
  int Index = 0;
};
/// The sounding of a display's state; the path is that of the state's file.
std::optional<WaveSounding> SoundingOf(const mountainwave::WaveState& state,
                                       const std::filesystem::path& file);
/// Reads a file of either kind, with a state the options beside it that have its name. A sounding
/// that the state names is to be loaded before: it is the one that entered mountains are for.
/// Fault 53 for a file that is not there.
[[nodiscard]] std::optional<Fault> OpenWaveFile(Program& program,
                                                const std::filesystem::path& file);
/// Writes either kind, with a state the options beside it.
[[nodiscard]] std::optional<Fault> SaveWaveFile(const Program& program,
                                                const std::filesystem::path& file);

}  // namespace vexa
