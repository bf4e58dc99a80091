#include "analysis/level_profile.h"

#include <cmath>

#include "analysis/moist_air.h"
#include "core/markers.h"
#include "core/units.h"

namespace vexa::analysis {
namespace {

constexpr double kMetersPerKelvin = kDryGasConstant / kGravity;

// Thickness between two levels from their virtual temperatures; Hess (1959).
double Thickness(double lowPress, double highPress, double lowTemp, double highTemp) {
  if (!(lowPress > 0) || !(highPress > 0)) return 0;
  const double meanTempK = (lowTemp + highTemp) / 2 + kKelvinOffset;
  return kMetersPerKelvin * meanTempK * std::log(lowPress / highPress);
}

}  // namespace

LevelProfile DeriveLevels(const SoundingRecord& sounding, const Options& options) {
  const SaturationOver over = options.Saturation;
  const int count = sounding.NumTempLevels();
  LevelProfile levels;
  levels.Press = sounding.Press;
  levels.Temp = sounding.Temp;
  levels.Dewpt = sounding.Dewpt;
  for (Levels<double>* array : {&levels.Height, &levels.WetBulb, &levels.ThetaE, &levels.Theta,
                                &levels.VirtualTemp, &levels.MixingRatio, &levels.RelHumidity}) {
    array->Resize(count, kMissing);
  }
  for (int i = 1; i <= count; ++i) {
    const double press = levels.Press(i);
    const double temp = levels.Temp(i);
    const double dewpt = levels.Dewpt(i);
    levels.Theta(i) = ThetaPoint(press, temp, over).Theta;
    levels.VirtualTemp(i) = temp;
    if (!NotAvailable(dewpt)) {
      levels.MixingRatio(i) = ThetaPoint(press, dewpt, over).MixingRatio;
      levels.VirtualTemp(i) = VirtualTemp(temp, levels.MixingRatio(i));
      levels.ThetaE(i) = LevelThetaE(press, temp, dewpt, over);
      levels.WetBulb(i) = WetBulb(press, temp, dewpt, over);
      levels.RelHumidity(i) = RelativeHumidity(temp, dewpt, over);
    }
    levels.Height(i) =
        i == 1 ? sounding.ElevM
               : levels.Height(i - 1) + Thickness(levels.Press(i - 1), press,
                                                  levels.VirtualTemp(i - 1), levels.VirtualTemp(i));
  }
  return levels;
}

}  // namespace vexa::analysis
