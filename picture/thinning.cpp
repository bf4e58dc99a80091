#include "picture/thinning.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace vexa {
namespace {

double Cross(Point a, Point b) {
  return a.X * b.Y - a.Y * b.X;
}

// What a straight line from one place still reaches: the directions in which it passes by all
// points seen so far at no more than the distance `near`.
class Sight {
 public:
  Sight(Point from, double near) : from_(from), near_(near) {}

  // Whether the line may go on to the next point, which then counts among those seen.
  bool Reaches(Point at) {
    const double dx = at.X - from_.X;
    const double dy = at.Y - from_.Y;
    const double distance = std::sqrt(dx * dx + dy * dy);
    if (distance < farthest_ - near_) return false;  // it turns back
    farthest_ = std::max(farthest_, distance);
    if (!(distance > near_)) return true;  // any direction passes by it
    const Point way{dx / distance, dy / distance};
    if (isNarrowed_ && (Cross(way, left_) < 0 || Cross(right_, way) < 0)) return false;
    const double sine = near_ / distance;
    const double cosine = std::sqrt(1 - sine * sine);
    Narrow({way.X * cosine - way.Y * sine, way.Y * cosine + way.X * sine},
           {way.X * cosine + way.Y * sine, way.Y * cosine - way.X * sine});
    return true;
  }

 private:
  void Narrow(Point left, Point right) {
    if (!isNarrowed_ || Cross(left, left_) > 0) left_ = left;
    if (!isNarrowed_ || Cross(right_, right) > 0) right_ = right;
    isNarrowed_ = true;
  }

  Point from_;
  double near_;
  double farthest_ = 0;
  bool isNarrowed_ = false;
  Point left_{};  // the directions lie between these two
  Point right_{};
};

}  // namespace

// After Williams (1978): one pass, each point looked at once.
std::vector<Point> Thinned(std::vector<Point> points, double near) {
  if (points.size() < 3 || !(near > 0)) return points;
  std::size_t count = 1;
  Sight sight(points.front(), near);
  for (std::size_t i = 1; i < points.size(); ++i) {
    if (sight.Reaches(points[i])) continue;
    const Point last = points[i - 1];
    points[count++] = last;
    sight = Sight(last, near);
    sight.Reaches(points[i]);
  }
  points[count++] = points.back();
  points.resize(count);
  return points;
}

}  // namespace vexa
