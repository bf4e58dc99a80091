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
#include "program/hodograph_commands.h"

namespace vexa {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kNewName = "NEW.RAW";
constexpr std::string_view kFilterTitle = "Filter Sounding Data";

// The first level, from 1, in which two profiles differ; where all levels that both have are the
// same, the one after these.
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
  if (!IsThere(path)) return true;
  const Outcome<std::string> text = ReadFile(path);
  return text && RecogniseRaw(text.Value()).has_value();
}

bool SaveTo(Program& program, const fs::path& path) {
  if (program.Doc.Save(path) != Status::Ok) return false;
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
  if (!path.has_extension()) {
    path += ".RAW";
    // The dialog has asked about the name as it was typed only.
    if (IsThere(path) && MayWriteNative(path) &&
        program.Doc.Report({kFaultFileExists, "SaveSounding", "", TextFromPath(path.filename())}) !=
            Answer::Yes) {
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
  program.Doc.SetStatus("CancelSave");
  return false;
}

// A native file that the sounding came from is written anew; all else gets a name first.
bool SaveAlteredSounding(Program& program) {
  const fs::path path = program.Current.FilePath();
  if (program.Doc.AsLoaded() && IsThere(path) && MayWriteNative(path) &&
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
  return {.Sounding = program.Doc.Adopt(std::move(edited), step)};
}

Changes AdoptNew(Program& program, SoundingRecord entered, const fs::path& path) {
  const auto pass = program.Gate.Enter();
  if (!pass) return {};
  const auto leave = commands::MayLeaveSounding(program);
  if (!leave) return {};
  program.Doc.Enter(*leave, std::move(entered),
                    path.empty() ? program.Where.Data / kNewName : path);
  program.Listed = {};
  EndStormMotion(program);
  return {.Sounding = true};
}

bool MayReplaceOnDisk(Program& program) {
  if (!program.Doc.ChangedOnDisk()) return true;
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

std::optional<Document::Leave> MayLeaveSounding(Program& program, std::string_view title) {
  if (const auto leave = program.Doc.LeaveUnaltered()) return leave;
  const std::string& file = program.Current.FileName;
  switch (program.Current.Ask->Ask({.Title = std::string(title),
                                    .Text = file +
                                            " sounding data has been changed.\n"
                                            "Do you want to save " +
                                            file + " changes ?",
                                    .Icon = BoxIcon::Question,
                                    .Buttons = BoxButtons::YesNoCancel,
                                    .WhenSilent = Answer::Cancel})) {
    case Answer::Yes:
    case Answer::Ok:
      if (SaveAlteredSounding(program)) return program.Doc.LeaveUnaltered();
      return std::nullopt;
    case Answer::No:
      return Document::GiveUpEdits();
    case Answer::Cancel:
      break;
  }
  program.Doc.SetStatus("CancelSave");
  return std::nullopt;
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
  const Changes changes{.Sounding = program.Doc.Adopt(FilterLevels(record), "filter")};
  tell("Of " + before + ",\n" + LevelCounts(record) +
       " remain.\n\nUse the Restore command to automatically retrieve the original sounding data.\n"
       "The sounding's source file is not altered, until specifically saved using the File/Save "
       "command.");
  return changes;
}

Changes RestoreSounding(Program& program) {
  return {.Sounding = program.Doc.Restore()};
}

Changes UndoEdit(Program& program) {
  return {.Sounding = program.Doc.Undo()};
}

Changes RedoEdit(Program& program) {
  return {.Sounding = program.Doc.Redo()};
}

}  // namespace commands
}  // namespace vexa
