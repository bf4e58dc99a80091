// The listings that tell what the analyses found: analyses, weather and indices.
#include <algorithm>
#include <string>
#include <vector>

#include "analysis/index_table.h"
#include "analysis/shown_units.h"
#include "core/shown_values.h"
#include "output/listing_line.h"
#include "output/listings.h"

namespace vexa::output {
namespace {

using analysis::AirLayer;
using analysis::LevelPoint;
using analysis::LiftType;
using analysis::ParcelAscent;

constexpr int kLabelWidth = 24;
constexpr int kValueWidth = 16;

/// Lines of a listing with the units of the options.
class Writer {
 public:
  explicit Writer(const ListingSource& from) : from_(from) {}

  void Title(std::string_view title) {
    if (!lines_.empty()) lines_.emplace_back();
    lines_.emplace_back(title);
  }
  void Put(std::string_view label, std::string_view value) {
    lines_.push_back("  " + PadRight(label, kLabelWidth) + std::string(value));
  }
  void None() { lines_.emplace_back("  none"); }

  std::string Height(double height) const {
    if (!HasHeight(height)) return std::string(kNoValue);
    const bool isAgl = from_.Set.Heights == HeightMode::Agl && from_.Results.Levels.Count() > 0;
    return Depth(isAgl ? height - from_.Results.Levels.Height(1) : height) + " " +
           std::string(Word(from_.Set.Heights));
  }
  std::string Depth(double meters) const {
    if (!HasHeight(meters)) return std::string(kNoValue);
    return LengthText(meters, from_.Set.GpmUnits);
  }
  std::string Temp(double temp) const { return analysis::TempText(temp, from_.Set.ThermoTemp); }
  std::string Point(const LevelPoint& level) const {
    if (!level.Exists()) return std::string(kNoValue);
    return PadLeft(Mask(level.Press, "###0.0"), 6) + " mb " + PadLeft(Height(level.Height), 12) +
           PadLeft(Temp(level.Temp), 9);
  }
  std::string Wind(const analysis::WindVector& vector) const {
    const analysis::Wind wind = analysis::FromComponents(vector);
    return analysis::DirectionText(wind.Dir) + "/" +
           Mask(ShownIn(wind.Spd, from_.Set.Speed), "##0") + " " +
           std::string(UnitWord(from_.Set.Speed));
  }

  /// Layers from below upward with class and word, or "none".
  void Layers(std::string_view title, const std::vector<AirLayer>& layers) {
    Title(title);
    if (layers.empty()) None();
    for (const AirLayer& layer : layers) {
      const std::string_view word = Trim(layer.Word);
      Put(word.empty() ? Text(layer.Class) : word,
          PadLeft(Height(layer.Base.Height), 12) + "  to " + PadLeft(Height(layer.Top.Height), 12));
    }
  }

  ListingLines Take() { return std::move(lines_); }

