#include "program/menu.h"

#include <algorithm>
#include <cstddef>

#include "core/files.h"
#include "core/numbers.h"
#include "picture/page_layouts.h"
#include "program/commands.h"
#include "program/displays.h"
#include "program/edit_commands.h"
#include "program/needs.h"
#include "program/section_display.h"
#include "program/sounding_loop.h"
#include "program/view_commands.h"

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

constexpr EntryState State() {
  return {};
}

constexpr Action NotBuilt() {
  Action action;
  action.IsBuilt = false;
  return action;
}
constexpr Action kNotBuilt = NotBuilt();

constexpr std::string_view kLayoutMenu = "mnuLayouts";

constexpr MenuRow kMenuTree[] = {
    {"", "mnuFile", "&File"},
    {"mnuFile", "mnuNew", "&New Sounding", Opens("NewSounding"), "Enter a sounding by hand",
     "Ctrl+N"},
    {"mnuFile", "mnuOpen", "&Open Sounding", commands::DataAccess,
     "Choose one or more sounding files", "Ctrl+O"},
    {"mnuFile", "mnuPaste", "&Paste Sounding", Opens("Paste"),
     "Open the text on the clipboard as a sounding", "Ctrl+V"},
    {"mnuFile", "mnuSaveAs", "&Save Sounding As...", commands::SaveAs,
     "Save the sounding in the native format", "Ctrl+S",
     State().Wants(NeedsSounding, "(save sounding)")},
    {"mnuFile", "mnuDownload", "&Download Data...", Opens("Download"),
     "Fetch a sounding from one of the sources"},
    {"mnuFile", "mnuExample", "Exa&mple Sounding", commands::OpenExample,
     "Open the sounding that comes with the program, an evening of severe storms"},
    {"mnuFile", "mnuTimer", "&Batch Processing...", Opens("BatchProcessing"),
     "Fetch many soundings, by hand or when their hour has come"},
    {"mnuFile", "mnuArchive", "Searc&h Archive...", Opens("Archive"),
     "Find soundings in a catalogue of many"},
    {"mnuFile", "mnuInfo", "Proper&ties...", Opens("Properties"),
     "Show where the sounding comes from and what it holds", "",
     State().Wants(NeedsLevels, "(sounding properties)")},
    {"mnuFile", "mnuAutoLoad", "Auto-&Load This Sounding", commands::AutoLoad,
     "Load this sounding whenever the program starts", "",
     State().Switch(commands::IsAutoLoaded).Wants(NeedsLevels, "(auto-load)")},
    {"mnuFile", "mnuPrintData", "Print Sounding &Data", Opens("PrintData"),
     "Print the levels as a table", "",
     State().Wants(NeedsLevels, "(print sounding data)").Below()},
    {"mnuFile", "PrintDeCodedData", "Print &DeCoded Data...", Opens("PrintDeCodedData"),
     "Print the sounding as it was decoded", "",
     State().Wants(NeedsSounding, "(print decoded data)")},
    {"mnuFile", "mnuPrintDataFile", "Print &Source Data...", Opens("PrintDataFile"),
     "Print the file that the sounding came from", "",
     State().Wants(NeedsLevels, "(print source data)")},
    {"mnuFile", "mnuDataDump", "&Export Sounding Data...", Opens("DataDump"),
     "Write the levels as text or spreadsheet", "",
     State().Wants(NeedsSounding, "(export sounding data)").Below()},
    {"mnuFile", "mnuPrint", "&Print Image...", Opens("PrintPlot"),
     "Print the diagram and the listings", "Ctrl+P"},
    {"mnuFile", "mnuSave", "Save &Image to File...", Opens("SaveImage"),
     "Save the diagram as an image file"},
    {"mnuFile", "mnuCopy", "&Copy Image to ClipBoard", Opens("CopyImage"),
     "Copy the diagram to the clipboard"},
    {"mnuFile", "mnuReportFolder", "Report &Folder...", Opens("ReportFolder"),
     "Write a folder with which the case can be repeated", "",
     State().Wants(NeedsSounding, "(report folder)")},
    {"mnuFile", "mnuRecentFile1", "RecentFile1", commands::OpenRecent<1>, "Open this file again",
     "", State().Named(RecentFile<1>).Below()},
    {"mnuFile", "mnuRecentFile2", "RecentFile2", commands::OpenRecent<2>, "Open this file again",
     "", State().Named(RecentFile<2>)},
    {"mnuFile", "mnuRecentFile3", "RecentFile3", commands::OpenRecent<3>, "Open this file again",
     "", State().Named(RecentFile<3>)},
    {"mnuFile", "mnuRecentFile4", "RecentFile4", commands::OpenRecent<4>, "Open this file again",
     "", State().Named(RecentFile<4>)},
    {"mnuFile", "mnuRecentFile5", "RecentFile5", commands::OpenRecent<5>, "Open this file again",
     "", State().Named(RecentFile<5>)},
    {"mnuFile", "mnuExit", "E&xit", commands::Exit, "End the program", "Ctrl+Q", State().Below()},
    {"", "mnuEdit", "&Edit"},
    {"mnuEdit", "mnuUndo", "&Undo", commands::UndoEdit, "Take back the last change of the sounding",
     "Ctrl+Z", State().Named(UndoEntry).Wants(NeedsUndo, "(undo)")},
    {"mnuEdit", "mnuRedo", "&Redo", commands::RedoEdit,
     "Make the change again that was taken back last", "Ctrl+Y",
     State().Named(RedoEntry).Wants(NeedsRedo, "(redo)")},
    {"mnuEdit", "mnuEditFile", "Edit &DeCoded Data", Opens("LevelEditor"),
     "Change the levels and the heading of the sounding", "Ctrl+E",
     State().Wants(NeedsSounding, "(edit decoded data)").Below()},
    {"mnuEdit", "mnuEditData", "Edit &Source Data", Opens("TextEditor"),
     "Change the text that the sounding was decoded from", "",
     State().Wants(NeedsLevels, "(edit source data)")},
    {"mnuEdit", "mnuEditSource", "Edit &Entire Source File", Opens("SourceFile"),
     "Change the file that the sounding came from", "",
     State().Wants(NeedsLevels, "(edit source file)")},
    {"mnuEdit", "mnuFilter", "Filter Sounding Data...", commands::FilterSounding,
     "Thin a sounding of high density", "", State().Wants(NeedsSounding, "(filter sounding data)")},
    {"mnuEdit", "mnuEditStation", "Edit Station &Locator File", Opens("StationEditor"),
     "Change the list of stations"},
    {"mnuEdit", "mnuEditMountain", "Edit &Mountain Parameter File", Opens("MountainFile"),
     "Change the mountains that the stations' waves come from"},
    {"mnuEdit", "mnuAddTemp", "Add/Delete &Temperature Data...", Opens("TempLevels"),
     "Add or delete temperature levels", "", State().Wants(NeedsLevels, "(temperature data)")},
    {"mnuEdit", "mnuAddWind", "Add/Delete &Wind Data...", Opens("WindLevels"),
     "Add or delete wind levels", "", State().Wants(NeedsSounding, "(wind data)")},
    {"", "mnuDisplay", "&Displays"},
    {"mnuDisplay", "mnuSounding", "&Sounding", Action(commands::ShowAlone, "Sounding"),
     "Return to the sounding diagram"},
    {"mnuDisplay", "mnuCrossSectionReturn", "Cross-Section", ShowsDisplay("CrossSection"),
     "Return to the cross-section", "", State().Wants(NeedsSection, "(cross-section)")},
    {"mnuDisplay", "mnuListings", "&Listings", Opens("Listings"),
     "The seven listings of this sounding", "Ctrl+L", State().Wants(NeedsLevels, "(listings)")},
    {"mnuDisplay", "mnuAnalyze", "&Analyze", Opens("InfoPanel"),
     "Show or hide the panel of all indices", "F4"},
    {"mnuDisplay", "mnuRefreshed", "&Refresh", commands::DrawAgain,
     "Redraw the diagram from the current data", "F5"},
    {"mnuDisplay", "mnuRestore", "Restore", commands::RestoreSounding,
     "Take the sounding as it was loaded", "", State().Wants(NeedsAltered, "(restore)")},
    {"mnuDisplay", "mnuStepBack", "Previous Sounding", StepBack,
     "The sounding before this one of those that were opened together", "Alt+Left",
     State().Wants(NeedsEarlier, "(previous sounding)").Below()},
    {"mnuDisplay", "mnuStepForward", "&Next Sounding", StepForward,
     "The sounding after this one of those that were opened together", "Alt+Right",
     State().Wants(NeedsLater, "(next sounding)")},
    {"mnuDisplay", "mnuZoom", "&Zoom", Opens("ZoomRegion"),
     "Choose a region of the diagram with the mouse; the wheel zooms, too", "F7",
     State().Wants(NeedsSounding, "(zoom)").Below()},
    {"mnuDisplay", "mnuUnZoom", "Un-Zoom", commands::ZoomOutSizer, "Back to the full diagram",
     "Ctrl+0", State().Wants(NeedsZoom, "(un-zoom)")},
    {"mnuDisplay", "mnuSurface", "S&urface Values...", Opens("SurfaceValues"),
     "Set temperature, dew point and wind at the surface and mix the air above", "",
     State().Wants(NeedsSounding, "(surface values)").Below()},
    {"mnuDisplay", "mnuParcels", "Four &Parcels", Opens("FourParcels"),
     "Surface, mean-layer, most unstable and own parcel side by side", "F6",
     State().Wants(NeedsSounding, "(four parcels)")},
    {"", "mnuCompares", "&Compare"},
    {"mnuCompares", "mnuCompare", "&Compare Another Sounding", commands::CompareAnother,
     "Draw a second sounding on the diagram", "",
     State().Switch(IsComparing).Wants(NeedsSounding, "(compare sounding)")},
    {"mnuCompares", "mnuOverlay", "&Overlay Multiple Soundings", commands::OverlaySeveral,
     "Draw several soundings on the diagram", "",
     State().Switch(IsOverlaying).Wants(NeedsSounding, "(overlay soundings)")},
    {"mnuCompares", "mnuICAO", "&ISA Sounding", commands::ToggleIsa,
     "Draw the standard atmosphere on the diagram", "", State().Switch(ShowsIsa)},
    {"mnuCompares", "mnuReference", "&Reference Sounding", commands::ToggleReference,
     "Draw the reference sounding on the diagram", "", State().Switch(ShowsReference)},
    {"mnuCompares", "mnuPrsHgt", "&Pressure/Height Values",
     commands::ToggleLine<&diagram::ExtraLines::PressHeights>, "Write heights beside the pressures",
     "",
     State()
         .Switch(ShowsLine<&diagram::ExtraLines::PressHeights>)
         .Wants(NeedsSounding, "(pressure/height values)")
         .Below()},
    {"mnuCompares", "mnuHeightCorr", "&Height Correction Line (purple)",
     commands::ToggleLine<&diagram::ExtraLines::HeightCorrection>,
     "Draw what a pressure altitude has to be corrected by", "",
     State()
         .Switch(ShowsLine<&diagram::ExtraLines::HeightCorrection>)
         .Wants(NeedsSounding, "(height correction line)")},
    {"mnuCompares", "mnuContrail", "&Contrail Threshold Line (green)",
     commands::ToggleLine<&diagram::ExtraLines::Contrail>,
     "Draw the warmest temperatures at which engines leave trails", "",
     State()
         .Switch(ShowsLine<&diagram::ExtraLines::Contrail>)
         .Wants(NeedsSounding, "(contrail threshold line)")},
    {"mnuCompares", "mnuSoar", "&Soaring", commands::ToggleLine<&diagram::ExtraLines::Soaring>,
     "Draw the dry adiabat of the day's thermals", "",
     State()
         .Switch(ShowsLine<&diagram::ExtraLines::Soaring>)
         .Wants(NeedsSounding, "(soaring line)")},
    {"", "mnuOptions", "&Options"},
    {"mnuOptions", "mnuDiag", "&Diagram Options", Opens("Diagram"),
     "Set what the diagram shows and how", "F8"},
    {"mnuOptions", "mnuProgram", "&Program Options", Opens("Config"),
     "Set units, analyses and parcels", "F9"},
    {"mnuOptions", "mnuSystem", "&System Options", Opens("System"),
     "Set folders, file lists and export units", "Shift+F9"},
    {"mnuOptions", "mnuLoop", "&Loop Options", Opens("LoopOptions"),
     "Show the soundings that were opened together as a movie", "",
     State().Wants(NeedsLevels, "(loop)")},
    {"mnuOptions", "mnuConfiguration", "&Configuration"},
    {"mnuConfiguration", "mnuConfiguration0", "&None",
     commands::ChooseConfiguration<Configuration::None>, "Work with the unnamed settings", "",
     State().Choice(IsActive<Configuration::None>)},
    {"mnuConfiguration", "mnuConfiguration1", "#&1",
     commands::ChooseConfiguration<Configuration::First>,
     "Work with the settings of the first configuration", "",
     State()
         .Choice(IsActive<Configuration::First>)
         .Named(ConfigurationEntry<Configuration::First>)},
    {"mnuConfiguration", "mnuConfiguration2", "#&2",
     commands::ChooseConfiguration<Configuration::Second>,
     "Work with the settings of the second configuration", "",
     State()
         .Choice(IsActive<Configuration::Second>)
         .Named(ConfigurationEntry<Configuration::Second>)},
    {"mnuOptions", "mnuSettingsReport", "Write Settings &Report", commands::WriteReport,
     "List every option in the file VEXA.SET of the program folder"},
    {"mnuOptions", "mnuSkewT", "Skew-T / Log-P", commands::ChooseDiagram<DiagramType::SkewT>,
     "Popular U.S. diagram", "Ctrl+1", State().Choice(Shows<DiagramType::SkewT>).Below()},
    {"mnuOptions", "mnuEmagram", "Emagram", commands::ChooseDiagram<DiagramType::Emagram>,
     "Similar to the Stuve diagram", "Ctrl+2", State().Choice(Shows<DiagramType::Emagram>)},
    {"mnuOptions", "mnuTephigram", " Tephigram", commands::ChooseDiagram<DiagramType::Tephigram>,
     "Popular European diagram", "Ctrl+3", State().Choice(Shows<DiagramType::Tephigram>)},
    {"mnuOptions", kLayoutMenu, "La&yout"},
    {"mnuOptions", "mnuTables", "&Tables"},
    {"mnuTables", "mnuSevere", "&Severe Weather Table", Opens("SevereTable"),
     "Arrange the severe-weather table and its thresholds", "",
     State().Wants(NeedsSounding, "(severe weather table)")},
    {"mnuTables", "mnuClouds", "&Cloud Layer Table", Opens("CloudEditor"),
     "Enter the cloud layers of the sounding", "",
     State().Wants(NeedsSounding, "(cloud layer table)")},
    {"", "mnuOFF", "Turn_Download_Timer_OFF", Opens("TimerOff"),
     "Stop waiting for the hours of the batch", "", State().Named(TimerEntry)},
    {"", "mnuBeep", "Turn_Beeper_OFF", Opens("BeeperOff"), "Silence the alarm", "",
     State().Named(BeeperEntry)},
    {"", "mnuHelp", "&Help"},
    {"mnuHelp", "mnuMain", "&Main Menu", Opens("HelpWindow", "main"), "What each menu entry does"},
    {"mnuHelp", "mnuContents", "&Contents", Opens("HelpWindow", "contents"),
     "All topics of the help"},
    {"mnuHelp", "mnuShortcut", "&Shortcut Keys", Opens("HelpWindow", "keys"),
     "Every key that chooses something", "Ctrl+F1"},
    {"mnuHelp", "mnuTechSpt", "&Technical Support", Opens("HelpWindow", "support"),
     "What to do when something goes wrong", "", State().Below()},
    {"mnuHelp", "mnuVEXA", "&VEXA Program Web Site", Opens("HelpWindow", "website"),
     "Where the program is at home"},
    {"mnuHelp", "mnuUpdates", "VEXA Program &Updates", Opens("HelpWindow", "updates"),
     "How to get a newer version"},
    {"", "mnuSpecial", "     > > >   STOP LOOP  < < <        (or press ESC)", StopLoop,
     "Stop the running loop", "", State().Named(StopLoopCaption)},
};

