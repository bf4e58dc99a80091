#include "download/sources.h"

#include <algorithm>
#include <cstddef>
#include <string>

#include "core/letter_case.h"
#include "core/numbers.h"

namespace vexa::download {
namespace {

enum class Kind { Time, Station };

bool IsLetter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// Stations of the United States have four letters to the world and three at home.
std::string ThreeLetters(const Request& request) {
  const std::string letters = Upper(request.Letters);
  return letters.size() == 4 && letters.front() == 'K' ? letters.substr(1) : letters;
}

std::string FourLetters(const Request& request) {
  const std::string letters = Upper(request.Letters);
  return letters.size() == 3 ? 'K' + letters : letters;
}

std::string Part(int value, std::string_view mask, bool isKnown) {
  return isKnown ? Mask(value, mask) : std::string();
}

struct Token {
  char Letter;
  Kind What;
  std::string_view Meaning;
  std::string (*Value)(const Request&);  // empty: the request does not say
};

constexpr int kCentury = 100;

const Token kTokens[] = {
    {'Y', Kind::Time, "year, four figures",
     [](const Request& r) { return Part(r.Time.Year, "0000", r.Time.Known()); }},
    {'y', Kind::Time, "year, two figures",
     [](const Request& r) { return Part(r.Time.Year % kCentury, "00", r.Time.Known()); }},
    {'M', Kind::Time, "month, two figures",
     [](const Request& r) { return Part(r.Time.Month, "00", r.Time.Known()); }},
    {'D', Kind::Time, "day, two figures",
     [](const Request& r) { return Part(r.Time.Day, "00", r.Time.Known()); }},
    {'H', Kind::Time, "hour UTC, two figures",
     [](const Request& r) { return Part(r.Time.Hour, "00", r.Time.Known()); }},
    {'N', Kind::Station, "WMO number, five figures",
     [](const Request& r) { return Part(r.Number, "00000", r.Number != 0); }},
    {'L', Kind::Station, "letters of the station in capitals, OUN", ThreeLetters},
    {'l', Kind::Station, "letters of the station in small ones, oun",
     [](const Request& r) { return Lower(ThreeLetters(r)); }},
    {'I', Kind::Station, "four letters in capitals, KOUN", FourLetters},
    {'i', Kind::Station, "four letters in small ones, koun",
     [](const Request& r) { return Lower(FourLetters(r)); }},
};

const Token* FindToken(char letter) {
  const auto* token = std::ranges::find(kTokens, letter, &Token::Letter);
  return token == std::end(kTokens) ? nullptr : token;
}

bool Needs(const Source& source, Kind kind) {
  for (std::size_t at = source.Address.find('@'); at != std::string::npos;
       at = source.Address.find('@', at + 1)) {
    if (at + 1 == source.Address.size()) return false;
    const Token* token = FindToken(source.Address[at + 1]);
    if (token != nullptr && token->What == kind) return true;
  }
  return false;
}

Fault BadAddress(const Source& source, const std::string& reason) {
  return Fault{kFaultBadUrl, "AddressOf", source.Name + ": " + reason};
}

// Letters come from the user and must not reach beyond their place in the address.
std::string Escaped(std::string_view text) {
  constexpr std::string_view kFigures = "0123456789ABCDEF";
  std::string escaped;
  for (const char c : text) {
    if (IsLetter(c) || IsDigit(c) || c == '-' || c == '_' || c == '.') {
      escaped += c;
      continue;
    }
    const auto byte = static_cast<unsigned char>(c);
    escaped += '%';
    escaped += kFigures[byte >> 4];
    escaped += kFigures[byte & 15U];
  }
  return escaped;
}

}  // namespace

std::vector<TokenRow> Tokens() {
  static constexpr std::string_view kNames = "@Y@y@M@D@H@N@L@l@I@i";
  std::vector<TokenRow> rows;
  for (std::size_t i = 0; i < std::size(kTokens); ++i) {
    rows.push_back({kNames.substr(2 * i, 2), kTokens[i].Meaning});
  }
  return rows;
}

Outcome<std::string> AddressOf(const Source& source, const Request& request) {
  const std::string& pattern = source.Address;
  if (!pattern.starts_with("http://") && !pattern.starts_with("https://")) {
    return BadAddress(source, "the address begins with neither http:// nor https://");
  }
  std::string address;
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    if (pattern[i] != '@') {
      address += pattern[i];
      continue;
    }
    const std::string word = pattern.substr(i, 2);
    const Token* token = word.size() == 2 ? FindToken(word[1]) : nullptr;
    if (token == nullptr) return BadAddress(source, "there is no token \"" + word + '"');
    const std::string value = token->Value(request);
    if (value.empty()) {
      return BadAddress(source, std::string(token->Meaning) + " (" + word + "): not given");
    }
    address += Escaped(value);
    ++i;
  }
  return address;
}

bool NeedsStation(const Source& source) {
  return Needs(source, Kind::Station);
}

bool NeedsTime(const Source& source) {
  return Needs(source, Kind::Time);
}

bool HasHour(const Source& source, int hour) {
  const std::string& hours = source.Hours;
  if (Trim(hours).empty()) return true;
  for (std::size_t at = 0; at < hours.size();) {
    const std::size_t end = std::min(hours.find(' ', at), hours.size());
    if (ParseWhole(std::string_view(hours).substr(at, end - at)) == hour) return true;
    at = end + 1;
  }
  return false;
}

Request RequestFor(std::string_view station, const ObservationTime& time) {
  const std::string_view text = Trim(station);
  Request request{.Time = time};
  const bool isNumber = !text.empty() && std::ranges::all_of(text, IsDigit);
  constexpr std::size_t kLongest = 5;
  if (isNumber && text.size() <= kLongest) {
    request.Number = ParseWhole(text).value_or(0);
  } else {
    request.Letters = Upper(text);
  }
  return request;
}

std::string FileStem(const Request& request) {
  std::string stem = request.Number != 0 ? Mask(request.Number, "00000") : request.Letters;
  for (char& c : stem) {
    if (!IsLetter(c) && !IsDigit(c)) c = '_';
  }
  if (stem.empty()) stem = "sounding";
  const ObservationTime& time = request.Time;
  if (!time.Known()) return stem;
  return stem + '_' + Mask(time.Year, "0000") + Mask(time.Month, "00") + Mask(time.Day, "00") +
         Mask(time.Hour, "00");
}

}  // namespace vexa::download
