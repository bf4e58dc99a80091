// The icons of the tool bar and the start page, from the program's own drawings in share/icons,
// which are built in. They are drawn in the ink of the buttons, so that they fit any scheme and any
// scale of the screen.
#pragma once

#include <QIcon>
#include <string_view>

namespace vexa {

/// The icon of this name, "open"; one that draws nothing when there is none.
QIcon IconNamed(std::string_view name);

/// True when the drawing of this name is there and every part of it is understood.
bool IsWholeIcon(std::string_view name);

}  // namespace vexa
