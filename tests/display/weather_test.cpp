#include "display/weather.h"

#include "config/options.h"
#include "support/soundings.h"

namespace vexa::display {
namespace {

const SheetRow* RowOf(const Sheet& sheet, std::string_view label) {
  for (const SheetBlock& block : sheet.Blocks) {
    for (const SheetRow& row : block.Rows) {
      if (row.Label == label) return &row;
    }
  }
  return nullptr;
}

TEST(WeatherSheets, ShowTheAnalysisInTheUnitsOfTheOptions) {
  const SoundingRecord sounding = test::ReferenceConvective();
  Options options;
  options.ThermoHeight = LengthUnits::Feet;
  options.SoarTm = 31;
  const analysis::AnalysisResults results = analysis::Analyse(sounding, options);
  const analysis::SevereTable table = analysis::DefaultSevereTable();
  const Shown shown{sounding, results, options, table};

  const Sheet severe = SevereWeatherSheet(shown);
  const SheetRow& lifted = *RowOf(severe, "LI - Lifted Index");
  EXPECT_EQ(lifted.Value, "-8.1");
  EXPECT_EQ(lifted.Step, Stress::Third);
  EXPECT_EQ(lifted.Index, "LI");

  const Sheet soaring = SoaringSheet(shown);
  // 1617 m above the sea
  EXPECT_TRUE(RowOf(soaring, "Thermal top (index 0)")->Value.starts_with("530"));
  EXPECT_EQ(RowOf(soaring, "Cloud base")->Value, "blue");

  // At 36 C clouds end the thermals, with an index far below 0.
  options.SoarTm = 36;
  options.Speed = SpeedUnits::MetersPerSecond;
  const analysis::AnalysisResults cloudy = analysis::Analyse(sounding, options);
  const Shown hot{sounding, cloudy, options, table};
  EXPECT_NE(RowOf(SoaringSheet(hot), "Thermal top (cloud base)"), nullptr);
  EXPECT_EQ(RowOf(SevereWeatherSheet(hot), "T1/T2 Gust (kt)")->Value, "28/40");
}

}  // namespace
}  // namespace vexa::display
