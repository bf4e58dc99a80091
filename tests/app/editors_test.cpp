#include <deque>

#include <QClipboard>
#include <QTabWidget>

#include "app/cloud_editor.h"
#include "app/edit_grid.h"
#include "app/level_editor.h"
#include "app/station_editor.h"
#include "app/text_editor.h"
#include "app/window_test.h"
#include "core/station_file.h"
#include "program/edit_commands.h"

namespace vexa {
namespace {

// Somebody sits in front of the window and answers as it was agreed.
class Answering : public WindowInteraction {
 public:
  explicit Answering(CommandGate& gate) : WindowInteraction(gate, Attendance::Attended) {}
  Answer Ask(const Box& box) override {
    Titles.push_back(box.Title);
    if (Answers.empty()) {
      ADD_FAILURE() << "unforeseen box: " << box.Text;
      return box.WhenSilent;
    }
    const Answer answer = Answers.front();
    Answers.pop_front();
    return answer;
  }
  std::optional<std::string> ChooseFile(const FileQuestion&) override { return Name; }

  std::deque<Answer> Answers{};
  std::vector<std::string> Titles{};
  std::optional<std::string> Name{};
};

class Editors : public test::WindowTest<Answering> {
 protected:
  template <class Editor>
  Editor* Opened(const char* entry) {
    Entry(entry).trigger();
    return Shown<Editor>();
  }
  // The editor that was opened last; those before it go when they are closed.
  template <class Editor>
  Editor* Shown() {
    for (QDialog* dialog : window.findChildren<QDialog*>()) {
      auto* editor = dynamic_cast<Editor*>(dialog);
      if (editor != nullptr && editor->isVisible()) return editor;
    }
    throw std::runtime_error("the editor has not come up");
  }
  std::string Said(const QWidget* in, const char* label) {
    return in->findChild<QLabel*>(label)->text().toStdString();
  }
};

TEST_F(Editors, LevelsAreEditedAsOneStep) {
  window.OpenFiles({Saved("a.RAW", test::ReferenceWinter())});
  const SoundingRecord before = program.Current.Record;
  auto* editor = Opened<LevelEditor>("mnuEditFile");
  EditGrid* grid = editor->Temps();
  grid->item(2, 1)->setText("warm");
  EXPECT_EQ(Said(editor, "LevelRemark"), "Temperature row 3: temperature \"warm\" is no number");
  // However long what was typed, the window keeps its width.
  const int width = editor->width();
  grid->item(2, 1)->setText(QString(900, 'x'));
  QApplication::processEvents();
  EXPECT_LE(editor->minimumSizeHint().width(), width);
  EXPECT_FALSE(editor->Apply());
  EXPECT_EQ(program.Current.Record, before);

  grid->item(2, 1)->setText(QString::number(before.Temp(3) + 0.5));
  EXPECT_EQ(Said(editor, "LevelRemark"), "");
  EXPECT_TRUE(editor->Apply());
  editor->close();
  EXPECT_EQ(program.Current.Record.Temp(3), before.Temp(3) + 0.5);
  EXPECT_EQ(Entry("mnuUndo").text(), "&Undo change level 3");
  Entry("mnuUndo").trigger();
  EXPECT_EQ(program.Current.Record, before);
}

TEST_F(Editors, RowsComeFromTheClipboardAndGoByTheKey) {
  window.OpenFiles({Saved("a.RAW", test::ReferenceWinter())});
  const int count = program.Current.Record.NumWindLevels();
  auto* editor = Opened<LevelEditor>("mnuAddWind");
  EXPECT_EQ(editor->Temps(), nullptr);
  EditGrid* grid = editor->Winds();
  QApplication::clipboard()->setText("Height\tDir\tSpd\n60000\t270\t30\n61000\t280\t35,5\n");
  grid->InsertAbove();  // a row without text counts for nothing
  while (grid->rowCount() < count + 2) grid->InsertAbove();
  grid->setCurrentCell(0, 0);
  test::PressKey(*grid, Qt::Key_V, {}, Qt::ControlModifier);
  QKeyEvent release(QEvent::KeyRelease, Qt::Key_V, Qt::NoModifier);
  QApplication::sendEvent(grid, &release);  // Control is not held while rows are chosen
  EXPECT_EQ(grid->item(1, 2)->text(), "35.5");
  EXPECT_FALSE(editor->Apply());  // these heights stand below lower ones
  for (int rows = count + 1; rows >= count; --rows) {
    grid->clearSelection();
    grid->selectRow(0);
    test::PressKey(*grid, Qt::Key_Delete);
    EXPECT_EQ(grid->rowCount(), rows);
  }
  EXPECT_FALSE(grid->AddInOrder({"60000", "270", "30"}));
  EXPECT_TRUE(editor->Apply());
  editor->close();
  EXPECT_EQ(program.Current.Record.NumWindLevels(), count + 1);
  EXPECT_EQ(program.Current.Record.WindHgt.Top(), 60000);
}

TEST_F(Editors, AFaultAfterALoadOpensTheEditorAtItsLevel) {
  SoundingRecord bad = test::ReferenceWinter();
  bad.WindDir(4) = 365;
  user.Answers = {Answer::Ok};
  window.OpenFiles({Saved("bad.RAW", bad)});
  EXPECT_EQ(user.Titles, std::vector<std::string>{"Data Error"});
  auto* editor = Shown<LevelEditor>();
  EXPECT_EQ(editor->findChild<QTabWidget*>()->currentIndex(), 1);
  EXPECT_EQ(editor->Winds()->currentRow(), 3);
  EXPECT_EQ(editor->Winds()->currentColumn(), 1);
  EXPECT_EQ(Said(editor, "LevelRemark"), "Wind direction is greater than 360 degrees.");
  editor->Winds()->item(3, 1)->setText("355");
  EXPECT_TRUE(editor->Apply());
  editor->close();
  EXPECT_EQ(Said(&window, "ProgressPanel"), "");
}

TEST_F(Editors, ANewSoundingIsEnteredByHand) {
  auto* editor = Opened<LevelEditor>("mnuNew");
  EXPECT_FALSE(editor->Apply());  // two levels are wanted
  editor->Temps()->PasteText("1000 20 10\n900 14 8\n500 -15 -30\n");
  const auto type = [editor](const char* field, const char* text) {
    test::In<QLineEdit>(*editor, field).setText(text);
  };
  for (const auto& [latitude, longitude] :
       {std::pair("north", ""), std::pair("-33.9", ""), std::pair("", "18.4")}) {
    type("Latitude", latitude);
    type("Longitude", longitude);
    EXPECT_FALSE(editor->Apply()) << latitude << longitude;
  }
  type("Latitude", "-33.9");
  type("StationTitle", "Kite");
  type("Elevation", "42");
  EXPECT_TRUE(editor->Apply());
  editor->close();
  EXPECT_EQ(program.Current.Record.NumTempLevels(), 3);
  EXPECT_EQ(program.Current.Record.LatHemi, "S");
  EXPECT_EQ(program.Current.Record.ElevM, 42);
  EXPECT_EQ(window.windowTitle(), "VEXA  -  Kite *");

  user.Answers = {Answer::Cancel, Answer::No};
  EXPECT_FALSE(window.close());
  Entry("mnuExit").trigger();
  EXPECT_FALSE(window.isVisible());
}

TEST_F(Editors, CloudLayersOfAListingNeedTheNativeFormat) {
  const std::string listing = ReadFile(test::TestData("wyoming_text.txt")).Value();
  window.OpenFiles({SavedText("list.txt", listing)});
  auto* editor = Opened<CloudEditor>("mnuClouds");
  editor->Layers()->PasteText("cu\t40\t35\t0");
  EXPECT_FALSE(editor->Apply());
  EXPECT_NE(Said(editor, "CloudRemark"), "");
  editor->Layers()->item(0, 2)->setText("65");
  user.Answers = {Answer::No, Answer::Yes};
  user.Name = TextFromPath(folder.Path() / "clouds.RAW");
  EXPECT_FALSE(editor->Apply());
  EXPECT_EQ(program.Current.Record.NumCloudLayers(), 0);
  EXPECT_TRUE(editor->Apply());
  editor->close();
  EXPECT_EQ(user.Titles.back(), "Impending Format Change . . .");
  EXPECT_EQ(program.Current.Record.Clouds(1), (CloudLayer{"CU", 40, "65", 0}));
  EXPECT_EQ(program.Current.Record.CloudMode, "USER");
  EXPECT_EQ(program.Current.FileName, "clouds.RAW");
  EXPECT_EQ(ReadFile(folder.Path() / "list.txt").Value(), listing);
}

TEST_F(Editors, StationsAreFoundCheckedAndSaved) {
  ASSERT_FALSE(program.Stations.Add({.Number = 3772,
                                     .Ident = "EGLL",
                                     .Name = "LONDON",
                                     .Lat = 51.4775,
                                     .Lon = 0.4614,
                                     .LonHemi = "W"}));
  auto* editor = Opened<StationEditor>("mnuEditStation");
  editor->Search("egll");
  EXPECT_EQ(editor->Field(StationField::Number)->text(), "03772");
  editor->Field(StationField::Latitude)->setText("95.0");
  editor->ChangeStation();
  EXPECT_EQ(editor->List().Find(3772)->Lat, 51.4775);
  EXPECT_NE(Said(editor, "StationRemark").find("Latitude"), std::string::npos);
  editor->Field(StationField::Latitude)->setText("51.5");
  editor->ChangeStation();
  editor->Field(StationField::Number)->setText("03773");
  editor->AddStation();
  EXPECT_EQ(editor->List().Count(), 2);
  EXPECT_EQ(program.Stations.Count(), 1);  // not before it is saved
  editor->Search("3772");
  editor->DeleteStation();
  auto* save = editor->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Save);
  save->click();
  EXPECT_EQ(program.Stations.Count(), 1);
  const std::string text = ReadFile(folder.Path() / kStationFileName).Value();
  const StationReading reading = ReadStations(text, "VEXA.STN");
  EXPECT_EQ(reading.Finding.Kind, StationTrouble::None);
  ASSERT_NE(reading.List.Find(3773), nullptr);
  EXPECT_EQ(reading.List.Find(3773)->Lat, 51.5);

