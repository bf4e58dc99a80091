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

/// Takes a sounding that was entered by hand, under a name of its own; it has no file yet.
Changes AdoptNew(Program& program, SoundingRecord entered);

/// Whether the sounding in work differs from what its file holds.
bool IsAltered(const Program& program);

/// Of a file as it is now; empty when there is none.
std::optional<FileStamp> StampOf(const std::filesystem::path& path);

/// The sounding in work is what its file holds now.
void MarkOnDisk(Program& program);

/// Whether another program has written the file since then.
bool ChangedOnDisk(const Program& program);

/// Asks before a file goes that another program has written; true when it has not, too.
bool MayReplaceOnDisk(Program& program);

/// Before the sounding in work goes: asks whether changes are to be saved, saves them if so. False
/// when the user wants to stay, when saving failed, and while a command runs. Unattended runs
/// leave without saving.
bool MayExit(Program& program);

namespace commands {

/// The same from within a command.
bool MayLeaveSounding(Program& program, std::string_view title = "Open Sounding");

/// Asks for a name and writes the native format there. A file that is not native is never written
/// over.
Changes SaveAs(Program& program);

/// Thins a sounding of high density; tells when it is none.
Changes FilterSounding(Program& program);

/// Takes the sounding as it was loaded; the edits so far can be had back by Undo.
Changes RestoreSounding(Program& program);
bool CanRestore(const Program& program);

Changes UndoEdit(Program& program);
Changes RedoEdit(Program& program);

}  // namespace commands
}  // namespace vexa
