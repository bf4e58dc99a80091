#include "program/section_map.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <optional>
#include <set>
#include <utility>

#include "core/numbers.h"
#include "diagram/wind_symbol.h"
#include "program/shipped_map.h"

namespace vexa {
namespace {

using crosssection::Column;
using crosssection::SectionKind;

constexpr std::string_view kMapLevels[] = {"surface", "925 mb", "850 mb", "700 mb",
                                           "500 mb",  "300 mb", "200 mb"};
constexpr double kMapPressures[] = {0, 925, 850, 700, 500, 300, 200};

double MapLevel(const Program& program) {
  const double press = program.Displays.Of<SectionView>().MapPress;
  return static_cast<double>(std::ranges::find(kMapPressures, press) - std::begin(kMapPressures));
}

Changes SetMapLevel(Program& program, double place) {
  SectionViewOf(program).MapPress = kMapPressures[static_cast<std::size_t>(place)];
  return {};
}

constexpr ControlRow kMapControls[] = {{.Name = "cboMapLevel",
                                        .Text = "Winds at",
                                        .Kind = ControlKind::Choice,
                                        .Get = MapLevel,
                                        .Set = SetMapLevel,
                                        .Words = kMapLevels}};

std::optional<analysis::Wind> MapWindOf(const Column& column, double press) {
  const analysis::Sample height = press > 0
                                      ? SampleAt(column.Levels, press, analysis::Quantity::Height)
                                      : analysis::Sample{column.Ground(), analysis::Found::Value};
  if (!height.Ok()) return std::nullopt;
  const analysis::WindSample wind = analysis::WindAtHeight(column.Sounding, height.Value);
  if (!wind.Ok()) return std::nullopt;
  return wind.Value;
}

map::Place PlaceOf(const Column& column) {
  return {column.Sounding.LatSigned, column.Sounding.LonSigned};
}

void AddColumn(const Column& column, bool isIn, std::vector<SectionStation>& stations) {
  if (!column.HasPosition() || column.IsInterpolated) return;
  auto known = std::ranges::find(stations, PlaceOf(column), &SectionStation::At);
  if (known == stations.end()) {
    known = stations.insert(
        stations.end(), {.At = PlaceOf(column), .Name = ShortName(column, SectionKind::Distance)});
  }
  known->Columns.push_back(&column);
  known->IsIn = known->IsIn || isIn;
}

Picture NoPlaces(const Surface& on, bool black) {
  Picture page(on.Width, on.Height, black ? Color{0, 0, 0} : Color{255, 255, 255});
  page.Add("sentence", Label{.At = {300, 600},
                             .Text = "The position of no sounding of the section is known.",
                             .Size = LetterSize(Type::Value),
                             .Ink = black ? Color{235, 235, 235} : Color{20, 20, 20}});
  return page;
}

}  // namespace

std::vector<SectionStation> StationsOf(const SectionView& view) {
  std::vector<SectionStation> stations;
  for (const Column& column : view.Of.Columns) AddColumn(column, true, stations);
  for (const Column& column : view.Aside) AddColumn(column, false, stations);
  return stations;
}

std::string PickText(const SectionView& view) {
  const std::vector<SectionStation> stations = StationsOf(view);
  const auto in = std::ranges::count(stations, true, &SectionStation::IsIn);
  return Shortest(static_cast<int>(in)) + " of " + Shortest(static_cast<int>(stations.size())) +
         " stations in the section";
}

std::span<const ControlRow> SectionMapControls() {
  return kMapControls;
}

map::AreaMap MapOfSection(const DisplayInput& from, const Surface& on, const map::MapFrame* frame,
                          const std::vector<map::Place>& laid) {
  const SectionView& kept = from.In.Displays.Of<SectionView>();
  std::optional<SectionView> made;
  if (kept.Of.Columns.empty() && kept.Aside.empty()) made = SectionViewOnce(from.In);
  const SectionView& view = made ? *made : kept;
  const std::vector<SectionStation> stations = StationsOf(view);
  const bool black = view.Set.Background == ScreenColor::Black;
  if (stations.empty()) return {.Page = NoPlaces(on, black)};
  std::vector<map::MapStation> shown;
  for (const SectionStation& station : stations) {
    shown.push_back({station.At, station.Name, !station.IsIn});
  }
  ViewSettings look = from.Set;
  look.Speed = view.Set.Speed;
  const auto symbol = [&](Picture& page, Point at, double north, std::size_t station) {
    const Column& column = *stations[station].Columns.front();
    const bool isHandedOver = std::ranges::any_of(
        stations[station].Columns, [&](const Column* one) { return one->Order == view.OnMap; });
    if (isHandedOver) {
      page.Add("station shown",
               Circle{.Center = at,
                      .Radius = 130,
                      .Stroke = {black ? Color{255, 170, 90} : Color{200, 80, 0}, 24}});
    }
    std::optional<analysis::Wind> wind = MapWindOf(column, kept.MapPress);
    if (!wind) return;
    wind->Dir += north;
    const Pen pen{black ? Color{235, 235, 235} : Color{20, 20, 20}, 14, LineStyle::Solid};
    diagram::DrawWindSymbol(page, at, *wind, diagram::SymbolOptions(look, column.Sounding), pen);
  };
  const std::string level(kMapLevels[static_cast<std::size_t>(MapLevel(from.In))]);
  return map::PlotAreaMap(
      {.Title = "Area Map Sounding Display",
       .Caption = "Winds at " + level + " in " + std::string(Word(view.Set.Speed)) + ".  " +
                  PickText(view) + ".  " + std::string(kMapOrigin),
       .Stations = shown,
       .Lines = ShippedMapLines(),
       .JoinsStations = view.Of.Kind == SectionKind::Distance,
       .Line = laid,
       .OnBlack = black,
       .Symbol = symbol},
      on, frame);
}

Picture PlotSectionMap(const DisplayInput& from, const Surface& on) {
  return MapOfSection(from, on).Page;
}

namespace commands {

void PickStation(Program& program, const map::Place& at) {
  SectionView& view = SectionViewOf(program);
  const std::vector<SectionStation> stations = StationsOf(view);
  const auto station = std::ranges::find(stations, at, &SectionStation::At);
  if (station == stations.end()) return;
  for (const Column* column : station->Columns) {
    station->IsIn ? static_cast<void>(view.Out.insert(column->Order))
                  : static_cast<void>(view.Out.erase(column->Order));
  }
  ArrangeSection(program);
}

bool PickAlong(Program& program, const map::Place& from, const map::Place& to, double withinKm) {
  SectionView& view = SectionViewOf(program);
  std::set<int> out;
  const SectionStation* first = nullptr;
  double earliest = 0;
  int in = 0;
  const std::vector<SectionStation> stations = StationsOf(view);
  for (const SectionStation& station : stations) {
    const crosssection::LinePlace place = crosssection::PlaceOnLine(
        {from.Lat, from.Lon}, {to.Lat, to.Lon}, {station.At.Lat, station.At.Lon});
    if (place.BesideKm > withinKm) {
      for (const Column* column : station.Columns) out.insert(column->Order);
      continue;
    }
    if (in++ == 0 || place.AlongKm < earliest) {
      earliest = place.AlongKm;
      first = &station;
    }
  }
  if (in < 2) return false;
  const map::Place begin = first->At;
  view.Out = std::move(out);
  view.Kind = SectionKind::Distance;
  ArrangeSection(program);
  const std::vector<Column>& columns = view.Of.Columns;
  if (columns.size() > 1 && PlaceOf(columns.back()) == begin) TurnSection(program);
  return true;
}

void PickAllStations(Program& program) {
  SectionViewOf(program).Out.clear();
  ArrangeSection(program);
}

void PickSpan(Program& program, const std::optional<ObservationTime>& from,
              const std::optional<ObservationTime>& until) {
  SectionView& view = SectionViewOf(program);
  view.Span.From = from;
  view.Span.Until = until;
  // Of more than a section takes not all are loaded.
  const bool isAll = view.IsDataset || program.Listed.Size() <= crosssection::kMostColumns;
  isAll ? ArrangeSection(program) : static_cast<void>(ReadSectionAgain(program));
}

}  // namespace commands

}  // namespace vexa
