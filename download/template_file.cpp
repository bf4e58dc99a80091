#include "download/template_file.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "core/numbers.h"
#include "core/source_text.h"

namespace vexa::download {
namespace {

struct FieldRow {
  std::string_view Key;
  std::string Source::*Field;
};

constexpr FieldRow kFields[] = {
    {"address", &Source::Address}, {"hours", &Source::Hours}, {"note", &Source::Note}};

char Small(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool BeginsWith(std::string_view text, std::string_view start) {
  return text.size() >= start.size() &&
         std::equal(start.begin(), start.end(), text.begin(),
                    [](char a, char b) { return Small(a) == Small(b); });
}

bool IsSame(std::string_view a, std::string_view b) {
  return a.size() == b.size() && BeginsWith(a, b);
}

// A request that has everything, to try an address by.
Request AnyRequest() {
  return {
      .Number = 72357, .Letters = "OUN", .Time = {.Year = 1999, .Month = 5, .Day = 4, .Hour = 0}};
}

std::string HoursObjection(const std::string& said) {
  std::size_t words = 0, known = 0;
  for (std::size_t at = 0; at < said.size();) {
    const std::size_t end = std::min(said.find(' ', at), said.size());
    words += end > at ? 1 : 0;
    at = end + 1;
  }
  constexpr int kHours = 24;
  for (int hour = 0; hour < kHours; ++hour) {
    known += words > 0 && HasHour({.Hours = said}, hour) ? 1 : 0;
  }
  return words == known ? std::string() : "the hours are not two figures each, 00 to 23";
}

class Reader {
 public:
  Reader(std::string_view text, std::string_view name)
      : text_(std::string(name), std::string(text)) {}

  SourceList Read() {
    for (line_ = 1; line_ <= text_.LineCount(); ++line_) ReadLine(text_.Line(line_));
    EndSource();
    return std::move(list_);
  }

 private:
  void ReadLine(std::string_view raw) {
    const std::string_view line = Trim(raw);
    if (line.starts_with('[')) return BeginSource(line);
    if (firstLine_ == 0) return;  // the header
    if (line.empty() || line.starts_with('#')) return;
    const std::size_t sign = line.find('=');
    const std::string_view key = Trim(line.substr(0, sign));
    const auto* row = std::ranges::find_if(
        kFields, [key](const FieldRow& field) { return IsSame(field.Key, key); });
    if (sign == std::string_view::npos || row == std::end(kFields)) {
      return Note(line_, "neither \"address =\", \"hours =\" nor \"note =\"");
    }
    std::string& field = source_.*row->Field;
    if (!field.empty()) return Note(line_, std::string(row->Key) + " is given twice");
    field = Trim(line.substr(sign + 1));
    if (row->Field != &Source::Hours) return;
    if (std::string reason = HoursObjection(field); !reason.empty()) {
      Note(line_, reason);
      field.clear();
    }
  }

  // The heading of a source that is left out heads the lines up to the next.
  void BeginSource(std::string_view line) {
    EndSource();
    firstLine_ = line_;
    source_ = {};
    if (!line.ends_with(']')) return Note(line_, "the name of the source has no closing bracket");
    const std::string_view name = Trim(line.substr(1, line.size() - 2));
    if (name.empty()) return Note(line_, "the source has no name");
    const bool isTaken = std::ranges::any_of(
        list_.Sources, [name](const Source& source) { return IsSame(source.Name, name); });
    if (isTaken) return Note(line_, "there is another source of this name");
    source_.Name = name;
  }

  void EndSource() {
    if (source_.Name.empty()) return;
    if (source_.Address.empty()) return Note(firstLine_, "the source has no address");
    const Outcome<std::string> address = AddressOf(source_, AnyRequest());
    if (!address) return Note(firstLine_, address.Error().Detail);
    list_.Sources.push_back(std::move(source_));
  }

  void Note(int line, std::string_view reason) {
    list_.Notes.push_back(AtLine(text_.Name(), line, reason));
  }

  SourceText text_;
  SourceList list_{};
  Source source_{};  // being read; without a name it is left out
  int line_ = 0;
  int firstLine_ = 0;  // of the source being read; 0: none was begun
};

}  // namespace

const Source* SourceList::Find(std::string_view name) const {
  const Source* beginning = nullptr;
  int found = 0;
  for (const Source& source : Sources) {
    if (IsSame(source.Name, name)) return &source;
    if (!name.empty() && BeginsWith(source.Name, name)) {
      beginning = &source;
      ++found;
    }
  }
  return found == 1 ? beginning : nullptr;
}

SourceList ReadSources(std::string_view text, std::string_view name) {
  return Reader(text, name).Read();
}

}  // namespace vexa::download
