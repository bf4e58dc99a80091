#include "program/menu.h"

namespace vexa {
namespace {

template <DiagramType type>
bool Shows(const Program& program) {
  return program.Set.Diagram == type;
}

template <bool Program::*Shown>
bool IsUp(const Program& program) {
  return program.*Shown;
}

constexpr MenuRow kMenuTree[] = {
    {"", "mnuFile", "&File"},
    {"mnuFile", "mnuOpen", "&Open Sounding", Command::Open, "Choose one or more sounding files",
     "Ctrl+O"},
    {"mnuFile", "mnuExit", "E&xit", Command::Exit, "End the program", "Ctrl+Q", true},
    {"", "mnuDisplay", "&Displays"},
    {"mnuDisplay", "mnuHodograph", "&Hodograph", Command::Hodograph,
     "Winds, storm motion and helicity", "Ctrl+H", false, IsUp<&Program::ShowsHodograph>, true},
    {"mnuDisplay", "mnuHodogram", "Hodo&gram (3-D)", Command::Hodogram,
     "The way of the balloon in three dimensions", "Ctrl+G", false, IsUp<&Program::ShowsHodogram>,
     true},
    {"mnuDisplay", "mnuRefreshed", "&Refresh", Command::Refresh,
     "Redraw the diagram from the current data", "F5"},
    {"", "mnuOptions", "&Options"},
    {"mnuOptions", "mnuSkewT", "Skew-T / Log-P", Command::DiagramSkewT, "Popular U.S. diagram",
     "Ctrl+1", false, Shows<DiagramType::SkewT>},
    {"mnuOptions", "mnuEmagram", "Emagram", Command::DiagramEmagram, "Similar to the Stuve diagram",
     "Ctrl+2", false, Shows<DiagramType::Emagram>},
    {"mnuOptions", "mnuTephigram", " Tephigram", Command::DiagramTephigram,
     "Popular European diagram", "Ctrl+3", false, Shows<DiagramType::Tephigram>},
};

}  // namespace

std::span<const MenuRow> MenuTree() {
  return kMenuTree;
}

}  // namespace vexa
