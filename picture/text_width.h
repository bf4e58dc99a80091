// How wide texts are, without asking a font: by the published widths of the Helvetica family, which
// the sans-serif faces that the painters ask for share, and the one width of the fixed faces.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "picture/picture.h"

namespace vexa {

/// Width of a UTF-8 text in drawing units at a letter size. Letters beyond ASCII count as a digit.
double TextWidth(std::string_view text, double size, bool bold = false, Face face = Face::Sans);

/// The text, cut with an ellipsis where it is wider than the room; empty where not even one letter
/// and the ellipsis fit.
std::string Elided(std::string_view text, double size, double room, bool bold = false);

/// A bold title as it finds room.
struct FittedTitle {
  std::string Text{};
  double Size = 0;  // of its letters
};

/// A sounding's title, "station  hour and date": a long one is written a step smaller, and where
/// that is not enough the station is cut before the date is.
FittedTitle FitTitle(std::string_view title, double room);

/// The text in lines no wider than the room, broken at blanks; a word that is wider is cut.
std::vector<std::string> Wrapped(std::string_view text, double size, double room);

}  // namespace vexa
