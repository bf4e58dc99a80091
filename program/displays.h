// Finding, drawing and opening the displays of a program's table.
#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "program/display_row.h"
#include "program/program.h"

namespace vexa {

/// The display of this id; null when there is none.
const DisplayRow* FindDisplay(std::span<const DisplayRow> displays, std::string_view id);

/// The built display of an id or another name of it, whatever the case of its letters; null when
/// there is none.
const DisplayRow* DisplayNamed(std::span<const DisplayRow> displays, std::string_view word);

/// The ids of those that this version has.
std::vector<std::string_view> DisplayNames(std::span<const DisplayRow> displays);

/// What a display lacks now, after its name: "Winter needs a sounding"; empty when it can be drawn.
std::string LackOf(const DisplayRow& row, const Program& program);

/// Its picture of the current sounding for a surface, under the program's options or those of a
/// print.
Picture DrawDisplay(const DisplayRow& row, const Program& program, const Surface& on);
Picture DrawDisplay(const DisplayRow& row, const Program& program, const Surface& on,
                    const Options& set);

/// The display that the main window shows: the first, or the first of the mode in force.
const DisplayRow& DiagramNow(const Program& program);

/// What a picture or print of the current sounding is proposed to be called: after its file and,
/// unless empty, the display; without an ending, which the dialog's filter gives.
std::string PictureName(const Program& program, std::string_view display = {});

/// Puts its window up; one that toggles goes down when it was up.
void OpenDisplay(Program& program, const DisplayRow& row);

}  // namespace vexa
