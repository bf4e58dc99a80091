#include "app/help_window.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QPointer>
#include <QTabWidget>
#include <QTextBrowser>

#include "app/config_window.h"
#include "app/diagram_view.h"
#include "app/display_window.h"
#include "app/sounding_window.h"
#include "core/files.h"
#include "core/raw_file.h"
#include "program/session_memory.h"
#include "support/soundings.h"

namespace vexa {
namespace {

class HelpTest : public testing::Test {
 protected:
  HelpTest() {
    program.Doc.AskThrough(&interaction);
    program.HelpFile = test::SourceFolder() / "share" / "VEXA.HLP";
    window.show();
  }
  QDialog* Help() {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
      if (widget->objectName() == "HelpWindow" && widget->isVisible()) {
        return static_cast<QDialog*>(widget);
      }
    }
    return nullptr;
  }
  std::string Topic() {
    QDialog* help = Help();
    if (help == nullptr) return {};
    return help->findChild<QListWidget*>("HelpTopics")->currentItem()->text().toStdString();
  }
  static void PressF1(QWidget& widget) {
    QKeyEvent press(QEvent::KeyPress, Qt::Key_F1, Qt::NoModifier);
    QApplication::sendEvent(&widget, &press);
  }

  Program program;
  WindowInteraction interaction{program.Gate, WindowInteraction::Attendance::Unattended};
  SoundingWindow window{program, interaction};
};

TEST_F(HelpTest, MenuEntriesOpenTheirTopics) {
  struct Case {
    const char* entry;
    const char* topic;
  };
  for (const Case& c :
       {Case{"mnuMain", "Main menu: what each entry does"}, Case{"mnuContents", "Contents"},
        Case{"mnuShortcut", "Shortcut keys"}, Case{"mnuTechSpt", "Technical support"},
        Case{"mnuVEXA", "Program web site"}, Case{"mnuUpdates", "Program updates"}}) {
    window.findChild<QAction*>(c.entry)->trigger();
    EXPECT_EQ(Topic(), c.topic);
  }
  auto* text = Help()->findChild<QTextBrowser*>("HelpText");
  window.findChild<QAction*>("mnuContents")->trigger();
  emit text->anchorClicked(QUrl("#indices"));
  EXPECT_EQ(Topic(), "Every index explained");
  EXPECT_TRUE(text->toPlainText().contains("12 Td850 + 20 (TT - 49)"));
  EXPECT_EQ(QApplication::topLevelWidgets().count(Help()), 1);
}

TEST_F(HelpTest, F1OpensTheTopicOfWhatHasTheFocus) {
  PressF1(window.View());
  EXPECT_EQ(Topic(), "The diagram: its lines");
  Help()->close();
  QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

  window.Open("Diagram");
  auto* form = window.findChild<QDialog*>("Diagram");
  ASSERT_NE(form, nullptr);
  auto* option = form->findChild<QWidget*>("Temp grid interval");
  ASSERT_NE(option, nullptr);
  PressF1(*option);
  EXPECT_EQ(Topic(), "Diagram options");
  EXPECT_TRUE(Help()->findChild<QTextBrowser*>("HelpText")->textCursor().hasSelection());
  form->close();
}

TEST_F(HelpTest, SearchKeepsTheTopicsThatHaveTheWords) {
  window.Run("mnuContents");
  auto* list = Help()->findChild<QListWidget*>("HelpTopics");
  Help()->findChild<QLineEdit*>("HelpSearch")->setText("miller 1972");
  EXPECT_EQ(Topic(), "Every index explained");
  EXPECT_TRUE(list->item(0)->isHidden());
  Help()->findChild<QLineEdit*>("HelpSearch")->clear();
  EXPECT_FALSE(list->item(0)->isHidden());
}

TEST_F(HelpTest, DisplaysComeBackAtTheNextStart) {
  const test::TemporaryFolder folder;
  program.Where = FoldersBelow(folder.Path());
  const auto path = folder.Path() / "a.RAW";
  ASSERT_FALSE(SaveFile(path, WriteRaw(test::ReferenceConvective())));
  window.OpenFiles({path});
  window.Run("mnuSevereWx");
  window.Run("mnuAnalyze");
  window.Run("mnuHodograph");
  window.close();
  EXPECT_EQ(ReadList(folder.Path(), kAnalysisMemory),
            (std::vector<std::string>{"InfoPanel", "SvrWx", "Hodograph"}));

  Program next;
  next.Doc.AskThrough(&interaction);
  next.Where = program.Where;
  SoundingWindow again(next, interaction);
  again.show();
  again.OpenFiles({path});
  again.RestoreDisplays();
  EXPECT_TRUE(next.Displays.IsUp("Hodograph"));
  ASSERT_NE(again.Display("SvrWx"), nullptr);
  EXPECT_TRUE(again.Display("SvrWx")->isVisible());
}

}  // namespace
}  // namespace vexa
