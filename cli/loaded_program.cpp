#include "cli/loaded_program.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <optional>
#include <utility>

#include "analysis/analysis.h"
#include "core/files.h"
#include "core/folders.h"
#include "core/known_stations.h"
#include "core/platform.h"
#include "core/source_text.h"
#include "mountainwave/mountain_file.h"
#include "program/displays.h"
#include "program/hodograph_commands.h"
#include "program/listed_soundings.h"
#include "program/severe_table_file.h"
#include "program/wave_view.h"

namespace vexa::cli {
namespace {

std::filesystem::path MountainFile(const Arguments& arguments) {
  const std::filesystem::path own =
      ResolveRoot(arguments.Value(kRootOption.Name), ProgramFolder()) /
      mountainwave::kMountainFileName;
  return StampOf(own) ? own : ShippedFile(ProgramFolder(), mountainwave::kMountainFileName);
}

}  // namespace

Outcome<CommandSetup> SetupOf(const Arguments& arguments, Console& console) {
  const Outcome<SettingsStore> settings = CommandSettings(arguments, console);
  if (!settings) return settings.Error();
  CommandSetup setup{.Settings = settings.Value(),
                     .Index = SoundingIndex(arguments),
                     .MountainFile = MountainFile(arguments),
                     .Displays = console.Displays};
  if (const auto root = arguments.Value(kRootOption.Name)) {
    setup.Root = PathFromText(*root);
    setup.Stations = KnownStations(setup.Root, ProgramFolder());
  } else {
    setup.Stations = Stations();
  }
  return setup;
}

mountainwave::Site StationMountains::Of(const SoundingRecord& sounding) {
  mountainwave::Site own = mountainwave::MountainsOf(sounding);
  if (own || file_.empty()) return own;
  mountainwave::MountainLookup looked =
      mountainwave::FindMountains(file_, mountainwave::StationOf(sounding));
  if (looked.Wrong && told_.insert(looked.Wrong->Detail).second) {
    ReportFault(console_, TextFromPath(file_), *looked.Wrong);
  }
  return looked.Found;
}

LoadedProgram::LoadedProgram(const CommandSetup& setup, Console& console)
    : inputs_(console, program_.Stations, setup.Index), mountains_(setup.MountainFile, console) {
  program_.Doc.AskThrough(&quiet_);
  program_.Settings = setup.Settings;
  program_.Stations = setup.Stations;
  program_.Where.Root = setup.Root;
  program_.DisplayTable = setup.Displays;
  program_.Displays.Of<WaveView>().MountainFile = setup.MountainFile;
  if (setup.Root.empty()) return;
  LoadCompared(program_);
  LoadSevereTable(program_);
  LoadWaveFiles(program_);
}

bool LoadedProgram::Load(const std::string& file) {
  return IsWaveFile(PathFromText(file)) ? LoadWaveDisplay(file) : LoadAt(file, std::nullopt);
}

bool LoadedProgram::LoadAt(const std::string& file, std::optional<int> index) {
  std::optional<LoadedSounding> loaded = inputs_.Load(file, index);
  if (!loaded) return false;
  program_.Doc.Take(Document::GiveUpEdits(), *std::move(loaded));
  mountains_.Of(program_.Current.Record);  // only for what it tells
  program_.Doc.Analyse(program_.Set, program_.Adiabats, {});
  if (const auto told = FollowCatalogue(program_)) inputs_.Note(file, *told);
  return true;
}

// The sounding that a wave display's state names, with the state.
bool LoadedProgram::LoadWaveDisplay(const std::string& file) {
  const std::filesystem::path path = PathFromText(file);
  const Outcome<std::string> text = ReadFile(path);
  if (!text) {
    inputs_.Fail(file, text.Error());
    return false;
  }
  const auto sounding = SoundingOf(mountainwave::ReadWaveState(text.Value()), path);
  if (!sounding) {
    inputs_.Fail(file, "it names no sounding");
    return false;
  }
  if (!LoadAt(TextFromPath(sounding->File), sounding->Index)) return false;
  if (const auto fault = OpenWaveFile(program_, path)) {
    inputs_.Fail(file, *fault);
    return false;
  }
  return true;
}

bool LoadedProgram::LoadAll(const std::vector<std::string>& files) {
  std::vector<SoundingSet::Member> members;
  std::size_t now = 0;
  bool isLoaded = false;
  for (const std::string& file : files) {
    const std::size_t first = members.size();
    std::ranges::move(MembersOf(PathFromText(file)), std::back_inserter(members));
    if (isLoaded || !LoadAt(file, std::nullopt)) continue;
    isLoaded = true;
    now = first;
  }
  if (isLoaded) program_.Listed = SoundingSet(std::move(members), now);
  return isLoaded;
}

bool LoadedProgram::LoadBeside(const std::string& file, diagram::MultiMode mode) {
  std::optional<LoadedSounding> loaded = inputs_.Load(file);
  if (!loaded) return false;
  program_.Others.push_back(std::make_shared<const AnalysedSounding>(*std::move(loaded)));
  program_.View.Mode = mode;
  return true;
}

}  // namespace vexa::cli
