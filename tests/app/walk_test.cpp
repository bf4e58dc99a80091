// Walks through everything that the program can open: each command with a sounding and without,
// each window on the smallest screen and with nothing but keys, and what happens during a redraw.
#include <functional>
#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractScrollArea>
#include <QAbstractSpinBox>
#include <QClipboard>
#include <QHeaderView>
#include <QMimeData>
#include <QTabBar>
#include <QTableView>
#include <QTabWidget>
#include <QTextEdit>
#include <QTimer>
#include <QWheelEvent>
#include <set>

#include "app/diagram_view.h"
#include "app/screenshot.h"
#include "app/window_table.h"
#include "app/window_test.h"
#include "picture/picture.h"
#include "program/edit_commands.h"
#include "program/menu.h"
#include "program/view_commands.h"

namespace vexa {
namespace {

// Somebody who answers every box with yes and every question for a file with one at hand.
class Willing : public WindowInteraction {
 public:
  explicit Willing(CommandGate& gate) : WindowInteraction(gate, Attendance::Attended) {}
  Answer Ask(const Box& box) override {
    Boxes.push_back(box.Text);
    return box.Buttons == BoxButtons::Ok || box.Buttons == BoxButtons::OkCancel ? Answer::Ok
                                                                                : Answer::No;
  }
  std::optional<std::string> ChooseFile(const FileQuestion& question) override {
    return question.Saving ? SaveAs : Other;
  }
  std::vector<std::string> ChooseFiles(const FileQuestion&) override { return {Other}; }
  bool Yield() override {
    if (OnYield) OnYield();
    return true;
  }

  std::string SaveAs{};
  std::string Other{};
  std::vector<std::string> Boxes{};
  std::function<void()> OnYield{};
};

// A program with a window, at home in a folder of its own.
struct Desk {
  Desk() {
    program.Doc.AskThrough(&user);
    program.Where = FoldersBelow(folder.Path());
    for (const auto& below : {program.Where.Data, program.Where.Export}) {
      std::filesystem::create_directories(below);
    }
    program.HelpFile = test::SourceFolder() / "share" / "VEXA.HLP";
    user.SaveAs = TextFromPath(folder.Path() / "saved.RAW");
    user.Other = Saved("other.RAW", test::ReferenceWinter());
    window.resize(800, 560);
    window.show();
    window.Show({.View = true});
    QApplication::processEvents();
    user.Boxes.clear();
  }
  std::string Saved(const char* name, const SoundingRecord& record) {
    EXPECT_FALSE(SaveFile(folder.Path() / name, WriteRaw(record)));
    return TextFromPath(folder.Path() / name);
  }
  // Three soundings in the list, the middle one changed twice and taken back once, the diagram
  // enlarged: every entry that ever can be chosen is open.
  void Load() {
    const auto path = [this](const char* name) { return folder.Path() / name; };
    Saved("first.RAW", test::ReferenceWinter());
    Saved("a.RAW", test::ReferenceConvective());
    // Drawn once, when all is there: this runs before every command and every window.
    OpenSoundings(program, {path("first.RAW"), path("a.RAW"), path("other.RAW")});
    RunCommand(program, "mnuStepForward");
    for (const double warmer : {0.5, 1.0}) {
      SoundingRecord edited = program.Current.Record;
      edited.Temp(3) += warmer;
      AdoptEdit(program, std::move(edited));
    }
    RunCommand(program, "mnuUndo");
    const Rect& frame = program.Plot->Mapping.Frame();
    ZoomBy(program, {(frame.Left + frame.Right) / 2, frame.Bottom - 900}, 2);
    program.Settings.Window.RecentFiles.fill(user.Other);
    QApplication::clipboard()->setText(QString::fromStdString(WriteRaw(test::ReferenceWinter())));
    window.Show({.Sounding = true});
  }

