#include "forecast/forecast_map.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "core/great_circle.h"
#include "core/numbers.h"
#include "core/station.h"
#include "diagram/wind_symbol.h"
#include "picture/clip.h"
#include "picture/layout.h"
#include "picture/text_width.h"

namespace vexa::forecast {
namespace {

constexpr double kMark = 130;   // radius of the circles, drawing units
constexpr double kReach = 240;  // of the pointer
constexpr double kLegendSize = LetterSize(Type::Note);

map::Place PlaceOf(const SoundingRecord& sounding) {
  return {sounding.LatSigned, sounding.LonSigned};
}

// The title without its time.
std::string PlaceNameOf(const Profile& profile) {
  const std::string_view title = Trim(profile.Sounding.StationTitle);
  const std::string name(title.substr(0, title.find("  ")));
  return name.empty() ? "sounding" : name;
}

std::string ShortNameOf(const Profile& profile) {
  std::string name = ShortStationName(profile.Sounding.StationTitle);
  return name.empty() ? "sounding" : name;
}

struct MapInks {
  Color Black{}, Red{}, Box{};
};

MapInks InksFor(bool onBlack) {
  return onBlack ? MapInks{{235, 235, 235}, {255, 90, 90}, {120, 200, 255}}
                 : MapInks{{0, 0, 0}, {210, 0, 0}, {0, 90, 200}};
}

void Ring(Picture& page, std::string_view tag, Point at, double radius, Color ink, double width) {
  page.Add(tag, Circle{.Center = at, .Radius = radius, .Stroke = {ink, width, LineStyle::Solid}});
}

// Main, upwind and nearby marks with their words, beside the title.
void AddLegend(Picture& page, const MapInks& inks) {
  struct Row {
    std::string_view Text;
    Color Ink;
    double Width;
  };
  const Row rows[] = {{"Main sounding", inks.Black, 44},
                      {"Upwind soundings: Red Circles", inks.Red, 24},
                      {"Nearby soundings: Black Circles", inks.Black, 24}};
  double x = page.Width() - 120;
  for (auto row = std::rbegin(rows); row != std::rend(rows); ++row) {
    x -= TextWidth(row->Text, kLegendSize);
    page.Add(
        "legend",
        Label{
            .At = {x, 160}, .Text = std::string(row->Text), .Size = kLegendSize, .Ink = row->Ink});
    x -= 140;
    Ring(page, "legend", {x, 160 - kLegendSize / 3}, kMark * 0.6, row->Ink, row->Width);
    x -= 260;
  }
}

void AddDrawing(Picture& page, const MapDrawing& drawing, const map::MapFrame& at,
                const Region& region, const MapInks& inks) {
  const Pen pen{inks.Box, 22, LineStyle::Dash};
  if (drawing.Box) {
    const Rect& box = *drawing.Box;
    page.Add("box", Polyline{.Points = {{box.Left, box.Top},
                                        {box.Right, box.Top},
                                        {box.Right, box.Bottom},
                                        {box.Left, box.Bottom},
                                        {box.Left, box.Top}},
                             .Stroke = pen});
  }
  const auto main = at.ToPage(PlaceOf(region.Main->Sounding));
  if (drawing.LineTo && main) {
    page.Add("upwind line", Polyline{.Points = {*main, *drawing.LineTo},
                                     .Stroke = {inks.Box, 30, LineStyle::Solid}});
  }
}

}  // namespace

std::string MapText(const Region& region, const MapDrawing& drawing) {
  if (!drawing.Told.empty()) return std::string(drawing.Told);
  if (region.IsManual) return std::string(kRestoreText);
  if (!region.HasUpwind()) return std::string(kNoUpwindText);
  return std::string(kAutomaticText) + std::string(kPointText);
}

std::string MapCaption(const Region& region) {
  return "Mean 1 km winds for " + Shortest(static_cast<int>(region.Near.size())) +
         " Soundings within " + Mask(region.RadiusKm, "###0") + " km of " +
         PlaceNameOf(*region.Main);
}

map::AreaMap PlotForecastMap(const ForecastMapInput& input, const Surface& on,
                             const map::MapFrame* frame) {
  const Region& region = input.Of;
  std::vector<map::MapStation> stations = {
      {PlaceOf(region.Main->Sounding), ShortNameOf(*region.Main)}};
  for (const Neighbour& one : region.Near) {
    stations.push_back({PlaceOf(one.Of->Sounding), ShortNameOf(*one.Of)});
  }
  const MapInks inks = InksFor(input.OnBlack);
  const auto symbol = [&](Picture& page, Point at, double north, std::size_t station) {
    const bool isMain = station == 0;
    const Profile& profile = isMain ? *region.Main : *region.Near[station - 1].Of;
    const bool isUpwind = !isMain && region.Near[station - 1].IsUpwind;
    const bool isBoxed =
        !isMain && std::ranges::find(input.Drawing.Boxed, station - 1) != input.Drawing.Boxed.end();
    const Color ink = isBoxed ? inks.Box : isUpwind ? inks.Red : inks.Black;
    Ring(page,
         isMain     ? "main sounding"
         : isUpwind ? "upwind sounding"
                    : "nearby sounding",
         at, isMain ? kMark * 0.8 : kMark, ink, isMain ? 44 : 24);
    if (!profile.LowWind) return;
    analysis::Wind wind = *profile.LowWind;
    wind.Dir += north;
    diagram::DrawWindSymbol(page, at, wind, diagram::SymbolOptions(input.Set, profile.Sounding),
                            {ink, 16, LineStyle::Solid});
  };
  map::AreaMap made = map::PlotAreaMap(
      {.Title = "Forecast Map",
       .Caption = MapCaption(region) + ".  " + std::string(Trim(MapText(region, input.Drawing))),
       .Stations = stations,
       .Lines = input.Lines,
       .JoinsStations = false,
       .OnBlack = input.OnBlack,
       .Symbol = symbol},
      on, frame);
  AddLegend(made.Page, inks);
  AddDrawing(made.Page, input.Drawing, made.At, region, inks);
  return made;
}

std::optional<std::size_t> NeighbourAt(const Region& region, const map::MapFrame& at,
                                       const Point& point) {
  std::optional<std::size_t> nearest;
  double least = kReach;
  for (std::size_t i = 0; i < region.Near.size(); ++i) {
    const auto place = at.ToPage(PlaceOf(region.Near[i].Of->Sounding));
    if (!place) continue;
    const double away = std::hypot(place->X - point.X, place->Y - point.Y);
    if (away >= least) continue;
    least = away;
    nearest = i;
  }
  return nearest;
}

std::vector<std::size_t> NeighboursIn(const Region& region, const map::MapFrame& at,
                                      const Rect& box) {
  const Rect ordered{std::min(box.Left, box.Right), std::min(box.Top, box.Bottom),
                     std::max(box.Left, box.Right), std::max(box.Top, box.Bottom)};
  std::vector<std::size_t> inside;
  for (std::size_t i = 0; i < region.Near.size(); ++i) {
    const auto place = at.ToPage(PlaceOf(region.Near[i].Of->Sounding));
    if (place && ordered.Contains(*place)) inside.push_back(i);
  }
  return inside;
}

std::optional<double> BearingTo(const Region& region, const map::MapFrame& at, const Point& point) {
  const auto place = at.ToPlace(point);
  if (!place) return std::nullopt;
  const SoundingRecord& main = region.Main->Sounding;
  if (DistanceKm(main.LatSigned, main.LonSigned, place->Lat, place->Lon) < 1) return std::nullopt;
  return InitialBearing(main.LatSigned, main.LonSigned, place->Lat, place->Lon);
}

}  // namespace vexa::forecast
