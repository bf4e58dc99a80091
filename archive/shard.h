// One of several equal shares of the inputs, for as many processes or machines: which share an
// input falls into follows from its name alone.
#pragma once

#include <optional>
#include <string_view>

namespace vexa::archive {

struct Shard {
  int Number = 1;  // from 1
  int Of = 1;
  bool Holds(std::string_view name) const;
};

/// "2/8"; none for anything else, and for a number that is not from 1 to the count.
std::optional<Shard> ParseShard(std::string_view text);

}  // namespace vexa::archive
