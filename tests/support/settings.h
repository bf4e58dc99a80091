// For tests of settings: all files of a store, as a program leaves them behind that has changed
// them all.
#pragma once

#include <filesystem>
#include <optional>

#include "config/settings_store.h"

namespace vexa::test {

inline std::optional<Fault> SaveAllSettings(const std::filesystem::path& folder,
                                            SettingsStore& store, FileOps& ops = SystemFileOps()) {
  std::optional<Fault> first;
  for (const SettingsFile file : kSettingsFiles) {
    const std::optional<Fault> fault = SaveSettingsFile(folder, file, store, ops);
    if (!first) first = fault;
  }
  return first;
}

}  // namespace vexa::test
