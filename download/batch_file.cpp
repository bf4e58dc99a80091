#include "download/batch_file.h"

#include <algorithm>
#include <iterator>
#include <optional>

#include "core/key_lines.h"
#include "core/numbers.h"
#include "core/source_text.h"

namespace vexa::download {
namespace {

constexpr std::string_view kFormats[] = {"as received", "native"};
constexpr std::string_view kFailing[] = {"skip", "next source", "stop"};
constexpr std::string_view kSwitch[] = {"off", "on"};
constexpr int kLongestDelayMin = 1440;

// Sets one of several by its word; false for any other word.
template <class T, std::size_t count>
bool Choose(std::string_view word, const std::string_view (&words)[count], T& into) {
  const auto* found = std::ranges::find(words, word);
  if (found == std::end(words)) return false;
  into = static_cast<T>(found - std::begin(words));
  return true;
}

template <class T, std::size_t count>
std::string Word(const std::string_view (&words)[count], T value) {
  return std::string(words[static_cast<std::size_t>(value)]);
}

bool ReadSourceNames(std::string_view text, BatchSettings& into) {
  into.Sources.clear();
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('|'), text.size());
    if (const std::string_view name = Trim(text.substr(0, end)); !name.empty()) {
      into.Sources.emplace_back(name);
    }
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return true;
}

std::string WriteSourceNames(const BatchSettings& settings) {
  std::string names;
  for (const std::string& name : settings.Sources) names += (names.empty() ? "" : " | ") + name;
  return names;
}

bool ReadDelay(std::string_view text, BatchSettings& into) {
  const std::optional<int> minutes = ParseWhole(text);
  if (!minutes || *minutes < 0 || *minutes > kLongestDelayMin) return false;
  into.DelayMin = *minutes;
  return true;
}

struct Row {
  std::string_view Key;
  bool (*Read)(std::string_view text, BatchSettings& into);
  std::string (*Write)(const BatchSettings& settings);
};

constexpr Row kRows[] = {
    {"sources", ReadSourceNames, WriteSourceNames},
    {"stations",
     [](std::string_view text, BatchSettings& into) {
       into.Stations = text;
       return true;
     },
     [](const BatchSettings& settings) { return settings.Stations; }},
    {"hours",
     [](std::string_view text, BatchSettings& into) {
       into.Hours = text;
       return true;
     },
     [](const BatchSettings& settings) { return settings.Hours; }},
    {"delay", ReadDelay, [](const BatchSettings& settings) { return Shortest(settings.DelayMin); }},
    {"folder",
     [](std::string_view text, BatchSettings& into) {
       into.Folder = text;
       return true;
     },
     [](const BatchSettings& settings) { return settings.Folder; }},
    {"format",
     [](std::string_view text, BatchSettings& into) { return Choose(text, kFormats, into.Format); },
     [](const BatchSettings& settings) { return Word(kFormats, settings.Format); }},
    {"on failure",
     [](std::string_view text, BatchSettings& into) {
       return Choose(text, kFailing, into.Failing);
     },
     [](const BatchSettings& settings) { return Word(kFailing, settings.Failing); }},
    {"beeper",
     [](std::string_view text, BatchSettings& into) { return Choose(text, kSwitch, into.Beeper); },
     [](const BatchSettings& settings) { return Word(kSwitch, settings.Beeper); }},
};

}  // namespace

BatchReading ReadBatchSettings(std::string_view text, std::string_view name) {
  BatchReading reading;
  for (const KeyLines::Entry& entry : KeyLines(text).Entries()) {
    const auto* row = std::ranges::find(kRows, entry.Key, &Row::Key);
    if (row != std::end(kRows) && row->Read(entry.Value, reading.Settings)) continue;
    reading.Notes.push_back(AtLine(name, entry.Line, '"' + entry.Whole + "\" is not understood"));
  }
  return reading;
}

std::string WriteBatchSettings(const BatchSettings& settings, std::string_view before) {
  KeyLines lines(before.empty() ? "# What the batch window was last set to.\n" : before);
  for (const Row& row : kRows) lines.Set(row.Key, row.Write(settings));
  return lines.Text();
}

}  // namespace vexa::download
