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
  AirPoint point;
  const std::size_t count = levels_.Height.Values().size();
  if (count == 0) return point;
  const double* heights = levels_.Height.Values().data();
  while (low_ + 2 < count && heights[low_ + 1] <= height) ++low_;
  const std::size_t low = low_;
  const std::size_t high = std::min(low + 1, count - 1);
  const double depth = heights[high] - heights[low];
  const double share = depth > 0 ? std::clamp((height - heights[low]) / depth, 0.0, 1.0) : 0;
  const auto between = [low, high, share](const Levels<double>& values) {
    const double* all = values.Values().data();
    return all[low] + share * (all[high] - all[low]);
  };
  point.Height = between(levels_.Height);
  point.Temp = between(levels_.Temp);
  point.Theta = between(levels_.Theta);
  const double* pressures = levels_.Press.Values().data();
  point.LevelPress = share == 1 ? pressures[high] : pressures[low];
  point.IsBetween = share != 0 && share != 1 && pressures[low] != pressures[high];
  if (point.IsBetween) point.LogPress = between(levels_.LogPress);
  const double* dewpts = levels_.Dewpt.Values().data();
  const bool lowMoist = !NotAvailable(dewpts[low]);
  const bool highMoist = !NotAvailable(dewpts[high]);
  if (share == 0 && lowMoist) {
    point.Dewpt = dewpts[low];
  } else if (share == 1 && highMoist) {
    point.Dewpt = dewpts[high];
  } else if (lowMoist && highMoist) {
    point.Dewpt = between(levels_.Dewpt);
  }
  const double* temps = levels_.Temp.Values().data();
  if (depth > 0) point.Lapse = (temps[low] - temps[high]) / depth * 1000;
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
  for (std::size_t i = 0; i < points.size();) {
    const ClassedPoint& first = points[i];
    std::size_t end = i + 1;  // behind the run of one class and word
    const auto goesOn = [&first](const ClassedPoint& point) {
      return point.Class == first.Class && point.Word == first.Word;
    };
    while (end < points.size() && goesOn(points[end])) ++end;
    if (first.Class != Intensity::None) {
      const LevelPoint base = first.At.Point();
      const LevelPoint top = points[end - 1].At.Point();
      AirLayer layer{base, top, first.Class, first.Word, first.Value};
      if (i > 0) layer.Base = Middle(points[i - 1].At.Point(), base);
      if (end < points.size()) layer.Top = Middle(top, points[end].At.Point());
      for (std::size_t k = i + 1; k < end; ++k) {
        const double value = points[k].Value;
        const bool isLarger =
            !NotAvailable(value) && (NotAvailable(layer.Value) || value > layer.Value);
        if (isLarger) layer.Value = value;
      }
      layers.push_back(layer);
    }
    i = end;
  }
  return layers;
}

std::string_view Text(Intensity intensity) {
  static constexpr std::string_view kWords[] = {"none", "TRC", "LGT", "L-M", "MDT",
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
