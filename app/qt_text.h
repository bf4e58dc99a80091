// Text of the program as the toolkit has it.
#pragma once

#include <QString>
#include <string_view>

#include "core/utf8.h"

namespace vexa {

/// Bytes that are no UTF-8, those of an old file's name, are read as Latin-1.
inline QString ToQString(std::string_view text) {
  const auto size = static_cast<qsizetype>(text.size());
  return IsUtf8(text) ? QString::fromUtf8(text.data(), size)
                      : QString::fromLatin1(text.data(), size);
}

}  // namespace vexa
