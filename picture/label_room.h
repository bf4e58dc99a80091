// Room for labels: remembers where texts stand so that none is put on another.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

#include "picture/clip.h"
#include "picture/picture.h"
#include "picture/text_width.h"

namespace vexa {

class LabelRoom {
 public:
  explicit LabelRoom(const Rect& within) : within_(within) {}

  const Rect& Within() const { return within_; }
  bool IsFree(const Rect& place) const {
    const bool inside = place.Left >= within_.Left && place.Right <= within_.Right &&
                        place.Top >= within_.Top && place.Bottom <= within_.Bottom;
    return inside && !Touches(place, taken_) &&
           std::ranges::none_of(leaders_, [&](const std::vector<Point>& leader) {
             return !ClipPolyline(leader, place).empty();
           });
  }
  bool IsOffLines(const Rect& place) const { return !Touches(place, avoided_); }
  /// A straight line crosses none of the lines that texts keep away from.
  bool IsOffLines(Point from, Point to) const {
    const double left = std::min(from.X, to.X), right = std::max(from.X, to.X);
    const double top = std::min(from.Y, to.Y), bottom = std::max(from.Y, to.Y);
    return std::ranges::none_of(avoided_, [&](const Rect& line) {
      return left < line.Right && line.Left < right && top <= line.Bottom && line.Top <= bottom &&
             !ClipPolyline({from, to}, line).empty();
    });
  }
  /// A straight line runs through no text.
  bool IsOffTexts(Point from, Point to) const {
    return std::ranges::all_of(taken_, [&](const Rect& text) {
      return ClipPolyline({from, to}, text).empty();
    });
  }
  /// A leader that is drawn: no text is put on it any more.
  void TakeLeader(Point from, Point to) { leaders_.push_back({from, to}); }
  void Take(const Rect& place) { taken_.push_back(place); }

  /// Lines that texts keep away from where they can, by their points.
  void Avoid(Point at, double reach) {
    avoided_.push_back({at.X - reach, at.Y - reach, at.X + reach, at.Y + reach});
  }
  void AvoidLine(const std::vector<Point>& line, double reach) {
    if (line.empty()) return;
    Point last = line.front();
    Avoid(last, reach);
    for (const Point& to : line) {
      const double dx = to.X - last.X;
      const double dy = to.Y - last.Y;
      const double length = std::max(std::fabs(dx), std::fabs(dy));
      // Points closer than a text would notice are one.
      if (length < reach / 2 && &to != &line.back()) continue;
      const int steps = 1 + static_cast<int>(length / (2 * reach));
      for (int step = 1; step <= steps; ++step) {
        const double share = static_cast<double>(step) / steps;
        Avoid({last.X + share * dx, last.Y + share * dy}, reach);
      }
      last = to;
    }
  }

  /// Middle of a free place for a text of this extent beside a point, nearest first and, among
  /// those, on the preferred side; taken when found. No further away than so many gaps, and over
  /// lines only where there is no place off them.
  std::optional<Point> Beside(Point at, double width, double height, double gap,
                              Point prefer = {1, 0}, double farthest = 3) {
    for (const bool overLines : {false, true}) {
      const auto middle =
          Beside(at, width, height, gap, prefer, overLines ? 3 : farthest, overLines);
      if (middle) return middle;
    }
    return std::nullopt;
  }

 private:
  static bool Touches(const Rect& place, const std::vector<Rect>& others) {
    return std::ranges::any_of(others, [&](const Rect& other) {
      return place.Left < other.Right && other.Left < place.Right && place.Top < other.Bottom &&
             other.Top < place.Bottom;
    });
  }

  static Point NearestOf(const Rect& place, Point to) {
    return {std::clamp(to.X, place.Left, place.Right), std::clamp(to.Y, place.Top, place.Bottom)};
  }

  std::optional<Point> Beside(Point at, double width, double height, double gap, Point prefer,
                              double farthest, bool overLines) {
    std::array<Point, 8> ways = {
        {{1, 0}, {0.8, -0.9}, {0, -1}, {-0.8, -0.9}, {-1, 0}, {-0.8, 0.9}, {0, 1}, {0.8, 0.9}}};
    std::ranges::stable_sort(ways, std::greater<>(),
                             [&](const Point& way) { return way.X * prefer.X + way.Y * prefer.Y; });
    for (const double far : {1.0, 1.9, 3.0, 5.0, 8.0, 12.0}) {
      if (far > farthest) break;
      for (const Point& way : ways) {
        const Point middle{at.X + way.X * (width / 2 + gap * far),
                           at.Y + way.Y * (height / 2 + gap * far)};
        const Rect place{middle.X - width / 2, middle.Y - height / 2, middle.X + width / 2,
                         middle.Y + height / 2};
        if (!IsFree(place) || (!overLines && Touches(place, avoided_))) continue;
        if (far > 1 && !IsOffTexts(at, NearestOf(place, at))) continue;
        Take(place);
        return middle;
      }
    }
    return std::nullopt;
  }

  Rect within_;
  std::vector<Rect> taken_{};
  std::vector<Rect> avoided_{};
  std::vector<std::vector<Point>> leaders_{};
};

/// Width of a text by its number of letters alone (picture/text_width.h measures the text itself).
inline double TextWidth(std::size_t characters, double size) {
  return 0.58 * size * static_cast<double>(characters);
}

}  // namespace vexa
