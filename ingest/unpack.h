// Archives serve soundings packed: gzip streams and ZIP files, told by their first bytes.
#pragma once

#include <chrono>
#include <cstddef>
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

/// What one opening may take, however many archives lie in one another.
struct UnpackRoom {
  std::size_t Bytes = std::size_t{256} << 20;  // unpacked, those of archives inside too
  int Files = 20000;
  bool IsUsedUp = false;  // more was in it: the opening is to end
};

/// True for the first bytes of a gzip stream or a ZIP file.
bool IsPacked(std::string_view bytes);

/// The files inside, folders left out; one of a ZIP file that cannot be unpacked, or says itself
/// that it is larger than the room that is left, says why. Fault 62 for a damaged or cut archive and
/// when the room is used up, from which all that was unpacked is taken.
Outcome<std::vector<PackedFile>> Unpack(std::string_view bytes, UnpackRoom& room);

}  // namespace vexa::ingest
