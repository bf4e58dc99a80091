#include "sounding/sounding_walk.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <string>

#include "core/error_report.h"
#include "core/no_such_sounding.h"
#include "sounding/analysed_sounding.h"
#include "support/igra_file.h"
#include "support/soundings.h"

namespace vexa {
namespace {

class SoundingWalks : public testing::Test {
 protected:
  // Each day is a tenth warmer than the one before, so its place shows in its first temperature,
  // 28 C on the first; a piece holds two soundings and more.
  SoundingWalks() { std::ofstream(file_, std::ios::binary) << test::IgraFile(72558, kDays); }

  static constexpr int kDays = 30;
  static constexpr std::size_t kPiece = 1000;
  test::TemporaryFolder folder_{};
  std::filesystem::path file_ = folder_.Path() / "72558.txt";
};

TEST_F(SoundingWalks, ReachEveryPlaceOfALongFile) {
  SoundingWalk walk(file_, kPiece);
  for (const int place : {0, 1, 2, 9, 9, 28, 29, 3, 0}) {
    const Loading loading = walk.Load(place, {});
    ASSERT_TRUE(loading.Sounding) << place;
    EXPECT_NEAR(loading.Sounding->Record.Temp(1), 28 + place / 10.0, 1e-9) << place;
    EXPECT_EQ(loading.Sounding->From.Index, place);
    EXPECT_EQ(loading.HasMore, place < kDays - 1) << place;
  }
  const Loading behind = walk.Load(kDays, {});
  ASSERT_TRUE(behind.Failed);
  EXPECT_EQ(behind.Failed->Number, kFaultNoSuchSounding);
  EXPECT_EQ(behind.Failed->Detail, "72558.txt: it holds 30 soundings, number 31 was asked for");
  EXPECT_TRUE(walk.Load(29, {}).Sounding) << "a place that is not there spoils nothing";
  SoundingWalk gone(folder_.Path() / "none", kPiece);
  EXPECT_TRUE(gone.Load(0, {}).Failed);
}

// A number beyond the last is no damage of the file, be it one of many or a file's only sounding.
TEST_F(SoundingWalks, ANumberTooHighIsNoDamage) {
  const CurrentSounding nobody;
  for (const Source& beyond : {Source{.File = file_, .Index = kDays},
                               Source{.File = test::TestData("native_5_7.RAW"), .Index = 98},
                               Source{.File = test::TestData("iem_two.json"), .Index = 2},
                               Source{.File = test::TestData("packed_many.zip"), .Index = 98}}) {
    const Loading loading = LoadSounding(beyond, {});
    ASSERT_TRUE(loading.Failed) << beyond.File;
    EXPECT_EQ(FaultMessage(nobody, *loading.Failed), "The file holds no sounding of this number.")
        << loading.Failed->Detail;
  }
}

// A file that is read whole and one that comes in pieces are gone through alike; damage in the
// middle is told once, behind what could be read.
TEST_F(SoundingWalks, GoThroughAFileOnce) {
  for (const std::size_t piece : {kPiece, ingest::SourceStream::kPiece}) {
    SoundingWalk walk(file_, piece);
    int place = 0;
    for (auto loading = walk.Next({}); loading; loading = walk.Next({})) {
      ASSERT_TRUE(loading->Sounding) << place;
      EXPECT_NEAR(loading->Sounding->Record.Temp(1), 28 + place / 10.0, 1e-9) << place;
      ++place;
    }
    EXPECT_EQ(place, kDays);
    EXPECT_FALSE(walk.Next({}));
  }
  SoundingWalk gone(folder_.Path() / "none", kPiece);
  const auto refused = gone.Next({});
  ASSERT_TRUE(refused);
  EXPECT_TRUE(refused->Failed);
  EXPECT_FALSE(gone.Next({}));
  EXPECT_EQ(gone.Text(), nullptr);
}

// A long file's list has the memory of a piece; it is that of the file read whole.
TEST_F(SoundingWalks, ListAFileAsItIsWhole) {
  const auto titles = [](const std::vector<ingest::SourceEntry>& entries) {
    std::vector<std::string> all;
    for (const ingest::SourceEntry& entry : entries) all.push_back(entry.Title);
    return all;
  };
  std::vector<std::filesystem::path> files = {file_, file_.string() + "#7"};
  for (const char* name : {"packed_many.zip", "fsl_two.fsl", "native_5_7.RAW", "td6201_two.txt"}) {
    files.push_back(test::TestData(name));
  }
  for (const std::filesystem::path& file : files) {
    const auto source = SoundingSource::Open(file);
    ASSERT_TRUE(source) << file;
    EXPECT_EQ(titles(ListOf(file, kPiece).Value()), titles(source.Value().List())) << file;
  }
  EXPECT_EQ(ListOf(file_, kPiece).Value().size(), static_cast<std::size_t>(kDays));
  EXPECT_FALSE(ListOf(folder_.Path() / "none"));
  // A gzip stream of one stored block, behind which the last one lacks: no list of its beginning.
  const std::string text = test::IgraFile(72558, 4 * kDays);
  std::string block = "\x1f\x8b\b" + std::string(8, '\0');
  for (const std::size_t length : {text.size(), ~text.size()}) {
    block += {static_cast<char>(length & 0xFF), static_cast<char>(length >> 8 & 0xFF)};
  }
  const std::filesystem::path cut = folder_.Write("cut.gz", block + text);
  EXPECT_TRUE(SoundingWalk(cut, kPiece).Load(3, {}).Sounding);
  EXPECT_FALSE(ListOf(cut, kPiece));
}

// Of an archive a file was left out: going through it tells so once, a sounding of it alone again.
TEST(SoundingWalk, TellsWhatWasLeftOut) {
  const auto leftOut = [](const std::optional<Loading>& loading) {
    return loading && loading->Sounding
               ? std::ranges::count_if(
                     loading->Sounding->Notes,
                     [](const std::string& note) { return note.starts_with("Of the archive"); })
               : 0;
  };
  SoundingWalk walk(test::TestData("packed_many.zip"));
  EXPECT_EQ(leftOut(walk.Next({})), 1);
  EXPECT_EQ(leftOut(walk.Next({})), 0);
  EXPECT_EQ(leftOut(walk.Load(3, {})), 1);
}

}  // namespace
}  // namespace vexa