MenuRow EntryOf(const DisplayRow& display) {
  MenuRow row{
      .In = "mnuDisplay",
      .Name = display.Entry,
      .Caption = display.Caption,
      .Hint = display.Hint,
      .Key = display.Key,
      .State = {.IsSwitch = display.Toggles, .Needs = display.Needs, .Lacking = display.Lacking}};
  row.Does.Display = display.Id;
  row.Does.IsBuilt = display.Plot != nullptr;
  return row;
}

// The entry is called after its layout; every layout has one entry.
MenuRow EntryOf(const LayoutRow& layout) {
  MenuRow row{
      .In = kLayoutMenu, .Name = layout.Name, .Caption = layout.Caption, .Hint = layout.Hint};
  row.Does.Layout = layout.Name;
  return row;
}

constexpr std::string_view kDisplaysFollow = "mnuSounding";  // the entry that heads the displays

// The entries of the displays that follow an entry, each with those that follow it in turn.
void AddFollowers(std::string_view entry, std::span<const DisplayRow> displays,
                  std::vector<MenuRow>& tree) {
  for (const DisplayRow& display : displays) {
    const std::string_view after = display.After.empty() ? kDisplaysFollow : display.After;
    if (display.Entry.empty() || after != entry) continue;
    tree.push_back(EntryOf(display));
    AddFollowers(display.Entry, displays, tree);
  }
}

}  // namespace

