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

// The frame as the diagram's own units measure it, with whole ones for its height.
Rect InDiagramUnits(const Rect& plot) {
  const double height =
      plot.Width() > 0 ? std::round(kDiagramWidth * plot.Height() / plot.Width()) : 0;
  return {plot.Left, plot.Top, plot.Left + kDiagramWidth, plot.Top + std::max(height, 1.0)};
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
      logTop_(Log10(topPress_)),
      logBottom_(Log10(bottomPress_)),
      scale_(static_cast<float>(kDiagramWidth / (tempMax - tempMin))),
      whole_(InDiagramUnits(plot)),
      shown_(whole_),
      shownTop_(topPress_),
      shownBottom_(bottomPress) {
  if (type_ != DiagramType::Tephigram) return;
  // The temperature range spans the frame along a turned isobar, hence the cosine.
  scale_ = static_cast<float>(kDiagramWidth * kTephigramCos / (tempMax - tempMin));
  // Up an isotherm ln θ grows by the Poisson exponent times the fall of ln p. One isotherm is
  // chosen on which the isobars stand exactly at their log-pressure places; it is the one on
  // which they are also level, where that lies in the frame.
  perLogTheta_ = whole_.Height() / (kPoisson * kTephigramCos * std::log(bottomPress_ / topPress_));
  const double span = tempMax - tempMin;
  const double levelTemp = perLogTheta_ * kTephigramCos / (scale_ * kTephigramSin) - kKelvinOffset;
  const double anchorTemp = std::clamp(levelTemp, tempMin + 0.25 * span, tempMin + 0.75 * span);
  baseLogTheta_ = LogTheta(anchorTemp, bottomPress_) -
                  (kTephigramRaise + scale_ * (anchorTemp - tempMin) * kTephigramSin) /
                      (perLogTheta_ * kTephigramCos);
}

DiagramMapping DiagramMapping::Zoomed(const Rect& part) const {
  DiagramMapping zoomed = *this;
  zoomed.isZoomed_ = true;
  const double width = whole_.Width();
  const double height = whole_.Height();
  zoomed.shown_ = {whole_.Left + part.Left * width, whole_.Top + part.Top * height,
                   whole_.Left + part.Right * width, whole_.Top + part.Bottom * height};
  double low = shownTop_;
  double high = shownBottom_;
  bool first = true;
  for (const Point corner : {Point{plot_.Left, plot_.Top},
                             {plot_.Right, plot_.Top},
                             {plot_.Left, plot_.Bottom},
                             {plot_.Right, plot_.Bottom}}) {
    const double press = std::clamp(zoomed.ToCoordinates(corner).Press, topPress_,
                                    static_cast<double>(bottomPress_));
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

DiagramMapping DiagramMapping::In(const Rect& plot) const {
  return {type_, plot, tempMin_, tempMax_, topPress_, bottomPress_};
}

Rect DiagramMapping::Region() const {
  const double across = plot_.Width() / whole_.Width();
  const double down = plot_.Height() / whole_.Height();
  return {plot_.Left + (shown_.Left - whole_.Left) * across,
          plot_.Top + (shown_.Top - whole_.Top) * down,
          plot_.Left + (shown_.Right - whole_.Left) * across,
          plot_.Top + (shown_.Bottom - whole_.Top) * down};
}

Point DiagramMapping::ToPage(Point whole) const {
  return {plot_.Left + (whole.X - shown_.Left) * plot_.Width() / shown_.Width(),
          plot_.Top + (whole.Y - shown_.Top) * plot_.Height() / shown_.Height()};
}

Point DiagramMapping::FromPage(Point shown) const {
  return {shown_.Left + (shown.X - plot_.Left) * shown_.Width() / plot_.Width(),
          shown_.Top + (shown.Y - plot_.Top) * shown_.Height() / plot_.Height()};
}

double DiagramMapping::YOfLog(double logPress) const {
  const auto fraction = static_cast<float>((logPress - logTop_) / (logBottom_ - logTop_));
  const double raise = type_ == DiagramType::Tephigram ? kTephigramRaise : 0;
  return ToPage({whole_.Left, whole_.Height() * fraction + whole_.Top - raise}).Y;
}

double DiagramMapping::YOf(double press) const {
  return YOfLog(Log10(press));
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
  const double whole = FromPage({whole_.Left, y}).Y;
  return std::exp(std::numbers::ln10 * (logTop_ + (whole + raise - whole_.Top) / whole_.Height() *
                                                      (logBottom_ - logTop_)));
}

Point DiagramMapping::Turn(Point unturned) const {
  const double dx = unturned.X - whole_.Left;
  const auto dy = static_cast<float>(whole_.Bottom - unturned.Y);
  const double turnedX = dx * kTephigramCos + dy * kTephigramSin;
  const double turnedY = dy * kTephigramCos - dx * kTephigramSin;
  return {whole_.Left + turnedX - kTephigramShift, whole_.Bottom - turnedY};
}

Point DiagramMapping::Unturn(Point drawn) const {
  const double turnedX = drawn.X - whole_.Left + kTephigramShift;
  const double turnedY = whole_.Bottom - drawn.Y;
  const double dx = turnedX * kTephigramCos - turnedY * kTephigramSin;
  const double dy = turnedX * kTephigramSin + turnedY * kTephigramCos;
  return {whole_.Left + dx, whole_.Bottom - dy};
}

Point DiagramMapping::ToPoint(double temp, double press) const {
  const double unskewed = (temp - tempMin_) * scale_ + whole_.Left;
  if (type_ != DiagramType::Tephigram) {
    const double logPress = Log10(press);
    const double x =
        type_ == DiagramType::SkewT ? unskewed + kSkewOrigin - kSkewPerDecade * logPress : unskewed;
    return {ToPage({x, 0}).X, YOfLog(logPress)};
  }
  const double up = perLogTheta_ * (LogTheta(temp, press) - baseLogTheta_);
  return ToPage(Turn({unskewed, whole_.Bottom - up}));
}

DiagramCoordinates DiagramMapping::ToCoordinates(Point at) const {
  if (type_ == DiagramType::Tephigram) {
    const Point flat = Unturn(FromPage(at));
    const double temp = (flat.X - whole_.Left) / scale_ + tempMin_;
    const double logTheta = baseLogTheta_ + (whole_.Bottom - flat.Y) / perLogTheta_;
    const double logTemp = std::log(std::max(temp + kKelvinOffset, 1.0));
    return {temp, kReferencePress * std::exp((logTemp - logTheta) / kPoisson)};
  }
  const double press = PressAt(at.Y);
  const double skew = type_ == DiagramType::SkewT ? kSkewOrigin - kSkewPerDecade * Log10(press) : 0;
  return {(FromPage(at).X - whole_.Left - skew) / scale_ + tempMin_, press};
}

}  // namespace vexa::diagram
