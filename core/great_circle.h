// Ways between places and hours between times: what decides which soundings belong together.
#pragma once

#include "core/sounding_record.h"

namespace vexa {

inline constexpr double kEarthKm = 6371.0;  // radius of the sphere

/// Great circle between two places in degrees, km.
double DistanceKm(double lat1, double lon1, double lat2, double lon2);
/// Direction in which it begins, degrees in (0, 360].
double InitialBearing(double lat1, double lon1, double lat2, double lon2);

/// Hours from one known time to another.
double HoursBetween(const ObservationTime& from, const ObservationTime& to);
/// A known time so many minutes later.
ObservationTime MinutesLater(const ObservationTime& time, int minutes);

}  // namespace vexa
