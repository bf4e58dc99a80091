// Paths that are joined, made whole or shortened, those of a server, too: of
// \\server\share the standard library of some systems takes the beginning for a single separator.
#pragma once

#include <filesystem>
#include <string_view>

namespace vexa {

/// A path of a settings file, as of PathFromSetting, below a folder; one that is whole, with a root
/// or of a server, replaces it.
std::filesystem::path PathBelow(const std::filesystem::path& folder, std::string_view setting);

/// From the root on, so that it outlives the folder in which the program was started; as it is
/// where the system cannot tell.
std::filesystem::path WholePath(const std::filesystem::path& path);

/// Without "." and "..", as by lexically_normal.
std::filesystem::path NormalPath(const std::filesystem::path& path);

/// The form in which systems with drives take a path of any length, \\?\C:\... or \\?\UNC\...;
/// a path that is short enough, and every path of other systems, as it is.
std::filesystem::path LongForm(const std::filesystem::path& path);

}  // namespace vexa
