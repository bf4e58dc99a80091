#include "program/parcel_table.h"

#include <string_view>

#include "analysis/interpolate.h"
#include "analysis/parcel.h"
#include "analysis/parcel_source.h"
#include "analysis/pressure_grid.h"
#include "core/markers.h"
#include "core/numbers.h"

namespace vexa {
namespace {

using analysis::ParcelAscent;

constexpr std::string_view kNoValue = "--";

std::string Number(double value, std::string_view mask) {
  return NotAvailable(value) ? std::string(kNoValue) : Mask(value, mask);
}

template <analysis::LevelPoint ParcelAscent::*Level>
std::string LevelPress(const ParcelAscent& ascent) {
  const analysis::LevelPoint& level = ascent.*Level;
  return level.Exists() ? Mask(level.Press, "###0") : std::string(kNoValue);
}

template <double ParcelAscent::*Energy>
std::string EnergyOf(const ParcelAscent& ascent) {
  return ascent.ParcelTemps.empty() ? std::string(kNoValue) : analysis::EnergyText(ascent, Energy);
}

std::string StartPress(const ParcelAscent& ascent) {
  return ascent.Start.Exists() ? Mask(ascent.Start.Press, "###0") : std::string(kNoValue);
}

std::string StartTemp(const ParcelAscent& ascent) {
  return Number(ascent.Start.Temp, "#0.0");
}

std::string StartDewpt(const ParcelAscent& ascent) {
  return Number(ascent.Start.Dewpt, "#0.0");
}

struct Row {
  std::string_view Label;
  std::string (*Text)(const ParcelAscent&);
};

constexpr Row kRows[] = {
    {"Start mb", StartPress},
    {"Temp C", StartTemp},
    {"Td C", StartDewpt},
    {"CAPE J/kg", EnergyOf<&ParcelAscent::CapeTotal>},
    {"CIN J/kg", EnergyOf<&ParcelAscent::CinTotal>},
    {"CAPE 0-x km", EnergyOf<&ParcelAscent::CapeDepth>},
    {"LCL mb", LevelPress<&ParcelAscent::Condensation>},
    {"LFC mb", LevelPress<&ParcelAscent::FreeLevel>},
    {"EL mb", [](const ParcelAscent& ascent) { return analysis::ElText(ascent); }},
    {"MPL mb", LevelPress<&ParcelAscent::MaximumParcel>},
};

}  // namespace

std::array<std::string, kShownParcels> ParcelTitles() {
  return {"Surface", "Mixed layer", "Most unstable", "Own"};
}

analysis::ParcelStart OwnParcel(const Program& program) {
  return analysis::SurfaceParcel(program.Results.Levels);
}

ParcelAscent LiftOwn(const Program& program, const analysis::ParcelStart& own) {
  ParcelAscent ascent;
  const analysis::LevelProfile& levels = program.Results.Levels;
  if (levels.Count() < 2 || !own.Exists() || own.Press > levels.Press(1) ||
      own.Press <= levels.Press.Top() || NotAvailable(own.Temp) || NotAvailable(own.Dewpt)) {
    return ascent;
  }
  const analysis::PressureGrid grid = analysis::MakePressureGrid(levels);
  analysis::AdiabatTable adiabats;
  analysis::ParcelLifter lifter(
      levels, grid, analysis::LiftSettingsOf(program.Set, program.Results.CapeDepthTopPress),
      &adiabats);
  lifter.LiftForced(own, ascent);
  return ascent;
}

std::vector<ParcelLine> ParcelTable(const Program& program, const analysis::ParcelStart& own) {
  using analysis::LiftType;
  const ParcelAscent lifted = LiftOwn(program, own);
  const auto forced = [&](LiftType type) {
    return &program.Results.Forced[static_cast<std::size_t>(type)];
  };
  const std::array<const ParcelAscent*, kShownParcels> shown = {
      forced(LiftType::Surface), forced(LiftType::MeanLayer), forced(LiftType::MostUnstable),
      &lifted};
  std::vector<ParcelLine> lines;
  for (const Row& row : kRows) {
    ParcelLine line{std::string(row.Label), {}};
    for (std::size_t i = 0; i < shown.size(); ++i) line.Values[i] = row.Text(*shown[i]);
    lines.push_back(std::move(line));
  }
  return lines;
}

}  // namespace vexa
