#include "core/session_file.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <system_error>

#include "core/markers.h"
#include "support/soundings.h"

namespace vexa {
namespace {

// No two fields alike, so that one forgotten or exchanged shows.
Session FullSession() {
  SoundingRecord record =
      test::Profile({{1000.1, 20.25, 10}, {850, 10, kMissing}, {0.01, -70, -90}},
                    {{0, 180, 5}, {8e4, 0.1, 1.0 / 3}}, -12);
  record.FileTag = "VEXA 5.6";
  record.StationTitle = "50 % \"quoted\", two\r\nlines, \xC3\x98rland \x1A";
  SetDecimalPosition(record, -35.123456789, 97.4);
  record.LatParts = {"35", "12", "34"};
  record.LonParts = {"97", "56", "78"};
  record.ElevFt = -39;
  record.ElevUnknown = true;
  record.DataFormat = "CODED";
  record.FileFlavour = "DOS";
  record.CloudMode = "MANUAL";
  record.CloudOption = " x";
  record.NumExtraRecords = 2;
  record.ExtraRecord1 = {1, 2, 3};
  record.ExtraRecord2 = {4, 5, 6, 7.5};
  record.ExtraRecordsPresent = true;
  record.WmoNumber = 3772;
  record.SurfaceLostBelow = 925;
  record.Time = {2011, 4, 14, 18, 59};
  record.Clouds.Add({"CB", 12.5, "350", 7});
  record.Clouds.Add({"", 0, "", -1});
  record.WorkWindDir = Levels<float>({0.1F, 359.9F});
  record.WorkWindSpd = Levels<float>({3.3F, 999.9F});
  return {.Files = {"/data/a \"b\".RAW", "C:\\%41\\c.RAW", ""},
          .Edited = record,
          .Settings = {{"zoom", "1.5"}, {"", "a=b;c"}}};
}

TEST(SessionFile, DamageGivesNoneWithANote) {
  const std::string text = WriteSession(FullSession());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const SessionReading cut = ReadSession(std::string_view(text).substr(0, i), "VEXA.SES");
    ASSERT_FALSE(cut.Found) << i;
    ASSERT_EQ(cut.Note, "The last session cannot be restored: VEXA.SES is damaged.") << i;
    std::string altered = text;
    altered[i] = static_cast<char>(altered[i] ^ 4);
    ASSERT_FALSE(ReadSession(altered, "VEXA.SES").Found) << i;
  }
  EXPECT_FALSE(ReadSession(text + ' ', "VEXA.SES").Found);

  Session uneven = FullSession();
  uneven.Edited->Dewpt.Erase(1);
  const SessionReading reading = ReadSession(WriteSession(uneven), "VEXA.SES");
  EXPECT_FALSE(reading.Found);
  EXPECT_NE(reading.Note.find("holds levels of unequal number"), std::string::npos);
}

// The check sum vouches for the file, not for its numbers.
TEST(SessionFile, ImpossibleLevelsAreLeftOut) {
  Session wild = FullSession();
  SoundingRecord expected = *wild.Edited;
  wild.Edited->AddTemp(0.005, 2e307, 0);
  wild.Edited->AddWind(8.1e4, 10, 10);
  wild.Edited->Clouds.Add({"ST", 2000, "350", 7});
  wild.Edited->ElevUnknown = false;
  wild.Edited->ElevM = 100000;
  const SessionReading reading = ReadSession(WriteSession(wild), "VEXA.SES");
  ASSERT_TRUE(reading.Found);
  EXPECT_EQ(reading.Found->Edited->Temp, expected.Temp);
  EXPECT_EQ(reading.Found->Edited->WindHgt, expected.WindHgt);
  EXPECT_EQ(reading.Found->Edited->WorkWindDir, expected.WorkWindDir);
  EXPECT_EQ(reading.Found->Edited->Clouds, expected.Clouds);
  EXPECT_TRUE(reading.Found->Edited->ElevUnknown);
  EXPECT_EQ(reading.Note.find("The last session: Temperature levels with impossible values"), 0u);
  EXPECT_NE(reading.Note.find("0.005 hPa, 2e+307 and 0 C"), std::string::npos) << reading.Note;
}

class FullDisk final : public FileOps {
 public:
  std::error_code Flush(std::FILE*) override {
    return std::make_error_code(std::errc::no_space_on_device);
  }
};

TEST(SessionFile, InItsFolder) {
  test::TemporaryFolder folder;
  const std::filesystem::path file = folder.Path() / "VEXA.SES";
  EXPECT_FALSE(LoadSession(file).Found);
  EXPECT_EQ(LoadSession(file).Note, "");

  const Session session = FullSession();
  ASSERT_FALSE(SaveSession(file, session));
  FullDisk disk;
  const std::optional<Fault> fault = SaveSession(file, Session{}, disk);
  ASSERT_TRUE(fault);
  EXPECT_EQ(fault->Number, kFaultDiskFull);
  ASSERT_TRUE(LoadSession(file).Found);
  EXPECT_EQ(*LoadSession(file).Found, session);

  EXPECT_FALSE(ForgetSession(file));
  EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
  EXPECT_FALSE(ForgetSession(file));

  std::filesystem::create_directory(file);
  EXPECT_NE(LoadSession(file).Note.find("not an ordinary file"), std::string::npos);
}

// As several windows in one folder have it; a crash lets go of the file and leaves the session.
TEST(SessionFile, EachRunningProgramHasItsOwn) {
  const test::TemporaryFolder folder;
  SessionPlace first = TakeSessionPlace(folder.Path());
  SessionPlace second = TakeSessionPlace(folder.Path());
  EXPECT_EQ(first.File, folder.Path() / "VEXA.SES");
  EXPECT_EQ(second.File, folder.Path() / "VEXA2.SES");
  ASSERT_FALSE(SaveSession(first.File, FullSession()));
  ASSERT_FALSE(SaveSession(second.File, FullSession()));
  EXPECT_EQ(TakeSessionPlace(folder.Path()).File, folder.Path() / "VEXA3.SES");

  second.Held.reset();
  EXPECT_EQ(TakeSessionPlace(folder.Path()).File, second.File) << "a session ahead of none";
  ASSERT_FALSE(ForgetSession(second.File));
  first.Held.reset();
  EXPECT_EQ(TakeSessionPlace(folder.Path()).File, first.File);
  ASSERT_FALSE(ForgetSession(first.File));
  EXPECT_TRUE(std::filesystem::is_empty(folder.Path())) << "no lock stays";
}

}  // namespace
}  // namespace vexa
