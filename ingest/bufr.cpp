#include "ingest/bufr.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <iterator>
#include <string>
#include <utility>

#include "core/numbers.h"
#include "core/units.h"
#include "ingest/bufr_messages.h"

namespace vexa::ingest {
namespace {

constexpr std::string_view kFormatTag = "BUFR";

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

struct BufrLevel {
  SourceLevel Values{};
  bool IsGround = false;
  unsigned Seen = 0;  // rows of kLevelElements, missing values too
};

// One subset: a whole ascent or a part of one.
struct BufrReport {
  SourceHeading Heading{};
  ObservationTime Release{};
  int Update = 0;
  std::vector<BufrLevel> Levels{};
  Refusals Refused{};
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

bool AreWithin(const ObservationTime& a, const ObservationTime& b, std::chrono::minutes most) {
  return a.Known() && b.Known() && std::chrono::abs(Minutes(a) - Minutes(b)) <= most;
}

// The nominal hour of the message; its release where that has nothing to do with it.
ObservationTime TimeOf(const ObservationTime& nominal, const ObservationTime& release) {
  if (!nominal.Known()) return release;
  return !release.Known() || AreWithin(nominal, release, std::chrono::hours(3)) ? nominal : release;
}

bool OpensLevel(const BufrValue& value, const BufrLevel* level) {
  const bool isCoordinate =
      value.Descriptor == kPressure || value.Descriptor == kGeopotentialHeight;
  const bool isMark = value.Descriptor == kSinceRelease ||
                      value.Descriptor == kExtendedSignificance ||
                      value.Descriptor == kSignificance;
  if (level == nullptr) return isCoordinate || isMark;
  // Of the old templates the mark follows the pressure, of the new ones it stands before it.
  if (value.Descriptor == kSignificance) return false;
  if (isMark) return level->Seen != 0;
  if (!isCoordinate) return false;
  const auto row = std::ranges::find(kLevelElements, value.Descriptor, &LevelElement::Descriptor);
  return (level->Seen & 1U << (row - std::begin(kLevelElements))) != 0;
}

void AddToLevel(const BufrValue& value, BufrReport& report) {
  BufrLevel& level = report.Levels.back();
  constexpr unsigned kGroundBit = 64, kExtendedGroundBit = 131072;
  const auto flags = static_cast<unsigned>(std::max(0.0, value.Number.value_or(0)));
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
    TakeElement(row->ToOurs(*value.Number), row->What, report.Refused, into);
  }
}

BufrReport ReadSubset(const BufrSubset& subset, const BufrMessage& message) {
  BufrReport report{.Update = message.Update};
  auto at = std::ranges::find_if(subset,
                                 [](const BufrValue& value) { return OpensLevel(value, nullptr); });
  const BufrSubset header(subset.begin(), at);
  for (; at != subset.end(); ++at) {
    const BufrLevel* level = report.Levels.empty() ? nullptr : &report.Levels.back();
    if (OpensLevel(*at, level)) report.Levels.emplace_back();
    if (!report.Levels.empty()) AddToLevel(*at, report);
  }
  SourceHeading& heading = report.Heading;
  heading.Station = StationOf(header);
  report.Release =
      MakeTime(WholeOf(header, kYear, 0), WholeOf(header, kMonth, 0), WholeOf(header, kDay, 0),
               WholeOf(header, kHour, -1), WholeOf(header, kMinute, 0))
          .value_or(ObservationTime{});
  heading.Time = TimeOf(message.Time, report.Release);
  heading.Lat = NumberOf(header, {kLat, kLatCoarse});
  heading.Lon = NumberOf(header, {kLon, kLonCoarse});
  heading.Elevation = NumberOf(header, {kGround, kHeight, kStationHeight, kBarometer});
  // The sonde may start elsewhere than at the station: where its release and the level on the
  // ground agree the ascent begins there.
  const std::optional<double> release = NumberOf(header, {kHeight});
  const auto ground = std::ranges::find_if(
      report.Levels, [](const BufrLevel& level) { return level.IsGround && level.Values.Height; });
  constexpr double kAgree = 1;  // m
  if (release && ground != report.Levels.end() &&
      std::fabs(*release - *ground->Values.Height) <= kAgree) {
    heading.Elevation = ground->Values.Height;
  }
  return report;
}

bool IsUseful(const BufrLevel& level) {
  return level.Values.Temp || (level.Values.Spd && (level.Values.Dir || *level.Values.Spd == 0));
}

bool AreOfOneAscent(const BufrReport& a, const BufrReport& b) {
  const StationName &one = a.Heading.Station, &other = b.Heading.Station;
  if (one.Number != other.Number || one.Letters != other.Letters) return false;
  const bool isNamed = one.Number != 0 || !one.Letters.empty();
  if (!isNamed && (a.Heading.Lat != b.Heading.Lat || a.Heading.Lon != b.Heading.Lon)) return false;
  if (a.Release.Known() && b.Release.Known()) {
    return AreWithin(a.Release, b.Release, std::chrono::minutes(30));
  }
  return a.Heading.Time == b.Heading.Time;
}

// Reports of one ascent, that which counts first: the latest correction, then the longest.
using BufrAscent = std::vector<BufrReport>;

struct BufrFile {
  std::vector<BufrAscent> Ascents{};
  std::vector<std::string> Notes{};
  std::optional<Fault> Refused{};  // why a message was left out
};

BufrFile ReadFileOf(const SourceText& source) {
  BufrFile file;
  std::vector<BufrAscent>& ascents = file.Ascents;
  for (const std::string_view bytes : SplitBufr(source.Bytes(), file.Notes)) {
    Outcome<BufrMessage> message = UnpackBufr(bytes);
    if (!message) {
      if (!file.Refused) file.Refused = message.Error();
      file.Notes.push_back("Left out: " + message.Error().Detail + '.');
      continue;
    }
    for (const BufrSubset& subset : message.Value().Subsets) {
      BufrReport report = ReadSubset(subset, message.Value());
      // What has a surface only is listed, and told to be too little when it is asked for.
      if (std::ranges::none_of(report.Levels, IsUseful)) continue;
      const auto same = std::ranges::find_if(ascents, [&report](const BufrAscent& ascent) {
        return AreOfOneAscent(ascent.front(), report);
      });
      if (same == ascents.end()) {
        ascents.push_back({std::move(report)});
      } else {
        same->push_back(std::move(report));
      }
    }
  }
  for (BufrAscent& ascent : ascents) {
    std::ranges::stable_sort(ascent, [](const BufrReport& a, const BufrReport& b) {
      return std::pair(a.Update, a.Levels.size()) > std::pair(b.Update, b.Levels.size());
    });
  }
  return file;
}

// The ground's wind may lack its height, of a PILOT its pressure too.
void PlaceGround(const SourceHeading& heading, std::vector<BufrLevel>& levels) {
  for (BufrLevel& level : levels) {
    if (level.IsGround && !level.Values.Height) level.Values.Height = heading.Elevation;
  }
}

SourceSounding Merged(BufrAscent ascent, LoadContext& context) {
  SourceSounding sounding{.Heading = ascent.front().Heading, .Refused = ascent.front().Refused};
  LocateStation(sounding.Heading, context);
  const int update = ascent.front().Update;
  for (BufrReport& report : ascent) {
    if (report.Update != update) {
      sounding.Notes.push_back("A message that was corrected later was left out.");
      continue;
    }
    PlaceGround(sounding.Heading, report.Levels);
    for (BufrLevel& level : report.Levels) sounding.Levels.push_back(level.Values);
  }
  if (const BufrReport& main = ascent.front();
      main.Release.Known() && main.Release != main.Heading.Time) {
    sounding.Notes.push_back("Released at " + Mask(main.Release.Hour, "00") + ':' +
                             Mask(main.Release.Minute, "00") + " UTC.");
  }
  return sounding;
}

}  // namespace

bool IsBufr(const SourceText& source) {
  // A bulletin's heading may come first. Of a text that only speaks of BUFR the octet behind the
  // length is no edition.
  constexpr std::size_t kFarthest = 200, kEditionAt = 7;
  const std::string_view bytes = source.Bytes();
  const std::size_t at = bytes.substr(0, kFarthest).find("BUFR");
  if (at == std::string_view::npos || bytes.size() - at <= kEditionAt) return false;
  const auto edition = static_cast<unsigned char>(bytes[at + kEditionAt]);
  return edition <= 5;
}

std::vector<SourceEntry> ListBufr(const SourceText& source) {
  // A flight second by second takes its time to unpack; with no other to choose it is done once.
  if (HoldsOneReport(source.Bytes())) return {{.Title = source.Name()}};
  std::vector<SoundingBlock> blocks;
  BufrFile file = ReadFileOf(source);
  for (BufrAscent& ascent : file.Ascents) {
    blocks.push_back({.Heading = std::move(ascent.front().Heading)});
  }
  return Entries(blocks);
}

std::optional<Fault> DecodeBufr(const SourceText& source, LoadContext& context,
                                SoundingRecord& into) {
  const BufrFile& file = Kept(context, source, ReadFileOf);
  if (file.Ascents.empty()) {
    if (!file.Refused) {
      const std::string reason =
          file.Notes.empty() ? "no vertical sounding in it" : file.Notes.front();
      return Fault{kFaultEndOfFile, "DecodeBufr", source.Name() + ": " + reason};
    }
    Fault refused = *file.Refused;
    refused.Detail = source.Name() + ": " + refused.Detail;
    return refused;
  }
  const Outcome<std::size_t> index = ChooseSounding(file.Ascents.size(), source, context);
  if (!index) return index.Error();
  // What is said of the file is said with its first sounding, not with each.
  if (index.Value() == 0) std::ranges::copy(file.Notes, std::back_inserter(context.Notes));
  FillRecord(Merged(file.Ascents[index.Value()], context), source.Name(), context, into);
  into.DataFormat = kFormatTag;
  return std::nullopt;
}

}  // namespace vexa::ingest
