// How long the mountain waves take: one ridge, and the sweep of 100 axes by 100 half-widths, in a
// sounding of 110 levels with winds at each.

#include <benchmark/benchmark.h>

#include <cmath>

#include "config/options.h"
#include "mountainwave/wave_sweep.h"

namespace {

using namespace vexa;

SoundingRecord Detailed() {
  SoundingRecord sounding;
  sounding.LatHemi = "N";
  for (int i = 0; i < 110; ++i) {
    const double height = 160.0 * i;
    // Stable layers at 2 and 6 km, wind that rises to 60 kt at 10 km.
    const double bumps = 3 * std::exp(-std::pow((height - 2000) / 400, 2)) +
                         3 * std::exp(-std::pow((height - 6000) / 500, 2));
    sounding.AddTemp(1000 * std::exp(-height / 7500), 10 - 0.006 * height + bumps, kMissing);
    sounding.AddWind(height, 270 + 10 * std::sin(height / 3000), 12 + 0.005 * height);
  }
  return sounding;
}

void OneRidge(benchmark::State& state) {
  const SoundingRecord sounding = Detailed();
  const auto levels = analysis::DeriveLevels(sounding, Options{});
  for (auto _ : state) {
    benchmark::DoNotOptimize(mountainwave::ComputeWaves(sounding, levels, std::nullopt));
  }
}
BENCHMARK(OneRidge)->Unit(benchmark::kMicrosecond);

void SweepOfRidges(benchmark::State& state) {
  const SoundingRecord sounding = Detailed();
  const auto levels = analysis::DeriveLevels(sounding, Options{});
  for (auto _ : state) {
    const mountainwave::Air air = mountainwave::AirOf(sounding, levels);
    benchmark::DoNotOptimize(mountainwave::SweepMountain(air, 1000));
  }
}
BENCHMARK(SweepOfRidges)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
