// What a picture is composed for: the size of a window, an image or a sheet of paper, all measured
// in the same drawing units, so that one size gives one picture whatever it is put on. A unit
// belongs to the type: a point of letters has as many on every surface, and a screen whose letters
// are enlarged has fewer units for the same pixels.
#pragma once

namespace vexa {

inline constexpr double kUnitsPerPixel = 12;  // a pixel of a screen at 96 dpi

/// Drawing units of so many pixels at 96 dpi.
constexpr double Px(double pixels) {
  return pixels * kUnitsPerPixel;
}
inline constexpr double kUnitsPerPoint = 16;  // a point, 72 an inch
inline constexpr double kUnitsPerInch = 72 * kUnitsPerPoint;

enum class Medium { Screen, Paper, Image };

struct Surface {
  double Width = 0;  // drawing units
  double Height = 0;
  Medium On = Medium::Screen;
  bool operator==(const Surface&) const = default;
};

/// A part of a window, in its own pixels before the screen's scaling. fontScale tells how much
/// larger than usual the system wants its letters; everything grows with them.
constexpr Surface WindowSurface(double widthPx, double heightPx, double fontScale = 1) {
  const double units = kUnitsPerPixel / (fontScale > 0 ? fontScale : 1);
  return {widthPx * units, heightPx * units, Medium::Screen};
}

/// An image of so many pixels at a resolution.
constexpr Surface ImageSurface(double widthPx, double heightPx, double dpi = 96) {
  const double units = kUnitsPerInch / (dpi > 0 ? dpi : 96);
  return {widthPx * units, heightPx * units, Medium::Image};
}

/// A sheet, or a part of one, in points or in millimetres.
constexpr Surface PaperSurface(double widthPt, double heightPt) {
  return {widthPt * kUnitsPerPoint, heightPt * kUnitsPerPoint, Medium::Paper};
}
constexpr Surface PaperSurfaceMm(double widthMm, double heightMm) {
  return {widthMm / 25.4 * kUnitsPerInch, heightMm / 25.4 * kUnitsPerInch, Medium::Paper};
}

/// Letters come in four sizes. Nothing on a page is written smaller than a note: what finds no
/// room is left out instead.
enum class Type { Title, Value, Label, Note };

/// Height of the letters' box in drawing units.
constexpr double LetterSize(Type step) {
  switch (step) {
    case Type::Title:
      return 20 * kUnitsPerPixel;
    case Type::Value:
      return 13 * kUnitsPerPixel;
    case Type::Label:
      return 12 * kUnitsPerPixel;
    case Type::Note:
      return 11 * kUnitsPerPixel;
  }
  return 11 * kUnitsPerPixel;
}

/// From one line of a box of values to the next, and what a box keeps free on every side.
inline constexpr double kLineStep = 17 * kUnitsPerPixel;
inline constexpr double kBoxPadding = 8 * kUnitsPerPixel;

/// Height of a box of so many lines.
constexpr double BoxHeight(double lines) {
  return lines * kLineStep + kBoxPadding;
}

}  // namespace vexa
