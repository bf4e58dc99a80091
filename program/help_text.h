// The help as topics: written ones from the help file, and what the program's own tables know of
// menus, keys, indices, options and formats, set in where a topic asks for it.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/fault.h"
#include "program/program.h"

namespace vexa {

struct HelpTopic {
  std::string Id{};
  std::string Title{};
  std::vector<std::string> Windows{};  // object names of the windows and controls it is about
  std::string Text{};                  // Markdown; links to topics are written "#id"
};

/// The topics of a help file's text. A topic begins with a line "# Title {#id Window ...}"; a line
/// "{{name}}" stands for a generated part: menus, keys, indices, formats, commands or options
/// PLACE. Fault 62 names the line of a heading or part that is not so. The window of a display
/// belongs to the topic that its row names.
Outcome<std::vector<HelpTopic>> ReadHelp(std::string_view text, std::string_view name,
                                         std::span<const DisplayRow> displays = AllDisplays());

/// The help of the program: its help file's topics or, where that cannot be read, a topic that says
/// so and those that the program can write alone.
std::vector<HelpTopic> HelpTopics(const Program& program);

/// The topic of an id; null when there is none.
const HelpTopic* FindTopic(const std::vector<HelpTopic>& topics, std::string_view id);

/// The topic about a window or control by its object name; null when there is none.
const HelpTopic* TopicOf(const std::vector<HelpTopic>& topics, std::string_view window);

}  // namespace vexa
