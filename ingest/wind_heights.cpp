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
    : finder_(FinderOf(rows)) {
  if (profile.NumTempLevels() < kFewestTemps) return;
  height_ = analysis::DeriveHeights(profile, SaturationOver::Water).Values();
  for (const double press : profile.Press.Values()) logPress_.push_back(std::log(press));
  for (const SourceLevel& row : rows) {
    if (!row.Press || !row.Height) continue;
    const double logPress = std::log(*row.Press);
    if (!Covers(logPress)) continue;
    if (!anchors_.empty() && anchors_.back().Press == *row.Press) continue;
    anchors_.push_back({*row.Press, *row.Height, ProfileAt(logPress)});
  }
}

bool WindHeights::Covers(double logPress) const {
  if (logPress_.empty()) return false;
  return logPress <= logPress_.front() && logPress >= logPress_.back();
}

// Linear in ln p, as the profile is read everywhere.
double WindHeights::ProfileAt(double logPress) const {
  const auto at = std::ranges::lower_bound(logPress_, logPress, std::greater{});
  const auto i = static_cast<std::size_t>(at - logPress_.begin());
  if (logPress_[i] == logPress || i == 0) return height_[i];
  const double share = (logPress - logPress_[i - 1]) / (logPress_[i] - logPress_[i - 1]);
  return height_[i - 1] + share * (height_[i] - height_[i - 1]);
}

// The last at that pressure or a higher one; above all of them the first.
const WindHeights::Anchor* WindHeights::AnchorBelow(double press) const {
  if (anchors_.empty()) return nullptr;
  const auto above = std::ranges::upper_bound(anchors_, press, std::greater{}, &Anchor::Press);
  return above == anchors_.begin() ? &anchors_.front() : &*std::prev(above);
}

double WindHeights::Of(const SourceLevel& row) {
  constexpr int kDecimals = 1;
  if (!row.Press) return *row.Height;
  const double logPress = std::log(*row.Press);
  const bool isCovered = Covers(logPress);
  if (isCovered && !row.Height) return Rounded(ProfileAt(logPress), kDecimals);
  const double reported = row.Height ? *row.Height : finder_.At(*row.Press);
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
