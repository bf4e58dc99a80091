// The diagram's colours and pens by what they draw. Drawing code names an ink, never a colour.
#pragma once

#include <array>

#include "config/view_settings.h"
#include "picture/picture.h"

namespace vexa::diagram {

inline constexpr int kIndexedColors = 16;

struct Palette {
  std::array<Color, kIndexedColors> Indexed{};  // what options choose from by number
  Color Paper{};
  Color Ink{};    // texts, frame
  Color Faint{};  // side notes
  Pen Frame{};
  Pen Isotherm{};
  Pen ZeroIsotherm{};
  Pen Isobar{};
  Pen MandatoryIsobar{};
  Pen DryAdiabat{};
  Pen SatAdiabat{};
  Pen MixingRatio{};
  Pen Temperature{};
  Pen Dewpoint{};
  Pen VirtualTemp{};
  Pen WetBulb{};
  Pen Parcel{};
  Pen ParcelMoisture{};
  Pen Wind{};
  Pen Surface{};
  Pen Freezing{};
  Pen Tropopause{};
  Pen StandardAtmosphere{};
  Pen HeightAxis{};
  Brush UsualTemp{};    // 10 to 90 % of the temperature
  Brush UsualDewpt{};   // of the dew point
  Brush UsualWind{};    // of the wind speed
  Pen UsualTempLine{};  // medians
  Pen UsualDewptLine{};
  Pen UsualWindLine{};
  Brush Ground{};
  Brush Cape{};
  Brush Cin{};
  Brush CinHatch{};  // over it, so that grey print tells it from CAPE
  Color ParcelMark{};
  Color InversionMark{};
  Color ColdFront{};
  Color WarmFront{};
  Color LayerMark{};
  Color PanelHead{};
  Brush Panel{};
  Pen PanelFrame{};
};

/// The palette of the options: the colour scheme on the paper of the screen colour, grid lines pale
/// or, with Darklines, in their full colours. Traces and main lines keep a contrast of 3 to the
/// paper whatever colour is chosen for them.
Palette PaletteFor(const ViewSettings& options);

/// One of the sixteen colours, darkened or lightened where the paper would hide it.
Color LegibleColor(const Palette& palette, int index);

/// The pen of the n-th further sounding of an overlay, from 1; colours and styles take turns.
Pen OverlayPen(const Palette& palette, int number);

/// An ink that stands back towards the paper, for what lies behind the sounding in work.
Color FaintInk(const Palette& palette, Color ink);

}  // namespace vexa::diagram
