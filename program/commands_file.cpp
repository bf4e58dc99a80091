// Commands of the File menu.
#include <string>
#include <string_view>
#include <utility>

#include "core/data_checks.h"
#include "core/files.h"
#include "ingest/decoder.h"
#include "program/commands.h"

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

}  // namespace

Changes Open(Program& program) {
  const std::filesystem::path& folder =
      program.Current.DataFolder.empty() ? program.Where.Data : program.Current.DataFolder;
  const std::vector<std::string> chosen = program.Current.Ask->ChooseFiles(FileQuestion{
      .Title = "Open Sounding", .Folder = TextFromPath(folder), .Filter = OpenFilter()});
  std::vector<std::filesystem::path> paths;
  paths.reserve(chosen.size());
  for (const std::string& name : chosen) paths.push_back(PathFromText(name));
  return LoadFirst(program, paths);
}

bool LoadOne(Program& program, const std::filesystem::path& path) {
  CurrentSounding& current = program.Current;
  if (ingest::LoadSounding(current, path, 0, &program.Stations) != Status::Ok) return false;
  // There is no window yet in which a fault could be corrected, so none is asked for: the status
  // indicator tells of it.
  const Silenced quiet(current);
  DataQC(current);
  return true;
}

Changes LoadFirst(Program& program, const std::vector<std::filesystem::path>& paths) {
  for (std::size_t i = 0; i < paths.size(); ++i) {
    if (!LoadOne(program, paths[i])) continue;
    program.Listed = paths;
    program.ListedNow = i;
    return {.Sounding = true};
  }
  return {};
}

}  // namespace vexa::commands
