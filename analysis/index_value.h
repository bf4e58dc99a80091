// One index of one sounding: its value, or the reason why there is none.
#pragma once

#include <array>
#include <optional>
#include <string>

#include "core/markers.h"

namespace vexa::analysis {

struct IndexRow;

struct IndexValue {
  const IndexRow* Row = nullptr;                // of the index table
  double Value = kNone;                         // in the row's unit
  std::optional<double> Direction{};            // degrees: the value is the speed of a wind
  std::optional<std::array<double, 2>> Both{};  // in the row's unit, the value is the larger
  bool IsBound = false;  // the sounding ends too early: at least this, at most where negative
  std::string Text{};    // a word in place of the number
  std::string Reason{};  // why there is none
  bool Exists() const { return Value != kNone; }
};

/// One line of how an index came about.
struct IndexInput {
  std::string Name{};   // "T 850 hPa"
  std::string Value{};  // "18.6 C"
};

}  // namespace vexa::analysis
