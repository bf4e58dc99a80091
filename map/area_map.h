// A map with stations: coasts, borders and state lines, the graticule, stations with their names,
// and a line through them. Whoever knows more of a station draws it at its place.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "map/lines.h"
#include "map/projection.h"
#include "picture/picture.h"
#include "picture/surface.h"

namespace vexa::map {

struct MapStation {
  Place At{};
  std::string Name{};
  bool IsAside = false;  // shown faintly; the line does not lead through it
};

struct AreaMapInput {
  std::string Title{};
  std::string Caption{};  // under the title
  const std::vector<MapStation>& Stations;
  const std::vector<MapLine>& Lines;
  bool JoinsStations = true;
  std::vector<Place> Line{};  // that is being laid, from one place to the other
  bool OnBlack = false;
  /// Draws what else there is of a station, counted from 0; north is so many degrees clockwise of
  /// up there.
  std::function<void(Picture&, Point at, double north, std::size_t station)> Symbol{};
};

struct AreaMap {
  Picture Page{};
  MapFrame At{};
};

/// The map of the stations' area; of another part of the globe where a frame says so.
AreaMap PlotAreaMap(const AreaMapInput& input, const Surface& on, const MapFrame* frame = nullptr);

/// The station nearest to a point of the page within a reach.
std::optional<std::size_t> StationAt(const std::vector<MapStation>& stations, const MapFrame& on,
                                     Point at, double reach);

}  // namespace vexa::map