  test::TemporaryFolder folder;
  Program program;
  Willing user{program.Gate};
  SoundingWindow window{program, user};
};

std::vector<QWidget*> OtherWindows(const Desk& desk) {
  std::vector<QWidget*> others;
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    if (widget != &desk.window && widget->isVisible()) others.push_back(widget);
  }
  return others;
}

void CloseOthers(const Desk& desk) {
  for (QWidget* widget : OtherWindows(desk)) widget->close();
  QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

// Opens something and looks at what is up then; a dialog that waits in a loop of its own is left
// after that, so this returns. What may be null: nothing came up.
void Opening(Desk& desk, const std::function<void()>& open,
             const std::function<void(QWidget*)>& look) {
  bool looked = false;
  const auto lookOnce = [&] {
    if (std::exchange(looked, true)) return;
    const auto others = OtherWindows(desk);
    QWidget* modal = QApplication::activeModalWidget();
    look(modal != nullptr ? modal : others.empty() ? nullptr : others.front());
  };
  QTimer clock;
  QObject::connect(&clock, &QTimer::timeout, &clock, [&] {
    if (QApplication::activeModalWidget() == nullptr) return;
    lookOnce();
    if (QWidget* modal = QApplication::activeModalWidget()) modal->close();
  });
  clock.start(20);
  open();
  clock.stop();
  QApplication::processEvents();
  lookOnce();
  CloseOthers(desk);
}

// Everything a command may change that users can see.
std::string Seen(const Desk& desk, const QWidget* opened) {
  std::string seen = ToSvg(desk.program.Plot->Page, 800, 600) + SoundingBanner(desk.program);
  if (opened != nullptr) seen += opened->objectName().toStdString();
  for (const char* dock : {"InfoPanel", "FourParcels"}) {
    seen += desk.window.findChild<QWidget*>(dock)->isVisible() ? "+" : "-";
  }
  for (const std::string& text : desk.user.Boxes) seen += text;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(desk.folder.Path())) {
    seen += TextFromPath(entry.path());
  }
  for (const auto* entry : desk.window.findChildren<QAction*>()) {
    seen += entry->isChecked() ? "x" : "o";
  }
  return seen + desk.window.findChild<QLabel*>("ProgressPanel")->text().toStdString() +
         QApplication::clipboard()->text().toStdString() +
         std::to_string(QApplication::clipboard()->mimeData()->formats().size());
}

constexpr std::string_view kExit = "mnuExit";
// Shown only while a loop, a timer or the beeper runs; their own tests press them.
const std::set<std::string_view> kHiddenNow = {"mnuSpecial", "mnuOFF", "mnuBeep"};
// What these do looks the same when there is nothing to mend: the picture that is there already.
const std::set<std::string_view> kNothingToSee = {"mnuRefreshed", "mnuSounding",
                                                  "mnuConfiguration0", "mnuSkewT", "diagram"};

TEST(Walk, EveryEntryDoesItsWorkOnASounding) {
  for (const MenuRow& row : MenuTree()) {
    if (row.Does.IsMenu() || kHiddenNow.contains(row.Name)) continue;
    SCOPED_TRACE(row.Name);
    Desk desk;
    desk.Load();
    auto* entry = desk.window.findChild<QAction*>(QString::fromUtf8(row.Name.data()));
    ASSERT_NE(entry, nullptr);
    EXPECT_TRUE(entry->isVisible());
    EXPECT_EQ(entry->isEnabled(), row.Does.IsBuilt);
    EXPECT_EQ(entry->toolTip(), entry->statusTip());
    if (!row.Does.IsBuilt) {
      EXPECT_TRUE(entry->statusTip().startsWith("Not in this version: "));
      continue;
    }
    const std::string before = Seen(desk, nullptr);
    std::string after;
    Opening(
        desk, [&] { entry->trigger(); },
        [&](const QWidget* opened) { after = Seen(desk, opened); });
    EXPECT_TRUE(desk.program.Gate.IsOpen());
    EXPECT_EQ(desk.window.isVisible(), row.Name != kExit);
    if (row.Name == kExit || kNothingToSee.contains(row.Name)) continue;
    EXPECT_NE(after, before);
  }
}

// However a command is reached, without a sounding none may fall over or leave a window that waits.
TEST(Walk, EveryCommandRunsWithoutASounding) {
  Desk desk;
  for (const MenuRow& row : MenuTree()) {
    if (row.Does.IsMenu() || row.Name == kExit) continue;
    SCOPED_TRACE(row.Name);
    const auto* entry = desk.window.findChild<QAction*>(QString::fromUtf8(row.Name.data()));
    if (entry->isVisible() && !entry->isEnabled()) {
      const std::string hint = entry->statusTip().toStdString();
      EXPECT_TRUE(hint.starts_with("Not in this version: ") ||
                  (hint.starts_with('(') && hint.find(") needs ") != std::string::npos))
          << hint;
    }
    desk.user.Other = {};  // nothing may be loaded on the way
    QApplication::clipboard()->clear();
    Opening(
        desk, [&] { desk.window.Run(row.Name); }, [](QWidget*) {});
    EXPECT_TRUE(desk.program.Gate.IsOpen());
    EXPECT_TRUE(desk.window.isVisible());
    ASSERT_TRUE(desk.program.Plot);
    EXPECT_EQ(desk.program.Current.Record.NumTempLevels(), 0);
  }
}

void Click(QWidget& on, QPointF at) {
  for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
    test::Mouse(on, type, at);
  }
}

