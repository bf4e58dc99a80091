// Mouse, wheel and keys on the main window's diagram.
#include "app/diagram_control.h"

#include <QElapsedTimer>
#include <QTableWidget>
#include <QTimer>
#include <QWheelEvent>

#include "app/diagram_view.h"
#include "app/window_test.h"

namespace vexa {
namespace {

class ControlTest : public test::WindowTest<> {
 protected:
  ControlTest() { window.resize(1000, 760); }
  void Open(std::initializer_list<SoundingRecord> records) {
    std::vector<std::filesystem::path> paths;
    for (const SoundingRecord& record : records) {
      paths.push_back(Saved(std::to_string(paths.size()) + ".RAW", record));
    }
    window.OpenFiles(paths);
    QApplication::processEvents();
  }
  QPointF Place(Point at) { return test::PlaceOn(window.View(), program.Plot->Page, at); }
  void Mouse(QEvent::Type type, Point at, Qt::MouseButton button = Qt::LeftButton) {
    test::Mouse(window.View(), type, Place(at), button);
  }
  void Key(int key) { test::PressKey(window.View(), key); }
  const diagram::DiagramMapping& At() const { return program.Plot->Mapping; }
};

TEST_F(ControlTest, ZoomsByRegionWheelAndKeysAndPans) {
  Open({test::ReferenceConvective()});
  const Point target = At().ToPoint(8.6, 700);
  Entry("mnuZoom").trigger();
  Mouse(QEvent::MouseButtonPress, {target.X - 800, target.Y - 900});
  Mouse(QEvent::MouseMove, {target.X + 800, target.Y + 900});
  Mouse(QEvent::MouseButtonRelease, {target.X + 800, target.Y + 900});
  ASSERT_TRUE(At().IsZoomed());
  const Rect frame = At().Frame();
  EXPECT_NEAR(At().ToPoint(8.6, 700).X, (frame.Left + frame.Right) / 2, 30);

  const Rect before = At().Region();
  const Point empty{frame.Right - 300, frame.Bottom - 300};
  Mouse(QEvent::MouseButtonPress, empty, Qt::MiddleButton);
  Mouse(QEvent::MouseMove, {empty.X - 600, empty.Y}, Qt::MiddleButton);
  Mouse(QEvent::MouseButtonRelease, {empty.X - 600, empty.Y}, Qt::MiddleButton);
  EXPECT_GT(At().Region().Left, before.Left);
  EXPECT_NEAR(At().Region().Width(), before.Width(), 1e-6);

  Entry("mnuUnZoom").trigger();
  EXPECT_FALSE(At().IsZoomed());
  const QPointF place = Place(target);
  QWheelEvent wheel(place, window.View().mapToGlobal(place), {}, {0, 240}, Qt::NoButton,
                    Qt::NoModifier, Qt::NoScrollPhase, false);
  QApplication::sendEvent(&window.View(), &wheel);
  EXPECT_NEAR(At().Region().Width(), frame.Width() / (1.25 * 1.25), 1);
  EXPECT_NEAR(At().ToPoint(8.6, 700).X, target.X, 20);
  Key(Qt::Key_Minus);
  Key(Qt::Key_Minus);
  EXPECT_FALSE(At().IsZoomed());
}

TEST_F(ControlTest, DragsALevelAndEscapeTakesItBack) {
  Open({test::ReferenceConvective()});
  const SoundingRecord before = program.Current.Record;
  const Point from = At().ToPoint(8.6, 700);
  const Point to = At().ToPoint(14.6, 700);
  Mouse(QEvent::MouseButtonPress, from);
  Mouse(QEvent::MouseMove, to);
  EXPECT_NEAR(program.Current.Record.Temp(10), 14.6, 0.2);
  EXPECT_TRUE(window.Control().Escape());
  EXPECT_EQ(program.Current.Record, before);
  Mouse(QEvent::MouseButtonRelease, to);
  EXPECT_FALSE(program.Doc.History().CanUndo());

  Mouse(QEvent::MouseButtonPress, from);
  for (int i = 1; i <= 5; ++i) Mouse(QEvent::MouseMove, {from.X + 60.0 * i, from.Y});
  Mouse(QEvent::MouseButtonRelease, {from.X + 300, from.Y});
  EXPECT_TRUE(program.Doc.Undo());
  EXPECT_EQ(program.Current.Record, before);
  EXPECT_FALSE(program.Doc.History().CanUndo());  // one step

  // A click on a level moves nothing; it places the cursor.
  Mouse(QEvent::MouseButtonPress, from);
  Mouse(QEvent::MouseButtonRelease, from);
  EXPECT_EQ(program.Current.Record, before);
  EXPECT_TRUE(program.View.Cursor.At);
}

TEST_F(ControlTest, KeysStepLevelsAndSoundings) {
  Open({test::ReferenceConvective(), test::ReferenceWinter()});
  Mouse(QEvent::MouseMove, At().ToPoint(10, 500));
  Key(Qt::Key_L);  // at the level nearest to the pointer
  EXPECT_EQ(program.Doc.LockedLevel(), 14);
  Key(Qt::Key_Down);
  EXPECT_EQ(program.Doc.LockedLevel(), 13);
  Key(Qt::Key_PageDown);
  EXPECT_EQ(program.Listed.Now(), 1u);
  ASSERT_TRUE(program.Doc.LockedLevel());  // stays at its pressure
  EXPECT_NEAR(program.Current.Record.Press(*program.Doc.LockedLevel()), 550, 50);
  Key(Qt::Key_PageUp);
  EXPECT_EQ(program.Listed.Now(), 0u);
}

TEST_F(ControlTest, TheLoopRunsUntilItIsStopped) {
  Open({test::ReferenceConvective(), test::ReferenceWinter()});
  program.Set.System.MovieTime = 0.1;
  QTimer::singleShot(0, &window, [] {
    auto* dialog = QApplication::activeModalWidget();
    ASSERT_NE(dialog, nullptr);
    dialog->findChild<QPushButton*>("StartLoop")->click();
  });
  Entry("mnuLoop").trigger();
  ASSERT_TRUE(program.View.Looping);
  QElapsedTimer time;
  time.start();
  while (program.Listed.Now() == 0 && time.elapsed() < 10000) {
    QApplication::processEvents(QEventLoop::AllEvents, 20);
  }
  EXPECT_EQ(program.Listed.Now(), 1u);
  ASSERT_TRUE(Entry("mnuSpecial").isVisible());
  Entry("mnuSpecial").trigger();
  EXPECT_FALSE(program.View.Looping);
}

TEST_F(ControlTest, TheSurfaceDialogTriesKeepsAndTakesBack) {
  Open({test::ReferenceConvective()});
  const SoundingRecord before = program.Current.Record;
  for (const bool kept : {false, true}) {
    SCOPED_TRACE(kept);
    Entry("mnuSurface").trigger();
    auto& dialog = test::In<QDialog>(window, "SurfaceValues");
    test::In<QDoubleSpinBox>(dialog, "SurfaceTemp").setValue(34);
    test::In<QCheckBox>(dialog, "SurfaceMix").setChecked(true);
    EXPECT_EQ(program.Results.Levels.Temp(1), 34);
    EXPECT_GT(program.Results.Levels.Temp(2), 30);  // mixed along
    dialog.findChild<QDialogButtonBox*>()
        ->button(kept ? QDialogButtonBox::Ok : QDialogButtonBox::Cancel)
        ->click();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(program.Current.Record == before, !kept);
  }
  EXPECT_EQ(program.Doc.History().UndoText(), "Undo change surface");
}

TEST_F(ControlTest, TheParcelPanelFollowsTheOwnParcel) {
  Open({test::ReferenceConvective()});
  Entry("mnuParcels").trigger();
  const auto& table = test::In<QTableWidget>(window, "ParcelTable");
  const auto cape = [&](int column) { return table.item(3, column)->text().toInt(); };
  EXPECT_EQ(cape(3), cape(0));
  window.findChild<QDoubleSpinBox*>("OwnDewpt")->setValue(20.5);
  EXPECT_GT(cape(3), cape(0));
  window.findChild<QPushButton*>("OwnFromSurface")->click();
  EXPECT_EQ(cape(3), cape(0));
}

}  // namespace
}  // namespace vexa
