#include "report/wave_json.h"

#include "analysis/turbulence.h"
#include "core/numbers.h"
#include "mountainwave/wave_listing.h"
#include "report/values.h"

namespace vexa::report {
namespace {

using mountainwave::Interface;
using mountainwave::RidgeWaves;
using mountainwave::Wave;
using mountainwave::WaveKind;

constexpr int kFine = 4;  // decimals of wave numbers, km⁻¹ and km⁻²

std::string_view Word(WaveKind kind) {
  switch (kind) {
    case WaveKind::Predominant:
      return "predominant";
    case WaveKind::Subordinate:
      return "subordinate";
    case WaveKind::Harmonic:
      return "harmonic";
  }
  return "";
}

Json InterfaceJson(const Interface& at) {
  Json json;
  json["pressure"] = Number(Pressure(at.Press));
  json["height above station"] = Number(Height(at.Height));
  json["l2 below"] = Number(Rounded(at.L2Below, kFine));
  json["l2 above"] = Number(Rounded(at.L2Above, kFine));
  json["D"] = Number(Rounded(at.Fall, kFine));
  json["threshold"] = Number(Rounded(at.Threshold, kFine));
  return json;
}

Json WaveJson(const Wave& wave) {
  Json json;
  json["kind"] = Word(wave.Kind);
  json["mountain"] = wave.Mountain;
  json["wavelength"] = Number(Rounded(wave.Of.LengthKm, 3));
  json["amplitude"] = Number(Rounded(wave.Amplitude, 1));
  json["maximum vertical velocity"] = Number(Rounded(wave.MaxVelocity, 3));
  const analysis::WaveWord word = analysis::WaveTurbulence(wave.MaxVelocity);
  json["breaks"] = wave.Breaks();
  json["turbulence"] = word.Long.empty() ? Json(nullptr) : Json(word.Long);
  json["interface"] = InterfaceJson(wave.At);
  json["x"] = Number(Rounded(wave.At.X, kFine));
  json["mode"] = wave.Of.Number;
  json["r"] = Number(Rounded(wave.Of.Angle, kFine));
  json["mu"] = Number(Rounded(wave.Of.Mu, kFine));
  json["nu"] = Number(Rounded(wave.Of.Nu, kFine));
  json["k"] = Number(Rounded(wave.Of.K, kFine));
  json["half-width"] = Number(Rounded(wave.HalfWidthKm, 3));
  json["mean wind below"] = Number(Rounded(wave.At.MeanWind, 3));
  json["wind at the interface"] = Number(Rounded(wave.At.WindHere, 3));
  json["density term"] = Number(Rounded(wave.At.DensityRatio, kFine));
  return json;
}

Json RidgeJson(const RidgeWaves& ridge, bool withInterfaces) {
  Json json;
  json["height above station"] = Number(Height(ridge.Form.Relief));
  json["half-width"] =
      ridge.Form.HalfWidthKm ? Number(Rounded(*ridge.Form.HalfWidthKm, 3)) : Json();
  json["axis"] = Number(Rounded(ridge.Form.Axis, 1));
  json["wind across the crest"] = Number(Rounded(ridge.Flow.CrestWind, 2));
  json["reason"] = ridge.Flow.WhyNone.empty() ? Json() : Json(ridge.Flow.WhyNone);
  if (!withInterfaces) return json;
  Json& tried = json["levels"] = Json::array();
  for (const Interface& at : ridge.Interfaces) {
    Json one = InterfaceJson(at);
    const std::string_view reason = mountainwave::Reason(at.Why);
    one["passed over"] = reason.empty() ? Json() : Json(reason);
    tried.push_back(std::move(one));
  }
  return json;
}

}  // namespace

Json WavesJson(const mountainwave::WaveResults& waves, const mountainwave::Site& site,
               bool withInterfaces) {
  Json json;
  json["default mountain"] = !site.has_value();
  Json& ridges = json["mountains"] = Json::array();
  for (const RidgeWaves& ridge : waves.Ridges) ridges.push_back(RidgeJson(ridge, withInterfaces));
  json["distance"] = waves.Ridges.size() > 1 ? Number(Rounded(waves.DistanceKm, 3)) : Json();
  Json& all = json["waves"] = Json::array();
  for (const Wave* wave : waves.All()) all.push_back(WaveJson(*wave));
  return json;
}

}  // namespace vexa::report
