// The option forms, driven as users drive them.
#include "app/config_window.h"

#include <algorithm>
#include <map>
#include <QElapsedTimer>
#include <QMenu>
#include <QRadioButton>
#include <QTabWidget>
#include <QTimer>
#include <QToolButton>

#include "app/qt_text.h"
#include "app/window_test.h"
#include "config/catalogue.h"
#include "program/start_up.h"

namespace vexa {
namespace {

class FormTest : public test::WindowTest<> {
 protected:
  FormTest() {
    StartUp(program, {TextFromPath(folder.Path()), {}});
    window.resize(800, 600);
    WindowTest::Open(test::ReferenceConvective());
  }

  ConfigWindow& Open(const char* entry) {
    Choose(entry);
    for (const FormRow& row : OptionForms()) {
      if (auto* found = window.findChild<ConfigWindow*>(QString::fromUtf8(row.Name.data()))) {
        form = found;
      }
    }
    QApplication::processEvents();
    return *form;
  }
  template <class Control>
  Control& At(const char* key) {
    auto* control = form->findChild<Control*>(key);
    EXPECT_NE(control, nullptr) << key;
    return *control;
  }
  void Press(QDialogButtonBox::StandardButton button) {
    form->findChild<QDialogButtonBox*>()->button(button)->click();
    Settle();
  }
  static void Type(QWidget& into, const std::string& text) {
    auto* line = qobject_cast<QLineEdit*>(&into);
    if (line == nullptr) line = into.findChild<QLineEdit*>();
    line->setFocus();
    line->selectAll();
    for (const char c : text) test::PressKey(*line, 0, QString(QLatin1Char(c)));
    test::PressKey(into, Qt::Key_Return);
  }
  // Until the preview has been drawn: a form waits a moment for further changes.
  static void Settle() {
    QElapsedTimer time;
    time.start();
    do {
      QApplication::processEvents(QEventLoop::AllEvents, 20);
    } while (IsAnyoneWaiting() && time.elapsed() < 60000);
  }
  static bool IsAnyoneWaiting() {
    constexpr int kMoment = 1000;  // ms
    for (const QWidget* window : QApplication::topLevelWidgets()) {
      for (const QTimer* timer : window->findChildren<QTimer*>()) {
        if (timer->isSingleShot() && timer->isActive() && timer->interval() < kMoment) return true;
      }
    }
    return false;
  }
  std::string Drawn() const { return ToSvg(program.Plot->Page, 1600, 1200); }
  std::string Message() const {
    return form->findChild<QLabel*>("FormMessage")->text().toStdString();
  }

