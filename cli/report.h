// What `analyze` says of one sounding: as text for people, as JSON and as a CSV row for programs.
#pragma once

#include <string>
#include <vector>

#include "analysis/analysis.h"
#include "cli/json.h"
#include "config/options.h"
#include "core/sounding_record.h"

namespace vexa::cli {

struct AnalysedSounding {
  std::string File{};
  SoundingRecord Record{};
  analysis::AnalysisResults Results{};
  std::vector<std::string> Notes{};  // what the decoder left out or worked out
};

std::string TextReport(const AnalysedSounding& sounding, const Options& options);

/// One JSON object; docs/command-line.md lists its keys.
void WriteJson(JsonWriter& json, const AnalysedSounding& sounding, const Options& options);

/// The names of the CSV columns with their units, and one row of them; lines without their ends.
std::string CsvHeader(const Options& options);
std::string CsvRow(const AnalysedSounding& sounding, const Options& options);

}  // namespace vexa::cli
