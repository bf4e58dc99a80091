// Commands that change the sounding in work and those that save it: each change is one step of the
// history and is undone by it; the file on disk changes only on saving.
#pragma once

#include <string>
#include <string_view>

#include "core/sounding_record.h"
#include "program/program.h"

namespace vexa {

/// Takes an edited sounding in place of the one in work, as one step of the history. Nothing
/// changes while a command runs and when the two are equal.
///
/// name  of the step, "delete level 17"; empty: worked out from what differs
Changes AdoptEdit(Program& program, SoundingRecord edited, std::string_view name = {});

/// What differs between two states of a sounding, as a step of the history is called: "delete
/// level 17", "add wind level 3", "change level 2", "edit levels".
std::string EditName(const SoundingRecord& before, const SoundingRecord& after);

/// Takes a sounding that was entered by hand; it has no file yet. Asks first whether changes of the
/// sounding in work are to be saved.
///
/// path  under which it would be saved; empty: a name of its own in the data folder
Changes AdoptNew(Program& program, SoundingRecord entered, const std::filesystem::path& path = {});

/// Asks before a file goes that another program has written; true when it has not, too.
bool MayReplaceOnDisk(Program& program);

/// Before the sounding in work goes: asks whether changes are to be saved, saves them if so. False
/// when the user wants to stay, when saving failed, while a command runs, and where nobody is there
/// to be asked.
bool MayExit(Program& program);

namespace commands {

/// The same from within a command.
std::optional<Document::Leave> MayLeaveSounding(Program& program,
                                                std::string_view title = "Open Sounding");

/// Asks for a name and writes the native format there. A file that is not native is never written
/// over.
Changes SaveAs(Program& program);

/// Thins a sounding of high density; tells when it is none.
Changes FilterSounding(Program& program);

/// Takes the sounding as it was loaded; the edits so far can be had back by Undo.
Changes RestoreSounding(Program& program);

Changes UndoEdit(Program& program);
Changes RedoEdit(Program& program);

}  // namespace commands
}  // namespace vexa
