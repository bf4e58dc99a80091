// How long the station locator takes: reading the shipped file at start-up, a lookup by number as
// every load of a coded message does it, and the pick list's search.

#include <benchmark/benchmark.h>

#include <filesystem>
#include <string>

#include "core/files.h"
#include "core/station_file.h"
#include "core/station_list.h"

namespace {

const std::string& ShippedText() {
  static const std::string text =
      vexa::ReadFile(std::filesystem::path(VEXA_SOURCE_DIR) / "share" / "VEXA.STN").Value();
  return text;
}

void ReadShipped(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(vexa::ReadStations(ShippedText(), "VEXA.STN"));
}
BENCHMARK(ReadShipped)->Unit(benchmark::kMicrosecond);

void LookUp(benchmark::State& state) {
  const vexa::StationList list = vexa::ReadStations(ShippedText(), "VEXA.STN").List;
  vexa::SoundingRecord record;
  for (auto _ : state) {
    for (const int number : {1001, 72357, 72358, 94120}) {
      benchmark::DoNotOptimize(vexa::FindStation(list, number, record));
    }
  }
  state.SetItemsProcessed(state.iterations() * 4);
}
BENCHMARK(LookUp);

void Search(benchmark::State& state) {
  const vexa::StationList list = vexa::ReadStations(ShippedText(), "VEXA.STN").List;
  for (auto _ : state) benchmark::DoNotOptimize(vexa::SearchStations(list, "airport russia", 50));
}
BENCHMARK(Search)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
