#include "diagram/analysis_marks.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include "analysis/analysis.h"
#include "analysis/interpolate.h"
#include "core/markers.h"
#include "core/numbers.h"
#include "core/shown_values.h"
#include "core/units.h"
#include "diagram/label_places.h"
#include "picture/text_width.h"

namespace vexa::diagram {
namespace {

constexpr double kMarkGap = 14 * kUnitsPerPixel;

// Which marks stay where not all fit.
constexpr int kFrontPriority = 1;
constexpr int kLayerPriority = 2;
constexpr int kInversionPriority = 3;

// Of the gutter: a leader leads over its edge to the height that a mark belongs to.
constexpr double kLeader = 12 * kUnitsPerPixel;
constexpr double kLeaderGap = 4 * kUnitsPerPixel;

// The kind and the height above ground.
std::string InversionText(const PlotInput& in, const analysis::Inversion& inversion) {
  return std::string(Text(inversion.Kind)) + " " +
         LengthText(inversion.Base.Height - in.Sounding.ElevM, in.Set.GpmUnits) + " AGL";
}

// A bar at the left edge from one pressure up to another. On a wide tephigram the lower isobars
// enter the frame through its lower edge: a bar that starts there stands as far in.
struct LeftBar {
  double X = 0;
  double BaseY = 0;
  double TopY = 0;
};

LeftBar PlaceBar(const Plot& plot, double base, double top, double aside) {
  constexpr double kStep = 100;
  const Rect& frame = plot.At.Frame();
  LeftBar bar{.X = frame.Left + aside};
  while (plot.At.IsobarY(base, bar.X) > frame.Bottom && bar.X + kStep < frame.Right) {
    bar.X += kStep;
  }
  bar.BaseY = plot.At.IsobarY(base, bar.X);
  bar.TopY = std::max(plot.At.IsobarY(std::max(top, plot.At.TopPress()), bar.X), frame.Top);
  return bar;
}

// The bars of stability take the very edge.
double BarAside(const Plot& plot) {
  return plot.Set().StabilityBars ? 170 : 60;
}

bool Shows(const Plot& plot, const LeftBar& bar) {
  return bar.BaseY <= plot.At.Frame().Bottom && bar.BaseY >= plot.At.Frame().Top;
}

void DrawMarkLeader(Plot& plot, const Mark& mark, double from, Point to) {
  DrawSegment(plot.Page, "leader", {from, mark.Y}, to, {mark.Ink, 8, LineStyle::Solid});
}

// At the right edge inside the frame, off the lines: the whole text or the short one. What finds no
// place has its tick and its line.
void DrawMarkInside(Plot& plot, const Mark& mark, LabelRoom& room) {
  constexpr double kGap = 25;
  const Rect& frame = plot.Where.Frame;
  const Point wanted{frame.Right - 190 - kGap, mark.PlacedY};
  for (const std::string& text : {mark.Text, mark.Short}) {
    if (text.empty() || TextWidth(text, kMarkText) > frame.Width() - 4 * kGap) continue;
    const LeaderOf leader{.From = {frame.Right - 60, mark.Y}, .Gap = kGap};
    const std::optional<Point> place =
        TakePlaceNear(room, wanted, text, kMarkText, AnchorX::Right, leader);
    if (!place) continue;
    if (std::abs(place->Y - mark.Y) > kMarkGap / 3 || place->X < wanted.X) {
      const Point to{place->X + kGap, place->Y};
      DrawMarkLeader(plot, mark, leader.From.X, to);
      room.TakeLeader(leader.From, to);
    }
    DrawTextOver(plot, mark.Tag, *place, text, mark.Ink, kMarkText, AnchorX::Right);
    return;
  }
}

}  // namespace

double MarksWidth(const PlotInput& input) {
  const bool feet = input.Set.GpmUnits == LengthUnits::Feet;
  std::string usual = input.Results.Chosen().IsCut ? "EL above 888 mb  " : "MPL 888 mb  ";
  usual += feet ? "28888 ft" : "12888 m";
  if (input.Set.Heights == HeightMode::Agl) usual += " AGL";
  double width = TextWidth(usual, kMarkText);
  for (const analysis::Inversion& inversion : input.Results.Inversions) {
    width = std::max(width, TextWidth(InversionText(input, inversion), kMarkText));
  }
  return kLeader + kLeaderGap + width + kUnitsPerPixel;
}

void DrawInversions(Plot& plot) {
  if (!plot.Set().AutoAnalyses) return;
  for (const analysis::Inversion& inversion : plot.Results().Inversions) {
    if (!plot.InRange(inversion.Base.Press)) continue;
    const LeftBar bar = PlaceBar(plot, inversion.Base.Press, inversion.Top.Press, BarAside(plot));
    if (!Shows(plot, bar)) continue;
    const Pen pen{plot.Inks.InversionMark, 26, LineStyle::Solid};
    DrawSegment(plot.Page, "inversion", {bar.X, bar.BaseY}, {bar.X, bar.TopY}, pen);
    if (const auto y = RightEdgeY(plot.At, inversion.Base.Press)) {
      plot.Marks.Add({*y, InversionText(plot.In, inversion), "inversion label",
                      plot.Inks.InversionMark, kInversionPriority,
                      std::string(Text(inversion.Kind))});
    }
    plot.Page.AddHotSpot({{bar.X - 60, bar.TopY - 20, bar.X + 60, bar.BaseY + 20},
                          "inversion",
                          std::string(Text(inversion.Kind)) + " " +
                              Mask(inversion.Base.Press, "###0.#") + " to " +
                              Mask(inversion.Top.Press, "###0.#") + PressureUnit(plot)});
  }
}

// A bar at the right edge over the zone's depth; at its top a line and the label of the front.
void DrawFronts(Plot& plot) {
  if (!plot.Set().ShowFronts) return;
  const Rect& frame = plot.At.Frame();
  for (const FrontMark& front : plot.In.Fronts) {
    const double press = analysis::GetPRESS(plot.Results().Levels, front.Height);
    if (!HasHeight(press) || !plot.InRange(press)) continue;
    const Color ink = front.Cold ? plot.Inks.ColdFront : plot.Inks.WarmFront;
    const std::optional<double> y = RightEdgeY(plot.At, press);
    if (!y) continue;
    const double base = analysis::GetPRESS(plot.Results().Levels, front.BaseHeight);
    const std::optional<double> baseY =
        front.BaseHeight > 0 && HasHeight(base) ? RightEdgeY(plot.At, base) : std::nullopt;
    if (baseY) {
      const double x = frame.Right - 50;
      DrawSegment(plot.Page, "front zone", {x, *baseY}, {x, *y},
                  {ink, front.IsFront ? 60.0 : 20.0, LineStyle::Solid});
      plot.Page.AddHotSpot({{x - 80, *y - 20, frame.Right, *baseY + 20}, "front", front.Info});
    }
    if (!front.IsFront) continue;
    const double reach = plot.Where.Find("marks") != nullptr ? 900 : kTickReach;
    DrawBesideTexts(plot, "front", {{frame.Right - reach, *y}, {frame.Right, *y}},
                    {ink, 26, LineStyle::Solid});
    plot.Marks.Add({*y,
                    std::string(front.Cold ? "Cold" : "Warm") + " Front " +
                        Mask(FeetFromMeters(ShownHeight(plot, front.Height)), "####0") + " ft ",
                    "front label", ink, kFrontPriority,
                    std::string(front.Cold ? "Cold" : "Warm") + " Front"});
  }
}

void DrawLayerMarks(Plot& plot) {
  for (const LayerMark& layer : plot.In.Layers) {
    const double base = analysis::GetPRESS(plot.Results().Levels, layer.BaseHeight);
    const double top = analysis::GetPRESS(plot.Results().Levels, layer.TopHeight);
    if (!HasHeight(base) || !plot.InRange(base)) continue;
    const LeftBar bar = PlaceBar(plot, base, HasHeight(top) ? top : 0, BarAside(plot) + 70);
    if (!Shows(plot, bar)) continue;
    DrawSegment(plot.Page, "layer", {bar.X, bar.BaseY}, {bar.X, bar.TopY},
                {plot.Inks.LayerMark, 26, LineStyle::Solid});
    if (const auto y = RightEdgeY(plot.At, base)) {
      plot.Marks.Add({*y, layer.Text, "layer label", plot.Inks.LayerMark, kLayerPriority});
    }
  }
}

void DrawParcelLevels(Plot& plot) {
  if (!plot.Set().AutoAnalyses) return;
  const analysis::AnalysisResults& results = plot.Results();
  const analysis::ParcelAscent& parcel = results.Chosen();
  const Rect& frame = plot.At.Frame();
  const auto mark = [&](std::string_view name, const analysis::LevelPoint& level,
                        bool isCut = false) {
    if (!level.Exists() || !plot.InRange(level.Press)) return;
    const std::optional<double> y = RightEdgeY(plot.At, level.Press);
    if (!y) return;
    DrawSegment(plot.Page, "parcel level", {frame.Right - kTickReach, *y}, {frame.Right, *y},
                {plot.Inks.ParcelMark, 20, LineStyle::Solid});
    std::string text = std::string(name) + (isCut ? " above " : " ") + Mask(level.Press, "###0") +
                       PressureUnit(plot);
    // A condensation level above the last temperature has a pressure alone.
    if (HasHeight(level.Height)) text += "  " + ShownHeightText(plot, level.Height);
    plot.Marks.Add(
        {*y, std::move(text), "parcel level label", plot.Inks.ParcelMark, 0, std::string(name)});
  };
  const bool convective = results.Mode == analysis::LiftMode::Ccl;
  if (!convective) {
    mark("LCL", parcel.Condensation);
    mark("LFC", parcel.FreeLevel);
  }
  mark("CCL", results.ConvectiveCondensation);
  mark("EL", parcel.Equilibrium, parcel.IsCut);
  if (plot.Set().MplDisplay) mark("MPL", parcel.MaximumParcel);
}

void DrawMarkColumns(Plot& plot) {
  const Rect& frame = plot.At.Frame();
  const std::vector<Mark>& marks =
      plot.Marks.Arrange(frame.Top + kMarkGap / 2, frame.Bottom - kMarkGap / 2, kMarkGap);
  if (const Rect* gutter = plot.Where.Find("marks")) {
    const double x = gutter->Left + kLeader + kLeaderGap;
    for (const Mark& mark : marks) {
      DrawMarkLeader(plot, mark, gutter->Left, {gutter->Left + kLeader, mark.PlacedY});
      const double room = gutter->Right - x;
      // A number cut off in its middle is another number.
      const bool fits = mark.Short.empty() || TextWidth(mark.Text, kMarkText) <= room;
      DrawText(plot.Page, mark.Tag, {x, mark.PlacedY},
               Elided(fits ? mark.Text : mark.Short, kMarkText, room), mark.Ink, kMarkText);
    }
    return;
  }
  // Those that may leave look for their places last.
  std::vector<Mark> byPriority = marks;
  std::ranges::stable_sort(byPriority, {}, &Mark::Priority);
  LabelRoom room = RoomOn(plot);
  for (const Mark& mark : byPriority) DrawMarkInside(plot, mark, room);
}

}  // namespace vexa::diagram
