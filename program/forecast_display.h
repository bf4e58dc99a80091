// The forecast's displays: its series for the sounding in work, the soundings around it, and what
// their windows' commands do.
#pragma once

#include <cstddef>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/files.h"
#include "forecast/forecast_map.h"
#include "forecast/forecast_settings.h"
#include "forecast/series.h"
#include "program/display_row.h"
#include "program/program.h"

namespace vexa {

/// What the forecast keeps while the program runs.
struct ForecastView {
  forecast::ForecastSettings Set{};
  bool HasSettings = false;  // they have been read
  forecast::ForecastSeries Series{};
  SharedSounding Original{};  // with which the series begins
  bool IsSearched = false;
  std::size_t Shown = 0;                // hour that is in work; 0: the original
  std::filesystem::path SavedSeries{};  // its time series, once that has been written
  std::string Description{};
  std::string Status{};
  forecast::MapDrawing Drawing{};
};

/// Reads the settings of the program folder once.
ForecastView& ForecastViewOf(Program& program);
void SaveForecastSettings(Program& program);

/// Begins anew where another sounding has come into work.
ForecastView& FollowForecast(Program& program);

/// Whether the sounding in work is an hour of a forecast that began with this one.
bool IsForecastFrom(const Program& program, const SharedSounding& original);

/// The hodograph of the hour in work with the original beside it.
Picture PlotForecastHodo(const DisplayInput& from, const Surface& on);
Picture PlotForecastMap(const DisplayInput& from, const Surface& on);
/// The same with the frame that placed it; as drawn before where a frame is given.
map::AreaMap ForecastMapOf(const Program& program, const Options& set, const Surface& on,
                           const map::MapFrame* frame = nullptr);
/// The lists of the search, and of each hour what it was made of.
std::vector<std::string> ListForecast(const Program& program);

/// "Advection rate: 28.4 kts   6 hrs".
std::string ForecastStatus(const ForecastView& view);

namespace commands {

/// "Search for soundings": those around the sounding in work. False when the user stopped.
bool SearchSoundings(Program& program);
/// Goes one hour ahead and puts the new sounding in work, the original beside it. What ends the
/// series has been told.
Changes StepForecast(Program& program, FileOps& ops = SystemFileOps());
/// Puts an hour of the series in work, 0 the original.
Changes ShowForecastHour(Program& program, std::size_t hour);
/// Forgets the series; the original comes back.
Changes RestartForecast(Program& program);

/// Other upwind soundings: those boxed, with the air coming from a direction; or the automatic
/// ones.
void ChooseUpwindByHand(Program& program, std::span<const std::size_t> boxed, double from);
void RestoreUpwind(Program& program);

}  // namespace commands

}  // namespace vexa
