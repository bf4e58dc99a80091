#include "diagram/usual_bands.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "analysis/interpolate.h"
#include "analysis/shown_units.h"
#include "core/markers.h"
#include "core/numbers.h"
#include "core/shown_values.h"
#include "picture/clip.h"
#include "picture/thinning.h"

namespace vexa::diagram {
namespace {

using BandOf = std::optional<UsualBand> UsualLevel::*;

struct BandStyle {
  std::string_view Tag;
  std::string_view MedianTag;
  Brush Fill{};
  Pen Median{};
};

// Pressures between two levels at which a band has its corners, so that it follows the bent
// isotherms.
constexpr int kCorners = 4;

UsualBand Between(const UsualBand& a, const UsualBand& b, double share) {
  const auto mix = [share](double from, double to) { return from + share * (to - from); };
  return {mix(a.Low, b.Low), mix(a.Median, b.Median), mix(a.High, b.High)};
}

// The band over the levels, a piece for each run of them that has it. `toPoint` places a value at a
// pressure, or nowhere.
template <class ToPoint>
void DrawBand(Plot& plot, const BandStyle& style, BandOf band, const Rect& inside,
              const ToPoint& toPoint) {
  std::vector<Point> low, high, median;
  const auto finish = [&] {
    if (low.size() > 1) {
      std::vector<Point> ring = std::exchange(low, {});
      ring.insert(ring.end(), high.rbegin(), high.rend());
      ring = ClipPolygon(ring, inside);
      if (ring.size() > 2) plot.Page.Add(style.Tag, Area{.Rings = {ring}, .Fill = style.Fill});
      for (std::vector<Point>& piece : ClipPolyline(median, inside)) {
        plot.Page.Add(style.MedianTag,
                      Polyline{.Points = std::move(piece), .Stroke = style.Median});
      }
    }
    low.clear();
    high.clear();
    median.clear();
  };
  const auto put = [&](const UsualBand& values, double press) {
    const auto at = toPoint(values.Median, press);
    if (!at) return;
    median.push_back(*at);
    low.push_back(*toPoint(values.Low, press));
    high.push_back(*toPoint(values.High, press));
  };
  const UsualLevel* below = nullptr;
  for (const UsualLevel& level : plot.In.Spread->Levels) {
    const std::optional<UsualBand>& values = level.*band;
    if (!values) {
      finish();
      below = nullptr;
      continue;
    }
    for (int i = 1; below != nullptr && i < kCorners; ++i) {
      const double share = static_cast<double>(i) / kCorners;
      put(Between(*(below->*band), *values, share),
          below->Press * std::pow(level.Press / below->Press, share));
    }
    put(*values, level.Press);
    below = &level;
  }
  finish();
}

// Of the band and of the sounding's own speed, up to a whole number of the scale's steps.
double ScaleEnd(const Plot& plot) {
  constexpr double kScaleStep = 50;  // kt
  double most = kScaleStep;
  for (const UsualLevel& level : plot.In.Spread->Levels) {
    if (level.Speed && plot.InRange(level.Press)) most = std::max(most, level.Speed->High);
  }
  const SoundingRecord& sounding = plot.Sounding();
  for (int i = 1; i <= sounding.NumWindLevels(); ++i) {
    if (!sounding.HasWind(i)) continue;
    const double press = analysis::GetPRESS(plot.Results().Levels, sounding.WindHgt(i));
    if (HasHeight(press) && plot.InRange(press)) most = std::max<double>(most, sounding.WindSpd(i));
  }
  return kScaleStep * std::ceil(most / kScaleStep);
}

}  // namespace

void DrawUsualTemps(Plot& plot) {
  if (plot.In.Spread == nullptr || !plot.Set().UsualTemps) return;
  const auto place = [&plot](double temp, double press) {
    return plot.InRange(press) ? std::optional(plot.At.ToPoint(temp, press)) : std::nullopt;
  };
  const Rect& frame = plot.At.Frame();
  DrawBand(
      plot,
      {"usual dew point", "usual dew point median", plot.Inks.UsualDewpt, plot.Inks.UsualDewptLine},
      &UsualLevel::Dewpt, frame, place);
  DrawBand(plot,
           {"usual temperature", "usual temperature median", plot.Inks.UsualTemp,
            plot.Inks.UsualTempLine},
           &UsualLevel::Temp, frame, place);
}

void DrawUsualWinds(Plot& plot, const Rect& column) {
  if (plot.In.Spread == nullptr || !plot.Set().UsualWinds) return;
  const double end = ScaleEnd(plot);
  const auto place = [&](double speed, double press) -> std::optional<Point> {
    if (!plot.InRange(press)) return std::nullopt;
    const std::optional<double> y = RightEdgeY(plot.At, press);
    if (!y) return std::nullopt;
    return Point{column.Left + column.Width() * speed / end, *y};
  };
  DrawBand(plot, {"usual wind", "usual wind median", plot.Inks.UsualWind, plot.Inks.UsualWindLine},
           &UsualLevel::Speed, column, place);
  std::vector<Point> own;
  const SoundingRecord& sounding = plot.Sounding();
  for (int i = 1; i <= sounding.NumWindLevels(); ++i) {
    if (!sounding.HasWind(i)) continue;
    const double press = analysis::GetPRESS(plot.Results().Levels, sounding.WindHgt(i));
    if (!HasHeight(press)) continue;
    if (const auto at = place(sounding.WindSpd(i), press)) own.push_back(*at);
  }
  for (std::vector<Point>& piece : ClipPolyline(Thinned(std::move(own), kThinnedNear), column)) {
    plot.Page.Add("wind speed", Polyline{.Points = std::move(piece),
                                         .Stroke = {FaintInk(plot.Inks, plot.Inks.Wind.Ink), 12}});
  }
  const SpeedUnits units = plot.Set().Speed;
  DrawText(plot.Page, "wind scale", {column.Left + column.Width() / 2, column.Bottom - kSmallText},
           "0-" + Mask(ShownIn(end, units), "##0") + " " + std::string(plot.Units.SpeedLabel),
           plot.Inks.Faint, kSmallText, AnchorX::Center);
}

}  // namespace vexa::diagram
