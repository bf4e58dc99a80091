// The loader of soundings from files in any order, which keeps its place in the file that it read
// last: many soundings of one file in their order are one pass through it.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>

#include "core/files.h"
#include "sounding/analysed_sounding.h"
#include "sounding/sounding_walk.h"

namespace vexa {

/// "FILE#3" as the third sounding of FILE, where there is no file of this very name.
std::optional<Source> NamedSounding(const std::filesystem::path& file);

class SoundingReader {
 public:
  explicit SoundingReader(std::size_t piece = ingest::SourceStream::kPiece) : piece_(piece) {}

  /// As LoadSounding. A file that has changed since is begun anew.
  Loading Load(const Source& from, const LoadPolicy& policy);

 private:
  std::size_t piece_;
  std::filesystem::path file_{};
  std::optional<FileStamp> stamp_{};  // of what is read, not of what comes after
  std::optional<SoundingWalk> walk_{};
};

}  // namespace vexa
