#include <QTableWidget>

#include "app/analysis_dock.h"
#include "app/display_window.h"
#include "app/severe_table_window.h"
#include "app/window_test.h"

namespace vexa {
namespace {

class AnalysisWindows : public test::WindowTest<> {
 protected:
  AnalysisWindows() { Open(test::ReferenceConvective()); }
};

TEST_F(AnalysisWindows, TheDockShowsAndExplainsEveryIndex) {
  auto* dock = window.findChild<AnalysisDock*>("InfoPanel");
  Choose("mnuAnalyze");
  EXPECT_TRUE(dock->isVisible());
  auto* table = dock->findChild<QTableWidget*>("IndexTable");
  ASSERT_EQ(table->rowCount(), static_cast<int>(program.Results.Indices.size()));
  EXPECT_EQ(table->item(0, 0)->text(), "KI");
  EXPECT_EQ(table->item(0, 1)->text(), "31.9 C");
  table->setCurrentCell(0, 0);
  EXPECT_TRUE(
      dock->findChild<QPlainTextEdit*>("IndexExplanation")->toPlainText().contains("T 850 hPa"));
  Open(test::ReferenceWinter());
  EXPECT_NE(table->item(0, 1)->text(), "31.9 C");
  Choose("mnuAnalyze");
  EXPECT_FALSE(dock->isVisible());
}

TEST_F(AnalysisWindows, TheSevereTableIsArrangedSavedAndRestored) {
  analysis::SevereTable accepted;
  SevereTableWindow table(
      analysis::DefaultSevereTable(), [&](const analysis::SevereTable& given) { accepted = given; },
      nullptr);
  auto& rows = test::In<QTableWidget>(table, "SevereRows");
  const auto press = [&](const char* caption) {
    for (QPushButton* button : table.findChildren<QPushButton*>()) {
      if (button->text() == caption) button->click();
    }
  };
  rows.selectRow(1);
  press("&Up");
  EXPECT_EQ(table.Table().Rows[0].Entry, 3);
  press("Re&move");
  EXPECT_EQ(rows.rowCount(), 40);
  rows.item(0, 2)->setText("lots");
  EXPECT_EQ(rows.item(0, 2)->text(), "75");
  rows.item(0, 2)->setText("110");  // above the second step
  EXPECT_EQ(test::In<QLabel>(table, "SevereRemark").text(), "the limits must rise");
  press("Apply");
  EXPECT_TRUE(accepted.Rows.empty());
  rows.item(0, 2)->setText("80");
  press("Apply");
  ASSERT_EQ(accepted.Rows.size(), 40u);
  EXPECT_EQ(accepted.Rows[0].Limits.From[0], 80);

  const std::filesystem::path path = folder.Path() / "my.TBL";
  table.SaveTo(path);
  press("De&faults");
  EXPECT_EQ(rows.rowCount(), 41);
  table.RestoreFrom(path);
  EXPECT_EQ(table.Table(), accepted);
  table.RestoreFrom(folder.Write("bad.TBL", "\"header\"\n\"t\",1\n99,1,2,3,0,0,0\n"));
  EXPECT_EQ(table.Table(), accepted);
}

}  // namespace
}  // namespace vexa
