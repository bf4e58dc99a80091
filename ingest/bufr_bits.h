// The bits of a message's data, the first of an octet its highest. Nothing is read beyond their
// end: whoever asks for more gets 0 and finds that they have ended.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace vexa::ingest {

inline constexpr std::size_t kOctet = 8;

class BitReader {
 public:
  BitReader(std::string_view bytes, std::size_t at)
      : bytes_(bytes), at_(at < bytes.size() * kOctet ? at : bytes.size() * kOctet) {}

  std::size_t At() const { return at_; }
  bool Ended() const { return ended_; }

  /// width  0 to 64
  std::uint64_t Bits(std::size_t width) {
    const std::size_t from = at_;
    if (!Pass(width)) return 0;
    std::uint64_t value = 0;
    for (std::size_t at = from, end = from + width; at < end;) {
      const std::size_t within = at % kOctet;
      const std::size_t count = std::min(kOctet - within, end - at);
      const unsigned octet = static_cast<unsigned char>(bytes_[at / kOctet]);
      const unsigned part = octet >> (kOctet - within - count) & ((1U << count) - 1);
      value = value << count | part;
      at += count;
    }
    return value;
  }

  std::string Octets(std::size_t count) {
    std::string octets;
    for (std::size_t i = 0; i < count && !ended_; ++i) octets += static_cast<char>(Bits(kOctet));
    return octets;
  }

  /// False, and at the end, where there are not so many.
  bool Pass(std::size_t count) {
    const std::size_t all = bytes_.size() * kOctet;
    ended_ |= count > all - at_;
    at_ = ended_ ? all : at_ + count;
    return !ended_;
  }

 private:
  std::string_view bytes_;
  std::size_t at_;
  bool ended_ = false;
};

}  // namespace vexa::ingest
