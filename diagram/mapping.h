// The diagram's geometry: from temperature and pressure to the page and back, for the skew-T, the
// emagram and the tephigram. Pure arithmetic; it travels with the picture so that the cursor
// readout inverts the very numbers that placed it.
#pragma once

#include "config/view_settings.h"
#include "picture/picture.h"

namespace vexa::diagram {

// The diagram is laid out in drawing units of its own, in which it always has this width, and is
// then put on the page: so a sounding leans alike on every page.
inline constexpr double kDiagramWidth = 6600;

// The skew of the skew-T, fixed in these units whatever the temperature scale: isotherms move
// kSkewPerDecade to the right for each tenfold fall of pressure and meet the emagram near 1050 hPa.
inline constexpr double kSkewOrigin = 11885;
inline constexpr double kSkewPerDecade = 3934;

// The tephigram's turn by 43 degrees, written to seven places.
inline constexpr double kTephigramCos = 0.7313537;
inline constexpr double kTephigramSin = 0.6819984;
inline constexpr double kTephigramShift = 200;  // drawn this far to the left
inline constexpr double kTephigramRaise = 130;  // bottom line raised by this
inline constexpr double kTephigramTop = 100;    // hPa

struct DiagramCoordinates {
  double Temp = 0;   // °C
  double Press = 0;  // hPa
};

class DiagramMapping {
 public:
  DiagramMapping() = default;
  /// plot     the frame of the diagram on the page
  /// tempMin, tempMax  °C at the frame's lower left and lower right
  /// topPress, bottomPress  hPa; the tephigram's top is always 100
  DiagramMapping(DiagramType type, const Rect& plot, double tempMin, double tempMax,
                 double topPress, int bottomPress = 1050);

  /// The same diagram with a part of its frame enlarged to the whole of it. The part is told in
  /// shares of the frame, 0 to 1, so that it is the same on every page.
  DiagramMapping Zoomed(const Rect& part) const;
  /// The same diagram whole.
  DiagramMapping Whole() const;
  /// The same axes in another frame, whole.
  DiagramMapping In(const Rect& plot) const;

  DiagramType Type() const { return type_; }
  const Rect& Frame() const { return plot_; }
  bool IsZoomed() const { return isZoomed_; }
  /// The part of the whole diagram's frame that is shown; all of it unless zoomed.
  Rect Region() const;
  /// Lowest and highest pressure that the frame shows, hPa.
  double TopPress() const { return shownTop_; }
  double BottomPress() const { return shownBottom_; }
  double TempMin() const { return tempMin_; }
  double TempMax() const { return tempMax_; }
  float Scale() const { return scale_; }  // diagram's drawing units per °C

  /// Page position of a temperature in °C at a pressure in hPa.
  Point ToPoint(double temp, double press) const;
  /// Temperature and pressure at a page position.
  DiagramCoordinates ToCoordinates(Point at) const;
  /// Vertical place of a pressure by itself, on a straight logarithmic scale. Only the skew-T's and
  /// the emagram's isobars lie on it all along.
  double YOf(double press) const;
  /// Vertical place of a pressure's isobar at a place across the page. On the tephigram isobars are
  /// curved; elsewhere it is YOf. It may lie above or below the frame.
  double IsobarY(double press, double x) const;
  /// The pressure at such a place.
  double PressAt(double y) const;
  bool operator==(const DiagramMapping&) const = default;
  /// A point of the tephigram's unturned frame turned about the plot's lower left corner.
  Point Turn(Point unturned) const;

 private:
  Point Unturn(Point drawn) const;
  double YOfLog(double logPress) const;
  Point ToPage(Point whole) const;
  Point FromPage(Point shown) const;

  DiagramType type_ = DiagramType::SkewT;
  Rect plot_{};
  double tempMin_ = -40;
  double tempMax_ = 40;
  double topPress_ = 100;
  int bottomPress_ = 1050;
  double logTop_ = 2;  // of the pressures at top and bottom, to the base of ten
  double logBottom_ = 3.0211892990699383;
  float scale_ = 90;
  Rect whole_{};  // the frame in the diagram's own units
  Rect shown_{};  // the part of it that the frame on the page shows
  bool isZoomed_ = false;
  double shownTop_ = 100;
  double shownBottom_ = 1050;
  // Tephigram: height of the unturned frame per unit of ln θ and the ln θ of its base line.
  double perLogTheta_ = 0;
  double baseLogTheta_ = 0;
};

}  // namespace vexa::diagram
