#include "ingest/coded_judge.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <optional>
#include <utility>

#include "core/numbers.h"
#include "ingest/coded_air.h"
#include "ingest/coded_doubts.h"

namespace vexa::ingest {
namespace {

struct Bounds {
  double Press, Least, Most;
};

// Somewhat wider than the records of radiosondes: the South Pole's ground below 600 hPa, deserts,
// the polar night and the warmings of the upper stratosphere.
constexpr Bounds kBounds[] = {{1100, -90, 62}, {850, -90, 50},   {700, -90, 35},  {600, -90, 25},
                              {500, -75, 8},   {400, -78, 0},    {300, -85, -8},  {250, -90, -20},
                              {200, -95, -28}, {100, -100, -30}, {50, -100, -20}, {20, -100, 0},
                              {10, -100, 15},  {1, -100, 40}};

// A check that failed: by how much of what is tolerated, and the values that took part.
struct Strain {
  double Size = 0;
  std::vector<std::size_t> Parties{};
};

// How well the values that are on agree.
struct Fit {
  double Broken = 0;  // what goes beyond the tolerances
  double Tension = 0;
  std::vector<Strain> Strains{};
};

class Jury {
 public:
  explicit Jury(std::vector<CodedLevel>& levels) : levels_(levels), air_(levels) {}

  void Decide(std::vector<std::string>& notes) {
    DropDoubtful(notes);
    constexpr int kMostRounds = 60;
    for (int round = 0; round < kMostRounds; ++round) {
      const Fit fit = Assess(true);
      if (fit.Broken == 0) break;
      for (HeldValue* value : Culprits(fit)) Drop(*value, notes);
    }
    TellDoubts(air_, levels_, notes);
  }

 private:
  HeldValue& At(std::size_t party) {
    return party < air_.Temps.size() ? air_.Temps[party] : air_.Heights[party - air_.Temps.size()];
  }

  static void Drop(HeldValue& value, std::vector<std::string>& notes) {
    value.IsOn = false;
    SourceLevel& values = value.Level->Values;
    if (value.IsHeight) {
      values.Height.reset();
      value.Level->HeightFigures.reset();
      notes.push_back("The height of group " + value.Level->HeightGroup +
                      " does not fit the air around it; it was left out.");
      return;
    }
    notes.push_back("At " + Shortest(value.Press) + " hPa " + Shortest(value.Amount) +
                    " C of part " + value.Level->Part +
                    " does not fit the levels around it; it was left out.");
    values.Temp.reset();
    values.Dewpt.reset();
    // Where a level's pressure is not one of the mandatory ones, it may be the garbled value.
    if (value.Level->Kind == LevelKind::Tropopause) values.Spd.reset();
  }

  void DropDoubtful(std::vector<std::string>& notes) {
    constexpr double kBorneOut = 2;  // °C
    for (HeldValue& value : air_.Temps) {
      if (!value.Level->IsDoubtful) continue;
      const std::optional<HeldAir::Line> line = air_.LineAt(value);
      if (!line || std::fabs(line->Temp - value.Amount) > kBorneOut) Drop(value, notes);
    }
  }

  Fit Assess(bool listsStrains) const {
    Fit fit;
    const auto check = [&](double size, auto... parties) {
      constexpr double kMostTension = 9;
      fit.Tension += std::min(size * size, kMostTension);
      if (size <= 1) return;
      fit.Broken += size - 1;
      if (listsStrains) fit.Strains.push_back({size, {static_cast<std::size_t>(parties)...}});
    };
    CheckProfile(check);
    CheckLines(check);
    CheckSurface(check);
    CheckLayers(fit, listsStrains);
    return fit;
  }

