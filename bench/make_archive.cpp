// Writes a folder of station files with as many made soundings as are asked for, to try catalogues
// with: make_archive FOLDER COUNT [OF-A-FILE]
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <string>

#include "core/files.h"
#include "core/numbers.h"
#include "made_soundings.h"

namespace {

int Make(const std::filesystem::path& folder, int count, int ofAFile) {
  const vexa::bench::MadeSoundings made(VEXA_SOURCE_DIR "/examples");
  std::filesystem::create_directories(folder);
  constexpr int kFirstStation = 70000;
  for (int done = 0; done < count; done += ofAFile) {
    const int station = kFirstStation + done / ofAFile;
    std::ofstream file(folder / (std::to_string(station) + ".txt"), std::ios::binary);
    for (int i = 0; i < ofAFile && done + i < count; ++i) file << made.Ascent(station, i);
    if (!file.flush()) {
      std::perror("make_archive");
      return 1;
    }
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  constexpr int kUsualOfAFile = 20'000;
  const auto number = [&](int place) {
    return argc > place ? vexa::ParseWhole(argv[place]).value_or(0) : kUsualOfAFile;
  };
  if (argc < 3 || number(2) < 1 || number(3) < 1) {
    std::fputs("make_archive FOLDER COUNT [OF-A-FILE]\n", stderr);
    return 2;
  }
  try {
    return Make(vexa::PathFromText(argv[1]), number(2), number(3));
  } catch (const std::exception& failed) {
    std::fprintf(stderr, "make_archive: %s\n", failed.what());
    return 1;
  }
}
