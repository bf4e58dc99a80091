// Soundings of the collection of real ones, and what their indices are.
#pragma once

#include <filesystem>
#include <functional>
#include <string>

#include "analysis/analysis.h"
#include "analysis/index_table.h"
#include "sounding/analysed_sounding.h"
#include "support/soundings.h"

namespace vexa::analysis {

inline SoundingRecord RealSounding(const std::filesystem::path& file) {
  Loading loading = LoadSounding({.File = file}, {});
  EXPECT_FALSE(loading.Failed) << file;
  return loading.Failed ? SoundingRecord{} : loading.Sounding->Record;
}

/// Calls for every sounding of a folder that can be read; says how many there are.
inline int ForEachSounding(const std::filesystem::path& folder,
                           const std::function<void(const SoundingRecord&)>& call) {
  int soundings = 0;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    const Loading loading = LoadSounding({.File = entry.path()}, {});
    if (loading.Failed) continue;
    SCOPED_TRACE(entry.path().filename().string());
    call(loading.Sounding->Record);
    ++soundings;
  }
  return soundings;
}

inline double ValueIn(const AnalysisResults& results, std::string_view label) {
  const IndexValue* index = IndexOf(results, *FindIndex(label));
  EXPECT_TRUE(index->Exists()) << label << ": " << index->Reason;
  return index->Value;
}

}  // namespace vexa::analysis
