#include "program/help_text.h"

#include <algorithm>

#include "analysis/index_table.h"
#include "config/catalogue.h"
#include "core/files.h"
#include "core/numbers.h"
#include "core/source_text.h"
#include "ingest/decoder.h"
#include "program/menu.h"

namespace vexa {
namespace {

constexpr std::string_view kRecentEntry = "mnuRecentFile";  // five of them; one line tells of all

// A text as a cell of a table: nothing in it is taken as a mark.
std::string Cell(std::string_view text) {
  std::string cell;
  for (const char c : text) {
    if (std::string_view("|*_<>[]`\\").find(c) != std::string_view::npos) cell += '\\';
    cell += c;
  }
  return cell.empty() ? "–" : cell;
}

std::string TableRow(std::initializer_list<std::string_view> cells) {
  std::string row = "|";
  for (const std::string_view cell : cells) row += " " + Cell(cell) + " |";
  return row + "\n";
}

std::string Table(std::initializer_list<std::string_view> heads) {
  std::string text = TableRow(heads) + "|";
  for (std::size_t i = 0; i < heads.size(); ++i) text += "---|";
  return text + "\n";
}

// A caption without the marks of its letter.
std::string Plain(std::string_view caption) {
  std::string plain;
  for (std::size_t i = 0; i < caption.size(); ++i) {
    if (caption[i] == '&' && i + 1 < caption.size()) ++i;
    plain += caption[i];
  }
  return std::string(Trim(plain));
}

std::string MenuPath(std::span<const MenuRow> tree, std::string_view menu) {
  const MenuRow* row = FindEntry(tree, menu);
  if (row == nullptr) return {};
  return (row->In.empty() ? "" : MenuPath(tree, row->In) + " / ") + Plain(row->Caption);
}

std::string Menus(std::string_view, std::span<const MenuRow> tree) {
  std::string text;
  for (const MenuRow& menu : tree) {
    if (!menu.Does.IsMenu()) continue;
    text += "\n## " + MenuPath(tree, menu.Name) +
            "\n\n";  // a list: a table of this length is slow to open
    for (const MenuRow& row : tree) {
      if (row.In != menu.Name || row.Does.IsMenu()) continue;
      const bool isRecent = row.Name.starts_with(kRecentEntry);
      if (isRecent && row.Name.back() != '1') continue;
      text += "- **" + Cell(isRecent ? "1 to 5" : Plain(row.Caption)) + "**";
      if (!row.Key.empty()) text += " (" + Cell(row.Key) + ")";
      text += ": " + Cell(row.Hint) + "\n";
    }
  }
  return text;
}

std::string Keys(std::string_view, std::span<const MenuRow> tree) {
  std::string text = Table({"key", "chooses", "in the menu"});
  for (const MenuRow& row : tree) {
    if (!row.Key.empty()) text += TableRow({row.Key, Plain(row.Caption), MenuPath(tree, row.In)});
  }
  return text;
}

std::string Indices(std::string_view, std::span<const MenuRow>) {
  std::string text;
  for (const analysis::IndexRow& row : analysis::IndexTable()) {
    text += "\n### " + Cell(row.Name) + "\n\nOn the panel: **" + Cell(Trim(row.Label)) + "**";
    if (!row.Unit.empty()) text += ", in " + Cell(row.Unit);
    text += "  \nFormula: " + Cell(row.Formula) + "  \n";
    if (!row.Source.empty()) text += "Source: " + Cell(row.Source) + "\n";
  }
  return text;
}

std::string Formats(std::string_view, std::span<const MenuRow>) {
  std::string text = Table({"format", "usual names"});
  for (const ingest::Decoder& decoder : ingest::Decoders()) {
    text += TableRow({decoder.Name, decoder.FilePatterns});
  }
  return text;
}

std::string OptionsAt(std::string_view place, std::span<const MenuRow>) {
  std::string text = Table({"option", "what it sets", "takes"});
  for (const OptionRow& row : Catalogue()) {
    if (row.Place != place) continue;
    std::string hint(row.Hint);
    if (!row.Unit.empty()) hint += " [" + std::string(row.Unit) + "]";
    text += TableRow({row.Caption.empty() ? row.Key : row.Caption, hint, Accepts(row)});
  }
  return text;
}

struct PartRow {
  std::string_view Name;
  std::string (*Make)(std::string_view argument, std::span<const MenuRow> tree);
};

constexpr PartRow kParts[] = {
    {"menus", Menus},     {"keys", Keys},         {"indices", Indices},
    {"formats", Formats}, {"options", OptionsAt},
};

// "{{name}}" or "{{name argument}}"; empty for a part that is not known.
std::optional<std::string> PartOf(std::string_view line, std::span<const MenuRow> tree) {
  std::string_view inner = line.substr(2, line.size() - 4);
  const std::string_view name = inner.substr(0, inner.find(' '));
  inner.remove_prefix(std::min(inner.size(), name.size() + 1));
  const auto* part = std::ranges::find(kParts, name, &PartRow::Name);
  if (part == std::end(kParts)) return std::nullopt;
  return part->Make(inner, tree);
}

// "# Title {#id Window ...}"
std::optional<HelpTopic> HeadingOf(std::string_view line) {
  const std::size_t brace = line.rfind(" {#");
  if (brace == std::string_view::npos || !line.ends_with('}')) return std::nullopt;
  HelpTopic topic{.Title = std::string(Trim(line.substr(2, brace - 2)))};
  std::string_view words = line.substr(brace + 3, line.size() - brace - 4);
  topic.Id = words.substr(0, words.find(' '));
  for (words.remove_prefix(topic.Id.size()); !Trim(words).empty();) {
    words = Trim(words);
    topic.Windows.emplace_back(words.substr(0, words.find(' ')));
    words.remove_prefix(topic.Windows.back().size());
  }
  if (topic.Id.empty() || topic.Title.empty()) return std::nullopt;
  return topic;
}

// What can be told without the help file.
std::vector<HelpTopic> BareTopics(const std::string& reason, std::span<const DisplayRow> displays) {
  const std::vector<MenuRow> tree = MenuTree(displays);
  return {{"contents",
           "Help",
           {"Sounding"},
           "The written topics of the help are not at hand: " + Cell(reason) + "\n"},
          {"main", "Main menu", {}, Menus({}, tree)},
          {"keys", "Shortcut keys", {}, Keys({}, tree)},
          {"indices", "Indices", {}, Indices({}, tree)}};
}

}  // namespace

Outcome<std::vector<HelpTopic>> ReadHelp(std::string_view text, std::string_view name,
                                         std::span<const DisplayRow> displays) {
  const std::vector<MenuRow> tree = MenuTree(displays);
  const SourceText lines{std::string(name), std::string(text)};
  std::vector<HelpTopic> topics;
  const auto damaged = [&](int line, std::string_view reason) {
    return Fault{kFaultEndOfFile, "ReadHelp", AtLine(lines.Name(), line, reason)};
  };
  for (int i = 1; i <= lines.LineCount(); ++i) {
    const std::string_view line = lines.Line(i);
    if (line.starts_with("# ")) {
      std::optional<HelpTopic> topic = HeadingOf(line);
      if (!topic) return damaged(i, "a topic's heading without its name");
      topics.push_back(std::move(*topic));
    } else if (topics.empty()) {
      if (!Trim(line).empty()) return damaged(i, "text ahead of the first topic");
    } else if (line.starts_with("{{") && line.ends_with("}}")) {
      const std::optional<std::string> part = PartOf(line, tree);
      if (!part) return damaged(i, "a part that is not known");
      topics.back().Text += *part;
    } else {
      topics.back().Text += std::string(line) + "\n";
    }
  }
  if (topics.empty()) return damaged(1, "no topic");
  for (const DisplayRow& display : displays) {
    const auto topic = std::ranges::find(topics, display.Topic, &HelpTopic::Id);
    if (topic != topics.end()) topic->Windows.emplace_back(display.Id);
  }
  return topics;
}

std::vector<HelpTopic> HelpTopics(const Program& program) {
  const std::span<const DisplayRow> displays = program.DisplayTable;
  if (program.HelpFile.empty()) return BareTopics("the help file was not found.", displays);
  const Outcome<std::string> bytes = ReadFile(program.HelpFile);
  if (!bytes) return BareTopics(bytes.Error().Detail, displays);
  Outcome<std::vector<HelpTopic>> topics =
      ReadHelp(bytes.Value(), TextFromPath(program.HelpFile.filename()), displays);
  return topics ? std::move(topics.Value()) : BareTopics(topics.Error().Detail, displays);
}

const HelpTopic* FindTopic(const std::vector<HelpTopic>& topics, std::string_view id) {
  const auto found = std::ranges::find(topics, id, &HelpTopic::Id);
  return found == topics.end() ? nullptr : &*found;
}

const HelpTopic* TopicOf(const std::vector<HelpTopic>& topics, std::string_view window) {
  const auto found = std::ranges::find_if(topics, [window](const HelpTopic& topic) {
    return std::ranges::find(topic.Windows, window) != topic.Windows.end();
  });
  return found == topics.end() ? nullptr : &*found;
}

}  // namespace vexa
