#include "archive/sounding_walk.h"

#include <gtest/gtest.h>

#include "archive/station_files.h"

namespace vexa::archive {
namespace {

// Each day is a tenth warmer than the one before, so its place shows in its first temperature, 28 C
// on the first; in pieces of two soundings and more a place is reached from before and from behind.
TEST(SoundingWalk, ReachesEveryPlaceOfALongFile) {
  const test::TemporaryFolder folder;
  const std::filesystem::path file = folder.Path() / "72558.txt";
  Write(file, IgraFile(72558, 30));
  SoundingWalk walk(file, 1000);
  for (const int place : {0, 1, 2, 9, 9, 28, 29, 3, 0}) {
    Loading loading = walk.Load(place, {});
    ASSERT_TRUE(loading.Sounding) << place;
    EXPECT_NEAR(loading.Sounding->Record.Temp(1), 28 + place / 10.0, 1e-9) << place;
  }
  const Loading behind = walk.Load(30, {});
  ASSERT_TRUE(behind.Failed);
  EXPECT_EQ(behind.Failed->Detail, "the file has 30 soundings now");
  EXPECT_TRUE(walk.Load(29, {}).Sounding) << "a place that is not there spoils nothing";
  SoundingWalk gone(folder.Path() / "none", 1000);
  EXPECT_TRUE(gone.Load(0, {}).Failed);
}

}  // namespace
}  // namespace vexa::archive
