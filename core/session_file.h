// What survives a crash: the files in work, the sounding with its unsaved edits and a few settings
// of the view, in one file that is written now and then and removed when the program ends well. A
// session that is found at start-up was cut off.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/fault.h"
#include "core/files.h"
#include "core/platform.h"
#include "core/sounding_record.h"

namespace vexa {

/// The session file of a running program. Several may run in one folder: each has a file of its
/// own, which another takes over only when the one that wrote it runs no more.
struct SessionPlace {
  std::filesystem::path File{};      // empty: there are too many already
  std::unique_ptr<FileHold> Held{};  // for as long as the program runs
};

/// The first of VEXA.SES, VEXA2.SES... that no running program has, one with a session in it before
/// one without.
SessionPlace TakeSessionPlace(const std::filesystem::path& folder);
/// The first that no running program has and that holds no session.
SessionPlace TakeFreeSessionPlace(const std::filesystem::path& folder);

struct Session {
  std::vector<std::string> Files{};        // UTF-8 paths, the current one first
  std::optional<SoundingRecord> Edited{};  // of the current one, if changed
  std::vector<std::pair<std::string, std::string>> Settings{};  // key, value
  bool operator==(const Session&) const = default;
};

/// A session read back, or why there is none.
struct SessionReading {
  std::optional<Session> Found{};
  std::string Note{};  // empty when there simply was no file; also what of a session was left out
};

/// A session as text: comma-separated records with every field of the edited sounding, and a check
/// sum as the last.
std::string WriteSession(const Session& session);

/// The session of a text; none, with a note, when a byte of it is missing or altered or it comes
/// from another version. Nothing is taken from a damaged file, nor a level that nothing can have.
///
/// name  of the file, for the note
SessionReading ReadSession(std::string_view text, std::string_view name);

/// Writes a session file; the one before survives any fault.
[[nodiscard]] std::optional<Fault> SaveSession(const std::filesystem::path& file,
                                               const Session& session,
                                               FileOps& ops = SystemFileOps());
SessionReading LoadSession(const std::filesystem::path& file);

/// Removes a session file: the program ends well, or the user does not want it back. Faults
/// when it cannot be removed; none when there is none.
[[nodiscard]] std::optional<Fault> ForgetSession(const std::filesystem::path& file);

}  // namespace vexa
