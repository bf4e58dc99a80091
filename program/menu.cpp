#include "program/menu.h"

#include <cstddef>

#include "core/files.h"
#include "core/numbers.h"
#include "program/commands.h"

namespace vexa {
namespace {

// An ampersand in a name must not become a mark of the entry's letter.
std::string EscapeCaption(std::string_view text) {
  std::string caption;
  for (const char c : text) caption += c == '&' ? "&&" : std::string(1, c);
  return caption;
}

template <DiagramType type>
bool Shows(const Program& program) {
  return program.Set.Diagram == type;
}

template <Configuration configuration>
bool IsActive(const Program& program) {
  return program.Settings.Active == configuration;
}

// "#1: NAME"
template <Configuration configuration>
std::string ConfigurationEntry(const Program& program) {
  const auto index = static_cast<std::size_t>(configuration) - 1;
  const std::string& name = program.Settings.System.Configurations[index].Name;
  return "#&" + std::string(Word(configuration)) + (name.empty() ? "" : ": " + EscapeCaption(name));
}

template <std::size_t number>
std::string RecentFile(const Program& program) {
  const std::string& file = program.Settings.Window.RecentFiles[number - 1];
  if (file.empty()) return {};
  return "&" + Shortest(static_cast<int>(number)) + "  " +
         EscapeCaption(TextFromPath(PathFromText(file).filename()));
}

// Shown while there is something to turn off.
std::string TimerEntry(const Program& program) {
  return program.DownloadTimer ? "Turn_Download_Timer_OFF" : "";
}

std::string BeeperEntry(const Program& program) {
  return program.Beeper ? "Turn_Beeper_OFF" : "";
}

template <bool Program::*Shown>
bool IsUp(const Program& program) {
  return program.*Shown;
}

constexpr MenuRow kMenuTree[] = {
    {"", "mnuFile", "&File"},
    {"mnuFile", "mnuOpen", "&Open Sounding", Command::Open, "Choose one or more sounding files",
     "Ctrl+O"},
    {"mnuFile", "mnuPaste", "&Paste Sounding", Command::Paste,
     "Open the text on the clipboard as a sounding", "Ctrl+V"},
    {"mnuFile", "mnuDownload", "&Download Data...", Command::Download,
     "Fetch a sounding from one of the sources"},
    {"mnuFile", "mnuTimer", "&Batch Processing...", Command::DownloadTimer,
     "Fetch many soundings, by hand or when their hour has come"},
    {"mnuFile", "mnuAutoLoad", "Auto-&Load This Sounding", Command::AutoLoad,
     "Load this sounding whenever the program starts", "", false, commands::IsAutoLoaded, nullptr,
     true},
    {"mnuFile", "mnuPrintData", "Print Sounding &Data", Command::PrintData,
     "Print the levels as a table", "", true},
    {"mnuFile", "PrintDeCodedData", "Print &DeCoded Data...", Command::PrintDecoded,
     "Print the sounding as it was decoded"},
    {"mnuFile", "mnuPrintDataFile", "Print &Source Data...", Command::PrintSource,
     "Print the file that the sounding came from"},
    {"mnuFile", "mnuDataDump", "&Export Sounding Data...", Command::ExportData,
     "Write the levels as text or spreadsheet", "", true},
    {"mnuFile", "mnuPrint", "&Print Image...", Command::PrintImage,
     "Print the diagram and the listings", "Ctrl+P"},
    {"mnuFile", "mnuSave", "Save &Image to File...", Command::SaveImage,
     "Save the diagram as an image file"},
    {"mnuFile", "mnuCopy", "&Copy Image to ClipBoard", Command::CopyImage,
     "Copy the diagram to the clipboard"},
    {"mnuFile", "mnuReportFolder", "Report &Folder...", Command::ReportFolder,
     "Write a folder with which the case can be repeated"},
    {"mnuFile", "mnuRecentFile1", "RecentFile1", Command::Recent1, "Open this file again", "", true,
     nullptr, RecentFile<1>},
    {"mnuFile", "mnuRecentFile2", "RecentFile2", Command::Recent2, "Open this file again", "",
     false, nullptr, RecentFile<2>},
    {"mnuFile", "mnuRecentFile3", "RecentFile3", Command::Recent3, "Open this file again", "",
     false, nullptr, RecentFile<3>},
    {"mnuFile", "mnuRecentFile4", "RecentFile4", Command::Recent4, "Open this file again", "",
     false, nullptr, RecentFile<4>},
    {"mnuFile", "mnuRecentFile5", "RecentFile5", Command::Recent5, "Open this file again", "",
     false, nullptr, RecentFile<5>},
    {"mnuFile", "mnuExit", "E&xit", Command::Exit, "End the program", "Ctrl+Q", true},
    {"", "mnuDisplay", "&Displays"},
    {"mnuDisplay", "mnuSevereWx", "Se&vere Weather", Command::SevereWeather,
     "The severe-weather table of this sounding"},
    {"mnuDisplay", "mnuWinter", "&Winter Weather", Command::WinterWeather,
     "Precipitation type, snow and icing of this sounding"},
    {"mnuDisplay", "mnuScale", "&Layer Analyzer", Command::LayerAnalyzer,
     "Inversions, clouds, icing, turbulence, contrails and ducts"},
    {"mnuDisplay", "mnuSoaring", "S&oaring", Command::Soaring, "Thermals of the day"},
    {"mnuDisplay", "mnuListings", "&Listings", Command::Listings,
     "The seven listings of this sounding", "Ctrl+L"},
    {"mnuDisplay", "mnuAnalyze", "&Analyze", Command::Analyze,
     "Show or hide the panel of all indices", "F4", true},
    {"mnuDisplay", "mnuHodograph", "&Hodograph", Command::Hodograph,
     "Winds, storm motion and helicity", "Ctrl+H", false, IsUp<&Program::ShowsHodograph>, nullptr,
     true},
    {"mnuDisplay", "mnuHodogram", "Hodo&gram (3-D)", Command::Hodogram,
     "The way of the balloon in three dimensions", "Ctrl+G", false, IsUp<&Program::ShowsHodogram>,
     nullptr, true},
    {"mnuDisplay", "mnuRefreshed", "&Refresh", Command::Refresh,
     "Redraw the diagram from the current data", "F5"},
    {"", "mnuOptions", "&Options"},
    {"mnuOptions", "mnuDiag", "&Diagram Options", Command::DiagramOptions,
     "Set what the diagram shows and how", "F8"},
    {"mnuOptions", "mnuProgram", "&Program Options", Command::ProgramOptions,
     "Set units, analyses and parcels", "F9"},
    {"mnuOptions", "mnuSystem", "&System Options", Command::SystemOptions,
     "Set folders, file lists and export units", "Shift+F9"},
    {"mnuOptions", "mnuConfiguration", "&Configuration"},
    {"mnuConfiguration", "mnuConfiguration0", "&None", Command::ConfigurationNone,
     "Work with the unnamed settings", "", false, IsActive<Configuration::None>},
    {"mnuConfiguration", "mnuConfiguration1", "#&1", Command::ConfigurationFirst,
     "Work with the settings of the first configuration", "", false, IsActive<Configuration::First>,
     ConfigurationEntry<Configuration::First>},
    {"mnuConfiguration", "mnuConfiguration2", "#&2", Command::ConfigurationSecond,
     "Work with the settings of the second configuration", "", false,
     IsActive<Configuration::Second>, ConfigurationEntry<Configuration::Second>},
    {"mnuOptions", "mnuSettingsReport", "Write Settings &Report", Command::SettingsReport,
     "List every option in the file VEXA.SET of the program folder"},
    {"mnuOptions", "mnuSkewT", "Skew-T / Log-P", Command::DiagramSkewT, "Popular U.S. diagram",
     "Ctrl+1", true, Shows<DiagramType::SkewT>},
    {"mnuOptions", "mnuEmagram", "Emagram", Command::DiagramEmagram, "Similar to the Stuve diagram",
     "Ctrl+2", false, Shows<DiagramType::Emagram>},
    {"mnuOptions", "mnuTephigram", " Tephigram", Command::DiagramTephigram,
     "Popular European diagram", "Ctrl+3", false, Shows<DiagramType::Tephigram>},
    {"mnuOptions", "mnuTables", "&Tables"},
    {"mnuTables", "mnuSevere", "&Severe Weather Table", Command::SevereTable,
     "Arrange the severe-weather table and its thresholds"},
    {"", "mnuOFF", "Turn_Download_Timer_OFF", Command::DownloadTimerOff,
     "Stop waiting for the hours of the batch", "", false, nullptr, TimerEntry},
    {"", "mnuBeep", "Turn_Beeper_OFF", Command::BeeperOff, "Silence the alarm", "", false, nullptr,
     BeeperEntry},
};

}  // namespace

std::span<const MenuRow> MenuTree() {
  return kMenuTree;
}

}  // namespace vexa
