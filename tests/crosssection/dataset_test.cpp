// Datasets: what is written reads back the same, and what cannot be used is refused by name.
#include "crosssection/dataset.h"

#include <gtest/gtest.h>

#include <tuple>

#include "support/soundings.h"

namespace vexa::crosssection {
namespace {

Dataset Two() {
  Dataset dataset{.Kind = SectionKind::Time, .Direction = SectionDirection::Reverse};
  for (const bool placed : {true, false}) {
    SoundingRecord record = test::ReferenceConvective();
    record.Clouds.Clear();
    record.CloudMode = "AUTO";
    if (!placed) {
      record = test::Profile({{1000, 20, 999.9}, {500, -20.5, -30.1}});
      SetElevationUnknown(record);
    } else {
      record.WmoNumber = 72357;
      record.Time = {1999, 5, 4, 0, 30};
    }
    dataset.Members.push_back({record, "C:\\data\\one.RAW"});
  }
  return dataset;
}

TEST(Dataset, ReadsBackWhatWasWritten) {
  const Dataset dataset = Two();
  const std::string text = Write(dataset);
  EXPECT_TRUE(text.starts_with("\"VEXA 5.6\",\"CROSS-SECTION\"\r\n\"TIME\"\r\n\"REVERSE\",2\r\n"))
      << text.substr(0, 80);
  const DatasetRead read = ReadDataset(text, "two.SEC");
  ASSERT_EQ(read.Why, DatasetRefusal::None) << read.Place;
  EXPECT_EQ(read.Held, dataset);
}

TEST(Dataset, CutAnywhereIsDamagedWithItsPlace) {
  const std::string text = Write(Two());
  const std::size_t header = text.find("\"TIME\"");
  for (std::size_t length = header; length + 3 < text.size(); ++length) {
    const DatasetRead read = ReadDataset(text.substr(0, length), "two.SEC");
    ASSERT_EQ(read.Why, DatasetRefusal::Damaged) << length;
    ASSERT_NE(read.Place.find("two.SEC, line "), std::string::npos) << read.Place;
  }
  EXPECT_EQ(ReadDataset(text + "1,2,3\r\n", "two.SEC").Why, DatasetRefusal::Damaged);
}

TEST(Dataset, RefusesWithTheStatedWords) {
  using enum DatasetRefusal;
  const std::string head = "\"VEXA 5.6\",\"CROSS-SECTION\"\r\n";
  const std::tuple<std::string, DatasetRefusal, const char*> cases[] = {
      {"\"VEXA 5.5\",\"CROSS-SECTION\"\r\n", OlderVersion,
       "Dataset  a.SEC was created by an older version of VEXA."},
      {"\"VEXA 5.7\"\r\n\"title\"\r\n", NoDataset, "a.SEC  is not a Cross-Section DataSet"},
      {"", NoDataset, "a.SEC  is not a Cross-Section DataSet"},
      {head + "\"DISTANCE\"\r\n\"FORWARD\",1\r\n", Damaged, "a.SEC  has missing or corrupt data."},
      {head + "\"PLACE\"\r\n", Damaged, "line 2: kind \"PLACE\" is unknown"},
  };
  for (const auto& [text, why, says] : cases) {
    const DatasetRead read = ReadDataset(text, "a.SEC");
    EXPECT_EQ(read.Why, why);
    const Box box = RefusalBox(read.Why, "a.SEC", read.Place);
    EXPECT_EQ(box.Title, why == OlderVersion ? "Incorrect dataset format" : "Bad data file.");
    EXPECT_NE(box.Text.find(says), std::string::npos) << box.Text;
  }
  const test::TemporaryFolder folder;
  EXPECT_TRUE(SameFolder(folder.Path(), folder.Path() / "." / ""));
  EXPECT_FALSE(SameFolder(folder.Path(), folder.Path() / "x"));
}

}  // namespace
}  // namespace vexa::crosssection
