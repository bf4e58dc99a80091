#include "config/system_file.h"

#include <utility>

#include "core/numbers.h"

namespace vexa {
namespace {

struct Escape {
  char Plain;
  std::string_view Code;
};

constexpr Escape kEscapes[] = {
    {'"', "%22"}, {'\r', "%0D"}, {'\n', "%0A"}, {'\x1A', "%1A"}, {'%', "%25"}};
constexpr char kEndOfText = '\x1A';  // closes files of the time before Windows

std::string TextOf(const RecordField& field) {
  return field.Quoted ? DecodeText(field.Text) : std::string(field.Text);
}

bool IsBare(OptionKind kind) {
  return kind == OptionKind::Whole || kind == OptionKind::Number || kind == OptionKind::Color;
}

}  // namespace

std::string EncodeText(std::string_view text) {
  std::string encoded;
  for (const char c : text) {
    std::string_view code(&c, 1);
    for (const Escape& escape : kEscapes) {
      if (escape.Plain == c) code = escape.Code;
    }
    encoded += code;
  }
  return encoded;
}

std::string DecodeText(std::string_view text) {
  std::string decoded;
  while (!text.empty()) {
    char plain = text.front();
    std::size_t length = 1;
    for (const Escape& escape : kEscapes) {
      if (!text.starts_with(escape.Code)) continue;
      plain = escape.Plain;
      length = escape.Code.size();
      break;
    }
    decoded += plain;
    text.remove_prefix(length);
  }
  return decoded;
}

SystemWriter::SystemWriter() {
  TextRecord(kSystemHeader);
}

void SystemWriter::TextRecord(std::string_view text) {
  text_.Text(EncodeText(text));
  text_.EndRecord();
}

void SystemWriter::NumberRecord(std::span<const double> numbers) {
  for (const double number : numbers) text_.Number(number);
  text_.EndRecord();
}

void SystemWriter::Field(const RowInfo& row, const std::string& value) {
  const std::optional<double> number = IsBare(row.Kind) ? ParseNumber(value) : std::nullopt;
  if (number) {
    text_.Number(*number);
  } else {
    text_.Text(EncodeText(value));
  }
}

SystemReader::SystemReader(std::string name, const std::string& bytes)
    : lines_(std::move(name), bytes.substr(0, bytes.find(kEndOfText))) {
  if (!NextLine()) Note("the file is empty");
}

void SystemReader::Note(int line, std::string_view reason) {
  if (!problem_.empty() && problemLine_ <= line) return;
  problem_ = AtLine(lines_.Name(), line, reason);
  problemLine_ = line;
}

// "line 1: reason", of a line that was read by itself.
void SystemReader::NoteFault(const Fault& fault) {
  Note(fault.Detail.substr(fault.Detail.find(": ") + 2));
}

// The next line that is not blank.
bool SystemReader::NextLine() {
  while (++line_ <= lines_.LineCount()) {
    if (!Trim(lines_.Line(line_)).empty()) return true;
  }
  return false;
}

bool SystemReader::AtEnd() const {
  for (int line = line_ + 1; line <= lines_.LineCount(); ++line) {
    if (!Trim(lines_.Line(line)).empty()) return false;
  }
  return true;
}

std::optional<std::string> SystemReader::TextRecord(std::string_view what) {
  std::vector<std::string> fields = NextRecord({what});
  if (fields.empty()) return std::nullopt;
  return std::move(fields.front());
}

std::optional<std::vector<double>> SystemReader::NumberRecord(std::string_view what,
                                                              std::size_t count) {
  const RowInfo row{.Key = what, .Kind = OptionKind::Number};
  std::vector<double> numbers;
  for (const std::string& field : NextRecord(std::vector<std::string_view>(count, what))) {
    const std::optional<double> number = ParseNumber(field);
    if (!number) {
      Refuse(row, {.Text = field, .Line = line_});
      return std::nullopt;
    }
    numbers.push_back(*number);
  }
  if (numbers.size() != count) return std::nullopt;
  return numbers;
}

bool SystemReader::HasKeys() {
  const int before = line_;
  if (NextLine()) {
    RecordReader reader(lines_.Line(line_), {});
    const Outcome<RecordField> field = reader.Next({});
    if (field && field.Value().Quoted && field.Value().Text == kKeysMark) return true;
  }
  line_ = before;
  return false;
}

std::vector<KeyedField> SystemReader::KeyedFields() {
  std::vector<KeyedField> fields;
  while (NextLine()) {
    RecordReader reader(lines_.Line(line_), {});
    while (!reader.AtEnd()) {
      const Outcome<RecordField> key = reader.Next("a key");
      if (!key) {
        NoteFault(key.Error());
        break;
      }
      std::string name = DecodeText(key.Value().Text);
      const Outcome<RecordField> field = reader.Next("the value of " + name);
      if (!field) {
        NoteFault(field.Error());
        break;
      }
      fields.push_back({std::move(name), TextOf(field.Value()), line_});
    }
  }
  return fields;
}

std::vector<KeyedField> SystemReader::FieldsAt(const FieldPlaces& places) {
  std::vector<KeyedField> fields;
  for (const std::vector<std::string_view>& keys : places) {
    std::vector<std::string> texts = NextRecord(keys);
    for (std::size_t i = 0; i < texts.size(); ++i) {
      fields.push_back({std::string(keys[i]), std::move(texts[i]), line_, true});
    }
  }
  return fields;
}

std::vector<std::string> SystemReader::NextRecord(const std::vector<std::string_view>& keys) {
  if (!NextLine()) {
    Note("the file ends where " + std::string(keys.front()) + " should stand");
    return {};
  }
  // The line goes to the reader alone, so that a torn text ends with it.
  RecordReader reader(lines_.Line(line_), {});
  std::vector<std::string> fields;
  for (const std::string_view key : keys) {
    const Outcome<RecordField> field = reader.Next(key);
    if (!field) {
      NoteFault(field.Error());
      return fields;
    }
    fields.push_back(TextOf(field.Value()));
  }
  if (reader.Next({})) Note("the record has more fields than this version knows");
  return fields;
}

void SystemReader::Refuse(const RowInfo& row, const KeyedField& field) {
  constexpr std::size_t kLongest = 40;
  Note(field.Line, std::string(row.Key) + " does not take \"" + field.Text.substr(0, kLongest) +
                       "\" and keeps its default");
}

void SystemReader::ExpectEnd() {
  if (NextLine()) Note("the file has more records than this version knows");
}

}  // namespace vexa
