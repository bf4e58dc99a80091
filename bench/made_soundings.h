// Soundings for archives of any size: ascents of 100 levels that vary real ones by season, weather
// and chance, as the lines of an IGRA station file. The same station and number make the same
// sounding everywhere.
#pragma once

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "analysis/interpolate.h"
#include "core/files.h"
#include "core/numbers.h"
#include "sounding/sounding_source.h"

namespace vexa::bench {

inline constexpr int kMadeLevels = 100;

class MadeSoundings {
 public:
  /// Varies the soundings of a folder.
  explicit MadeSoundings(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
      if (entry.is_regular_file()) files.push_back(entry.path());
    }
    std::ranges::sort(files);
    for (const auto& file : files) {
      auto source = SoundingSource::Open(file);
      if (!source) continue;
      Loading loading = source.Value().Load(0, {});
      if (loading.Sounding) TakeBase(AnalysedSounding(*std::move(loading.Sounding)));
    }
    if (bases_.empty()) throw std::runtime_error("no soundings to vary");
  }

  /// number  of the ascent, from 0: two a day from the year 1950 on
  std::string Ascent(int station, int number) const {
    std::mt19937 chance(static_cast<std::uint32_t>(station) * 1'000'003U +
                        static_cast<std::uint32_t>(number));
    std::normal_distribution<double> normal;
    const Base& base = bases_[static_cast<std::size_t>(station) % bases_.size()];
    using namespace std::chrono;
    const sys_days day = sys_days{1950y / January / 1} + days(number / 2);
    const year_month_day date{day};
    const auto dayOfYear = static_cast<double>((day - sys_days{date.year() / January / 1}).count());
    const double season = -std::cos(2 * kPi * dayOfYear / 365.25);
    // Weather: one slow swing of the whole column, and waves in the vertical of random phase.
    const double warmth = 4 * season + 3 * normal(chance);
    std::array<double, kWaves> height{}, phase{}, damp{};
    for (int k = 0; k < kWaves; ++k) {
      height[k] = 1.2 * normal(chance) / (k + 1);
      phase[k] = kPi * normal(chance);
      damp[k] = 0.5 * normal(chance) / (k + 1);
    }
    const double turn = 0.4 * normal(chance), strength = std::exp(0.25 * normal(chance));
    std::string text =
        "#USM" + Mask(station, "00000000") + " " + Mask(static_cast<int>(date.year()), "0000") +
        " " + Mask(static_cast<unsigned>(date.month()), "00") + " " +
        Mask(static_cast<unsigned>(date.day()), "00") + (number % 2 == 0 ? " 00" : " 12") +
        " 9999  100 ncdc-gts ncdc-gts  413200  -963700\n";
    double geopotential = base.Height, before = 0, pressBefore = 0;
    for (int i = 0; i < kMadeLevels; ++i) {
      const Level& level = base.Levels[static_cast<std::size_t>(i)];
      const double share = static_cast<double>(i) / kMadeLevels;
      double wave = 0, wet = 0;
      for (int k = 0; k < kWaves; ++k) {
        wave += height[k] * std::sin((k + 1) * kPi * share + phase[k]);
        wet += damp[k] * std::sin((k + 1) * kPi * share + phase[k] * 2);
      }
      const double temp = level.Temp + (1 - share) * warmth + wave + 0.1 * normal(chance);
      const double depression = std::clamp(level.Depression * std::exp(wet), 0.1, 30.0);
      if (i > 0) {
        const double mean = (temp + before) / 2 + 273.15;
        geopotential += 29.27 * mean * std::log(pressBefore / level.Press);
      }
      before = temp;
      pressBefore = level.Press;
      const double dir = std::atan2(-level.U, -level.V) + turn + 0.1 * wave;
      const double speedMs = std::hypot(level.U, level.V) * strength * 0.5144 + std::fabs(wave);
      const int degrees = (static_cast<int>(std::lround(dir * 180 / kPi)) + 719) % 360 + 1;
      text += i == 0 ? "21 -9999" : "10 -9999";
      Field(text, std::lround(level.Press * 100), 7, i == 0 ? 'B' : ' ');
      Field(text, std::lround(geopotential), 5, ' ');
      Field(text, std::lround(temp * 10), 5, ' ');
      text += "-9999";
      Field(text, std::lround(depression * 10), 6, ' ');
      Field(text, degrees, 5, ' ');
      Field(text, std::lround(speedMs * 10), 5, '\n');
    }
    return text;
  }

 private:
  static constexpr double kPi = 3.14159265358979;
  static constexpr int kWaves = 5;
  struct Level {
    double Press = 0, Temp = 0, Depression = 0, U = 0, V = 0;
  };
  struct Base {
    double Height = 0;
    std::array<Level, kMadeLevels> Levels{};
  };

  static void Field(std::string& text, long value, int width, char flag) {
    char digits[16];
    const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    for (auto blanks = width - (end - digits); blanks > 0; --blanks) text += ' ';
    text.append(digits, end);
    text += flag;
  }

  // Levels at even steps of ln p from the ground to the top.
  void TakeBase(const AnalysedSounding& sounding) {
    const SoundingRecord& record = sounding.Record();
    const analysis::LevelProfile& levels = sounding.Results({}).Levels;
    const int count = levels.Count();
    if (count < 2) return;
    Base base{.Height = levels.Height(1)};
    const double first = levels.Press(1), last = std::max(levels.Press(count), 20.0);
    analysis::WindVector wind{};
    double depression = 5;
    for (int i = 0; i < kMadeLevels; ++i) {
      Level& level = base.Levels[static_cast<std::size_t>(i)];
      level.Press =
          first * std::pow(last / first, static_cast<double>(i) / (kMadeLevels - 1)) + 1e-6;
      const double press = std::clamp(level.Press, levels.Press(count), first);
      const auto temp = analysis::SampleAt(levels, press, analysis::Quantity::Temp);
      if (!temp.Ok()) return;
      level.Temp = temp.Value;
      const auto dewpt = analysis::SampleAt(levels, press, analysis::Quantity::Dewpt);
      if (dewpt.Ok()) depression = level.Temp - dewpt.Value;
      level.Depression = std::max(depression, 0.3);
      const auto height = analysis::SampleAt(levels, press, analysis::Quantity::Height);
      if (height.Ok()) {
        const auto there = analysis::WindAtHeight(record, height.Value);
        if (there.Ok()) wind = analysis::Components(there.Value);
      }
      level.U = wind.U;
      level.V = wind.V;
    }
    bases_.push_back(base);
  }

  std::vector<Base> bases_{};
};

}  // namespace vexa::bench
