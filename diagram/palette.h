// The diagram's colours and pens by what they draw. Drawing code names an ink, never a colour.
#pragma once

#include "config/options.h"
#include "picture/picture.h"

namespace vexa::diagram {

/// The sixteen colours that the options choose from by index.
Color IndexedColor(int index);

/// A colour moved towards another; share 0 leaves it, 1 replaces it.
Color Blend(Color from, Color to, double share);

struct Palette {
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
  Pen Parcel{};
  Pen ParcelMoisture{};
  Pen Wind{};
  Pen Surface{};
  Pen Freezing{};
  Pen Tropopause{};
  Pen StandardAtmosphere{};
  Pen HeightAxis{};
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

/// The palette of the options: paper by the screen colour, grid lines pale or, with Darklines,
/// in their full colours ("Darker").
Palette PaletteFor(const Options& options);

/// The pen of the n-th further sounding of an overlay, from 1; colours and styles take turns.
Pen OverlayPen(const Palette& palette, int number);

}  // namespace vexa::diagram
