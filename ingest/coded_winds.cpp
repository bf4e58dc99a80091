#include "ingest/coded_winds.h"

#include <algorithm>
#include <cmath>

#include "analysis/interpolate.h"
#include "core/numbers.h"

namespace vexa::ingest {
namespace {

using analysis::WindVector;

double Apart(const WindVector& a, const WindVector& b) {
  return std::hypot(a.U - b.U, a.V - b.V);
}

WindVector VectorAt(const SoundingRecord& record, int level) {
  return analysis::Components({record.WindDir(level), record.WindSpd(level)});
}

}  // namespace

int TellStrayWinds(const SoundingRecord& record, std::vector<std::string>& notes) {
  constexpr double kSeldom = 20, kSeldomAloft = 26;  // knots
  constexpr double kAloft = 20000;                   // m, where waves stir the wind
  int stray = 0;
  for (int i = 2; i < record.NumWindLevels(); ++i) {
    const WindVector low = VectorAt(record, i - 1), high = VectorAt(record, i + 1);
    const double below = record.WindHgt(i - 1), height = record.WindHgt(i);
    const double share = (height - below) / (record.WindHgt(i + 1) - below);
    const WindVector line{low.U + share * (high.U - low.U), low.V + share * (high.V - low.V)};
    const WindVector here = VectorAt(record, i);
    const double out = std::min({Apart(here, line), Apart(here, low), Apart(here, high)});
    if (out <= (height < kAloft ? kSeldom : kSeldomAloft)) continue;
    notes.push_back("The wind " + Mask(record.WindDir(i), "000") + '/' +
                    Mask(record.WindSpd(i), "0") + " kt at " + Mask(height, "0") +
                    " m stands out from those around it; it may be garbled.");
    ++stray;
  }
  return stray;
}

}  // namespace vexa::ingest
