// How long a redraw takes: the picture built, and built and painted at 1600 x 1200.

#include <benchmark/benchmark.h>

#include <QImage>
#include <cmath>

#include "analysis/analysis.h"
#include "config/options.h"
#include "diagram/sounding_plot.h"
#include "output/paint/paint.h"

namespace {

using vexa::SoundingRecord;

// A warm, moist troposphere under a tropopause at 200 hPa, with the fine structure that keeps a
// trace from being a straight line.
SoundingRecord MakeSounding(int levels) {
  SoundingRecord record;
  vexa::SetElevation(record, 350);
  record.StationTitle = "Benchmark";
  for (int i = 0; i < levels; ++i) {
    const double share = static_cast<double>(i) / (levels - 1);
    const double press = 965 * std::pow(10.0 / 965, share);
    const double height = 350 + 7400 * std::log(965 / press);
    const double wiggle = 0.4 * std::sin(77 * share) + 0.05 * std::sin(i * 1.7);
    const double temp = press > 200 ? 28 - 0.0067 * (height - 350) + wiggle : -58 + wiggle;
    record.AddTemp(press, temp, temp - 3 - 20 * share - 2 * std::sin(33 * share));
    record.AddWind(height, 180 + 80 * share, 15 + 90 * share);
  }
  return record;
}

void BuildPicture(benchmark::State& state) {
  const SoundingRecord sounding = MakeSounding(static_cast<int>(state.range(0)));
  const vexa::Options options;
  const auto results = vexa::analysis::Analyse(sounding, options);
  for (auto _ : state) {
    benchmark::DoNotOptimize(vexa::diagram::PlotSounding(
        {.Sounding = sounding, .Results = results, .Set = options}));
  }
}
BENCHMARK(BuildPicture)->Arg(110)->Arg(3000)->Unit(benchmark::kMillisecond);

void BuildAndPaint(benchmark::State& state) {
  const SoundingRecord sounding = MakeSounding(static_cast<int>(state.range(0)));
  vexa::Options options;
  options.Diagram = static_cast<vexa::DiagramType>(state.range(1));
  const auto results = vexa::analysis::Analyse(sounding, options);
  for (auto _ : state) {
    const auto plot = vexa::diagram::PlotSounding(
        {.Sounding = sounding, .Results = results, .Set = options});
    benchmark::DoNotOptimize(vexa::paint::ToImage(plot->Page, 1600, 1200));
  }
}
BENCHMARK(BuildAndPaint)
    ->ArgsProduct({{110, 3000}, {0, 1, 2}})
    ->ArgNames({"levels", "diagram"})
    ->Unit(benchmark::kMillisecond);

}  // namespace
