// The files of a forecast: every hour as a native sounding, and all of them as a time series for
// spreadsheets.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/fault.h"
#include "core/files.h"
#include "core/interaction.h"
#include "forecast/series.h"

namespace vexa::forecast {

/// The file of an hour: that of the main sounding without its ending, "_06h_Forecast.RAW".
std::string ForecastFileName(std::string_view source, int hour);
/// The time series beside them: "..._Forecast.CSV".
std::string SeriesFileName(std::string_view source);

/// The time series as a text: what it is, its station, and a row for each level of each hour. Hour
/// 0 is the main sounding. A wind stands at the temperature level to which it is interpolated; a
/// value that is lacking is empty.
std::string SeriesCsv(const ForecastSeries& series, const AnalysisSettings& set);

struct SeriesFile {
  std::string Name{};
  std::string Text{};
};

/// The native files of the hours from one on, counted from 0, and the time series of all.
std::vector<SeriesFile> FilesOf(const ForecastSeries& series, const AnalysisSettings& set,
                                std::size_t fromStep = 0);

/// The names of those that stand in the folder already.
std::vector<std::string> Existing(const std::filesystem::path& folder,
                                  const std::vector<SeriesFile>& files);
/// "File already exists": asks whether they are to be replaced.
Box ExistsBox(const std::vector<std::string>& names);

/// Writes all of them or, at a fault, none; files of the same names are replaced. A folder that is
/// missing is made.
[[nodiscard]] std::optional<Fault> SaveTogether(const std::filesystem::path& folder,
                                                const std::vector<SeriesFile>& files,
                                                FileOps& ops = SystemFileOps());

}  // namespace vexa::forecast
