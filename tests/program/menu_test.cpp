#include "program/menu.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "support/document.h"
#include "support/soundings.h"

namespace vexa {
namespace {

struct Entry {
  const char* In;
  const char* Name;
  const char* Caption;
};

// The whole menu as users know it, in its order; entries of our own may stand in between.
constexpr Entry kMenus[] = {
    {"", "mnuFile", "&File"},
    {"mnuFile", "mnuNew", "&New Sounding"},
    {"mnuFile", "mnuOpen", "&Open Sounding"},
    {"mnuFile", "mnuSaveAs", "&Save Sounding As..."},
    {"mnuFile", "mnuDownload", "&Download Data..."},
    {"mnuFile", "mnuTimer", "&Batch Processing..."},
    {"mnuFile", "mnuInfo", "Proper&ties..."},
    {"mnuFile", "mnuAutoLoad", "Auto-&Load This Sounding"},
    {"mnuFile", "mnuPrintData", "Print Sounding &Data"},
    {"mnuFile", "PrintDeCodedData", "Print &DeCoded Data..."},
    {"mnuFile", "mnuPrintDataFile", "Print &Source Data..."},
    {"mnuFile", "mnuDataDump", "&Export Sounding Data..."},
    {"mnuFile", "mnuPrint", "&Print Image..."},
    {"mnuFile", "mnuSave", "Save &Image to File..."},
    {"mnuFile", "mnuCopy", "&Copy Image to ClipBoard"},
    {"mnuFile", "mnuExit", "E&xit"},
    {"", "mnuEdit", "&Edit"},
    {"mnuEdit", "mnuEditFile", "Edit &DeCoded Data"},
    {"mnuEdit", "mnuEditData", "Edit &Source Data"},
    {"mnuEdit", "mnuEditSource", "Edit &Entire Source File"},
    {"mnuEdit", "mnuFilter", "Filter Sounding Data..."},
    {"mnuEdit", "mnuEditStation", "Edit Station &Locator File"},
    {"mnuEdit", "mnuEditMountain", "Edit &Mountain Parameter File"},
    {"mnuEdit", "mnuAddTemp", "Add/Delete &Temperature Data..."},
    {"mnuEdit", "mnuAddWind", "Add/Delete &Wind Data..."},
    {"", "mnuDisplay", "&Displays"},
    {"mnuDisplay", "mnuSounding", "&Sounding"},
    {"mnuDisplay", "mnuSevereWx", "Se&vere Weather"},
    {"mnuDisplay", "mnuWinter", "&Winter Weather"},
    {"mnuDisplay", "mnuScale", "&Layer Analyzer"},
    {"mnuDisplay", "mnuHodoFront", "&Frontal Analysis"},
    {"mnuDisplay", "mnuFrontSeries", "Front Height in &Time"},
    {"mnuDisplay", "mnuHodograph", "&Hodograph"},
    {"mnuDisplay", "mnuHodogram", "Hodo&gram (3-D)"},
    {"mnuDisplay", "mnuWave", "&Mountain Wave"},
    {"mnuDisplay", "mnuCross", "&Cross-Section"},
    {"mnuDisplay", "mnuSoaring", "S&oaring"},
    {"mnuDisplay", "mnuCrossSectionReturn", "Cross-Section"},
    {"mnuDisplay", "mnuListings", "&Listings"},
    {"mnuDisplay", "mnuAnalyze", "&Analyze"},
    {"mnuDisplay", "mnuForecast", "F&orecast"},
    {"mnuDisplay", "mnuRefreshed", "&Refresh"},
    {"mnuDisplay", "mnuRestore", "Restore"},
    {"mnuDisplay", "mnuZoom", "&Zoom"},
    {"mnuDisplay", "mnuUnZoom", "Un-Zoom"},
    {"", "mnuCompares", "&Compare"},
    {"mnuCompares", "mnuCompare", "&Compare Another Sounding"},
    {"mnuCompares", "mnuOverlay", "&Overlay Multiple Soundings"},
    {"mnuCompares", "mnuICAO", "&ISA Sounding"},
    {"mnuCompares", "mnuReference", "&Reference Sounding"},
    {"mnuCompares", "mnuPrsHgt", "&Pressure/Height Values"},
    {"mnuCompares", "mnuHeightCorr", "&Height Correction Line (purple)"},
    {"mnuCompares", "mnuContrail", "&Contrail Threshold Line (green)"},
    {"mnuCompares", "mnuSoar", "&Soaring"},
    {"", "mnuOptions", "&Options"},
    {"mnuOptions", "mnuDiag", "&Diagram Options"},
    {"mnuOptions", "mnuProgram", "&Program Options"},
    {"mnuOptions", "mnuLoop", "&Loop Options"},
    {"mnuOptions", "mnuTables", nullptr},
    {"mnuTables", "mnuSevere", "&Severe Weather Table"},
    {"mnuTables", "mnuClouds", "&Cloud Layer Table"},
    {nullptr, "mnuOFF", "Turn_Download_Timer_OFF"},
    {nullptr, "mnuBeep", "Turn_Beeper_OFF"},
    {"", "mnuHelp", "&Help"},
    {"mnuHelp", "mnuMain", "&Main Menu"},
    {"mnuHelp", "mnuContents", "&Contents"},
    {"mnuHelp", "mnuShortcut", "&Shortcut Keys"},
    {"mnuHelp", "mnuTechSpt", "&Technical Support"},
    {"mnuHelp", "mnuVEXA", "&VEXA Program Web Site"},
    {"mnuHelp", "mnuUpdates", "VEXA Program &Updates"},
    {nullptr, "mnuSpecial", "     > > >   STOP LOOP  < < <        (or press ESC)"},
};

// Not there yet; an entry leaves this list with the display that it opens.
const std::set<std::string> kStillToCome = {};

TEST(MenuTree, StandsCaptionByCaptionInItsOrder) {
  std::map<std::string, std::ptrdiff_t> lastIn;  // place of the last entry of each menu
  const auto tree = MenuTree();
  for (const Entry& wanted : kMenus) {
    SCOPED_TRACE(wanted.Name);
    const auto row = std::ranges::find(tree, wanted.Name, &MenuRow::Name);
    if (row == tree.end()) {
      EXPECT_TRUE(kStillToCome.contains(wanted.Name)) << "the entry is missing";
      continue;
    }
    if (wanted.Caption != nullptr) {
      EXPECT_EQ(row->Caption, wanted.Caption);
    }
    if (wanted.In == nullptr) continue;
    EXPECT_EQ(row->In, wanted.In);
    const std::ptrdiff_t place = row - tree.begin();
    EXPECT_GT(place, lastIn.try_emplace(wanted.In, -1).first->second) << "out of order";
    lastIn[wanted.In] = place;
  }
}

TEST(MenuTree, NamesAndKeysAreUniqueAndMenusComeFirst) {
  std::set<std::string_view> names = {""};
  std::set<std::string_view> keys;
  for (const MenuRow& row : MenuTree()) {
    SCOPED_TRACE(row.Name);
    EXPECT_TRUE(names.contains(row.In));
    EXPECT_TRUE(names.insert(row.Name).second);
    EXPECT_TRUE(row.Key.empty() || keys.insert(row.Key).second);
    EXPECT_NE(!row.Does.IsMenu(), row.Hint.empty());
  }
}

// One display's entry may follow another's; none is lost for naming an entry that is not there.
TEST(MenuTree, EveryDisplayHasItsEntry) {
  const DisplayRow rows[] = {{.Id = "Second", .Entry = "mnuSecond", .After = "mnuFirst"},
                             {.Id = "First", .Entry = "mnuFirst"},
                             {.Id = "Third", .Entry = "mnuThird", .After = "mnuSecond"}};
  const auto tree = MenuTree(rows);
  const auto first = std::ranges::find(tree, "mnuFirst", &MenuRow::Name);
  ASSERT_GE(tree.end() - first, 3);
  EXPECT_EQ(first[1].Name, "mnuSecond");
  EXPECT_EQ(first[2].Name, "mnuThird");
  for (const DisplayRow& display : AllDisplays()) {
    if (display.Entry.empty()) continue;
    EXPECT_NE(FindEntry(MenuTree(), display.Entry), nullptr)
        << display.Id << " follows \"" << display.After << "\", which is no entry";
  }
}

TEST(MenuTree, EntriesSayWhatTheyLack) {
  Program program;
  const std::vector<MenuRow> tree = MenuTree();
  const auto row = [&tree](std::string_view name) -> const MenuRow& {
    return *FindEntry(tree, name);
  };
  EXPECT_FALSE(IsEnabled(row("mnuSevereWx"), program));
  EXPECT_EQ(HintOf(row("mnuSevereWx"), program), "(severe weather) needs a sounding");
  EXPECT_TRUE(IsEnabled(row("mnuOpen"), program));
  // The words by which users know what is meant.
  for (const auto& [name, words] : {std::pair{"mnuDataDump", "(export sounding data)"},
                                    {"mnuSevereWx", "(severe weather)"},
                                    {"mnuWinter", "(winter weather)"},
                                    {"mnuScale", "(layer analyzer)"},
                                    {"mnuCompare", "(compare sounding)"},
                                    {"mnuOverlay", "(overlay soundings)"},
                                    {"mnuPrsHgt", "(pressure/height values)"},
                                    {"mnuHeightCorr", "(height correction line)"},
                                    {"mnuContrail", "(contrail threshold line)"},
                                    {"mnuSevere", "(severe weather table)"},
                                    {"mnuClouds", "(cloud layer table)"}}) {
    EXPECT_FALSE(IsEnabled(row(name), program)) << name;
    EXPECT_EQ(HintOf(row(name), program), std::string(words) + " needs a sounding");
  }
  EXPECT_EQ(HintOf(row("mnuUndo"), program), "(undo) needs a change of the sounding");
  test::Show(program, test::ReferenceWinter());
  EXPECT_TRUE(IsEnabled(row("mnuSevereWx"), program));
  EXPECT_EQ(HintOf(row("mnuSevereWx"), program), row("mnuSevereWx").Hint);
  EXPECT_EQ(HintOf(row("mnuCross"), program),
            "(cross-section) needs several soundings opened together");
  EXPECT_EQ(HintOf(row("mnuForecast"), Program{}), "(forecast) needs a sounding");
}

}  // namespace
}  // namespace vexa
