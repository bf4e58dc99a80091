#include "report/report_folder.h"

#include <deque>
#include <functional>
#include <system_error>
#include <vector>

#include "config/settings_report.h"
#include "core/files.h"
#include "core/numbers.h"
#include "core/platform.h"
#include "core/raw_file.h"
#include "output/listings.h"
#include "program/command_line.h"
#include "program/displays.h"
#include "program/wave_view.h"
#include "report/json.h"
#include "report/sounding_json.h"

namespace vexa::report {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kVersionsName = "versions.json";  // the report is whole
constexpr int kWidthPx = 1600;
constexpr int kHeightPx = 1200;

/// A file of the folder: its name, and its bytes.
struct ReportFile {
  std::string Name;
  std::function<Outcome<std::string>()> Make;
};

/// What the files are made from.
struct ReportSource {
  const Program& In;
  const std::string& SourceBytes;
  const ReportWriter& Writer;

  // Its file is named as it stands in the folder.
  ReportedSounding Sounding() const {
    return {.File = "source/" + In.Current.FileName,
            .Record = In.Current.Record,
            .Results = In.Results,
            .Notes = In.Current.LoadNotes,
            .Finding = In.Doc.Finding(),
            .Mountains = MountainsNow(In)};
  }
};

std::string Versions(const ReportSource& from, const std::vector<ReportFile>& files) {
  Json json;
  json["program"] = from.Writer.Program;
  json["version"] = ProgramVersion();
  json["toolkit"] = from.Writer.Toolkit;
  json["source"] = from.In.Current.FileName;
  json["format"] = from.In.Current.Record.DataFormat;
  for (const ReportFile& file : files) json["files"].push_back(file.Name);
  return JsonText(json) + "\n";
}

std::vector<ReportFile> FilesOf(const ReportSource& from) {
  const Program& program = from.In;
  const auto picture = [from](const char* extension) {
    const Picture page =
        DrawDisplay(from.In.DisplayTable.front(), from.In, ImageSurface(kWidthPx, kHeightPx));
    return from.Writer.EncodePicture(page, extension, kWidthPx, kHeightPx);
  };
  std::vector<ReportFile> files = {
      {"source/" + program.Current.FileName, [from] { return from.SourceBytes; }},
      {std::string(kNativeName), [&program] { return WriteRaw(program.Current.Record); }},
      {std::string(kSettingsReportName),
       [&program] {
         return SettingsReport(program.Set,
                               {.Version = std::string(ProgramVersion()),
                                .Resolution = Shortest(kWidthPx) + "x" + Shortest(kHeightPx)});
       }},
      {"analysis.json", [from] { return SoundingJson(from.Sounding(), from.In.Set) + "\n"; }},
      {"diagram.svg", [picture] { return picture("svg"); }},
      {"diagram.png", [picture] { return picture("png"); }},
  };
  for (const output::ListingRow& row : output::Listings()) {
    files.push_back({std::string(row.File), [&program, &row]() -> Outcome<std::string> {
                       const output::ListingSource source{program.Current.Record, program.Results,
                                                          program.Set, MountainsNow(program)};
                       output::ListingLines lines = output::PageHeader(source, {});
                       lines.emplace_back();
                       for (std::string& line : row.Make(source)) lines.push_back(std::move(line));
                       return output::ListingFileText(lines);
                     }});
  }
  return files;
}

/// Folders that are made where they are missing, and removed again unless they are kept.
class NewFolders {
 public:
  ~NewFolders() {
    for (auto made = made_.rbegin(); made != made_.rend(); ++made) Remove(*made);
  }
  std::optional<Fault> Make(const fs::path& folder) {
    if (IsFolder(folder)) return std::nullopt;
    if (folder.has_parent_path() && folder.parent_path() != folder) {
      if (auto fault = Make(folder.parent_path())) return fault;
    }
    const std::error_code failed = MakeFolders(folder);
    if (!failed) {
      made_.push_back(folder);
      return std::nullopt;
    }
    return Fault{FaultNumber(failed), "WriteReport", TextFromPath(folder) + ": " + failed.message(),
                 TextFromPath(folder.filename())};
  }
  void Keep() { made_.clear(); }

 private:
  std::vector<fs::path> made_{};
};

}  // namespace

// All of it is on the disk under other names before the first file takes its place. That which says
// that the report is whole is taken away first and put back last, so that it never stands beside
// files of two reports.
std::optional<Fault> WriteReport(const Program& program, const fs::path& folder,
                                 const ReportWriter& writer) {
  if (!LackOf(program.DisplayTable.front(), program).empty()) {
    return Fault{kFaultUnusable, "WriteReport", "there is no sounding"};
  }
  const Outcome<std::string> source = ReadFile(program.Current.FilePath());
  if (!source) return source.Error();
  const ReportSource from{program, source.Value(), writer};
  std::vector<ReportFile> files = FilesOf(from);
  std::string versions = Versions(from, files);
  files.push_back({std::string(kVersionsName), [versions] { return versions; }});
  NewFolders folders;
  if (auto fault = folders.Make(folder / "source")) return fault;
  std::deque<AtomicFile> made;
  for (const ReportFile& file : files) {
    const Outcome<std::string> bytes = file.Make();
    if (!bytes) return bytes.Error();
    AtomicFile& here = made.emplace_back(folder / PathFromText(file.Name));
    if (auto fault = here.Write(bytes.Value())) return fault;
    if (auto fault = here.Settle()) return fault;
  }
  const std::error_code failed = Remove(folder / kVersionsName);
  if (failed) {
    return Fault{FaultNumber(failed), "WriteReport",
                 TextFromPath(folder) + ": " + failed.message()};
  }
  folders.Keep();
  for (AtomicFile& file : made) {
    if (auto fault = file.Commit()) return fault;
  }
  return std::nullopt;
}

}  // namespace vexa::report
