#include "diagram/line_legend.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "config/options.h"
#include "diagram/palette.h"
#include "support/page_checks.h"

namespace vexa::diagram {
namespace {

TEST(LineLegend, KeepsInItsRegionAndSaysWhatIsMissing) {
  const Options options;
  const std::size_t all = LegendEntries(options).size();
  for (const double width : {80, 120, 264, 356, 620, 900}) {
    for (const double height : {20, 120, 400, 1200}) {
      SCOPED_TRACE(std::to_string(width) + " x " + std::to_string(height));
      const Rect region{600, 900, 600 + width * kUnitsPerPixel, 900 + height * kUnitsPerPixel};
      Picture page(12000, 9000, {});
      LineLegendBox(options).Draw(page, region);
      test::ExpectOrderly(page, region);
      const auto count = [&page](std::string_view tag) {
        return std::ranges::count(page.Items(), tag, &Item::Tag);
      };
      const auto drawn = static_cast<std::size_t>(count("legend name"));
      EXPECT_EQ(static_cast<std::size_t>(count("legend line")) > 0, drawn > 0);
      if (width < 120 || height < 120) {
        EXPECT_EQ(drawn, 0u);
      }
      if (width < 264 || height < 120) continue;
      EXPECT_EQ(count("left out") > 0, drawn < all);
      if (height >= 1200 || (height >= 400 && width >= 620)) {
        EXPECT_EQ(drawn, all);
        // One has a hatch over its area.
        EXPECT_EQ(static_cast<std::size_t>(count("legend line") + count("legend area")), all + 1);
      }
    }
  }
}

TEST(LineLegend, HasWhatTheOptionsDraw) {
  const auto has = [](const Options& options, std::string_view name) {
    return std::ranges::count(LegendEntries(options), name, &LegendEntry::Name) == 1;
  };
  using Set = DisplaySettings;
  const std::pair<const char*, bool Set::*> cases[] = {{"Wet bulb", &Set::WetBulbTrace},
                                                       {"Parcel", &Set::AutoAnalyses},
                                                       {"CAPE", &Set::AutoAnalyses},
                                                       {"CIN", &Set::AutoAnalyses},
                                                       {"Usual temperatures", &Set::UsualTemps},
                                                       {"Dry adiabats", &Set::DryAdiabats},
                                                       {"Saturated adiabats", &Set::SatAdiabats},
                                                       {"Mixing ratio", &Set::MixingLines},
                                                       {"Freezing level", &Set::FreezeLine},
                                                       {"Tropopause", &Set::TropoLine},
                                                       {"Ground", &Set::SurfaceLine},
                                                       {"Standard atmosphere", &Set::IcaoLine}};
  for (const auto& [name, isDrawn] : cases) {
    for (const bool isOn : {false, true}) {
      Options options;
      options.*isDrawn = isOn;
      EXPECT_EQ(has(options, name), isOn) << name;
      EXPECT_TRUE(has(options, "Temperature")) << name;
    }
  }
  Options options;
  const auto entries = LegendEntries(options);
  const auto fill = std::ranges::find(entries, "CAPE", &LegendEntry::Name)->Fill;
  EXPECT_EQ(fill.Ink, PaletteFor(options).Cape.Ink);
  EXPECT_TRUE(has(options, "Winds"));
  options.Winds = WindDisplay::None;
  EXPECT_FALSE(has(options, "Winds"));
  // The parcel of virtual temperatures needs that trace beside it.
  options.CapeTempBase = TempBase::Dry;
  EXPECT_FALSE(has(options, "Virtual temperature"));
  options.CapeTempBase = TempBase::Virtual;
  EXPECT_TRUE(has(options, "Virtual temperature"));
}

}  // namespace
}  // namespace vexa::diagram
