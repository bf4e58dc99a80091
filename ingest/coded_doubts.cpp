#include "ingest/coded_doubts.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <optional>
#include <utility>

#include "core/level_filter.h"
#include "core/numbers.h"
#include "ingest/coded_weigh.h"

namespace vexa::ingest {
namespace {

class Doubts {
 public:
  Doubts(const HeldAir& air, const std::vector<CodedLevel>& levels, std::vector<std::string>& notes)
      : air_(air), levels_(levels), notes_(notes) {}

  void Tell() {
    TellOffLines();
    TellZigzags();
    TellMisfits();
    TellSuperadiabats();
    TellLoneTropopauses();
    TellBeyondTop();
    TellEnds();
    TellLastStep();
    TellThickness();
  }

 private:
  void Name(std::initializer_list<double> pressures) {
    named_.insert(named_.end(), pressures.begin(), pressures.end());
  }
  bool IsNamed(double press) const { return std::ranges::find(named_, press) != named_.end(); }

  // A difference that some stations have, but few: told, and both are left.
  void TellOffLines() {
    constexpr double kSeldom = 2.3;  // °C
    for (const HeldValue& value : air_.Temps) {
      if (!value.IsOn || value.Level->Kind != LevelKind::Mandatory) continue;
      const std::optional<HeldAir::Line> line = air_.LineAt(value);
      if (!line || line->Length > kAirLongestLine) continue;
      const double off = std::fabs(line->Temp - value.Amount);
      if (off <= kSeldom) continue;
      Name({value.Press, air_.Temps[line->Below].Press, air_.Temps[line->Above].Press});
      notes_.push_back("At " + Shortest(value.Press) + " hPa " + Shortest(value.Amount) +
                       " C of part " + value.Level->Part + " lies " + Mask(off, "0.0") +
                       " C off the line from " + Shortest(air_.Temps[line->Below].Press) +
                       " hPa to " + Shortest(air_.Temps[line->Above].Press) +
                       " hPa; one of them may be garbled.");
    }
  }

  // A tropopause is a significant level too: where parts B or D have a profile there that is not
  // bent by such a level, one of the pressures is garbled.
  void TellLoneTropopauses() {
    constexpr double kOff = 1.2;  // °C
    for (const HeldValue& value : air_.Temps) {
      if (!value.IsOn || value.Level->Kind != LevelKind::Tropopause) continue;
      const std::optional<HeldAir::Line> line = air_.LineAt(value);
      if (!line || air_.Temps[line->Below].Press == value.Press) continue;
      if (std::fabs(line->Temp - value.Amount) <= kOff) continue;
      const char part = air_.Temps[line->Below].Level->Part;
      std::string elsewhere;
      for (const HeldValue& other : air_.Temps) {
        if (!other.IsOn || other.Level->Part != part || other.Amount != value.Amount) continue;
        elsewhere +=
            " That has " + Shortest(value.Amount) + " C at " + Shortest(other.Press) + " hPa.";
      }
      notes_.push_back("At " + Shortest(value.Press) + " hPa the tropopause of part " +
                       value.Level->Part + " is no level of part " + part +
                       "; one of them may be garbled." + elsewhere);
    }
  }

