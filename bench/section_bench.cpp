// How long a redraw of a cross-section takes after the first: 100 columns of 120 levels on a grid
// of 81 x 61 nodes, the field gridded, smoothed and contoured, drawn, and painted at 1600 x 1000;
// and what a column costs once.

#include <benchmark/benchmark.h>

#include <cmath>
#include <QImage>
#include <string>

#include "config/options.h"
#include "crosssection/section_plot.h"
#include "output/paint/paint.h"

namespace {

using namespace vexa;
using namespace vexa::crosssection;

// A moist troposphere with a front across the middle of the section and a jet above it.
SoundingRecord Ascent(double share) {
  constexpr int kLevels = 120;
  SoundingRecord record;
  SetElevation(record, static_cast<int>(200 + 400 * share));
  SetDecimalPosition(record, 40 + std::sin(9 * share), -110 + 40 * share);
  record.StationTitle = "Benchmark";
  const double front = std::tanh(8 * (share - 0.5));
  for (int i = 0; i < kLevels; ++i) {
    const double up = static_cast<double>(i) / (kLevels - 1);
    const double press = (960 - 40 * share) * std::pow(0.05, up);
    const double height = 300 + 7400 * std::log(960 / press);
    const double temp = press > 210 ? 22 - 0.0066 * height - 8 * front + 2 * std::sin(40 * share)
                                    : -56 + 2 * std::sin(9 * up + 5 * share);
    record.AddTemp(press, temp, temp - 2 - 15 * std::fabs(std::sin(6 * up + 7 * share)));
    const double jet = 90 * std::exp(-std::pow((height - 10000) / 3000, 2) - front * front);
    record.AddWind(height, 200 + 60 * up + 20 * share, 8 + jet);
  }
  return record;
}

Section Made() {
  constexpr int kColumns = 100;
  Section section;
  analysis::AdiabatTable adiabats;
  for (int i = 0; i < kColumns; ++i) {
    const double share = static_cast<double>(i) / (kColumns - 1);
    section.Columns.push_back(ColumnOf(Ascent(share), "bench", Options{}, adiabats));
    section.Columns.back().Order = i + 1;
  }
  Arrange(section);
  return section;
}

void Redraw(benchmark::State& state, const char* code, bool paints) {
  const Section section = Made();
  const Options look;
  SectionOptions set;
  set.Resolution = GridResolution::High;
  const Surface on = ImageSurface(1600, 1000);
  for (auto _ : state) {
    const auto field = AnalyzeField(section, *FindField(code), set, {});
    const SectionPlot plot = PlotSection({section, set, look, field.Value()}, on);
    benchmark::DoNotOptimize(plot);
    if (paints) benchmark::DoNotOptimize(paint::ToImage(plot.Page, 1600, 1000));
  }
}

void AColumnOnce(benchmark::State& state) {
  analysis::AdiabatTable adiabats;
  const SoundingRecord ascent = Ascent(0.3);
  for (auto _ : state) {
    benchmark::DoNotOptimize(ColumnOf(ascent, "bench", Options{}, adiabats));
  }
}
BENCHMARK(AColumnOnce)->Unit(benchmark::kMillisecond);

const bool kRegistered = [] {
  for (const char* code : {"TMP", "EPT", "RH", "WND", "PW", "ICE", "CAT"}) {
    for (const bool paints : {false, true}) {
      const std::string name = std::string(paints ? "RedrawAndPaint/" : "Redraw/") + code;
      benchmark::RegisterBenchmark(name.c_str(), Redraw, code, paints)
          ->Unit(benchmark::kMillisecond);
    }
  }
  return true;
}();

}  // namespace
