// A file of any length as texts of a bounded size, one after the other, whose soundings in their
// order are those of the whole file: for whoever goes through archives that are larger than memory.
#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/fault.h"
#include "core/source_text.h"

namespace vexa::ingest {

class SourceStream {
 public:
  /// Bytes of a text, about. A file without such a length comes whole, and so does a sounding that
  /// is longer, and a long file in a format whose soundings do not stand by themselves.
  static constexpr std::size_t kPiece = std::size_t{4} << 20;

  /// Faults as ReadSource.
  static Outcome<SourceStream> Open(const std::filesystem::path& file, std::size_t piece = kPiece);

  SourceStream(SourceStream&& other) noexcept;
  SourceStream& operator=(SourceStream&& other) noexcept;
  ~SourceStream();

  /// The next text; none behind the last. Nothing comes behind a fault.
  Outcome<std::optional<SourceText>> Next();

  /// Soundings of the text given last where cutting it from the file has told them; else 0.
  int Count() const;
  /// Whether the text given last is known to be the file's last one.
  bool IsAtEnd() const;

  /// What was left out of the file so far, given away once.
  std::vector<std::string> TakeNotes();

 private:
  struct State;
  explicit SourceStream(std::unique_ptr<State> state);
  std::unique_ptr<State> state_;
};

}  // namespace vexa::ingest
