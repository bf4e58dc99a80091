#include "program/settings_commands.h"

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "config/settings_report.h"
#include "core/error_report.h"
#include "core/files.h"
#include "core/path_forms.h"
#include "program/command_line.h"
#include "program/commands.h"

namespace vexa {
namespace {

void TellFault(Program& program, std::string_view what, const Fault& fault) {
  if (program.Current.Ask == nullptr) return;
  program.Current.Ask->Ask(Box{.Title = std::string(kErrorBoxTitle),
                               .Text = std::string(what) + "\n" +
                                       FaultMessage(program.Current, fault) +
                                       (fault.Detail.empty() ? "" : "\n" + fault.Detail)});
}

}  // namespace

SettingsDraft CurrentSettings(const Program& program) {
  return {program.Settings.Set, program.Settings.System};
}

std::optional<Changes> AdoptSettings(Program& program, const SettingsDraft& draft) {
  if (!program.Gate.IsOpen()) return std::nullopt;
  const Changes changes{.View = CurrentSettings(program) != draft};
  program.Settings.Set = draft.Set;
  program.Settings.System = draft.System;
  FollowFolders(program);
  return changes;
}

bool KeepSettings(Program& program) {
  if (program.Where.Root.empty()) return true;
  const auto fault = SaveChangedSettings(program.Where.Root, program.Settings, program.Written);
  if (fault) {
    TellFault(program, "The settings cannot be written; they stay in force until the program ends.",
              *fault);
    return false;
  }
  program.Written = program.Settings;
  return true;
}

void FollowFolders(Program& program) {
  if (program.Where.Root.empty()) return;
  const SystemOptions& set = program.Set.System;
  const auto below = [&program](const std::string& folder) {
    return PathBelow(program.Where.Root, folder);
  };
  program.Where.Data = below(set.DataFolder);
  program.Where.CrossSection = below(set.CrossSectionFolder);
  std::filesystem::path reference =
      set.ReferenceFolder.empty() ? program.Where.Root : below(set.ReferenceFolder);
  if (reference == program.Where.Reference) return;
  program.Where.Reference = std::move(reference);
  program.View.Reference.reset();
  program.View.ShowsReference = false;
}

namespace commands {

Changes SwitchTo(Program& program, Configuration to) {
  if (to == program.Settings.Active) return {};
  std::vector<std::string> notes;
  if (const auto fault = SwitchConfiguration(program.Where.Root, to, program.Settings, notes)) {
    TellFault(program, "The configuration stays as it was, since its settings cannot be kept.",
              *fault);
    return {};
  }
  program.Written = program.Settings;
  for (std::string& note : notes) program.Notices.push_back(std::move(note));
  FollowFolders(program);
  return {.View = true};
}

Changes WriteReport(Program& program) {
  const ReportHead head{std::string(ProgramVersion()), program.Resolution};
  if (const auto fault = WriteSettingsReport(program.Where.Root, program.Set, head)) {
    TellFault(program, "The settings report cannot be written.", *fault);
    return {};
  }
  program.Notices.push_back("The settings are listed in " +
                            TextFromPath(program.Where.Root / kSettingsReportName) + ".");
  return {};
}

}  // namespace commands
}  // namespace vexa
