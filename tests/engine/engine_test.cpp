#include <gtest/gtest.h>

#include <vexa/vexa.h>
#include <string>

#include "core/files.h"
#include "support/soundings.h"

namespace vexa {
namespace {

std::string Data(const char* name) {
  return TextFromPath(test::TestData(name));
}

std::string Norman() {
  return TextFromPath(test::SourceFolder() / "examples/severe_norman_1999.RAW");
}

TEST(Engine, GivesASoundingAndItsAnalysis) {
  const engine::Loaded norman = engine::Load(Norman());
  ASSERT_TRUE(norman) << norman.Reason;
  EXPECT_EQ(norman->Time(), "1999-05-04T00:00Z");
  // The file's first and last rows, counted in it.
  const std::vector<engine::Level> levels = norman->Levels();
  ASSERT_EQ(levels.size(), 31u);
  EXPECT_EQ(levels.front().Pressure, 959);
  EXPECT_EQ(levels.front().Temperature, 22.2);
  EXPECT_EQ(norman->Winds().size(), 30u);
  // By hand: (17 + 14.9) + 12.5 - (7 + 10).
  EXPECT_NEAR(norman->Index("ki").value_or(0), 27.4, 1e-9);
  EXPECT_FALSE(norman->Index("no such index"));
  const engine::Parcel parcel = norman->Lifted(engine::Lift::MostUnstable);
  EXPECT_GT(*parcel.Lcl, *parcel.Lfc);
  EXPECT_GT(*parcel.Cape, 2000);
  EXPECT_LT(*parcel.Cin, 0);
  EXPECT_NE(norman->Json().find("\"KI\""), std::string::npos);
  EXPECT_TRUE(norman->Svg().starts_with("<"));
  EXPECT_TRUE(norman->Native().starts_with("\"VEXA"));
}

TEST(Engine, SaysWhyThereIsNoSounding) {
  const struct {
    const char* about;
    std::string file;
    engine::Settings settings;
    const char* says;
  } cases[] = {
      {"no such file", "nowhere.RAW", {}, "nowhere.RAW"},
      {"no sounding", TextFromPath(test::SourceFolder() / "README.md"), {}, "none of the known"},
      {"damaged", Data("native_damaged.RAW"), {}, "line "},
      {"fewer soundings", Data("class_two.cls"), {.Number = 3}, "2 soundings"},
      {"one sounding", Norman(), {.Number = 2}, "number 2"},
      {"number 0", Norman(), {.Number = 0}, "number 0"},
      {"option", Norman(), {.Options = {"no such key=1"}}, "no such key"},
      {"station file", Norman(), {.StationFile = "nowhere.STN"}, "nowhere.STN"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.about);
    const engine::Loaded loaded = engine::Load(c.file, c.settings);
    EXPECT_FALSE(loaded);
    EXPECT_NE(loaded.Reason.find(c.says), std::string::npos) << loaded.Reason;
  }
}

TEST(Engine, ListsAndTakesOneOfSeveralSoundings) {
  const std::vector<std::string> titles = engine::Titles(Data("class_two.cls"));
  ASSERT_EQ(titles.size(), 2u);
  const engine::Loaded second = engine::Load(Data("class_two.cls"), {.Number = 2});
  ASSERT_TRUE(second) << second.Reason;
  EXPECT_NE(second->Title(), engine::Load(Data("class_two.cls"))->Title());
  EXPECT_TRUE(engine::Titles("nowhere").empty());
}

}  // namespace
}  // namespace vexa
