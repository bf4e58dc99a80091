#include "ingest/bufr.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "core/numbers.h"
#include "ingest/bufr_messages.h"
#include "ingest/bufr_reader.h"
#include "ingest/bufr_report.h"

namespace vexa::ingest {
namespace {

constexpr std::string_view kBufrTag = "BUFR";

// A report without its levels, which are read again from its place when they are asked for. Those
// that the library unpacked are kept: it takes a whole message each time, and long.
struct ListedReport {
  BufrReport Known{};
  std::size_t LevelCount = 0;
  std::size_t MessageAt = 0, MessageLength = 0;  // in the file
  BufrPlace Place{};
};

Outcome<std::vector<ListedReport>> ByLibrary(std::string_view message, const BufrHead& head) {
  Outcome<std::vector<BufrSubset>> subsets = UnpackByLibrary(message);
  if (!subsets) return subsets.Error();
  std::vector<ListedReport> reports;
  for (const BufrSubset& subset : subsets.Value()) {
    ReportBuilder builder;
    for (const BufrValue& value : subset) builder.Take(value);
    BufrReport report = std::move(builder).Finish(head);
    const std::size_t count = report.Levels.size();
    if (report.IsUseful()) reports.push_back({.Known = std::move(report), .LevelCount = count});
  }
  return reports;
}

Outcome<BufrReport> ReadReport(BufrReader& reader, const BufrHead& head, BufrPlace& place) {
  ReportBuilder builder;
  const auto take = [&builder](const BufrValue& value) { builder.Take(value); };
  if (std::optional<Fault> damaged = reader.Read(place, take)) return *damaged;
  return std::move(builder).Finish(head);
}

Outcome<std::vector<ListedReport>> ListReports(std::string_view message) {
  const std::optional<BufrHead> head = ReadHead(message);
  if (!head) return DamagedMessage("a message cannot be read");
  constexpr int kVerticalSoundings = 2, kUndefined = 255;
  if (head->Category != kVerticalSoundings && head->Category != kUndefined) {
    return DamagedMessage("a message holds no vertical sounding, its category is " +
                          Shortest(head->Category));
  }
  constexpr std::size_t kMostSubsets = 10000;
  if (head->Subsets < 1 || head->Subsets > kMostSubsets) {
    return DamagedMessage("a message has no subsets or too many");
  }
  std::optional<BufrReader> reader = BufrReader::For(*head);
  if (!reader) return ByLibrary(message, *head);
  std::vector<ListedReport> reports;
  for (BufrPlace place; place.Subset < head->Subsets;) {
    const BufrPlace here = place;
    Outcome<BufrReport> report = ReadReport(*reader, *head, place);
    if (!report) return report.Error();
    if (!report.Value().IsUseful()) continue;
    const std::size_t count = report.Value().Levels.size();
    report.Value().Levels = std::vector<BufrLevel>();  // not {}, which would keep their room
    reports.push_back({.Known = std::move(report.Value()), .LevelCount = count, .Place = here});
  }
  return reports;
}

// The same with its levels.
BufrReport WholeReport(const ListedReport& listed, const SourceText& source) {
  const std::string_view message =
      std::string_view(source.Bytes()).substr(listed.MessageAt, listed.MessageLength);
  if (listed.LevelCount == listed.Known.Levels.size()) return listed.Known;
  const std::optional<BufrHead> head = ReadHead(message);
  std::optional<BufrReader> reader = head ? BufrReader::For(*head) : std::nullopt;
  BufrPlace place = listed.Place;
  // What was read once can be read again.
  return reader ? ReadReport(*reader, *head, place).Value() : listed.Known;
}

// Of two reports of one station.
bool AreOfOneAscent(const BufrReport& a, const BufrReport& b) {
  const StationName& station = a.Heading.Station;
  const bool isNamed = station.Number != 0 || !station.Letters.empty();
  if (!isNamed && (a.Heading.Lat != b.Heading.Lat || a.Heading.Lon != b.Heading.Lon)) return false;
  if (a.Release.Known() && b.Release.Known()) {
    return AreWithin(a.Release, b.Release, 30);
  }
  return a.Heading.Time == b.Heading.Time;
}

// Reports of one ascent, that which counts first: the latest correction, then the longest.
using BufrAscent = std::vector<ListedReport>;

struct BufrFile {
  std::vector<BufrAscent> Ascents{};
  std::vector<std::string> Notes{};
  std::optional<Fault> Refused{};  // why a message was left out
};

BufrFile ReadMessages(const SourceText& source) {
  BufrFile file;
  std::vector<BufrAscent>& ascents = file.Ascents;
  std::map<std::pair<int, std::string>, std::vector<std::size_t>> byStation;
  for (const std::string_view message : SplitBufr(source.Bytes(), file.Notes)) {
    Outcome<std::vector<ListedReport>> reports = ListReports(message);
    if (!reports) {
      if (!file.Refused) file.Refused = reports.Error();
      file.Notes.push_back("Left out: " + reports.Error().Detail + '.');
      continue;
    }
    for (ListedReport& report : reports.Value()) {
      report.MessageAt = static_cast<std::size_t>(message.data() - source.Bytes().data());
      report.MessageLength = message.size();
      const StationName& station = report.Known.Heading.Station;
      std::vector<std::size_t>& known = byStation[{station.Number, station.Letters}];
      const auto same = std::ranges::find_if(known, [&](std::size_t ascent) {
        return AreOfOneAscent(ascents[ascent].front().Known, report.Known);
      });
      if (same == known.end()) {
        known.push_back(ascents.size());
        ascents.push_back({std::move(report)});
      } else {
        ascents[*same].push_back(std::move(report));
      }
    }
  }
  for (BufrAscent& ascent : ascents) {
    std::ranges::stable_sort(ascent, [](const ListedReport& a, const ListedReport& b) {
      return std::pair(a.Known.Update, a.LevelCount) > std::pair(b.Known.Update, b.LevelCount);
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

SourceSounding Merged(const BufrAscent& ascent, const SourceText& source, LoadContext& context) {
  const BufrReport& main = ascent.front().Known;
  SourceSounding sounding{.Heading = main.Heading, .Refused = main.Refused};
  LocateStation(sounding.Heading, context);
  for (const ListedReport& listed : ascent) {
    if (listed.Known.Update != main.Update) {
      sounding.Notes.push_back("A message that was corrected later was left out.");
      continue;
    }
    BufrReport report = WholeReport(listed, source);
    PlaceGround(sounding.Heading, report.Levels);
    for (const BufrLevel& level : report.Levels) sounding.Levels.push_back(level.Values);
  }
  if (main.Release.Known() && main.Release != main.Heading.Time) {
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
  std::vector<SoundingBlock> blocks;
  for (const BufrAscent& ascent : ReadMessages(source).Ascents) {
    blocks.push_back({.Heading = ascent.front().Known.Heading});
  }
  return Entries(blocks);
}

std::optional<Fault> DecodeBufr(const SourceText& source, LoadContext& context,
                                SoundingRecord& into) {
  const BufrFile& file = Kept(context, source, ReadMessages);
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
  FillRecord(Merged(file.Ascents[index.Value()], source, context), source.Name(), context, into);
  into.DataFormat = kBufrTag;
  return std::nullopt;
}

}  // namespace vexa::ingest
