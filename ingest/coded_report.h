// Coded messages come in bulletins: headings, control characters, several reports in a row, some
// of them corrected later. Cuts such a text into reports, each one part of one station's ascent.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/source_text.h"

namespace vexa::ingest {

/// One part of an ascent, "TTAA" and what follows it up to "=".
struct CodedReport {
  std::string Part{};     // "TTAA", "UUBB", "PPDD"
  int Correction = 0;     // 1 for COR and CCA, 2 for CCB, ...
  int Line = 0;           // of the part's name
  bool IsNil = false;     // says itself that there is no report
  int Day = 0;            // of the month
  int Hour = 0;           // UTC
  char WindTop = '/';     // code of the highest mandatory level with a wind
  bool InKnots = false;   // else m/s
  std::string Station{};  // WMO number or call sign; "drop 15.3 -65.9" for a dropsonde
  int WmoNumber = 0;
  std::optional<double> Lat{}, Lon{}, Elevation{};
  std::vector<std::string> Groups{};  // behind the header
  std::vector<std::string> Notes{};

  bool IsPilot() const { return Part[0] == 'P' || Part[0] == 'Q' || Part[0] == 'E'; }
  /// 'A' to 'D'.
  char Letter() const { return Part[3]; }
  bool IsAloft() const { return Letter() >= 'C'; }
  /// "72712 TTAA", for notes.
  std::string Name() const { return Station + ' ' + Part; }
};

/// True for the name of a part: TTAA, PPBB, UUCC, XXAA, IIDD ...
bool IsPartName(std::string_view token);

/// All reports of a text in their order, those that say NIL with as much of their header as can be
/// read. Groups that a line end broke are whole again; other reports whose header is not readable
/// are left out with a note.
std::vector<CodedReport> SplitReports(const SourceText& source, std::vector<std::string>& notes);

/// Of reports of the same part, station, day and hour the one that counts: the latest correction,
/// else the one with the most groups, else the last. Reports without content are dropped. One that
/// replaces another notes its being a correction.
std::vector<CodedReport> LatestReports(std::vector<CodedReport> reports);

}  // namespace vexa::ingest
