#include "config/settings_report.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "config/catalogue.h"
#include "support/soundings.h"

namespace vexa {
namespace {

std::vector<std::string> RecordsOf(std::string_view text) {
  std::vector<std::string> records;
  while (!text.empty()) {
    const std::size_t end = text.find("\r\n");
    if (end == std::string_view::npos) {
      ADD_FAILURE() << "the last record lacks its end: " << text;
      break;
    }
    records.emplace_back(text.substr(0, end));
    text.remove_prefix(end + 2);
  }
  return records;
}

// Every record of the report with the defaults, as other programs that read it expect them.
const std::vector<std::string> kDefaultReport = {
    "Current VEXA configuration settings",
    "Version = 1.2.3",
    "Resolution = 1024x768",
    "",
    "PROGRAM CONFIGURATIONS ----------------------------------------",
    "Tab 1 ---------------------------------------------------------",
    "Above 100mb = no",
    "Screen title above skewt = yes",
    "Month-Year option = no",
    "Wind plot ratio = 0",
    "Wind plot (x-section) ratio = 0",
    "Feathers = default",
    "Hemisphere = by latitude",
    "Pressure Units = mb",
    "QNH = yes",
    "GPM units = METER",
    "Screen color = White",
    "Auto directory update = yes",
    "Tab 2 -------------------------------------------------------",
    "CAT type = FAA",
    "Shear normalization = yes",
    "Ice type = Smith-Feddes",
    "RH% = 60",
    "Storm motion = Bunkers",
    "Shear SR Layer Top = 6",
    "Shear SR Layer Bot = 0",
    "Shear SR Layer Deg = 30",
    "Shear SR Layer Pct = 75",
    "Shear xLayer top = 6",
    "Sat vapor pres = Water",
    "Ducting threshold = -157",
    "Tab 3 -------------------------------------------------------",
    "LPL = most unstable",
    "Multi-lift = no",
    "Search depth = 300",
    "CCL mean layer = 100",
    "EL lower limit = 1050",
    "CAPE base level = LFC",
    "CAPE temp base = dry",
    "CAPE interval = 1",
    "MPL display = yes",
    "CAPE depth display = both",
    "CAPE depth xKm depth = 3",
    "DCAPE mode = best",
    "EHI depth = 3",
    "VGP depth = 3",
    "Other -----------------------------------------------------",
    "ThermoNum = 1",
    "Movie time = 1  Skiploop = no",
    "  LoopNoReScaling = no",
    "",
    "DIAGRAM OPTIONS --------------------------------------------",
    "Tab 1 - Format ---------------------------------------------",
    "Diagram type = skewt",
    "Auto high-altitude emagram = true",
    "Emagram temperature lines = true",
    "Tephigram warning = true",
    "Stability bars = false",
    "Height scale = KM",
    "Surface line = true",
    "All TTAA lines = false",
    "Auto display analyses = true",
    "Front marks = true",
    "Analyses box = true",
    "Wind plots box = true",
    "Shade ground block = true",
    "Cursor sounding = true",
    "Cursor diagram grid = true",
    "Height mode = MSL",
    "Freeze line = true",
    "Tropo line = true",
    "Tab 2 - Pres & Temp ---------------------------------------------",
    "MB limit = 100",
    "Auto MB select = true",
    "Y-Grid units = MB",
    "Y-Grid interval = 50",
    "Temp grid units = C",
    "Temp dual scale = false",
    "Temp grid interval = 10",
    "Temp grid scaling = AUTO",
    "Temp MIN = -40  Temp MAX = 40",
    "Tab 3 - Reference Lines -------------------------------------------",
    "Dry adiabats = true Saturation adiabats = true Mixing ratio lines = true",
    "Dry color = 6  Sat color = 2  Wet color = 3",
    "Dry label = false  Sat label = false  Wet label = true",
    "Dry Ref Val = 300  Plot = false  Label = false",
    "Sat Ref Val = 20  Plot = false  Label = false",
    "Mix Ref Val = 10  Plot = false  Label = false",
    "Tab 4 - Sounding Data ---------------------------------------------",
    "T/Td dots = false",
    "T/Td circles = false",
    "T/Td thick lines = some",
    "Td lines None/Dash/Solid = Solid",
    "Td color = 9",
    "Wind shafts = true  Wind dots = true",
    "Wind display = Barbs  Wind speed units = KNOTS",
    "Tab 5 - Analyses Data -------------------------------------------",
    "Thermo display type = classic",
    "Main = true  Europe = false  CAPE = true  Fog = false",
    "Thermo units = METER  Thermo units = C",
    "PTunits = K",
    "Tab 6 - Hodo ------------------------------------------------------",
    "Plot Hodo = truePlot SM Vector = true",
    "Hodo location = dependent",
    "Hodo Grid origin = Ground",
    "Hodo depth mode = All  Depth limit = 12",
    "Tab 7 - Standard Atmosphere ---------------------------------------",
    "ICAO line = false  ICAO None/5/10 = every 5",
    "Tab 8 - Custom lines ----------------------------------------------",
    "Line #1",
    "Plot = false  Label = true",
    "Color = 4  Height = 0",
    "dash",
    "Line #2",
    "Plot = false  Label = true",
    "Color = 4  Height = 0",
    "dash",
    "Line #3",
    "Plot = false  Label = true",
    "Color = 4  Height = 0",
    "dash",
    "Line #4",
    "Plot = false  Label = true",
    "Color = 4  Height = 0",
    "dash",
    "Line #5",
    "Plot = false  Label = true",
    "Color = 4  Height = 0",
    "dash",
    "",
    "SYSTEM OPTIONS --------------------------------------------",
    "-----------------------------------------------------------",
    "Drive D/X/Ref = vexadata\\, crosdata\\, ",
    "Resolution = 1024x768",
    "CursorGrid = true  CursorData = true",
    "Autoload = false AutoDrive = ",
    "AutoType = RAW FilterIndexNum = 1",
    "ShortCutValue = 0",
    "SortMode = name  SoftFlip = false",
    "TriggerHgt = 3000 LiftEq = 1 SoarHgtMode = MSL",
    "Darklines = false",
    "HodoInvert = false",
    "HodoAnalInvert = false",
    "Auto Analysis Load = true",
    "PrintTitleMemory =  DarklinesMemory = false",
    "DumpData1-7 M, MSL, KNOTS, C, cm, true, false",
};

TEST(SettingsReport, RecordByRecord) {
  const std::vector<std::string> records = RecordsOf(SettingsReport({}, {"1.2.3", "1024x768"}));
  ASSERT_EQ(records.size(), kDefaultReport.size());
  for (std::size_t i = 0; i < records.size(); ++i) EXPECT_EQ(records[i], kDefaultReport[i]) << i;
}

TEST(SettingsReport, ShowsWhatIsSet) {
  Options options;
  options.Diagram = DiagramType::Tephigram;
  options.CustomLines[1].Style = CustomLineStyle::Dots;
  options.System.PrintTitleMemory = "two\r\nlines";
  const test::TemporaryFolder folder;
  ASSERT_FALSE(WriteSettingsReport(folder.Path(), options, {"1.2.3", "1024x768"}));
  const std::vector<std::string> records = RecordsOf(ReadFile(folder.Path() / "VEXA.SET").Value());
  std::vector<std::string> expected = kDefaultReport;
  const auto replace = [&expected](std::string_view old, int nth, const char* text) {
    for (std::string& record : expected) {
      if (record == old && nth-- == 1) record = text;
    }
  };
  replace("Diagram type = skewt", 1, "Diagram type = tephigram");
  replace("dash", 2, "dots");
  replace("PrintTitleMemory =  DarklinesMemory = false", 1,
          "PrintTitleMemory = two  lines DarklinesMemory = false");
  EXPECT_EQ(records, expected);

  const auto fault = WriteSettingsReport(folder.Path() / "VEXA.SET", options, {});
  ASSERT_TRUE(fault);
  EXPECT_EQ(fault->File, "VEXA.SET");
}

}  // namespace
}  // namespace vexa
