// Values drawn within what a row takes, texts with everything that could break a record.
#pragma once

#include <random>
#include <string>

#include "config/setting_row.h"
#include "core/numbers.h"

namespace vexa::test {

template <class S>
std::string AnyValue(const SettingRow<S>& row, std::mt19937& random) {
  const auto pick = [&random](std::size_t count) {
    return std::uniform_int_distribution<std::size_t>(0, count - 1)(random);
  };
  if (row.Kind == OptionKind::Text) {
    static const std::string kTexts[] = {"",
                                         "plain",
                                         "a, b, \"c\"",
                                         "\"",
                                         " M\xC3\xBCnchen \xC3\x84\xC3\x96 ",
                                         "C:\\data\\50% of it\\",
                                         "%22 and %25",
                                         "two\r\nlines\x1A",
                                         "1013.25"};
    return kTexts[pick(std::size(kTexts))];
  }
  if (!row.Words.empty()) return std::string(row.Words[pick(row.Words.size())]);
  if (!row.Numbers.empty()) return Shortest(row.Numbers[pick(row.Numbers.size())]);
  if (row.MayBeEmpty && pick(3) == 0) return "";
  const double value = std::uniform_real_distribution<double>(row.Least, row.Most)(random);
  return row.Kind == OptionKind::Number ? Shortest(value) : Shortest(ToWhole(value));
}

}  // namespace vexa::test
