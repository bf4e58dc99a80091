#include "core/great_circle.h"

#include <algorithm>
#include <chrono>
#include <cmath>

#include "core/units.h"

namespace vexa {
namespace {

std::chrono::sys_time<std::chrono::minutes> PointInTime(const ObservationTime& time) {
  using namespace std::chrono;
  return sys_days{year{time.Year} / time.Month / time.Day} + hours{time.Hour} +
         minutes{time.Minute};
}

}  // namespace

double DistanceKm(double lat1, double lon1, double lat2, double lon2) {
  const double cosine =
      std::sin(Radians(lat1)) * std::sin(Radians(lat2)) +
      std::cos(Radians(lat1)) * std::cos(Radians(lat2)) * std::cos(Radians(lon2 - lon1));
  return kEarthKm * std::acos(std::clamp(cosine, -1.0, 1.0));
}

double InitialBearing(double lat1, double lon1, double lat2, double lon2) {
  const double across = Radians(lon2 - lon1);
  const double east = std::sin(across) * std::cos(Radians(lat2));
  const double north = std::cos(Radians(lat1)) * std::sin(Radians(lat2)) -
                       std::sin(Radians(lat1)) * std::cos(Radians(lat2)) * std::cos(across);
  return Wrap360(std::atan2(east, north) * kDegPerRadian);
}

double HoursBetween(const ObservationTime& from, const ObservationTime& to) {
  return static_cast<double>((PointInTime(to) - PointInTime(from)).count()) / 60;
}

ObservationTime MinutesLater(const ObservationTime& time, int minutes) {
  const auto then = PointInTime(time) + std::chrono::minutes{minutes};
  const auto day = std::chrono::floor<std::chrono::days>(then);
  const std::chrono::year_month_day date{day};
  const std::chrono::hh_mm_ss clock{then - day};
  return {static_cast<int>(date.year()), static_cast<int>(static_cast<unsigned>(date.month())),
          static_cast<int>(static_cast<unsigned>(date.day())),
          static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count())};
}

}  // namespace vexa
