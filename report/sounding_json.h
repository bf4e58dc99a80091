// Everything that the program found out about one sounding, as JSON for other programs.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "analysis/analysis.h"
#include "config/display_settings.h"
#include "core/data_checks.h"
#include "core/files.h"
#include "core/sounding_record.h"
#include "mountainwave/mountain.h"
#include "sounding/analysed_sounding.h"

namespace vexa::report {

/// What is told of a sounding; its parts are kept elsewhere, by a program or an AnalysedSounding.
struct ReportedSounding {
  std::string File{};  // its name as it is told
  const SoundingRecord& Record;
  const analysis::AnalysisResults& Results;
  const std::vector<std::string>& Notes;  // what the decoder left out or worked out
  QcFinding Finding{};                    // what the check of the data found
  /// For the waves; not told: the sounding's own.
  std::optional<mountainwave::Site> Mountains{};
  std::optional<FileStamp> Stamp{};  // of the file as it was read
};

/// An analysed sounding under the name by which it was asked for.
///
/// table  as AnalysedSounding::Results takes it
ReportedSounding ReportOf(const AnalysedSounding& sounding, std::string name,
                          const DisplaySettings& options, analysis::AdiabatTable* table = nullptr);

/// One JSON object, without a line end; docs/command-line.md lists its keys.
std::string SoundingJson(const ReportedSounding& sounding, const DisplaySettings& options);

}  // namespace vexa::report
