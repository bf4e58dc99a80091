#include "analysis/adiabat_table.h"

#include <algorithm>
#include <cmath>

#include "analysis/column_math.h"
#include "analysis/moist_air.h"
#include "analysis/pressure_grid.h"
#include "analysis/vapor_table.h"
#include "core/units.h"

namespace vexa::analysis {
namespace {

constexpr double kDryBelow = 153.16;  // K; colder air holds too little vapour to matter
constexpr double kShortStep = 0.003;  // K; what a Newton step this short leaves is below 1e-6 K
constexpr int kMarchSteps = 12;       // Newton steps at one pressure before the bracket search

double SaturatedVirtualTemp(double tempK, double press, double vapor) {
  return VirtualTemp(tempK - kKelvinOffset, kEpsilon * vapor / (press - vapor));
}

// Marches down one smooth formula from the cold end. Potential temperature along an adiabat bends
// so gently that three points foretell the next within a thousandth of a degree; one Newton step
// then does.
class March {
 public:
  March(double thetaE, SaturationOver over)
      : thetaE_(thetaE), target_(std::log(thetaE)), over_(over) {}

  struct Here {
    double TempK = 0;
    double Vapor = 0;  // hPa
  };

  void Restart() { known_ = 0; }

  Here Step(VaporFormula formula, int press) {
    const WholePressures& whole = WholeHpa();
    const double poisson = whole.Poisson[GridIndex(press)];
    const double dry = thetaE_ * poisson;
    if (dry < kDryBelow) return Remember({dry, 0}, poisson);

    const double logPoisson = kPoisson * (whole.Log[GridIndex(1000)] - whole.Log[GridIndex(press)]);
    double tempK = std::min(dry, Foretold(dry / poisson) * poisson);
    if (known_ == 0) tempK = Searched(press);
    for (int step = 0; step < kMarchSteps; ++step) {
      const AdiabatPoint point =
          AdiabatWith(TabledVapor(formula, tempK), tempK, std::log(tempK), press, logPoisson);
      if (!(point.Vapor.Pressure < 0.3 * press)) break;
      const double change = (target_ - point.LogThetaE) / point.Slope;
      tempK += change;
      if (!(tempK > 0)) break;
      if (std::fabs(change) < kShortStep) {
        const double vaporGrowth = point.Vapor.LogSlope * change;
        return Remember({tempK, point.Vapor.Pressure * (1 + vaporGrowth)}, poisson);
      }
    }
    tempK = Searched(press);
    return Remember({tempK, SatVapor(tempK - kKelvinOffset, over_)}, poisson);
  }

 private:
  double Searched(int press) const { return LiftSat(thetaE_, press, over_).Temp + kKelvinOffset; }

  double Foretold(double first) const {
    switch (known_) {
      case 0:
        return first;
      case 1:
        return thetas_[0];
      case 2:
        return 2 * thetas_[0] - thetas_[1];
      default:
        return 3 * (thetas_[0] - thetas_[1]) + thetas_[2];
    }
  }

  Here Remember(Here here, double poisson) {
    thetas_ = {here.TempK / poisson, thetas_[0], thetas_[1]};
    known_ = std::min(known_ + 1, 3);
    return here;
  }

