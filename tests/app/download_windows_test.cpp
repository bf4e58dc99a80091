// Download and batch windows against a server inside the test.
#include <QDateEdit>

#include "app/batch_window.h"
#include "app/download_window.h"
#include "app/text_editor.h"
#include "app/window_test.h"
#include "download/template_file.h"
#include "program/fetch_work.h"
#include "support/document.h"
#include "support/local_server.h"

namespace vexa {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

class DownloadWindowsTest : public test::ProgramAtHome {
 protected:
  DownloadWindowsTest() {
    folder.Write("VEXA.URL", "[First]\naddress = " + server.Address("/@N/@Y@M@D@H") +
                                 "\nhours = 00 12\nnote = a note\n\n[Second]\naddress = " +
                                 server.Address("/other/@N/@Y@M@D@H") + "\n");
  }
  static void Type(QWidget& field, const char* text) {
    for (const char* c = text; *c != '\0'; ++c) {
      test::PressKey(field, *c, QString(QLatin1Char(*c)));
    }
  }

  test::LocalServer server{};
  const std::string sounding = WriteRaw(test::ReferenceConvective());
  download::HttpSettings net{.Silence = 500ms, .Longest = 1000ms, .Pause = 10ms, .Attempts = 1};
};

TEST_F(DownloadWindowsTest, WhatIsChosenIsFetchedAndOpened) {
  Station norman{.Number = 72357, .Ident = "OUN", .Name = "NORMAN", .Region = "OK"};
  ASSERT_FALSE(program.Stations.Add(norman));
  server.AddBody("/72357/1999050412", sounding);
  fs::path opened;
  DownloadWindow window(
      program, [&](const fs::path& file, int) { opened = file; }, nullptr, net);
  EXPECT_EQ(test::In<QLabel>(window, "SourceNote").text(), "a note");
  EXPECT_EQ(test::In<QComboBox>(window, "Hour").count(), 2);
  EXPECT_FALSE(window.Fetch()) << "no station";
  EXPECT_EQ(test::In<QLabel>(window, "Progress").text(), "no station is given");

  auto& station = test::In<QLineEdit>(window, "Station");
  station.setText("norm");
  emit station.textEdited("norm");
  auto& found = test::In<QListWidget>(window, "StationsFound");
  ASSERT_EQ(found.count(), 1);
  emit found.itemClicked(found.item(0));
  EXPECT_EQ(station.text(), "72357");
  test::In<QDateEdit>(window, "Date").setDate({1999, 5, 4});
  EXPECT_FALSE(window.Fetch());
  EXPECT_TRUE(test::In<QLabel>(window, "Progress").text().contains("404"));
  EXPECT_TRUE(opened.empty());
  test::In<QComboBox>(window, "Hour").setCurrentText("12");
  test::In<QPushButton>(window, "cmdDownload").click();
  EXPECT_EQ(opened.filename(), "72357_1999050412.txt");
  EXPECT_EQ(ReadFile(opened).Value(), sounding);
  EXPECT_TRUE(program.Gate.IsOpen());

  // The same again is no question; what was changed since is not replaced without one.
  EXPECT_TRUE(window.Fetch());
  ASSERT_FALSE(SaveFile(opened, "edited since"));
  user.Expect("VEXA", Answer::No);
  EXPECT_FALSE(window.Fetch());
  EXPECT_EQ(user.Boxes.back().Text, "72357_1999050412.txt already exists.\nReplace existing file?");
  EXPECT_EQ(ReadFile(opened).Value(), "edited since");
  user.Expect("VEXA", Answer::Yes);
  EXPECT_TRUE(window.Fetch());
  EXPECT_EQ(ReadFile(opened).Value(), sounding);
}

TEST_F(DownloadWindowsTest, ABatchKeepsWhatWasChangedSince) {
  server.AddBody("/72357/1999050400", sounding);
  BatchWindow window(program, {}, nullptr, net);
  test::In<QLineEdit>(window, "Stations").setText("72357");
  const ObservationTime time{.Year = 1999, .Month = 5, .Day = 4};
  const fs::path file = program.Where.Data / "72357_1999050400.txt";
  EXPECT_EQ(window.RunFor(time).Saved(), 1);
  ASSERT_FALSE(SaveFile(file, "edited since"));
  for (int i = 0; i < 2; ++i) EXPECT_EQ(window.RunFor(time).Saved(), 1);
  EXPECT_EQ(ReadFile(file).Value(), "edited since");
  EXPECT_EQ(ReadFile(program.Where.Data / "72357_1999050400-2.txt").Value(), sounding);
  EXPECT_FALSE(fs::exists(program.Where.Data / "72357_1999050400-3.txt"));
}

TEST_F(DownloadWindowsTest, ADateIsTypedWithOrWithoutItsHyphens) {
  DownloadWindow window(
      program, [](const fs::path&, int) {}, nullptr, net);
  BatchWindow batch(program, {}, nullptr, net);
  auto& date = test::In<QDateEdit>(window, "Date");
  auto& time = test::In<QDateTimeEdit>(batch, "Time");
  for (const char* typed : {"2001-02-03", "20010203", "2001/02/03", "2001-2-3", "2001 02 03"}) {
    date.setDate({1999, 11, 30});
    date.selectAll();
    Type(date, typed);
    EXPECT_EQ(date.date(), QDate(2001, 2, 3)) << typed << ": " << date.text().toStdString();
  }
  // By a click into its year; and where it is amended.
  QLineEdit& line = *date.findChild<QLineEdit*>();
  date.setDate({1999, 11, 30});
  line.deselect();
  line.setCursorPosition(2);
  Type(date, "2001-02-03");
  EXPECT_EQ(date.date(), QDate(2001, 2, 3)) << date.text().toStdString();
  for (const char* typed : {"2001-02-03 12", "2001-02-03T12", "2001020312"}) {
    time.setDateTime(QDateTime(QDate(1999, 11, 30), QTime(0, 0), Qt::UTC));
    time.selectAll();
    Type(time, typed);
    EXPECT_EQ(time.dateTime(), QDateTime(QDate(2001, 2, 3), QTime(12, 0), Qt::UTC)) << typed;
  }
}

TEST_F(DownloadWindowsTest, WhatABrokenFileHoldsIsNeitherLostNorSilent) {
  const fs::path settings = folder.Path() / "VEXA.BCH", sources = folder.Path() / "VEXA.URL";
  const std::string before = "# mine\nsources = First | Gone\nstations = 72357\ndelay = soon\n";
  ASSERT_FALSE(SaveFile(settings, before));
  ASSERT_FALSE(SaveFile(sources, ReadFile(sources).Value() + "[Broken\naddress = http://x\n"));
  BatchWindow window(program, {}, nullptr, net);
  const QString log = test::In<QPlainTextEdit>(window, "Log").toPlainText();
  EXPECT_TRUE(log.contains("VEXA.BCH, line 4: \"delay = soon\"")) << log.toStdString();
  EXPECT_TRUE(log.contains("VEXA.URL, line ")) << log.toStdString();
  EXPECT_EQ(test::In<QListWidget>(window, "Sources").count(), 2);
  EXPECT_EQ(test::In<QLineEdit>(window, "Stations").text(), "72357");
  window.show();
  window.hide();
  EXPECT_EQ(ReadFile(settings).Value(), before) << "nothing was changed";

  test::In<QLineEdit>(window, "Stations").setText("01001");
  window.show();
  window.hide();
  const std::string after = ReadFile(settings).Value();
  EXPECT_TRUE(after.starts_with("# mine\nsources = First | Gone\nstations = 01001\ndelay = 90\n"))
      << after;
  EXPECT_EQ(ReadFile(folder.Path() / "VEXA.BCH.bak").Value(), before);
}

TEST_F(DownloadWindowsTest, SourcesAreEditedInTheirFile) {
  DownloadWindow window(
      program, [](const fs::path&, int) {}, nullptr, net);
  test::In<QPushButton>(window, "cmdEditSources").click();
  auto& editor = test::In<TextEditor>(window, "TextEditor");
  const std::string before = ReadFile(folder.Path() / "VEXA.URL").Value();
  EXPECT_EQ(editor.Edit()->toPlainText().toStdString(), before);
  editor.Edit()->setPlainText("[Third]\naddress = http://a/@Q\n");
  EXPECT_FALSE(editor.Apply());
  EXPECT_TRUE(test::In<QLabel>(editor, "TextRemark").text().startsWith("VEXA.URL, line 1"));
  EXPECT_EQ(ReadFile(folder.Path() / "VEXA.URL").Value(), before);
  editor.Edit()->setPlainText("[Third]\naddress = http://a/@N\nnote = new\n");
  EXPECT_TRUE(editor.Apply());
  EXPECT_EQ(test::In<QComboBox>(window, "Source").currentText(), "Third");
  EXPECT_EQ(test::In<QLabel>(window, "SourceNote").text(), "new");
}

// Of a station's whole record the hour that was asked for is opened; messages that tell the day
// only are of the month asked for, which must then be the current one.
TEST(AskedSounding, AmongMany) {
  const std::string record = ReadFile(test::TestData("igra_station.txt")).Value();
  const download::Request second{.Number = 85999, .Time = {2000, 1, 1, 0, 0}};
  EXPECT_EQ(AskedSounding(record, second).Value().From.Index, 1);
  const std::string coded = ReadFile(test::TestData("coded_bulletins_20240305.txt")).Value();
  const download::Source current{.Name = "current", .Address = "http://a/current"};
  const download::Source dated{.Name = "dated", .Address = "http://a/@Y@M@D@H"};
  const download::Request march{.Number = 1234, .Time = {2024, 3, 5, 12, 0}};
  using namespace std::chrono_literals;
  const download::Instant then = std::chrono::sys_days(2024y / 3 / 6), later = then + 240h;
  EXPECT_TRUE(JudgeSounding(coded, current, march, then));
  EXPECT_TRUE(JudgeSounding(coded, dated, march, later));
  EXPECT_TRUE(JudgeSounding(record, current, second, later));
  const auto old = JudgeSounding(coded, current, march, later);
  ASSERT_FALSE(old);
  EXPECT_NE(old.Error().Detail.find("without month and year"), std::string::npos);
  // Of several stations only the one that is named, by number or by letters of the list.
  const download::Request unknown{.Letters = "QQQ", .Time = march.Time};
  EXPECT_FALSE(AskedSounding(coded, unknown));
  EXPECT_TRUE(AskedSounding(coded, {.Time = march.Time}));
  const download::Request nextDay{.Number = 1234, .Time = {2024, 3, 6, 12, 0}};
  EXPECT_FALSE(JudgeSounding(coded, dated, nextDay, later));
}

// A table of one release, 52 minutes ahead of the hour that it is for.
TEST_F(DownloadWindowsTest, AReleaseAheadOfItsHourIsThatHours) {
  const std::string text = ReadFile(test::TestData("wyoming_csv.csv")).Value();
  download::Request request{.Number = 72357, .Time = {2008, 8, 8, 12, 0}};
  EXPECT_TRUE(AskedSounding(text, request));
  request.Time.Hour = 18;
  EXPECT_EQ(AskedSounding(text, request).Error().Number, kFaultEndOfFile);
  request.Time.Hour = 12;
  request.Letters = "OUN";
  EXPECT_TRUE(AskedSounding(text, request));
  const std::string five = ReadFile(test::TestData("wyoming_text.txt")).Value();
  const download::Request other{.Number = 72672, .Time = {1987, 11, 7, 18, 0}};
  EXPECT_NE(AskedSounding(five, other).Error().Detail.find("another station"), std::string::npos);
  const std::string many = ReadFile(test::TestData("bufkit_two.buf")).Value();
  EXPECT_NE(AskedSounding(many, request).Error().Detail.find("none of them"), std::string::npos);
  request.Time = {2008, 8, 9, 11, 0};
  EXPECT_FALSE(AskedSounding(text, request));
}

// What is told of an answer that is to be saved.
struct Told {
  SavedSounding Saved{};
  std::string Fault{};
};

Told SaveAnswer(const download::HttpSettings& net, const download::BatchPlan& into,
                const download::Request& wanted, const std::string& body) {
  Told told;
  const auto fetcher = download::OpenNetwork(net);
  FetchWork work(*fetcher, nullptr, nullptr,
                 {.Failed = [&told](const download::Source&, const download::Request&,
                                    const Fault& fault) { told.Fault = fault.Detail; },
                  .Saved = [&told](const SavedSounding& one) { told.Saved = one; }});
  const bool isSaved{work.Save(into, wanted, {.Got = {.Body = body}})};
  EXPECT_EQ(isSaved, told.Fault.empty());
  return told;
}

TEST_F(DownloadWindowsTest, WhatCannotBeSavedIsTold) {
  using enum download::BatchFormat;
  const std::string winds = "PPAA 55121 01234 55385 34004 32012 06514=";
  const download::Request wanted{.Number = 1234, .Time = {2008, 8, 5, 12, 0}};
  const std::string data = program.Where.Data.string();
  const auto fault = [&](const std::string& below, download::BatchFormat format) {
    return SaveAnswer(net, {.Folder = data + below, .Format = format}, wanted, winds).Fault;
  };
  EXPECT_EQ(fault("/new/deep", AsReceived), "") << "a folder is made";
  EXPECT_TRUE(fault("/new/deep/01234_2008080512.txt", AsReceived).starts_with("not saved: "));
  EXPECT_NE(fault("", Native).find("winds alone"), std::string::npos);
}

TEST_F(DownloadWindowsTest, SavingTellsOfDoubt) {
  using enum download::BatchFormat;
  SoundingRecord hot = test::ReferenceWinter();
  hot.Temp(2) = 75;
  const std::string record = ReadFile(test::TestData("igra_station.txt")).Value();
  const download::Request second{.Number = 85999, .Time = {2000, 1, 1, 0, 0}};
  const auto told = [&](const std::string& body, const download::Request& wanted,
                        download::BatchFormat format) {
    const test::TemporaryFolder into;
    const SavedSounding saved =
        SaveAnswer(net, {.Folder = into.Path().string(), .Format = format}, wanted, body).Saved;
    return std::pair(saved.Finding, saved.Index);
  };
  EXPECT_EQ(told(WriteRaw(hot), {}, AsReceived), std::pair(QcFinding{6, 2}, 0));
  EXPECT_EQ(told(record, second, AsReceived), std::pair(QcFinding{}, 1));
  EXPECT_EQ(told(record, second, Native), std::pair(QcFinding{}, 0));
}

TEST_F(DownloadWindowsTest, LettersStandForTheNumberThatASourceWants) {
  server.AddBody("/n/98989", ReadFile(test::TestData("wyoming_text.txt")).Value());
  StationList stations;
  ASSERT_FALSE(stations.Add({.Number = 98989, .Ident = "KABC", .Name = "PLACE"}));
  const auto fetcher = download::OpenNetwork(net);
  const download::Source source{.Name = "n", .Address = server.Address("/n/@N")};
  const download::Request request{.Letters = "ABC", .Time = {1987, 11, 7, 18, 0}};
  EXPECT_EQ(FetchWork(*fetcher, nullptr, &stations, {}).Fetch(source, request).End,
            download::FetchEnd::Done);
  EXPECT_NE(FetchWork(*fetcher, nullptr, nullptr, {}).Fetch(source, request).End,
            download::FetchEnd::Done);
}

// The clock is the test's: at 19:00 the sounding of 18 is not due with a delay of 90 minutes.
TEST_F(DownloadWindowsTest, TheTimerFetchesAnHourOnceItIsDue) {
  using namespace std::chrono;
  download::Instant now = sys_days(1987y / November / 7) + 19h;
  server.AddBody("/other/98989/1987110718", ReadFile(test::TestData("wyoming_text.txt")).Value());
  int told = 0;
  BatchWindow window(
      program, [&] { ++told; }, nullptr, net, [&] { return now; });
  window.SetTimer(true);
  EXPECT_FALSE(program.DownloadTimer) << "no stations are listed";
  test::In<QLineEdit>(window, "Stations").setText("98989");
  test::In<QListWidget>(window, "Sources").item(1)->setCheckState(Qt::Checked);
  test::In<QComboBox>(window, "OnFailure").setCurrentIndex(1);
  test::In<QComboBox>(window, "Format").setCurrentText("Native");
  test::In<QCheckBox>(window, "Beeper").setChecked(true);
  test::In<QLineEdit>(window, "Hours").setText("25");
  window.SetTimer(true);
  EXPECT_FALSE(program.DownloadTimer) << "a day has no such hour";
  test::In<QLineEdit>(window, "Hours").setText("6 18");
  window.SetTimer(true);
  EXPECT_TRUE(program.DownloadTimer);
  EXPECT_EQ(test::In<QLabel>(window, "NextBatch").text(), "Next batch at 1987-11-07 19:30 UTC");
  window.Tick();
  EXPECT_EQ(server.Asked("/98989/1987110718"), 0);
  EXPECT_FALSE(program.Beeper);
  now += 31min;
  told = 0;
  window.Tick();
  EXPECT_EQ(server.Asked("/98989/1987110718"), 0) << "the first source has no such hour";
  const fs::path saved = program.Where.Data / "98989_1987110718.RAW";
  ASSERT_TRUE(fs::exists(saved))
      << test::In<QPlainTextEdit>(window, "Log").toPlainText().toStdString();
  EXPECT_TRUE(ReadFile(saved).Value().starts_with("\"VEXA 5.7\""));
  EXPECT_GT(told, 0);
  EXPECT_TRUE(program.Beeper);
  window.Tick();
  EXPECT_EQ(server.Asked("/other/98989/1987110718"), 1) << "an hour is fetched once";
  window.SilenceBeeper();
  EXPECT_FALSE(program.Beeper);
  window.SetTimer(false);
  now += 24h;
  window.Tick();
  EXPECT_EQ(server.Asked("/other/98989/1987110818"), 0);

  // The next time the window opens with the same list, its timer off.
  BatchWindow next(
      program, [] {}, nullptr, net, [&] { return now; });
  for (const char* name : {"Stations", "Hours", "Folder"}) {
    EXPECT_EQ(test::In<QLineEdit>(next, name).text(), test::In<QLineEdit>(window, name).text());
  }
  EXPECT_EQ(test::In<QComboBox>(next, "Format").currentText(), "Native");
  EXPECT_EQ(test::In<QListWidget>(next, "Sources").item(1)->checkState(), Qt::Checked);
  EXPECT_FALSE(program.DownloadTimer);
}

TEST(LoadSources, SaysWhichFileIsNowhere) {
  const test::TemporaryFolder folder;
  const auto list = LoadSources(folder.Path(), folder.Path() / "bin");
  ASSERT_FALSE(list);
  EXPECT_EQ(list.Error().Number, kFaultFileNotFound);
  EXPECT_EQ(list.Error().Detail, TextFromPath(folder.Path() / "VEXA.URL") +
                                     ": not found, nor is it among the program's files");
}

}  // namespace
}  // namespace vexa
