#include "app/help_window.h"

#include <QPointer>
#include <QTabWidget>
#include <QTextBrowser>

#include "app/config_window.h"
#include "app/diagram_view.h"
#include "app/display_window.h"
#include "app/window_test.h"
#include "program/session_memory.h"

namespace vexa {
namespace {

class HelpTest : public test::WindowTest<> {
 protected:
  HelpTest() { program.HelpFile = test::SourceFolder() / "share" / "VEXA.HLP"; }
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
  test::PressKey(window.View(), Qt::Key_F1);
  EXPECT_EQ(Topic(), "The diagram: its lines");
  Help()->close();
  QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

  window.Open("Diagram");
  auto* form = window.findChild<QDialog*>("Diagram");
  ASSERT_NE(form, nullptr);
  auto* option = form->findChild<QWidget*>("Temp grid interval");
  ASSERT_NE(option, nullptr);
  test::PressKey(*option, Qt::Key_F1);
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

}  // namespace
}  // namespace vexa
