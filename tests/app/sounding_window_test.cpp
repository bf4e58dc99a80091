#include "app/sounding_window.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QDropEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QMimeData>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QScrollBar>
#include <QShortcut>
#include <QShortcutEvent>
#include <QStatusBar>
#include <QUrl>
#include <string>

#include "app/diagram_view.h"
#include "app/hodograph_window.h"
#include "core/files.h"
#include "core/raw_file.h"
#include "picture/stroke.h"
#include "support/soundings.h"

namespace vexa {
namespace {

class AppEnvironment : public testing::Environment {
 public:
  void SetUp() override { app_ = new QApplication(count_, arguments_); }
  void TearDown() override { delete app_; }

 private:
  int count_ = 1;
  char name_[5] = "test";
  char* arguments_[2] = {name_, nullptr};
  QApplication* app_ = nullptr;
};
const auto* const kApp = testing::AddGlobalTestEnvironment(new AppEnvironment);

class WindowTest : public testing::Test {
 protected:
  WindowTest() {
    program.Doc.AskThrough(&interaction);
    window.resize(900, 700);
    window.show();
    QApplication::processEvents();
  }

  std::filesystem::path Saved(const std::string& name, const SoundingRecord& record) {
    const std::filesystem::path path = folder.Path() / PathFromText(name);
    EXPECT_FALSE(SaveFile(path, WriteRaw(record)));
    return path;
  }
  std::string Text(const char* label) {
    return window.findChild<QLabel*>(label)->text().toStdString();
  }
  // Widget position of a page position.
  QPointF Place(Point at) {
    const Picture& page = program.Plot->Page;
    const PageFit fit = FitPage(page.Width(), page.Height(),
                                {0, 0, static_cast<double>(window.View().width()),
                                 static_cast<double>(window.View().height())});
    return {fit.Left + at.X * fit.Scale, fit.Top + at.Y * fit.Scale};
  }

