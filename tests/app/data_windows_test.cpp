// The windows of export, listings, paste and choice, driven by their widgets.
#include "app/data_windows.h"

#include <map>
#ifndef _WIN32
#include <sys/resource.h>
#endif
#include <QClipboard>
#include <QFileDialog>
#include <QMessageBox>
#include <QMimeData>
#include <QRadioButton>
#include <QSpinBox>
#include <QTimer>

#include "app/data_dump_window.h"
#include "app/open_file_dialog.h"
#include "app/output_actions.h"
#include "app/sounding_chooser.h"
#include "app/text_window.h"
#include "app/window_interaction.h"
#include "app/window_test.h"
#include "core/platform.h"
#include "output/data_print.h"
#include "output/paint/paint.h"
#include "program/commands.h"
#include "report/report_folder.h"
#include "support/document.h"

namespace vexa {
namespace {

namespace fs = std::filesystem;

class DataWindowsTest : public test::ProgramAtHome {
 protected:
  DataWindowsTest() {
    test::Show(program, test::ReferenceConvective());
    program.Where.Data = program.Where.Export = folder.Path();
    Refresh(program, {.Sounding = true});
    user.Shares.clear();
    user.Statuses.clear();
  }
  std::string Write(const std::string& name, const std::string& bytes) {
    return TextFromPath(folder.Write(name, bytes));
  }
  std::string Text(const std::string& name) {
    const Outcome<std::string> bytes = ReadFile(folder.Path() / name);
    return bytes ? bytes.Value() : "no file";
  }

