// Fronts of the sounding in work: the front that its winds show or that the user chose, its
// display, its marks on the diagram, and the fronts of several soundings of one station in time.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "diagram/sounding_plot.h"
#include "fronts/front_plot.h"
#include "program/display_row.h"
#include "program/program.h"

namespace vexa {

/// What the display keeps while the program runs.
struct FrontState {
  std::optional<fronts::HeldZone> Zone{};  // chosen by hand, or held
  std::string Of{};                        // the sounding for which it was chosen
  bool ImageMode = false;                  // a click on the picture chooses a layer
};

/// The zone in force in place of the strongest: held, or chosen for this very sounding.
std::optional<fronts::HeldZone> FrontZoneInForce(const Program& program);

/// The fronts of the sounding in work under the settings of the display.
fronts::FrontResults FrontsOf(const Program& program);

/// The direction into which its front moves, degrees; none without one.
std::optional<double> FrontNormal(const Program& program);

// What the diagram shows of them.
std::vector<diagram::FrontMark> FrontMarks(const Program& program, const Options& set);
std::vector<diagram::AdvectionBar> AdvectionBars(const Program& program);

// The display of fronts.
fronts::FrontPlot PlotFrontsOf(const Program& program, const Options& set, const Surface& on);
Picture PlotFrontDisplay(const DisplayInput& from, const Surface& on);
std::vector<std::string> ListFronts(const Program& program);
std::span<const ControlRow> FrontControls();

/// The display of layers, the frontal zones among them.
Picture PlotLayers(const DisplayInput& from, const Surface& on);

// Fronts in time: of the soundings of this station that are listed, overlaid or compared.
std::string_view NeedsFrontTimes(const Program& program);
Picture PlotFrontTimes(const DisplayInput& from, const Surface& on);
std::vector<std::string> ListFrontTimes(const Program& program);

// What the controls do.

/// The layers from one to another become the front; the control is manual then.
Changes ChooseFrontLayers(Program& program, std::size_t from, std::size_t to);
/// The published settings and the strongest zone.
Changes FrontsAutomatic(Program& program);
Changes SetFrontControl(Program& program, FrontControl control);
/// Held, the front that was found stays while the data change.
Changes HoldFront(Program& program, bool hold);

}  // namespace vexa
