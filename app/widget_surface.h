// The surface that a widget offers a picture: its pixels and how large the system wants its
// letters.
#pragma once

#include <algorithm>
#include <QWidget>

#include "picture/surface.h"

namespace vexa {

/// A widget that has no room yet counts as one of a pixel.
inline Surface SurfaceOf(const QWidget& widget) {
  constexpr double kUsualDpi = 96;
  return WindowSurface(std::max(1, widget.width()), std::max(1, widget.height()),
                       widget.logicalDpiY() / kUsualDpi);
}

}  // namespace vexa
