// The main window's menu tree as a table: where an entry stands, its name, its caption and what it
// does. The window builds its menus from this and knows no entry by name.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "program/display_row.h"
#include "program/program.h"

namespace vexa {

/// What an entry does: it runs a function of the program, opens a window of the application, shows
/// a display, or chooses a layout of the diagram. An entry that does none of these heads a menu.
struct Action {
  constexpr Action() = default;
  constexpr Action(Changes (*run)(Program&), std::string_view opens = {})
      : Run(run), Opens(opens) {}

  bool IsMenu() const {
    return Run == nullptr && Opens.empty() && Display.empty() && Layout.empty() && IsBuilt;
  }

  Changes (*Run)(Program&) = nullptr;
  std::string_view Opens{};    // the window's name, once Run is through
  std::string_view At{};       // its page or topic
  std::string_view Display{};  // id
  std::string_view Layout{};   // name of the diagram's layout that is chosen
  bool IsBuilt = true;         // false: not in this version
};

constexpr Action Opens(std::string_view window, std::string_view at = {}) {
  Action action;
  action.Opens = window;
  action.At = at;
  return action;
}

constexpr Action ShowsDisplay(std::string_view id) {
  Action action;
  action.Display = id;
  return action;
}

/// How an entry shows the state of the program, and what it needs.
struct EntryState {
  bool LineAbove = false;                       // a separator before it
  bool (*IsChecked)(const Program&) = nullptr;  // entries that show a choice
  bool IsSwitch = false;                        // checked by itself, not one of its menu's choices
  /// What it shows in place of its caption; empty: it is hidden.
  std::string (*Shows)(const Program&) = nullptr;
  Need Needs = nullptr;
  std::string_view Lacking{};  // what the hint calls it while it cannot be chosen: "(undo)"

  // For writing the table: each gives a copy with one more member set.
  constexpr EntryState Below() const {
    EntryState with = *this;
    with.LineAbove = true;
    return with;
  }
  constexpr EntryState Choice(bool (*isChecked)(const Program&)) const {
    EntryState with = *this;
    with.IsChecked = isChecked;
    return with;
  }
  constexpr EntryState Switch(bool (*isChecked)(const Program&)) const {
    EntryState with = Choice(isChecked);
    with.IsSwitch = true;
    return with;
  }
  constexpr EntryState Named(std::string (*shows)(const Program&)) const {
    EntryState with = *this;
    with.Shows = shows;
    return with;
  }
  constexpr EntryState Wants(Need need, std::string_view lacking) const {
    EntryState with = *this;
    with.Needs = need;
    with.Lacking = lacking;
    return with;
  }
};

struct MenuRow {
  std::string_view In{};       // name of the menu it stands in; empty: the menu bar
  std::string_view Name{};     // of the menu or entry
  std::string_view Caption{};  // "&" before the letter that chooses it
  Action Does{};
  std::string_view Hint{};  // shown in the status bar
  std::string_view Key{};   // short-cut, "Ctrl+O"
  EntryState State{};
};

/// Every menu and entry in order, those of the program's displays and layouts among them; a menu
/// stands ahead of its entries.
std::vector<MenuRow> MenuTree(std::span<const DisplayRow> displays = AllDisplays());

/// The entry of a name; null when there is none.
const MenuRow* FindEntry(std::span<const MenuRow> tree, std::string_view name);

/// Whether an entry can be chosen now: displays and tables of a sounding need one to be loaded.
bool IsEnabled(const MenuRow& row, const Program& program);

/// Whether an entry bears a check mark now, empty for one that never does.
std::optional<bool> IsChecked(const MenuRow& row, const Program& program);

/// What the status bar shows of an entry: its hint or, while it cannot be chosen, what it lacks:
/// "(severe weather) needs a sounding".
std::string HintOf(const MenuRow& row, const Program& program);

}  // namespace vexa
