#include "analysis/clouds.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

#include "analysis/column_math.h"
#include "analysis/column_scan.h"
#include "analysis/exact.h"
#include "analysis/interpolate.h"
#include "analysis/moist_air.h"
#include "analysis/profile_walk.h"
#include "analysis/vapor_table.h"
#include "core/numbers.h"
#include "core/units.h"

namespace vexa::analysis {
namespace {

constexpr double kOvercast = 2;           // °C of depression at warm temperatures
constexpr double kBroken = 3;             // °C
constexpr double kScattered = 5;          // °C
constexpr double kWidening = 0.1;         // °C per °C below freezing …
constexpr double kWidestAt = 40;          // … down to this cold
constexpr double kJoinGap = 100;          // m
constexpr double kThinnest = 60;          // m
constexpr double kAboveTropopause = 500;  // m
constexpr double kBoundaryLayerFt = 3281;
constexpr double kHighCloudFt = 16500;
constexpr double kHighCloudTemp = -30;  // °C
constexpr double kLowCloudFt = 6500;
constexpr double kDeepRainCloudFt = 6500;
constexpr double kConvectiveBaseFt = 1500;  // from the condensation level
constexpr double kAnvilTemp = -20;          // °C
constexpr double kThunderDepthFt = 10000;

double Widening(double temp) {
  return kWidening * std::clamp(-temp, 0.0, kWidestAt);
}

CloudAmount AmountOf(double temp, double depression) {
  const double dry = Exact(depression - Widening(temp));
  if (dry <= kOvercast) return CloudAmount::Overcast;
  if (dry <= kBroken) return CloudAmount::Broken;
  return dry <= kScattered ? CloudAmount::Scattered : CloudAmount::None;
}

// How far the air is from scattered cloud, °C; negative inside, not a number without a dew point.
double Margin(const LevelProfile& levels, int level) {
  if (NotAvailable(levels.Dewpt(level))) return std::numeric_limits<double>::quiet_NaN();
  const double temp = levels.Temp(level);
  return Exact(temp - levels.Dewpt(level) - Widening(temp)) - kScattered;
}

// The first level from one on, from 0, that is not beyond scattered cloud by more than rounding
// makes, as most are, nor without a dew point.
VEXA_WIDE std::size_t FirstPerhapsMoist(const double* temps, const double* dewpts, std::size_t from,
                                        std::size_t end) {
  constexpr double kRounding = 0.01;  // °C
  return FirstThat(from, end, [=](std::size_t i) {
    const double dry = temps[i] - dewpts[i] - Widening(temps[i]);
    return !(dry > kScattered + kRounding) & IsThere(dewpts[i]);
  });
}

std::vector<CloudDeck> MoistRuns(const LevelProfile& levels, double highest) {
  std::vector<CloudDeck> decks;
  const std::vector<double>& temps = levels.Temp.Values();
  const std::vector<double>& dewpts = levels.Dewpt.Values();
  bool inside = false;
  const auto endAt = [&](const LevelPoint& top) {
    decks.back().Top = top;
    inside = false;
  };
  for (std::size_t at = 0; at < temps.size(); ++at) {
    if (!inside) at = FirstPerhapsMoist(temps.data(), dewpts.data(), at, temps.size());
    if (at == temps.size()) break;
    const int i = static_cast<int>(at) + 1;
    const double margin = Margin(levels, i);
    const LevelPoint here = PointOf(levels, i);
    // The border to the level below, or another place where that has no dew point.
    const auto borderOr = [&](const LevelPoint& other) {
      const double below = Margin(levels, std::max(i - 1, 1));
      const bool hasBelow = i > 1 && !std::isnan(below);
      return hasBelow ? Between(levels, i - 1, below / (below - margin)) : other;
    };
    const bool moist = margin <= 0 && here.Height <= highest;
    if (moist && !inside) {
      decks.push_back({.Base = borderOr(here)});
      inside = true;
    } else if (!moist && inside) {
      const LevelPoint last = PointOf(levels, i - 1);
      endAt(margin > 0 ? borderOr(last) : last);
    }
    if (inside) {
      decks.back().Top = here;
      decks.back().Amount =
          std::max(decks.back().Amount, AmountOf(here.Temp, here.Temp - levels.Dewpt(i)));
    }
  }
  return decks;
}

std::vector<CloudDeck> Joined(const std::vector<CloudDeck>& runs) {
  std::vector<CloudDeck> decks;
  for (const CloudDeck& run : runs) {
    if (!decks.empty() && run.Base.Height - decks.back().Top.Height < kJoinGap) {
      decks.back().Top = run.Top;
      decks.back().Amount = std::max(decks.back().Amount, run.Amount);
    } else {
      decks.push_back(run);
    }
  }
  std::erase_if(
      decks, [](const CloudDeck& deck) { return deck.Top.Height - deck.Base.Height < kThinnest; });
  return decks;
}

// °C per km of saturated air that rises from a point.
double SaturatedLapse(const LevelPoint& base, SaturationOver over) {
  constexpr double kStep = 10;  // hPa
  const double above = base.Press - kStep;
  if (!(above > 0)) return 0;
  const double temp = LiftSat(ThetaPoint(base.Press, base.Temp, over).ThetaE, above, over).Temp;
  const double depth = kDryGasConstant / kGravity * ((base.Temp + temp) / 2 + kKelvinOffset) *
                       std::log(base.Press / above);
  return (base.Temp - temp) / depth * 1000;
}

double LapseOf(const CloudDeck& deck, const LevelProfile& levels, double boundaryTop) {
  const bool fromGround = deck.Base.Height < boundaryTop && deck.Base.Height > levels.Height(1);
  const double lowHeight = fromGround ? levels.Height(1) : deck.Base.Height;
  const double lowTemp = fromGround ? levels.Temp(1) : deck.Base.Temp;
  const LevelPoint& high = fromGround ? deck.Base : deck.Top;
  return (lowTemp - high.Temp) / (high.Height - lowHeight) * 1000;
}

bool IsConvective(const CloudDeck& deck, const ParcelAscent& parcel) {
  return parcel.CapeTotal > 0 && parcel.Condensation.Exists() && parcel.FreeLevel.Exists() &&
         std::fabs(deck.Base.Height - parcel.Condensation.Height) <=
             MetersFromFeet(kConvectiveBaseFt) &&
         deck.Top.Height >= parcel.FreeLevel.Height;
}

CloudType TypeOf(const CloudDeck& deck, const LevelProfile& levels, const ParcelAscent& parcel,
                 double boundaryTop, SaturationOver over) {
  const double baseFt = FeetFromMeters(deck.Base.Height - levels.Height(1));
  const double depthFt = FeetFromMeters(deck.Top.Height - deck.Base.Height);
  if (baseFt >= kHighCloudFt || deck.Base.Temp <= kHighCloudTemp) return CloudType::CI;
  if (IsConvective(deck, parcel)) {
    const bool thunder = deck.Top.Temp <= kAnvilTemp && depthFt >= kThunderDepthFt;
    return thunder ? CloudType::CB : CloudType::CU;
  }
  const bool unstable = LapseOf(deck, levels, boundaryTop) >= SaturatedLapse(deck.Base, over);
  if (baseFt >= kLowCloudFt) return unstable ? CloudType::AC : CloudType::AS;
  if (depthFt >= kDeepRainCloudFt && deck.Amount == CloudAmount::Overcast) return CloudType::NS;
  return unstable ? CloudType::SC : CloudType::ST;
}

constexpr std::string_view kTypeNames[] = {"",   "ST", "SC", "CU", "NS", "AC",
                                           "AS", "CS", "CI", "CC", "CB"};

CloudType TypeNamed(std::string_view name) {
  const auto* found = std::ranges::find(kTypeNames, Trim(name));
  return found == std::end(kTypeNames) ? CloudType::None
                                       : static_cast<CloudType>(found - kTypeNames);
}

// The user's own table; rows without a readable top or of no depth are passed over.
std::vector<CloudDeck> DrawnUp(const SoundingRecord& sounding, const LevelProfile& levels) {
  std::vector<CloudDeck> decks;
  ProfileWalk walk(levels);
  std::vector<CloudLayer> rows = sounding.Clouds.Values();
  std::ranges::sort(rows, {}, &CloudLayer::Base);
  const auto height = [&](double hundredsFt) {
    return levels.Height(1) + MetersFromFeet(100 * hundredsFt);
  };
  for (const CloudLayer& row : rows) {
    const std::optional<double> top = ParseNumber(row.Top);
    if (!top || *top <= row.Base || row.Code < 1 || row.Code > 3) continue;
    ProfileWalk topWalk(levels);
    decks.push_back({walk.At(height(row.Base)).Point(), topWalk.At(height(*top)).Point(),
                     static_cast<CloudAmount>(row.Code), TypeNamed(row.Type)});
  }
  return decks;
}

}  // namespace

std::string_view Text(CloudAmount amount) {
  constexpr std::string_view kWords[] = {"", " SCT ", " BKN ", " OVC "};
  return kWords[static_cast<std::size_t>(amount)];
}

std::string_view Text(CloudType type) {
  return kTypeNames[static_cast<std::size_t>(type)];
}

CloudFamily FamilyOf(CloudType type) {
  switch (type) {
    case CloudType::ST:
    case CloudType::NS:
    case CloudType::AS:
      return CloudFamily::Stratiform;
    case CloudType::SC:
    case CloudType::CU:
    case CloudType::AC:
    case CloudType::CB:
      return CloudFamily::Cumuliform;
    case CloudType::CS:
    case CloudType::CI:
    case CloudType::CC:
      return CloudFamily::Cirriform;
    case CloudType::None:
      break;
  }
  return CloudFamily::None;
}

double BoundaryLayerTop(const SoundingRecord& sounding) {
  const double given = sounding.ExtraRecordsPresent ? sounding.ExtraRecord1[0] : 0;
  return MetersFromFeet(given > 0 ? given : sounding.ElevFt + kBoundaryLayerFt);
}

std::vector<CloudDeck> FindClouds(const SoundingRecord& sounding, const AnalysisResults& results,
                                  const AnalysisSettings& options) {
  const LevelProfile& levels = results.Levels;
  if (levels.Count() < 2 || Trim(sounding.CloudOption) == "NO") return {};
  if (Trim(sounding.CloudMode) != "AUTO" && !sounding.Clouds.Empty()) {
    return DrawnUp(sounding, levels);
  }
  const double highest = results.Tropopauses.empty()
                             ? levels.Height.Top()
                             : results.Tropopauses.front().Height + kAboveTropopause;
  std::vector<CloudDeck> decks = Joined(MoistRuns(levels, highest));
  const double boundaryTop = BoundaryLayerTop(sounding);
  for (CloudDeck& deck : decks) {
    deck.Type = TypeOf(deck, levels, results.Chosen(), boundaryTop, options.Saturation);
  }
  return decks;
}

Levels<CloudLayer> CloudTable(const std::vector<CloudDeck>& clouds, double ground) {
  const auto hundreds = [ground](double height) {
    return Rounded(FeetFromMeters(height - ground) / 100, 0);
  };
  Levels<CloudLayer> table;
  for (const CloudDeck& deck : clouds) {
    table.Add({std::string(Text(deck.Type)), hundreds(deck.Base.Height),
               Mask(hundreds(deck.Top.Height), "000"), static_cast<int>(deck.Amount)});
  }
  return table;
}

double LiftedCloud::Water(double press) const {
  constexpr double kRoundingShare = 1e-9;  // of a pressure that was found from a height
  if (!(press < basePress_ * (1 - kRoundingShare))) return 0;
  const double temp = LiftSat(base_.ThetaE, press, over_).Temp;
  const double condensed = base_.MixingRatio - TabledMixingRatio(press, temp, over_);
  return 1000 * condensed * 100 * press / (kDryGasConstant * (temp + kKelvinOffset));
}

double EntrainmentFactor(CloudFamily family, double heightKm) {
  const double h = std::max(heightKm, 0.0);
  const auto smallerRoot = [h](double a, double b, double c) {
    return (b - std::sqrt(std::max(b * b - 4 * a * (c - h), 0.0))) / (2 * a);
  };
  if (family == CloudFamily::Stratiform) {
    if (h <= 0.032) return 1 - 11 * h;
    if (h <= 0.177) return 0.6915 - 1.4 * h;
    if (h <= 0.726) return 0.505 - 0.356 * h;
    return h <= 1.5 ? 0.2912 - 0.0608 * h : 0.20;
  }
  if (family == CloudFamily::Cumuliform) {
    if (h < 0.3) return -1.667 * (h - 0.6);
    if (h < 1.0) return smallerRoot(8.4897, 13.2191, 4.7295);
    return h < 2.9 ? smallerRoot(10.357, 28.2416, 8.8846) : 0.26;
  }
  return 0;
}

std::vector<AirLayer> FindLightning(const LevelProfile& levels,
                                    const std::vector<CloudDeck>& clouds) {
  std::vector<ClassedPoint> points;
  ProfileWalk walk(levels);
  for (const CloudDeck& deck : clouds) {
    if (deck.Base.Temp < kAnvilTemp && deck.Top.Temp < kAnvilTemp) continue;
    const bool thunder = deck.Type == CloudType::CB;
    const bool dense = deck.Amount >= CloudAmount::Broken;
    const std::vector<double> heights = SampleHeights(levels, deck.Base.Height, deck.Top.Height);
    points.reserve(points.size() + heights.size() + 1);
    for (const double height : heights) {
      const AirPoint air = walk.At(height);
      const double fromFreezing = std::fabs(air.Temp);
      Intensity level = Intensity::None;
      if (thunder && (fromFreezing <= 5 || (air.Temp <= 0 && air.Temp >= kAnvilTemp))) {
        level = Intensity::Severe;
      } else if (dense && fromFreezing <= 5) {
        level = Intensity::Moderate;
      } else if ((dense && fromFreezing <= 8) || fromFreezing <= 5) {
        level = Intensity::Light;
      }
      points.push_back({air, level, Text(level)});
    }
    if (!points.empty()) points.push_back({points.back().At, Intensity::None});
  }
  return JoinRuns(points);
}

}  // namespace vexa::analysis
