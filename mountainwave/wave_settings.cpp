#include "mountainwave/wave_settings.h"

#include <algorithm>
#include <initializer_list>
#include <vector>

#include "config/row_builder.h"
#include "config/system_file.h"
#include "core/numbers.h"

namespace vexa::mountainwave {
namespace {

constexpr auto kSame = Record::Same;
constexpr Range kPixels{100, 32767};
constexpr Range kCoordinates{-32768, 32767};

using Diagram = WaveOptions;

template <auto Path, Bools kBools = Bools::TrueFalse, Range kRange = Range{}>
constexpr auto OptionOf(std::string_view key, std::string_view form, Record record = Record::Own) {
  return Row<Path, kBools, kRange>({}, form, record).As(key).Named(key);
}
constexpr auto kForm = kDiagramForm;
constexpr auto kUnits = kUnitsForm;

bool Decays(const Diagram& set) {
  return set.DecayOn;
}

// Records of five, three, four, two and three fields.
constexpr SettingRow<Diagram> kOptionRows[] = {
    OptionOf<At<&Diagram::Units, &WaveUnits::Height>>("height units", kUnits)
        .Named("Heights")
        .Says("Unit of mountain heights, of amplitudes and of altitudes in the listing."),
    OptionOf<At<&Diagram::Units, &WaveUnits::Distance>>("distance units", kUnits, kSame)
        .Named("Distances")
        .Says("Unit of wavelengths, half-widths and of the distance downstream."),
    OptionOf<At<&Diagram::Units, &WaveUnits::Vertical>>("vertical velocity units", kUnits, kSame)
        .Named("Vertical velocity")
        .Says("Feet per minute or metres per second."),
    OptionOf<At<&Diagram::Units, &WaveUnits::Wind>>("wind units", kUnits, kSame)
        .Named("Normal wind")
        .Says("Unit of the wind profile at the side."),
    OptionOf<At<&Diagram::Scale>>("height scale", kUnits, kSame)
        .Named("Height scale of the diagram")
        .Says("Pressure in mb, or heights above the sea in kilometres or thousands of feet."),
    OptionOf<At<&Diagram::DecayOn>, kYes>("exponential wave decay", kForm)
        .Named("Exponential wave decay")
        .Says("Lets the waves weaken with the distance downstream."),
    OptionOf<At<&Diagram::DecayPercent>, kTrue, Range{0, 100}>("decay percent", kForm, kSame)
        .Named("Wave decay")
        .In("%")
        .When(Decays)
        .Says("How much of a wave is gone at the wavelength below."),
    OptionOf<At<&Diagram::DecayWavelength>, kTrue, Range{0.1, 100}>("decay at wavelength", kForm,
                                                                    kSame)
        .Named("at wavelength #")
        .When(Decays)
        .Says("The wavelength, counted from the mountain, at which so much is gone."),
    OptionOf<At<&Diagram::UpperLimit>, kTrue, Range{10, 900}>("upper limit", kForm)
        .Named(" Upper hPa Limit of Diagram")
        .In("hPa")
        .Says("The pressure at the top of the diagram."),
    OptionOf<At<&Diagram::Length>, kTrue, Range{0, 1000}>("distance shown", kForm, kSame)
        .Named("Distance downstream")
        .In("km")
        .Says("Length of the diagram behind the mountain; 0 makes room for four waves."),
    OptionOf<At<&Diagram::Shading>, kYes>("shading", kForm, kSame)
        .Named("Shade up- and downdraughts")
        .Says("Colours rising and sinking air by its velocity."),
    OptionOf<At<&Diagram::Terrain>, kYes>("terrain", kForm, kSame)
        .Named("Draw the mountains")
        .Says("Draws the profile of the mountains."),
    OptionOf<At<&Diagram::Line>>("wave lines", kForm)
        .Named("Wave lines")
        .Says("Weight of the lines along which the air flows."),
    OptionOf<At<&Diagram::LabelsOnly>, kYes>("labels only", kForm, kSame)
        .Named("LabelsOnly")
        .Says("Shows the interfaces with their labels and no lines and shades."),
    OptionOf<At<&Diagram::WindProfile>, kYes>("wind profile", kForm)
        .Named("Profile of the normal wind")
        .Says("Draws the wind across the mountain at the side."),
    OptionOf<At<&Diagram::ScorerProfile>, kYes>("Scorer profile", kForm, kSame)
        .Named("Profile of the Scorer parameter")
        .Says("Draws the Scorer parameter at the side; waves are trapped where it falls."),
    OptionOf<At<&Diagram::Traces>>("traces", kForm, kSame)
        .Named("Lines at")
        .Says("Streamlines begin at equal heights, isentropes at equal potential temperatures."),
};

// The state as its file has it: the mountains are two texts, "station", "default" or the values of
// a ridge in feet, nautical miles and degrees; those of the second with the distance behind them.
struct State {
  WaveState Of{};
  std::string First = "station";
  std::string Second{};
};

// Records of one, two, four, one and two fields.
constexpr SettingRow<State> kStateRows[] = {
    Row<At<&State::Of, &WaveState::Sounding>>("sounding"),
    Row<At<&State::First>>("mountain #1"),
    Row<At<&State::Second>>("mountain #2", kSame),
    Row<At<&State::Of, &WaveState::Left>, kTrue, kCoordinates>("left edge"),
    Row<At<&State::Of, &WaveState::Top>, kTrue, kCoordinates>("top edge", kSame),
    Row<At<&State::Of, &WaveState::Width>, kTrue, kPixels>("width", kSame),
    Row<At<&State::Of, &WaveState::Height>, kTrue, kPixels>("height", kSame),
    Row<At<&State::Of, &WaveState::SelectedWave>, kTrue, Range{1, 1000}>("selected wave"),
    Row<At<&State::Of, &WaveState::Layers>>("wave layers"),
    Row<At<&State::Of, &WaveState::RotorHints>, kYes>("rotor hints", kSame),
};

constexpr std::string_view kDefault = "default";

std::string Blanked(std::initializer_list<double> values) {
  std::string text;
  for (const double value : values) text += (text.empty() ? "" : " ") + Shortest(value);
  return text;
}

// So many numbers parted by blanks; none where there is anything else.
std::optional<std::vector<double>> NumbersOf(std::string_view text, std::size_t count) {
  std::vector<double> numbers;
  while (!Trim(text).empty()) {
    text.remove_prefix(text.find_first_not_of(' '));
    const std::size_t end = std::min(text.find(' '), text.size());
    const std::optional<double> number = ParseNumber(text.substr(0, end));
    if (!number) return std::nullopt;
    numbers.push_back(*number);
    text.remove_prefix(end);
  }
  if (numbers.size() != count) return std::nullopt;
  return numbers;
}

void TakeMountains(State& state) {
  if (const auto first = NumbersOf(state.First, 3)) {
    MountainParameters mountains{.First = {(*first)[0], (*first)[1], (*first)[2]}};
    if (const auto second = NumbersOf(state.Second, 4)) {
      mountains.Second = {(*second)[0], (*second)[1], (*second)[2]};
      mountains.DistanceNm = (*second)[3];
    }
    if (!WhyNoMountains(mountains).empty()) return;
    state.Of.Choice = MountainChoice::Entered;
    state.Of.Entered = mountains;
  } else if (state.First == kDefault) {
    state.Of.Choice = MountainChoice::Default;
  }
}

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

std::span<const SettingRow<WaveOptions>> WaveOptionRows() {
  return kOptionRows;
}

std::string_view DecayText(bool isOn) {
  return isOn ? " Exponential wave decay is ON " : " Exponential wave decay is OFF ";
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

std::string Write(const WaveState& from) {
  State state{.Of = from};
  const MountainParameters& mountains = from.Entered;
  const auto ridge = [](const Ridge& one) {
    return Blanked({one.HeightFt, one.HalfWidthNm, one.Axis});
  };
  if (from.Choice == MountainChoice::Default) state.First = kDefault;
  if (from.Choice == MountainChoice::Entered) {
    state.First = ridge(mountains.First);
    if (mountains.HasSecond()) {
      state.Second = ridge(mountains.Second) + " " + Shortest(mountains.DistanceNm);
    }
  }
  return WriteRows(state, kStateRows);
}

WaveOptions ReadWaveOptions(const std::string& text) {
  return ReadRows(text, kOptionRows);
}

WaveState ReadWaveState(const std::string& text) {
  State state = ReadRows(text, kStateRows);
  TakeMountains(state);
  return state.Of;
}

}  // namespace vexa::mountainwave
