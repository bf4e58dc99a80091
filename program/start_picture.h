// The picture shown while the program starts: the program's name over a sounding on a skewed grid.
#pragma once

#include "picture/picture.h"

namespace vexa {

/// On a page of 480 x 300, one unit a pixel.
Picture StartPicture();

/// False for a bitmap file that is shorter than it says; true for anything else.
bool IsWholeBitmap(std::string_view bytes);

}  // namespace vexa
