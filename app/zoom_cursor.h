// The pointer's shape while a region of the diagram is chosen.
#pragma once

#include <filesystem>
#include <QCursor>

namespace vexa {

/// The cursor file zoom.cur of the program folder or, where there is none that can be read, a
/// magnifying glass of our own.
QCursor ZoomCursor(const std::filesystem::path& root);

}  // namespace vexa
