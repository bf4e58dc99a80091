// The main window's menu tree as a table: where an entry stands, its name, its caption and the
// command behind it. The window builds its menus from this and knows no entry by name.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "program/program.h"

namespace vexa {

struct MenuRow {
  std::string_view In{};         // name of the menu it stands in; empty: the menu bar
  std::string_view Name{};       // of the menu or entry
  std::string_view Caption{};    // "&" before the letter that chooses it
  Command Does = Command::None;  // None: a menu
  std::string_view Hint{};       // shown in the status bar
  std::string_view Key{};        // short-cut, "Ctrl+O"
  bool LineAbove = false;        // a separator before it
  bool (*IsChecked)(const Program&) = nullptr;  // entries that show a choice
  /// What an entry shows in place of its caption; empty: it is hidden.
  std::string (*Shows)(const Program&) = nullptr;
  bool IsSwitch = false;  // checked by itself, not one of its menu's choices
};

/// Whether an entry can be chosen now: displays and tables of a sounding need one to be loaded.
bool IsEnabled(const MenuRow& row, const Program& program);

/// What the status bar shows of an entry: its hint or, while it cannot be chosen, what it lacks:
/// "(severe weather) needs a sounding".
std::string HintOf(const MenuRow& row, const Program& program);

/// Every menu and entry in order; a menu stands ahead of its entries.
std::span<const MenuRow> MenuTree();

}  // namespace vexa
