// The soundings of a catalogue that are most like one: every one in the season and at the hour is
// compared, none is passed over.
//
// Compared are temperature, dew point and both components of the wind at the fixed pressures, and a
// few indices, each less its mean over the catalogue and divided by its standard deviation. The
// distance is the root of the mean of four parts: temperature, dew point, wind and indices, each
// the mean square of the differences where both soundings have a value. It is 0 for the same
// sounding, and two taken at random are about 1.4 apart. A part without common values does not
// count; without five common temperatures there is no distance.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "archive/catalogue.h"
#include "archive/columns.h"

namespace vexa::archive {

struct AnalogueRequest {
  int DayOfYear = 0;          // the season is around it; 0: the whole year
  int WindowDays = 45;        // to each side
  std::optional<int> Hour{};  // UTC; none: any
  int WindowHours = 3;        // to each side
  int Station = 0;            // WMO number; 0: everywhere
  std::size_t Most = 10;
};

struct Analogue {
  std::int64_t Id = 0;  // of the catalogue's row
  double Distance = 0;
};

/// What is compared of every sounding of a catalogue, kept in a file beside it (NAME.alike) that is
/// made anew when the catalogue has changed.
class Vectors {
 public:
  /// Faults: the catalogue's, and those of writing the file.
  static Outcome<Vectors> Of(Catalogue& catalogue);
  Vectors(Vectors&&) noexcept;
  Vectors& operator=(Vectors&&) noexcept;
  ~Vectors();

  std::size_t Count() const;
  /// The nearest first; of equal distance the one that was entered first.
  std::vector<Analogue> Nearest(const Entered& sounding, const AnalogueRequest& request) const;

 private:
  struct Kept;
  explicit Vectors(std::unique_ptr<Kept> kept);
  std::unique_ptr<Kept> kept_;
};

/// What a row of the catalogue has in these columns.
Outcome<std::vector<Cell>> RowOf(Catalogue& catalogue, std::int64_t id,
                                 std::span<const Column* const> columns);

}  // namespace vexa::archive
