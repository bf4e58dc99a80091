// The encoding that all settings files share: one record a line, fields between commas, texts in
// double quotes, numbers bare, a header record first. Tables of rows are written and read here, so
// that every file obeys the same rules when a line is short, damaged or foreign.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "config/setting_row.h"
#include "core/record_text.h"
#include "core/source_text.h"

namespace vexa {

inline constexpr std::string_view kSystemHeader = "This is a VEXA system file -- Do Not Alter.";
/// Program word and version of the settings; other versions keep files of their own.
inline constexpr std::string_view kSystemTag = "VEXA56+";

/// A text without what the format cannot hold: a double quote, line ends, the old end-of-file mark
/// and the percent sign itself become %22, %0D, %0A, %1A and %25.
std::string EncodeText(std::string_view text);
/// The reverse; any other percent sign stands for itself.
std::string DecodeText(std::string_view text);

/// The rows of a file, record by record.
template <class S>
using Records = std::vector<std::vector<const SettingRow<S>*>>;

/// Rows that share a record by their SameRecord mark.
template <class S>
Records<S> MarkedRecords(std::span<const SettingRow<S>> rows) {
  Records<S> records;
  for (const SettingRow<S>& row : rows) {
    if (!row.SameRecord || records.empty()) records.emplace_back();
    records.back().push_back(&row);
  }
  return records;
}

class SystemWriter {
 public:
  SystemWriter();  // with the header record
  void TextRecord(std::string_view text);
  void NumberRecord(std::span<const double> numbers);
  template <class S>
  void Write(const S& settings, const Records<S>& records) {
    for (const auto& record : records) {
      for (const SettingRow<S>* row : record) Field(*row, row->Write(settings));
      text_.EndRecord();
    }
  }
  std::string Take() { return text_.Take(); }

 private:
  void Field(const RowInfo& row, const std::string& value);

  RecordWriter text_{};
};

class SystemReader {
 public:
  /// Skips the header record, whatever it says. `name` is for messages.
  SystemReader(std::string name, const std::string& bytes);

  /// The single text of a record; empty when there is none.
  std::optional<std::string> TextRecord(std::string_view what);
  /// A record of so many bare numbers; empty when it holds anything else.
  std::optional<std::vector<double>> NumberRecord(std::string_view what, std::size_t count);

  /// Every row gets what the file says of it, or its default where the file says nothing that the
  /// row takes. A record ends with its line: what one lacks or has too much does not shift the
  /// next.
  template <class S>
  void Read(S& settings, const Records<S>& records) {
    const S defaults{};
    for (const auto& record : records) {
      const std::vector<std::string> fields = NextRecord({record.begin(), record.end()});
      for (std::size_t i = 0; i < record.size(); ++i) {
        const SettingRow<S>& row = *record[i];
        if (i < fields.size() && row.Read(settings, fields[i])) continue;
        row.Read(settings, row.Write(defaults));
        if (i < fields.size()) Refuse(row, fields[i]);
      }
    }
  }
  /// True when no record is left.
  bool AtEnd() const;
  /// Notes records beyond the last that this version knows.
  void ExpectEnd();
  void Note(std::string_view reason);

  /// What was wrong first, in one sentence with file and line; empty when nothing was.
  const std::string& Problem() const { return problem_; }

 private:
  bool NextLine();
  std::vector<std::string> NextRecord(const std::vector<const RowInfo*>& rows);
  void Refuse(const RowInfo& row, std::string_view field);

  SourceText lines_;
  int line_ = 0;
  std::string problem_{};
};

}  // namespace vexa
