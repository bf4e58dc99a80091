// The soundings opened together: their headers, as far as they have been read, and the file that
// keeps them from one session to the next.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "program/program.h"

namespace vexa {

/// Makes a new list of headers for the soundings just chosen; `headers` are those known already,
/// one a sounding, or none at all. What an earlier session noted of the same files is taken over.
void StartHeaders(Program& program, std::vector<std::string> headers);

/// Takes the header of the sounding in work into the list and writes the list to the header file
/// when it has grown. A single sounding has no list.
void NoteHeader(Program& program);

/// Loads a listed sounding, with the checks and their boxes; false when it did not load.
bool LoadListed(Program& program, std::size_t index);

/// "3/12  WHITMAN // 14 JUN 06 / 19:00 UTC", or with the file name in place of a header not yet
/// read.
std::string ListedText(const Program& program, std::size_t index);

/// ListedText of the sounding in work and its neighbours, one a line; the current one is marked.
std::string ListedNeighbours(const Program& program);

}  // namespace vexa
