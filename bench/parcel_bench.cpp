// How long analyses take: one parcel with its path, levels and energies, by the table of saturated
// adiabats and solved exactly, on soundings of different length; the saturated adiabat alone; and
// everything at once.

#include <benchmark/benchmark.h>

#include <cmath>
#include <vector>

#include "analysis/adiabat_table.h"
#include "analysis/analysis.h"
#include "analysis/downdraft.h"
#include "analysis/moist_air.h"
#include "analysis/parcel.h"
#include "analysis/parcel_source.h"
#include "config/options.h"
#include "core/platform.h"

namespace {

using namespace vexa::analysis;
using vexa::Options;
using vexa::SoundingRecord;
using vexa::TempBase;

// Warm, moist air under a tropopause at 200 hPa, from 965 hPa to 8 hPa like a complete ascent of
// an unstable day.
SoundingRecord MakeSounding(int levels) {
  SoundingRecord record;
  vexa::SetElevation(record, 350);
  for (int i = 0; i < levels; ++i) {
    const double share = static_cast<double>(i) / (levels - 1);
    const double press = 965 * std::pow(8.0 / 965, share);
    const double height = 350 + 7400 * std::log(965 / press);
    const double wiggle = 0.4 * std::sin(40 * share);
    const double temp = press > 200 ? 28 - 0.0067 * (height - 350) + wiggle : -55 + wiggle;
    record.AddTemp(press, temp, temp - 4 - 25 * share);
  }
  return record;
}

// One parcel lifted again and again through one sounding.
void LiftParcel(benchmark::State& state, bool byTable) {
  const SoundingRecord sounding = MakeSounding(static_cast<int>(state.range(0)));
  Options options;
  options.CapeTempBase = state.range(1) == 0 ? TempBase::Dry : TempBase::Virtual;
  options.Saturation =
      state.range(2) == 0 ? vexa::SaturationOver::Water : vexa::SaturationOver::Ice;
  const LevelProfile levels = DeriveLevels(sounding, options);
  const PressureGrid grid = MakePressureGrid(levels);
  AdiabatTable table;
  ParcelLifter lifter(levels, grid, LiftSettingsOf(options, 700), byTable ? &table : nullptr);
  const ParcelStart start = SurfaceParcel(levels);
  ParcelAscent ascent;
  for (auto _ : state) {
    lifter.LiftForced(start, ascent);
    benchmark::DoNotOptimize(ascent);
  }
  state.counters["CAPE"] = ascent.CapeTotal;
}
void ParcelByTable(benchmark::State& state) {
  LiftParcel(state, true);
}
void ParcelSolved(benchmark::State& state) {
  LiftParcel(state, false);
}
const std::vector<std::vector<std::int64_t>> kParcelCases = {{110, 2800}, {0, 1}, {0, 1}};
BENCHMARK(ParcelByTable)
    ->ArgsProduct(kParcelCases)
    ->ArgNames({"levels", "virtual", "ice"})
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(ParcelSolved)
    ->ArgsProduct(kParcelCases)
    ->ArgNames({"levels", "virtual", "ice"})
    ->Unit(benchmark::kMicrosecond);

void LiftSatAlone(benchmark::State& state) {
  double press = 1000;
  for (auto _ : state) {
    benchmark::DoNotOptimize(LiftSat(345, press));
    press = press > 101 ? press - 1 : 1000;
  }
}
BENCHMARK(LiftSatAlone);

// The table's first ascent: its four columns are filled for it.
void TableFirstAscent(benchmark::State& state) {
  std::vector<double> temps(900);
  for (auto _ : state) {
    AdiabatTable table;
    table.Blend(345, vexa::SaturationOver::Water, 1000, 101, temps.data(), nullptr);
    benchmark::DoNotOptimize(temps);
  }
}
BENCHMARK(TableFirstAscent)->Unit(benchmark::kMicrosecond);

void GridOfSounding(benchmark::State& state) {
  const LevelProfile levels =
      DeriveLevels(MakeSounding(static_cast<int>(state.range(0))), Options{});
  for (auto _ : state) benchmark::DoNotOptimize(MakePressureGrid(levels));
}
BENCHMARK(GridOfSounding)->Arg(110)->Arg(2800)->Unit(benchmark::kMicrosecond);

// Winds beside the temperatures, so that storm motion and turbulence have their work too.
SoundingRecord MakeFullSounding(int levels) {
  SoundingRecord record = MakeSounding(levels);
  for (int i = 0; i < levels; ++i) {
    const double share = static_cast<double>(i) / (levels - 1);
    record.AddWind(350 + 32000 * share, 160 + 100 * share, 10 + 60 * std::sin(3 * share));
  }
  return record;
}

void AnalyseAll(benchmark::State& state, bool byTable) {
  const SoundingRecord sounding = MakeFullSounding(static_cast<int>(state.range(0)));
  Options options;
  options.Dcape = state.range(1) == 0 ? vexa::DcapeMode::Best : vexa::DcapeMode::Fast;
  AdiabatTable table;
  for (auto _ : state) {
    benchmark::DoNotOptimize(byTable ? Analyse(sounding, options, table)
                                     : Analyse(sounding, options));
  }
}
void AnalyseSolved(benchmark::State& state) {
  AnalyseAll(state, false);
}
void AnalyseByTable(benchmark::State& state) {
  AnalyseAll(state, true);
}
const std::vector<std::vector<std::int64_t>> kAnalyseCases = {{110, 3000, 10000}, {0, 1}};
BENCHMARK(AnalyseSolved)
    ->ArgsProduct(kAnalyseCases)
    ->ArgNames({"levels", "fast"})
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(AnalyseByTable)
    ->ArgsProduct(kAnalyseCases)
    ->ArgNames({"levels", "fast"})
    ->Unit(benchmark::kMicrosecond);

// An ascent of a mandatory-and-significant-levels message and one of a value a second.
constexpr int kShort = 150;
constexpr int kLong = 2867;

void AnalyseWhole(benchmark::State& state) {
  const SoundingRecord sounding = MakeFullSounding(static_cast<int>(state.range(0)));
  AdiabatTable table;
  for (auto _ : state) benchmark::DoNotOptimize(Analyse(sounding, Options{}, table));
}
BENCHMARK(AnalyseWhole)->Arg(kShort)->Arg(kLong)->Unit(benchmark::kMicrosecond);

// A program's first sounding: no adiabat is in the table yet.
void AnalyseFirst(benchmark::State& state) {
  const SoundingRecord sounding = MakeFullSounding(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    AdiabatTable table;
    benchmark::DoNotOptimize(Analyse(sounding, Options{}, table));
  }
}
BENCHMARK(AnalyseFirst)->Arg(kShort)->Arg(kLong)->Unit(benchmark::kMicrosecond);

// Level arrays, grid, and the surface, mean-layer and most unstable parcel.
void DeriveAndLiftThree(benchmark::State& state) {
  const SoundingRecord sounding = MakeFullSounding(static_cast<int>(state.range(0)));
  const Options options;
  AdiabatTable table;
  ParcelAscent ascent;
  for (auto _ : state) {
    const LevelProfile levels = DeriveLevels(sounding, options);
    const PressureGrid grid = MakePressureGrid(levels);
    ParcelLifter lifter(levels, grid, LiftSettingsOf(options, 700), &table);
    const LayerMean mean = MeanOfLowestLayer(levels, options.CclMeanLayer);
    for (const ParcelStart& start :
         {SurfaceParcel(levels), MeanLayerParcel(levels, mean, options.Saturation),
          MostUnstableParcel(levels, options.SearchDepth)}) {
      lifter.LiftForced(start, ascent);
      benchmark::DoNotOptimize(ascent);
    }
  }
}
BENCHMARK(DeriveAndLiftThree)->Arg(kShort)->Arg(kLong)->Unit(benchmark::kMicrosecond);

// The downdraft from every level that may be its source.
void DowndraftOfEveryLevel(benchmark::State& state) {
  const SoundingRecord sounding = MakeFullSounding(static_cast<int>(state.range(0)));
  Options options;
  options.CapeTempBase = state.range(1) == 0 ? TempBase::Dry : TempBase::Virtual;
  const LevelProfile levels = DeriveLevels(sounding, options);
  const PressureGrid grid = MakePressureGrid(levels);
  AdiabatTable table;
  Downdraft found;
  for (auto _ : state) {
    found = FindDowndraft(levels, grid, options, table);
    benchmark::DoNotOptimize(found);
  }
  state.counters["DCAPE"] = found.Energy;
}
BENCHMARK(DowndraftOfEveryLevel)
    ->ArgsProduct({{kShort, kLong}, {0, 1}})
    ->ArgNames({"levels", "virtual"})
    ->Unit(benchmark::kMicrosecond);

// With the components ready.
void Kinematics(benchmark::State& state) {
  const SoundingRecord sounding = MakeFullSounding(static_cast<int>(state.range(0)));
  const WindProfile winds = DeriveWinds(sounding);
  for (auto _ : state) benchmark::DoNotOptimize(AnalyseStormMotion(sounding, winds, Options{}));
}
BENCHMARK(Kinematics)->Arg(kShort)->Arg(kLong)->Unit(benchmark::kMicrosecond);

void DeriveLevelsOf(benchmark::State& state) {
  const SoundingRecord sounding = MakeFullSounding(static_cast<int>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(DeriveLevels(sounding, Options{}));
}
BENCHMARK(DeriveLevelsOf)->Arg(110)->Arg(3000)->Unit(benchmark::kMicrosecond);

}  // namespace

int main(int argc, char** argv) {
  vexa::KeepFreedMemory();  // as both programs do
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
