// A number that stands for bytes, the same on every machine and in every version.
#pragma once

#include <cstdint>
#include <string_view>

namespace vexa::archive {

/// FNV-1a of 64 bits, by Fowler, Noll and Vo.
class StableHash {
 public:
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
