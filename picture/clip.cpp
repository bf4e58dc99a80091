#include "picture/clip.h"

#include <cmath>
#include <cstddef>
#include <optional>
#include <utility>

namespace vexa {
namespace {

Point Between(Point from, Point to, double share) {
  return {from.X + (to.X - from.X) * share, from.Y + (to.Y - from.Y) * share};
}

struct Segment {
  Point From{};
  Point To{};
};

// Liang & Barsky (1984): the part of a segment between its entry and its exit. An end inside is
// kept to the digit, and a cut lies on its edge exactly, so that pieces join up.
std::optional<Segment> ClipSegment(Point from, Point to, const Rect& rect) {
  const double dx = to.X - from.X;
  const double dy = to.Y - from.Y;
  double enter = 0;
  double leave = 1;
  Segment kept{from, to};
  const auto cut = [&](double towards, double distance, auto&& setEdge) {
    if (towards == 0) return distance >= 0;
    const double share = distance / towards;
    if (towards < 0) {
      if (share > leave) return false;
      if (share > enter) {
        enter = share;
        kept.From = Between(from, to, share);
        setEdge(kept.From);
      }
    } else {
      if (share < enter) return false;
      if (share < leave) {
        leave = share;
        kept.To = Between(from, to, share);
        setEdge(kept.To);
      }
    }
    return true;
  };
  const bool visible = cut(-dx, from.X - rect.Left, [&](Point& at) { at.X = rect.Left; }) &&
                       cut(dx, rect.Right - from.X, [&](Point& at) { at.X = rect.Right; }) &&
                       cut(-dy, from.Y - rect.Top, [&](Point& at) { at.Y = rect.Top; }) &&
                       cut(dy, rect.Bottom - from.Y, [&](Point& at) { at.Y = rect.Bottom; });
  if (!visible) return std::nullopt;
  return kept;
}

// A line that is drawn in pieces; a piece has two points at least.
class Pieces {
 public:
  bool EndsAt(Point at) const { return !piece_.empty() && piece_.back() == at; }
  void Add(Point at) { piece_.push_back(at); }
  void GoTo(Point at) {
    if (!EndsAt(at)) Add(at);
  }
  void End() {
    if (piece_.size() > 1) pieces_.push_back(std::move(piece_));
    piece_.clear();
  }
  std::vector<std::vector<Point>> Take() {
    End();
    return std::move(pieces_);
  }

 private:
  std::vector<Point> piece_;
  std::vector<std::vector<Point>> pieces_;
};

// Walks a line; `add` adds what is wanted of each span to the pieces, given what of it lies inside.
template <class AddSpan>
std::vector<std::vector<Point>> CutAlong(const std::vector<Point>& points, const Rect& rect,
                                         const AddSpan& add) {
  Pieces pieces;
  for (std::size_t i = 1; i < points.size(); ++i) {
    const Segment span{points[i - 1], points[i]};
    if (IsFinite(span.From) && IsFinite(span.To)) {
      add(pieces, span, ClipSegment(span.From, span.To, rect));
    } else {
      pieces.End();
    }
  }
  return pieces.Take();
}

// One side of Sutherland & Hodgman (1974).
template <class Inside, class Crossing>
std::vector<Point> CutSide(const std::vector<Point>& ring, Inside&& inside, Crossing&& crossing) {
  std::vector<Point> kept;
  kept.reserve(ring.size() + 4);
  for (std::size_t i = 0; i < ring.size(); ++i) {
    const Point& from = ring[i == 0 ? ring.size() - 1 : i - 1];
    const Point& to = ring[i];
    if (inside(from) != inside(to)) kept.push_back(crossing(from, to));
    if (inside(to)) kept.push_back(to);
  }
  return kept;
}

Point AtX(Point from, Point to, double x) {
  return {x, Between(from, to, (x - from.X) / (to.X - from.X)).Y};
}
Point AtY(Point from, Point to, double y) {
  return {Between(from, to, (y - from.Y) / (to.Y - from.Y)).X, y};
}

}  // namespace

bool IsFinite(Point at) {
  return std::isfinite(at.X) && std::isfinite(at.Y);
}

std::vector<std::vector<Point>> ClipPolyline(const std::vector<Point>& points, const Rect& to) {
  return CutAlong(points, to, [](Pieces& pieces, const Segment& span, const auto& inside) {
    // Outside, or touching a corner.
    if (!inside || (inside->From == inside->To && span.From != span.To)) return pieces.End();
    if (!pieces.EndsAt(inside->From)) {
      pieces.End();
      pieces.Add(inside->From);
    }
    pieces.Add(inside->To);
    if (inside->To != span.To) pieces.End();
  });
}

std::vector<std::vector<Point>> CutOut(const std::vector<Point>& points, const Rect& of) {
  return CutAlong(points, of, [](Pieces& pieces, const Segment& span, const auto& inside) {
    pieces.GoTo(span.From);
    if (inside && inside->From != inside->To) {
      pieces.GoTo(inside->From);
      pieces.End();
      pieces.GoTo(inside->To);
    }
    pieces.GoTo(span.To);
  });
}

std::vector<Point> ClipPolygon(const std::vector<Point>& ring, const Rect& to) {
  std::vector<Point> kept;
  kept.reserve(ring.size());
  for (const Point& at : ring) {
    if (IsFinite(at)) kept.push_back(at);
  }
  kept = CutSide(
      kept, [&](Point at) { return at.X >= to.Left; },
      [&](Point from, Point next) { return AtX(from, next, to.Left); });
  kept = CutSide(
      kept, [&](Point at) { return at.X <= to.Right; },
      [&](Point from, Point next) { return AtX(from, next, to.Right); });
  kept = CutSide(
      kept, [&](Point at) { return at.Y >= to.Top; },
      [&](Point from, Point next) { return AtY(from, next, to.Top); });
  kept = CutSide(
      kept, [&](Point at) { return at.Y <= to.Bottom; },
      [&](Point from, Point next) { return AtY(from, next, to.Bottom); });
  if (kept.size() < 3) kept.clear();
  return kept;
}

}  // namespace vexa
