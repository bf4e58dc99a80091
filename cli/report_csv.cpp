#include <utility>
#include <vector>

#include "analysis/index_table.h"
#include "cli/answers.h"
#include "cli/report.h"
#include "core/numbers.h"
#include "core/shown_values.h"
#include "report/values.h"

namespace vexa::cli {

using namespace report;

namespace {

using analysis::AnalysisResults;
using analysis::ParcelAscent;

/// The CSV columns: a name with its unit and the text of a value.
struct CsvColumn {
  std::string Name;
  std::string Value;
};

std::string NumberCell(std::optional<double> value) {
  return value ? Shortest(*value) : std::string();
}

std::vector<CsvColumn> CsvColumns(const ReportedSounding& sounding,
                                  const DisplaySettings& options) {
  const SoundingRecord& record = sounding.Record;
  const AnalysisResults& results = sounding.Results;
  const bool placed = HasPosition(record);
  std::vector<CsvColumn> columns = {
      {"file", sounding.File},
      {"station", record.StationTitle},
      {"wmo number", record.WmoNumber == 0 ? "" : Mask(record.WmoNumber, "00000")},
      {"time", IsoTimeText(record.Time)},
      {"latitude (deg)", placed ? Shortest(record.LatSigned) : ""},
      {"longitude (deg)", placed ? Shortest(record.LonSigned) : ""},
      {"elevation (m)", record.ElevUnknown ? "" : Shortest(record.ElevM)},
      {"format", record.DataFormat},
      {"temperature levels", Shortest(record.NumTempLevels())},
      {"wind levels", Shortest(record.NumWindLevels())},
      {"QNH (hPa)", NumberCell(Pressure(results.Surface.Qnh))},
  };
  const std::string depth = Shortest(options.CapeDepthKm);
  for (const LiftName& lift : kLifts) {
    const ParcelAscent& ascent = results.Ascent(lift.Type);
    const std::string name = std::string(lift.Name) + " ";
    columns.push_back({name + "LCL (hPa)", NumberCell(Pressure(ascent.Condensation.Press))});
    columns.push_back({name + "LFC (hPa)", NumberCell(Pressure(ascent.FreeLevel.Press))});
    columns.push_back({name + "EL (hPa)", NumberCell(Pressure(ascent.Equilibrium.Press))});
    columns.push_back({name + "CAPE (J/kg)", NumberCell(Energy(ascent, &ParcelAscent::CapeTotal))});
    columns.push_back({name + "CIN (J/kg)", NumberCell(Energy(ascent, &ParcelAscent::CinTotal))});
    columns.push_back({name + "CAPE 0-" + depth + " km (J/kg)",
                       NumberCell(Energy(ascent, &ParcelAscent::CapeDepth))});
    const std::string cut = ascent.IsCut || ascent.IsOpen ? "yes" : "no";
    columns.push_back({name + "cut", ascent.Start.Exists() ? cut : ""});
  }
  for (const analysis::IndexValue& index : sounding.Results.Indices) {
    const analysis::ShownIndex shown = analysis::ShowIndex(index, analysis::kRowUnits);
    std::string name(Trim(index.Row->Label));
    if (!index.Row->Unit.empty()) name += " (" + std::string(index.Row->Unit) + ")";
    // Words, and what has more than one number, stand as they are shown.
    const bool isText = index.Exists() && (!index.Text.empty() || index.Direction || index.Both);
    columns.push_back({std::move(name), isText ? shown.Number : NumberCell(IndexNumber(index))});
  }
  columns.push_back(
      {"freezing level (m)",
       results.FreezingLevels.empty() ? "" : NumberCell(Height(results.FreezingLevels[0].Height))});
  columns.push_back({"tropopause (m)", results.Tropopauses.empty()
                                           ? ""
                                           : NumberCell(Height(results.Tropopauses[0].Height))});
  return columns;
}

}  // namespace

std::string CsvHeader(const DisplaySettings& options) {
  std::string text;
  const AnalysedSounding none{LoadedSounding{}};
  for (const CsvColumn& column : CsvColumns(ReportOf(none, "", options), options))
    text += ',' + CsvField(column.Name);
  return text.substr(1);
}

std::string CsvRow(const ReportedSounding& sounding, const DisplaySettings& options) {
  std::string text;
  for (const CsvColumn& column : CsvColumns(sounding, options)) {
    text += ',' + CsvField(column.Value);
  }
  return text.substr(1);
}

}  // namespace vexa::cli
