// Commands of the File menu.
#include <algorithm>
#include <filesystem>
#include <iterator>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include "core/data_checks.h"
#include "core/error_report.h"
#include "core/files.h"
#include "core/folders.h"
#include "core/path_forms.h"
#include "core/platform.h"
#include "ingest/decoder.h"
#include "ingest/sounding_files.h"
#include "program/commands.h"
#include "program/edit_commands.h"
#include "program/hodograph_commands.h"
#include "program/listed_soundings.h"
#include "program/session_memory.h"

namespace vexa::commands {
namespace {

constexpr std::string_view kAllFiles = "All files (*)|*";

// One entry for all files, since formats are recognised by what the files hold, and one for each
// format by its patterns.
std::string OpenFilter() {
  std::string filter(kAllFiles);
  for (const ingest::Decoder& decoder : ingest::Decoders()) {
    const std::string patterns(decoder.FilePatterns);
    filter += "|" + std::string(decoder.Name) + " (" + patterns + ")|" + patterns;
  }
  return filter;
}

// Files chosen together are stepped through in the order of the file lists.
void SortForStepping(std::vector<std::filesystem::path>& paths, const SystemOptions& set) {
  namespace fs = std::filesystem;
  const auto precedes = [&set](const fs::path& a, const fs::path& b) {
    switch (set.SortMode) {
      case FileOrder::Date: {
        const auto first = StampOf(a).value_or(FileStamp{}).Written;
        const auto second = StampOf(b).value_or(FileStamp{}).Written;
        if (first != second) return first < second;
        break;
      }
      case FileOrder::Size: {
        const auto first = StampOf(a).value_or(FileStamp{}).Size;
        const auto second = StampOf(b).value_or(FileStamp{}).Size;
        if (first != second) return first < second;
        break;
      }
      case FileOrder::Type:
        if (a.extension() != b.extension()) return a.extension() < b.extension();
        break;
      case FileOrder::Name:
        break;
    }
    return a.filename() < b.filename();
  };
  std::ranges::stable_sort(paths, precedes);
  if (set.SoftFlip) std::ranges::reverse(paths);
}

std::vector<std::string> ListedTexts(const Program& program) {
  std::vector<std::string> texts;
  for (const SoundingSet::Member& member : program.Listed.Members()) {
    std::string text = TextFromPath(member.File);
    if (texts.empty() || texts.back() != text) texts.push_back(std::move(text));
  }
  return texts;
}

}  // namespace

void MakeRecentFiles(Program& program) {
  const std::string latest = TextFromPath(program.Current.FilePath());
  auto& files = program.Settings.Window.RecentFiles;
  const auto known = std::ranges::find(files, latest);
  std::rotate(files.begin(), known == files.end() ? files.end() - 1 : known,
              known == files.end() ? files.end() : known + 1);
  files.front() = latest;
}

namespace {

// Those of a file that the user chooses are stepped through.
std::vector<SoundingSet::Member> Chosen(const Program& program,
                                        const std::vector<SoundingSet::Member>& members) {
  std::vector<std::string> titles;
  for (const SoundingSet::Member& member : members) titles.push_back(member.Title);
  std::vector<SoundingSet::Member> chosen;
  for (const int index : program.ChooseSoundings(titles)) {
    chosen.push_back(members[static_cast<std::size_t>(index)]);
  }
  return chosen;
}

// Puts the first that can be loaded in work and lists all of them for stepping.
Changes LoadFirstOf(Program& program, Document::Leave leave,
                    std::vector<SoundingSet::Member> members) {
  for (std::size_t i = 0; i < members.size(); ++i) {
    if (!LoadOne(program, leave, members[i].File, members[i].Index)) continue;
    for (SoundingSet::Member& member : members) member.File = WholePath(member.File);
    ListSoundings(program, SoundingSet(std::move(members), i));
    MakeRecentFiles(program);
    return {.Sounding = true};
  }
  return {};
}

}  // namespace

Changes Exit(Program& program) {
  program.Leaving = true;
  return {};
}

Changes DataAccess(Program& program) {
  const bool isUpdated =
      program.Set.System.AutoDirectoryUpdate && !program.Current.DataFolder.empty();
  const std::filesystem::path& folder = isUpdated ? program.Current.DataFolder : program.Where.Data;
  const std::vector<std::string> chosen = program.Current.Ask->ChooseFiles(
      FileQuestion{.Title = "Open Sounding",
                   .Folder = TextFromPath(folder),
                   .Filter = OpenFilter(),
                   .FilterIndex = program.Set.System.FilterIndexNum});
  std::vector<std::filesystem::path> paths;
  paths.reserve(chosen.size());
  for (const std::string& name : chosen) paths.push_back(PathFromText(name));
  SortForStepping(paths, program.Set.System);
  return LoadFirst(program, paths);
}

bool LoadOne(Program& program, Document::Leave leave, const std::filesystem::path& path, int index,
             bool stepping) {
  const SystemOptions& set = program.Set.System;
  const bool checks = set.DataChecks && (!stepping || set.StepChecks);
  if (program.Doc.Load(leave, {.File = path, .Index = index}, PolicyOf(program), checks) !=
      Status::Ok) {
    return false;
  }
  program.View.Cursor = {};
  EndStormMotion(program);
  return true;
}

namespace {

// A folder stands for the files in it that hold soundings, in the order of stepping.
std::vector<std::filesystem::path> FilesIn(Program& program,
                                           const std::vector<std::filesystem::path>& given) {
  std::vector<std::filesystem::path> files;
  for (const std::filesystem::path& path : given) {
    if (!IsFolder(path)) {
      files.push_back(path);
      continue;
    }
    std::vector<std::filesystem::path> inside;
    for (const std::filesystem::path& file : ingest::FilesIn(path)) {
      if (ingest::HoldsSounding(file)) inside.push_back(file);
    }
    if (inside.empty()) {
      const std::string name = TextFromPath(path.filename());
      program.Doc.Report(
          Fault{kFaultFormat, "LoadFirst", "there is no sounding in the folder", name});
    }
    SortForStepping(inside, program.Set.System);
    files.insert(files.end(), inside.begin(), inside.end());
  }
  return files;
}

}  // namespace

Changes LoadFirst(Program& program, const std::vector<std::filesystem::path>& given) {
  if (given.empty()) return {};
  const auto leave = MayLeaveSounding(program);
  if (!leave) return {};
  const std::vector<std::filesystem::path> paths = FilesIn(program, given);
  std::vector<SoundingSet::Member> members;
  for (const std::filesystem::path& path : paths) {
    std::ranges::move(MembersOf(path), std::back_inserter(members));
  }
  if (paths.size() == 1 && members.size() > 1 && program.ChooseSoundings) {
    members = Chosen(program, members);
  }
  return LoadFirstOf(program, *leave, std::move(members));
}

Changes LoadAt(Program& program, const std::filesystem::path& path, int index) {
  const auto leave = MayLeaveSounding(program);
  if (!leave) return {};
  return LoadFirstOf(program, *leave, {{.File = path, .Index = index}});
}

Changes LoadText(Program& program, const std::string& text) {
  std::vector<std::string> notes;
  const Outcome<SourceText> source = ingest::ReadSource("clipboard", text, notes);
  std::optional<Fault> fault;
  if (!source) {
    fault = source.Error();
  } else if (ingest::FindDecoder(source.Value()) == nullptr) {
    fault =
        Fault{kFaultFormat, "LoadText", "the text is no sounding in a known format", "The text"};
  }
  const std::filesystem::path path = program.Where.Data / kPastedFile;
  if (!fault) fault = SaveFile(path, text);
  if (!fault) return LoadFirst(program, {path});
  program.Doc.Report(*fault);
  return {};
}

Changes OpenRecentFile(Program& program, std::size_t number) {
  const std::string file = program.Settings.Window.RecentFiles[number - 1];
  return file.empty() ? Changes{} : LoadFirst(program, {PathFromSetting(file)});
}

Changes OpenExample(Program& program) {
  const std::filesystem::path example = ShippedFile(ProgramFolder(), kExampleFile);
  if (!example.empty()) return LoadFirst(program, {example});
  program.Doc.Report({kFaultFileNotFound, "OpenExample",
                      std::string(kExampleFile) + " is not among the program's files"});
  return {};
}

bool IsAutoLoaded(const Program& program) {
  const SystemOptions& set = program.Set.System;
  if (!set.Autoload || program.Current.FileName.empty()) return false;
  if (set.AutoFile == kMultipleMarker) {
    return program.Listed.Size() > 1 &&
           ReadList(program.Where.Root, kSoundingList) == ListedTexts(program);
  }
  return program.Listed.Size() < 2 && set.AutoFile == program.Current.FileName &&
         set.AutoDrive == TextFromPath(program.Current.DataFolder);
}

Changes AutoLoad(Program& program) {
  SystemOptions& set = program.Set.System;
  if (IsAutoLoaded(program)) {
    set.Autoload = false;
    return {};
  }
  if (program.Current.FileName.empty()) return {};
  const bool isMultiple = program.Listed.Size() > 1;
  if (isMultiple) {
    if (const auto fault = WriteList(program.Where.Root, kSoundingList, ListedTexts(program))) {
      program.Doc.Report(*fault);
      return {};
    }
  }
  set.Autoload = true;
  set.AutoDrive = TextFromPath(program.Current.DataFolder);
  set.AutoFile = isMultiple ? std::string(kMultipleMarker) : program.Current.FileName;
  set.AutoType = program.Current.Record.DataFormat;
  return {};
}

}  // namespace vexa::commands
