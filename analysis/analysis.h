// Everything that is computed from one sounding under one set of options, in one value: displays
// and reports read it and compute nothing themselves.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/analysis_settings.h"
#include "analysis/index_value.h"
#include "analysis/layer_results.h"
#include "analysis/level_profile.h"
#include "analysis/storm_motion.h"
#include "core/interaction.h"
#include "core/markers.h"
#include "core/sounding_record.h"

namespace vexa::analysis {

class AdiabatTable;

enum class LiftType { Surface, MeanLayer, MostUnstable };
inline constexpr int kLiftTypes = 3;

/// "Surface Base", "Mean Layer", "MostUnstable".
std::string_view Text(LiftType type);

/// Forced lift from the source level, or free convection after heating the surface.
enum class LiftMode { Lfc, Ccl };

/// Where a parcel starts. Without a source level Press is kNone.
struct ParcelStart {
  double Press = kNone;     // hPa
  double Temp = kMissing;   // °C
  double Dewpt = kMissing;  // °C
  bool Exists() const { return Press != kNone; }
  bool operator==(const ParcelStart&) const = default;
};

/// One parcel's ascent: its levels, its energies and the path that the diagram draws and shades,
/// so that the area and the number always agree.
struct ParcelAscent {
  ParcelStart Start{};
  LevelPoint Condensation{};   // LCL, or CCL in the free-convection mode
  LevelPoint FreeLevel{};      // LFC, or CCL
  LevelPoint Equilibrium{};    // EL
  LevelPoint MaximumParcel{};  // MPL

  double CapeTotal = 0;          // J/kg, positive increments above the free level
  double CapePlusOnly = 0;       // J/kg, all positive increments of the path
  double CinTotal = 0;           // J/kg, <= 0
  double CapeDepth = 0;          // J/kg, "CAPE 0-x km"
  double CapeHail = 0;           // J/kg, between the hail marks
  double HailBasePress = kNone;  // hPa where the parcel passes -10 °C
  double HailTopPress = kNone;   // hPa where it passes -30 °C

  // The sounding ends while the parcel is still warmer: its EL lies above, and the energies that
  // would go on are at least what they say.
  bool IsCut = false;
  bool IsDepthCut = false;  // the top of the 0-x km layer lies above too
  bool IsBound(double ParcelAscent::*energy) const;
  // The sounding ends before the parcel is free, and above its end it could be: there is no answer.
  bool IsOpen = false;
  bool IsOpenDepth = false;  // not within the 0-x km layer either
  bool HasAnswer(double ParcelAscent::*energy) const;

  // The path: step i stands at FirstPress - i·Step hPa, from the start to the highest level of
  // the sounding; temperatures are virtual when the temperature base is.
  int FirstPress = 0;
  int Step = 1;
  std::vector<double> ParcelTemps{};  // °C
  std::vector<double> EnvTemps{};     // °C, kMissing where the sounding has no value
  std::vector<float> Increments{};    // J/kg, up to the equilibrium level; first is 0
};

/// Why a parcel has no CAPE: kNoCape where it is nowhere free and all its totals are 0 for that,
/// kOpenCape where the sounding ends before that is known; empty where it has some.
inline constexpr std::string_view kNoCape = "NoCAPE";
inline constexpr std::string_view kOpenCape = "the sounding ends below a possible LFC";
std::string_view CapeMarker(const ParcelAscent& ascent);

/// An energy of a parcel as it is shown: "2463", ">2463" where the sounding ends too early, "--"
/// without a parcel and where there is no answer.
std::string EnergyText(const ParcelAscent& ascent, double ParcelAscent::*energy);

/// The pressure of its EL: "251", "above 251" where that is only the sounding's end, "--" for none.
std::string ElText(const ParcelAscent& ascent, std::string_view mask = "###0");

/// The surface in altimetry's terms.
struct SurfaceState {
  bool Exists = false;
  double Press = kNone;             // hPa
  double Qnh = kNone;               // hPa; none for an unknown elevation
  double PressureAltitude = kNone;  // m
  double DensityAltitude = kNone;   // m
  double IsaDeviation = kMissing;   // °C, surface temperature minus the standard one
  bool Estimated = false;           // elevation unknown or surface dew point missing
};

struct AnalysisResults {
  LevelProfile Levels{};
  WindProfile Winds{};
  SurfaceState Surface{};

  std::array<ParcelAscent, kLiftTypes> Forced{};  // "LFC" set, by LiftType
  ParcelAscent Convective{};                      // "CCL" set, whatever the lift type
  LiftType ChosenLift = LiftType::MostUnstable;   // by the LPL option
  LiftMode Mode = LiftMode::Lfc;                  // by the CAPE base level option
  double CapeDepthTopPress = kNotReached;         // hPa of x km above ground

  LevelPoint ConvectiveCondensation{};     // CCL
  double ConvectiveTemp = kMissing;        // °C
  double MeanLayerMixingRatio = kMissing;  // kg/kg

  std::vector<Inversion> Inversions{};
  std::vector<LevelPoint> FreezingLevels{};
  std::vector<LevelPoint> Tropopauses{};
  Downdraft Descent{};
  LayerResults Layers{};
  WinterResults Winter{};
  SoaringResults Soaring{};

  StormMotionResults Storm{};
  EffectiveLayer Effective{};
  InflowWinds Inflow{};
  std::vector<IndexValue> Indices{};  // in the order of the index table

  const ParcelAscent& Ascent(LiftType type) const {
    return Mode == LiftMode::Ccl ? Convective : Forced[static_cast<std::size_t>(type)];
  }
  const ParcelAscent& Chosen() const { return Ascent(ChosenLift); }
};

/// Analyses a sounding that has been put in order. Soundings with fewer than two temperature
/// levels give what they can: markers, never NaN.
AnalysisResults Analyse(const SoundingRecord& sounding, const AnalysisSettings& options,
                        Progress progress = {});

/// The same with a table of saturated adiabats that is kept from sounding to sounding: for whoever
/// analyses many of them. The results are the same, whatever the table was used for before.
AnalysisResults Analyse(const SoundingRecord& sounding, const AnalysisSettings& options,
                        AdiabatTable& table, Progress progress = {});

/// Computes anew what rests on the storm's motion: the movers and the indices. The rest of the
/// results stays as it was computed for the same sounding.
void FollowStormMotion(const SoundingRecord& sounding, const AnalysisSettings& options,
                       AnalysisResults& results);

}  // namespace vexa::analysis
