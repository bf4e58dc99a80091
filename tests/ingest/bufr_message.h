// Puts a BUFR message of edition 3 together, for tests that need one of their own.
#pragma once

#include <cstddef>
#include <sstream>
#include <string>
#include <vector>

namespace vexa::test {

inline std::string Bits(unsigned value, int width) {
  std::string bits;
  for (int bit = width - 1; bit >= 0; --bit) bits += (value >> bit & 1U) != 0 ? '1' : '0';
  return bits;
}

/// "2931:12 0*50": 2931 in 12 bits, then fifty times a zero.
inline std::string BitsOf(const std::string& text) {
  std::string bits;
  std::istringstream words(text);
  char sign = 0;
  for (unsigned value = 0, count = 0; words >> value >> sign >> count;) {
    bits += sign == ':' ? Bits(value, static_cast<int>(count))
                        : std::string(count, value == 0 ? '0' : '1');
  }
  return bits;
}

/// descriptors  as whole numbers, 309052
/// bits         of the data, as zeros and ones
inline std::string BufrMessage(const std::vector<int>& descriptors, std::string bits,
                               unsigned subsets = 1, bool isCompressed = false) {
  constexpr std::size_t kOctet = 8;
  std::string list, data;
  for (const int descriptor : descriptors) {
    const int packed =
        (descriptor / 100000) << 14 | (descriptor / 1000 % 100) << 8 | descriptor % 1000;
    list += static_cast<char>(packed >> 8);
    list += static_cast<char>(packed & 0xFF);
  }
  for (bits.resize((bits.size() + kOctet - 1) / kOctet * kOctet, '0'); !bits.empty();) {
    data += static_cast<char>(std::stoi(bits.substr(0, kOctet), nullptr, 2));
    bits.erase(0, kOctet);
  }
  std::string message("BUFR\0\0\0\3", 8);
  message += std::string("\0\0\x12\0\0\x62\0\0\2\0\x0d\0\x18\3\5\x0c\0\0", 18);
  message += std::string("\0\0", 2) + static_cast<char>(7 + list.size()) + '\0' +
             static_cast<char>(subsets >> 8) + static_cast<char>(subsets & 0xFF) +
             static_cast<char>(isCompressed ? 0xC0 : 0x80) + list;
  message += std::string("\0\0", 2) + static_cast<char>(4 + data.size()) + '\0' + data + "7777";
  message[5] = static_cast<char>(message.size() >> 8);
  message[6] = static_cast<char>(message.size() & 0xFF);
  return message;
}

}  // namespace vexa::test
