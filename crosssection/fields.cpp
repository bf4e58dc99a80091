#include "crosssection/fields.h"

#include <algorithm>
#include <cctype>
#include <cmath>

#include "analysis/layer_results.h"
#include "analysis/working_wind.h"
#include "core/markers.h"
#include "core/numbers.h"
#include "core/units.h"

namespace vexa::crosssection {
namespace {

using analysis::Intensity;

constexpr double kMmPerInch = 25.4;

// The values of the temperature levels, one by one.
template <class Value>
ProfileOf OfLevels(const Column& column, Value value) {
  ProfileOf profile;
  const analysis::LevelProfile& levels = column.Levels;
  for (int i = 1; i <= levels.Count(); ++i) {
    if (!(levels.Press(i) > 0)) continue;
    profile.push_back({levels.Height(i), levels.Press(i), value(i)});
  }
  return profile;
}

template <Levels<double> analysis::LevelProfile::*kArray>
ProfileOf OfArray(const Column& column, const FieldContext&) {
  return OfLevels(column, [&](int i) {
    const double value = (column.Levels.*kArray)(i);
    // An equivalent potential temperature of 0 is none.
    return NotAvailable(value) || (kArray == &analysis::LevelProfile::ThetaE && value == 0)
               ? kMissing
               : value;
  });
}

template <Levels<double> analysis::LevelListing::*kArray>
ProfileOf OfListing(const Column& column, const FieldContext&) {
  const Levels<double>& array = column.Layers.Listing.*kArray;
  return OfLevels(column, [&](int i) { return i <= array.Count() ? array(i) : kMissing; });
}

double ShownTemp(double celsius, TempUnits units) {
  switch (units) {
    case TempUnits::Celsius:
      return celsius;
    case TempUnits::Fahrenheit:
      return FahrenheitFromCelsius(celsius);
    case TempUnits::Kelvin:
      return celsius + kKelvinOffset;
  }
  return celsius;
}

template <Levels<double> analysis::LevelProfile::*kArray>
ProfileOf OfTemps(const Column& column, const FieldContext& context) {
  ProfileOf profile = OfArray<kArray>(column, context);
  for (ProfilePoint& point : profile) {
    if (!IsMissing(point.Value)) point.Value = ShownTemp(point.Value, context.Temp);
  }
  return profile;
}

ProfileOf Depression(const Column& column, const FieldContext& context) {
  return OfLevels(column, [&](int i) {
    const double dewpt = column.Levels.Dewpt(i);
    if (NotAvailable(dewpt)) return kMissing;
    const double depression = column.Levels.Temp(i) - dewpt;
    return context.Temp == TempUnits::Fahrenheit ? depression * 9 / 5 : depression;
  });
}

ProfileOf Humidity(const Column& column, const FieldContext& context) {
  return OfArray<&analysis::LevelProfile::RelHumidity>(column, context);
}

ProfileOf MixingRatio(const Column& column, const FieldContext& context) {
  ProfileOf profile = OfArray<&analysis::LevelProfile::MixingRatio>(column, context);
  for (ProfilePoint& point : profile) {
    if (!IsMissing(point.Value)) point.Value *= 1000;
  }
  return profile;
}

// The water above each level up to the highest with a dew point.
ProfileOf Precipitable(const Column& column, const FieldContext& context) {
  const Levels<double>& below = column.Layers.Listing.WaterBelow;
  double all = kMissing;
  for (const double water : below.Values()) all = IsMissing(water) ? all : water;
  return OfLevels(column, [&](int i) {
    if (i > below.Count() || IsMissing(below(i))) return kMissing;
    return (all - below(i)) / (context.Water == SizeUnits::Inches ? kMmPerInch : 10);
  });
}

ProfileOf LiquidWater(const Column& column, const FieldContext&) {
  return column.Water;
}

// Of a wind in knots that comes from a direction, by its components from the west and the south.
template <class Value>
ProfileOf OfWinds(const Column& column, const FieldContext& context, Value value) {
  ProfileOf profile;
  const SoundingRecord& sounding = column.Sounding;
  for (int i = 1; i <= sounding.NumWindLevels(); ++i) {
    if (!sounding.HasWind(i)) continue;
    const double press = analysis::GetPRESS(column.Levels, sounding.WindHgt(i));
    if (!HasHeight(press)) continue;
    const analysis::Wind wind = analysis::WorkingWind(sounding, i);
    const double knots = value(wind.Dir, wind.Spd);
    profile.push_back({sounding.WindHgt(i), press,
                       context.Speed == SpeedUnits::Knots ? knots : knots * kKnotToMs});
  }
  return profile;
}

ProfileOf WindSpeed(const Column& column, const FieldContext& context) {
  return OfWinds(column, context, [](double, double speed) { return speed; });
}
ProfileOf CrossWind(const Column& column, const FieldContext& context) {
  return OfWinds(column, context, [&](double direction, double speed) {
    return -speed * std::sin(Radians(direction - context.Bearing));
  });
}
ProfileOf WindU(const Column& column, const FieldContext& context) {
  return OfWinds(column, context, [](double direction, double speed) {
    return -speed * std::sin(Radians(direction));
  });
}
ProfileOf WindV(const Column& column, const FieldContext& context) {
  return OfWinds(column, context, [](double direction, double speed) {
    return -speed * std::cos(Radians(direction));
  });
}

std::string_view BoxWord(Intensity intensity) {
  constexpr std::string_view kWords[] = {"",      " TRC ", " LGT ", " L-M ", " MDT ",
                                         " M-S ", " SVR ", " S-X ", " XTR "};
  return kWords[static_cast<std::size_t>(intensity)];
}

ClassLayer LayerOf(const analysis::AirLayer& layer) {
  constexpr std::string_view kStrong = " STR ";
  return {layer.Base, layer.Top, static_cast<int>(layer.Class),
          layer.Word == "STR" ? kStrong : BoxWord(layer.Class)};
}

std::vector<ClassLayer> LayersOf(const std::vector<analysis::AirLayer>& found) {
  std::vector<ClassLayer> layers;
  for (const analysis::AirLayer& layer : found) {
    if (layer.Class != Intensity::None) layers.push_back(LayerOf(layer));
  }
  return layers;
}

template <std::vector<analysis::AirLayer> analysis::LayerResults::*kLayers>
std::vector<ClassLayer> OfLayers(const Column& column) {
  return LayersOf(column.Layers.*kLayers);
}

std::vector<ClassLayer> WaveLayers(const Column& column) {
  return LayersOf(column.Waves);
}

// Layers that are there or not.
std::vector<ClassLayer> Contrails(const Column& column) {
  std::vector<ClassLayer> layers;
  for (const analysis::AirLayer& layer : column.Layers.Contrails) {
    layers.push_back({layer.Base, layer.Top, 1, " CP "});
  }
  return layers;
}

std::vector<ClassLayer> Ducts(const Column& column) {
  std::vector<ClassLayer> layers;
  for (const analysis::Duct& duct : column.Layers.Ducts) {
    layers.push_back({duct.Base, duct.Top, 1, " DL "});
  }
  return layers;
}

std::vector<ClassLayer> CloudLayers(const Column& column) {
  std::vector<ClassLayer> layers;
  for (const analysis::CloudDeck& deck : column.Layers.Clouds) {
    layers.push_back({deck.Base, deck.Top, static_cast<int>(deck.Amount), Text(deck.Amount)});
  }
  return layers;
}

using analysis::LayerResults;
using analysis::LevelListing;
using analysis::LevelProfile;

constexpr auto kCategory = FieldKind::Category;
constexpr auto kSigned = FieldColors::Signed;

constexpr FieldRow kFields[] = {
    {.Code = "TMP",
     .Button = "Temp",
     .Short = "Temp",
     .Title = "Temperature (",
     .Unit = FieldUnit::Temperature,
     .Interval = 5,
     .Mask = "###0.#",
     .Colors = kSigned,
     .Profile = OfTemps<&LevelProfile::Temp>},
    {.Code = "PT",
     .Button = "Pot Temp",
     .Short = "Pot Temp",
     .Title = "Potential Temperature (",
     .UnitText = "K",
     .Interval = 5,
     .Profile = OfArray<&LevelProfile::Theta>},
    {.Code = "EPT",
     .Button = "Eq Pot Temp",
     .Short = "ePT",
     .Title = "Equivalent Potential Temperature (",
     .Needs = FieldNeeds::Dewpoints,
     .UnitText = "K",
     .Interval = 5,
     .Profile = OfArray<&LevelProfile::ThetaE>},
    {.Code = "WET",
     .Button = "WetBulb Temp",
     .Short = "Twet",
     .Title = "Wet-Bulb Temperature (",
     .Needs = FieldNeeds::Dewpoints,
     .Unit = FieldUnit::Temperature,
     .Interval = 5,
     .Mask = "###0.#",
     .Colors = kSigned,
     .IsMoisture = true,
     .Profile = OfTemps<&LevelProfile::WetBulb>},
    {.Code = "DPD",
     .Button = "Dew-point Dep",
     .Short = "Dew-point Dep",
     .Title = "Dewpoint Depression (",
     .Needs = FieldNeeds::Dewpoints,
     .Unit = FieldUnit::Difference,
     .Interval = 5,
     .Mask = "###0.#",
     .IsMoisture = true,
     .Profile = Depression},
    {.Code = "RH",
     .Button = "Rel Humidity",
     .Short = "Rel Humidity",
     .Title = "Relative Humidity (%)  ",
     .Needs = FieldNeeds::Dewpoints,
     .Interval = 10,
     .IsMoisture = true,
     .Profile = Humidity},
    {.Code = "CLDS",
     .Button = "Clouds",
     .Short = "Clouds",
     .Title = "Cloud Layers  ",
     .Kind = kCategory,
     .Needs = FieldNeeds::Dewpoints,
     .Layers = CloudLayers},
    {.Code = "MIX",
     .Button = "Mixing Ratio",
     .Short = "MR",
     .Title = "Mixing Ratio (g/Kg)  ",
     .Needs = FieldNeeds::Dewpoints,
     .Interval = 1,
     .Mask = "##0.#",
     .IsMoisture = true,
     .Profile = MixingRatio},
    {.Code = "PW",
     .Button = "Precip. Water",
     .Short = "Precip. Water",
     .Title = "Precipitable Water (",
     .Needs = FieldNeeds::Dewpoints,
     .Unit = FieldUnit::Water,
     .Interval = 0.25,
     .Mask = "#0.0#",
     .IsMoisture = true,
     .Profile = Precipitable},
    {.Code = "LWC",
     .Button = "Liquid Water Content",
     .Short = "Liquid Water Content",
     .Title = "Liquid Water Content (",
     .Needs = FieldNeeds::Dewpoints,
     .UnitText = "g/m³",
     .Interval = 0.1,
     .Mask = "#0.0#",
     .IsMoisture = true,
     .Profile = LiquidWater},
    {.Code = "REFN",
     .Button = "Refr/N-units",
     .Short = "Refr/N-units",
     .Title = "Refractivity N-units  ",
     .Needs = FieldNeeds::Dewpoints,
     .Interval = 20,
     .Profile = OfListing<&LevelListing::Refractivity>},
    {.Code = "REFK",
     .Button = "Refr/K-units",
     .Short = "Refr/K-units",
     .Title = "Refractivity K-units  ",
     .Needs = FieldNeeds::Dewpoints,
     .Interval = 10,
     .Profile = OfListing<&LevelListing::Potential>},
    {.Code = "DEN",
     .Button = "Density",
     .Short = "Density",
     .Title = "Density (",
     .UnitText = "kg/m³",
     .Interval = 0.1,
     .Mask = "0.0#",
     .Profile = OfListing<&LevelListing::Density>},
    {.Code = "DVAL",
     .Button = "D-Value",
     .Short = "D-Value",
     .Title = "D-Value (meters)  ",
     .Interval = 50,
     .Colors = kSigned,
     .Profile = OfListing<&LevelListing::DValue>},
    {.Code = "WND",
     .Button = "Wind",
     .Short = "Wind",
     .Title = "Wind Speed (",
     .Needs = FieldNeeds::Winds,
     .Unit = FieldUnit::Speed,
     .Interval = 10,
     .Profile = WindSpeed},
    {.Code = "XWND",
     .Button = "Cross-Wind",
     .Short = "X-Wind",
     .Title = "Cross-Wind (",
     .Needs = FieldNeeds::Winds,
     .Unit = FieldUnit::Speed,
     .Interval = 10,
     .Colors = kSigned,
     .Profile = CrossWind},
    {.Code = "UWND",
     .Button = "U-Wind",
     .Short = "U-Wind",
     .Title = "U-Component Wind (",
     .Needs = FieldNeeds::Winds,
     .Unit = FieldUnit::Speed,
     .Interval = 10,
     .Colors = kSigned,
     .Profile = WindU},
    {.Code = "VWND",
     .Button = "V-Wind",
     .Short = "V-Wind",
     .Title = "V-Component Wind (",
     .Needs = FieldNeeds::Winds,
     .Unit = FieldUnit::Speed,
     .Interval = 10,
     .Colors = kSigned,
     .Profile = WindV},
    {.Code = "CAT",
     .Button = "CAT",
     .Short = "CAT",
     .Title = "Turbulence (CAT)  ",
     .Kind = kCategory,
     .Needs = FieldNeeds::Winds,
     .Layers = OfLayers<&LayerResults::Turbulence>},
    {.Code = "HiCAT",
     .Button = "Hi-CAT",
     .Short = "Hi-CAT",
     .Title = "High Level Turbulence (Hi-CAT)  ",
     .Kind = kCategory,
     .Needs = FieldNeeds::Winds,
     .Layers = OfLayers<&LayerResults::HighTurbulence>},
    {.Code = "WAVE",
     .Button = "Wave",
     .Short = "Wave",
     .Title = "Wave Turbulence  ",
     .Kind = kCategory,
     .Needs = FieldNeeds::Winds,
     .Layers = WaveLayers},
    {.Code = "LLWS",
     .Button = "LLWS",
     .Short = "LLWS",
     .Title = "Low-Level Wind Shear (LLWS)  ",
     .Kind = kCategory,
     .Needs = FieldNeeds::Winds,
     .Layers = OfLayers<&LayerResults::LowShear>},
    {.Code = "ICE",
     .Button = "ICE",
     .Short = "ICE",
     .Title = "Icing (structural)  ",
     .Kind = kCategory,
     .Needs = FieldNeeds::Dewpoints,
     .Layers = OfLayers<&LayerResults::Icing>},
    {.Code = "CBI",
     .Button = "Carb Icing",
     .Short = "Carb. Ice",
     .Title = "Carburetor Icing (induction)  ",
     .Kind = kCategory,
     .Needs = FieldNeeds::Dewpoints,
     .Layers = OfLayers<&LayerResults::CarbIcing>},
    {.Code = "LIGHT",
     .Button = "Lightning",
     .Short = "Bolt",
     .Title = "Lightning potential (LP)  ",
     .Kind = kCategory,
     .Needs = FieldNeeds::Dewpoints,
     .Layers = OfLayers<&LayerResults::Lightning>},
    {.Code = "TRAIL",
     .Button = "Contrails",
     .Short = "Contrails",
     .Title = "Contrail potential (CP)  ",
     .Kind = kCategory,
     .Layers = Contrails},
    {.Code = "DUCT",
     .Button = "Ducting",
     .Short = "Duct",
     .Title = "Ducting (trapping) layer (DL)  ",
     .Kind = kCategory,
     .Needs = FieldNeeds::Dewpoints,
     .Layers = Ducts},
};

}  // namespace

FieldContext ContextOf(const Section& section, const SectionOptions& options) {
  return {options.Temp, options.Speed, options.Water,
          options.CrossDirection.value_or(section.Bearing())};
}

std::span<const FieldRow> Fields() {
  return kFields;
}

const FieldRow* FindField(std::string_view code) {
  const auto same = [code](const FieldRow& row) {
    return std::ranges::equal(row.Code, code, [](unsigned char a, unsigned char b) {
      return std::tolower(a) == std::tolower(b);
    });
  };
  const auto found = std::ranges::find_if(kFields, same);
  return found == std::end(kFields) ? nullptr : &*found;
}

std::string UnitOf(const FieldRow& field, const FieldContext& context) {
  switch (field.Unit) {
    case FieldUnit::Fixed:
      return std::string(field.UnitText);
    case FieldUnit::Temperature:
    case FieldUnit::Difference:
      return std::string(Word(context.Temp));
    case FieldUnit::Speed:
      return context.Speed == SpeedUnits::Knots ? "knots" : "m/s";
    case FieldUnit::Water:
      return std::string(Word(context.Water));
  }
  return {};
}

std::string TitleOf(const FieldRow& field, const FieldContext& context) {
  std::string title(field.Title);
  if (!title.ends_with('(')) return title;
  title += UnitOf(field, context) + ")";
  if (field.Code == "TMP") return title + " ";
  if (field.Code == "XWND") title += " {wrt " + Mask(Wrap360(context.Bearing), "000") + "}";
  return title + "  ";
}

double UsualInterval(const FieldRow& field, const FieldContext& context) {
  if (field.Unit == FieldUnit::Speed && context.Speed != SpeedUnits::Knots) return 5;
  if (field.Unit == FieldUnit::Water && context.Water == SizeUnits::Inches) return 0.1;
  const bool isTemp = field.Unit == FieldUnit::Temperature || field.Unit == FieldUnit::Difference;
  if (isTemp && context.Temp == TempUnits::Fahrenheit) return 2 * field.Interval;
  return field.Interval;
}

double FreezingIn(TempUnits units) {
  return ShownTemp(0, units);
}

}  // namespace vexa::crosssection
