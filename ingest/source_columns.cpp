#include "ingest/source_columns.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "core/numbers.h"
#include "core/plain_number.h"
#include "core/units.h"

namespace vexa::ingest {
namespace {

struct QuantityName {
  std::string_view Letters;  // in small letters, nothing in between
  Quantity What;
};

constexpr QuantityName kNames[] = {
    {"pressure", Quantity::Press},
    {"press", Quantity::Press},
    {"pres", Quantity::Press},
    {"prs", Quantity::Press},
    {"p", Quantity::Press},
    {"pc", Quantity::Press},
    {"pm", Quantity::Press},
    {"height", Quantity::Height},
    {"hght", Quantity::Height},
    {"hgt", Quantity::Height},
    {"heightmsl", Quantity::Height},
    {"geopotentialheight", Quantity::Height},
    {"geopoalt", Quantity::Height},
    {"geopotalt", Quantity::Height},
    {"gph", Quantity::Height},
    {"altitude", Quantity::Height},
    {"alt", Quantity::Height},
    {"z", Quantity::Height},
    {"temperature", Quantity::Temp},
    {"airtemperature", Quantity::Temp},
    {"temp", Quantity::Temp},
    {"tmpc", Quantity::Temp},
    {"tdry", Quantity::Temp},
    {"t", Quantity::Temp},
    {"dewpointtemperature", Quantity::Dewpt},
    {"dewtemperature", Quantity::Dewpt},
    {"dewpoint", Quantity::Dewpt},
    {"dewpt", Quantity::Dewpt},
    {"dewp", Quantity::Dewpt},
    {"dwpt", Quantity::Dewpt},
    {"dwpc", Quantity::Dewpt},
    {"td", Quantity::Dewpt},
    {"depression", Quantity::Depression},
    {"dewpointdepression", Quantity::Depression},
    {"relativehumidity", Quantity::Humidity},
    {"humidity", Quantity::Humidity},
    {"relh", Quantity::Humidity},
    {"rh", Quantity::Humidity},
    {"winddirection", Quantity::Direction},
    {"winddir", Quantity::Direction},
    {"direction", Quantity::Direction},
    {"dir", Quantity::Direction},
    {"wdir", Quantity::Direction},
    {"drct", Quantity::Direction},
    {"wd", Quantity::Direction},
    {"windspeed", Quantity::Speed},
    {"speed", Quantity::Speed},
    {"spd", Quantity::Speed},
    {"wspd", Quantity::Speed},
    {"sknt", Quantity::Speed},
    {"ws", Quantity::Speed},
    {"ucmp", Quantity::East},
    {"uwind", Quantity::East},
    {"uwin", Quantity::East},
    {"u", Quantity::East},
    {"vcmp", Quantity::North},
    {"vwind", Quantity::North},
    {"vwin", Quantity::North},
    {"v", Quantity::North},
};

constexpr double kCelsiusOfKelvin = 273.15;  // what sources mean by K
constexpr int kDecimals = 2;                 // of values that are worked out from others
constexpr double kFoot = 0.3048;
constexpr double kFahrenheitOffset = -32 * 5 / 9.0;

struct Unit {
  std::string_view Name;  // in small letters
  char Kind;              // p ressure, l ength, t emperature, h umidity, a ngle, s peed
  Scale ToOurs{};
};

constexpr Unit kUnits[] = {
    {"hpa", 'p', {}},
    {"mb", 'p', {}},
    {"mbar", 'p', {}},
    {"pa", 'p', {.Over = 100}},
    {"m", 'l', {}},
    {"gpm", 'l', {}},
    {"km", 'l', {1000}},
    {"ft", 'l', {kFoot}},
    {"feet", 'l', {kFoot}},
    {"c", 't', {}},
    {"degc", 't', {}},
    {"oc", 't', {}},
    {"k", 't', {.Plus = -kCelsiusOfKelvin}},
    {"f", 't', {.Times = 5, .Over = 9, .Plus = kFahrenheitOffset}},
    {"degf", 't', {.Times = 5, .Over = 9, .Plus = kFahrenheitOffset}},
    {"%", 'h', {}},
    {"percent", 'h', {}},
    {"deg", 'a', {}},
    {"degree", 'a', {}},
    {"degrees", 'a', {}},
    {"kt", 's', {}},
    {"kts", 's', {}},
    {"knot", 's', {}},
    {"knots", 's', {}},
    {"m/s", 's', {kMsToKnot}},
    {"ms", 's', {kMsToKnot}},
    {"ms-1", 's', {kMsToKnot}},
    {"km/h", 's', {.Times = kMsToKnot, .Over = 3.6}},
};

// What a row says of other quantities than those of a level.
struct OtherValues {
  std::optional<double> Depression{}, Humidity{}, East{}, North{};
};

// Kind of unit and where the value goes, in the order of Quantity.
struct QuantityRow {
  char UnitKind;
  std::optional<double> SourceLevel::*Into = nullptr;
  Element What{};  // of what goes into the level
  std::optional<double> OtherValues::*IntoOther = nullptr;
};
constexpr std::array<QuantityRow, kQuantities> kRows = {
    {{'p', &SourceLevel::Press, Element::Press},
     {'l', &SourceLevel::Height, Element::Height},
     {'t', &SourceLevel::Temp, Element::Temp},
     {'t', &SourceLevel::Dewpt, Element::Dewpt},
     {.UnitKind = 't', .IntoOther = &OtherValues::Depression},
     {.UnitKind = 'h', .IntoOther = &OtherValues::Humidity},
     {'a', &SourceLevel::Dir, Element::Direction},
     {'s', &SourceLevel::Spd, Element::Speed},
     {.UnitKind = 's', .IntoOther = &OtherValues::East},
     {.UnitKind = 's', .IntoOther = &OtherValues::North}}};

const QuantityRow& RowOf(Quantity what) {
  return kRows[static_cast<std::size_t>(what)];
}

std::string Small(std::string_view text) {
  std::string small;
  for (const char c : text) small += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  return small;
}

// A unit without blanks, degree signs in two encodings and full stops.
std::string UnitLetters(std::string_view text) {
  std::string letters;
  for (const char c : Small(text)) {
    const bool isUnit =
        (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '/' || c == '%' || c == '-';
    if (isUnit) letters += c;
  }
  return letters;
}

struct NameAndUnit {
  std::string_view Name, Unit;
};

// "temperature_C", "Press (hPa)", "Speed[m/s]"
NameAndUnit Separate(std::string_view heading) {
  const std::size_t bracket = heading.find_first_of("([");
  if (bracket != std::string_view::npos) {
    const std::size_t end = heading.find_first_of(")]", bracket);
    return {heading.substr(0, bracket),
            heading.substr(bracket + 1, end == std::string_view::npos ? end : end - bracket - 1)};
  }
  const std::size_t line = heading.rfind('_');
  if (line != std::string_view::npos) {
    const std::string unit = UnitLetters(heading.substr(line + 1));
    if (std::ranges::find(kUnits, unit, &Unit::Name) != std::end(kUnits)) {
      return {heading.substr(0, line), heading.substr(line + 1)};
    }
  }
  return {heading, {}};
}

// Other quantities than those of a level have no element and no count of refusals.
void ReadOther(double number, const Scale& scale, std::optional<double>& into) {
  constexpr double kLargest = 300;  // per cent, degrees, knots
  const double value = scale(number);
  if (std::fabs(value) <= kLargest) into = value;
}

std::string_view FieldText(std::string_view field) {
  return field;
}
std::string_view FieldText(const RowWord& word) {
  return word.Text;
}

// The number of a field where it is known without reading its text.
std::optional<double> KnownNumber(std::string_view) {
  return std::nullopt;
}
std::optional<double> KnownNumber(const RowWord& word) {
  return word.Number;
}

// False for a field that is neither a number nor a marker.
template <class Field>
bool ReadPlanned(const Field& field, const QuantityColumn& column, Refusals& refused,
                 SourceLevel& into, OtherValues& others) {
  const QuantityRow& row = RowOf(column.What);
  std::optional<double> number = KnownNumber(field);
  if (row.Into != nullptr) {
    std::optional<double>& value = into.*row.Into;
    if (!number) return ReadElement(FieldText(field), row.What, refused, value, column.ToOurs);
    ReadElement(*number, row.What, refused, value, column.ToOurs);
    return true;
  }
  std::optional<double>& value = others.*row.IntoOther;
  if (!number) number = ParseNumber(FieldText(field));
  if (number) {
    ReadOther(*number, column.ToOurs, value);
    return true;
  }
  // As a temperature: only its notion of a marker is wanted.
  Refusals unused;
  return ReadElement(FieldText(field), Element::Temp, unused, value);
}

// Dew point and wind from what stands in their place.
void FillFrom(const OtherValues& others, SourceLevel& into) {
  if (into.Temp && !into.Dewpt && others.Depression) {
    into.Dewpt = Rounded(*into.Temp - *others.Depression, kDecimals);
  }
  if (into.Temp && !into.Dewpt && others.Humidity) {
    into.Dewpt = DewptFromHumidity(*into.Temp, *others.Humidity);
  }
  if ((!into.Spd || !into.Dir) && others.East && others.North) {
    into.Spd = Rounded(std::hypot(*others.East, *others.North), kDecimals);
    const double from = std::atan2(-*others.East, -*others.North) * 180 / std::numbers::pi;
    into.Dir = Rounded(from < 0 ? from + 360 : from, kDecimals);
  }
}

template <class Field>
std::optional<std::string> ReadFields(std::span<const Field> fields,
                                      std::span<const QuantityColumn> plan, Refusals& refused,
                                      SourceLevel& into) {
  into = {};
  OtherValues others;
  for (const QuantityColumn& column : plan) {
    if (column.Column >= fields.size()) continue;
    const Field& field = fields[column.Column];
    if (!ReadPlanned(field, column, refused, into, others))
      return std::string(Trim(FieldText(field)));
  }
  FillFrom(others, into);
  return std::nullopt;
}

}  // namespace

std::optional<Quantity> QuantityNamed(std::string_view name) {
  std::string letters;
  for (const char c : Small(name)) {
    if (c >= 'a' && c <= 'z') letters += c;
  }
  const auto* row = std::ranges::find(kNames, std::string_view(letters), &QuantityName::Letters);
  if (row == std::end(kNames)) return std::nullopt;
  return row->What;
}

std::optional<QuantityColumn> PlanColumn(std::size_t column, std::string_view name,
                                         std::string_view unit) {
  const NameAndUnit parts = Separate(name);
  const std::optional<Quantity> what = QuantityNamed(parts.Name);
  if (!what) return std::nullopt;
  const std::string letters = UnitLetters(unit.empty() ? parts.Unit : unit);
  QuantityColumn plan{.Column = column, .What = *what};
  if (letters.empty()) return plan;
  const auto* known = std::ranges::find_if(kUnits, [&](const Unit& row) {
    return row.Name == letters && row.Kind == RowOf(*what).UnitKind;
  });
  if (known == std::end(kUnits)) return std::nullopt;
  plan.ToOurs = known->ToOurs;
  if (*what == Quantity::Depression) plan.ToOurs.Plus = 0;
  plan.HasUnit = true;
  return plan;
}

std::vector<QuantityColumn> PlanColumns(std::span<const std::string_view> names,
                                        std::span<const std::string_view> units) {
  std::vector<QuantityColumn> plan;
  for (std::size_t i = 0; i < names.size(); ++i) {
    const std::optional<QuantityColumn> column =
        PlanColumn(i, names[i], i < units.size() ? units[i] : std::string_view());
    if (column && !Holds(plan, column->What)) plan.push_back(*column);
  }
  return plan;
}

bool Holds(std::span<const QuantityColumn> plan, Quantity what) {
  return std::ranges::find(plan, what, &QuantityColumn::What) != plan.end();
}

void TakeWords(std::string_view line, std::vector<RowWord>& words) {
  const auto isBlank = [](char c) { return c <= ' ' && (c == ' ' || c == '\t'); };
  words.clear();
  const char* at = line.data();
  const char* const end = at + line.size();
  while (true) {
    while (at != end && isBlank(*at)) ++at;
    if (at == end) return;
    const char* const begin = at;
    std::optional<double> number = TakePlainNumber(at, end);
    if (at != end && !isBlank(*at)) {
      number.reset();
      while (at != end && !isBlank(*at)) ++at;
    }
    words.push_back({{begin, static_cast<std::size_t>(at - begin)}, number});
  }
}

std::optional<std::string> ReadRow(std::span<const std::string_view> fields,
                                   std::span<const QuantityColumn> plan, Refusals& refused,
                                   SourceLevel& into) {
  return ReadFields(fields, plan, refused, into);
}

std::optional<std::string> ReadRow(std::span<const RowWord> words,
                                   std::span<const QuantityColumn> plan, Refusals& refused,
                                   SourceLevel& into) {
  return ReadFields(words, plan, refused, into);
}

std::optional<double> DewptFromHumidity(double temp, double humidity) {
  if (humidity <= 0) return std::nullopt;
  // Magnus over water; Sonntag (1990).
  constexpr double kSlope = 17.62, kBase = 243.12;  // 1, °C
  constexpr double kSaturated = 100;
  if (humidity >= kSaturated) return temp;
  const double exponent = std::log(humidity / kSaturated) + kSlope * temp / (kBase + temp);
  return Rounded(kBase * exponent / (kSlope - exponent), kDecimals);
}

std::vector<std::string_view> SplitFields(std::string_view line, char separator) {
  std::vector<std::string_view> fields;
  while (true) {
    const std::size_t end = line.find(separator);
    fields.push_back(Trim(line.substr(0, end)));
    if (end == std::string_view::npos) return fields;
    line.remove_prefix(end + 1);
  }
}

}  // namespace vexa::ingest
