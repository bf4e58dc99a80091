// A forecast that is stepped ahead hour by hour, kept as it goes. Each hour begins again at the
// original sounding, so that nothing is interpolated twice; only changes of the surface temperature
// add up.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "analysis/analysis_settings.h"
#include "core/interaction.h"
#include "core/sounding_record.h"
#include "forecast/advection.h"
#include "forecast/region.h"

namespace vexa::forecast {

/// Why there is no further hour.
enum class SeriesEnd { No, LayersOff, NoWind, NearEquator, NoUpwind, Threshold, LastHour };
/// The box that says so.
Box EndBox(SeriesEnd end);

inline constexpr std::string_view kForecastSuffix = "_Forecast";

struct ForecastStep {
  SoundingRecord Sounding{};
  StepChoice Choice{};
  bool IsAlone = false;  // made from the station's own winds
};

class ForecastSeries {
 public:
  ForecastSeries() = default;
  explicit ForecastSeries(Region region) : region_(std::move(region)) {}

  const Region& Around() const { return region_; }
  const std::vector<ForecastStep>& Steps() const { return steps_; }
  /// Other upwind soundings for the hours to come.
  void SetRegion(Region region) { region_ = std::move(region); }

  /// Goes one hour ahead. What has been made stays when there is none.
  ///
  /// description  in place of the station's title; empty: that
  SeriesEnd Advance(const ForecastSettings& set, const AnalysisSettings& analysis,
                    std::string_view description = {});
  /// Takes the last hour back.
  void StepBack();

 private:
  Region region_{};
  std::vector<ForecastStep> steps_{};
  std::vector<SurfaceStep> surface_{};
};

/// "OUN NORMAN +6 hrs_Forecast", at most as long as a title may be.
std::string ForecastTitle(std::string_view title, int hour);

/// The file of an hour: that of the main sounding without its ending, "_06h_Forecast.RAW".
std::string ForecastFileName(std::string_view source, int hour);
/// The time series beside them: "..._Forecast.CSV".
std::string SeriesFileName(std::string_view source);

/// The time series as a text: what it is, its station, and a row for each level of each hour. Hour
/// 0 is the main sounding. A wind stands at the temperature level to which it is interpolated; a
/// value that is lacking is empty.
std::string SeriesCsv(const ForecastSeries& series, const AnalysisSettings& set);

}  // namespace vexa::forecast
