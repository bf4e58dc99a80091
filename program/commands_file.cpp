// Commands of the File menu.
#include <algorithm>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include "core/data_checks.h"
#include "core/error_report.h"
#include "core/files.h"
#include "ingest/decoder.h"
#include "program/commands.h"
#include "program/edit_commands.h"
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
    std::error_code ignored;
    switch (set.SortMode) {
      case FileOrder::Date: {
        const auto first = fs::last_write_time(a, ignored);
        const auto second = fs::last_write_time(b, ignored);
        if (first != second) return first < second;
        break;
      }
      case FileOrder::Size: {
        const auto first = fs::file_size(a, ignored);
        const auto second = fs::file_size(b, ignored);
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

// The list outlives the folder that the program was started in.
std::filesystem::path Whole(const std::filesystem::path& path) {
  std::error_code failed;
  const std::filesystem::path whole = std::filesystem::absolute(path, failed);
  return failed ? path : whole;
}

std::vector<std::string> ListedTexts(const Program& program) {
  std::vector<std::string> texts;
  for (const std::filesystem::path& path : program.Listed) {
    texts.push_back(TextFromPath(path));
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

// The soundings of a file when there is somebody to choose from them; what is wrong with the file
// the loading will tell.
std::vector<std::string> TitlesIn(const Program& program, const std::filesystem::path& path) {
  std::vector<std::string> titles;
  if (!program.ChooseSoundings) return titles;
  std::vector<std::string> notes;
  const Outcome<SourceText> source = ingest::ReadSource(path, notes);
  if (!source) return titles;
  for (const ingest::SourceEntry& entry : ingest::ListSoundings(source.Value())) {
    titles.push_back(entry.Title);
  }
  return titles;
}

// Those that the user chooses are stepped through.
Changes LoadChosen(Program& program, const std::filesystem::path& path,
                   const std::vector<std::string>& titles) {
  const std::vector<int> chosen = program.ChooseSoundings(titles);
  for (std::size_t i = 0; i < chosen.size(); ++i) {
    if (!LoadOne(program, path, chosen[i])) continue;
    program.Listed.assign(chosen.size(), Whole(path));
    program.ListedIndex = chosen;
    program.ListedNow = i;
    std::vector<std::string> headers;
    for (const int entry : chosen) headers.push_back(titles[static_cast<std::size_t>(entry)]);
    StartHeaders(program, std::move(headers));
    MakeRecentFiles(program);
    return {.Sounding = true};
  }
  return {};
}

}  // namespace

Changes DataAccess(Program& program) {
  const bool isUpdated = program.Set.AutoDirectoryUpdate && !program.Current.DataFolder.empty();
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

bool LoadOne(Program& program, const std::filesystem::path& path, int index, bool stepping) {
  CurrentSounding& current = program.Current;
  const CurrentSounding before = current;
  const std::optional<FileStamp> stamp = StampOf(path);  // of what is read, not of what comes after
  if (ingest::LoadSounding(current, path, index, &program.Stations) != Status::Ok) {
    // A damaged native file has left what could be read of it.
    current.Record = before.Record;
    current.FileName = before.FileName;
    current.DataFolder = before.DataFolder;
    current.QcFault = before.QcFault;
    return false;
  }
  const SystemOptions& set = program.Set.System;
  current.QcFault = 0;
  if (DataQC(current, !set.DataChecks || (stepping && !set.StepChecks)) == Status::QcCancel) {
    current = before;
    current.StatusText = Text(Status::QcCancel);
    return false;
  }
  program.ToCorrect.reset();
  if (current.QcFault != 0 && !current.Ask->Unattended()) {
    program.ToCorrect = CheckRecord(current.Record);
  }
  program.History.Clear();
  program.Loaded = current.Record;
  MarkOnDisk(program);
  program.OnDiskStamp = stamp;
  program.View.Cursor = {};
  return true;
}

namespace {

bool HoldsSounding(const std::filesystem::path& file) {
  std::vector<std::string> notes;
  const Outcome<SourceText> source = ingest::ReadSource(file, notes);
  return source && ingest::FindDecoder(source.Value()) != nullptr;
}

// A folder stands for the files in it that hold soundings, in the order of stepping.
std::vector<std::filesystem::path> FilesIn(Program& program,
                                           const std::vector<std::filesystem::path>& given) {
  std::vector<std::filesystem::path> files;
  for (const std::filesystem::path& path : given) {
    std::error_code failed;
    if (!std::filesystem::is_directory(path, failed)) {
      files.push_back(path);
      continue;
    }
    std::vector<std::filesystem::path> inside;
    for (std::filesystem::directory_iterator at(path, failed), end; !failed && at != end;
         at.increment(failed)) {
      std::error_code ignored;
      if (at->is_regular_file(ignored) && HoldsSounding(at->path())) inside.push_back(at->path());
    }
    if (inside.empty()) {
      const std::string name = TextFromPath(path.filename());
      ErrorReport(program.Current,
                  Fault{kFaultFormat, "LoadFirst", "there is no sounding in the folder", name});
    }
    SortForStepping(inside, program.Set.System);
    files.insert(files.end(), inside.begin(), inside.end());
  }
  return files;
}

}  // namespace

Changes LoadFirst(Program& program, const std::vector<std::filesystem::path>& given) {
  if (!given.empty() && !MayLeaveSounding(program)) return {};
  const std::vector<std::filesystem::path> paths = FilesIn(program, given);
  if (paths.size() == 1) {
    const std::vector<std::string> titles = TitlesIn(program, paths.front());
    if (titles.size() > 1) return LoadChosen(program, paths.front(), titles);
  }
  for (std::size_t i = 0; i < paths.size(); ++i) {
    if (!LoadOne(program, paths[i])) continue;
    program.Listed.clear();
    for (const std::filesystem::path& path : paths) program.Listed.push_back(Whole(path));
    program.ListedIndex.clear();
    program.ListedNow = i;
    StartHeaders(program, {});
    MakeRecentFiles(program);
    return {.Sounding = true};
  }
  return {};
}

Changes LoadAt(Program& program, const std::filesystem::path& path, int index) {
  if (!MayLeaveSounding(program) || !LoadOne(program, path, index)) return {};
  program.Listed = {Whole(path)};
  program.ListedIndex = {index};
  program.ListedNow = 0;
  StartHeaders(program, {});
  MakeRecentFiles(program);
  return {.Sounding = true};
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
  ErrorReport(program.Current, *fault);
  return {};
}

Changes OpenRecentFile(Program& program, std::size_t number) {
  const std::string file = program.Settings.Window.RecentFiles[number - 1];
  return file.empty() ? Changes{} : LoadFirst(program, {PathFromText(file)});
}

bool IsAutoLoaded(const Program& program) {
  const SystemOptions& set = program.Set.System;
  if (!set.Autoload || program.Current.FileName.empty()) return false;
  if (set.AutoFile == kMultipleMarker) {
    return program.Listed.size() > 1 &&
           ReadList(program.Where.Root, kSoundingList) == ListedTexts(program);
  }
  return program.Listed.size() < 2 && set.AutoFile == program.Current.FileName &&
         set.AutoDrive == TextFromPath(program.Current.DataFolder);
}

Changes AutoLoad(Program& program) {
  SystemOptions& set = program.Set.System;
  if (IsAutoLoaded(program)) {
    set.Autoload = false;
    return {};
  }
  if (program.Current.FileName.empty()) return {};
  const bool isMultiple = program.Listed.size() > 1;
  if (isMultiple) {
    if (const auto fault = WriteList(program.Where.Root, kSoundingList, ListedTexts(program))) {
      ErrorReport(program.Current, *fault);
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
