#include "analysis/index_reader.h"

#include <algorithm>
#include <cmath>

#include "analysis/interpolate.h"
#include "analysis/moist_air.h"
#include "analysis/working_wind.h"
#include "core/numbers.h"
#include "core/units.h"

namespace vexa::analysis {
namespace {

constexpr double kLowestWindDepth = 100;  // m above ground

std::string LacksWinds(const std::string& layer) {
  return "the winds do not stand for " + layer + ": a layer needs " + std::string(kLayerMeanRule);
}

std::string At(std::string_view name, double press) {
  return std::string(name) + " " + Mask(press, "###0.#") + " hPa";
}

}  // namespace

SharedReadings::Place& SharedReadings::Find(const LevelProfile& levels, double press) {
  constexpr std::size_t kPlaces = 16;  // more than there are mandatory levels
  const auto found = std::ranges::find(places_, press, &Place::Press);
  if (found != places_.end()) return *found;
  if (places_.empty()) places_.reserve(kPlaces);
  if (places_.size() == kPlaces) places_.pop_back();
  return places_.emplace_back(Place{.Press = press, .At = PressurePlace(levels, press)});
}

double IndexReader::Part(double (*compute)(IndexReader& in)) {
  if (notes_ == Notes::Keep || Failed()) return compute(*this);
  const auto known = std::ranges::find(shared_.parts_, compute, &SharedReadings::Part::Compute);
  if (known != shared_.parts_.end()) {
    return known->Reason.empty() ? known->Value : Fail(known->Reason);
  }
  const double value = compute(*this);
  shared_.parts_.push_back({.Compute = compute, .Value = value, .Reason = told_.Reason});
  return value;
}

double IndexReader::Note(std::string_view name, double value, std::string_view unit) {
  if (Keeps() && std::ranges::find(inputs_, name, &IndexInput::Name) == inputs_.end()) {
    std::string text = Mask(value, "#####0.##");
    if (!unit.empty()) text += " " + std::string(unit);
    inputs_.push_back({std::string(name), std::move(text)});
  }
  return value;
}

void IndexReader::Setting(std::string_view label, std::string_view value) {
  if (!Keeps() || std::ranges::find(inputs_, label, &IndexInput::Name) != inputs_.end()) return;
  inputs_.push_back({std::string(label), std::string(value)});
}

double IndexReader::Fail(std::string reason) {
  if (told_.Reason.empty()) told_.Reason = std::move(reason);
  return 0;
}

std::string IndexReader::WhyNot(std::string_view what, double press) const {
  const LevelProfile& levels = Levels();
  if (levels.Count() == 0) return "the sounding has no levels";
  const std::string level = Mask(press, "###0.#") + " hPa";
  if (press > levels.Press(1)) {
    return "no " + level + " level: the sounding starts at " + Mask(levels.Press(1), "###0.#") +
           " hPa";
  }
  if (press < levels.Press.Top()) {
    return "no " + level + " level: the sounding ends at " + Mask(levels.Press.Top(), "###0.#") +
           " hPa";
  }
  return "no " + std::string(what) + " at " + level;
}

double IndexReader::Read(std::string_view name, double press, Quantity quantity,
                         std::string_view unit) {
  if (Failed()) return 0;
  const double value = GetTEMP(Levels(), shared_.Find(Levels(), press).At, quantity);
  if (NotAvailable(value)) {
    return Fail(WhyNot(quantity == Quantity::Temp ? "temperature" : "dew point", press));
  }
  return Keeps() ? Note(At(name, press), value, unit) : value;
}

double IndexReader::Temp(double press) {
  return Read("T", press, Quantity::Temp, "C");
}
double IndexReader::Dewpt(double press) {
  return Read("Td", press, Quantity::Dewpt, "C");
}
double IndexReader::WetBulb(double press) {
  return Read("Tw", press, Quantity::WetBulb, "C");
}
double IndexReader::VirtualTemp(double press) {
  return Read("Tv", press, Quantity::VirtualTemp, "C");
}
double IndexReader::ThetaE(double press) {
  return Read("theta-e", press, Quantity::ThetaE, "K");
}

double IndexReader::MixingRatio(double press) {
  return Read("w", press, Quantity::MixingRatio, "g/kg");
}

double IndexReader::Height(double press) {
  if (Failed()) return 0;
  const Sample height = HeightAt(Levels(), shared_.Find(Levels(), press).At, press);
  if (!height.Ok()) return Fail(WhyNot("height", press));
  return Keeps() ? Note(At("height of", press), height.Value, "m") : height.Value;
}

Wind IndexReader::WindAt(double press) {
  if (Failed()) return {};
  SharedReadings::Place& place = shared_.Find(Levels(), press);
  if (!place.Wind) {
    const Sample height = place.At.Read(Levels(), Quantity::Height);
    place.Wind = height.Ok() ? WindAtHeight(sounding_, height.Value) : WindSample{};
  }
  if (!place.Wind->Ok()) {
    Fail(WhyNot("wind", press));
    return {};
  }
  const Wind wind = place.Wind->Value;
  if (Keeps()) {
    Note(At("wind direction", press), wind.Dir, "deg");
    Note(At("wind speed", press), wind.Spd, "kt");
  }
  return wind;
}

double IndexReader::SurfacePress() {
  if (Levels().Count() == 0) return Fail("the sounding has no levels");
  return Note("surface pressure", Levels().Press(1), "hPa");
}

double IndexReader::SurfaceTemp() {
  if (Levels().Count() == 0) return Fail("the sounding has no levels");
  return Note("surface T", Levels().Temp(1), "C");
}

double IndexReader::SurfaceDewpt() {
  if (Levels().Count() == 0) return Fail("the sounding has no levels");
  if (NotAvailable(Levels().Dewpt(1))) return Fail("no dew point at the surface");
  return Note("surface Td", Levels().Dewpt(1), "C");
}

Wind IndexReader::SurfaceWind() {
  int lowest = 1;
  while (lowest <= sounding_.NumWindLevels() && !sounding_.HasWind(lowest)) ++lowest;
  if (lowest > sounding_.NumWindLevels() ||
      sounding_.WindHgt(lowest) - sounding_.ElevM > kLowestWindDepth) {
    Fail("no wind within 100 m of the ground");
    return {};
  }
  const Wind wind = WorkingWind(sounding_, lowest);
  Note("surface wind direction", wind.Dir, "deg");
  Note("surface wind speed", wind.Spd, "kt");
  return wind;
}

double IndexReader::Cape() {
  const ParcelAscent& parcel = results_.Chosen();
  if (!parcel.Start.Exists()) return Fail("no parcel to lift");
  Setting("lift type", Text(results_.ChosenLift));
  return CapeOf(parcel, "CAPE total");
}

double IndexReader::CapeOf(const ParcelAscent& parcel, std::string_view name) {
  if (!parcel.HasAnswer(&ParcelAscent::CapeTotal)) return Fail(std::string(kOpenCape));
  if (parcel.IsCut) SayBound();
  return Note(name, parcel.CapeTotal, "J/kg");
}

void IndexReader::SayBound() {
  told_.IsBound = true;
  Setting("the sounding ends", "while the parcel is still warmer: its EL lies above");
}

double IndexReader::BrnShear() {
  if (NotAvailable(results_.Storm.BrnShear)) {
    return Fail(sounding_.NumWindLevels() == 0 ? "no winds between the ground and 6 km"
                                               : LacksWinds("0-6 km above ground"));
  }
  Setting("a layer of winds needs", kLayerMeanRule);
  return Note("BRN shear", results_.Storm.BrnShear, "m2/s2");
}

const Mover& IndexReader::ChosenMover() {
  static constexpr Mover kNoMover{};
  const std::optional<Mover>& mover = results_.Storm.Chosen();
  if (!mover) {
    Fail("no storm motion: winds below 6 km are missing");
    return kNoMover;
  }
  if (Keeps()) {
    Setting("storm motion", results_.Storm.ChosenName());
    Setting("cyclonic turning is",
            results_.Storm.RightIsCyclonic ? "positive" : "negative, south of the equator");
  }
  return *mover;
}

double IndexReader::Helicity(double depthKm) {
  const Mover& mover = ChosenMover();
  if (Failed()) return 0;
  const auto* const ready = std::ranges::find(kHelicityDepthsKm, depthKm);
  const double helicity =
      ready != kHelicityDepthsKm.end()
          ? mover.Helicity[static_cast<std::size_t>(ready - kHelicityDepthsKm.begin())]
          : StormRelativeHelicity(results_.Winds, sounding_.ElevM, depthKm * 1000, mover.Motion);
  if (NotAvailable(helicity)) {
    return Fail("the winds do not cover 0-" + Mask(depthKm, "#0.#") + " km");
  }
  if (!Keeps()) return helicity;
  return Note("helicity 0-" + Mask(depthKm, "#0.#") + " km", helicity, "m2/s2");
}

void IndexReader::NeedWinds(double depth) {
  if (!WindsStandFor(results_.Winds, sounding_.ElevM, depth)) {
    Fail(LacksWinds("0-" + Mask(depth, "####0") + " m above ground"));
  }
  Setting("a layer of winds needs", kLayerMeanRule);
}

const LevelPoint* IndexReader::LowestFreezing() const {
  for (const LevelPoint& level : results_.FreezingLevels) {
    const Sample below = SampleAt(Levels(), level.Press * 1.001, Quantity::Temp);
    if (below.Ok() && below.Value > 0) return &level;
  }
  return nullptr;
}

bool IndexReader::FreezesWithWarmBelow() const {
  return LowestFreezing() != nullptr;
}

double IndexReader::FreezingHeight() {
  if (Levels().Count() == 0) return Fail("the sounding has no levels");
  const LevelPoint* level = LowestFreezing();
  if (level == nullptr) return Fail("no level of 0 C with warmer air below");
  return Note("freezing level", level->Height - Levels().Height(1), "m AGL");
}

WindVector IndexReader::MeanWind(double bottom, double top) {
  const auto mean = LayerMeanWind(results_.Winds, sounding_.ElevM + bottom, top - bottom);
  if (!mean) {
    Fail(LacksWinds(Mask(bottom, "####0") + "-" + Mask(top, "####0") + " m above ground"));
    return {};
  }
  Setting("a layer of winds needs", kLayerMeanRule);
  return *mean;
}

}  // namespace vexa::analysis
