#include "report/sounding_json.h"

#include <optional>
#include <string_view>

#include "analysis/index_table.h"
#include "analysis/interpolate.h"
#include "core/markers.h"
#include "core/numbers.h"
#include "core/shown_values.h"
#include "report/front_json.h"
#include "report/json.h"
#include "report/values.h"
#include "report/wave_json.h"

namespace vexa::report {
namespace {

using analysis::AnalysisResults;
using analysis::LevelPoint;
using analysis::ParcelAscent;

std::vector<std::optional<double>> Values(const Levels<double>& levels, int decimals) {
  std::vector<std::optional<double>> values;
  for (const double value : levels.Values()) {
    values.push_back(IsMissing(value) ? std::nullopt : std::optional(Rounded(value, decimals)));
  }
  return values;
}

std::vector<std::optional<double>> Observed(const Levels<double>& levels) {
  std::vector<std::optional<double>> values;
  for (const double value : levels.Values()) {
    values.push_back(NotAvailable(value) ? std::nullopt : std::optional(value));
  }
  return values;
}

// 999.9 hPa and 999.9 m are pressures and heights like any other.
std::vector<std::optional<double>> Every(const Levels<double>& levels) {
  return {levels.Values().begin(), levels.Values().end()};
}

std::vector<std::optional<double>> Heights(const Levels<double>& levels) {
  std::vector<std::optional<double>> values;
  for (const double value : levels.Values()) values.push_back(Height(value));
  return values;
}

Json PointJson(const LevelPoint& level) {
  if (!level.Exists()) return nullptr;
  Json json;
  json["pressure"] = Number(Pressure(level.Press));
  json["height"] = Number(Height(level.Height));
  json["temperature"] = Number(Value(level.Temp, kTempDecimals));
  return json;
}

// One element for each of a list, in its order.
template <class Element, class ToJson>
Json ArrayOf(const std::vector<Element>& elements, ToJson&& toJson) {
  Json array = Json::array();
  for (const Element& element : elements) array.push_back(toJson(element));
  return array;
}

Json ParcelJson(const ParcelAscent& ascent) {
  Json json;
  Json& start = json["start"];
  if (ascent.Start.Exists()) {
    start["pressure"] = Number(Pressure(ascent.Start.Press));
    start["temperature"] = Number(Value(ascent.Start.Temp, kTempDecimals));
    start["dew point"] = Number(Value(ascent.Start.Dewpt, kTempDecimals));
  }
  json["LCL"] = PointJson(ascent.Condensation);
  json["LFC"] = PointJson(ascent.FreeLevel);
  json["EL"] = PointJson(ascent.Equilibrium);
  json["MPL"] = PointJson(ascent.MaximumParcel);
  json["CAPE"] = Number(Energy(ascent, &ParcelAscent::CapeTotal));
  json["CIN"] = Number(Energy(ascent, &ParcelAscent::CinTotal));
  json["CAPE 0-x"] = Number(Energy(ascent, &ParcelAscent::CapeDepth));
  json["CAPE+ only"] = Number(Energy(ascent, &ParcelAscent::CapePlusOnly));
  json["CAPE..Hail"] = Number(Energy(ascent, &ParcelAscent::CapeHail));
  json["cut"] = ascent.IsCut || ascent.IsOpen;
  const std::string_view marker = analysis::CapeMarker(ascent);
  json["no CAPE"] = marker.empty() ? Json() : Json(std::string(marker));
  return json;
}

Json WindJson(const std::optional<analysis::WindVector>& vector) {
  if (!vector) return nullptr;
  const analysis::Wind wind = analysis::FromComponents(*vector);
  Json json;
  json["direction"] = Number(Rounded(wind.Dir, 1));
  json["speed"] = Number(Rounded(wind.Spd, 1));
  return json;
}

Json MoverJson(const std::optional<analysis::Mover>& mover) {
  if (!mover) return nullptr;
  Json json = WindJson(mover->Motion);
  for (std::size_t i = 0; i < analysis::kHelicityDepthsKm.size(); ++i) {
    json["helicity 0-" + Shortest(analysis::kHelicityDepthsKm[i]) + " km"] =
        Number(Value(mover->Helicity[i], kEnergyDecimals));
  }
  return json;
}

Json StormMotionJson(const analysis::StormMotionResults& storm, const DisplaySettings& options) {
  Json json;
  json["method"] = Word(options.Motion);
  json["mean wind 0-6 km"] = WindJson(storm.Mean6km);
  json["mean wind 0-0.5 km"] = WindJson(storm.MeanHalfKm);
  json["shear 0-6 km"] = WindJson(storm.Shear6km);
  json["BRN shear"] = Number(Value(storm.BrnShear, kEnergyDecimals));
  json["right mover"] = MoverJson(storm.Right);
  json["left mover"] = MoverJson(storm.Left);
  json["cyclonic"] = storm.RightIsCyclonic ? "right mover" : "left mover";
  json["chosen"] = storm.ChosenName();
  return json;
}

// What every layer begins with.
Json LayerJson(const LevelPoint& base, const LevelPoint& top) {
  Json json;
  json["base"] = PointJson(base);
  json["top"] = PointJson(top);
  return json;
}

Json AirLayersJson(const std::vector<analysis::AirLayer>& layers, std::string_view valueName = {},
                   int decimals = 0) {
  return ArrayOf(layers, [&](const analysis::AirLayer& layer) {
    Json json = LayerJson(layer.Base, layer.Top);
    json["class"] = Trim(layer.Word);
    if (!valueName.empty()) json[std::string(valueName)] = Number(Value(layer.Value, decimals));
    return json;
  });
}

Json MixedLayerJson(const std::optional<analysis::MixedLayer>& mixed) {
  if (!mixed) return nullptr;
  Json json;
  json["top"] = PointJson(mixed->Top);
  json["depth"] = Number(Height(mixed->Depth));
  json["theta"] = Number(Value(mixed->Theta, kTempDecimals));
  json["mixing ratio"] =
      Number(NotAvailable(mixed->MixingRatio) ? std::nullopt : Value(mixed->MixingRatio * 1000, 3));
  json["mean wind"] = WindJson(mixed->Mean);
  return json;
}

Json LayersJson(const AnalysisResults& results, const DisplaySettings& options) {
  const analysis::LayerResults& layers = results.Layers;
  Json json;
  json["inversions"] = ArrayOf(results.Inversions, [](const analysis::Inversion& inversion) {
    Json one = LayerJson(inversion.Base, inversion.Top);
    one["kind"] = Text(inversion.Kind);
    return one;
  });
  json["mixed layer"] = MixedLayerJson(layers.Mixed);
  json["clouds"] = ArrayOf(layers.Clouds, [](const analysis::CloudDeck& deck) {
    Json one = LayerJson(deck.Base, deck.Top);
    one["amount"] = Trim(Text(deck.Amount));
    one["type"] = Text(deck.Type);
    return one;
  });
  json["icing method"] = Word(options.Ice);
  const bool water = options.Ice == IceType::SmithFeddes;
  json["icing"] = AirLayersJson(layers.Icing, water ? "liquid water" : "", 3);
  json["turbulence method"] = Word(options.Cat);
  json["turbulence"] = AirLayersJson(layers.Turbulence, "shear", 2);
  json["high turbulence"] = AirLayersJson(layers.HighTurbulence, "shear", 2);
  json["low-level wind shear"] = AirLayersJson(layers.LowShear, "shear", 2);
  json["contrails"] = AirLayersJson(layers.Contrails, "below threshold", 1);
  json["lightning"] = AirLayersJson(layers.Lightning);
  json["carburettor icing"] = AirLayersJson(layers.CarbIcing);
  json["ducts"] = ArrayOf(layers.Ducts, [](const analysis::Duct& duct) {
    Json one = LayerJson(duct.Base, duct.Top);
    one["duct base"] = Number(Height(duct.DuctBase));
    one["gradient"] = Number(Value(duct.Gradient, 1));
    one["on the surface"] = duct.OnSurface;
    return one;
  });
  json["freezing levels"] = ArrayOf(results.FreezingLevels, PointJson);
  json["tropopauses"] = ArrayOf(results.Tropopauses, PointJson);
  return json;
}

Json DowndraftJson(const analysis::Downdraft& descent) {
  Json json;
  json["DCAPE"] = Number(Value(descent.Energy, kEnergyDecimals));
  json["source"] = PointJson(descent.Source);
  json["temperature at the ground"] = Number(Value(descent.SurfaceTemp, kTempDecimals));
  return json;
}

Json WinterJson(const analysis::WinterResults& winter) {
  Json json;
  json["precipitation"] = WordsJson(winter.Precipitation);
  json["warm area aloft"] = Number(Rounded(winter.WarmArea, kEnergyDecimals));
  json["cold area"] = Number(Rounded(winter.ColdArea, kEnergyDecimals));
  json["warm area at the ground"] = Number(Rounded(winter.SurfaceWarmArea, kEnergyDecimals));
  json["snow ratio"] = Number(Value(winter.SnowRatio, 1));
  json["snow squall parameter"] = Number(Value(winter.SnowSquall, 2));
  json["thickness 1000-500"] = Number(Height(winter.Thickness1000to500));
  json["thickness 1000-850"] = Number(Height(winter.Thickness1000to850));
  json["thickness 850-700"] = Number(Height(winter.Thickness850to700));
  json["dendritic growth"] = ArrayOf(winter.Dendritic, [](const auto& layer) {
    Json one = LayerJson(layer.Base, layer.Top);
    one["mean humidity"] = Number(Value(layer.MeanHumidity, 1));
    return one;
  });
  return json;
}

Json SoaringJson(const analysis::SoaringResults& soaring) {
  Json json;
  json["temperature of the day"] = Number(Value(soaring.MaxTemp, kTempDecimals));
  json["trigger temperature"] = Number(Value(soaring.TriggerTemp, kTempDecimals));
  json["thermal top"] = PointJson(soaring.ThermalTop);
  json["pilot level"] = PointJson(soaring.PilotLevel);
  json["cloud base"] = PointJson(soaring.CloudBase);
  json["lift"] = Number(Value(soaring.Lift, 2));
  json["lift unit"] = soaring.LiftEquation == 2 ? "m/s" : "ft/min";
  json["words"] = WordsJson(soaring.Words);
  json["thermal index"] = Numbers(Values(soaring.ThermalIndex, kTempDecimals));
  return json;
}

Json TempLevelsJson(const SoundingRecord& record, const AnalysisResults& results) {
  Json json;
  json["pressure"] = Numbers(Every(record.Press));
  json["temperature"] = Numbers(Observed(record.Temp));
  json["dew point"] = Numbers(Observed(record.Dewpt));
  json["height"] = Numbers(Heights(results.Levels.Height));
  json["wet bulb"] = Numbers(Values(results.Levels.WetBulb, kTempDecimals));
  json["theta"] = Numbers(Values(results.Levels.Theta, kTempDecimals));
  json["theta-e"] = Numbers(Values(results.Levels.ThetaE, kTempDecimals));
  const analysis::LevelListing& listing = results.Layers.Listing;
  json["density"] = Numbers(Values(listing.Density, 4));
  json["D-value"] = Numbers(Values(listing.DValue, kHeightDecimals));
  json["refractivity"] = Numbers(Values(listing.Refractivity, 2));
  json["modified refractivity"] = Numbers(Values(listing.Modified, 2));
  json["water below"] = Numbers(Values(listing.WaterBelow, 2));
  return json;
}

Json WindLevelsJson(const SoundingRecord& record) {
  Json json;
  json["height"] = Numbers(Every(record.WindHgt));
  json["direction"] = Numbers(Observed(record.WindDir));
  json["speed"] = Numbers(Observed(record.WindSpd));
  return json;
}

Json SurfaceJson(const analysis::SurfaceState& surface) {
  Json json;
  json["pressure"] = Number(Pressure(surface.Press));
  json["QNH"] = Number(Pressure(surface.Qnh));
  json["density altitude"] = Number(Height(surface.DensityAltitude));
  json["ISA deviation"] = Number(Value(surface.IsaDeviation, kTempDecimals));
  json["estimated"] = surface.Estimated;
  return json;
}

Json IndexJson(const analysis::IndexValue& index) {
  const bool isWord = index.Row->Kind == analysis::Measure::Word;
  Json json;
  json["value"] = isWord && index.Exists() ? Json(index.Text) : Number(IndexNumber(index));
  json["unit"] = index.Row->Unit;
  json["reason"] = index.Exists() ? Json(nullptr) : Json(index.Reason);
  const analysis::ShownIndex shown = analysis::ShowIndex(index, analysis::kRowUnits);
  if (index.Direction || index.Both || (!isWord && !index.Text.empty())) {
    json["text"] = shown.Number;
  }
  if (!shown.Bound.empty()) json["bound"] = shown.Bound == ">" ? "at least" : "at most";
  return json;
}

// Where the sounding comes from.
void AddHeading(Json& json, const ReportedSounding& sounding) {
  const SoundingRecord& record = sounding.Record;
  json["file"] = sounding.File;
  json["format"] = record.DataFormat;
  json["station"]["title"] = record.StationTitle;
  json["station"]["wmo"] = record.WmoNumber == 0 ? Json(nullptr) : Json(record.WmoNumber);
  json["time"] = WordsJson(IsoTimeText(record.Time));
  Json& position = json["position"];
  if (HasPosition(record)) {
    position["latitude"] = Number(Rounded(record.LatSigned, 5));
    position["longitude"] = Number(Rounded(record.LonSigned, 5));
  }
  json["elevation"] = record.ElevUnknown ? Json(nullptr) : Number(record.ElevM);
}

}  // namespace

ReportedSounding ReportOf(const AnalysedSounding& sounding, std::string name,
                          const DisplaySettings& options, analysis::AdiabatTable* table) {
  return {.File = std::move(name),
          .Record = sounding.Record(),
          .Results = sounding.Results(options, table),
          .Notes = sounding.Notes(),
          .Finding = sounding.Finding(),
          .Stamp = sounding.From().Stamp};
}

std::string SoundingJson(const ReportedSounding& sounding, const DisplaySettings& options) {
  const AnalysisResults& results = sounding.Results;
  Json json;
  AddHeading(json, sounding);
  json["temperature levels"] = TempLevelsJson(sounding.Record, results);
  json["wind levels"] = WindLevelsJson(sounding.Record);
  json["surface"] = SurfaceJson(results.Surface);
  json["x"] = Number(options.CapeDepthKm);
  for (const LiftName& lift : kLifts) {
    json["parcels"][std::string(lift.Name)] = ParcelJson(results.Ascent(lift.Type));
  }
  json["CCL"] = PointJson(results.ConvectiveCondensation);
  json["convective temperature"] = Number(Value(results.ConvectiveTemp, kTempDecimals));
  json["downdraft"] = DowndraftJson(results.Descent);
  json["storm motion"] = StormMotionJson(results.Storm, options);
  json["layers"] = LayersJson(results, options);
  json["winter"] = WinterJson(results.Winter);
  json["soaring"] = SoaringJson(results.Soaring);
  const mountainwave::Site site =
      sounding.Mountains ? *sounding.Mountains : mountainwave::MountainsOf(sounding.Record);
  json["fronts"] =
      FrontsJson(fronts::FindFronts(sounding.Record, results.Levels, FrontSettings{}), false);
  json["waves"] =
      WavesJson(mountainwave::ComputeWaves(sounding.Record, results.Levels, site), site, false);
  Json& indices = json["indices"] = Json::object();
  for (const analysis::IndexValue& index : results.Indices) {
    indices[std::string(Trim(index.Row->Label))] = IndexJson(index);
  }
  json["finding"] = FindingJson(sounding.Finding);
  json["notes"] = sounding.Notes;
  return JsonText(json);
}

}  // namespace vexa::report
