// The settings that a command works with: the defaults or, with --root, those of a program folder
// as the window reads them; over them what --set says.
#pragma once

#include "cli/console.h"
#include "config/settings_store.h"
#include "core/fault.h"
#include "program/command_line.h"

namespace vexa::cli {

inline constexpr ArgumentRow kRootOption = {"--root", "", "DIR",
                                            "takes the settings from this program folder"};

/// What is wrong with a settings file goes to the error output. Fault 380 for a wrong --set.
Outcome<SettingsStore> CommandSettings(const Arguments& arguments, Console& console);

}  // namespace vexa::cli
