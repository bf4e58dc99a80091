// Places of the air over the mountains on the page of the wave diagram.
#pragma once

#include <vector>

#include "analysis/level_profile.h"
#include "picture/picture.h"

namespace vexa::mountainwave {

/// Kilometres downstream of the first ridge and above the station to places of the page, and back.
class WaveMapping {
 public:
  WaveMapping() = default;
  /// byPress heights are spaced as the logarithm of their pressure
  WaveMapping(const Rect& frame, double startKm, double endKm, double topKm, bool byPress,
              const analysis::LevelProfile& levels);

  const Rect& Frame() const { return frame_; }
  double StartKm() const { return startKm_; }
  double EndKm() const { return endKm_; }
  double TopKm() const { return topKm_; }
  double X(double km) const;
  double Y(double heightKm) const;
  double KmAt(double x) const;
  double HeightAt(double y) const;  // km above the station

 private:
  double Share(double heightKm) const;  // of the way from the ground to the top

  Rect frame_{};
  double startKm_ = -10;
  double endKm_ = 50;
  double topKm_ = 10;
  std::vector<double> shares_{};  // at equal steps of height, when by pressure
};

}  // namespace vexa::mountainwave
