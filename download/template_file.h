// The file VEXA.URL of the program root: the sources of soundings, for the user to edit.
//
//   # free lines
//   [University of Wyoming]
//   address = https://…/sounding?datetime=@Y-@M-@D%20@H:00:00&id=@N
//   hours = 00 12
//   note = listing; last known good 2026-02
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "download/sources.h"

namespace vexa::download {

inline constexpr std::string_view kSourcesFileName = "VEXA.URL";

struct SourceList {
  std::vector<Source> Sources{};
  std::vector<std::string> Notes{};  // "NAME, line 7: reason" of what was left out
  bool operator==(const SourceList&) const = default;

  /// By name, capitals or not; when none has it whole, the only one whose name begins with it. Null
  /// when there is none.
  const Source* Find(std::string_view name) const;
};

/// Reads the text of the file. Left out are lines that are none of the above, hours that are none,
/// and sources without an address, with tokens that are not known, or of a name that another has.
SourceList ReadSources(std::string_view text, std::string_view name);

}  // namespace vexa::download
