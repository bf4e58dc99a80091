// What menu entries need before they can be chosen, by name: the one place that grays an entry and
// says why.
#include <algorithm>
#include <iterator>

#include "program/edit_commands.h"
#include "program/menu.h"

namespace vexa {
namespace {

struct Need {
  bool (*IsMet)(const Program&);
  std::string_view Lack;  // after the entry's own words
};

constexpr Need kSounding{
    [](const Program& program) { return program.Current.Record.NumTempLevels() > 0; },
    "needs a sounding"};
constexpr Need kUndo{[](const Program& program) { return program.History.CanUndo(); },
                     "needs a change of the sounding"};
constexpr Need kRedo{[](const Program& program) { return program.History.CanRedo(); },
                     "needs a change that was taken back"};
constexpr Need kRestore{commands::CanRestore, "needs a sounding that was changed"};
constexpr Need kZoomed{[](const Program& program) { return program.View.Zoom.has_value(); },
                       "needs an enlarged diagram"};

struct NeedRow {
  std::string_view Entry;
  std::string_view Hint;
  const Need& Needs = kSounding;
};

constexpr NeedRow kNeeds[] = {
    {"mnuSaveAs", "(save sounding)"},
    {"mnuInfo", "(sounding properties)"},
    {"mnuAutoLoad", "(auto-load)"},
    {"mnuPrintData", "(print sounding data)"},
    {"PrintDeCodedData", "(print decoded data)"},
    {"mnuPrintDataFile", "(print source data)"},
    {"mnuDataDump", "(export sounding data)"},
    {"mnuReportFolder", "(report folder)"},
    {"mnuUndo", "(undo)", kUndo},
    {"mnuRedo", "(redo)", kRedo},
    {"mnuEditFile", "(edit decoded data)"},
    {"mnuEditData", "(edit source data)"},
    {"mnuEditSource", "(edit source file)"},
    {"mnuFilter", "(filter sounding data)"},
    {"mnuAddTemp", "(temperature data)"},
    {"mnuAddWind", "(wind data)"},
    {"mnuSevereWx", "(severe weather)"},
    {"mnuWinter", "(winter weather)"},
    {"mnuScale", "(layer analyzer)"},
    {"mnuHodograph", "(hodograph)"},
    {"mnuHodogram", "(hodogram)"},
    {"mnuSoaring", "(soaring)"},
    {"mnuListings", "(listings)"},
    {"mnuRestore", "(restore)", kRestore},
    {"mnuZoom", "(zoom)"},
    {"mnuUnZoom", "(un-zoom)", kZoomed},
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
  const auto* need = std::ranges::find(kNeeds, row.Name, &NeedRow::Entry);
  return need == std::end(kNeeds) ? nullptr : need;
}

}  // namespace

bool IsEnabled(const MenuRow& row, const Program& program) {
  if (row.Does == Command::NotBuilt) return false;
  const NeedRow* need = NeedOf(row);
  return need == nullptr || need->Needs.IsMet(program);
}

std::string HintOf(const MenuRow& row, const Program& program) {
  const NeedRow* need = NeedOf(row);
  if (need == nullptr || need->Needs.IsMet(program)) return std::string(row.Hint);
  return std::string(need->Hint) + " " + std::string(need->Needs.Lack);
}

}  // namespace vexa
