#include "app/hodograph_window.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QPushButton>

#include "app/drag_view.h"
#include "app/hodogram_window.h"
#include "app/sounding_window.h"
#include "core/files.h"
#include "core/raw_file.h"
#include "picture/stroke.h"
#include "support/soundings.h"

namespace vexa {
namespace {

class DisplayTest : public testing::Test {
 protected:
  DisplayTest() {
    program.Current.Ask = &interaction;
    program.Where = FoldersBelow(folder.Path());
    window.show();
    window.OpenFiles({Saved("a.RAW", test::ReferenceConvective())});
  }
  std::filesystem::path Saved(const std::string& name, const SoundingRecord& record) {
    const std::filesystem::path path = folder.Path() / PathFromText(name);
    EXPECT_FALSE(SaveFile(path, WriteRaw(record)));
    return path;
  }
  void Choose(const char* entry) { window.findChild<QAction*>(entry)->trigger(); }
  void Press(QWidget* in, const char* button) { in->findChild<QPushButton*>(button)->click(); }

  static QPointF Place(const DragView& view, const Picture& page, Point at) {
    const PageFit fit =
        FitPage(page.Width(), page.Height(),
                {0, 0, static_cast<double>(view.width()), static_cast<double>(view.height())});
    return {fit.Left + at.X * fit.Scale, fit.Top + at.Y * fit.Scale};
  }
  static void Mouse(QWidget& view, QEvent::Type type, QPointF at) {
    QMouseEvent event(type, at, view.mapToGlobal(at), Qt::LeftButton,
                      type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton,
                      Qt::NoModifier);
    QApplication::sendEvent(&view, &event);
  }

