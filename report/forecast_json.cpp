#include "report/forecast_json.h"

#include "core/numbers.h"
#include "report/values.h"

namespace vexa::report {
namespace {

using forecast::Contribution;
using forecast::Neighbour;
using forecast::Region;

Json TimeJson(const ObservationTime& time) {
  if (!time.Known()) return nullptr;
  return Mask(time.Year, "0000") + "-" + Mask(time.Month, "00") + "-" + Mask(time.Day, "00") + "T" +
         Mask(time.Hour, "00") + ":" + Mask(time.Minute, "00") + "Z";
}

Json WindJson(const std::optional<analysis::Wind>& wind) {
  if (!wind) return nullptr;
  return {{"direction", Number(Rounded(wind->Dir, 1))}, {"speed", Number(Rounded(wind->Spd, 1))}};
}

Json StationJson(const forecast::Profile& profile) {
  return {{"file", profile.Source},
          {"station", profile.Sounding.StationTitle},
          {"time", TimeJson(profile.Sounding.Time)},
          {"mean wind of the lowest km", WindJson(profile.LowWind)}};
}

Json NeighbourJson(const Neighbour& neighbour) {
  Json json = StationJson(*neighbour.Of);
  json["bearing"] = Number(Rounded(neighbour.Bearing, 1));
  json["range"] = Number(Rounded(neighbour.RangeKm, 1));
  json["upwind"] = neighbour.IsUpwind;
  json["along the wind"] =
      neighbour.IsUpwind ? Number(Rounded(neighbour.AlongKm, 1)) : Json(nullptr);
  return json;
}

Json PartJson(const Contribution& part, const Region& region) {
  const forecast::Profile& of = part.Of ? *region.Near.at(*part.Of).Of : *region.Main;
  Json json = {{"station", of.Sounding.StationTitle}, {"file", of.Source}};
  if (part.Of) {
    json["bearing"] = Number(Rounded(region.Near[*part.Of].Bearing, 1));
    json["range"] = Number(Rounded(region.Near[*part.Of].RangeKm, 1));
  }
  json["distance"] = Number(Rounded(part.DistanceKm, 1));
  json["weight"] = Number(Rounded(part.Weight, 4));
  return json;
}

Json StepJson(const forecast::ForecastStep& step, const Region& region) {
  Json json = {{"hour", step.Choice.Hour},
               {"time", TimeJson(step.Sounding.Time)},
               {"title", step.Sounding.StationTitle}};
  json["advection rate"] = Number(Rounded(step.Choice.RateKt, 1));
  json["from"] = Number(Rounded(step.Choice.WindFrom, 1));
  if (step.IsAlone) {
    json["made of"] = "the station's own advection";
    return json;
  }
  json["distance"] = Number(Rounded(step.Choice.UpwindKm, 1));
  json["made of"] = Json::array();
  for (const Contribution& part : step.Choice.Parts) {
    json["made of"].push_back(PartJson(part, region));
  }
  return json;
}

}  // namespace

Json ForecastJson(const forecast::ForecastSeries& series) {
  const Region& region = series.Around();
  Json json;
  json["main"] = StationJson(*region.Main);
  json["radius"] = Number(region.RadiusKm);
  json["choice"] = region.IsManual ? "by hand" : "automatic";
  json["wind from"] =
      Number(region.WindFrom ? std::optional(Rounded(*region.WindFrom, 1)) : std::nullopt);
  json["nearby"] = Json::array();
  for (const Neighbour& neighbour : region.Near) json["nearby"].push_back(NeighbourJson(neighbour));
  json["hours"] = Json::array();
  for (const forecast::ForecastStep& step : series.Steps()) {
    json["hours"].push_back(StepJson(step, region));
  }
  return json;
}

}  // namespace vexa::report
