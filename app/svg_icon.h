// The icons of the tool bar and the start page, from the program's own drawings in share/icons,
// which are built in. They are drawn in the ink of the buttons, so that they fit any scheme and any
// scale of the screen.
#pragma once

#include <QIcon>
#include <string_view>

namespace vexa {

/// The icon of this name, "open"; one that draws nothing when there is none or a part
/// of it is not understood.
QIcon IconNamed(std::string_view name);

}  // namespace vexa