 private:
  const ListingSource& from_;
  ListingLines lines_{};
};

/// A line of the parcels' table, a column for each lift type.
struct ParcelLine {
  std::string_view Label;
  std::string (*Value)(const ParcelAscent& ascent);
};

std::string Press(double press) {
  return Shown(press, "###0.0");
}

template <double ParcelAscent::*energy>
std::string EnergyOf(const ParcelAscent& ascent) {
  return analysis::EnergyText(ascent, energy);
}

constexpr ParcelLine kParcelLines[] = {
    {"Start (mb)", [](const ParcelAscent& a) { return Press(a.Start.Press); }},
    {"LCL (mb)", [](const ParcelAscent& a) { return Press(a.Condensation.Press); }},
    {"LFC (mb)", [](const ParcelAscent& a) { return Press(a.FreeLevel.Press); }},
    {"EL (mb)", [](const ParcelAscent& a) { return analysis::ElText(a, "###0.0"); }},
    {"MPL (mb)", [](const ParcelAscent& a) { return Press(a.MaximumParcel.Press); }},
    {"CAPE total (J/kg)", EnergyOf<&ParcelAscent::CapeTotal>},
    {"CAPE+ only (J/kg)", EnergyOf<&ParcelAscent::CapePlusOnly>},
    {"CIN total (J/kg)", EnergyOf<&ParcelAscent::CinTotal>},
};

void PutParcels(Writer& out, const ListingSource& from) {
  constexpr LiftType kTypes[] = {LiftType::Surface, LiftType::MeanLayer, LiftType::MostUnstable};
  out.Title("Lifted parcels");
  std::string heads;
  for (const LiftType type : kTypes) heads += PadLeft(Text(type), kValueWidth);
  out.Put("", heads);
  for (const ParcelLine& line : kParcelLines) {
    std::string values;
    for (const LiftType type : kTypes) {
      values += PadLeft(line.Value(from.Results.Ascent(type)), kValueWidth);
    }
    out.Put(line.Label, values);
  }
}

void PutPoints(Writer& out, std::string_view title, std::string_view label,
               const std::vector<LevelPoint>& points) {
  out.Title(title);
  if (points.empty()) out.None();
  for (const LevelPoint& point : points) out.Put(label, out.Point(point));
}

void PutStorm(Writer& out, const analysis::StormMotionResults& storm) {
  out.Title("Storm motion");
  const auto wind = [&out](const std::optional<analysis::WindVector>& vector) {
    return vector ? out.Wind(*vector) : std::string(kNoValue);
  };
  out.Put("Mean wind 0-6 km", wind(storm.Mean6km));
  out.Put("Shear 0-6 km", wind(storm.Shear6km));
  out.Put("BRN shear", Shown(storm.BrnShear, "###0.0") + " m2/s2");
  const auto mover = [&](std::string_view label, const std::optional<analysis::Mover>& one) {
    const bool isManual = storm.ChosenIsManual && &one == &storm.Chosen();
    out.Put(label, one ? out.Wind(one->Motion) + (isManual ? ", manual" : "") + ", srH 0-3 km " +
                             Shown(one->Helicity.back(), "####0") + " m2/s2"
                       : std::string(kNoValue));
  };
  mover("Right mover", storm.Right);
  mover("Left mover", storm.Left);
}

void PutClouds(Writer& out, const std::vector<analysis::CloudDeck>& clouds) {
  out.Title("Cloud layers");
  if (clouds.empty()) out.None();
  for (const analysis::CloudDeck& deck : clouds) {
    out.Put(std::string(Text(deck.Type)) + std::string(Text(deck.Amount)),
            PadLeft(out.Height(deck.Base.Height), 12) + "  to " +
                PadLeft(out.Height(deck.Top.Height), 12));
  }
}

void PutWinter(Writer& out, const analysis::WinterResults& winter) {
  out.Title("Precipitation");
  out.Put("Type", winter.Precipitation.empty() ? std::string_view("none") : winter.Precipitation);
  out.Put("Warm layer aloft", Mask(winter.WarmArea, "####0.0") + " J/kg");
  out.Put("Cold layer below", Mask(winter.ColdArea, "####0.0") + " J/kg");
  out.Put("Snow to liquid", Shown(winter.SnowRatio, "##0.0"));
  out.Put("Snow squall parameter", Shown(winter.SnowSquall, "##0.00"));
  out.Put("Thickness 1000-500 mb", out.Depth(winter.Thickness1000to500));
  out.Put("Thickness 1000-850 mb", out.Depth(winter.Thickness1000to850));
  out.Put("Thickness 850-700 mb", out.Depth(winter.Thickness850to700));
}

void PutSoaring(Writer& out, const analysis::SoaringResults& soaring) {
  out.Title("Soaring");
  out.Put("Warmest of the day", out.Temp(soaring.MaxTemp));
  out.Put("Trigger temperature", out.Temp(soaring.TriggerTemp));
  out.Put("Top of thermals", out.Point(soaring.ThermalTop));
  out.Put("Cloud base", out.Point(soaring.CloudBase));
  out.Put("Lift", Shown(soaring.Lift, "###0.0") +
                      (soaring.LiftEquation == 1 ? " ft/min " : " m/s ") +
                      std::string(soaring.Words));
}

void PutDucts(Writer& out, const std::vector<analysis::Duct>& ducts) {
  out.Title("Radio ducts");
  if (ducts.empty()) out.None();
  for (const analysis::Duct& duct : ducts) {
    out.Put(duct.OnSurface ? "surface duct" : "elevated duct",
            PadLeft(out.Height(duct.DuctBase), 12) + "  to " +
                PadLeft(out.Height(duct.Top.Height), 12) +
                PadLeft(Mask(duct.Gradient, "####0"), 7) + " N/km");
  }
}

}  // namespace

ListingLines AnalysesListing(const ListingSource& from) {
  const analysis::AnalysisResults& results = from.Results;
  Writer out(from);
  out.Title("Surface");
  out.Put("Pressure", Shown(results.Surface.Press, "###0.0") + " mb");
  out.Put("QNH", Shown(results.Surface.Qnh, "###0.0") + " mb");
  out.Put("Pressure altitude", out.Depth(results.Surface.PressureAltitude));
  out.Put("Density altitude", out.Depth(results.Surface.DensityAltitude));
  PutParcels(out, from);
  out.Title("Free convection");
  out.Put("CCL", out.Point(results.ConvectiveCondensation));
  out.Put("Convective temperature", out.Temp(results.ConvectiveTemp));
  out.Title("Downdraft");
  out.Put("DCAPE", Shown(results.Descent.Energy, "####0") + " J/kg");
  out.Put("Source", out.Point(results.Descent.Source));
  PutPoints(out, "Freezing levels", "FRZG", results.FreezingLevels);
  PutPoints(out, "Tropopauses", "TROP", results.Tropopauses);
  out.Title("Inversions");
  if (results.Inversions.empty()) out.None();
  for (const analysis::Inversion& inversion : results.Inversions) {
    out.Put(Text(inversion.Kind), out.Point(inversion.Base) + "  to " + out.Point(inversion.Top));
  }
  PutStorm(out, results.Storm);
  return out.Take();
}

ListingLines WeatherListing(const ListingSource& from) {
  const analysis::LayerResults& layers = from.Results.Layers;
  Writer out(from);
  PutClouds(out, layers.Clouds);
  out.Layers("Icing", layers.Icing);
  out.Layers("Clear-air turbulence", layers.Turbulence);
  out.Layers("High-level turbulence", layers.HighTurbulence);
  out.Layers("Low-level wind shear", layers.LowShear);
  out.Layers("Lightning potential", layers.Lightning);
  out.Layers("Contrails", layers.Contrails);
  out.Layers("Carburettor icing", layers.CarbIcing);
  PutDucts(out, layers.Ducts);
  PutWinter(out, from.Results.Winter);
  PutSoaring(out, from.Results.Soaring);
  return out.Take();
}

ListingLines IndicesListing(const ListingSource& from) {
  constexpr int kNameWidth = 46;
  const double ground = from.Results.Levels.Count() > 0 ? from.Results.Levels.Height(1) : 0;
  ListingLines lines;
  for (const analysis::IndexValue& index : from.Results.Indices) {
    lines.push_back(PadRight(index.Row->Label, 12) + PadRight(index.Row->Name, kNameWidth) +
                    PadLeft(analysis::ShownValue(index, from.Set, ground), kValueWidth));
  }
  return lines;
}

}  // namespace vexa::output
