// What the wave display remembers: the diagram's options and the state of its window, each in a
// settings file of its own.
#pragma once

#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "config/setting_row.h"
#include "config/view_settings.h"
#include "mountainwave/wave_model.h"
#include "mountainwave/wave_units.h"

namespace vexa::mountainwave {

enum class WaveScale { Pressure, Kilometers, Feet };
enum class WaveLine { Thick, Thin };
enum class WaveTraces { Streamlines, Isentropes };
enum class MountainChoice { Station, Default, Entered };

constexpr auto Words(WaveScale) {
  return std::to_array<std::string_view>({"mb", "km", "ft"});
}
constexpr auto Words(WaveLine) {
  return std::to_array<std::string_view>({"thick", "thin"});
}
constexpr auto Words(WaveTraces) {
  return std::to_array<std::string_view>({"streamlines", "isentropes"});
}

/// The wave diagram's options.
struct WaveOptions {
  WaveUnits Units{};
  WaveScale Scale = WaveScale::Kilometers;
  bool DecayOn = false;
  double DecayPercent = 20;
  double DecayWavelength = 1;  // at which so much is gone
  double UpperLimit = 100;     // hPa
  double Length = 0;           // km downstream; 0: as the waves ask for
  bool Shading = true;         // of up- and downdraughts
  bool Terrain = true;
  WaveLine Line = WaveLine::Thick;
  bool LabelsOnly = false;
  bool WindProfile = true;
  bool ScorerProfile = true;
  WaveTraces Traces = WaveTraces::Streamlines;

  std::optional<Decay> WaveDecay() const;
  bool operator==(const WaveOptions&) const = default;
};

/// The wave display's state.
struct WaveState {
  std::string Sounding{};  // its file, with "#2" behind it for the second of a file; empty: none
  MountainChoice Choice = MountainChoice::Station;
  MountainParameters Entered{};  // where they are entered; else without meaning
  int Left = 0, Top = 0, Width = 1100, Height = 760;  // pixels
  int SelectedWave = 1;                               // by the listing's order
  WaveLayers Layers = WaveLayers::None;               // on the thermodynamic diagram
  bool RotorHints = true;
  bool operator==(const WaveState&) const = default;
};

inline constexpr std::string_view kDiagramForm = "DiagramM";
inline constexpr std::string_view kUnitsForm = "MountainUnits";

/// A row for each option, in the order of its file; its place is the form that shows it.
std::span<const SettingRow<WaveOptions>> WaveOptionRows();

/// What the form of the options tells of decay.
inline constexpr std::string_view kDecayRemark =
    "Exponential wave decay is not an automatic feature of VEXA, but instead must be manually "
    "applied.  "
    "The above exponential wave decay options are made available for those users who "
    "have a need to model or replicate observed wave activitiy for specific instances.";
/// " Exponential wave decay is ON " or "... OFF ".
std::string_view DecayText(bool isOn);

/// "VEXA56+.WAV" and "VEXA56+.WVS".
std::string WaveOptionsFile();
std::string WaveStateFile();

/// The text of a file.
std::string Write(const WaveOptions& options);
std::string Write(const WaveState& state);

/// What a file says; where it ends or is damaged the defaults stand, without a message.
WaveOptions ReadWaveOptions(const std::string& text);
WaveState ReadWaveState(const std::string& text);

}  // namespace vexa::mountainwave
