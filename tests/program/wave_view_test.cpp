// The mountains and options that the wave windows keep, and their files.
#include "program/wave_view.h"

#include <gtest/gtest.h>

#include <string>

#include "core/files.h"
#include "mountainwave/mountain_file.h"
#include "program/displays.h"
#include "support/document.h"
#include "support/tagged_items.h"

namespace vexa {
namespace {

using mountainwave::MountainChoice;
using mountainwave::MountainParameters;
using mountainwave::Site;

constexpr MountainParameters kEntered{{4000, 3, 0}, 0, {}};
constexpr MountainParameters kOfMilan{{9800, 8, 80}, 0, {}};

class WaveViewTest : public test::ProgramAtHome {
 protected:
  WaveViewTest() {
    Saved(mountainwave::kMountainFileName,
          std::string(17, '\n') + "old\n16080,9800,8,80,0,0,0,0\n99999\n");
    Open("milan.RAW", 16080);
  }
  std::filesystem::path Of(const std::string& name, int station) {
    SoundingRecord sounding = test::ReferenceWinter();
    sounding.StationTitle = std::to_string(station) + " - Somewhere";
    return folder.Write(name, sounding);
  }
  void Open(const std::string& name, int station) {
    Do(OpenSoundings(program, {Of(name, station)}));
  }
  int Marks() const { return test::CountOf(program.Plot->Page, "layer"); }
};

// A station of the file brings its own mountains; one that it does not know leaves those in force.
TEST_F(WaveViewTest, MountainsFollowTheStation) {
  EXPECT_EQ(MountainsNow(program), Site(kOfMilan));
  EnterMountains(program, kEntered);
  EXPECT_EQ(MountainsNow(program), Site(kEntered));
  Open("unknown.RAW", 16044);
  EXPECT_EQ(MountainsNow(program), Site(kEntered));
  EnterMountains(program, kEntered);
  Open("milan.RAW", 16080);
  EXPECT_EQ(MountainsNow(program), Site(kOfMilan));
  ChooseMountains(program, MountainChoice::Default);
  EXPECT_EQ(MountainsNow(program), Site{});
  ChooseMountains(program, MountainChoice::Station);
  EXPECT_EQ(MountainsNow(program), Site(kOfMilan));
}

TEST_F(WaveViewTest, TheDiagramMarksWhatIsAskedFor) {
  ChooseMountains(program, MountainChoice::Default);
  EXPECT_EQ(Marks(), 0);
  for (const auto& [layers, marks] : {std::pair{WaveLayers::All, 2}, {WaveLayers::Selected, 1}}) {
    ASSERT_TRUE(Refresh(program, MarkWaves(program, layers)));
    EXPECT_EQ(Marks(), marks);  // 880 and 250 hPa
  }
}

TEST_F(WaveViewTest, FilesBringBackSoundingMountainsAndOptions) {
  EnterMountains(program, kEntered);
  MarkWaves(program, WaveLayers::Selected);
  mountainwave::WaveOptions options = WaveOptionsOf(program, program.Set);
  options.DecayOn = true;
  options.UpperLimit = 300;
  ChangeWaveOptions(program, options);
  const std::filesystem::path file = folder.Path() / "case.WVS";
  ASSERT_FALSE(SaveWaveFile(program, file));

  Program other;
  other.Doc.AskThrough(&user);
  other.Where = program.Where;
  const auto sounding = SoundingOf(mountainwave::ReadWaveState(ReadFile(file).Value()), file);
  ASSERT_TRUE(sounding);
  ASSERT_TRUE(Refresh(other, OpenSounding(other, sounding->File, sounding->Index)));
  EXPECT_EQ(other.Current.FileName, "milan.RAW");
  ASSERT_FALSE(OpenWaveFile(other, file));
  EXPECT_EQ(MountainsNow(other), Site(kEntered));
  EXPECT_EQ(other.Set.Waves, WaveLayers::Selected);
  EXPECT_EQ(WaveOptionsOf(other, other.Set), options);
  const DisplayRow& display = *DisplayNamed(AllDisplays(), "MountainWave");
  const Surface on{9000, 7000};
  EXPECT_EQ(ToSvg(DrawDisplay(display, other, on), 900, 700),
            ToSvg(DrawDisplay(display, program, on), 900, 700));
  const auto missing = OpenWaveFile(other, folder.Path() / "none.WVS");
  ASSERT_TRUE(missing);
  EXPECT_EQ(missing->Number, kFaultFileNotFound);
}

TEST_F(WaveViewTest, TheFolderKeepsOptionsAndMountains) {
  EXPECT_FALSE(KeepWaveState(program));
  EXPECT_FALSE(StampOf(folder.Path() / mountainwave::WaveStateFile()))
      << "there is nothing to keep";
  EnterMountains(program, kEntered);
  mountainwave::WaveOptions options = WaveOptionsOf(program, program.Set);
  options.Units = mountainwave::kEnglishUnits;
  ChangeWaveOptions(program, options);
  ASSERT_FALSE(KeepWaveState(program));
  ASSERT_FALSE(KeepWaveOptions(program));
  Program next;
  next.Doc.AskThrough(&user);
  next.Where = program.Where;
  LoadWaveFiles(next);
  EXPECT_EQ(WaveOptionsOf(next, next.Set), options);
  ASSERT_TRUE(Refresh(next, OpenSoundings(next, {Of("unknown.RAW", 16044)})));
  EXPECT_EQ(MountainsNow(next), Site(kEntered));
  ASSERT_TRUE(Refresh(next, OpenSoundings(next, {Of("milan.RAW", 16080)})));
  EXPECT_EQ(MountainsNow(next), Site(kOfMilan));
}

}  // namespace
}  // namespace vexa
