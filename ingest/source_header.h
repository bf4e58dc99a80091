// Headings of exchange formats: times as they write them, positions that may be unknown, and the
// caption that a sounding gets from its station and time.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/sounding_record.h"

namespace vexa::ingest {

/// Words between blanks and tabs.
std::vector<std::string_view> Tokens(std::string_view text);
/// The first of them; empty where there is none.
std::string_view FirstWord(std::string_view text);
/// All into a vector that is used again for the next line.
void TakeTokens(std::string_view text, std::vector<std::string_view>& tokens);

/// True when a text begins with, or holds, another, without regard to the case of ASCII letters.
bool StartsWithNoCase(std::string_view text, std::string_view start);
std::size_t FindNoCase(std::string_view text, std::string_view sought, std::size_t from = 0);

/// "990504/0000" or "990504/00": yymmdd/hhmm, years 00 to 49 after 2000. Empty for anything else
/// and for times that no calendar has.
std::optional<ObservationTime> ParseCompactTime(std::string_view text);

/// "00Z 04 May 1999" or "12 UTC 23 Feb 2023".
std::optional<ObservationTime> ParseWrittenTime(std::string_view text);

/// A time from its parts; empty where no calendar has it.
std::optional<ObservationTime> MakeTime(int year, int month, int day, int hour, int minute = 0);

/// A month by the first letters of its English name, 1 to 12; 0 for anything else.
int MonthNumber(std::string_view name);

/// The whole numbers of a text, "2023, 05, 22, 23:06:10" gives six.
std::vector<int> WholeNumbersIn(std::string_view text);

/// The time that ends a title, "OAX  19Z 16 Jun 2014" or "1045Z 23 Feb 2025"; unknown where none
/// does.
ObservationTime TimeInTitle(std::string_view title);

/// "1999-05-04 00:00:00", "1999-05-04T00:00Z" or "1999-05-04T05:30+05:30": year, month, day, hour,
/// minute in this order; an offset behind them is taken off, so that the time is UTC.
std::optional<ObservationTime> ParseIsoTime(std::string_view text);

/// The date "20220713" of a file's name.
std::optional<std::chrono::sys_days> DateInName(std::string_view name);

struct StationName {
  int Number = 0;         // WMO number, 0: none
  std::string Letters{};  // "OUN"
  std::string Name{};     // "Norman"
};

/// "72357 - OUN - Norman  00Z 04 May 1999", whatever is not known left out. A name that is too
/// long for a title gives way to the time.
std::string Caption(const StationName& station, const ObservationTime& time);

/// Whether both are given and lie on the earth; longitudes may go eastward all around it.
bool IsPosition(std::optional<double> lat, std::optional<double> lon);

/// Sets a position, else leaves it empty.
void SetPosition(SoundingRecord& record, std::optional<double> lat, std::optional<double> lon);

}  // namespace vexa::ingest
