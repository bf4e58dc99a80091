// The displays that can be printed, as a table: what each is called among the choices of the print
// window, when there is something of it, and its picture under the options of the print.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "picture/picture.h"
#include "picture/surface.h"
#include "program/program.h"

namespace vexa {

struct PrintDisplay {
  std::string_view Name{};
  Picture (*Draw)(const Program& program, const Options& set, const Surface& on) = nullptr;
  std::string_view Heading{};  // above the header of its page; empty: none
};

/// The heading of a display's page by its name or its window's.
std::string_view PrintHeading(std::string_view name);

/// The displays that the program has something to show of now, the diagram first.
std::vector<PrintDisplay> PrintDisplays(const Program& program);

/// The diagram as the window shows it, composed for a surface.
Picture ShownDiagram(const Program& program, const Surface& on);

/// The names of all displays, those too that there is nothing of now.
std::vector<std::string_view> AllPrintDisplays();

/// The mode of a display that shows further soundings beside the first; empty for any other.
std::optional<diagram::MultiMode> ModeOfDisplay(std::string_view name);

/// The options under which a display is printed: on white paper, with dark lines where wanted.
Options PrintOptions(const Program& program, bool darkLines);

}  // namespace vexa
