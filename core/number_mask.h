// Numbers put behind a text by a mask, for tables that have thousands of them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vexa {

/// How many figures a mask asks for, see Mask: found once for all the numbers of a column.
struct MaskFigures {
  std::size_t LeastWhole = 0;
  std::size_t LeastFraction = 0;
  std::size_t MostFraction = 0;

  constexpr MaskFigures() = default;
  explicit constexpr MaskFigures(std::string_view mask) {
    std::size_t at = 0;
    for (; at < mask.size() && mask[at] != '.'; ++at) LeastWhole += mask[at] == '0' ? 1 : 0;
    if (at == mask.size()) return;
    MostFraction = mask.size() - at - 1;
    for (++at; at < mask.size(); ++at) LeastFraction += mask[at] == '0' ? 1 : 0;
  }
};

/// Puts behind a text what Mask gives.
void AppendMasked(std::string& text, double value, const MaskFigures& figures);

}  // namespace vexa