  // An ascent that went beyond a mandatory pressure has it in part C; no balloon rises to 3 hPa.
  void TellBeyondTop() {
    constexpr double kHighest = 3, kLastMandatory = 10;  // hPa
    double top = 0;
    for (const auto* values : {&air_.Temps, &air_.Heights}) {
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
    for (const HeldValue& value : air_.Temps) {
      const CodedLevel& level = *value.Level;
      const bool isHigh =
          level.Part == 'D' || (level.Part == 'C' && level.Kind != LevelKind::Mandatory);
      if (!value.IsOn || !isHigh || value.Press >= limit) continue;
      notes_.push_back("At " + Shortest(value.Press) + " hPa " + Shortest(value.Amount) +
                       " C of part " + level.Part + " lies above " + Shortest(limit) +
                       " hPa, which part C does not reach; it may be garbled.");
    }
  }

  // One that all which speaks of it puts elsewhere, and that no other part has as well.
  void TellMisfits() {
    constexpr double kLeastOff = 2.0, kLeastCertainty = 1.6;  // °C; standard errors
    constexpr double kRival = 0.9;                            // of the certainty of the neighbours
    const std::vector<std::size_t> profile = air_.Profile();
    const std::vector<Misfit> misfits = WeighTemps(air_, profile);
    const auto certainty = [&](std::size_t k) {
      const bool isOff = k < misfits.size() && std::fabs(misfits[k].Off) > kLeastOff;
      return isOff && !IsToldTwice(profile[k]) ? std::fabs(misfits[k].Certainty) : 0;
    };
    for (std::size_t k = 0; k < profile.size(); ++k) {
      const HeldValue& value = air_.Temps[profile[k]];
      const double neighbours = std::max(k == 0 ? 0 : certainty(k - 1), certainty(k + 1));
      if (certainty(k) <= kLeastCertainty || certainty(k) < kRival * neighbours) continue;
      if (IsNamed(value.Press)) continue;
      Name({value.Press});
      notes_.push_back("At " + Shortest(value.Press) + " hPa " + Shortest(value.Amount) +
                       " C of part " + value.Level->Part + " is some " +
                       Mask(std::fabs(misfits[k].Off), "0.0") + " C too " +
                       (misfits[k].Off > 0 ? "warm" : "cold") +
                       " for the levels and heights around it; it may be garbled.");
    }
  }

  bool IsToldTwice(std::size_t temp) const {
    const HeldValue& value = air_.Temps[temp];
    return std::ranges::any_of(air_.Temps, [&value](const HeldValue& other) {
      return &other != &value && other.IsOn && other.Press == value.Press &&
             other.Level->Part != value.Level->Part;
    });
  }

  // Free air does not cool faster with height than by rising dry; the sun heats that near the
  // ground. The stratosphere does not even come near it.
  void TellSuperadiabats() {
    constexpr double kFree = 0.7, kNearGround = 1.5, kAloft = 0.1;  // °C beyond
    constexpr double kGroundLayer = 150, kStratosphere = 100;       // hPa
    constexpr double kStratosphereLapse = 0.008;                    // °C/m
    const std::vector<std::size_t> profile = air_.Profile();
    for (std::size_t k = 1; k + 1 < profile.size(); ++k) {
      const HeldValue &below = air_.Temps[profile[k]], &above = air_.Temps[profile[k + 1]];
      const bool isAloft = above.Press < kStratosphere;
      const bool isNearGround = below.Press > air_.Temps[profile[0]].Press - kGroundLayer;
      const double lapse = isAloft ? kStratosphereLapse : kAirDryLapse;
      const double most = isAloft ? kAloft : isNearGround ? kNearGround : kFree;
      const double fall = below.Amount - above.Amount, depth = HeldAir::Depth(below, above);
      if (fall - lapse * depth <= most) continue;
      if (IsNamed(below.Press) && IsNamed(above.Press)) continue;
      notes_.push_back("From " + Shortest(below.Press) + " hPa to " + Shortest(above.Press) +
                       " hPa the temperature falls by " + Mask(fall, "0.0") + " C in " +
                       Mask(depth, "0") + " m; one of them may be garbled.");
    }
  }

  // Temperatures and winds of one balloon end together.
  void TellEnds() {
    const CodedLevel *temp = nullptr, *wind = nullptr;
    for (const CodedLevel& level : levels_) {
      const bool isWind = level.Values.Spd.has_value();
      const bool isOfD = level.Part == 'D' && level.Kind == LevelKind::Significant;
      if (!isOfD || !level.Values.Press || (!isWind && !level.Values.Temp)) continue;
      const CodedLevel*& last = isWind ? wind : temp;
      if (last == nullptr || *level.Values.Press < *last->Values.Press) last = &level;
    }
    if (temp == nullptr || wind == nullptr) return;
    if (FiguresApart(*temp->Values.Press, *wind->Values.Press) != 1) return;
    notes_.push_back("The temperatures of part D end at " + Shortest(*temp->Values.Press) +
                     " hPa, its winds at " + Shortest(*wind->Values.Press) +
                     " hPa; one of them may be garbled.");
  }

  // Nothing speaks of the last level but the one beneath.
  void TellLastStep() {
    constexpr double kStep = 3, kOfLayer = 10;  // °C; °C for each unit of ln p
    const std::vector<std::size_t> profile = air_.Profile();
    if (profile.size() < 2) return;
    const HeldValue& last = air_.Temps[profile.back()];
    const HeldValue& beneath = air_.Temps[profile[profile.size() - 2]];
    if (last.Press >= kAirTropopause || last.Level->Part == 'A' || IsNamed(last.Press)) return;
    const double step = std::fabs(last.Amount - beneath.Amount);
    if (step <= kStep + kOfLayer * (beneath.LogPress - last.LogPress)) return;
    notes_.push_back("At " + Shortest(last.Press) + " hPa " + Shortest(last.Amount) +
                     " C of part " + last.Level->Part + " is the last level and " +
                     Mask(step, "0.0") + " C from the one beneath; it may be garbled.");
  }

  // Of pressures as part D gives them, in tenths.
  static int FiguresApart(double a, double b) {
    constexpr int kTenths = 10, kFigures = 3;
    int left = static_cast<int>(std::lround(a * kTenths));
    int right = static_cast<int>(std::lround(b * kTenths));
    int apart = 0;
    for (int i = 0; i < kFigures; ++i, left /= kTenths, right /= kTenths) {
      apart += left % kTenths == right % kTenths ? 0 : 1;
    }
    return apart;
  }

  // Heights that are further apart, or less, than the temperatures between them say, by more than
  // all but two layers of sixty stations: one of the values is garbled, which one cannot be known.
  void TellThickness() {
    constexpr double kMetres = 5, kOfLayer = 20, kDecametres = 12, kOfDecametres = 12;
    constexpr double kWidestGap = 0.5, kLeastError = 1.5;  // in ln p; °C
    const std::vector<std::size_t> profile = air_.Profile();
    const HeldValue* below = nullptr;
    for (const HeldValue& above : air_.Heights) {
      if (!above.IsOn) continue;
      const HeldValue* lower = std::exchange(below, &above);
      if (lower == nullptr || !air_.IsCovered(*lower, above, profile)) continue;
      const HeldAir::Layer layer = air_.LayerOf(*lower, above, profile);
      const double log = lower->LogPress - above.LogPress;
      const double most = above.Press <= kAirInDecametres ? kDecametres + kOfDecametres * log
                                                          : kMetres + kOfLayer * log;
      const double off = above.Amount - lower->Amount - layer.Thickness;
      if (layer.Gap > kWidestGap || std::fabs(off) <= most) continue;
      std::string levels;
      for (std::size_t k = layer.First; k <= layer.Last; ++k) {
        const double low = air_.Temps[profile[k == 0 ? 0 : k - 1]].LogPress;
        const double high = air_.Temps[profile[std::min(k + 1, profile.size() - 1)]].LogPress;
        const double share = (std::min(low, lower->LogPress) - std::max(high, above.LogPress)) / 2;
        if (share <= 0 || std::fabs(off) < kLeastError * HeldAir::kMetresPerKelvin * share)
          continue;
        levels += (levels.empty() ? " " : ", ") + Shortest(air_.Temps[profile[k]].Press) + " hPa";
      }
      notes_.push_back("From " + Shortest(lower->Press) + " hPa to " + Shortest(above.Press) +
                       " hPa the heights do not fit the temperatures, by " +
                       Mask(std::fabs(off), "0") + " m; one of these may be garbled" +
                       (levels.empty() ? "." : ", or a temperature or pressure at" + levels + "."));
    }
  }

  // A temperature that nothing else bears out and that stands out between its neighbours as few do:
  // one of part B or D, or a mandatory one aloft beyond where these have a line.
  void TellZigzags() {
    std::vector<Point> points;
    for (const HeldValue& value : air_.Temps) {
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
      Name({value.Press});
      notes_.push_back("At " + Shortest(value.Press) + " hPa " + Shortest(value.Amount) +
                       " C of part " + value.Level->Part +
                       " stands out from the levels around it; it may be garbled.");
    }
  }

  bool IsBeyondLines(const HeldValue& value) const {
    if (value.Level->Kind != LevelKind::Mandatory || value.Press >= kAirInDecametres) return false;
    return !air_.HasLine(value);
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
    return Zigzag(points, i) > (value.Press >= kAirTropopause ? kLow : kHigh);
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
    return points[i].Of->Amount - OnStraight(points[i].Of->LogPress, below.LogPress, above.LogPress,
                                             below.Amount, above.Amount);
  }

  const HeldAir& air_;
  const std::vector<CodedLevel>& levels_;
  std::vector<std::string>& notes_;
  std::vector<double> named_{};  // hPa, of levels that a note doubts
};

}  // namespace

void TellDoubts(const HeldAir& air, const std::vector<CodedLevel>& levels,
                std::vector<std::string>& notes) {
  Doubts(air, levels, notes).Tell();
}

}  // namespace vexa::ingest
