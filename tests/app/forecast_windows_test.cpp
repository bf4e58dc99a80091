// The forecast's windows by mouse and keys: what is typed, boxed, drawn and saved.
#include "app/forecast_windows.h"

#include <QSpinBox>

#include "app/drag_view.h"
#include "app/window_test.h"
#include "support/tagged_items.h"

namespace vexa {
namespace {

// "here" at 45 N 10 E in a wind of 270/30; "west" 236 km upwind of it, "north" 222 km to its side.
class ForecastWindowsTest : public test::WindowTest<> {
 protected:
  ForecastWindowsTest() {
    program.Doc.AskThrough(&asked);
    Put("west", 45, 7, 4);
    Put("north", 47, 10, -4);
    window.OpenFiles({Put("here", 45, 10, 0)});
    ForecastViewOf(program).Set.UsesBoundary = false;
    Choose("mnuForecast");
  }
  std::filesystem::path Put(const std::string& name, double lat, double lon, double warmer) {
    SoundingRecord sounding =
        test::Profile({{1000, 20 + warmer, 10}, {850, 12 + warmer, 4}, {500, -20 + warmer, -40}},
                      {{0, 270, 30}, {500, 270, 30}, {1000, 270, 30}, {3000, 270, 30}});
    SetDecimalPosition(sounding, lat, lon);
    sounding.StationTitle = name + "  12Z 22 May 2023";
    return Saved(TextFromPath(program.Where.Data / (name + ".RAW")), sounding);
  }
  DisplayWindow& Hodo() { return *window.Display("ForecastHodo"); }
  ForecastView& View() { return ForecastViewOf(program); }
  void Press(const char* button) { Hodo().findChild<QPushButton*>(button)->click(); }
  void Type(const char* line, const char* text) {
    auto* entry = Hodo().findChild<QLineEdit*>(line);
    entry->setText(text);
    emit entry->editingFinished();
  }
  std::string Status() { return Hodo().findChild<QLabel*>("lblStatus")->text().toStdString(); }

