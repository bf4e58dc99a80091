#include "download/batch.h"
#include "download/batch_file.h"

#include <gtest/gtest.h>

#include <set>

namespace vexa::download {
namespace {

using std::chrono::hours;
using std::chrono::minutes;

constexpr ObservationTime kMidnight = {.Year = 2024, .Month = 2, .Day = 29, .Hour = 0};
constexpr ObservationTime kNoon = {.Year = 2024, .Month = 2, .Day = 29, .Hour = 12};

// Fails for the pairs "source station" of a set; counts what it was asked.
class ScriptedWork : public BatchWork {
 public:
  FetchResult Fetch(const Source& source, const Request& request) override {
    const std::string asked = source.Name + ' ' + FileStem(request);
    Asked.push_back(asked);
    if (!Failing.contains(asked)) return {.End = FetchEnd::Done};
    return {.End = FetchEnd::Refused, .Failed = Fault{kFaultEndOfFile, "t", asked}};
  }
  Outcome<std::string> Save(const BatchPlan& plan, const Request& request,
                            const FetchResult&) override {
    return plan.Folder + '/' + FileStem(request);
  }
  bool Continue(int done, int, const Request&) override { return done != StopAt; }

  std::set<std::string> Failing{};
  std::vector<std::string> Asked{};
  int StopAt = -1;
};

BatchPlan Plan(OnFailure failing) {
  return {.Sources = {{.Name = "a", .Address = "http://a/@Y@M@D@H/@N"},
                      {.Name = "b", .Address = "http://b/@Y@M@D@H/@N"}},
          .Stations = {"1", "2", "1"},
          .Times = {kMidnight, kNoon},
          .Folder = "f",
          .Failing = failing};
}

TEST(Batch, EveryStationOnceForEveryHour) {
  struct Case {
    const char* About;
    OnFailure Failing;
    std::set<std::string> Fails;
    int StopAt, Saved;
    std::vector<std::string> Asked;
    bool WasStopped = false;
  };
  const std::string a1 = "a 00001_2024022900", a2 = "a 00002_2024022900";
  const std::string b1 = "b 00001_2024022900";
  const std::string n1 = "a 00001_2024022912", n2 = "a 00002_2024022912";
  const Case cases[] = {
      {"all well", OnFailure::Skip, {}, -1, 4, {a1, a2, n1, n2}},
      {"skip", OnFailure::Skip, {a1}, -1, 3, {a1, a2, n1, n2}},
      {"next source", OnFailure::NextSource, {a1}, -1, 4, {a1, b1, a2, n1, n2}},
      {"no source has it", OnFailure::NextSource, {a1, b1}, -1, 3, {a1, b1, a2, n1, n2}},
      {"stop", OnFailure::Stop, {a2}, -1, 1, {a1, a2}, true},
      {"the user stops", OnFailure::Skip, {}, 2, 2, {a1, a2}, true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.About);
    ScriptedWork work;
    work.Failing = c.Fails;
    work.StopAt = c.StopAt;
    const BatchReport report = RunBatch(Plan(c.Failing), work);
    EXPECT_EQ(report.Saved(), c.Saved);
    EXPECT_EQ(work.Asked, c.Asked);
    EXPECT_EQ(report.WasStopped, c.WasStopped);
    EXPECT_EQ(report.Left.size(), c.WasStopped ? 2u : 0u);
    if (c.StopAt == 2) {
      EXPECT_EQ(BatchSummary(report),
                "2 of 4 soundings saved. The batch was stopped; not done: 00001_2024022912, "
                "00002_2024022912.");
    }
  }
}

TEST(Batch, APlanIsCheckedAhead) {
  EXPECT_FALSE(CheckPlan(Plan(OnFailure::Skip)));
  BatchPlan plan = Plan(OnFailure::Skip);
  plan.Stations.clear();
  EXPECT_EQ(CheckPlan(plan)->Detail, "no station is given");
  plan.Sources = {{.Name = "c", .Address = "http://c/current"}};
  EXPECT_FALSE(CheckPlan(plan));
  plan.Sources = {{.Name = "c", .Address = "http://c/@Q"}};
  EXPECT_EQ(CheckPlan(plan)->Number, kFaultBadUrl);
}

TEST(BatchSettings, AreReadAsTheyWereWritten) {
  const BatchSettings settings{.Sources = {"University of A", "B"},
                               .Stations = "72357, OUN = x",
                               .Hours = "06 18",
                               .DelayMin = 0,
                               .Folder = "/a folder/b",
                               .Format = BatchFormat::Native,
                               .Failing = OnFailure::Stop,
                               .Beeper = true};
  for (const BatchSettings& one : {settings, BatchSettings{}}) {
    const BatchReading read = ReadBatchSettings(WriteBatchSettings(one), "f");
    EXPECT_TRUE(read.Notes.empty());
    EXPECT_EQ(read.Settings, one);
  }
  for (const char* bad :
       {"delay = 1441", "delay = x", "format = other", "beeper", "colour = red"}) {
    // The rest is read, and the line stays when other settings are written.
    const std::string text = std::string("# mine\n") + bad + "\nhours = 03\n";
    const BatchReading read = ReadBatchSettings(text, "f");
    ASSERT_EQ(read.Notes.size(), 1U) << bad;
    EXPECT_EQ(read.Notes[0], std::string("f, line 2: \"") + bad + "\" is not understood");
    EXPECT_EQ(read.Settings, BatchSettings{.Hours = "03"});
  }
  const std::string mended = WriteBatchSettings(settings, "# mine\ncolour = red\nhours = 03\n");
  EXPECT_TRUE(mended.starts_with("# mine\ncolour = red\nhours = 06 18\n")) << mended;
  EXPECT_EQ(ReadBatchSettings(mended, "f").Settings, settings);
}

TEST(Batch, HoursFallDue) {
  const Instant day = std::chrono::sys_days(std::chrono::year(2024) / 2 / 29);
  const ObservationTime early{2024, 2, 28, 0, 0}, before{2024, 2, 28, 12, 0};
  const std::vector<int> twice = {12, 0};
  struct Case {
    const char* About;
    Instant Now;
    minutes Delay;
    ObservationTime Latest;
    Instant Next;
  };
  const Case cases[] = {
      {"just due", day + hours(14), hours(2), kNoon, day + hours(26)},
      {"a minute before", day + hours(14) - minutes(1), hours(2), kMidnight, day + hours(14)},
      {"the day before", day + hours(1), hours(2), before, day + hours(2)},
      {"a delay of more than a day", day + hours(13), hours(36), early, day + hours(24)},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.About);
    EXPECT_EQ(LatestDue(c.Now, twice, c.Delay), c.Latest);
    EXPECT_EQ(NextDue(c.Now, twice, c.Delay), c.Next);
  }
  EXPECT_FALSE(NextDue(day, {}, hours(1)));
}

}  // namespace
}  // namespace vexa::download
