#include "app/hodograph_window.h"

#include <algorithm>

#include "app/drag_view.h"
#include "app/window_test.h"
#include "config/settings_store.h"
#include "program/hodograph_commands.h"

namespace vexa {
namespace {

class DisplayTest : public test::WindowTest<> {
 protected:
  DisplayTest() { Open(test::ReferenceConvective()); }
  static void Press(QWidget* in, const char* button) { test::In<QPushButton>(*in, button).click(); }
  HodographWindow& Hodograph() { return Shown<HodographWindow>("Hodograph"); }
  QPointF Place(Point at) { return test::PlaceOn(Hodograph().View(), Hodograph().Plot().Page, at); }
  void Mouse(QEvent::Type type, QPointF at) { test::Mouse(Hodograph().View(), type, at); }
};

TEST_F(DisplayTest, EverythingFollowsTheStormVectorWhileItIsDragged) {
  window.resize(1800, 1500);  // with room for all of the analysis beside the diagram
  QApplication::processEvents();
  Choose("mnuHodograph");
  HodographWindow& hodograph = Hodograph();
  QApplication::processEvents();
  ASSERT_TRUE(hodograph.Plot().Storm);
  const hodograph::HodographMapping at = hodograph.Plot().Mapping;
  const auto shown = [&] {
    return ToSvg(hodograph.Plot().Page, 800, 600) + ToSvg(program.Plot->Page, 800, 600);
  };
  const Options before = program.Set;
  const std::string still = shown();
  const QPointF from = Place(at.ToPoint(*hodograph.Plot().Storm));
  const QPointF to = Place(at.ToPoint(analysis::Components({270, 40})));
  Mouse(QEvent::MouseButtonPress, from);
  Mouse(QEvent::MouseMove, to);
  // The pictures, the entry and the indices say the same at once.
  EXPECT_EQ(hodograph.Plot().Mapping.Scale, at.Scale);  // the rings stand still meanwhile
  const analysis::Wind drawn = analysis::FromComponents(*hodograph.Plot().Storm);
  EXPECT_NEAR(drawn.Dir, 270, 0.6);
  EXPECT_NEAR(drawn.Spd, 40, 0.5);
  EXPECT_EQ(hodograph.findChild<QComboBox*>("cboMode")->currentText(), "MANUAL");
  EXPECT_NEAR(hodograph.findChild<QDoubleSpinBox*>("txtSpeed")->value(), drawn.Spd, 0.06);
  EXPECT_NE(shown(), still);
  const analysis::AnalysisResults anew =
      analysis::Analyse(program.Current.Record, program.Set, program.Adiabats);
  for (std::size_t i = 0; i < anew.Indices.size(); ++i) {
    EXPECT_EQ(program.Results.Indices[i].Value, anew.Indices[i].Value)
        << anew.Indices[i].Row->Label;
  }

  // ESC gives the drag up, the button keeps it.
  hodograph.findChild<QShortcut*>("EscapeKey")->activated();
  EXPECT_EQ(shown(), still);
  Mouse(QEvent::MouseButtonRelease, to);
  EXPECT_EQ(program.Set, before);
  Mouse(QEvent::MouseButtonPress, from);
  Mouse(QEvent::MouseMove, to);
  Mouse(QEvent::MouseButtonRelease, to);
  EXPECT_EQ(program.Set.MotionMode, Scaling::Manual);
}

TEST_F(DisplayTest, AWindIsDraggedAsOneEditButNotInTheStormsFrame) {
  Choose("mnuHodograph");
  HodographWindow& hodograph = Hodograph();
  QApplication::processEvents();
  const SoundingRecord before = program.Current.Record;
  const auto drag = [&](int level, const analysis::WindVector& to) {
    const hodograph::HodographMapping at = hodograph.Plot().Mapping;
    const analysis::WindVector from =
        analysis::Components({before.WindDir(level), before.WindSpd(level)});
    Mouse(QEvent::MouseButtonPress, Place(at.ToPoint(from)));
    const QPointF end = Place(at.ToPoint(to));
    Mouse(QEvent::MouseMove, end);
    return end;
  };
  const analysis::WindVector to = analysis::Components({240, 44});
  drag(9, to);
  EXPECT_NEAR(program.Current.Record.WindDir(9), 240, 2);
  EXPECT_NEAR(program.Current.Record.WindSpd(9), 44, 1.1);
  hodograph.findChild<QShortcut*>("EscapeKey")->activated();
  EXPECT_EQ(program.Current.Record, before);

  const QPointF end = drag(9, to);
  Mouse(QEvent::MouseButtonRelease, end);
  EXPECT_EQ(program.Doc.History().UndoText(), "Undo drag wind of level 9");
  EXPECT_TRUE(program.Doc.Undo());
  EXPECT_EQ(program.Current.Record, before);
  window.Show({.Sounding = true});

  program.Settings.Hodograph.Frame = HodoOrigin::Storm;
  window.Show({.View = true});
  drag(9, to);
  EXPECT_EQ(program.Current.Record, before);
  ASSERT_EQ(user.Kept().size(), 1u);
  EXPECT_EQ(user.Kept()[0].Title, "Storm-Relative Wind Mode ...");
}

TEST_F(DisplayTest, ControlsOfThePlotOutlastTheProgram) {
  Choose("mnuHodograph");
  Choose("mnuHodogram");
  HodographWindow& hodograph = Hodograph();
  const auto choose = [&](const char* name, int index) {
    auto* box = hodograph.findChild<QComboBox*>(name);
    box->setCurrentIndex(index);
    box->activated(index);
  };
  choose("cboDepth", static_cast<int>(HodoDepth::Limit));
  hodograph.findChild<QDoubleSpinBox*>("txtDepth")->setValue(4.5);
  EXPECT_EQ(hodograph.Plot().Winds.back().Height, 4500);
  for (const char* box : {"chkSkipPlot", "chkCaptionAtTop", "chkNoSMplot", "chkFloat",
                          "chkHelicity", "chkMbe", "chkHold"}) {
    hodograph.findChild<QCheckBox*>(box)->click();
  }
  EXPECT_EQ(std::ranges::count(hodograph.Plot().Page.Items(), "trace", &Item::Tag), 0);
  auto* panel = hodograph.findChild<QLabel*>("FloatingPanel");
  EXPECT_GE(panel->height(), 11 * panel->fontMetrics().lineSpacing());  // all its lines
  choose("cboFrame", 1);
  choose("cboRings", 1);
  choose("cboCompare", 1);
  hodograph.findChild<QDoubleSpinBox*>("txtLimit")->setValue(130);
  Press(window.Display("Hodogram3D"), "cmdLeft");
  window.close();

  SettingsStore again;
  std::vector<std::string> notes;
  LoadSettings(folder.Path(), again, notes);
  EXPECT_TRUE(notes.empty());
  EXPECT_EQ(again.Set, program.Set);
  EXPECT_EQ(again.Set.HodoDepthLimitKm, 4.5);
  EXPECT_EQ(again.Hodograph, program.Settings.Hodograph);
  const HodographSettings fresh;
  EXPECT_NE(again.Hodograph.SkipPlot, fresh.SkipPlot);
  EXPECT_NE(again.Hodograph.CaptionAtTop, fresh.CaptionAtTop);
  EXPECT_NE(again.Hodograph.Hold, fresh.Hold);
  EXPECT_EQ(again.Hodograph.RingLimit, 130);
  EXPECT_EQ(again.Hodogram3D.Azimuth, 25);  // a step of 5 to the left of 30
}

TEST_F(DisplayTest, EnteredSpeedsAreInTheShownUnitAndHoldOutlastsTheSounding) {
  program.Set.Speed = SpeedUnits::MetersPerSecond;
  Choose("mnuHodograph");
  HodographWindow& hodograph = Hodograph();
  hodograph.findChild<QDoubleSpinBox*>("txtSpeed")->setValue(20);
  EXPECT_NEAR(program.Set.ManualMotionSpd, 38.88, 0.01);  // 20 / 0.5144
  EXPECT_EQ(program.Set.MotionMode, Scaling::Manual);

  auto* hold = hodograph.findChild<QCheckBox*>("chkHold");
  hold->click();
  window.OpenFiles({Saved("b.RAW", test::ReferenceWinter())});
  EXPECT_NEAR(analysis::FromComponents(program.Results.Storm.Chosen()->Motion).Spd, 38.88, 0.01);
  hold->click();
  EXPECT_EQ(program.Set.MotionMode, Scaling::Auto);
  EXPECT_FALSE(program.Settings.Hodograph.Hold);
}

TEST_F(DisplayTest, TableInvertsAndComparisonsAreKept) {
  Choose("mnuHodograph");
  HodographWindow& hodograph = Hodograph();
  auto* table = hodograph.findChild<QPlainTextEdit*>("WindTable");
  const QStringList upward = table->toPlainText().trimmed().split('\n');
  Press(&hodograph, "cmdInvert");
  const QStringList downward = table->toPlainText().trimmed().split('\n');
  ASSERT_EQ(upward.size(), 15);
  EXPECT_EQ(upward[0].trimmed(), downward.back().trimmed());
  const auto& compared = program.Displays.Of<HodographState>().Compared;
  Press(&hodograph, "cmdCompare2");
  ASSERT_EQ(compared.size(), 1u);
  EXPECT_EQ(compared[0].Slot, 2);
  Press(&hodograph, "cmdEmpty2");
  EXPECT_TRUE(compared.empty());
  EXPECT_TRUE(std::filesystem::exists(folder.Path() / "VEXAcalculations" / "HodoText.dat"));
}

TEST_F(DisplayTest, ButtonsAndKeysTurnTheTrajectory) {
  Choose("mnuHodogram");
  DisplayWindow& hodogram = *window.Display("Hodogram3D");
  const Hodogram3DSettings start = program.Settings.Hodogram3D;
  Press(&hodogram, "cmdRight");
  Press(&hodogram, "cmdUp");
  EXPECT_EQ(program.Settings.Hodogram3D.Azimuth, start.Azimuth + start.Step);
  EXPECT_EQ(program.Settings.Hodogram3D.Tilt, start.Tilt + start.Step);
  test::PressKey(hodogram.View(), Qt::Key_Left);
  EXPECT_EQ(program.Settings.Hodogram3D.Azimuth, start.Azimuth);
}

}  // namespace
}  // namespace vexa
