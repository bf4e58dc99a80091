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
      value_ = (value_ ^ WordOf(bytes.data())) * 0x100000001b3ULL;
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
  // Lowest byte first on every machine; written out, compilers make one load of it.
  static std::uint64_t WordOf(const char* bytes) {
    const auto byte = [bytes](int i) {
      return std::uint64_t{static_cast<unsigned char>(bytes[i])} << (8 * i);
    };
    return byte(0) | byte(1) | byte(2) | byte(3) | byte(4) | byte(5) | byte(6) | byte(7);
  }

  std::uint64_t value_ = 0xcbf29ce484222325ULL;
};

inline std::uint64_t HashOf(std::string_view bytes) {
  StableHash hash;
  hash.Add(bytes);
  return hash.Value();
}

}  // namespace vexa::archive
