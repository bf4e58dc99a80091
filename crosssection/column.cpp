#include "crosssection/column.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <set>
#include <utility>

#include "analysis/icing.h"
#include "core/great_circle.h"
#include "core/markers.h"
#include "core/numbers.h"
#include "core/station.h"
#include "core/units.h"

namespace vexa::crosssection {
namespace {

constexpr double kWaterStep = 150;  // m between two values of a cloud's water

using analysis::LevelPoint;
using analysis::Quantity;
using analysis::Sample;

double ValueOr(const analysis::LevelProfile& levels, double press, Quantity quantity) {
  const Sample sample = SampleAt(levels, press, quantity);
  return sample.Ok() ? sample.Value : kMissing;
}

// Liquid water from the ground to the top: 0 outside the clouds, with a step at their borders.
ProfileOf WaterOf(const Column& column, SaturationOver over) {
  ProfileOf water;
  const analysis::LevelProfile& levels = column.Levels;
  if (levels.Count() < 2) return water;
  const auto add = [&](const LevelPoint& at, double value) {
    water.push_back({at.Height, at.Press, value});
  };
  add({levels.Press(1), levels.Height(1)}, 0);
  for (const analysis::CloudDeck& deck : column.Layers.Clouds) {
    add(deck.Base, 0);
    const analysis::CloudWater cloud(deck, over);
    const double depth = deck.Top.Height - deck.Base.Height;
    const int steps = std::max(1, ToWhole(depth / kWaterStep));
    for (int i = 0; i <= steps; ++i) {
      const double height = deck.Base.Height + depth * i / steps;
      const double press = i == 0       ? deck.Base.Press
                           : i == steps ? deck.Top.Press
                                        : analysis::GetPRESS(levels, height);
      const double temp = ValueOr(levels, press, Quantity::Temp);
      if (IsMissing(temp)) continue;
      add({press, height}, cloud.At(press, height, temp));
    }
    add(deck.Top, 0);
  }
  add({levels.Press.Top(), levels.Height.Top()}, 0);
  return water;
}

bool IsEarlier(const Column& a, const Column& b) {
  return HoursBetween(a.Sounding.Time, b.Sounding.Time) > 0;
}

// Along the longest extent of the stations, on a plane about the first of them, which stands in the
// half where the line begins.
void OrderAlongAxis(std::vector<Column>& columns) {
  struct Place {
    double East = 0, North = 0;
  };
  const SoundingRecord& first = columns.front().Sounding;
  std::vector<Place> places;
  Place middle;
  for (const Column& column : columns) {
    const double lon = std::remainder(column.Sounding.LonSigned - first.LonSigned, 360.0);
    const double north = column.Sounding.LatSigned - first.LatSigned;
    places.push_back({lon * std::cos(Radians(column.Sounding.LatSigned)), north});
    middle.East += places.back().East / static_cast<double>(columns.size());
    middle.North += north / static_cast<double>(columns.size());
  }
  double xx = 0, xy = 0, yy = 0;
  for (const Place& place : places) {
    const double x = place.East - middle.East;
    const double y = place.North - middle.North;
    xx += x * x;
    xy += x * y;
    yy += y * y;
  }
  const double angle = std::atan2(2 * xy, xx - yy) / 2;
  const auto along = [&](const Place& place) {
    return (place.East - middle.East) * std::cos(angle) +
           (place.North - middle.North) * std::sin(angle);
  };
  const double turn = along(places.front()) > 0 ? -1 : 1;
  for (std::size_t i = 0; i < columns.size(); ++i) columns[i].X = turn * along(places[i]);
  std::ranges::stable_sort(columns, {}, &Column::X);
}

// A place of a column at an angle of the globe: what two columns share is told once.
bool SamePlace(const Column& a, const Column& b) {
  return a.Sounding.LatSigned == b.Sounding.LatSigned &&
         a.Sounding.LonSigned == b.Sounding.LonSigned;
}

double Mixed(double left, double right, double share) {
  return left + (right - left) * share;
}

double MixedOrMissing(double left, double right, double share) {
  return IsMissing(left) || IsMissing(right) ? kMissing : Mixed(left, right, share);
}

// Pressures of the levels of both, falling, without the grounds.
std::vector<double> LevelsOfBoth(const Column& left, const Column& right) {
  std::set<double, std::greater<>> all;
  for (const Column* column : {&left, &right}) {
    for (const double press : column->Levels.Press.Values()) all.insert(press);
    for (const double height : column->Sounding.WindHgt.Values()) {
      const double press = analysis::GetPRESS(column->Levels, height);
      if (HasHeight(press)) all.insert(Rounded(press, 1));
    }
  }
  return {all.begin(), all.end()};
}

std::optional<analysis::WindVector> WindAt(const Column& column, double press) {
  const Sample height = SampleAt(column.Levels, press, Quantity::Height);
  if (!height.Ok()) return std::nullopt;
  const analysis::WindSample wind = analysis::WindAtHeight(column.Sounding, height.Value);
  if (!wind.Ok()) return std::nullopt;
  return Components(wind.Value);
}

void AddMixedWind(const Column& left, const Column& right, double leftPress, double rightPress,
                  double share, SoundingRecord& into) {
  const auto one = WindAt(left, leftPress);
  const auto other = WindAt(right, rightPress);
  if (!one || !other) return;
  const analysis::Wind wind =
      analysis::FromComponents({Mixed(one->U, other->U, share), Mixed(one->V, other->V, share)});
  const double height = Mixed(ValueOr(left.Levels, leftPress, Quantity::Height),
                              ValueOr(right.Levels, rightPress, Quantity::Height), share);
  if (into.NumWindLevels() > 0 && height <= into.WindHgt.Top()) return;
  into.AddWind(Rounded(height, 1), Rounded(wind.Dir, 1), Rounded(wind.Spd, 2));
}

}  // namespace

Column ColumnOf(SoundingRecord sounding, std::string source, const AnalysisSettings& set,
                analysis::AdiabatTable& adiabats) {
  analysis::AnalysisResults results = analysis::Analyse(sounding, set, adiabats);
  Column column{.Sounding = std::move(sounding), .Source = std::move(source)};
  column.Levels = std::move(results.Levels);
  column.Layers = std::move(results.Layers);
  column.Tropopauses = std::move(results.Tropopauses);
  column.FreezingLevels = std::move(results.FreezingLevels);
  column.Water = WaterOf(column, set.Saturation);
  return column;
}

LinePlace PlaceOnLine(const GlobePlace& from, const GlobePlace& to, const GlobePlace& at) {
  const double length = DistanceKm(from.Lat, from.Lon, to.Lat, to.Lon);
  const double way = DistanceKm(from.Lat, from.Lon, at.Lat, at.Lon);
  const double turn = Radians(InitialBearing(from.Lat, from.Lon, at.Lat, at.Lon) -
                              InitialBearing(from.Lat, from.Lon, to.Lat, to.Lon));
  // Of the right-angled triangle on the globe with the way as its longest side.
  const double beside = std::asin(std::sin(way / kEarthKm) * std::sin(turn));
  const double along =
      kEarthKm * std::atan2(std::sin(way / kEarthKm) * std::cos(turn), std::cos(way / kEarthKm));
  if (along <= 0) return {0, way};
  if (along >= length) return {length, DistanceKm(to.Lat, to.Lon, at.Lat, at.Lon)};
  return {along, kEarthKm * std::fabs(beside)};
}

double Section::Bearing() const {
  if (Kind == SectionKind::Time || Columns.size() < 2) return 360;
  const SoundingRecord& first = Columns.front().Sounding;
  const SoundingRecord& last = Columns.back().Sounding;
  return InitialBearing(first.LatSigned, first.LonSigned, last.LatSigned, last.LonSigned);
}

void Arrange(Section& section) {
  std::vector<Column>& columns = section.Columns;
  if (columns.empty()) return;
  std::ranges::stable_sort(columns, {}, &Column::Order);
  if (section.Kind == SectionKind::Time) {
    std::ranges::stable_sort(columns, IsEarlier);
    const ObservationTime earliest = columns.front().Sounding.Time;
    for (Column& column : columns) column.X = HoursBetween(earliest, column.Sounding.Time);
  } else {
    OrderAlongAxis(columns);
    double way = 0;
    for (std::size_t i = 0; i < columns.size(); ++i) {
      const SoundingRecord& here = columns[i].Sounding;
      const SoundingRecord& before = columns[i == 0 ? 0 : i - 1].Sounding;
      way += SamePlace(columns[i], columns[i == 0 ? 0 : i - 1])
                 ? 0
                 : DistanceKm(before.LatSigned, before.LonSigned, here.LatSigned, here.LonSigned);
      columns[i].X = way;
    }
  }
  if (section.Direction == SectionDirection::Reverse) {
    section.Direction = SectionDirection::Forward;
    FlipTime(section);
  }
}

void FlipTime(Section& section) {
  std::ranges::reverse(section.Columns);
  const double end = section.Columns.empty() ? 0 : section.Columns.front().X;
  for (Column& column : section.Columns) column.X = end - column.X;
  section.Direction = section.Direction == SectionDirection::Forward ? SectionDirection::Reverse
                                                                     : SectionDirection::Forward;
}

std::string WhyNoSection(const Section& section) {
  const std::vector<Column>& columns = section.Columns;
  if (columns.size() < kLeastColumns) {
    return columns.empty() ? "There are no soundings for a cross-section."
                           : "One sounding alone makes no cross-section; it takes two at least.";
  }
  if (columns.size() > kMostColumns) {
    return Shortest(static_cast<int>(columns.size())) +
           " soundings are too many for a cross-section; it takes " +
           Shortest(static_cast<int>(kMostColumns)) + " at most, which a span of time can choose.";
  }
  for (const Column& column : columns) {
    if (section.Kind == SectionKind::Time && !column.Sounding.Time.Known()) {
      return "The time of " + column.Source + " is not known, which a section in time needs.";
    }
    if (section.Kind == SectionKind::Distance && !column.HasPosition()) {
      return "The position of " + column.Source +
             " is not known, which a section along a line needs.";
    }
  }
  return {};
}

std::vector<std::string> SectionRemarks(const Section& section) {
  std::vector<std::string> remarks;
  const std::vector<Column>& columns = section.Columns;
  const bool isTime = section.Kind == SectionKind::Time;
  std::string twice;
  bool otherPlace = false;
  for (std::size_t i = 1; i < columns.size(); ++i) {
    if (columns[i].X == columns[i - 1].X) twice = columns[i].Sounding.StationTitle;
    otherPlace =
        otherPlace || DistanceKm(columns[0].Sounding.LatSigned, columns[0].Sounding.LonSigned,
                                 columns[i].Sounding.LatSigned, columns[i].Sounding.LonSigned) > 50;
  }
  if (!twice.empty()) {
    remarks.push_back(
        isTime ? "Two soundings are of one time; the first of them counts: " + twice
               : "A station stands in the section twice; its first sounding counts: " + twice);
  }
  if (isTime && otherPlace) {
    remarks.emplace_back("The soundings of this section in time are not of one station.");
  }
  if (!isTime) {
    int least = 9999, most = 0;
    double hours = 0;
    for (const Column& column : columns) {
      const ObservationTime& time = column.Sounding.Time;
      if (!time.Known() || !columns.front().Sounding.Time.Known()) continue;
      least = std::min(least, time.Year);
      most = std::max(most, time.Year);
      hours = std::max(hours, std::fabs(HoursBetween(columns.front().Sounding.Time, time)));
    }
    if (least < most) {
      remarks.push_back("The soundings of this section are of several years, " + Shortest(least) +
                        " to " + Shortest(most) + ".");
    } else if (hours > 3) {
      remarks.push_back("The soundings of this section are up to " + Mask(hours, "###0") +
                        " hours apart.");
    }
  }
  return remarks;
}

SoundingRecord Interpolated(const Column& left, const Column& right, double share) {
  SoundingRecord made;
  ClearData(made);
  const SoundingRecord& from = left.Sounding;
  const SoundingRecord& to = right.Sounding;
  made.FileTag = from.FileTag;
  made.StationTitle = "Interpolated";
  made.DataFormat = "Interpolated";
  SetElevation(made, ToWhole(Mixed(from.ElevM, to.ElevM, share)));
  const double lonStep = std::remainder(to.LonSigned - from.LonSigned, 360.0);
  SetDecimalPosition(made, Mixed(from.LatSigned, to.LatSigned, share),
                     std::remainder(from.LonSigned + lonStep * share, 360.0));
  if (from.Time.Known() && to.Time.Known()) {
    made.Time = MinutesLater(from.Time, ToWhole(HoursBetween(from.Time, to.Time) * 60 * share));
  }
  const analysis::LevelProfile& one = left.Levels;
  const analysis::LevelProfile& other = right.Levels;
  if (one.Count() == 0 || other.Count() == 0) return made;
  const double ground = std::exp(Mixed(std::log(one.Press(1)), std::log(other.Press(1)), share));
  made.AddTemp(Rounded(ground, 1), Mixed(one.Temp(1), other.Temp(1), share),
               MixedOrMissing(one.Dewpt(1), other.Dewpt(1), share));
  AddMixedWind(left, right, one.Press(1), other.Press(1), share, made);
  for (const double press : LevelsOfBoth(left, right)) {
    if (press >= made.Press.Top()) continue;
    const double temp = MixedOrMissing(ValueOr(one, press, Quantity::Temp),
                                       ValueOr(other, press, Quantity::Temp), share);
    if (IsMissing(temp)) continue;
    made.AddTemp(press, temp,
                 MixedOrMissing(ValueOr(one, press, Quantity::Dewpt),
                                ValueOr(other, press, Quantity::Dewpt), share));
    AddMixedWind(left, right, press, press, share, made);
  }
  return made;
}

void InterpolateSoundings(Section& section, const AnalysisSettings& set,
                          analysis::AdiabatTable& adiabats) {
  std::vector<Column> columns;
  for (std::size_t i = 0; i < section.Columns.size(); ++i) {
    Column& here = section.Columns[i];
    if (i > 0 && here.X > section.Columns[i - 1].X) {
      const Column& before = columns.back();
      Column between = ColumnOf(Interpolated(before, here), "Interpolated", set, adiabats);
      between.IsInterpolated = true;
      between.X = (before.X + here.X) / 2;
      columns.push_back(std::move(between));
    }
    columns.push_back(std::move(here));
  }
  section.Columns = std::move(columns);
}

std::string TimeText(const ObservationTime& time) {
  if (!time.Known()) return {};
  return Mask(time.Month, "00") + "-" + Mask(time.Day, "00") + "/" + Mask(time.Hour, "00") +
         Mask(time.Minute, "00") + "Z";
}

std::string ShortName(const Column& column, SectionKind kind) {
  if (column.IsInterpolated) return "i";
  if (kind == SectionKind::Time) return TimeText(column.Sounding.Time);
  if (column.Sounding.WmoNumber > 0) return Mask(column.Sounding.WmoNumber, "00000");
  std::string name = ShortStationName(column.Sounding.StationTitle);
  return name.empty() ? CutTitle(column.Source, 14) : name;
}

}  // namespace vexa::crosssection
