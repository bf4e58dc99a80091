// What one subset of a message tells of a sounding: a whole ascent or a part of one. Values come
// one after another, so that nothing of a message is kept but its levels.
#pragma once

#include <optional>
#include <vector>

#include "ingest/bufr_messages.h"
#include "ingest/source_levels.h"
#include "ingest/source_sounding.h"

namespace vexa::ingest {

struct BufrLevel {
  SourceLevel Values{};
  bool IsGround = false;
  unsigned Seen = 0;  // rows of kLevelElements, missing values too
};

struct BufrReport {
  SourceHeading Heading{};
  ObservationTime Release{};
  int Update = 0;
  std::vector<BufrLevel> Levels{};
  Refusals Refused{};

  /// Whether a level has more than a height.
  bool IsUseful() const;
};

class ReportBuilder {
 public:
  void Take(const BufrValue& value);
  /// The report, once all its values were taken. `head` is that of its message.
  BufrReport Finish(const BufrHead& head) &&;

 private:
  bool OpensLevel(int descriptor) const;
  void AddToLevel(const BufrValue& value);

  BufrSubset header_{};  // what stands before the first level
  BufrReport report_{};
};

/// Whether two times that are known lie no more than so many minutes apart.
bool AreWithin(const ObservationTime& a, const ObservationTime& b, int minutes);

}  // namespace vexa::ingest
