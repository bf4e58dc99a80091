#include "program/edit_commands.h"

#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

#include "core/data_checks.h"
#include "core/error_report.h"
#include "core/files.h"
#include "core/level_filter.h"
#include "core/numbers.h"
#include "core/raw_file.h"
#include "program/commands.h"

namespace vexa {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kNewName = "NEW.RAW";
constexpr std::string_view kFilterTitle = "Filter Sounding Data";

// The indicator follows each edit: an edit may mend what the check found.
void CheckEdited(Program& program) {
  program.Current.QcFault = CheckRecord(program.Current.Record).Number;
}

template <class Edit>
Changes Do(Program& program, std::string_view name, Edit edit) {
  SoundingRecord before = program.Current.Record;
  edit(program.Current.Record);
  if (before == program.Current.Record) return {};
  program.History.Remember(name, std::move(before), program.Current.Record);
  CheckEdited(program);
  return {.Sounding = true};
}

// Where the levels of one profile begin to differ, 1-based; one more than the shorter has when
// they don't up to there.
template <class Same>
int FirstDifference(int before, int after, Same same) {
  int level = 1;
  while (level <= before && level <= after && same(level, level)) ++level;
  return level;
}

// "delete level 17" when that alone leads from one profile to the other, else "edit levels".
template <class Same>
std::string ProfileEdit(int before, int after, std::string_view what, Same same) {
  const int first = FirstDifference(before, after, same);
  if (first > before && first > after) return {};
  const auto equalAbove = [&](int i, int j) {
    while (i <= before && j <= after && same(i, j)) ++i, ++j;
    return i > before && j > after;
  };
  const std::string level = std::string(what) + ' ' + Shortest(first);
  if (equalAbove(first + 1, first)) return "delete " + level;
  if (equalAbove(first, first + 1)) return "add " + level;
  if (equalAbove(first + 1, first + 1)) return "change " + level;
  return "edit " + std::string(what) + 's';
}

// True for a file that may become a native one: none is there, or a native one.
bool MayWriteNative(const fs::path& path) {
  std::error_code ignored;
  if (!fs::exists(path, ignored)) return true;
  const Outcome<std::string> text = ReadFile(path);
  return text && RecogniseRaw(text.Value()).has_value();
}

bool SaveTo(Program& program, const fs::path& path) {
  CurrentSounding& current = program.Current;
  const fs::path folder = std::exchange(current.DataFolder, path.parent_path());
  const std::string name = std::exchange(current.FileName, TextFromPath(path.filename()));
  if (SaveRAW(current) != Status::Ok) {
    current.DataFolder = folder;
    current.FileName = name;
    return false;
  }
  current.Record.DataFormat = kRawTag;
  program.History.MarkSaved();
  MarkOnDisk(program);
  if (!program.Loaded) program.Loaded = current.Record;
  commands::MakeRecentFiles(program);
  return true;
}

std::string NativeName(const Program& program) {
  fs::path name = PathFromText(program.Current.FileName);
  name.replace_extension(".RAW");
  return TextFromPath(program.Current.DataFolder / name);
}

// The path under which the user wants the sounding; none when cancelled or refused.
std::optional<fs::path> AskForName(Program& program) {
  const std::optional<std::string> chosen =
      program.Current.Ask->ChooseFile({.Title = "Save Sounding As",
                                       .Folder = NativeName(program),
                                       .Filter = "VEXA soundings (*.RAW)|*.RAW|All files (*)|*",
                                       .Saving = true});
  if (!chosen) return std::nullopt;
  fs::path path = PathFromText(*chosen);
  std::error_code ignored;
  if (!path.has_extension()) {
    path += ".RAW";
    // The dialog has asked about the name as it was typed only.
    if (fs::exists(path, ignored) && MayWriteNative(path) &&
        ErrorReport(program.Current, {kFaultFileExists, "SaveSounding", "",
                                      TextFromPath(path.filename())}) != Answer::Yes) {
      return std::nullopt;
    }
  }
  if (MayWriteNative(path)) return path;
  program.Current.Ask->Ask(
      {.Title = std::string(kErrorBoxTitle),
       .Text = TextFromPath(path.filename()) +
               " holds data of another format, which the native format would replace.\n"
               "Choose another name."});
  return std::nullopt;
}

bool SaveSounding(Program& program) {
  const std::optional<fs::path> path = AskForName(program);
  if (path) return SaveTo(program, *path);
  program.Current.StatusText = "CancelSave";
  return false;
}

// A native file that the sounding came from is written anew; all else gets a name first.
bool SaveAlteredSounding(Program& program) {
  const fs::path path = program.Current.FilePath();
  std::error_code ignored;
  if (program.Loaded && fs::exists(path, ignored) && MayWriteNative(path) &&
      MayReplaceOnDisk(program)) {
    return SaveTo(program, path);
  }
  return SaveSounding(program);
}

std::string LevelCounts(const SoundingRecord& record) {
  return Shortest(record.NumTempLevels()) + " temperature and " + Shortest(record.NumWindLevels()) +
         " wind levels";
}

}  // namespace

