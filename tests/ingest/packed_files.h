// ZIP archives made for the tests.
#pragma once

#include <gtest/gtest.h>
#include <zip.h>

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace vexa::ingest {

/// The day and minute as an archive states them: years since 1980, month and day in seven, four and
/// five bits, hours and minutes in five and six.
struct PackedOn {
  std::chrono::year_month_day Day{};
  unsigned Minute = 0;  // of the day
};

inline void WriteZip(const std::filesystem::path& path,
                     const std::vector<std::pair<std::string, std::string>>& files,
                     const std::optional<PackedOn>& when = std::nullopt) {
  std::filesystem::remove(path);
  zip_t* archive = zip_open(path.string().c_str(), ZIP_CREATE, nullptr);
  for (const auto& [name, bytes] : files) {
    zip_source_t* source = zip_source_buffer(archive, bytes.data(), bytes.size(), 0);
    const zip_int64_t index = zip_file_add(archive, name.c_str(), source, 0);
    EXPECT_GE(index, 0);
    if (!when) continue;
    const auto years = static_cast<unsigned>(static_cast<int>(when->Day.year()) - 1980);
    const auto date = static_cast<zip_uint16_t>(years << 9U | unsigned{when->Day.month()} << 5U |
                                                unsigned{when->Day.day()});
    const auto time = static_cast<zip_uint16_t>(when->Minute / 60 << 11U | when->Minute % 60 << 5U);
    EXPECT_EQ(zip_file_set_dostime(archive, static_cast<zip_uint64_t>(index), time, date, 0), 0);
  }
  EXPECT_EQ(zip_close(archive), 0);
}

}  // namespace vexa::ingest
