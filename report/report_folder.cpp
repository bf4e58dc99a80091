#include "report/report_folder.h"

#include <functional>
#include <system_error>
#include <vector>

#include "config/settings_report.h"
#include "core/files.h"
#include "core/numbers.h"
#include "core/raw_file.h"
#include "diagram/sounding_plot.h"
#include "output/listings.h"
#include "output/paint/paint.h"
#include "program/command_line.h"

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

std::string Json(const ReportSource& from) {
  JsonWriter json;
  WriteJson(json, from.Sounding, from.Set);
  return json.Str() + "\n";
}

std::string Versions(const ReportSource& from, const std::vector<ReportFile>& files) {
  JsonWriter json;
  json.BeginObject();
  json.Key("program").Text(from.Program);
  json.Key("version").Text(ProgramVersion());
  json.Key("toolkit").Text(paint::JpegLibraryVersion());
  json.Key("source").Text(TextFromPath(PathFromText(from.Sounding.File).filename()));
  json.Key("format").Text(from.Sounding.Record.DataFormat);
  json.Key("files").BeginArray();
  for (const ReportFile& file : files) json.Text(file.Name);
  json.EndArray();
  json.EndObject();
  return json.Str() + "\n";
}

std::vector<ReportFile> FilesOf(const ReportSource& from) {
  const AnalysedSounding& sounding = from.Sounding;
  const auto picture = [from](const char* extension) {
    const auto plot = diagram::PlotSounding(
        {.Sounding = from.Sounding.Record, .Results = from.Sounding.Results, .Set = from.Set});
    return paint::EncodePicture(plot->Page, extension, kWidthPx, kHeightPx);
  };
  std::vector<ReportFile> files = {
      {"source/" + TextFromPath(PathFromText(sounding.File).filename()),
       [from] { return from.SourceBytes; }},
      {"sounding.RAW", [from] { return WriteRaw(from.Sounding.Record); }},
      {std::string(kSettingsReportName),
       [from] {
         return SettingsReport(from.Set,
                               {.Version = std::string(ProgramVersion()),
                                .Resolution = Shortest(kWidthPx) + "x" + Shortest(kHeightPx)});
       }},
      {"analysis.json", [from] { return Json(from); }},
      {"diagram.svg", [picture] { return picture("svg"); }},
      {"diagram.png", [picture] { return picture("png"); }},
  };
  for (const output::ListingRow& row : output::Listings()) {
    files.push_back({std::string(row.File), [from, &row]() -> Outcome<std::string> {
                       const output::ListingSource source{from.Sounding.Record,
                                                          from.Sounding.Results, from.Set};
                       output::ListingLines lines = output::PageHeader(source, {});
                       lines.emplace_back();
                       for (std::string& line : row.Make(source)) lines.push_back(std::move(line));
                       return output::ListingFileText(lines);
                     }});
  }
  return files;
}

}  // namespace

std::optional<Fault> WriteReportFolder(const ReportSource& from, const fs::path& folder) {
  std::error_code failed;
  fs::create_directories(folder / "source", failed);
  if (failed) {
    return Fault{kFaultPathAccess, "WriteReportFolder",
                 TextFromPath(folder) + ": " + failed.message()};
  }
  std::vector<ReportFile> files = FilesOf(from);
  for (const ReportFile& file : files) {
    const Outcome<std::string> bytes = file.Make();
    if (!bytes) return bytes.Error();
    if (auto fault = SaveFile(folder / PathFromText(file.Name), bytes.Value())) return fault;
  }
  return SaveFile(folder / "versions.json", Versions(from, files));
}

}  // namespace vexa::report
