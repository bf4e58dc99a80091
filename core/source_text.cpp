#include "core/source_text.h"

#include <utility>

namespace vexa {

SourceText::SourceText(std::string name, std::string bytes, int linesBefore)
    : name_(std::move(name)), bytes_(std::move(bytes)), linesBefore_(linesBefore) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (bytes_.starts_with(kByteOrderMark)) bytes_.erase(0, kByteOrderMark.size());
}

void SourceText::Cut() const {
  lines_.clear();
  for (std::size_t begin = 0; begin < bytes_.size();) {
    const std::size_t feed = bytes_.find('\n', begin);
    const std::size_t next = feed == std::string::npos ? bytes_.size() : feed + 1;
    std::size_t end = feed == std::string::npos ? bytes_.size() : feed;
    while (end > begin && bytes_[end - 1] == '\r') --end;
    lines_.push_back({static_cast<std::uint32_t>(begin), static_cast<std::uint32_t>(end - begin)});
    begin = next;
  }
  isCut_ = true;
}

SourceText::SourceText(std::string name, std::vector<SourceText> members)
    : name_(std::move(name)), members_(std::move(members)) {}

SourceText SourceText::Part(int from, int to) const {
  const auto beginOf = [this](int line) {
    return line > LineCount() ? bytes_.size() : Lines()[static_cast<std::size_t>(line) - 1].Begin;
  };
  const std::size_t begin = beginOf(from);
  SourceText part(name_, bytes_.substr(begin, beginOf(to) - begin));
  part.linesBefore_ = linesBefore_ + from - 1;
  part.writtenOn_ = writtenOn_;
  return part;
}

void SourceText::SetWrittenOn(const std::optional<std::chrono::sys_days>& day) {
  writtenOn_ = day;
  for (SourceText& member : members_) {
    if (!member.WrittenOn()) member.SetWrittenOn(day);
  }
}

std::string AtLine(const SourceText& source, int line, std::string_view reason) {
  return AtLine(source.Name(), source.LineInFile(line), reason);
}

std::string AtLine(std::string_view name, int line, std::string_view reason) {
  std::string text(name);
  if (!text.empty()) text += ", ";
  text += "line " + std::to_string(line) + ": ";
  text += reason;
  return text;
}

}  // namespace vexa
