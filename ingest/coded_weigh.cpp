#include "ingest/coded_weigh.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace vexa::ingest {
namespace {

// Standard errors, of which most reports have less and a few a little more.
constexpr double kMetre = 0.6, kDecametre = 3.2;  // m, of a height that is rounded so
constexpr double kOfLayer = 9;                    // m for each unit of ln p between two heights
constexpr double kOfGap = 60, kNoGap = 0.25;      // the same where no temperature lies between
constexpr double kOfTemps = 0.2;                  // of an error, that temperatures have to bear out
constexpr double kStratosphere = 100;             // hPa

double Square(double x) {
  return x * x;
}

// Of a mandatory level from its line, which is the longer the less sure; °C.
double LineVariance(double press, double length) {
  constexpr double kLow = 0.45, kHigh = 0.5, kAloft = 0.7;
  constexpr double kLength = 0.25, kOfLength = 0.5;
  const double usual = press >= kAirTropopause ? kLow : press >= kStratosphere ? kHigh : kAloft;
  return Square(usual) * (1 + kOfLength * Square(length / kLength));
}

// Of the bend that the air itself makes at a level; °C. Mandatory levels alone, without significant
// ones around, leave out what bends the air between them.
double BendVariance(double press, bool isCoarse) {
  constexpr double kLow = 1.3, kHigh = 1.8, kAloft = 2.8, kCoarse = 2;
  const double usual = press >= kAirTropopause ? kLow : press >= kStratosphere ? kHigh : kAloft;
  return Square(isCoarse ? kCoarse * usual : usual);
}

// What the evidence adds up to, for one temperature.
struct Evidence {
  double Sum = 0, Weight = 0;
  double Off() const { return Weight == 0 ? 0 : Sum / Weight; }
  /// A residual that grows by `share` with each degree of the temperature.
  void Add(double residual, double share, double variance) {
    Sum += share * residual / variance;
    Weight += share * share / variance;
  }
};

class Scales {
 public:
  Scales(const HeldAir& air, const std::vector<std::size_t>& profile)
      : air_(air), profile_(profile), evidence_(profile.size()) {}

  std::vector<Misfit> Weigh() {
    AddBends();
    AddLines();
    const std::vector<Evidence> ofTemps = evidence_;
    AddHeights();
    std::vector<Misfit> misfits(evidence_.size());
    for (std::size_t k = 0; k < evidence_.size(); ++k) {
      const Evidence& all = evidence_[k];
      if (ofTemps[k].Off() * all.Off() <= kOfTemps * Square(all.Off())) continue;
      misfits[k] = {all.Off(), all.Off() * std::sqrt(all.Weight)};
    }
    return misfits;
  }

 private:
  const HeldValue& Temp(std::size_t k) const { return air_.Temps[profile_[k]]; }

  // Place in the profile of one of the air's temperatures, or of its like at that pressure.
  std::size_t PlaceOf(const HeldValue& value) const {
    const auto place =
        std::ranges::lower_bound(profile_, value.Press, std::greater{},
                                 [this](std::size_t i) { return air_.Temps[i].Press; });
    return static_cast<std::size_t>(place - profile_.begin());
  }

  void AddBends() {
    for (std::size_t k = 1; k + 1 < profile_.size(); ++k) {
      const HeldValue &below = Temp(k - 1), &here = Temp(k), &above = Temp(k + 1);
      const double ofAbove = OnStraight(here.LogPress, below.LogPress, above.LogPress, 0, 1);
      const double bend = here.Amount - below.Amount - ofAbove * (above.Amount - below.Amount);
      const double variance =
          BendVariance(here.Press, !here.Level->IsFine() && !air_.HasLine(here));
      evidence_[k - 1].Add(bend, ofAbove - 1, variance);
      evidence_[k].Add(bend, 1, variance);
      evidence_[k + 1].Add(bend, -ofAbove, variance);
    }
  }

