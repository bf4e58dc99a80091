// Text of the program as the toolkit has it.
#pragma once

#include <QString>
#include <string_view>

namespace vexa {

inline QString ToQString(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace vexa
