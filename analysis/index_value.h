// One index of one sounding: its value, or the reason why there is none.
#pragma once

#include <string>

#include "core/markers.h"

namespace vexa::analysis {

struct IndexRow;

struct IndexValue {
  const IndexRow* Row = nullptr;  // of the index table
  double Value = kNone;           // in the row's unit
  std::string Text{};             // stands for the number where a word or a wind says more
  std::string Reason{};           // why there is none
  bool Exists() const { return Value != kNone; }
};

/// One line of how an index came about.
struct IndexInput {
  std::string Name{};   // "T 850 hPa"
  std::string Value{};  // "18.6 C"
};

}  // namespace vexa::analysis
