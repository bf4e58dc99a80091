// The displays of mountain waves over the station's ridges, or over a usual one.
#pragma once

#include <string>
#include <vector>

#include "mountainwave/wave_plot.h"
#include "program/display_row.h"
#include "program/wave_view.h"

namespace vexa {

/// Waves of the sounding in work, with the mapping of the page.
mountainwave::WavePlot PlotWavesOf(const DisplayInput& from, const ShownWaves& shown,
                                   const Surface& on);

/// The waves of the sounding in work.
Picture PlotMountainWave(const DisplayInput& from, const Surface& on);

/// The listing of its waves.
std::vector<std::string> ListWaves(const Program& program);

/// The strongest wave by the axis and the half-width of the ridge.
Picture PlotWaveSweep(const DisplayInput& from, const Surface& on);

/// The strongest wave of each of the soundings that were opened together.
Picture PlotWaveSeries(const DisplayInput& from, const Surface& on);

}  // namespace vexa
