// The soundings opened together: their headers, as far as they have been read, and the file that
// keeps them from one session to the next.
#pragma once

#include <cstddef>
#include <filesystem>
#include <limits>
#include <string>
#include <vector>

#include "program/program.h"

namespace vexa {

/// What the program's own stations and user give to loading.
LoadPolicy PolicyOf(const Program& program);

/// Every sounding of a file of several with its title; the file alone where it holds one or cannot
/// be read.
std::vector<SoundingSet::Member> MembersOf(const std::filesystem::path& file);

/// The soundings just chosen, of which the one in work is one. Titles that are not known yet are
/// taken over from an earlier session's list.
void ListSoundings(Program& program, SoundingSet listed);

/// Puts a listed sounding in work, with the checks and their boxes; false when it did not load. A
/// locked cursor stays at its pressure.
bool LoadListed(Program& program, Document::Leave leave, std::size_t index);

/// The same with one that was loaded before.
void TakeListed(Program& program, Document::Leave leave, std::size_t index,
                const AnalysedSounding& listed);

/// The soundings that were opened with the one in work, which is not among them: those of an
/// overlay or a comparison, then the listed ones. What cannot be read is left out here; it is told
/// of when it is stepped to.
std::vector<SharedSounding> SoundingsBeside(
    const Program& program, std::size_t most = std::numeric_limits<std::size_t>::max());

/// "3/12  WHITMAN // 14 JUN 06 / 19:00 UTC", or with the file name in place of a header not yet
/// read.
std::string ListedText(const Program& program, std::size_t index);

/// ListedText of the sounding in work and its neighbours, one a line; the current one is marked.
std::string ListedNeighbours(const Program& program);

}  // namespace vexa
