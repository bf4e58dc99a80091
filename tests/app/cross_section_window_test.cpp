// The cross-section's window: made of what is opened together, with a button for each field.
#include "app/cross_section_window.h"

#include <QFrame>

#include "app/area_map_form.h"
#include "app/drag_view.h"
#include "app/window_test.h"
#include "core/numbers.h"
#include "support/tagged_items.h"

namespace vexa {
namespace {

class SectionWindowTest : public test::WindowTest<> {
 protected:
  SectionWindowTest() {
    std::vector<std::filesystem::path> files;
    for (const double lon : {-95.0, -97.0, -100.0}) {
      SoundingRecord record = test::ReferenceConvective();
      SetDecimalPosition(record, 35, lon);
      record.StationTitle = "Station " + std::to_string(static_cast<int>(-lon));
      files.push_back(Saved(record.StationTitle + ".RAW", record));
    }
    window.OpenFiles(files);
    Choose("mnuCross");
  }
  CrossSectionWindow& Section() { return Shown<CrossSectionWindow>("CrossSection"); }
  static void Click(QWidget& on, QPointF at) {
    test::Mouse(on, QEvent::MouseButtonPress, at);
    test::Mouse(on, QEvent::MouseButtonRelease, at);
  }
  bool Says(std::string_view text) {
    return test::TextsOf(Section().Page()).find(text) != std::string::npos;
  }
};

TEST_F(SectionWindowTest, AButtonForEachFieldDrawsIt) {
  EXPECT_TRUE(Section().isVisible());
  EXPECT_TRUE(Says("Temperature (C)"));
  for (const crosssection::FieldRow& field : crosssection::Fields()) {
    auto* button =
        Section().findChild<QPushButton*>("cmd" + QString::fromLatin1(field.Code.data()));
    ASSERT_NE(button, nullptr) << field.Code;
    button->click();
    EXPECT_TRUE(button->isChecked());
    const std::string title(Trim(field.Title.substr(0, field.Title.find('('))));
    EXPECT_TRUE(Says(title)) << field.Code;
  }
}

TEST_F(SectionWindowTest, FormsChangeThePictureAndTakeItBack) {
  Section().findChild<QAction*>("mnuDiagramX")->trigger();
  auto& form = test::In<QDialog>(Section(), "DiagramX");
  SectionViewOf(program).Set.Scale = crosssection::SectionScale::Feet;
  Section().findChild<QAction*>("mnuRedraw")->trigger();
  EXPECT_TRUE(Says("ft (x1000) MSL"));
  test::In<QPushButton>(form, "cmdUndo").click();
  EXPECT_FALSE(Says("ft (x1000) MSL"));

  Section().findChild<QAction*>("mnuIntervalSet")->trigger();
  auto& intervals = test::In<QDialog>(Section(), "IntervalSet");
  for (const char* typed : {"2.5", "-1"}) {
    test::In<QLineEdit>(intervals, "txtTMP").setText(typed);
    for (auto* button : intervals.findChildren<QPushButton*>()) {
      if (button->text().contains("Apply")) button->click();
    }
    EXPECT_EQ(SectionViewOf(program).Intervals.Chosen.at("TMP"), 2.5);
  }
}

TEST_F(SectionWindowTest, TurnsAndShowsItsMap) {
  EXPECT_EQ(SectionViewOf(program).Of.Columns[0].Sounding.StationTitle, "Station 95");
  Section().findChild<QAction*>("FlipTime")->trigger();
  EXPECT_EQ(SectionViewOf(program).Of.Columns[0].Sounding.StationTitle, "Station 100");
  Section().findChild<QAction*>("TransferToAreaMapPlot")->trigger();
  auto& map = Shown<AreaMapForm>("AreaMapForm");
  const auto widget = [&](double lon) {
    return map.View().WidgetAt(*map.Frame().ToPage({35, lon})).toPoint();
  };
  Click(map.View(), widget(-97));
  EXPECT_EQ(SectionViewOf(program).Of.Columns.size(), 2U);
  Click(map.View(), widget(-97));
  EXPECT_EQ(SectionViewOf(program).Of.Columns.size(), 3U);
  // A drag of the ground moves the map; a drag from the line's end to the middle lays it anew.
  const auto drag = [&](QPoint from, QPoint to) {
    test::Mouse(map.View(), QEvent::MouseButtonPress, from);
    test::Mouse(map.View(), QEvent::MouseMove, (from + to) / 2);
    test::Mouse(map.View(), QEvent::MouseMove, to);
    test::Mouse(map.View(), QEvent::MouseButtonRelease, to);
  };
  const QPoint before = widget(-97);
  drag(before + QPoint(0, 100), before + QPoint(30, 120));
  EXPECT_EQ(widget(-97), before + QPoint(30, 20));
  map.findChild<QAbstractButton*>("cmdLarger")->click();
  map.findChild<QPushButton*>("cmdWhole")->click();
  EXPECT_EQ(widget(-97), before);
  drag(widget(-95), widget(-97));
  EXPECT_EQ(SectionViewOf(program).Of.Columns.size(), 2U);
  EXPECT_EQ(SectionViewOf(program).Of.Columns[0].Sounding.StationTitle, "Station 100");
  map.findChild<QPushButton*>("cmdAllStations")->click();
  EXPECT_EQ(test::CountOf(map.Page(), "station mark"), 3);
}

TEST_F(SectionWindowTest, SoundingsAreChosenAndShownSmall) {
  Section().findChild<QAction*>("mnuCrossSectionX")->trigger();
  auto& form = test::In<QDialog>(Section(), "CrossSectionX");
  const auto chosen = [&] {
    test::In<QPushButton>(form, "cmdApply").click();
    return SectionViewOf(program).Of.Columns.size();
  };
  test::In<QListWidget>(form, "lstSoundings").item(0)->setCheckState(Qt::Unchecked);
  EXPECT_EQ(chosen(), 2U);
  test::In<QLineEdit>(form, "txtFrom").setText("noon");
  test::In<QPushButton>(form, "cmdAll").click();
  EXPECT_EQ(chosen(), 2U);  // the time is none
  test::In<QLineEdit>(form, "txtFrom").clear();
  EXPECT_EQ(chosen(), 3U);

  Click(Section().View(), Section().View().rect().center());
  auto& mini = test::In<QFrame>(Section(), "MiniSounding");
  EXPECT_TRUE(mini.isVisible());
  test::In<QPushButton>(mini, "ExpandMiniSounding").click();
  EXPECT_EQ(program.Current.Record.StationTitle, "Station 97");
}

}  // namespace
}  // namespace vexa
