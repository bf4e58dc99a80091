// The window that searches a catalogue, driven by its widgets.
#include "app/archive_window.h"

#include <QTableWidget>

#include "app/qt_text.h"
#include "app/window_test.h"
#include "archive/add.h"
#include "support/document.h"

namespace vexa {
namespace {

class ArchiveWindowTest : public test::ProgramAtHome {
 protected:
  ArchiveWindowTest() {
    auto catalogue = archive::Catalogue::Open(folder.Path() / "c", {.MayMake = true});
    const std::vector<std::string> given = {TextFromPath(test::TestData("igra_station.txt")),
                                            TextFromPath(test::TestData("fsl_two.fsl"))};
    EXPECT_EQ(archive::AddFiles(catalogue.Value(), {.Given = given}).Value().Soundings, 4);
    Find<QLineEdit>("Catalogue")->setText(ToQString(TextFromPath(folder.Path() / "c")));
  }
  template <class T>
  T* Find(const char* name) {
    return window.findChild<T*>(QString::fromLatin1(name));
  }
  std::string Remark() { return Find<QLabel>("Remark")->text().toStdString(); }
  int Rows() { return Find<QTableWidget>("Soundings")->rowCount(); }

  std::string InWork() {
    return program.Current.FileName + "#" + std::to_string(program.Doc.IndexInFile() + 1);
  }

  Changes shown{};
  ArchiveWindow window{program, [this](Changes changes) { shown = changes; }, nullptr};
};

TEST_F(ArchiveWindowTest, FindsSoundingsAndOpensThem) {
  Find<QPushButton>("cmdSearch")->click();
  EXPECT_EQ(Remark(), "4 soundings");
  Find<QComboBox>("Month")->setCurrentText("2");
  Find<QLineEdit>("Condition")->setText("format = 'FSL' or year = 1900");
  Find<QPushButton>("cmdSearch")->click();
  EXPECT_EQ(window.Condition(), "month = 2 and (format = 'FSL' or year = 1900)");
  EXPECT_EQ(Rows(), 2);
  auto* rows = Find<QTableWidget>("Soundings");
  rows->sortItems(0, Qt::DescendingOrder);  // by time: the second of the file comes first
  emit rows->cellDoubleClicked(0, 0);
  EXPECT_TRUE(shown.Sounding);
  EXPECT_EQ(InWork(), "fsl_two.fsl#2");
  rows->setCurrentCell(1, 2);
  Find<QPushButton>("cmdOpen")->click();
  EXPECT_EQ(InWork(), "fsl_two.fsl#1");

  Find<QComboBox>("Index")->setCurrentText("KI");
  Find<QLineEdit>("Value")->setText("many");
  Find<QPushButton>("cmdSearch")->click();
  EXPECT_NE(Remark().find("there is no column \"many\""), std::string::npos) << Remark();
  EXPECT_EQ(Rows(), 0);
  Find<QLineEdit>("Catalogue")->setText("none");
  Find<QComboBox>("Index")->setCurrentIndex(0);
  Find<QPushButton>("cmdSearch")->click();
  EXPECT_EQ(Remark(), "there is no such catalogue");
}

TEST_F(ArchiveWindowTest, WhatIsFoundIsSteppedThroughAndDrawnOver) {
  Find<QPushButton>("cmdStep")->click();
  EXPECT_EQ(Remark(), "Search for soundings first.");
  Find<QPushButton>("cmdSearch")->click();
  Find<QPushButton>("cmdOverlay")->click();
  EXPECT_EQ(Remark(), "There is no sounding in work.");
  auto* rows = Find<QTableWidget>("Soundings");
  emit rows->cellDoubleClicked(1, 0);
  const std::string first = InWork();
  Find<QPushButton>("cmdStep")->click();
  EXPECT_EQ(program.Listed.Size(), 4U) << "the one in work is not listed twice";
  EXPECT_EQ(InWork(), first) << "it stays in work";
  // Both at once: what selectRow() selects depends on keys that a test before may have left down.
  rows->clearSelection();
  rows->setRangeSelected({2, 0, 3, rows->columnCount() - 1}, true);
  Find<QPushButton>("cmdOverlay")->click();
  EXPECT_EQ(program.View.Mode, diagram::MultiMode::Overlay);
  EXPECT_EQ(program.Others.size(), 2U);
}

TEST_F(ArchiveWindowTest, ChoosesTheCatalogueOfThePercentiles) {
  auto* box = Find<QCheckBox>("Percentiles");
  EXPECT_FALSE(box->isChecked());
  box->click();
  EXPECT_EQ(program.Set.System.Catalogue, TextFromPath(folder.Path() / "c"));
  EXPECT_TRUE(shown.View);
  Find<QLineEdit>("Catalogue")->setText("another");
  EXPECT_FALSE(box->isChecked()) << "the option has not changed";
  Find<QLineEdit>("Catalogue")->setText(ToQString(program.Set.System.Catalogue));
  EXPECT_TRUE(box->isChecked());
  box->click();
  EXPECT_EQ(program.Set.System.Catalogue, "");
}

TEST_F(ArchiveWindowTest, ComparesTheSoundingInWork) {
  Find<QPushButton>("cmdAlike")->click();
  EXPECT_EQ(Remark(), "There is no sounding in work.");
  test::Show(program, test::ReferenceConvective());
  Find<QPushButton>("cmdUsual")->click();
  EXPECT_EQ(Remark(), "The sounding has no station number or no time.");
  SoundingRecord known = test::ReferenceConvective();
  known.WmoNumber = 85999;
  known.Time = {1999, 12, 31, 11, 0};
  test::Show(program, known);
  Find<QPushButton>("cmdUsual")->click();
  EXPECT_EQ(Remark(), "1 December 11 UTC ascent, 1999; too few: 30 are wanted");
  EXPECT_EQ(Rows(), 0);
}

}  // namespace
}  // namespace vexa
