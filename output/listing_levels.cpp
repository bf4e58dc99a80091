// The listings that go level by level: summary, intervals, complete data and CAPE.
#include <algorithm>
#include <cmath>

#include "analysis/interpolate.h"
#include "analysis/shown_units.h"
#include "analysis/turbulence.h"
#include "core/shown_values.h"
#include "core/units.h"
#include "mountainwave/wave_model.h"
#include "output/level_rows.h"
#include "output/listing_line.h"
#include "output/listings.h"

namespace vexa::output {
namespace {

using analysis::AirLayer;
using analysis::Intensity;
using analysis::LevelProfile;

std::string TempShown(double temp, const ListingSource& from) {
  if (NotAvailable(temp)) return std::string(kNoValue);
  return Mask(ShownIn(temp, from.Set.ThermoTemp), "##0.0");
}
std::string TempUnit(const ListingSource& from) {
  return '(' + std::string(Word(from.Set.ThermoTemp)) + ')';
}
std::string SpeedShown(double knots, const ListingSource& from) {
  return Mask(ShownIn(knots, from.Set.Speed), "##0");
}
std::string_view SpeedUnit(const ListingSource& from) {
  return from.Set.Speed == SpeedUnits::MetersPerSecond ? "m/s)" : "kts)";
}
double GroundOf(const ListingSource& from) {
  return from.Results.Levels.Count() > 0 ? from.Results.Levels.Height(1) : 0;
}
bool ShowsFeet(const ListingSource& from) {
  return from.Set.GpmUnits == LengthUnits::Feet;
}
std::string HeightShown(double height, const ListingSource& from) {
  const bool isAgl = from.Set.Heights == HeightMode::Agl;
  const double shown = isAgl ? height - GroundOf(from) : height;
  return Mask(ShownIn(shown, from.Set.GpmUnits), "#####0");
}

// "240/ 25" at a height; "--" outside the winds.
std::string WindShown(const analysis::Wind& wind, const ListingSource& from) {
  return PadLeft(analysis::DirectionText(wind.Dir), 3) + "/" +
         PadLeft(SpeedShown(wind.Spd, from), 3);
}
std::string WindShown(double height, const ListingSource& from) {
  const analysis::WindSample wind = analysis::WindAtHeight(from.Sounding, height);
  return wind.Ok() ? WindShown(wind.Value, from) : std::string(kNoValue);
}

std::string ClassWord(const std::vector<AirLayer>& layers, double height) {
  const Intensity grade = analysis::ClassAt(layers, height);
  return grade == Intensity::None ? std::string(kNoValue) : std::string(Text(grade));
}

std::string IcingWord(const ListingSource& from, double height) {
  for (const AirLayer& layer : from.Results.Layers.Icing) {
    if (height >= layer.Base.Height && height <= layer.Top.Height) {
      return std::string(Trim(layer.Word));
    }
  }
  return std::string(kNoValue);
}

// The class of the predominant wave's up- and downdraughts at a height in m above the station.
std::string WaveWordAt(const mountainwave::WaveResults& waves, double height) {
  const analysis::Intensity grade = mountainwave::TurbulenceAt(waves, height).Class;
  return grade == Intensity::None ? std::string(kNoValue) : std::string(Text(grade));
}

// The strongest wave of an interface; null where the level is none.
const mountainwave::Wave* WaveAtLevel(const mountainwave::WaveResults& waves, double press) {
  for (const mountainwave::Wave* wave : waves.All()) {
    if (wave->At.Press == press) return wave;
  }
  return nullptr;
}
std::string WaveLengthShown(const mountainwave::Wave* wave) {
  if (wave == nullptr) return std::string(kNoValue);
  return Mask(wave->Of.LengthKm * mountainwave::kNauticalMilesPerKm, "###0.0");
}
std::string WaveVelocityShown(const mountainwave::Wave* wave) {
  if (wave == nullptr) return std::string(kNoValue);
  return Mask(wave->MaxVelocity / mountainwave::kMsPerFpm, "###0");
}
std::string WaveMostShown(const mountainwave::Wave* wave) {
  const Intensity grade =
      wave == nullptr ? Intensity::None : analysis::WaveTurbulence(wave->MaxVelocity).Class;
  return grade == Intensity::None ? std::string(kNoValue) : std::string(Text(grade));
}

std::string HeightNote(const ListingSource& from) {
  return std::string("Heights in ") + (ShowsFeet(from) ? "feet" : "meters") + " [" +
         std::string(Word(from.Set.Heights)) + "]";
}

// Whatever a quantity is at a height, by the pressure there.
double At(const LevelProfile& levels, double height, analysis::Quantity quantity) {
  const double press = analysis::GetPRESS(levels, height);
  if (press == kNotReached) return kMissing;
  const analysis::Sample sample = analysis::SampleAt(levels, press, quantity);
  return sample.Ok() ? sample.Value : kMissing;
}

void PutDataTable(const ListingSource& from, ListingLines& lines) {
  const SoundingRecord& sounding = from.Sounding;
  lines.push_back(" Pressure Levels                     Wind Levels");
  lines.push_back(TempTableHead(from.Set.ThermoTemp) + "     " +
                  WindTableHead(from.Set.GpmUnits, from.Set.Heights, from.Set.Speed));
  const int count = std::max(sounding.NumTempLevels(), sounding.NumWindLevels());
  for (int i = 1; i <= count; ++i) {
    ListingLine line;
    if (i <= sounding.NumTempLevels()) {
      const double temp = sounding.Temp(i);
      const double dewpt = sounding.Dewpt(i);
      line.EndAt(6, Mask(sounding.Press(i), "###0.0"));
      line.EndAt(14, TempShown(temp, from)).EndAt(22, TempShown(dewpt, from));
      line.EndAt(
          31, NotAvailable(dewpt) || NotAvailable(temp)
                  ? std::string(kNoValue)
                  : Mask(ShownIn(temp, from.Set.ThermoTemp) - ShownIn(dewpt, from.Set.ThermoTemp),
                         "##0.0"));
    }
    if (i <= sounding.NumWindLevels()) {
      line.EndAt(42, HeightShown(sounding.WindHgt(i), from));
      const bool hasWind = sounding.HasWind(i);
      line.EndAt(55, hasWind ? Mask(sounding.WindDir(i), "##0") : std::string(kNoValue));
      line.EndAt(61, hasWind ? SpeedShown(sounding.WindSpd(i), from) : std::string(kNoValue));
    }
    lines.push_back(line.Take());
  }
}

/// A column of the derived values.
struct DerivedColumn {
  std::string_view Name;
  std::string_view Unit;
  int End;
  std::string_view Mask;
  double (*Value)(const analysis::AnalysisResults& results, int level);
};

constexpr DerivedColumn kDerived[] = {
    {"PR", "(mb)", 6, "###0.0", [](const auto& r, int i) { return r.Levels.Press(i); }},
    {"PT", "(K)", 14, "##0.0", [](const auto& r, int i) { return r.Levels.Theta(i); }},
    {"ePT", "(K)", 21, "##0.0", [](const auto& r, int i) { return r.Levels.ThetaE(i); }},
    {"RH", "(%)", 26, "##0", [](const auto& r, int i) { return r.Levels.RelHumidity(i); }},
    {"MixR", "(g/Kg)", 34, "#0.00",
     [](const auto& r, int i) {
       const double ratio = r.Levels.MixingRatio(i);
       return NotAvailable(ratio) ? kMissing : ratio * 1000;
     }},
    {"Water", "(mm)", 41, "##0.0",
     [](const auto& r, int i) { return r.Layers.Listing.WaterBelow(i); }},
    {"Den", "(Kg/m3)", 50, "0.000",
     [](const auto& r, int i) { return r.Layers.Listing.Density(i); }},
    {"VirT", "(C)", 57, "##0.0", [](const auto& r, int i) { return r.Levels.VirtualTemp(i); }},
    {"WetBulb", "(C)", 65, "##0.0", [](const auto& r, int i) { return r.Levels.WetBulb(i); }},
    {"D-Value", "(m)", 74, "####0",
     [](const auto& r, int i) { return r.Layers.Listing.DValue(i); }},
    {"REFN", "(N)", 81, "##0.0",
     [](const auto& r, int i) { return r.Layers.Listing.Refractivity(i); }},
    {"M", "(M)", 89, "###0.0", [](const auto& r, int i) { return r.Layers.Listing.Modified(i); }},
    {"REFK", "(K)", 96, "##0.0",
     [](const auto& r, int i) { return r.Layers.Listing.Potential(i); }},
};

void PutDerived(const ListingSource& from, ListingLines& lines) {
  ListingLine names;
  ListingLine units;
  for (const DerivedColumn& column : kDerived) {
    names.EndAt(column.End, column.Name);
    units.EndAt(column.End, column.Unit);
  }
  lines.push_back(names.Take());
  lines.push_back(units.Take());
  for (int i = 1; i <= from.Results.Levels.Count(); ++i) {
    ListingLine line;
    for (const DerivedColumn& column : kDerived) {
      line.EndAt(column.End, Shown(column.Value(from.Results, i), column.Mask));
    }
    lines.push_back(line.Take());
  }
}

}  // namespace

ListingLines SummaryListing(const ListingSource& from) {
  ListingLines lines;
  lines.push_back(HeightNote(from));
  lines.push_back(
      "Height   Pres     T     Td   RH   DD/FF"
      "    CAT   LLWS   Icing - Type"
      "     WAVE/X---W---turb--");
  const std::string temp = TempUnit(from);
  ListingLine units;
  units.BeginAt(
      1, "Level   (mb)    " + temp + "   " + temp + "  (%) (deg/" + std::string(SpeedUnit(from)));
  units.BeginAt(74, "       nm  fpm   max");
  lines.push_back(units.Take());
  const LevelProfile& levels = from.Results.Levels;
  const analysis::LayerResults& layers = from.Results.Layers;
  const mountainwave::WaveResults waves = mountainwave::ComputeWaves(
      from.Sounding, levels,
      from.Mountains ? *from.Mountains : mountainwave::MountainsOf(from.Sounding));
  const std::vector<int> winds = WindsOfLevels(from.Sounding, from.Results);
  for (int i = 1; i <= levels.Count(); ++i) {
    const double height = levels.Height(i);
    // A wind that was observed at the level is shown as it was.
    const int own = winds[static_cast<std::size_t>(i)];
    const std::string wind =
        own == 0 ? WindShown(height, from)
                 : WindShown({from.Sounding.WindDir(own), from.Sounding.WindSpd(own)}, from);
    ListingLine line;
    line.EndAt(6, HeightShown(height, from)).EndAt(13, Mask(levels.Press(i), "###0.0"));
    line.EndAt(20, TempShown(levels.Temp(i), from)).EndAt(26, TempShown(levels.Dewpt(i), from));
    line.EndAt(31, Shown(levels.RelHumidity(i), "##0")).EndAt(40, wind);
    line.EndAt(46, ClassWord(layers.Turbulence, height));
    line.EndAt(52, ClassWord(layers.LowShear, height));
    line.BeginAt(57, IcingWord(from, height));
    line.BeginAt(74, WaveWordAt(waves, height - GroundOf(from)));
    const mountainwave::Wave* wave = WaveAtLevel(waves, levels.Press(i));
    line.EndAt(82, WaveLengthShown(wave)).EndAt(87, WaveVelocityShown(wave));
    line.EndAt(93, WaveMostShown(wave));
    lines.push_back(line.Take());
  }
  return lines;
}

ListingLines IntervalListing(const ListingSource& from) {
  constexpr double kStep = 500;        // m
  constexpr double kHighest = 100000;  // m; no sounding reaches there
  ListingLines lines;
  lines.push_back("        Meters  Meters     T     Td    Pres    DD/FF      Feet    Feet");
  const std::string temp = TempUnit(from);
  lines.push_back("Level   (AGL)   (MSL)    " + temp + "   " + temp + "    (mb)  (deg/" +
                  std::string(SpeedUnit(from)) + "   (AGL)   (MSL)");
  const LevelProfile& levels = from.Results.Levels;
  if (levels.Count() == 0) return lines;
  const double ground = GroundOf(from);
  const auto put = [&](int number, double height) {
    const double press = analysis::GetPRESS(levels, height);
    ListingLine line;
    line.EndAt(5, Shortest(number));
    line.EndAt(13, Mask(height - ground, "#####0")).EndAt(21, Mask(height, "#####0"));
    line.EndAt(29, TempShown(At(levels, height, analysis::Quantity::Temp), from));
    line.EndAt(36, TempShown(At(levels, height, analysis::Quantity::Dewpt), from));
    line.EndAt(43, press == kNotReached ? std::string(kNoValue) : Mask(press, "###0.0"));
    line.EndAt(52, WindShown(height, from));
    line.EndAt(62, Mask(FeetFromMeters(height - ground), "#####0"));
    line.EndAt(70, Mask(FeetFromMeters(height), "#####0"));
    lines.push_back(line.Take());
  };
  const double top = std::min(levels.Height.Top(), kHighest);
  for (int number = 0; ground + kStep * number <= top; ++number) {
    put(number + 1, ground + kStep * number);
  }
  return lines;
}

ListingLines CompleteListing(const ListingSource& from) {
  ListingLines lines;
  PutDataTable(from, lines);
  lines.emplace_back(kNewPage);
  PutDerived(from, lines);
  return lines;
}

ListingLines CapeListing(const ListingSource& from) {
  constexpr int kLeastInterval = 25;  // hPa
  ListingLines lines;
  lines.push_back("        Pres    CAPE    CAPE   Meters   Meters     Feet     Feet");
  lines.push_back("Level   (mb)  (layer) (total)   (AGL)    (MSL)    (AGL)    (MSL)");
  const analysis::ParcelAscent& ascent = from.Results.Chosen();
  if (const std::string_view none = analysis::CapeMarker(ascent); !none.empty()) {
    lines.emplace_back(none);
  }
  if (!ascent.FreeLevel.Exists() || !ascent.Equilibrium.Exists()) return lines;
  const LevelProfile& levels = from.Results.Levels;
  const double ground = GroundOf(from);
  const int interval = std::max(from.Set.CapeInterval, kLeastInterval);
  double layer = 0;
  double total = 0;
  int number = 0;
  const auto put = [&](double press) {
    const analysis::Sample height = analysis::SampleAt(levels, press, analysis::Quantity::Height);
    const double meters = height.Ok() ? height.Value : kNone;
    const bool has = HasHeight(meters);
    ListingLine line;
    line.EndAt(5, Shortest(++number)).EndAt(13, Mask(press, "###0.0"));
    line.EndAt(21, Mask(layer, "####0")).EndAt(29, Mask(total, "####0"));
    line.EndAt(37, ShownHeight(has ? meters - ground : kNone)).EndAt(46, ShownHeight(meters));
    line.EndAt(55, ShownHeight(has ? FeetFromMeters(meters - ground) : kNone));
    line.EndAt(64, ShownHeight(has ? FeetFromMeters(meters) : kNone));
    lines.push_back(line.Take());
    layer = 0;
  };
  // Layers end at multiples of the interval; the last one where the parcel's energy ends.
  const auto boundaryBelow = [interval](double press) {
    return static_cast<int>(std::ceil(press / interval) - 1) * interval;
  };
  int boundary = boundaryBelow(ascent.FreeLevel.Press);
  for (std::size_t i = 1; i < ascent.Increments.size(); ++i) {
    const int press = ascent.FirstPress - static_cast<int>(i) * ascent.Step;
    if (press >= ascent.FreeLevel.Press) continue;
    const double energy = std::max(0.0F, ascent.Increments[i]);
    layer += energy;
    total += energy;
    if (press > boundary && i + 1 < ascent.Increments.size()) continue;
    put(press);
    boundary = boundaryBelow(press);
  }
  if (ascent.IsCut) lines.push_back("The sounding ends while the parcel is still warmer.");
  return lines;
}

}  // namespace vexa::output
