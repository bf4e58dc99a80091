// All settings of the program and the files that hold them. Each option has one home: the main
// settings of the active configuration, or the file of the window that owns it.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "config/options.h"
#include "config/setting_row.h"
#include "config/window_settings.h"
#include "core/fault.h"
#include "core/files.h"

namespace vexa {

/// An option that was set for one run of the program.
struct RunOption {
  std::string Key{};
  std::string Now{};   // its value in this run
  std::string Kept{};  // what its file goes on to say
  bool operator==(const RunOption&) const = default;
};

struct SettingsStore {
  SystemSettings System{};
  Configuration Active = Configuration::None;  // whose main settings are in force
  Options Set{};
  MainWindowSettings Window{};
  HodographSettings Hodograph{};
  Hodogram3DSettings Hodogram3D{};
  ListingSettings Listing{};
  SoaringSettings Soaring{};
  std::vector<RunOption> ForThisRun{};
  bool operator==(const SettingsStore&) const = default;
};

/// In the order of reading at start.
inline constexpr SettingsFile kSettingsFiles[] = {
    SettingsFile::System, SettingsFile::Soaring, SettingsFile::Hodograph, SettingsFile::Hodogram3D,
    SettingsFile::Main,   SettingsFile::Window,  SettingsFile::Listing};

/// Name of a settings file; the main settings have one for each configuration.
std::string SettingsFileName(SettingsFile file, Configuration active);

/// Reads one file. What it does not say, or says in a way that no row takes, has its default; a
/// file that is missing leaves all defaults. A file with a fault of any kind adds one note, a
/// sentence with its name, the line and the reason.
void LoadSettingsFile(const std::filesystem::path& folder, SettingsFile file, SettingsStore& store,
                      std::vector<std::string>& notes);

/// Reads all files, VEXA.SYS first, since it names the configuration whose main settings apply.
void LoadSettings(const std::filesystem::path& folder, SettingsStore& store,
                  std::vector<std::string>& notes);

/// Sets every "KEY=VALUE" in turn, with what follows from it, for this run: the files keep what
/// they say until the user changes the option to something else. Faults as SetOption and
/// CheckOptions.
[[nodiscard]] std::optional<Fault> SetForThisRun(SettingsStore& store,
                                                 const std::vector<std::string>& assignments);

/// Writes one file. Faults as of SaveUserFile name the file, which is then as it was.
[[nodiscard]] std::optional<Fault> SaveSettingsFile(const std::filesystem::path& folder,
                                                    SettingsFile file, SettingsStore& store,
                                                    FileOps& ops = SystemFileOps());

/// Writes the files whose contents differ from those of `before`. One that fails does not keep the
/// others from being written; the first fault.
[[nodiscard]] std::optional<Fault> SaveChangedSettings(const std::filesystem::path& folder,
                                                       SettingsStore& store,
                                                       const SettingsStore& before,
                                                       FileOps& ops = SystemFileOps());

/// Saves the main settings of the active configuration, makes another one active and reads its
/// main settings; it starts with the defaults when it has none. After a fault nothing has changed
/// in the store.
[[nodiscard]] std::optional<Fault> SwitchConfiguration(const std::filesystem::path& folder,
                                                       Configuration to, SettingsStore& store,
                                                       std::vector<std::string>& notes,
                                                       FileOps& ops = SystemFileOps());

/// "VEXA Config #1: NAME" for the diagram; empty without an active configuration and unless both
/// of its flags are set.
std::string ConfigurationCaption(const SettingsStore& store);

}  // namespace vexa
