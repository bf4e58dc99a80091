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
  Type(test::In<QLineEdit>(form, "txtHalfWidth1"), "7");
  test::In<QPushButton>(form, "cmdKeep").click();
  EXPECT_EQ(mountainwave::MountainsOf(program.Current.Record)->First.HalfWidthNm, 7);
  EXPECT_TRUE(program.Doc.History().CanUndo());
  EXPECT_TRUE(user.Boxes.empty());
}

TEST_F(MountainWindowsTest, TwoMountains) {
  program.Set.GpmUnits = LengthUnits::Feet;
  auto& form = Form<Mountains>("Mountains");
  EXPECT_FALSE(test::In<QLineEdit>(form, "txtDistance").isEnabled());
  test::In<QRadioButton>(form, "optTwo").click();
  EXPECT_FALSE(MountainsNow(program)->HasSecond()) << "its values are not there yet";
  for (const auto& [name, typed] : {std::pair("txtDistance", "8"),
                                    {"txtHeight2", "3000"},
                                    {"txtHalfWidth2", "1"},
                                    {"txtAxis2", "0"}}) {
    Type(test::In<QLineEdit>(form, name), typed);
  }
  EXPECT_EQ(*MountainsNow(program),
            (mountainwave::MountainParameters{{3675, 2, 0}, 8, {3000, 1, 0}}));
  auto& listing = Form<WaveListing>("WaveListing");
  EXPECT_TRUE(test::In<QPlainTextEdit>(listing, "Text")
                  .toPlainText()
                  .contains("Mountain separation:   8.0 nm"));
  test::In<QRadioButton>(form, "optOne").click();
  EXPECT_FALSE(MountainsNow(program)->HasSecond());
}

TEST_F(MountainWindowsTest, WhatIsOutOfRangeIsRefused) {
  program.Set.GpmUnits = LengthUnits::Feet;
  auto& form = Form<Mountains>("Mountains");
  const auto before = MountainsNow(program);
  auto& height = test::In<QLineEdit>(form, "txtHeight1");
  Type(height, "390");
  ASSERT_EQ(user.Boxes.size(), 1U);
  EXPECT_EQ(LastBox(), "Mountain height must be greater than the\nsounding station elevation.");
  EXPECT_EQ(height.text(), "3675");
  for (const auto& [name, typed, field] : {std::tuple{"txtHeight1", "32001", "Height"},
                                           {"txtHalfWidth1", "wide", "Half-Width"},
                                           {"txtAxis1", "361", "Axis"}}) {
    auto& box = test::In<QLineEdit>(form, name);
    const QString good = box.text();
    Type(box, typed);
    test::In<QPushButton>(form, "cmdRun").click();
    EXPECT_EQ(LastBox(), "Mountain #1 - " + std::string(field) + "\nData is out of range.");
    EXPECT_EQ(MountainsNow(program), before) << "what was in force stays";
    Type(box, good);
  }
}

TEST_F(MountainWindowsTest, TheDisplayChoosesWavesAndReads) {
  MountainWave& display = Display();
  const auto choose = [&display](const char* name, int index) {
    auto& box = test::In<QComboBox>(display, name);
    box.setCurrentIndex(index);
    emit box.activated(index);
  };
  choose("cboMountains", 1);  // the default mountain: waves at 880 and 250 hPa
  const auto& waves = test::In<QComboBox>(display, "cboWave");
  ASSERT_EQ(waves.count(), 2);
  EXPECT_TRUE(waves.itemText(0).startsWith("#1  880 mb"));
  const std::string first = Drawn();
  choose("cboWave", 1);
  EXPECT_NE(Drawn(), first);
  choose("ToolSkewT", 2);
  EXPECT_EQ(program.Set.Waves, WaveLayers::All);
  auto& form = Form<DiagramM>("DiagramM");
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
  editor->Edit()->setPlainText(QString(good).replace("3675,2", "3675,none"));
  EXPECT_FALSE(editor->Apply());
  EXPECT_TRUE(test::In<QLabel>(*editor, "TextRemark").text().startsWith("VEXA.MTN, line 19: "));
  editor->Edit()->setPlainText(QString(good).replace("3675,2", "4000,2"));
  EXPECT_TRUE(editor->Apply());
  editor->close();
  EXPECT_EQ(MountainsNow(program)->First.HeightFt, 4000);

  WriteMountains("16080,3675,2\n");
  user.Boxes.clear();
  Display().Follow();
  Display().Follow();
  ASSERT_EQ(user.Boxes.size(), 1U) << "once for each fault";
  EXPECT_EQ(user.Boxes[0].Title, "VEXA data file problem");
  std::filesystem::remove(folder.Path() / mountainwave::kMountainFileName);
  window.Run("mnuEditMountain");
  EXPECT_TRUE(LastBox().starts_with("The VEXA.MTN data file could not be found."));
}

}  // namespace
}  // namespace vexa
