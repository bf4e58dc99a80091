#include "analysis/profile_walk.h"

#include <algorithm>
#include <cmath>

namespace vexa::analysis {
namespace {

constexpr double kNearest = 50;     // m
constexpr double kFarthest = 250;   // m
constexpr double kMostParts = 400;  // of a layer: reached by none that an atmosphere has

LevelPoint Middle(const LevelPoint& a, const LevelPoint& b) {
  return {std::sqrt(a.Press * b.Press), (a.Height + b.Height) / 2, (a.Temp + b.Temp) / 2};
}

}  // namespace

LevelPoint Between(const LevelProfile& levels, int low, double share) {
  const auto along = [low, share](const Levels<double>& values) {
    return values(low) + share * (values(low + 1) - values(low));
  };
  const double press =
      levels.Press(low) * std::pow(levels.Press(low + 1) / levels.Press(low), share);
  return {press, along(levels.Height), along(levels.Temp)};
}

AirPoint ProfileWalk::At(double height) {
  const int count = levels_.Count();
  AirPoint point;
  if (count == 0) return point;
  while (low_ + 1 < count && levels_.Height(low_ + 1) <= height) ++low_;
  const int high = std::min(low_ + 1, count);
  const double depth = levels_.Height(high) - levels_.Height(low_);
  const double share =
      depth > 0 ? std::clamp((height - levels_.Height(low_)) / depth, 0.0, 1.0) : 0;
  const auto between = [&](const Levels<double>& values) {
    return values(low_) + share * (values(high) - values(low_));
  };
  point.Height = between(levels_.Height);
  point.Temp = between(levels_.Temp);
  point.Theta = between(levels_.Theta);
  const double lowPress = levels_.Press(low_);
  point.Press = share == 0 ? lowPress : lowPress * std::pow(levels_.Press(high) / lowPress, share);
  const bool lowMoist = !NotAvailable(levels_.Dewpt(low_));
  const bool highMoist = !NotAvailable(levels_.Dewpt(high));
  if (share == 0 && lowMoist) {
    point.Dewpt = levels_.Dewpt(low_);
  } else if (share == 1 && highMoist) {
    point.Dewpt = levels_.Dewpt(high);
  } else if (lowMoist && highMoist) {
    point.Dewpt = between(levels_.Dewpt);
  }
  if (depth > 0) point.Lapse = (levels_.Temp(low_) - levels_.Temp(high)) / depth * 1000;
  return point;
}

std::vector<double> SampleHeights(const LevelProfile& levels, double low, double high) {
  std::vector<double> heights;
  if (!(high >= low)) return heights;
  heights.push_back(low);
  const auto fillTo = [&](double next) {
    const double last = heights.back();
    const int parts = static_cast<int>(std::min(kMostParts, std::ceil((next - last) / kFarthest)));
    for (int i = 1; i < parts; ++i) heights.push_back(last + (next - last) * i / parts);
    heights.push_back(next);
  };
  const std::vector<double>& all = levels.Height.Values();
  for (auto at = std::upper_bound(all.begin(), all.end(), low); at != all.end(); ++at) {
    if (*at >= high - kNearest) break;
    if (*at >= heights.back() + kNearest) fillTo(*at);
  }
  if (high > low) fillTo(high);
  return heights;
}

std::vector<AirLayer> JoinRuns(std::span<const ClassedPoint> points) {
  std::vector<AirLayer> layers;
  const ClassedPoint* before = nullptr;
  for (const ClassedPoint& point : points) {
    const bool goesOn =
        before != nullptr && before->Class == point.Class && before->Word == point.Word;
    if (!goesOn) {
      const LevelPoint border = before != nullptr ? Middle(before->At, point.At) : point.At;
      if (before != nullptr && before->Class != Intensity::None) layers.back().Top = border;
      if (point.Class != Intensity::None) {
        layers.push_back({border, point.At, point.Class, point.Word, point.Value});
      }
    } else if (point.Class != Intensity::None) {
      layers.back().Top = point.At;
      const bool larger = !NotAvailable(point.Value) &&
                          (NotAvailable(layers.back().Value) || point.Value > layers.back().Value);
      if (larger) layers.back().Value = point.Value;
    }
    before = &point;
  }
  return layers;
}

std::string_view Text(Intensity intensity) {
  constexpr std::string_view kWords[] = {"none", "TRC", "LGT", "L-M", "MDT",
                                         "M-S",  "SVR", "S-X", "XTR"};
  return kWords[static_cast<std::size_t>(intensity)];
}

Intensity ClassAt(const std::vector<AirLayer>& layers, double height) {
  Intensity worst = Intensity::None;
  for (const AirLayer& layer : layers) {
    if (height >= layer.Base.Height && height <= layer.Top.Height) {
      worst = std::max(worst, layer.Class);
    }
  }
  return worst;
}

}  // namespace vexa::analysis
