#include "crosssection/color_map.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace vexa::crosssection {
namespace {

double Linear(std::uint8_t channel) {
  const double value = channel / 255.0;
  return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

std::uint8_t Encoded(double linear) {
  const double value = std::clamp(linear, 0.0, 1.0);
  const double encoded =
      value <= 0.0031308 ? 12.92 * value : 1.055 * std::pow(value, 1 / 2.4) - 0.055;
  return static_cast<std::uint8_t>(std::floor(encoded * 255 + 0.5));
}

}  // namespace

Lab LabOf(const Color& color) {
  const double r = Linear(color.Red);
  const double g = Linear(color.Green);
  const double b = Linear(color.Blue);
  const double l = std::cbrt(0.4122214708 * r + 0.5363325363 * g + 0.0514459929 * b);
  const double m = std::cbrt(0.2119034982 * r + 0.6806995451 * g + 0.1073969566 * b);
  const double s = std::cbrt(0.0883024619 * r + 0.2817188376 * g + 0.6299787005 * b);
  return {0.2104542553 * l + 0.7936177850 * m - 0.0040720468 * s,
          1.9779984951 * l - 2.4285922050 * m + 0.4505937099 * s,
          0.0259040371 * l + 0.7827717662 * m - 0.8086757660 * s};
}

Color ColorOf(const Lab& lab) {
  const double l = std::pow(lab.L + 0.3963377774 * lab.A + 0.2158037573 * lab.B, 3);
  const double m = std::pow(lab.L - 0.1055613458 * lab.A - 0.0638541728 * lab.B, 3);
  const double s = std::pow(lab.L - 0.0894841775 * lab.A - 1.2914855480 * lab.B, 3);
  return {Encoded(4.0767416621 * l - 3.3077115913 * m + 0.2309699292 * s),
          Encoded(-1.2684380046 * l + 2.6097574011 * m - 0.3413193965 * s),
          Encoded(-0.0041960863 * l - 0.7034186147 * m + 1.7076147010 * s)};
}

double DifferenceOf(const Lab& one, const Lab& other) {
  return std::hypot(one.L - other.L, one.A - other.A, one.B - other.B);
}

ColorRamp::ColorRamp(const std::vector<Color>& stops) {
  for (const Color& stop : stops) {
    const Lab lab = LabOf(stop);
    lengths_.push_back(stops_.empty() ? 0 : lengths_.back() + DifferenceOf(stops_.back(), lab));
    stops_.push_back(lab);
  }
}

Color ColorRamp::At(double share) const {
  const double at = std::clamp(share, 0.0, 1.0) * lengths_.back();
  std::size_t next = 1;
  while (next + 1 < stops_.size() && lengths_[next] < at) ++next;
  const Lab& from = stops_[next - 1];
  const Lab& to = stops_[next];
  const double part = (at - lengths_[next - 1]) / (lengths_[next] - lengths_[next - 1]);
  return ColorOf({from.L + (to.L - from.L) * part, from.A + (to.A - from.A) * part,
                  from.B + (to.B - from.B) * part});
}

Color RisingColor(double share, bool onBlack) {
  // Lightness runs one way all along, so that the order holds in grey print and for every eye.
  static const ColorRamp kOnWhite(
      {{255, 252, 225}, {190, 225, 165}, {100, 185, 175}, {70, 120, 180}});
  static const ColorRamp kOnBlack({{20, 22, 45}, {20, 65, 110}, {20, 110, 110}, {95, 150, 70}});
  return (onBlack ? kOnBlack : kOnWhite).At(share);
}

Color SignedColor(double share, bool onBlack) {
  static const ColorRamp kWarmOnWhite({{255, 255, 255}, {250, 205, 170}, {215, 95, 75}});
  static const ColorRamp kColdOnWhite({{255, 255, 255}, {175, 215, 245}, {70, 125, 200}});
  static const ColorRamp kWarmOnBlack({{0, 0, 0}, {85, 35, 15}, {170, 60, 40}});
  static const ColorRamp kColdOnBlack({{0, 0, 0}, {10, 45, 85}, {40, 90, 170}});
  const bool warm = share >= 0;
  const ColorRamp& ramp =
      onBlack ? (warm ? kWarmOnBlack : kColdOnBlack) : (warm ? kWarmOnWhite : kColdOnWhite);
  return ramp.At(std::fabs(share));
}

}  // namespace vexa::crosssection
