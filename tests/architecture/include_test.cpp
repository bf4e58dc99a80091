// The order of the folders: reads every source file's include lines and holds them against what
// its folder may build on. The build enforces the same through the targets; this also holds where
// all folders are visible, and it keeps the toolkit at the rim.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "support/soundings.h"

namespace {

namespace fs = std::filesystem;

// What each folder names as its basis; it may also include what its basis may include.
const std::map<std::string, std::vector<std::string>> kBuildsOn = {
    {"core", {}},
    {"picture", {"core"}},     // for the text of numbers
    {"ingest", {"analysis"}},  // heights of winds that came with a pressure
    {"config", {"analysis"}},  // whose settings it keeps
    {"analysis", {"core"}},
    {"diagram", {"config", "picture"}},
    {"display", {"config", "picture"}},
    {"hodograph", {"config", "picture"}},
    {"mountainwave", {"config", "picture"}},
    {"crosssection", {"diagram"}},  // for its wind symbols
    {"map", {"picture"}},
    {"fronts", {"hodograph"}},  // for the compass
    {"download", {"core"}},
    {"download/net", {"download"}},
    {"output", {"diagram", "mountainwave"}},
    {"output/paint", {"picture"}},
    {"sounding", {"ingest", "analysis"}},
    {"archive", {"sounding", "config"}},
    {"forecast", {"sounding", "fronts", "map", "diagram"}},  // what it is made of, and its maps
    {"program",
     {"sounding", "download", "hodograph", "fronts", "display", "output", "crosssection", "map",
      "forecast", "archive"}},
    {"report", {"program"}},
    {"engine", {"report"}},
    {"app", {"program", "output/paint", "download/net", "report", "archive"}},
    {"cli", {"program", "report", "archive"}},
    {"cli/qt", {"cli", "output/paint", "download/net"}},
};

const std::set<std::string> kMayUseToolkit = {"app", "cli/qt", "output/paint", "download/net"};

std::set<std::string> Allowed(const std::string& folder) {
  std::set<std::string> allowed = {folder};
  for (const std::string& basis : kBuildsOn.at(folder)) allowed.merge(Allowed(basis));
  return allowed;
}

// The folder of the table that a path such as "output/paint/paint.h" lies in; empty for none.
std::string FolderOf(const fs::path& file) {
  for (fs::path folder = file.parent_path(); !folder.empty(); folder = folder.parent_path()) {
    if (kBuildsOn.contains(folder.generic_string())) return folder.generic_string();
  }
  return {};
}

struct Include {
  std::string Name;
  bool Angled = false;
};

std::vector<Include> IncludesOf(const fs::path& file) {
  std::vector<Include> includes;
  std::ifstream stream(file);
  for (std::string line; std::getline(stream, line);) {
    std::erase_if(line, [](char c) { return c == ' ' || c == '\t' || c == '\r'; });
    if (!line.starts_with("#include")) continue;
    const char open = line.size() > 8 ? line[8] : '\0';
    const std::size_t close = line.find(open == '<' ? '>' : '"', 9);
    if ((open == '<' || open == '"') && close != std::string::npos) {
      includes.push_back({line.substr(9, close - 9), open == '<'});
    }
  }
  return includes;
}

// The standard library knows no long paths on some systems, so that files are asked for, listed,
// made and removed through the core's platform alone. What of it stands in a line; empty when
// nothing.
std::string AsksTheLibrary(const std::string& line) {
  if (line.starts_with("#include <fstream>")) return line;
  static const std::string kAsking[] = {
      "exists(",      "is_directory(",    "is_regular_file(",  "is_symlink(",
      "file_size(",   "last_write_time(", "create_directory(", "create_directories(",
      "remove(",      "remove_all(",      "rename(",           "directory_iterator",
      "permissions(", "status(",          "copy_file(",        "equivalent(",
      "is_empty(",    "symlink_status(",  "create_symlink(",   "recursive_directory_iterator"};
  for (std::size_t at = line.find("fs::"); at != std::string::npos;
       at = line.find("fs::", at + 1)) {
    const std::string_view call = std::string_view(line).substr(at + 4);
    for (const std::string& name : kAsking) {
      if (call.starts_with(name)) return name;
    }
  }
  return {};
}

// Why an include has no place in a folder; empty when it has.
std::string Objection(const std::string& folder, const Include& include) {
  const std::string target = FolderOf(include.Name);
  if (!target.empty() && !Allowed(folder).contains(target)) return "lies above";
  const bool isToolkit = (include.Name.starts_with('Q') && include.Name.size() > 1 &&
                          include.Name[1] >= 'A' && include.Name[1] <= 'Z') ||
                         include.Name.starts_with("Qt");
  if (isToolkit && !kMayUseToolkit.contains(folder)) return "is the toolkit";
  if (!include.Angled && target.empty()) return "is in no folder of ours";
  return {};
}

TEST(Architecture, FoldersBuildOneWay) {
  const fs::path root = vexa::test::SourceFolder();
  int files = 0;
  int includes = 0;
  for (const auto& [folder, basis] : kBuildsOn) {
    if (!fs::exists(root / folder)) continue;
    for (const auto& entry : fs::recursive_directory_iterator(root / folder)) {
      const fs::path file = fs::relative(entry.path(), root);
      const bool isSource = file.extension() == ".h" || file.extension() == ".cpp";
      if (!entry.is_regular_file() || !isSource || FolderOf(file) != folder) continue;
      ++files;
      for (const Include& include : IncludesOf(entry.path())) {
        // A file that the toolkit's compiler makes stands beside its source.
        if (include.Name.ends_with(".moc")) continue;
        ++includes;
        const std::string objection = Objection(folder, include);
        EXPECT_EQ(objection, "") << file << " includes " << include.Name;
      }
    }
  }
  EXPECT_GT(files, 30);
  EXPECT_GT(includes, 100);
}

TEST(Architecture, FilesAreAskedForInOnePlace) {
  const fs::path root = vexa::test::SourceFolder();
  for (const auto& [folder, basis] : kBuildsOn) {
    for (const auto& entry : fs::directory_iterator(root / folder)) {
      const std::string name = entry.path().filename().string();
      const bool isSource = name.ends_with(".h") || name.ends_with(".cpp");
      if (!isSource || name.starts_with("platform")) continue;
      std::ifstream stream(entry.path());
      for (std::string line; std::getline(stream, line);) {
        if (const std::size_t at = line.find("std::filesystem::"); at != std::string::npos) {
          line.replace(at, 17, "fs::");
        }
        EXPECT_EQ(AsksTheLibrary(line), "") << folder << '/' << name;
      }
    }
  }
  EXPECT_NE(AsksTheLibrary("  if (fs::exists(path, ignored)) return;"), "");
  EXPECT_NE(AsksTheLibrary("#include <fstream>"), "");
}

TEST(Architecture, TheRulesRefuseWhatTheyShould) {
  EXPECT_NE(Objection("core", {"ingest/decoder.h"}), "");
  EXPECT_NE(Objection("program", {"output/paint/paint.h"}), "");
  EXPECT_NE(Objection("analysis", {"QString", true}), "");
  EXPECT_EQ(Objection("diagram", {"config/view_settings.h"}), "");
  EXPECT_NE(Objection("cli", {"output/paint/paint.h"}), "");
  EXPECT_EQ(Objection("cli/qt", {"output/paint/paint.h"}), "");
}

}  // namespace
