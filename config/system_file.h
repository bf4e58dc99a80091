// The encoding that all settings files share: one record a line, fields between commas, texts in
// double quotes, numbers bare, a header record first. Each value stands behind the key of its row,
// so that rows can come, go and move; VEXA.SYS and the files of before have fixed places instead.
// Tables of rows are written and read here, so that every file obeys the same rules when a line is
// short, damaged or foreign.
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

/// The record behind the header of a file whose values stand behind their keys.
inline constexpr std::string_view kKeysMark = "Each value stands behind its key.";

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

/// The keys of the fields of a file that holds values alone, record by record.
using FieldPlaces = std::vector<std::vector<std::string_view>>;

template <class S>
FieldPlaces PlacesOf(const Records<S>& records) {
  FieldPlaces places;
  for (const auto& record : records) {
    places.emplace_back();
    for (const SettingRow<S>* row : record) places.back().push_back(row->Key);
  }
  return places;
}

/// What a file says of a setting.
struct KeyedField {
  std::string Key{};
  std::string Text{};
  int Line = 0;
  bool IsKnown = false;  // a row has this key, or had it once
};

class SystemWriter {
 public:
  SystemWriter();  // with the header record
  void TextRecord(std::string_view text);
  void NumberRecord(std::span<const double> numbers);
  /// Values alone.
  template <class S>
  void Write(const S& settings, const Records<S>& records) {
    for (const auto& record : records) {
      for (const SettingRow<S>* row : record) Field(*row, row->Write(settings));
      text_.EndRecord();
    }
  }
  /// Each value behind its key.
  template <class S>
  void WriteKeyed(const S& settings, const Records<S>& records) {
    for (const auto& record : records) {
      for (const SettingRow<S>* row : record) {
        text_.Text(EncodeText(row->Key));
        Field(*row, row->Write(settings));
      }
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

  /// Whether the next record is kKeysMark, which is passed over then.
  bool HasKeys();
  /// The fields of all records that are left, which stand behind their keys.
  std::vector<KeyedField> KeyedFields();
  /// The fields of the next records by their places. A record ends with its line: what one lacks or
  /// has too much does not shift the next.
  std::vector<KeyedField> FieldsAt(const FieldPlaces& places);

  /// Every row gets what the fields say of it, or its default where they say nothing that the row
  /// takes.
  template <class S>
  void Read(S& settings, const Records<S>& records, std::vector<KeyedField>& fields) {
    const S defaults{};
    for (const auto& record : records) {
      for (const SettingRow<S>* row : record) {
        row->Read(settings, row->Write(defaults));
        for (KeyedField& field : fields) {
          if (field.Key != row->Key) continue;
          field.IsKnown = true;
          if (!row->Read(settings, field.Text)) Refuse(*row, field);
        }
      }
    }
  }
  /// The same of values alone, which the next records hold.
  template <class S>
  void Read(S& settings, const Records<S>& records) {
    std::vector<KeyedField> fields = FieldsAt(PlacesOf(records));
    Read(settings, records, fields);
  }
  /// True when no record is left.
  bool AtEnd() const;
  /// Notes records beyond the last that this version knows.
  void ExpectEnd();
  void Note(std::string_view reason) { Note(line_, reason); }
  void Note(int line, std::string_view reason);

  /// What was wrong first, in one sentence with file and line; empty when nothing was.
  const std::string& Problem() const { return problem_; }

 private:
  bool NextLine();
  std::vector<std::string> NextRecord(const std::vector<std::string_view>& keys);
  void NoteFault(const Fault& fault);
  void Refuse(const RowInfo& row, const KeyedField& field);

  SourceText lines_;
  int line_ = 0;
  std::string problem_{};
  int problemLine_ = 0;
};

}  // namespace vexa
