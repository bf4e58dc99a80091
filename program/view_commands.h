// Commands that change how the diagram is looked at: other soundings beside the one in work, lines
// over it, the part of it that is shown, and the cursor.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/fault.h"
#include "diagram/cursor_marks.h"
#include "picture/page_layouts.h"
#include "program/program.h"

namespace vexa {

/// The diagram as the window shows it, under these options and composed for a surface: the part,
/// the lines over it, the boxes of its layout and, where the mode has them, the other soundings. In
/// the mode of the view unless another one is given; empty when the user stopped the work.
std::optional<diagram::SoundingPlot> PlotShown(const Program& program, const Options& set,
                                               const Surface& on, Progress progress = {},
                                               std::optional<diagram::MultiMode> mode = {});

/// The layout of a first start.
inline constexpr std::string_view kFirstLayout = "forecaster";

/// The layout of the diagram's page: the chosen one, or the first of the table.
const LayoutRow& LayoutInForce(const Program& program);
/// The layout of a name; the fault says which there are.
Outcome<const LayoutRow*> LayoutNamed(const std::string& name);
/// Chooses a layout by its name and keeps it among the settings; one that is not known is passed
/// over.
Changes ChooseLayout(Program& program, std::string_view name);

/// Shows a region chosen on the page; the proportions of the diagram stay.
Changes ZoomInSizer(Program& program, const Rect& chosen);
/// Enlarges by a factor (reduces below 1) about a place on the page.
Changes ZoomBy(Program& program, Point about, double factor);
/// Moves what is shown by a distance on the page; nothing while the whole diagram is shown.
Changes Pan(Program& program, double dx, double dy);

/// The cursor as the diagram draws it, with the words of a locked level.
diagram::CursorState CursorShown(const Program& program);
/// Puts the cursor where the user clicked: freely, or locked to the data of the nearest level. A
/// locked cursor stays until the diagram is refreshed; trying to place another tells so.
void CursorSetup(Program& program, Point at);
/// Takes it away, free or locked.
void RemoveCursor(Program& program);
/// Moves a locked cursor up (1) or down (-1) by a level; false without one.
bool StepCursor(Program& program, int step);
/// From the free cursor to the locked one or back; gives the new mode's name.
std::string SwitchCursor(Program& program);
/// The level of a locked cursor in words: pressure, height, temperature, dew point, wind.
std::string CursorDataLabels(const Program& program, int level);

namespace commands {

/// Draws soundings over the one in work; what cannot be read or is doubtful is told and left out.
Changes OverlayMembers(Program& program, const std::vector<SoundingSet::Member>& soundings);

/// Draws anew and takes the cursor away.
Changes DrawAgain(Program& program);

template <DiagramType kType>
Changes ChooseDiagram(Program& program) {
  if (program.Set.Diagram == kType) return {};
  program.Set.Diagram = kType;
  return {.View = true};
}

/// Back to one sounding: no comparison, no overlay, no loop.
Changes ShowAlone(Program& program);
Changes ZoomOutSizer(Program& program);

/// Chosen a second time, both end what they began.
Changes CompareAnother(Program& program);
Changes OverlaySeveral(Program& program);

Changes ToggleIsa(Program& program);
/// The file REFERENCE.DAT of the program folder, else the file that the user chooses.
Changes ToggleReference(Program& program);

template <bool diagram::ExtraLines::*Line>
Changes ToggleLine(Program& program) {
  program.View.Lines.*Line = !(program.View.Lines.*Line);
  return {.View = true};
}

}  // namespace commands
}  // namespace vexa
