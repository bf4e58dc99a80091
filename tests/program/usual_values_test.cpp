// How usual a sounding is by a catalogue, as the panels, the hints and the diagram show it.
#include "program/usual_values.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "archive/station_files.h"
#include "core/files.h"
#include "program/program.h"
#include "program/readout.h"
#include "sounding/sounding_source.h"
#include "support/document.h"
#include "support/soundings.h"

namespace vexa {
namespace {

// Thirty ascents of June, each a tenth warmer than the one of the day before, with the 20th in
// work.
class UsualValuesTest : public testing::Test {
 protected:
  static constexpr int kDays = 30, kShown = 20;
  UsualValuesTest() {
    archive::Write(file_, archive::IgraFile(72558, kDays));
    archive::Catalogue made = archive::Opened(catalogue_);
    archive::Add(made, {TextFromPath(file_)});
    program_.Doc.AskThrough(&silent_);
    program_.Set.System.Catalogue = TextFromPath(catalogue_);
    Show(kShown);
  }
  void Show(int day) {
    auto source = SoundingSource::Open(file_);
    program_.Doc.Take(Document::GiveUpEdits(), *source.Value().Load(day - 1, {}).Sounding);
  }
  std::string RefreshAndTell() {
    EXPECT_TRUE(Refresh(program_, {.Sounding = true}));
    return TakeNotices(program_);
  }
  int PercentileOf(std::string_view label) {
    const diagram::Usual* usual = program_.Usual.Shown();
    const diagram::UsualRank* rank =
        usual == nullptr ? nullptr : usual->Find(*analysis::FindIndex(label));
    return rank == nullptr ? 0 : rank->Percentile;
  }
  auto Drawn(std::string_view tag) {
    return std::ranges::count(program_.Plot->Page.Items(), tag, &Item::Tag);
  }

  test::TemporaryFolder folder_;
  std::filesystem::path file_ = folder_.Path() / "72558.txt";
  std::filesystem::path catalogue_ = folder_.Path() / "c.vexa";
  SilentInteraction silent_{};
  Program program_{};
};

// By hand: nineteen of thirty are colder and one is the same, (19 + 1/2) / 30 = 65 %. The 500 hPa
// temperatures are -10.0, -9.9 ... -7.1: places 3.9, 15.5 and 27.1 of thirty.
TEST_F(UsualValuesTest, RanksIndicesAndTellsTheSpread) {
  EXPECT_EQ(RefreshAndTell(), "");
  EXPECT_EQ(PercentileOf("KI"), 65);
  EXPECT_EQ(PercentileOf("TT"), 0) << "the same in all of them: nothing to rank";
  const auto& levels = program_.Usual.Shown()->Levels;
  const auto at500 = std::ranges::find(levels, 500, &diagram::UsualLevel::Press);
  ASSERT_TRUE(at500 != levels.end() && at500->Temp);
  EXPECT_NEAR(at500->Temp->Low, -9.71, 1e-5);
  EXPECT_NEAR(at500->Temp->Median, -8.55, 1e-5);
  EXPECT_NEAR(at500->Temp->High, -7.39, 1e-5);
  const std::string hint = HotInfo(program_, "KI");
  EXPECT_NE(hint.find("65th of 30 June 12 UTC ascents, 1999\n40.0 C  "), hint.npos) << hint;
  // Sixteen bars of 0.18 C: two ascents in each but the sixth and the eleventh, that of 41.9.
  EXPECT_NE(hint.find("  █████▄████[▄]█████  "), hint.npos) << hint;
  EXPECT_NE(hint.find("  42.9 C\n10 %: 40.3 C   median: 41.5 C   90 %: 42.6 C\n"), hint.npos)
      << hint;
}

TEST_F(UsualValuesTest, ShadesTheDiagramWhereItIsAskedTo) {
  RefreshAndTell();
  EXPECT_GT(Drawn("rank"), 0);
  EXPECT_EQ(Drawn("usual temperature") + Drawn("usual dew point") + Drawn("usual wind"), 0);
  program_.Set.UsualTemps = program_.Set.UsualWinds = true;
  RefreshAndTell();
  for (const char* tag : {"usual temperature", "usual temperature median", "usual dew point",
                          "usual dew point median", "usual wind", "wind speed"}) {
    EXPECT_GT(Drawn(tag), 0) << tag;
  }
  program_.Set.System.Catalogue.clear();
  RefreshAndTell();
  EXPECT_EQ(program_.Usual.Shown(), nullptr);
  EXPECT_EQ(Drawn("rank") + Drawn("usual temperature") + Drawn("usual wind"), 0);
}

// One line in the status bar and no percentile; nothing waits.
TEST_F(UsualValuesTest, TellsOnceWhyThereIsNothing) {
  const auto tellsOnce = [&](const std::string& expected) {
    EXPECT_EQ(RefreshAndTell(), expected);
    EXPECT_EQ(program_.Usual.Shown(), nullptr);
    EXPECT_EQ(RefreshAndTell(), "");
    EXPECT_FALSE(HotInfo(program_, "KI").empty());
  };
  {
    archive::Database holder(catalogue_, {});
    holder.Run("BEGIN EXCLUSIVE");
    tellsOnce("No percentiles: c.vexa: the catalogue is locked by another process.  ");
    holder.Run("ROLLBACK");
  }
  program_.Set.SearchDepth += 10;
  tellsOnce(
      "No percentiles: c.vexa has 0 June 12 UTC ascents, of 30 that are wanted; 30 were analysed "
      "under other settings.  ");
  program_.Set.SearchDepth -= 10;
  RefreshAndTell();
  EXPECT_EQ(PercentileOf("KI"), 65) << "the catalogue is free again";
  std::filesystem::remove(catalogue_);
  EXPECT_EQ(RefreshAndTell(), "");
  EXPECT_EQ(PercentileOf("KI"), 65) << "what was looked up is kept";
  program_.Set.SearchDepth += 10;
  tellsOnce("No percentiles: c.vexa: there is no such catalogue.  ");
}

// The twenty-ninth is one too few.
TEST(UsualValues, NothingBelowTheLeastSample) {
  const test::TemporaryFolder folder;
  const std::filesystem::path file = folder.Path() / "72558.txt";
  archive::Write(file, archive::IgraFile(72558, 29));
  archive::Catalogue made = archive::Opened(folder.Path() / "c");
  archive::Add(made, {TextFromPath(file)});
  auto source = SoundingSource::Open(file);
  const AnalysedSounding sounding(*source.Value().Load(0, {}).Sounding);
  UsualValues usual;
  EXPECT_EQ(usual.Follow(folder.Path() / "c", sounding.Record(), sounding.Results({}), {}),
            "No percentiles: c has 29 June 12 UTC ascents, 1999, of 30 that are wanted.");
  EXPECT_EQ(usual.Shown(), nullptr);
}

}  // namespace
}  // namespace vexa
