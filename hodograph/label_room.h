// Room for labels: remembers where texts stand so that none is put on another.
#pragma once

#include <algorithm>
#include <array>
#include <optional>
#include <vector>

#include "picture/picture.h"

namespace vexa::hodograph {

class LabelRoom {
 public:
  explicit LabelRoom(const Rect& within) : within_(within) {}

  bool IsFree(const Rect& place) const {
    const bool inside = place.Left >= within_.Left && place.Right <= within_.Right &&
                        place.Top >= within_.Top && place.Bottom <= within_.Bottom;
    return inside && std::ranges::none_of(taken_, [&](const Rect& other) {
             return place.Left < other.Right && other.Left < place.Right &&
                    place.Top < other.Bottom && other.Top < place.Bottom;
           });
  }
  void Take(const Rect& place) { taken_.push_back(place); }

  /// Middle of a free place for a text of this extent beside a point, nearest first; taken when
  /// found.
  std::optional<Point> Beside(Point at, double width, double height, double gap) {
    constexpr std::array<Point, 8> kWays = {
        {{1, 0}, {0.8, -0.9}, {0, -1}, {-0.8, -0.9}, {-1, 0}, {-0.8, 0.9}, {0, 1}, {0.8, 0.9}}};
    for (const double far : {1.0, 1.9, 3.0}) {
      for (const Point& way : kWays) {
        const Point middle{at.X + way.X * (width / 2 + gap * far),
                           at.Y + way.Y * (height / 2 + gap * far)};
        const Rect place{middle.X - width / 2, middle.Y - height / 2, middle.X + width / 2,
                         middle.Y + height / 2};
        if (!IsFree(place)) continue;
        Take(place);
        return middle;
      }
    }
    return std::nullopt;
  }

 private:
  Rect within_;
  std::vector<Rect> taken_{};
};

/// Width of a text, near enough for keeping texts apart.
inline double TextWidth(std::size_t characters, double size) {
  return 0.58 * size * static_cast<double>(characters);
}

}  // namespace vexa::hodograph
