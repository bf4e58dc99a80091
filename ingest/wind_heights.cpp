#include "ingest/wind_heights.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>

#include "analysis/level_profile.h"
#include "core/numbers.h"

namespace vexa::ingest {
namespace {

constexpr int kFewestTemps = 2;

}  // namespace

WindHeights::WindHeights(const SoundingRecord& profile, const std::vector<SourceLevel>& rows)
    : rows_(rows) {
  if (profile.NumTempLevels() < kFewestTemps) return;
  press_ = profile.Press.Values();
  height_ = analysis::DeriveHeights(profile, SaturationOver::Water).Values();
  anchors_.reserve(rows.size());
  for (const SourceLevel& row : rows) {
    if (!row.Press || !row.Height || !Covers(*row.Press)) continue;
    if (!anchors_.empty() && anchors_.back().Press == *row.Press) continue;
    anchors_.push_back({*row.Press, *row.Height, ProfileAt(*row.Press)});
  }
}

bool WindHeights::Covers(double press) const {
  return !press_.empty() && press <= press_.front() && press >= press_.back();
}

// Linear in ln p, as the profile is read everywhere. Rows come in the order of the levels: the next
// level is mostly near the last.
double WindHeights::ProfileAt(double press) {
  if (at_ > 0 && press_[at_ - 1] <= press) {
    at_ = static_cast<std::size_t>(std::ranges::lower_bound(press_, press, std::greater{}) -
                                   press_.begin());
  }
  while (press_[at_] > press) ++at_;
  if (press_[at_] == press) return height_[at_];
  const double below = std::log(press_[at_ - 1]);
  const double share = (std::log(press) - below) / (std::log(press_[at_]) - below);
  return height_[at_ - 1] + share * (height_[at_] - height_[at_ - 1]);
}

double WindHeights::Reported(double press) {
  if (!finder_) finder_ = FinderOf(rows_);
  return finder_->At(press);
}

// The last at that pressure or a higher one; above all of them the first.
const WindHeights::Anchor* WindHeights::AnchorBelow(double press) {
  if (anchors_.empty()) return nullptr;
  if (anchors_[anchor_].Press < press) anchor_ = 0;
  while (anchor_ + 1 < anchors_.size() && anchors_[anchor_ + 1].Press >= press) ++anchor_;
  return &anchors_[anchor_];
}

double WindHeights::Of(const SourceLevel& row) {
  constexpr int kDecimals = 1;
  if (!row.Press) return *row.Height;
  const bool isCovered = Covers(*row.Press);
  if (isCovered && !row.Height) return Rounded(ProfileAt(*row.Press), kDecimals);
  const double reported = row.Height ? *row.Height : Reported(*row.Press);
  const Anchor* anchor = AnchorBelow(*row.Press);
  if (anchor == nullptr) return reported;
  double share = 1;  // of the reported distance from the anchor
  const Anchor* next = anchor + 1;
  if (isCovered && next != anchors_.data() + anchors_.size() && reported > anchor->Reported &&
      next->Reported > anchor->Reported) {
    share = (next->Profile - anchor->Profile) / (next->Reported - anchor->Reported);
    share = reported <= next->Reported ? share : 1;
  }
  return Rounded(anchor->Profile + share * (reported - anchor->Reported), kDecimals);
}

std::string WindHeights::Differences() const {
  constexpr double kWorthTelling = 30;  // m
  const auto apart = [](const Anchor& anchor) { return std::fabs(anchor.Shift()); };
  const auto isFar = [&](const Anchor& anchor) { return apart(anchor) > kWorthTelling; };
  const auto first = std::ranges::find_if(anchors_, isFar);
  if (first == anchors_.end()) return {};
  const auto at = [](const Anchor& anchor) {
    return Shortest(anchor.Press) + " hPa: reported " + Mask(anchor.Reported, "0") +
           " m, computed " + Mask(anchor.Profile, "0") + " m";
  };
  const auto count = static_cast<int>(std::ranges::count_if(anchors_, isFar));
  std::string text =
      "Heights that do not follow from the temperatures, by more than 30 m: " + Shortest(count) +
      ". " + at(*first);
  const auto most = std::ranges::max_element(anchors_, {}, apart);
  if (most != first) text += "; " + at(*most);
  return text + '.';
}

}  // namespace vexa::ingest
