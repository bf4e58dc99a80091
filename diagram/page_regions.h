// Where the parts of the diagram's page stand: its regions by the chosen layout, and the diagram's
// frame with the room for its axes.
#pragma once

#include "diagram/plot_state.h"

namespace vexa::diagram {

/// The places on the page of this plot.
Places PlaceRegions(const Plot& plot);

/// Sounding and position above the diagram, with the caption of the active configuration.
void DrawTitle(Plot& plot);

/// The foot of the page: what the sounding holds, what is left out and where it is, and in a loop
/// how long a picture stays.
void DrawStatus(Plot& plot);

/// The boxes that the layout and the caller have, each in its region.
void DrawBoxes(Plot& plot);

/// Texts and names of the overlaid and compared soundings need so many rows under the diagram.
int OtherTitleRows(const PlotInput& input);

}  // namespace vexa::diagram
