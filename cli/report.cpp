#include "cli/report.h"

#include <optional>
#include <string_view>
#include <utility>

#include "analysis/index_table.h"
#include "analysis/interpolate.h"
#include "core/markers.h"
#include "core/numbers.h"

namespace vexa::cli {
namespace {

using analysis::AnalysisResults;
using analysis::LevelPoint;
using analysis::LiftType;
using analysis::ParcelAscent;

// Decimals of what is written: finer than any instrument, coarser than rounding noise.
constexpr int kPressDecimals = 2;
constexpr int kHeightDecimals = 1;
constexpr int kTempDecimals = 2;
constexpr int kEnergyDecimals = 1;

constexpr int kIndexDecimals = 3;

struct LiftName {
  LiftType Type;
  std::string_view Name;
};
constexpr LiftName kLifts[] = {{LiftType::Surface, "surface"},
                               {LiftType::MeanLayer, "mean layer"},
                               {LiftType::MostUnstable, "most unstable"}};

std::optional<double> Value(double value, int decimals) {
  if (NotAvailable(value)) return std::nullopt;
  return Rounded(value, decimals);
}

std::optional<double> Height(double height) {
  if (!HasHeight(height)) return std::nullopt;
  return Rounded(height, kHeightDecimals);
}

std::optional<double> Pressure(double press) {
  if (!HasHeight(press) || press <= 0) return std::nullopt;
  return Rounded(press, kPressDecimals);
}

// An energy counts only where there was a parcel to lift.
std::optional<double> Energy(const ParcelAscent& ascent, double energy) {
  if (!ascent.Start.Exists()) return std::nullopt;
  return Rounded(energy, kEnergyDecimals);
}

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
    values.push_back(IsMissing(value) ? std::nullopt : std::optional(value));
  }
  return values;
}

std::optional<std::string> TimeText(const ObservationTime& time) {
  if (!time.Known()) return std::nullopt;
  return Mask(time.Year, "0000") + "-" + Mask(time.Month, "00") + "-" + Mask(time.Day, "00") + "T" +
         Mask(time.Hour, "00") + ":" + Mask(time.Minute, "00") + "Z";
}

bool HasPosition(const SoundingRecord& record) {
  return !record.LatHemi.empty() && !record.LonHemi.empty();
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
  json.EndObject();
}

std::string Shown(std::optional<double> value, std::string_view mask, std::string_view unit) {
  return value ? Mask(*value, mask) + std::string(unit) : "--";
}

std::string CsvField(std::string_view text) {
  if (text.find_first_of(",\"\r\n") == std::string_view::npos) return std::string(text);
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"') quoted += '"';
    quoted += c;
  }
  return quoted + '"';
}

/// The CSV columns: a name with its unit and the text of a value.
struct CsvColumn {
  std::string Name;
  std::string Value;
};

std::string Cell(std::optional<double> value) {
  return value ? Shortest(*value) : std::string();
}

std::vector<CsvColumn> CsvColumns(const AnalysedSounding& sounding, const Options& options) {
  const SoundingRecord& record = sounding.Record;
  const AnalysisResults& results = sounding.Results;
  const bool placed = HasPosition(record);
  std::vector<CsvColumn> columns = {
      {"file", sounding.File},
      {"station", record.StationTitle},
      {"wmo number", record.WmoNumber == 0 ? "" : Mask(record.WmoNumber, "00000")},
      {"time", TimeText(record.Time).value_or("")},
      {"latitude (deg)", placed ? Shortest(record.LatSigned) : ""},
      {"longitude (deg)", placed ? Shortest(record.LonSigned) : ""},
      {"elevation (m)", record.ElevUnknown ? "" : Shortest(record.ElevM)},
      {"format", record.DataFormat},
      {"temperature levels", Shortest(record.NumTempLevels())},
      {"wind levels", Shortest(record.NumWindLevels())},
      {"QNH (hPa)", Cell(Pressure(results.Surface.Qnh))},
  };
  const std::string depth = Shortest(options.CapeDepthKm);
  for (const LiftName& lift : kLifts) {
    const ParcelAscent& ascent = results.Ascent(lift.Type);
    const std::string name = std::string(lift.Name) + " ";
    columns.push_back({name + "LCL (hPa)", Cell(Pressure(ascent.Condensation.Press))});
    columns.push_back({name + "LFC (hPa)", Cell(Pressure(ascent.FreeLevel.Press))});
    columns.push_back({name + "EL (hPa)", Cell(Pressure(ascent.Equilibrium.Press))});
    columns.push_back({name + "CAPE (J/kg)", Cell(Energy(ascent, ascent.CapeTotal))});
    columns.push_back({name + "CIN (J/kg)", Cell(Energy(ascent, ascent.CinTotal))});
    columns.push_back(
        {name + "CAPE 0-" + depth + " km (J/kg)", Cell(Energy(ascent, ascent.CapeDepth))});
  }
  for (const analysis::IndexValue& index : sounding.Results.Indices) {
    std::string name(Trim(index.Row->Label));
    if (!index.Row->Unit.empty()) name += " (" + std::string(index.Row->Unit) + ")";
    columns.push_back({std::move(name), Cell(Value(index.Value, kIndexDecimals))});
  }
  columns.push_back({"freezing level (m)", results.FreezingLevels.empty()
                                               ? ""
                                               : Cell(Height(results.FreezingLevels[0].Height))});
  columns.push_back({"tropopause (m)", results.Tropopauses.empty()
                                           ? ""
                                           : Cell(Height(results.Tropopauses[0].Height))});
  return columns;
}

}  // namespace

