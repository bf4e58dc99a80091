// What the reader of BUFR messages must know of an element or a sequence to unpack it: the WMO's
// tables B and D, of which it holds what soundings are made of. Descriptors are written as whole
// numbers, 0 12 101 as 12101.
#pragma once

#include <optional>
#include <span>

namespace vexa::ingest {

enum class BufrKind { Number, Code, Text };  // a code is one of a table or flags: nothing scales it

struct BufrElement {
  int Descriptor = 0;
  BufrKind Kind = BufrKind::Number;
  int Scale = 0;  // powers of ten by which the value was multiplied
  int Reference = 0;
  int Width = 0;  // bits
  int Since = 0;  // version of the tables; before it had another layout
};

struct BufrSequence {
  int Since = 0;
  std::span<const int> Members{};
};

/// Null for an element that the table does not hold.
const BufrElement* FindElement(int descriptor);
std::optional<BufrSequence> FindSequence(int descriptor);

}  // namespace vexa::ingest
