#include "map/projection.h"

#include <proj.h>
#include <algorithm>
#include <cmath>
#include <numbers>

#include "core/late_library.h"
#include "core/numbers.h"

namespace vexa::map {
namespace {

#ifdef VEXA_PROJ_LIBRARY
VEXA_LATE_LIBRARY(Proj, VEXA_PROJ_LIBRARY);
VEXA_LATE_FUNCTION(ProjLibrary, proj_context_create);
VEXA_LATE_FUNCTION(ProjLibrary, proj_context_destroy);
VEXA_LATE_FUNCTION(ProjLibrary, proj_coord);
VEXA_LATE_FUNCTION(ProjLibrary, proj_create);
VEXA_LATE_FUNCTION(ProjLibrary, proj_destroy);
VEXA_LATE_FUNCTION(ProjLibrary, proj_log_level);
VEXA_LATE_FUNCTION(ProjLibrary, proj_todeg);
VEXA_LATE_FUNCTION(ProjLibrary, proj_torad);
VEXA_LATE_FUNCTION(ProjLibrary, proj_trans);
#else
constexpr bool HasProj() {
  return true;
}
#endif

constexpr double kPolarFrom = 65;    // degrees
constexpr double kTropicTo = 20;     // degrees
constexpr double kAroundPole = 150;  // degrees of longitude that only a map about the pole holds
constexpr double kWorldLat = 110;    // degrees from south to north, and from west to east, ...
constexpr double kWorldLon = 200;    // ... from which on an area is most of the globe
constexpr double kMargin = 1.25;     // of the extent of the places
constexpr double kSphere = 6371000;  // m

struct Span {
  double South = 0, North = 0, Middle = 0;  // latitudes
  double MiddleLon = 0, Across = 0;         // longitudes
};

// The longitudes stand outside their widest gap.
void TakeLongitudes(const std::vector<Place>& places, Span& span) {
  std::vector<double> lons;
  for (const Place& place : places) lons.push_back(std::remainder(place.Lon, 360.0));
  std::ranges::sort(lons);
  double gap = 360 - (lons.back() - lons.front());
  double west = lons.front();
  for (std::size_t i = 1; i < lons.size(); ++i) {
    if (lons[i] - lons[i - 1] <= gap) continue;
    gap = lons[i] - lons[i - 1];
    west = lons[i];
  }
  span.Across = 360 - gap;
  span.MiddleLon = std::remainder(west + span.Across / 2, 360.0);
}

Span SpanOf(const std::vector<Place>& places) {
  Span span;
  if (places.empty()) return span;
  const auto [south, north] = std::ranges::minmax(places, {}, &Place::Lat);
  span.South = south.Lat;
  span.North = north.Lat;
  span.Middle = (span.South + span.North) / 2;
  TakeLongitudes(places, span);
  return span;
}

double Turn(double degrees) {
  return degrees * std::numbers::pi / 180;
}

}  // namespace

bool HasProjections() {
  return HasProj();
}

ProjectionKind SuitableFor(const std::vector<Place>& places) {
  const Span span = SpanOf(places);
  if (std::fabs(span.Middle) >= kPolarFrom) return ProjectionKind::PolarStereographic;
  const bool crosses = span.South < 0 && span.North > 0;
  const bool isWide = span.North - span.South > kWorldLat || span.Across > kWorldLon;
  if (crosses && isWide) return ProjectionKind::World;
  if (!crosses && span.Across > kAroundPole) return ProjectionKind::PolarStereographic;
  if (std::fabs(span.Middle) <= kTropicTo || crosses) return ProjectionKind::Mercator;
  return ProjectionKind::Lambert;
}

std::string ProjectionText(const std::vector<Place>& places) {
  const Span span = SpanOf(places);
  const std::string common =
      " +lon_0=" + Shortest(Rounded(span.MiddleLon, 4)) + " +R=" + Shortest(kSphere) + " +no_defs";
  switch (SuitableFor(places)) {
    case ProjectionKind::PolarStereographic:
      return std::string("+proj=stere +lat_0=") + (span.Middle > 0 ? "90" : "-90") +
             " +lat_ts=" + Shortest(Rounded(span.Middle, 4)) + common;
    case ProjectionKind::World:
      return "+proj=robin" + common;
    case ProjectionKind::Mercator:
      return "+proj=merc +lat_ts=" + Shortest(Rounded(std::fabs(span.Middle), 4)) + common;
    case ProjectionKind::Lambert: {
      // The standard parallels a sixth of the height inside the area (Deetz and Adams 1921).
      const double inside = std::max(2.0, (span.North - span.South) / 3);
      return "+proj=lcc +lat_1=" + Shortest(Rounded(span.Middle - inside, 4)) +
             " +lat_2=" + Shortest(Rounded(span.Middle + inside, 4)) +
             " +lat_0=" + Shortest(Rounded(span.Middle, 4)) + common;
    }
  }
  return {};
}

struct MapFrame::Projection {
  PJ_CONTEXT* Context = nullptr;
  PJ* Of = nullptr;

  explicit Projection(const std::string& text) : Context(proj_context_create()) {
    proj_log_level(Context, PJ_LOG_NONE);
    Of = proj_create(Context, text.c_str());
  }
  ~Projection() {
    if (Of != nullptr) proj_destroy(Of);
    proj_context_destroy(Context);
  }
  Projection(const Projection&) = delete;
  Projection& operator=(const Projection&) = delete;

