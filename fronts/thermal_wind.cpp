#include "fronts/thermal_wind.h"

#include <cmath>

#include "analysis/moist_air.h"
#include "analysis/standard_atmosphere.h"
#include "core/markers.h"
#include "core/units.h"

namespace vexa::fronts {
namespace {

constexpr double kEarthRotation = 7.2921e-5;  // s⁻¹

constexpr double kSearchTop = 6000;  // m above the station

double VirtualTempAt(const analysis::LevelProfile& levels, double press, double height) {
  const analysis::Sample sample =
      analysis::SampleAt(levels, press, analysis::Quantity::VirtualTemp);
  const double temp = sample.Ok() ? sample.Value : analysis::IsaTemp(height);
  return temp + kKelvinOffset;
}

double PressAt(const analysis::LevelProfile& levels, double height) {
  const double press = analysis::GetPRESS(levels, height);
  return HasHeight(press) ? press : analysis::IsaPressure(height);
}

// Heights of the winds above the station, lowest first.
std::vector<double> WindHeights(const SoundingRecord& sounding) {
  std::vector<double> heights;
  for (int i = 1; i <= sounding.NumWindLevels(); ++i) {
    if (sounding.HasWind(i)) heights.push_back(sounding.WindHgt(i) - sounding.ElevM);
  }
  return heights;
}

struct Span {
  double Base = 0, Top = 0;  // m above the station
};

std::vector<Span> Spans(const SoundingRecord& sounding, const FrontSettings& settings) {
  const std::vector<double> winds = WindHeights(sounding);
  std::vector<Span> spans;
  if (winds.empty()) return spans;
  const double interval = settings.IntervalM;
  switch (settings.Mode) {
    case ThermalWindMode::Fixed:
      for (int i = 0; interval * (i + 1) <= winds.back() + 1; ++i) {
        spans.push_back({interval * i, interval * (i + 1)});
      }
      break;
    case ThermalWindMode::Sliding:
      for (const double height : winds) spans.push_back({height, height + interval});
      break;
    case ThermalWindMode::Levels: {
      double base = winds.front();
      for (const double height : winds) {
        if (height - base < interval) continue;
        spans.push_back({base, height});
        base = height;
      }
      break;
    }
  }
  return spans;
}

Missed MissedBy(const FrontLayer& layer, const FrontSettings& settings) {
  constexpr double kRounding = 0.01;  // m
  if (layer.Base < settings.LowerLimitM - kRounding) return Missed::Low;
  if (layer.Top > kSearchTop + kRounding) return Missed::High;
  return layer.Thermal.Gradient < settings.GradientThreshold ? Missed::Weak : Missed::No;
}

}  // namespace

std::string_view Text(Missed missed) {
  switch (missed) {
    case Missed::No:
      return "";
    case Missed::Low:
      return "below the lower frontal limit";
    case Missed::High:
      return "above 6000 m";
    case Missed::Weak:
      return "gradient below the threshold";
    case Missed::Still:
      return "advection below the threshold";
  }
  return "";
}

ThermalWind ThermalWindOf(const analysis::WindVector& lower, const analysis::WindVector& upper,
                          double meanTemp, double thickness, double latitude) {
  ThermalWind thermal{.Vector = {upper.U - lower.U, upper.V - lower.V}};
  thermal.Wind = analysis::FromComponents(thermal.Vector);
  const double coriolis = 2 * kEarthRotation * std::sin(Radians(latitude));
  const double speed = std::hypot(thermal.Vector.U, thermal.Vector.V) * kKnotToMs;
  thermal.Gradient = std::fabs(coriolis) * meanTemp * speed / (analysis::kGravity * thickness) *
                     kMetersPerNauticalMile;
  thermal.WarmAzimuth = Wrap360(thermal.Wind.Dir + (latitude < 0 ? 90 : 270));
  thermal.Orientation = std::fmod(thermal.Wind.Dir, 180);
  return thermal;
}

double Towards(const analysis::WindVector& wind, double azimuth) {
  return -(wind.U * std::sin(Radians(azimuth)) + wind.V * std::cos(Radians(azimuth)));
}

double Advection(const analysis::WindVector& wind, const ThermalWind& thermal) {
  return -Towards(wind, thermal.WarmAzimuth) * thermal.Gradient;
}

std::optional<FrontLayer> LayerBetween(const SoundingRecord& sounding,
                                       const analysis::LevelProfile& levels, double base,
                                       double top) {
  const double ground = sounding.ElevM;
  const analysis::WindSample lower = analysis::WindAtHeight(sounding, ground + base);
  const analysis::WindSample upper = analysis::WindAtHeight(sounding, ground + top);
  if (!lower.Ok() || !upper.Ok() || !(top > base)) return std::nullopt;
  FrontLayer layer{.Base = base, .Top = top};
  layer.BasePress = PressAt(levels, ground + base);
  layer.TopPress = PressAt(levels, ground + top);
  layer.Lower = analysis::Components(lower.Value);
  layer.Upper = analysis::Components(upper.Value);
  layer.Mean = {(layer.Lower.U + layer.Upper.U) / 2, (layer.Lower.V + layer.Upper.V) / 2};
  const double meanTemp = (VirtualTempAt(levels, layer.BasePress, ground + base) +
                           VirtualTempAt(levels, layer.TopPress, ground + top)) /
                          2;
  layer.Thermal = ThermalWindOf(layer.Lower, layer.Upper, meanTemp, top - base, sounding.LatSigned);
  layer.AdvectionCph = Advection(layer.Mean, layer.Thermal);
  return layer;
}

std::vector<FrontLayer> FrontLayers(const SoundingRecord& sounding,
                                    const analysis::LevelProfile& levels,
                                    const FrontSettings& settings) {
  std::vector<FrontLayer> layers;
  for (const Span& span : Spans(sounding, settings)) {
    std::optional<FrontLayer> layer = LayerBetween(sounding, levels, span.Base, span.Top);
    if (!layer) continue;
    layer->Why = MissedBy(*layer, settings);
    layers.push_back(*layer);
  }
  return layers;
}

}  // namespace vexa::fronts
