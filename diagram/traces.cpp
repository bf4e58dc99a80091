#include "diagram/traces.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "analysis/analysis.h"
#include "analysis/moist_air.h"
#include "core/markers.h"
#include "diagram/label_places.h"
#include "picture/clip.h"
#include "picture/text_width.h"
#include "picture/thinning.h"

namespace vexa::diagram {
namespace {

using analysis::ParcelAscent;

// What the bars at the left edge tell of the layers, from the most stable on.
struct StabilityClass {
  std::string_view Name;
  int Color;  // of the sixteen
};
constexpr std::array<StabilityClass, 4> kStability = {{{"Inversion", 9},
                                                       {"Stable", 10},
                                                       {"Conditionally unstable", 14},
                                                       {"Absolutely unstable", 12}}};

struct TraceStyle {
  Pen Line{};
  bool Joined = true;
  bool Dots = false;
  bool Circles = false;
  bool IsSeen() const { return Joined || Dots || Circles; }
};

TraceStyle DewpointStyle(const Plot& plot) {
  const DisplaySettings& set = plot.Set();
  return {plot.Inks.Dewpoint, set.DewptLine != TraceLine::None, set.TraceDots, set.TraceCircles};
}

// A trace over the levels, broken where a value is missing and ended where it passes the
// diagram's top pressure, which on the tephigram lies inside the frame.
void DrawTrace(Plot& plot, std::string_view tag, const Levels<double>& press,
               const Levels<double>& temp, const TraceStyle& style) {
  std::vector<Point> run;
  const auto finish = [&] {
    if (style.Joined && run.size() > 1)
      DrawInFrame(plot, tag, Thinned(run, kThinnedNear), style.Line);
    run.clear();
  };
  const Rect& frame = plot.At.Frame();
  for (int i = 1; i <= press.Count(); ++i) {
    if (IsMissing(temp(i)) || press(i) <= 0) {
      finish();
      continue;
    }
    const double top = plot.At.TopPress();
    if (press(i) < top) {
      if (!run.empty() && press(i - 1) > top) {
        const double share = std::log(top / press(i - 1)) / std::log(press(i) / press(i - 1));
        run.push_back(plot.At.ToPoint(temp(i - 1) + share * (temp(i) - temp(i - 1)), top));
      }
      finish();
      break;
    }
    const Point at = plot.At.ToPoint(temp(i), press(i));
    run.push_back(at);
    if (!frame.Contains(at)) continue;
    if (style.Dots) {
      plot.Page.Add(tag, Circle{.Center = at, .Radius = 26, .Fill = {style.Line.Ink}});
    }
    if (style.Circles) {
      plot.Page.Add(
          tag,
          Circle{.Center = at, .Radius = 42, .Stroke = {style.Line.Ink, 12, LineStyle::Solid}});
    }
  }
  finish();
}

// At the topmost point of a trace inside the frame. Where that is full the legend has to do.
void NameTrace(Plot& plot, LabelRoom& room, std::string_view name, const Levels<double>& press,
               const Levels<double>& temp, Color ink, AnchorX across) {
  const Rect& frame = plot.At.Frame();
  for (int i = press.Count(); i >= 1; --i) {
    if (IsMissing(temp(i)) || press(i) < plot.At.TopPress()) continue;
    const Point at = plot.At.ToPoint(temp(i), press(i));
    if (at.Y > frame.Bottom) continue;
    if (at.Y < frame.Top + 60 || at.X < frame.Left + 150 || at.X > frame.Right - 150) continue;
    // On the other side where the frame leaves no room.
    const double width = 70 + TextWidth(name, kAxisText);
    // The brackets of inversions stand at the left edge.
    constexpr double kEdge = 14 * kUnitsPerPixel;
    if (across == AnchorX::Right && at.X - width < frame.Left + kEdge) across = AnchorX::Left;
    if (across == AnchorX::Left && at.X + width > frame.Right) across = AnchorX::Right;
    const double aside = across == AnchorX::Left ? 70 : -70;
    const Point wanted{at.X + aside, at.Y + 30};
    if (const auto place = TakePlaceNear(room, wanted, name, kAxisText, across)) {
      DrawTextOver(plot, "trace name", *place, std::string(name), ink, kAxisText, across);
    }
    return;
  }
}

// The polygons between parcel and environment over [from, to) of the path's steps, one ring for
// each run of steps where the parcel is on the wanted side.
std::vector<std::vector<Point>> Between(const Plot& plot, const ParcelAscent& ascent,
                                        std::size_t from, std::size_t to, bool warmer) {
  std::vector<std::vector<Point>> rings;
  std::vector<Point> parcel;
  std::vector<Point> environment;
  const auto close = [&] {
    if (parcel.size() > 1) {
      std::vector<Point> ring = Thinned(std::move(parcel), kThinnedNear);
      const std::vector<Point> back = Thinned(std::move(environment), kThinnedNear);
      ring.insert(ring.end(), back.rbegin(), back.rend());
      ring = ClipPolygon(ring, plot.At.Frame());
      if (ring.size() > 2) rings.push_back(std::move(ring));
    }
    parcel.clear();
    environment.clear();
  };
  const auto press = [&](std::size_t i) {
    return ascent.FirstPress - ascent.Step * static_cast<double>(i);
  };
  for (std::size_t i = from; i < to; ++i) {
    const double env = ascent.EnvTemps[i];
    const double lifted = ascent.ParcelTemps[i];
    const bool wanted = !IsMissing(env) && (warmer ? lifted > env : lifted < env);
    if (!wanted) {
      close();
      continue;
    }
    parcel.push_back(plot.At.ToPoint(lifted, press(i)));
    environment.push_back(plot.At.ToPoint(env, press(i)));
  }
  close();
  return rings;
}

std::size_t StepAt(const ParcelAscent& ascent, double press) {
  const double steps = (ascent.FirstPress - press) / ascent.Step;
  return static_cast<std::size_t>(
      std::clamp(steps, 0.0, static_cast<double>(ascent.ParcelTemps.size())));
}

}  // namespace

void DrawParcel(Plot& plot) {
  if (!plot.Set().AutoAnalyses) return;
  const ParcelAscent& ascent = plot.Results().Chosen();
  if (!ascent.Start.Exists() || ascent.ParcelTemps.empty()) return;
  const std::size_t steps = std::min(ascent.ParcelTemps.size(), ascent.EnvTemps.size());

  std::size_t end = steps;
  if (ascent.FreeLevel.Exists() && ascent.Equilibrium.Exists() && ascent.CapeTotal > 0) {
    const std::size_t free = std::min(StepAt(ascent, ascent.FreeLevel.Press), steps);
    const std::size_t top = std::min(StepAt(ascent, ascent.Equilibrium.Press) + 1, steps);
    const auto fill = [&](std::string_view tag, std::vector<std::vector<Point>> rings,
                          const Brush& brush) {
      if (rings.empty()) return;
      plot.Page.Add(tag, Area{.Rings = std::move(rings), .Fill = brush});
    };
    const std::vector<std::vector<Point>> inhibited = Between(plot, ascent, 0, top, false);
    const std::vector<std::vector<Point>> lifted = Between(plot, ascent, free, top, true);
    fill("CIN area", inhibited, plot.Inks.Cin);
    fill("CIN hatch", inhibited, plot.Inks.CinHatch);
    fill("CAPE area", lifted, plot.Inks.Cape);
    end = ascent.MaximumParcel.Exists()
              ? std::min(StepAt(ascent, ascent.MaximumParcel.Press) + 1, steps)
              : top;
  }
  end = std::min(end, StepAt(ascent, plot.At.TopPress()) + 1);
  if (plot.Set().CapeTempBase == TempBase::Virtual && !plot.Set().VirtualTrace) {
    std::vector<Point> run;
    for (std::size_t i = 0; i < end; ++i) {
      if (IsMissing(ascent.EnvTemps[i])) continue;
      run.push_back(plot.At.ToPoint(ascent.EnvTemps[i],
                                    ascent.FirstPress - ascent.Step * static_cast<double>(i)));
    }
    DrawInFrame(plot, "virtual temperature", Thinned(std::move(run), kThinnedNear),
                plot.Inks.VirtualTemp);
  }
  std::vector<Point> curve;
  for (std::size_t i = 0; i < end; ++i) {
    curve.push_back(plot.At.ToPoint(ascent.ParcelTemps[i],
                                    ascent.FirstPress - ascent.Step * static_cast<double>(i)));
  }
  DrawInFrame(plot, "parcel", Thinned(std::move(curve), kThinnedNear), plot.Inks.Parcel);
  // The parcel's moisture keeps its mixing ratio from the dew point up to the condensation level.
  if (ascent.Condensation.Exists() && !IsMissing(ascent.Start.Dewpt)) {
    const SaturationOver over = plot.Set().Saturation;
    const double mixing =
        analysis::ThetaPoint(ascent.Start.Press, ascent.Start.Dewpt, over).MixingRatio;
    std::vector<Point> line;
    for (double press = ascent.Start.Press; press > ascent.Condensation.Press; press -= 20) {
      line.push_back(
          plot.At.ToPoint(analysis::DewpointFromMixingRatio(press, mixing, over), press));
    }
    line.push_back(plot.At.ToPoint(ascent.Condensation.Temp, ascent.Condensation.Press));
    DrawInFrame(plot, "parcel moisture", line, plot.Inks.ParcelMoisture);
  }
}

void DrawTraces(Plot& plot) {
  const DisplaySettings& set = plot.Set();
  const SoundingRecord& sounding = plot.Sounding();
  const analysis::LevelProfile& levels = plot.Results().Levels;
  if (set.WetBulbTrace) {
    DrawTrace(plot, "wet bulb", levels.Press, levels.WetBulb, {plot.Inks.WetBulb});
  }
  if (set.VirtualTrace) {
    DrawTrace(plot, "virtual temperature", levels.Press, levels.VirtualTemp,
              {plot.Inks.VirtualTemp});
  }
  const TraceStyle dewpoint = DewpointStyle(plot);
  DrawTrace(plot, "dew point", sounding.Press, sounding.Dewpt, dewpoint);
  DrawTrace(plot, "temperature", sounding.Press, sounding.Temp,
            {plot.Inks.Temperature, true, set.TraceDots, set.TraceCircles});
}

void NameTraces(Plot& plot) {
  LabelRoom room = RoomOn(plot);
  const SoundingRecord& sounding = plot.Sounding();
  NameTrace(plot, room, "T", sounding.Press, sounding.Temp, plot.Inks.Temperature.Ink,
            AnchorX::Left);
  if (DewpointStyle(plot).IsSeen()) {
    NameTrace(plot, room, "Td", sounding.Press, sounding.Dewpt, plot.Inks.Dewpoint.Ink,
              AnchorX::Right);
  }
  if (const SoundingRecord* reference = plot.In.Reference) {
    NameTrace(plot, room, "Reference", reference->Press, reference->Temp, plot.Inks.Faint,
              AnchorX::Left);
  }
}

void DrawOtherTraces(Plot& plot, bool faint) {
  int number = 0;
  for (const OverlaySounding& other : plot.In.Others) {
    ++number;
    if (other.Sounding == nullptr || other.IsFaint != faint) continue;
    Pen pen = OverlayPen(plot.Inks, number);
    // Of two soundings one is told from the other without their colours too.
    if (plot.In.Mode == MultiMode::Compare) pen.Style = LineStyle::Dash;
    if (faint) pen.Ink = FaintInk(plot.Inks, pen.Ink);
    if (plot.Set().TraceThick == ThickLines::All) pen.Width *= 1.6;
    DrawTrace(plot, "other temperature", other.Sounding->Press, other.Sounding->Temp, {pen});
    pen.Width *= 0.6;
    DrawTrace(plot, "other dew point", other.Sounding->Press, other.Sounding->Dewpt, {pen});
  }
}

void DrawReferenceTraces(Plot& plot) {
  const SoundingRecord* reference = plot.In.Reference;
  if (reference == nullptr) return;
  const Pen pen{plot.Inks.Faint, 22, LineStyle::Dash};
  DrawTrace(plot, "reference temperature", reference->Press, reference->Temp, {pen});
  DrawTrace(plot, "reference dew point", reference->Press, reference->Dewpt,
            {{pen.Ink, 16, LineStyle::Dots}});
}

namespace {

// Entries one after the other, each a sample and its text; they go on in the next row while there
// is one. What the page does not show has none.
class TraceNames {
 public:
  TraceNames(Plot& plot, const Rect& region)
      : plot_(plot), region_(region), x_(region.Left), y_(region.Top + kRow / 2) {}

