// The picture shown while the program starts: the program's name over a sounding on a skewed grid.
#pragma once

#include "picture/picture.h"

namespace vexa {

/// On a page of 480 x 300, one unit a pixel.
Picture StartPicture();

}  // namespace vexa