  std::optional<Point> Forward(const Place& at) const {
    const PJ_COORD to =
        proj_trans(Of, PJ_FWD, proj_coord(proj_torad(at.Lon), proj_torad(at.Lat), 0, 0));
    if (!std::isfinite(to.xy.x) || !std::isfinite(to.xy.y)) return std::nullopt;
    return Point{to.xy.x, to.xy.y};
  }
  std::optional<Place> Inverse(const Point& at) const {
    const PJ_COORD to = proj_trans(Of, PJ_INV, proj_coord(at.X, at.Y, 0, 0));
    if (!std::isfinite(to.lp.lam) || !std::isfinite(to.lp.phi)) return std::nullopt;
    return Place{proj_todeg(to.lp.phi), proj_todeg(to.lp.lam)};
  }
};

MapFrame::MapFrame(const std::vector<Place>& places, const Rect& on, double leastKm)
    : kind_(SuitableFor(places)), on_(on), middleLon_(SpanOf(places).MiddleLon) {
  if (places.empty() || !HasProj()) return;
  auto projection = std::make_shared<Projection>(ProjectionText(places));
  if (projection->Of == nullptr) return;
  bool any = false;
  Rect extent;
  for (const Place& place : places) {
    const std::optional<Point> at = projection->Forward(place);
    if (!at) continue;
    extent = any ? Rect{std::min(extent.Left, at->X), std::min(extent.Top, at->Y),
                        std::max(extent.Right, at->X), std::max(extent.Bottom, at->Y)}
                 : Rect{at->X, at->Y, at->X, at->Y};
    any = true;
  }
  if (!any) return;
  middleX_ = (extent.Left + extent.Right) / 2;
  middleY_ = (extent.Top + extent.Bottom) / 2;
  const double width = std::max(extent.Width() * kMargin, leastKm * 1000);
  const double height = std::max(extent.Height() * kMargin, leastKm * 1000);
  perMeter_ = std::min(on.Width() / width, on.Height() / height);
  projection_ = std::move(projection);
}

std::optional<double> MapFrame::MiddleLon() const {
  if (!IsValid() || kind_ == ProjectionKind::PolarStereographic) return std::nullopt;
  return middleLon_;
}

std::optional<Point> MapFrame::ToPage(const Place& at) const {
  if (!IsValid()) return std::nullopt;
  const std::optional<Point> meters = projection_->Forward(at);
  if (!meters) return std::nullopt;
  return Point{(on_.Left + on_.Right) / 2 + (meters->X - middleX_) * perMeter_,
               (on_.Top + on_.Bottom) / 2 - (meters->Y - middleY_) * perMeter_};
}

std::optional<Place> MapFrame::ToPlace(const Point& at) const {
  if (!IsValid()) return std::nullopt;
  return projection_->Inverse({middleX_ + (at.X - (on_.Left + on_.Right) / 2) / perMeter_,
                               middleY_ - (at.Y - (on_.Top + on_.Bottom) / 2) / perMeter_});
}

double MapFrame::NorthAt(const Place& at) const {
  constexpr double kStep = 0.01;  // degrees
  const double step = at.Lat > 89 ? -kStep : kStep;
  const auto here = ToPage(at);
  const auto there = ToPage({at.Lat + step, at.Lon});
  if (!here || !there) return 0;
  const double sign = step > 0 ? 1 : -1;
  return std::atan2(sign * (there->X - here->X), sign * (here->Y - there->Y)) * 57.29578;
}

MapFrame MapFrame::Moved(double right, double down) const {
  MapFrame moved = *this;
  moved.middleX_ -= right / perMeter_;
  moved.middleY_ += down / perMeter_;
  return moved;
}

MapFrame MapFrame::Enlarged(double factor, const Point& about) const {
  MapFrame enlarged = *this;
  const double fromX = (about.X - (on_.Left + on_.Right) / 2) / perMeter_;
  const double fromY = (about.Y - (on_.Top + on_.Bottom) / 2) / perMeter_;
  enlarged.perMeter_ *= factor;
  enlarged.middleX_ += fromX * (1 - 1 / factor);
  enlarged.middleY_ -= fromY * (1 - 1 / factor);
  return enlarged;
}

MapFrame MapFrame::Placed(const Rect& on) const {
  MapFrame placed = *this;
  if (on_.Width() > 0 && on_.Height() > 0) {
    placed.perMeter_ *= std::min(on.Width() / on_.Width(), on.Height() / on_.Height());
  }
  placed.on_ = on;
  return placed;
}

std::vector<Place> GreatCircle(const Place& from, const Place& to, double stepKm) {
  struct Way {
    double X, Y, Z;
  };
  const auto wayTo = [](const Place& at) {
    return Way{std::cos(Turn(at.Lat)) * std::cos(Turn(at.Lon)),
               std::cos(Turn(at.Lat)) * std::sin(Turn(at.Lon)), std::sin(Turn(at.Lat))};
  };
  const Way a = wayTo(from);
  const Way b = wayTo(to);
  const double angle = std::acos(std::clamp(a.X * b.X + a.Y * b.Y + a.Z * b.Z, -1.0, 1.0));
  const int steps = static_cast<int>(std::ceil(angle * kSphere / 1000 / stepKm));
  const double sine = std::sin(angle);
  std::vector<Place> places = {from};
  for (int i = 1; i < steps && sine > 0; ++i) {
    const double first = std::sin(angle * (steps - i) / steps) / sine;
    const double second = std::sin(angle * i / steps) / sine;
    const double x = a.X * first + b.X * second;
    const double y = a.Y * first + b.Y * second;
    const double z = a.Z * first + b.Z * second;
    places.push_back({std::atan2(z, std::hypot(x, y)) / Turn(1), std::atan2(y, x) / Turn(1)});
  }
  places.push_back(to);
  return places;
}

}  // namespace vexa::map
