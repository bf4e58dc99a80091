#include "report/report_folder.h"

#include <functional>
#include <system_error>
#include <vector>

#include "config/settings_report.h"
#include "core/files.h"
#include "core/numbers.h"
#include "core/raw_file.h"
#include "output/listings.h"
#include "program/command_line.h"
#include "program/print_displays.h"
#include "report/json.h"
#include "report/sounding_json.h"

namespace vexa::report {
namespace {

namespace fs = std::filesystem;

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
  AnalysedSounding Sounding() const {
    return {.File = "source/" + In.Current.FileName,
            .Record = In.Current.Record,
            .Results = In.Results,
            .Notes = In.Current.LoadNotes};
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
    const Picture page = PrintDisplays(from.In).front().Draw(from.In, from.In.Set);
    return from.Writer.EncodePicture(page, extension, kWidthPx, kHeightPx);
  };
  std::vector<ReportFile> files = {
      {"source/" + program.Current.FileName, [from] { return from.SourceBytes; }},
      {"sounding.RAW", [&program] { return WriteRaw(program.Current.Record); }},
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
    files.push_back(
        {std::string(row.File), [&program, &row]() -> Outcome<std::string> {
           const output::ListingSource source{program.Current.Record, program.Results, program.Set};
           output::ListingLines lines = output::PageHeader(source, {});
           lines.emplace_back();
           for (std::string& line : row.Make(source)) lines.push_back(std::move(line));
           return output::ListingFileText(lines);
         }});
  }
  return files;
}

}  // namespace

std::optional<Fault> WriteReport(const Program& program, const fs::path& folder,
                                 const ReportWriter& writer) {
  if (PrintDisplays(program).empty()) {
    return Fault{kFaultUnusable, "WriteReport", "there is no sounding"};
  }
  const Outcome<std::string> source = ReadFile(program.Current.FilePath());
  if (!source) return source.Error();
  std::error_code failed;
  fs::create_directories(folder / "source", failed);
  if (failed) {
    return Fault{kFaultPathAccess, "WriteReport", TextFromPath(folder) + ": " + failed.message()};
  }
  const ReportSource from{program, source.Value(), writer};
  const std::vector<ReportFile> files = FilesOf(from);
  for (const ReportFile& file : files) {
    const Outcome<std::string> bytes = file.Make();
    if (!bytes) return bytes.Error();
    if (auto fault = SaveFile(folder / PathFromText(file.Name), bytes.Value())) return fault;
  }
  return SaveFile(folder / "versions.json", Versions(from, files));
}

}  // namespace vexa::report
