// Feeds a decoder whatever the fuzzer makes up. The argument --row=NAME chooses the row of the
// table of decoders by its name, --row=unpack the archives; --rows lists them and --seed=FILE tells
// by the exit code whether a file belongs to the row.
#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "core/data_checks.h"
#include "core/files.h"
#include "ingest/decoder.h"
#include "ingest/unpack.h"

namespace {

using vexa::ingest::Decoder;

constexpr std::string_view kUnpack = "unpack";
std::string_view chosenName;  // set once, before the first input
const Decoder* chosenRow = nullptr;

bool Recognises(const vexa::SourceText& source) {
  return chosenRow == nullptr ? vexa::ingest::IsPacked(source.Bytes())
                              : chosenRow->Recognises(source);
}

void Decode(const vexa::SourceText& source, int index) {
  vexa::ingest::LoadContext context{.Index = index};
  vexa::SoundingRecord record;
  vexa::ClearData(record);
  const auto fault = vexa::ingest::DecodeSounding(source, context, record);
  vexa::CheckRecord(record);
  // What the standard library had to refuse is a fault of ours.
  constexpr int kThrown = 51;
  if (fault && (fault->Number == vexa::kFaultBadData || fault->Number == kThrown)) {
    std::fprintf(stderr, "thrown: %s\n", fault->Detail.c_str());
    std::abort();
  }
}

// By the way that files take; a text that several rows recognise goes to the first of them.
void DecodeFirstAndLast(const vexa::SourceText& source) {
  const std::size_t count = vexa::ingest::ListSoundings(source).size();
  Decode(source, 0);
  if (count > 1) Decode(source, static_cast<int>(count) - 1);
}

[[noreturn]] void ListRows() {
  for (const Decoder& row : vexa::ingest::Decoders()) {
    std::printf("%.*s\n", static_cast<int>(row.Name.size()), row.Name.data());
  }
  std::printf("%.*s\n", static_cast<int>(kUnpack.size()), kUnpack.data());
  std::exit(0);
}

[[noreturn]] void TellSeed(const char* file) {
  const auto bytes = vexa::ReadFile(vexa::PathFromText(file));
  std::exit(bytes && Recognises(vexa::SourceText("seed", bytes.Value())) ? 0 : 1);
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* count, char*** words) {
  constexpr std::string_view kRow = "--row=", kSeed = "--seed=";
  const char* seed = nullptr;
  for (int i = 1; i < *count; ++i) {
    const std::string_view word = (*words)[i];
    if (word == "--rows") ListRows();
    if (word.starts_with(kRow)) chosenName = word.substr(kRow.size());
    if (word.starts_with(kSeed)) seed = (*words)[i] + kSeed.size();
  }
  for (const Decoder& row : vexa::ingest::Decoders()) {
    if (row.Name == chosenName) chosenRow = &row;
  }
  if (chosenRow == nullptr && chosenName != kUnpack) {
    std::fprintf(stderr, "there is no row \"%s\"\n", std::string(chosenName).c_str());
    std::exit(2);
  }
  if (seed != nullptr) TellSeed(seed);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string bytes(reinterpret_cast<const char*>(data), size);
  if (chosenRow == nullptr) {
    std::vector<std::string> notes;
    const auto archive = vexa::ingest::ReadSource("input", std::move(bytes), notes);
    if (archive) DecodeFirstAndLast(archive.Value());
    return 0;
  }
  vexa::SourceText source("input", std::move(bytes));
  source.SetWrittenOn(std::chrono::sys_days(std::chrono::days(20000)));
  if (chosenRow->Recognises(source)) DecodeFirstAndLast(source);
  return 0;
}
