// Starts the little of the toolkit that painting needs, without a display.
#pragma once

namespace vexa::cli {

/// Makes the application object, once; fonts and image formats need it.
void StartQt();

}  // namespace vexa::cli
