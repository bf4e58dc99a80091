// The window of fronts and its form: what the controls and the picture do to the front.
#include "app/front_window.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QListWidget>
#include <QMouseEvent>
#include <QPushButton>
#include <QRadioButton>
#include <QShortcut>

#include "app/drag_view.h"
#include "app/sounding_window.h"
#include "app/widget_surface.h"
#include "core/files.h"
#include "core/raw_file.h"
#include "picture/stroke.h"
#include "program/front_displays.h"
#include "support/soundings.h"

namespace vexa {
namespace {

class FrontWindowTest : public testing::Test {
 protected:
  FrontWindowTest() {
    program.Doc.AskThrough(&interaction);
    program.Where = FoldersBelow(folder.Path());
    window.show();
    window.OpenFiles({Saved("winter.RAW", test::ReferenceWinter())});
    window.findChild<QAction*>("mnuHodoFront")->trigger();
    QApplication::processEvents();
  }
  std::filesystem::path Saved(const std::string& name, SoundingRecord record) {
    record.StationTitle = name;
    const std::filesystem::path path = folder.Path() / PathFromText(name);
    EXPECT_FALSE(SaveFile(path, WriteRaw(record)));
    return path;
  }
  FrontWindow& Fronts() { return dynamic_cast<FrontWindow&>(*window.Display("Hodofront")); }
  QDialog& Form() {
    Fronts().findChild<QShortcut*>("F8Key")->activated();
    return *Fronts().findChild<QDialog*>("HodoFrontForm");
  }
  template <class Widget>
  Widget& In(QWidget& of, const char* name) {
    return *of.findChild<Widget*>(name);
  }
  double Base() const { return FrontsOf(program).Found->Zone.Whole.Base; }
  double Top() const { return FrontsOf(program).Found->Zone.Whole.Top; }

  void Mouse(QEvent::Type type, vexa::Point page) {
    DragView& view = Fronts().View();
    const PageFit fit =
        FitPage(Fronts().Page().Width(), Fronts().Page().Height(),
                {0, 0, static_cast<double>(view.width()), static_cast<double>(view.height())});
    const QPointF at(fit.Left + page.X * fit.Scale, fit.Top + page.Y * fit.Scale);
    QMouseEvent event(type, at, view.mapToGlobal(at), Qt::LeftButton,
                      type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton,
                      Qt::NoModifier);
    QApplication::sendEvent(&view, &event);
  }
  // The middle of a layer's thermal wind on the picture.
  vexa::Point Arrow(std::size_t layer) {
    const Picture& page = Fronts().Page();
    const fronts::FrontPlot plot =
        PlotFrontsOf(program, program.Set, {page.Width(), page.Height(), Medium::Screen});
    const fronts::FrontResults found = FrontsOf(program);
    const fronts::FrontLayer& one = found.Layers.at(layer);
    return plot.Mapping.ToPoint({(one.Lower.U + one.Upper.U) / 2, (one.Lower.V + one.Upper.V) / 2});
  }

