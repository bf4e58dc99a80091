// A sounding file's text, cut into lines, with the name it came by. Decoders read this and never
// touch the file system; bytes outside ASCII are kept as they are.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace vexa {

class SourceText {
 public:
  SourceText() = default;
  /// Cuts at LF, CR LF and CR CR LF; the last line may lack its end. A byte-order mark is dropped.
  ///
  /// linesBefore  of the file ahead of these bytes, where they are a piece of it
  SourceText(std::string name, std::string bytes, int linesBefore = 0);
  /// The texts of an archive, which has none of its own.
  SourceText(std::string name, std::vector<SourceText> members);

  const std::string& Name() const { return name_; }
  const std::string& Bytes() const { return bytes_; }
  const std::vector<SourceText>& Members() const { return members_; }

  int LineCount() const { return static_cast<int>(Lines().size()); }
  /// Line without its end, 1-based. Throws std::out_of_range outside.
  std::string_view Line(int number) const {
    if (number < 1 || number > LineCount()) throw std::out_of_range("line number");
    const Span& span = Lines()[static_cast<std::size_t>(number) - 1];
    return {bytes_.data() + span.Begin, span.Length};
  }

  /// The lines from one to the one before another, as a text of its own that knows its place.
  SourceText Part(int from, int to) const;
  /// The day on which the file was written, for sources that state no date; none where not known.
  const std::optional<std::chrono::sys_days>& WrittenOn() const { return writtenOn_; }
  /// Of an archive also that of the texts which have none.
  void SetWrittenOn(const std::optional<std::chrono::sys_days>& day);

  /// Where a line stands in the whole file.
  int LineInFile(int number) const { return linesBefore_ + number; }

 private:
  struct Span {  // of a text of less than 4 GB
    std::uint32_t Begin = 0;
    std::uint32_t Length = 0;
  };

  const std::vector<Span>& Lines() const {
    if (!isCut_) Cut();
    return lines_;
  }
  void Cut() const;

  std::string name_{};
  std::string bytes_{};
  // Cut when first asked for, by one thread: a native file is read without.
  mutable std::vector<Span> lines_{};
  mutable bool isCut_ = false;
  std::vector<SourceText> members_{};
  int linesBefore_ = 0;
  std::optional<std::chrono::sys_days> writtenOn_{};
};

/// "NAME, line 7: reason", the detail of a fault in a file's text.
std::string AtLine(std::string_view name, int line, std::string_view reason);
std::string AtLine(const SourceText& source, int line, std::string_view reason);

}  // namespace vexa