TEST(Walk, ClicksAndTicksDuringARedrawChangeNothingAndBreakNothing) {
  Desk desk;
  desk.Load();
  desk.program.Settings.Window.Cursor = CursorMode::Free;
  DiagramView& view = desk.window.View();
  const auto disturb = [&] {
    Click(view, {300, 250});
    QWheelEvent wheel({300, 250}, view.mapToGlobal(QPointF(300, 250)), {}, {0, 120}, Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&view, &wheel);
    for (const int key : {Qt::Key_PageDown, Qt::Key_Plus, Qt::Key_L}) test::PressKey(view, key);
    for (const char* name : {"mnuTephigram", "mnuUndo", "mnuPrsHgt", "mnuICAO", "mnuRecentFile1"}) {
      desk.window.findChild<QAction*>(name)->trigger();
    }
    QTimer::singleShot(0, &desk.window, [&] { desk.window.Show({.Sounding = true}); });
    QApplication::processEvents();
  };

  // The same redraw on a second desk, left in peace.
  Desk quiet;
  quiet.Load();
  quiet.window.Run("mnuEmagram");

  int yields = 0;
  desk.user.OnYield = [&] {
    ++yields;
    disturb();
  };
  desk.window.Run("mnuEmagram");
  desk.user.OnYield = {};
  EXPECT_GE(yields, 3);
  EXPECT_EQ(ToSvg(desk.program.Plot->Page, 800, 600), ToSvg(quiet.program.Plot->Page, 800, 600));
  EXPECT_EQ(desk.program.View.Zoom, quiet.program.View.Zoom);
  EXPECT_EQ(desk.program.Current.FileName, "a.RAW");
  EXPECT_EQ(desk.program.Set, quiet.program.Set);
  EXPECT_FALSE(desk.program.View.Cursor.At);
  EXPECT_TRUE(desk.program.Doc.History().CanUndo());
  desk.window.findChild<QAction*>("mnuTephigram")->trigger();  // and now it does
  EXPECT_EQ(desk.program.Plot->Mapping.Type(), DiagramType::Tephigram);
}

