#include "ingest/coded.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <iterator>
#include <string>
#include <tuple>
#include <utility>

#include "core/markers.h"
#include "core/numbers.h"
#include "ingest/coded_groups.h"
#include "ingest/coded_heights.h"
#include "ingest/coded_judge.h"
#include "ingest/coded_part.h"
#include "ingest/coded_report.h"
#include "ingest/coded_winds.h"

namespace vexa::ingest {
namespace {

constexpr std::string_view kCodedTag = "CODED";
constexpr int kHoursApart = 3;
constexpr int kMostCodedHeading = 400;
constexpr int kNumberWidth = 17;  // "72357 - LETTERS - " of a title, with room to spare

// Reports of one station and time.
struct CodedAscent {
  std::vector<CodedReport> Reports{};
  std::vector<CodedPart> Parts{};
  SourceHeading Heading{};
};

// Hours between two day-of-month times, which may lie on both sides of a month's end: from the 28th
// on, the next day may be the 1st.
int HoursBetween(const CodedReport& a, const CodedReport& b) {
  constexpr int kDayHours = 24, kShortestMonth = 28;
  const CodedReport& earlier = a.Day < b.Day ? a : b;
  const CodedReport& later = a.Day < b.Day ? b : a;
  if (earlier.Day == 1 && later.Day >= kShortestMonth) {
    return kDayHours - later.Hour + earlier.Hour;
  }
  return std::abs((a.Day - b.Day) * kDayHours + a.Hour - b.Hour);
}

std::chrono::year_month MonthOf(std::chrono::sys_days day) {
  const std::chrono::year_month_day date{day};
  return date.year() / date.month();
}

std::optional<std::chrono::sys_days> DayOf(std::chrono::year_month month, int day) {
  const std::chrono::year_month_day date = month / std::chrono::day(static_cast<unsigned>(day));
  return date.ok() ? std::optional(std::chrono::sys_days(date)) : std::nullopt;
}

// The day of that number nearest to the date in the file's name.
std::optional<std::chrono::sys_days> DayNear(std::chrono::sys_days around, int day) {
  constexpr int kFarthest = 3;  // days
  for (int away = 0; away <= kFarthest; ++away) {
    for (const int days : {-away, away}) {
      const std::chrono::sys_days date = around + std::chrono::days(days);
      if (date == DayOf(MonthOf(date), day)) return date;
    }
  }
  return std::nullopt;
}

// The last day of that number which does not lie more than a day behind the one given.
std::optional<std::chrono::sys_days> LastDay(std::chrono::sys_days written, int day) {
  constexpr int kLongestGap = 2;  // months: the 31st
  const std::chrono::sys_days last = written + std::chrono::days(1);
  for (int back = 0; back <= kLongestGap; ++back) {
    const auto date = DayOf(MonthOf(last) - std::chrono::months(back), day);
    if (date && *date <= last) return date;
  }
  return std::nullopt;
}

// A message of the hour before a main hour is that of the balloon's release for it.
int HoursToNominal(const CodedReport& report) {
  constexpr int kMainHours = 6;
  return report.Hour % kMainHours == kMainHours - 1 ? 1 : 0;
}

ObservationTime TimeOf(const CodedReport& report, const SourceText& source) {
  std::optional<std::chrono::sys_days> day;
  if (const auto around = DateInName(source.Name())) {
    day = DayNear(*around, report.Day);
    if (!day) day = LastDay(*around, report.Day);
  } else if (source.WrittenOn()) {
    day = LastDay(*source.WrittenOn(), report.Day);
  }
  if (!day) return {};
  const auto nominal = *day + std::chrono::hours(report.Hour + HoursToNominal(report));
  const auto nominalDay = std::chrono::floor<std::chrono::days>(nominal);
  const std::chrono::year_month_day date{nominalDay};
  return {.Year = static_cast<int>(date.year()),
          .Month = static_cast<int>(static_cast<unsigned>(date.month())),
          .Day = static_cast<int>(static_cast<unsigned>(date.day())),
          .Hour = static_cast<int>((nominal - nominalDay) / std::chrono::hours(1))};
}

// The report that heads the ascent: the lowest part of the TEMP message, else of the PILOT.
const CodedReport& MainReport(const CodedAscent& ascent) {
  return *std::ranges::min_element(ascent.Reports, {}, [](const CodedReport& report) {
    return std::pair(report.IsPilot(), report.Letter());
  });
}

SourceHeading HeadingOf(const CodedAscent& ascent, const SourceText& source) {
  const CodedReport* main = &MainReport(ascent);
  SourceHeading heading;
  heading.Station.Number = main->WmoNumber;
  if (main->WmoNumber == 0) heading.Station.Name = main->Station;
  heading.Time = TimeOf(*main, source);
  heading.Lat = main->Lat;
  heading.Lon = main->Lon;
  heading.Elevation = main->Elevation;
  return heading;
}

void NoteTime(const CodedAscent& ascent, const SourceText& source,
              std::vector<std::string>& notes) {
  const CodedReport& main = MainReport(ascent);
  if (!ascent.Heading.Time.Known()) return;
  if (HoursToNominal(main) != 0) {
    notes.push_back("Released for " + Mask(ascent.Heading.Time.Hour, "00") +
                    " UTC; the message says " + Mask(main.Hour, "00") + " UTC.");
  }
  if (DateInName(source.Name())) return;
  notes.push_back("The message says day " + Mask(main.Day, "00") +
                  " only; month and year are those in which the file was written.");
}

// Without month and year the title has the day and hour of the message.
void AddDay(const CodedAscent& ascent, SourceHeading& heading) {
  if (heading.Time.Known()) return;
  const CodedReport& main = MainReport(ascent);
  std::string& name = heading.Station.Name;
  const std::string day = "day " + Mask(main.Day, "00") + ' ' + Mask(main.Hour, "00") + 'Z';
  name = CutTitle(name, kMaxTitle - kNumberWidth - static_cast<int>(day.size())) +
         (name.empty() ? "" : " ") + day;
}

struct CodedFile {
  std::vector<CodedAscent> Ascents{};  // that hold any level, in the order of their first reports
  std::vector<std::string> Remarks{};  // what the reports without a level say of themselves
  std::vector<std::string> Notes{};
};

bool HasPart(const CodedAscent& ascent, const std::string& part) {
  for (std::size_t i = 0; i < ascent.Reports.size(); ++i) {
    if (ascent.Reports[i].Part == part && !ascent.Parts[i].Levels.empty()) return true;
  }
  return false;
}

void Join(CodedAscent& ascent, CodedAscent other) {
  std::ranges::move(other.Reports, std::back_inserter(ascent.Reports));
  std::ranges::move(other.Parts, std::back_inserter(ascent.Parts));
}

// The ascent whose hour is nearest and that lacks every part which the other has: with another
// hour and a part that is there already it was another balloon.
CodedAscent* SameBalloon(std::vector<CodedAscent>& ascents, const CodedAscent& other) {
  const CodedReport& report = other.Reports.front();
  CodedAscent* nearest = nullptr;
  int least = kHoursApart + 1;
  for (CodedAscent& ascent : ascents) {
    const CodedReport& first = ascent.Reports.front();
    const int hours = HoursBetween(first, report);
    const bool isRepeated = std::ranges::any_of(
        other.Reports, [&ascent](const CodedReport& part) { return HasPart(ascent, part.Part); });
    if (first.Station != report.Station || hours >= least || isRepeated) continue;
    nearest = &ascent;
    least = hours;
  }
  return nearest;
}

// Numbers of stations that one garbled figure makes of each other.
bool DifferInOneFigure(const std::string& a, const std::string& b) {
  if (a.size() != b.size()) return false;
  int apart = 0;
  for (std::size_t i = 0; i < a.size(); ++i) apart += a[i] == b[i] ? 0 : 1;
  return apart == 1;
}

// The part of a TEMP message that tells of the same levels: B beside A, D beside C.
const CodedPart* PartBeside(const CodedAscent& ascent, const CodedReport& report) {
  constexpr std::string_view kPairs = "ABCD";
  const std::size_t own = kPairs.find(report.Letter());
  for (std::size_t i = 0; i < ascent.Reports.size(); ++i) {
    const CodedReport& other = ascent.Reports[i];
    const bool isPair = own != kPairs.npos && other.Letter() == kPairs[own ^ 1U];
    if (isPair && other.Part.substr(0, 2) == report.Part.substr(0, 2)) return &ascent.Parts[i];
  }
  return nullptr;
}

// Whether a report that stands alone under its station's number is the part which this ascent
// lacks, with a figure of the number garbled.
bool IsStrayPart(const CodedAscent& lone, const CodedAscent& ascent) {
  const CodedReport &report = lone.Reports.front(), &first = ascent.Reports.front();
  if (!DifferInOneFigure(report.Station, first.Station) || HoursBetween(first, report) != 0 ||
      HasPart(ascent, report.Part)) {
    return false;
  }
  const CodedPart* beside = PartBeside(ascent, report);
  if (beside == nullptr) return false;
  const CodedPart& own = lone.Parts.front();
  const bool isMandatory = report.Letter() == 'A' || report.Letter() == 'C';
  return isMandatory ? TellOfSameAir(own.Levels, beside->Levels)
                     : TellOfSameAir(beside->Levels, own.Levels);
}

void JoinStrayParts(std::vector<CodedAscent>& ascents) {
  for (std::size_t i = 0; i < ascents.size();) {
    const bool isLone = ascents[i].Reports.size() == 1 && ascents[i].Reports[0].WmoNumber != 0;
    // Of two parts that are alone the number of the first counts.
    const auto owner = std::ranges::find_if(ascents, [&](const CodedAscent& other) {
      return isLone && &other != &ascents[i] && IsStrayPart(ascents[i], other) &&
             (other.Reports.size() > 1 || &other < &ascents[i]);
    });
    if (owner == ascents.end()) {
      ++i;
      continue;
    }
    CodedAscent stray = std::move(ascents[i]);
    CodedReport& report = stray.Reports.front();
    const CodedReport& main = owner->Reports.front();
    stray.Parts.front().Notes.push_back(report.Name() + ": taken as that of " + main.Station +
                                        ", which lacks it and tells of the same air.");
    report.Station = main.Station;
    report.WmoNumber = main.WmoNumber;
    Join(*owner, std::move(stray));
    ascents.erase(ascents.begin() + static_cast<std::ptrdiff_t>(i));
  }
}

// Reports of one station and hour first, then those of neighbouring hours.
std::vector<CodedAscent> Ascents(std::vector<CodedReport> reports) {
  std::vector<CodedAscent> byHour;
  for (CodedReport& report : reports) {
    CodedAscent single;
    single.Parts.push_back(ReadPart(report));
    single.Reports.push_back(std::move(report));
    const auto same = std::ranges::find_if(byHour, [&single](const CodedAscent& ascent) {
      const CodedReport &first = ascent.Reports.front(), &other = single.Reports.front();
      return first.Station == other.Station && HoursBetween(first, other) == 0;
    });
    if (same == byHour.end()) {
      byHour.push_back(std::move(single));
    } else {
      Join(*same, std::move(single));
    }
  }
  JoinStrayParts(byHour);
  std::vector<CodedAscent> ascents;
  for (CodedAscent& ascent : byHour) {
    if (CodedAscent* same = SameBalloon(ascents, ascent)) {
      Join(*same, std::move(ascent));
    } else {
      ascents.push_back(std::move(ascent));
    }
  }
  return ascents;
}

// What an ascent without a level says of itself.
bool TellEmpty(const CodedAscent& ascent, std::vector<std::string>& remarks) {
  const bool isEmpty =
      std::ranges::all_of(ascent.Parts, [](const CodedPart& part) { return part.Levels.empty(); });
  for (std::size_t i = 0; isEmpty && i < ascent.Parts.size(); ++i) {
    const CodedPart& part = ascent.Parts[i];
    std::ranges::copy(part.Notes, std::back_inserter(remarks));
    for (const std::string& remark : part.Remarks) {
      remarks.push_back(ascent.Reports[i].Name() + ": " + remark + '.');
    }
  }
  return isEmpty;
}

CodedFile ReadFileOf(const SourceText& source) {
  CodedFile file;
  std::vector<CodedReport> reports = SplitReports(source, file.Notes);
  std::vector<std::string> nil;
  for (const CodedReport& report : reports) {
    if (report.IsNil) nil.push_back(report.Name() + ": NIL, there was no report.");
  }
  file.Ascents = Ascents(LatestReports(std::move(reports)));
  std::erase_if(file.Ascents,
                [&file](const CodedAscent& ascent) { return TellEmpty(ascent, file.Remarks); });
  std::ranges::move(nil, std::back_inserter(file.Remarks));
  for (CodedAscent& ascent : file.Ascents) ascent.Heading = HeadingOf(ascent, source);
  return file;
}

// Which of two temperatures at the same pressure counts: of mandatory levels that of parts A and C,
// elsewhere the significant level of parts B and D, which is the finer one.
int TempRank(const CodedLevel& level) {
  if (level.Kind == LevelKind::Mandatory) return 0;
  return level.Part == 'B' || level.Part == 'D' ? 1 : 2;
}

// Which of two winds at the same height counts.
int WindRank(const CodedLevel& level) {
  if (level.Kind == LevelKind::Surface && level.Part == 'A') return 0;
  switch (level.Kind) {
    case LevelKind::Mandatory:
      return 0;
    case LevelKind::PilotWind:
      return 2;
    default:
      return 1;
  }
}

void AddTemps(const std::vector<CodedLevel>& levels, SourceSounding& into) {
  for (const CodedLevel& level : levels) {
    if (!level.Values.Temp || !level.Values.Press) continue;
    const auto same = std::ranges::find(into.Levels, level.Values.Press, &SourceLevel::Press);
    if (same == into.Levels.end()) {
      into.Levels.push_back({.Press = level.Values.Press,
                             .Height = level.Values.Height,
                             .Temp = level.Values.Temp,
                             .Dewpt = level.Values.Dewpt});
      continue;
    }
    if (!same->Dewpt) same->Dewpt = level.Values.Dewpt;
    if (same->Temp != level.Values.Temp) {
      into.Notes.push_back("At " + Shortest(*level.Values.Press) +
                           " hPa the parts differ: " + Shortest(*same->Temp) + " C was taken, " +
                           Shortest(*level.Values.Temp) + " C of part " + level.Part + " was not.");
    }
  }
}

// Of winds of the same height the first counts.
void AddWinds(std::vector<CodedLevel> levels, SourceSounding& into) {
  std::ranges::stable_sort(levels, {}, WindRank);
  for (const CodedLevel& level : levels) {
    const SourceLevel& wind = level.Values;
    if (!wind.Spd || (!wind.Press && !wind.Height)) continue;
    into.Levels.push_back(
        {.Press = wind.Press, .Height = wind.Height, .Dir = wind.Dir, .Spd = wind.Spd});
  }
}

// The surface wind of a PILOT part has neither height nor pressure of its own.
void PlaceSurfaceWinds(std::vector<CodedLevel>& levels, std::optional<double> ground,
                       std::vector<std::string>& notes) {
  const auto surface = std::ranges::find_if(levels, [](const CodedLevel& level) {
    return level.Kind == LevelKind::Surface && level.Values.Temp;
  });
  for (CodedLevel& level : levels) {
    if (!level.IsAtSurface) continue;
    if (surface != levels.end()) {
      level.Values.Press = surface->Values.Press;
    } else if (ground) {
      level.Values.Height = ground;
    } else {
      notes.push_back("The surface wind was left out: the height of the ground is not known.");
    }
  }
}

void NoteMissingParts(const CodedAscent& ascent, std::vector<std::string>& notes) {
  const bool isWindsOnly = std::ranges::all_of(ascent.Reports, &CodedReport::IsPilot);
  if (isWindsOnly) return;
  std::string missing;
  for (const char letter : {'A', 'B', 'C', 'D'}) {
    const bool isThere = std::ranges::any_of(ascent.Reports, [letter](const CodedReport& report) {
      return !report.IsPilot() && report.Letter() == letter;
    });
    const bool isDropsonde = ascent.Reports.front().Part[0] == 'X';
    if (isThere || (isDropsonde && letter >= 'C')) continue;
    missing += (missing.empty() ? "" : ", ") + std::string(1, letter);
  }
  if (!missing.empty()) notes.push_back("Parts of the message that are missing: " + missing + '.');
}

// The sounding of the parts; `isGroundLost` tells that none gives a surface level. Counts what is
// garbled, or may be.
SourceSounding Merged(const CodedAscent& ascent, LoadContext& context, bool& isGroundLost) {
  SourceSounding sounding{.Heading = ascent.Heading};
  std::vector<CodedLevel> levels;
  std::vector<std::string> said;
  for (const CodedPart& part : ascent.Parts) {
    std::ranges::copy(part.Levels, std::back_inserter(levels));
    std::ranges::copy(part.Notes, std::back_inserter(sounding.Notes));
    context.Garbled += part.Garbled;
    // The parts repeat each other here.
    for (const std::string& remark : part.Remarks) {
      if (std::ranges::find(said, remark) == said.end()) said.push_back(remark);
    }
  }
  for (const std::string& remark : said) {
    sounding.Notes.push_back("The message says: " + remark + '.');
  }
  std::ranges::stable_sort(
      levels, {}, [](const CodedLevel& level) { return std::tuple(TempRank(level), level.Part); });
  LocateStation(sounding.Heading, context);
  AddDay(ascent, sounding.Heading);
  PlaceSurfaceWinds(levels, sounding.Heading.Elevation, sounding.Notes);
  Ground ground{
      .Elevation = sounding.Heading.Elevation,
      .IsSea = std::string_view("UXQ").find(MainReport(ascent).Part[0]) != std::string_view::npos};
  context.Garbled += RestoreHeights(levels, ground, sounding.Notes);
  sounding.Heading.Elevation = ground.Elevation;
  isGroundLost = ground.IsLost;
  AddTemps(levels, sounding);
  AddWinds(std::move(levels), sounding);
  NoteMissingParts(ascent, sounding.Notes);
  if (!sounding.Heading.Time.Known()) {
    sounding.Notes.push_back("The message has no month and year; they are not known.");
  }
  return sounding;
}

}  // namespace

bool IsCoded(const SourceText& source) {
  // Rows of numbers need not be cut into words: the names of parts end in such a letter.
  const auto mayHoldName = [&source](int line) {
    return line <= source.LineCount() &&
           std::ranges::any_of(source.Line(line), [](char c) { return c >= 'A' && c <= 'D'; });
  };
  const int last = std::min(source.LineCount(), kMostCodedHeading);
  bool mayNext = mayHoldName(1);
  std::vector<std::string_view> words, next;
  for (int line = 1; line <= last; ++line) {
    const bool may = mayNext;
    mayNext = mayHoldName(line + 1);
    if (!may && !mayNext) continue;
    TakeTokens(source.Line(line), words);
    next.clear();
    if (line < source.LineCount()) TakeTokens(source.Line(line + 1), next);
    words.insert(words.end(), next.begin(), next.end());
    for (std::size_t i = 0; i + 1 < words.size(); ++i) {
      if (!IsPartName(words[i])) continue;
      for (std::size_t k = i + 1; k < std::min(i + 4, words.size()); ++k) {
        if (words[k].starts_with("NIL") || (IsGroup(words[k]) && Figures(words[k], 0, 4)))
          return true;
      }
    }
  }
  return false;
}

std::vector<SourceEntry> ListCoded(const SourceText& source) {
  std::vector<SoundingBlock> blocks;
  CodedFile file = ReadFileOf(source);
  for (CodedAscent& ascent : file.Ascents) {
    AddDay(ascent, ascent.Heading);
    blocks.push_back({.Heading = std::move(ascent.Heading)});
  }
  return Entries(blocks);
}

std::optional<Fault> DecodeCoded(const SourceText& source, LoadContext& context,
                                 SoundingRecord& into) {
  const CodedFile& file = Kept(context, source, ReadFileOf);
  if (file.Ascents.empty()) {
    const std::vector<std::string>& said = file.Remarks.empty() ? file.Notes : file.Remarks;
    return Fault{kFaultEndOfFile, "DecodeCoded",
                 source.Name() + ": no ascent in it" + (said.empty() ? "" : "; " + said.front())};
  }
  const Outcome<std::size_t> index = ChooseSounding(file.Ascents.size(), source, context);
  if (!index) return index.Error();
  const CodedAscent& ascent = file.Ascents[index.Value()];
  // What is of no ascent is told with the first.
  if (index.Value() == 0) std::ranges::copy(file.Notes, std::back_inserter(context.Notes));
  NoteTime(ascent, source, context.Notes);
  bool isGroundLost = false;
  FillRecord(Merged(ascent, context, isGroundLost), source.Name(), context, into);
  if (isGroundLost && into.NumTempLevels() > 0) into.SurfaceLostBelow = into.Press.Values().front();
  context.Garbled += TellStrayWinds(into, context.Notes);
  into.DataFormat = kCodedTag;
  return std::nullopt;
}

}  // namespace vexa::ingest