  void Line(std::string_view tag, std::string_view text, const Pen& pen) {
    if (const auto from = Place(tag, text)) {
      DrawSegment(plot_.Page, "legend line", {*from, y_}, {*from + kSample, y_}, pen);
    }
  }
  void AreaOf(std::string_view tag, std::string_view text, const Brush& brush) {
    if (const auto from = Place(tag, text)) {
      plot_.Page.Add("legend area", Area{.Rings = {{{*from, y_ - 60},
                                                    {*from + kSample, y_ - 60},
                                                    {*from + kSample, y_ + 60},
                                                    {*from, y_ + 60}}},
                                         .Fill = brush,
                                         .Stroke = plot_.Inks.PanelFrame});
    }
  }

 private:
  static constexpr double kSample = 24 * kUnitsPerPixel;
  static constexpr double kGap = 5 * kUnitsPerPixel;
  static constexpr double kRow = 18 * kUnitsPerPixel;

  // Writes the text; where its sample begins.
  std::optional<double> Place(std::string_view tag, std::string_view text) {
    const bool isDrawn = std::ranges::any_of(plot_.Page.Items(),
                                             [tag](const Item& item) { return item.Tag == tag; });
    if (!isDrawn) return std::nullopt;
    const double width = kSample + 4 * kGap + TextWidth(text, kSmallText);
    if (x_ > region_.Left && x_ + width > region_.Right) {
      x_ = region_.Left;
      y_ += kRow;
    }
    if (y_ + kRow / 2 > region_.Bottom + 1 || x_ + width > region_.Right) return std::nullopt;
    DrawText(plot_.Page, "legend", {x_ + kSample + kGap, y_}, std::string(text), plot_.Inks.Ink,
             kSmallText);
    return std::exchange(x_, x_ + width);
  }

