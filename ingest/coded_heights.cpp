#include "ingest/coded_heights.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <map>

#include "analysis/moist_air.h"
#include "analysis/standard_atmosphere.h"
#include "core/markers.h"
#include "core/numbers.h"
#include "core/units.h"
#include "ingest/coded_judge.h"
#include "ingest/height_finder.h"

namespace vexa::ingest {
namespace {

constexpr double kHighestInMetres = 500;  // hPa; from there up figures are decametres
constexpr double kBelowSea = 500;         // at 1000 hPa the amount below the sea plus this
constexpr double kMetreCycle = 1000, kDecametreCycle = 10000;
constexpr double kDeck = 10;  // m

double Shown(double press, int figures) {
  if (press == 1000) return figures >= kBelowSea ? kBelowSea - figures : figures;
  return press <= kHighestInMetres ? figures * 10.0 : figures;
}

// Of the heights that three figures can stand for the nearest to an expected one.
double Nearest(double press, int figures, double expected) {
  const double shown = Shown(press, figures);
  if (press == 1000) return shown;
  const double cycle = press <= kHighestInMetres ? kDecametreCycle : kMetreCycle;
  return shown + cycle * std::round((expected - shown) / cycle);
}

bool IsSurfaceTemp(const CodedLevel& level) {
  return level.Kind == LevelKind::Surface && level.Values.Temp && level.Values.Press;
}

const CodedLevel* SurfaceOf(const std::vector<CodedLevel>& levels) {
  const auto surface = std::ranges::find_if(levels, IsSurfaceTemp);
  return surface == levels.end() ? nullptr : &*surface;
}

struct Profile {
  std::vector<double> Press{}, Temp{}, Dewpt{};
  bool Covers(double press) const {
    return Press.size() > 1 && press <= Press.front() && press >= Press.back();
  }
};

Profile ProfileOf(const std::vector<CodedLevel>& levels) {
  std::map<double, const SourceLevel*, std::greater<>> byPress;
  for (const CodedLevel& level : levels) {
    if (level.Values.Press && level.Values.Temp) {
      byPress.try_emplace(*level.Values.Press, &level.Values);
    }
  }
  Profile profile;
  for (const auto& [pressure, values] : byPress) {
    profile.Press.push_back(pressure);
    profile.Temp.push_back(*values->Temp);
    // Impossibly moist is as good as unknown.
    const bool isMoist = values->Dewpt && *values->Dewpt <= *values->Temp;
    profile.Dewpt.push_back(isMoist ? *values->Dewpt : kMissing);
  }
  return profile;
}

HeightFinder FinderOf(Profile profile) {
  HeightFinder heights;
  heights.SetTemperatures(std::move(profile.Press), std::move(profile.Temp),
                          std::move(profile.Dewpt));
  return heights;
}

// Metres that the lowest temperature level lies above the sea, by those that most agree with.
double BaseOf(const std::vector<CodedLevel>& levels, const Ground& ground, const Profile& profile,
              HeightFinder& above) {
  const double standard = analysis::IsaHeight(profile.Press.front());
  std::vector<double> bases;
  const CodedLevel* surface = SurfaceOf(levels);
  if (surface != nullptr && (ground.Elevation || ground.IsSea)) {
    bases.push_back(ground.Elevation.value_or(kDeck) - above.At(*surface->Values.Press));
  }
  for (const CodedLevel& level : levels) {
    if (!level.HeightFigures || *level.Values.Press > kHighestInMetres ||
        !profile.Covers(*level.Values.Press)) {
      continue;
    }
    const double thickness = above.At(*level.Values.Press);
    bases.push_back(Nearest(*level.Values.Press, *level.HeightFigures, standard + thickness) -
                    thickness);
  }
  if (bases.empty()) return standard;
  constexpr double kAgree = 250;  // m, a garbled temperature included
  const auto agreeing = [&bases](double base) {
    return std::ranges::count_if(bases,
                                 [base](double other) { return std::fabs(other - base) < kAgree; });
  };
  return *std::ranges::max_element(bases, {}, agreeing);
}

// The thousands of all mandatory heights.
void SetThousands(std::vector<CodedLevel>& levels, const Ground& ground,
                  std::vector<std::string>& notes) {
  Profile profile = ProfileOf(levels);
  if (profile.Press.empty()) {
    // Heights alone: in the standard atmosphere.
    profile.Press = {analysis::IsaPressure(0)};
    profile.Temp = {analysis::IsaTemp(0)};
    profile.Dewpt = {kMissing};
  }
  HeightFinder above = FinderOf(profile);
  above.AddKnown(profile.Press.front(), 0);
  const double base = BaseOf(levels, ground, profile, above);
  for (CodedLevel& level : levels) {
    if (level.Kind != LevelKind::Mandatory || !level.HeightFigures) continue;
    const double press = *level.Values.Press;
    const double expected = base + above.At(press);
    const double height = Nearest(press, *level.HeightFigures, expected);
    // Beneath the ground there is no temperature to expect anything by.
    if (!profile.Covers(press) && press < profile.Press.front() &&
        std::fabs(height - expected) > kDoubtfulHeight) {
      notes.push_back("The height of group " + level.HeightGroup +
                      " does not fit the levels below; it was left out.");
      level.HeightFigures.reset();
      continue;
    }
    level.Values.Height = height;
  }
}

// The heights that are left take their places; beneath the ground they tell nothing of the air.
HeightFinder KnownHeights(const std::vector<CodedLevel>& levels) {
  HeightFinder heights = FinderOf(ProfileOf(levels));
  const CodedLevel* surface = SurfaceOf(levels);
  std::map<double, double, std::greater<>> known;
  for (const CodedLevel& level : levels) {
    if (!level.Values.Press || !level.Values.Height) continue;
    const bool isBeneath = surface != nullptr && *level.Values.Press > *surface->Values.Press;
    if (IsSurfaceTemp(level) || (level.Kind == LevelKind::Mandatory && !isBeneath)) {
      known.try_emplace(*level.Values.Press, *level.Values.Height);
    }
  }
  for (const auto& [press, height] : known) heights.AddKnown(press, height);
  return heights;
}

// Pressure of the lowest mandatory level above the ground that has a height.
double LowestKnown(const std::vector<CodedLevel>& levels, double ground) {
  double lowest = 0;
  for (const CodedLevel& level : levels) {
    if (level.Kind != LevelKind::Mandatory || !level.Values.Height) continue;
    if (*level.Values.Press <= ground) lowest = std::max(lowest, *level.Values.Press);
  }
  return lowest > 0 ? lowest : ground;
}

void LoseSurface(std::vector<CodedLevel>& levels, const std::string& why,
                 std::vector<std::string>& notes) {
  std::erase_if(levels, IsSurfaceTemp);
  notes.push_back("The surface level " + why + "; it was left out.");
}

// Parts A and B and the winds of part B each tell the pressure at the surface. Where they differ
// two outvote one; one against one the station's elevation decides.
void SettleSurface(std::vector<CodedLevel>& levels, const Ground& ground,
                   std::vector<std::string>& notes) {
  std::map<double, int> votes;
  for (const CodedLevel& level : levels) {
    if (level.Kind == LevelKind::Surface && level.Values.Press) ++votes[*level.Values.Press];
  }
  const CodedLevel* first = SurfaceOf(levels);
  if (first == nullptr) return;
  HeightFinder heights = KnownHeights(levels);
  const auto missesGround = [&](double press) {
    return std::fabs(heights.At(press) - ground.Elevation.value_or(kDeck));
  };
  const bool canMeasure = heights.KnowsAny() && (ground.Elevation || ground.IsSea);
  if (votes.size() == 1) {
    if (votes.begin()->second == 1 && canMeasure &&
        missesGround(votes.begin()->first) > kDoubtfulHeight) {
      LoseSurface(
          levels,
          "of " + Shortest(votes.begin()->first) + " hPa does not fit the station and the heights",
          notes);
    }
    return;
  }
  const auto most =
      std::ranges::max_element(votes, {}, [](const auto& vote) { return vote.second; });
  const auto ties = std::ranges::count_if(
      votes, [&most](const auto& vote) { return vote.second == most->second; });
  double press = most->first;
  if (ties > 1) {
    if (!canMeasure) {
      return LoseSurface(levels, "is told with different pressures by parts A and B", notes);
    }
    press = std::ranges::min_element(votes, {}, [&](const auto& vote) {
              return missesGround(vote.first);
            })->first;
  }
  std::string others;
  for (const auto& [other, count] : votes) {
    if (other != press) others += (others.empty() ? "" : ", ") + Shortest(other) + " hPa";
  }
  notes.push_back("The parts differ in the pressure at the surface: " + Shortest(press) +
                  " hPa was taken, " + others + " was not.");
  // A level with another pressure is not believed at all, but for its wind.
  for (CodedLevel& level : levels) {
    if (level.Kind != LevelKind::Surface || !level.Values.Press || level.Values.Press == press) {
      continue;
    }
    level.Values.Press = press;
    const bool isOnlyOne = std::ranges::none_of(levels, [press, &level](const CodedLevel& other) {
      return &other != &level && IsSurfaceTemp(other) && other.Values.Press == press;
    });
    if (!isOnlyOne) {
      level.Values.Temp.reset();
      level.Values.Dewpt.reset();
    }
  }
}

// The lowest level stands for the surface: its height is reported, or follows from the others.
void BeginAbove(const std::vector<CodedLevel>& levels, HeightFinder& heights, Ground& ground,
                std::vector<std::string>& notes) {
  const Profile profile = ProfileOf(levels);
  if (profile.Press.empty()) return;
  ground.IsLost = true;
  ground.Elevation = heights.At(profile.Press.front());
  notes.push_back("There is no surface level that could be used; the sounding begins at " +
                  Shortest(profile.Press.front()) + " hPa, " +
                  Shortest(std::round(*ground.Elevation)) + " m.");
}

}  // namespace

double ThicknessMisfit(const ShownHeight& below, const ShownHeight& above) {
  constexpr double kLapse = 0.0065, kLayer = 7000;  // °C/m; m of a unit of ln p, for the lapse only
  const double layers = std::log(below.Press / above.Press);
  double meanTemp = analysis::IsaTemp(analysis::IsaHeight(std::sqrt(below.Press * above.Press)));
  if (below.Temp && above.Temp) {
    meanTemp = (*below.Temp + *above.Temp) / 2;
  } else if (below.Temp) {
    meanTemp = *below.Temp - kLapse * kLayer * layers / 2;
  } else if (above.Temp) {
    meanTemp = *above.Temp + kLapse * kLayer * layers / 2;
  }
  const double thickness =
      analysis::kDryGasConstant / analysis::kGravity * (meanTemp + kKelvinOffset) * layers;
  const double misfit =
      Shown(above.Press, above.Figures) - Shown(below.Press, below.Figures) - thickness;
  const double cycle = below.Press <= kHighestInMetres ? kDecametreCycle : kMetreCycle;
  return misfit - cycle * std::round(misfit / cycle);
}

int RestoreHeights(std::vector<CodedLevel>& levels, Ground& ground,
                   std::vector<std::string>& notes) {
  const std::size_t before = notes.size();
  SetThousands(levels, ground, notes);
  SettleSurface(levels, ground, notes);
  LeaveOutMisfits(levels, notes);
  // Without a garbled temperature some thousands may be others.
  SetThousands(levels, ground, notes);
  const int garbled = static_cast<int>(notes.size() - before);
  HeightFinder heights = KnownHeights(levels);
  const CodedLevel* surface = SurfaceOf(levels);
  if (surface == nullptr) {
    BeginAbove(levels, heights, ground, notes);
    return garbled;
  }
  // Without a mandatory level there is nothing that the ground could contradict or fit.
  if (heights.KnowsAny()) {
    // The layer between the ground and the lowest height may hold an inversion that is not told.
    constexpr double kOtherPlace = 65, kOfLayer = 300;  // m; m for each unit of ln p
    const double press = *surface->Values.Press;
    const double layer = std::log(press / std::min(press, LowestKnown(levels, press)));
    SettleGround(heights.At(press), ground.Elevation, notes, kOtherPlace + kOfLayer * layer);
  }
  for (CodedLevel& level : levels) {
    if (IsSurfaceTemp(level)) level.Values.Height = ground.Elevation;
  }
  return garbled;
}

}  // namespace vexa::ingest