  ConfigWindow* form = nullptr;
};

// Letters that Alt chooses by on a page.
std::vector<QChar> LettersOf(const OptionPage& page) {
  QStringList captions;
  for (const QLabel* label : page.findChildren<QLabel*>()) {
    captions << label->text();
    EXPECT_NE(label->buddy(), nullptr) << label->text().toStdString();
  }
  for (const QCheckBox* box : page.findChildren<QCheckBox*>()) captions << box->text();
  std::vector<QChar> letters;
  for (QString plain : captions) {
    plain.replace("&&", "");
    const qsizetype mark = plain.indexOf('&');
    if (mark >= 0) letters.push_back(plain[mark + 1].toLower());
  }
  std::ranges::sort(letters);
  return letters;
}

TEST_F(FormTest, EveryOptionHasOneControlAndItsLetterIsItsOwn) {
  std::map<std::string_view, int> shown;
  for (const char* entry : {"mnuDiag", "mnuProgram", "mnuSystem"}) {
    Open(entry);
    for (const OptionRow& row : Catalogue()) {
      for (const QWidget* control : form->findChildren<QWidget*>(ToQString(row.Key))) {
        ++shown[row.Key];
        EXPECT_FALSE(control->toolTip().isEmpty()) << row.Key;
        EXPECT_EQ(control->isEnabled(), row.Matters == nullptr || row.Matters(program.Set))
            << row.Key;
      }
    }
    for (const OptionPage* page : form->findChildren<OptionPage*>()) {
      const std::vector<QChar> letters = LettersOf(*page);
      EXPECT_EQ(std::ranges::adjacent_find(letters), letters.end());
      EXPECT_EQ(std::ranges::count(letters, 'a') + std::ranges::count(letters, 'd'), 0);
      EXPECT_GE(letters.size(), 1u);
    }
    Press(QDialogButtonBox::Cancel);
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
  for (const OptionRow& row : Catalogue()) EXPECT_EQ(shown[row.Key], 1) << row.Key;
}

TEST_F(FormTest, ControlsOfEveryKindChangeThePreview) {
  Open("mnuDiag");
  struct Case {
    const char* key;
    std::function<void()> act;
    const char* value;
  };
  const Case cases[] = {
      {"Surface line", [this] { At<QCheckBox>("Surface line").click(); }, "false"},
      {"Diagram type", [this] { At<QRadioButton>("Diagram type=emagram").click(); }, "emagram"},
      {"Temp grid interval",
       [this] {
         auto& list = At<QComboBox>("Temp grid interval");
         list.setFocus();
         test::PressKey(list, Qt::Key_Up);
       },
       "5"},
      {"Td color", [this] { At<QToolButton>("Td color").menu()->actions().at(2)->trigger(); }, "2"},
      {"Temp grid scaling", [this] { At<QRadioButton>("Temp grid scaling=MANUAL").click(); },
       "MANUAL"},
      {"Temp MIN", [this] { Type(At<QWidget>("Temp MIN"), "-52.5"); }, "-52.5"},
      {"Line #2 Height", [this] { Type(At<QWidget>("Line #2 Height"), "3000"); }, "3000"},
      {"Line #2 Plot", [this] { At<QCheckBox>("Line #2 Plot").click(); }, "true"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.key);
    const std::string before = Drawn();
    c.act();
    Settle();
    EXPECT_EQ(FindOption(c.key)->Write(program.Set), c.value);
    EXPECT_EQ(Drawn() == before, std::string_view(c.key) == "Line #2 Height") << "not switched on";
  }
}

TEST_F(FormTest, RefusesWhatIsOutOfRangeAndNamesTheRange) {
  Open("mnuProgram");
  Type(At<QWidget>("Search depth"), "9000");
  EXPECT_EQ(Message(), "Search depth takes 50 to 500 mb.");
  EXPECT_EQ(At<QDoubleSpinBox>("Search depth").value(), 300);
  Settle();
  EXPECT_EQ(program.Set.SearchDepth, 300);
  Type(At<QWidget>("Search depth"), "120.5");
  Settle();
  EXPECT_EQ(program.Set.SearchDepth, 120.5);

  // Each is within its range, but they do not go together.
  At<QRadioButton>("Storm motion=Traditional").click();
  Type(At<QWidget>("Shear SR Layer Bot"), "8");
  EXPECT_EQ(Message(), "Shear SR Layer Bot must lie below Shear SR Layer Top.");
  EXPECT_FALSE(form->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->isEnabled());
  Settle();
  EXPECT_EQ(program.Set.ShearLayerBottomKm, 0);
  Type(At<QWidget>("Shear SR Layer Top"), "9");

  // What follows from a change is shown at once.
  Type(At<QWidget>("CAPE depth xKm depth"), "2");
  EXPECT_EQ(At<QDoubleSpinBox>("EHI depth").value(), 2);
}

TEST_F(FormTest, CancelTakesEverythingBackAndOkKeepsIt) {
  const std::string before = Drawn();
  const Options options = program.Set;
  Open("mnuDiag");
  At<QCheckBox>("Freeze line").click();
  Press(QDialogButtonBox::Apply);
  EXPECT_TRUE(StampOf(folder.Path() / "VEXAMAIN.SYS"));
  At<QRadioButton>("Diagram type=tephigram").click();
  Settle();
  EXPECT_NE(Drawn(), before);
  test::PressKey(*form, Qt::Key_Escape);
  Settle();
  EXPECT_EQ(Drawn(), before);
  EXPECT_EQ(program.Set, options);
  Program next;
  StartUp(next, {TextFromPath(folder.Path()), {}});
  EXPECT_EQ(next.Set, options);

  Open("mnuDiag");
  At<QRadioButton>("Diagram type=emagram").click();
  Press(QDialogButtonBox::Ok);  // before the preview was drawn
  EXPECT_EQ(program.Plot->Mapping.Type(), DiagramType::Emagram);
  // This form keeps what lies in the hodograph's file, too.
  Open("mnuProgram");
  At<QRadioButton>("Storm mover=RM").click();
  Press(QDialogButtonBox::Ok);
  window.resize(900, 640);
  QApplication::processEvents();
  for (const bool isClosed : {false, true}) {
    if (isClosed) window.close();
    StartUp(next, {TextFromPath(folder.Path()), {}});
    EXPECT_EQ(next.Set.Diagram, DiagramType::Emagram);
    EXPECT_EQ(next.Set.Mover, StormMover::Right);
  }
  EXPECT_EQ(next.Settings.Window.Width, 900);
  EXPECT_EQ(next.Settings.Window.Height, 640);
  EXPECT_EQ(next.Settings.Window.RecentFiles[0], TextFromPath(folder.Path() / "a.RAW"));
}

TEST_F(FormTest, DefaultsComeBackTabByTab) {
  program.Set.FreezeLine = false;
  program.Set.MbLimit = 300;
  Open("mnuDiag");
  form->findChild<QTabWidget*>()->setCurrentIndex(1);
  At<QPushButton>("RestoreDefaults").click();
  Settle();
  EXPECT_EQ(program.Set.MbLimit, 100);
  EXPECT_EQ(At<QComboBox>("MB limit").currentText(), "100 mb");
  EXPECT_FALSE(program.Set.FreezeLine);
}

}  // namespace
}  // namespace vexa
