// Every exchange format the ways a user has it opened: as a file, which stands for dropping and the
// command line too, pasted, and of a file of several soundings those that are chosen.
#include <gtest/gtest.h>

#include <numeric>
#include <string>
#include <vector>

#include "core/files.h"
#include "ingest/decoder.h"
#include "program/commands.h"
#include "program/hodograph_commands.h"
#include "program/menu.h"
#include "program/program.h"
#include "program/sounding_loop.h"
#include "support/document.h"

namespace vexa {
namespace {

class OpenFormats : public test::ProgramAtHome {
 protected:
  OpenFormats() {
    program.ChooseSoundings = [](const std::vector<std::string>& titles) {
      std::vector<int> all(titles.size());
      std::iota(all.begin(), all.end(), 0);
      return all;
    };
  }
};

TEST_F(OpenFormats, OpenedOrPastedItIsTheSameSoundingAndIsDrawn) {
  const char* const files[] = {"native_1_9.RAW",       "dump_text.txt",
                               "dump_sheet.csv",       "columns_units.txt",
                               "iem_two.json",         "dropsonde_raw.txt",
                               "dropsonde_report.frd", "class_two.cls",
                               "eol_one.eol",          "bufkit_two.buf",
                               "spc_text.spc",         "igra_station.txt",
                               "fsl_two.fsl",          "wyoming_csv.csv",
                               "wyoming_page.html",    "wyoming_text.txt",
                               "iem_table.csv",        "model_two.csv",
                               "td6201_two.txt",       "coded_bulletins_20240305.txt"};
  for (const char* name : files) {
    SCOPED_TRACE(name);
    const std::string text = ReadFile(test::TestData(name)).Value();
    Do(OpenSoundings(program, {Saved(name, text)}));
    ASSERT_EQ(program.Current.FileName, name);
    ASSERT_TRUE(program.Plot);
    EXPECT_FALSE(program.Plot->Page.Items().empty());
    const SoundingRecord opened = program.Current.Record;
    Do(commands::LoadText(program, text));
    EXPECT_NE(program.Current.FileName, name);
    EXPECT_EQ(program.Current.Record.DataFormat, opened.DataFormat);
    EXPECT_EQ(program.Current.Record.Press, opened.Press);
    EXPECT_EQ(program.Current.Record.Dewpt, opened.Dewpt);
    EXPECT_EQ(program.Current.Record.WindHgt, opened.WindHgt);
  }
}

TEST_F(OpenFormats, WindsAloneHaveADiagramAndAHodograph) {
  ASSERT_TRUE(Refresh(
      program, commands::LoadText(program,
                                  "PPBB 55120 01234 90146 19522 19533 20040 90789 20545 21050 "
                                  "21555 91024 22060 22565 23070 9205/ 23575 24080=")));
  EXPECT_EQ(program.Current.Record.NumTempLevels(), 0);
  EXPECT_EQ(program.Current.Record.NumWindLevels(), 11);
  ASSERT_TRUE(program.Plot);
  EXPECT_FALSE(program.Plot->Page.Items().empty());
  // 25 000 ft are at 376 hPa of the standard atmosphere.
  EXPECT_EQ(program.Plot->Mapping.TopPress(), 300);
  const std::vector<MenuRow> tree = MenuTree();
  EXPECT_TRUE(IsEnabled(*FindEntry(tree, "mnuHodograph"), program));
  EXPECT_FALSE(IsEnabled(*FindEntry(tree, "mnuSevereWx"), program));
  const hodograph::HodographPlot plot =
      hodograph::PlotHodograph(HodographOf(program, program.Set), ImageSurface(1000, 750));
  EXPECT_FALSE(plot.Page.Items().empty());
}

}  // namespace
}  // namespace vexa
