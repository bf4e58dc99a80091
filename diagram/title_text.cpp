#include "diagram/title_text.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

#include "core/numbers.h"

namespace vexa::diagram {
namespace {

constexpr std::array<std::string_view, 12> kMonths = {"JAN", "FEB", "MAR", "APR", "MAY", "JUN",
                                                      "JUL", "AUG", "SEP", "OCT", "NOV", "DEC"};

bool IsWhole(std::string_view text, std::size_t least, std::size_t most) {
  return text.size() >= least && text.size() <= most &&
         text.find_first_not_of("0123456789") == std::string_view::npos;
}

// Takes the last word off a text.
std::string_view TakeWord(std::string_view& text) {
  text = text.substr(0, text.find_last_not_of(' ') + 1);
  const std::size_t blank = text.rfind(' ');
  const std::size_t start = blank == std::string_view::npos ? 0 : blank + 1;
  const std::string_view word = text.substr(start);
  text = text.substr(0, start);
  return word;
}

bool IsMonth(std::string_view word) {
  return std::ranges::any_of(kMonths, [word](std::string_view month) {
    return std::ranges::equal(word, month, [](char a, char b) { return (a & ~0x20) == b; });
  });
}

}  // namespace

std::string SoundingTitle(const SoundingRecord& sounding, const ViewSettings& options) {
  const std::string& title = sounding.StationTitle;
  if (!options.MonthYear) return title;
  std::string_view rest = title;
  const std::string_view year = TakeWord(rest);
  const std::string_view month = TakeWord(rest);
  const std::string_view day = TakeWord(rest);
  const std::string_view hour = TakeWord(rest);
  const bool isDate = IsWhole(year, 4, 4) && IsMonth(month) && IsWhole(day, 1, 2) &&
                      hour.ends_with('Z') && IsWhole(hour.substr(0, hour.size() - 1), 2, 4);
  if (isDate) return std::string(rest) + std::string(month) + ' ' + std::string(year);
  const int number = sounding.Time.Month;
  if (!sounding.Time.Known() || number < 1 || number > 12) return title;
  return title + "  " + std::string(kMonths[static_cast<std::size_t>(number) - 1]) + ' ' +
         Shortest(sounding.Time.Year);
}

}  // namespace vexa::diagram
