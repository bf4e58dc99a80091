#include "diagram/palette.h"

#include "picture/shapes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <vector>

namespace vexa::diagram {
namespace {

using Inks = std::array<Color, kIndexedColors>;

// black, navy, green, teal, red, purple, brown, light gray,
// gray, blue, lime, cyan, coral, magenta, ocher, white
constexpr Inks kOnWhite = {{{0, 0, 0},
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

constexpr Inks kOnBlack = {{{120, 120, 120},
                            {90, 110, 225},
                            {60, 185, 60},
                            {60, 185, 185},
                            {245, 85, 75},
                            {205, 90, 205},
                            {205, 140, 75},
                            {195, 195, 195},
                            {150, 150, 150},
                            {105, 145, 255},
                            {110, 225, 110},
                            {100, 220, 230},
                            {255, 130, 120},
                            {240, 130, 240},
                            {225, 205, 70},
                            {245, 245, 245}}};

// Dark enough for thin lines on paper and for printers without colour.
constexpr Inks kInPrint = {{{0, 0, 0},
                            {0, 0, 130},
                            {0, 100, 0},
                            {0, 105, 115},
                            {175, 0, 0},
                            {125, 0, 125},
                            {115, 60, 10},
                            {130, 130, 130},
                            {70, 70, 70},
                            {20, 60, 190},
                            {30, 130, 30},
                            {20, 130, 145},
                            {200, 40, 40},
                            {175, 40, 175},
                            {135, 115, 0},
                            {145, 145, 145}}};

// After the colours of Okabe and Ito (2008), which every common colour vision tells apart.
constexpr Inks kSafeOnWhite = {{{0, 0, 0},
                                {0, 60, 120},
                                {0, 130, 95},
                                {0, 120, 150},
                                {213, 94, 0},
                                {150, 60, 110},
                                {130, 95, 30},
                                {170, 170, 170},
                                {85, 85, 85},
                                {0, 114, 178},
                                {0, 158, 115},
                                {86, 180, 233},
                                {230, 159, 0},
                                {204, 121, 167},
                                {190, 175, 20},
                                {235, 235, 235}}};

constexpr Inks kSafeOnBlack = {{{120, 120, 120},
                                {60, 130, 200},
                                {0, 158, 115},
                                {60, 170, 190},
                                {240, 120, 20},
                                {204, 121, 167},
                                {200, 160, 80},
                                {195, 195, 195},
                                {150, 150, 150},
                                {86, 180, 233},
                                {60, 190, 150},
                                {140, 210, 245},
                                {230, 159, 0},
                                {225, 160, 195},
                                {240, 228, 66},
                                {245, 245, 245}}};

struct SchemeRow {
  ColorScheme Scheme;
  Color Paper;
  Color Ink;
  Color Parcel;
  const Inks& Indexed;
  int Cold;  // index of the freezing level and of headings
};

constexpr Color kWhite{255, 255, 255};
constexpr Color kBlack{0, 0, 0};
constexpr Color kSoftBlack{20, 20, 20};
constexpr Color kSoftWhite{235, 235, 235};
constexpr Color kParcelGray{60, 60, 60};

constexpr SchemeRow kSchemes[] = {
    {ColorScheme::Light, kWhite, kSoftBlack, kParcelGray, kOnWhite, 1},
    {ColorScheme::Dark, kBlack, kSoftWhite, kWhite, kOnBlack, 9},
    {ColorScheme::Darker, kWhite, kSoftBlack, kParcelGray, kOnWhite, 1},
    {ColorScheme::Print, kWhite, kBlack, kBlack, kInPrint, 1},
    {ColorScheme::Safe, kWhite, kSoftBlack, kParcelGray, kSafeOnWhite, 1},
    {ColorScheme::SafeDark, kBlack, kSoftWhite, kWhite, kSafeOnBlack, 9},
};

constexpr double kHairline = 7;
constexpr double kThin = 11;
constexpr double kTrace = 30;

// Contrast by the relative luminances of the Web Content Accessibility Guidelines 2.1.
constexpr double kLeastContrast = 3;

double Luminance(Color color) {
  const auto linear = [](std::uint8_t part) {
    const double share = part / 255.0;
    return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(color.Red) + 0.7152 * linear(color.Green) + 0.0722 * linear(color.Blue);
}

double Contrast(Color a, Color b) {
  const double first = Luminance(a);
  const double second = Luminance(b);
  return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

// One ink in place of two that cover one another in part.
Color Over(Color below, Color above) {
  const double upper = above.Alpha / 255.0;
  const double lower = (1 - upper) * below.Alpha / 255.0;
  const auto mix = [&](std::uint8_t a, std::uint8_t b) {
    return static_cast<std::uint8_t>(std::lround((lower * a + upper * b) / (lower + upper)));
  };
  return {mix(below.Red, above.Red), mix(below.Green, above.Green), mix(below.Blue, above.Blue),
          static_cast<std::uint8_t>(std::lround(255 * (lower + upper)))};
}

const SchemeRow& RowOf(ColorScheme scheme) {
  return kSchemes[static_cast<std::size_t>(scheme)];
}

std::size_t IndexWithin(int index) {
  return static_cast<std::size_t>(std::clamp(index, 0, kIndexedColors - 1));
}

}  // namespace

Color LegibleColor(const Palette& palette, int index) {
  constexpr int kSteps = 20;
  const Color chosen = palette.Indexed[IndexWithin(index)];
  Color shown = chosen;
  for (int step = 1; step <= kSteps && Contrast(shown, palette.Paper) < kLeastContrast; ++step) {
    shown = Blend(chosen, palette.Ink, static_cast<double>(step) / kSteps);
  }
  return shown;
}

namespace {

void SetAreas(Palette& p, bool black) {
  p.Ground = {Blend(LegibleColor(p, 6), p.Paper, 0.55), FillStyle::Hatched};
  Color cape = LegibleColor(p, 2);
  cape.Alpha = black ? 100 : 80;
  // The grid under the areas steps back further, so that their colour is not lost in it.
  Color veil = p.Paper;
  veil.Alpha = 170;
  p.Cape = {Over(veil, cape), FillStyle::Plain};
  const auto spread = [black](Color ink) {
    ink.Alpha = black ? 64 : 40;
    return Brush{ink, FillStyle::Plain};
  };
  p.UsualTemp = spread(p.Temperature.Ink);
  p.UsualDewpt = spread(p.Dewpoint.Ink);
  p.UsualWind = spread(p.Ink);
  const auto median = [&p](Color ink) {
    return Pen{Blend(ink, p.Paper, 0.35), 14, LineStyle::Dots};
  };
  p.UsualTempLine = median(p.Temperature.Ink);
  p.UsualDewptLine = median(p.Dewpoint.Ink);
  p.UsualWindLine = median(p.Ink);
  Color cin = LegibleColor(p, 9);
  cin.Alpha = black ? 70 : 45;
  p.Cin = {Over(veil, cin), FillStyle::Plain};
  cin.Alpha = 190;
  p.CinHatch = {cin, FillStyle::BackHatched};
}

}  // namespace

Palette PaletteFor(const ViewSettings& options) {
  const SchemeRow& scheme = RowOf(SchemeOn(options.Screen, options.Scheme));
  const bool black = scheme.Paper == kBlack;
  Palette p;
  p.Indexed = scheme.Indexed;
  p.Paper = scheme.Paper;
  p.Ink = scheme.Ink;
  p.Faint = Blend(p.Ink, p.Paper, 0.4);

  const auto ink = [&p](int index) { return LegibleColor(p, index); };
  // The grid stands back behind the traces: isobars and isotherms thin, the curves paler still.
  // On black the same share leaves less to see.
  const double share = black ? 0.75 : 1;
  const auto grid = [&](Color color, double pale = 0.45) {
    return options.Darklines ? color : Blend(color, p.Paper, share * pale);
  };
  constexpr double kCurvePale = 0.6;

  p.Frame = {p.Ink, 20, LineStyle::Solid};
  p.Isotherm = {grid(Blend(p.Ink, p.Paper, 0.5)), kHairline, LineStyle::Solid};
  p.ZeroIsotherm = {grid(ink(1)), 18, LineStyle::Solid};
  p.Isobar = {grid(Blend(p.Ink, p.Paper, 0.55)), kHairline, LineStyle::Solid};
  p.MandatoryIsobar = {grid(Blend(p.Ink, p.Paper, 0.25)), kThin, LineStyle::Solid};
  p.DryAdiabat = {grid(ink(options.DryColor), kCurvePale), kHairline, LineStyle::Solid};
  p.SatAdiabat = {grid(ink(options.SatColor), kCurvePale), kHairline, LineStyle::Dash};
  p.MixingRatio = {grid(ink(options.WetColor)), kHairline, LineStyle::Dots};

  const bool thick = options.TraceThick != ThickLines::None;
  p.Temperature = {ink(4), thick ? 44 : kTrace * 0.7, LineStyle::Solid};
  p.Dewpoint = {ink(options.DewptColor), thick ? 30 : kTrace * 0.5,
                options.DewptLine == TraceLine::Dash ? LineStyle::Dash : LineStyle::Solid};
  p.VirtualTemp = {ink(4), 20, LineStyle::Dots};
  p.WetBulb = {ink(3), 22, LineStyle::DashDot};
  p.Parcel = {scheme.Parcel, 22, LineStyle::Dash};
  p.ParcelMoisture = {p.Parcel.Ink, 12, LineStyle::Dots};
  p.Wind = {p.Ink, 18, LineStyle::Solid};
  p.Surface = {ink(6), 24, LineStyle::Solid};
  p.Freezing = {ink(scheme.Cold), 14, LineStyle::Dash};
  p.Tropopause = {ink(5), 14, LineStyle::Dash};
  p.StandardAtmosphere = {ink(6), 16, LineStyle::DashDot};
  p.HeightAxis = {p.Ink, kThin, LineStyle::Solid};

  SetAreas(p, black);
  p.ParcelMark = p.Ink;
  p.InversionMark = black ? Blend(ink(6), p.Ink, 0.2) : Color{140, 60, 0};
  p.ColdFront = ink(9);
  p.WarmFront = ink(12);
  p.LayerMark = ink(5);
  p.PanelHead = ink(scheme.Cold);
  p.Panel = {Blend(p.Paper, p.Ink, 0.02), FillStyle::Plain};
  p.PanelFrame = {Blend(p.Ink, p.Paper, 0.5), kThin, LineStyle::Solid};
  return p;
}

Color FaintInk(const Palette& palette, Color ink) {
  constexpr double kFaint = 0.5;
  return Blend(ink, palette.Paper, kFaint);
}

Pen OverlayPen(const Palette& palette, int number) {
  // First those that no line beside the soundings has.
  constexpr std::array<int, 8> kColors = {3, 13, 8, 2, 12, 9, 6, 5};
  constexpr std::array<LineStyle, 3> kStyles = {LineStyle::Solid, LineStyle::DashDot,
                                                LineStyle::Dash};
  // What looks like a trace of the first sounding is left out.
  const auto isNear = [](Color a, Color b) {
    return std::abs(a.Red - b.Red) + std::abs(a.Green - b.Green) + std::abs(a.Blue - b.Blue) < 120;
  };
  std::vector<Color> inks;
  for (const int color : kColors) {
    const Color ink = Blend(LegibleColor(palette, color), palette.Ink, 0.1);
    if (!isNear(ink, palette.Temperature.Ink) && !isNear(ink, palette.Dewpoint.Ink)) {
      inks.push_back(ink);
    }
  }
  if (inks.empty()) inks.push_back(palette.Ink);
  const auto turn = static_cast<std::size_t>(std::max(number - 1, 0));
  return {inks[turn % inks.size()], 20, kStyles[turn % kStyles.size()]};
}

}  // namespace vexa::diagram
