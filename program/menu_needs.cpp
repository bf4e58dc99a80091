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

bool HasTemps(const Program& program) {
  return program.Current.Record.NumTempLevels() > 0;
}
bool HasWinds(const Program& program) {
  return program.Current.Record.NumWindLevels() > 0;
}

constexpr Need kSounding{HasTemps, "needs a sounding"};
constexpr Need kLevels{
    [](const Program& program) { return HasTemps(program) || HasWinds(program); },
    "needs a sounding"};  // winds alone do
constexpr Need kUndo{[](const Program& program) { return program.Doc.History().CanUndo(); },
                     "needs a change of the sounding"};
constexpr Need kRedo{[](const Program& program) { return program.Doc.History().CanRedo(); },
                     "needs a change that was taken back"};
constexpr Need kRestore{[](const Program& program) { return program.Doc.CanRestore(); },
                        "needs a sounding that was changed"};
constexpr Need kZoomed{[](const Program& program) { return program.View.Zoom.has_value(); },
                       "needs an enlarged diagram"};

struct NeedRow {
  std::string_view Entry;
  std::string_view Hint;
  const Need& Needs = kSounding;
};

constexpr NeedRow kNeeds[] = {
    {"mnuSaveAs", "(save sounding)"},
    {"mnuInfo", "(sounding properties)", kLevels},
    {"mnuAutoLoad", "(auto-load)", kLevels},
    {"mnuPrintData", "(print sounding data)", kLevels},
    {"PrintDeCodedData", "(print decoded data)"},
    {"mnuPrintDataFile", "(print source data)", kLevels},
    {"mnuDataDump", "(export sounding data)"},
    {"mnuReportFolder", "(report folder)"},
    {"mnuUndo", "(undo)", kUndo},
    {"mnuRedo", "(redo)", kRedo},
    {"mnuEditFile", "(edit decoded data)"},
    {"mnuEditData", "(edit source data)", kLevels},
    {"mnuEditSource", "(edit source file)", kLevels},
    {"mnuFilter", "(filter sounding data)"},
    {"mnuAddTemp", "(temperature data)", kLevels},
    {"mnuAddWind", "(wind data)"},
    {"mnuSevereWx", "(severe weather)"},
    {"mnuWinter", "(winter weather)"},
    {"mnuScale", "(layer analyzer)"},
    {"mnuHodograph", "(hodograph)", kLevels},
    {"mnuHodogram", "(hodogram)", kLevels},
    {"mnuSoaring", "(soaring)"},
    {"mnuListings", "(listings)", kLevels},
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
    {"mnuLoop", "(loop)", kLevels},
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
  const bool lacksTemps = &need->Needs == &kSounding && HasWinds(program);
  return std::string(need->Hint) + " " + std::string(need->Needs.Lack) +
         (lacksTemps ? " with temperatures" : "");
}

}  // namespace vexa
