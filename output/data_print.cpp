#include "output/data_print.h"

#include <algorithm>
#include <string>

#include "core/shown_values.h"
#include "output/listing_line.h"

namespace vexa::output {
namespace {

constexpr std::string_view kPressureHeading = " Pressure Levels                    ";
constexpr std::string_view kWindHeading = " Wind Levels";

// The columns' last characters.
constexpr int kPressEnd = 6;
constexpr int kTempEnd = 14;
constexpr int kDewptEnd = 22;
constexpr int kSpreadEnd = 31;
constexpr int kHeightEnd = 47;
constexpr int kDirEnd = 56;
constexpr int kSpdEnd = 65;

struct Units {
  TempUnits Temp = TempUnits::Celsius;
  LengthUnits Length = LengthUnits::Meter;
  SpeedUnits Speed = SpeedUnits::Knots;
  double Ground = 0;  // m, subtracted from heights
  HeightMode Reference = HeightMode::Msl;
};

Units UnitsOf(const ListingSource& from) {
  const bool isAgl = from.Set.Heights == HeightMode::Agl;
  return {.Temp = from.Set.ThermoTemp,
          .Length = from.Set.GpmUnits,
          .Speed = from.Set.Speed,
          .Ground = isAgl ? static_cast<double>(from.Sounding.ElevM) : 0,
          .Reference = from.Set.Heights};
}

void PutTemps(ListingLine& line, const SoundingRecord& sounding, int level, const Units& units) {
  const double temp = sounding.Temp(level);
  const double dewpt = sounding.Dewpt(level);
  const auto shown = [&units](double celsius) {
    if (NotAvailable(celsius)) return std::string(kNoValue);
    return Mask(ShownIn(celsius, units.Temp), "##0.0");
  };
  const bool hasBoth = !NotAvailable(temp) && !NotAvailable(dewpt);
  const double spread = ShownIn(temp, units.Temp) - ShownIn(dewpt, units.Temp);
  line.EndAt(kPressEnd, Shown(sounding.Press(level), "###0.0"))
      .EndAt(kTempEnd, shown(temp))
      .EndAt(kDewptEnd, shown(dewpt))
      .EndAt(kSpreadEnd, hasBoth ? Mask(spread, "##0.0") : std::string(kNoValue));
}

void PutWind(ListingLine& line, const SoundingRecord& sounding, int level, const Units& units) {
  const double height = sounding.WindHgt(level) - units.Ground;
  const double speed = sounding.WindSpd(level);
  line.EndAt(kHeightEnd, Mask(ShownIn(height, units.Length), "#####0"));
  if (!sounding.HasWind(level)) {
    line.EndAt(kDirEnd, kNoValue).EndAt(kSpdEnd, kNoValue);
    return;
  }
  line.EndAt(kDirEnd, Mask(sounding.WindDir(level), "##0"))
      .EndAt(kSpdEnd, Mask(ShownIn(speed, units.Speed), "##0"));
}

}  // namespace

ListingLines SoundingDataTable(const ListingSource& from) {
  const Units units = UnitsOf(from);
  ListingLines lines = {
      std::string(kPressureHeading) + std::string(kWindHeading),
      PadRight(TempTableHead(units.Temp), static_cast<int>(kPressureHeading.size())) +
          WindTableHead(units.Length, units.Reference, units.Speed)};
  const int temperatureLevels = from.Sounding.NumTempLevels();
  const int windLevels = from.Sounding.NumWindLevels();
  for (int level = 1; level <= std::max(temperatureLevels, windLevels); ++level) {
    ListingLine line;
    if (level <= temperatureLevels) PutTemps(line, from.Sounding, level, units);
    if (level <= windLevels) PutWind(line, from.Sounding, level, units);
    lines.push_back(line.Take());
  }
  return lines;
}

}  // namespace vexa::output
