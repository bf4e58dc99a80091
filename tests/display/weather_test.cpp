#include "display/weather.h"

#include <algorithm>

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
  const SheetRow* lifted = RowOf(severe, "LI - Lifted Index");
  ASSERT_NE(lifted, nullptr);
  EXPECT_EQ(lifted->Value, "-8.1");
  EXPECT_EQ(lifted->Step, Stress::Third);
  EXPECT_EQ(lifted->Index, "LI");

  const Sheet soaring = SoaringSheet(shown);
  const SheetRow* top = RowOf(soaring, "Thermal top (index 0)");
  ASSERT_NE(top, nullptr);
  EXPECT_EQ(top->Value.substr(0, 3), "530");  // 1617 m above the sea
  EXPECT_EQ(RowOf(soaring, "Cloud base")->Value, "blue");
  EXPECT_NE(RowOf(WinterWeatherSheet(shown), "Type"), nullptr);

  // At 36 C clouds end the thermals, with an index far below 0.
  options.SoarTm = 36;
  options.Speed = SpeedUnits::MetersPerSecond;
  const analysis::AnalysisResults cloudy = analysis::Analyse(sounding, options);
  const Shown hot{sounding, cloudy, options, table};
  EXPECT_EQ(RowOf(SoaringSheet(hot), "Thermal top (index 0)"), nullptr);
  EXPECT_NE(RowOf(SoaringSheet(hot), "Thermal top (cloud base)"), nullptr);
  EXPECT_EQ(RowOf(SevereWeatherSheet(hot), "T1/T2 Gust (kt)")->Value, "28/40");
}

}  // namespace
}  // namespace vexa::display
