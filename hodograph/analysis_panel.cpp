#include "hodograph/analysis_panel.h"

#include <cmath>
#include <string_view>

#include "analysis/index_table.h"
#include "analysis/shown_units.h"
#include "core/markers.h"
#include "core/numbers.h"
#include "core/shown_values.h"
#include "hodograph/rings.h"

namespace vexa::hodograph {
namespace {

constexpr std::string_view kNoMotion = " --                  ";
constexpr std::string_view kNoValue = "--";
constexpr int kMotionWidth = 17;

// A number with the place of its sign: " 30".
std::string Signed(double value) {
  return (value < 0 ? "" : " ") + Shortest(value);
}

class PanelWriter {
 public:
  explicit PanelWriter(const HodographInput& input) : in_(input), storm_(input.Storm()) {}

  PanelLine Motion() const {
    const std::string right = "RM: " + MotionText(storm_.Right);
    const std::string left = "LM: " + MotionText(storm_.Left);
    return {" Storm-Motion: " + (storm_.RightIsChosen ? right + left : left + right),
            "The chosen mover first: " + std::string(storm_.ChosenName())};
  }

  PanelLine Layer() const {
    if (Manual()) return {std::string(27, ' ')};
    const bool bunkers = in_.Set.Motion == StormMotion::Bunkers;
    return {"(using a" + Signed(bunkers ? 0 : in_.Set.ShearLayerBottomKm) + "-" +
            Shortest(bunkers ? 6 : in_.Set.ShearLayerTopKm) + " km layer)"};
  }

  PanelLine Method() const {
    std::string text = " Method: ";
    if (Manual()) {
      text += std::string(20, ' ') + " Manual entry";
    } else if (in_.Set.Motion == StormMotion::Bunkers) {
      text += " Bunkers (shear-relative)";
    } else {
      text += "Traditional:" + Signed(in_.Set.ShearLayerDeg) + "-Deg &" +
              Signed(in_.Set.ShearLayerPct) + "% of steering flow";
    }
    return {text};
  }

  PanelLine Vgp() const { return Index("      VGP:", "VGP 0-xkm", "0.0##", in_.Set.VgpDepthKm); }
  PanelLine Ehi() const { return Index("      EHI:", "EHI 0-xkm", "###.0", in_.Set.EhiDepthKm); }

  PanelLine Richardson() const {
    const std::string shear =
        storm_.BrnShear == kNone ? std::string(kNoValue) : Mask(storm_.BrnShear, "##0.0") + " m/s ";
    return {"      BRN:" + PadLeft(IndexText("BRN", "###0"), 5) + "   BRN Shear: " + shear,
            "BRN Shear: half the square of the difference between the 0-6 and 0-0.5 km mean winds "
            "in m/s"};
  }

  PanelLine Helicity(int depthKm) const {
    const std::optional<analysis::Mover>& chosen = storm_.Chosen();
    const double value = chosen ? chosen->Helicity[static_cast<std::size_t>(depthKm - 1)] : kNone;
    return {"     s-rH: (0-" + Shortest(depthKm) + "km) " +
                (value == kNone ? std::string(kNoValue) : Mask(value, "###0")),
            "Storm-relative helicity, m2/s2, of the " + std::string(storm_.ChosenName()) +
                (storm_.RightIsCyclonic ? "" : "; south of the equator cyclonic is negative")};
  }

  PanelLine Mean() const {
    const std::string_view mask = in_.Set.Speed == SpeedUnits::Knots ? "##0" : "#0.0";
    std::string text(kNoValue);
    if (storm_.Mean6km) {
      const analysis::Wind wind = analysis::FromComponents(*storm_.Mean6km);
      text = analysis::DirectionText(wind.Dir) + "/" + Speed(wind.Spd, mask) + Unit();
    }
    return {"Mean Wind:  (0-6km) " + text};
  }

  PanelLine Shear() const {
    const double depthKm = in_.Set.ShearXLayerTopKm;
    const std::optional<LayerEnds> ends =
        EndsOfLayer(WindProfile(in_.Sounding, {}), depthKm * 1000);
    std::string text(kNoValue);
    if (ends) {
      const double speed = std::hypot(ends->High.U - ends->Low.U, ends->High.V - ends->Low.V);
      text = Speed(speed, "###0.0") + Unit();
    }
    return {"    Shear:  (0-" + Shortest(depthKm) + "km) " + text};
  }

 private:
  bool Manual() const { return in_.Set.MotionMode == Scaling::Manual; }
  std::string Unit() const { return in_.Set.Speed == SpeedUnits::Knots ? " kts" : " m/s"; }
  std::string Speed(double knots, std::string_view mask) const {
    return Mask(ShownIn(knots, in_.Set.Speed), mask);
  }

  std::string MotionText(const std::optional<analysis::Mover>& mover) const {
    if (!mover) return std::string(kNoMotion);
    const analysis::Wind wind = analysis::FromComponents(mover->Motion);
    return PadRight(
        analysis::DirectionText(wind.Dir) + "/" + Speed(wind.Spd, "##0.0") + Unit() + " ",
        kMotionWidth);
  }

  std::string IndexText(std::string_view label, std::string_view mask) const {
    const analysis::IndexRow* row = analysis::FindIndex(label);
    const analysis::IndexValue* value =
        row == nullptr ? nullptr : analysis::IndexOf(in_.Results, *row);
    if (value == nullptr || !value->Exists()) return std::string(kNoValue);
    return std::string(analysis::ShowIndex(*value, {}).Bound) + Mask(value->Value, mask);
  }

  PanelLine Index(std::string_view caption, std::string_view label, std::string_view mask,
                  double depthKm) const {
    return {std::string(caption) + " (0-" + Shortest(depthKm) + "km) " + IndexText(label, mask)};
  }

  const HodographInput& in_;
  const analysis::StormMotionResults& storm_;
};

}  // namespace

std::vector<PanelLine> AnalysisPanel(const HodographInput& input) {
  const PanelWriter panel(input);
  return {panel.Motion(),    panel.Layer(),      panel.Method(),    panel.Vgp(),
          panel.Ehi(),       panel.Richardson(), panel.Helicity(3), panel.Helicity(2),
          panel.Helicity(1), panel.Mean(),       panel.Shear()};
}

}  // namespace vexa::hodograph
