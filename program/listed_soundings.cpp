#include "program/listed_soundings.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <map>
#include <string_view>
#include <system_error>
#include <utility>

#include "core/files.h"
#include "core/numbers.h"
#include "diagram/title_text.h"
#include "program/commands.h"
#include "program/session_memory.h"

namespace vexa {
namespace {

// A file, and which of its soundings.
std::string KeyOf(const Program& program, std::size_t index) {
  std::string key = TextFromPath(program.Listed[index]);
  if (index < program.ListedIndex.size()) key += "#" + Shortest(program.ListedIndex[index] + 1);
  return key;
}

// The file holds a key and its header in turn.
void WriteHeaders(Program& program) {
  const std::string& name = program.Set.System.HeaderFile;
  if (program.Where.Root.empty() || name.empty()) return;
  std::vector<std::string> texts;
  for (std::size_t i = 0; i < program.ListedHeaders.size(); ++i) {
    texts.push_back(KeyOf(program, i));
    texts.push_back(program.ListedHeaders[i]);
  }
  // The list is a convenience: without it the soundings are stepped through all the same.
  if (const auto fault = WriteList(program.Where.Root, name, texts)) {
    program.Notices.push_back("The header list is not kept: " + fault->Detail);
  }
}

void TakeKeptHeaders(Program& program) {
  const std::vector<std::string> texts =
      ReadList(program.Where.Root, program.Set.System.HeaderFile);
  std::map<std::string_view, std::string_view> kept;
  for (std::size_t i = 0; i + 1 < texts.size(); i += 2) kept[texts[i]] = texts[i + 1];
  for (std::size_t i = 0; i < program.ListedHeaders.size(); ++i) {
    const auto known = kept.find(KeyOf(program, i));
    if (known != kept.end()) program.ListedHeaders[i] = known->second;
  }
}

}  // namespace

void StartHeaders(Program& program, std::vector<std::string> headers) {
  const bool areKnown = headers.size() == program.Listed.size();
  headers.resize(program.Listed.size());
  program.ListedHeaders = std::move(headers);
  if (!areKnown && program.Listed.size() > 1) TakeKeptHeaders(program);
  NoteHeader(program);
}

void NoteHeader(Program& program) {
  if (program.Listed.size() < 2 || program.ListedNow >= program.ListedHeaders.size()) return;
  std::string& header = program.ListedHeaders[program.ListedNow];
  std::string now = diagram::SoundingTitle(program.Current.Record, program.Set);
  if (header == now) return;
  header = std::move(now);
  WriteHeaders(program);
}

bool LoadListed(Program& program, std::size_t index) {
  const int inFile = index < program.ListedIndex.size() ? program.ListedIndex[index] : 0;
  const std::optional<int> locked = program.View.Cursor.Level;
  const double press = locked ? program.Current.Record.Press(*locked) : 0;
  if (!commands::LoadOne(program, program.Listed[index], inFile, true)) return false;
  // A locked cursor stays at its pressure.
  const std::vector<double>& levels = program.Current.Record.Press.Values();
  if (locked && !levels.empty()) {
    const auto nearest = std::ranges::min_element(
        levels, {}, [press](double level) { return std::fabs(level - press); });
    program.View.Cursor.Level = static_cast<int>(nearest - levels.begin()) + 1;
  }
  return true;
}

std::string ListedText(const Program& program, std::size_t index) {
  const std::size_t count = program.Listed.size();
  if (index >= count) return {};
  const bool isKnown =
      index < program.ListedHeaders.size() && !program.ListedHeaders[index].empty();
  return Shortest(static_cast<int>(index) + 1) + "/" + Shortest(static_cast<int>(count)) + "  " +
         (isKnown ? program.ListedHeaders[index] : TextFromPath(program.Listed[index].filename()));
}

std::string ListedNeighbours(const Program& program) {
  constexpr std::size_t kEachWay = 5;
  const std::size_t first = program.ListedNow - std::min(program.ListedNow, kEachWay);
  const std::size_t end = std::min(program.ListedNow + kEachWay + 1, program.Listed.size());
  std::string text;
  for (std::size_t i = first; i < end; ++i) {
    if (!text.empty()) text += '\n';
    text += (i == program.ListedNow ? "> " : "   ") + ListedText(program, i);
  }
  return text;
}

}  // namespace vexa
