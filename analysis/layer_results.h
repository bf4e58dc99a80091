// What the layer analyses find: levels and layers of a sounding, each with its class, as displays,
// listings and exports read them. Heights are metres above mean sea level.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/interpolate.h"
#include "core/markers.h"

namespace vexa::analysis {

/// A level that an analysis found: pressure, height and temperature; kNone where it found none.
struct LevelPoint {
  double Press = kNone;    // hPa
  double Height = kNone;   // m above mean sea level
  double Temp = kMissing;  // °C
  bool Exists() const { return Press != kNone; }
};

inline LevelPoint PointOf(const LevelProfile& levels, int level) {
  return {levels.Press(level), levels.Height(level), levels.Temp(level)};
}

enum class InversionKind { Radiation, Frontal, Subsidence, Tropopause, Unknown };

/// "Radiation Inv.", "Frontal Inv.", "Subsidence Inv.", "Trop Inv.", "Unknown Inv.".
std::string_view Text(InversionKind kind);

struct Inversion {
  InversionKind Kind = InversionKind::Unknown;
  LevelPoint Base{};
  LevelPoint Top{};
};

/// Classes of icing, turbulence and wind shear in rising order.
enum class Intensity {
  None,
  Trace,
  Light,
  LightModerate,
  Moderate,
  ModerateSevere,
  Severe,
  SevereExtreme,
  Extreme
};

/// "none", "TRC", "LGT", "L-M", "MDT", "M-S", "SVR", "S-X", "XTR".
std::string_view Text(Intensity intensity);

/// A layer of one class.
struct AirLayer {
  LevelPoint Base{};
  LevelPoint Top{};
  Intensity Class = Intensity::None;
  std::string_view Word{};  // as listings write it: "MDT CLEAR", "STR", "CP"
  double Value = kMissing;  // the largest of what makes the class; unit by the analysis
};

/// The class at a height; none between the layers.
Intensity ClassAt(const std::vector<AirLayer>& layers, double height);

/// The well-mixed layer above the ground.
struct MixedLayer {
  LevelPoint Top{};
  double Depth = 0;                // m
  double Theta = kMissing;         // K, mean
  double MixingRatio = kMissing;   // kg/kg, mean; kMissing without dew points
  std::optional<WindVector> Mean;  // knots
};

enum class CloudAmount { None, Scattered, Broken, Overcast };

/// " SCT ", " BKN ", " OVC ".
std::string_view Text(CloudAmount amount);

/// Types with their numbers in the automated cloud analyses of the US Air Force.
enum class CloudType { None, ST, SC, CU, NS, AC, AS, CS, CI, CC, CB };

/// "ST" … "CB".
std::string_view Text(CloudType type);

enum class CloudFamily { None, Stratiform, Cumuliform, Cirriform };
CloudFamily FamilyOf(CloudType type);

struct CloudDeck {
  LevelPoint Base{};
  LevelPoint Top{};
  CloudAmount Amount = CloudAmount::None;
  CloudType Type = CloudType::None;
};

/// A layer that traps radio waves, or bends them more than usual.
struct Duct {
  LevelPoint Base{};       // of the trapping layer
  LevelPoint Top{};        // of the duct and of the trapping layer
  double DuctBase = 0;     // m, where the modified refractivity of the top is met below
  double Gradient = 0;     // N per km, the steepest
  bool OnSurface = false;  // the duct reaches the ground
};

/// Values of each level that listings and exports show beside the levels themselves; kMissing where
/// a level has none.
struct LevelListing {
  Levels<double> Density{};       // kg/m³
  Levels<double> DValue{};        // m, height minus that of the standard atmosphere
  Levels<double> Refractivity{};  // N units
  Levels<double> Modified{};      // M units
  Levels<double> Potential{};     // K units, potential refractivity
  Levels<double> Gradient{};      // N per km from the level below
  Levels<double> WaterBelow{};    // mm of precipitable water from the ground to the level
};

struct LayerResults {
  double LapseRate3km = kNone;  // C/km, from the ground to 3 km above it
  std::optional<MixedLayer> Mixed{};
  std::vector<CloudDeck> Clouds{};
  std::vector<AirLayer> Icing{};           // value: g/m³ of water (Smith-Feddes)
  std::vector<AirLayer> Turbulence{};      // value: kt/1000 ft
  std::vector<AirLayer> HighTurbulence{};  // value: kt/1000 ft
  std::vector<AirLayer> LowShear{};        // value: kt/100 ft
  std::vector<AirLayer> Contrails{};       // value: °C below the threshold
  std::vector<AirLayer> Lightning{};
  std::vector<AirLayer> CarbIcing{};
  std::vector<Duct> Ducts{};
  LevelListing Listing{};
};

/// The air that a downdraft brings to the ground.
struct Downdraft {
  double Energy = kNone;          // J/kg, >= 0
  LevelPoint Source{};            // where it begins
  double SurfaceTemp = kMissing;  // °C with which it arrives
};

/// Levels next to each other whose air, lifted, has CAPE enough and little CIN: what feeds a storm.
struct EffectiveLayer {
  LevelPoint Base{};
  LevelPoint Top{};
  bool Exists() const { return Base.Exists(); }
  bool HasDepth() const { return Exists() && Top.Height > Base.Height; }
};

/// Winds of the effective layer, of the cloud and of the air about it: kt, components point where
/// the wind comes from. Empty or kNone where the winds do not reach through the layer.
struct InflowWinds {
  double EffectiveHelicity = kNone;            // m²/s², relative to the chosen mover
  std::optional<WindVector> EffectiveMean{};   // weighted by pressure, as CloudMean is
  std::optional<WindVector> EffectiveShear{};  // half way up to the EL minus the layer's base
  std::optional<WindVector> CloudMean{};       // most unstable parcel's LCL to EL
  std::optional<WindVector> DeepMean{};        // 850-300 hPa
  std::optional<WindVector> LowMean{};         // 0-1.5 km
};

/// What falls, and what decides it.
struct WinterResults {
  std::string_view Precipitation{};   // "SNOW", "ICE PELLETS", …; empty when nothing falls
  double WarmArea = 0;                // J/kg, above 0 °C aloft
  double ColdArea = 0;                // J/kg, below 0 °C next to the ground
  double SurfaceWarmArea = 0;         // J/kg, above 0 °C at the ground
  double SnowRatio = kNone;           // snow to liquid
  double SnowSquall = kNone;          // parameter, 1 and more is favourable
  double Thickness1000to500 = kNone;  // m
  double Thickness1000to850 = kNone;
  double Thickness850to700 = kNone;
  struct DendriticLayer {
    LevelPoint Base{};
    LevelPoint Top{};
    double MeanHumidity = kMissing;  // %
  };
  std::vector<DendriticLayer> Dendritic{};
};

/// Thermals of the day.
struct SoaringResults {
  double MaxTemp = kMissing;      // °C at the ground that the analysis takes for the day
  double TriggerTemp = kMissing;  // °C that makes thermals reach the trigger height
  LevelPoint ThermalTop{};        // where the thermal index is 0, or the cloud base
  LevelPoint PilotLevel{};        // the highest below it where the thermal index is -3
  LevelPoint CloudBase{};         // none: blue thermals
  double Lift = kNone;            // ft/min (equation 1) or m/s (equation 2)
  int LiftEquation = 1;
  std::string_view Words{};       // "poor", "fair", "good", "excellent"
  Levels<double> ThermalIndex{};  // °C at each level; negative lifts
};

}  // namespace vexa::analysis
