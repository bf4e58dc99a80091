#include <QDropEvent>
#include <QMimeData>
#include <QProgressBar>
#include <QScrollBar>
#include <QUrl>

#include "app/diagram_view.h"
#include "app/window_test.h"

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

class SoundingWindowTest : public test::WindowTest<> {
 protected:
  std::string Text(const char* label) {
    return test::In<QLabel>(window, label).text().toStdString();
  }
  QPointF Place(Point at) { return test::PlaceOn(window.View(), program.Plot->Page, at); }
  void MoveTo(QPointF place) { test::Mouse(window.View(), QEvent::MouseMove, place, Qt::NoButton); }
  void Drop(QMimeData& data, Qt::DropActions actions = Qt::CopyAction) {
    QDragEnterEvent enter({50, 50}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&window, &enter);  // without it the toolkit gives the drop to nobody
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent drop({50, 50}, actions, &data, Qt::LeftButton, Qt::NoModifier);
    if (actions.testFlag(Qt::MoveAction)) drop.setDropAction(Qt::MoveAction);
    QApplication::sendEvent(&window, &drop);
    EXPECT_EQ(drop.dropAction(), Qt::CopyAction);
  }
};

// A window system sends a size for every few pixels that the edge is dragged.
TEST_F(SoundingWindowTest, OfTheSizesOfADragTheLastIsComposed) {
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

TEST_F(SoundingWindowTest, DroppedFilesOpenAndCanBeSteppedThrough) {
  QMimeData data;
  QList<QUrl> urls;
  for (const auto& path : {Saved("M\xC3\xBCnchen 1.RAW", test::ReferenceWinter()),
                           Saved("b.RAW", test::ReferenceConvective())}) {
    urls.append(QUrl::fromLocalFile(QString::fromStdString(TextFromPath(path))));
  }
  data.setUrls(urls);
  // The source proposes to move, and would remove what it gave.
  Drop(data, Qt::CopyAction | Qt::MoveAction);
  EXPECT_EQ(program.Current.FileName, "M\xC3\xBCnchen 1.RAW");

  auto* sequence = window.findChild<QScrollBar*>("ScrollSoundings");
  ASSERT_TRUE(sequence->isVisible());
  sequence->setValue(1);
  EXPECT_EQ(program.Current.FileName, "b.RAW");
  EXPECT_TRUE(user.Kept().empty());
}

TEST_F(SoundingWindowTest, PointerAndKeysReadTheDiagram) {
  window.OpenFiles({Saved("a.RAW", test::ReferenceConvective())});
  QApplication::processEvents();
  // Neither the window's margins nor its proportions move the readout.
  const std::string at700 = "700 mb   10.0 C   PT 313.5 K     Temp:8.6 C  Td:-3.2 C";
  for (const QSize size : {QSize(500, 900), QSize(1300, 500), QSize(900, 700)}) {
    window.resize(size);
    QApplication::processEvents();
    MoveTo(Place(program.Plot->Mapping.ToPoint(10, 700)));
    EXPECT_EQ(Text("CursorReadout"), at700);
  }
  test::PressKey(window.View(), Qt::Key_Left);  // from the middle of the page
  const std::string middle = Text("CursorReadout");
  EXPECT_NE(middle, at700);
  EXPECT_NE(middle.find(" mb   "), std::string::npos);
  test::PressKey(window.View(), Qt::Key_Down, {}, Qt::ShiftModifier);
  EXPECT_NE(Text("CursorReadout"), middle);
}

TEST_F(SoundingWindowTest, WhatThePointerReadsFollowsTheSounding) {
  window.OpenFiles(
      {Saved("a.RAW", test::ReferenceConvective()), Saved("b.RAW", test::ReferenceWinter())});
  QApplication::processEvents();
  const QPointF place = Place(program.Plot->Mapping.ToPoint(10, 700));
  MoveTo(place);
  const std::string before = Text("CursorReadout");
  test::PressKey(window.View(), Qt::Key_Right);  // steps, since there are several
  EXPECT_EQ(program.Current.FileName, "b.RAW");
  EXPECT_NE(Text("CursorReadout"), before);
  EXPECT_NE(Text("CursorReadout").find("Temp:"), std::string::npos);
}

TEST_F(SoundingWindowTest, FaultsAreKeptWhenNobodyIsThereAndShownInThePanel) {
  window.OpenFiles({folder.Path() / "absent.RAW"});
  ASSERT_EQ(user.Kept().size(), 1u);
  window.OpenFiles({Saved("warm.RAW", test::Profile({{1000, 71, 10}, {900, 20, 10}}))});
  EXPECT_EQ(Text("ProgressPanel"), "Temperature is greater than 70C.");
}

TEST_F(SoundingWindowTest, TheProgressBarIsUpWhileARoutineTellsItsShareAndEscStops) {
  auto* bar = window.findChild<QProgressBar*>("ProgressBar");
  EXPECT_FALSE(bar->isVisible());
  {
    const auto pass = program.Gate.Enter();
    Progress progress(user);
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

TEST_F(SoundingWindowTest, ClosingWaitsForTheRunningCommand) {
  {
    const auto pass = program.Gate.Enter();
    EXPECT_FALSE(window.close());
    EXPECT_TRUE(program.Gate.Stopped());
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

}  // namespace
}  // namespace vexa
