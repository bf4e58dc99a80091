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

/// "OUN Norman_Forecast  06Z 04 May 1999": the title of an hour, which gives its time back when it
/// is read from a native file; where no time is known "OUN Norman +6 hrs_Forecast".
std::string ForecastTitle(std::string_view title, const ObservationTime& time, int hour);

}  // namespace vexa::forecast
