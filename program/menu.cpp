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
    {"mnuFile", "mnuDataDump", "&Export Sounding Data...", Command::ExportData,
     "Write the levels as text or spreadsheet", "", true},
    {"mnuFile", "mnuPrint", "&Print Image...", Command::PrintImage,
     "Print the diagram and the listings", "Ctrl+P"},
    {"mnuFile", "mnuSave", "Save &Image to File...", Command::SaveImage,
     "Save the diagram as an image file"},
    {"mnuFile", "mnuCopy", "&Copy Image to ClipBoard", Command::CopyImage,
     "Copy the diagram to the clipboard"},
    {"mnuFile", "mnuExit", "E&xit", Command::Exit, "End the program", "Ctrl+Q", true},
    {"", "mnuDisplay", "&Displays"},
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
