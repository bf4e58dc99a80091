#include "mountainwave/wave_sweep.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/numbers.h"
#include "core/shown_values.h"
#include "picture/layout.h"
#include "picture/shapes.h"
#include "picture/text_width.h"

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

// Without a half-width every wave has the one that makes it strongest, 1/k.
double StrongestOf(const std::vector<Response1Km>& responses, std::optional<double> halfWidthKm) {
  double most = 0;
  for (const Response1Km& one : responses) {
    const double b = halfWidthKm.value_or(1 / one.K);
    const double grows = b * GuardedExp(-one.K * b) / one.Forcing;
    most = std::max(most, one.Velocity * grows / std::max(1.0, one.Steepness * grows));
  }
  return most < kLeastVelocityMs ? 0 : most;
}

constexpr int kShades = 8;

// White to a dark red in equal steps, whole m/s as large as the strongest wave asks for.
struct ShadeScale {
  double Step = 1;
  Color Paper{};

  ShadeScale(double most, const Color& paper)
      : Step(std::max(1.0, std::ceil(most / kShades))), Paper(paper) {}
  int ClassOf(double velocity) const {
    return static_cast<int>(std::min<double>(kShades, std::ceil(velocity / Step)));
  }
  Color Of(int shade) const {
    constexpr Color kFull{150, 30, 0};
    return Blend(Paper, kFull, static_cast<double>(shade) / kShades);
  }
};

// The parts of a chart's page.
constexpr std::string_view kHeading = "heading";
constexpr std::string_view kBars = "bars";
constexpr std::string_view kChart = "chart";
constexpr std::string_view kLegend = "legend";

// Room for the numbers of the axes and for what is said over a frame.
constexpr double kAxisNumbers = Px(56);
constexpr double kAxisRow = Px(22);
constexpr double kCaptionRow = Px(24);
constexpr double kToAxis = Px(7);  // from the frame to its numbers

PageLayout CutChart(const Surface& surface, bool hasBars) {
  std::vector<RegionRow> rows = {
      {.Name = kHeading, .At = Place::Above, .LeastHeight = Px(44)},
      {.Name = kChart, .At = Place::Main, .LeastWidth = Px(160), .LeastHeight = Px(120)},
      {.Name = kLegend, .At = Place::Under, .LeastHeight = Px(28), .Priority = 1}};
  if (hasBars) {
    constexpr double kShare = 0.28;  // of the page
    rows.push_back({.Name = kBars,
                    .At = Place::Above,
                    .LeastHeight = std::max(Px(60), kShare * surface.Height),
                    .Priority = 2,
                    .Caption = "the strongest waves as bars"});
  }
  return CutPage(surface, rows);
}

// A chart of velocities: frame, cells, texts and the shades with their meaning.
class Chart {
 public:
  Chart(const DisplaySettings& look, const Surface& surface, double most, bool hasBars = false)
      : layout_(CutChart(surface, hasBars)),
        colors_(OnPaper(look.Screen == ScreenColor::Black)),
        shading_(most, colors_.Paper),
        page_(surface.Width, surface.Height, colors_.Paper) {
    const Rect& chart = *layout_.Find(kChart);
    frame_ = {chart.Left + kAxisNumbers, chart.Top + (hasBars ? kCaptionRow : 0),
              chart.Right - Px(12), chart.Bottom - kAxisRow};
  }

  const PageLayout& Layout() const { return layout_; }

  const Rect& Frame() const { return frame_; }
  Color Ink() const { return colors_.Ink; }
  const ShadeScale& Shades() const { return shading_; }
  Picture& Page() { return page_; }

