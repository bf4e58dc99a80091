#include "diagram/palette.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "config/catalogue.h"

namespace vexa::diagram {
namespace {

using Rgb = std::array<double, 3>;  // linear light, 0 to 1

Rgb Linear(Color color) {
  const auto part = [](double byte) {
    const double share = byte / 255;
    return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
  };
  return {part(color.Red), part(color.Green), part(color.Blue)};
}

// WCAG 2.1: black on white is 21, a colour on itself 1.
double ContrastOf(Color a, Color b) {
  const auto luminance = [](Color color) {
    const Rgb rgb = Linear(color);
    return 0.2126 * rgb[0] + 0.7152 * rgb[1] + 0.0722 * rgb[2];
  };
  const double first = luminance(a) + 0.05;
  const double second = luminance(b) + 0.05;
  return std::max(first, second) / std::min(first, second);
}

Options WithScheme(std::string_view scheme) {
  Options options;
  EXPECT_TRUE(ChangeOption(options, *FindOption("Color scheme"), scheme));
  return options;
}

struct NamedPen {
  const char* Name;
  Pen Palette::*Line;
};
constexpr NamedPen kMainLines[] = {{"frame", &Palette::Frame},
                                   {"temperature", &Palette::Temperature},
                                   {"dew point", &Palette::Dewpoint},
                                   {"virtual temperature", &Palette::VirtualTemp},
                                   {"parcel", &Palette::Parcel},
                                   {"parcel moisture", &Palette::ParcelMoisture},
                                   {"wind", &Palette::Wind},
                                   {"surface", &Palette::Surface},
                                   {"freezing level", &Palette::Freezing},
                                   {"tropopause", &Palette::Tropopause},
                                   {"standard atmosphere", &Palette::StandardAtmosphere},
                                   {"height axis", &Palette::HeightAxis},
                                   {"wet bulb", &Palette::WetBulb}};

TEST(Palette, EveryMainLineStandsOutFromThePaper) {
  EXPECT_NEAR(ContrastOf({0, 0, 0}, {255, 255, 255}), 21, 1e-9);
  for (const std::string_view scheme : Words(ColorScheme{})) {
    SCOPED_TRACE(scheme);
    Options options = WithScheme(scheme);
    for (int chosen = 0; chosen < kIndexedColors; ++chosen) {
      options.DewptColor = chosen;
      const Palette palette = PaletteFor(options);
      EXPECT_GE(ContrastOf(palette.Dewpoint.Ink, palette.Paper), 3) << chosen;
      EXPECT_GE(ContrastOf(LegibleColor(palette, chosen), palette.Paper), 3) << chosen;
    }
    const Palette palette = PaletteFor(options);
    EXPECT_GE(ContrastOf(palette.Ink, palette.Paper), 7);
    for (const NamedPen& line : kMainLines) {
      EXPECT_GE(ContrastOf((palette.*line.Line).Ink, palette.Paper), 3) << line.Name;
    }
    for (int number = 1; number <= 6; ++number) {
      const Color ink = OverlayPen(palette, number).Ink;
      EXPECT_GE(ContrastOf(ink, palette.Paper), 3) << number;
      for (const Color own : {palette.Temperature.Ink, palette.Dewpoint.Ink}) {
        EXPECT_GE(std::abs(ink.Red - own.Red) + std::abs(ink.Green - own.Green) +
                      std::abs(ink.Blue - own.Blue),
                  100)
            << number << " looks like the first sounding";
      }
    }
  }
}

// Lines that are no sounding's own are told from each other by their colour: the height correction
// is purple by its menu entry, the compared sounding and the standard atmosphere are not.
TEST(Palette, LinesBesideTheSoundingHaveColoursOfTheirOwn) {
  for (const std::string_view scheme : Words(ColorScheme{})) {
    SCOPED_TRACE(scheme);
    const Palette palette = PaletteFor(WithScheme(scheme));
    const Color inks[] = {LegibleColor(palette, 5), palette.StandardAtmosphere.Ink,
                          OverlayPen(palette, 1).Ink};
    for (int i = 0; i < 3; ++i) {
      const Color a = inks[i], b = inks[(i + 1) % 3];
      EXPECT_GE(std::abs(a.Red - b.Red) + std::abs(a.Green - b.Green) + std::abs(a.Blue - b.Blue),
                100)
          << i;
    }
  }
}

// Traces that may lie beside each other differ by style or clearly by width, so that grey print
// tells them apart.
TEST(Palette, StyleCarriesTheMeaningToo) {
  const NamedPen traces[] = {kMainLines[1], kMainLines[2],  kMainLines[3], kMainLines[4],
                             kMainLines[5], kMainLines[10], kMainLines[12]};
  for (const ThickLines thick : {ThickLines::None, ThickLines::Some, ThickLines::All}) {
    for (const TraceLine dewpoint : {TraceLine::Solid, TraceLine::Dash}) {
      Options options;
      options.TraceThick = thick;
      options.DewptLine = dewpoint;
      const Palette palette = PaletteFor(options);
      EXPECT_EQ(palette.Temperature.Style, LineStyle::Solid);
      EXPECT_EQ(palette.Parcel.Style, LineStyle::Dash);
      for (const NamedPen& a : traces) {
        for (const NamedPen& b : traces) {
          const Pen& first = palette.*a.Line;
          const Pen& second = palette.*b.Line;
          if (a.Line == b.Line || first.Style != second.Style) continue;
          EXPECT_GE(std::max(first.Width / second.Width, second.Width / first.Width), 1.3)
              << a.Name << ", " << b.Name;
        }
      }
    }
  }
}

// How colours look without the long- or the middle-wave cones: matrices for linear light of
// Machado, Oliveira and Fernandes (2009), severity 1.
constexpr double kProtan[3][3] = {{0.152286, 1.052583, -0.204868},
                                  {0.114503, 0.786281, 0.099216},
                                  {-0.003882, -0.048116, 1.051998}};
constexpr double kDeutan[3][3] = {{0.367322, 0.860646, -0.227968},
                                  {0.280085, 0.672501, 0.047413},
                                  {-0.011820, 0.042940, 0.968881}};

// CIE 1976 colour difference of two colours as seen through a matrix.
double SeenApart(Color a, Color b, const double (&seen)[3][3]) {
  const auto lab = [&seen](Color color) {
    const Rgb in = Linear(color);
    Rgb rgb{};
    for (std::size_t i = 0; i < 3; ++i) {
      const double sum = seen[i][0] * in[0] + seen[i][1] * in[1] + seen[i][2] * in[2];
      rgb[i] = std::clamp(sum, 0.0, 1.0);
    }
    const auto f = [](double t) {
      return t > 216.0 / 24389 ? std::cbrt(t) : (24389.0 / 27 * t + 16) / 116;
    };
    const double x = f((0.4124 * rgb[0] + 0.3576 * rgb[1] + 0.1805 * rgb[2]) / 0.9505);
    const double y = f(0.2126 * rgb[0] + 0.7152 * rgb[1] + 0.0722 * rgb[2]);
    const double z = f((0.0193 * rgb[0] + 0.1192 * rgb[1] + 0.9505 * rgb[2]) / 1.089);
    return Rgb{116 * y - 16, 500 * (x - y), 200 * (y - z)};
  };
  const Rgb first = lab(a);
  const Rgb second = lab(b);
  return std::hypot(first[0] - second[0], first[1] - second[1], first[2] - second[2]);
}

TEST(Palette, SafeSchemesStayApartForColourBlindEyes) {
  constexpr double kClearly = 25;  // ten times what is just noticed
  for (const char* scheme : {"color-safe", "color-safe dark"}) {
    SCOPED_TRACE(scheme);
    const Palette palette = PaletteFor(WithScheme(scheme));
    const std::vector<Color> traces = {palette.Temperature.Ink, palette.Dewpoint.Ink,
                                       palette.Parcel.Ink};
    for (const auto* seen : {&kProtan, &kDeutan}) {
      for (std::size_t i = 0; i < traces.size(); ++i) {
        for (std::size_t j = i + 1; j < traces.size(); ++j) {
          EXPECT_GE(SeenApart(traces[i], traces[j], *seen), kClearly) << i << ", " << j;
        }
      }
      EXPECT_GE(SeenApart(palette.ColdFront, palette.WarmFront, *seen), kClearly);
    }
  }
}

TEST(ColorScheme, GoesTogetherWithPaperAndGrid) {
  using enum ColorScheme;
  const struct {
    std::vector<const char*> Assignments;
    ColorScheme Scheme;
    bool IsBlack, HasDarklines;
  } cases[] = {{{"Color scheme=dark"}, Dark, true, false},
               {{"Screen color=Black"}, Dark, true, false},
               {{"Color scheme=dark", "Screen color=White"}, Light, false, false},
               {{"Color scheme=color-safe", "Screen color=Black"}, SafeDark, true, false},
               {{"Darklines=true"}, Darker, false, true},
               {{"Color scheme=darker", "Darklines=false"}, Light, false, false}};
  for (const auto& c : cases) {
    Options options;
    for (const char* assignment : c.Assignments) ASSERT_FALSE(SetOption(options, assignment));
    EXPECT_EQ(options.Scheme, c.Scheme) << c.Assignments.back();
    EXPECT_EQ(options.Screen == ScreenColor::Black, c.IsBlack) << c.Assignments.back();
    EXPECT_EQ(options.Darklines, c.HasDarklines) << c.Assignments.back();
  }
  Options options;  // as a file may have them
  options.Screen = ScreenColor::Black;
  EXPECT_EQ(PaletteFor(options).Paper, (Color{0, 0, 0}));
}

}  // namespace
}  // namespace vexa::diagram
