// The levels of one report: parts A and C with the mandatory levels, B and D with the significant
// ones, and the winds by height of PILOT reports. Groups that make no sense are skipped and named.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "ingest/coded_report.h"
#include "ingest/source_levels.h"

namespace vexa::ingest {

enum class LevelKind { Surface, Mandatory, Tropopause, MaximumWind, Significant, PilotWind };

struct CodedLevel {
  LevelKind Kind = LevelKind::Significant;
  /// Heights are those that the message states in full; mandatory levels have HeightFigures.
  SourceLevel Values{};
  std::string HeightGroup{};           // "85383"
  std::optional<int> HeightFigures{};  // last three figures of metres, from 500 hPa up decametres
  bool IsAtSurface = false;            // a PILOT wind whose height is the ground's
  char Part = 'A';
};

struct CodedPart {
  std::vector<CodedLevel> Levels{};
  std::vector<std::string> Notes{};
  std::vector<std::string> Remarks{};  // what the message says of the ascent
};

CodedPart ReadPart(const CodedReport& report);

}  // namespace vexa::ingest
