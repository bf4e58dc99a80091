#include "diagram/mapping.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "analysis/moist_air.h"
#include "core/units.h"

namespace vexa::diagram {
namespace {

using analysis::kPoisson;
using analysis::kReferencePress;

double Log10(double value) {
  return std::log(value) / std::numbers::ln10;
}

double LogTheta(double temp, double press) {
  return std::log(temp + kKelvinOffset) + kPoisson * std::log(kReferencePress / press);
}

}  // namespace

DiagramMapping::DiagramMapping(DiagramType type, const Rect& plot, double tempMin, double tempMax,
                               double topPress, int bottomPress)
    : type_(type),
      plot_(plot),
      tempMin_(tempMin),
      tempMax_(tempMax),
      topPress_(type == DiagramType::Tephigram ? kTephigramTop : topPress),
      bottomPress_(bottomPress),
      scale_(static_cast<float>(plot.Width() / (tempMax - tempMin))),
      shownTop_(topPress_),
      shownBottom_(bottomPress) {
  if (type_ != DiagramType::Tephigram) return;
  // The temperature range spans the frame along a turned isobar, hence the cosine.
  scale_ = static_cast<float>(plot.Width() * kTephigramCos / (tempMax - tempMin));
  // Up an isotherm ln θ grows by the Poisson exponent times the fall of ln p. One isotherm is
  // chosen on which the isobars stand exactly at their log-pressure places; it is the one on
  // which they are also level, where that lies in the frame.
  perLogTheta_ = plot.Height() / (kPoisson * kTephigramCos * std::log(bottomPress_ / topPress_));
  const double span = tempMax - tempMin;
  const double levelTemp = perLogTheta_ * kTephigramCos / (scale_ * kTephigramSin) - kKelvinOffset;
  const double anchorTemp = std::clamp(levelTemp, tempMin + 0.25 * span, tempMin + 0.75 * span);
  baseLogTheta_ = LogTheta(anchorTemp, bottomPress_) -
                  (kTephigramRaise + scale_ * (anchorTemp - tempMin) * kTephigramSin) /
                      (perLogTheta_ * kTephigramCos);
}

DiagramMapping DiagramMapping::Zoomed(const Rect& region) const {
  DiagramMapping zoomed = *this;
  zoomed.zoom_ = region;
  double low = shownTop_;
  double high = shownBottom_;
  bool first = true;
  for (const Point corner : {Point{region.Left, region.Top},
                             {region.Right, region.Top},
                             {region.Left, region.Bottom},
                             {region.Right, region.Bottom}}) {
    const double press =
        std::clamp(ToCoordinates(corner).Press, topPress_, static_cast<double>(bottomPress_));
    low = first ? press : std::min(low, press);
    high = first ? press : std::max(high, press);
    first = false;
  }
  zoomed.shownTop_ = low;
  zoomed.shownBottom_ = high;
  return zoomed;
}

DiagramMapping DiagramMapping::Whole() const {
  return {type_, plot_, tempMin_, tempMax_, topPress_, bottomPress_};
}

Point DiagramMapping::Enlarge(Point whole) const {
  if (!zoom_) return whole;
  return {plot_.Left + (whole.X - zoom_->Left) * plot_.Width() / zoom_->Width(),
          plot_.Top + (whole.Y - zoom_->Top) * plot_.Height() / zoom_->Height()};
}

Point DiagramMapping::Reduce(Point shown) const {
  if (!zoom_) return shown;
  return {zoom_->Left + (shown.X - plot_.Left) * zoom_->Width() / plot_.Width(),
          zoom_->Top + (shown.Y - plot_.Top) * zoom_->Height() / plot_.Height()};
}

double DiagramMapping::Fraction(double press) const {
  const auto fraction = static_cast<float>((Log10(press) - Log10(topPress_)) /
                                           (Log10(bottomPress_) - Log10(topPress_)));
  return fraction;
}

double DiagramMapping::YOf(double press) const {
  const double raise = type_ == DiagramType::Tephigram ? kTephigramRaise : 0;
  return Enlarge({plot_.Left, plot_.Height() * Fraction(press) + plot_.Top - raise}).Y;
}

double DiagramMapping::IsobarY(double press, double x) const {
  if (type_ != DiagramType::Tephigram) return YOf(press);
  // An isobar runs to the right as it grows warmer, so that halving finds the place across.
  constexpr int kHalvings = 50;
  double cold = -kKelvinOffset + 1;
  double warm = 500;
  for (int i = 0; i < kHalvings; ++i) {
    const double middle = (cold + warm) / 2;
    (ToPoint(middle, press).X < x ? cold : warm) = middle;
  }
  return ToPoint(cold, press).Y;
}

double DiagramMapping::PressAt(double y) const {
  const double raise = type_ == DiagramType::Tephigram ? kTephigramRaise : 0;
  const double whole = Reduce({plot_.Left, y}).Y;
  return std::exp(std::numbers::ln10 *
                  (Log10(topPress_) + (whole + raise - plot_.Top) / plot_.Height() *
                                          (Log10(bottomPress_) - Log10(topPress_))));
}

Point DiagramMapping::Turn(Point unturned) const {
  const double dx = unturned.X - plot_.Left;
  const auto dy = static_cast<float>(plot_.Bottom - unturned.Y);
  const double turnedX = dx * kTephigramCos + dy * kTephigramSin;
  const double turnedY = dy * kTephigramCos - dx * kTephigramSin;
  return {plot_.Left + turnedX - kTephigramShift, plot_.Bottom - turnedY};
}

Point DiagramMapping::Unturn(Point drawn) const {
  const double turnedX = drawn.X - plot_.Left + kTephigramShift;
  const double turnedY = plot_.Bottom - drawn.Y;
  const double dx = turnedX * kTephigramCos - turnedY * kTephigramSin;
  const double dy = turnedX * kTephigramSin + turnedY * kTephigramCos;
  return {plot_.Left + dx, plot_.Bottom - dy};
}

Point DiagramMapping::ToPoint(double temp, double press) const {
  const double unskewed = (temp - tempMin_) * scale_ + plot_.Left;
  switch (type_) {
    case DiagramType::SkewT:
      return {Enlarge({unskewed + kSkewOrigin - kSkewPerDecade * Log10(press), 0}).X, YOf(press)};
    case DiagramType::Emagram:
      return {Enlarge({unskewed, 0}).X, YOf(press)};
    case DiagramType::Tephigram:
      break;
  }
  const double up = perLogTheta_ * (LogTheta(temp, press) - baseLogTheta_);
  return Enlarge(Turn({unskewed, plot_.Bottom - up}));
}

DiagramCoordinates DiagramMapping::ToCoordinates(Point at) const {
  if (type_ == DiagramType::Tephigram) {
    const Point flat = Unturn(Reduce(at));
    const double temp = (flat.X - plot_.Left) / scale_ + tempMin_;
    const double logTheta = baseLogTheta_ + (plot_.Bottom - flat.Y) / perLogTheta_;
    const double logTemp = std::log(std::max(temp + kKelvinOffset, 1.0));
    return {temp, kReferencePress * std::exp((logTemp - logTheta) / kPoisson)};
  }
  const double press = PressAt(at.Y);
  const double skew = type_ == DiagramType::SkewT ? kSkewOrigin - kSkewPerDecade * Log10(press) : 0;
  return {(Reduce(at).X - plot_.Left - skew) / scale_ + tempMin_, press};
}

}  // namespace vexa::diagram