  WindowInteraction quiet{program.Gate, WindowInteraction::Attendance::Unattended};
};

TEST_F(DataWindowsTest, ARangeOfFilesIsExportedAndRejectedOnesAreNamed) {
  const std::string good = WriteRaw(test::ReferenceConvective());
  DataDumpWindow window(program, nullptr);
  window.SetFiles({Write("a.RAW", good), Write("b.RAW", "no sounding"), Write("c.RAW", good),
                   Write("d.RAW", good)});
  EXPECT_EQ(test::In<QListWidget>(window, "FileNumbers").item(2)->text(), "0003  c.RAW");
  test::In<QRadioButton>(window, "RangeOfFiles").setChecked(true);
  auto& start = test::In<QPushButton>(window, "cmdExport");
  test::In<QLineEdit>(window, "RangeLast").setText("0009");
  user.Expect("VEXA Data Export", Answer::Ok);
  start.click();
  ASSERT_EQ(user.Boxes.size(), 1u);
  EXPECT_EQ(user.Boxes[0].Text, "Range is not valid.");
  test::In<QLineEdit>(window, "RangeLast").setText("0003");
  test::In<QComboBox>(window, "OutputKind").setCurrentText("Spreadsheet");
  user.Chosen = {TextFromPath(folder.Path() / "out")};
  user.Expect("VEXA Data Export", Answer::Ok);
  start.click();
  EXPECT_TRUE(user.Asked.back().Folder.ends_with("a_data.csv")) << user.Asked.back().Folder;
  EXPECT_EQ(user.Statuses.back(), "Processing: 3 of 3");
  ASSERT_EQ(user.Boxes.size(), 2u);
  EXPECT_TRUE(
      user.Boxes[1].Text.starts_with("File out.csv has been created\nwith 2 soundings processed."));
  EXPECT_NE(Text("out.csv").find("Sounding Information"), std::string::npos);
  EXPECT_EQ(test::In<TextWindow>(window, "Rejected").windowTitle(), "BAD_out.csv");
}

TEST_F(DataWindowsTest, TheSevenSelectionsAreShownAndTaken) {
  DumpOptions other{.Height = DumpHeight::Feet,
                    .Reference = HeightMode::Agl,
                    .Speed = SpeedUnits::MetersPerSecond,
                    .Temp = DumpTemp::Fahrenheit,
                    .Water = DumpWater::Inches,
                    .FormatBlock = false,
                    .SignificantOnly = true};
  EXPECT_EQ(DataDumpOptionsWindow(other, nullptr).Chosen(), other);
  EXPECT_EQ(DataDumpOptionsWindow({}, nullptr).Chosen(), DumpOptions{});
  DataDumpOptionsWindow window({}, nullptr);
  for (const auto& [name, word] :
       {std::pair("DumpData1", "ft"), std::pair("DumpData2", "AGL"), std::pair("DumpData3", "M/S"),
        std::pair("DumpData4", "(F)"), std::pair("DumpData5", "in")}) {
    test::In<QComboBox>(window, name).setCurrentText(word);
  }
  test::In<QCheckBox>(window, "DumpData6").setChecked(false);
  test::In<QCheckBox>(window, "DumpData7").setChecked(true);
  EXPECT_EQ(window.Chosen(), other);
}

// The convective sounding's first level by hand: as the file has it, and 1 kt = 0.514444 m/s.
TEST_F(DataWindowsTest, TheDataTableSetsLevelsAndWindsSideBySide) {
  test::Show(program, test::Profile({{1000, 20, 10}, {850, 10, kMissing}},
                                    {{100, 180, 10}, {1500, 270, 20}, {3000, 360, 30}}, 100));
  const output::ListingSource from{program.Current.Record, program.Results, program.Set};
  EXPECT_EQ(
      output::SoundingDataTable(from),
      (output::ListingLines{" Pressure Levels                     Wind Levels",
                            "PR(mb)    T(C)   Td(C)  T-Td(C)      HT(m)[MSL]  DD(Deg)  FF(kts)",
                            "1000.0    20.0    10.0     10.0             100      180       10",
                            " 850.0    10.0      --       --            1500      270       20",
                            "                                           3000      360       30"}));
  program.Set.ThermoTemp = TempUnits::Fahrenheit;
  program.Set.GpmUnits = LengthUnits::Feet;
  program.Set.Heights = HeightMode::Agl;
  program.Set.Speed = SpeedUnits::MetersPerSecond;
  const output::ListingLines lines = output::SoundingDataTable(from);
  EXPECT_EQ(lines[1], "PR(mb)    T(F)   Td(F)  T-Td(F)     HT(ft)[AGL]  DD(Deg)  FF(m)");
  EXPECT_EQ(lines[2], "1000.0    68.0    50.0     18.0               0      180        5");
  EXPECT_EQ(lines[3].substr(36), "       4593      270       10");
}

// Somebody who accepts the proposed name and chooses the second kind of picture, twice.
TEST_F(DataWindowsTest, ImagesGetANameAndTheEndingOfTheChosenFilter) {
  WindowInteraction attended(program.Gate, WindowInteraction::Attendance::Attended);
  program.Doc.AskThrough(&attended);
  program.Doc.Enter(Document::GiveUpEdits(), test::ReferenceConvective(),
                    folder.Path() / "14061619.OAX");
  program.Where.Export = folder.Path();
  int replaced = 0;
  QTimer clicks;
  QObject::connect(&clicks, &QTimer::timeout, [&] {
    QWidget* shown = QApplication::activeModalWidget();
    if (auto* files = qobject_cast<QFileDialog*>(shown)) {
      files->selectNameFilter("BMP Files (*.BMP)");
      QMetaObject::invokeMethod(files, "accept");
    } else if (auto* box = qobject_cast<QMessageBox*>(shown)) {
      ++replaced;
      EXPECT_EQ(box->defaultButton(), box->button(QMessageBox::No)) << "Enter replaces nothing";
      box->button(QMessageBox::Yes)->click();
    } else if (auto* size = dynamic_cast<SaveImageWindow*>(shown)) {
      size->accept();
    }
  });
  clicks.start(10);
  SoundingWindow window(program, quiet);
  window.Run("mnuSave");
  EXPECT_TRUE(Text("14061619.BMP").starts_with("BM"));
  EXPECT_EQ(program.Settings.Window.ImageFolder, TextFromPath(folder.Path()));
  EXPECT_EQ(replaced, 0);
  window.Run("mnuSave");
  EXPECT_EQ(replaced, 1) << "asks before a file is replaced";
  program.Doc.AskThrough(&user);
}

#ifndef _WIN32
// A name of bytes that are no UTF-8 is listed beneath the others and opens; it is among the recent
// files then and opens from there.
TEST_F(DataWindowsTest, NamesThatAreNoUtf8OpenFromTheDialogAndFromTheRecentFiles) {
  const std::string name = "Z\xfcrich.RAW";
  Write(name, WriteRaw(test::ReferenceWinter()));
  Write("plain.RAW", WriteRaw(test::ReferenceConvective()));
  program.Where.Data = folder.Path();
  EXPECT_EQ(FilesWithOtherNames(folder.Path()),
            std::vector<fs::path>{folder.Path() / PathFromText(name)});
  WindowInteraction attended(program.Gate, WindowInteraction::Attendance::Attended);
  const std::optional<std::string> chosen = [&] {
    QTimer clicks;
    QObject::connect(&clicks, &QTimer::timeout, [] {
      auto* dialog = dynamic_cast<OpenFileDialog*>(QApplication::activeModalWidget());
      if (dialog == nullptr) return;
      auto* others = dialog->findChild<QListWidget*>("OtherNames");
      if (others == nullptr || others->count() != 1) return dialog->reject();
      EXPECT_EQ(others->item(0)->text(), QString::fromUtf8("Z\u00fcrich.RAW"));
      others->setCurrentRow(0);
      emit others->itemActivated(others->item(0));
    });
    clicks.start(10);
    return attended.ChooseFile({.Title = "Open", .Folder = TextFromPath(folder.Path())});
  }();
  ASSERT_TRUE(chosen);
  EXPECT_EQ(*chosen, TextFromPath(folder.Path()) + "/" + name);
  ASSERT_TRUE(OpenSoundings(program, {PathFromText(*chosen)}).Sounding);
  EXPECT_EQ(program.Settings.Window.RecentFiles[0], *chosen);
  ASSERT_TRUE(OpenSoundings(program, {folder.Path() / "plain.RAW"}).Sounding);
  ASSERT_TRUE(commands::OpenRecentFile(program, 2).Sounding);
  EXPECT_EQ(program.Current.Record.StationTitle, test::ReferenceWinter().StationTitle);
}

// The file that says that a report is whole never stands beside files of another report.
TEST_F(DataWindowsTest, AReportThatFailsLeavesTheOneBefore) {
  const fs::path report = folder.Path() / "case";
  Write("x.RAW", WriteRaw(program.Current.Record));
  test::Show(program, SoundingRecord(program.Doc.Record()), folder.Path() / "x.RAW");
  const report::ReportWriter writer{
      .Program = "one",
      .EncodePicture = [](const Picture& picture, const std::string& extension, int widthPx,
                          int heightPx) {
        return paint::EncodePicture(picture, extension, widthPx, heightPx);
      }};
  ASSERT_FALSE(report::WriteReport(program, report, writer));
  Write("case/mine.txt", "a note");
  const auto contents = [&report] {
    std::map<std::string, std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(report)) {
      if (!entry.is_regular_file()) continue;
      files[TextFromPath(entry.path())] = ReadFile(entry.path()).Value();
    }
    return files;
  };
  const auto before = contents();
  test::Show(program, test::ReferenceWinter(), folder.Path() / "x.RAW");
  LetLargeWritesFail();
  rlimit free{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &free), 0);
  const rlimit small{20000, free.rlim_max};  // the diagram has more
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
  const std::optional<Fault> fault = report::WriteReport(program, report, writer);
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &free), 0);
  ASSERT_TRUE(fault);
  EXPECT_EQ(fault->Number, kFaultDiskFull);
  EXPECT_EQ(contents(), before);

  report::ReportWriter second = writer;
  second.Program = "two";
  ASSERT_FALSE(report::WriteReport(program, report, second));
  EXPECT_EQ(contents().size(), before.size());
  EXPECT_EQ(Text("case/mine.txt"), "a note");
  EXPECT_NE(Text("case/versions.json").find("two"), std::string::npos);
}
#endif

