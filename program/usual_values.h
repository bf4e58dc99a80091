// How usual the sounding in work is by a catalogue: looked up once for a station, a month, an hour
// and the settings of the analysis, and kept until one of them changes.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "analysis/analysis.h"
#include "archive/climate.h"
#include "core/files.h"
#include "core/sounding_record.h"
#include "diagram/usual.h"

namespace vexa {

struct Program;

class UsualValues {
 public:
  /// Looks up what is usual for this sounding, unless that is what is kept, and ranks its indices
  /// anew. A sentence where nothing can be told of it, once: the catalogue is gone or held by
  /// another process, or it has too few ascents. An empty path forgets all.
  std::optional<std::string> Follow(const std::filesystem::path& catalogue,
                                    const SoundingRecord& sounding,
                                    const analysis::AnalysisResults& results,
                                    const AnalysisSettings& settings);

  /// Null where nothing is known.
  const diagram::Usual* Shown() const { return climate_ ? &shown_ : nullptr; }
  /// Lines that tell how usual a value of an index is: its place, the distribution as bars from the
  /// least to the most with the value's own between [ ], and the percentiles. Empty where nothing
  /// is known of it.
  std::string Hint(const analysis::IndexRow& index, const analysis::AnalysisResults& results,
                   const analysis::IndexUnits& units) const;

 private:
  struct Key {
    std::filesystem::path Catalogue{};
    archive::ClimateRequest Of{};
    AnalysisSettings Settings{};
    bool operator==(const Key&) const = default;
  };
  std::optional<std::string> LookUp(Key key);
  void Rank(const analysis::AnalysisResults& results);

  std::optional<Key> key_{};
  std::optional<FileStamp> stamp_{};  // of the catalogue when it was last read
  bool hasFailed_ = false;            // it could not be read; it is tried again when it has changed
  std::optional<archive::Climate> climate_{};
  diagram::Usual shown_{};
};

/// The same of the program's sounding in work by the catalogue of its options, with Follow's sentence.
std::optional<std::string> FollowCatalogue(Program& program);

}  // namespace vexa