  // Neighbours one way up, and two temperatures at one pressure.
  template <class Check>
  void CheckProfile(Check& check) const {
    constexpr double kSamePlace = 1.5;                      // °C
    constexpr double kSuperadiabatic = 1.7, kOnGround = 4;  // °C beyond the dry adiabat
    constexpr double kGroundLayer = 150;                    // hPa
    constexpr double kLowInversion = 15, kLowRise = 0.015;  // °C; °C/m
    constexpr double kHighInversion = 11, kHighRise = 0.004;
    constexpr double kHigh = 500;                   // hPa
    constexpr double kStratosphere = 95;            // hPa
    constexpr double kFall = 6, kFallRate = 0.005;  // °C; °C/m
    std::optional<std::size_t> before;
    double ground = 0;
    for (std::size_t i = 0; i < air_.Temps.size(); ++i) {
      const HeldValue& above = air_.Temps[i];
      if (!above.IsOn) continue;
      if (!before) ground = above.Press;
      if (before) {
        const HeldValue& below = air_.Temps[*before];
        const double change = above.Amount - below.Amount;
        if (below.Press == above.Press) {
          check(std::fabs(change) / kSamePlace, *before, i);
          continue;
        }
        const double depth = HeldAir::Depth(below, above);
        const double beyond = -change - kAirDryLapse * depth;
        const bool isOnGround = below.Press > ground - kGroundLayer;
        check(std::max(0.0, beyond / (isOnGround ? kOnGround : kSuperadiabatic)), *before, i);
        const double most = below.Press > kHigh ? kLowInversion + kLowRise * depth
                                                : kHighInversion + kHighRise * depth;
        check(std::max(0.0, change / most), *before, i);
        if (below.Press < kStratosphere) {
          check(std::max(0.0, -change / (kFall + kFallRate * depth)), *before, i);
        }
      }
      before = i;
    }
  }

  // Mandatory levels and tropopauses on the lines between significant ones.
  template <class Check>
  void CheckLines(Check& check) const {
    for (std::size_t i = 0; i < air_.Temps.size(); ++i) {
      const HeldValue& value = air_.Temps[i];
      if (!value.IsOn || value.Level->IsFine()) continue;
      const std::optional<HeldAir::Line> line = air_.LineAt(value);
      if (!line) continue;
      constexpr double kLow = 3, kHigh = 5, kAloft = 6;  // °C
      constexpr double kLong = 0.5, kOfLength = 10;      // in ln p; °C for each unit beyond
      const double most = (value.Press >= kAirTropopause ? kLow
                           : value.Press > 100           ? kHigh
                                                         : kAloft) +
                          kOfLength * std::max(0.0, line->Length - kLong);
      check(std::fabs(line->Temp - value.Amount) / most, i, line->Below, line->Above);
    }
  }

  // Nothing has a temperature beneath the surface.
  template <class Check>
  void CheckSurface(Check& check) const {
    constexpr double kBeneath = 2;
    for (std::size_t s = 0; s < air_.Temps.size(); ++s) {
      if (!air_.Temps[s].IsOn || air_.Temps[s].Level->Kind != LevelKind::Surface) continue;
      for (std::size_t i = 0; i < s; ++i) {
        if (air_.Temps[i].IsOn && air_.Temps[i].Press > air_.Temps[s].Press) check(kBeneath, s, i);
      }
    }
  }

  // Layers between neighbouring heights, as far as there are temperatures.
  void CheckLayers(Fit& fit, bool listsStrains) const {
    const std::vector<std::size_t> profile = air_.Profile();
    const HeldValue* below = nullptr;
    Strain layerBelow;
    for (const HeldValue& above : air_.Heights) {
      if (!above.IsOn) continue;
      const HeldValue* lower = std::exchange(below, &above);
      if (lower == nullptr || !air_.IsCovered(*lower, above, profile)) {
        layerBelow = {};
        continue;
      }
      const auto [thickness, gap, first, last] = air_.LayerOf(*lower, above, profile);
      const double layer = lower->LogPress - above.LogPress;
      // Metres: what rounding, the habits of stations, and straight lines across a gap in the
      // temperatures may amount to.
      constexpr double kMetres = 18, kDecametres = 25, kOfLayer = 22, kOfGap = 100;
      constexpr double kNoGap = 0.1;
      const double most = (above.Press <= kAirInDecametres ? kDecametres : kMetres) +
                          kOfLayer * layer + kOfGap * std::max(0.0, gap - kNoGap);
      Strain strain{std::fabs(above.Amount - lower->Amount - thickness) / most, {}};
      // A garbled value between two layers shows in both.
      const double size = std::hypot(strain.Size, layerBelow.Size);
      constexpr double kMostTension = 9;
      fit.Tension += std::min(size * size, kMostTension);
      fit.Broken += std::max(0.0, size - 1);
      if (listsStrains) {
        strain.Parties = {HeightParty(*lower), HeightParty(above)};
        for (std::size_t k = first; k <= last; ++k) strain.Parties.push_back(profile[k]);
        if (size > 1) {
          fit.Strains.push_back({size, strain.Parties});
          std::ranges::copy(layerBelow.Parties, std::back_inserter(fit.Strains.back().Parties));
        }
      }
      layerBelow = std::move(strain);
    }
  }

