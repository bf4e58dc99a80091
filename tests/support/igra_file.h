// Station files of many soundings, made for the tests: each tells its place by its temperatures.
#pragma once

#include <iterator>
#include <string>

#include "core/numbers.h"

namespace vexa::test {

/// A sounding of an IGRA file. At 850, 700 and 500 hPa 20, 10 and -10 °C, dew points 15, 5 and -20,
/// all warmer by `warmer`: K index 40 + warmer, Total Totals 55 whatever the warmth.
inline std::string IgraSounding(int station, int year, int month, int day, int hour,
                                double warmer = 0) {
  struct Row {
    int Press, Height;
    double Temp, Depression;
    int Dir, SpeedMs;
  };
  constexpr Row kRows[] = {{960, 400, 28, 8, 180, 5},     {850, 1500, 20, 5, 190, 8},
                           {700, 3100, 10, 5, 210, 12},   {500, 5800, -10, 10, 230, 20},
                           {300, 9500, -40, 15, 250, 35}, {200, 12200, -55, 15, 250, 40},
                           {100, 16500, -60, 20, 260, 20}};
  std::string text = "#USM" + Mask(station, "00000000") + " " + Mask(year, "0000") + " " +
                     Mask(month, "00") + " " + Mask(day, "00") + " " + Mask(hour, "00") + " 9999 " +
                     PadLeft(Shortest(static_cast<int>(std::size(kRows))), 4) +
                     " ncdc-gts ncdc-gts  413200  -963700\n";
  for (const Row& row : kRows) {
    text += std::string(row.Press == 960 ? "21" : "10") + " -9999 " +
            PadLeft(Shortest(row.Press * 100), 6) + " " + PadLeft(Shortest(row.Height), 5) + " " +
            PadLeft(Shortest(ToWhole((row.Temp + warmer) * 10)), 5) + " -9999 " +
            PadLeft(Shortest(ToWhole(row.Depression * 10)), 5) + " " +
            PadLeft(Shortest(row.Dir), 5) + " " + PadLeft(Shortest(row.SpeedMs * 10), 5) + " \n";
  }
  return text;
}

/// Ascents of a station at noon on so many days from the first of June, each a tenth warmer.
inline std::string IgraFile(int station, int days, int year = 1999) {
  std::string text;
  for (int day = 0; day < days; ++day) {
    text += IgraSounding(station, year, 6 + day / 30, 1 + day % 30, 12, day / 10.0);
  }
  return text;
}

}  // namespace vexa::test
