// The file VEXA.BCH of the program root: what the batch window was last set to, so that the list of
// stations and hours outlasts the program.
//
//   sources = University of Wyoming | Storm Prediction Center
//   stations = 72357 OUN
//   hours = 00 12
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "download/batch.h"

namespace vexa::download {

inline constexpr std::string_view kBatchFileName = "VEXA.BCH";

struct BatchSettings {
  std::vector<std::string> Sources{};  // names; none: the first of the file of sources
  std::string Stations{};              // as typed
  std::string Hours = "00 12";         // as typed, UTC
  int DelayMin = 90;                   // from the hour of a sounding until most sources have it
  std::string Folder{};                // empty: the data folder
  BatchFormat Format = BatchFormat::AsReceived;
  OnFailure Failing = OnFailure::Skip;
  bool Beeper = false;
  bool operator==(const BatchSettings&) const = default;
};

struct BatchReading {
  BatchSettings Settings{};
  std::vector<std::string> Notes{};  // "NAME, line 3: reason" of what was not understood
};

/// Reads the text of the file; what it does not name, or not in a way that is understood, keeps its
/// default.
BatchReading ReadBatchSettings(std::string_view text, std::string_view name);

/// The settings as text; reading it gives them again. Line ends inside a field become blanks.
///
/// before  the text that the file holds, whose other lines stay
std::string WriteBatchSettings(const BatchSettings& settings, std::string_view before = {});

}  // namespace vexa::download
