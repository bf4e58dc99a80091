#include "report/front_json.h"

#include "core/numbers.h"
#include "report/values.h"

namespace vexa::report {
namespace {

using fronts::Front;
using fronts::FrontLayer;

std::optional<double> Optional(const std::optional<double>& value, int decimals) {
  return value ? std::optional(Rounded(*value, decimals)) : std::nullopt;
}

Json LayerJson(const FrontLayer& layer) {
  Json json;
  json["base"] = Number(Height(layer.Base));
  json["top"] = Number(Height(layer.Top));
  json["base pressure"] = Number(Pressure(layer.BasePress));
  json["top pressure"] = Number(Pressure(layer.TopPress));
  json["thermal wind"]["direction"] = Number(Rounded(layer.Thermal.Wind.Dir, 1));
  json["thermal wind"]["speed"] = Number(Rounded(layer.Thermal.Wind.Spd, 1));
  json["gradient"] = Number(Rounded(layer.Thermal.Gradient, 4));
  json["warm air towards"] = Number(Rounded(layer.Thermal.WarmAzimuth, 1));
  json["orientation"] = Number(Rounded(layer.Thermal.Orientation, 1));
  json["advection"] = Number(Rounded(layer.AdvectionCph, 3));
  return json;
}

// With what it missed.
Json Judged(Json layer, fronts::Missed why) {
  const std::string_view missed = Text(why);
  layer["missed"] = missed.empty() ? Json() : Json(missed);
  return layer;
}

Json FrontJson(const Front& front) {
  Json json;
  json["character"] = Text(front.Kind);
  json["zone"] = LayerJson(front.Zone.Whole);
  json["speed"] = Number(Rounded(front.Speed, 2));
  json["towards"] = Number(Rounded(front.Motion, 1));
  json["normal wind below"] = Number(Optional(front.NormalWindBelow, 2));
  json["slope"] = "1/" + Shortest(front.SlopeN);
  json["distance"] = Number(Rounded(front.DistanceKm, 1));
  json["distance towards"] = Number(Rounded(front.TowardsSurfaceFront, 1));
  json["vertical motion"] = Number(Optional(front.Lift, 1));
  json["precipitation formation"] = Number(Optional(front.Hours, 2));
  if (front.Jump) {
    json["jump of the normal wind"]["base"] = Number(Height(front.Jump->Base));
    json["jump of the normal wind"]["top"] = Number(Height(front.Jump->Top));
    json["jump of the normal wind"]["change"] = Number(Rounded(front.Jump->Change, 2));
  } else {
    json["jump of the normal wind"] = nullptr;
  }
  return json;
}

}  // namespace

Json FrontsJson(const fronts::FrontResults& fronts, bool withLayers) {
  Json json;
  json["front"] = fronts.Found ? FrontJson(*fronts.Found) : Json();
  json["reason"] = fronts.WhyNone.empty() ? Json() : Json(fronts.WhyNone);
  Json& zones = json["zones"] = Json::array();
  for (const fronts::FrontZone& zone : fronts.Zones) {
    zones.push_back(Judged(LayerJson(zone.Whole), zone.Why));
  }
  if (!withLayers) return json;
  Json& layers = json["layers"] = Json::array();
  for (const FrontLayer& layer : fronts.Layers) {
    layers.push_back(Judged(LayerJson(layer), layer.Why));
  }
  return json;
}

}  // namespace vexa::report
