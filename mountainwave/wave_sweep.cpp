#include "mountainwave/wave_sweep.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "core/numbers.h"
#include "picture/shapes.h"

namespace vexa::mountainwave {
namespace {

// A wave for ridges of any half-width: velocity and steepness grow as the forcing b·e^(−kb) does.
struct Response1Km {
  double K = 0;
  double Velocity = 0;   // m/s of the linear theory for a half-width of 1 km
  double Steepness = 0;  // likewise
  double Forcing = 0;    // b·e^(−kb) there
};

std::vector<Response1Km> ResponsesOf(const Air& air, double relief, double axis) {
  std::vector<Response1Km> responses;
  const CrossFlow flow = FlowAcross(air, relief, axis);
  if (!flow.WhyNone.empty()) return responses;
  for (const Interface& at : FindInterfaces(flow, ScorerProfile(flow.Levels))) {
    if (at.Why != PassedOver::No) continue;
    const Wave wave = WaveOf(at, at.Highest, relief, 1.0);
    responses.push_back({at.Highest.K, wave.MaxVelocity * std::max(1.0, wave.Steepness),
                         wave.Steepness, GuardedExp(-at.Highest.K)});
  }
  return responses;
}

double StrongestOf(const std::vector<Response1Km>& responses, double halfWidthKm) {
  double most = 0;
  for (const Response1Km& one : responses) {
    const double grows = halfWidthKm * GuardedExp(-one.K * halfWidthKm) / one.Forcing;
    most = std::max(most, one.Velocity * grows / std::max(1.0, one.Steepness * grows));
  }
  return most < kLeastVelocityMs ? 0 : most;
}

// White to a dark red by 1 m/s, up to 8.
Color Shade(double velocity, const Color& paper) {
  constexpr Color kFull{150, 30, 0};
  const double share = std::min(1.0, std::ceil(velocity) / 8);
  const auto mix = [share](std::uint8_t a, std::uint8_t b) {
    return static_cast<std::uint8_t>(a + (b - a) * share);
  };
  return {mix(paper.Red, kFull.Red), mix(paper.Green, kFull.Green), mix(paper.Blue, kFull.Blue)};
}

}  // namespace

double Sweep::WidthOf(int width) const {
  return kNarrowestKm *
         std::pow(kWidestKm / kNarrowestKm, static_cast<double>(width) / std::max(1, Widths - 1));
}

Sweep SweepMountain(const Air& air, double relief, int axes, int widths) {
  Sweep sweep{.Axes = axes, .Widths = widths, .Relief = relief};
  sweep.Velocities.resize(static_cast<std::size_t>(axes) * static_cast<std::size_t>(widths));
  for (int axis = 0; axis < axes; ++axis) {
    const std::vector<Response1Km> responses = ResponsesOf(air, relief, sweep.AxisOf(axis));
    if (responses.empty()) continue;
    for (int width = 0; width < widths; ++width) {
      sweep.Velocities[static_cast<std::size_t>(width) * static_cast<std::size_t>(axes) +
                       static_cast<std::size_t>(axis)] =
          StrongestOf(responses, sweep.WidthOf(width));
    }
  }
  return sweep;
}

Picture PlotSweep(const Sweep& sweep, const RidgeForm& marked, const WaveUnits& units,
                  const DisplaySettings& look, const Surface& surface) {
  const bool black = look.Screen == ScreenColor::Black;
  const auto [paper, ink] = OnPaper(black);
  Picture page(surface.Width, surface.Height, paper);
  const Rect frame{750, 650, surface.Width - 250, surface.Height - 600};
  const auto text = [&](Point at, std::string words, Type size, AnchorX across) {
    page.Add("sweep label", Label{.At = at,
                                  .Text = std::move(words),
                                  .Across = across,
                                  .Size = LetterSize(size),
                                  .Ink = ink});
  };
  const auto x = [&](double axis) { return frame.Left + axis / 360 * frame.Width(); };
  const auto y = [&](double widthKm) {
    return frame.Bottom -
           std::log(widthKm / kNarrowestKm) / std::log(kWidestKm / kNarrowestKm) * frame.Height();
  };
  const double cell = frame.Width() / sweep.Axes;
  const double row = frame.Height() / sweep.Widths;
  for (int width = 0; width < sweep.Widths; ++width) {
    const double top = frame.Bottom - (width + 1) * row;
    int from = 0;
    for (int axis = 1; axis <= sweep.Axes; ++axis) {
      const double value = sweep.At(from, width);
      if (axis < sweep.Axes && std::ceil(sweep.At(axis, width)) == std::ceil(value)) continue;
      if (value > 0) {
        const double left = frame.Left + from * cell;
        const double right = frame.Left + axis * cell;
        page.Add("sweep",
                 Area{.Rings = {{{left, top}, {right, top}, {right, top + row}, {left, top + row}}},
                      .Fill = {Shade(value, paper), FillStyle::Plain}});
      }
      from = axis;
    }
  }
  page.Add("frame", Polyline{.Points = OutlineOf(frame), .Stroke = {ink, 14, LineStyle::Solid}});
  for (int axis = 0; axis <= 360; axis += 90) {
    text({x(axis), frame.Bottom + 150}, Shortest(axis), Type::Note, AnchorX::Center);
  }
  for (const double width : {0.5, 1.0, 2.0, 5.0, 10.0, 20.0}) {
    text({frame.Left - 80, y(width)}, Mask(FromKm(width, units.Distance), "#0.#"), Type::Note,
         AnchorX::Right);
  }
  text({frame.Left, 180},
       "Strongest wave by ridge axis and half-width (" + std::string(Word(units.Distance)) + ")",
       Type::Label, AnchorX::Left);
  const double most = sweep.Velocities.empty() ? 0 : *std::ranges::max_element(sweep.Velocities);
  const bool isFpm = units.Vertical == VerticalUnits::FeetPerMinute;
  text({frame.Left, 440},
       most > 0 ? "up to " + Mask(FromMs(most, units.Vertical), isFpm ? "#####0" : "##0.0") + " " +
                      std::string(Word(units.Vertical)) + ", a shade for each m/s"
                : std::string("There are no waves present."),
       Type::Note, AnchorX::Left);
  text({(frame.Left + frame.Right) / 2, frame.Bottom + 400}, "Ridge axis, degrees", Type::Note,
       AnchorX::Center);
  if (marked.HalfWidthKm && marked.Axis > 0) {
    page.Add("marked ridge",
             Circle{.Center = {x(marked.Axis),
                               y(std::clamp(*marked.HalfWidthKm, kNarrowestKm, kWidestKm))},
                    .Radius = 80,
                    .Stroke = {ink, 24, LineStyle::Solid}});
  }
  return page;
}

}  // namespace vexa::mountainwave
