// The reference tables in the program folder: the standard atmosphere, saturated adiabats, the
// saturation vapour pressure, and a sounding of the standard atmosphere to compare with. Each is
// built from the formulas when it is missing, and checked against them when it is there, so that
// whoever reads the files finds the numbers that the program draws.
#pragma once

#include <filesystem>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "core/fault.h"
#include "core/sounding_record.h"

namespace vexa {

inline constexpr std::string_view kReferenceSounding = "REFERENCE.DAT";

struct ReferenceTable {
  std::string_view File{};
  std::string_view Holds{};  // what stands in a record
  int Records = 0;
  std::size_t Columns = 0;
  std::vector<double> (*Record)(int number) = nullptr;  // by the formulas; counted from 0
  /// Whether a record read back is what the formulas give.
  bool (*Agrees)(const std::vector<double>& read, int number) = nullptr;
  bool IsQuick = false;  // to write it takes less than to read it
};

/// VEXA.IKO: height, m; pressure, hPa; temperature, °C, every 500 m to 80 km.
/// VEXA.WET: equivalent potential temperature, K, then the temperatures, °C, of the saturated
/// adiabat over water every 50 hPa from 1050 to 100 hPa.
/// VEXA.SAT: temperature, °C; saturation vapour pressure over water and over ice, hPa, every degree
/// from -120 to 60 °C.
std::span<const ReferenceTable> ReferenceTables();

enum class TableState { Read, Built, Rebuilt };

/// Reads and checks a table; one that is missing is built, a damaged one kept as NAME.bak and
/// rebuilt. A fault tells that it could not be read or written.
Outcome<TableState> ReadOrBuild(const ReferenceTable& table, const std::filesystem::path& root);

/// The standard atmosphere as a sounding: 0 m to 100 hPa, without moisture and winds.
SoundingRecord StandardSounding();

/// The same for REFERENCE.DAT, a native file that holds StandardSounding until the user puts
/// another sounding in its place. One that cannot be read is kept as REFERENCE.DAT.bak.
Outcome<TableState> ReadOrBuildReference(const std::filesystem::path& root);

}  // namespace vexa
