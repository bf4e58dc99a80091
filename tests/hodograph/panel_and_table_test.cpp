#include <gtest/gtest.h>

#include "config/options.h"
#include "hodograph/analysis_panel.h"
#include "hodograph/wind_table.h"
#include "support/soundings.h"

namespace vexa::hodograph {
namespace {

std::vector<std::string> Panel(const SoundingRecord& sounding, const Options& options) {
  const auto results = analysis::Analyse(sounding, options);
  std::vector<std::string> texts;
  for (const PanelLine& line :
       AnalysisPanel({.Sounding = sounding, .Results = results, .Set = options})) {
    texts.push_back(line.Text);
  }
  return texts;
}

// Movers 244.6/21.3 and 203.3/42.5 kt, mean wind 216.8/30.1 kt, BRN shear 69.8 m²/s² and helicity
// 297.6, 246.5 and 159.7 m²/s² were computed outside this program.
TEST(AnalysisPanel, TextsAndMasks) {
  Options options;
  options.ShearXLayerTopKm = 3;
  const auto expect = [&](const std::vector<const char*>& begins) {
    const std::vector<std::string> panel = Panel(test::ReferenceConvective(), options);
    ASSERT_EQ(panel.size(), begins.size());
    for (std::size_t i = 0; i < panel.size(); ++i) {
      EXPECT_TRUE(panel[i].starts_with(begins[i])) << panel[i];
    }
  };
  expect({" Storm-Motion: RM: 245/21.3 kts     LM: 203/42.5 kts     ", "(using a 0-6 km layer)",
          " Method:  Bunkers (shear-relative)", "      VGP: (0-3km)", "      EHI: (0-3km)",
          "      BRN:   48   BRN Shear: 69.8 m/s ", "     s-rH: (0-3km) 298",
          "     s-rH: (0-2km) 24",  // 246.5
          "     s-rH: (0-1km) 160", "Mean Wind:  (0-6km) 217/30 kts",
          "    Shear:  (0-3km) 35.5 kts"});
  options.Speed = SpeedUnits::MetersPerSecond;
  options.Mover = StormMover::Left;
  options.Motion = StormMotion::Traditional;
  options.ShearLayerTopKm = 5;
  expect({" Storm-Motion: LM: ", "(using a 0-5 km layer)",
          " Method: Traditional: 30-Deg & 75% of steering flow", "", "",
          "      BRN:   48   BRN Shear: 69.8 m/s ", "", "", "", "Mean Wind:  (0-6km) 217/15.5 m/s",
          ""});  // 30.1 x 0.5144
}

TEST(AnalysisPanel, ManualMotionAndNoWinds) {
  Options options;
  options.MotionMode = Scaling::Manual;
  options.ManualMotionDir = 240;
  options.ManualMotionSpd = 25;
  std::vector<std::string> panel = Panel(test::ReferenceConvective(), options);
  EXPECT_NE(panel[0].find("RM: 240/25.0 kts"), std::string::npos);
  EXPECT_EQ(panel[1], std::string(27, ' '));
  EXPECT_EQ(panel[2], " Method: " + std::string(20, ' ') + " Manual entry");

  SoundingRecord still = test::Profile({{1000, 20, 10}, {800, 10, 5}});
  panel = Panel(still, {});
  EXPECT_EQ(panel[0], " Storm-Motion: RM:  --                  LM:  --                  ");
  EXPECT_EQ(panel[6], "     s-rH: (0-3km) --");
  EXPECT_EQ(panel[9], "Mean Wind:  (0-6km) --");
  // Winds that begin aloft have no shear from the ground.
  const SoundingRecord aloft = test::Profile({}, {{5000, 270, 20}, {7000, 270, 60}});
  EXPECT_EQ(Panel(aloft, {})[10], "    Shear:  (0-6km) --");
  still.LatHemi = "S";
  EXPECT_EQ(Panel(still, {})[0].substr(0, 19), " Storm-Motion: LM: ");
}

TEST(WindTable, RowsByHand) {
  SoundingRecord sounding =
      test::Profile({{1000, 20, 10}, {900, 12, 5}, {800, 5, 0}, {700, 0, -5}},
                    {{100, 180, 20}, {1100, 270, 20}, {1500, 999.9, 10}, {2100, 270, 40}}, 100);
  const auto results = analysis::Analyse(sounding, {});
  HodographInput input{.Sounding = sounding, .Results = results, .Set = Options()};
  const Options options;
  WindTable table =
      ListWinds({.Sounding = sounding, .Results = results, .Set = options, .FrontNormal = 90.0});
  ASSERT_EQ(table.Header.size(), 2u);
  EXPECT_EQ(table.Header[0].substr(0, 43), " PRES    HEIGHT (m)    DIR / SPD    Thermal");
  EXPECT_EQ(table.Header[1].substr(0, 32), "(mb)    MSL    AGL   (deg) (kts)");
  ASSERT_EQ(table.Rows.size(), 3u);  // the level without a direction is left out
  EXPECT_EQ(table.Rows[0].substr(0, 46), " 1000   100      0   180 /  20.0     0 /   0.0");
  // From 180/20 to 270/20: west wind 20 minus south wind 20, a wind from 315 with 28.3 kt; towards
  // the east it blows with 20 kt.
  EXPECT_EQ(table.Rows[1].substr(5), "  1100   1000   270 /  20.0   315 /  28.3    20.0");
  EXPECT_EQ(table.Rows[2].substr(34), " 270 /  20.0    40.0");

  HodographSettings inverted;
  inverted.TableInverted = true;
  Options other;
  other.Pressure = PressureUnits::Hpa;
  other.Speed = SpeedUnits::MetersPerSecond;
  other.GpmUnits = LengthUnits::Feet;
  table = ListWinds({.Sounding = sounding, .Results = results, .Set = other, .Window = inverted});
  EXPECT_EQ(table.Header[0].substr(0, 19), " PRES    HEIGHT(ft)");
  EXPECT_EQ(table.Header[1].substr(0, 32), "(hPa)   MSL    AGL   (deg) (m/s)");
  // 1000 m are 3281 ft, 40 kt are 20.6 m/s; without a front there is no normal component.
  EXPECT_EQ(table.Rows[0].substr(5), "  6890   6562   270 /  20.6   270 /  10.3      --");
  EXPECT_EQ(table.Rows[2].substr(32), "     0 /   0.0      --");
}

}  // namespace
}  // namespace vexa::hodograph
