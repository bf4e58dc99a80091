// Exports many sounding files into one data dump: one is read, written and forgotten before the
// next, on as many threads as wanted, and the file is the same for any number of them.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "config/options.h"
#include "core/data_checks.h"
#include "core/fault.h"
#include "core/files.h"
#include "core/interaction.h"
#include "core/station_list.h"
#include "output/data_dump.h"

namespace vexa {

inline constexpr std::string_view kExportTitle = "VEXA Data Export";
inline constexpr std::string_view kRangeStart = "0001";
inline constexpr std::string_view kRangeInvalid = "Range is not valid.";
inline constexpr std::string_view kRejectPrefix = "BAD_";

/// Files from the first to the last number of a list, both counted from 1.
struct ExportRange {
  int First = 1;
  int Last = 1;
};

/// A range from its two four-digit numbers. Fault 380 with kRangeInvalid when either is none, the
/// first lies behind the last or the last behind the end of the list.
Outcome<ExportRange> ParseExportRange(std::string_view first, std::string_view last, int count);

struct ExportRequest {
  std::span<const std::string> Files{};
  std::filesystem::path Output{};
  output::DumpKind Kind = output::DumpKind::Textfile;
  int Jobs = 1;                           // threads that read and compute
  const StationList* Stations = nullptr;  // for soundings that name their station by number only
  int Index = 0;                          // of the sounding in each file
};

struct ExportReport {
  int Written = 0;
  int Rejected = 0;
  bool Cancelled = false;              // the soundings before it are in the file
  int Left = 0;                        // files that were not come to
  std::string FirstLeft{};             // the first of them
  std::filesystem::path Output{};      // empty when nothing was written
  std::filesystem::path RejectFile{};  // empty without rejected soundings
  std::optional<Fault> Failed{};       // the output could not be written; what it held stays
  std::string FirstReason{};           // why the first rejected one was
};

/// A file that has no share in the dump.
struct RejectedFile {
  std::string File{};
  Fault Why{};
  QcFinding Finding{};  // number 0 where the file could not be read
};

/// Told of each file that is left out, in the order of the files.
using OnReject = std::function<void(const RejectedFile& rejected)>;

/// Carries out an export. Files that cannot be read, and soundings that the check of the data
/// finds fault with, are named in a file "BAD_" + output beside the output. Without any sounding
/// nothing is written, nor where one of these is a file to read. All of it is done with the options
/// as they are at the beginning.
ExportReport ExportBatch(const ExportRequest& request, const Options& options,
                         Progress progress = {}, const OnReject& onReject = {},
                         FileOps& ops = SystemFileOps());

/// Writes the sounding in work alone.
[[nodiscard]] std::optional<Fault> ExportSounding(const SoundingRecord& sounding,
                                                  const Options& options,
                                                  const std::filesystem::path& output,
                                                  output::DumpKind kind);

/// What the user is told at the end.
Box ExportSummary(const ExportReport& report);

/// A fault's message and detail on one line, for reject files and error outputs.
std::string FaultLine(const std::string& file, const Fault& fault);

}  // namespace vexa
