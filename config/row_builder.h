// Builds the rows of the settings tables. A row is reached by member pointers; its kind, its words
// and the two functions follow from the member's type.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "config/setting_row.h"
#include "core/letter_case.h"
#include "core/numbers.h"

namespace vexa {

enum class Bools { TrueFalse, YesNo };
enum class Record { Own, Same };

inline constexpr auto kYes = Bools::YesNo;
inline constexpr auto kTrue = Bools::TrueFalse;

/// The numbers that a setting takes: a range, or the listed values alone.
struct Range {
  double Least = 0;
  double Most = 0;
  bool IsColor = false;
  std::array<double, 10> Values{};
  std::size_t Count = 0;
};

inline constexpr Range kColors{.Least = 0, .Most = 15, .IsColor = true};

constexpr Range OneOf(std::initializer_list<double> values) {
  Range range{.Least = *values.begin(), .Most = *values.begin()};
  for (const double value : values) {
    range.Values[range.Count++] = value;
    range.Least = std::min(range.Least, value);
    range.Most = std::max(range.Most, value);
  }
  return range;
}

namespace rows {

inline constexpr std::string_view kYesNo[] = {"no", "yes"};
inline constexpr std::string_view kTrueFalse[] = {"false", "true"};

template <class E>
inline constexpr auto kWordsOf = Words(E{});

template <class V>
inline constexpr bool kIsOptional = false;
template <class V>
inline constexpr bool kIsOptional<std::optional<V>> = true;

template <class V, Bools kBools>
constexpr std::span<const std::string_view> WordsFor() {
  if constexpr (std::is_same_v<V, bool>) {
    return kBools == Bools::YesNo ? kYesNo : kTrueFalse;
  } else if constexpr (std::is_enum_v<V>) {
    return kWordsOf<V>;
  } else {
    return {};
  }
}

template <Bools kBools, class V>
std::string WriteValue(const V& value) {
  if constexpr (std::is_same_v<V, std::string>) {
    return value;
  } else if constexpr (kIsOptional<V>) {
    return value ? Shortest(*value) : std::string();
  } else if constexpr (std::is_same_v<V, bool> || std::is_enum_v<V>) {
    return std::string(WordsFor<V, kBools>()[static_cast<std::size_t>(value)]);
  } else {
    return Shortest(value);
  }
}

template <const Range& kRange>
std::optional<double> ReadNumber(std::string_view text) {
  const std::optional<double> number = ParseNumber(text);
  if (!number || *number < kRange.Least || *number > kRange.Most) return std::nullopt;
  const std::span<const double> values(kRange.Values.data(), kRange.Count);
  if (!values.empty() && std::ranges::find(values, *number) == values.end()) return std::nullopt;
  return number;
}

template <Bools kBools, const Range& kRange, class V>
bool ReadValue(V& value, std::string_view text) {
  if constexpr (std::is_same_v<V, std::string>) {
    value = text;
    return true;
  } else if constexpr (std::is_same_v<V, bool> || std::is_enum_v<V>) {
    const std::span<const std::string_view> words = WordsFor<V, kBools>();
    const auto word = std::ranges::find_if(
        words, [text](std::string_view candidate) { return SameText(candidate, Trim(text)); });
    if (word == words.end()) return false;
    value = static_cast<V>(word - words.begin());
    return true;
  } else {
    if constexpr (kIsOptional<V>) {
      if (Trim(text).empty()) {
        value.reset();
        return true;
      }
    }
    const std::optional<double> number = ReadNumber<kRange>(text);
    if (!number) return false;
    if constexpr (std::is_integral_v<V>) {
      if (*number != static_cast<double>(static_cast<V>(*number))) return false;
      value = static_cast<V>(*number);
    } else {
      value = *number;
    }
    return true;
  }
}

template <class V, Bools kBools, bool kIsColor>
constexpr OptionKind KindOf() {
  if constexpr (std::is_same_v<V, bool>) {
    return kBools == Bools::YesNo ? OptionKind::YesNo : OptionKind::TrueFalse;
  } else if constexpr (std::is_enum_v<V>) {
    return OptionKind::Choice;
  } else if constexpr (std::is_same_v<V, std::string>) {
    return OptionKind::Text;
  } else if constexpr (kIsColor) {
    return OptionKind::Color;
  } else {
    return std::is_integral_v<V> ? OptionKind::Whole : OptionKind::Number;
  }
}

// A label without its leading blanks and its " = ".
constexpr std::string_view KeyOf(std::string_view label) {
  label.remove_prefix(std::min(label.find_first_not_of(' '), label.size()));
  if (label.ends_with(" = ")) label.remove_suffix(3);
  return label;
}

template <class S, class V>
S StructOf(V S::*);

template <auto First, auto... Rest>
struct Member {
  using Struct = typename TableOf<decltype(StructOf(First))>::Struct;
  static constexpr auto& Get(auto& from) { return ((from.*First).*....*Rest); }
};

template <auto Array, std::size_t kIndex, auto... Rest>
struct Element {
  using Struct = typename TableOf<decltype(StructOf(Array))>::Struct;
  static constexpr auto& Get(auto& from) { return ((from.*Array)[kIndex].*....*Rest); }
};

template <Range kRange>
inline constexpr Range kHeld = kRange;

}  // namespace rows

/// Reaches a member, also one inside another value.
template <auto... Path>
inline constexpr rows::Member<Path...> At{};

/// Reaches an element of an array, or a member of the element.
template <auto Array, std::size_t kIndex, auto... Rest>
inline constexpr rows::Element<Array, kIndex, Rest...> Nth{};

/// A row of the setting that Path reaches; without a label it stands in no report unless it says
/// so.
template <auto Path, Bools kBools = Bools::TrueFalse, Range kRange = Range{}>
constexpr auto Row(std::string_view label, std::string_view place, Record record = Record::Own) {
  using Reach = decltype(Path);
  using S = typename Reach::Struct;
  using V = std::remove_cvref_t<decltype(Reach::Get(std::declval<S&>()))>;
  constexpr const Range& kTakes = rows::kHeld<kRange>;
  SettingRow<S> row;
  row.Label = label;
  row.Key = row.Caption = rows::KeyOf(label);
  row.Place = place;
  row.Kind = rows::KindOf<V, kBools, kRange.IsColor>();
  row.Least = kTakes.Least;
  row.Most = kTakes.Most;
  row.Words = rows::WordsFor<V, kBools>();
  row.Numbers = std::span<const double>(kTakes.Values.data(), kTakes.Count);
  row.MayBeEmpty = rows::kIsOptional<V>;
  row.SameRecord = record == Record::Same;
  row.InReport = !label.empty();
  row.Write = [](const S& from) { return rows::WriteValue<kBools>(Reach::Get(from)); };
  row.Read = [](S& into, std::string_view text) {
    return rows::ReadValue<kBools, rows::kHeld<kRange>>(Reach::Get(into), text);
  };
  return row;
}

/// A row that no form and no report shows.
template <auto Path, Bools kBools = Bools::TrueFalse, Range kRange = Range{}>
constexpr auto Row(std::string_view key, Record record = Record::Own) {
  auto row = Row<Path, kBools, kRange>({}, {}, record);
  row.Key = row.Caption = key;
  return row;
}

}  // namespace vexa
