#include "map/projection.h"

#include <proj.h>
#include <algorithm>
#include <cmath>

#include "core/numbers.h"

namespace vexa::map {
namespace {

constexpr double kPolarFrom = 65;    // degrees
constexpr double kTropicTo = 20;     // degrees
constexpr double kMargin = 1.25;     // of the extent of the places
constexpr double kSphere = 6371000;  // m

struct Span {
  double South = 0, North = 0, Middle = 0;  // latitudes
  double MiddleLon = 0;
};

Span SpanOf(const std::vector<Place>& places) {
  Span span;
  if (places.empty()) return span;
  double west = 0, east = 0;
  span.South = span.North = places.front().Lat;
  for (const Place& place : places) {
    span.South = std::min(span.South, place.Lat);
    span.North = std::max(span.North, place.Lat);
    const double lon = std::remainder(place.Lon - places.front().Lon, 360.0);
    west = std::min(west, lon);
    east = std::max(east, lon);
  }
  span.Middle = (span.South + span.North) / 2;
  span.MiddleLon = std::remainder(places.front().Lon + (west + east) / 2, 360.0);
  return span;
}

}  // namespace

ProjectionKind SuitableFor(const std::vector<Place>& places) {
  const Span span = SpanOf(places);
  if (std::fabs(span.Middle) >= kPolarFrom) return ProjectionKind::PolarStereographic;
  const bool crosses = span.South < 0 && span.North > 0;
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
    : kind_(SuitableFor(places)), on_(on) {
  if (places.empty()) return;
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

}  // namespace vexa::map
