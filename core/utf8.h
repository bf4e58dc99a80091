// Texts from anywhere, checked for being UTF-8: what JSON, SVG and the editor show must be,
// whatever bytes a file held.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vexa {

inline constexpr std::string_view kReplacement = "\xEF\xBF\xBD";  // U+FFFD

/// Bytes of the character that begins a text, 1 to 4; 0 when none does: the text is empty or cut,
/// a byte is no part of one, or the character is a surrogate, beyond U+10FFFF, or written longer
/// than it need be (RFC 3629).
std::size_t Utf8Length(std::string_view text);

bool IsUtf8(std::string_view text);

/// A text of single bytes, Latin-1, as UTF-8.
std::string Utf8FromLatin1(std::string_view bytes);

/// Adds a character by its number; U+FFFD for a number that is none.
void AppendUtf8(char32_t code, std::string& text);

}  // namespace vexa
