// One index of one sounding: its value or the reason why there is none, and what it was computed
// from.
#pragma once

#include <string>
#include <vector>

#include "core/markers.h"

namespace vexa::analysis {

struct IndexRow;

struct IndexInput {
  std::string Name{};   // "T 850 hPa"
  std::string Value{};  // "18.6 C"
};

struct IndexValue {
  const IndexRow* Row = nullptr;  // of the index table
  double Value = kNone;
  std::string Reason{};              // why there is none
  std::vector<IndexInput> Inputs{};  // in the order of reading
  bool Exists() const { return Value != kNone; }
};

}  // namespace vexa::analysis
