// A display is one row: one that is added here and nowhere else is found by menu and keys, has a
// window with its controls that follows the sounding, is printed, comes back at the next start, and
// has its topic of the help. Beside it: every menu entry leads to something.
#include <algorithm>
#include <QMenu>
#include <QTabWidget>

#include "app/display_window.h"
#include "app/screenshot.h"
#include "app/window_table.h"
#include "app/window_test.h"
#include "picture/page_layouts.h"
#include "program/display_row.h"
#include "program/help_text.h"
#include "program/menu.h"
#include "program/needs.h"
#include "program/print_work.h"
#include "program/session_memory.h"
#include "support/tagged_items.h"

namespace vexa {
namespace {

struct RingState {
  bool Doubled = false;
};

Picture Rings(const DisplayInput& from, const Surface& on) {
  Picture page(on.Width, on.Height, {255, 255, 255});
  const int count = from.In.Displays.Of<RingState>().Doubled ? 2 : 1;
  for (int i = 1; i <= count; ++i) {
    page.Add("ring", Label{.At = {100, 400.0 * i},
                           .Text = "Ring of " + from.In.Current.Record.StationTitle,
                           .Size = 200});
  }
  return page;
}

double IsDoubled(const Program& program) {
  return program.Displays.Of<RingState>().Doubled ? 1 : 0;
}
Changes Double(Program& program, double on) {
  program.Displays.Of<RingState>().Doubled = on != 0;
  return {};
}

constexpr ControlRow kControls[] = {{.Name = "chkDouble",
                                     .Text = "Double",
                                     .Kind = ControlKind::Switch,
                                     .Get = IsDoubled,
                                     .Set = Double}};

constexpr DisplayRow kRings = {
    .Id = "Rings",
    .Title = "Rings of the Day",
    .Plot = Rings,
    .Needs = NeedsSounding,
    .Entry = "mnuRings",
    .Caption = "&Rings",
    .Hint = "Rings around this sounding",
    .Lacking = "(rings)",
    .Key = "Ctrl+Alt+R",
    .Heading = "RINGS",
    .Topic = "soaring",
    .Options = "Diagram/Tab 6",
    .Listing = [](const Program&) { return std::vector<std::string>{"one ring"}; },
    .Controls = [] { return std::span<const ControlRow>(kControls); },
};

std::vector<DisplayRow> TableWithRings() {
  const auto all = AllDisplays();
  std::vector<DisplayRow> rows(all.begin(), all.end());
  rows.push_back(kRings);
  return rows;
}

class DisplayTableTest : public testing::Test {
 protected:
  DisplayTableTest() {
    program.Doc.AskThrough(&interaction);
    program.Where = FoldersBelow(folder.Path());
    program.HelpFile = test::SourceFolder() / "share" / "VEXA.HLP";
    window.show();
  }
  void Load(const char* title, SoundingRecord record) {
    record.StationTitle = title;
    const auto path = folder.Path() / (std::string(title) + ".RAW");
    ASSERT_FALSE(SaveFile(path, WriteRaw(record)));
    window.OpenFiles({path});
  }
  QAction* Entry() { return window.findChild<QAction*>("mnuRings"); }

