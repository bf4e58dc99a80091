// Heights for winds that a source gives on pressure alone, from the heights that it gives for
// other pressures and, beyond those, from the weight of the air in between.
#pragma once

#include <vector>

namespace vexa::ingest {

class HeightFinder {
 public:
  /// A known height, pressures in falling order; one that repeats a pressure is passed over.
  void AddKnown(double press, double height);
  bool KnowsAny() const { return !known_.empty(); }
  /// The temperature levels, pressures strictly falling; a missing dew point counts as dry air.
  void SetTemperatures(std::vector<double> press, std::vector<double> temp,
                       std::vector<double> dewpt);

  /// Height in m above mean sea level: linear in ln p between known heights; beyond them, or where
  /// there are none, hydrostatic in steps with the virtual temperature, with the temperature of
  /// the standard atmosphere outside the temperature levels.
  double At(double press);

  bool UsedStandardAtmosphere() const { return usedStandardAtmosphere_; }

 private:
  struct Known {
    double LogPress, Height;
  };

  double ThicknessTo(double fromLogPress, double toLogPress);
  double VirtualTempK(double logPress);

  std::vector<Known> known_{};
  std::vector<double> logPress_{};  // falling
  std::vector<double> virtualTempK_{};
  bool usedStandardAtmosphere_ = false;
};

}  // namespace vexa::ingest
