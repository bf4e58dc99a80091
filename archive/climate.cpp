#include "archive/climate.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "archive/columns.h"
#include "core/numbers.h"

namespace vexa::archive {
namespace {

constexpr int kDaysOfLeapYear = 366;
constexpr int kHoursOfDay = 24;

// A distance on a circle.
int Around(int a, int b, int circle) {
  const int apart = std::abs(a - b) % circle;
  return std::min(apart, circle - apart);
}

bool IsWanted(const ClimateRequest& request, int month, int day, int hour) {
  if (request.Hour && Around(*request.Hour, hour, kHoursOfDay) > 1) return false;
  if (request.DayOfYear) {
    return Around(*request.DayOfYear, DayOfYear(month, day), kDaysOfLeapYear) <= request.WindowDays;
  }
  return !request.Month || *request.Month == month;
}

// The values of one quantity at one level, or their band when there are enough.
std::optional<Band> BandOf(std::vector<float> values, int least) {
  if (static_cast<int>(values.size()) < std::max(1, least)) return std::nullopt;
  const Distribution spread(std::move(values));
  return Band{spread.Percentile(10), spread.Percentile(50), spread.Percentile(90)};
}

struct LevelValues {
  std::vector<float> Temp{}, Dewpt{}, Speed{};
  void Add(const StandardLevel& level) {
    if (level.Temp) Temp.push_back(static_cast<float>(*level.Temp));
    if (level.Dewpt) Dewpt.push_back(static_cast<float>(*level.Dewpt));
    if (level.U && level.V) Speed.push_back(static_cast<float>(std::hypot(*level.U, *level.V)));
  }
};

constexpr std::string_view kMonths[] = {"January",   "February", "March",    "April",
                                        "May",       "June",     "July",     "August",
                                        "September", "October",  "November", "December"};

}  // namespace

int DayOfYear(int month, int day) {
  constexpr int kBefore[] = {0, 31, 60, 91, 121, 152, 182, 213, 244, 274, 305, 335};
  if (month < 1 || month > 12 || day < 1 || day > 31) return 0;
  return kBefore[month - 1] + day;
}

Distribution::Distribution(std::vector<float> values) : sorted_(std::move(values)) {
  std::ranges::sort(sorted_);
}

double Distribution::Percentile(double percent) const {
  if (sorted_.empty()) return kNone;
  const double place = (static_cast<double>(sorted_.size()) - 1) * percent / 100;
  const auto below = static_cast<std::size_t>(place);
  const double share = place - static_cast<double>(below);
  const double low = sorted_[below];
  return share > 0 ? low + share * (static_cast<double>(sorted_[below + 1]) - low) : low;
}

double Distribution::RankOf(double value) const {
  const auto same = std::ranges::equal_range(sorted_, static_cast<float>(value));
  const auto smaller = static_cast<double>(same.begin() - sorted_.begin());
  const auto equal = static_cast<double>(same.size());
  return sorted_.empty() ? 0 : 100 * (smaller + equal / 2) / static_cast<double>(sorted_.size());
}

const Distribution* Climate::Find(const Column& index) const {
  const auto found = std::ranges::find(Indices, &index, &IndexClimate::Index);
  return found == Indices.end() ? nullptr : &found->Values;
}

namespace {

std::string SampleOf(const ClimateRequest& of, std::int64_t count, int first, int last) {
  std::string text = GroupedCount(count) + " ";
  if (of.Month && !of.DayOfYear) text += std::string(kMonths[*of.Month - 1]) + " ";
  if (of.Hour) text += Mask(*of.Hour, "00") + " UTC ";
  text += count == 1 ? "ascent" : "ascents";
  if (of.DayOfYear) text += " within " + std::to_string(of.WindowDays) + " days";
  if (count == 0) return text;
  text += ", " + std::to_string(first);
  return first == last ? text : text + "-" + std::to_string(last);
}

std::string Ordinal(int number) {
  const int tens = number / 10 % 10, ones = number % 10;
  const char* const ending = tens == 1   ? "th"
                             : ones == 1 ? "st"
                             : ones == 2 ? "nd"
                             : ones == 3 ? "rd"
                                         : "th";
  return std::to_string(number) + ending;
}

}  // namespace

std::string Climate::SampleText() const {
  return SampleOf(Of, Ascents, FirstYear, LastYear);
}

int ShownRank(double rank) {
  constexpr int kLeast = 1, kMost = 99;
  return std::clamp(ToWhole(rank), kLeast, kMost);
}

std::string RankText(double rank, int count, const Climate& climate) {
  return Ordinal(ShownRank(rank)) + " of " +
         SampleOf(climate.Of, count, climate.FirstYear, climate.LastYear);
}

Outcome<Climate> ClimateOf(Catalogue& catalogue, const ClimateRequest& request) {
  Climate climate{.Of = request};
  std::vector<const Column*> columns;
  std::string sql = "SELECT s.year, s.month, s.day, s.hour, p.levels, s.settings";
  for (const Column& column : Columns()) {
    if (column.Index == nullptr || column.Kind != ColumnKind::Number || !catalogue.Has(column)) {
      continue;
    }
    columns.push_back(&column);
    sql += ", s." + Quoted(column.Name);
  }
  sql +=
      " FROM soundings s JOIN profiles p ON p.id = s.id WHERE s.station = ? AND s.verdict = 'OK'";
  if (request.Month && !request.DayOfYear)
    sql += " AND s.month = " + std::to_string(*request.Month);
  std::vector<std::vector<float>> values(columns.size());
  std::array<LevelValues, kStandardPress.size()> levels;
  const auto fault = Stored([&] {
    Statement select = catalogue.Store().Prepare(sql);
    select.Bind(1, std::int64_t{request.Station});
    while (select.Step()) {
      const auto part = [&](int column) { return static_cast<int>(select.Whole(column)); };
      const bool isTimed = !select.IsNull(0);
      if (!isTimed || !IsWanted(request, part(1), part(2), part(3))) continue;
      if (!request.Settings.empty() && select.Text(5) != request.Settings) {
        ++climate.UnderOthers;
        continue;
      }
      const int year = part(0);
      climate.FirstYear = climate.Ascents == 0 ? year : std::min(climate.FirstYear, year);
      climate.LastYear = std::max(climate.LastYear, year);
      ++climate.Ascents;
      const StandardLevels ascent = Unpacked(select.Text(4));
      for (std::size_t i = 0; i < levels.size(); ++i) levels[i].Add(ascent[i]);
      constexpr int kFirstIndex = 6;
      for (std::size_t i = 0; i < columns.size(); ++i) {
        const int column = kFirstIndex + static_cast<int>(i);
        if (!select.IsNull(column)) values[i].push_back(static_cast<float>(select.Number(column)));
      }
    }
  });
  if (fault) return *fault;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (static_cast<int>(values[i].size()) < std::max(1, request.LeastSample)) continue;
    climate.Indices.push_back({columns[i], Distribution(std::move(values[i]))});
  }
  for (std::size_t i = 0; i < levels.size(); ++i) {
    climate.Levels[i] = {BandOf(std::move(levels[i].Temp), request.LeastSample),
                         BandOf(std::move(levels[i].Dewpt), request.LeastSample),
                         BandOf(std::move(levels[i].Speed), request.LeastSample)};
  }
  return climate;
}

std::optional<ClimateRequest> RequestFor(const SoundingRecord& sounding) {
  const int station = StationNumber(sounding);
  if (station == 0 || !sounding.Time.Known()) return std::nullopt;
  return ClimateRequest{
      .Station = station, .Month = sounding.Time.Month, .Hour = sounding.Time.Hour};
}

}  // namespace vexa::archive
