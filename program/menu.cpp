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
         EscapeCaption(TextFromPath(PathFromSetting(file).filename()));
}

std::string UndoEntry(const Program& program) {
  return "&" + EscapeCaption(program.Doc.History().UndoText());
}

std::string RedoEntry(const Program& program) {
  return "&" + EscapeCaption(program.Doc.History().RedoText());
}

bool IsComparing(const Program& program) {
  return program.View.Mode == diagram::MultiMode::Compare;
}

bool IsOverlaying(const Program& program) {
  return program.View.Mode == diagram::MultiMode::Overlay;
}

bool ShowsIsa(const Program& program) {
  return program.Set.IcaoLine;
}

bool ShowsReference(const Program& program) {
  return program.View.ShowsReference;
}

template <bool diagram::ExtraLines::*Line>
bool ShowsLine(const Program& program) {
  return program.View.Lines.*Line;
}

// Stands in the menu bar only while a loop runs.
std::string StopLoopCaption(const Program& program) {
  return program.View.Looping ? "     > > >   STOP LOOP  < < <        (or press ESC)" : "";
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
    {"mnuFile", "mnuNew", "&New Sounding", Command::NewSounding, "Enter a sounding by hand",
     "Ctrl+N"},
    {"mnuFile", "mnuOpen", "&Open Sounding", Command::Open, "Choose one or more sounding files",
     "Ctrl+O"},
    {"mnuFile", "mnuPaste", "&Paste Sounding", Command::Paste,
     "Open the text on the clipboard as a sounding", "Ctrl+V"},
    {.In = "mnuFile",
     .Name = "mnuSaveAs",
     .Caption = "&Save Sounding As...",
     .Does = Command::SaveAs,
     .Hint = "Save the sounding in the native format",
     .Key = "Ctrl+S"},
    {"mnuFile", "mnuDownload", "&Download Data...", Command::Download,
     "Fetch a sounding from one of the sources"},
    {"mnuFile", "mnuTimer", "&Batch Processing...", Command::DownloadTimer,
     "Fetch many soundings, by hand or when their hour has come"},
    {"mnuFile", "mnuInfo", "Proper&ties...", Command::Properties,
     "Show where the sounding comes from and what it holds"},
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
    {"", "mnuEdit", "&Edit"},
    {.In = "mnuEdit",
     .Name = "mnuUndo",
     .Caption = "&Undo",
     .Does = Command::Undo,
     .Hint = "Take back the last change of the sounding",
     .Key = "Ctrl+Z",
     .Shows = UndoEntry},
    {.In = "mnuEdit",
     .Name = "mnuRedo",
     .Caption = "&Redo",
     .Does = Command::Redo,
     .Hint = "Make the change again that was taken back last",
     .Key = "Ctrl+Y",
     .Shows = RedoEntry},
    {.In = "mnuEdit",
     .Name = "mnuEditFile",
     .Caption = "Edit &DeCoded Data",
     .Does = Command::EditDecoded,
     .Hint = "Change the levels and the heading of the sounding",
     .Key = "Ctrl+E",
     .LineAbove = true},
    {"mnuEdit", "mnuEditData", "Edit &Source Data", Command::EditSource,
     "Change the text that the sounding was decoded from"},
    {"mnuEdit", "mnuEditSource", "Edit &Entire Source File", Command::EditEntireSource,
     "Change the file that the sounding came from"},
    {"mnuEdit", "mnuFilter", "Filter Sounding Data...", Command::Filter,
     "Thin a sounding of high density"},
    {"mnuEdit", "mnuEditStation", "Edit Station &Locator File", Command::EditStations,
     "Change the list of stations"},
    {"mnuEdit", "mnuEditMountain", "Edit &Mountain Parameter File", Command::NotBuilt,
     "Not in this version: the mountains of the mountain-wave display"},
    {"mnuEdit", "mnuAddTemp", "Add/Delete &Temperature Data...", Command::AddTemp,
     "Add or delete temperature levels"},
    {"mnuEdit", "mnuAddWind", "Add/Delete &Wind Data...", Command::AddWind,
     "Add or delete wind levels"},
    {"", "mnuDisplay", "&Displays"},
    {"mnuDisplay", "mnuSounding", "&Sounding", Command::SoundingDiagram,
     "Return to the sounding diagram"},
    {"mnuDisplay", "mnuSevereWx", "Se&vere Weather", Command::SevereWeather,
     "The severe-weather table of this sounding"},
    {"mnuDisplay", "mnuWinter", "&Winter Weather", Command::WinterWeather,
     "Precipitation type, snow and icing of this sounding"},
    {"mnuDisplay", "mnuScale", "&Layer Analyzer", Command::LayerAnalyzer,
     "Inversions, clouds, icing, turbulence, contrails and ducts"},
    {"mnuDisplay", "mnuHodoFront", "&Frontal Analysis", Command::NotBuilt,
     "Not in this version: fronts from the turning of the wind"},
    {"mnuDisplay", "mnuHodograph", "&Hodograph", Command::Hodograph,
     "Winds, storm motion and helicity", "Ctrl+H", false, IsUp<&Program::ShowsHodograph>, nullptr,
     true},
    {"mnuDisplay", "mnuHodogram", "Hodo&gram (3-D)", Command::Hodogram,
     "The way of the balloon in three dimensions", "Ctrl+G", false, IsUp<&Program::ShowsHodogram>,
     nullptr, true},
    {"mnuDisplay", "mnuWave", "&Mountain Wave", Command::NotBuilt,
     "Not in this version: lee waves behind mountains"},
    {"mnuDisplay", "mnuCross", "&Cross-Section", Command::NotBuilt,
     "Not in this version: soundings side by side"},
    {"mnuDisplay", "mnuSoaring", "S&oaring", Command::Soaring, "Thermals of the day"},
    {"mnuDisplay", "mnuCrossSectionReturn", "Cross-Section", Command::NotBuilt,
     "Not in this version: the return to a cross-section"},
    {"mnuDisplay", "mnuListings", "&Listings", Command::Listings,
     "The seven listings of this sounding", "Ctrl+L"},
    {"mnuDisplay", "mnuAnalyze", "&Analyze", Command::Analyze,
     "Show or hide the panel of all indices", "F4"},
    {"mnuDisplay", "mnuForecast", "F&orecast", Command::NotBuilt,
     "Not in this version: the forecast from a sounding upwind"},
    {"mnuDisplay", "mnuRefreshed", "&Refresh", Command::Refresh,
     "Redraw the diagram from the current data", "F5"},
    {.In = "mnuDisplay",
     .Name = "mnuRestore",
     .Caption = "Restore",
     .Does = Command::Restore,
     .Hint = "Take the sounding as it was loaded"},
    {"mnuDisplay", "mnuZoom", "&Zoom", Command::Zoom,
     "Choose a region of the diagram with the mouse; the wheel zooms, too", "F7", true, nullptr,
     nullptr, false},
    {"mnuDisplay", "mnuUnZoom", "Un-Zoom", Command::UnZoom, "Back to the full diagram", "Ctrl+0"},
    {"mnuDisplay", "mnuSurface", "S&urface Values...", Command::SurfaceParcel,
     "Set temperature, dew point and wind at the surface and mix the air above", "", true, nullptr,
     nullptr, false},
    {"mnuDisplay", "mnuParcels", "Four &Parcels", Command::FourParcels,
     "Surface, mean-layer, most unstable and own parcel side by side", "F6", false, nullptr,
     nullptr, false},
    {"", "mnuCompares", "&Compare"},
    {"mnuCompares", "mnuCompare", "&Compare Another Sounding", Command::Compare,
     "Draw a second sounding on the diagram", "", false, IsComparing, nullptr, true},
    {"mnuCompares", "mnuOverlay", "&Overlay Multiple Soundings", Command::Overlay,
     "Draw several soundings on the diagram", "", false, IsOverlaying, nullptr, true},
    {"mnuCompares", "mnuICAO", "&ISA Sounding", Command::IsaSounding,
     "Draw the standard atmosphere on the diagram", "", false, ShowsIsa, nullptr, true},
    {"mnuCompares", "mnuReference", "&Reference Sounding", Command::ReferenceSounding,
     "Draw the reference sounding on the diagram", "", false, ShowsReference, nullptr, true},
    {"mnuCompares", "mnuPrsHgt", "&Pressure/Height Values", Command::PressHeights,
     "Write heights beside the pressures", "", true, ShowsLine<&diagram::ExtraLines::PressHeights>,
     nullptr, true},
    {"mnuCompares", "mnuHeightCorr", "&Height Correction Line (purple)", Command::HeightCorrection,
     "Draw what a pressure altitude has to be corrected by", "", false,
     ShowsLine<&diagram::ExtraLines::HeightCorrection>, nullptr, true},
    {"mnuCompares", "mnuContrail", "&Contrail Threshold Line (green)", Command::ContrailLine,
     "Draw the warmest temperatures at which engines leave trails", "", false,
     ShowsLine<&diagram::ExtraLines::Contrail>, nullptr, true},
    {"mnuCompares", "mnuSoar", "&Soaring", Command::SoaringLine,
     "Draw the dry adiabat of the day's thermals", "", false,
     ShowsLine<&diagram::ExtraLines::Soaring>, nullptr, true},
    {"", "mnuOptions", "&Options"},
    {"mnuOptions", "mnuDiag", "&Diagram Options", Command::DiagramOptions,
     "Set what the diagram shows and how", "F8"},
    {"mnuOptions", "mnuProgram", "&Program Options", Command::ProgramOptions,
     "Set units, analyses and parcels", "F9"},
    {"mnuOptions", "mnuSystem", "&System Options", Command::SystemOptions,
     "Set folders, file lists and export units", "Shift+F9"},
    {"mnuOptions", "mnuLoop", "&Loop Options", Command::LoopOptions,
     "Show the soundings that were opened together as a movie", ""},
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
    {"mnuTables", "mnuClouds", "&Cloud Layer Table", Command::CloudTable,
     "Enter the cloud layers of the sounding"},
    {"", "mnuOFF", "Turn_Download_Timer_OFF", Command::DownloadTimerOff,
     "Stop waiting for the hours of the batch", "", false, nullptr, TimerEntry},
    {"", "mnuBeep", "Turn_Beeper_OFF", Command::BeeperOff, "Silence the alarm", "", false, nullptr,
     BeeperEntry},
    {"", "mnuHelp", "&Help"},
    {"mnuHelp", "mnuMain", "&Main Menu", Command::HelpMain, "What each menu entry does"},
    {"mnuHelp", "mnuContents", "&Contents", Command::HelpContents, "All topics of the help"},
    {"mnuHelp", "mnuShortcut", "&Shortcut Keys", Command::HelpShortcuts,
     "Every key that chooses something", "Ctrl+F1"},
    {"mnuHelp", "mnuTechSpt", "&Technical Support", Command::HelpSupport,
     "What to do when something goes wrong", "", true},
    {"mnuHelp", "mnuVEXA", "&VEXA Program Web Site", Command::HelpWebSite,
     "Where the program is at home"},
    {"mnuHelp", "mnuUpdates", "VEXA Program &Updates", Command::HelpUpdates,
     "How to get a newer version"},
    {"", "mnuSpecial", "     > > >   STOP LOOP  < < <        (or press ESC)", Command::StopLoop,
     "Stop the running loop", "", false, nullptr, StopLoopCaption},
};

}  // namespace

std::span<const MenuRow> MenuTree() {
  return kMenuTree;
}

}  // namespace vexa
