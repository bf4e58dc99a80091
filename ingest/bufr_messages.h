// The messages of a BUFR file with their values, as the library behind it unpacks them. The library
// is seen by one source file only; a build without it has another one that says so.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/fault.h"
#include "core/sounding_record.h"

namespace vexa::ingest {

/// One value of a message in the order of its descriptors, each repetition for itself.
struct BufrValue {
  int Descriptor = 0;              // table B, 12101 for 0 12 101
  std::optional<double> Number{};  // in the unit of table B; empty when missing or a text
  std::string Text{};              // of a text, without its filling
};

using BufrSubset = std::vector<BufrValue>;

struct BufrMessage {
  ObservationTime Time{};  // of section 1, the nominal time as a rule
  int Category = 0;        // table A; 2 are vertical soundings
  int Update = 0;          // number of the correction
  std::vector<BufrSubset> Subsets{};
};

/// The bytes of each message, "BUFR" to "7777"; what lies between them is passed over. A message
/// whose length leads beyond the end, or not to its end mark, is left out and noted.
std::vector<std::string_view> SplitBufr(std::string_view bytes, std::vector<std::string>& notes);

/// True when there is one message with one subset, which is told without unpacking it.
bool HoldsOneReport(std::string_view bytes);

/// Unpacks one message. Fault 62 when it is damaged or its tables are not known, 1209 in a build
/// without the library.
Outcome<BufrMessage> UnpackBufr(std::string_view message);

}  // namespace vexa::ingest
