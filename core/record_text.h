// Comma-separated records as the program's own files hold them: quoted texts and bare numbers,
// one record a line. Reading goes field by field, since a file may equally break its records
// elsewhere; each field remembers its line for messages.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "core/fault.h"

namespace vexa {

struct RecordField {
  std::string_view Text{};
  bool Quoted = false;
  int Line = 0;
};

class RecordReader {
 public:
  /// text  must outlive the reader and its fields
  /// name  of the file, for the details of faults
  RecordReader(std::string_view text, std::string_view name);

  /// The next field, `what` naming it for messages. A bare field has its blanks trimmed; blank
  /// lines and a comma that ends a line separate no more than the line end does. Fault 62 at the
  /// end of the data and for a text without its closing quote.
  Outcome<RecordField> Next(std::string_view what);
  /// The next field as a text, quoted or bare.
  Outcome<std::string> Text(std::string_view what);
  /// The next field as a number; a quoted field is none. Fault 62 names line, `what` and the field.
  Outcome<double> Number(std::string_view what);
  /// The same where a number stands next on the line, as it nearly always does; else nothing is
  /// taken.
  std::optional<double> TakeNumber();
  /// Three numbers that are the rest of their line, as in a table of levels; where anything else
  /// stands nothing is taken.
  bool TakeRow(std::array<double, 3>& row);
  /// The next field as a whole number not below 0.
  Outcome<int> Count(std::string_view what);

  /// True when nothing but blanks and line ends is left.
  bool AtEnd() const;

  /// A place to which the reader can be put back.
  struct Place {
    std::size_t At = 0;
    int Line = 1;
  };
  /// That of the next field, behind blanks and line ends.
  Place Where();
  /// What stands of its line from a place on.
  std::string_view LineFrom(const Place& place) const;
  /// Goes on with the line behind that of a place; gives what of that line stands from the place
  /// on.
  std::string_view SkipLine(const Place& place);
  /// All that is left.
  std::string_view Rest() const { return text_.substr(at_); }

  int Line() const { return line_; }
  Fault DamagedAt(int line, std::string_view reason) const;

 private:
  void SkipBlanks();
  bool SkipLineEnd();
  void EndField();

  std::string_view text_;
  std::string_view name_;
  std::size_t at_ = 0;
  int line_ = 1;
};

class RecordWriter {
 public:
  /// A text in double quotes. The format has no way to write a double quote or a line end inside
  /// one: they become an apostrophe and a blank.
  RecordWriter& Text(std::string_view text);
  /// A number in its shortest decimal form.
  RecordWriter& Number(double value);
  RecordWriter& Number(float value);
  RecordWriter& Number(int value);
  /// A bare field as it stands; it must hold no comma, quote or line end.
  RecordWriter& Bare(std::string_view field);
  void EndRecord();

  std::string Take() { return std::move(text_); }

 private:
  void Separate();

  std::string text_{};
  bool atStart_ = true;
};

}  // namespace vexa