  test::TemporaryFolder folder;
  Program program;
  WindowInteraction interaction{program.Gate, WindowInteraction::Attendance::Unattended};
  SoundingWindow window{program, interaction};
};

TEST_F(FrontWindowTest, TheFormNamesItsModeAndChoosesLayersByTheTable) {
  QDialog& form = Form();
  EXPECT_TRUE(form.isVisible());
  EXPECT_EQ(form.windowTitle(), "Manual Hodo-Front Control");
  EXPECT_TRUE(In<QRadioButton>(form, "optAutomatic").isChecked());
  EXPECT_FALSE(In<QDoubleSpinBox>(form, "frontal slope").isEnabled());
  In<QCheckBox>(form, "chkFormImageMode").click();
  EXPECT_EQ(form.windowTitle(), "Manual Hodo-Front Control Image Mode");
  // The front of 500 to 1500 m is selected; another choice is the front, by hand.
  auto& layers = In<QListWidget>(form, "FrontLayers");
  EXPECT_EQ(layers.selectedItems().size(), 2);
  EXPECT_TRUE(layers.item(1)->isSelected() && layers.item(2)->isSelected());
  layers.clearSelection();
  layers.setCurrentRow(5);
  EXPECT_EQ(Base(), 2500);
  EXPECT_EQ(Top(), 3000);
  EXPECT_TRUE(In<QRadioButton>(form, "optManual").isChecked());
  EXPECT_TRUE(In<QDoubleSpinBox>(form, "frontal slope").isEnabled());
  // The slope that is set counts now.
  In<QDoubleSpinBox>(form, "frontal slope").setValue(200);
  EXPECT_EQ(FrontsOf(program).Found->SlopeN, 200);
  In<QPushButton>(Fronts(), "cmdAutomatic").click();
  EXPECT_EQ(Base(), 500);
  EXPECT_EQ(Top(), 1500);
  EXPECT_TRUE(In<QRadioButton>(form, "optAutomatic").isChecked());
  EXPECT_EQ(program.Settings.Hodograph.Front, FrontSettings{});
}

TEST_F(FrontWindowTest, InTheImageModeAClickAndADragChooseLayers) {
  const auto click = [&](std::size_t layer) {
    Mouse(QEvent::MouseButtonPress, Arrow(layer));
    Mouse(QEvent::MouseButtonRelease, Arrow(layer));
  };
  click(3);
  EXPECT_EQ(Base(), 500);  // without the mode a click is only a click
  In<QCheckBox>(Fronts(), "chkImageMode").click();
  click(3);
  EXPECT_EQ(Base(), 1500);
  EXPECT_EQ(Top(), 2000);
  const vexa::Point to = Arrow(5);
  Mouse(QEvent::MouseButtonPress, Arrow(2));
  Mouse(QEvent::MouseMove, to);
  Mouse(QEvent::MouseButtonRelease, to);
  EXPECT_EQ(Base(), 1000);
  EXPECT_EQ(Top(), 3000);
  EXPECT_EQ(program.Settings.Hodograph.Front.Control, FrontControl::Manual);
}

TEST_F(FrontWindowTest, AChoiceEndsWithItsSoundingUnlessItIsHeld) {
  const auto other = Saved("other.RAW", test::ReferenceWinter());
  ChooseFrontLayers(program, 5, 5);
  window.OpenFiles({other});
  EXPECT_EQ(Base(), 500);
  ChooseFrontLayers(program, 5, 5);
  window.FollowDisplays();
  In<QCheckBox>(Fronts(), "chkHold").click();
  window.OpenFiles({Saved("third.RAW", test::ReferenceWinter())});
  EXPECT_EQ(Base(), 2500);
  EXPECT_TRUE(In<QCheckBox>(Fronts(), "chkHold").isChecked());
  In<QComboBox>(Fronts(), "cboControl").activated(0);
  EXPECT_EQ(Base(), 2500);  // held whatever the control is
  In<QCheckBox>(Fronts(), "chkHold").click();
  EXPECT_EQ(Base(), 500);
}

TEST_F(FrontWindowTest, WhatIsOutOfRangeIsRefusedByName) {
  QDialog& form = Form();
  auto& interval = In<QDoubleSpinBox>(form, "thermal wind interval");
  EXPECT_EQ(interval.minimum(), 100);
  EXPECT_EQ(interval.maximum(), 3000);
  interval.setValue(1000);
  EXPECT_EQ(program.Settings.Hodograph.Front.IntervalM, 1000);
  EXPECT_FALSE(SetFrontSetting(program, "gradient threshold", "0.6"));
  EXPECT_FALSE(SetFrontSetting(program, "no such setting", "1"));
  EXPECT_EQ(program.Settings.Hodograph.Front.GradientThreshold, 0.04);
}

TEST_F(FrontWindowTest, FrontsInTimeNeedSeveralSoundingsOfOneStation) {
  auto* entry = window.findChild<QAction*>("mnuFrontSeries");
  EXPECT_FALSE(entry->isEnabled());
  EXPECT_EQ(entry->statusTip(), "(front height in time) needs several soundings of one station");
}

}  // namespace
}  // namespace vexa
