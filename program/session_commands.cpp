#include "program/session_commands.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <system_error>
#include <utility>

#include "core/error_report.h"
#include "core/files.h"
#include "core/numbers.h"
#include "program/edit_commands.h"

namespace vexa {
namespace {

constexpr std::string_view kListedNow = "listed";
constexpr std::string_view kDiagram = "diagram";

bool KeepsSessions(const Program& program) {
  return !program.Where.Root.empty() && program.Current.Ask != nullptr &&
         !program.Current.Ask->Unattended();
}

Session SessionOf(const Program& program) {
  Session session;
  if (program.Current.FileName.empty()) return session;
  session.Files.push_back(TextFromPath(program.Current.FilePath()));
  for (const std::filesystem::path& path : program.Listed) {
    session.Files.push_back(TextFromPath(path));
  }
  if (program.History.IsChanged()) session.Edited = program.Current.Record;
  session.Settings = {{std::string(kListedNow), Shortest(static_cast<int>(program.ListedNow))},
                      {std::string(kDiagram), Shortest(static_cast<int>(program.Set.Diagram))}};
  return session;
}

int Setting(const Session& session, std::string_view key) {
  const auto found =
      std::ranges::find(session.Settings, key, [](const auto& setting) { return setting.first; });
  return found == session.Settings.end() ? 0 : ParseWhole(found->second).value_or(0);
}

void TakeList(Program& program, const Session& session) {
  program.Listed.clear();
  for (std::size_t i = 1; i < session.Files.size(); ++i) {
    program.Listed.push_back(PathFromText(session.Files[i]));
  }
  const auto now = static_cast<std::size_t>(std::max(0, Setting(session, kListedNow)));
  program.ListedNow = now < program.Listed.size() ? now : 0;
}

Changes TakeUp(Program& program, Session session) {
  Changes changes{.View = true};
  if (session.Files.empty()) return {};
  const std::filesystem::path file = PathFromText(session.Files.front());
  std::error_code ignored;
  const bool isThere = std::filesystem::exists(file, ignored);
  const bool loaded = (isThere || !session.Edited) && OpenSoundings(program, {file}).Sounding;
  if (session.Edited && loaded) {
    AdoptEdit(program, *std::move(session.Edited), "edits before the crash");
  } else if (session.Edited) {
    AdoptNew(program, *std::move(session.Edited));
    program.Current.FileName = TextFromPath(file.filename());
    program.Current.DataFolder = file.parent_path();
  }
  // What stands there now is newer than what a check of the file wants corrected.
  if (program.Current.QcFault == 0) program.ToCorrect.reset();
  TakeList(program, session);
  const int diagram = Setting(session, kDiagram);
  if (diagram >= 0 && diagram <= static_cast<int>(DiagramType::Tephigram)) {
    program.Set.Diagram = static_cast<DiagramType>(diagram);
  }
  changes.Sounding = program.Current.Record.NumTempLevels() > 0;
  return changes;
}

}  // namespace

std::optional<Fault> KeepSession(Program& program) {
  if (!KeepsSessions(program) || !program.Gate.IsOpen()) return std::nullopt;
  Session session = SessionOf(program);
  if (program.KeptSession && *program.KeptSession == session) return std::nullopt;
  std::optional<Fault> fault = session.Files.empty() ? ForgetSession(program.Where.Root)
                                                     : SaveSession(program.Where.Root, session);
  if (!fault) program.KeptSession = std::move(session);
  return fault;
}

Changes OfferSession(Program& program) {
  if (!KeepsSessions(program)) return {};
  SessionReading reading = LoadSession(program.Where.Root);
  if (!reading.Note.empty()) program.Notices.push_back(reading.Note);
  if (!reading.Found || reading.Found->Files.empty()) return {};
  const std::string name = TextFromPath(PathFromText(reading.Found->Files.front()).filename());
  const std::string edits = reading.Found->Edited ? " with changes that were not saved" : "";
  const Answer answer =
      program.Current.Ask->Ask({.Title = std::string(kErrorBoxTitle),
                                .Text = "VEXA was cut off while it worked on " + name + edits +
                                        ".\nDo you want to go on from there ?",
                                .Icon = BoxIcon::Question,
                                .Buttons = BoxButtons::YesNo,
                                .WhenSilent = Answer::No});
  if (answer == Answer::Yes) return TakeUp(program, *std::move(reading.Found));
  EndSession(program);
  return {};
}

void EndSession(Program& program) {
  if (!KeepsSessions(program)) return;
  if (const auto fault = ForgetSession(program.Where.Root)) ErrorReport(program.Current, *fault);
  program.KeptSession.reset();
}

}  // namespace vexa
