// Values of the analysis as rows of sheets and boxes show them, in the units of the options; each
// unit is written in one way.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "analysis/analysis.h"
#include "analysis/severe_table.h"
#include "analysis/shown_units.h"
#include "config/display_settings.h"
#include "core/sounding_record.h"
#include "display/block.h"

namespace vexa::display {

/// What a display is made from.
struct Shown {
  const SoundingRecord& Record;
  const analysis::AnalysisResults& Results;
  const DisplaySettings& Set;
  const analysis::SevereTable& Severe;
};

inline constexpr std::string_view kNoValue = "--";

/// A value with the powers of the index table's units, "m2/s2", as people write them.
std::string WithPowers(std::string_view text);

class Texts {
 public:
  explicit Texts(const Shown& shown) : Texts(shown, shown.Set.Heights) {}
  Texts(const Shown& shown, HeightMode heights)
      : shown_(shown), heights_(heights), units_(shown.Set, heights, shown.Record.ElevM) {}

  std::string Height(double height) const { return units_.Height(height); }
  std::string Depth(double meters) const { return units_.Depth(meters); }
  std::string Temp(double temp) const { return units_.Temp(temp); }
  std::string Press(const analysis::LevelPoint& level) const;
  std::string PressUnit() const;                             // " mb"
  std::string Wind(const analysis::WindVector& wind) const;  // "005/12 kts"
  std::string Speed(double knots) const;                     // "21 kts"
  /// Of a thermal: "2.1 m/s" beside metres, "413 ft/min" beside feet.
  std::string Climb(const analysis::SoaringResults& soaring) const;
  std::string SpeedUnit() const;  // "kts"
  /// "820 - 1320 m AGL"
  std::string Span(const analysis::LevelPoint& base, const analysis::LevelPoint& top) const;
  static std::string Number(double value, std::string_view mask, std::string_view unit);

  /// A height's number alone, and the unit that all of them have: "m AGL".
  std::string HeightNumber(double height) const;
  std::string HeightUnit() const;

  /// The row of an index by its trimmed panel label, under its own name or a shorter one; empty
  /// when there is none.
  SheetRow Index(std::string_view label, std::string_view name = {}) const;

 private:
  const Shown& shown_;
  HeightMode heights_;
  analysis::ShownUnits units_;
};

/// The step of the user's severe-weather table that an index reaches.
Stress StressOf(const Shown& shown, std::string_view label);
/// The same for another value of the index's kind, a further parcel's CAPE for one.
Stress StressOf(const Shown& shown, std::string_view label, double value);

/// Blocks that several displays have; "none" where nothing was found.
SheetBlock CloudBlock(const Shown& shown, const Texts& texts);
SheetBlock AirLayerBlock(std::string heading, const std::vector<analysis::AirLayer>& layers,
                         const Texts& texts);
/// "Radiation", "Tropopause": for places that say that it is an inversion.
std::string InversionWord(analysis::InversionKind kind);
SheetBlock InversionBlock(const std::vector<analysis::Inversion>& inversions, const Texts& texts);
SheetBlock LevelBlock(std::string heading, const std::vector<analysis::LevelPoint>& levels,
                      const Texts& texts);
std::string IcingHeading(const DisplaySettings& options);

}  // namespace vexa::display
