#include "config/settings_report.h"

#include "config/catalogue.h"
#include "core/source_text.h"
#include "core/user_file.h"

namespace vexa {
namespace {

constexpr std::string_view kTitle = "Current VEXA configuration settings";
constexpr std::string_view kVersion = "Version = ";
constexpr std::string_view kResolution = "Resolution = ";

// Records that stand before the row of a key.
struct Heading {
  std::string_view Before;
  std::string_view Text;
};

constexpr Heading kHeadings[] = {
    {"Above 100mb", ""},
    {"Above 100mb", "PROGRAM CONFIGURATIONS ----------------------------------------"},
    {"Above 100mb", "Tab 1 ---------------------------------------------------------"},
    {"CAT type", "Tab 2 -------------------------------------------------------"},
    {"LPL", "Tab 3 -------------------------------------------------------"},
    {"ThermoNum", "Other -----------------------------------------------------"},
    {"Diagram type", ""},
    {"Diagram type", "DIAGRAM OPTIONS --------------------------------------------"},
    {"Diagram type", "Tab 1 - Format ---------------------------------------------"},
    {"MB limit", "Tab 2 - Pres & Temp ---------------------------------------------"},
    {"Dry adiabats", "Tab 3 - Reference Lines -------------------------------------------"},
    {"T/Td dots", "Tab 4 - Sounding Data ---------------------------------------------"},
    {"Thermo display type", "Tab 5 - Analyses Data -------------------------------------------"},
    {"Plot Hodo", "Tab 6 - Hodo ------------------------------------------------------"},
    {"ICAO line", "Tab 7 - Standard Atmosphere ---------------------------------------"},
    {"Line #1 Plot", "Tab 8 - Custom lines ----------------------------------------------"},
    {"Line #1 Plot", "Line #1"},
    {"Line #2 Plot", "Line #2"},
    {"Line #3 Plot", "Line #3"},
    {"Line #4 Plot", "Line #4"},
    {"Line #5 Plot", "Line #5"},
    {"Drive D", ""},
    {"Drive D", "SYSTEM OPTIONS --------------------------------------------"},
    {"Drive D", "-----------------------------------------------------------"},
    {"CursorGrid", kResolution},
};

class ReportText {
 public:
  explicit ReportText(const ReportHead& head) : head_(head) {
    Add(kTitle);
    Add(std::string(kVersion) + head.Version);
    Heads(kResolution);
  }

  void Heads(std::string_view text) {
    Add(text == kResolution ? std::string(text) + head_.Resolution : std::string(text));
  }

  // On the record before when the row shares it.
  void Setting(const OptionRow& row, const Options& options) {
    std::string value = row.Write(options);
    for (char& c : value) {
      if (c == '\r' || c == '\n') c = ' ';
    }
    if (row.SameRecord) text_.resize(text_.size() - kLineEnd.size());
    Add(std::string(row.Label) + value);
  }

  const std::string& Text() const { return text_; }

 private:
  static constexpr std::string_view kLineEnd = "\r\n";

  void Add(std::string_view record) {
    text_ += record;
    text_ += kLineEnd;
  }

  const ReportHead& head_;
  std::string text_{};
};

}  // namespace

std::string SettingsReport(const Options& options, const ReportHead& head) {
  ReportText report(head);
  for (const OptionRow& row : Catalogue()) {
    for (const Heading& heading : kHeadings) {
      if (heading.Before == row.Key) report.Heads(heading.Text);
    }
    if (row.InReport) report.Setting(row, options);
  }
  return report.Text();
}

std::optional<Fault> WriteSettingsReport(const std::filesystem::path& folder,
                                         const Options& options, const ReportHead& head,
                                         FileOps& ops) {
  const auto isNoReport = [](std::string_view text) {
    return text.starts_with(kTitle) ? std::string() : AtLine(kSettingsReportName, 1, "no report");
  };
  return SaveUserFile(folder / kSettingsReportName, SettingsReport(options, head), isNoReport, ops);
}

}  // namespace vexa
