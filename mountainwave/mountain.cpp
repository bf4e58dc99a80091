#include "mountainwave/mountain.h"

#include "core/shown_values.h"
#include "core/units.h"

namespace vexa::mountainwave {
namespace {

bool Holds(const EntryRange& range, double value) {
  return value >= range.Least && value <= range.Most;  // false for what is no number
}

}  // namespace

Site MountainsOf(const SoundingRecord& sounding) {
  const auto& first = sounding.ExtraRecord1;
  const auto& second = sounding.ExtraRecord2;
  if (!sounding.ExtraRecordsPresent || !(first[0] > 0) || !(first[1] > 0)) return std::nullopt;
  MountainParameters mountains{.First = {first[0], first[1], first[2]}};
  if (sounding.NumExtraRecords == 2 && second[0] > 0 && second[1] > 0 && second[2] > 0) {
    mountains.DistanceNm = second[0];
    mountains.Second = {second[1], second[2], second[3]};
  }
  return mountains;
}

void StoreMountains(SoundingRecord& sounding, const Site& site) {
  sounding.ExtraRecordsPresent = site.has_value();
  sounding.NumExtraRecords = !site ? 0 : site->HasSecond() ? 2 : 1;
  const MountainParameters mountains = site.value_or(MountainParameters{});
  const auto& [first, distance, second] = mountains;
  sounding.ExtraRecord1 = {first.HeightFt, first.HalfWidthNm, first.Axis};
  sounding.ExtraRecord2 = {distance, second.HeightFt, second.HalfWidthNm, second.Axis};
}

std::string_view WhyNoMountains(const MountainParameters& mountains) {
  const auto isRidge = [](const Ridge& ridge) {
    return ridge.HeightFt > 0 && ridge.HalfWidthNm > 0 && ridge.Axis >= 0 && ridge.Axis <= 360;
  };
  if (!isRidge(mountains.First))
    return "mountain #1 has no height or half-width, or its axis is not 0 to 360";
  if (mountains.DistanceNm < 0) return "the distance between the ridges is negative";
  if (mountains.HasSecond() && !isRidge(mountains.Second)) {
    return "mountain #2 has no height or half-width, or its axis is not 0 to 360";
  }
  return {};
}

EntryRange HeightRange(LengthUnits units) {
  return units == LengthUnits::Feet ? EntryRange{100, 32000} : EntryRange{35, 9700};
}

EntryRange HalfWidthRange(WaveDistance units) {
  switch (units) {
    case WaveDistance::NauticalMiles:
      return {0.1, 50};
    case WaveDistance::Kilometers:
      return {0.2, 90};
    case WaveDistance::Miles:
      return {0.2, 55};
  }
  return {};
}

EntryRange AxisRange() {
  return {0, 360};
}

EntryRange DistanceRange(WaveDistance units) {
  switch (units) {
    case WaveDistance::NauticalMiles:
      return {1, 500};
    case WaveDistance::Kilometers:
      return {2, 900};
    case WaveDistance::Miles:
      return {2, 550};
  }
  return {};
}

std::vector<std::string> HeightPrompt(LengthUnits units) {
  if (units == LengthUnits::Feet) {
    return {"Enter mountain height in Feet, MSL.", "Height range:  100 - 32,000 feet."};
  }
  return {"Enter mountain height in Meters, MSL.", "Height range:  35 - 9,700 meters."};
}

std::vector<std::string> HalfWidthPrompt(WaveDistance units) {
  std::vector<std::string> lines = {"Enter windward half-width at mid-elevation of mountain."};
  switch (units) {
    case WaveDistance::NauticalMiles:
      lines.emplace_back("Half-width range:  0.1 - 50.0 nm.");
      break;
    case WaveDistance::Miles:
      lines.emplace_back("Half-width range:  0.2 - 55.0 mi.");
      break;
    case WaveDistance::Kilometers:
      lines.emplace_back("Half-width range:  0.2 - 90.0 km.");
      break;
  }
  return lines;
}

std::vector<std::string> AxisPrompt() {
  return {"Enter the orientation (angle) of the mountain axis (ridge).",
          "Enter a zero (0) angle to disregard axis orientation."};
}

std::vector<std::string> DistancePrompt(WaveDistance units) {
  std::vector<std::string> lines = {"Enter the distance between mountain ridges."};
  switch (units) {
    case WaveDistance::NauticalMiles:
      lines.emplace_back("Distance range:  1 - 500 nm.");
      break;
    case WaveDistance::Miles:
      lines.emplace_back("Distance range:  2 - 550 mi.");
      break;
    case WaveDistance::Kilometers:
      lines.emplace_back("Distance range:  2 - 900 km.");
      break;
  }
  return lines;
}

std::string_view OutOfRange(const MountainEntry& entry, const WaveUnits& units) {
  const EntryRange height = HeightRange(units.Height);
  const EntryRange halfWidth = HalfWidthRange(units.Distance);
  if (!Holds(height, entry.Height)) return "Mountain #1 - Height";
  if (!Holds(halfWidth, entry.HalfWidth)) return "Mountain #1 - Half-Width";
  if (!Holds(AxisRange(), entry.Axis)) return "Mountain #1 - Axis";
  if (!entry.HasSecond) return "";
  if (!Holds(height, entry.Height2)) return "Mountain #2 - Height";
  if (!Holds(halfWidth, entry.HalfWidth2)) return "Mountain #2 - Half-Width";
  if (!Holds(AxisRange(), entry.Axis2)) return "Mountain #2 - Axis";
  if (!Holds(DistanceRange(units.Distance), entry.Distance)) return "Mountain #1 - #2 Distance";
  return "";
}

MountainParameters FromEntry(const MountainEntry& entry, const WaveUnits& units) {
  MountainParameters mountains{.First = {ToFeet(entry.Height, units.Height),
                                         ToNauticalMiles(entry.HalfWidth, units.Distance),
                                         entry.Axis}};
  if (entry.HasSecond) {
    mountains.DistanceNm = ToNauticalMiles(entry.Distance, units.Distance);
    mountains.Second = {ToFeet(entry.Height2, units.Height),
                        ToNauticalMiles(entry.HalfWidth2, units.Distance), entry.Axis2};
  }
  return mountains;
}

MountainEntry ToEntry(const MountainParameters& mountains, const WaveUnits& units) {
  const auto height = [&](double feet) { return ShownIn(MetersFromFeet(feet), units.Height); };
  const auto distance = [&](double nm) { return FromNauticalMiles(nm, units.Distance); };
  return {.Height = height(mountains.First.HeightFt),
          .HalfWidth = distance(mountains.First.HalfWidthNm),
          .Axis = mountains.First.Axis,
          .HasSecond = mountains.HasSecond(),
          .Distance = distance(mountains.DistanceNm),
          .Height2 = height(mountains.Second.HeightFt),
          .HalfWidth2 = distance(mountains.Second.HalfWidthNm),
          .Axis2 = mountains.Second.Axis};
}

bool IsBelowStation(double heightFt, const SoundingRecord& sounding) {
  return !(heightFt > sounding.ElevFt);
}

}  // namespace vexa::mountainwave
