#include "program/start_up.h"

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <iterator>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "core/error_report.h"
#include "core/files.h"
#include "core/known_stations.h"
#include "core/numbers.h"
#include "core/platform.h"
#include "core/station_file.h"
#include "download/template_file.h"
#include "mountainwave/mountain_file.h"
#include "program/commands.h"
#include "program/displays.h"
#include "program/hodograph_commands.h"
#include "program/reference_tables.h"
#include "program/session_memory.h"
#include "program/settings_commands.h"
#include "program/severe_table_file.h"
#include "program/wave_view.h"

namespace vexa {
namespace {

constexpr std::string_view kFolderTestFile = "dumptestfile123.xyz";

// Tries a name that no file has yet, so that neither a link nor another's file is touched.
bool CanWrite(const std::filesystem::path& folder) {
  constexpr int kMostNames = 100;
  std::FILE* file = nullptr;
  std::filesystem::path path;
  for (int i = 0; i < kMostNames && file == nullptr; ++i) {
    path = folder / kFolderTestFile;
    if (i > 0) path += Shortest(i);
    file = OpenFile(path, "wbx");
    if (file == nullptr && errno != EEXIST) return false;
  }
  if (file == nullptr) return false;
  const bool wrote = std::fputs("test", file) >= 0;
  const bool closed = std::fclose(file) == 0;
  Remove(path);
  return wrote && closed;
}

// What is missing then is told of once, when the surroundings are checked.
void FindFolders(Program& program, const StartArguments& arguments) {
  program.Where = FoldersBelow(ResolveRoot(arguments.Root, arguments.ProgramFolder));
  if (!CreateFolders(program.Where)) RemoveLeftovers(program.Where.Root);
}

// The help text lies in the program folder, where a user may translate it; else the shipped one.
void FindHelp(Program& program, const StartArguments& arguments) {
  FindFolders(program, arguments);
  const std::filesystem::path own = program.Where.Root / kHelpFile;
  program.HelpFile = IsThere(own) ? own : ShippedFile(arguments.ProgramFolder, kHelpFile);
}

template <SettingsFile kFile>
void ReadSettings(Program& program, const StartArguments&) {
  if (kFile == SettingsFile::System) program.Settings = {};
  LoadSettingsFile(program.Where.Root, kFile, program.Settings, program.Notices);
  program.Written = program.Settings;
  if (kFile == SettingsFile::Main) FollowFolders(program);
}

void ChooseFonts(Program&, const StartArguments&) {}  // by the window, once the stage is told

void TellOfTable(Program& program, std::string_view file, const Outcome<TableState>& state) {
  if (!state) {
    // A folder that cannot be written is reported once.
    if (CanWrite(program.Where.Root)) program.Notices.push_back(state.Error().Detail + '.');
  } else if (state.Value() == TableState::Rebuilt) {
    program.Notices.push_back(std::string(file) + " was damaged and has been built anew.");
  }
}

template <std::size_t kNumber>
void ReadTable(Program& program, const StartArguments&) {
  const ReferenceTable& table = ReferenceTables()[kNumber];
  TellOfTable(program, table.File, ReadOrBuild(table, program.Where.Root));
}

void ReadReference(Program& program, const StartArguments&) {
  TellOfTable(program, kReferenceSounding, ReadOrBuildReference(program.Where.Reference));
}

// A file that comes with the program, for the user to change.
void Bring(Program& program, const StartArguments& arguments, std::string_view name) {
  const auto fault = EnsureShipped(program.Where.Root, arguments.ProgramFolder, name);
  if (fault && CanWrite(program.Where.Root)) program.Doc.Report(*fault);
}

// Without a list of its own and without a shipped one the program works, and says of each sounding
// that its station is not known.
void ReadStationList(Program& program, const StartArguments& arguments) {
  Bring(program, arguments, kStationFileName);
  Bring(program, arguments, mountainwave::kMountainFileName);
  const std::filesystem::path file = program.Where.Root / kStationFileName;
  if (!IsThere(file)) return;
  // A copy of the shipped list need not be read before a sounding asks for its station.
  if (IsAsShipped(file, arguments.ProgramFolder)) {
    program.Stations = KnownStations(program.Where.Root, arguments.ProgramFolder);
    return;
  }
  CurrentSounding beside = program.Doc.Beside();
  if (LoadStations(beside, program.Where.Root, program.Stations) == Status::Ok) {
    ConvertStationFile(beside, program.Where.Root, program.Stations);
  }
  program.Doc.SetStatus(beside.StatusText);
}

void ClearSounding(Program& program, const StartArguments&) {
  program.Doc.Take(Document::GiveUpEdits(), {});
  EndStormMotion(program);
}

// One message for a program folder that cannot be written, else one for each folder in it.
void CheckFolders(Program& program) {
  std::vector<std::filesystem::path> refused;
  const std::optional<Fault> fault = CreateFolders(program.Where);
  if (!CanWrite(program.Where.Root)) {
    refused.push_back(program.Where.Root);
  } else {
    for (const std::filesystem::path* folder : {&program.Where.Export, &program.Where.Forecast}) {
      if (!CanWrite(*folder)) refused.push_back(*folder);
    }
    if (fault && refused.empty()) refused.push_back(PathFromText(fault->File));
  }
  for (const std::filesystem::path& folder : refused) {
    program.Current.Ask->Ask(
        Box{.Title = "VEXA program file/folder access problem...",
            .Text = "VEXA is unable to access program folder:  " + TextFromPath(folder) +
                    "\nBe sure the Folder and Share Permissions are sufficient."});
  }
}

void CheckScreen(Program& program, const StartArguments& arguments) {
  constexpr int kLeastHeight = 600;  // pixels
  const bool isKnown = arguments.ScreenWidth > 0 && arguments.ScreenHeight > 0;
  const bool isLarge = arguments.ScreenWidth >= program.Settings.System.LeastScreenWidth &&
                       arguments.ScreenHeight >= kLeastHeight;
  if (!isKnown || isLarge) return;
  program.Current.Ask->Ask(
      Box{.Title = "Inadequate Screen Resolution",
          .Text = "WARNING: VEXA is designed to function on screen resolutions of 800 x 600 or "
                  "greater.\nSome VEXA options may not properly function at this screen "
                  "resolution."});
}

void CheckSurroundings(Program& program, const StartArguments& arguments) {
  ReadStationList(program, arguments);
  Bring(program, arguments, download::kSourcesFileName);
  CheckFolders(program);
  CheckScreen(program, arguments);
}

void PrepareWindow(Program& program, const StartArguments&) {
  LoadSevereTable(program);
  LoadWaveFiles(program);
}

using Stage = void (*)(Program&, const StartArguments&);
constexpr Stage kStages[] = {FindHelp,
                             ReadSettings<SettingsFile::System>,
                             ReadSettings<SettingsFile::Soaring>,
                             ReadSettings<SettingsFile::Hodograph>,
                             ReadSettings<SettingsFile::Hodogram3D>,
                             ReadSettings<SettingsFile::Main>,
                             ChooseFonts,
                             ReadSettings<SettingsFile::Window>,
                             ReadSettings<SettingsFile::Listing>,
                             ClearSounding,
                             ReadTable<0>,
                             ReadTable<1>,
                             ReadTable<2>,
                             ReadReference,
                             CheckSurroundings,
                             PrepareWindow};

// "AA" for the first stage, "BB" for the second: recorded while it runs, for the error reporter.
std::string StageMark(std::size_t number) {
  return std::string(2, static_cast<char>('A' + number));
}

class AutoLoading {
 public:
  explicit AutoLoading(Document& doc) : doc_(doc) { doc_.SetAutoLoading(true); }
  ~AutoLoading() { doc_.SetAutoLoading(false); }
  AutoLoading(const AutoLoading&) = delete;
  AutoLoading& operator=(const AutoLoading&) = delete;