  test::TemporaryFolder folder;
  Program program;
  WindowInteraction interaction{program.Gate, WindowInteraction::Attendance::Unattended};
  SoundingWindow window{program, interaction};
};

TEST_F(DisplayTest, CheckMarkTellsWhetherTheWindowIsUp) {
  auto* entry = window.findChild<QAction*>("mnuHodograph");
  Choose("mnuHodograph");
  ASSERT_NE(window.Hodograph(), nullptr);
  EXPECT_TRUE(window.Hodograph()->isVisible());
  EXPECT_TRUE(entry->isChecked());
  Choose("mnuHodogram");  // both may be up
  EXPECT_TRUE(entry->isChecked());
  window.Hodograph()->close();
  EXPECT_FALSE(entry->isChecked());
  EXPECT_FALSE(program.ShowsHodograph);
  Choose("mnuHodograph");
  EXPECT_TRUE(window.Hodograph()->isVisible());
  Choose("mnuHodograph");
  EXPECT_FALSE(window.Hodograph()->isVisible());
  EXPECT_FALSE(entry->isChecked());
}

TEST_F(DisplayTest, DraggingTheStormVectorChangesEverythingThatDependsOnIt) {
  Choose("mnuHodograph");
  HodographWindow& hodograph = *window.Hodograph();
  QApplication::processEvents();
  const double before = program.Results.Storm.Chosen()->Helicity[2];
  ASSERT_TRUE(hodograph.Plot().Storm);
  const hodograph::HodographMapping at = hodograph.Plot().Mapping;
  const auto place = [&](const analysis::WindVector& wind) {
    return Place(hodograph.View(), hodograph.Plot().Page, at.ToPoint(wind));
  };
  const QPointF from = place(*hodograph.Plot().Storm);
  const QPointF to = place(analysis::Components({270, 40}));
  Mouse(hodograph.View(), QEvent::MouseButtonPress, from);
  Mouse(hodograph.View(), QEvent::MouseMove, to);
  EXPECT_EQ(program.Set.MotionMode, Scaling::Auto);  // not before the button is let go
  EXPECT_NEAR(analysis::FromComponents(*hodograph.Plot().Storm).Spd, 40, 0.5);
  Mouse(hodograph.View(), QEvent::MouseButtonRelease, to);
  EXPECT_EQ(program.Set.MotionMode, Scaling::Manual);
  const analysis::Wind motion = analysis::FromComponents(program.Results.Storm.Chosen()->Motion);
  EXPECT_NEAR(motion.Dir, 270, 0.6);
  EXPECT_NEAR(motion.Spd, 40, 0.3);
  EXPECT_NE(program.Results.Storm.Chosen()->Helicity[2], before);
  EXPECT_NEAR(hodograph.findChild<QDoubleSpinBox*>("txtSpeed")->value(), 40, 0.3);
  EXPECT_EQ(hodograph.findChild<QComboBox*>("cboMode")->currentText(), "MANUAL");

  // Beside the vector there is nothing to take hold of.
  const Options held = program.Set;
  Mouse(hodograph.View(), QEvent::MouseButtonPress, from + QPointF(80, 80));
  Mouse(hodograph.View(), QEvent::MouseMove, from);
  Mouse(hodograph.View(), QEvent::MouseButtonRelease, from);
  EXPECT_EQ(program.Set, held);
}

TEST_F(DisplayTest, AWindIsDraggedRelativeToTheGroundOnly) {
  Choose("mnuHodograph");
  HodographWindow& hodograph = *window.Hodograph();
  QApplication::processEvents();
  const SoundingRecord before = program.Current.Record;
  const int level = before.NumWindLevels();
  const auto place = [&](const analysis::Wind& wind) {
    return Place(hodograph.View(), hodograph.Plot().Page,
                 hodograph.Plot().Mapping.ToPoint(analysis::Components(wind)));
  };
  const analysis::Wind was{before.WindDir(level), before.WindSpd(level)};
  const QPointF from = place(was);
  const QPointF to = place({was.Dir, was.Spd - 10});
  Mouse(hodograph.View(), QEvent::MouseButtonPress, from);
  Mouse(hodograph.View(), QEvent::MouseMove, to);
  EXPECT_NEAR(program.Current.Record.WindSpd(level), was.Spd - 10, 1);
  QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
  QApplication::sendEvent(&hodograph.View(), &escape);
  EXPECT_EQ(program.Current.Record, before);
  Mouse(hodograph.View(), QEvent::MouseButtonRelease, to);
  EXPECT_FALSE(program.History.CanUndo());

  Mouse(hodograph.View(), QEvent::MouseButtonPress, from);
  Mouse(hodograph.View(), QEvent::MouseMove, to);
  Mouse(hodograph.View(), QEvent::MouseButtonRelease, to);
  EXPECT_NEAR(program.Current.Record.WindSpd(level), was.Spd - 10, 1);
  EXPECT_TRUE(program.History.CanUndo());
  window.Run(Command::Undo);
  EXPECT_EQ(program.Current.Record, before);

  program.Hodograph.Frame = HodoOrigin::Storm;
  window.Show({.View = true});
  Mouse(hodograph.View(), QEvent::MouseButtonPress, place(was));
  ASSERT_EQ(interaction.Kept().size(), 1u);
  EXPECT_EQ(interaction.Kept()[0].Title, "Storm-Relative Wind Mode ...");
  EXPECT_EQ(program.Current.Record, before);
}

TEST_F(DisplayTest, EnteredSpeedsAreInTheShownUnitAndHoldOutlastsTheSounding) {
  program.Set.Speed = SpeedUnits::MetersPerSecond;
  Choose("mnuHodograph");
  HodographWindow& hodograph = *window.Hodograph();
  hodograph.findChild<QDoubleSpinBox*>("txtSpeed")->setValue(20);
  EXPECT_NEAR(program.Set.ManualMotionSpd, 38.88, 0.01);  // 20 / 0.5144
  EXPECT_EQ(program.Set.MotionMode, Scaling::Manual);

  auto* hold = hodograph.findChild<QCheckBox*>("chkHold");
  hold->click();
  window.OpenFiles({Saved("b.RAW", test::ReferenceWinter())});
  EXPECT_NEAR(analysis::FromComponents(program.Results.Storm.Chosen()->Motion).Spd, 38.88, 0.01);
  hold->click();
  EXPECT_EQ(program.Set.MotionMode, Scaling::Auto);
  EXPECT_FALSE(program.Hodograph.Hold);
}

TEST_F(DisplayTest, TableInvertsAndComparisonsAreKept) {
  Choose("mnuHodograph");
  HodographWindow& hodograph = *window.Hodograph();
  auto* table = hodograph.findChild<QPlainTextEdit*>("WindTable");
  const QStringList upward = table->toPlainText().trimmed().split('\n');
  Press(&hodograph, "cmdInvert");
  const QStringList downward = table->toPlainText().trimmed().split('\n');
  ASSERT_EQ(upward.size(), 17);  // two lines above 15 winds
  EXPECT_EQ(upward[2], downward.back());
  Press(&hodograph, "cmdCompare2");
  ASSERT_EQ(program.Compared.size(), 1u);
  EXPECT_EQ(program.Compared[0].Slot, 2);
  Press(&hodograph, "cmdEmpty2");
  EXPECT_TRUE(program.Compared.empty());
  EXPECT_TRUE(std::filesystem::exists(folder.Path() / "VEXAcalculations" / "HodoText.dat"));
  EXPECT_TRUE(interaction.Kept().empty());
}

TEST_F(DisplayTest, ButtonsKeysAndTheTimerTurnTheTrajectory) {
  Choose("mnuHodogram");
  HodogramWindow& hodogram = *window.Hodogram();
  const Hodogram3DSettings start = program.Hodogram;
  Press(&hodogram, "cmdRight");
  Press(&hodogram, "cmdUp");
  EXPECT_EQ(program.Hodogram.Azimuth, start.Azimuth + start.Step);
  EXPECT_EQ(program.Hodogram.Tilt, start.Tilt + start.Step);
  QKeyEvent key(QEvent::KeyPress, Qt::Key_Left, Qt::NoModifier);
  QApplication::sendEvent(&hodogram.View(), &key);
  EXPECT_EQ(program.Hodogram.Azimuth, start.Azimuth);

  auto* rotate = hodogram.findChild<QPushButton*>("cmdRotate");
  rotate->click();
  EXPECT_EQ(rotate->text(), "STOP-Rotation");
  const QElapsedTimer since = [] {
    QElapsedTimer timer;
    timer.start();
    return timer;
  }();
  while (program.Hodogram.Azimuth == start.Azimuth && since.elapsed() < 5000) {
    QApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
  }
  EXPECT_NE(program.Hodogram.Azimuth, start.Azimuth);
  rotate->click();
  EXPECT_EQ(rotate->text(), "rotate");
}

}  // namespace
}  // namespace vexa
