// The settings of the program about its files, its cursor and its loops, which neither analyses nor
// displays read.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "config/dump_options.h"
#include "core/choices.h"

namespace vexa {

enum class FileOrder { Name, Date, Size, Type };

constexpr auto Words(FileOrder) {
  return std::to_array<std::string_view>({"name", "date", "size", "type"});
}

/// What an auto-load file name reads when several soundings are loaded at start.
inline constexpr std::string_view kMultipleMarker = ".multiple.";

struct SystemOptions {
  std::string DataFolder = "vexadata\\";  // below the program folder unless absolute
  std::string CrossSectionFolder = "crosdata\\";
  std::string ReferenceFolder{};  // empty: the program folder
  std::string HeaderFile = "Header.Dat";
  std::string Catalogue{};  // of soundings, that tells what is usual; empty: none
  bool CursorGrid = true;
  bool CursorData = true;
  bool Autoload = false;
  std::string AutoDrive{};  // folder of the auto-load file
  std::string AutoFile{};   // its name, or kMultipleMarker
  std::string AutoType = "RAW";
  int FilterIndexNum = 1;
  int ShortCutValue = 0;
  FileOrder SortMode = FileOrder::Name;
  bool SoftFlip = false;
  bool AutoDirectoryUpdate = true;
  double MovieTime = 1.0;  // s
  bool SkipLoop = false;
  bool LoopNoRescaling = false;
  bool AutoAnalysisLoad = true;
  bool DataChecks = true;  // of a sounding after its load
  bool StepChecks = true;  // and when soundings are stepped through
  std::string PrintTitleMemory{};
  bool DarklinesMemory = false;
  DumpOptions Dump{};
  bool operator==(const SystemOptions&) const = default;
};

}  // namespace vexa
