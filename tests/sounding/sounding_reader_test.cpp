#include "sounding/sounding_reader.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include "core/numbers.h"
#include "sounding/sounding_set.h"
#include "support/igra_file.h"
#include "support/soundings.h"

namespace vexa {
namespace {

namespace fs = std::filesystem;

// What this process has read so far, by the system's count; 0 where it keeps none.
long long BytesRead() {
  constexpr bool kKeepsOne = fs::path::preferred_separator == '/';
  std::ifstream counts(kKeepsOne ? "/proc/self/io" : "");
  std::string name;
  long long bytes = 0;
  counts >> name >> bytes;
  return name == "rchar:" ? bytes : 0;
}

class SoundingReaders : public testing::Test {
 protected:
  SoundingReaders() { std::ofstream(file_, std::ios::binary) << text_; }

  Source Numbered(int number) const {
    return {.File = PathFromText(TextFromPath(file_) + "#" + Shortest(number))};
  }
  // Bytes read by `work` for each byte of the file.
  template <class Work>
  double Passes(Work&& work) const {
    const long long before = BytesRead();
    work();
    return static_cast<double>(BytesRead() - before) / static_cast<double>(text_.size());
  }

  static constexpr int kDays = 200;
  static constexpr std::size_t kPiece = 4000;
  test::TemporaryFolder folder_{};
  fs::path file_ = folder_.Path() / "72558.txt";
  std::string text_ = test::IgraFile(72558, kDays);
};

TEST_F(SoundingReaders, ReadAFileOnceForAllItsSoundings) {
  if (BytesRead() == 0) GTEST_SKIP() << "the system counts no bytes";
  SoundingReader reader(kPiece);
  const double all = Passes([&] {
    for (int number = 1; number <= kDays; ++number) {
      const Loading loading = reader.Load(Numbered(number), {});
      ASSERT_TRUE(loading.Sounding) << number;
      EXPECT_NEAR(loading.Sounding->Record.Temp(1), 28 + (number - 1) / 10.0, 1e-9);
    }
  });
  EXPECT_GT(all, 0.9);
  EXPECT_LT(all, 1.5);
  SoundingReader another(kPiece);
  EXPECT_LT(Passes([&] { another.Load(Numbered(10), {}); }), 0.3);
  SoundingReader byIndex(kPiece);
  EXPECT_LT(Passes([&] { byIndex.Load({.File = file_, .Index = 9}, {}); }), 0.3);
}

// So do the members of a set, which are read again only when they are no longer kept.
TEST_F(SoundingReaders, ReadALongFileOnceForASet) {
  if (BytesRead() == 0) GTEST_SKIP() << "the system counts no bytes";
  std::vector<SoundingSet::Member> members;
  for (int day = 0; day < kDays; day += 4) members.push_back({.File = file_, .Index = day});
  const SoundingSet set(std::move(members));
  SoundingReader reader(kPiece);
  const auto getAll = [&] {
    for (std::size_t i = 0; i < set.Size(); ++i) {
      const Outcome<SharedSounding> got = set.Get(i, {}, reader);
      ASSERT_TRUE(got) << i;
      EXPECT_NEAR(got.Value()->Record().Temp(1), 28 + set.At(i).Index / 10.0, 1e-9);
    }
  };
  EXPECT_LT(Passes(getAll), 1.5);
  EXPECT_LT(Passes(getAll), 0.1);
}

// FILE#10 names a sounding and says no more; by an index the number of the others is told, as far
// as it is known.
TEST_F(SoundingReaders, TellWhichOfHowMany) {
  SoundingReader reader(kPiece), whole;
  const auto firstNote = [](const Loading& loading) {
    return loading.Sounding && !loading.Sounding->Notes.empty() ? loading.Sounding->Notes.front()
                                                                : std::string();
  };
  EXPECT_EQ(firstNote(whole.Load({.File = file_, .Index = 9}, {})),
            "This is number 10 of the file's 200 soundings.");
  EXPECT_EQ(firstNote(reader.Load({.File = file_, .Index = kDays - 1}, {})),
            "This is number 200 of the file's 200 soundings.");
  const Loading early = reader.Load({.File = file_, .Index = 9}, {});
  EXPECT_EQ(firstNote(early),
            "This is number 10 of the file's soundings, " + Shortest(early.Count) + " or more.");
  EXPECT_GT(early.Count, 9);
  EXPECT_LT(early.Count, 20);
  for (SoundingReader* one : {&reader, &whole}) {
    const Loading named = one->Load(Numbered(10), {});
    ASSERT_TRUE(named.Sounding);
    EXPECT_EQ(firstNote(named).find("This is number"), std::string::npos);
    EXPECT_EQ(named.Count, 1);
    EXPECT_EQ(named.Sounding->From.File, file_);
    EXPECT_EQ(named.Sounding->From.Index, 9);
    EXPECT_TRUE(named.Sounding->From.Stamp);
    const Loading missing = one->Load(Numbered(kDays + 1), {});
    ASSERT_TRUE(missing.Failed);
    EXPECT_EQ(missing.Failed->Detail,
              "72558.txt: it holds 200 soundings, number 201 was asked for");
    EXPECT_TRUE(one->Load({.File = Numbered(1).File, .Index = 1}, {}).Failed);
  }
}

// A file that was written anew is another one, and one of that very name is no numbered sounding.
TEST_F(SoundingReaders, BeginAChangedFileAnew) {
  SoundingReader reader(kPiece);
  ASSERT_TRUE(reader.Load(Numbered(5), {}).Sounding);
  std::ofstream(file_, std::ios::binary) << test::IgraSounding(72558, 2001, 1, 1, 0, 5);
  EXPECT_NEAR(reader.Load(Numbered(1), {}).Sounding->Record.Temp(1), 33, 1e-9);
  EXPECT_TRUE(reader.Load(Numbered(2), {}).Failed);
  std::ofstream(Numbered(2).File, std::ios::binary) << test::IgraSounding(72558, 2001, 1, 1, 0, 6);
  EXPECT_NEAR(reader.Load(Numbered(2), {}).Sounding->Record.Temp(1), 34, 1e-9);
  fs::remove(file_);
  EXPECT_TRUE(reader.Load({.File = file_}, {}).Failed);
}

}  // namespace
}  // namespace vexa
