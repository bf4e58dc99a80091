// What a catalogue costs: soundings of 100 levels entered with all indices, on one core; how its
// size and the time of questions grow; and the search for what is alike among a million.
//
// VEXA_BENCH_SOUNDINGS sets the size of the largest catalogue, 20000 without it.
#include <benchmark/benchmark.h>
#include <sys/resource.h>
#include <unistd.h>

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include "analysis/adiabat_table.h"
#include "archive/add.h"
#include "archive/analogues.h"
#include "archive/climate.h"
#include "archive/query.h"
#include "archive/standard_levels.h"
#include "core/files.h"
#include "made_soundings.h"
#include "sounding/sounding_source.h"

namespace {

namespace fs = std::filesystem;
using namespace vexa;
using namespace vexa::archive;

class Folder {
 public:
  Folder() : path_(fs::temp_directory_path() / ("vexa archive bench " + std::to_string(getpid()))) {
    fs::create_directories(path_);
  }
  ~Folder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }
  fs::path operator/(const std::string& name) const { return path_ / name; }

 private:
  fs::path path_;
};

const bench::MadeSoundings& Made() {
  static const bench::MadeSoundings made(VEXA_SOURCE_DIR "/examples");
  return made;
}

// Station files of 2000 ascents each.
std::vector<std::string> StationFiles(const Folder& folder, std::int64_t count) {
  constexpr int kOfAFile = 2000;
  std::vector<std::string> files;
  for (std::int64_t done = 0; done < count; done += kOfAFile) {
    const auto station = static_cast<int>(72000 + done / kOfAFile);
    files.push_back(TextFromPath(folder / (std::to_string(station) + ".txt")));
    std::ofstream file(files.back(), std::ios::binary);
    for (int i = 0; i < kOfAFile && done + i < count; ++i) file << Made().Ascent(station, i);
  }
  return files;
}

double PeakMegabytes() {
  rusage used{};
  getrusage(RUSAGE_SELF, &used);
  return static_cast<double>(used.ru_maxrss) / 1024;
}

template <class Work>
double Milliseconds(Work work) {
  const auto begin = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin)
      .count();
}

// The plain reading and analysis, without a catalogue.
void AnalyseAlone(benchmark::State& state) {
  const Folder folder;
  const auto files = StationFiles(folder, state.range(0));
  for (auto _ : state) {
    analysis::AdiabatTable adiabats;
    for (const std::string& file : files) {
      auto source = SoundingSource::Open(PathFromText(file));
      int count = 1;
      for (int i = 0; i < count; ++i) {
        Loading loading = source.Value().Load(i, {});
        count = loading.Count;
        const AnalysedSounding sounding(*std::move(loading.Sounding));
        benchmark::DoNotOptimize(sounding.Results({}, &adiabats).Indices.size());
      }
    }
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void Enter(benchmark::State& state) {
  const Folder folder;
  const auto files = StationFiles(folder, state.range(0));
  const fs::path path = folder / "catalogue";
  for (auto _ : state) {
    auto catalogue = Catalogue::Open(path, {.MayMake = true});
    const auto report = AddFiles(catalogue.Value(), {.Given = files});
    if (!report || report.Value().Soundings != state.range(0)) {
      state.SkipWithError("not all was entered");
      return;
    }
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
  state.counters["MB peak"] = PeakMegabytes();
  state.counters["bytes each"] =
      static_cast<double>(fs::file_size(path)) / static_cast<double>(state.range(0));
  auto catalogue = Catalogue::Open(path, {.MayWrite = false});
  state.counters["ms again"] = Milliseconds([&] {
    auto writable = Catalogue::Open(path, {});
    benchmark::DoNotOptimize(AddFiles(writable.Value(), {.Given = files}).Ok());
  });
  state.counters["ms scan"] = Milliseconds([&] {
    const auto where = ParseCondition("\"CAPE total\" > 500 and KI > 30");
    const auto fault =
        Ask(catalogue.Value(), {.Where = where.Value(), .Columns = {FindColumn("time")}},
            [](auto) { return true; });
    if (fault) state.SkipWithError("the question failed");
  });
  state.counters["ms station"] = Milliseconds([&] {
    const auto where = ParseCondition("station = 72000 and month = 6");
    const auto fault =
        Ask(catalogue.Value(), {.Where = where.Value(), .Columns = {FindColumn("time")}},
            [](auto) { return true; });
    if (fault) state.SkipWithError("the question failed");
  });
  state.counters["ms climate"] = Milliseconds([&] {
    benchmark::DoNotOptimize(ClimateOf(catalogue.Value(), {.Station = 72000, .Month = 6}).Ok());
  });
}

// Rows of profiles alone: the search reads nothing else.
void Alike(benchmark::State& state) {
  const Folder folder;
  auto made = Catalogue::Open(folder / "catalogue", {.MayMake = true});
  Catalogue& catalogue = made.Value();
  std::mt19937 chance(1);
  std::normal_distribution<double> normal;
  {
    Transaction transaction(catalogue.Store());
    Statement row = catalogue.Store().Prepare(
        "INSERT INTO soundings(of, sounding, station, month, day, hour, \"Water\", \"CAPE total\")"
        " VALUES(1, ?, 72000, 6, 15, 12, ?, ?)");
    Statement profile = catalogue.Store().Prepare("INSERT INTO profiles VALUES(?, ?)");
    for (std::int64_t i = 1; i <= state.range(0); ++i) {
      StandardLevels levels;
      const double warmth = 5 * normal(chance);
      for (std::size_t k = 0; k < levels.size(); ++k) {
        const double temp = 20 - 4.0 * static_cast<double>(k) + warmth + normal(chance);
        levels[k] = {temp, temp - 5 + normal(chance), 20 * normal(chance), 20 * normal(chance)};
      }
      row.Bind(1, i).Bind(2, 2 + normal(chance)).Bind(3, 1000 * std::fabs(normal(chance))).Run();
      profile.Bind(1, i).Bind(2, Packed(levels), true).Run();
    }
    catalogue.CountChange();
    transaction.Commit();
  }
  auto source = SoundingSource::Open("x", Made().Ascent(72000, 300));
  const AnalysedSounding sounding(*std::move(source.Value().Load(0, {}).Sounding));
  const Entered entered{sounding, sounding.Results({})};
  std::optional<Outcome<Vectors>> vectors;
  state.counters["ms to make"] = Milliseconds([&] { vectors.emplace(Vectors::Of(catalogue)); });
  for (auto _ : state) {
    // Opened anew each time, as a command does.
    auto again = Vectors::Of(catalogue);
    benchmark::DoNotOptimize(again.Value().Nearest(entered, {.Most = 20}).size());
  }
  state.counters["MB peak"] = PeakMegabytes();
}

std::int64_t Largest() {
  const char* const asked = std::getenv("VEXA_BENCH_SOUNDINGS");
  return asked == nullptr ? 20000 : std::atoll(asked);
}

BENCHMARK(AnalyseAlone)->Arg(2000)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(Enter)->Arg(2000)->Arg(Largest())->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(Alike)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
