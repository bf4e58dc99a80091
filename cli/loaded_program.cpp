#include "cli/loaded_program.h"

#include <memory>
#include <optional>
#include <utility>

#include "analysis/analysis.h"
#include "core/files.h"
#include "core/platform.h"
#include "core/source_text.h"
#include "core/station_file.h"
#include "program/displays.h"
#include "program/hodograph_commands.h"
#include "program/severe_table_file.h"

namespace vexa::cli {

Outcome<CommandSetup> SetupOf(const Arguments& arguments, Console& console) {
  const Outcome<SettingsStore> settings = CommandSettings(arguments, console);
  if (!settings) return settings.Error();
  CommandSetup setup{.Settings = settings.Value(),
                     .Index = SoundingIndex(arguments),
                     .Displays = console.Displays};
  if (const auto root = arguments.Value(kRootOption.Name)) {
    setup.Root = PathFromText(*root);
    setup.Stations = KnownStations(setup.Root, ProgramFolder());
  } else {
    setup.Stations = Stations();
  }
  return setup;
}

LoadedProgram::LoadedProgram(const CommandSetup& setup, Console& console)
    : inputs_(console, program_.Stations, setup.Index) {
  program_.Doc.AskThrough(&quiet_);
  program_.Settings = setup.Settings;
  program_.Stations = setup.Stations;
  program_.Where.Root = setup.Root;
  program_.DisplayTable = setup.Displays;
  if (setup.Root.empty()) return;
  LoadCompared(program_);
  LoadSevereTable(program_);
}

bool LoadedProgram::Load(const std::string& file) {
  std::optional<LoadedSounding> loaded = inputs_.Load(file);
  if (!loaded) return false;
  program_.Doc.Take(Document::GiveUpEdits(), *std::move(loaded));
  program_.Doc.Analyse(program_.Set, program_.Adiabats, {});
  return true;
}

bool LoadedProgram::LoadBeside(const std::string& file, diagram::MultiMode mode) {
  std::optional<LoadedSounding> loaded = inputs_.Load(file);
  if (!loaded) return false;
  program_.Others.push_back(std::make_shared<const AnalysedSounding>(*std::move(loaded)));
  program_.View.Mode = mode;
  return true;
}

}  // namespace vexa::cli
