#include "program/wave_view.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "core/files.h"
#include "core/markers.h"
#include "core/numbers.h"
#include "core/path_forms.h"
#include "core/user_file.h"
#include "mountainwave/mountain_file.h"

namespace vexa {
namespace {

using mountainwave::MountainChoice;
using mountainwave::Site;
using mountainwave::Wave;
using mountainwave::WaveOptions;
using mountainwave::WaveState;

constexpr std::string_view kStateEnding = ".wvs";
constexpr std::string_view kOptionsEnding = ".wav";

std::string EndingOf(const std::filesystem::path& path) {
  std::string ending = TextFromPath(path.extension());
  std::ranges::transform(ending, ending.begin(), [](unsigned char letter) {
    return static_cast<char>(std::tolower(letter));
  });
  return ending;
}

std::optional<Fault> KeepFile(const std::filesystem::path& file, const std::string& text) {
  return SaveUserFile(file, text, [](std::string_view) { return std::string(); });
}

void TakeState(Program& program, WaveState state) {
  WaveView& view = program.Displays.Of<WaveView>();
  program.Set.Waves = state.Layers;
  view.State = std::move(state);
}

// The sounding in work by its file: "C:/data/a.RAW#2" is the second of a file.
std::string SoundingName(const Program& program) {
  const CurrentSounding& current = program.Current;
  if (current.FileName.empty()) return {};
  const std::filesystem::path whole = WholePath(current.FilePath());
  const int index = program.Doc.IndexInFile();
  return TextFromPath(NormalPath(whole)) + (index > 0 ? "#" + Shortest(index + 1) : "");
}

WaveState StateToSave(const Program& program) {
  WaveState state = program.Displays.Of<WaveView>().State;
  state.Sounding = SoundingName(program);
  state.Layers = program.Set.Waves;
  if (state.Choice != MountainChoice::Entered) state.Entered = {};
  return state;
}

}  // namespace

WaveOptions WaveOptionsOf(const Program& program, const Options& set) {
  const WaveView& view = program.Displays.Of<WaveView>();
  if (view.Options) return *view.Options;
  WaveOptions options;
  const bool isEnglish = set.GpmUnits == LengthUnits::Feet;
  options.Units = isEnglish ? mountainwave::kEnglishUnits : mountainwave::kMetricUnits;
  options.Units.Wind = set.Speed;
  options.Scale = isEnglish ? mountainwave::WaveScale::Feet : mountainwave::WaveScale::Kilometers;
  return options;
}

std::filesystem::path MountainFileOf(const Program& program) {
  const WaveView& view = program.Displays.Of<WaveView>();
  if (!view.MountainFile.empty()) return view.MountainFile;
  const std::filesystem::path& root = program.Where.Root;
  return root.empty() ? root : root / mountainwave::kMountainFileName;
}

std::optional<Fault> MountainFileFault(const Program& program) {
  const SoundingRecord& sounding = program.Current.Record;
  const std::filesystem::path file = MountainFileOf(program);
  if (file.empty() || mountainwave::MountainsOf(sounding)) return std::nullopt;
  return mountainwave::FindMountains(file, mountainwave::StationOf(sounding)).Wrong;
}

Site MountainsNow(const Program& program, const SoundingRecord& sounding) {
  const WaveView& view = program.Displays.Of<WaveView>();
  const WaveState& state = view.State;
  if (state.Choice == MountainChoice::Default) return std::nullopt;
  const bool isEntered = state.Choice == MountainChoice::Entered;
  if (isEntered && (view.EnteredFor == 0 || view.EnteredFor == mountainwave::StationOf(sounding))) {
    return state.Entered;
  }
  const Site known = mountainwave::SiteOf(sounding, MountainFileOf(program));
  return known || !isEntered ? known : Site(state.Entered);
}

Site MountainsNow(const Program& program) {
  return MountainsNow(program, program.Current.Record);
}

ShownWaves WavesOf(const Program& program, const Options& set, const SoundingRecord& sounding,
                   const analysis::LevelProfile& levels) {
  ShownWaves shown{.Mountains = MountainsNow(program, sounding),
                   .Set = WaveOptionsOf(program, set)};
  shown.Waves = mountainwave::ComputeWaves(sounding, levels, shown.Mountains);
  const std::vector<const Wave*> all = shown.Waves.All();
  const int number = program.Displays.Of<WaveView>().State.SelectedWave;
  if (!all.empty()) {
    const auto last = static_cast<int>(all.size());
    shown.Selected = number <= last ? all[static_cast<std::size_t>(number) - 1] : all.front();
  }
  return shown;
}

ShownWaves WavesNow(const Program& program, const Options& set) {
  return WavesOf(program, set, program.Current.Record, program.Results.Levels);
}

std::vector<diagram::LayerMark> WaveMarks(const Program& program, const Options& set) {
  std::vector<diagram::LayerMark> marks;
  if (set.Waves == WaveLayers::None) return marks;
  const ShownWaves shown = WavesNow(program, set);
  constexpr std::size_t kMost = 1000;
  for (const Wave* wave : shown.Waves.All()) {
    const bool isMeant = set.Waves == WaveLayers::All || wave == shown.Selected;
    if (!isMeant || wave->Kind == mountainwave::WaveKind::Harmonic || marks.size() == kMost) {
      continue;
    }
    const double height = wave->At.Height + program.Current.Record.ElevM;
    constexpr double kHalf = mountainwave::kNearbyM / 2;  // no two interfaces are nearer than twice
    marks.push_back({.Text = mountainwave::MarkText(*wave, shown.Set.Units),
                     .BaseHeight = height - std::min(kHalf, wave->At.Height),
                     .TopHeight = height + kHalf});
  }
  std::ranges::reverse(marks);
  return marks;
}

Changes EnterMountains(Program& program, const mountainwave::MountainParameters& mountains) {
  WaveView& view = program.Displays.Of<WaveView>();
  view.State.Choice = MountainChoice::Entered;
  view.State.Entered = mountains;
  view.State.SelectedWave = 1;
  view.EnteredFor = mountainwave::StationOf(program.Current.Record);
  return {.View = true};
}

Changes ChooseMountains(Program& program, MountainChoice choice) {
  WaveState& state = program.Displays.Of<WaveView>().State;
  state.Choice = choice;
  state.SelectedWave = 1;
  return {.View = true};
}

Changes ChangeWaveOptions(Program& program, const WaveOptions& options) {
  program.Displays.Of<WaveView>().Options = options;
  return {.View = true};
}

Changes MarkWaves(Program& program, WaveLayers layers) {
  program.Set.Waves = layers;
  return {.View = true};
}

Changes SelectWave(Program& program, int wave) {
  program.Displays.Of<WaveView>().State.SelectedWave = wave;
  const ShownWaves shown = WavesNow(program, program.Set);
  if (shown.Selected == nullptr) return {.View = true};
  const mountainwave::WavePlotInput input{shown.From(program.Current.Record),
                                          program.Results.Levels, program.Set};
  const WaveOptions adjusted = mountainwave::AdjustedTo(input);
  if (adjusted != shown.Set) {
    if (program.Current.Ask != nullptr) {
      program.Current.Ask->Ask({.Title = "Mountain-Wave",
                                .Text = std::string(mountainwave::kAdjusted),
                                .Icon = BoxIcon::Information});
    }
    return ChangeWaveOptions(program, adjusted);
  }
  return {.View = true};
}

void LoadWaveFiles(Program& program) {
  const std::filesystem::path& root = program.Where.Root;
  if (root.empty()) return;
  WaveView& view = program.Displays.Of<WaveView>();
  if (const auto text = ReadFile(root / mountainwave::WaveOptionsFile())) {
    view.Options = mountainwave::ReadWaveOptions(text.Value());
  }
  if (const auto text = ReadFile(root / mountainwave::WaveStateFile())) {
    view.State =
        mountainwave::ReadWaveState(text.Value());  // its layers are an option of their own
    view.State.SelectedWave = 1;
    view.EnteredFor = static_cast<int>(kNotReached);  // of another day: stations come first
  }
}

std::optional<Fault> KeepWaveOptions(const Program& program) {
  const WaveView& view = program.Displays.Of<WaveView>();
  if (program.Where.Root.empty() || !view.Options) return std::nullopt;
  return KeepFile(program.Where.Root / mountainwave::WaveOptionsFile(),
                  mountainwave::Write(*view.Options));
}

std::optional<Fault> KeepWaveState(const Program& program) {
  if (program.Where.Root.empty()) return std::nullopt;
  WaveState state = StateToSave(program);
  state.Sounding.clear();  // the next start opens its own
  const std::filesystem::path file = program.Where.Root / mountainwave::WaveStateFile();
  if (state == WaveState{} && !StampOf(file)) return std::nullopt;
  return KeepFile(file, mountainwave::Write(state));
}

bool IsWaveFile(const std::filesystem::path& path) {
  const std::string ending = EndingOf(path);
  return ending == kStateEnding || ending == kOptionsEnding;
}

std::optional<WaveSounding> SoundingOf(const WaveState& state, const std::filesystem::path& file) {
  if (state.Sounding.empty()) return std::nullopt;
  const auto in = [&file](std::string_view name) { return PathBelow(file.parent_path(), name); };
  WaveSounding sounding{in(state.Sounding)};
  const std::size_t mark = state.Sounding.rfind('#');
  if (IsThere(sounding.File) || mark == std::string::npos) return sounding;
  const auto number = ParseWhole(std::string_view(state.Sounding).substr(mark + 1));
  if (!number || *number < 1) return sounding;
  return WaveSounding{in(std::string_view(state.Sounding).substr(0, mark)), *number - 1};
}

std::optional<Fault> OpenWaveFile(Program& program, const std::filesystem::path& file) {
  const Outcome<std::string> text = ReadFile(file);
  if (!text) return text.Error();
  WaveView& view = program.Displays.Of<WaveView>();
  if (EndingOf(file) == kOptionsEnding) {
    view.Options = mountainwave::ReadWaveOptions(text.Value());
    return std::nullopt;
  }
  TakeState(program, mountainwave::ReadWaveState(text.Value()));
  view.EnteredFor = mountainwave::StationOf(program.Current.Record);
  std::filesystem::path beside = file;
  if (const auto options = ReadFile(beside.replace_extension(".WAV"))) {
    view.Options = mountainwave::ReadWaveOptions(options.Value());
  }
  return std::nullopt;
}

std::optional<Fault> SaveWaveFile(const Program& program, const std::filesystem::path& file) {
  const std::string options = mountainwave::Write(WaveOptionsOf(program, program.Set));
  if (EndingOf(file) == kOptionsEnding) return SaveFile(file, options);
  if (auto fault = SaveFile(file, mountainwave::Write(StateToSave(program)))) return fault;
  std::filesystem::path beside = file;
  return SaveFile(beside.replace_extension(".WAV"), options);
}

}  // namespace vexa
