#include "ingest/coded_air.h"

#include <algorithm>
#include <cmath>

#include "analysis/moist_air.h"
#include "core/units.h"

namespace vexa::ingest {
namespace {

double VirtualKOf(const SourceLevel& values) {
  // Impossibly moist is as good as unknown.
  const bool isMoist = values.Dewpt && *values.Dewpt <= *values.Temp;
  const double mixing =
      isMoist ? analysis::ThetaPoint(*values.Press, *values.Dewpt).MixingRatio : 0;
  return analysis::VirtualTemp(*values.Temp, std::max(mixing, 0.0)) + kKelvinOffset;
}

}  // namespace

double OnStraight(double at, double x0, double x1, double y0, double y1) {
  return x0 == x1 ? y0 : y0 + (y1 - y0) * (at - x0) / (x1 - x0);
}

HeldAir::HeldAir(std::vector<CodedLevel>& levels) {
  for (CodedLevel& level : levels) {
    if (!level.Values.Press) continue;
    const double press = *level.Values.Press;
    if (level.Values.Temp) {
      Temps.push_back({.Level = &level,
                       .Press = press,
                       .LogPress = std::log(press),
                       .Amount = *level.Values.Temp,
                       .VirtualK = VirtualKOf(level.Values)});
    }
    if (level.Values.Height && level.Kind == LevelKind::Mandatory) {
      Heights.push_back({.Level = &level,
                         .IsHeight = true,
                         .Press = press,
                         .LogPress = std::log(press),
                         .Amount = *level.Values.Height});
    }
  }
  const auto fromBelow = [](const HeldValue& a, const HeldValue& b) { return a.Press > b.Press; };
  std::ranges::stable_sort(Temps, fromBelow);
  std::ranges::stable_sort(Heights, fromBelow);
}

std::optional<HeldAir::Line> HeldAir::LineAt(const HeldValue& value) const {
  std::optional<std::size_t> below, above;
  for (std::size_t i = 0; i < Temps.size(); ++i) {
    const HeldValue& other = Temps[i];
    if (!other.IsOn || !other.Level->IsFine() || &other == &value) continue;
    if (other.Press >= value.Press) below = i;
    if (!above && other.Press <= value.Press) above = i;
  }
  if (!below || !above) return std::nullopt;
  const HeldValue &a = Temps[*below], &b = Temps[*above];
  if (*below != *above && b.Level->IsBehindGap) return std::nullopt;
  return Line{OnStraight(value.LogPress, a.LogPress, b.LogPress, a.Amount, b.Amount), *below,
              *above, a.LogPress - b.LogPress};
}

bool HeldAir::HasLine(const HeldValue& value) const {
  const std::optional<Line> line = LineAt(value);
  return line && line->Length <= kAirLongestLine;
}

std::vector<std::size_t> HeldAir::Profile() const {
  std::vector<std::size_t> profile;
  for (std::size_t i = 0; i < Temps.size(); ++i) {
    if (!Temps[i].IsOn) continue;
    if (profile.empty() || Temps[profile.back()].Press != Temps[i].Press) profile.push_back(i);
  }
  return profile;
}

bool HeldAir::IsCovered(const HeldValue& lower, const HeldValue& upper,
                        const std::vector<std::size_t>& profile) const {
  return profile.size() > 1 && lower.Press <= Temps[profile.front()].Press &&
         upper.Press >= Temps[profile.back()].Press;
}

HeldAir::Layer HeldAir::LayerOf(const HeldValue& lower, const HeldValue& upper,
                                const std::vector<std::size_t>& profile,
                                std::vector<double>* weights) const {
  const auto temp = [&](std::size_t k) -> const HeldValue& { return Temps[profile[k]]; };
  if (weights != nullptr) weights->assign(profile.size(), 0);
  Layer layer;
  while (layer.First + 2 < profile.size() && temp(layer.First + 1).Press >= lower.Press) {
    ++layer.First;
  }
  layer.Last = layer.First;
  while (layer.Last + 1 < profile.size() && temp(layer.Last).Press > upper.Press) {
    const HeldValue &a = temp(layer.Last), &b = temp(layer.Last + 1);
    const double from = std::min(a.LogPress, lower.LogPress);
    const double to = std::max(b.LogPress, upper.LogPress);
    const auto at = [&](double logPress) {
      return OnStraight(logPress, a.LogPress, b.LogPress, a.VirtualK, b.VirtualK);
    };
    layer.Thickness += kMetresPerKelvin * (at(from) + at(to)) / 2 * (from - to);
    layer.Gap = std::max(layer.Gap, from - to);
    if (weights != nullptr) {
      const double ofB = OnStraight((from + to) / 2, a.LogPress, b.LogPress, 0, 1);
      (*weights)[layer.Last] += kMetresPerKelvin * (1 - ofB) * (from - to);
      (*weights)[layer.Last + 1] += kMetresPerKelvin * ofB * (from - to);
    }
    ++layer.Last;
  }
  return layer;
}

double HeldAir::Depth(const HeldValue& below, const HeldValue& above) {
  return kMetresPerKelvin * (below.VirtualK + above.VirtualK) / 2 *
         (below.LogPress - above.LogPress);
}

}  // namespace vexa::ingest
