// A line of a listing: texts set so that they end, or begin, in a column of a fixed-width face.
#pragma once

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "core/markers.h"
#include "core/numbers.h"
#include "core/shown_values.h"

namespace vexa::output {

inline constexpr std::string_view kNoValue = "--";

class ListingLine {
 public:
  /// The text's last character stands in this column, counted from 1; a text too long for the room
  /// that is left stands one blank behind what came before.
  ListingLine& EndAt(int column, std::string_view text) {
    const int begin = column - static_cast<int>(text.size()) + 1;
    return BeginAt(begin, text);
  }
  ListingLine& BeginAt(int column, std::string_view text) {
    const auto wanted = static_cast<std::size_t>(std::max(column - 1, 0));
    if (text_.size() < wanted) {
      text_.resize(wanted, ' ');
    } else if (!text_.empty() && !text.empty() && text_.size() > wanted) {
      text_ += ' ';
    }
    text_ += text;
    return *this;
  }
  std::string Take() { return std::move(text_); }

 private:
  std::string text_{};
};

/// A value by a mask, "--" for a marker.
/// The names and units above a table of temperature levels, and of wind levels beside it.
inline std::string TempTableHead(TempUnits units) {
  const std::string unit = '(' + std::string(Word(units)) + ')';
  return "PR(mb)    T" + unit + "   Td" + unit + "  T-Td" + unit;
}
inline std::string WindTableHead(LengthUnits heights, HeightMode reference, SpeedUnits speeds) {
  return PadLeft("HT(" + std::string(UnitWord(heights)) + ")", 6) + "[" +
         std::string(Word(reference)) + "]  DD(Deg)  FF" +
         (speeds == SpeedUnits::MetersPerSecond ? "(m)" : "(kts)");
}

inline std::string Shown(double value, std::string_view mask) {
  return NotAvailable(value) ? std::string(kNoValue) : Mask(value, mask);
}
inline std::string Shown(const std::optional<double>& value, std::string_view mask) {
  return value ? Mask(*value, mask) : std::string(kNoValue);
}
inline std::string ShownHeight(double height, std::string_view mask = "#####0") {
  return HasHeight(height) ? Mask(height, mask) : std::string(kNoValue);
}

}  // namespace vexa::output
