#include <cmath>
#include <optional>
#include <string>
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

/// The report, part by part.
class Writer {
 public:
  Writer(const ReportedSounding& sounding, const DisplaySettings& options)
      : sounding_(sounding),
        record_(sounding.Record),
        results_(sounding.Results),
        options_(options),
        units_(options, options.Heights, record_.ElevUnknown ? kNone : record_.ElevM) {}

  std::string Write() {
    Heading();
    text_ += "\n";
    Parcels();
    text_ += "\n";
    Levels();
    Layers();
    Storm();
    text_ += "\n";
    Indices();
    for (const std::string& note : sounding_.Notes) Line("Note", note);
    return std::move(text_);
  }

 private:
  void Line(std::string_view label, std::string_view value) {
    text_ += PadRight(label, 16) + std::string(value) + "\n";
  }
  std::string Press(double value) const {
    return HasHeight(value) && value > 0
               ? Mask(value, "###0.0") + " " + std::string(PressureWord(options_.Pressure))
               : std::string("--");
  }
  std::string Point(const LevelPoint& level) const {
    return Press(level.Press) + ", " + units_.Height(level.Height) + ", " + units_.Temp(level.Temp);
  }
  std::string Span(const LevelPoint& base, const LevelPoint& top) const {
    return units_.Height(base.Height) + " to " + units_.Height(top.Height);
  }

  void Heading() {
    Line("Sounding", record_.StationTitle);
    Line("File", sounding_.File + " (" + record_.DataFormat + ")");
    if (record_.Time.Known()) Line("Time", IsoTimeText(record_.Time));
    if (HasPosition(record_)) {
      const auto degrees = [](double signedDegrees, std::string_view hemisphere) {
        return Mask(std::fabs(signedDegrees), "##0.00") + std::string(hemisphere);
      };
      Line("Position", degrees(record_.LatSigned, record_.LatHemi) + " " +
                           degrees(record_.LonSigned, record_.LonHemi));
    }
    Line("Elevation", record_.ElevUnknown ? "unknown" : units_.Depth(record_.ElevM));
    Line("Levels", Shortest(record_.NumTempLevels()) + " temperature, " +
                       Shortest(record_.NumWindLevels()) + " wind");
    const analysis::SurfaceState& surface = results_.Surface;
    if (surface.Exists) {
      Line("Surface", Press(surface.Press) + ", QNH " + Press(surface.Qnh) + ", density altitude " +
                          units_.Depth(surface.DensityAltitude));
    }
  }

  // A row for each value, a column for each parcel.
  void Parcels() {
    constexpr int kColumn = 17;  // "above 1000.0 hPa"
    const auto row = [this](std::string_view label, auto&& value) {
      text_ += PadRight(label, 16);
      for (const LiftName& lift : kLifts) {
        text_ += PadLeft(value(results_.Ascent(lift.Type)), kColumn);
      }
      text_ += "\n";
    };
    const auto point = [&](std::string_view label, auto&& level) {
      row(label, [&](const ParcelAscent& a) { return Press(level(a).Press); });
    };
    const auto energy = [&](std::string_view label, double ParcelAscent::*which) {
      row(label, [which](const ParcelAscent& a) {
        return analysis::EnergyText(a, which) + (a.HasAnswer(which) ? " J/kg" : "");
      });
    };
    text_ += PadRight("", 16);
    for (const LiftName& lift : kLifts) text_ += PadLeft(Text(lift.Type), kColumn);
    text_ += "\n";
    point("Start", [](const ParcelAscent& a) { return a.Start; });
    point(results_.Mode == analysis::LiftMode::Ccl ? "CCL" : "LCL",
          [](const ParcelAscent& a) { return a.Condensation; });
    point("LFC", [](const ParcelAscent& a) { return a.FreeLevel; });
    row("EL", [this](const ParcelAscent& a) {
      return (a.IsCut ? "above " : "") + Press(a.Equilibrium.Press);
    });
    point("MPL", [](const ParcelAscent& a) { return a.MaximumParcel; });
    energy("CAPE", &ParcelAscent::CapeTotal);
    energy("CIN", &ParcelAscent::CinTotal);
    energy("CAPE 0-" + Shortest(options_.CapeDepthKm) + " km", &ParcelAscent::CapeDepth);
    energy("CAPE..Hail", &ParcelAscent::CapeHail);
  }

