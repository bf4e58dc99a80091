// How long a hodograph of many levels takes, and one frame of the turning trajectory: built, and
// built and painted at 1600 x 1200.

#include <benchmark/benchmark.h>

#include <cmath>
#include <QImage>

#include "analysis/analysis.h"
#include "config/options.h"
#include "hodograph/hodogram_plot.h"
#include "hodograph/hodograph_plot.h"
#include "output/paint/paint.h"

namespace {

vexa::SoundingRecord MakeSounding(int levels) {
  vexa::SoundingRecord record;
  vexa::SetElevation(record, 350);
  for (int i = 0; i < levels; ++i) {
    const double share = static_cast<double>(i) / (levels - 1);
    const double height = 350 + 30000 * share;
    const double press = 965 * std::exp(-(height - 350) / 7400);
    record.AddTemp(press, 28 - 80 * share, 20 - 90 * share);
    record.AddWind(height, 180 + 80 * share + 4 * std::sin(i * 0.9),
                   15 + 60 * std::sin(3 * share) + 3 * std::sin(i * 1.7));
  }
  return record;
}

constexpr vexa::Surface kPage = vexa::ImageSurface(1600, 1200);

void PlotHodograph(benchmark::State& state) {
  const vexa::SoundingRecord sounding = MakeSounding(static_cast<int>(state.range(0)));
  const vexa::Options options;
  const auto results = vexa::analysis::Analyse(sounding, options);
  for (auto _ : state) {
    benchmark::DoNotOptimize(vexa::hodograph::PlotHodograph(
        {.Sounding = sounding, .Results = results, .Set = options}, kPage));
  }
}
BENCHMARK(PlotHodograph)->Arg(110)->Arg(3000)->Unit(benchmark::kMillisecond);

void TurnTrajectory(benchmark::State& state) {
  const auto hodogram =
      vexa::hodograph::MakeHodogram(MakeSounding(static_cast<int>(state.range(0))), {});
  vexa::Hodogram3DSettings view;
  for (auto _ : state) {
    view = vexa::hodograph::Turned(view, 1, 0);
    const vexa::Picture page = vexa::hodograph::PlotHodogram(hodogram, view, kPage);
    if (state.range(1) != 0) benchmark::DoNotOptimize(vexa::paint::ToImage(page, 1600, 1200));
  }
}
BENCHMARK(TurnTrajectory)
    ->ArgsProduct({{110, 3000}, {0, 1}})
    ->ArgNames({"levels", "painted"})
    ->Unit(benchmark::kMillisecond);

}  // namespace
