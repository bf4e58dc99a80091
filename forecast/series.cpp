#include "forecast/series.h"

#include <cmath>
#include <filesystem>

#include "analysis/interpolate.h"
#include "core/files.h"
#include "core/great_circle.h"
#include "core/markers.h"
#include "core/numbers.h"
#include "core/raw_file.h"
#include "fronts/thermal_wind.h"

namespace vexa::forecast {
namespace {

constexpr std::string_view kSeriesHeading = "This is a VEXA Forecast Time-Series CSV File.";
constexpr std::string_view kColumns =
    "HOUR,TIME,RATE (kt),FROM (deg),PRES (hPa),HGT (m MSL),TEMP (C),DEWPT (C),DIR (deg),SPD (kt)";
constexpr std::string_view kWholeMask = "#####0";
constexpr std::string_view kValueMask = "##0.00";

// Why the station's own winds say nothing.
SeriesEnd WhyNotAlone(const Profile& main, const ForecastSettings& set) {
  if (set.MainInUse() <= 0 && set.BoundaryInUse() <= 0) return SeriesEnd::LayersOff;
  if (std::fabs(main.Sounding.LatSigned) < fronts::kLeastLatitude) return SeriesEnd::NearEquator;
  int winds = 0;
  for (int i = 1; i <= main.Sounding.NumWindLevels(); ++i) {
    if (main.Sounding.HasWind(i)) ++winds;
  }
  return winds < 2 ? SeriesEnd::NoWind : SeriesEnd::No;
}

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

Box EndBox(SeriesEnd end) {
  const auto box = [](std::string_view title, std::string_view text) {
    return Box{.Title = std::string(title), .Text = std::string(text)};
  };
  switch (end) {
    case SeriesEnd::No:
      return {};
    case SeriesEnd::LayersOff:
      return box("Single-Station layer options are turned off",
                 "The Main-Layer and/or Boundary-Layer options must be checked.");
    case SeriesEnd::NoWind:
      return box("Forecast", "The sounding has no winds by which air could be moved.");
    case SeriesEnd::NearEquator:
      return box("Forecast",
                 "Within 10 degrees of the equator winds tell nothing of temperatures around.");
    case SeriesEnd::NoUpwind:
      return box("Forecast", "No upwind data.");
    case SeriesEnd::Threshold:
      return box("Forecast",
                 "=====  No available upwind data.         =====  "
                 "Forecast data threshold exceeded.");
    case SeriesEnd::LastHour:
      return box("Max forecast hour reached",
                 "Further forecasts will extend beyond available data.");
  }
  return {};
}

SeriesEnd ForecastSeries::Advance(const ForecastSettings& set, const AnalysisSettings& analysis,
                                  std::string_view description) {
  const Profile& main = *region_.Main;
  const int hour = static_cast<int>(steps_.size()) + 1;
  if (hour > kMostHours) return SeriesEnd::LastHour;
  ForecastStep step{.IsAlone = set.Mode == ForecastMode::Single};
  if (step.IsAlone) {
    if (const SeriesEnd why = WhyNotAlone(main, set); why != SeriesEnd::No) return why;
    step.Choice = {.Hour = hour, .Parts = {{.Weight = 1}}};
    step.Sounding = AdvectAlone(main, set, hour);
  } else {
    const std::optional<StepChoice> choice = ChoiceAt(region_, set, hour);
    if (!choice) return SeriesEnd::NoWind;
    if (!region_.HasUpwind()) return SeriesEnd::NoUpwind;
    if (choice->UpwindKm > choice->FarthestKm + kBeyondLast) return SeriesEnd::Threshold;
    step.Choice = *choice;
    step.Sounding = Blend(region_, *choice, set);
  }
  surface_.push_back(SurfaceStepOf(set));
  ChangeSurface(step.Sounding, surface_, analysis);
  SoundingRecord& made = step.Sounding;
  if (made.Time.Known()) made.Time = MinutesLater(made.Time, 60 * hour);
  made.StationTitle =
      ForecastTitle(description.empty() ? main.Sounding.StationTitle : description, hour);
  made.DataFormat = kRawTag;
  made.FileTag.clear();
  steps_.push_back(std::move(step));
  return SeriesEnd::No;
}

void ForecastSeries::StepBack() {
  if (steps_.empty()) return;
  steps_.pop_back();
  surface_.pop_back();
}

std::string ForecastTitle(std::string_view title, int hour) {
  const std::string end = " +" + Shortest(hour) + " hrs" + std::string(kForecastSuffix);
  return CutTitle(Trim(title), kMaxTitle - static_cast<int>(end.size())) + end;
}

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

}  // namespace vexa::forecast
