#include "mountainwave/wave_mapping.h"

#include <cmath>

#include "analysis/interpolate.h"
#include "core/markers.h"

namespace vexa::mountainwave {

WaveMapping::WaveMapping(const Rect& frame, double startKm, double endKm, double topKm,
                         bool byPress, const analysis::LevelProfile& levels)
    : frame_(frame), startKm_(startKm), endKm_(endKm), topKm_(topKm) {
  if (!byPress || levels.Count() < 2) return;
  constexpr int kSteps = 200;
  const double ground = levels.Height(1);
  const double bottom = std::log(analysis::GetPRESS(levels, ground));
  const double pressTop = analysis::GetPRESS(levels, ground + topKm * 1000);
  const double top = std::log(HasHeight(pressTop) ? pressTop : levels.Press.Top());
  if (!(bottom > top)) return;
  for (int i = 0; i <= kSteps; ++i) {
    const double press = analysis::GetPRESS(levels, ground + topKm * 1000 * i / kSteps);
    const double logPress = HasHeight(press) ? std::log(press) : top;
    shares_.push_back((bottom - logPress) / (bottom - top));
  }
}

double WaveMapping::Share(double heightKm) const {
  const double share = heightKm / topKm_;
  if (shares_.empty() || share <= 0 || share >= 1) return share;
  const double at = share * static_cast<double>(shares_.size() - 1);
  const auto below = static_cast<std::size_t>(at);
  return shares_[below] + (at - static_cast<double>(below)) * (shares_[below + 1] - shares_[below]);
}

double WaveMapping::X(double km) const {
  return frame_.Left + (km - startKm_) / (endKm_ - startKm_) * frame_.Width();
}

double WaveMapping::Y(double heightKm) const {
  return frame_.Bottom - Share(heightKm) * frame_.Height();
}

double WaveMapping::KmAt(double x) const {
  return startKm_ + (x - frame_.Left) / frame_.Width() * (endKm_ - startKm_);
}

double WaveMapping::HeightAt(double y) const {
  const double wanted = (frame_.Bottom - y) / frame_.Height();
  double low = 0;
  double high = topKm_;
  if (wanted <= 0 || wanted >= 1) return wanted * topKm_;
  constexpr int kSteps = 40;
  for (int i = 0; i < kSteps; ++i) {
    const double middle = (low + high) / 2;
    (Share(middle) < wanted ? low : high) = middle;
  }
  return (low + high) / 2;
}

}  // namespace vexa::mountainwave
