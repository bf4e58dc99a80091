// The soundings around a station on a map with the mean winds of their lowest kilometre, those
// upwind in red; and what the mouse chooses on it.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "config/view_settings.h"
#include "forecast/region.h"
#include "map/area_map.h"

namespace vexa::forecast {

inline constexpr std::string_view kAutomaticText =
    " Upwind stations are automatically determined.  ";
inline constexpr std::string_view kPointText = "Move mouse over wind plots to see stations.";
inline constexpr std::string_view kManualText =
    "  Manually select stations by highlighting wind plots then drag a line to the desired upwind "
    "station.";
inline constexpr std::string_view kBoxAgainText = "Start again -- must box at least one wind";
inline constexpr std::string_view kDragLineText = "Drag a line to the desired upwind station.";
inline constexpr std::string_view kRestoreText =
    "Use the Restore menu option to return automatic upwind selection.";
inline constexpr std::string_view kNoUpwindText = "No upwind data.";
inline constexpr std::string_view kSearchFirstText =
    "Soundings around have not been searched for yet.";

/// A box being drawn around winds, or a line towards where the air comes from.
struct MapDrawing {
  std::optional<Rect> Box{};
  std::optional<Point> LineTo{};  // from the station
  std::vector<std::size_t> Boxed{};
  std::string_view Told{};  // in place of what the choice says
};

/// What the map says of how upwind stations are chosen.
std::string MapText(const Region& region, const MapDrawing& drawing);

struct ForecastMapInput {
  const Region& Of;
  const std::vector<map::MapLine>& Lines;
  const ViewSettings& Set;  // of the wind symbols
  bool OnBlack = false;
  MapDrawing Drawing{};
};

/// "Mean 1 km winds for 6 Soundings within 600 km of Norman".
std::string MapCaption(const Region& region);

map::AreaMap PlotForecastMap(const ForecastMapInput& input, const Surface& on,
                             const map::MapFrame* frame = nullptr);

/// The neighbour whose mark is nearest to a point of the page, if one is near.
std::optional<std::size_t> NeighbourAt(const Region& region, const map::MapFrame& at,
                                       const Point& point);
/// Those whose marks are in a box, which may have been drawn from any corner.
std::vector<std::size_t> NeighboursIn(const Region& region, const map::MapFrame& at,
                                      const Rect& box);
/// The bearing of a point from the station, degrees in (0, 360].
std::optional<double> BearingTo(const Region& region, const map::MapFrame& at, const Point& point);

}  // namespace vexa::forecast