TEST_F(DataWindowsTest, ImagesHaveTheChosenSize) {
  SaveImageWindow window({400, 300}, nullptr);
  test::In<QSpinBox>(window, "ImageWidth").setValue(800);
  test::In<QSpinBox>(window, "ImageHeight").setValue(600);
  test::In<QSpinBox>(window, "ImageDpi").setValue(300);
  test::In<QSpinBox>(window, "JpegQuality").setValue(30);
  EXPECT_EQ(window.SizePx(), QSize(800, 600));
  EXPECT_EQ(window.Settings().Dpi, 300);
  EXPECT_EQ(window.Settings().JpegQuality, 30);
}

TEST_F(DataWindowsTest, AFileOfSeveralSoundingsAsksWhich) {
  const fs::path file = test::TestData("igra_station.txt");
  std::vector<std::string> offered;
  program.ChooseSoundings = [&](const std::vector<std::string>& titles) {
    offered = titles;
    SoundingChooser chooser(titles, nullptr);
    auto& all = test::In<QPushButton>(chooser, "cmdAll");
    EXPECT_FALSE(all.autoDefault()) << "Enter after it would choose all once more";
    all.click();
    return chooser.Chosen();
  };
  EXPECT_TRUE(OpenSoundings(program, {file}).Sounding);
  ASSERT_GE(offered.size(), 2u);
  EXPECT_EQ(program.Listed.Size(), offered.size());
  const ObservationTime first = program.Current.Record.Time;
  EXPECT_TRUE(SequenceSounding(program, 1).Sounding);
  EXPECT_NE(program.Current.Record.Time, first);

  program.ChooseSoundings = [](const std::vector<std::string>&) { return std::vector<int>{}; };
  EXPECT_FALSE(OpenSoundings(program, {file}).Any());
  EXPECT_EQ(program.Listed.Size(), offered.size());
}

TEST_F(DataWindowsTest, PastedTextOpensAsASounding) {
  Changes changed;
  DataWindows windows(program, nullptr, {.Changed = [&](Changes c) { changed = c; }});
  QApplication::clipboard()->setText(
      QString::fromStdString(ReadFile(test::TestData("wyoming_text.txt")).Value()));
  windows.Paste();
  EXPECT_TRUE(changed.Sounding);
  EXPECT_EQ(program.Current.FileName, "Pasted.txt");
  const std::string title = program.Current.Record.StationTitle;
  const std::string kept = Text("Pasted.txt");

  changed = {};
  QMimeData data;
  data.setText("Dear all, the balloon burst early.");
  user.Expect("VEXA", Answer::Ok);
  windows.OpenData(data);
  EXPECT_FALSE(changed.Any());
  ASSERT_EQ(user.Boxes.size(), 1u);
  // The sounding in work is not the one with the trouble.
  EXPECT_EQ(user.Boxes.front().Text.find(program.Current.FileName), std::string::npos);
  EXPECT_EQ(program.Current.Record.StationTitle, title);
  EXPECT_EQ(Text("Pasted.txt"), kept);
}

}  // namespace
}  // namespace vexa
