// The window of fronts and its form: what the controls and the picture do to the front.
#include "app/front_window.h"

#include <QRadioButton>

#include "app/drag_view.h"
#include "app/widget_surface.h"
#include "app/window_test.h"
#include "program/front_displays.h"

namespace vexa {
namespace {

class FrontWindowTest : public test::WindowTest<> {
 protected:
  FrontWindowTest() {
    window.OpenFiles({Named("winter.RAW")});
    Choose("mnuHodoFront");
  }
  std::filesystem::path Named(const std::string& name) {
    SoundingRecord record = test::ReferenceWinter();
    record.StationTitle = name;
    return Saved(name, record);
  }
  FrontWindow& Fronts() { return Shown<FrontWindow>("Hodofront"); }
  QDialog& Form() {
    Fronts().findChild<QShortcut*>("F8Key")->activated();
    return *Fronts().findChild<QDialog*>("HodoFrontForm");
  }
  double Base() const { return FrontsOf(program).Found->Zone.Whole.Base; }
  double Top() const { return FrontsOf(program).Found->Zone.Whole.Top; }

  void Mouse(QEvent::Type type, vexa::Point page) {
    test::Mouse(Fronts().View(), type, test::PlaceOn(Fronts().View(), Fronts().Page(), page));
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
};

TEST_F(FrontWindowTest, TheFormNamesItsModeAndChoosesLayersByTheTable) {
  QDialog& form = Form();
  EXPECT_FALSE(test::In<QDoubleSpinBox>(form, "frontal slope").isEnabled());
  test::In<QCheckBox>(form, "chkFormImageMode").click();
  EXPECT_EQ(form.windowTitle(), "Manual Hodo-Front Control Image Mode");
  // The front of 500 to 1500 m is selected; another choice is the front, by hand.
  auto& layers = test::In<QListWidget>(form, "FrontLayers");
  EXPECT_TRUE(layers.item(1)->isSelected() && layers.item(2)->isSelected());
  layers.clearSelection();
  layers.setCurrentRow(5);
  EXPECT_EQ(Base(), 2500);
  EXPECT_EQ(Top(), 3000);
  EXPECT_TRUE(test::In<QRadioButton>(form, "optManual").isChecked());
  // The slope that is set counts now.
  test::In<QDoubleSpinBox>(form, "frontal slope").setValue(200);
  EXPECT_EQ(FrontsOf(program).Found->SlopeN, 200);
  test::In<QPushButton>(Fronts(), "cmdAutomatic").click();
  EXPECT_EQ(Base(), 500);
  EXPECT_EQ(Top(), 1500);
  EXPECT_EQ(program.Settings.Hodograph.Front, FrontSettings{});
}

TEST_F(FrontWindowTest, InTheImageModeAClickAndADragChooseLayers) {
  const auto click = [&](std::size_t layer) {
    Mouse(QEvent::MouseButtonPress, Arrow(layer));
    Mouse(QEvent::MouseButtonRelease, Arrow(layer));
  };
  click(3);
  EXPECT_EQ(Base(), 500);  // without the mode a click is only a click
  test::In<QCheckBox>(Fronts(), "chkImageMode").click();
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
  const auto other = Named("other.RAW");
  ChooseFrontLayers(program, 5, 5);
  window.OpenFiles({other});
  EXPECT_EQ(Base(), 500);
  ChooseFrontLayers(program, 5, 5);
  window.FollowDisplays();
  test::In<QCheckBox>(Fronts(), "chkHold").click();
  window.OpenFiles({Named("third.RAW")});
  EXPECT_EQ(Base(), 2500);
  test::In<QComboBox>(Fronts(), "cboControl").activated(0);
  EXPECT_EQ(Base(), 2500);  // held whatever the control is
  test::In<QCheckBox>(Fronts(), "chkHold").click();
  EXPECT_EQ(Base(), 500);
}

}  // namespace
}  // namespace vexa
