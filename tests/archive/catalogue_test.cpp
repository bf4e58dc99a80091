#include <sqlite3.h>

#include <chrono>

#include "archive/merge.h"
#include "archive/standard_levels.h"
#include "archive/station_files.h"
#include "config/catalogue.h"

namespace vexa::archive {
namespace {

namespace fs = std::filesystem;

struct Handle {
  explicit Handle(const fs::path& path) { sqlite3_open(TextFromPath(path).c_str(), &Database); }
  ~Handle() { sqlite3_close(Database); }
  void Run(const char* sql) {
    EXPECT_EQ(sqlite3_exec(Database, sql, nullptr, nullptr, nullptr), SQLITE_OK) << sql;
  }
  sqlite3* Database = nullptr;
};

class CatalogueOfFiles : public testing::Test {
 protected:
  void SetUp() override {
    Write(Data() / "a" / "one.txt", IgraFile(72558, 7));
    Write(Data() / "b.txt", IgraFile(72401, 5));
    Write(Data() / "c.txt", IgraFile(72469, 3));
  }
  fs::path Data() const { return folder_.Path() / "data"; }
  fs::path At(const std::string& name) const { return folder_.Path() / name; }
  std::vector<std::string> All() const { return {TextFromPath(Data())}; }

 private:
  test::TemporaryFolder folder_;
};

TEST_F(CatalogueOfFiles, EntersOnceAndWhatHasChangedAnew) {
  Catalogue catalogue = Opened(At("c"));
  EXPECT_EQ(Add(catalogue, All()).Soundings, 15);
  const std::string before = Everything(catalogue);
  const std::int64_t changes = catalogue.Changes();
  const AddReport again = Add(catalogue, All());
  EXPECT_EQ(again.UnchangedFiles, 3);
  EXPECT_EQ(Everything(catalogue), before);
  EXPECT_EQ(catalogue.Changes(), changes);

  // Written again with the same bytes: nothing is read anew.
  fs::last_write_time(Data() / "b.txt", fs::file_time_type::clock::now() - std::chrono::hours(5));
  EXPECT_EQ(Add(catalogue, All()).Soundings, 0);
  Write(Data() / "b.txt", IgraFile(72401, 2));
  EXPECT_EQ(Add(catalogue, All()).Soundings, 2);
  EXPECT_EQ(Told(catalogue, "station = 72401", {"day", "KI"}), "1 40 \n2 40.1 \n");
  EXPECT_EQ(catalogue.Counts().Soundings, 12);
  EXPECT_TRUE(CheckCatalogue(catalogue, true).Value().empty());

  // Other settings are other values.
  AddRequest request;
  request.Settings.Lpl = LiftSource::Surface;
  EXPECT_EQ(Add(catalogue, All(), request).Soundings, 12);
  EXPECT_EQ(catalogue.Counts().Soundings, 12);
}

TEST_F(CatalogueOfFiles, IsTheSameHoweverOftenItIsStopped) {
  Catalogue whole = Opened(At("whole"));
  Add(whole, All());
  Catalogue torn = Opened(At("torn"));
  AddRequest request;
  request.Batch = 2;
  request.GoesOn = [](std::int64_t) { return false; };
  int runs = 0;
  while (Add(torn, All(), request).IsStopped) ASSERT_LT(++runs, 20);
  EXPECT_GE(runs, 7);  // of 15 soundings and 3 files, two at a time
  EXPECT_EQ(Everything(torn), Everything(whole));
  EXPECT_TRUE(CheckCatalogue(torn, true).Value().empty());
}

TEST_F(CatalogueOfFiles, LongFilesAreReadInPieces) {
  Catalogue whole = Opened(At("whole"));
  Add(whole, All());
  Catalogue pieces = Opened(At("pieces"));
  AddRequest request;
  for (const std::size_t piece : {std::size_t{700}, std::size_t{1000}}) {  // a sounding has 450
    request.Piece = piece;
    request.Settings.SearchDepth = static_cast<double>(piece);  // so that all is read anew
    Add(pieces, All(), request);
    EXPECT_EQ(Told(pieces, "", {"file", "sounding", "time", "KI"}),
              Told(whole, "", {"file", "sounding", "time", "KI"}));
  }
  // A fault names its line in the file, not in the piece.
  std::string text = IgraFile(72558, 20);
  text.replace(text.rfind("  100"), 5, "  1x0");
  Write(At("torn.txt"), text);
  std::string told;
  request.OnTrouble = [&](const std::string& name, const std::string& reason) {
    told = TextFromPath(PathFromText(name).filename()) + ": " + reason;
  };
  Add(pieces, {TextFromPath(At("torn.txt"))}, request);
  EXPECT_EQ(told, "torn.txt#20: torn.txt, line 160: \"1x000\" is not a number");
}

TEST_F(CatalogueOfFiles, ArchivesAreGoneThroughMemberByMember) {
  const std::string zip = TextFromPath(test::TestData("packed_many.zip"));
  Catalogue whole = Opened(At("whole"));
  const AddReport report = Add(whole, {zip});
  ASSERT_GT(report.Soundings, 1);
  Catalogue pieces = Opened(At("pieces"));
  AddRequest request;
  request.Piece = 64;
  EXPECT_EQ(Add(pieces, {zip}, request).Soundings, report.Soundings);
  EXPECT_EQ(Told(pieces, "", {"sounding", "member", "name", "time"}),
            Told(whole, "", {"sounding", "member", "name", "time"}));
}

TEST_F(CatalogueOfFiles, TellsWhatCannotBeReadAndDoesTheRest) {
  Write(Data() / "damaged.txt", IgraSounding(72558, 1999, 6, 1, 0) + "#USM000725");
  Write(Data() / "notes.md", "nothing to see\n");
  Write(Data() / "empty.RAW", "");
  std::string torn = IgraFile(72558, 3);
  torn.replace(torn.find("  150", torn.find("#", 1)), 5, "  1x0");
  Write(Data() / "torn.txt", torn);
  std::vector<std::string> told;
  AddRequest request;
  request.OnTrouble = [&](const std::string& name, const std::string& reason) {
    told.push_back(name + ": " + reason);
  };
  Catalogue catalogue = Opened(At("c"));
  std::vector<std::string> given = All();
  given.push_back(TextFromPath(Data() / "notes.md"));
  given.push_back(TextFromPath(At("missing.txt")));
  const AddReport report = Add(catalogue, given, request);
  EXPECT_EQ(report.OtherFiles, 1);     // the notes in the folder
  EXPECT_EQ(report.TroubledFiles, 3);  // by name, the one that is not there, and the empty one
  EXPECT_EQ(report.Soundings, 15 + 1 + 2);
  EXPECT_EQ(report.Refused, 1);
  EXPECT_EQ(told.size(), 4U);
  EXPECT_TRUE(CheckCatalogue(catalogue, false).Value().empty());
  EXPECT_EQ(Told(catalogue, "file has 'torn.txt'", {"sounding"}), "1 \n3 \n");
}

TEST_F(CatalogueOfFiles, SharesMakeTheSameCatalogueForAnyNumber) {
  Catalogue whole = Opened(At("whole"));
  Add(whole, All());
  ASSERT_FALSE(Merge(At("merged-1"), std::vector{At("whole")}));
  const std::string bytes = ReadFile(At("merged-1")).Value();
  for (const int of : {2, 5}) {
    std::vector<fs::path> parts;
    std::int64_t soundings = 0;
    for (int number = of; number >= 1; --number) {
      parts.push_back(At("part-" + std::to_string(of) + "-" + std::to_string(number)));
      Catalogue part = Opened(parts.back());
      AddRequest request;
      request.Share = {number, of};
      soundings += Add(part, All(), request).Soundings;
    }
    EXPECT_EQ(soundings, 15);
    const fs::path merged = At("merged-" + std::to_string(of));
    ASSERT_FALSE(Merge(merged, parts));
    EXPECT_TRUE(ReadFile(merged).Value() == bytes) << of;
    EXPECT_EQ(Merge(merged, parts)->Number, kFaultFileExists);
  }
  Catalogue merged = Opened(At("merged-5"));
  EXPECT_EQ(Everything(merged), Everything(whole));
  EXPECT_TRUE(CheckCatalogue(merged, true).Value().empty());
  EXPECT_EQ(Add(merged, All()).UnchangedFiles, 3);
}

TEST(Shard, FollowsFromTheNameAlone) {
  EXPECT_TRUE(ParseShard("3/8"));
  for (const char* wrong : {"", "3", "0/8", "9/8", "1/", "/8", "a/b", "-1/8", "1/200000"}) {
    EXPECT_FALSE(ParseShard(wrong)) << wrong;
  }
  int least = 1000, most = 0;
  for (int number = 1; number <= 8; ++number) {
    int held = 0;
    for (int i = 0; i < 8000; ++i) {
      held += Shard{number, 8}.Holds("data/USM" + Mask(i, "00000000") + "-data.txt") ? 1 : 0;
    }
    least = std::min(least, held);
    most = std::max(most, held);
  }
  EXPECT_GT(least, 850);  // of 1000, when they fall evenly
  EXPECT_LT(most, 1150);
}

TEST_F(CatalogueOfFiles, FailuresAreToldInPlainWords) {
  { Catalogue made = Opened(At("c")); }
  {
    Handle other(At("c"));
    other.Run("BEGIN EXCLUSIVE");
    const auto locked = Catalogue::Open(At("c"), {.WaitMs = 10});
    ASSERT_FALSE(locked);
    EXPECT_EQ(locked.Error().Detail, "the catalogue is locked by another process");
  }
  {
    Catalogue full = Opened(At("full"), {.MayMake = true, .MostPages = 40});
    Write(Data() / "long.txt", IgraFile(72270, 400));
    const std::vector<std::string> given = All();
    const auto added = AddFiles(full, {.Given = given, .Batch = 5});
    ASSERT_FALSE(added);
    EXPECT_EQ(added.Error().Number, kFaultDiskFull);
    EXPECT_EQ(added.Error().Detail, "the disk is full; what was entered before is kept");
  }
  {  // with more room it goes on
    Catalogue full = Opened(At("full"));
    const std::int64_t kept = full.Counts().Soundings;
    EXPECT_GT(kept, 0);
    EXPECT_TRUE(CheckCatalogue(full, false).Value().empty());
    EXPECT_EQ(Add(full, All()).Soundings + kept, 415);
  }
  {  // a page of the middle lost
    std::string bytes = ReadFile(At("full")).Value();
    bytes.replace(bytes.size() / 2 & ~std::size_t{4095}, 4096, std::string(4096, 'x'));
    Write(At("damaged"), bytes);
    Outcome<Catalogue> damaged = Catalogue::Open(At("damaged"));
    ASSERT_TRUE(damaged);
    const auto found = CheckCatalogue(damaged.Value(), false);
    EXPECT_TRUE(!found || !found.Value().empty());
  }
  Write(At("text"), "no database at all, though it is long enough to look like one from afar\n");
  EXPECT_EQ(Catalogue::Open(At("text")).Error().Detail,
            "this is no catalogue of soundings, or a damaged one");
  { Handle(At("other")).Run("CREATE TABLE other(x)"); }
  EXPECT_EQ(Catalogue::Open(At("other")).Error().Detail, "this is no catalogue of soundings");
  { Handle(At("c")).Run("PRAGMA user_version=99"); }
  EXPECT_EQ(Catalogue::Open(At("c")).Error().Detail, "the catalogue was made by a newer program");
  EXPECT_EQ(Catalogue::Open(At("none"), {}).Error().Number, kFaultFileNotFound);
}

// As made by a program that did not know the K index yet.
TEST_F(CatalogueOfFiles, NewIndicesBecomeColumns) {
  {
    Catalogue made = Opened(At("c"));
    Add(made, {TextFromPath(Data() / "c.txt")});
  }
  { Handle(At("c")).Run("ALTER TABLE soundings DROP COLUMN \"KI\""); }
  {
    Catalogue read = Opened(At("c"), {.MayWrite = false});
    EXPECT_EQ(Told(read, "KI is missing and TT = 55", {"KI", "day"}), " 1 \n 2 \n 3 \n");
    ASSERT_FALSE(Merge(At("merged"), std::vector{At("c")}));
  }
  Catalogue catalogue = Opened(At("c"));
  Add(catalogue, All());
  EXPECT_EQ(Told(catalogue, "station = 72401 and day < 3", {"KI"}), "40 \n40.1 \n");
}

TEST(Fingerprint, SeesEverySettingOfTheAnalysis) {
  const AnalysisSettings defaults;
  EXPECT_EQ(SettingsText(defaults), "defaults");
  const std::string fingerprint = Fingerprint(defaults);
  int seen = 0;
  for (const OptionRow& row : vexa::Catalogue()) {
    for (const char* text : {"surface", "CCL", "virtual", "fast", "USAF", "ice", "2", "7", "no"}) {
      Options options;
      if (!row.Read(options, text)) continue;
      const AnalysisSettings& changed = options;
      if (changed == defaults) continue;
      ++seen;
      EXPECT_NE(Fingerprint(changed), fingerprint) << row.Key << "=" << text;
    }
  }
  EXPECT_GT(seen, 20);
}

TEST(StandardLevels, KeepATenth) {
  StandardLevels levels;
  levels[3] = {.Temp = -12.34, .Dewpt = 3276.7, .U = 0.04, .V = -99.96};
  levels[5].Temp = 4000;  // beyond what is kept
  const StandardLevels read = Unpacked(Packed(levels));
  EXPECT_EQ(read[3].Temp, -12.3);
  EXPECT_EQ(read[3].Dewpt, 3276.7);
  EXPECT_EQ(read[3].U, 0);
  EXPECT_EQ(read[3].V, -100);
  EXPECT_FALSE(read[5].Temp);
  EXPECT_FALSE(read[4].U);
  EXPECT_FALSE(Unpacked("cut")[3].Temp);
}

}  // namespace
}  // namespace vexa::archive
