#include "program/session_commands.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <string>
#include <system_error>
#include <utility>

#include "core/error_report.h"
#include "core/files.h"
#include "core/numbers.h"
#include "program/commands.h"
#include "program/edit_commands.h"
#include "program/hodograph_commands.h"

namespace vexa {
namespace {

constexpr std::string_view kListedNow = "listed";
constexpr std::string_view kDiagram = "diagram";
constexpr std::string_view kInFile = "in file";  // which sounding of its file each listed one is
constexpr std::string_view kStamp = "file";      // of the current one: written at s, ns; length
constexpr std::string_view kZoom = "zoom";
constexpr std::string_view kCursor = "cursor";
constexpr std::string_view kLocked = "locked level";
constexpr std::string_view kLines = "lines";
constexpr std::string_view kStorm = "storm motion";  // by hand or not, direction, knots, held

std::string JoinNumbers(const std::vector<double>& numbers) {
  std::string text;
  for (const double number : numbers) text += (text.empty() ? "" : " ") + Shortest(number);
  return text;
}

// Empty unless the whole text is numbers.
std::vector<double> SplitNumbers(std::string_view text) {
  std::vector<double> numbers;
  while (!text.empty()) {
    const std::size_t blank = text.find(' ');
    const std::optional<double> number = ParseNumber(text.substr(0, blank));
    if (!number) return {};
    numbers.push_back(*number);
    text.remove_prefix(blank == std::string_view::npos ? text.size() : blank + 1);
  }
  return numbers;
}

// Large numbers in parts that a double holds exactly.
std::vector<double> NumbersOf(const FileStamp& stamp) {
  using std::chrono::duration_cast;
  const auto since = stamp.Written.time_since_epoch();
  const auto seconds = duration_cast<std::chrono::seconds>(since);
  const auto rest = duration_cast<std::chrono::nanoseconds>(since - seconds);
  return {static_cast<double>(seconds.count()), static_cast<double>(rest.count()),
          static_cast<double>(stamp.Size)};
}

FileStamp StampOfNumbers(const std::vector<double>& numbers) {
  const auto since = std::chrono::seconds(static_cast<std::int64_t>(numbers[0])) +
                     std::chrono::nanoseconds(static_cast<std::int64_t>(numbers[1]));
  using Time = std::filesystem::file_time_type;
  return {Time(std::chrono::duration_cast<Time::duration>(since)),
          static_cast<std::uintmax_t>(numbers[2])};
}

bool KeepsSessions(const Program& program) {
  return !program.Where.Root.empty() && program.Current.Ask != nullptr &&
         !program.Current.Ask->Unattended();
}

Session SessionOf(const Program& program) {
  Session session;
  if (program.Current.FileName.empty()) return session;
  session.Files.push_back(TextFromPath(program.Current.FilePath()));
  std::vector<double> indices;
  for (const SoundingSet::Member& member : program.Listed.Members()) {
    session.Files.push_back(TextFromPath(member.File));
    indices.push_back(member.Index);
  }
  if (program.Doc.History().IsChanged()) session.Edited = program.Current.Record;
  const auto add = [&session](std::string_view key, const std::vector<double>& numbers) {
    session.Settings.emplace_back(key, JoinNumbers(numbers));
  };
  add(kListedNow, {static_cast<double>(program.Listed.Now())});
  add(kDiagram, {static_cast<double>(program.Set.Diagram)});
  add(kInFile, indices);
  if (const auto& stamp = program.Doc.OnDiskStamp()) add(kStamp, NumbersOf(*stamp));
  const ViewState& view = program.View;
  if (view.Zoom) add(kZoom, {view.Zoom->Left, view.Zoom->Top, view.Zoom->Right, view.Zoom->Bottom});
  if (view.Cursor.At) add(kCursor, {view.Cursor.At->X, view.Cursor.At->Y});
  if (const auto level = program.Doc.LockedLevel()) add(kLocked, {static_cast<double>(*level)});
  const auto flag = [](bool on) { return on ? 1.0 : 0.0; };
  add(kLines, {flag(view.Lines.PressHeights), flag(view.Lines.HeightCorrection),
               flag(view.Lines.Contrail), flag(view.Lines.Soaring)});
  const StormEntry storm = EntryOf(program);
  add(kStorm,
      {flag(storm.Mode == Scaling::Manual), storm.Motion.Dir, storm.Motion.Spd, flag(storm.Hold)});
  return session;
}

const std::filesystem::path& SessionFile(Program& program) {
  if (program.OwnSession.File.empty()) program.OwnSession = TakeSessionPlace(program.Where.Root);
  return program.OwnSession.File;
}

// The numbers of a setting; none unless they are as many as expected.
std::vector<double> Setting(const Session& session, std::string_view key,
                            std::optional<std::size_t> count = {}) {
  const auto found =
      std::ranges::find(session.Settings, key, [](const auto& setting) { return setting.first; });
  if (found == session.Settings.end()) return {};
  std::vector<double> numbers = SplitNumbers(found->second);
  if (count && numbers.size() != *count) return {};
  return numbers;
}

int WholeSetting(const Session& session, std::string_view key) {
  const std::vector<double> numbers = Setting(session, key, 1);
  return numbers.empty() ? 0 : ToWhole(numbers.front());
}

// A zoom that shows nothing of the diagram is not taken.
void TakeView(Program& program, const Session& session) {
  ViewState& view = program.View;
  if (const auto zoom = Setting(session, kZoom, 4); !zoom.empty()) {
    const Rect region{zoom[0], zoom[1], zoom[2], zoom[3]};
    const Rect whole{0, 0, 1, 1};
    const bool isPart =
        whole.Contains({region.Left, region.Top}) && whole.Contains({region.Right, region.Bottom});
    if (isPart && region.Width() > 0 && region.Height() > 0) view.Zoom = region;
  }
  if (const auto at = Setting(session, kCursor, 2); !at.empty()) {
    view.Cursor.At = Point{at[0], at[1]};
  }
  program.Doc.Lock(WholeSetting(session, kLocked));  // 0, no level: it stays free
  if (const auto lines = Setting(session, kLines, 4); !lines.empty()) {
    view.Lines = {lines[0] != 0, lines[1] != 0, lines[2] != 0, lines[3] != 0};
  }
  if (const auto storm = Setting(session, kStorm, 4); !storm.empty()) {
    const Scaling mode = storm[0] != 0 ? Scaling::Manual : Scaling::Auto;
    TakeBack(program, {mode, {storm[1], storm[2]}, storm[3] != 0});
  }
}

void TakeList(Program& program, const Session& session) {
  std::vector<SoundingSet::Member> members;
  for (std::size_t i = 1; i < session.Files.size(); ++i) {
    members.push_back({.File = PathFromText(session.Files[i])});
  }
  const std::vector<double> indices = Setting(session, kInFile, members.size());
  for (std::size_t i = 0; i < indices.size(); ++i) {
    members[i].Index = std::max(0, ToWhole(indices[i]));
  }
  program.Listed = SoundingSet(
      std::move(members), static_cast<std::size_t>(std::max(0, WholeSetting(session, kListedNow))));
}

// Nobody is asked which of a file's soundings is wanted: the session knows.
bool LoadAgain(Program& program, const Session& session, const std::filesystem::path& file) {
  const auto pass = program.Gate.Enter();
  if (!pass) return false;
  const std::vector<double> indices = Setting(session, kInFile);
  const auto now = static_cast<std::size_t>(std::max(0, WholeSetting(session, kListedNow)));
  const int index = now < indices.size() ? std::max(0, ToWhole(indices[now])) : 0;
  const auto leave = program.Doc.LeaveUnaltered();
  if (session.Edited) program.Doc.TolerateOrderOnce();
  if (!leave || !commands::LoadOne(program, *leave, file, index)) return false;
  commands::MakeRecentFiles(program);
  return true;
}

Changes TakeUp(Program& program, Session session) {
  Changes changes{.View = true};
  if (session.Files.empty()) return {};
  const std::filesystem::path file = PathFromText(session.Files.front());
  const bool isThere = IsThere(file);
  const bool loaded = (isThere || !session.Edited) && LoadAgain(program, session, file);
  if (session.Edited && loaded) {
    AdoptEdit(program, *std::move(session.Edited), "edits before the crash");
    // The edits are those of the file as it was then.
    if (const auto then = Setting(session, kStamp, 3); !then.empty()) {
      program.Doc.EditedSince(StampOfNumbers(then));
    }
  } else if (session.Edited) {
    AdoptNew(program, *std::move(session.Edited), file);
  }
  // What stands there now is newer than what a check of the file wants corrected.
  if (program.Current.QcFault == 0) program.Doc.TakeCorrection();
  TakeList(program, session);
  TakeView(program, session);
  const int diagram = WholeSetting(session, kDiagram);
  if (diagram >= 0 && diagram <= static_cast<int>(DiagramType::Tephigram)) {
    program.Set.Diagram = static_cast<DiagramType>(diagram);
  }
  changes.Sounding = program.Current.Record.NumTempLevels() > 0;
  return changes;
}

}  // namespace

std::optional<Fault> KeepSession(Program& program) {
  return program.Gate.IsOpen() ? KeepSessionAtEnd(program) : std::nullopt;
}

std::optional<Fault> KeepSessionAtEnd(Program& program) {
  if (!KeepsSessions(program)) return std::nullopt;
  Session session = SessionOf(program);
  // What this run has not written is not this run's to remove.
  if (session.Files.empty() && !program.KeptSession) return std::nullopt;
  const std::filesystem::path& file = SessionFile(program);
  if (file.empty()) return std::nullopt;
  const bool isThere = session.Files.empty() || IsThere(file);
  if (isThere && program.KeptSession && *program.KeptSession == session) return std::nullopt;
  std::optional<Fault> fault =
      session.Files.empty() ? ForgetSession(file) : SaveSession(file, session);
  if (!fault) program.KeptSession = std::move(session);
  return fault;
}

Changes OfferSession(Program& program) {
  if (!KeepsSessions(program)) return {};
  const std::filesystem::path& file = SessionFile(program);
  if (file.empty()) return {};
  SessionReading reading = LoadSession(file);
  if (!reading.Note.empty()) program.Notices.push_back(reading.Note);
  if (!reading.Found || reading.Found->Files.empty()) return {};
  const std::string name = TextFromPath(PathFromText(reading.Found->Files.front()).filename());
  const std::string edits = reading.Found->Edited ? " with changes that were not saved" : "";
  // While the question stands the place is nobody's: neither a timer nor a log-off touches it.
  SessionPlace offered = std::exchange(program.OwnSession, {});
  const Answer answer =
      program.Current.Ask->Ask({.Title = std::string(kErrorBoxTitle),
                                .Text = "VEXA was cut off while it worked on " + name + edits +
                                        ".\nDo you want to go on from there ?\n"
                                        "Cancel asks again at the next start.",
                                .Icon = BoxIcon::Question,
                                .Buttons = BoxButtons::YesNoCancel,
                                .WhenSilent = Answer::Cancel});
  program.OwnSession = std::move(offered);
  if (answer == Answer::Yes) return TakeUp(program, *std::move(reading.Found));
  if (answer == Answer::No) {
    EndSession(program);
  } else {
    program.OwnSession = TakeFreeSessionPlace(program.Where.Root);
  }
  return {};
}

void EndSession(Program& program) {
  if (!KeepsSessions(program) || program.OwnSession.File.empty()) return;
  if (const auto fault = ForgetSession(program.OwnSession.File)) {
    program.Doc.Report(*fault);
  }
  program.KeptSession.reset();
}

}  // namespace vexa
