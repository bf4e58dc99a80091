#include "app/tool_bar.h"

#include <QMenu>
#include <QToolButton>

#include "app/window_test.h"
#include "program/view_commands.h"

namespace vexa {
namespace {

class ToolBarTest : public test::WindowTest<> {
 protected:
  ToolBarTest() { window.resize(1200, 700); }
  QToolButton* Button(const char* text) {
    for (auto* button : window.findChild<QToolBar*>("ToolBar")->findChildren<QToolButton*>()) {
      if (button->text() == text) return button;
    }
    return nullptr;
  }
};

TEST_F(ToolBarTest, TheStartPageLeadsToASounding) {
  const auto& page = test::In<QWidget>(window, "StartPage");
  EXPECT_TRUE(page.isVisible());
  window.OpenFiles({Saved("a.RAW", test::ReferenceConvective())});
  EXPECT_FALSE(page.isVisible());

  // Another window of the same settings offers the file again.
  Program next;
  next.Where = program.Where;
  next.Settings.Window.RecentFiles = program.Settings.Window.RecentFiles;
  WindowInteraction silent(next.Gate, WindowInteraction::Attendance::Unattended);
  SoundingWindow second(next, silent);
  second.show();
  auto* recent = second.findChild<QPushButton*>("startmnuRecentFile1");
  EXPECT_TRUE(recent->isVisible());
  recent->click();
  EXPECT_EQ(next.Current.FileName, "a.RAW");
}

TEST_F(ToolBarTest, TheLayoutIsChosenAndKept) {
  window.OpenFiles({Saved("a.RAW", test::ReferenceConvective())});
  const auto layouts = Button("Layout")->menu()->actions();
  ASSERT_EQ(layouts.size(), static_cast<qsizetype>(PageLayouts().size()));
  for (QAction* layout : layouts) {
    layout->trigger();
    EXPECT_TRUE(layout->isChecked());
    EXPECT_EQ(LayoutInForce(program).Caption, layout->text().remove('&').toStdString());
    EXPECT_EQ(program.Settings.Window.Layout, LayoutInForce(program).Name);
  }
  const LayoutRow& last = LayoutInForce(program);
  EXPECT_FALSE(ChooseLayout(program, "of a later version").Any());
  EXPECT_EQ(&LayoutInForce(program), &last);
}

}  // namespace
}  // namespace vexa