std::string TextReport(const AnalysedSounding& sounding, const Options& options) {
  const SoundingRecord& record = sounding.Record;
  const AnalysisResults& results = sounding.Results;
  std::string text;
  const auto line = [&text](std::string_view label, std::string_view value) {
    text += PadRight(label, 16) + std::string(value) + "\n";
  };
  line("Sounding", record.StationTitle);
  line("File", sounding.File + " (" + record.DataFormat + ")");
  if (const auto time = TimeText(record.Time)) line("Time", *time);
  if (HasPosition(record)) {
    const auto degrees = [](double signedDegrees, std::string_view hemisphere) {
      return Mask(signedDegrees < 0 ? -signedDegrees : signedDegrees, "##0.00") +
             std::string(hemisphere);
    };
    line("Position", degrees(record.LatSigned, record.LatHemi) + " " +
                         degrees(record.LonSigned, record.LonHemi));
  }
  line("Elevation", record.ElevUnknown ? "unknown" : Shortest(record.ElevM) + " m");
  line("Levels", Shortest(record.NumTempLevels()) + " temperature, " +
                     Shortest(record.NumWindLevels()) + " wind");
  if (results.Surface.Exists) {
    line("Surface", Shown(Pressure(results.Surface.Press), "###0.0", " hPa") + ", QNH " +
                        Shown(Pressure(results.Surface.Qnh), "###0.0", " hPa") +
                        ", density altitude " +
                        Shown(Height(results.Surface.DensityAltitude), "####0", " m"));
  }
  text += "\n" + PadRight("", 16);
  for (const LiftName& lift : kLifts) text += PadLeft(Text(lift.Type), 14);
  text += "\n";
  const auto row = [&](std::string_view label, auto&& value) {
    text += PadRight(label, 16);
    for (const LiftName& lift : kLifts) text += PadLeft(value(results.Ascent(lift.Type)), 14);
    text += "\n";
  };
  const auto press = [](double value) { return Shown(Pressure(value), "###0.0", " hPa"); };
  const auto energy = [](const ParcelAscent& a, double value) {
    return Shown(Energy(a, value), "####0", " J/kg");
  };
  const bool convective = results.Mode == analysis::LiftMode::Ccl;
  row("Start", [&](const ParcelAscent& a) { return press(a.Start.Press); });
  row(convective ? "CCL" : "LCL",
      [&](const ParcelAscent& a) { return press(a.Condensation.Press); });
  row("LFC", [&](const ParcelAscent& a) { return press(a.FreeLevel.Press); });
  row("EL", [&](const ParcelAscent& a) { return press(a.Equilibrium.Press); });
  row("MPL", [&](const ParcelAscent& a) { return press(a.MaximumParcel.Press); });
  row("CAPE", [&](const ParcelAscent& a) { return energy(a, a.CapeTotal); });
  row("CIN", [&](const ParcelAscent& a) { return energy(a, a.CinTotal); });
  row("CAPE 0-" + Shortest(options.CapeDepthKm) + " km",
      [&](const ParcelAscent& a) { return energy(a, a.CapeDepth); });
  row("CAPE..Hail", [&](const ParcelAscent& a) { return energy(a, a.CapeHail); });
  text += "\n";
  const auto point = [](const LevelPoint& level) {
    return Shown(Pressure(level.Press), "###0.0", " hPa") + ", " +
           Shown(Height(level.Height), "####0", " m") + ", " +
           Shown(Value(level.Temp, kTempDecimals), "##0.0", " C");
  };
  if (results.ConvectiveCondensation.Exists()) {
    line("CCL", point(results.ConvectiveCondensation) + ", convective temperature " +
                    Shown(Value(results.ConvectiveTemp, kTempDecimals), "##0.0", " C"));
  }
  for (const LevelPoint& level : results.FreezingLevels) line("Freezing level", point(level));
  for (const LevelPoint& level : results.Tropopauses) line("Tropopause", point(level));
  for (const analysis::Inversion& inversion : results.Inversions) {
    line(Text(inversion.Kind), point(inversion.Base) + " to " + point(inversion.Top));
  }
  const auto wind = [](const analysis::WindVector& vector) {
    const analysis::Wind shown = analysis::FromComponents(vector);
    return Mask(shown.Dir, "000") + "/" + Mask(shown.Spd, "##0") + " kts";
  };
  if (results.Storm.Mean6km) line("Mean wind 0-6km", wind(*results.Storm.Mean6km));
  const auto mover = [&](std::string_view name, const std::optional<analysis::Mover>& one) {
    if (!one) return;
    line(name, wind(one->Motion) + ", helicity 0-1 km " +
                   Shown(Value(one->Helicity.front(), 0), "###0", "") + ", 0-3 km " +
                   Shown(Value(one->Helicity.back(), 0), "###0", " m2/s2"));
  };
  mover("Right mover", results.Storm.Right);
  mover("Left mover", results.Storm.Left);
  text += "\n";
  constexpr int kPerLine = 4;
  int inLine = 0;
  for (const analysis::IndexValue& index : sounding.Results.Indices) {
    const std::string value =
        index.Exists() ? Mask(index.Value, index.Row->Mask) : std::string("--");
    text += std::string(index.Row->Label) + " " + PadRight(value, 9);
    if (++inLine % kPerLine == 0) text += "\n";
  }
  if (inLine % kPerLine != 0) text += "\n";
  for (const std::string& note : sounding.Notes) line("Note", note);
  return text;
}

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
  json.Key("pressure").Numbers(Observed(record.Press));
  json.Key("temperature").Numbers(Observed(record.Temp));
  json.Key("dew point").Numbers(Observed(record.Dewpt));
  json.Key("height").Numbers(Values(results.Levels.Height, kHeightDecimals));
  json.Key("wet bulb").Numbers(Values(results.Levels.WetBulb, kTempDecimals));
  json.Key("theta").Numbers(Values(results.Levels.Theta, kTempDecimals));
  json.Key("theta-e").Numbers(Values(results.Levels.ThetaE, kTempDecimals));
  json.EndObject();
  json.Key("wind levels").BeginObject();
  json.Key("height").Numbers(Observed(record.WindHgt));
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
  WritePoints(json, "freezing levels", results.FreezingLevels);
  WritePoints(json, "tropopauses", results.Tropopauses);
  json.Key("inversions").BeginArray();
  for (const analysis::Inversion& inversion : results.Inversions) {
    json.BeginObject();
    json.Key("kind").Text(Text(inversion.Kind));
    WritePoint(json, "base", inversion.Base);
    WritePoint(json, "top", inversion.Top);
    json.EndObject();
  }
  json.EndArray();
  WriteStormMotion(json, results.Storm, options);
  json.Key("indices").BeginObject();
  for (const analysis::IndexValue& index : sounding.Results.Indices) {
    json.Key(Trim(index.Row->Label)).BeginObject();
    json.Key("value").Number(Value(index.Value, kIndexDecimals));
    json.Key("unit").Text(index.Row->Unit);
    json.Key("reason");
    index.Exists() ? json.Null() : json.Text(index.Reason);
    json.EndObject();
  }
  json.EndObject();
  json.Key("notes").BeginArray();
  for (const std::string& note : sounding.Notes) json.Text(note);
  json.EndArray();
  json.EndObject();
}

std::string CsvHeader(const Options& options) {
  std::string text;
  AnalysedSounding none;
  none.Results = analysis::Analyse(none.Record, options);
  for (const CsvColumn& column : CsvColumns(none, options)) text += ',' + CsvField(column.Name);
  return text.substr(1);
}

std::string CsvRow(const AnalysedSounding& sounding, const Options& options) {
  std::string text;
  for (const CsvColumn& column : CsvColumns(sounding, options)) {
    text += ',' + CsvField(column.Value);
  }
  return text.substr(1);
}

}  // namespace vexa::cli
