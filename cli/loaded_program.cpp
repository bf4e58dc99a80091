#include "cli/loaded_program.h"

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
  CommandSetup setup{.Settings = settings.Value()};
  if (const auto root = arguments.Value(kRootOption.Name)) {
    setup.Root = PathFromText(*root);
    setup.Stations = KnownStations(setup.Root, ProgramFolder());
  } else {
    setup.Stations = Stations();
  }
  return setup;
}

LoadedProgram::LoadedProgram(const CommandSetup& setup) {
  program_.Current.Ask = &quiet_;
  program_.Settings = setup.Settings;
  program_.Stations = setup.Stations;
  program_.Where.Root = setup.Root;
  if (setup.Root.empty()) return;
  LoadCompared(program_);
  LoadSevereTable(program_);
}

std::optional<Fault> LoadedProgram::Load(const std::string& file) {
  ingest::LoadContext context{.Ask = &quiet_, .Stations = &program_.Stations};
  const Outcome<SourceText> source = ingest::ReadSource(PathFromText(file), context.Notes);
  if (!source) return source.Error();
  SoundingRecord record;
  if (auto fault = ingest::DecodeSounding(source.Value(), context, record)) return fault;
  const std::filesystem::path path = PathFromText(file);
  program_.Current.Record = std::move(record);
  program_.Current.FileName = TextFromPath(path.filename());
  program_.Current.DataFolder = path.parent_path();
  program_.Current.LoadNotes = std::move(context.Notes);
  program_.Results = analysis::Analyse(program_.Current.Record, program_.Set, program_.Adiabats);
  return std::nullopt;
}

}  // namespace vexa::cli
