// The search for soundings around a station among files. Where and when each was made is kept in a
// catalogue, so that of thousands of files only those that changed are read again.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "core/fault.h"
#include "core/interaction.h"
#include "core/sounding_record.h"
#include "forecast/region.h"
#include "sounding/analysed_sounding.h"

namespace vexa::forecast {

/// A sounding of a file as the catalogue knows it.
struct Header {
  int Index = 0;  // in its file, from 0
  std::string Title{};
  int WmoNumber = 0;
  ObservationTime Time{};
  double Lat = 0, Lon = 0;  // degrees
  bool HasPosition = false;
  int TempLevels = 0;
  bool operator==(const Header&) const = default;
};

/// All soundings found, by file: "MainListing.txt".
class Catalogue {
 public:
  static constexpr std::string_view kFileName = "MainListing.txt";

  Catalogue() = default;
  /// Of a file's text; what is damaged of it is read from the soundings again.
  explicit Catalogue(std::string_view text);
  std::string Text() const;

  /// Reads the headers of files that are new or have changed; a file that is gone leaves. False
  /// when the user stopped: what was read until then is kept.
  bool Update(const std::vector<std::filesystem::path>& files, const LoadPolicy& policy,
              Progress progress);
  /// Of a file that Update has seen; none of any other.
  const std::vector<Header>& Of(const std::filesystem::path& file) const;
  /// Files that the last Update had to read.
  int FilesRead() const { return filesRead_; }

 private:
  struct Kept {
    std::uintmax_t Size = 0;
    std::int64_t Written = 0;
    std::vector<Header> Headers{};  // empty: it holds no sounding
  };
  std::map<std::string, Kept> files_{};
  int filesRead_ = 0;
};

/// What a search found beside what could not be read.
struct SearchResult {
  std::vector<SharedProfile> Found{};
  std::vector<std::pair<std::string, Fault>> Failed{};
  bool Stopped = false;
};

/// Loads the soundings of the files that stand within a radius and 3 hours of one.
SearchResult SearchAround(const SoundingRecord& main, double radiusKm,
                          const std::vector<std::filesystem::path>& files, Catalogue& catalogue,
                          const LoadPolicy& policy, const AnalysisSettings& set, Progress progress);

}  // namespace vexa::forecast