std::string EditName(const SoundingRecord& before, const SoundingRecord& after) {
  const std::string names[] = {
      ProfileEdit(before.NumTempLevels(), after.NumTempLevels(), "level",
                  [&](int i, int j) {
                    return before.Press(i) == after.Press(j) && before.Temp(i) == after.Temp(j) &&
                           before.Dewpt(i) == after.Dewpt(j);
                  }),
      ProfileEdit(before.NumWindLevels(), after.NumWindLevels(), "wind level",
                  [&](int i, int j) {
                    return before.WindHgt(i) == after.WindHgt(j) &&
                           before.WindDir(i) == after.WindDir(j) &&
                           before.WindSpd(i) == after.WindSpd(j);
                  }),
      ProfileEdit(before.NumCloudLayers(), after.NumCloudLayers(), "cloud layer",
                  [&](int i, int j) { return before.Clouds(i) == after.Clouds(j); }),
  };
  std::string only;
  for (const std::string& name : names) {
    if (name.empty()) continue;
    if (!only.empty()) return "edit sounding";
    only = name;
  }
  return only.empty() ? "edit heading" : only;
}

Changes AdoptEdit(Program& program, SoundingRecord edited, std::string_view name) {
  const auto pass = program.Gate.Enter();
  if (!pass) return {};
  const std::string step =
      name.empty() ? EditName(program.Current.Record, edited) : std::string(name);
  return Do(program, step, [&edited](SoundingRecord& record) { record = std::move(edited); });
}

Changes AdoptNew(Program& program, SoundingRecord entered) {
  const auto pass = program.Gate.Enter();
  if (!pass) return {};
  CurrentSounding& current = program.Current;
  ClearData(current.Record);
  current.FileName = kNewName;
  current.DataFolder = program.Where.Data;
  current.LoadNotes.clear();
  program.Listed.clear();
  program.ListedNow = 0;
  program.Loaded.reset();
  program.OnDisk.reset();
  program.History.Clear();
  return Do(program, "enter sounding",
            [&entered](SoundingRecord& record) { record = std::move(entered); });
}

bool IsAltered(const Program& program) {
  return program.History.IsChanged() &&
         !(program.OnDisk && *program.OnDisk == program.Current.Record);
}

std::optional<FileStamp> StampOf(const fs::path& path) {
  std::error_code failed;
  const fs::file_time_type written = fs::last_write_time(path, failed);
  if (failed) return std::nullopt;
  const std::uintmax_t size = fs::file_size(path, failed);
  if (failed) return std::nullopt;
  return FileStamp{written, size};
}

void MarkOnDisk(Program& program) {
  program.OnDisk = program.Current.Record;
  program.OnDiskStamp = StampOf(program.Current.FilePath());
}

bool ChangedOnDisk(const Program& program) {
  return program.OnDisk && program.OnDiskStamp != StampOf(program.Current.FilePath());
}

bool MayReplaceOnDisk(Program& program) {
  if (!ChangedOnDisk(program)) return true;
  return program.Current.Ask->Ask({.Title = std::string(kErrorBoxTitle),
                                   .Text = program.Current.FileName +
                                           " was changed by another program since it was opened."
                                           "\nReplace existing file?",
                                   .Icon = BoxIcon::Question,
                                   .Buttons = BoxButtons::YesNo,
                                   .WhenSilent = Answer::No}) == Answer::Yes;
}

bool MayExit(Program& program) {
  const auto pass = program.Gate.Enter();
  return pass && commands::MayLeaveSounding(program, "Exit VEXA . . .");
}

namespace commands {

bool MayLeaveSounding(Program& program, std::string_view title) {
  if (!IsAltered(program)) return true;
  const std::string& file = program.Current.FileName;
  switch (program.Current.Ask->Ask({.Title = std::string(title),
                                    .Text = file +
                                            " sounding data has been changed.\n"
                                            "Do you want to save " +
                                            file + " changes ?",
                                    .Icon = BoxIcon::Question,
                                    .Buttons = BoxButtons::YesNoCancel,
                                    .WhenSilent = Answer::No})) {
    case Answer::Yes:
    case Answer::Ok:
      return SaveAlteredSounding(program);
    case Answer::No:
      return true;
    case Answer::Cancel:
      break;
  }
  program.Current.StatusText = "CancelSave";
  return false;
}

Changes SaveAs(Program& program) {
  if (program.Current.Record.NumTempLevels() == 0) return {};
  return {.View = SaveSounding(program)};
}

Changes FilterSounding(Program& program) {
  const SoundingRecord& record = program.Current.Record;
  if (record.NumTempLevels() == 0) return {};
  const auto tell = [&program](std::string text) {
    program.Current.Ask->Ask({.Title = std::string(kFilterTitle),
                              .Text = std::move(text),
                              .Icon = BoxIcon::Information});
  };
  if (!IsHighDensity(record)) {
    tell("This is a non-high-density sounding and does not typically need to be filtered.");
    return {};
  }
  program.Current.Ask->Status("Standby while data is being filtered . . .");
  program.Current.Ask->Yield();
  const std::string before = LevelCounts(record);
  const Changes changes =
      Do(program, "filter", [](SoundingRecord& changed) { changed = FilterLevels(changed); });
  tell("Of " + before + ",\n" + LevelCounts(record) +
       " remain.\n\nUse the Restore command to automatically retrieve the original sounding data.\n"
       "The sounding's source file is not altered, until specifically saved using the File/Save "
       "command.");
  return changes;
}

Changes RestoreSounding(Program& program) {
  if (!CanRestore(program)) return {};
  return Do(program, "restore", [&program](SoundingRecord& record) { record = *program.Loaded; });
}

bool CanRestore(const Program& program) {
  return program.Loaded && *program.Loaded != program.Current.Record;
}

Changes UndoEdit(Program& program) {
  if (!program.History.Undo(program.Current.Record)) return {};
  CheckEdited(program);
  return {.Sounding = true};
}

Changes RedoEdit(Program& program) {
  if (!program.History.Redo(program.Current.Record)) return {};
  CheckEdited(program);
  return {.Sounding = true};
}

}  // namespace commands
}  // namespace vexa
