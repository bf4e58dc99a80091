#include "diagram/scaling.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

#include "analysis/standard_atmosphere.h"
#include "core/markers.h"

namespace vexa::diagram {
namespace {

// Top pressures to choose from, lowest place first.
constexpr std::array kTops = {700, 500, 400, 300, 200, 100};
constexpr std::array kHighTops = {50, 30, 10};

constexpr double kUsualMin = -40;
constexpr double kUsualSpan = 80;
constexpr double kWidestSpan = 180;
constexpr double kLeftRoom = 2;       // °C kept free of temperatures on the cold side
constexpr double kRightShare = 0.09;  // of the span, on the warm side, for the marks
// The dew point may widen the axis this far; drier air runs out of the frame on the left.
constexpr double kWidestForDewpoint = 100;
// Up to 10 hPa the fixed skew alone takes more than the frame's width: a wider range brings the
// cold air back in, at the cost of the lower part.
constexpr double kWidestHighSkew = 300;

// Winds alone reach as high as the standard atmosphere has their pressures.
double LowestPress(const SoundingRecord& sounding) {
  if (!sounding.Press.Empty()) return *std::ranges::min_element(sounding.Press.Values());
  if (!sounding.WindHgt.Empty()) return analysis::IsaPressure(sounding.WindHgt.Top());
  return 1000;
}

// How far a sounding reaches along the temperature axis, in °C of the frame's lower edge.
struct TempReach {
  double ColdestTemp = 1e9;
  double ColdestDewpt = 1e9;
  double Warmest = -1e9;
};

TempReach MeasureReach(const SoundingRecord& sounding, const DiagramMapping& at) {
  TempReach reach;
  const double perUnit = (at.TempMax() - at.TempMin()) / at.Frame().Width();
  const auto along = [&](double temp, double press) {
    return at.TempMin() + (at.ToPoint(temp, press).X - at.Frame().Left) * perUnit;
  };
  for (int i = 1; i <= sounding.NumTempLevels(); ++i) {
    const double press = sounding.Press(i);
    if (press < at.TopPress() || press > at.BottomPress()) continue;
    const double temp = along(sounding.Temp(i), press);
    reach.ColdestTemp = std::min(reach.ColdestTemp, temp);
    reach.Warmest = std::max(reach.Warmest, temp);
    if (!IsMissing(sounding.Dewpt(i))) {
      reach.ColdestDewpt = std::min(reach.ColdestDewpt, along(sounding.Dewpt(i), press));
    }
  }
  return reach;
}

bool IsHighSkew(const DiagramChoice& choice) {
  return choice.Type == DiagramType::SkewT && choice.TopPress < kTops.back();
}

// The start of a temperature range of this span that shows the sounding, the nearest to the usual
// one; empty when the span is too narrow. room scales the space kept free at the sides.
std::optional<double> FittingStart(const SoundingRecord& sounding, const DiagramChoice& choice,
                                   const Rect& frame, double span, double room) {
  // The tephigram's points do not shift quite as its range does, so that a shift is tried again.
  constexpr int kTries = 4;
  const bool mindsDewpt = span <= kWidestForDewpoint || choice.Type == DiagramType::Emagram;
  double start = kUsualMin;
  for (int attempt = 0; attempt < kTries; ++attempt) {
    const DiagramMapping at(choice.Type, frame, start, start + span, choice.TopPress);
    const TempReach reach = MeasureReach(sounding, at);
    if (reach.Warmest < reach.ColdestTemp) return kUsualMin;  // nothing to show
    const double coldest =
        (mindsDewpt ? std::min(reach.ColdestTemp, reach.ColdestDewpt) : reach.ColdestTemp) -
        room * kLeftRoom;
    const double warmest = reach.Warmest + room * kRightShare * span;
    if (coldest >= start && warmest <= start + span) return start;
    const double least = std::ceil((warmest - span) / 10) * 10;
    const double most = std::floor(coldest / 10) * 10;
    if (least > most) return std::nullopt;
    start = std::clamp(kUsualMin, least, most);
  }
  return std::nullopt;
}

// The range of a skew-T above 100 hPa: all of the temperature, and as many dew points as any range
// holds, by the narrowest range that does; empty when none holds the temperature.
std::optional<TempRange> HighSkewRange(const SoundingRecord& sounding, const DiagramChoice& choice,
                                       const Rect& frame) {
  constexpr double kRound = 5;
  constexpr double kShare = 0.97;  // of the span, for the traces
  std::optional<TempRange> best;
  int mostHeld = -1;
  for (double span = kUsualSpan; span <= kWidestHighSkew; span += 10) {
    const DiagramMapping at(choice.Type, frame, kUsualMin, kUsualMin + span, choice.TopPress);
    // On the skew-T places along the axis do not depend on where the range starts.
    const TempReach reach = MeasureReach(sounding, at);
    if (reach.Warmest < reach.ColdestTemp) return std::nullopt;
    const double coldest = std::min(reach.ColdestTemp, reach.ColdestDewpt);
    const double least = std::ceil((reach.Warmest - kShare * span) / kRound) * kRound;
    const double start =
        std::max(least, std::min(kUsualMin, std::floor(coldest / kRound) * kRound));
    if (start > reach.ColdestTemp) continue;
    int held = 0;
    for (int i = 1; i <= sounding.NumTempLevels(); ++i) {
      if (IsMissing(sounding.Dewpt(i)) || sounding.Press(i) < choice.TopPress) continue;
      const double place = at.ToPoint(sounding.Dewpt(i), sounding.Press(i)).X - frame.Left;
      if (kUsualMin + place * span / frame.Width() >= start) ++held;
    }
    if (held <= mostHeld) continue;
    mostHeld = held;
    best = {start, start + span};
  }
  return best;
}

}  // namespace

DiagramChoice ChooseDiagram(const SoundingRecord& sounding, const ViewSettings& options) {
  DiagramChoice choice;
  choice.Type = options.Diagram;
  const double lowest = LowestPress(sounding);
  const bool reachesHigh = lowest < kTephigramTop;
  const bool drawnHigh = reachesHigh && options.Above100mb;

  if (drawnHigh && options.AutoHighEmagram) choice.Type = DiagramType::Emagram;
  choice.BeyondTephigram = reachesHigh && choice.Type == DiagramType::Tephigram;

  choice.TopPress = options.MbLimit;
  // An empty diagram has no top to choose by.
  const bool isEmpty = sounding.Press.Empty() && sounding.WindHgt.Empty();
  if (options.AutoMbSelect && !isEmpty) {
    choice.TopPress = kTops.back();
    for (const int top : kTops) {
      if (top <= std::max(lowest, 100.0)) {
        choice.TopPress = top;
        break;
      }
    }
    if (drawnHigh) {
      choice.TopPress = kHighTops.back();
      for (const int top : kHighTops) {
        if (top <= lowest) {
          choice.TopPress = top;
          break;
        }
      }
    }
  } else if (!options.Above100mb) {
    choice.TopPress = std::max(choice.TopPress, 100.0);
  }
  if (choice.Type == DiagramType::Tephigram) choice.TopPress = kTephigramTop;
  return choice;
}

TempRange ChooseTempRange(const SoundingRecord& sounding, const ViewSettings& options,
                          const DiagramChoice& choice, const Rect& frame) {
  if (options.TempScaling == Scaling::Manual) {
    return {options.TempMin, std::max(options.TempMax, options.TempMin + 40)};
  }
  if (IsHighSkew(choice)) {
    if (const auto range = HighSkewRange(sounding, choice, frame)) return *range;
  }
  // A cold, nearly isothermal sounding fills the tephigram's width at any scale: there the room at
  // the sides is given up.
  for (const double room : {1.0, 0.0}) {
    for (double span = kUsualSpan; span <= kWidestSpan; span += 10) {
      if (const auto start = FittingStart(sounding, choice, frame, span, room)) {
        return {*start, *start + span};
      }
    }
  }
  return {kUsualMin, kUsualMin + kUsualSpan};
}

}  // namespace vexa::diagram
