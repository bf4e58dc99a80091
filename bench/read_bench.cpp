// How the reading of large files grows: each row names a size, and the fitted order that follows
// should be N. What is read anew for each sounding, or gone through for each name, shows as N^2.
#include <benchmark/benchmark.h>

#include <cmath>
#include <string>
#include <vector>

#include "core/files.h"
#include "core/numbers.h"
#include "core/raw_file.h"
#include "ingest/archive.h"
#include "ingest/bufr_messages.h"
#include "ingest/decoder.h"
#include "sounding/sounding_source.h"

namespace {

using namespace vexa;

std::string Sample(const char* name) {
  return ReadFile(PathFromText(VEXA_SOURCE_DIR) / "tests" / "data" / name).Value();
}

// Decodes all soundings of a text.
void Decode(benchmark::State& state, const std::string& name, const std::string& text,
            bool isRefused = false) {
  for (auto _ : state) {
    const SourceText source(name, text);
    ingest::LoadContext context;
    do {
      SoundingRecord record;
      if (ingest::DecodeSounding(source, context, record).has_value() != isRefused) {
        return state.SkipWithError("the file is not read as it should be");
      }
      benchmark::DoNotOptimize(record);
    } while (++context.Index < context.Count);
  }
  state.SetComplexityN(state.range(0));
}

void NativeLevels(benchmark::State& state) {
  SoundingRecord record;
  record.FileTag = "VEXA 5.7";
  record.StationTitle = "bench";
  const auto levels = static_cast<int>(state.range(0));
  for (int i = 0; i < levels; ++i) {
    record.AddTemp(1000 - i * 990.0 / levels, 20 - i * 70.0 / levels, -80);
    record.AddWind(i * 30000.0 / levels, 180.5, 12.5);
  }
  Decode(state, "long.RAW", WriteRaw(record));
}

// A value for every second of a flight, as NWS files have it.
void SecondsOfAFlight(benchmark::State& state) {
  const std::string whole = Sample("class_two.cls");
  const std::string heading = whole.substr(0, whole.find("\n------ ") + 1);
  const std::string dashes =
      whole.substr(heading.size(), whole.find('\n', heading.size()) + 1 - heading.size());
  const std::string row = whole.substr(heading.size() + dashes.size(), dashes.size());
  std::string text = heading + dashes;
  for (int i = 0; i < state.range(0); ++i) {
    std::string next = row;
    next.replace(6, 7, PadLeft(Mask(1000.0 * std::exp(-i / 1500.0), "##0.0"), 7));
    next.replace(next.size() - 38, 8, PadLeft(Mask(5 * i, "####0.0"), 8));
    text += next;
  }
  Decode(state, "long.cls", text);
}

// Soundings of a file are found once and each is decoded once.
void SoundingsOfADocument(benchmark::State& state) {
  std::string text = "{\"profiles\":[";
  for (int i = 0; i < state.range(0); ++i) {
    text += std::string(i == 0 ? "" : ",") + "{\"station\":\"KAAA\",\"valid\":\"" +
            Shortest(2000 + i / 28) + "-01-" + Mask(1 + i % 28, "00") +
            "T00:00:00Z\",\"profile\":[";
    for (int level = 0; level < 90; ++level) {
      text += std::string(level == 0 ? "" : ",") + "{\"pres\":" + Shortest(1000 - 10 * level) +
              ",\"tmpc\":" + Shortest(20 - level) + ",\"drct\":180,\"sknt\":10}";
    }
    text += "]}";
  }
  Decode(state, "many.json", text + "]}");
}

// The first message of the sample, each time from another station.
void MessagesOfABulletin(benchmark::State& state) {
  const std::string sample = Sample("bufr_five.bufr");
  std::vector<std::string> notes;
  const std::string_view message = ingest::SplitBufr(sample, notes).front();
  const auto at = static_cast<std::size_t>(ingest::ReadHead(message)->Data.data() - message.data());
  std::string text;
  for (int i = 0; i < state.range(0); ++i) {
    std::string next(message);
    // Block in 7 bits, number in 10, and 7 bits of what follows.
    const int station = (1 + i / 900) << 17 | (100 + i % 900) << 7;
    next[at] = static_cast<char>(station >> 16);
    next[at + 1] = static_cast<char>(station >> 8);
    next[at + 2] = static_cast<char>(station | (next[at + 2] & 0x7F));
    text += next;
  }
  Decode(state, "many.bufr", text);
}

void ProfilesOfADocument(benchmark::State& state) {
  std::string text = "{\"profiles\":[1";
  for (int i = 1; i < state.range(0); ++i) text += ",1";
  Decode(state, "many.json", text + "]}", true);
}

// A text read as the program opens it: recognised, decoded, put in order and checked.
void Open(benchmark::State& state, const std::string& name, const std::string& text) {
  for (auto _ : state) {
    SoundingSource source(SourceText(name, text));
    const Loading loading = source.Load(0, {});
    if (!loading.Sounding) return state.SkipWithError("the file is not read");
    benchmark::DoNotOptimize(loading);
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

// Rows of columns, of falling pressures and rising heights.
std::string Rows(int levels) {
  std::string text;
  for (int i = 0; i < levels; ++i) {
    const double share = static_cast<double>(i) / levels;
    const double press = 1000 * std::exp(-4.5 * share);
    const std::string fields[] = {Mask(press, "###0.00"),
                                  Mask(33000 * share, "####0"),
                                  Mask(25 - 85 * share + std::sin(40 * share), "##0.0"),
                                  Mask(20 - 110 * share, "##0.0"),
                                  Mask(180 + 90 * share, "##0"),
                                  Mask(10 + 60 * share, "##0.0")};
    for (const std::string& field : fields) text += PadLeft(field, 9);
    text += '\n';
  }
  return text;
}

void OpenColumns(benchmark::State& state) {
  Open(state, "long.txt",
       "pres hght temp dwpt drct sknt\n" + Rows(static_cast<int>(state.range(0))));
}

// Soundings as a station's archive has them.
void OpenStation(benchmark::State& state) {
  const auto levels = static_cast<int>(state.range(0));
  std::string text = "#USM00070001 1999 05 04 00 9999 " + PadLeft(Shortest(levels), 4) +
                     " ncdc-gts ncdc-gts  413200  -963700\n";
  for (int i = 0; i < levels; ++i) {
    const double share = static_cast<double>(i) / levels;
    text += "10 -9999 " + PadLeft(Mask(100000 * std::exp(-4.5 * share), "0"), 6) + " ";
    text += PadLeft(Mask(33000 * share, "0"), 5) + " ";
    text += PadLeft(Mask(250 - 850 * share, "0"), 5) + " -9999 ";
    text += PadLeft(Mask(50 + 200 * share, "0"), 5) + " ";
    text += PadLeft(Mask(180 + 90 * share, "0"), 5) + " ";
    text += PadLeft(Mask(50 + 300 * share, "0"), 5) + "\n";
  }
  Open(state, "70001.txt", text);
}

void OpenNative(benchmark::State& state) {
  SoundingRecord record;
  record.FileTag = "VEXA 5.7";
  record.StationTitle = "bench";
  const auto levels = static_cast<int>(state.range(0));
  for (int i = 0; i < levels; ++i) {
    record.AddTemp(Rounded(1000 - i * 990.0 / levels, 2), Rounded(20 - i * 70.0 / levels, 1), -80);
    record.AddWind(Rounded(i * 30000.0 / levels, 0), 180.5, 12.5);
  }
  Open(state, "long.RAW", WriteRaw(record));
}

void OpenBufr(benchmark::State& state) {
  Open(state, "five.bufr", Sample("bufr_five.bufr"));
}

void NamesOfColumns(benchmark::State& state) {
  std::string names = "pres", row = "1000";
  for (int i = 1; i < state.range(0); ++i) {
    names += " x";
    row += " 1";
  }
  Decode(state, "wide.txt", names + '\n' + row + '\n', true);
}

void BulletinsOfAnArchive(benchmark::State& state) {
  const std::string text = Sample("coded_bulletins_20240305.txt");
  for (auto _ : state) {
    state.PauseTiming();
    std::vector<SourceText> texts;
    for (int i = 0; i < state.range(0); ++i) texts.emplace_back("20240305.txt", text);
    std::vector<std::string> notes;
    state.ResumeTiming();
    benchmark::DoNotOptimize(ingest::MakeArchive("many.zip", std::move(texts), notes));
  }
  state.SetComplexityN(state.range(0));
}

BENCHMARK(NativeLevels)->RangeMultiplier(4)->Range(1000, 64000)->Complexity();
BENCHMARK(SecondsOfAFlight)->Arg(2000)->Arg(4000)->Arg(7000)->Complexity();
BENCHMARK(SoundingsOfADocument)->RangeMultiplier(2)->Range(50, 800)->Complexity();
BENCHMARK(MessagesOfABulletin)->RangeMultiplier(4)->Range(50, 12800)->Complexity();
BENCHMARK(ProfilesOfADocument)->RangeMultiplier(4)->Range(1000, 16000)->Complexity();
BENCHMARK(OpenColumns)->Arg(150)->Arg(2867)->Unit(benchmark::kMicrosecond);
BENCHMARK(OpenStation)->Arg(100)->Unit(benchmark::kMicrosecond);
BENCHMARK(OpenNative)->Arg(150)->Arg(2867)->Unit(benchmark::kMicrosecond);
BENCHMARK(OpenBufr)->Unit(benchmark::kMicrosecond);
BENCHMARK(NamesOfColumns)->RangeMultiplier(4)->Range(1000, 64000)->Complexity();
BENCHMARK(BulletinsOfAnArchive)->RangeMultiplier(4)->Range(48, 3072)->Complexity();

}  // namespace

BENCHMARK_MAIN();
