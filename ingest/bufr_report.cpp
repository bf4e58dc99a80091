#include "ingest/bufr_report.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <initializer_list>
#include <iterator>
#include <string>
#include <utility>

#include "core/numbers.h"
#include "core/units.h"

namespace vexa::ingest {
namespace {

// Table B, 0 12 101 written 12101.
constexpr int kBlock = 1001, kStation = 1002, kShip = 1011;
constexpr int kWigosSeries = 1125, kWigosIssuer = 1126, kWigosLocal = 1128;
constexpr int kYear = 4001, kMonth = 4002, kDay = 4003, kHour = 4004, kMinute = 4005;
constexpr int kLat = 5001, kLatCoarse = 5002, kLon = 6001, kLonCoarse = 6002;
constexpr int kStationHeight = 7001, kHeight = 7007, kGround = 7030, kBarometer = 7031;
constexpr int kSinceRelease = 4086, kPressure = 7004, kGeopotentialHeight = 7009;
constexpr int kSignificance = 8001, kExtendedSignificance = 8042;

constexpr double kStandardGravity = 9.80665;  // m/s², of the geopotential metre
constexpr double kKelvinOfTables = 273.15;    // the messages' own, not the program's 273.16

struct LevelElement {
  int Descriptor;
  Element What;
  std::optional<double> SourceLevel::*Into;
  Scale ToOurs{};
};

const LevelElement kLevelElements[] = {
    {kPressure, Element::Press, &SourceLevel::Press, {.Over = 100}},
    {kGeopotentialHeight, Element::Height, &SourceLevel::Height},
    {kHeight, Element::Height, &SourceLevel::Height},
    {10009, Element::Height, &SourceLevel::Height},
    {10007, Element::Height, &SourceLevel::Height},
    {10003, Element::Height, &SourceLevel::Height, {.Over = kStandardGravity}},
    {10008, Element::Height, &SourceLevel::Height, {.Over = kStandardGravity}},
    {12101, Element::Temp, &SourceLevel::Temp, {.Plus = -kKelvinOfTables}},
    {12001, Element::Temp, &SourceLevel::Temp, {.Plus = -kKelvinOfTables}},
    {12103, Element::Dewpt, &SourceLevel::Dewpt, {.Plus = -kKelvinOfTables}},
    {12003, Element::Dewpt, &SourceLevel::Dewpt, {.Plus = -kKelvinOfTables}},
    {11001, Element::Direction, &SourceLevel::Dir},
    {11002, Element::Speed, &SourceLevel::Spd, {.Times = kMsToKnot}},
};

const BufrValue* Find(const BufrSubset& subset, int descriptor) {
  const auto value = std::ranges::find_if(subset, [descriptor](const BufrValue& candidate) {
    return candidate.Descriptor == descriptor && (candidate.Number || !candidate.Text.empty());
  });
  return value == subset.end() ? nullptr : &*value;
}

std::optional<double> NumberOf(const BufrSubset& subset, std::initializer_list<int> descriptors) {
  for (const int descriptor : descriptors) {
    if (const BufrValue* value = Find(subset, descriptor); value != nullptr && value->Number) {
      return value->Number;
    }
  }
  return std::nullopt;
}

int WholeOf(const BufrSubset& subset, int descriptor, int otherwise) {
  const std::optional<double> number = NumberOf(subset, {descriptor});
  return number ? ToWhole(*number) : otherwise;
}

std::string TextOf(const BufrSubset& subset, int descriptor) {
  const BufrValue* value = Find(subset, descriptor);
  return value == nullptr ? std::string() : value->Text;
}

StationName StationOf(const BufrSubset& header) {
  StationName station;
  constexpr int kStationsOfBlock = 1000, kBlocks = 100;
  const int block = WholeOf(header, kBlock, 0), number = WholeOf(header, kStation, 0);
  if (block > 0 && block < kBlocks && number > 0 && number < kStationsOfBlock) {
    station.Number = block * kStationsOfBlock + number;
    return station;
  }
  const std::string local = TextOf(header, kWigosLocal);
  // Issuer 20000 stands for the numbers that stations had before.
  constexpr int kNumberIssuer = 20000, kFigures = 5;
  if (WholeOf(header, kWigosSeries, -1) == 0 &&
      WholeOf(header, kWigosIssuer, -1) == kNumberIssuer && local.size() == kFigures) {
    station.Number = ParseWhole(local).value_or(0);
  }
  if (station.Number == 0) station.Letters = TextOf(header, kShip);
  if (station.Number == 0 && station.Letters.empty()) station.Letters = local;
  return station;
}

std::chrono::sys_time<std::chrono::minutes> Minutes(const ObservationTime& time) {
  const std::chrono::year_month_day date{std::chrono::year(time.Year),
                                         std::chrono::month(static_cast<unsigned>(time.Month)),
                                         std::chrono::day(static_cast<unsigned>(time.Day))};
  return std::chrono::sys_days(date) + std::chrono::hours(time.Hour) +
         std::chrono::minutes(time.Minute);
}

// The nominal hour of the message; its release where that has nothing to do with it.
ObservationTime TimeOf(const ObservationTime& nominal, const ObservationTime& release) {
  constexpr int kHours = 3;
  if (!nominal.Known()) return release;
  return !release.Known() || AreWithin(nominal, release, kHours * 60) ? nominal : release;
}

}  // namespace

bool AreWithin(const ObservationTime& a, const ObservationTime& b, int minutes) {
  return a.Known() && b.Known() &&
         std::chrono::abs(Minutes(a) - Minutes(b)) <= std::chrono::minutes(minutes);
}

bool BufrReport::IsUseful() const {
  return std::ranges::any_of(Levels, [](const BufrLevel& level) {
    const SourceLevel& values = level.Values;
    return values.Temp || (values.Spd && (values.Dir || *values.Spd == 0));
  });
}

void ReportBuilder::Take(const BufrValue& value) {
  if (OpensLevel(value.Descriptor)) report_.Levels.emplace_back();
  if (report_.Levels.empty()) {
    header_.push_back(value);
  } else {
    AddToLevel(value);
  }
}

bool ReportBuilder::OpensLevel(int descriptor) const {
  const bool isCoordinate = descriptor == kPressure || descriptor == kGeopotentialHeight;
  const bool isMark = descriptor == kSinceRelease || descriptor == kExtendedSignificance ||
                      descriptor == kSignificance;
  if (report_.Levels.empty()) return isCoordinate || isMark;
  // Of the old templates the mark follows the pressure, of the new ones it stands before it.
  if (descriptor == kSignificance) return false;
  if (isMark) return report_.Levels.back().Seen != 0;
  if (!isCoordinate) return false;
  const auto row = std::ranges::find(kLevelElements, descriptor, &LevelElement::Descriptor);
  return (report_.Levels.back().Seen & 1U << (row - std::begin(kLevelElements))) != 0;
}

void ReportBuilder::AddToLevel(const BufrValue& value) {
  BufrLevel& level = report_.Levels.back();
  constexpr unsigned kGroundBit = 64, kExtendedGroundBit = 131072;
  constexpr double kMostFlags = 262143;  // of 18 bits
  const auto flags = static_cast<unsigned>(std::clamp(value.Number.value_or(0), 0.0, kMostFlags));
  if (value.Descriptor == kSignificance) level.IsGround |= (flags & kGroundBit) != 0;
  if (value.Descriptor == kExtendedSignificance) {
    level.IsGround |= (flags & kExtendedGroundBit) != 0;
  }
  const auto row = std::ranges::find(kLevelElements, value.Descriptor, &LevelElement::Descriptor);
  if (row == std::end(kLevelElements)) return;
  const unsigned bit = 1U << (row - std::begin(kLevelElements));
  if ((level.Seen & bit) != 0) return;  // what follows the levels repeats their elements
  level.Seen |= bit;
  std::optional<double>& into = level.Values.*row->Into;
  if (value.Number && !into) {
    TakeElement(row->ToOurs(*value.Number), row->What, report_.Refused, into);
  }
}

BufrReport ReportBuilder::Finish(const BufrHead& head) && {
  report_.Update = head.Update;
  SourceHeading& heading = report_.Heading;
  heading.Station = StationOf(header_);
  report_.Release =
      MakeTime(WholeOf(header_, kYear, 0), WholeOf(header_, kMonth, 0), WholeOf(header_, kDay, 0),
               WholeOf(header_, kHour, -1), WholeOf(header_, kMinute, 0))
          .value_or(ObservationTime{});
  heading.Time = TimeOf(head.Time, report_.Release);
  heading.Lat = NumberOf(header_, {kLat, kLatCoarse});
  heading.Lon = NumberOf(header_, {kLon, kLonCoarse});
  heading.Elevation = NumberOf(header_, {kGround, kHeight, kStationHeight, kBarometer});
  // The sonde may start elsewhere than at the station: where its release and the level on the
  // ground agree the ascent begins there.
  const std::optional<double> release = NumberOf(header_, {kHeight});
  const auto ground = std::ranges::find_if(
      report_.Levels, [](const BufrLevel& level) { return level.IsGround && level.Values.Height; });
  constexpr double kAgree = 1;  // m
  if (release && ground != report_.Levels.end() &&
      std::fabs(*release - *ground->Values.Height) <= kAgree) {
    heading.Elevation = ground->Values.Height;
  }
  return std::move(report_);
}

}  // namespace vexa::ingest
