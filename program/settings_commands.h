// The settings as option forms and menu commands change them: a form works on a draft, which is put
// in force to be looked at and written to the files when the user accepts it.
#pragma once

#include <optional>

#include "config/options.h"
#include "config/window_settings.h"
#include "program/program.h"

namespace vexa {

/// What a form edits: the options and, beside them, names and captions of the configurations.
struct SettingsDraft {
  Options Set{};
  SystemSettings System{};
  bool operator==(const SettingsDraft&) const = default;
};

SettingsDraft CurrentSettings(const Program& program);

/// Puts a draft in force, without writing it; gives what that changed. Empty while a command runs,
/// which draws from the settings: nothing is changed then.
std::optional<Changes> AdoptSettings(Program& program, const SettingsDraft& draft);

/// Writes what has changed since the files were read or written. When a file cannot be written, the
/// user is told, and the settings stay in force. True when nothing remains to be written; so it is,
/// too, as long as there is no program folder.
bool KeepSettings(Program& program);

/// The data folders as the options name them: below the program folder unless absolute.
void FollowFolders(Program& program);

}  // namespace vexa
