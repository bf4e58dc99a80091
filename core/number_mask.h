// Numbers put behind a text by a mask, for tables that have thousands of them.
#pragma once

#include <string>
#include <string_view>

namespace vexa {

/// Puts behind a text what Mask gives.
void AppendMasked(std::string& text, double value, std::string_view mask);

}  // namespace vexa
