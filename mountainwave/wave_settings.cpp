#include "mountainwave/wave_settings.h"

#include "config/row_builder.h"
#include "config/system_file.h"

namespace vexa::mountainwave {
namespace {

constexpr auto kSame = Record::Same;
constexpr Range kPixels{100, 32767};
constexpr Range kCoordinates{-32768, 32767};

using Diagram = WaveOptions;

// Records of five, three, four, two and three fields.
constexpr SettingRow<Diagram> kOptionRows[] = {
    Row<At<&Diagram::Units, &WaveUnits::Height>>("height units"),
    Row<At<&Diagram::Units, &WaveUnits::Distance>>("distance units", kSame),
    Row<At<&Diagram::Units, &WaveUnits::Vertical>>("vertical velocity units", kSame),
    Row<At<&Diagram::Units, &WaveUnits::Wind>>("wind units", kSame),
    Row<At<&Diagram::Scale>>("height scale", kSame),
    Row<At<&Diagram::DecayOn>, kYes>("exponential wave decay"),
    Row<At<&Diagram::DecayPercent>, kTrue, Range{0, 100}>("decay percent", kSame),
    Row<At<&Diagram::DecayWavelength>, kTrue, Range{0.1, 100}>("decay at wavelength", kSame),
    Row<At<&Diagram::UpperLimit>, kTrue, Range{10, 900}>("upper limit"),
    Row<At<&Diagram::Length>, kTrue, Range{0, 1000}>("distance shown", kSame),
    Row<At<&Diagram::Shading>, kYes>("shading", kSame),
    Row<At<&Diagram::Terrain>, kYes>("terrain", kSame),
    Row<At<&Diagram::Line>>("wave lines"),
    Row<At<&Diagram::LabelsOnly>, kYes>("labels only", kSame),
    Row<At<&Diagram::WindProfile>, kYes>("wind profile"),
    Row<At<&Diagram::ScorerProfile>, kYes>("Scorer profile", kSame),
    Row<At<&Diagram::Traces>>("traces", kSame),
};

using State = WaveState;

// Records of one, two, four, one and two fields.
constexpr SettingRow<State> kStateRows[] = {
    Row<At<&State::Mountains>>("mountains"),
    Row<At<&State::SelectedMountain>, kTrue, Range{1, 2}>("mountain of the selected wave"),
    Row<At<&State::SelectedWave>, kTrue, Range{1, 1000}>("selected wave", kSame),
    Row<At<&State::Left>, kTrue, kCoordinates>("left edge"),
    Row<At<&State::Top>, kTrue, kCoordinates>("top edge", kSame),
    Row<At<&State::Width>, kTrue, kPixels>("width", kSame),
    Row<At<&State::Height>, kTrue, kPixels>("height", kSame),
    Row<At<&State::AllWaves>, kYes>("all waves"),
    Row<At<&State::OnDiagram>, kYes>("waves on the diagram"),
    Row<At<&State::RotorHints>, kYes>("rotor hints", kSame),
};

template <class S, std::size_t kCount>
Records<S> RecordsOf(const SettingRow<S> (&rows)[kCount]) {
  return MarkedRecords(std::span<const SettingRow<S>>(rows));
}

template <class S, std::size_t kCount>
std::string WriteRows(const S& settings, const SettingRow<S> (&rows)[kCount]) {
  SystemWriter writer;
  writer.Write(settings, RecordsOf(rows));
  return writer.Take();
}

template <class S, std::size_t kCount>
S ReadRows(const std::string& text, const SettingRow<S> (&rows)[kCount]) {
  S settings;
  SystemReader(std::string(), text).Read(settings, RecordsOf(rows));
  return settings;
}

}  // namespace

std::optional<Decay> WaveOptions::WaveDecay() const {
  if (!DecayOn) return std::nullopt;
  return Decay{DecayPercent, DecayWavelength};
}

std::string WaveOptionsFile() {
  return std::string(kSystemTag) + ".WAV";
}

std::string WaveStateFile() {
  return std::string(kSystemTag) + ".WVS";
}

std::string Write(const WaveOptions& options) {
  return WriteRows(options, kOptionRows);
}

std::string Write(const WaveState& state) {
  return WriteRows(state, kStateRows);
}

WaveOptions ReadWaveOptions(const std::string& text) {
  return ReadRows(text, kOptionRows);
}

WaveState ReadWaveState(const std::string& text) {
  return ReadRows(text, kStateRows);
}

}  // namespace vexa::mountainwave
