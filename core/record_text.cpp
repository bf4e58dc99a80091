#include "core/record_text.h"

#include <algorithm>
#include <cstring>

#include "core/numbers.h"
#include "core/plain_number.h"
#include "core/source_text.h"

namespace vexa {
namespace {

constexpr char kEndOfText = '\x1A';  // closes files of the time before Windows

std::string Quoted(std::string_view text) {
  constexpr std::size_t kLongest = 40;
  return '"' + std::string(text.substr(0, kLongest)) + (text.size() > kLongest ? "...\"" : "\"");
}

bool EndsField(char c) {
  return c == ',' || c == '\r' || c == '\n';
}

bool EndsQuoted(char c) {
  return c == '"' || c == '\r' || c == '\n';
}

}  // namespace

inline void RecordReader::SkipBlanks() {
  while (at_ < text_.size() && (text_[at_] == ' ' || text_[at_] == '\t')) ++at_;
}

inline void RecordReader::EndField() {
  if (at_ < text_.size() && text_[at_] == ',') {
    ++at_;
  } else {
    SkipLineEnd();
  }
}

RecordReader::RecordReader(std::string_view text, std::string_view name)
    : text_(text.substr(0, text.find(kEndOfText))), name_(name) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (text_.starts_with(kByteOrderMark)) text_.remove_prefix(kByteOrderMark.size());
}

bool RecordReader::AtEnd() const {
  return text_.find_first_not_of(" \t\r\n", at_) == std::string_view::npos;
}

RecordReader::Place RecordReader::Where() {
  do SkipBlanks();
  while (SkipLineEnd());
  return {at_, line_};
}

std::string_view RecordReader::LineFrom(const Place& place) const {
  const std::string_view rest = text_.substr(place.At);
  const std::string_view line = rest.substr(0, rest.find('\n'));
  return line.substr(0, line.find('\r'));
}

std::string_view RecordReader::SkipLine(const Place& place) {
  const std::string_view skipped = LineFrom(place);
  at_ = place.At + skipped.size();
  line_ = place.Line;
  SkipLineEnd();
  return skipped;
}

Fault RecordReader::DamagedAt(int line, std::string_view reason) const {
  return Fault{kFaultEndOfFile, "RecordReader", AtLine(name_, line, reason), std::string(name_)};
}

// One line end: LF, or any number of CR with the LF behind them.
bool RecordReader::SkipLineEnd() {
  const std::size_t begin = at_;
  while (at_ < text_.size() && text_[at_] == '\r') ++at_;
  if (at_ < text_.size() && text_[at_] == '\n') ++at_;
  if (at_ == begin) return false;
  ++line_;
  return true;
}

Outcome<RecordField> RecordReader::Next(std::string_view what) {
  do SkipBlanks();
  while (SkipLineEnd());
  if (at_ >= text_.size()) {
    return DamagedAt(line_, "the data end where " + std::string(what) + " should stand");
  }

  RecordField field{.Line = line_};
  if (text_[at_] == '"') {
    std::size_t close = at_ + 1;
    while (close < text_.size() && !EndsQuoted(text_[close])) ++close;
    if (close == text_.size() || text_[close] != '"') {
      return DamagedAt(line_, "a text lacks its closing quote");
    }
    field.Text = text_.substr(at_ + 1, close - at_ - 1);
    field.Quoted = true;
    at_ = close + 1;
    SkipBlanks();
    if (at_ < text_.size() && !EndsField(text_[at_])) {
      return DamagedAt(line_, "a comma is missing behind " + Quoted(field.Text));
    }
  } else {
    const std::size_t begin = at_;
    while (at_ < text_.size() && !EndsField(text_[at_])) ++at_;
    field.Text = Trim(text_.substr(begin, at_ - begin));
  }
  EndField();
  return field;
}

std::optional<double> RecordReader::TakeNumber() {
  SkipBlanks();
  const char* const begin = text_.data() + at_;
  const char* const textEnd = text_.data() + text_.size();
  const char* end = begin;
  std::optional<double> number = TakePlainNumber(end, textEnd);
  if (!number || (end != textEnd && !EndsField(*end))) {
    end = std::find_if(end, textEnd, EndsField);
    number = ParseNumber({begin, static_cast<std::size_t>(end - begin)});
    if (!number) return number;
  }
  at_ += static_cast<std::size_t>(end - begin);
  EndField();
  return number;
}

// Where the next row begins is known before the numbers of this one are, so that a processor reads
// several rows side by side.
bool RecordReader::TakeRow(std::array<double, 3>& row) {
  constexpr std::size_t kLongest = 64;
  const char* at = text_.data() + at_;
  const char* const textEnd = text_.data() + text_.size();
  const std::size_t within = std::min(kLongest, text_.size() - at_);
  const auto* feed = static_cast<const char*>(std::memchr(at, '\n', within));
  if (feed == nullptr) return false;
  for (std::size_t i = 0; i < row.size(); ++i) {
    const std::optional<double> number = TakePlainNumber(at, textEnd);
    if (!number) return false;
    row[i] = *number;
    if (i + 1 == row.size()) break;
    if (*at != ',') return false;
    ++at;
  }
  if (*at == '\r') ++at;
  if (at != feed) return false;
  at_ = static_cast<std::size_t>(feed - text_.data()) + 1;
  ++line_;
  return true;
}

Outcome<std::string> RecordReader::Text(std::string_view what) {
  Outcome<RecordField> field = Next(what);
  if (!field) return field.Error();
  return std::string(field.Value().Text);
}

Outcome<double> RecordReader::Number(std::string_view what) {
  if (const std::optional<double> number = TakeNumber()) return *number;
  Outcome<RecordField> field = Next(what);
  if (!field) return field.Error();
  const std::optional<double> number =
      field.Value().Quoted ? std::nullopt : ParseNumber(field.Value().Text);
  if (!number) {
    return DamagedAt(field.Value().Line,
                     std::string(what) + " should be a number, not " + Quoted(field.Value().Text));
  }
  return *number;
}

Outcome<int> RecordReader::Count(std::string_view what) {
  Outcome<RecordField> field = Next(what);
  if (!field) return field.Error();
  const std::optional<int> count =
      field.Value().Quoted ? std::nullopt : ParseWhole(field.Value().Text);
  if (!count || *count < 0) {
    return DamagedAt(field.Value().Line,
                     std::string(what) + " should be a count, not " + Quoted(field.Value().Text));
  }
  return *count;
}

void RecordWriter::Separate() {
  if (!atStart_) text_ += ',';
  atStart_ = false;
}

RecordWriter& RecordWriter::Text(std::string_view text) {
  Separate();
  text_ += '"';
  for (const char c : text) {
    text_ += c == '"' ? '\'' : (c == '\r' || c == '\n' || c == kEndOfText) ? ' ' : c;
  }
  text_ += '"';
  return *this;
}

RecordWriter& RecordWriter::Number(double value) {
  Separate();
  text_ += Shortest(value);
  return *this;
}

RecordWriter& RecordWriter::Number(float value) {
  Separate();
  text_ += Shortest(value);
  return *this;
}

RecordWriter& RecordWriter::Number(int value) {
  Separate();
  text_ += Shortest(value);
  return *this;
}

RecordWriter& RecordWriter::Bare(std::string_view field) {
  Separate();
  text_ += field;
  return *this;
}

void RecordWriter::EndRecord() {
  text_ += "\r\n";
  atStart_ = true;
}

}  // namespace vexa
