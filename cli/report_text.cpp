#include <optional>
#include <string_view>

#include "analysis/index_table.h"
#include "analysis/interpolate.h"
#include "analysis/shown_units.h"
#include "cli/report.h"
#include "core/markers.h"
#include "core/numbers.h"
#include "core/shown_values.h"
#include "report/values.h"

namespace vexa::cli {

using namespace report;

namespace {

using analysis::AnalysisResults;
using analysis::LevelPoint;
using analysis::ParcelAscent;
using analysis::PressureWord;

std::string Shown(std::optional<double> value, std::string_view mask, std::string_view unit) {
  return value ? Mask(*value, mask) + std::string(unit) : "--";
}

// A line for each layer found: what it is, from where to where.
template <class Line>
void LayerLines(const AnalysisResults& results, const analysis::ShownUnits& units, Line& line) {
  const auto span = [&units](const LevelPoint& base, const LevelPoint& top) {
    return units.Height(base.Height) + " to " + units.Height(top.Height);
  };
  const analysis::LayerResults& layers = results.Layers;
  if (layers.Mixed) {
    line("Mixed layer", "up to " + units.Height(layers.Mixed->Top.Height) + ", " +
                            Shown(Value(layers.Mixed->Theta, 1), "##0.0", " K"));
  }
  for (const analysis::CloudDeck& deck : layers.Clouds) {
    line("Cloud", std::string(Trim(Text(deck.Amount))) + " " + std::string(Text(deck.Type)) + " " +
                      span(deck.Base, deck.Top));
  }
  const auto each = [&](std::string_view name, const std::vector<analysis::AirLayer>& found) {
    for (const analysis::AirLayer& layer : found) {
      line(name, std::string(Trim(layer.Word)) + " " + span(layer.Base, layer.Top));
    }
  };
  each("Icing", layers.Icing);
  each("Turbulence", layers.Turbulence);
  each("High turbulence", layers.HighTurbulence);
  each("Low-level shear", layers.LowShear);
  each("Contrails", layers.Contrails);
  each("Lightning", layers.Lightning);
  each("Carburettor ice", layers.CarbIcing);
  for (const analysis::Duct& duct : layers.Ducts) {
    line("Duct", span({.Height = duct.DuctBase}, duct.Top) + ", " +
                     Shown(Value(duct.Gradient, 0), "###0", " N/km"));
  }
  if (!results.Winter.Precipitation.empty()) {
    line("Precipitation", results.Winter.Precipitation);
  }
  const analysis::SoaringResults& soaring = results.Soaring;
  if (soaring.ThermalTop.Exists()) {
    line("Thermals", "to " + units.Height(soaring.ThermalTop.Height) + " at " +
                         units.Temp(soaring.MaxTemp) + ", " + std::string(soaring.Words) +
                         (soaring.CloudBase.Exists() ? "" : ", blue"));
  }
}

}  // namespace

std::string TextReport(const ReportedSounding& sounding, const Options& options) {
  const SoundingRecord& record = sounding.Record;
  const AnalysisResults& results = sounding.Results;
  const analysis::ShownUnits units(options, options.Heights,
                                   record.ElevUnknown ? kNone : record.ElevM);
  std::string text;
  const auto line = [&text](std::string_view label, std::string_view value) {
    text += PadRight(label, 16) + std::string(value) + "\n";
  };
  const auto press = [&options](double value) {
    return HasHeight(value) && value > 0
               ? Mask(value, "###0.0") + " " + std::string(PressureWord(options.Pressure))
               : std::string("--");
  };
  line("Sounding", record.StationTitle);
  line("File", sounding.File + " (" + record.DataFormat + ")");
  if (record.Time.Known()) line("Time", IsoTimeText(record.Time));
  if (HasPosition(record)) {
    const auto degrees = [](double signedDegrees, std::string_view hemisphere) {
      return Mask(signedDegrees < 0 ? -signedDegrees : signedDegrees, "##0.00") +
             std::string(hemisphere);
    };
    line("Position", degrees(record.LatSigned, record.LatHemi) + " " +
                         degrees(record.LonSigned, record.LonHemi));
  }
  line("Elevation", record.ElevUnknown ? "unknown" : units.Depth(record.ElevM));
  line("Levels", Shortest(record.NumTempLevels()) + " temperature, " +
                     Shortest(record.NumWindLevels()) + " wind");
  if (results.Surface.Exists) {
    line("Surface", press(results.Surface.Press) + ", QNH " + press(results.Surface.Qnh) +
                        ", density altitude " + units.Depth(results.Surface.DensityAltitude));
  }
  text += "\n" + PadRight("", 16);
  constexpr int kColumn = 17;  // "above 1000.0 hPa"
  for (const LiftName& lift : kLifts) text += PadLeft(Text(lift.Type), kColumn);
  text += "\n";
  const auto row = [&](std::string_view label, auto&& value) {
    text += PadRight(label, 16);
    for (const LiftName& lift : kLifts) text += PadLeft(value(results.Ascent(lift.Type)), kColumn);
    text += "\n";
  };
  const auto energy = [](const ParcelAscent& a, double ParcelAscent::*which) {
    return analysis::EnergyText(a, which) + (a.Start.Exists() ? " J/kg" : "");
  };
  const bool convective = results.Mode == analysis::LiftMode::Ccl;
  row("Start", [&](const ParcelAscent& a) { return press(a.Start.Press); });
  row(convective ? "CCL" : "LCL",
      [&](const ParcelAscent& a) { return press(a.Condensation.Press); });
  row("LFC", [&](const ParcelAscent& a) { return press(a.FreeLevel.Press); });
  row("EL", [&](const ParcelAscent& a) {
    return (a.IsCut ? "above " : "") + press(a.Equilibrium.Press);
  });
  row("MPL", [&](const ParcelAscent& a) { return press(a.MaximumParcel.Press); });
  row("CAPE", [&](const ParcelAscent& a) { return energy(a, &ParcelAscent::CapeTotal); });
  row("CIN", [&](const ParcelAscent& a) { return energy(a, &ParcelAscent::CinTotal); });
  row("CAPE 0-" + Shortest(options.CapeDepthKm) + " km",
      [&](const ParcelAscent& a) { return energy(a, &ParcelAscent::CapeDepth); });
  row("CAPE..Hail", [&](const ParcelAscent& a) { return energy(a, &ParcelAscent::CapeHail); });
  text += "\n";
  const auto point = [&](const LevelPoint& level) {
    return press(level.Press) + ", " + units.Height(level.Height) + ", " + units.Temp(level.Temp);
  };
  if (results.ConvectiveCondensation.Exists()) {
    line("CCL", point(results.ConvectiveCondensation) + ", convective temperature " +
                    units.Temp(results.ConvectiveTemp));
  }
  for (const LevelPoint& level : results.FreezingLevels) line("Freezing level", point(level));
  for (const LevelPoint& level : results.Tropopauses) line("Tropopause", point(level));
  for (const analysis::Inversion& inversion : results.Inversions) {
    line(Text(inversion.Kind), point(inversion.Base) + " to " + point(inversion.Top));
  }
  LayerLines(results, units, line);
  if (results.Storm.Mean6km) line("Mean wind 0-6km", units.Motion(*results.Storm.Mean6km));
  const auto mover = [&](std::string_view name, const std::optional<analysis::Mover>& one) {
    if (!one) return;
    line(name, units.Motion(one->Motion) + ", helicity 0-1 km " +
                   Shown(Value(one->Helicity.front(), 0), "###0", "") + ", 0-3 km " +
                   Shown(Value(one->Helicity.back(), 0), "###0", " m2/s2"));
  };
  mover("Right mover", results.Storm.Right);
  mover("Left mover", results.Storm.Left);
  text += "\n";
  constexpr int kPerLine = 3;
  int inLine = 0;
  for (const analysis::IndexValue& index : sounding.Results.Indices) {
    text += std::string(index.Row->Label) + " " +
            PadRight(analysis::ShownValue(index, options, record.ElevM), 14);
    if (++inLine % kPerLine == 0) text += "\n";
  }
  if (inLine % kPerLine != 0) text += "\n";
  for (const std::string& note : sounding.Notes) line("Note", note);
  return text;
}

}  // namespace vexa::cli
