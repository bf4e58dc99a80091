// A sounding with everything known of it: where it came from, its record, what was noted while it
// was read, what the checks found, and its analysis. One loader makes them, from whatever source,
// for the window, the command line, downloads, overlays, loops and sections alike.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "analysis/adiabat_table.h"
#include "analysis/analysis.h"
#include "core/data_checks.h"
#include "core/fault.h"
#include "core/files.h"
#include "core/interaction.h"
#include "core/sounding_record.h"
#include "core/station_list.h"

namespace vexa {

/// Where a sounding came from.
struct Source {
  std::filesystem::path File{};      // empty: entered by hand
  int Index = 0;                     // which of the file's soundings, from 0
  std::optional<FileStamp> Stamp{};  // of the file when it was read
};

/// What the loader may draw on.
struct LoadPolicy {
  const StationList* Stations = nullptr;  // for soundings that name their station by number only
  Interaction* Ask = nullptr;             // null: nobody is there
};

struct LoadedSounding {
  Source From{};
  SoundingRecord Record{};
  std::vector<std::string> Notes{};  // what was left out, changed or worked out
  int Garbled = 0;                   // of the notes those on what is garbled, or may be
  QcFinding Finding{};               // number 0: the checks found nothing
};

/// What loading came to. A damaged native file gives both its fault and what could be read of it,
/// two levels at least.
struct Loading {
  std::optional<LoadedSounding> Sounding{};
  std::optional<Fault> Failed{};
  std::vector<std::string> Notes{};  // where there is no sounding to have them
  int Count = 1;                     // soundings of the file, as far as it was read
  bool HasMore = false;              // it was not read to its end
};

/// Reads, decodes, orders and checks one sounding of a file. Of several that `from` chooses, the
/// first note says which it is. A long file is read no farther than need be. Faults as
/// ingest::ReadSource and ingest::DecodeSounding. For many soundings there is a SoundingReader.
Loading LoadSounding(const Source& from, const LoadPolicy& policy);

/// A loaded sounding that changes no more and is shared. Its analysis is made when it is first
/// asked for and kept as long as it is asked for under the same settings.
class AnalysedSounding {
 public:
  explicit AnalysedSounding(LoadedSounding loaded) : loaded_(std::move(loaded)) {}

  const Source& From() const { return loaded_.From; }
  const SoundingRecord& Record() const { return loaded_.Record; }
  const std::vector<std::string>& Notes() const { return loaded_.Notes; }
  const QcFinding& Finding() const { return loaded_.Finding; }
  /// table  kept from one sounding to the next, which saves time and changes no number
  const analysis::AnalysisResults& Results(const AnalysisSettings& set,
                                           analysis::AdiabatTable* table = nullptr) const;

 private:
  LoadedSounding loaded_;
  mutable std::unique_ptr<const analysis::AnalysisResults> results_{};
  mutable std::unique_ptr<const AnalysisSettings> under_{};
};

using SharedSounding = std::shared_ptr<const AnalysedSounding>;

/// What was loaded, to be shared, if it is whole; a damaged native file is a fault here.
Outcome<SharedSounding> Share(Loading loading);
/// Loads a sounding that is whole.
Outcome<SharedSounding> LoadAnalysed(const Source& from, const LoadPolicy& policy);

}  // namespace vexa
