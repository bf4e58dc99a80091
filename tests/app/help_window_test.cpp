#include "app/help_window.h"

#include <QTextBrowser>

#include "app/diagram_view.h"
#include "app/window_test.h"

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
  for (const auto& [entry, topic] :
       {std::pair("mnuShortcut", "Shortcut keys"), std::pair("mnuContents", "Contents")}) {
    Choose(entry);
    EXPECT_EQ(Topic(), topic);
  }
  auto* text = Help()->findChild<QTextBrowser*>("HelpText");
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
  auto& form = test::In<QDialog>(window, "Diagram");
  test::PressKey(test::In<QWidget>(form, "Temp grid interval"), Qt::Key_F1);
  EXPECT_EQ(Topic(), "Diagram options");
  EXPECT_TRUE(Help()->findChild<QTextBrowser*>("HelpText")->textCursor().hasSelection());
  form.close();
}

}  // namespace
}  // namespace vexa
