#include "ingest/coded_judge.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <optional>
#include <utility>

#include "analysis/moist_air.h"
#include "core/level_filter.h"
#include "core/numbers.h"
#include "core/units.h"

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

constexpr double kMetresPerKelvin = analysis::kDryGasConstant / analysis::kGravity;
constexpr double kDryLapse = 0.00977;  // °C/m
constexpr double kTropopause = 300;    // hPa, above which the significant levels stand wider
constexpr double kLongestLine = 0.5;   // in ln p, between levels that say what lies between them
constexpr double kInDecametres = 500;  // hPa, from which up heights are given so

double Between(double at, double x0, double x1, double y0, double y1) {
  return x0 == x1 ? y0 : y0 + (y1 - y0) * (at - x0) / (x1 - x0);
}

// A temperature or a height of the message.
struct HeldValue {
  CodedLevel* Level = nullptr;
  bool IsHeight = false;
  double Press = 0, LogPress = 0;
  double Amount = 0;    // °C or m
  double VirtualK = 0;  // of a temperature
  bool IsOn = true;
};

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
  explicit Jury(std::vector<CodedLevel>& levels) {
    for (CodedLevel& level : levels) {
      if (!level.Values.Press) continue;
      const double press = *level.Values.Press;
      if (level.Values.Temp) {
        temps_.push_back({.Level = &level,
                          .Press = press,
                          .LogPress = std::log(press),
                          .Amount = *level.Values.Temp,
                          .VirtualK = VirtualK(level)});
      }
      if (level.Values.Height && level.Kind == LevelKind::Mandatory) {
        heights_.push_back({.Level = &level,
                            .IsHeight = true,
                            .Press = press,
                            .LogPress = std::log(press),
                            .Amount = *level.Values.Height});
      }
    }
    const auto fromBelow = [](const HeldValue& a, const HeldValue& b) { return a.Press > b.Press; };
    std::ranges::stable_sort(temps_, fromBelow);
    std::ranges::stable_sort(heights_, fromBelow);
  }

  void Decide(std::vector<std::string>& notes) {
    DropDoubtful(notes);
    constexpr int kMostRounds = 60;
    for (int round = 0; round < kMostRounds; ++round) {
      const Fit fit = Assess(true);
      if (fit.Broken == 0) break;
      for (HeldValue* value : Culprits(fit)) Drop(*value, notes);
    }
    TellOffLines(notes);
    TellZigzags(notes);
    TellLoneTropopauses(notes);
    TellBeyondTop(notes);
    TellThickness(notes);
  }

 private:
  static double VirtualK(const CodedLevel& level) {
    const SourceLevel& values = level.Values;
    // Impossibly moist is as good as unknown.
    const bool isMoist = values.Dewpt && *values.Dewpt <= *values.Temp;
    const double mixing =
        isMoist ? analysis::ThetaPoint(*values.Press, *values.Dewpt).MixingRatio : 0;
    return analysis::VirtualTemp(*values.Temp, std::max(mixing, 0.0)) + kKelvinOffset;
  }

  HeldValue& At(std::size_t party) {
    return party < temps_.size() ? temps_[party] : heights_[party - temps_.size()];
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

  // The temperature that parts B and D give for a pressure, and the two levels that give it.
  struct Line {
    double Temp = 0;
    std::size_t Below = 0, Above = 0;
    double Length = 0;  // in ln p
  };
  std::optional<Line> LineAt(const HeldValue& value) const {
    std::optional<std::size_t> below, above;
    for (std::size_t i = 0; i < temps_.size(); ++i) {
      const HeldValue& other = temps_[i];
      if (!other.IsOn || !other.Level->IsFine() || &other == &value) continue;
      if (other.Press >= value.Press) below = i;
      if (!above && other.Press <= value.Press) above = i;
    }
    if (!below || !above) return std::nullopt;
    const HeldValue &a = temps_[*below], &b = temps_[*above];
    if (*below != *above && b.Level->IsBehindGap) return std::nullopt;
    return Line{Between(value.LogPress, a.LogPress, b.LogPress, a.Amount, b.Amount), *below, *above,
                a.LogPress - b.LogPress};
  }

  void DropDoubtful(std::vector<std::string>& notes) {
    constexpr double kBorneOut = 2;  // °C
    for (HeldValue& value : temps_) {
      if (!value.Level->IsDoubtful) continue;
      const std::optional<Line> line = LineAt(value);
      if (!line || std::fabs(line->Temp - value.Amount) > kBorneOut) Drop(value, notes);
    }
  }

  // A difference that some stations have, but few: told, and both are left.
  void TellOffLines(std::vector<std::string>& notes) const {
    constexpr double kSeldom = 2.3;  // °C
    for (const HeldValue& value : temps_) {
      if (!value.IsOn || value.Level->Kind != LevelKind::Mandatory) continue;
      const std::optional<Line> line = LineAt(value);
      if (!line || line->Length > kLongestLine) continue;
      const double off = std::fabs(line->Temp - value.Amount);
      if (off <= kSeldom) continue;
      notes.push_back("At " + Shortest(value.Press) + " hPa " + Shortest(value.Amount) +
                      " C of part " + value.Level->Part + " lies " + Mask(off, "0.0") +
                      " C off the line from " + Shortest(temps_[line->Below].Press) + " hPa to " +
                      Shortest(temps_[line->Above].Press) + " hPa; one of them may be garbled.");
    }
  }

  // A tropopause is a significant level too: where parts B or D have a profile there that is not
  // bent by such a level, one of the pressures is garbled.
  void TellLoneTropopauses(std::vector<std::string>& notes) const {
    constexpr double kOff = 1.2;  // °C
    for (const HeldValue& value : temps_) {
      if (!value.IsOn || value.Level->Kind != LevelKind::Tropopause) continue;
      const std::optional<Line> line = LineAt(value);
      if (!line || temps_[line->Below].Press == value.Press) continue;
      if (std::fabs(line->Temp - value.Amount) <= kOff) continue;
      const char part = temps_[line->Below].Level->Part;
      std::string elsewhere;
      for (const HeldValue& other : temps_) {
        if (!other.IsOn || other.Level->Part != part || other.Amount != value.Amount) continue;
        elsewhere +=
            " That has " + Shortest(value.Amount) + " C at " + Shortest(other.Press) + " hPa.";
      }
      notes.push_back("At " + Shortest(value.Press) + " hPa the tropopause of part " +
                      value.Level->Part + " is no level of part " + part +
                      "; one of them may be garbled." + elsewhere);
    }
  }

  // An ascent that went beyond a mandatory pressure has it in part C; no balloon rises to 3 hPa.
  void TellBeyondTop(std::vector<std::string>& notes) const {
    constexpr double kHighest = 3, kLastMandatory = 10;  // hPa
    double top = 0;
    for (const auto* values : {&temps_, &heights_}) {
      for (const HeldValue& value : *values) {
        const bool isReached =
            value.Level->Part == 'C' && value.Level->Kind == LevelKind::Mandatory;
        if (isReached && (top == 0 || value.Press < top)) top = value.Press;
      }
    }
    if (top == 0) return;
    double limit = kHighest;
    for (const double press : kMandatoryPress) {
      if (press < top && press >= kLastMandatory) limit = std::max(limit, press);
    }
    for (const HeldValue& value : temps_) {
      const CodedLevel& level = *value.Level;
      const bool isHigh =
          level.Part == 'D' || (level.Part == 'C' && level.Kind != LevelKind::Mandatory);
      if (!value.IsOn || !isHigh || value.Press >= limit) continue;
      notes.push_back("At " + Shortest(value.Press) + " hPa " + Shortest(value.Amount) +
                      " C of part " + level.Part + " lies above " + Shortest(limit) +
                      " hPa, which part C does not reach; it may be garbled.");
    }
  }

  // Heights that are further apart, or less, than the temperatures between them say, by more than
  // all but two layers of sixty stations: one of the values is garbled, which one cannot be known.
  void TellThickness(std::vector<std::string>& notes) const {
    constexpr double kMetres = 5, kOfLayer = 20, kDecametres = 12, kOfDecametres = 12;
    constexpr double kWidestGap = 0.5, kLeastError = 1.5;  // in ln p; °C
    const std::vector<std::size_t> profile = Profile();
    const HeldValue* below = nullptr;
    for (const HeldValue& above : heights_) {
      if (!above.IsOn) continue;
      const HeldValue* lower = std::exchange(below, &above);
      if (lower == nullptr || !IsCovered(*lower, above, profile)) continue;
      const Layer layer = LayerOf(*lower, above, profile);
      const double log = lower->LogPress - above.LogPress;
      const double most = above.Press <= kInDecametres ? kDecametres + kOfDecametres * log
                                                       : kMetres + kOfLayer * log;
      const double off = above.Amount - lower->Amount - layer.Thickness;
      if (layer.Gap > kWidestGap || std::fabs(off) <= most) continue;
      std::string levels;
      for (std::size_t k = layer.First; k <= layer.Last; ++k) {
        const double low = temps_[profile[k == 0 ? 0 : k - 1]].LogPress;
        const double high = temps_[profile[std::min(k + 1, profile.size() - 1)]].LogPress;
        const double share = (std::min(low, lower->LogPress) - std::max(high, above.LogPress)) / 2;
        if (share <= 0 || std::fabs(off) < kLeastError * kMetresPerKelvin * share) continue;
        levels += (levels.empty() ? " " : ", ") + Shortest(temps_[profile[k]].Press) + " hPa";
      }
      notes.push_back("From " + Shortest(lower->Press) + " hPa to " + Shortest(above.Press) +
                      " hPa the heights do not fit the temperatures, by " +
                      Mask(std::fabs(off), "0") + " m; one of these may be garbled" +
                      (levels.empty() ? "." : ", or a temperature or pressure at" + levels + "."));
    }
  }

  // A temperature that nothing else bears out and that stands out between its neighbours as few do:
  // one of part B or D, or a mandatory one aloft beyond where these have a line.
  void TellZigzags(std::vector<std::string>& notes) const {
    std::vector<Point> points;
    for (const HeldValue& value : temps_) {
      if (!value.IsOn) continue;
      if (!points.empty() && points.back().Of->Press == value.Press) {
        points.back().IsAlone = false;
      } else {
        points.push_back({&value});
      }
    }
    for (std::size_t i = 1; i + 1 < points.size(); ++i) {
      const HeldValue& value = *points[i].Of;
      const bool isAlone = points[i].IsAlone && (value.Level->IsFine() || IsBeyondLines(value));
      if (!isAlone || value.Level->IsBehindGap || points[i + 1].Of->Level->IsBehindGap) continue;
      if (!StandsOut(points, i)) continue;
      notes.push_back("At " + Shortest(value.Press) + " hPa " + Shortest(value.Amount) +
                      " C of part " + value.Level->Part +
                      " stands out from the levels around it; it may be garbled.");
    }
  }

  bool IsBeyondLines(const HeldValue& value) const {
    if (value.Level->Kind != LevelKind::Mandatory || value.Press >= kInDecametres) return false;
    const std::optional<Line> line = LineAt(value);
    return !line || line->Length > kLongestLine;
  }

  struct Point {
    const HeldValue* Of = nullptr;
    bool IsAlone = true;  // no other part has a temperature here
  };

  // In the troposphere a value shows by the kinks that it makes at all three levels; aloft, where
  // waves make kinks, and where there are no two levels on each side, by both steps to its
  // neighbours.
  static bool StandsOut(const std::vector<Point>& points, std::size_t i) {
    constexpr double kLow = 2.0, kHigh = 2.4, kStep = 2.5, kStepAloft = 3.65;  // °C
    constexpr double kAloft = 100;                                             // hPa
    const HeldValue& value = *points[i].Of;
    const bool isFine = value.Level->IsFine();
    if (isFine && value.Press < kAloft) return Spike(points, i) > kStepAloft;
    const bool hasTwoOnEachSide = i >= 2 && i + 2 < points.size();
    if (!isFine || !hasTwoOnEachSide) return Spike(points, i) > kStep;
    return Zigzag(points, i) > (value.Press >= kTropopause ? kLow : kHigh);
  }

  // The smaller step to a neighbour, where both go the same way.
  static double Spike(const std::vector<Point>& points, std::size_t i) {
    const double fromBelow = points[i].Of->Amount - points[i - 1].Of->Amount;
    const double fromAbove = points[i].Of->Amount - points[i + 1].Of->Amount;
    return fromBelow * fromAbove > 0 ? std::min(std::fabs(fromBelow), std::fabs(fromAbove)) : 0;
  }

  // How far a point lies off the line between its neighbours, as far as these bear it out: a point
  // that is off by E bends the line at a neighbour by its share of E, the other way.
  static double Zigzag(const std::vector<Point>& points, std::size_t i) {
    constexpr double kLeastShare = 0.12;
    const double off = Kink(points, i);
    const auto borneOut = [&](std::size_t neighbour) {
      const double log = points[neighbour].Of->LogPress,
                   far = points[2 * neighbour - i].Of->LogPress;
      const double share = (far - log) / (far - points[i].Of->LogPress);
      return -std::copysign(Kink(points, neighbour), off * Kink(points, neighbour)) /
             std::max(share, kLeastShare);
    };
    return std::max(std::min({std::fabs(off), borneOut(i - 1), borneOut(i + 1)}), 0.0);
  }

  static double Kink(const std::vector<Point>& points, std::size_t i) {
    const HeldValue &below = *points[i - 1].Of, &above = *points[i + 1].Of;
    return points[i].Of->Amount - Between(points[i].Of->LogPress, below.LogPress, above.LogPress,
                                          below.Amount, above.Amount);
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
    for (std::size_t i = 0; i < temps_.size(); ++i) {
      const HeldValue& above = temps_[i];
      if (!above.IsOn) continue;
      if (!before) ground = above.Press;
      if (before) {
        const HeldValue& below = temps_[*before];
        const double change = above.Amount - below.Amount;
        if (below.Press == above.Press) {
          check(std::fabs(change) / kSamePlace, *before, i);
          continue;
        }
        const double depth = kMetresPerKelvin * (below.VirtualK + above.VirtualK) / 2 *
                             (below.LogPress - above.LogPress);
        const double beyond = -change - kDryLapse * depth;
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
    for (std::size_t i = 0; i < temps_.size(); ++i) {
      const HeldValue& value = temps_[i];
      if (!value.IsOn || value.Level->IsFine()) continue;
      const std::optional<Line> line = LineAt(value);
      if (!line) continue;
      constexpr double kLow = 3, kHigh = 5, kAloft = 6;  // °C
      constexpr double kLong = 0.5, kOfLength = 10;      // in ln p; °C for each unit beyond
      const double most = (value.Press >= kTropopause ? kLow
                           : value.Press > 100        ? kHigh
                                                      : kAloft) +
                          kOfLength * std::max(0.0, line->Length - kLong);
      check(std::fabs(line->Temp - value.Amount) / most, i, line->Below, line->Above);
    }
  }

  // Nothing has a temperature beneath the surface.
  template <class Check>
  void CheckSurface(Check& check) const {
    constexpr double kBeneath = 2;
    for (std::size_t s = 0; s < temps_.size(); ++s) {
      if (!temps_[s].IsOn || temps_[s].Level->Kind != LevelKind::Surface) continue;
      for (std::size_t i = 0; i < s; ++i) {
        if (temps_[i].IsOn && temps_[i].Press > temps_[s].Press) check(kBeneath, s, i);
      }
    }
  }

  // The temperatures that are on, one at each pressure.
  std::vector<std::size_t> Profile() const {
    std::vector<std::size_t> profile;
    for (std::size_t i = 0; i < temps_.size(); ++i) {
      if (!temps_[i].IsOn) continue;
      if (profile.empty() || temps_[profile.back()].Press != temps_[i].Press) profile.push_back(i);
    }
    return profile;
  }

  bool IsCovered(const HeldValue& lower, const HeldValue& upper,
                 const std::vector<std::size_t>& profile) const {
    return profile.size() > 1 && lower.Press <= temps_[profile.front()].Press &&
           upper.Press >= temps_[profile.back()].Press;
  }

  // Layers between neighbouring heights, as far as there are temperatures.
  void CheckLayers(Fit& fit, bool listsStrains) const {
    const std::vector<std::size_t> profile = Profile();
    const HeldValue* below = nullptr;
    Strain layerBelow;
    for (const HeldValue& above : heights_) {
      if (!above.IsOn) continue;
      const HeldValue* lower = std::exchange(below, &above);
      if (lower == nullptr || !IsCovered(*lower, above, profile)) {
        layerBelow = {};
        continue;
      }
      const auto [thickness, gap, first, last] = LayerOf(*lower, above, profile);
      const double layer = lower->LogPress - above.LogPress;
      // Metres: what rounding, the habits of stations, and straight lines across a gap in the
      // temperatures may amount to.
      constexpr double kMetres = 18, kDecametres = 25, kOfLayer = 22, kOfGap = 100;
      constexpr double kNoGap = 0.1;
      const double most = (above.Press <= kInDecametres ? kDecametres : kMetres) +
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
    return temps_.size() + static_cast<std::size_t>(&height - heights_.data());
  }

  struct Layer {
    double Thickness = 0;             // m
    double Gap = 0;                   // the widest between temperatures, in ln p
    std::size_t First = 0, Last = 0;  // of the profile, the temperatures that count
  };
  Layer LayerOf(const HeldValue& lower, const HeldValue& upper,
                const std::vector<std::size_t>& profile) const {
    const auto temp = [&](std::size_t k) -> const HeldValue& { return temps_[profile[k]]; };
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
        return Between(logPress, a.LogPress, b.LogPress, a.VirtualK, b.VirtualK);
      };
      layer.Thickness += kMetresPerKelvin * (at(from) + at(to)) / 2 * (from - to);
      layer.Gap = std::max(layer.Gap, from - to);
      ++layer.Last;
    }
    return layer;
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

  std::vector<HeldValue> temps_{}, heights_{};
};

}  // namespace

bool IsPossibleTemp(double press, double temp) {
  const auto* above = std::ranges::find_if(
      kBounds, [press](const Bounds& bounds) { return bounds.Press <= press; });
  if (above == std::begin(kBounds)) return temp >= above->Least && temp <= above->Most;
  if (above == std::end(kBounds)) --above;
  const Bounds& below = *(above - 1);
  return temp >= Between(press, below.Press, above->Press, below.Least, above->Least) &&
         temp <= Between(press, below.Press, above->Press, below.Most, above->Most);
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
    const double at = Between(std::log(press), std::log(*low.Press), std::log(*high.Press),
                              *low.Temp, *high.Temp);
    const double off = std::fabs(at - temp);
    if (off > (press >= kTropopause ? kMost : kMostAloft)) return false;
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
