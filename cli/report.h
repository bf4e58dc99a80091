// What `analyze` says of one sounding: as text for people, as JSON and as a CSV row for programs.
#pragma once

#include <string>

#include "config/display_settings.h"
#include "report/sounding_json.h"

namespace vexa::cli {

using report::ReportedSounding;
using report::SoundingJson;

std::string TextReport(const ReportedSounding& sounding, const DisplaySettings& options);

/// The names of the CSV columns with their units, and one row of them; lines without their ends.
std::string CsvHeader(const DisplaySettings& options);
std::string CsvRow(const ReportedSounding& sounding, const DisplaySettings& options);

}  // namespace vexa::cli
