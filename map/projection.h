// Maps of a part of the globe: the projection that suits it, by PROJ, and the way from degrees to a
// page and back.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "picture/picture.h"

namespace vexa::map {

/// A place on the globe, degrees, north and east positive.
struct Place {
  double Lat = 0;
  double Lon = 0;
  bool operator==(const Place&) const = default;
};

enum class ProjectionKind { Lambert, PolarStereographic, Mercator, World };

/// What suits an area: polar stereographic from 65° on and around a pole, Mercator within 20° of
/// the equator and across it, Lambert's conformal conic between; Robinson's for most of the globe.
ProjectionKind SuitableFor(const std::vector<Place>& places);

/// False where the library that projects is not there: every map is then without a projection.
bool HasProjections();

/// A map around some places, on a rectangle of a page. Moves; without a projection it maps nothing.
class MapFrame {
 public:
  MapFrame() = default;
  /// Shows all places with a margin around them, at least so many kilometres wide and high.
  MapFrame(const std::vector<Place>& places, const Rect& on, double leastKm = 300);

  bool IsValid() const { return projection_ != nullptr; }
  ProjectionKind Kind() const { return kind_; }
  const Rect& On() const { return on_; }
  /// Where a map that goes around the globe is cut: 180° from here. None where it is not cut.
  std::optional<double> MiddleLon() const;
  /// Units of the page to a kilometre at its middle.
  double PerKm() const { return perMeter_ * 1000; }

  /// None for places that the projection does not have.
  std::optional<Point> ToPage(const Place& at) const;
  std::optional<Place> ToPlace(const Point& at) const;
  /// Direction of north at a place of the page, degrees clockwise from up.
  double NorthAt(const Place& at) const;

  /// The same map moved by a way on the page and enlarged about a point of it.
  MapFrame Moved(double right, double down) const;
  MapFrame Enlarged(double factor, const Point& about) const;
  /// The same map on another rectangle: its middle stays, and as much around it as before shows.
  MapFrame Placed(const Rect& on) const;

 private:
  struct Projection;
  std::shared_ptr<Projection> projection_{};
  ProjectionKind kind_ = ProjectionKind::Lambert;
  Rect on_{};
  double perMeter_ = 1;
  double middleX_ = 0;  // metres, what stands in the middle of the rectangle
  double middleY_ = 0;
  double middleLon_ = 0;
};

/// Places along the great circle from one place to another, both ends included, no further apart
/// than `stepKm`.
std::vector<Place> GreatCircle(const Place& from, const Place& to, double stepKm = 100);

/// PROJ's text for an area: "+proj=lcc +lat_1=...".
std::string ProjectionText(const std::vector<Place>& places);

}  // namespace vexa::map
