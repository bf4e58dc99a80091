#include "program/readout.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "support/document.h"
#include "support/soundings.h"

namespace vexa {
namespace {

TEST(ReadDiagram, InvertsTheMappingOfThePicture) {
  SilentInteraction silent;
  Program program;
  program.Doc.AskThrough(&silent);
  test::Show(program, test::ReferenceConvective());
  for (const DiagramType type :
       {DiagramType::SkewT, DiagramType::Emagram, DiagramType::Tephigram}) {
    SCOPED_TRACE(Word(type));
    program.Set = {};
    program.Set.AutoHighEmagram = false;
    program.Set.Diagram = type;
    ASSERT_TRUE(Refresh(program, {.Sounding = true}));
    const diagram::DiagramMapping& mapping = program.Plot->Mapping;

    // The levels 700 hPa, 8.6 and -3.2 degrees, and 250 hPa without a dew point.
    const Readout low = ReadDiagram(program, mapping.ToPoint(10, 700));
    // 283.16 K * (1000 / 700) ^ 0.2856 = 313.525 K, by hand
    EXPECT_EQ(low.Grid, "700 mb   10.0 C   PT 313.5 K");
    EXPECT_EQ(low.Sounding, "Temp:8.6 C  Td:-3.2 C");
    const Readout high = ReadDiagram(program, mapping.ToPoint(-53.9, 250));
    EXPECT_EQ(high.Sounding, "Temp:-53.9 C  Td:--");
    const Rect& frame = mapping.Frame();
    const Readout outside = ReadDiagram(program, {frame.Right + 1, frame.Top});
    EXPECT_EQ(outside.Grid + outside.Sounding, "");

    const auto read = [&] { return ReadDiagram(program, mapping.ToPoint(10, 700)); };
    program.Set.CursorGrid = false;
    EXPECT_EQ(read().Grid, "");
    program.Set.CursorGrid = true;
    // The sounding's values are in the unit of the grid: 8.6 and -3.2 degrees.
    program.Set.TempGridUnits = TempUnits::Fahrenheit;
    program.Set.PtUnits = PotentialTempUnits::Celsius;
    program.Set.Pressure = PressureUnits::InHg;  // of QNH alone
    EXPECT_EQ(read().Grid, "700 mb   50.0 F   PT 40.4 C");
    EXPECT_EQ(read().Sounding, "Temp:47.5 F  Td:26.2 F");
    program.Set.CursorSounding = false;
    EXPECT_EQ(read().Sounding, "");
    program.Set.CursorSounding = true;
    program.Set.System.CursorData = false;
    EXPECT_EQ(read().Sounding, "");
  }
}

TEST(Readout, WindsReadAlikeInEveryUnit) {
  EXPECT_EQ(WindText({30.6, 4.6}, SpeedUnits::Knots), "031/5 kts");
  EXPECT_EQ(WindText({330, 10}, SpeedUnits::MetersPerSecond), "330/5.1 m/s");  // 10 x 0.5144
  EXPECT_EQ(WindText({0.2, 30}, SpeedUnits::Knots), "360/30 kts");
}

TEST(Readout, ExplainsTheIndexUnderThePointer) {
  Program program;
  test::Show(program, test::ReferenceConvective());
  ASSERT_TRUE(Refresh(program, {.Sounding = true}));
  const auto& spots = program.Plot->Page.HotSpots();
  const auto spot = std::ranges::find(spots, "KI", &HotSpot::Text);
  ASSERT_NE(spot, spots.end());
  const Point at{(spot->Where.Left + spot->Where.Right) / 2,
                 (spot->Where.Top + spot->Where.Bottom) / 2};
  const Readout readout = ReadDiagram(program, at);
  EXPECT_EQ(readout.Spot, "KI  K Index: 31.9 C");
  EXPECT_NE(readout.Tip.find("T 850 hPa"), std::string::npos);
}

}  // namespace
}  // namespace vexa
