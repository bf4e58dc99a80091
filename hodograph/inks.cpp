#include "hodograph/inks.h"

#include "picture/shapes.h"

#include <cstddef>
#include <cstdint>

namespace vexa::hodograph {
Inks InksFor(const ViewSettings& options, bool inverted) {
  const bool black = (options.Screen == ScreenColor::Black) != inverted;
  Inks inks;
  static_cast<PaperAndInk&>(inks) = OnPaper(black);
  inks.Faint = Blend(inks.Ink, inks.Paper, 0.35);
  // On black the dark colours are lifted so that they stay visible.
  const auto ink = [&](Color color) { return black ? Blend(color, {255, 255, 255}, 0.3) : color; };
  inks.Frame = {inks.Ink, 16, LineStyle::Solid};
  inks.Ring = {Blend(inks.Ink, inks.Paper, 0.72), 8, LineStyle::Solid};
  inks.OuterRing = {Blend(inks.Ink, inks.Paper, 0.5), 12, LineStyle::Solid};
  inks.Axis = {Blend(inks.Ink, inks.Paper, 0.5), 10, LineStyle::Solid};
  inks.Band = {Pen{ink({200, 0, 190}), 40, LineStyle::Solid},
               Pen{ink({210, 0, 0}), 36, LineStyle::Solid},
               Pen{ink({0, 140, 0}), 36, LineStyle::Solid},
               Pen{ink({190, 140, 0}), 34, LineStyle::Dash},
               Pen{ink({0, 130, 190}), 30, LineStyle::DashDot},
               Pen{ink({110, 90, 130}), 20, LineStyle::Dots}};
  // Red and green look alike to some: after the colours of Okabe and Ito (2008).
  const ColorScheme scheme = SchemeOn(options.Screen, options.Scheme);
  const bool isSafe = scheme == ColorScheme::Safe || scheme == ColorScheme::SafeDark;
  if (isSafe) {
    constexpr Color kSafe[] = {{190, 100, 150}, {213, 94, 0},   {0, 114, 178},
                               {190, 140, 0},   {70, 160, 215}, {110, 110, 110}};
    for (std::size_t band = 0; band < inks.Band.size(); ++band) {
      inks.Band[band].Ink = ink(kSafe[band]);
    }
  }
  inks.ChosenStorm = {ink({150, 0, 90}), 34, LineStyle::Solid};
  inks.OtherStorm = {ink({90, 90, 200}), 18, LineStyle::Solid};
  inks.MeanWind = {ink({140, 80, 20}), 16, LineStyle::Solid};
  inks.Shear = {ink({110, 110, 110}), 16, LineStyle::Dash};
  inks.Propagation = {ink({0, 120, 120}), 24, LineStyle::DashDot};
  inks.Helicity = {ink({200, 120, 120}), 9, LineStyle::Dash};
  inks.Compared = {Pen{ink({40, 80, 235}), 20, LineStyle::Dash},
                   Pen{ink({200, 110, 0}), 20, LineStyle::DashDot}};
  inks.Ground = {Blend(inks.Ink, inks.Paper, 0.68), 8, LineStyle::Solid};
  inks.North = {ink(isSafe ? Color{213, 94, 0} : Color{200, 0, 0}), 26, LineStyle::Solid};
  return inks;
}

}  // namespace vexa::hodograph
