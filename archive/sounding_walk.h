// The soundings of a file of any length by their places in it, with the memory of a piece of the
// file: for whoever goes through a catalogue and wants the levels too.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <vector>

#include "ingest/source_stream.h"
#include "sounding/sounding_source.h"

namespace vexa::archive {

class SoundingWalk {
 public:
  explicit SoundingWalk(std::filesystem::path file,
                        std::size_t piece = ingest::SourceStream::kPiece);

  /// The sounding at a place, counted from 0 as the catalogue enters them. Places are best asked
  /// for in their order: one that lies behind is reached by beginning anew. Faults as
  /// SourceStream's and the decoder's; 62 where the file has fewer soundings.
  Loading Load(int index, const LoadPolicy& policy);

 private:
  std::optional<Fault> Begin();
  std::optional<Fault> Advance();

  std::filesystem::path file_;
  std::size_t piece_;
  std::optional<ingest::SourceStream> stream_{};
  std::vector<SourceText> texts_{};  // of the piece, with those behind the one that is open
  std::size_t nextText_ = 0;
  std::optional<SoundingSource> source_{};
  int first_ = 0;  // place of its first sounding
  int count_ = 0;
};

}  // namespace vexa::archive
