// The program's own reader of BUFR messages: follows the descriptors of section 3 through the bits
// of section 4 and gives each value to whoever asks, keeping none. A subset can be read by itself
// once its place is known. A damaged message ends in a fault: no bit is read outside its section,
// and what can be read of it is limited by its length.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "core/fault.h"
#include "ingest/bufr_messages.h"
#include "ingest/bufr_tables.h"

namespace vexa::ingest {

/// Where the values of a subset begin.
struct BufrPlace {
  std::size_t Subset = 0;  // the first is 0
  std::size_t Bit = 0;     // of section 4; compressed subsets all begin at 0
};

class BufrReader {
 public:
  using Take = std::function<void(const BufrValue&)>;

  /// The reader of a message; empty when it uses an element, a sequence or an operator that the
  /// tables of the program do not hold.
  static std::optional<BufrReader> For(const BufrHead& head);

  /// Gives each value of the subset at this place to `take` and moves the place to the next one.
  /// What speaks of the quality of earlier values is passed over.
  std::optional<Fault> Read(BufrPlace& place, const Take& take);

 private:
  // A descriptor with sequences written out.
  struct Step {
    enum class What { Element, Repeat, RepeatAsTold, Operator, Passed } Does = What::Element;
    int Number = 0;  // repetitions, an operator's X and Y as XXYYY, or bits passed over
    const BufrElement* Element = nullptr;
    std::size_t End = 0;  // of what is repeated
  };
  class Walk;

  explicit BufrReader(const BufrHead& head) : head_(head) {}
  bool WriteOut(std::span<const int> descriptors, int depth);

  BufrHead head_;
  std::vector<Step> steps_{};
  bool isComplete_ = false;    // what follows is of no use
  std::size_t stepsLeft_ = 0;  // of all subsets together
};

}  // namespace vexa::ingest