std::vector<MenuRow> MenuTree(std::span<const DisplayRow> displays) {
  std::vector<MenuRow> tree;
  for (const MenuRow& row : kMenuTree) {
    tree.push_back(row);
    if (row.Name == kLayoutMenu) {
      for (const LayoutRow& layout : PageLayouts()) tree.push_back(EntryOf(layout));
    }
    AddFollowers(row.Name, displays, tree);
  }
  return tree;
}

const MenuRow* FindEntry(std::span<const MenuRow> tree, std::string_view name) {
  const auto row = std::ranges::find(tree, name, &MenuRow::Name);
  return row == tree.end() ? nullptr : &*row;
}

bool IsEnabled(const MenuRow& row, const Program& program) {
  if (!row.Does.IsBuilt) return false;
  return row.State.Needs == nullptr || row.State.Needs(program).empty();
}

std::optional<bool> IsChecked(const MenuRow& row, const Program& program) {
  if (row.State.IsChecked != nullptr) return row.State.IsChecked(program);
  if (!row.Does.Layout.empty()) return row.Does.Layout == LayoutInForce(program).Name;
  if (row.State.IsSwitch) return program.Displays.IsUp(row.Does.Display);
  return std::nullopt;
}

std::string HintOf(const MenuRow& row, const Program& program) {
  if (!row.Does.IsBuilt || IsEnabled(row, program)) return std::string(row.Hint);
  return std::string(row.State.Lacking) + " " + std::string(row.State.Needs(program));
}

}  // namespace vexa
