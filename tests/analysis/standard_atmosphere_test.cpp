// Expected values: tables of ICAO Doc 7488 to the digits printed there.
#include "analysis/standard_atmosphere.h"

#include <gtest/gtest.h>

#include <cmath>

#include "core/markers.h"

namespace vexa::analysis {
namespace {

TEST(StandardAtmosphere, AgreesWithTheTables) {
  const struct {
    double Height, Press, TempK;
  } byHeight[] = {{0, 1013.25, 288.15},      {1000, 898.7456, 281.65},  {5000, 540.1989, 255.65},
                  {10000, 264.3624, 223.15}, {11000, 226.3204, 216.65}, {20000, 54.7488, 216.65},
                  {30000, 11.7186, 226.65},  {32000, 8.680158, 228.65}, {47000, 1.109058, 270.65},
                  {50000, 0.7594, 270.65},   {51000, 0.669385, 270.65}, {71000, 0.039564, 214.65},
                  {80000, 0.008863, 196.65}};
  for (const auto& c : byHeight) {
    EXPECT_NEAR(IsaPressure(c.Height) / c.Press, 1, 7e-5) << c.Height;
    EXPECT_NEAR(IsaTemp(c.Height), c.TempK - 273.15, 1e-9) << c.Height;
  }
  const struct {
    double Press, Height;
  } byPress[] = {{1000, 110.9}, {925, 762.0},   {850, 1457.3},  {700, 3012.2}, {500, 5574.4},
                 {300, 9164.0}, {200, 11784.0}, {100, 16179.7}, {10, 31054.6}};
  for (const auto& c : byPress) EXPECT_NEAR(IsaHeight(c.Press), c.Height, 0.1) << c.Press;
}

TEST(StandardAtmosphere, HeightUndoesPressureAndEndsAt80Km) {
  for (double height = -2000; height <= 79999; height += 487) {
    EXPECT_NEAR(IsaHeight(IsaPressure(height)), height, 1e-4);
  }
  EXPECT_EQ(IsaPressure(80001), kNotReached);
  EXPECT_EQ(IsaHeight(0.008), kNotReached);
  EXPECT_EQ(IsaHeight(0), kNotReached);
  EXPECT_EQ(IsaHeight(std::nan("")), kNotReached);
  EXPECT_TRUE(IsMissing(IsaTemp(80001)));
}

}  // namespace
}  // namespace vexa::analysis
