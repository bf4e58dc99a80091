// Everything that the program found out about one sounding, as JSON for other programs.
#pragma once

#include <string>
#include <vector>

#include "analysis/analysis.h"
#include "config/options.h"
#include "core/sounding_record.h"

namespace vexa::report {

struct AnalysedSounding {
  std::string File{};
  SoundingRecord Record{};
  analysis::AnalysisResults Results{};
  std::vector<std::string> Notes{};  // what the decoder left out or worked out
};

/// One JSON object, without a line end; docs/command-line.md lists its keys.
std::string SoundingJson(const AnalysedSounding& sounding, const Options& options);

}  // namespace vexa::report
