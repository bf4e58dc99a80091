// Archives serve soundings packed: gzip streams and ZIP files, told by their first bytes.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/fault.h"

namespace vexa::ingest {

struct PackedFile {
  std::string Name{};  // as the archive has it; empty when a gzip stream names none
  std::string Bytes{};
  std::optional<std::chrono::sys_days> WrittenOn{};  // as the archive has it
  std::string Trouble{};  // of this file alone: damaged, locked, of an unknown packing; else empty
};

/// True for the first bytes of a gzip stream or a ZIP file.
bool IsPacked(std::string_view bytes);

/// The files inside, folders left out; one of a ZIP file that cannot be unpacked says why.
/// Fault 62 for a damaged or cut archive and for more than 512 MB.
Outcome<std::vector<PackedFile>> Unpack(std::string_view bytes);

}  // namespace vexa::ingest