  test::ScriptedInteraction asked;
};

TEST_F(ForecastWindowsTest, RefusesWhatIsOutOfRangeAndKeepsTheValueBefore) {
  struct Entry {
    const char *Line, *Good, *Bad, *Says;
  };
  const Entry entries[] = {
      {"txtMainLayer", "5000", "5001", "Range is 0 to 5000 meters, AGL."},
      {"txtMainLayer", "5000", "deep", "Range is 0 to 5000 meters, AGL."},
      {"txtBoundaryLayer", "0", "-1", "Range is 0 to 5000 meters, AGL."},
      {"txtRadius", "20", "19", "Range is 20 to 2000 km."},
      {"txtRadius", "2000", "2001", "Range is 20 to 2000 km."},
      {"txtPercentage", "100", "101", "Range is 1% to 100%"},
      {"txtPercentage", "1", "0", "Range is 1% to 100%"},
      {"txtPercentage", "1", "1.5", "Only integer values are allowed."},
      {"txtSurface", "-1.5", "warm", "Invalid data"},
  };
  for (const auto& [line, good, bad, says] : entries) {
    SCOPED_TRACE(bad);
    Type(line, good);
    asked.Expect(std::string_view(line) == "txtSurface" ? "Bad" : "Data range error", Answer::Ok);
    Type(line, bad);
    EXPECT_EQ(asked.Boxes.back().Text, says);
    EXPECT_EQ(Hodo().findChild<QLineEdit*>(line)->text(), good);
  }
}

TEST_F(ForecastWindowsTest, SearchesStepsAndGoesBack) {
  Press("cmdSearch");
  const QStringList rows =
      test::In<QPlainTextEdit>(Hodo(), "lstSoundings").toPlainText().split('\n');
  ASSERT_GE(rows.size(), 9);
  // 3 degrees of longitude at 45 N: 235.8 km, 127 nautical miles, begun at 271.1 degrees.
  EXPECT_TRUE(rows[4].contains("west") && rows[4].contains(" 271 ") &&
              rows[4].contains(" 236    127") && rows[4].endsWith("   *  "))
      << rows[4].toStdString();
  EXPECT_TRUE(rows[3].contains("north") && !rows[3].contains('*'));

  auto* description = Hodo().findChild<QLineEdit*>("txtDescription");
  description->setText("Mine");
  emit description->textEdited("Mine");
  Press("cmdForecast");
  Press("cmdForecast");
  EXPECT_EQ(Status(), "Advection rate: 30.0 kts from 270   2 hrs");
  EXPECT_EQ(program.Current.Record.StationTitle, "Mine_Forecast  14Z 22 May 2023");
  auto* hour = Hodo().findChild<QSpinBox*>("spnHour");
  EXPECT_EQ(hour->maximum(), 2);
  hour->stepDown();
  EXPECT_EQ(program.Current.Record.Time.Hour, 13);
  hour->setValue(0);
  EXPECT_EQ(program.Current.FileName, "here.RAW");
  Press("cmdRestart");
  EXPECT_TRUE(View().Series.Steps().empty());
}

TEST_F(ForecastWindowsTest, IsTurnedOnInItsFormAndOffByAClick) {
  auto* button = Hodo().findChild<QPushButton*>("cmdAutoSave");
  button->click();
  auto* form = window.findChild<QDialog*>("ForecastAutoSave");
  ASSERT_NE(form, nullptr);
  auto* line = form->findChild<QLineEdit*>("txtFolder");
  EXPECT_EQ(line->text().toStdString(), TextFromPath(program.Where.Forecast));
  const std::filesystem::path chosen = folder.Path() / "chosen";
  line->setText(QString::fromStdString(TextFromPath(chosen)));
  emit line->editingFinished();
  auto* turn = form->findChild<QPushButton*>("cmdSwitch");
  turn->click();
  EXPECT_EQ(button->text(), "Auto-save ON  (Click to turn OFF)");
  form->close();

  Press("cmdForecast");
  EXPECT_TRUE(StampOf(chosen / "here_Forecast.CSV"));
  EXPECT_TRUE(StampOf(chosen / "here_01h_Forecast.RAW"));
  button->click();
  EXPECT_EQ(button->text(), "Auto-save OFF...");
  Press("cmdForecast");
  EXPECT_FALSE(StampOf(chosen / "here_02h_Forecast.RAW"));
}

class ForecastMapTest : public ForecastWindowsTest {
 protected:
  ForecastMapTest() {
    Press("cmdSearch");
    Press("cmdMap");
  }
  ForecastMap& Map() { return Shown<ForecastMap>("ForecastMap"); }
  QPointF On(double lat, double lon) {
    return Map().View().WidgetAt(*Map().Frame().ToPage({lat, lon}));
  }
  void Mouse(QEvent::Type type, QPointF at, Qt::KeyboardModifiers held) {
    test::Mouse(Map().View(), type, at, Qt::LeftButton, held);
  }
  void Drag(QPointF from, QPointF to, Qt::KeyboardModifiers held = Qt::NoModifier) {
    Mouse(QEvent::MouseButtonPress, from, held);
    Mouse(QEvent::MouseMove, (from + to) / 2, held);
    Mouse(QEvent::MouseMove, to, held);
    Mouse(QEvent::MouseButtonRelease, to, held);
  }
  void BoxNorth() { Drag(On(47, 10) - QPointF(20, 15), On(47, 10) + QPointF(20, 15)); }
  bool Says(std::string_view text) {
    return test::TextsOf(Map().Page()).find(text) != std::string::npos;
  }
  std::vector<std::string> Upwind() {
    std::vector<std::string> names;
    for (const forecast::Neighbour& one : View().Series.Around().Near) {
      if (one.IsUpwind) names.push_back(one.Of->Sounding.StationTitle.substr(0, 5));
    }
    return names;
  }
};

TEST_F(ForecastMapTest, ABoxAndALineChooseUpwindAndRestoreGivesTheWindsChoiceBack) {
  using Names = std::vector<std::string>;
  EXPECT_TRUE(Says("Upwind stations are automatically determined."));
  EXPECT_EQ(Upwind(), Names{"west "});

  Drag(On(46, 8), On(46, 8) + QPointF(10, 10));
  EXPECT_TRUE(Says("Start again -- must box at least one wind"));
  EXPECT_TRUE(View().Drawing.Boxed.empty());
  BoxNorth();
  EXPECT_EQ(View().Drawing.Boxed.size(), 1u);
  EXPECT_EQ(Upwind(), Names{"west "}) << "nothing is chosen before the line";
  Drag(On(45, 10), On(47, 10));
  EXPECT_EQ(Upwind(), Names{"north"});
  EXPECT_NEAR(*View().Series.Around().WindFrom, 0, 1);
  Press("cmdForecast");
  EXPECT_LT(program.Current.Record.Temp(1), 20) << "the air of the north is colder";

  Map().findChild<QAction*>("mnuRestoreUpwind")->trigger();
  EXPECT_EQ(Upwind(), Names{"west "});
}

TEST_F(ForecastMapTest, EscapeGivesUpABoxAndShiftMovesTheMap) {
  BoxNorth();
  const auto escape = [&] { Map().findChild<QShortcut*>("EscapeKey")->activated(); };
  escape();
  EXPECT_TRUE(View().Drawing.Boxed.empty());
  EXPECT_TRUE(Map().isVisible());
  // A click and a drag with the shift key box nothing.
  const QPointF before = On(47, 10);
  Drag(before, before);
  Drag(before, before + QPointF(40, 20), Qt::ShiftModifier);
  EXPECT_TRUE(View().Drawing.Boxed.empty());
  EXPECT_NEAR(On(47, 10).x(), before.x() + 40, 1);
  Mouse(QEvent::MouseMove, On(45, 7), Qt::NoModifier);
  EXPECT_TRUE(Map().findChild<QLabel*>("lblMapReadout")->text().contains("west"));
  escape();
  EXPECT_FALSE(Map().isVisible());
}

}  // namespace
}  // namespace vexa
