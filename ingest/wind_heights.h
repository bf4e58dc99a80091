// One footing for both profiles. The temperature levels of a record have no heights but those that
// follow from pressure and temperature, and its winds no pressure but the one that the profile has
// at their height. A wind that was reported at a pressure therefore stands where the profile has
// this pressure: it is found there again, also when a native file is read back.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "core/sounding_record.h"
#include "ingest/height_finder.h"
#include "ingest/source_levels.h"

namespace vexa::ingest {

class WindHeights {
 public:
  /// profile  with its elevation and its temperature levels
  /// rows     in the order of falling pressure, those without a pressure last; they outlive this
  WindHeights(const SoundingRecord& profile, const std::vector<SourceLevel>& rows);

  /// Height in m of a wind, to 0.1 m. At a pressure of the profile it is the profile's; rows that
  /// repeat a pressure, as those of a sonde every second do, keep their distances as far as the
  /// next pressure leaves room. Beyond the profile the reported height, or one that follows from
  /// those that are known, moves with the profile's nearest end. A wind without a pressure keeps
  /// its height.
  ///
  /// row  has a pressure or a height
  double Of(const SourceLevel& row);

  /// Tells of reported heights that lie more than 30 m off the profile's; empty without any.
  std::string Differences() const;
  /// What the heights of rows without one rest on.
  bool UsedStandardAtmosphere() const { return finder_ && finder_->UsedStandardAtmosphere(); }

 private:
  // A pressure of the profile at which a height is reported: by the first row that has one.
  struct Anchor {
    double Press, Reported, Profile;
    double Shift() const { return Profile - Reported; }
  };

  bool Covers(double press) const;
  double ProfileAt(double press);
  double Reported(double press);
  const Anchor* AnchorBelow(double press);

  const std::vector<SourceLevel>& rows_;
  std::vector<double> press_{};  // falling
  std::vector<double> height_{};
  std::size_t at_ = 0;                    // level of the profile that was asked for last
  std::vector<Anchor> anchors_{};         // falling in pressure
  std::size_t anchor_ = 0;                // that was asked for last
  std::optional<HeightFinder> finder_{};  // when one is wanted
};

}  // namespace vexa::ingest
