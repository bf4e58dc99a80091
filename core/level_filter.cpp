#include "core/level_filter.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <utility>
#include <vector>

#include "core/markers.h"
#include "core/units.h"

namespace vexa {
namespace {

// Share of the way from one abscissa to another; 0 where they are the same.
double Share(double from, double to, double at) {
  return from == to ? 0 : (at - from) / (to - from);
}

double OffLine(const std::vector<double>& values, std::size_t from, std::size_t to, std::size_t i,
               double share) {
  return std::fabs(values[i] - (values[from] + share * (values[to] - values[from])));
}

/// Keeps levels between every two kept ones while `off(from, to, i)`, in units of the tolerance,
/// exceeds 1 anywhere.
template <class Off>
void KeepVertices(std::vector<bool>& keep, Off off) {
  std::vector<std::pair<std::size_t, std::size_t>> open;
  std::size_t last = 0;
  for (std::size_t i = 1; i < keep.size(); ++i) {
    if (!keep[i]) continue;
    open.emplace_back(last, i);
    last = i;
  }
  while (!open.empty()) {
    const auto [from, to] = open.back();
    open.pop_back();
    double worst = 1;
    std::size_t at = from;
    for (std::size_t i = from + 1; i < to; ++i) {
      const double distance = off(from, to, i);
      if (distance > worst) {
        worst = distance;
        at = i;
      }
    }
    if (at == from) continue;
    keep[at] = true;
    open.emplace_back(from, at);
    open.emplace_back(at, to);
  }
}

void KeepMandatory(const std::vector<double>& press, std::vector<bool>& keep) {
  for (const double mandatory : kMandatoryPress) {
    const auto at = std::ranges::lower_bound(press, mandatory, std::greater{});
    if (at == press.end()) continue;
    const auto i = static_cast<std::size_t>(std::distance(press.begin(), at));
    keep[i] = true;
    if (*at != mandatory && i > 0) keep[i - 1] = true;
  }
}

std::vector<bool> TempsToKeep(const SoundingRecord& record, const FilterTolerance& tolerance) {
  const std::vector<double>& press = record.Press.Values();
  const std::vector<double>& temp = record.Temp.Values();
  const std::vector<double>& dewpt = record.Dewpt.Values();
  std::vector<bool> keep(press.size(), false);
  if (keep.empty()) return keep;
  keep.front() = keep.back() = true;
  KeepMandatory(press, keep);
  for (std::size_t i = 1; i < keep.size(); ++i) {
    const bool ceases = NotAvailable(dewpt[i]) != NotAvailable(dewpt[i - 1]);
    if (ceases || NotAvailable(temp[i])) keep[i] = keep[i - 1] = true;
  }

  std::vector<double> logPress;
  logPress.reserve(press.size());
  for (const double p : press) logPress.push_back(std::log(p));
  KeepVertices(keep, [&](std::size_t from, std::size_t to, std::size_t i) {
    const bool low = press[i] > press.front() - kLowDepth;
    const double share = Share(logPress[from], logPress[to], logPress[i]);
    const double off =
        OffLine(temp, from, to, i, share) / (low ? tolerance.LowTemp : tolerance.Temp);
    if (NotAvailable(dewpt[i])) return off;
    return std::max(
        off, OffLine(dewpt, from, to, i, share) / (low ? tolerance.LowDewpt : tolerance.Dewpt));
  });
  return keep;
}

std::vector<bool> WindsToKeep(const SoundingRecord& record, const FilterTolerance& tolerance) {
  const std::vector<double>& height = record.WindHgt.Values();
  const std::vector<double>& speed = record.WindSpd.Values();
  const std::vector<double>& direction = record.WindDir.Values();
  std::vector<bool> keep(height.size(), false);
  if (keep.empty()) return keep;
  keep.front() = keep.back() = true;
  std::vector<double> u(height.size());
  std::vector<double> v(height.size());
  std::size_t strongest = 0;
  for (std::size_t i = 0; i < height.size(); ++i) {
    if (!record.HasWind(static_cast<int>(i) + 1)) {
      keep[i] = true;
      if (i > 0) keep[i - 1] = true;
      if (i + 1 < keep.size()) keep[i + 1] = true;
      continue;
    }
    u[i] = speed[i] * std::sin(Radians(direction[i]));
    v[i] = speed[i] * std::cos(Radians(direction[i]));
    if (speed[i] > speed[strongest] || !record.HasWind(static_cast<int>(strongest) + 1)) {
      strongest = i;
    }
  }
  keep[strongest] = true;
  KeepVertices(keep, [&](std::size_t from, std::size_t to, std::size_t i) {
    const double share = Share(height[from], height[to], height[i]);
    return std::hypot(OffLine(u, from, to, i, share), OffLine(v, from, to, i, share)) /
           tolerance.Wind;
  });
  return keep;
}

template <class T>
void Thin(Levels<T>& levels, const std::vector<bool>& keep) {
  std::vector<T> kept;
  for (std::size_t i = 0; i < keep.size(); ++i) {
    if (keep[i]) kept.push_back(levels.Values()[i]);
  }
  levels.Values() = std::move(kept);
}

}  // namespace

bool IsHighDensity(const SoundingRecord& record) {
  return std::max(record.NumTempLevels(), record.NumWindLevels()) > kHighDensityLevels;
}

SoundingRecord FilterLevels(const SoundingRecord& record, const FilterTolerance& tolerance) {
  SoundingRecord thinned = record;
  const std::vector<bool> temps = TempsToKeep(record, tolerance);
  Thin(thinned.Press, temps);
  Thin(thinned.Temp, temps);
  Thin(thinned.Dewpt, temps);
  const std::vector<bool> winds = WindsToKeep(record, tolerance);
  Thin(thinned.WindHgt, winds);
  Thin(thinned.WindDir, winds);
  Thin(thinned.WindSpd, winds);
  if (record.HasWorkWinds()) {
    Thin(thinned.WorkWindDir, winds);
    Thin(thinned.WorkWindSpd, winds);
  }
  return thinned;
}

}  // namespace vexa