  Plot& plot_;
  const Rect region_;
  double x_;
  double y_;
};

}  // namespace

void DrawLegend(Plot& plot) {
  const Rect* region = plot.Where.Find("legend");
  if (region == nullptr) return;
  TraceNames entries(plot, *region);
  entries.Line("temperature", "T", plot.Inks.Temperature);
  entries.Line("dew point", "Td", plot.Inks.Dewpoint);
  entries.Line("virtual temperature", "Tv", plot.Inks.VirtualTemp);
  entries.Line("wet bulb", "Tw", plot.Inks.WetBulb);
  entries.Line("parcel", "Parcel", plot.Inks.Parcel);
  entries.Line("reference temperature", "Reference", {plot.Inks.Faint, 22, LineStyle::Dash});
  entries.AreaOf("usual temperature", "T 10-90 %", plot.Inks.UsualTemp);
  entries.AreaOf("usual dew point", "Td 10-90 %", plot.Inks.UsualDewpt);
  entries.AreaOf("CAPE area", "CAPE", plot.Inks.Cape);
  entries.AreaOf("CIN hatch", "CIN", plot.Inks.CinHatch);
  for (const StabilityClass& stability : kStability) {
    entries.AreaOf("stability bar", stability.Name, {LegibleColor(plot.Inks, stability.Color)});
  }
  entries.Line("dry adiabat", "Dry adiabat", plot.Inks.DryAdiabat);
  entries.Line("isentrope", "Isentrope", plot.Inks.DryAdiabat);
  entries.Line("saturation adiabat", "Moist adiabat", plot.Inks.SatAdiabat);
  entries.Line("mixing ratio line", "Mixing ratio", plot.Inks.MixingRatio);
  entries.Line("standard atmosphere", "Standard atmosphere", plot.Inks.StandardAtmosphere);
  if (!plot.Where.Asks.FullLegend) return;
  entries.Line("isotherm", "Isotherm", plot.Inks.Isotherm);
  entries.Line("isotherm", "0 and -20 C", plot.Inks.ZeroIsotherm);
  entries.Line("pressure line", "Pressure", plot.Inks.MandatoryIsobar);
  entries.Line("surface line", "Surface", plot.Inks.Surface);
  entries.Line("parcel moisture", "Parcel moisture", plot.Inks.ParcelMoisture);
}

void DrawStabilityBars(Plot& plot) {
  if (!plot.Set().StabilityBars) return;
  const Rect& frame = plot.At.Frame();
  const analysis::LevelProfile& levels = plot.Results().Levels;
  constexpr double kWidth = 110;
  for (int i = 1; i < levels.Count(); ++i) {
    const double low = std::min<double>(levels.Press(i), plot.At.BottomPress());
    const double high = std::max(levels.Press(i + 1), plot.At.TopPress());
    const double depth = levels.Height(i + 1) - levels.Height(i);
    if (high >= low || depth <= 0) continue;
    const double lapse = (levels.Temp(i) - levels.Temp(i + 1)) / depth;  // °C per m
    const double thetaE =
        analysis::ThetaPoint(levels.Press(i), levels.Temp(i), plot.Set().Saturation).ThetaE;
    const analysis::LiftSatResult lifted =
        analysis::LiftSat(thetaE, levels.Press(i + 1), plot.Set().Saturation);
    const double saturated = lifted.Failed ? 0.0065 : (levels.Temp(i) - lifted.Temp) / depth;
    std::size_t kind = 1;
    if (lapse < 0) kind = 0;
    if (lapse > saturated) kind = 2;
    if (lapse > 1.005 * analysis::kGravity / 1005) kind = 3;
    const double x = frame.Left;
    const double bottom = std::min(plot.At.IsobarY(low, x), frame.Bottom);
    const double top = std::max(plot.At.IsobarY(high, x), frame.Top);
    if (top >= bottom) continue;
    plot.Page.Add("stability bar",
                  Area{.Rings = {{{x, bottom}, {x + kWidth, bottom}, {x + kWidth, top}, {x, top}}},
                       .Fill = {LegibleColor(plot.Inks, kStability[kind].Color)}});
  }
}

}  // namespace vexa::diagram
