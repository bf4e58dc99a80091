// Catalogues of shares made one: whatever the shares were, the same files give the same catalogue,
// byte for byte.
#pragma once

#include <filesystem>
#include <optional>
#include <span>

#include "archive/catalogue.h"
#include "core/fault.h"

namespace vexa::archive {

/// Writes a catalogue of all files in the others, in the order of their paths. Of a file that is in
/// several the one that was read to its end counts, then the one that was written last. It stands
/// under a name of its own until it is whole. Fault 58 where the new one exists already.
std::optional<Fault> Merge(const std::filesystem::path& into,
                           std::span<const std::filesystem::path> from);

}  // namespace vexa::archive
