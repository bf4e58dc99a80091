// The way of the balloon in three dimensions: where the winds carry it while it rises, seen from
// any side and height.
#pragma once

#include <string>
#include <vector>

#include "config/view_settings.h"
#include "config/window_settings.h"
#include "core/sounding_record.h"
#include "hodograph/wind_profile.h"
#include "picture/picture.h"
#include "picture/surface.h"

namespace vexa::hodograph {

inline constexpr double kAscentRate = 5;  // m/s, an ordinary balloon's

struct TrajectoryPoint {
  double Height = 0;  // m above ground
  double East = 0;    // m from the station
  double North = 0;
};

/// Where the balloon is at each wind level, and where it passes from one colour to the next: each
/// layer's mean wind carries it for the time of its rise. It starts above the station at the
/// lowest wind.
std::vector<TrajectoryPoint> Trajectory(const SoundingRecord& sounding,
                                        const ViewSettings& options);

/// A trajectory with what its drawing needs, so that turning the view costs only the drawing.
struct Hodogram {
  std::string Title{};
  std::vector<TrajectoryPoint> Points{};
  ViewSettings Set{};
};
Hodogram MakeHodogram(const SoundingRecord& sounding, const ViewSettings& options);

/// The trajectory's page for a surface. At an azimuth of 0 the view goes north; a tilt of 0 looks
/// level, 90 straight down.
Picture PlotHodogram(const Hodogram& hodogram, const Hodogram3DSettings& view,
                     const Surface& surface);

/// The view turned by degrees of azimuth and tilt: azimuth in [0, 360), tilt kept in -90 … 90.
Hodogram3DSettings Turned(Hodogram3DSettings view, double azimuth, double tilt);

}  // namespace vexa::hodograph
