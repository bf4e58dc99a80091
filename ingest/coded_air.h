// The temperatures and heights of one coded message side by side, from below, as those need them
// that compare them with each other.
#pragma once

#include <optional>
#include <vector>

#include "analysis/moist_air.h"
#include "ingest/coded_part.h"

namespace vexa::ingest {

inline constexpr double kAirDryLapse = 0.00977;  // °C/m
inline constexpr double kAirTropopause = 300;    // hPa, above which significant levels stand wider
inline constexpr double kAirInDecametres = 500;  // hPa, from which up heights are given so
inline constexpr double kAirLongestLine = 0.5;   // in ln p, of which levels say what lies between

/// On the straight line through (x0, y0) and (x1, y1).
double OnStraight(double at, double x0, double x1, double y0, double y1);

/// A temperature or a mandatory height of the message.
struct HeldValue {
  CodedLevel* Level = nullptr;
  bool IsHeight = false;
  double Press = 0, LogPress = 0;
  double Amount = 0;    // °C or m
  double VirtualK = 0;  // of a temperature
  bool IsOn = true;     // it is believed
};

struct HeldAir {
  static constexpr double kMetresPerKelvin = analysis::kDryGasConstant / analysis::kGravity;

  explicit HeldAir(std::vector<CodedLevel>& levels);

  std::vector<HeldValue> Temps{}, Heights{};  // from below

  /// The temperature that parts B and D give for a pressure, and the two levels that give it.
  struct Line {
    double Temp = 0;
    std::size_t Below = 0, Above = 0;  // of Temps
    double Length = 0;                 // in ln p
  };
  /// Empty outside of these parts' levels and where one is missing.
  std::optional<Line> LineAt(const HeldValue& value) const;
  /// Whether there is a line that is short enough to say what lies between its ends.
  bool HasLine(const HeldValue& value) const;

  /// The temperatures that are on, one at each pressure.
  std::vector<std::size_t> Profile() const;

  /// Whether there are temperatures below and above the layer between two heights.
  bool IsCovered(const HeldValue& lower, const HeldValue& upper,
                 const std::vector<std::size_t>& profile) const;

  /// What the air between two heights weighs by a profile's virtual temperatures.
  struct Layer {
    double Thickness = 0;             // m
    double Gap = 0;                   // the widest between temperatures, in ln p
    std::size_t First = 0, Last = 0;  // of the profile, the temperatures that count
  };
  /// weights  to be filled with the metres by which the layer grows with each kelvin of the
  ///          profile's temperatures; may be null
  Layer LayerOf(const HeldValue& lower, const HeldValue& upper,
                const std::vector<std::size_t>& profile,
                std::vector<double>* weights = nullptr) const;

  /// Metres between two temperatures.
  static double Depth(const HeldValue& below, const HeldValue& above);
};

}  // namespace vexa::ingest
