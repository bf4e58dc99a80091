#include "mountainwave/wave_listing.h"

#include "analysis/turbulence.h"
#include "core/numbers.h"
#include "core/shown_values.h"
#include "core/units.h"

namespace vexa::mountainwave {
namespace {

using Lines = std::vector<std::string>;

std::string HeightText(double meters, const WaveUnits& units) {
  return LengthText(meters, units.Height);
}

std::string LengthText(double km, const WaveUnits& units) {
  return Mask(FromKm(km, units.Distance), "###0.0") + " " + std::string(Word(units.Distance));
}

// The listing has room for the whole word.
std::string TurbulenceText(double speedMs) {
  const analysis::WaveWord word = analysis::WaveTurbulence(speedMs);
  if (word.Class == analysis::Intensity::None) return "--";
  return word.Long == "SEVER" ? "SEVERE" : std::string(word.Long);
}

std::string TimeBehind(const SoundingRecord& sounding) {
  const std::string time = TimeText(sounding.Time);
  return time.empty() ? time : "  " + time + " UTC";
}

std::string AxisText(double axis) {
  return axis == 0 ? " any angle" : Mask(axis, "##0") + " degrees";
}

void PutRidge(const Ridge& ridge, const WaveUnits& units, Lines& lines) {
  lines.push_back(
      "       Half-width: " + Mask(FromNauticalMiles(ridge.HalfWidthNm, units.Distance), "##0.0") +
      " " + std::string(Word(units.Distance)));
  lines.push_back("        Ridge Axis: " + AxisText(ridge.Axis));
}

void PutMountains(const WaveSource& from, Lines& lines) {
  const WaveUnits& units = from.Set.Units;
  if (!from.Mountains) {
    const double crest = kDefaultRelief + from.Sounding.ElevM;
    const Wave* wave =
        from.Waves.Ridges.empty() ? nullptr : from.Waves.Ridges.front().Predominant();
    lines.push_back("Mountain Elevation:   " + HeightText(crest, units) + ", MSL");
    if (wave != nullptr) {
      lines.push_back(
          "       Half-width: " + Mask(FromKm(wave->HalfWidthKm, units.Distance), "##0.0") + " " +
          std::string(Word(units.Distance)));
    }
    lines.push_back("        Ridge Axis: " + AxisText(0));
    lines.emplace_back("Mountain parameters set to default for maximum wave.");
    return;
  }
  const MountainParameters& mountains = *from.Mountains;
  const auto crest = [&](const Ridge& ridge) {
    return HeightText(MetersFromFeet(ridge.HeightFt), units) + ", MSL";
  };
  if (!mountains.HasSecond()) {
    lines.push_back("Mountain Elevation:   " + crest(mountains.First));
    PutRidge(mountains.First, units, lines);
    return;
  }
  lines.push_back("Mountain #1    Elevation: " + crest(mountains.First));
  PutRidge(mountains.First, units, lines);
  lines.push_back("Mountain #2    Elevation: " + crest(mountains.Second));
  PutRidge(mountains.Second, units, lines);
  lines.push_back("Mountain separation:   " +
                  Mask(FromNauticalMiles(mountains.DistanceNm, units.Distance), "###0.0") + " " +
                  std::string(Word(units.Distance)));
}

std::string ListedTag(const Wave& wave, bool hasTwo) {
  std::string tag = hasTwo ? "Mtn #" + Shortest(wave.Mountain) : std::string();
  if (wave.Kind == WaveKind::Harmonic) tag += tag.empty() ? "Harmonic" : " Harmonic";
  return tag.empty() ? tag : "   " + tag;
}

void PutWave(const Wave& wave, bool hasTwo, const WaveUnits& units, Lines& lines) {
  lines.push_back("Wavelength: " + LengthText(wave.Of.LengthKm, units) + ListedTag(wave, hasTwo));
  lines.push_back("   Amplitude: " + HeightText(wave.Amplitude, units));
  lines.push_back("Maximum Vertical Velocity: " + VelocityText(wave.MaxVelocity, units) + "   " +
                  TurbulenceText(wave.MaxVelocity));
  lines.emplace_back("Wave Interface Level");
  lines.push_back("   Pressure = " + Mask(wave.At.Press, "###0.0") + " mb");
  lines.push_back("   Altitude = " + HeightText(wave.At.Height, units) + ", AGL");
  lines.emplace_back();
}

std::string Figure(double value, std::string_view mask) {
  return Mask(value, mask);
}

void ExplainWave(const Wave& wave, const WaveUnits& units, Lines& lines) {
  const Interface& at = wave.At;
  const std::string head = wave.Kind == WaveKind::Predominant ? "Predominate wave"
                           : wave.Kind == WaveKind::Harmonic  ? "Harmonic"
                                                              : "Subordinate wave";
  const auto put = [&lines](const std::string& text) { lines.push_back("    " + text); };
  lines.push_back("  " + head + " below " + Figure(at.Press, "###0.0") + " mb, " +
                  HeightText(at.Height, units) + " above the station");
  put("H = " + Figure(at.DepthKm, "#0.000") + " km, the depth of the lower layer");
  put("D = l2 below - l2 above = " + Figure(at.L2Below, "##0.0000") + " - " +
      Figure(at.L2Above, "##0.0000") + " = " + Figure(at.Fall, "##0.0000") +
      " km-2, more than (pi/2H)2 = " + Figure(at.Threshold, "##0.0000") + " (Scorer 1949)");
  const std::string x = Figure(at.X, "##0.0000");
  std::string law = "the angle a of mode " + Shortest(wave.Of.Number) +
                    ", a + x sin a = " + Shortest(wave.Of.Number) + " pi";
  if (wave.Kind != WaveKind::Harmonic) {
    constexpr std::string_view kLaws[] = {"133.8 x^-0.91", "485.1 x^-1.15", "1275 x^-1.335"};
    law = kLaws[HighestMode(at.X) - 1];
  }
  put("x = H sqrt(D) = " + x + ", r = " + law + " = " + Figure(wave.Of.Angle, "##0.00") +
      " degrees");
  put("mu = sqrt(D) sin r = " + Figure(wave.Of.Mu, "##0.0000") +
      ", nu = sqrt(D) cos r = " + Figure(wave.Of.Nu, "##0.0000") + " km-1");
  put("k = sqrt(l2 above + D cos2 r) = " + Figure(wave.Of.K, "##0.0000") +
      " km-1, wavelength 2 pi/k = " + Figure(wave.Of.LengthKm, "##0.00") + " km");
  put("b = " + Figure(wave.HalfWidthKm, "##0.000") +
      " km, F = 2 pi h b e^-kb = " + Figure(wave.Forcing, "#####0.0") + " m km");
  put("Um = " + Figure(at.MeanWind, "##0.00") +
      " m/s from the ground to H, UH = " + Figure(at.WindHere, "##0.00") +
      " m/s there, R = sqrt(density ratio) = " + Figure(at.DensityRatio, "0.0000"));
  put("amplitude F (Um/UH) R sqrt(D) sin2 r/(k (H + 1/nu)) = " + Figure(wave.Amplitude, "####0.0") +
      " m (Corby and Wallington 1956)");
  put("w = F Um R sqrt(D) sin r/(H + 1/nu)/1000 = " + Figure(wave.MaxVelocity, "##0.00") +
      " m/s, " + Figure(wave.MaxVelocity / kMsPerFpm, "#####0") + " fpm, turbulence " +
      TurbulenceText(wave.MaxVelocity));
  if (wave.Breaks()) {
    put("the wave breaks: both are held at 1/" + Figure(wave.Steepness, "####0.0") +
        " of themselves, where its streamlines just do not overturn (Lindzen 1981)");
  }
}

void ExplainRidge(const RidgeWaves& ridge, int number, const WaveUnits& units, Lines& lines) {
  const CrossFlow& flow = ridge.Flow;
  lines.push_back("Mountain #" + Shortest(number) + ": h = " + Figure(ridge.Form.Relief, "####0") +
                  " m above the station, half-width b = " +
                  (ridge.Form.HalfWidthKm ? Figure(*ridge.Form.HalfWidthKm, "##0.00") + " km"
                                          : std::string("1/k of each wave")) +
                  ", axis " + (ridge.Form.Axis == 0 ? "any" : Figure(ridge.Form.Axis, "##0")));
  if (!flow.WhyNone.empty()) {
    lines.push_back("  " + flow.WhyNone);
    return;
  }
  lines.push_back("  Wind across the ridge at the crest " + Figure(flow.CrestWind, "##0.0") +
                  " m/s; " + Shortest(static_cast<int>(flow.Levels.size())) + " levels" +
                  (flow.CriticalHeight
                       ? " up to where it falls below 2 m/s, " +
                             HeightText(*flow.CriticalHeight, units) + " above the station"
                       : ""));
  for (const Wave& wave : ridge.Waves) ExplainWave(wave, units, lines);
  lines.emplace_back("  Levels without a wave");
  for (const Interface& at : ridge.Interfaces) {
    if (at.Why == PassedOver::No) continue;
    lines.push_back("    " + PadLeft(Figure(at.Press, "###0.0"), 6) + " mb  H " +
                    PadLeft(Figure(at.DepthKm, "#0.000"), 6) + " km  D " +
                    PadLeft(Figure(at.Fall, "###0.0000"), 9) + "  threshold " +
                    PadLeft(Figure(at.Threshold, "###0.0000"), 9) + "  " +
                    std::string(Reason(at.Why)));
  }
}

}  // namespace

std::string_view Reason(PassedOver why) {
  switch (why) {
    case PassedOver::No:
      return "";
    case PassedOver::Rises:
      return "l2 does not fall";
    case PassedOver::Untrapped:
      return "l2 falls by too little to trap a wave";
    case PassedOver::Calm:
      return "less than 2 m/s blow across the ridge";
    case PassedOver::NoMode:
      return "the layers have no free wave";
    case PassedOver::Length:
      return "the wave is shorter than 2 km or longer than 64 km";
    case PassedOver::Faint:
      return "the wave is weaker than 0.25 m/s";
    case PassedOver::Nearby:
      return "a stronger wave lies within 300 m";
  }
  return "";
}

std::string Tag(const Wave& wave) {
  return "Mtn #" + Shortest(wave.Mountain) + (wave.Kind == WaveKind::Harmonic ? " Harmonic" : "");
}

std::string WaveText(const Wave& wave, const WaveUnits& units) {
  return LengthText(wave.Of.LengthKm, units) + ", " + VelocityText(wave.MaxVelocity, units) + " " +
         std::string(analysis::WaveTurbulence(wave.MaxVelocity).Long);
}

std::string MarkText(const Wave& wave, const WaveUnits& units) {
  const std::string_view word = analysis::WaveTurbulence(wave.MaxVelocity).Short;
  return "Wave " + VelocityText(wave.MaxVelocity, units) + (word.empty() ? "" : " ") +
         std::string(word);
}

std::vector<std::string> WaveListing(const WaveSource& from) {
  const WaveUnits& units = from.Set.Units;
  const SoundingRecord& sounding = from.Sounding;
  const bool hasTwo = from.Mountains && from.Mountains->HasSecond();
  Lines lines = {
      "VEXA Mountain-Wave for:  " + sounding.StationTitle + TimeBehind(sounding),
      "Station Elevation: " + (sounding.ElevUnknown ? std::string("unknown")
                                                    : HeightText(sounding.ElevM, units) + ", MSL")};
  PutMountains(from, lines);
  if (from.Set.DecayOn) {
    lines.push_back("Wave decay = " + Mask(from.Set.DecayPercent, "##0") + "% at wavelength #" +
                    Shortest(from.Set.DecayWavelength));
  }
  lines.emplace_back();
  const std::vector<const Wave*> waves = from.Waves.All();
  const auto put = [&](std::string_view title, bool predominant) {
    bool isFirst = true;
    for (const Wave* wave : waves) {
      if ((wave->Kind == WaveKind::Predominant) != predominant) continue;
      if (isFirst) lines.emplace_back(title);
      isFirst = false;
      PutWave(*wave, hasTwo, units, lines);
    }
  };
  put("Predominate Wave", true);
  put("Subordinate Waves", false);
  if (waves.empty()) lines.emplace_back("There are no waves present.");
  const std::vector<RidgeWaves>& ridges = from.Waves.Ridges;
  if (!ridges.empty() && !ridges.front().Flow.WhyNone.empty()) {
    lines.push_back((hasTwo && !waves.empty() ? "Mountain #1: " : "") +
                    ridges.front().Flow.WhyNone);
  }
  if (ridges.size() > 1 && ridges[1].Waves.empty()) {
    lines.emplace_back("2nd mountain produced no waves.");
  }
  return lines;
}

std::vector<std::string> ExplainWaves(const WaveSource& from) {
  Lines lines = {"Waves of " + from.Sounding.StationTitle + TimeBehind(from.Sounding)};
  int number = 0;
  for (const RidgeWaves& ridge : from.Waves.Ridges) {
    ExplainRidge(ridge, ++number, from.Set.Units, lines);
  }
  return lines;
}

}  // namespace vexa::mountainwave