  void Text(Point at, std::string words, Type size, AnchorX across) {
    page_.Add("sweep label", Label{.At = at,
                                   .Text = std::move(words),
                                   .Across = across,
                                   .Size = LetterSize(size),
                                   .Ink = colors_.Ink});
  }
  // A little larger, so that no paper shines through between two of them; the frame cuts them.
  void Cell(const Rect& cell, double velocity) {
    if (!(velocity > 0)) return;
    constexpr double kOverlap = 14;
    const double right = std::min(cell.Right + kOverlap, frame_.Right);
    const double bottom = std::min(cell.Bottom + kOverlap, frame_.Bottom);
    page_.Add("sweep", Area{.Rings = {{{cell.Left, cell.Top},
                                       {right, cell.Top},
                                       {right, bottom},
                                       {cell.Left, bottom}}},
                            .Fill = {shading_.Of(shading_.ClassOf(velocity)), FillStyle::Plain}});
  }
  void Outline(const Rect& rect) {
    page_.Add("frame",
              Polyline{.Points = OutlineOf(rect), .Stroke = {Ink(), 14, LineStyle::Solid}});
  }
  // Two lines over all: what the chart shows and what of.
  void Heading(const std::string& what, const std::string& of) {
    const Rect* region = layout_.Find(kHeading);
    if (region == nullptr) return;
    const auto line = [&](double y, const std::string& text, Type size) {
      Text({region->Left, y}, Elided(text, LetterSize(size), region->Width()), size, AnchorX::Left);
    };
    line(region->Top + Px(11), what, Type::Label);
    line(region->Top + Px(31), of, Type::Note);
  }
  // What the chart's axis means, and a box for each shade.
  void Legend(const std::string& axis, const WaveUnits& units) {
    const Rect* region = layout_.Find(kLegend);
    if (region == nullptr) return;
    constexpr double kBox = Px(27);
    const std::string unit(Word(units.Vertical));
    const double top = region->Top;
    double left = frame_.Right - kShades * kBox;
    const double before = left - Px(7) - TextWidth(unit, LetterSize(Type::Note));
    Text({left - Px(7), top + 60}, unit, Type::Note, AnchorX::Right);
    if (frame_.Left + TextWidth(axis, LetterSize(Type::Note)) + Px(7) < before) {
      Text({frame_.Left, top + 60}, axis, Type::Note, AnchorX::Left);
    }
    for (int shade = 1; shade <= kShades; ++shade, left += kBox) {
      page_.Add("sweep legend", Area{.Rings = {{{left, top},
                                                {left + kBox, top},
                                                {left + kBox, top + 110},
                                                {left, top + 110}}},
                                     .Fill = {shading_.Of(shade), FillStyle::Plain}});
      if (shade == kShades) break;
      Text({left + kBox, top + 190}, Mask(FromMs(shade * shading_.Step, units.Vertical), "####0"),
           Type::Note, AnchorX::Center);
    }
  }

 private:
  PageLayout layout_;
  PaperAndInk colors_;
  ShadeScale shading_;
  Rect frame_{};
  Picture page_;
};

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

namespace {

// Neighbours of one class are one cell.
void DrawCells(Chart& chart, const Sweep& sweep) {
  const ShadeScale& shades = chart.Shades();
  const Rect& frame = chart.Frame();
  const double cell = frame.Width() / sweep.Axes;
  const double row = frame.Height() / sweep.Widths;
  for (int width = sweep.Widths - 1; width >= 0; --width) {
    const double top = frame.Bottom - (width + 1) * row;
    int from = 0;
    for (int axis = 1; axis <= sweep.Axes; ++axis) {
      const double value = sweep.At(from, width);
      if (axis < sweep.Axes && shades.ClassOf(sweep.At(axis, width)) == shades.ClassOf(value)) {
        continue;
      }
      chart.Cell({frame.Left + from * cell, top, frame.Left + axis * cell, top + row}, value);
      from = axis;
    }
  }
}

}  // namespace

Picture PlotSweep(const Sweep& sweep, const RidgeForm& marked, const WaveUnits& units,
                  const DisplaySettings& look, const Surface& surface) {
  const double most = sweep.Velocities.empty() ? 0 : *std::ranges::max_element(sweep.Velocities);
  Chart chart(look, surface, most);
  const Rect& frame = chart.Frame();
  const auto x = [&](double axis) { return frame.Left + axis / 360 * frame.Width(); };
  const auto y = [&](double widthKm) {
    return frame.Bottom -
           std::log(widthKm / kNarrowestKm) / std::log(kWidestKm / kNarrowestKm) * frame.Height();
  };
  DrawCells(chart, sweep);
  chart.Outline(frame);
  for (int axis = 0; axis <= 360; axis += 45) {
    chart.Text({x(axis), frame.Bottom + kAxisRow / 2}, Shortest(axis), Type::Note, AnchorX::Center);
  }
  for (const double width : {0.5, 1.0, 2.0, 5.0, 10.0, 20.0}) {
    chart.Text({frame.Left - kToAxis, y(width)}, Mask(FromKm(width, units.Distance), "#0.#"),
               Type::Note, AnchorX::Right);
  }
  chart.Heading(
      "Strongest wave by ridge axis and half-width (" + std::string(Word(units.Distance)) + ")",
      most > 0 ? "up to " + VelocityText(most, units) : std::string("There are no waves present."));
  chart.Legend("Ridge axis, degrees", units);
  if (marked.HalfWidthKm && marked.Axis > 0) {
    chart.Page().Add("marked ridge",
                     Circle{.Center = {x(marked.Axis),
                                       y(std::clamp(*marked.HalfWidthKm, kNarrowestKm, kWidestKm))},
                            .Radius = 80,
                            .Stroke = {chart.Ink(), 24, LineStyle::Solid}});
  }
  return std::move(chart.Page());
}

