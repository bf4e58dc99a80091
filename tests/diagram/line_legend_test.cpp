#include "diagram/line_legend.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "config/options.h"
#include "support/page_checks.h"

namespace vexa::diagram {
namespace {

TEST(LineLegend, KeepsInItsRegionAndSaysWhatIsMissing) {
  const Options options;
  const std::size_t all = LegendEntries(options).size();
  for (const double width : {120, 264, 356, 620, 900}) {
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
      if (width < 264 || height < 120) continue;
      EXPECT_EQ(count("left out") > 0, drawn < all);
      if (height >= 1200 || (height >= 400 && width >= 620)) {
        EXPECT_EQ(drawn, all);
      }
    }
  }
}

TEST(LineLegend, HasWhatTheOptionsDraw) {
  const auto has = [](const Options& options, std::string_view name) {
    return std::ranges::count(LegendEntries(options), name, &LegendEntry::Name) == 1;
  };
  Options options;
  EXPECT_TRUE(has(options, "Mixing ratio"));
  EXPECT_FALSE(has(options, "Standard atmosphere"));
  options.MixingLines = false;
  options.IcaoLine = true;
  EXPECT_FALSE(has(options, "Mixing ratio"));
  EXPECT_TRUE(has(options, "Standard atmosphere"));
}

}  // namespace
}  // namespace vexa::diagram
