#include "report/sounding_json.h"

#include <optional>
#include <string_view>

#include "analysis/index_table.h"
#include "analysis/interpolate.h"
#include "core/markers.h"
#include "core/numbers.h"
#include "report/values.h"

namespace vexa::report {
namespace {

using analysis::AnalysisResults;
using analysis::LevelPoint;
using analysis::ParcelAscent;

using Numbers = std::vector<std::optional<double>>;

Numbers Values(const Levels<double>& levels, int decimals) {
  Numbers values;
  for (const double value : levels.Values()) {
    values.push_back(IsMissing(value) ? std::nullopt : std::optional(Rounded(value, decimals)));
  }
  return values;
}

Numbers Observed(const Levels<double>& levels) {
  Numbers values;
  for (const double value : levels.Values()) {
    values.push_back(NotAvailable(value) ? std::nullopt : std::optional(value));
  }
  return values;
}

// 999.9 hPa and 999.9 m are pressures and heights like any other.
Numbers Every(const Levels<double>& levels) {
  return {levels.Values().begin(), levels.Values().end()};
}

Numbers Heights(const Levels<double>& levels) {
  Numbers values;
  for (const double value : levels.Values()) values.push_back(Height(value));
  return values;
}

void WritePoint(JsonWriter& json, std::string_view key, const LevelPoint& level) {
  json.Key(key);
  if (!level.Exists()) {
    json.Null();
    return;
  }
  json.BeginObject();
  json.Key("pressure").Number(Pressure(level.Press));
  json.Key("height").Number(Height(level.Height));
  json.Key("temperature").Number(Value(level.Temp, kTempDecimals));
  json.EndObject();
}

void WritePoints(JsonWriter& json, std::string_view key, const std::vector<LevelPoint>& levels) {
  json.Key(key).BeginArray();
  for (const LevelPoint& level : levels) {
    json.BeginObject();
    json.Key("pressure").Number(Pressure(level.Press));
    json.Key("height").Number(Height(level.Height));
    json.Key("temperature").Number(Value(level.Temp, kTempDecimals));
    json.EndObject();
  }
  json.EndArray();
}

void WriteParcel(JsonWriter& json, const ParcelAscent& ascent) {
  json.BeginObject();
  json.Key("start");
  if (ascent.Start.Exists()) {
    json.BeginObject();
    json.Key("pressure").Number(Pressure(ascent.Start.Press));
    json.Key("temperature").Number(Value(ascent.Start.Temp, kTempDecimals));
    json.Key("dew point").Number(Value(ascent.Start.Dewpt, kTempDecimals));
    json.EndObject();
  } else {
    json.Null();
  }
  WritePoint(json, "LCL", ascent.Condensation);
  WritePoint(json, "LFC", ascent.FreeLevel);
  WritePoint(json, "EL", ascent.Equilibrium);
  WritePoint(json, "MPL", ascent.MaximumParcel);
  json.Key("CAPE").Number(Energy(ascent, ascent.CapeTotal));
  json.Key("CIN").Number(Energy(ascent, ascent.CinTotal));
  json.Key("CAPE 0-x").Number(Energy(ascent, ascent.CapeDepth));
  json.Key("CAPE+ only").Number(Energy(ascent, ascent.CapePlusOnly));
  json.Key("CAPE..Hail").Number(Energy(ascent, ascent.CapeHail));
  json.Key("cut").Bool(ascent.IsCut);
  json.EndObject();
}

void WriteWind(JsonWriter& json, std::string_view key,
               const std::optional<analysis::WindVector>& vector) {
  json.Key(key);
  if (!vector) {
    json.Null();
    return;
  }
  const analysis::Wind wind = analysis::FromComponents(*vector);
  json.BeginObject();
  json.Key("direction").Number(Rounded(wind.Dir, 1));
  json.Key("speed").Number(Rounded(wind.Spd, 1));
  json.EndObject();
}

void WriteMover(JsonWriter& json, std::string_view key,
                const std::optional<analysis::Mover>& mover) {
  json.Key(key);
  if (!mover) {
    json.Null();
    return;
  }
  const analysis::Wind wind = analysis::FromComponents(mover->Motion);
  json.BeginObject();
  json.Key("direction").Number(Rounded(wind.Dir, 1));
  json.Key("speed").Number(Rounded(wind.Spd, 1));
  for (std::size_t i = 0; i < analysis::kHelicityDepthsKm.size(); ++i) {
    json.Key("helicity 0-" + Shortest(analysis::kHelicityDepthsKm[i]) + " km")
        .Number(Value(mover->Helicity[i], kEnergyDecimals));
  }
  json.EndObject();
}

void WriteStormMotion(JsonWriter& json, const analysis::StormMotionResults& storm,
                      const Options& options) {
  json.Key("storm motion").BeginObject();
  json.Key("method").Text(Word(options.Motion));
  WriteWind(json, "mean wind 0-6 km", storm.Mean6km);
  WriteWind(json, "mean wind 0-0.5 km", storm.MeanHalfKm);
  WriteWind(json, "shear 0-6 km", storm.Shear6km);
  json.Key("BRN shear").Number(Value(storm.BrnShear, kEnergyDecimals));
  WriteMover(json, "right mover", storm.Right);
  WriteMover(json, "left mover", storm.Left);
  json.Key("cyclonic").Text(storm.RightIsCyclonic ? "right mover" : "left mover");
  json.Key("chosen").Text(storm.ChosenName());
  json.EndObject();
}

// Opens an object with the base and top of a layer; the caller adds what else it has and closes it.
void BeginLayer(JsonWriter& json, const LevelPoint& base, const LevelPoint& top) {
  json.BeginObject();
  WritePoint(json, "base", base);
  WritePoint(json, "top", top);
}

void WriteAirLayers(JsonWriter& json, std::string_view key,
                    const std::vector<analysis::AirLayer>& layers, std::string_view valueName,
                    int decimals) {
  json.Key(key).BeginArray();
  for (const analysis::AirLayer& layer : layers) {
    BeginLayer(json, layer.Base, layer.Top);
    json.Key("class").Text(Trim(layer.Word));
    if (!valueName.empty()) json.Key(valueName).Number(Value(layer.Value, decimals));
    json.EndObject();
  }
  json.EndArray();
}

void WriteMixedLayer(JsonWriter& json, const std::optional<analysis::MixedLayer>& mixed) {
  json.Key("mixed layer");
  if (!mixed) {
    json.Null();
    return;
  }
  json.BeginObject();
  WritePoint(json, "top", mixed->Top);
  json.Key("depth").Number(Height(mixed->Depth));
  json.Key("theta").Number(Value(mixed->Theta, kTempDecimals));
  json.Key("mixing ratio")
      .Number(NotAvailable(mixed->MixingRatio) ? std::nullopt
                                               : Value(mixed->MixingRatio * 1000, 3));
  WriteWind(json, "mean wind", mixed->Mean);
  json.EndObject();
}

void WriteLayers(JsonWriter& json, const AnalysisResults& results, const Options& options) {
  const analysis::LayerResults& layers = results.Layers;
  json.Key("layers").BeginObject();
  json.Key("inversions").BeginArray();
  for (const analysis::Inversion& inversion : results.Inversions) {
    BeginLayer(json, inversion.Base, inversion.Top);
    json.Key("kind").Text(Text(inversion.Kind));
    json.EndObject();
  }
  json.EndArray();
  WriteMixedLayer(json, layers.Mixed);
  json.Key("clouds").BeginArray();
  for (const analysis::CloudDeck& deck : layers.Clouds) {
    BeginLayer(json, deck.Base, deck.Top);
    json.Key("amount").Text(Trim(Text(deck.Amount)));
    json.Key("type").Text(Text(deck.Type));
    json.EndObject();
  }
  json.EndArray();
  json.Key("icing method").Text(Word(options.Ice));
  const bool water = options.Ice == IceType::SmithFeddes;
  WriteAirLayers(json, "icing", layers.Icing, water ? "liquid water" : "", 3);
  json.Key("turbulence method").Text(Word(options.Cat));
  WriteAirLayers(json, "turbulence", layers.Turbulence, "shear", 2);
  WriteAirLayers(json, "high turbulence", layers.HighTurbulence, "shear", 2);
  WriteAirLayers(json, "low-level wind shear", layers.LowShear, "shear", 2);
  WriteAirLayers(json, "contrails", layers.Contrails, "below threshold", 1);
  WriteAirLayers(json, "lightning", layers.Lightning, "", 0);
  WriteAirLayers(json, "carburettor icing", layers.CarbIcing, "", 0);
  json.Key("ducts").BeginArray();
  for (const analysis::Duct& duct : layers.Ducts) {
    BeginLayer(json, duct.Base, duct.Top);
    json.Key("duct base").Number(Height(duct.DuctBase));
    json.Key("gradient").Number(Value(duct.Gradient, 1));
    json.Key("on the surface").Bool(duct.OnSurface);
    json.EndObject();
  }
  json.EndArray();
  WritePoints(json, "freezing levels", results.FreezingLevels);
  WritePoints(json, "tropopauses", results.Tropopauses);
  json.EndObject();
}

void WriteDowndraft(JsonWriter& json, const analysis::Downdraft& descent) {
  json.Key("downdraft").BeginObject();
  json.Key("DCAPE").Number(Value(descent.Energy, kEnergyDecimals));
  WritePoint(json, "source", descent.Source);
  json.Key("temperature at the ground").Number(Value(descent.SurfaceTemp, kTempDecimals));
  json.EndObject();
}

void WriteWinter(JsonWriter& json, const analysis::WinterResults& winter) {
  json.Key("winter").BeginObject();
  json.Key("precipitation");
  winter.Precipitation.empty() ? json.Null() : json.Text(winter.Precipitation);
  json.Key("warm area aloft").Number(Rounded(winter.WarmArea, kEnergyDecimals));
  json.Key("cold area").Number(Rounded(winter.ColdArea, kEnergyDecimals));
  json.Key("warm area at the ground").Number(Rounded(winter.SurfaceWarmArea, kEnergyDecimals));
  json.Key("snow ratio").Number(Value(winter.SnowRatio, 1));
  json.Key("snow squall parameter").Number(Value(winter.SnowSquall, 2));
  json.Key("thickness 1000-500").Number(Height(winter.Thickness1000to500));
  json.Key("thickness 1000-850").Number(Height(winter.Thickness1000to850));
  json.Key("thickness 850-700").Number(Height(winter.Thickness850to700));
  json.Key("dendritic growth").BeginArray();
  for (const auto& layer : winter.Dendritic) {
    BeginLayer(json, layer.Base, layer.Top);
    json.Key("mean humidity").Number(Value(layer.MeanHumidity, 1));
    json.EndObject();
  }
  json.EndArray();
  json.EndObject();
}

void WriteSoaring(JsonWriter& json, const analysis::SoaringResults& soaring) {
  json.Key("soaring").BeginObject();
  json.Key("temperature of the day").Number(Value(soaring.MaxTemp, kTempDecimals));
  json.Key("trigger temperature").Number(Value(soaring.TriggerTemp, kTempDecimals));
  WritePoint(json, "thermal top", soaring.ThermalTop);
  WritePoint(json, "pilot level", soaring.PilotLevel);
  WritePoint(json, "cloud base", soaring.CloudBase);
  json.Key("lift").Number(Value(soaring.Lift, 2));
  json.Key("lift unit").Text(soaring.LiftEquation == 2 ? "m/s" : "ft/min");
  json.Key("words");
  soaring.Words.empty() ? json.Null() : json.Text(soaring.Words);
  json.Key("thermal index").Numbers(Values(soaring.ThermalIndex, kTempDecimals));
  json.EndObject();
}

}  // namespace

void WriteJson(JsonWriter& json, const AnalysedSounding& sounding, const Options& options) {
  const SoundingRecord& record = sounding.Record;
  const AnalysisResults& results = sounding.Results;
  json.BeginObject();
  json.Key("file").Text(sounding.File);
  json.Key("format").Text(record.DataFormat);
  json.Key("station").BeginObject();
  json.Key("title").Text(record.StationTitle);
  json.Key("wmo");
  record.WmoNumber == 0 ? json.Null() : json.Number(record.WmoNumber);
  json.EndObject();
  json.Key("time");
  if (const auto time = TimeText(record.Time)) {
    json.Text(*time);
  } else {
    json.Null();
  }
  json.Key("position");
  if (HasPosition(record)) {
    json.BeginObject();
    json.Key("latitude").Number(Rounded(record.LatSigned, 5));
    json.Key("longitude").Number(Rounded(record.LonSigned, 5));
    json.EndObject();
  } else {
    json.Null();
  }
  json.Key("elevation");
  record.ElevUnknown ? json.Null() : json.Number(record.ElevM);

  json.Key("temperature levels").BeginObject();
  json.Key("pressure").Numbers(Every(record.Press));
  json.Key("temperature").Numbers(Observed(record.Temp));
  json.Key("dew point").Numbers(Observed(record.Dewpt));
  json.Key("height").Numbers(Heights(results.Levels.Height));
  json.Key("wet bulb").Numbers(Values(results.Levels.WetBulb, kTempDecimals));
  json.Key("theta").Numbers(Values(results.Levels.Theta, kTempDecimals));
  json.Key("theta-e").Numbers(Values(results.Levels.ThetaE, kTempDecimals));
  const analysis::LevelListing& listing = results.Layers.Listing;
  json.Key("density").Numbers(Values(listing.Density, 4));
  json.Key("D-value").Numbers(Values(listing.DValue, kHeightDecimals));
  json.Key("refractivity").Numbers(Values(listing.Refractivity, 2));
  json.Key("modified refractivity").Numbers(Values(listing.Modified, 2));
  json.Key("water below").Numbers(Values(listing.WaterBelow, 2));
  json.EndObject();
  json.Key("wind levels").BeginObject();
  json.Key("height").Numbers(Every(record.WindHgt));
  json.Key("direction").Numbers(Observed(record.WindDir));
  json.Key("speed").Numbers(Observed(record.WindSpd));
  json.EndObject();

  json.Key("surface").BeginObject();
  json.Key("pressure").Number(Pressure(results.Surface.Press));
  json.Key("QNH").Number(Pressure(results.Surface.Qnh));
  json.Key("density altitude").Number(Height(results.Surface.DensityAltitude));
  json.Key("ISA deviation").Number(Value(results.Surface.IsaDeviation, kTempDecimals));
  json.Key("estimated").Bool(results.Surface.Estimated);
  json.EndObject();

  json.Key("x").Number(options.CapeDepthKm);
  json.Key("parcels").BeginObject();
  for (const LiftName& lift : kLifts) {
    json.Key(lift.Name);
    WriteParcel(json, results.Ascent(lift.Type));
  }
  json.EndObject();
  WritePoint(json, "CCL", results.ConvectiveCondensation);
  json.Key("convective temperature").Number(Value(results.ConvectiveTemp, kTempDecimals));
  WriteDowndraft(json, results.Descent);
  WriteStormMotion(json, results.Storm, options);
  WriteLayers(json, results, options);
  WriteWinter(json, results.Winter);
  WriteSoaring(json, results.Soaring);
  json.Key("indices").BeginObject();
  for (const analysis::IndexValue& index : sounding.Results.Indices) {
    json.Key(Trim(index.Row->Label)).BeginObject();
    index.Row->Kind == analysis::Measure::Word&& index.Exists()
        ? json.Key("value").Text(index.Text)
        : json.Key("value").Number(IndexNumber(index));
    json.Key("unit").Text(index.Row->Unit);
    json.Key("reason");
    index.Exists() ? json.Null() : json.Text(index.Reason);
    const analysis::ShownIndex shown = analysis::ShowIndex(index, analysis::kRowUnits);
    const bool isWord = index.Row->Kind == analysis::Measure::Word;
    if (index.Direction || index.Both || (!isWord && !index.Text.empty())) {
      json.Key("text").Text(shown.Number);
    }
    if (!shown.Bound.empty()) json.Key("bound").Text(shown.Bound == ">" ? "at least" : "at most");
    json.EndObject();
  }
  json.EndObject();
  json.Key("notes").BeginArray();
  for (const std::string& note : sounding.Notes) json.Text(note);
  json.EndArray();
  json.EndObject();
}

}  // namespace vexa::report