// Windows whose contents are one picture or one text have nothing but that to reach.
bool IsControl(const QWidget& widget) {
  if (!widget.isVisible() || !widget.isEnabled()) return false;
  if (const auto* edit = qobject_cast<const QLineEdit*>(&widget)) {
    const QWidget* parent = edit->parentWidget();  // spin and combo boxes hold one
    return qobject_cast<const QAbstractSpinBox*>(parent) == nullptr &&
           qobject_cast<const QComboBox*>(parent) == nullptr;
  }
  if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) {
    return button->focusPolicy() != Qt::NoFocus &&
           (!button->autoExclusive() || button->isChecked());  // arrow keys reach the others
  }
  const auto* view = qobject_cast<const QAbstractItemView*>(&widget);
  if (view != nullptr) {
    return qobject_cast<const QHeaderView*>(&widget) == nullptr &&
           widget.focusPolicy() != Qt::NoFocus;
  }
  return qobject_cast<const QComboBox*>(&widget) != nullptr ||
         qobject_cast<const QAbstractSpinBox*>(&widget) != nullptr ||
         ((qobject_cast<const QPlainTextEdit*>(&widget) != nullptr ||
           qobject_cast<const QTextEdit*>(&widget) != nullptr) &&
          widget.focusPolicy() != Qt::NoFocus) ||
         dynamic_cast<const DiagramView*>(&widget) != nullptr;
}

// The controls that Tab comes by, going round once.
std::set<const QWidget*> ReachedByTab(QWidget& window) {
  std::set<const QWidget*> reached;
  window.activateWindow();
  QApplication::processEvents();
  if (window.focusWidget() == nullptr) window.setFocus();
  const QWidget* first = window.focusWidget();
  bool hasLeft = false;
  for (int step = 0; step < 300; ++step) {
    QWidget* focus = window.focusWidget();
    if (hasLeft && focus == first) break;
    hasLeft = hasLeft || focus != first;
    if (focus == nullptr) focus = &window;
    reached.insert(focus);
    if (focus->parentWidget() != nullptr) reached.insert(focus->parentWidget());
    if (auto* table = qobject_cast<QTableView*>(focus); table != nullptr && table->model()) {
      // Its cells are on the way, too: from the last one the next Tab goes on.
      table->setCurrentIndex(
          table->model()->index(table->model()->rowCount() - 1, table->model()->columnCount() - 1));
    }
    test::PressKey(*focus, Qt::Key_Tab);
    QApplication::processEvents();
  }
  return reached;
}

// Calls `look` for a window as it is and with each of its pages in front.
void OnEveryPage(QWidget& window, const std::function<void()>& look) {
  const auto books = window.findChildren<QTabWidget*>();
  if (books.empty()) return look();
  for (QTabWidget* book : books) {
    for (int page = 0; page < book->count(); ++page) {
      book->setCurrentIndex(page);
      QApplication::processEvents();
      look();
    }
  }
}

std::string NameOf(const QWidget& widget) {
  return widget.metaObject()->className() + (" " + widget.objectName().toStdString()) + " \"" +
         widget.property("text").toString().toStdString() + '"';
}

class EveryWindow : public testing::TestWithParam<std::string_view> {
 protected:
  // The window of that name, opened over a loaded sounding; a panel stands in the main window.
  void Open(const std::function<void(QWidget&)>& look) {
    desk.Load();
    ASSERT_TRUE(CanShow(desk.program, GetParam()));
    bool looked = false;
    Opening(
        desk, [&] { EXPECT_TRUE(desk.window.Open(GetParam())); },
        [&](QWidget* opened) {
          looked = true;
          look(opened == nullptr ? desk.window : *opened);
        });
    EXPECT_TRUE(looked);
  }
  Desk desk;
};

bool Scrolls(const QWidget& widget) {
  for (const QWidget* at = widget.parentWidget(); at != nullptr; at = at->parentWidget()) {
    if (qobject_cast<const QAbstractScrollArea*>(at) != nullptr) return true;
  }
  return false;
}

