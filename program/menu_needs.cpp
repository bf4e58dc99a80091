// What menu entries need before they can be chosen, by name.
#include <algorithm>
#include <iterator>

#include "program/menu.h"

namespace vexa {
namespace {

struct NeedRow {
  std::string_view Entry;
  std::string_view Hint;
};

// Entries that work on the sounding in work.
constexpr NeedRow kNeedSounding[] = {
    {"mnuSaveAs", "(save sounding)"},
    {"mnuInfo", "(sounding properties)"},
    {"mnuAutoLoad", "(auto-load)"},
    {"PrintDeCodedData", "(print decoded data)"},
    {"mnuPrintDataFile", "(print source data)"},
    {"mnuDataDump", "(export sounding data)"},
    {"mnuEditFile", "(edit decoded data)"},
    {"mnuEditData", "(edit source data)"},
    {"mnuEditSource", "(edit source file)"},
    {"mnuFilter", "(filter sounding data)"},
    {"mnuAddTemp", "(temperature data)"},
    {"mnuAddWind", "(wind data)"},
    {"mnuSevereWx", "(severe weather)"},
    {"mnuWinter", "(winter weather)"},
    {"mnuScale", "(layer analyzer)"},
    {"mnuSoaring", "(soaring)"},
    {"mnuRestore", "(restore)"},
    {"mnuZoom", "(zoom)"},
    {"mnuSurface", "(surface values)"},
    {"mnuParcels", "(four parcels)"},
    {"mnuCompare", "(compare sounding)"},
    {"mnuOverlay", "(overlay soundings)"},
    {"mnuPrsHgt", "(pressure/height values)"},
    {"mnuHeightCorr", "(height correction line)"},
    {"mnuContrail", "(contrail threshold line)"},
    {"mnuSoar", "(soaring line)"},
    {"mnuLoop", "(loop)"},
    {"mnuSevere", "(severe weather table)"},
    {"mnuClouds", "(cloud layer table)"},
};

const NeedRow* NeedOf(const MenuRow& row) {
  const auto* need = std::ranges::find(kNeedSounding, row.Name, &NeedRow::Entry);
  return need == std::end(kNeedSounding) ? nullptr : need;
}

bool HasSounding(const Program& program) {
  return program.Current.Record.NumTempLevels() > 0;
}

}  // namespace

bool IsEnabled(const MenuRow& row, const Program& program) {
  if (row.Does == Command::NotBuilt) return false;
  if (row.IsEnabled != nullptr && !row.IsEnabled(program)) return false;
  return HasSounding(program) || NeedOf(row) == nullptr;
}

std::string HintOf(const MenuRow& row, const Program& program) {
  if (row.Does == Command::NotBuilt || IsEnabled(row, program)) return std::string(row.Hint);
  const NeedRow* need = NeedOf(row);
  if (need == nullptr || HasSounding(program)) return std::string(row.WhenDisabled);
  const bool hasWinds = program.Current.Record.NumWindLevels() > 0;
  return std::string(need->Hint) + " needs a sounding" + (hasWinds ? " with temperatures" : "");
}

}  // namespace vexa
