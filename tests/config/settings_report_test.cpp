#include "config/settings_report.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/soundings.h"

namespace vexa {
namespace {

std::vector<std::string> RecordsOf(std::string_view text) {
  std::vector<std::string> records;
  while (!text.empty()) {
    const std::size_t end = text.find("\r\n");
    if (end == std::string_view::npos) {
      ADD_FAILURE() << "the last record lacks its end: " << text;
      break;
    }
    records.emplace_back(text.substr(0, end));
    text.remove_prefix(end + 2);
  }
  return records;
}

// Every record of the report with the defaults, as other programs that read it expect them.
std::vector<std::string> DefaultReport() {
  return RecordsOf(ReadFile(test::TestData("settings/VEXA.SET")).Value());
}

TEST(SettingsReport, ShowsWhatIsSet) {
  Options options;
  options.Diagram = DiagramType::Tephigram;
  options.CustomLines[1].Style = CustomLineStyle::Dots;
  options.System.PrintTitleMemory = "two\r\nlines";
  const test::TemporaryFolder folder;
  ASSERT_FALSE(WriteSettingsReport(folder.Path(), options, {"1.2.3", "1024x768"}));
  const std::vector<std::string> records = RecordsOf(ReadFile(folder.Path() / "VEXA.SET").Value());
  std::vector<std::string> expected = DefaultReport();
  const auto replace = [&expected](std::string_view old, int nth, const char* text) {
    for (std::string& record : expected) {
      if (record == old && nth-- == 1) record = text;
    }
  };
  replace("Diagram type = skewt", 1, "Diagram type = tephigram");
  replace("dash", 2, "dots");
  replace("PrintTitleMemory =  DarklinesMemory = false", 1,
          "PrintTitleMemory = two  lines DarklinesMemory = false");
  EXPECT_EQ(records, expected);

  const auto fault = WriteSettingsReport(folder.Path() / "VEXA.SET", options, {});
  ASSERT_TRUE(fault);
  EXPECT_EQ(fault->File, "VEXA.SET");
}

}  // namespace
}  // namespace vexa
