#include "cli/loaded_program.h"

#include <utility>

#include "analysis/analysis.h"
#include "core/files.h"
#include "core/platform.h"
#include "core/source_text.h"
#include "core/station_file.h"
#include "program/displays.h"
#include "program/hodograph_commands.h"
#include "program/listed_soundings.h"

namespace vexa::cli {

Outcome<CommandSetup> SetupOf(const Arguments& arguments, Console& console) {
  const Outcome<SettingsStore> settings = CommandSettings(arguments, console);
  if (!settings) return settings.Error();
  CommandSetup setup{.Settings = settings.Value(), .Index = SoundingIndex(arguments)};
  if (const auto root = arguments.Value(kRootOption.Name)) {
    setup.Root = PathFromText(*root);
    setup.Stations = KnownStations(setup.Root, ProgramFolder());
  } else {
    setup.Stations = Stations();
  }
  return setup;
}

LoadedProgram::LoadedProgram(const CommandSetup& setup) : index_(setup.Index) {
  program_.Doc.AskThrough(&quiet_);
  program_.Settings = setup.Settings;
  program_.Stations = setup.Stations;
  program_.Where.Root = setup.Root;
  if (setup.Root.empty()) return;
  LoadCompared(program_);
  LoadSevereTable(program_);
}

std::optional<Fault> LoadedProgram::Load(const std::string& file) {
  const std::filesystem::path path = PathFromText(file);
  Loading loading = LoadSounding({.File = path, .Index = index_}, PolicyOf(program_));
  if (loading.Failed) return loading.Failed;
  program_.Doc.Take(Document::GiveUpEdits(), *std::move(loading.Sounding));
  program_.Doc.Analyse(program_.Set, program_.Adiabats, {});
  return std::nullopt;
}

std::optional<Fault> LoadedProgram::LoadBeside(const std::string& file, diagram::MultiMode mode) {
  Outcome<SharedSounding> loaded =
      LoadAnalysed({.File = PathFromText(file), .Index = index_}, PolicyOf(program_));
  if (!loaded) return loaded.Error();
  program_.Others.push_back(std::move(loaded.Value()));
  program_.View.Mode = mode;
  return std::nullopt;
}

}  // namespace vexa::cli
