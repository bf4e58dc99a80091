#include "program/menu.h"

namespace vexa {
namespace {

template <DiagramType type>
bool Shows(const Program& program) {
  return program.Set.Diagram == type;
}

constexpr MenuRow kMenuTree[] = {
    {"", "mnuFile", "&File"},
    {"mnuFile", "mnuOpen", "&Open Sounding", Command::Open, "Choose one or more sounding files",
     "Ctrl+O"},
    {"mnuFile", "mnuExit", "E&xit", Command::Exit, "End the program", "Ctrl+Q", true},
    {"", "mnuDisplay", "&Displays"},
    {"mnuDisplay", "mnuSevereWx", "Se&vere Weather", Command::SevereWeather,
     "The severe-weather table of this sounding"},
    {"mnuDisplay", "mnuWinter", "&Winter Weather", Command::WinterWeather,
     "Precipitation type, snow and icing of this sounding"},
    {"mnuDisplay", "mnuScale", "&Layer Analyzer", Command::LayerAnalyzer,
     "Inversions, clouds, icing, turbulence, contrails and ducts"},
    {"mnuDisplay", "mnuSoaring", "S&oaring", Command::Soaring, "Thermals of the day"},
    {"mnuDisplay", "mnuAnalyze", "&Analyze", Command::Analyze,
     "Show or hide the panel of all indices", "F4", true},
    {"mnuDisplay", "mnuRefreshed", "&Refresh", Command::Refresh,
     "Redraw the diagram from the current data", "F5"},
    {"", "mnuOptions", "&Options"},
    {"mnuOptions", "mnuSkewT", "Skew-T / Log-P", Command::DiagramSkewT, "Popular U.S. diagram",
     "Ctrl+1", false, Shows<DiagramType::SkewT>},
    {"mnuOptions", "mnuEmagram", "Emagram", Command::DiagramEmagram, "Similar to the Stuve diagram",
     "Ctrl+2", false, Shows<DiagramType::Emagram>},
    {"mnuOptions", "mnuTephigram", " Tephigram", Command::DiagramTephigram,
     "Popular European diagram", "Ctrl+3", false, Shows<DiagramType::Tephigram>},
    {"mnuOptions", "mnuTables", "&Tables"},
    {"mnuTables", "mnuSevere", "&Severe Weather Table", Command::SevereTable,
     "Arrange the severe-weather table and its thresholds"},
};

}  // namespace

std::span<const MenuRow> MenuTree() {
  return kMenuTree;
}

}  // namespace vexa
