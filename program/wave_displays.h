// The displays of mountain waves over the station's ridges, or over a usual one.
#pragma once

#include "program/display_row.h"

namespace vexa {

/// The waves of the sounding in work.
Picture PlotMountainWave(const DisplayInput& from, const Surface& on);

/// The strongest wave by the axis and the half-width of the ridge.
Picture PlotWaveSweep(const DisplayInput& from, const Surface& on);

}  // namespace vexa
