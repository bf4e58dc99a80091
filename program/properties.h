// The properties of the sounding in work: where it comes from and what it holds.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "program/program.h"

namespace vexa {

/// Labels with their values, in the order of the window.
std::vector<std::pair<std::string, std::string>> PropertiesOf(const Program& program);

}  // namespace vexa
