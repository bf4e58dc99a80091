#include "cli/loaded_program.h"

#include <utility>

#include "analysis/analysis.h"
#include "core/files.h"
#include "core/platform.h"
#include "core/source_text.h"
#include "core/station_file.h"
#include "ingest/decoder.h"
#include "program/displays.h"
#include "program/hodograph_commands.h"

namespace vexa::cli {

Outcome<CommandSetup> SetupOf(const Arguments& arguments, Console& console) {
  const Outcome<SettingsStore> settings = CommandSettings(arguments, console);
  if (!settings) return settings.Error();
  const Outcome<int> index = SoundingIndex(arguments);
  if (!index) return index.Error();
  CommandSetup setup{.Settings = settings.Value(), .Index = index.Value()};
  if (const auto root = arguments.Value(kRootOption.Name)) {
    setup.Root = PathFromText(*root);
    setup.Stations = KnownStations(setup.Root, ProgramFolder());
  } else {
    setup.Stations = Stations();
  }
  return setup;
}

LoadedProgram::LoadedProgram(const CommandSetup& setup) : index_(setup.Index) {
  program_.Current.Ask = &quiet_;
  program_.Settings = setup.Settings;
  program_.Stations = setup.Stations;
  program_.Where.Root = setup.Root;
  if (setup.Root.empty()) return;
  LoadCompared(program_);
  LoadSevereTable(program_);
}

std::optional<Fault> LoadedProgram::Load(const std::string& file) {
  const std::filesystem::path path = PathFromText(file);
  Outcome<ingest::LoadedFile> loaded = ingest::LoadFile(path, index_, &program_.Stations, &quiet_);
  if (!loaded) return loaded.Error();
  program_.Current.Record = std::move(loaded.Value().Record);
  program_.Current.FileName = TextFromPath(path.filename());
  program_.Current.DataFolder = path.parent_path();
  program_.Current.LoadNotes = std::move(loaded.Value().Notes);
  program_.Results = analysis::Analyse(program_.Current.Record, program_.Set, program_.Adiabats);
  return std::nullopt;
}

std::optional<Fault> LoadedProgram::LoadBeside(const std::string& file, diagram::MultiMode mode) {
  Outcome<ingest::LoadedFile> loaded =
      ingest::LoadFile(PathFromText(file), index_, &program_.Stations, &quiet_);
  if (!loaded) return loaded.Error();
  program_.Others.push_back(std::move(loaded.Value().Record));
  program_.View.Mode = mode;
  return std::nullopt;
}

}  // namespace vexa::cli
