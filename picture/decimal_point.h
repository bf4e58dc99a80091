// Where numbers under one another are aligned.
#pragma once

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string_view>

namespace vexa {

/// Where a number's decimal point stands, or would: behind its whole part. A direction and a speed
/// are no number to align; words neither.
inline std::optional<std::size_t> PointOf(std::string_view text) {
  constexpr std::string_view kSigns = "><-+";
  constexpr std::string_view kDigits = "0123456789";
  const std::size_t digits = std::min(text.find_first_not_of(kSigns), text.size());
  const std::size_t end = std::min(text.find_first_not_of(kDigits, digits), text.size());
  if (end == digits) return std::nullopt;
  if (end < text.size() && text[end] != '.' && text[end] != ' ') return std::nullopt;
  return end;
}

}  // namespace vexa