SeriesMember MemberOf(const Air& air, std::string title, const RidgeForm& form, int axes) {
  SeriesMember member{.Title = std::move(title)};
  for (int axis = 1; axis <= axes; ++axis) {
    const std::vector<Response1Km> responses = ResponsesOf(air, form.Relief, 360.0 * axis / axes);
    member.ByAxis.push_back(StrongestOf(responses, form.HalfWidthKm));
  }
  const RidgeWaves behind = WavesBehind(air, form, 1);
  if (const Wave* wave = behind.Predominant()) {
    member.Velocity = wave->MaxVelocity;
    member.LengthKm = wave->Of.LengthKm;
  }
  return member;
}

Picture PlotSeries(const std::vector<SeriesMember>& members, const RidgeForm& form,
                   const WaveUnits& units, const DisplaySettings& look, const Surface& surface) {
  double most = 4;  // an even number, so that half of it is whole
  for (const SeriesMember& member : members) {
    most = std::max(most, std::ceil(member.Velocity));
    for (const double velocity : member.ByAxis) most = std::max(most, std::ceil(velocity));
  }
  most = 2 * std::ceil(most / 2);
  Chart chart(look, surface, most, true);
  const Rect& frame = chart.Frame();
  const Rect* bars = chart.Layout().Find(kBars);
  const Rect lines =
      bars == nullptr ? Rect{} : Rect{frame.Left, bars->Top, frame.Right, bars->Bottom};
  const auto count = static_cast<double>(std::max<std::size_t>(1, members.size()));
  const double cell = frame.Width() / count;
  const auto y = [&](double velocity) { return lines.Bottom - velocity / most * lines.Height(); };
  double left = frame.Left;
  double free = 0;  // where the next label may begin
  for (const SeriesMember& member : members) {
    const auto axes = static_cast<double>(member.ByAxis.size());
    for (std::size_t i = member.ByAxis.size(); i-- > 0;) {
      const double bottom = frame.Bottom - static_cast<double>(i) / axes * frame.Height();
      chart.Cell({left, bottom - frame.Height() / axes, left + cell, bottom}, member.ByAxis[i]);
    }
    const double middle = left + cell / 2;
    if (member.Velocity > 0 && bars != nullptr) {
      constexpr double kBar = 0.3;  // of the cell, either side
      chart.Page().Add("series bar",
                       Area{.Rings = {{{middle - kBar * cell, y(member.Velocity)},
                                       {middle + kBar * cell, y(member.Velocity)},
                                       {middle + kBar * cell, lines.Bottom},
                                       {middle - kBar * cell, lines.Bottom}}},
                            .Fill = {chart.Shades().Of(chart.Shades().ClassOf(member.Velocity)),
                                     FillStyle::Plain},
                            .Stroke = {chart.Ink(), 8, LineStyle::Solid}});
    }
    const double half = TextWidth(member.Title, LetterSize(Type::Note)) / 2;
    if (middle - half >= free && middle + half <= surface.Width) {
      chart.Text({middle, frame.Bottom + kAxisRow / 2}, member.Title, Type::Note, AnchorX::Center);
      free = middle + half + 100;
    }
    left += cell;
  }
  chart.Outline(frame);
  if (bars != nullptr) {
    chart.Outline(lines);
    for (const double share : {0.0, 0.5, 1.0}) {
      chart.Text({lines.Left - kToAxis, y(share * most)},
                 Mask(FromMs(share * most, units.Vertical), "###0"), Type::Note, AnchorX::Right);
    }
  }
  for (int axis = 0; axis <= 360; axis += 90) {
    chart.Text({frame.Left - kToAxis, frame.Bottom - axis / 360.0 * frame.Height()}, Shortest(axis),
               Type::Note, AnchorX::Right);
  }
  const std::string width =
      form.HalfWidthKm ? "half-width " + Mask(FromKm(*form.HalfWidthKm, units.Distance), "##0.0") +
                             " " + std::string(Word(units.Distance))
                       : std::string("as wide as makes each wave strongest");
  chart.Heading("Strongest wave behind the mountain, sounding by sounding",
                std::string(Word(units.Vertical)) + "; " + LengthText(form.Relief, units.Height) +
                    " above the station, " + width +
                    (form.Axis > 0 ? ", axis " + Mask(form.Axis, "##0") : std::string()));
  chart.Text({frame.Left, frame.Top - kCaptionRow / 2}, "The same by ridge axis, degrees",
             Type::Note, AnchorX::Left);
  chart.Legend(LeftOutText(chart.Layout()), units);
  return std::move(chart.Page());
}

}  // namespace vexa::mountainwave
