// The files that a folder stands for.
#pragma once

#include <filesystem>
#include <vector>

namespace vexa::ingest {

/// The ordinary files in a folder and in those below it, in the order of their names. Hidden files
/// and folders are passed over, and folders that may not be read. Of a path that is no folder, that
/// path.
std::vector<std::filesystem::path> FilesBelow(const std::filesystem::path& given);

/// The same of the folder alone, without those below it.
std::vector<std::filesystem::path> FilesIn(const std::filesystem::path& folder);

/// Whether a file can be read and is in a known format, by its first piece; damaged it may be all the
/// same.
bool HoldsSounding(const std::filesystem::path& file);

}  // namespace vexa::ingest
