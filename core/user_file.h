// Files in the program's folder that users may edit: settings, stations, sources, tables. What the
// program does not understand in one it tells of with its line, and it never writes over such a
// file before it has put a copy of it aside, NAME.bak. All of them are read and written here.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/fault.h"
#include "core/files.h"

namespace vexa {

/// What is not understood of a file's text, "NAME, line 3: reason"; empty when all of it is.
using Objection = std::function<std::string(std::string_view text)>;

/// A file's text; nothing when there is no such file, and when it cannot be read, which adds a
/// sentence to the notes.
std::optional<std::string> ReadUserFile(const std::filesystem::path& path,
                                        std::vector<std::string>& notes);

/// Writes a file. When one stands there that is not understood whole it is copied to NAME.bak
/// first; one that cannot be read or copied stays, and that is the fault. Else faults as of
/// SaveFile. A file that holds these very bytes is left alone.
[[nodiscard]] std::optional<Fault> SaveUserFile(const std::filesystem::path& path,
                                                std::string_view bytes, const Objection& objects,
                                                FileOps& ops = SystemFileOps(),
                                                Links links = Links::Follow);

}  // namespace vexa
