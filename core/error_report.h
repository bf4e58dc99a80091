// The one place that turns a fault's number into the message a user reads.
#pragma once

#include <string>
#include <string_view>

#include "core/current_sounding.h"
#include "core/fault.h"
#include "core/interaction.h"

namespace vexa {

inline constexpr std::string_view kErrorBoxTitle = "VEXA";

/// The message of a fault by its number, with the name of the file concerned or the routine at
/// work filled in. Three messages depend on the circumstances: 62 on automatic loading, 2224 on
/// loading a dataset and on there being somebody to read it.
std::string FaultMessage(const CurrentSounding& current, const Fault& fault);

/// Shows the message in a box, the fault's detail on a line of its own below it, keeps the fault
/// as the last one and leaves the message alone as the status text. Fault 58 is a question: its
/// answer is Yes or No, No when nobody is there.
Answer ErrorReport(CurrentSounding& current, const Fault& fault,
                   BoxIcon icon = BoxIcon::Exclamation);

}  // namespace vexa
