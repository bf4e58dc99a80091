// Archives serve soundings packed: gzip streams and ZIP files, told by their first bytes.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/fault.h"

namespace vexa::ingest {

struct PackedFile {
  std::string Name{};  // as the archive has it; empty when a gzip stream names none
  std::string Bytes{};
};

/// True for the first bytes of a gzip stream or a ZIP file.
bool IsPacked(std::string_view bytes);

/// The files inside; of a ZIP file the stored and the deflated ones, folders left out. Fault 62 for
/// a damaged or cut archive, an unknown packing, a wrong check sum, and for more than 512 MB.
Outcome<std::vector<PackedFile>> Unpack(std::string_view bytes);

}  // namespace vexa::ingest
