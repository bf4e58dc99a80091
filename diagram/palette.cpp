#include "diagram/palette.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

namespace vexa::diagram {
namespace {

constexpr std::array<Color, 16> kIndexed = {{{0, 0, 0},
                                             {0, 0, 170},
                                             {0, 140, 0},
                                             {0, 150, 150},
                                             {200, 0, 0},
                                             {170, 0, 170},
                                             {160, 82, 20},
                                             {170, 170, 170},
                                             {85, 85, 85},
                                             {40, 80, 235},
                                             {40, 190, 40},
                                             {30, 190, 200},
                                             {235, 60, 60},
                                             {220, 60, 220},
                                             {200, 180, 0},
                                             {235, 235, 235}}};

constexpr double kHairline = 7;
constexpr double kThin = 11;
constexpr double kTrace = 30;

}  // namespace

Color IndexedColor(int index) {
  return kIndexed[static_cast<std::size_t>(std::clamp(index, 0, 15))];
}

Color Blend(Color from, Color to, double share) {
  const auto mix = [share](std::uint8_t a, std::uint8_t b) {
    return static_cast<std::uint8_t>(a + (b - a) * share);
  };
  return {mix(from.Red, to.Red), mix(from.Green, to.Green), mix(from.Blue, to.Blue), from.Alpha};
}

Palette PaletteFor(const Options& options) {
  const bool black = options.Screen == ScreenColor::Black;
  Palette p;
  p.Paper = black ? Color{0, 0, 0} : Color{255, 255, 255};
  p.Ink = black ? Color{235, 235, 235} : Color{20, 20, 20};
  p.Faint = Blend(p.Ink, p.Paper, 0.4);

  // On black the dark colours of the sixteen are lifted so that they stay visible.
  const auto ink = [&](int index) {
    return black ? Blend(IndexedColor(index), Color{255, 255, 255}, 0.3) : IndexedColor(index);
  };
  const auto grid = [&](Color color) {
    return options.Darklines ? color : Blend(color, p.Paper, 0.45);
  };

  p.Frame = {p.Ink, 20, LineStyle::Solid};
  p.Isotherm = {grid(Blend(p.Ink, p.Paper, 0.5)), kHairline, LineStyle::Solid};
  p.ZeroIsotherm = {grid(ink(1)), 18, LineStyle::Solid};
  p.Isobar = {grid(Blend(p.Ink, p.Paper, 0.55)), kHairline, LineStyle::Solid};
  p.MandatoryIsobar = {grid(Blend(p.Ink, p.Paper, 0.25)), kThin, LineStyle::Solid};
  p.DryAdiabat = {grid(ink(options.DryColor)), kHairline, LineStyle::Solid};
  p.SatAdiabat = {grid(ink(options.SatColor)), kHairline, LineStyle::Solid};
  p.MixingRatio = {grid(ink(options.WetColor)), kHairline, LineStyle::Dash};

  const bool thick = options.TraceThick != ThickLines::None;
  p.Temperature = {ink(4), thick ? 44 : kTrace * 0.7, LineStyle::Solid};
  p.Dewpoint = {ink(options.DewptColor), thick ? 30 : kTrace * 0.5,
                options.DewptLine == TraceLine::Dash ? LineStyle::Dash : LineStyle::Solid};
  p.VirtualTemp = {ink(4), 14, LineStyle::Dots};
  p.Parcel = {black ? Color{255, 255, 255} : Color{60, 60, 60}, 22, LineStyle::Dash};
  p.ParcelMoisture = {p.Parcel.Ink, 12, LineStyle::Dots};
  p.Wind = {p.Ink, 14, LineStyle::Solid};
  p.Surface = {ink(6), 24, LineStyle::Solid};
  p.Freezing = {ink(black ? 9 : 1), 14, LineStyle::Dash};
  p.Tropopause = {ink(5), 14, LineStyle::Dash};
  p.StandardAtmosphere = {ink(5), 16, LineStyle::DashDot};
  p.HeightAxis = {p.Ink, kThin, LineStyle::Solid};

  p.Ground = {Blend(ink(6), p.Paper, 0.55), FillStyle::Hatched};
  Color cape = ink(2);
  cape.Alpha = 80;
  p.Cape = {cape, FillStyle::Plain};
  Color cin = ink(9);
  cin.Alpha = 45;
  p.Cin = {cin, FillStyle::Plain};
  cin.Alpha = 190;
  p.CinHatch = {cin, FillStyle::BackHatched};

  p.ParcelMark = p.Ink;
  p.InversionMark = black ? Blend(ink(6), p.Ink, 0.2) : Color{140, 60, 0};
  p.ColdFront = ink(9);
  p.WarmFront = ink(12);
  p.LayerMark = ink(5);
  p.PanelHead = ink(black ? 9 : 1);
  p.Panel = {Blend(p.Paper, p.Ink, 0.02), FillStyle::Plain};
  p.PanelFrame = {Blend(p.Ink, p.Paper, 0.5), kThin, LineStyle::Solid};
  return p;
}

Pen OverlayPen(const Palette& palette, int number) {
  constexpr std::array<int, 6> kColors = {5, 3, 6, 9, 2, 12};
  constexpr std::array<LineStyle, 3> kStyles = {LineStyle::Solid, LineStyle::DashDot,
                                                LineStyle::Dash};
  const auto turn = static_cast<std::size_t>(std::max(number - 1, 0));
  return {Blend(IndexedColor(kColors[turn % kColors.size()]), palette.Ink, 0.1), 20,
          kStyles[turn % kStyles.size()]};
}

}  // namespace vexa::diagram
