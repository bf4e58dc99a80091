// Where soundings come from: each source is an address with tokens for station, date and hour.
// Tokens begin with @ and are case-sensitive, since a month is @M and a minute is none of them.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/fault.h"
#include "core/sounding_record.h"

namespace vexa::download {

/// One row of the file of sources.
struct Source {
  std::string Name{};
  std::string Address{};  // with tokens
  std::string Hours{};    // "00 12": hours at which it has soundings; empty: any
  std::string Note{};     // what it returns and when it was last known good
  bool operator==(const Source&) const = default;
};

/// What a sounding is asked for by.
struct Request {
  int Number = 0;         // WMO number, 0: none
  std::string Letters{};  // "OUN" or "KOUN"
  ObservationTime Time{};
  bool operator==(const Request&) const = default;
};

/// What a token stands for, for help texts and the editor of sources.
struct TokenRow {
  std::string_view Token;
  std::string_view Meaning;
};
std::vector<TokenRow> Tokens();

/// The address of a request: every token replaced, months, days and hours with their leading zero,
/// letters made safe for an address. Fault 35752 for an address that is neither http nor https, for
/// a token that there is not, and for one whose value the request lacks; the detail names it.
Outcome<std::string> AddressOf(const Source& source, const Request& request);

/// True when the address has a token of this kind.
bool NeedsStation(const Source& source);
bool NeedsTime(const Source& source);

/// True when the source has soundings of this hour, as far as its row says.
bool HasHour(const Source& source, int hour);

/// A station as a user types it, "72357", "OUN" or "koun": figures are the number, else letters.
Request RequestFor(std::string_view station, const ObservationTime& time);

/// A name for the file of a request: "72357_1999050400".
std::string FileStem(const Request& request);

}  // namespace vexa::download
