// How many soundings of 100 levels a second are read, computed and written to text and to a
// spreadsheet: the counter "soundings" is the rate on one core.

#include <benchmark/benchmark.h>

#include <cmath>
#include <filesystem>
#include <string>
#include <vector>

#include "core/files.h"
#include "core/numbers.h"
#include "core/raw_file.h"
#include "program/export_batch.h"

namespace {

namespace fs = std::filesystem;
using namespace vexa;

SoundingRecord MakeSounding(int levels) {
  SoundingRecord record;
  record.FileTag = "VEXA 5.7";
  record.StationTitle = "bench";
  SetElevation(record, 350);
  SetDecimalPosition(record, 35.2, -97.4);
  for (int i = 0; i < levels; ++i) {
    const double share = static_cast<double>(i) / (levels - 1);
    const double press = Rounded(965 * std::pow(10.0 / 965, share), 1);
    const double height = 350 + 7400 * std::log(965 / press);
    const double temp = press > 200 ? 28 - 0.0067 * (height - 350) : -55;
    record.AddTemp(press, Rounded(temp, 1), Rounded(temp - 4 - 25 * share, 1));
    record.AddWind(Rounded(height, 0), 180 + Rounded(90 * share, 0), 10 + Rounded(80 * share, 0));
  }
  return record;
}

void Export(benchmark::State& state, output::DumpKind kind) {
  const fs::path folder = fs::temp_directory_path() / "vexa export bench";
  fs::create_directories(folder);
  const std::string text = WriteRaw(MakeSounding(100));
  std::vector<std::string> files;
  for (int i = 0; i < static_cast<int>(state.range(0)); ++i) {
    const fs::path path = folder / (Shortest(i) + ".RAW");
    if (SaveFile(path, text)) return state.SkipWithError("no room for the soundings");
    files.push_back(TextFromPath(path));
  }
  const fs::path output = folder / "out.txt";
  for (auto _ : state) {
    const ExportReport report = ExportBatch({.Files = files, .Output = output, .Kind = kind}, {});
    if (report.Written != static_cast<int>(files.size())) state.SkipWithError("export failed");
  }
  state.counters["soundings"] = benchmark::Counter(static_cast<double>(files.size()),
                                                   benchmark::Counter::kIsIterationInvariantRate);
  std::error_code ignored;
  fs::remove_all(folder, ignored);
}

void ToText(benchmark::State& state) {
  Export(state, output::DumpKind::Textfile);
}
void ToSpreadsheet(benchmark::State& state) {
  Export(state, output::DumpKind::Spreadsheet);
}
BENCHMARK(ToText)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(ToSpreadsheet)->Arg(200)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
