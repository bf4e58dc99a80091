// gzip streams, of files and of servers' answers.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vexa {

inline constexpr std::string_view kGzipMark = "\x1f\x8b";

enum class GzipEnd {
  Whole,
  Damaged,   // or cut off: a length or check sum at the end is missing or wrong
  TooLarge,
};

struct Gunzipped {
  GzipEnd End = GzipEnd::Whole;
  std::size_t Bytes = 0;  // unpacked before the end, counted also where they are not given
  std::string Text{};     // empty unless Whole
};

/// Unpacks the gzip streams that stand one behind the other at the front of the bytes; what follows
/// them is padding. The size is found before any memory is taken for it.
///
/// most  bytes unpacked at most
Gunzipped Gunzip(std::string_view bytes, std::size_t most);

}  // namespace vexa
