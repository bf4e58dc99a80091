// The messages of a BUFR file and the values in them. What the program's own tables know is
// unpacked by ingest/bufr_reader.h; for the rest there is a library, which is seen by one source
// file only. A build without it has another one that says so.
#pragma once

#include <cstddef>
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

/// What sections 1 and 3 say of a message, and where the others lie.
struct BufrHead {
  ObservationTime Time{};  // of section 1, the nominal time as a rule
  int Category = 0;        // table A; 2 are vertical soundings
  int Update = 0;          // number of the correction
  int MasterTable = 0;     // 0: meteorology
  int TableVersion = 0;
  std::size_t Subsets = 0;
  bool IsCompressed = false;
  std::string_view Descriptors{};  // of section 3, packed in two octets each
  std::string_view Data{};         // of section 4

  int DescriptorAt(std::size_t index) const;  // as a whole number
  std::size_t DescriptorCount() const { return Descriptors.size() / 2; }
};

/// Of a whole message; empty for any other, also when its sections do not fill it exactly.
std::optional<BufrHead> ReadHead(std::string_view message);

/// The bytes of each message, "BUFR" to "7777"; what lies between them is passed over. A message
/// whose length leads beyond the end, or not to its end mark, is left out and noted.
std::vector<std::string_view> SplitBufr(std::string_view bytes, std::vector<std::string>& notes);

/// The fault of a message, without the file's name.
Fault DamagedMessage(std::string_view reason);

/// The text of some octets without its filling; empty for a missing one, which has all bits set.
std::string MessageText(std::string_view octets);

/// Unpacks the subsets of one message by the library. Fault 62 when it is damaged or its tables are
/// not known, 1209 in a build without the library.
Outcome<std::vector<BufrSubset>> UnpackByLibrary(std::string_view message);

}  // namespace vexa::ingest