  void Levels() {
    if (results_.ConvectiveCondensation.Exists()) {
      Line("CCL", Point(results_.ConvectiveCondensation) + ", convective temperature " +
                      units_.Temp(results_.ConvectiveTemp));
    }
    for (const LevelPoint& level : results_.FreezingLevels) Line("Freezing level", Point(level));
    for (const LevelPoint& level : results_.Tropopauses) Line("Tropopause", Point(level));
    for (const analysis::Inversion& inversion : results_.Inversions) {
      Line(Text(inversion.Kind), Point(inversion.Base) + " to " + Point(inversion.Top));
    }
  }

  // A line for each layer found: what it is, from where to where.
  void Layers() {
    const analysis::LayerResults& layers = results_.Layers;
    if (layers.Mixed) {
      Line("Mixed layer", "up to " + units_.Height(layers.Mixed->Top.Height) + ", " +
                              Shown(Value(layers.Mixed->Theta, 1), "##0.0", " K"));
    }
    for (const analysis::CloudDeck& deck : layers.Clouds) {
      Line("Cloud", std::string(Trim(Text(deck.Amount))) + " " + std::string(Text(deck.Type)) +
                        " " + Span(deck.Base, deck.Top));
    }
    const auto each = [this](std::string_view name, const std::vector<analysis::AirLayer>& found) {
      for (const analysis::AirLayer& layer : found) {
        Line(name, std::string(Trim(layer.Word)) + " " + Span(layer.Base, layer.Top));
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
      Line("Duct", Span({.Height = duct.DuctBase}, duct.Top) + ", " +
                       Shown(Value(duct.Gradient, 0), "###0", " N/km"));
    }
    if (!results_.Winter.Precipitation.empty()) {
      Line("Precipitation", results_.Winter.Precipitation);
    }
    const analysis::SoaringResults& soaring = results_.Soaring;
    if (soaring.ThermalTop.Exists()) {
      Line("Thermals", "to " + units_.Height(soaring.ThermalTop.Height) + " at " +
                           units_.Temp(soaring.MaxTemp) + ", " + std::string(soaring.Words) +
                           (soaring.CloudBase.Exists() ? "" : ", blue"));
    }
  }

  void Storm() {
    const analysis::StormMotionResults& storm = results_.Storm;
    if (storm.Mean6km) Line("Mean wind 0-6km", units_.Motion(*storm.Mean6km));
    const auto mover = [&](std::string_view name, const std::optional<analysis::Mover>& one) {
      if (!one) return;
      const bool isManual = storm.ChosenIsManual && &one == &storm.Chosen();
      Line(name, units_.Motion(one->Motion) + (isManual ? ", manual" : "") + ", helicity 0-1 km " +
                     Shown(Value(one->Helicity.front(), 0), "###0", "") + ", 0-3 km " +
                     Shown(Value(one->Helicity.back(), 0), "###0", " m2/s2"));
    };
    mover("Right mover", storm.Right);
    mover("Left mover", storm.Left);
  }

  void Indices() {
    constexpr int kPerLine = 3;
    int inLine = 0;
    for (const analysis::IndexValue& index : results_.Indices) {
      text_ += std::string(index.Row->Label) + " " +
               PadRight(analysis::ShownValue(index, options_, record_.ElevM), 14);
      if (++inLine % kPerLine == 0) text_ += "\n";
    }
    if (inLine % kPerLine != 0) text_ += "\n";
  }

  const ReportedSounding& sounding_;
  const SoundingRecord& record_;
  const AnalysisResults& results_;
  const DisplaySettings& options_;
  const analysis::ShownUnits units_;
  std::string text_{};
};

}  // namespace

std::string TextReport(const ReportedSounding& sounding, const DisplaySettings& options) {
  return Writer(sounding, options).Write();
}

}  // namespace vexa::cli
