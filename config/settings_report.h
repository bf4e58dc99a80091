// The settings report, a readable list of every option: the catalogue from first row to last under
// the headings of its forms and tabs.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "config/options.h"
#include "core/fault.h"
#include "core/files.h"

namespace vexa {

inline constexpr std::string_view kSettingsReportName = "VEXA.SET";

struct ReportHead {
  std::string Version{};     // of the program
  std::string Resolution{};  // of the screen, as in "1024x768"
};

/// The report's text, each record ended by CR LF.
std::string SettingsReport(const Options& options, const ReportHead& head);

/// Writes the report into a folder. Faults as of SaveUserFile.
[[nodiscard]] std::optional<Fault> WriteSettingsReport(const std::filesystem::path& folder,
                                                       const Options& options,
                                                       const ReportHead& head,
                                                       FileOps& ops = SystemFileOps());

}  // namespace vexa
