// A quarter of the Earth's circumference is 6371 km times pi / 2 = 10007.5 km, a degree 111.19 km.
#include "core/great_circle.h"

#include <gtest/gtest.h>

namespace vexa {
namespace {

TEST(GreatCircle, WaysAndDirections) {
  const struct {
    const char* About;
    double Lat1, Lon1, Lat2, Lon2, Km, Bearing;
  } cases[] = {{"east along the equator", 0, 0, 0, 90, 10007.5, 90},
               {"west across the date line", 0, -179, 0, 179, 222.39, 270},
               {"north is 360", 10, 20, 11, 20, 111.19, 360},
               {"south", 11, 20, 10, 20, 111.19, 180},
               {"to the other side of the Earth", 90, 0, -90, 0, 20015.1, 180}};
  for (const auto& c : cases) {
    EXPECT_NEAR(DistanceKm(c.Lat1, c.Lon1, c.Lat2, c.Lon2), c.Km, 0.06) << c.About;
    EXPECT_NEAR(InitialBearing(c.Lat1, c.Lon1, c.Lat2, c.Lon2), c.Bearing, 0.001) << c.About;
  }
  EXPECT_EQ(DistanceKm(35.2, -97.4, 35.2, -97.4), 0);
}

}  // namespace
}  // namespace vexa