  double thetaE_;
  double target_;
  SaturationOver over_;
  std::array<double, 3> thetas_{};  // K, latest first
  int known_ = 0;
};

}  // namespace

void SolveAdiabat(double thetaE, SaturationOver over, int bottom, int top, double* temps,
                  double* virtualTemps) {
  March march(thetaE, over);
  VaporFormula formula = over == SaturationOver::Ice ? VaporFormula::Ice : VaporFormula::Water;
  for (int press = top; press <= bottom; ++press) {
    March::Here here = march.Step(formula, press);
    if (formula == VaporFormula::Ice && here.TempK > kKelvinOffset) {
      formula = VaporFormula::Water;
      march.Restart();
      here = march.Step(formula, press);
    }
    temps[bottom - press] = here.TempK - kKelvinOffset;
    if (virtualTemps != nullptr) {
      virtualTemps[bottom - press] = SaturatedVirtualTemp(here.TempK, press, here.Vapor);
    }
  }
}

// Of the cubic through four columns, a share of the way from the second to the third.
inline std::array<double, 4> CubicWeights(double u) {
  return {-u * (u - 1) * (u - 2) / 6, (u + 1) * (u - 1) * (u - 2) / 2, -(u + 1) * u * (u - 2) / 2,
          (u + 1) * u * (u - 1) / 6};
}

VEXA_WIDE void SumColumns(const double* a, const double* b, const double* c, const double* d,
                          std::array<double, 4> weights, std::size_t count, double* out) {
  const auto [wa, wb, wc, wd] = weights;
  VEXA_INDEPENDENT
  for (std::size_t i = 0; i < count; ++i) {
    out[i] = wa * a[i] + wb * b[i] + wc * c[i] + wd * d[i];
  }
}

// The first entry of [from, to) that is not warmer than 0 °C, or to.
std::size_t AdiabatTable::Weighted::FirstFrozen(std::size_t from, std::size_t to) const {
  while (from < to) {
    const std::size_t middle = from + (to - from) / 2;
    if (At(&Column::Temps, middle) > 0) {
      from = middle + 1;
    } else {
      to = middle;
    }
  }
  return to;
}

// Blends one array of the columns over [first, first + count).
void AdiabatTable::Weighted::Sum(std::vector<double> Column::*array, std::size_t first,
                                 std::size_t count, double* out) const {
  const double* a = (Columns[0]->*array).data() + first;
  const double* b = (Columns[1]->*array).data() + first;
  const double* c = (Columns[2]->*array).data() + first;
  const double* d = (Columns[3]->*array).data() + first;
  SumColumns(a, b, c, d, Weights, count, out);
}

const AdiabatTable::Column& AdiabatTable::At(VaporFormula formula, int rung) {
  const std::vector<Column>& columns = columns_[static_cast<std::size_t>(formula)];
  const auto at = static_cast<std::size_t>(rung);
  if (columns.empty() || columns[at].Temps.empty()) Fill(formula, rung);
  return columns[at];
}

void AdiabatTable::Fill(VaporFormula formula, int rung) {
  std::vector<Column>& columns = columns_[static_cast<std::size_t>(formula)];
  if (columns.empty()) columns.resize(kRungs);
  Column& column = columns[static_cast<std::size_t>(rung)];
  column.Temps.resize(kGridBottom);
  column.VirtualTemps.resize(kGridBottom);
  const double thetaE = kFirstRung + kRungHeight * rung;
  March march(thetaE, formula == VaporFormula::Ice ? SaturationOver::Ice : SaturationOver::Water);
  for (int press = 1; press <= kGridBottom; ++press) {
    const March::Here here = march.Step(formula, press);
    column.Temps[GridIndex(press)] = here.TempK - kKelvinOffset;
    column.VirtualTemps[GridIndex(press)] = SaturatedVirtualTemp(here.TempK, press, here.Vapor);
  }
  column.Areas = AreasOverLog(column.Temps, kGridBottom);
  column.VirtualAreas = AreasOverLog(column.VirtualTemps, kGridBottom);
}

AdiabatTable::Rung AdiabatTable::RungBelow(double thetaE) {
  const double place = (thetaE - kFirstRung) / kRungHeight;
  const int number = static_cast<int>(place);
  return {number, place - number};
}

bool AdiabatTable::IsOnLadder(double thetaE) {
  return thetaE >= kFirstRung + kRungHeight && thetaE < kFirstRung + kRungHeight * (kRungs - 2);
}

AdiabatTable::Weighted AdiabatTable::Neighbours(VaporFormula formula, double thetaE) {
  const Rung at = RungBelow(thetaE);
  const std::vector<Column>& columns = columns_[static_cast<std::size_t>(formula)];
  int& latest = latest_[static_cast<std::size_t>(formula)];
  if (latest != at.Number || columns.empty()) {
    for (int i = 0; i < 4; ++i) At(formula, at.Number - 1 + i);
    latest = at.Number;
  }
  Weighted blend;
  const Column* lowest = columns.data() + at.Number - 1;
  blend.Columns = {lowest, lowest + 1, lowest + 2, lowest + 3};
  blend.Weights = CubicWeights(at.Share);
  return blend;
}

void AdiabatTable::Blend(double thetaE, SaturationOver over, int bottom, int top, double* temps,
                         double* virtualTemps) {
  if (bottom < top) return;
  if (!IsOnLadder(thetaE)) {
    SolveAdiabat(thetaE, over, bottom, top, temps, virtualTemps);
    return;
  }
  const std::size_t first = GridIndex(bottom);
  const auto count = static_cast<std::size_t>(bottom - top) + 1;
  const auto blend = [&](const Weighted& columns, std::size_t from, std::size_t to) {
    columns.Sum(&Column::Temps, first + from, to - from, temps + from);
    if (virtualTemps == nullptr) return;
    columns.Sum(&Column::VirtualTemps, first + from, to - from, virtualTemps + from);
  };

  // Over ice the water columns hold while they are warmer than 0 °C.
  const Weighted water = Neighbours(VaporFormula::Water, thetaE);
  const std::size_t icy =
      over == SaturationOver::Ice ? water.FirstFrozen(first, first + count) - first : count;
  blend(water, 0, icy);
  if (icy < count) blend(Neighbours(VaporFormula::Ice, thetaE), icy, count);
}

AdiabatTable::Adiabat AdiabatTable::Along(double thetaE, SaturationOver over, bool isVirtual) {
  Adiabat adiabat;
  if (!IsOnLadder(thetaE)) {
    std::vector<double> temps(kGridBottom), virtuals(kGridBottom);
    SolveAdiabat(thetaE, over, kGridBottom, 1, temps.data(), virtuals.data());
    adiabat.solved_ =
        std::make_shared<const std::vector<double>>(std::move(isVirtual ? virtuals : temps));
    adiabat.water_.Temps.fill(adiabat.solved_->data());
    adiabat.water_.Weights = {1, 0, 0, 0};
    return adiabat;
  }
  const auto array = isVirtual ? &Column::VirtualTemps : &Column::Temps;
  const auto columnsOf = [array](const Weighted& blend) {
    Adiabat::Columns columns{.Weights = blend.Weights};
    for (std::size_t i = 0; i < 4; ++i) columns.Temps[i] = (blend.Columns[i]->*array).data();
    return columns;
  };
  const Weighted water = Neighbours(VaporFormula::Water, thetaE);
  adiabat.water_ = columnsOf(water);
  if (over == SaturationOver::Ice) {
    adiabat.frozen_ = kGridBottom - static_cast<int>(water.FirstFrozen(0, kGridBottom));
    adiabat.ice_ = columnsOf(Neighbours(VaporFormula::Ice, thetaE));
  }
  return adiabat;
}

AdiabatTable::Adiabat::Columns AdiabatTable::Adiabat::From(int press) const {
  Columns columns = press > frozen_ ? water_ : ice_;
  if (press > frozen_) columns.Top = frozen_ + 1;
  for (const double*& temps : columns.Temps) temps += GridIndex(press);
  return columns;
}

void AdiabatTable::Pieces::Take(int rung) {
  const std::size_t first = GridIndex(bottom_);
  for (std::size_t i = 0; i < 4; ++i) {
    const Column& column = table_.At(VaporFormula::Water, rung - 1 + static_cast<int>(i));
    temps_[i] = (isVirtual_ ? column.VirtualTemps : column.Temps).data();
    areas_[i] = (isVirtual_ ? column.VirtualAreas : column.Areas).data();
    bottoms_[i] = temps_[i][first];
    seconds_[i] = temps_[i][first + 1];
    starts_[i] = areas_[i][first + 1];
  }
  rung_ = rung;
}

std::optional<AdiabatPiece> AdiabatTable::Pieces::Up(double thetaE, int top) {
  if (!IsOnLadder(thetaE)) return std::nullopt;
  if (over_ == SaturationOver::Ice) return ThroughIce(thetaE, top);
  const Rung at = RungBelow(thetaE);
  if (at.Number != rung_) Take(at.Number);
  const std::array<double, 4> weights = CubicWeights(at.Share);
  const auto sum = [&weights](double a, double b, double c, double d) {
    return weights[0] * a + weights[1] * b + weights[2] * c + weights[3] * d;
  };
  const auto sumOf = [&sum](const std::array<double, 4>& values) {
    return sum(values[0], values[1], values[2], values[3]);
  };
  const auto sumAt = [&sum](const std::array<const double*, 4>& columns, std::size_t i) {
    return sum(columns[0][i], columns[1][i], columns[2][i], columns[3][i]);
  };
  const std::size_t last = GridIndex(top);
  return AdiabatPiece{.Bottom = sumOf(bottoms_),
                      .Second = sumOf(seconds_),
                      .Top = sumAt(temps_, last),
                      .Area = sumAt(areas_, last) - sumOf(starts_)};
}

// Where it is colder than 0 °C the columns of ice hold.
AdiabatPiece AdiabatTable::Pieces::ThroughIce(double thetaE, int top) const {
  const auto temps = isVirtual_ ? &Column::VirtualTemps : &Column::Temps;
  const auto areas = isVirtual_ ? &Column::VirtualAreas : &Column::Areas;
  const std::size_t first = GridIndex(bottom_);
  const std::size_t last = GridIndex(top);
  const Weighted water = table_.Neighbours(VaporFormula::Water, thetaE);
  const std::size_t icy = water.FirstFrozen(first, last + 1);
  const Weighted above = icy <= last ? table_.Neighbours(VaporFormula::Ice, thetaE) : water;
  const auto at = [&](std::size_t i) { return (i < icy ? water : above).At(temps, i); };
  const auto area = [&](const Weighted& columns, std::size_t from, std::size_t to) {
    return columns.At(areas, to) - columns.At(areas, from);
  };

  AdiabatPiece piece{.Bottom = at(first), .Second = at(first + 1), .Top = at(last)};
  if (icy > last) {
    piece.Area = area(water, first + 1, last);
  } else if (icy <= first + 1) {
    piece.Area = area(above, first + 1, last);
  } else {
    piece.Area = area(water, first + 1, icy - 1) + AreaOverLog(at(icy - 1), at(icy), icy - 1) +
                 area(above, icy, last);
  }
  return piece;
}

}  // namespace vexa::analysis
