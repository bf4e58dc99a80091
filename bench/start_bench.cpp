// How long a process takes: the command line that does nothing, one analysis, and the window up to
// the first picture of a sounding, saved as an image. Time is that of the processor in the process,
// which other processes disturb least; the least of many runs is what to compare.

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

extern char** environ;

namespace {

namespace fs = std::filesystem;

double Seconds(const timeval& time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
}

struct Ended {
  bool Ok = false;
  double Processor = 0;  // s, user and system
  double Peak = 0;       // MB in memory at most
};

Ended RunOnce(const std::vector<std::string>& words) {
  std::vector<char*> arguments;
  for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t files;
  posix_spawn_file_actions_init(&files);
  posix_spawn_file_actions_addopen(&files, 1, "/dev/null", O_WRONLY, 0);
  pid_t process = 0;
  const int failed =
      posix_spawn(&process, words.front().c_str(), &files, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&files);
  if (failed != 0) return {};
  int status = 0;
  rusage used{};
  if (wait4(process, &status, 0, &used) != process) return {};
  return {.Ok = WIFEXITED(status) && WEXITSTATUS(status) == 0,
          .Processor = Seconds(used.ru_utime) + Seconds(used.ru_stime),
          .Peak = static_cast<double>(used.ru_maxrss) / 1024};
}

void Start(benchmark::State& state, const std::vector<std::string>& words) {
  // A program folder of its own, filled by the first run.
  const fs::path root = fs::temp_directory_path() / "vexa-start-bench";
  fs::create_directories(root);
  std::vector<std::string> whole = words;
  for (std::string& word : whole) {
    const std::size_t at = word.find("ROOT");
    if (at != word.npos) word.replace(at, 4, root.string());
  }
  double least = 1e9;
  Ended last = RunOnce(whole);
  for (auto _ : state) {
    last = RunOnce(whole);
    if (!last.Ok) break;
    state.SetIterationTime(last.Processor);
    least = std::min(least, last.Processor);
  }
  fs::remove_all(root);
  if (!last.Ok) return state.SkipWithError("the program failed");
  state.counters["least_ms"] = least * 1000;
  state.counters["peak_MB"] = last.Peak;
}

const std::string kSounding = VEXA_SOURCE_DIR "/examples/severe_norman_1999.RAW";

void CommandThatDoesNothing(benchmark::State& state) {
  Start(state, {VEXA_CLI, "--version"});
}
void AnalysisOfAFile(benchmark::State& state) {
  Start(state, {VEXA_CLI, "analyze", kSounding});
}
BENCHMARK(CommandThatDoesNothing)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(AnalysisOfAFile)->UseManualTime()->Unit(benchmark::kMillisecond);

#ifdef VEXA_WINDOW
// The help is told without a display; what remains over it is the window and its picture, painted
// twice and saved as a bitmap: to compress it would take longer than all before.
void WindowWithoutDisplay(benchmark::State& state) {
  Start(state, {VEXA_WINDOW, "--version"});
}
void FirstPicture(benchmark::State& state) {
  const std::string size = std::to_string(state.range(0)) + "x" + std::to_string(state.range(1));
  Start(state, {VEXA_WINDOW, "--root", "ROOT", "--size", size, "--screenshot", "ROOT/first.bmp",
                kSounding});
}
BENCHMARK(WindowWithoutDisplay)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(FirstPicture)
    ->Args({800, 600})
    ->Args({1600, 1200})
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
#endif

}  // namespace

int main(int argc, char** argv) {
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
