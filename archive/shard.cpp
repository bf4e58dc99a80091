#include "archive/shard.h"

#include "archive/stable_hash.h"
#include "core/numbers.h"

namespace vexa::archive {

bool Shard::Holds(std::string_view name) const {
  // Names that differ in their last figures only differ in the low bits of the hash only; the upper
  // ones mix with them.
  std::uint64_t hash = HashOf(name);
  hash ^= hash >> 32;
  return hash % static_cast<std::uint64_t>(Of) == static_cast<std::uint64_t>(Number - 1);
}

std::optional<Shard> ParseShard(std::string_view text) {
  const std::size_t slash = text.find('/');
  if (slash == std::string_view::npos) return std::nullopt;
  const std::optional<int> number = ParseWhole(text.substr(0, slash));
  const std::optional<int> of = ParseWhole(text.substr(slash + 1));
  constexpr int kMost = 100'000;
  if (!number || !of || *number < 1 || *of < *number || *of > kMost) return std::nullopt;
  return Shard{*number, *of};
}

}  // namespace vexa::archive
