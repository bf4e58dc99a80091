#include "map/area_map.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include "core/numbers.h"
#include "picture/clip.h"
#include "picture/label_room.h"
#include "picture/layout.h"
#include "picture/plot_page.h"
#include "picture/text_width.h"

namespace vexa::map {
namespace {

constexpr std::string_view kTitle = "title";
constexpr std::string_view kMap = "map";
constexpr double kNote = LetterSize(Type::Note);

struct MapInks {
  Color Ink{}, Faint{};
  Pen Coast{}, Border{}, State{}, Grid{}, Line{}, Frame{};
};

MapInks InksFor(bool black) {
  MapInks inks;
  inks.Ink = OnPaper(black).Ink;
  inks.Faint = black ? Color{150, 150, 150} : Color{110, 110, 110};
  inks.Coast = {black ? Color{120, 170, 220} : Color{40, 90, 150}, 14, LineStyle::Solid};
  inks.Border = {black ? Color{170, 150, 120} : Color{130, 105, 70}, 10, LineStyle::Solid};
  inks.State = {black ? Color{110, 100, 85} : Color{185, 170, 145}, 7, LineStyle::Solid};
  inks.Grid = {black ? Color{60, 60, 60} : Color{215, 215, 215}, 5, LineStyle::Solid};
  inks.Line = {black ? Color{255, 170, 90} : Color{200, 80, 0}, 24, LineStyle::Solid};
  inks.Frame = {inks.Ink, 14, LineStyle::Solid};
  return inks;
}

class Drawing : PlotPage {
 public:
  Drawing(const AreaMapInput& input, const Surface& on, const MapFrame* frame)
      : PlotPage(on, OnPaper(input.OnBlack)), input_(input), inks_(InksFor(input.OnBlack)) {
    constexpr RegionRow kRows[] = {
        {.Name = kTitle, .At = vexa::Place::Above, .LeastHeight = 480},
        {.Name = kMap, .At = vexa::Place::Main, .LeastWidth = 2000, .LeastHeight = 2000}};
    layout_ = CutPage(on, kRows);
    const Rect* main = layout_.Find(kMap);
    on_ = main != nullptr ? *main : layout_.Page;
    if (frame != nullptr && frame->IsValid()) {
      at_ = *frame;
    } else {
      std::vector<Place> places;
      for (const MapStation& station : input.Stations) places.push_back(station.At);
      at_ = MapFrame(places, on_);
    }
  }

  AreaMap Draw() && {
    if (const Rect* title = layout_.Find(kTitle)) {
      Text("title", {title->Left + 60, title->Top + 160}, input_.Title, LetterSize(Type::Title),
           AnchorX::Left, inks_.Ink, true);
      Text("caption", {title->Left + 60, title->Top + 390}, input_.Caption, kNote, AnchorX::Left,
           inks_.Faint);
    }
    if (at_.IsValid()) {
      Graticule();
      for (const MapLine& line : input_.Lines) Lines(line);
      Stations();
    }
    Line("frame", OutlineOf(on_), inks_.Frame);
    return {std::move(Page), std::move(at_)};
  }

 private:
  // A line of places in pieces on the map. A step farther than the map is large leads around the
  // globe and is no part of the line.
  void Path(std::string_view tag, const std::vector<Place>& places, const Pen& pen) {
    const double most = 3 * (on_.Width() + on_.Height());
    std::vector<Point> run;
    const auto close = [&] {
      for (auto& piece : ClipPolyline(run, on_)) Line(tag, std::move(piece), pen);
      run.clear();
    };
    for (const Place& place : places) {
      const std::optional<Point> at = at_.ToPage(place);
      const bool breaks =
          !at || (!run.empty() && std::hypot(at->X - run.back().X, at->Y - run.back().Y) > most);
      if (breaks) close();
      if (at) run.push_back(*at);
    }
    close();
  }

  void Lines(const MapLine& line) {
    switch (line.Kind) {
      case LineKind::Coast:
        return Path("coast", line.Points, inks_.Coast);
      case LineKind::Border:
        return Path("border", line.Points, inks_.Border);
      case LineKind::State:
        return Path("state", line.Points, inks_.State);
    }
  }

  // Lines of latitude and longitude that are so far apart that some ten cross the map.
  void Graticule() {
    const double kmAcross = std::max(on_.Width(), on_.Height()) / at_.PerKm();
    double step = 30;
    for (const double finer : {20.0, 10.0, 5.0, 2.0, 1.0, 0.5}) {
      if (kmAcross / 111 < 8 * step) step = finer;
    }
    constexpr double kAlong = 1;  // degrees between two points of a line
    for (double lat = -90 + step; lat < 90; lat += step) {
      std::vector<Place> line;
      for (double lon = -180; lon <= 180; lon += kAlong) line.push_back({lat, lon});
      Path("graticule", line, inks_.Grid);
    }
    for (double lon = -180; lon < 180; lon += step) {
      std::vector<Place> line;
      for (double lat = -89; lat <= 89; lat += kAlong) line.push_back({lat, lon});
      Path("graticule", line, inks_.Grid);
    }
  }

  void Stations() {
    LabelRoom room(on_);
    std::vector<Place> line;
    for (const MapStation& station : input_.Stations) line.push_back(station.At);
    if (input_.JoinsStations) Path("section line", line, inks_.Line);
    for (std::size_t i = 0; i < input_.Stations.size(); ++i) {
      const MapStation& station = input_.Stations[i];
      const std::optional<Point> at = at_.ToPage(station.At);
      if (!at || !on_.Contains(*at)) continue;
      Page.Add("station mark", Circle{.Center = *at, .Radius = 42, .Fill = {inks_.Ink}});
      if (input_.Symbol) input_.Symbol(Page, *at, at_.NorthAt(station.At), i);
      const double width = TextWidth(station.Name, kNote);
      room.Take({at->X - 60, at->Y - 60, at->X + 60, at->Y + 60});
      if (const auto middle = room.Beside(*at, width, kNote, 90)) {
        Text("station name", *middle, station.Name, kNote, AnchorX::Center, inks_.Ink);
      }
    }
  }

  const AreaMapInput& input_;
  MapInks inks_;
  PageLayout layout_{};
  Rect on_{};
  MapFrame at_{};
};

}  // namespace

AreaMap PlotAreaMap(const AreaMapInput& input, const Surface& on, const MapFrame* frame) {
  return Drawing(input, on, frame).Draw();
}

}  // namespace vexa::map
