// Which diagram a sounding is drawn on and how far it reaches: the type after the automatic
// emagram, the top pressure and the temperature range.
#pragma once

#include "config/view_settings.h"
#include "core/sounding_record.h"
#include "diagram/mapping.h"

namespace vexa::diagram {

struct DiagramChoice {
  DiagramType Type = DiagramType::SkewT;
  double TopPress = 100;  // hPa
  /// The tephigram is drawn and cannot show the sounding's upper part.
  bool BeyondTephigram = false;
};

/// Above 100 hPa is drawn only with "Above 100mb"; such a sounding becomes an emagram whatever the
/// chosen type where the automatic emagram is on.
DiagramChoice ChooseDiagram(const SoundingRecord& sounding, const ViewSettings& options);

struct TempRange {
  double Min = -40;  // °C
  double Max = 40;
};

/// The range of the temperature axis: the options' own under "MANUAL"; under "AUTO" 80 degrees
/// around the usual place, shifted by tens and widened only as far as the sounding needs.
TempRange ChooseTempRange(const SoundingRecord& sounding, const ViewSettings& options,
                          const DiagramChoice& choice, const Rect& frame);

}  // namespace vexa::diagram
