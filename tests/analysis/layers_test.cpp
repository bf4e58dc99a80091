// Expected values: the levels of the reference soundings by eye, crossings and lapse rates by hand.
#include "analysis/layers.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "config/options.h"
#include "support/derived_levels.h"
#include "support/soundings.h"

namespace vexa::analysis {
namespace {

using test::Derived;
using test::Profile;

std::vector<std::string> Listed(const LevelProfile& levels) {
  std::vector<std::string> listed;
  for (const Inversion& inversion : FindInversions(levels, FindTropopauses(levels))) {
    listed.push_back(std::string(Text(inversion.Kind)) + ' ' +
                     std::to_string(static_cast<int>(inversion.Base.Press)) + '-' +
                     std::to_string(static_cast<int>(inversion.Top.Press)));
  }
  return listed;
}

TEST(Inversions, AreMerged) {
  const struct {
    const char* About;
    SoundingRecord Sounding;
    std::vector<std::string> Found;
  } cases[] = {
      {"an isothermal layer inside joins, one on top does not",
       Profile({{1000, 10, 5}, {900, 4, 2}, {880, 5, 2}, {870, 5, 2}, {860, 6, 2}, {840, 6, 2}}),
       {"Frontal Inv. 900-860"}},
      {"no dew point",
       Profile({{1000, 10, 5}, {900, 4, 2}, {870, 6, 999.9}, {800, 0, 0}}),
       {"Unknown Inv. 900-870"}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.About);
    EXPECT_EQ(Listed(Derived(c.Sounding)), c.Found);
  }
}

TEST(FreezingLevels, AreAllCrossings) {
  const auto reference = FindFreezingLevels(Derived(test::ReferenceConvective()));
  ASSERT_EQ(reference.size(), 1u);
  EXPECT_NEAR(reference[0].Press, 613.1, 0.05);
  EXPECT_NEAR(reference[0].Height, 4230, 0.6);
  EXPECT_TRUE(FindFreezingLevels(Derived(test::ReferenceWinter())).empty());

  const auto many = FindFreezingLevels(Derived(Profile(
      {{1000, 0, -5}, {950, -2, -5}, {900, 2, -5}, {850, 0, -5}, {840, 0, -5}, {700, -9, -9}})));
  ASSERT_EQ(many.size(), 3u);  // the surface, one crossing, and one run of zeros
  EXPECT_EQ(many[0].Press, 1000);
  EXPECT_NEAR(many[1].Press, 924.662, 1e-3);  // sqrt(950 * 900)
  EXPECT_EQ(many[2].Press, 850);
}

}  // namespace
}  // namespace vexa::analysis