  test::TemporaryFolder folder;
  Program program;
  WindowInteraction interaction{program.Gate, WindowInteraction::Attendance::Unattended};
  SoundingWindow window{program, interaction};
};

// A window system sends a size for every few pixels that the edge is dragged.
TEST_F(WindowTest, OfTheSizesOfADragTheLastIsComposed) {
  window.OpenFiles({Saved("a.RAW", test::ReferenceConvective())});
  QApplication::processEvents();
  int composed = 0;
  window.View().OnPainted([&composed] { ++composed; });
  for (int step = 1; step <= 60; ++step) window.resize(900 + 5 * step, 700 + 2 * step);
  QApplication::processEvents();
  EXPECT_GE(composed, 1);
  EXPECT_LE(composed, 2);
  const Surface own = window.View().OwnSurface();
  EXPECT_EQ(program.Plot->Page.Width(), own.Width);
  EXPECT_EQ(program.Plot->Page.Height(), own.Height);
}

TEST_F(WindowTest, MenuEntriesRunTheirCommands) {
  window.OpenFiles({Saved("a.RAW", test::ReferenceWinter())});
  ASSERT_TRUE(program.Plot);
  EXPECT_EQ(window.windowTitle().toStdString(), "VEXA  -  Reference B, winter");
  auto* tephigram = window.findChild<QAction*>("mnuTephigram");
  auto* skewT = window.findChild<QAction*>("mnuSkewT");
  ASSERT_TRUE(tephigram != nullptr && skewT != nullptr);
  EXPECT_TRUE(skewT->isChecked());
  tephigram->trigger();
  EXPECT_EQ(program.Plot->Mapping.Type(), DiagramType::Tephigram);
  EXPECT_TRUE(tephigram->isChecked());
  EXPECT_FALSE(skewT->isChecked());

  auto* leave = window.findChild<QAction*>("mnuExit");
  ASSERT_NE(leave, nullptr);
  leave->trigger();
  EXPECT_FALSE(window.isVisible());
}

TEST_F(WindowTest, DroppedFilesOpenAndCanBeSteppedThrough) {
  QMimeData data;
  QList<QUrl> urls;
  for (const auto& path : {Saved("M\xC3\xBCnchen 1.RAW", test::ReferenceWinter()),
                           Saved("b.RAW", test::ReferenceConvective())}) {
    urls.append(QUrl::fromLocalFile(QString::fromStdString(TextFromPath(path))));
  }
  data.setUrls(urls);
  QDragEnterEvent enter({50, 50}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(&window, &enter);
  EXPECT_TRUE(enter.isAccepted());
  // The source proposes to move, and would remove what it gave.
  QDropEvent drop({50, 50}, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
  drop.setDropAction(Qt::MoveAction);
  QApplication::sendEvent(&window, &drop);
  EXPECT_EQ(drop.dropAction(), Qt::CopyAction);
  EXPECT_EQ(program.Current.FileName, "M\xC3\xBCnchen 1.RAW");

  auto* sequence = window.findChild<QScrollBar*>("ScrollSoundings");
  ASSERT_TRUE(sequence->isVisible());
  sequence->setValue(1);
  EXPECT_EQ(program.Current.FileName, "b.RAW");
  EXPECT_TRUE(interaction.Kept().empty());
}

#ifndef _WIN32
TEST_F(WindowTest, ANameThatIsNoUtf8CanBeDropped) {
  const auto path = Saved("caf\xE9.RAW", test::ReferenceWinter());
  QMimeData data;
  data.setData("text/uri-list",
               "file://" + QByteArray::fromStdString(path.string()).toPercentEncoding("/"));
  QDragEnterEvent enter({50, 50}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(&window, &enter);  // without it the toolkit gives the drop to nobody
  QDropEvent drop({50, 50}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(&window, &drop);
  EXPECT_EQ(program.Current.FileName, "caf\xE9.RAW");
}
#endif

// A folder stands for the soundings in it.
TEST_F(WindowTest, EveryFormatAndAFolderCanBeDropped) {
  const std::filesystem::path samples = test::TestData("spc_text.spc").parent_path();
  const auto dropped = [this](const std::filesystem::path& path) {
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QString::fromStdString(TextFromPath(path)))});
    QDragEnterEvent enter({50, 50}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&window, &enter);
    QDropEvent drop({50, 50}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&window, &drop);
  };
  for (const auto& [name, format] : {std::pair{"native_1_9.RAW", "RAW"},
                                     {"dump_sheet.csv", "COLUMNS"},
                                     {"columns_units.txt", "COLUMNS"},
                                     {"dropsonde_raw.txt", "DROPSONDE"},
                                     {"dropsonde_report.frd", "DROPSONDE"},
                                     {"eol_one.eol", "CLASS"},
                                     {"spc_text.spc", "SPC"},
                                     {"packed.txt.gz", "SPC"},
                                     {"packed.zip", "SPC"},
                                     {"wyoming_csv.csv", "WYOMING"},
                                     {"wyoming_page.html", "WYOMING"},
                                     {"fsl_model.txt", "FSL"}}) {
    SCOPED_TRACE(name);
    dropped(samples / name);
    EXPECT_EQ(program.Current.FileName, name);
    EXPECT_EQ(program.Current.Record.DataFormat, format);
  }
  Saved("b.RAW", test::ReferenceConvective());
  const std::filesystem::path both = Saved("a.RAW", test::ReferenceWinter()).parent_path();
  EXPECT_FALSE(SaveFile(both / "notes.txt", "no sounding"));
  dropped(both);
  EXPECT_EQ(program.Current.FileName, "a.RAW");
  EXPECT_EQ(program.Listed.Size(), 2U);
}

TEST_F(WindowTest, WindowsOfDataOpenFromTheMenuAndFollow) {
  window.OpenFiles({Saved("a.RAW", test::ReferenceWinter())});
  for (const auto& [entry, name] : {std::pair{"mnuListings", "Listings"},
                                    {"mnuDownload", "Download"},
                                    {"mnuTimer", "BatchProcessing"},
                                    {"mnuArchive", "Archive"},
                                    {"mnuPrintData", "PrintData"}}) {
    SCOPED_TRACE(name);
    window.findChild<QAction*>(entry)->trigger();
    auto* opened = window.findChild<QDialog*>(name);
    ASSERT_NE(opened, nullptr);
    EXPECT_TRUE(opened->isVisible());
  }
  EXPECT_FALSE(window.findChild<QAction*>("mnuOFF")->isVisible());
  EXPECT_FALSE(window.findChild<QAction*>("mnuBeep")->isVisible());
  auto* complete = window.findChild<QPlainTextEdit*>("CompleteData");
  const QString before = complete->toPlainText();
  window.OpenFiles({Saved("b.RAW", test::ReferenceConvective())});
  EXPECT_NE(complete->toPlainText(), before);
  window.Run("mnuHodograph");
  ASSERT_NE(window.Display("Hodograph"), nullptr);
  EXPECT_NE(window.Display("Hodograph")->findChild<QAction*>("mnuSavePicture"), nullptr);
}

TEST_F(WindowTest, PointerAndKeysReadTheDiagram) {
  window.OpenFiles({Saved("a.RAW", test::ReferenceConvective())});
  QApplication::processEvents();
  // Neither the window's margins nor its proportions move the readout.
  for (const QSize size : {QSize(900, 700), QSize(500, 900), QSize(1300, 500)}) {
    window.resize(size);
    QApplication::processEvents();
    const QPointF place = Place(program.Plot->Mapping.ToPoint(10, 700));
    const auto at = window.View().PageAt(place);
    ASSERT_TRUE(at);
    QMouseEvent move(QEvent::MouseMove, place, window.View().mapToGlobal(place), Qt::NoButton,
                     Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(&window.View(), &move);
    EXPECT_EQ(Text("CursorReadout"), "700 mb   10.0 C   PT 313.5 K     Temp:8.6 C  Td:-3.2 C");
  }
  window.resize(900, 700);  // the middle of this page lies in the diagram's frame
  QApplication::processEvents();
  QKeyEvent left(QEvent::KeyPress, Qt::Key_Left, Qt::NoModifier);
  QApplication::sendEvent(&window.View(), &left);  // from the middle of the page
  const std::string middle = Text("CursorReadout");
  EXPECT_NE(middle, "700 mb   10.0 C   PT 313.5 K     Temp:8.6 C  Td:-3.2 C");
  EXPECT_NE(middle.find(" mb   "), std::string::npos);
  QKeyEvent down(QEvent::KeyPress, Qt::Key_Down, Qt::ShiftModifier);
  QApplication::sendEvent(&window.View(), &down);
  EXPECT_NE(Text("CursorReadout"), middle);
}

TEST_F(WindowTest, WhatThePointerReadsFollowsTheSounding) {
  window.OpenFiles(
      {Saved("a.RAW", test::ReferenceConvective()), Saved("b.RAW", test::ReferenceWinter())});
  QApplication::processEvents();
  const QPointF place = Place(program.Plot->Mapping.ToPoint(10, 700));
  QMouseEvent move(QEvent::MouseMove, place, window.View().mapToGlobal(place), Qt::NoButton,
                   Qt::NoButton, Qt::NoModifier);
  QApplication::sendEvent(&window.View(), &move);
  const std::string before = Text("CursorReadout");
  QKeyEvent right(QEvent::KeyPress, Qt::Key_Right, Qt::NoModifier);
  QApplication::sendEvent(&window.View(), &right);  // steps, since there are several
  EXPECT_EQ(program.Current.FileName, "b.RAW");
  EXPECT_NE(Text("CursorReadout"), before);
  EXPECT_NE(Text("CursorReadout").find("Temp:"), std::string::npos);
}

TEST_F(WindowTest, TheStatusLineSaysWhatAGreyEntryLacks) {
  auto* entry = window.findChild<QAction*>("mnuWinter");
  auto* menu = window.findChild<QMenu*>("mnuDisplay");
  ASSERT_TRUE(entry != nullptr && menu != nullptr && !entry->isEnabled());
  menu->popup(window.mapToGlobal(QPoint(10, 30)));
  const QPointF place = menu->actionGeometry(entry).center();
  QMouseEvent move(QEvent::MouseMove, place, menu->mapToGlobal(place), Qt::NoButton, Qt::NoButton,
                   Qt::NoModifier);
  QApplication::sendEvent(menu, &move);
  EXPECT_EQ(window.statusBar()->currentMessage().toStdString(),
            "(winter weather) needs a sounding");
  menu->hide();
  EXPECT_TRUE(window.statusBar()->currentMessage().isEmpty());
}

TEST_F(WindowTest, FaultsAreKeptWhenNobodyIsThereAndShownInThePanel) {
  window.OpenFiles({folder.Path() / "absent.RAW"});
  ASSERT_EQ(interaction.Kept().size(), 1u);
  window.OpenFiles({Saved("warm.RAW", test::Profile({{1000, 71, 10}, {900, 20, 10}}))});
  EXPECT_EQ(Text("ProgressPanel"), "Temperature is greater than 70C.");
}

TEST_F(WindowTest, TheProgressBarIsUpWhileARoutineTellsItsShareAndEscStops) {
  auto* bar = window.findChild<QProgressBar*>("ProgressBar");
  EXPECT_FALSE(bar->isVisible());
  {
    const auto pass = program.Gate.Enter();
    Progress progress(interaction);
    EXPECT_TRUE(progress.Begin("Loading sounding 3 of 4 . . .", 0.5));
    EXPECT_TRUE(bar->isVisible());
    EXPECT_EQ(bar->value(), (bar->maximum() + bar->minimum()) / 2);
    EXPECT_EQ(Text("ProgressPanel"), "Loading sounding 3 of 4 . . .");
    window.findChild<QShortcut*>("EscapeKey")->activated();
    EXPECT_FALSE(progress.Begin("Loading sounding 4 of 4 . . .", 0.75));
  }
  window.Show({});
  EXPECT_FALSE(bar->isVisible());
}

TEST_F(WindowTest, ClosingWaitsForTheRunningCommand) {
  {
    const auto pass = program.Gate.Enter();
    EXPECT_FALSE(window.close());
    window.Run("mnuEmagram");
    EXPECT_EQ(program.Set.Diagram, DiagramType::SkewT);
    EXPECT_TRUE(window.isVisible());
  }
  window.Show({});
  EXPECT_FALSE(window.isVisible());
}

TEST(DialogFilter, BecomesTheToolkitsForm) {
  EXPECT_EQ(DialogFilter("JPEG Files (*.JPG)|*.JPG|Text|*.TXT *.txt"),
            "JPEG Files (*.JPG);;Text(*.TXT *.txt)");
}

TEST(WithEnding, IsTheChosenFiltersWhereTheNameHasNoneOfThem) {
  constexpr const char* kPictures = "JPEG Files (*.JPG)|*.JPG|BMP Files (*.BMP)|*.BMP";
  constexpr const char* kTexts = "*.txt *.text|*.txt *.text|All|*.*";
  struct Case {
    const char *Name, *Filter;
    std::size_t Entry;
    const char* Named;
  };
  const Case cases[] = {
      {"/a.b/severe", kPictures, 0, "/a.b/severe.JPG"},
      {"severe", kPictures, 1, "severe.BMP"},
      {"severe.bmp", kPictures, 0, "severe.bmp"},
      {"12.5", kPictures, 1, "12.5.BMP"},
      {"list", kTexts, 0, "list.txt"},
      {"list.dat", kTexts, 0, "list.dat"},
      {"list", kTexts, 1, "list"},
      {"list", "", 0, "list"},
  };
  for (const Case& c : cases) EXPECT_EQ(WithEnding(c.Name, c.Filter, c.Entry), c.Named) << c.Name;
}

TEST_F(WindowTest, AKeyRepeatsTheEntryThatAKeyChoseLast) {
  const auto press = [this](QKeySequence keys, QObject* to) {
    QShortcutEvent event(keys, 0);
    QApplication::sendEvent(to, &event);
  };
  auto* entry = window.findChild<QAction*>("mnuEmagram");
  auto* again = window.findChild<QShortcut*>("RepeatKey");
  ASSERT_TRUE(entry != nullptr && again != nullptr);
  const DiagramType before = program.Set.Diagram;
  emit again->activated();  // nothing to repeat yet
  EXPECT_EQ(program.Set.Diagram, before);
  press(entry->shortcut(), entry);
  EXPECT_EQ(program.Set.Diagram, DiagramType::Emagram);
  EXPECT_NE(program.Set.System.ShortCutValue, 0);
  window.findChild<QAction*>("mnuSkewT")->trigger();  // by the mouse: not remembered
  EXPECT_EQ(program.Set.Diagram, DiagramType::SkewT);
  emit again->activated();
  EXPECT_EQ(program.Set.Diagram, DiagramType::Emagram);
}

}  // namespace
}  // namespace vexa
