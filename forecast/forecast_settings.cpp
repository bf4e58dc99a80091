#include "forecast/forecast_settings.h"

#include <span>
#include <string>

#include "config/row_builder.h"
#include "config/system_file.h"
#include "core/numbers.h"

namespace vexa::forecast {
namespace {

constexpr double kMostChange = 20;  // °C per hour at the ground: more is a slip of the keys

constexpr auto kSame = Record::Same;
constexpr Range kDepths{0, kMostDepth};

using Set = ForecastSettings;

constexpr SettingRow<Set> kForecastRows[] = {
    Row<At<&Set::Mode>>("mode"),
    Row<At<&Set::UsesMain>, kYes>("main layer"),
    Row<At<&Set::MainDepth>, kTrue, kDepths>("main depth", kSame),
    Row<At<&Set::UsesBoundary>, kYes>("boundary layer"),
    Row<At<&Set::BoundaryDepth>, kTrue, kDepths>("boundary depth", kSame),
    Row<At<&Set::RadiusKm>, kTrue, Range{kLeastRadius, kMostRadius}>("search radius"),
    Row<At<&Set::Percentage>, kTrue, Range{kLeastPercentage, kMostPercentage}>("percentage", kSame),
    Row<At<&Set::SurfaceChange>, kTrue, Range{-kMostChange, kMostChange}>("surface change"),
    Row<At<&Set::SurfaceSpread>>("spread", kSame),
    Row<At<&Set::SearchFolder>>("search folder"),
    Row<At<&Set::AutoSave>, kYes>("auto-save"),
    Row<At<&Set::SaveFolder>>("save folder", kSame),
};

constexpr std::string_view kRangeTitle = "Data range error";

Box RangeBox(std::string_view text) {
  return {.Title = std::string(kRangeTitle), .Text = std::string(text)};
}

bool TakeWithin(std::string_view text, double least, double most, double& into) {
  const std::optional<double> value = ParseNumber(text);
  if (!value || *value < least || *value > most) return false;
  into = *value;
  return true;
}

}  // namespace

std::string ForecastSettingsFile() {
  return std::string(kSystemTag) + ".FCS";
}

std::string Write(const ForecastSettings& settings) {
  SystemWriter writer;
  writer.Write(settings, MarkedRecords(std::span<const SettingRow<Set>>(kForecastRows)));
  return writer.Take();
}

ForecastSettings ReadForecastSettings(const std::string& text) {
  ForecastSettings settings;
  SystemReader(std::string(), text)
      .Read(settings, MarkedRecords(std::span<const SettingRow<Set>>(kForecastRows)));
  return settings;
}

std::optional<Box> EnterDepth(std::string_view text, double& into) {
  if (TakeWithin(text, 0, kMostDepth, into)) return std::nullopt;
  return RangeBox("Range is 0 to 5000 meters, AGL.");
}

std::optional<Box> EnterRadius(std::string_view text, double& into) {
  if (TakeWithin(text, kLeastRadius, kMostRadius, into)) return std::nullopt;
  return RangeBox("Range is 20 to 2000 km.");
}

std::optional<Box> EnterPercentage(std::string_view text, int& into) {
  const std::optional<int> value = ParseWhole(text);
  if (!value) return RangeBox("Only integer values are allowed.");
  if (*value < kLeastPercentage || *value > kMostPercentage) {
    return RangeBox("Range is 1% to 100%");
  }
  into = *value;
  return std::nullopt;
}

std::optional<Box> EnterSurfaceChange(std::string_view text, double& into) {
  if (TakeWithin(text, -kMostChange, kMostChange, into)) return std::nullopt;
  return Box{.Title = "Bad", .Text = "Invalid data"};
}

}  // namespace vexa::forecast
