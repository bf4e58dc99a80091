// The settings that analyses read: a change of one of them makes results stale, a change of any
// other setting does not. How a thing is computed stands here, how it is shown does not.
#pragma once

#include <array>
#include <optional>
#include <string_view>

#include "analysis/moist_air.h"
#include "analysis/storm_motion.h"

namespace vexa {

enum class CatType { Faa, Usaf };
enum class IceType { SmithFeddes, Usaf };
enum class LiftSource { LowerLayer, Surface, MostUnstable };
enum class CapeBase { Lfc, Ccl };
enum class TempBase { Dry, Virtual };
enum class DcapeMode { Best, Fast };

constexpr auto Words(CatType) {
  return std::to_array<std::string_view>({"FAA", "USAF"});
}
constexpr auto Words(IceType) {
  return std::to_array<std::string_view>({"Smith-Feddes", "USAF"});
}
constexpr auto Words(LiftSource) {
  return std::to_array<std::string_view>({"lower layer", "surface", "most unstable"});
}
constexpr auto Words(CapeBase) {
  return std::to_array<std::string_view>({"LFC", "CCL"});
}
constexpr auto Words(TempBase) {
  return std::to_array<std::string_view>({"dry", "virtual"});
}
constexpr auto Words(DcapeMode) {
  return std::to_array<std::string_view>({"best", "fast"});
}

struct AnalysisSettings : StormSettings {
  // Air and layers.
  SaturationOver Saturation = SaturationOver::Water;
  CatType Cat = CatType::Faa;
  bool ShearNormalization = true;
  IceType Ice = IceType::SmithFeddes;
  double ContrailRh = 60;  // %
  double ShearXLayerTopKm = 6;
  double DuctingThreshold = -157;  // N/km

  // Parcels.
  LiftSource Lpl = LiftSource::MostUnstable;
  bool MultiLift = false;
  double SearchDepth = 300;    // hPa
  double CclMeanLayer = 100;   // hPa
  double ElLowerLimit = 1050;  // hPa; 1050 = off
  CapeBase BaseLevel = CapeBase::Lfc;
  TempBase CapeTempBase = TempBase::Dry;
  int CapeInterval = 1;  // hPa
  bool MplDisplay = true;
  double CapeDepthKm = 3;
  DcapeMode Dcape = DcapeMode::Best;
  double EhiDepthKm = 3;
  double VgpDepthKm = 3;

  // Soaring.
  std::optional<double> SoarTm{};  // °C expected at the ground; empty: estimated
  double TriggerHgt = 3000;        // ft above ground
  int LiftEq = 1;                  // 1 index rule, 2 w*

  bool operator==(const AnalysisSettings&) const = default;
};

}  // namespace vexa
