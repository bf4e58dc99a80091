// A number that stands for bytes, the same on every machine and in every version.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace vexa::archive {

/// FNV-1a of 64 bits, by Fowler, Noll and Vo.
class StableHash {
 public:
  /// For whole files: eight bytes at a time, after each of which the upper half is folded down,
  /// since products carry upward only. Another number than Add gives; all pieces but the last are
  /// of a multiple of eight bytes.
  void AddWords(std::string_view bytes) {
    while (bytes.size() >= 8) {
      std::uint64_t word = 0;
      for (std::size_t i = 0; i < 8; ++i) {
        word |= std::uint64_t{static_cast<unsigned char>(bytes[i])} << 8 * i;
      }
      value_ = (value_ ^ word) * 0x100000001b3ULL;
      value_ ^= value_ >> 32;
      bytes.remove_prefix(8);
    }
    Add(bytes);
  }
  void Add(std::string_view bytes) {
    for (const char c : bytes) {
      value_ = (value_ ^ static_cast<unsigned char>(c)) * 0x100000001b3ULL;
    }
  }
  std::uint64_t Value() const { return value_; }

 private:
  std::uint64_t value_ = 0xcbf29ce484222325ULL;
};

inline std::uint64_t HashOf(std::string_view bytes) {
  StableHash hash;
  hash.Add(bytes);
  return hash.Value();
}

}  // namespace vexa::archive
