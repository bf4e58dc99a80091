#include "core/station.h"

#include <algorithm>

#include "core/markers.h"
#include "core/numbers.h"
#include "core/sounding_record.h"

namespace vexa {
namespace {

constexpr double kLowestElevM = -500;
constexpr double kHighestEntry = 6000;  // the highest that the data check lets pass

enum class Kind { Number, Text, Letter };

struct FieldRow {
  StationField Field;
  std::string_view Caption;
  Kind Holds;
  double Least = 0;
  double Most = 0;
  std::string_view Letters{};  // of which one must stand
  bool Needed = true;
  bool Decimal = false;
};

constexpr std::array<FieldRow, kStationFields> kFields = {{
    {.Field = StationField::Number,
     .Caption = "Station number",
     .Holds = Kind::Number,
     .Least = 0,
     .Most = kEndOfStations - 1},
    {.Field = StationField::Ident, .Caption = "Identifier", .Holds = Kind::Text, .Needed = false},
    {.Field = StationField::Name, .Caption = "Name", .Holds = Kind::Text},
    {.Field = StationField::Region, .Caption = "Region", .Holds = Kind::Text, .Needed = false},
    {.Field = StationField::Elevation,
     .Caption = "Elevation",
     .Holds = Kind::Number,
     .Least = kLowestElevM,
     .Most = kHighestEntry},
    {.Field = StationField::Latitude,
     .Caption = "Latitude",
     .Holds = Kind::Number,
     .Most = 90,
     .Decimal = true},
    {.Field = StationField::LatHemi, .Caption = "N or S", .Holds = Kind::Letter, .Letters = "NS"},
    {.Field = StationField::Longitude,
     .Caption = "Longitude",
     .Holds = Kind::Number,
     .Most = 180,
     .Decimal = true},
    {.Field = StationField::LonHemi, .Caption = "E or W", .Holds = Kind::Letter, .Letters = "EW"},
}};

const FieldRow& RowOf(StationField field) {
  return kFields[static_cast<std::size_t>(field)];
}

std::string NumberObjection(const FieldRow& row, std::string_view text) {
  const std::optional<double> value = ParseNumber(text);
  if (!value) return "should be a number";
  if (!row.Decimal && !ParseWhole(text)) return "should be a whole number";
  if (row.Field == StationField::Elevation && *value == kNone) return {};
  if (*value >= row.Least && *value <= row.Most) return {};
  return "lies outside " + Shortest(row.Least) + " to " + Shortest(row.Most);
}

// Why a text is no value for a field; empty when it is.
std::string FieldObjection(const FieldRow& row, std::string_view text) {
  text = Trim(text);
  if (text.empty()) return row.Needed ? "is missing" : "";
  switch (row.Holds) {
    case Kind::Number:
      return NumberObjection(row, text);
    case Kind::Letter:
      if (text.size() == 1 && row.Letters.find(text) != std::string_view::npos) return {};
      return "should be " + std::string(row.Letters.substr(0, 1)) + " or " +
             std::string(row.Letters.substr(1));
    case Kind::Text:
      break;
  }
  const bool writable =
      std::ranges::none_of(text, [](char c) { return c == '"' || c == '\r' || c == '\n'; });
  return writable ? "" : "must not hold a double quote or a line end";
}

}  // namespace

std::string_view Text(StationField field) {
  return RowOf(field).Caption;
}

StationTexts TextsOf(const Station& station) {
  return {Mask(station.Number, "00000"),
          station.Ident,
          station.Name,
          station.Region,
          Shortest(station.ElevUnknown ? static_cast<int>(kNone) : station.ElevM),
          Mask(station.Lat, "0.0000"),
          station.LatHemi,
          Mask(station.Lon, "0.0000"),
          station.LonHemi};
}

std::optional<Fault> CheckStationField(StationField field, std::string_view text) {
  const std::string objection = FieldObjection(RowOf(field), text);
  if (objection.empty()) return std::nullopt;
  return Fault{kFaultInvalidValue, "CheckStationField",
               std::string(Text(field)) + ": " + objection};
}

Station UncheckedStation(const StationTexts& texts) {
  const auto text = [&texts](StationField field) {
    return std::string(Trim(texts[static_cast<std::size_t>(field)]));
  };
  const auto number = [&text](StationField field) { return ParseNumber(text(field)).value_or(0); };
  const double elevation = number(StationField::Elevation);
  return Station{.Number = ToWhole(number(StationField::Number)),
                 .Ident = text(StationField::Ident),
                 .Name = text(StationField::Name),
                 .Region = text(StationField::Region),
                 .ElevM = elevation == kNone ? 0 : ToWhole(elevation),
                 .ElevUnknown = elevation == kNone,
                 .Lat = number(StationField::Latitude),
                 .LatHemi = text(StationField::LatHemi),
                 .Lon = number(StationField::Longitude),
                 .LonHemi = text(StationField::LonHemi)};
}

Outcome<Station> StationFrom(const StationTexts& texts) {
  for (const FieldRow& row : kFields) {
    const std::string& text = texts[static_cast<std::size_t>(row.Field)];
    if (std::optional<Fault> fault = CheckStationField(row.Field, text)) return *fault;
  }
  return UncheckedStation(texts);
}

std::string StationCaption(const Station& station) {
  std::string caption = Mask(station.Number, "00000");
  if (!station.Ident.empty()) caption += " - " + station.Ident;
  if (!station.Name.empty()) caption += " - " + station.Name;
  if (!station.Region.empty()) caption += (station.Name.empty() ? " - " : ", ") + station.Region;
  return caption;
}

std::string ShortStationName(std::string_view title, int most) {
  constexpr std::string_view kBetween = " - ";
  std::string_view name = Trim(title);
  const std::size_t first = name.find(kBetween);
  if (first != std::string_view::npos && ParseWhole(name.substr(0, first))) {
    name.remove_prefix(first + kBetween.size());
  }
  for (const std::string_view end :
       {kBetween, std::string_view("  "), std::string_view("/"), std::string_view(","),
        std::string_view(";"), std::string_view("(")}) {
    name = name.substr(0, name.find(end));
  }
  return CutTitle(Trim(name), most);
}

int StationNumberInTitle(std::string_view title) {
  constexpr std::size_t kFigures = 5;
  const std::string_view text = Trim(title);
  const std::string_view first = text.substr(0, text.find(" - "));
  const bool isNumber = first.size() == kFigures && first.size() < text.size() &&
                        first.find_first_not_of("0123456789") == std::string_view::npos;
  return isNumber ? ParseWhole(first).value_or(0) : 0;
}

}  // namespace vexa
