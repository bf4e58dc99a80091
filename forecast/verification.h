// How good forecasts were: those from every sounding to the later ones of its station, beside the
// sounding left as it was.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "forecast/forecast_settings.h"
#include "forecast/region.h"
#include "forecast/series.h"

namespace vexa::forecast {

/// Bias and root mean square error of one quantity over some cases.
class ErrorSum {
 public:
  /// difference  forecast minus observation; of a wind that of the speeds
  /// square      of the error: that of the difference; of a wind of the vectors' difference
  void Add(double difference, double square);
  int Count() const { return count_; }
  double Bias() const;
  double Rmse() const;

 private:
  int count_ = 0;
  double sum_ = 0;
  double squares_ = 0;
};

enum class Verified { Temp, Dewpt, Wind };  // °C, °C, kt
inline constexpr Verified kVerified[] = {Verified::Temp, Verified::Dewpt, Verified::Wind};
/// "T", "Td", "wind".
std::string_view Text(Verified quantity);

struct VerificationRow {
  int Hours = 0;
  double Press = 0;        // hPa; 0: the surface
  ErrorSum Forecast[3]{};  // by Verified
  ErrorSum Persistence[3]{};
};

struct Verification {
  std::vector<VerificationRow> Rows{};  // by hour, from the ground up
  int Pairs = 0;                        // of a sounding and a later one of its station
  int Forecasts = 0;                    // pairs that were forecast
  int NoUpwind = 0;                     // pairs without a sounding upwind
  int Ended = 0;                        // pairs before which the series ended
  int NoWind = 0;                       // pairs of which the first has no winds to move air by
};

/// The levels at which forecasts are compared, hPa, beside the surface.
inline constexpr double kVerifiedPress[] = {925, 850, 700, 500};

/// Forecasts from each sounding to each later one of the same station up to 24 hours, in whole
/// hours to the nearest. Soundings without a time are left out. A level counts where observation,
/// forecast and persistence have a value.
Verification Verify(const std::vector<SharedProfile>& soundings, const ForecastSettings& set,
                    const AnalysisSettings& analysis);

/// As a table for people.
std::vector<std::string> VerificationText(const Verification& verification);
/// As rows of CSV with their header.
std::string VerificationCsv(const Verification& verification);

}  // namespace vexa::forecast