  const test::TemporaryFolder folder;
  const std::vector<DisplayRow> table = TableWithRings();
  struct Own : Program {
    explicit Own(std::span<const DisplayRow> rows) { DisplayTable = rows; }
  } program{table};
  WindowInteraction interaction{program.Gate, WindowInteraction::Attendance::Unattended};
  SoundingWindow window{program, interaction};
};

TEST_F(DisplayTableTest, ARowIsFoundByMenuAndKeysAndSaysWhatItLacks) {
  ASSERT_NE(Entry(), nullptr);
  EXPECT_TRUE(window.findChild<QMenu*>("mnuDisplay")->actions().contains(Entry()));
  EXPECT_EQ(Entry()->shortcut(), QKeySequence("Ctrl+Alt+R"));
  EXPECT_FALSE(Entry()->isEnabled());
  EXPECT_EQ(Entry()->statusTip(), "(rings) needs a sounding");
  Load("Here", test::ReferenceConvective());
  EXPECT_TRUE(Entry()->isEnabled());
  EXPECT_EQ(Entry()->statusTip(), "Rings around this sounding");
  const auto names = WindowNames(table);
  EXPECT_NE(std::ranges::find(names, "Rings"), names.end());
  EXPECT_TRUE(CanShow(program, "Rings"));
  EXPECT_TRUE(CanShow(program, "mnuRings"));
}

TEST_F(DisplayTableTest, ItsWindowHasItsControlsAndMenuAndFollowsTheSounding) {
  Load("Here", test::ReferenceConvective());
  Entry()->trigger();
  DisplayWindow* rings = window.Display("Rings");
  ASSERT_NE(rings, nullptr);
  EXPECT_TRUE(rings->isVisible());
  EXPECT_EQ(rings->windowTitle(), "Rings of the Day");
  const std::string here = test::TextsOf(rings->Page());
  EXPECT_NE(here.find("Ring of "), std::string::npos);
  rings->findChild<QCheckBox*>("chkDouble")->click();
  EXPECT_EQ(test::TextsOf(rings->Page()), here + here);
  Load("There", test::ReferenceWinter());
  EXPECT_NE(test::TextsOf(rings->Page()), here + here);
  for (const char* name : {"mnuSavePicture", "mnuCopyPicture", "mnuPrintPicture"}) {
    EXPECT_NE(rings->findChild<QAction*>(name), nullptr) << name;
  }
  rings->findChild<QAction*>("mnuPictureListing")->trigger();
  EXPECT_NE(rings->findChild<QDialog*>("RingsListing"), nullptr);
  rings->findChild<QAction*>("mnuPictureOptions")->trigger();
  auto* form = window.findChild<QDialog*>("Diagram");
  ASSERT_NE(form, nullptr);
  EXPECT_EQ(form->findChild<QTabWidget*>()->currentIndex(), 5);  // the sixth page
  form->close();
  rings->close();
  EXPECT_FALSE(program.Displays.IsUp("Rings"));
}

TEST_F(DisplayTableTest, ItIsPrintedHasItsHelpAndComesBackAtTheNextStart) {
  EXPECT_TRUE(PagesToPrint(program, {.Display = "Rings"}).empty()) << "there is no sounding";
  Load("Here", test::ReferenceConvective());
  const auto printable = PrintableNames(program);
  EXPECT_NE(std::ranges::find(printable, "Rings"), printable.end());
  const std::vector<Picture> pages = PagesToPrint(program, {.Display = "Rings"});
  ASSERT_EQ(pages.size(), 1u);
  EXPECT_TRUE(test::TextsOf(pages[0]).starts_with("RINGS\n"));

  const std::vector<HelpTopic> topics = HelpTopics(program);
  ASSERT_NE(TopicOf(topics, "Rings"), nullptr);
  EXPECT_EQ(TopicOf(topics, "Rings")->Id, "soaring");
  EXPECT_NE(FindTopic(topics, "main")->Text.find("**Rings** (Ctrl+Alt+R)"), std::string::npos);

  window.Run("mnuRings");
  window.Run("mnuAnalyze");
  window.Run("mnuHodograph");
  window.close();
  EXPECT_EQ(ReadList(folder.Path(), kAnalysisMemory),
            (std::vector<std::string>{"InfoPanel", "Hodograph", "Rings"}));
  Own next(table);
  WindowInteraction quiet(next.Gate, WindowInteraction::Attendance::Unattended);
  next.Doc.AskThrough(&quiet);
  next.Where = program.Where;
  SoundingWindow again(next, quiet);
  again.show();
  again.OpenFiles({folder.Path() / "Here.RAW"});
  again.RestoreDisplays();
  for (const char* id : {"Rings", "Hodograph"}) {
    ASSERT_NE(again.Display(id), nullptr);
    EXPECT_TRUE(again.Display(id)->isVisible());
  }
}

}  // namespace
}  // namespace vexa
