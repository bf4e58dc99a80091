#include "forecast/series.h"

#include <cmath>

#include "core/great_circle.h"
#include "core/numbers.h"
#include "core/raw_file.h"
#include "fronts/thermal_wind.h"
#include "ingest/source_header.h"

namespace vexa::forecast {
namespace {

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
  const std::optional<StepChoice> choice =
      ChoiceAt(step.IsAlone ? Region{.Main = region_.Main} : region_, set, hour);
  if (step.IsAlone) {
    if (const SeriesEnd why = WhyNotAlone(main, set); why != SeriesEnd::No) return why;
    step.Choice = {.Hour = hour, .Parts = {{.Weight = 1}}};
    if (choice) {
      step.Choice.RateKt = choice->RateKt;
      step.Choice.WindFrom = choice->WindFrom;
    }
    step.Sounding = AdvectAlone(main, set, hour);
  } else {
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
  made.StationTitle = ForecastTitle(description.empty() ? main.Sounding.StationTitle : description,
                                    made.Time, hour);
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

std::string ForecastTitle(std::string_view title, const ObservationTime& time, int hour) {
  const std::string suffix(kForecastSuffix);
  std::string_view name = Trim(title);
  if (ingest::TimeInTitle(name).Known()) {
    constexpr std::size_t kTimeWords = 4;
    const auto words = ingest::Tokens(name);
    name = Trim(name.substr(
        0, static_cast<std::size_t>(words[words.size() - kTimeWords].data() - name.data())));
  }
  if (!time.Known()) {
    const std::string end = " +" + Shortest(hour) + " hrs" + suffix;
    return CutTitle(name, kMaxTitle - static_cast<int>(end.size())) + end;
  }
  const std::string end = ingest::Caption({.Name = suffix}, time);
  return CutTitle(name, kMaxTitle - static_cast<int>(end.size())) + end;
}

}  // namespace vexa::forecast