  void AddLines() {
    for (const HeldValue& value : air_.Temps) {
      if (!value.IsOn || value.Level->IsFine() || value.Level->Kind == LevelKind::Surface) continue;
      const std::optional<HeldAir::Line> line = air_.LineAt(value);
      if (!line || line->Length >= kAirLongestLine || line->Below == line->Above) continue;
      const HeldValue &below = air_.Temps[line->Below], &above = air_.Temps[line->Above];
      const double off = value.Amount - line->Temp;
      const double variance = LineVariance(value.Press, line->Length);
      const double ofAbove = OnStraight(value.LogPress, below.LogPress, above.LogPress, 0, 1);
      evidence_[PlaceOf(value)].Add(off, 1, variance);
      evidence_[PlaceOf(below)].Add(off, ofAbove - 1, variance);
      evidence_[PlaceOf(above)].Add(off, -ofAbove, variance);
    }
  }

  // Layers between heights, each on top of the other.
  struct Stack {
    std::vector<double> Residuals{}, Variances{};  // m; m²
    std::vector<double> Shared{};                  // of the height between a layer and the next
    std::vector<std::vector<double>> Weights{};    // m/K of each layer and temperature
  };

  static double HeightVariance(double press) {
    return Square(press > kAirInDecametres ? kMetre : kDecametre);
  }

  void AddHeights() {
    Stack stack;
    const HeldValue* below = nullptr;
    for (const HeldValue& above : air_.Heights) {
      if (!above.IsOn) continue;
      const HeldValue* lower = std::exchange(below, &above);
      if (lower == nullptr || !air_.IsCovered(*lower, above, profile_)) {
        AddStack(std::exchange(stack, {}));
        continue;
      }
      std::vector<double> weights;
      const HeldAir::Layer layer = air_.LayerOf(*lower, above, profile_, &weights);
      if (!stack.Residuals.empty()) stack.Shared.push_back(HeightVariance(lower->Press));
      stack.Residuals.push_back(above.Amount - lower->Amount - layer.Thickness);
      stack.Variances.push_back(HeightVariance(lower->Press) + HeightVariance(above.Press) +
                                Square(kOfLayer * (lower->LogPress - above.LogPress)) +
                                Square(kOfGap * std::max(0.0, layer.Gap - kNoGap)));
      stack.Weights.push_back(std::move(weights));
    }
    AddStack(stack);
  }

  // A height that is rounded up makes the layer below it too thick and the one above too thin by as
  // much: generalized least squares with that covariance.
  void AddStack(const Stack& stack) {
    if (stack.Residuals.empty()) return;
    const std::vector<double> weighed = Solve(stack, stack.Residuals);
    std::vector<double> shares(stack.Residuals.size());
    for (std::size_t k = 0; k < profile_.size(); ++k) {
      for (std::size_t i = 0; i < shares.size(); ++i) shares[i] = -stack.Weights[i][k];
      if (std::ranges::all_of(shares, [](double share) { return share == 0; })) continue;
      const std::vector<double> own = Solve(stack, shares);
      for (std::size_t i = 0; i < shares.size(); ++i) {
        evidence_[k].Sum += shares[i] * weighed[i];
        evidence_[k].Weight += shares[i] * own[i];
      }
    }
  }

  // The inverse of the covariance of neighbouring layers times a vector.
  static std::vector<double> Solve(const Stack& stack, std::vector<double> right) {
    std::vector<double> diagonal = stack.Variances;
    for (std::size_t i = 1; i < right.size(); ++i) {
      const double factor = -stack.Shared[i - 1] / diagonal[i - 1];
      diagonal[i] += factor * stack.Shared[i - 1];
      right[i] -= factor * right[i - 1];
    }
    right.back() /= diagonal.back();
    for (std::size_t i = right.size() - 1; i > 0; --i) {
      right[i - 1] = (right[i - 1] + stack.Shared[i - 1] * right[i]) / diagonal[i - 1];
    }
    return right;
  }

  const HeldAir& air_;
  const std::vector<std::size_t>& profile_;
  std::vector<Evidence> evidence_;
};

}  // namespace

std::vector<Misfit> WeighTemps(const HeldAir& air, const std::vector<std::size_t>& profile) {
  return Scales(air, profile).Weigh();
}

}  // namespace vexa::ingest
