// Moist-air thermodynamics: vapour pressure, potential temperatures, condensation and the
// saturated adiabat. Every index, parcel and grid line goes through these routines, so their
// constants fix the numbers that the whole program reports.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "core/choices.h"
#include "core/markers.h"

namespace vexa {

enum class SaturationOver { Water, Ice };

constexpr auto Words(SaturationOver) {
  return std::to_array<std::string_view>({"Water", "Ice"});
}

}  // namespace vexa

namespace vexa::analysis {

inline constexpr double kPoisson = 0.2856;         // R/cp
inline constexpr double kEpsilon = 0.62198;        // ratio of the gas constants
inline constexpr double kLatentFactor = 2651.899;  // L/cp, K
inline constexpr double kDryGasConstant = 287.04;  // Rd, J/(kg K)
inline constexpr double kReferencePress = 1000;    // hPa
inline constexpr double kGravity = 9.80665;        // m/s²

/// Saturation vapour pressure, Goff & Gratch (1946).
///
/// temp     °C; below absolute zero counts as absolute zero
/// over     "Ice" takes the ice formula at and below 0 °C
/// returns  hPa; 6.1114 at 0 °C over either
double SatVapor(double temp, SaturationOver over = SaturationOver::Water);

/// What ThetaPoint gives for air saturated at (p, T).
struct PointThermo {
  double Theta = 0;          // potential temperature, K
  double VaporPressure = 0;  // hPa
  double MixingRatio = 0;    // kg/kg
  double ThetaE = 0;         // equivalent potential temperature, K; 0 = no value
};

/// Potential temperature, vapour pressure, mixing ratio and equivalent potential temperature for
/// saturation at a temperature. Pass the dew point for a level's actual vapour pressure and mixing
/// ratio, the temperature for its saturation values; the θe of an unsaturated level is LevelThetaE.
///
/// press    hPa, positive
/// temp     °C; never a missing value
/// returns  θe 0 where the latent-heat exponent exceeds 88
PointThermo ThetaPoint(double press, double temp, SaturationOver over = SaturationOver::Water);

/// Potential temperature alone, K; 0 without a pressure or at absolute zero.
double DryTheta(double press, double temp);

/// Temperature of the lifting condensation level, °C, from temperature and dew point in °C.
double Condense(double temp, double dewpt);

/// What LiftSat found. Failed is the "LiftSatError" outcome: the target lies outside what the
/// search can reach, and Temp is the nearer end.
struct LiftSatResult {
  double Temp = 0;  // °C
  bool Failed = false;
};

inline constexpr int kLiftSatMaxSteps = 2000;

/// Temperature of the saturated adiabat of a θe at a pressure: the T at which ThetaPoint gives the
/// target, better than 0.001 K wherever a solution exists. Sought between -120 °C and the warmest
/// T whose vapour pressure does not exceed 0.3 p, where θe rises with T.
///
/// trace    where not null, gets a line for each step: target, step and the temperatures before and
///          after it
LiftSatResult LiftSat(double thetaE, double press, SaturationOver over = SaturationOver::Water,
                      std::string* trace = nullptr);

/// Pressure of the lifting condensation level, hPa, on the dry adiabat through (press, temp).
double LclPressure(double press, double temp, double lclTemp);

/// θe of a level, K: that of its condensation point. The dew point must be present.
double LevelThetaE(double press, double temp, double dewpt,
                   SaturationOver over = SaturationOver::Water);

/// Wet-bulb temperature, °C, by Normand's rule; between dew point and temperature.
double WetBulb(double press, double temp, double dewpt,
               SaturationOver over = SaturationOver::Water);

/// Dew point, °C, of air with a mixing ratio in kg/kg > 0; kMissing for w <= 0.
double DewpointFromMixingRatio(double press, double mixingRatio,
                               SaturationOver over = SaturationOver::Water);

/// Virtual temperature, °C, from temperature in °C and mixing ratio in kg/kg.
double VirtualTemp(double temp, double mixingRatio);

/// Relative humidity, %, both vapour pressures over the same reference.
double RelativeHumidity(double temp, double dewpt, SaturationOver over = SaturationOver::Water);

/// Temperature, °C, of the dry adiabat of a potential temperature in K.
double DryAdiabatTemp(double theta, double press);

}  // namespace vexa::analysis