  editor = Opened<StationEditor>("mnuEditStation");
  editor->Search("nowhere");
  QLineEdit& name = *editor->Field(StationField::Name);
  EXPECT_EQ(name.text(), "");
  test::PressKey(name, 'x', "x");  // this may become a new station
  editor->Search("nowhere else");
  EXPECT_EQ(name.text(), "x");
  user.Answers = {Answer::Yes};
  editor->close();
}

TEST_F(Editors, TheSourceIsEditedAsText) {
  const std::filesystem::path path = Saved("a.RAW", test::ReferenceWinter());
  window.OpenFiles({path});
  Saved("a.RAW", test::ReferenceConvective());  // by another program
  auto* editor = Opened<TextEditor>("mnuEditData");
  EXPECT_NE(Said(editor, "TextRemark"), "");
  EXPECT_TRUE(editor->Apply()) << "a text left as it was changes nothing";
  editor->close();
  EXPECT_EQ(window.windowTitle(), "VEXA  -  Reference B, winter");
  Saved("a.RAW", test::ReferenceWinter());
  editor = Opened<TextEditor>("mnuEditData");
  QString text = editor->Edit()->toPlainText();
  editor->Edit()->setPlainText("nothing");
  EXPECT_FALSE(editor->Apply());
  editor->Edit()->setPlainText(text.replace("Reference B, winter", "Edited"));
  EXPECT_TRUE(editor->Apply());
  editor->close();
  EXPECT_EQ(window.windowTitle(), "VEXA  -  Edited *");
  EXPECT_EQ(Entry("mnuUndo").text(), "&Undo edit source data");
  EXPECT_EQ(ReadFile(path).Value(), WriteRaw(test::ReferenceWinter()));
}

// The cell that is typed into, begun by a double click as it were.
QLineEdit& Typing(EditGrid& grid, int row, int column, const QString& text) {
  grid.setCurrentCell(row, column);
  grid.editItem(grid.item(row, column));
  auto* cell = grid.viewport()->findChild<QLineEdit*>();
  if (cell == nullptr) throw std::runtime_error("no cell is being typed into");
  cell->clear();
  for (const QChar c : text) test::PressKey(*cell, c.toUpper().unicode(), QString(c));
  return *cell;
}

TEST_F(Editors, WhatWasTypedIsNotDroppedUnasked) {
  const std::pair<const char*, void (*)(QDialog&)> cases[] = {
      {"mnuEditFile",
       [](QDialog& editor) { Typing(*dynamic_cast<LevelEditor&>(editor).Temps(), 0, 1, "7"); }},
      {"mnuNew",
       [](QDialog& editor) {
         test::PressKey(test::In<QLineEdit>(editor, "StationTitle"), 'k', "k");
       }},
      {"mnuClouds",
       [](QDialog& editor) { dynamic_cast<CloudEditor&>(editor).Layers()->PasteText("cu"); }},
      {"mnuEditStation",
       [](QDialog& editor) {
         test::PressKey(*dynamic_cast<StationEditor&>(editor).Field(StationField::Name), 'x', "x");
       }},
      {"mnuEditData",
       [](QDialog& editor) { dynamic_cast<TextEditor&>(editor).Edit()->insertPlainText("x"); }},
  };
  void (*const kWays[])(QDialog&) = {
      [](QDialog& editor) { editor.close(); },
      [](QDialog& editor) { test::PressKey(editor, Qt::Key_Escape); },
      [](QDialog& editor) {
        editor.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Cancel)->click();
      }};
  window.OpenFiles({Saved("a.RAW", test::ReferenceWinter())});
  for (const auto& [entry, type] : cases) {
    SCOPED_TRACE(entry);
    for (auto* leave : kWays) {
      auto* editor = Opened<QDialog>(entry);
      leave(*editor);
      EXPECT_FALSE(editor->isVisible()) << "nothing was typed";
      editor = Opened<QDialog>(entry);
      type(*editor);
      user.Answers = {Answer::No, Answer::Yes};
      leave(*editor);
      EXPECT_TRUE(editor->isVisible());
      leave(*editor);
      EXPECT_FALSE(editor->isVisible());
      EXPECT_TRUE(user.Answers.empty());
      QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
  }
  EXPECT_FALSE(program.Doc.IsAltered());
}

TEST_F(Editors, TabBehindTheLastCellBeginsARow) {
  auto* editor = Opened<LevelEditor>("mnuNew");
  EditGrid& grid = *editor->Temps();
  grid.PasteText("1000 20 10\n900 14 8\n");
  test::PressKey(Typing(grid, 1, 2, "7"), Qt::Key_Tab);
  EXPECT_EQ(grid.item(1, 2)->text(), "7");
  EXPECT_EQ(grid.rowCount(), 3);
  EXPECT_EQ(grid.currentRow(), 2);
  EXPECT_EQ(grid.currentColumn(), 0);
  // An empty last row is left as it is.
  test::PressKey(Typing(grid, 2, 2, ""), Qt::Key_Tab);
  EXPECT_EQ(grid.rowCount(), 3);
  user.Answers = {Answer::Yes};
  editor->close();
}

}  // namespace
}  // namespace vexa
