// A display as one row of a table: what it is called, what it needs, how its picture is drawn and
// what its window offers beside the picture. Menu and keys, the command line's --show, --screenshot
// and plot --display, printing, the restoring at the next start and the help walk that table; no
// other place knows a display.
#pragma once

#include <any>
#include <map>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <typeindex>
#include <vector>

#include "picture/picture.h"
#include "picture/surface.h"

namespace vexa {

namespace diagram {
enum class MultiMode;
}
struct Changes;
struct Options;
struct Program;

/// Says what is lacking before something can be chosen, "needs a sounding"; empty when nothing is.
using Need = std::string_view (*)(const Program&);

enum class ControlKind {
  Button,
  Switch,
  Choice,  // one of the row's words
  Number,
  Motion,  // a button that runs until it is pressed again
};

/// A control beside a display's picture. Its value is a number whatever its kind: 0 or 1 of a
/// switch, the word's place from 0 of a choice.
struct ControlRow {
  std::string_view Name{};  // object name
  std::string_view Text{};
  ControlKind Kind = ControlKind::Button;
  double (*Get)(const Program&) = nullptr;
  /// Carries a value out; that of a button is 1, that of a motion the milliseconds since it was
  /// called last. What it changed beyond this display comes back.
  Changes (*Set)(Program&, double value) = nullptr;
  std::string_view Key{};        // of a button, while the picture has the focus: "Left"
  std::string_view WhileOn{};    // the text of a running motion
  double Least = 0, Most = 100;  // of a number
  std::string_view Unit{};       // behind a number
  std::span<const std::string_view> Words{};
};

/// What a display is drawn from. The options are those of the screen or of a print.
struct DisplayInput {
  const Program& In;
  const Options& Set;
};

/// The one place that says how a display becomes a picture.
using PlotDisplay = Picture (*)(const DisplayInput&, const Surface&);

struct DisplayRow {
  std::string_view Id{};       // of the window, on the command line, in print: "SvrWx"
  std::string_view Title{};    // of the window
  PlotDisplay Plot = nullptr;  // null: not in this version
  Need Needs = nullptr;

  std::string_view Entry{};    // name of its menu entry; empty: it has none
  std::string_view Caption{};  // of the entry
  std::string_view Hint{};     // of the entry
  std::string_view Lacking{};  // what the hint calls it while something is lacking: "(soaring)"
  std::string_view Key{};      // short-cut of the entry
  std::string_view After{};    // the entry that it follows; empty: in the order of the rows
  bool Toggles = false;        // chosen again it closes; else it comes to the front

  std::string_view Also{};     // another name for it on the command line
  std::string_view Heading{};  // above the header of its printed page
  std::string_view Topic{};    // of the help, by its id
  std::string_view Options{};  // the page of the option forms that sets it: "Diagram/Tab 6"
  std::vector<std::string> (*Listing)(const Program&) = nullptr;  // what it says as a text
  std::span<const ControlRow> (*Controls)() = nullptr;
  /// Turns or moves what is shown by a drag of the mouse, in pixels to the right and down.
  void (*Drag)(Program&, double right, double down) = nullptr;
  diagram::MultiMode Mode{};  // other than Single: it shows further soundings beside the first
};

/// The displays of the program.
std::span<const DisplayRow> AllDisplays();

/// What displays keep while the program runs, beside the settings: whose window is up and, by its
/// type, what belongs to one display alone.
class DisplayStates {
 public:
  bool IsUp(std::string_view id) const { return up_.contains(id); }
  void SetUp(std::string_view id, bool isUp) {
    if (isUp) {
      up_.emplace(id);
    } else if (const auto at = up_.find(id); at != up_.end()) {
      up_.erase(at);
    }
  }

  /// The value of this type, made with its defaults when it is first asked for.
  template <class T>
  T& Of() {
    std::any& kept = own_[typeid(T)];
    if (!kept.has_value()) kept = T{};
    return *std::any_cast<T>(&kept);
  }
  template <class T>
  const T& Of() const {
    static const T kDefault{};
    const auto at = own_.find(typeid(T));
    return at == own_.end() ? kDefault : *std::any_cast<T>(&at->second);
  }

 private:
  std::set<std::string, std::less<>> up_{};
  std::map<std::type_index, std::any> own_{};
};

}  // namespace vexa
