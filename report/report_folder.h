// One folder that lets a colleague repeat the case: source, native file, settings, analysis,
// pictures, listings and the versions that made them.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "core/fault.h"
#include "report/sounding_json.h"

namespace vexa::report {

/// Everything that goes into the folder, with what it is made from.
struct ReportSource {
  const AnalysedSounding& Sounding;
  const Options& Set;
  const std::string& SourceBytes;
  std::string_view Program = "vexa-cli";  // that writes it
};

/// Writes the folder, which is made where it is missing; files of these names are replaced. Fault
/// 75 when the folder cannot be made, else as of SaveFile and of the pictures. Needs an application
/// object of the toolkit.
[[nodiscard]] std::optional<Fault> WriteReportFolder(const ReportSource& from,
                                                     const std::filesystem::path& folder);

}  // namespace vexa::report
