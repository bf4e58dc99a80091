// Colours for a field from little to much, or both ways from zero. Equal steps of value are equal
// steps to the eye: the colours run along a path through a perceptual colour space, measured in it.
#pragma once

#include <vector>

#include "picture/picture.h"

namespace vexa::crosssection {

/// A colour in Oklab (Ottosson 2020): lightness, green to red, blue to yellow.
struct Lab {
  double L = 0, A = 0, B = 0;
};
Lab LabOf(const Color& color);
/// The nearest colour that a screen has.
Color ColorOf(const Lab& lab);
double DifferenceOf(const Lab& one, const Lab& other);

/// A way through colours, by the share of its length.
class ColorRamp {
 public:
  explicit ColorRamp(const std::vector<Color>& stops);
  Color At(double share) const;

 private:
  std::vector<Lab> stops_{};
  std::vector<double> lengths_{};  // up to each stop
};

/// share  0 to 1 of fields from little to much
Color RisingColor(double share, bool onBlack);
/// share  -1 to 1; 0 is white, or the paper where that is black
Color SignedColor(double share, bool onBlack);

}  // namespace vexa::crosssection