 private:
  Document& doc_;
};

}  // namespace

void StartUp(Program& program, const StartArguments& arguments) {
  for (std::size_t i = 0; i < std::size(kStages); ++i) {
    const ProcedureScope here = program.Doc.In(StageMark(i));
    kStages[i](program, arguments);
    if (arguments.Done) arguments.Done(StageMark(i));
  }
}

Changes AutoLoadCode(Program& program) {
  const SystemOptions& set = program.Set.System;
  if (!set.Autoload || set.AutoFile.empty()) return {};
  const AutoLoading marked(program.Doc);
  if (set.AutoFile == kMultipleMarker) {
    std::vector<std::filesystem::path> paths;
    for (const std::string& name : ReadList(program.Where.Root, kSoundingList, &program.Notices)) {
      paths.push_back(PathFromSetting(name));
    }
    return OpenSoundings(program, paths);
  }
  const Changes changes =
      OpenSoundings(program, {PathFromSetting(set.AutoDrive) / PathFromSetting(set.AutoFile)});
  // Another program may have put something else in the file's place since it was chosen.
  const std::string& format = program.Current.Record.DataFormat;
  if (changes.Sounding && !set.AutoType.empty() && format != set.AutoType) {
    program.Notices.push_back(set.AutoFile + " was " + set.AutoType +
                              " when it was chosen to load at start and is " + format + " now.");
  }
  return changes;
}

}  // namespace vexa