  std::size_t HeightParty(const HeldValue& height) const {
    return air_.Temps.size() + static_cast<std::size_t>(&height - air_.Heights.data());
  }

  // The value without which the rest agrees best, and those without which it does as well.
  std::vector<HeldValue*> Culprits(const Fit& fit) {
    std::vector<std::size_t> parties;
    for (const Strain& strain : fit.Strains) {
      std::ranges::copy(strain.Parties, std::back_inserter(parties));
    }
    std::ranges::sort(parties);
    parties.erase(std::unique(parties.begin(), parties.end()), parties.end());
    const auto badness = [](const Fit& of) {
      constexpr double kOfBroken = 10;
      return kOfBroken * of.Broken + of.Tension;
    };
    std::vector<std::pair<double, std::size_t>> without;
    for (const std::size_t party : parties) {
      At(party).IsOn = false;
      without.emplace_back(badness(Assess(false)), party);
      At(party).IsOn = true;
    }
    const double least = std::ranges::min(without).first;
    std::vector<HeldValue*> culprits;
    if (least >= badness(fit)) {
      const Strain& worst = *std::ranges::max_element(fit.Strains, {}, &Strain::Size);
      for (const std::size_t party : worst.Parties) culprits.push_back(&At(party));
      return culprits;
    }
    constexpr double kAsWell = 2;
    for (const auto& [bad, party] : without) {
      if (bad <= least + kAsWell) culprits.push_back(&At(party));
    }
    return culprits;
  }

  const std::vector<CodedLevel>& levels_;
  HeldAir air_;
};

}  // namespace

bool IsPossibleTemp(double press, double temp) {
  const auto* above = std::ranges::find_if(
      kBounds, [press](const Bounds& bounds) { return bounds.Press <= press; });
  if (above == std::begin(kBounds)) return temp >= above->Least && temp <= above->Most;
  if (above == std::end(kBounds)) --above;
  const Bounds& below = *(above - 1);
  return temp >= OnStraight(press, below.Press, above->Press, below.Least, above->Least) &&
         temp <= OnStraight(press, below.Press, above->Press, below.Most, above->Most);
}

bool TellOfSameAir(const std::vector<CodedLevel>& mandatory,
                   const std::vector<CodedLevel>& significant) {
  constexpr double kMost = 3, kMostAloft = 5, kMeanMost = 1.5;  // °C
  const auto isTemp = [](const CodedLevel& level) {
    return level.Values.Press.has_value() && level.Values.Temp.has_value();
  };
  std::vector<const SourceLevel*> line;
  for (const CodedLevel& level : significant) {
    if (isTemp(level)) line.push_back(&level.Values);
  }
  std::ranges::stable_sort(
      line, [](const SourceLevel* a, const SourceLevel* b) { return *a->Press > *b->Press; });
  int compared = 0;
  double sum = 0;
  bool hasSurface = false;
  for (const CodedLevel& level : mandatory) {
    if (!isTemp(level)) continue;
    const double press = *level.Values.Press, temp = *level.Values.Temp;
    const auto above = std::ranges::find_if(
        line, [press](const SourceLevel* other) { return *other->Press <= press; });
    if (level.Kind == LevelKind::Surface) {
      if (above == line.end() || *(*above)->Press != press || *(*above)->Temp != temp) return false;
      hasSurface = true;
      continue;
    }
    if (above == line.end() || above == line.begin()) continue;
    const SourceLevel &low = **(above - 1), &high = **above;
    const double at = OnStraight(std::log(press), std::log(*low.Press), std::log(*high.Press),
                                 *low.Temp, *high.Temp);
    const double off = std::fabs(at - temp);
    if (off > (press >= kAirTropopause ? kMost : kMostAloft)) return false;
    sum += off;
    ++compared;
  }
  const bool isLow = !mandatory.empty() && mandatory.front().Part == 'A';
  return compared >= 2 && sum <= kMeanMost * compared && (hasSurface || !isLow);
}

void LeaveOutMisfits(std::vector<CodedLevel>& levels, std::vector<std::string>& notes) {
  Jury(levels).Decide(notes);
}

}  // namespace vexa::ingest
