// The soundings of a file of any length by their places in it, with the memory of a piece of the
// file: for whoever goes through a long file and wants the levels.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "ingest/source_stream.h"
#include "sounding/sounding_source.h"

namespace vexa {

class SoundingWalk {
 public:
  explicit SoundingWalk(std::filesystem::path file,
                        std::size_t piece = ingest::SourceStream::kPiece);

  /// The sounding at a place, counted from 0 through all of the file. Places are best asked for in
  /// their order: one that lies behind is reached by beginning anew. Its notes begin with what was
  /// left out of the file so far. Faults as SourceStream's and the decoder's; 63 where the file has
  /// fewer soundings.
  Loading Load(int index, const LoadPolicy& policy);

  /// The sounding behind the last that was asked for, at first the first; none behind the last, and
  /// none behind a fault of the file itself. What was left out of the file is told once.
  std::optional<Loading> Next(const LoadPolicy& policy);

  /// Goes to a place and gives away the text with it; the walk is over. Faults as Load.
  struct Place {
    SoundingSource Source;
    std::vector<std::string> Notes{};
    int Before = 0;  // soundings of the file ahead of the text
  };
  Outcome<Place> Take(int index) &&;

  /// The text of the sounding that was asked for last; null where the file cannot be read.
  const SourceText* Text() const { return source_ ? &source_->Text() : nullptr; }

 private:
  enum class Reached { Here, BehindLast };

  std::optional<Fault> Begin();
  Outcome<Reached> Advance();
  Outcome<Reached> Reach(int index);
  Fault TooFew(int index) const;
  Loading LoadHere(int index, const LoadPolicy& policy, std::size_t firstNote);

  std::filesystem::path file_;
  std::size_t piece_;
  std::optional<ingest::SourceStream> stream_{};
  std::optional<SoundingSource> source_{};
  std::vector<std::string> notes_{};  // of the stream
  std::size_t told_ = 0;              // of them, by Next
  int first_ = 0;                     // place of the text's first sounding
  int count_ = 0;                     // soundings in the text; 0 until it is decoded
  int next_ = 0;
  bool isOver_ = false;
};

/// The soundings of a file in their order, as SoundingSource::List gives them, with the memory of a
/// piece of the file; their lines are those of their pieces. Faults as SourceStream's, of a file
/// that is damaged anywhere.
Outcome<std::vector<ingest::SourceEntry>> ListOf(const std::filesystem::path& file,
                                                 std::size_t piece = ingest::SourceStream::kPiece);

}  // namespace vexa
