// The session of a running program: kept while it runs, so that a crash loses no edit, and offered
// when the program starts after one.
#pragma once

#include "program/program.h"

namespace vexa {

inline constexpr int kKeepSessionMs = 20000;

/// Writes files in work, edits and view into the program folder if they changed since the last
/// time. Without a program folder, while a command runs and in an unattended run nothing is
/// written. A fault is the caller's to show.
[[nodiscard]] std::optional<Fault> KeepSession(Program& program);

/// The same before the system ends the program, whatever command waits for the user then.
[[nodiscard]] std::optional<Fault> KeepSessionAtEnd(Program& program);

/// Offers the session that was cut off and takes it up if the user wants it; with No it is
/// forgotten, with Cancel and the Escape key it stays for the next start. An unattended run leaves
/// it.
Changes OfferSession(Program& program);

/// The program ends well: nothing is to be offered at the next start.
void EndSession(Program& program);

}  // namespace vexa
