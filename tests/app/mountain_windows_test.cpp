// The windows of mountain waves, driven by their widgets.
#include <QRadioButton>

#include "app/mountain_forms.h"
#include "app/mountain_wave.h"
#include "app/text_editor.h"
#include "app/window_test.h"
#include "mountainwave/mountain_file.h"

namespace vexa {
namespace {

// Answers every box with its own answer and every question for a file with one name.
class WaveUser : public WindowInteraction {
 public:
  explicit WaveUser(CommandGate& gate) : WindowInteraction(gate, Attendance::Unattended) {}
  Answer Ask(const Box& box) override {
    Boxes.push_back(box);
    return box.WhenSilent;
  }
  std::optional<std::string> ChooseFile(const FileQuestion&) override { return File; }
  std::vector<Box> Boxes{};
  std::optional<std::string> File{};
};

class MountainWindowsTest : public test::WindowTest<WaveUser> {
 protected:
  MountainWindowsTest() {
    WriteMountains("16080,3675,2,0,0,0,0,0\n99999\n");
    SoundingRecord sounding = test::ReferenceWinter();  // 394 ft above the sea
    sounding.StationTitle = "16080 - Milano";
    window.resize(800, 560);
    Open(sounding);
    user.Boxes.clear();
  }
  void WriteMountains(const std::string& records) {
    EXPECT_FALSE(SaveFile(folder.Path() / mountainwave::kMountainFileName,
                          std::string(17, '\n') + "old\n" + records));
  }
  MountainWave& Display() {
    if (window.Display("MountainWave") == nullptr) window.Run("mnuWave");
    return *dynamic_cast<MountainWave*>(window.Display("MountainWave"));
  }
  template <class F>
  F& Form(const char* name) {
    EXPECT_TRUE(window.Open(name));
    for (QDialog* dialog : window.findChildren<QDialog*>()) {
      if (auto* form = dynamic_cast<F*>(dialog)) return *form;
    }
    throw std::runtime_error(name);
  }
  // Types a text and leaves the box.
  static void Type(QLineEdit& box, const QString& text) {
    box.setFocus();
    box.setText(text);
    box.setModified(true);
    emit box.textEdited(text);
    emit box.editingFinished();
  }
  std::string LastBox() const { return user.Boxes.empty() ? "" : user.Boxes.back().Text; }
  std::string Drawn() { return ToSvg(Display().Page(), 800, 600); }
};

TEST_F(MountainWindowsTest, WhatIsTypedIsDrawnAtOnce) {
  program.Set.GpmUnits = LengthUnits::Feet;
  auto& form = Form<Mountains>("Mountains");
  EXPECT_EQ(test::In<QLineEdit>(form, "txtHeight1").text(), "3675");
  EXPECT_FALSE(test::In<QCheckBox>(form, "chkDefault").isChecked());
  const std::string before = Drawn();
  Type(test::In<QLineEdit>(form, "txtHalfWidth1"), "0.5");
  const std::string narrow = Drawn();
  EXPECT_NE(narrow, before);
  EXPECT_EQ(MountainsNow(program)->First, (mountainwave::Ridge{3675, 0.5, 0}));
  test::In<QCheckBox>(form, "chkDefault").click();
  EXPECT_EQ(MountainsNow(program), mountainwave::Site{});
  EXPECT_NE(Drawn(), narrow);
  test::In<QCheckBox>(form, "chkDefault").click();
  EXPECT_EQ(Drawn(), narrow);
  test::In<QPushButton>(form, "cmdStation").click();
  EXPECT_EQ(Drawn(), before);
  EXPECT_TRUE(user.Boxes.empty());
}

TEST_F(MountainWindowsTest, TwoMountains) {
  program.Set.GpmUnits = LengthUnits::Feet;
  auto& form = Form<Mountains>("Mountains");
  EXPECT_FALSE(test::In<QLineEdit>(form, "txtDistance").isEnabled());
  test::In<QRadioButton>(form, "optTwo").click();
  EXPECT_EQ(test::In<QLabel>(form, "Prompt").text(),
            "For wave analysis details use the Listings option on the Mountain-Wave dispaly.");
  EXPECT_FALSE(MountainsNow(program)->HasSecond()) << "its values are not there yet";
  Type(test::In<QLineEdit>(form, "txtDistance"), "8");
  Type(test::In<QLineEdit>(form, "txtHeight2"), "3000");
  Type(test::In<QLineEdit>(form, "txtHalfWidth2"), "1");
  Type(test::In<QLineEdit>(form, "txtAxis2"), "0");
  EXPECT_EQ(*MountainsNow(program),
            (mountainwave::MountainParameters{{3675, 2, 0}, 8, {3000, 1, 0}}));
  auto& listing = Form<WaveListing>("WaveListing");
  EXPECT_TRUE(test::In<QPlainTextEdit>(listing, "Text")
                  .toPlainText()
                  .contains("Mountain separation:   8.0 nm"));
  test::In<QRadioButton>(form, "optOne").click();
  EXPECT_FALSE(MountainsNow(program)->HasSecond());
  EXPECT_FALSE(test::In<QPlainTextEdit>(listing, "Text").toPlainText().contains("Mountain #2"));
}

TEST_F(MountainWindowsTest, RefusalsAndPrompts) {
  program.Set.GpmUnits = LengthUnits::Feet;
  auto& form = Form<Mountains>("Mountains");
  form.activateWindow();
  QApplication::processEvents();
  const auto before = MountainsNow(program);
  auto& height = test::In<QLineEdit>(form, "txtHeight1");
  Type(height, "390");
  ASSERT_EQ(user.Boxes.size(), 1U);
  EXPECT_EQ(user.Boxes[0].Title, "Warning ...");
  EXPECT_EQ(LastBox(), "Mountain height must be greater than the\nsounding station elevation.");
  EXPECT_EQ(height.text(), "3675");
  struct Case {
    const char* box;
    const char* typed;
    const char* says;
  };
  const Case cases[] = {
      {"txtHeight1", "32001", "Mountain #1 - Height\nData is out of range."},
      {"txtHalfWidth1", "wide", "Mountain #1 - Half-Width\nData is out of range."},
      {"txtAxis1", "361", "Mountain #1 - Axis\nData is out of range."}};
  for (const Case& c : cases) {
    auto& box = test::In<QLineEdit>(form, c.box);
    const QString good = box.text();
    Type(box, c.typed);
    test::In<QPushButton>(form, "cmdRun").click();
    EXPECT_EQ(LastBox(), c.says);
    EXPECT_EQ(MountainsNow(program), before) << "what was in force stays";
    Type(box, good);
  }
  test::In<QLineEdit>(form, "txtAxis1").setFocus();
  QApplication::processEvents();
  EXPECT_EQ(test::In<QLabel>(form, "Prompt").text(),
            "Enter the orientation (angle) of the mountain axis (ridge).\n"
            "Enter a zero (0) angle to disregard axis orientation.");
}

TEST_F(MountainWindowsTest, TheDisplayChoosesWavesAndReads) {
  MountainWave& display = Display();
  auto& mountains = test::In<QComboBox>(display, "cboMountains");
  mountains.setCurrentIndex(1);
  emit mountains.activated(1);  // the default mountain: waves at 880 and 250 hPa
  auto& waves = test::In<QComboBox>(display, "cboWave");
  ASSERT_EQ(waves.count(), 2);
  EXPECT_TRUE(waves.itemText(0).startsWith("#1  880 mb"));
  const std::string first = Drawn();
  waves.setCurrentIndex(1);
  emit waves.activated(1);
  EXPECT_NE(Drawn(), first);
  auto& layers = test::In<QComboBox>(display, "ToolSkewT");
  layers.setCurrentIndex(2);
  emit layers.activated(2);
  EXPECT_EQ(program.Set.Waves, WaveLayers::All);
  EXPECT_EQ(std::ranges::count(program.Plot->Page.Items(), "layer", &Item::Tag), 2);
  auto& form = Form<DiagramM>("DiagramM");
  EXPECT_EQ(test::In<QLabel>(form, "DecayState").text(), " Exponential wave decay is OFF ");
  test::In<QCheckBox>(form, "exponential wave decay").click();
  EXPECT_EQ(test::In<QLabel>(form, "DecayState").text(), " Exponential wave decay is ON ");
  EXPECT_TRUE(StampOf(folder.Path() / mountainwave::WaveOptionsFile())) << "kept at once";
  display.close();
  EXPECT_TRUE(StampOf(folder.Path() / mountainwave::WaveStateFile()));
}

TEST_F(MountainWindowsTest, ADisplayIsSavedAndOpened) {
  MountainWave& display = Display();
  EnterMountains(program, {{5000, 3, 0}, 0, {}});
  window.Show({.View = true});
  const std::string saved = Drawn();
  user.File = TextFromPath(folder.Path() / "case");
  test::In<QAction>(display, "mnuSaveFile").trigger();
  ChooseMountains(program, mountainwave::MountainChoice::Default);
  window.Show({.View = true});
  EXPECT_NE(Drawn(), saved);
  user.File = TextFromPath(folder.Path() / "case.WVS");
  test::In<QAction>(display, "mnuOpen").trigger();
  EXPECT_EQ(Drawn(), saved);
  user.File = TextFromPath(folder.Path() / "a.RAW");
  test::In<QAction>(display, "mnuOpen").trigger();
  EXPECT_EQ(LastBox(), "a.RAW is neither a .WVS nor a .WAV file.");
}

TEST_F(MountainWindowsTest, TheMountainFileIsEditedAndItsFaultsAreTold) {
  window.Run("mnuEditMountain");
  auto* editor = dynamic_cast<TextEditor*>(QApplication::activeModalWidget());
  ASSERT_NE(editor, nullptr);
  const QString good = editor->Edit()->toPlainText();
  QString bad = good;
  editor->Edit()->setPlainText(bad.replace("3675,2", "3675,none"));
  EXPECT_FALSE(editor->Apply());
  EXPECT_TRUE(test::In<QLabel>(*editor, "TextRemark").text().startsWith("VEXA.MTN, line 19: "));
  QString other = good;
  editor->Edit()->setPlainText(other.replace("3675,2", "4000,2"));
  EXPECT_TRUE(editor->Apply());
  editor->close();
  EXPECT_EQ(MountainsNow(program)->First.HeightFt, 4000);

  WriteMountains("16080,3675,2\n");
  user.Boxes.clear();
  Display().Follow();
  Display().Follow();
  ASSERT_EQ(user.Boxes.size(), 1U) << "once for each fault";
  EXPECT_EQ(user.Boxes[0].Title, "VEXA data file problem");
  EXPECT_TRUE(
      LastBox().starts_with("There is a problem with the VEXA.MTN mountain parameter file.  "));
  std::filesystem::remove(folder.Path() / mountainwave::kMountainFileName);
  window.Run("mnuEditMountain");
  EXPECT_EQ(LastBox(),
            "The VEXA.MTN data file could not be found.\n"
            "Be sure it is located in program directory ...  ");
}

TEST_F(MountainWindowsTest, MountainsAreKeptInTheSounding) {
  program.Set.GpmUnits = LengthUnits::Feet;
  auto& form = Form<Mountains>("Mountains");
  Type(test::In<QLineEdit>(form, "txtHalfWidth1"), "7");
  test::In<QPushButton>(form, "cmdKeep").click();
  EXPECT_EQ(mountainwave::MountainsOf(program.Current.Record)->First.HalfWidthNm, 7);
  EXPECT_TRUE(program.Doc.History().CanUndo());
}

}  // namespace
}  // namespace vexa
