// Shapes and colours that pictures of all displays are drawn with.
#pragma once

#include <cstdint>
#include <vector>

#include "picture/picture.h"

namespace vexa {

/// The corners of a rectangle, the first again at the end.
inline std::vector<Point> OutlineOf(const Rect& r) {
  return {
      {r.Left, r.Top}, {r.Right, r.Top}, {r.Right, r.Bottom}, {r.Left, r.Bottom}, {r.Left, r.Top}};
}

/// A colour moved towards another; share 0 leaves it, 1 replaces it.
inline Color Blend(Color from, Color to, double share) {
  const auto mix = [share](std::uint8_t a, std::uint8_t b) {
    return static_cast<std::uint8_t>(a + (b - a) * share);
  };
  return {mix(from.Red, to.Red), mix(from.Green, to.Green), mix(from.Blue, to.Blue), from.Alpha};
}

/// The paper of a display and the ink for its texts and frames.
struct PaperAndInk {
  Color Paper{255, 255, 255};
  Color Ink{20, 20, 20};
};
constexpr PaperAndInk OnPaper(bool isBlack) {
  return isBlack ? PaperAndInk{{0, 0, 0}, {235, 235, 235}} : PaperAndInk{};
}

}  // namespace vexa
