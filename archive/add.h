// Entering files into a catalogue: found, read in pieces, analysed and kept, one sounding after the
// other, with the memory of a few however many there are.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>

#include "analysis/analysis_settings.h"
#include "archive/catalogue.h"
#include "archive/shard.h"
#include "core/station_list.h"
#include "ingest/source_stream.h"

namespace vexa::archive {

struct AddRequest {
  std::span<const std::string> Given{};  // files, and folders in place of the files below them
  AnalysisSettings Settings{};
  const StationList* Stations = nullptr;  // for soundings that name their station by number only
  Shard Share{};
  int Batch = 1000;  // soundings that are kept or lost together
  std::size_t Piece = ingest::SourceStream::kPiece;
  /// What cannot be read, of a file or of one of its soundings ("NAME#3"): a name and the reason.
  std::function<void(const std::string& name, const std::string& reason)> OnTrouble{};
  /// What was left out of an archive, whose other members are entered.
  std::function<void(const std::string& name, const std::string& note)> OnNote{};
  /// Asked once a batch; false ends it, and what was entered stays.
  std::function<bool(std::int64_t entered)> GoesOn{};
};

struct AddReport {
  std::int64_t Files = 0;  // entered, anew or for the first time
  std::int64_t UnchangedFiles = 0;
  std::int64_t OtherFiles = 0;  // of folders, in none of the known formats by name and text
  std::int64_t TroubledFiles = 0;
  std::int64_t Soundings = 0;  // entered
  std::int64_t Doubtful = 0;   // of them: the check of the data finds fault
  std::int64_t Refused = 0;    // soundings that cannot be read
  bool IsStopped = false;
};

/// Enters what is new or has changed. A file that was begun is gone on with. Fault: the catalogue
/// cannot be written; what was entered in whole batches stays.
Outcome<AddReport> AddFiles(Catalogue& catalogue, const AddRequest& request);

}  // namespace vexa::archive
