#include "ingest/source_header.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>

#include "core/letter_case.h"
#include "core/numbers.h"
#include "ingest/coded_groups.h"

namespace vexa::ingest {
namespace {

constexpr std::array<std::string_view, 12> kMonths = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                      "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
constexpr int kFirstYearOf1900s = 50;  // two-digit years from here on

bool AllDigits(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

int Digits(std::string_view text) {
  return ParseWhole(text).value_or(-1);
}

std::optional<ObservationTime> Valid(const ObservationTime& time) {
  // The calendar keeps the lowest bits only: month 260 would be April to it.
  constexpr int kMonthsOfYear = 12, kLongestMonth = 31, kLastYear = 9999;
  if (time.Month < 1 || time.Month > kMonthsOfYear || time.Day < 1 || time.Day > kLongestMonth ||
      time.Year > kLastYear) {
    return std::nullopt;
  }
  const std::chrono::year_month_day day{std::chrono::year(time.Year),
                                        std::chrono::month(static_cast<unsigned>(time.Month)),
                                        std::chrono::day(static_cast<unsigned>(time.Day))};
  const bool isValid = time.Year > 0 && day.ok() && time.Hour >= 0 && time.Hour <= 23 &&
                       time.Minute >= 0 && time.Minute <= 59;
  return isValid ? std::optional(time) : std::nullopt;
}

std::string TimeText(const ObservationTime& time) {
  if (!time.Known()) return {};
  std::string text = Mask(time.Hour, "00");
  if (time.Minute != 0) text += Mask(time.Minute, "00");
  return text + "Z " + Mask(time.Day, "00") + ' ' +
         std::string(kMonths[static_cast<std::size_t>(time.Month) - 1]) + ' ' + Shortest(time.Year);
}

}  // namespace

std::vector<std::string_view> Tokens(std::string_view text) {
  std::vector<std::string_view> tokens;
  TakeTokens(text, tokens);
  return tokens;
}

std::string_view FirstWord(std::string_view text) {
  constexpr std::string_view kBlanks = " \t";
  const std::size_t begin = std::min(text.find_first_not_of(kBlanks), text.size());
  return text.substr(begin, text.find_first_of(kBlanks, begin) - begin);
}

void TakeTokens(std::string_view text, std::vector<std::string_view>& tokens) {
  constexpr std::size_t kUsual = 12;  // words of a row
  tokens.clear();
  tokens.reserve(kUsual);
  const auto isBlank = [](char c) { return c <= ' ' && (c == ' ' || c == '\t'); };
  const char* at = text.data();
  const char* const end = at + text.size();
  while (at != end) {
    const char* const begin = at;
    while (at != end && !isBlank(*at)) ++at;
    if (at != begin) tokens.emplace_back(begin, static_cast<std::size_t>(at - begin));
    while (at != end && isBlank(*at)) ++at;
  }
}

bool StartsWithNoCase(std::string_view text, std::string_view start) {
  return text.size() >= start.size() && SameText(text.substr(0, start.size()), start);
}

std::size_t FindNoCase(std::string_view text, std::string_view sought, std::size_t from) {
  if (from > text.size()) return std::string_view::npos;
  const std::string_view rest = text.substr(from);
  const auto found = std::search(rest.begin(), rest.end(), sought.begin(), sought.end(),
                                 [](char a, char b) { return Lower(a) == Lower(b); });
  if (found == rest.end() && !sought.empty()) return std::string_view::npos;
  return from + static_cast<std::size_t>(found - rest.begin());
}

std::optional<ObservationTime> ParseCompactTime(std::string_view text) {
  const std::size_t slash = text.find('/');
  if (slash != 6 || (text.size() != 9 && text.size() != 11)) return std::nullopt;
  if (!AllDigits(text.substr(0, 6)) || !AllDigits(text.substr(7))) return std::nullopt;
  const int year = Digits(text.substr(0, 2));
  return Valid({.Year = year + (year < kFirstYearOf1900s ? 2000 : 1900),
                .Month = Digits(text.substr(2, 2)),
                .Day = Digits(text.substr(4, 2)),
                .Hour = Digits(text.substr(7, 2)),
                .Minute = text.size() == 11 ? Digits(text.substr(9, 2)) : 0});
}

std::optional<ObservationTime> ParseWrittenTime(std::string_view text) {
  std::vector<std::string_view> tokens = Tokens(text);
  if (tokens.empty()) return std::nullopt;
  std::string_view& hour = tokens.front();
  if (hour.ends_with('Z')) {
    hour.remove_suffix(1);
  } else if (tokens.size() > 1 && tokens[1] == "UTC") {
    tokens.erase(tokens.begin() + 1);
  }
  if (tokens.size() < 4 || !AllDigits(hour) || hour.size() > 2) return std::nullopt;
  return MakeTime(Digits(tokens[3].substr(0, 4)), MonthNumber(tokens[2]), Digits(tokens[1]),
                  Digits(hour));
}

ObservationTime TimeInTitle(std::string_view title) {
  constexpr std::size_t kWords = 4, kHour = 2, kHourAndMinute = 4;
  const std::vector<std::string_view> words = Tokens(title);
  if (words.size() < kWords) return {};
  const std::string_view* last = &words[words.size() - kWords];
  const std::string_view hour = last[0].substr(0, last[0].size() - 1);
  if (!last[0].ends_with('Z') || (hour.size() != kHour && hour.size() != kHourAndMinute)) return {};
  return MakeTime(ParseWhole(last[3]).value_or(0), MonthNumber(last[2]),
                  ParseWhole(last[1]).value_or(0), ParseWhole(hour.substr(0, kHour)).value_or(-1),
                  ParseWhole("0" + std::string(hour.substr(kHour))).value_or(-1))
      .value_or(ObservationTime{});
}

std::optional<ObservationTime> MakeTime(int year, int month, int day, int hour, int minute) {
  if (month < 1 || day < 1) return std::nullopt;
  return Valid({.Year = year, .Month = month, .Day = day, .Hour = hour, .Minute = minute});
}

int MonthNumber(std::string_view name) {
  const auto* month = std::ranges::find_if(
      kMonths, [&](std::string_view known) { return StartsWithNoCase(name, known); });
  return month == kMonths.end() ? 0 : static_cast<int>(month - kMonths.begin()) + 1;
}

std::optional<std::chrono::sys_days> DateInName(std::string_view name) {
  for (std::size_t i = 0; i + 8 <= name.size(); ++i) {
    const std::optional<int> year = Figures(name, i, 4), month = Figures(name, i + 4, 2),
                             day = Figures(name, i + 6, 2);
    if (!year || !month || !day || *year < 1900 || *year > 2100) continue;
    const std::chrono::year_month_day date{std::chrono::year(*year),
                                           std::chrono::month(static_cast<unsigned>(*month)),
                                           std::chrono::day(static_cast<unsigned>(*day))};
    if (date.ok()) return std::chrono::sys_days(date);
  }
  return std::nullopt;
}

std::vector<int> WholeNumbersIn(std::string_view text) {
  constexpr std::string_view kFigures = "0123456789";
  constexpr std::size_t kLongest = 9;  // figures that fit an int
  std::vector<int> numbers;
  std::size_t at = text.find_first_of(kFigures);
  while (at != std::string_view::npos) {
    const std::size_t end = std::min(text.find_first_not_of(kFigures, at), text.size());
    numbers.push_back(Digits(text.substr(at, std::min(end - at, kLongest))));
    at = text.find_first_of(kFigures, end);
  }
  return numbers;
}

namespace {

// The minutes that a time of day is ahead of UTC by what stands behind it: "+05:30", "-03" or
// "+0530". 0 for anything else, empty for an offset that no clock has.
std::optional<int> OffsetMinutes(std::string_view behind) {
  constexpr std::string_view kMinusSign = "\xE2\x88\x92";
  const bool isBehind = behind.starts_with('-') || behind.starts_with(kMinusSign);
  if (!isBehind && !behind.starts_with('+')) return 0;
  behind.remove_prefix(behind.starts_with(kMinusSign) ? kMinusSign.size() : 1);
  std::string figures(behind);
  if (figures.size() == 5 && figures[2] == ':') figures.erase(2, 1);
  if (!AllDigits(figures) || (figures.size() != 2 && figures.size() != 4)) return 0;
  const int hours = Digits(figures.substr(0, 2));
  const int minutes = figures.size() == 4 ? Digits(figures.substr(2)) : 0;
  constexpr int kFarthest = 14, kMinutes = 60;  // hours; Kiribati
  if (hours > kFarthest || minutes >= kMinutes) return std::nullopt;
  const int ahead = hours * kMinutes + minutes;
  return isBehind ? -ahead : ahead;
}

ObservationTime Earlier(const ObservationTime& time, std::chrono::minutes by) {
  using namespace std::chrono;
  const sys_days day{year_month_day{year(time.Year), month(static_cast<unsigned>(time.Month)),
                                    std::chrono::day(static_cast<unsigned>(time.Day))}};
  const auto at = day + hours(time.Hour) + minutes(time.Minute) - by;
  const sys_days dayOf = floor<days>(at);
  const year_month_day date{dayOf};
  ObservationTime earlier = time;
  earlier.Year = static_cast<int>(date.year());
  earlier.Month = static_cast<int>(static_cast<unsigned>(date.month()));
  earlier.Day = static_cast<int>(static_cast<unsigned>(date.day()));
  earlier.Hour = static_cast<int>((at - dayOf) / hours(1));
  earlier.Minute = static_cast<int>((at - dayOf) / minutes(1)) % 60;
  return earlier;
}

}  // namespace

std::optional<ObservationTime> ParseIsoTime(std::string_view text) {
  std::vector<int> parts = WholeNumbersIn(text);
  if (parts.size() < 4) return std::nullopt;
  // Behind the fourth number and what belongs to it, "12:00:00.0".
  constexpr std::string_view kFigures = "0123456789", kOfTheClock = "0123456789:.";
  std::size_t at = 0;
  for (int number = 1; number < 4; ++number) {
    at = text.find_first_not_of(kFigures, text.find_first_of(kFigures, at));
  }
  const std::size_t hour = text.find_first_of(kFigures, at);
  const std::size_t end = std::min(text.find_first_not_of(kOfTheClock, hour), text.size());
  const std::optional<int> ahead = OffsetMinutes(Trim(text.substr(end)));
  if (!ahead) return std::nullopt;
  const bool hasMinutes = text.substr(hour, end - hour).find(':') != std::string_view::npos;
  if (*ahead != 0 && !hasMinutes) parts.resize(4);  // the next number is the offset's
  const auto time =
      MakeTime(parts[0], parts[1], parts[2], parts[3], parts.size() > 4 ? parts[4] : 0);
  return time && *ahead != 0 ? Earlier(*time, std::chrono::minutes(*ahead)) : time;
}

namespace {

// A caption of at most so many characters, whole words as far as that leaves more than half of it,
// without what stands between its parts at its end.
std::string CutAtWord(const std::string& caption, int most) {
  std::string cut = CutTitle(caption, most);
  const bool insideWord = cut.size() < caption.size() && caption[cut.size()] != ' ';
  const std::size_t blank = cut.rfind(' ');
  if (insideWord && blank != std::string::npos && blank > cut.size() / 2) cut.resize(blank);
  const std::size_t last = cut.find_last_not_of(" ,-/");
  if (last != std::string::npos) cut.resize(last + 1);
  return cut;
}

}  // namespace

std::string Caption(const StationName& station, const ObservationTime& time) {
  std::string caption;
  const auto add = [&caption](std::string_view part) {
    if (part.empty()) return;
    if (!caption.empty()) caption += " - ";
    caption += part;
  };
  if (station.Number != 0) add(Mask(station.Number, "00000"));
  add(station.Letters);
  add(station.Name);
  std::string when = TimeText(time);
  if (caption.empty()) return when;
  const int room = when.empty() ? kMaxTitle : kMaxTitle - 2 - static_cast<int>(when.size());
  caption = CutAtWord(caption, room);
  return when.empty() ? caption : caption + "  " + when;
}

bool IsPosition(std::optional<double> lat, std::optional<double> lon) {
  return lat && lon && std::fabs(*lat) <= 90 && *lon >= -180 && *lon <= 360;
}

void SetPosition(SoundingRecord& record, std::optional<double> lat, std::optional<double> lon) {
  if (!IsPosition(lat, lon)) return;
  SetDecimalPosition(record, *lat, *lon > 180 ? *lon - 360 : *lon);
}

}  // namespace vexa::ingest
