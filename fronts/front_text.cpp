#include "fronts/front_text.h"

#include <algorithm>
#include <cmath>

#include "analysis/index_table.h"
#include "core/numbers.h"
#include "core/shown_values.h"
#include "core/units.h"
#include "hodograph/compass.h"

namespace vexa::fronts {
namespace {

using Lines = std::vector<std::string>;

constexpr double kMphPerKnot = 1.15155;
constexpr std::string_view kNoValue = "--";
constexpr std::string_view kDegreeSign = "\xC2\xB0";

std::string SpeedText(const Front& front, const FrontSource& from) {
  if (front.IsQuasiStationary()) return "Quasi-stationary";
  const bool isKnots = from.Front.Speed == FrontSpeedUnits::Knots;
  return "Frontal speed: " + Mask(isKnots ? front.Speed : front.Speed * kMphPerKnot, "##0") +
         (isKnots ? " kts" : " mph") + " towards the " +
         std::string(hodograph::CompassName(ToWhole(front.Motion)));
}

std::string DistanceText(const Front& front, const FrontSource& from) {
  const bool isKm = from.Distance == DistanceUnits::Kilometers;
  const double distance = isKm ? front.DistanceKm : front.DistanceKm * 1000 / kMetersPerMile;
  return "Frontal distance: " + Mask(distance, "####0") + (isKm ? " km" : " miles") + " to the " +
         std::string(hodograph::CompassName(ToWhole(front.TowardsSurfaceFront)));
}

std::string LiftText(const Front& front, const FrontSource& from) {
  std::string text = "Vertical motion: ";
  if (!front.Lift) return text + std::string(kNoValue);
  const bool isFeet = from.Set.GpmUnits == LengthUnits::Feet;
  return text + Mask(ShownIn(*front.Lift, from.Set.GpmUnits), "####0") +
         (isFeet ? " feet/hour" : " meters/hour");
}

std::string SignedText(double advection) {
  return (advection > 0 ? "+ " : "- ") + Mask(std::fabs(advection), "##0.0");
}

std::string TableRow(const FrontLayer& layer, bool isStrong, const DisplaySettings& options) {
  const analysis::Wind& wind = layer.Thermal.Wind;
  std::string row =
      PadLeft(Mask(layer.BasePress, "###0"), 5) + "/" + PadRight(Mask(layer.TopPress, "###0"), 4);
  row += PadLeft(Mask(layer.Thermal.Orientation, "##0"), 7);
  row += PadLeft(Mask(wind.Dir, "##0"), 9) + " / " +
         PadLeft(Mask(ShownIn(wind.Spd, options.Speed), "##0"), 3);
  row += PadLeft(Mask(layer.Thermal.Gradient, "#0.00"), 12) + (isStrong ? "*" : " ");
  return row + PadLeft(SignedText(layer.AdvectionCph), 13);
}

std::string GradientText(const FrontSettings& set) {
  return Mask(set.GradientThreshold, "0.000") + std::string(kDegreeSign) + "C/nm";
}

std::string SpanText(const FrontLayer& layer, const FrontSource& from) {
  return Mask(layer.BasePress, "###0.0") + "-" + Mask(layer.TopPress, "###0.0") + " " +
         std::string(analysis::PressureWord(from.Set.Pressure)) + ", " + Mask(layer.Base, "####0") +
         "-" + Mask(layer.Top, "####0") + " m above the station";
}

std::string Terms(const FrontLayer& layer) {
  return "thermal wind " + Mask(layer.Thermal.Wind.Dir, "##0.0") + "/" +
         Mask(layer.Thermal.Wind.Spd, "##0.0") + " kts, gradient " +
         Mask(layer.Thermal.Gradient, "0.0000") + " C/nm, warm air towards " +
         Mask(layer.Thermal.WarmAzimuth, "##0.0") + ", advection " +
         SignedText(layer.AdvectionCph) + " C/h";
}

Lines ReasonsOf(const Front& front, const FrontSource& from) {
  Lines lines;
  const auto put = [&lines](const std::string& text) { lines.push_back(text); };
  put(Terms(front.Zone.Whole) + (front.IsWarm() ? ": warm" : ": cold"));
  put("moves towards " + Mask(front.Motion, "##0.0") + (front.IsWarm() ? ", away from" : ", to") +
      " the warm air, c = " + Mask(front.Speed, "##0.0") +
      " kts, the mean normal wind of the zone");
  if (front.NormalWindBelow) {
    put("Vn = " + Mask(*front.NormalWindBelow, "##0.0") + " kts, the mean normal wind below it" +
        (front.IsWarm() ? "; a warm front is anabatic where Vn does not exceed c"
                        : "; a cold front is anabatic where Vn exceeds c"));
  } else {
    put("no winds below the zone: no vertical motion");
  }
  put("slope 1/" + Mask(front.SlopeN, "##0") +
      (from.Front.Control == FrontControl::Automatic ? " for such a front" : " as set") +
      "; distance = " + Mask(front.Zone.Whole.Top, "####0") +
      " m / slope = " + Mask(front.DistanceKm, "####0") + " km");
  if (front.Lift) {
    put("vertical motion = " + std::string(front.IsWarm() ? "(c - Vn)" : "(Vn - c)") +
        " 1852 slope = " + Mask(*front.Lift, "####0.0") + " m/h");
  }
  if (front.Jump) {
    put("largest jump of the normal wind " + Mask(front.Jump->Change, "##0.0") + " kts, " +
        Mask(front.Jump->Base, "####0") + "-" + Mask(front.Jump->Top, "####0") + " m");
  }
  return lines;
}

// How many layers and zones missed what.
Lines WhatWasMissed(const FrontSource& from) {
  const FrontResults& fronts = from.Fronts;
  if (!fronts.WhyNone.empty()) return {fronts.WhyNone};
  Lines lines;
  for (const Missed why : {Missed::Low, Missed::High, Missed::Weak}) {
    const auto count = std::ranges::count(fronts.Layers, why, &FrontLayer::Why);
    if (count == 0) continue;
    lines.push_back(Shortest(static_cast<int>(count)) + (count == 1 ? " layer: " : " layers: ") +
                    std::string(Text(why)));
  }
  for (const FrontZone& zone : fronts.Zones) {
    lines.push_back(SpanText(zone.Whole, from) + ": advection " +
                    SignedText(zone.Whole.AdvectionCph) + " C/h, " + std::string(Text(zone.Why)));
  }
  return lines;
}

}  // namespace

std::vector<std::string> LayerTable(const FrontSource& from) {
  const std::string degree(kDegreeSign);
  const bool isHpa = from.Set.Pressure == PressureUnits::Hpa;
  const bool isKnots = from.Set.Speed == SpeedUnits::Knots;
  Lines lines = {"  Layer     Frontal   Thermal Wind   Gradient*    Advection",
                 std::string("  Lo/Hi") + "   Orientation    " + "Dir/Spd",
                 std::string("  ") + (isHpa ? "(hPa)" : "(mb) ") + PadRight("", 18) +
                     (isKnots ? "(kts)" : "(m/s)") + "       (" + degree + "C/nm)        (" +
                     degree + "C/hr)"};
  for (const FrontLayer& layer : from.Fronts.Layers) {
    const bool isStrong = layer.Thermal.Gradient >= from.Front.GradientThreshold;
    lines.push_back(TableRow(layer, isStrong, from.Set));
  }
  lines.push_back("  * the gradient threshold of " + GradientText(from.Front) + " or more");
  return lines;
}

std::vector<std::string> Characterisation(const FrontSource& from) {
  if (!from.Fronts.Found) {
    return {"No front found.", "---------------", "Use the AUTOMATIC button (above), or",
            "press F8 to adjust the frontal and", "thermal wind configuration options."};
  }
  const Front& front = *from.Fronts.Found;
  const bool isBehind = front.Kind == FrontClass::AnabaticCold;
  return {
      "Front character: " + std::string(Text(front.Kind)),
      SpeedText(front, from),
      DistanceText(front, from),
      LiftText(front, from),
      "Precipitation formation: " +
          (front.Hours ? Mask(*front.Hours, "##0.0") + " hours" : std::string(kNoValue)),
      isBehind ? "Clouds & precip behind surface front" : "Clouds & precip ahead of surface front"};
}

std::vector<std::string> StatusBlock(const FrontSource& from) {
  const FrontSettings& set = from.Front;
  const bool isAutomatic = set.Control == FrontControl::Automatic;
  const double slope = isAutomatic && from.Fronts.Found ? from.Fronts.Found->SlopeN : set.SlopeN;
  return {"Thermal wind interval = " + Mask(set.IntervalM, "###0"),
          "Thermal wind mode = " + std::string(Words(set.Mode)[static_cast<std::size_t>(set.Mode)]),
          "Frontal slope = 1/" + Mask(slope, "##0"),
          "Gradient threshold = " + GradientText(set),
          "Angular threshold = " + Mask(set.AngularThreshold, "#0") + " degrees",
          "Lower frontal limit = " + Mask(set.LowerLimitM, "###0") + " m, AGL",
          "Advection threshold = " + Mask(set.LeastAdvection, "0.00") + std::string(kDegreeSign) +
              "C/hr"};
}

std::vector<std::string> Reasons(const FrontSource& from) {
  if (!from.Fronts.Found) return WhatWasMissed(from);
  Lines lines = ReasonsOf(*from.Fronts.Found, from);
  lines.insert(lines.begin(), SpanText(from.Fronts.Found->Zone.Whole, from));
  return lines;
}

std::vector<std::string> ExplainFronts(const FrontSource& from) {
  Lines lines;
  const FrontResults& fronts = from.Fronts;
  if (!fronts.WhyNone.empty()) return {"No front found. " + fronts.WhyNone};
  if (fronts.Found) {
    lines.push_back("  The front: " + SpanText(fronts.Found->Zone.Whole, from));
    for (const std::string& line : ReasonsOf(*fronts.Found, from)) lines.push_back("    " + line);
  } else {
    lines.emplace_back("  No front found: no layer passes the thresholds.");
  }
  lines.emplace_back("  Zones, the strongest by gradient times depth");
  for (const FrontZone& zone : fronts.Zones) {
    lines.push_back("    " + SpanText(zone.Whole, from) + ": " +
                    Mask(zone.Rank() / kMetersPerNauticalMile, "##0.0000") + " C, " +
                    Shortest(static_cast<int>(zone.Parts.size())) + " layers, advection " +
                    SignedText(zone.Whole.AdvectionCph) + " C/h" +
                    (zone.Why == Missed::No ? "" : ": " + std::string(Text(zone.Why))));
  }
  lines.emplace_back("  Layers");
  for (const FrontLayer& layer : fronts.Layers) {
    lines.push_back(
        "    " + SpanText(layer, from) + ": " + Terms(layer) +
        (layer.Why == Missed::No ? ", a candidate" : ", " + std::string(Text(layer.Why))));
  }
  return lines;
}

}  // namespace vexa::fronts
