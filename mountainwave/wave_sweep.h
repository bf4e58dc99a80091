// How much the answer hangs on the mountain: the strongest wave for every axis and half-width of a
// ridge in the same air.
#pragma once

#include <string>
#include <vector>

#include "config/display_settings.h"
#include "mountainwave/wave_model.h"
#include "mountainwave/wave_units.h"
#include "picture/picture.h"
#include "picture/surface.h"

namespace vexa::mountainwave {

inline constexpr double kNarrowestKm = 0.5;
inline constexpr double kWidestKm = 20;

/// The predominant wave's greatest velocity, m/s, by axis and half-width; 0 where there is none.
struct Sweep {
  int Axes = 0;    // from 360/n to 360 degrees in equal steps
  int Widths = 0;  // from 0.5 to 20 km in equal ratios
  double Relief = 0;
  std::vector<double> Velocities{};  // width by width
  double AxisOf(int axis) const { return 360.0 * (axis + 1) / Axes; }
  double WidthOf(int width) const;
  double At(int axis, int width) const {
    return Velocities[static_cast<std::size_t>(width) * static_cast<std::size_t>(Axes) +
                      static_cast<std::size_t>(axis)];
  }
};

/// relief  m above the station
Sweep SweepMountain(const Air& air, double relief, int axes = 100, int widths = 100);

/// One of several soundings: the strongest wave behind a mountain, and behind the same one turned.
struct SeriesMember {
  std::string Title{};
  double Velocity = 0;           // m/s; 0 where there is none
  double LengthKm = 0;           // its wavelength
  std::vector<double> ByAxis{};  // m/s, from 360/n to 360 degrees
};
SeriesMember MemberOf(const Air& air, std::string title, const RidgeForm& form, int axes = 72);

/// Soundings in their order as a chart: the strongest wave behind the mountain as bars, below it
/// that by the axis.
Picture PlotSeries(const std::vector<SeriesMember>& members, const RidgeForm& form,
                   const WaveUnits& units, const DisplaySettings& look, const Surface& surface);

/// The sweep as a chart, the ridge in question marked: axis to the right, half-width upward.
Picture PlotSweep(const Sweep& sweep, const RidgeForm& marked, const WaveUnits& units,
                  const DisplaySettings& look, const Surface& surface);

}  // namespace vexa::mountainwave
