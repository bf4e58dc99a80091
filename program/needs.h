// What menu entries and displays need before they can be chosen: the one place that grays an entry
// and says why.
#pragma once

#include "program/program.h"

namespace vexa {

std::string_view NeedsSounding(const Program& program);
std::string_view NeedsLevels(const Program& program);  // winds alone are enough
std::string_view NeedsUndo(const Program& program);
std::string_view NeedsRedo(const Program& program);
std::string_view NeedsAltered(const Program& program);
std::string_view NeedsSeveral(const Program& program);  // opened together
std::string_view NeedsEarlier(const Program& program);  // in the list of those opened together
std::string_view NeedsLater(const Program& program);
std::string_view NeedsZoom(const Program& program);
std::string_view NeedsOverlay(const Program& program);
std::string_view NeedsComparison(const Program& program);

}  // namespace vexa
