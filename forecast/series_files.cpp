#include "forecast/series_files.h"

#include <memory>

#include "analysis/interpolate.h"
#include "core/files.h"
#include "core/markers.h"
#include "core/numbers.h"
#include "core/platform.h"
#include "core/raw_file.h"

namespace vexa::forecast {
namespace {

constexpr std::string_view kSeriesHeading = "This is a VEXA Forecast Time-Series CSV File.";
constexpr std::string_view kColumns =
    "HOUR,TIME,RATE (kt),FROM (deg),PRES (hPa),HGT (m MSL),TEMP (C),DEWPT (C),DIR (deg),SPD (kt)";
constexpr std::string_view kWholeMask = "#####0";
constexpr std::string_view kValueMask = "##0.00";

std::string Stem(std::string_view source) {
  const std::string stem = TextFromPath(PathFromText(source).stem());
  return stem.empty() ? "Sounding" : stem;
}

std::string TimeText(const ObservationTime& time) {
  if (!time.Known()) return {};
  return Mask(time.Year, "0000") + "-" + Mask(time.Month, "00") + "-" + Mask(time.Day, "00") + "T" +
         Mask(time.Hour, "00") + ":" + Mask(time.Minute, "00") + "Z";
}

std::string Cell(double value, std::string_view mask) {
  return "," + (NotAvailable(value) ? std::string() : Mask(value, mask));
}

void AddRows(const SoundingRecord& sounding, const StepChoice& choice, const AnalysisSettings& set,
             std::string& text) {
  const Levels<double> heights = analysis::DeriveHeights(sounding, set.Saturation);
  const std::string begin = Shortest(choice.Hour) + "," + TimeText(sounding.Time) + "," +
                            Mask(choice.RateKt, kValueMask) + "," +
                            Mask(choice.WindFrom, kWholeMask);
  for (int i = 1; i <= sounding.NumTempLevels(); ++i) {
    text += begin + Cell(sounding.Press(i), kValueMask) + "," + Mask(heights(i), kWholeMask) +
            Cell(sounding.Temp(i), kValueMask) + Cell(sounding.Dewpt(i), kValueMask);
    const analysis::WindSample wind = analysis::WindAtHeight(sounding, heights(i));
    text += wind.Ok() ? Cell(wind.Value.Dir, kWholeMask) + Cell(wind.Value.Spd, kValueMask) : ",,";
    text += "\n";
  }
}

}  // namespace

std::string ForecastFileName(std::string_view source, int hour) {
  return Stem(source) + "_" + Mask(hour, "00") + "h" + std::string(kForecastSuffix) + ".RAW";
}

std::string SeriesFileName(std::string_view source) {
  return Stem(source) + std::string(kForecastSuffix) + ".CSV";
}

std::string SeriesCsv(const ForecastSeries& series, const AnalysisSettings& set) {
  const SoundingRecord& main = series.Around().Main->Sounding;
  std::string title = main.StationTitle;
  for (char& c : title) {
    if (c == ',' || c == '\n') c = ' ';
  }
  std::string text =
      std::string(kSeriesHeading) + "\n" + "VEXA/CSV," + title + "\n" + "LAT, " +
      Mask(main.LatSigned, kValueMask) + "\n" + "LON, " + Mask(main.LonSigned, kValueMask) + "\n" +
      "ELEV, " + Mask(main.ElevM, kWholeMask) + "\n" + "VEXA/DATA\n" + std::string(kColumns) + "\n";
  AddRows(main, {}, set, text);
  for (const ForecastStep& step : series.Steps()) {
    AddRows(step.Sounding, step.Choice, set, text);
  }
  return text;
}

std::vector<SeriesFile> FilesOf(const ForecastSeries& series, const AnalysisSettings& set,
                                std::size_t fromStep) {
  std::vector<SeriesFile> files;
  const std::string& source = series.Around().Main->Source;
  for (std::size_t i = fromStep; i < series.Steps().size(); ++i) {
    const ForecastStep& step = series.Steps()[i];
    files.push_back({ForecastFileName(source, step.Choice.Hour), WriteRaw(step.Sounding)});
  }
  files.push_back({SeriesFileName(source), SeriesCsv(series, set)});
  return files;
}

std::vector<std::string> Existing(const std::filesystem::path& folder,
                                  const std::vector<SeriesFile>& files) {
  std::vector<std::string> there;
  for (const SeriesFile& file : files) {
    if (IsThere(folder / PathFromText(file.Name))) {
      there.push_back(file.Name);
    }
  }
  return there;
}

Box ExistsBox(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) text += name + "\n";
  return {.Title = "File already exists",
          .Text = text + "Do you want to replace existing file?",
          .Icon = BoxIcon::Question,
          .Buttons = BoxButtons::YesNo,
          .WhenSilent = Answer::No};
}

std::optional<Fault> SaveTogether(const std::filesystem::path& folder,
                                  const std::vector<SeriesFile>& files, FileOps& ops) {
  const std::error_code failed = MakeFolders(folder);
  if (failed) return Fault{FaultNumber(failed), "SaveTogether", TextFromPath(folder)};
  std::vector<std::unique_ptr<AtomicFile>> all;
  for (const SeriesFile& file : files) {
    all.push_back(std::make_unique<AtomicFile>(folder / PathFromText(file.Name), ops));
    if (auto fault = all.back()->Write(file.Text)) return fault;
    if (auto fault = all.back()->Settle()) return fault;
  }
  for (const auto& file : all) {
    if (auto fault = file->Commit()) return fault;
  }
  return std::nullopt;
}

}  // namespace vexa::forecast
