// Menus, bars and dialogs follow the colour of the screen: dark around a dark diagram.
#pragma once

#include "config/view_settings.h"

namespace vexa {

/// Puts the program's windows into the colours that belong to the diagram's.
void FollowScreenColor(const ViewSettings& options);

}  // namespace vexa
