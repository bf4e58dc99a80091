#include "program/listed_soundings.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <string_view>
#include <system_error>
#include <utility>

#include "core/files.h"
#include "core/numbers.h"
#include "diagram/title_text.h"
#include "program/commands.h"
#include "program/hodograph_commands.h"
#include "program/session_memory.h"
#include "sounding/sounding_walk.h"

namespace vexa {
namespace {

// A file, and which of its soundings.
std::string KeyOf(const SoundingSet::Member& member) {
  return TextFromPath(member.File) + "#" + Shortest(member.Index + 1);
}

// The file holds a key and its header in turn.
void WriteHeaders(Program& program) {
  const std::string& name = program.Set.System.HeaderFile;
  if (program.Where.Root.empty() || name.empty()) return;
  std::vector<std::string> texts;
  for (const SoundingSet::Member& member : program.Listed.Members()) {
    texts.push_back(KeyOf(member));
    texts.push_back(member.Title);
  }
  // The list is a convenience: without it the soundings are stepped through all the same.
  if (const auto fault = WriteList(program.Where.Root, name, texts)) {
    program.Notices.push_back("The header list is not kept: " + fault->Detail);
  }
}

void TakeKeptHeaders(Program& program) {
  const std::vector<std::string> texts =
      ReadList(program.Where.Root, program.Set.System.HeaderFile, &program.Notices);
  std::map<std::string_view, std::string_view> kept;
  for (std::size_t i = 0; i + 1 < texts.size(); i += 2) kept[texts[i]] = texts[i + 1];
  for (std::size_t i = 0; i < program.Listed.Size(); ++i) {
    const SoundingSet::Member& member = program.Listed.At(i);
    const auto known = kept.find(KeyOf(member));
    if (member.Title.empty() && known != kept.end()) {
      program.Listed.SetTitle(i, std::string(known->second));
    }
  }
}

// Takes the title of the sounding in work into the list and writes the list when it has grown. A
// single sounding has no list.
void NoteTitle(Program& program) {
  if (program.Listed.Size() < 2) return;
  std::string title = diagram::SoundingTitle(program.Current.Record, program.Set);
  if (program.Listed.At(program.Listed.Now()).Title == title) return;
  program.Listed.SetTitle(program.Listed.Now(), std::move(title));
  WriteHeaders(program);
}

// The pressure of a locked cursor, which stays there when another sounding of the list comes.
std::optional<double> LockedPress(const Program& program) {
  const std::optional<int>& level = program.Doc.LockedLevel();
  if (!level) return std::nullopt;
  return program.Doc.Record().Press(*level);
}

// What comes with another sounding of the list, its place in the list included.
void TurnTo(Program& program, std::size_t index, const std::optional<double>& lockedPress) {
  program.View.Cursor = {};
  if (lockedPress) program.Doc.LockNear(*lockedPress);
  program.Listed.GoTo(index);
  NoteTitle(program);
}

}  // namespace

LoadPolicy PolicyOf(const Program& program) {
  return {.Stations = &program.Stations, .Ask = program.Current.Ask};
}

std::vector<SharedSounding> SoundingsBeside(const Program& program, std::size_t most) {
  const LoadPolicy nobodyAsked{.Stations = &program.Stations, .Ask = nullptr};
  SoundingReader reader;
  std::vector<SharedSounding> beside = program.Others;
  for (std::size_t i = 0; i < program.Listed.Size() && beside.size() < most; ++i) {
    if (i == program.Listed.Now()) continue;
    Outcome<SharedSounding> listed = program.Listed.Get(i, nobodyAsked, reader);
    if (listed) beside.push_back(std::move(listed.Value()));
  }
  if (beside.size() > most) beside.resize(most);
  return beside;
}

std::vector<SoundingSet::Member> MembersOf(const std::filesystem::path& file) {
  Outcome<std::vector<ingest::SourceEntry>> listed = ListOf(file);
  if (!listed) return {{.File = file}};
  std::vector<SoundingSet::Member> members;
  for (ingest::SourceEntry& entry : listed.Value()) {
    members.push_back({file, static_cast<int>(members.size()), std::move(entry.Title)});
  }
  if (members.size() < 2) return {{.File = file}};
  return members;
}

void ListSoundings(Program& program, SoundingSet listed) {
  program.Listed = std::move(listed);
  if (program.Listed.Size() > 1) TakeKeptHeaders(program);
  NoteTitle(program);
}

bool LoadListed(Program& program, Document::Leave leave, std::size_t index) {
  const std::optional<double> locked = LockedPress(program);
  const SoundingSet::Member& member = program.Listed.At(index);
  if (!commands::LoadOne(program, leave, member.File, member.Index, true)) return false;
  TurnTo(program, index, locked);
  return true;
}

void TakeListed(Program& program, Document::Leave leave, std::size_t index,
                const AnalysedSounding& listed) {
  const std::optional<double> locked = LockedPress(program);
  program.Doc.Take(leave, {.From = listed.From(),
                           .Record = listed.Record(),
                           .Notes = listed.Notes(),
                           .Finding = listed.Finding()});
  EndStormMotion(program);
  TurnTo(program, index, locked);
}

std::string ListedText(const Program& program, std::size_t index) {
  const std::size_t count = program.Listed.Size();
  if (index >= count) return {};
  const SoundingSet::Member& member = program.Listed.At(index);
  return Shortest(static_cast<int>(index) + 1) + "/" + Shortest(static_cast<int>(count)) + "  " +
         (member.Title.empty() ? TextFromPath(member.File.filename()) : member.Title);
}

std::string ListedNeighbours(const Program& program) {
  constexpr std::size_t kEachWay = 5;
  const std::size_t now = program.Listed.Now();
  const std::size_t first = now - std::min(now, kEachWay);
  const std::size_t end = std::min(now + kEachWay + 1, program.Listed.Size());
  std::string text;
  for (std::size_t i = first; i < end; ++i) {
    if (!text.empty()) text += '\n';
    text += (i == now ? "> " : "   ") + ListedText(program, i);
  }
  return text;
}

}  // namespace vexa