// A control has the room it asks for and lies within what holds it.
void ExpectWhole(const QWidget& window) {
  for (const QWidget* widget : window.findChildren<QWidget*>()) {
    if (!widget->isVisible() || widget->window() != &window) continue;
    const auto* label = qobject_cast<const QLabel*>(widget);
    const bool asks = IsControl(*widget) || (label != nullptr && !label->text().isEmpty());
    if (!asks) continue;
    const bool isText = qobject_cast<const QAbstractButton*>(widget) != nullptr ||
                        (label != nullptr && !label->wordWrap());
    const QSize least = isText ? widget->sizeHint() : widget->minimumSizeHint();
    EXPECT_GE(widget->width(), least.width()) << NameOf(*widget);
    EXPECT_GE(widget->height(), least.height()) << NameOf(*widget);
    if (const auto* table = qobject_cast<const QTableView*>(widget)) {
      const QHeaderView* head = table->horizontalHeader();
      for (int i = 0; head->isVisible() && i < head->count(); ++i) {
        if (head->isSectionHidden(i)) continue;
        EXPECT_GE(head->sectionSize(i),
                  head->fontMetrics().horizontalAdvance(table->model()
                                                            ->headerData(i, Qt::Horizontal)
                                                            .toString()
                                                            .section(QLatin1Char('\n'), -1)))
            << NameOf(*widget) << ", column " << i;
      }
    }
    if (Scrolls(*widget)) continue;
    const QRect inWindow(widget->mapTo(&window, QPoint()), widget->size());
    EXPECT_TRUE(window.rect().contains(inWindow)) << NameOf(*widget);
  }
}

// A screen of 800 x 600 leaves this to what a window's frame encloses.
constexpr QSize kRoom(800, 570);

// ctest runs this once more at twice the scale, which is fixed when a program starts.
TEST_P(EveryWindow, IsWholeOnTheSmallestScreen) {
  Open([this](QWidget& window) {
    if (&window != &desk.window) window.resize(window.size().boundedTo(kRoom));
    QApplication::processEvents();
    EXPECT_LE(window.width(), kRoom.width());
    EXPECT_LE(window.height(), kRoom.height());
    OnEveryPage(window, [&window] { ExpectWhole(window); });
  });
}

QString TopicByF1(QWidget& asked) {
  test::PressKey(asked, Qt::Key_F1);
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    if (widget->objectName() != "HelpWindow" || !widget->isVisible()) continue;
    return widget->findChild<QListWidget*>("HelpTopics")->currentItem()->text();
  }
  return {};
}

void ExpectOneTopic(QWidget& window, std::string_view name) {
  QWidget* panel = window.findChild<QWidget*>(QString::fromUtf8(name.data()));
  const bool isPanel = window.objectName() == "Sounding" && panel != nullptr;
  const QString topic = TopicByF1(isPanel ? *panel : window);
  EXPECT_FALSE(topic.isEmpty());
  EXPECT_EQ(topic == "Contents", name == "HelpWindow");
  // From the picture or the first control within it, too.
  if (isPanel || name == "HelpWindow") return;
  for (QWidget* inside : window.findChildren<QWidget*>()) {
    if (inside->window() == &window && IsControl(*inside)) {
      EXPECT_EQ(TopicByF1(*inside).toStdString(), topic.toStdString()) << NameOf(*inside);
    }
  }
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    if (widget->objectName() == "HelpWindow") widget->close();
  }
}

// Tab comes by every control, and F1 opens the window's topic at each of them.
TEST_P(EveryWindow, IsReachedByKeys) {
  Open([](QWidget& window) {
    ExpectOneTopic(window, GetParam());
    OnEveryPage(window, [&window] {
      const std::set<const QWidget*> reached = ReachedByTab(window);
      for (const QWidget* control : window.findChildren<QWidget*>()) {
        if (control->window() == &window && IsControl(*control)) {
          EXPECT_TRUE(reached.contains(control)) << NameOf(*control);
        }
      }
    });
  });
}

// All but those that only another window opens.
std::vector<std::string_view> NamesToOpen() {
  std::vector<std::string_view> names = WindowNames(AllDisplays());
  std::erase_if(names, [](std::string_view name) {
    return name == kChooserName || name == "DataDumpOptions" || name == "HodoFrontForm";
  });
  return names;
}

INSTANTIATE_TEST_SUITE_P(Names, EveryWindow, testing::ValuesIn(NamesToOpen()),
                         [](const auto& tested) { return std::string(tested.param); });

}  // namespace
}  // namespace vexa
