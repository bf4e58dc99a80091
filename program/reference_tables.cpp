#include "program/reference_tables.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>
#include <string>

#include "analysis/adiabat_table.h"
#include "analysis/moist_air.h"
#include "analysis/standard_atmosphere.h"
#include "config/system_file.h"
#include "core/files.h"
#include "core/markers.h"
#include "core/numbers.h"
#include "core/raw_file.h"
#include "core/user_file.h"

namespace vexa {
namespace {

namespace fs = std::filesystem;

constexpr int kHeightStep = 500;   // m
constexpr int kHighest = 80000;    // m
constexpr int kFirstThetaE = 240;  // K
constexpr int kThetaEStep = 5;
constexpr int kAdiabats = 37;  // up to 420 K
constexpr int kBottom = 1050;  // hPa
constexpr int kTop = 100;
constexpr int kPressStep = 50;
constexpr int kColdest = -120;  // °C
constexpr int kWarmest = 60;

// What another machine's mathematics may differ by.
bool IsNear(double read, double computed) {
  return std::fabs(read - computed) <= 1e-9 * std::max(1.0, std::fabs(computed));
}

std::vector<double> StandardRecord(int number) {
  const double height = number * kHeightStep;
  return {height, analysis::IsaPressure(height), analysis::IsaTemp(height)};
}

std::vector<double> VaporRecord(int number) {
  const double temp = kColdest + number;
  return {temp, analysis::SatVapor(temp, SaturationOver::Water),
          analysis::SatVapor(temp, SaturationOver::Ice)};
}

std::vector<double> AdiabatRecord(int number) {
  const double thetaE = kFirstThetaE + number * kThetaEStep;
  std::vector<double> temps(kBottom - kTop + 1);
  analysis::SolveAdiabat(thetaE, SaturationOver::Water, kBottom, kTop, temps.data(), nullptr);
  std::vector<double> record = {thetaE};
  for (std::size_t i = 0; i < temps.size(); i += kPressStep) record.push_back(temps[i]);
  return record;
}

template <std::vector<double> (*kRecord)(int)>
bool AgreesWith(const std::vector<double>& read, int number) {
  return std::ranges::equal(read, kRecord(number), IsNear);
}

// To solve every adiabat again would cost as much as to build them: the temperatures are put back
// into the equation that they solve.
bool AdiabatAgrees(const std::vector<double>& read, int number) {
  constexpr double kTolerance = 0.01;  // K
  constexpr double kColdestSolved = -120;
  if (!IsNear(read.front(), kFirstThetaE + number * kThetaEStep)) return false;
  for (std::size_t i = 1; i < read.size(); ++i) {
    if (i > 1 && read[i] >= read[i - 1]) return false;
    if (read[i] < kColdestSolved) continue;
    const double press = kBottom - static_cast<double>(i - 1) * kPressStep;
    const double thetaE = analysis::ThetaPoint(press, read[i]).ThetaE;
    if (!(std::fabs(thetaE - read.front()) <= kTolerance)) return false;
  }
  return true;
}

constexpr ReferenceTable kTables[] = {
    {"VEXA.IKO", "height, pressure, temperature", kHighest / kHeightStep + 1, 3, StandardRecord,
     AgreesWith<StandardRecord>, true},
    {"VEXA.WET", "a saturated adiabat", kAdiabats, 2 + (kBottom - kTop) / kPressStep, AdiabatRecord,
     AdiabatAgrees},
    {"VEXA.SAT", "temperature, vapour pressures", kWarmest - kColdest + 1, 3, VaporRecord,
     AgreesWith<VaporRecord>, true},
};

std::string TableText(const ReferenceTable& table) {
  SystemWriter writer;
  for (int i = 0; i < table.Records; ++i) writer.NumberRecord(table.Record(i));
  return writer.Take();
}

bool IsWhole(const ReferenceTable& table, const std::string& bytes) {
  if (table.IsQuick && bytes == TableText(table)) return true;
  SystemReader reader(std::string(table.File), bytes);
  for (int i = 0; i < table.Records; ++i) {
    const auto record = reader.NumberRecord(table.Holds, table.Columns);
    if (!record || !table.Agrees(*record, i)) return false;
  }
  reader.ExpectEnd();
  return reader.Problem().empty();
}

bool IsSounding(const std::string& bytes) {
  constexpr int kFewestLevels = 2;
  const std::optional<RawVariant> variant = RecogniseRaw(bytes);
  if (!variant) return false;
  SoundingRecord record;
  ClearData(record);
  std::vector<RefusedWind> refused;
  return !ReadRaw(bytes, kReferenceSounding, *variant, record, refused) &&
         record.NumTempLevels() >= kFewestLevels;
}

// Reads a file, or writes it where there is none and where it does not hold what it should.
template <class Holds, class Make>
Outcome<TableState> ReadOrWrite(const fs::path& path, const Holds& holds, const Make& make) {
  const Outcome<std::string> there = ReadFile(path);
  if (there && holds(there.Value())) return TableState::Read;
  const Objection objects = [&](std::string_view bytes) {
    return holds(std::string(bytes)) ? "" : TextFromPath(path.filename());
  };
  // The program makes these by itself: nobody's link is written through.
  if (const auto fault = SaveUserFile(path, make(), objects, SystemFileOps(), Links::Replace)) {
    return *fault;
  }
  return there ? TableState::Rebuilt : TableState::Built;
}

}  // namespace

std::span<const ReferenceTable> ReferenceTables() {
  return kTables;
}

Outcome<TableState> ReadOrBuild(const ReferenceTable& table, const fs::path& root) {
  return ReadOrWrite(
      root / PathFromText(table.File),
      [&table](const std::string& bytes) { return IsWhole(table, bytes); },
      [&table] { return TableText(table); });
}

SoundingRecord StandardSounding() {
  constexpr int kStep = 500;        // m
  constexpr int kHighestM = 16000;  // above 100 hPa
  SoundingRecord record;
  ClearData(record);
  record.FileTag = kProgramFileTag;
  record.StationTitle = "ICAO standard atmosphere";
  record.FileFlavour = "Windows";
  SetDecimalPosition(record, 45, 0);
  SetElevation(record, 0);
  for (int height = 0; height <= kHighestM; height += kStep) {
    record.AddTemp(Rounded(analysis::IsaPressure(height), 2), Rounded(analysis::IsaTemp(height), 2),
                   kMissing);
  }
  return record;
}

Outcome<TableState> ReadOrBuildReference(const fs::path& root) {
  return ReadOrWrite(root / PathFromText(kReferenceSounding), IsSounding,
                     [] { return WriteRaw(StandardSounding()); });
}

}  // namespace vexa
