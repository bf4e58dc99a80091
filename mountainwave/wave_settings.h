// What the wave display remembers: the diagram's options and the state of its window, each in a
// settings file of its own.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "mountainwave/wave_model.h"
#include "mountainwave/wave_units.h"

namespace vexa::mountainwave {

enum class WaveScale { Pressure, Kilometers, Feet };
enum class WaveLine { Thick, Thin };
enum class WaveTraces { Streamlines, Isentropes };
enum class WhichMountain { Default, One, Two };

constexpr auto Words(WaveScale) {
  return std::to_array<std::string_view>({"mb", "km", "ft"});
}
constexpr auto Words(WaveLine) {
  return std::to_array<std::string_view>({"thick", "thin"});
}
constexpr auto Words(WaveTraces) {
  return std::to_array<std::string_view>({"streamlines", "isentropes"});
}
constexpr auto Words(WhichMountain) {
  return std::to_array<std::string_view>({"default", "one", "two"});
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
  WhichMountain Mountains = WhichMountain::Default;
  int SelectedMountain = 1;
  int SelectedWave = 1;                               // by the listing's order
  int Left = 0, Top = 0, Width = 1100, Height = 760;  // pixels
  bool AllWaves = true;  // on the thermodynamic diagram; else the selected one
  bool OnDiagram = false;
  bool RotorHints = true;
  bool operator==(const WaveState&) const = default;
};

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
