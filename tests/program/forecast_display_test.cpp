// The forecast's commands without their windows: search, hours, what is saved, upwind by hand.
#include "program/forecast_display.h"

#include <gtest/gtest.h>

#include "core/files.h"
#include "core/raw_file.h"
#include "program/view_commands.h"
#include "support/document.h"
#include "support/full_disk.h"

namespace vexa {
namespace {

class ForecastDisplay : public test::ProgramAtHome {
 protected:
  // The wind is 270/30 everywhere.
  std::filesystem::path Put(const std::string& name, double lon, double warmer) {
    SoundingRecord sounding =
        test::Profile({{1000, 20 + warmer, 10}, {850, 12 + warmer, 4}, {500, -20 + warmer, -40}},
                      {{0, 270, 30}, {500, 270, 30}, {1000, 270, 30}, {3000, 270, 30}});
    SetDecimalPosition(sounding, 45, lon);
    sounding.StationTitle = name + "  12Z 22 May 2023";
    const std::filesystem::path path = program.Where.Data / (name + ".RAW");
    EXPECT_FALSE(SaveFile(path, WriteRaw(sounding)));
    return path;
  }
  void Open() {
    Put("west", 7, 4);
    Put("south", 10, 4);
    OpenSoundings(program, {Put("here", 10, 0)});
    ForecastViewOf(program).Set.UsesBoundary = false;
  }
  ForecastView& View() { return ForecastViewOf(program); }
  bool IsSaved(const std::string& name) const {
    return StampOf(program.Where.Forecast / name).has_value();
  }
};

TEST_F(ForecastDisplay, EachHourComesIntoWorkBesideTheOriginal) {
  Open();
  const SoundingRecord original = program.Current.Record;
  for (int hour = 1; hour <= 3; ++hour) {
    EXPECT_EQ(commands::StepForecast(program), (Changes{.Sounding = true, .View = true}));
  }
  EXPECT_TRUE(View().IsSearched) << "the first step searches";
  EXPECT_EQ(View().Series.Around().Near.size(), 1u) << "what stands in the same place is itself";
  EXPECT_EQ(program.Current.Record.StationTitle, "here_Forecast  15Z 22 May 2023");
  EXPECT_EQ(program.Current.FileName, "here_03h_Forecast.RAW");
  ASSERT_EQ(program.Others.size(), 1u);
  EXPECT_EQ(program.Others[0]->Record(), original);
  EXPECT_EQ(program.View.Mode, diagram::MultiMode::Compare);
  EXPECT_EQ(ForecastStatus(View()), "Advection rate: 30.0 kts from 270   3 hrs");
  EXPECT_TRUE(StampOf(folder.Path() / "ForecastHodoFilesVEXA" / "MainListing.txt"));

  const SoundingRecord third = program.Current.Record;
  commands::ShowForecastHour(program, 1);
  EXPECT_EQ(program.Current.Record.Time.Hour, 13);
  commands::ShowForecastHour(program, 3);
  EXPECT_EQ(program.Current.Record, third) << "the series is kept";
  commands::ShowForecastHour(program, 0);
  EXPECT_EQ(program.Current.Record, original);
  EXPECT_TRUE(program.Others.empty());
  commands::StepForecast(program);
  EXPECT_EQ(View().Shown, 4u) << "the next press goes on at the end";
  commands::RestartForecast(program);
  EXPECT_TRUE(View().Series.Steps().empty());
  EXPECT_TRUE(View().IsSearched);

  OpenSoundings(program, {program.Where.Data / "west.RAW"});
  FollowForecast(program);
  EXPECT_FALSE(View().IsSearched) << "another sounding begins anew";
}

TEST_F(ForecastDisplay, SavesHourAfterHour) {
  Open();
  View().Set.AutoSave = true;
  commands::StepForecast(program);
  EXPECT_TRUE(IsSaved("here_01h_Forecast.RAW") && IsSaved("here_Forecast.CSV"));
  commands::StepForecast(program);
  const std::string both = ReadFile(program.Where.Forecast / "here_Forecast.CSV").Value();
  EXPECT_NE(both.find("\n2,"), std::string::npos);
  EXPECT_FALSE(program.Doc.ChangedOnDisk());

  commands::RestartForecast(program);
  user.Expect("File already exists", Answer::No);
  commands::StepForecast(program);
  EXPECT_EQ(ReadFile(program.Where.Forecast / "here_Forecast.CSV").Value(), both);
  EXPECT_EQ(View().Series.Steps().size(), 1u) << "the hour is there all the same";

  // Neither does the next hour replace a time series that is another's.
  std::filesystem::remove(program.Where.Forecast / "here_02h_Forecast.RAW");
  user.Expect("File already exists", Answer::No);
  commands::StepForecast(program);
  EXPECT_EQ(user.Boxes.back().Text, "here_Forecast.CSV\nDo you want to replace existing file?");
  EXPECT_EQ(ReadFile(program.Where.Forecast / "here_Forecast.CSV").Value(), both);
  user.Expect("File already exists", Answer::Yes);
  commands::StepForecast(program);
  commands::StepForecast(program);  // from then on it is its own
  EXPECT_TRUE(IsSaved("here_04h_Forecast.RAW"));
  EXPECT_NE(ReadFile(program.Where.Forecast / "here_Forecast.CSV").Value(), both);
}

TEST_F(ForecastDisplay, AFullDiskCostsNothingThatWasThere) {
  Open();
  View().Set.AutoSave = true;
  commands::StepForecast(program);
  const std::string one = ReadFile(program.Where.Forecast / "here_Forecast.CSV").Value();
  for (const int atWrite : {1, 2}) {
    test::FullDisk disk(atWrite);
    user.Expect("VEXA", Answer::Ok);
    commands::StepForecast(program, disk);
    EXPECT_NE(user.Boxes.back().Text.find("Disk is probably full."), std::string::npos);
    EXPECT_EQ(ReadFile(program.Where.Forecast / "here_Forecast.CSV").Value(), one);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(program.Where.Forecast), {}), 2);
  }
  commands::StepForecast(program);
  EXPECT_EQ(View().Series.Steps().size(), 4u);
  const std::string all = ReadFile(program.Where.Forecast / "here_Forecast.CSV").Value();
  EXPECT_NE(all.find("\n3,"), std::string::npos) << "hours that were not saved are in the series";
}

TEST_F(ForecastDisplay, SettingsComeBack) {
  Open();
  View().Set.Mode = forecast::ForecastMode::Single;
  View().Set.MainDepth = 1234;
  View().Set.SaveFolder = "/some, where";
  SaveForecastSettings(program);
  const forecast::ForecastSettings kept = View().Set;
  Program again;
  again.Where = program.Where;
  EXPECT_EQ(ForecastViewOf(again).Set, kept);
}

}  // namespace
}  // namespace vexa
