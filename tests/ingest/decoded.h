// A text decoded as a file of a name would be, and the texts of the samples.
#pragma once

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/files.h"
#include "core/units.h"
#include "ingest/decoder.h"
#include "support/soundings.h"

namespace vexa::ingest {

struct Decoded {
  SoundingRecord Record{};
  std::optional<Fault> Failed{};
  std::vector<std::string> Notes{};

  bool HasNote(std::string_view part) const {
    return std::ranges::any_of(
        Notes, [part](const std::string& note) { return note.find(part) != note.npos; });
  }
};

inline Decoded DecodeSource(const SourceText& source, int index = 0,
                            const StationList* stations = nullptr) {
  LoadContext context{.Index = index, .Stations = stations};
  Decoded decoded;
  decoded.Failed = DecodeSounding(source, context, decoded.Record);
  decoded.Notes = std::move(context.Notes);
  return decoded;
}

inline Decoded DecodeText(const std::string& name, std::string text, int index = 0) {
  return DecodeSource(SourceText(name, std::move(text)), index);
}

inline std::string FileText(const std::string& name) {
  return ReadFile(test::TestData(name)).Value();
}

constexpr double FromMs(double speedMs) {
  return speedMs * kMsToKnot;
}

inline void ExpectTemp(const SoundingRecord& record, int level, const test::TempRow& row) {
  EXPECT_EQ(record.Press(level), row.Press);
  EXPECT_EQ(record.Temp(level), row.Temp);
  EXPECT_NEAR(record.Dewpt(level), row.Dewpt, 0.06);  // by other formulas up to this
}

inline void ExpectWind(const SoundingRecord& record, int level, const test::WindRow& row) {
  EXPECT_NEAR(record.WindHgt(level), row.Height, 0.5);
  EXPECT_EQ(record.WindDir(level), row.Dir);
  EXPECT_DOUBLE_EQ(record.WindSpd(level), row.Spd);
}

}  // namespace vexa::ingest
