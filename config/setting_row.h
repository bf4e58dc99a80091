// What a setting is made of: a row holds its names, its words or range, and two functions that
// write and read it in the struct it belongs to. Files, the report, dialogs and the command line
// walk tables of rows; none of them names a setting.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace vexa {

enum class OptionKind { YesNo, TrueFalse, Choice, Whole, Number, Color, Text };

/// The settings files, in the order in which they are read at start.
enum class SettingsFile { System, Soaring, Hodograph, Hodogram3D, Main, Window, Listing };

/// How a form shows one of a choice's words.
struct ChoiceText {
  std::string_view Caption{};
  std::string_view Hint{};  // for the tooltip; empty: the row's
};

struct RowInfo {
  std::string_view Label{};    // as in the report: leading blanks and "= " are part of it
  std::string_view Key{};      // unique, without "=": what --set takes
  std::string_view Caption{};  // of the control that shows it
  std::string_view Unit{};     // of a number; empty: none
  std::string_view Hint{};     // one sentence for the tooltip
  std::string_view Place{};    // form and tab
  OptionKind Kind = OptionKind::Choice;
  double Least = 0;  // range of Whole, Number and Color
  double Most = 0;
  std::span<const std::string_view> Words{};  // of YesNo, TrueFalse and Choice
  std::span<const ChoiceText> Choices{};      // of each word on a form; empty: the words themselves
  std::span<const double> Numbers{};          // the only numbers that it takes; empty: the range
  bool MayBeEmpty = false;                    // a number that need not be given
  bool SameRecord = false;                    // stands on the record of the row before it
  bool InReport = true;
  int Element = 0;  // 1-based, of an option array; 0: not in one
  SettingsFile File = SettingsFile::Main;
};

/// The struct in whose table the rows of S stand: S itself, or what has S as its part.
template <class S>
struct TableOf {
  using Struct = S;
};

/// A setting of the struct S.
template <class S>
struct SettingRow : RowInfo {
  std::string (*Write)(const S&) = nullptr;
  /// False when the text is not one of the words or numbers or lies outside the range; nothing
  /// changes then.
  bool (*Read)(S&, std::string_view) = nullptr;
  /// What a change by the user entails for other settings; null: nothing.
  void (*Follow)(S&) = nullptr;
  /// False while other settings leave this one without effect; null: it always has one.
  bool (*Matters)(const S&) = nullptr;

  // The finishing of a row in its table.
  constexpr SettingRow As(std::string_view key) const { return With(&RowInfo::Key, key); }
  constexpr SettingRow Named(std::string_view text) const { return With(&RowInfo::Caption, text); }
  constexpr SettingRow In(std::string_view unit) const { return With(&RowInfo::Unit, unit); }
  constexpr SettingRow Says(std::string_view hint) const { return With(&RowInfo::Hint, hint); }
  constexpr SettingRow KeptIn(SettingsFile file) const { return With(&RowInfo::File, file); }
  constexpr SettingRow ElementOf(int number) const { return With(&RowInfo::Element, number); }
  constexpr SettingRow ShownInReport() const { return With(&RowInfo::InReport, true); }
  constexpr SettingRow Shown(std::span<const ChoiceText> choices) const {
    return With(&RowInfo::Choices, choices);
  }
  constexpr SettingRow When(bool (*matters)(const S&)) const {
    SettingRow row = *this;
    row.Matters = matters;
    return row;
  }
  constexpr SettingRow Then(void (*follow)(S&)) const {
    SettingRow row = *this;
    row.Follow = follow;
    return row;
  }

 private:
  template <class V>
  constexpr SettingRow With(V RowInfo::*member, V value) const {
    SettingRow row = *this;
    row.*member = value;
    return row;
  }
};

/// What a row takes: its words, its numbers, or its range.
std::string Accepts(const RowInfo& row);

}  // namespace vexa
