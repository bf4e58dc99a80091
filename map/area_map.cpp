#include "map/area_map.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <optional>
#include <utility>
#include <variant>

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
constexpr double kBesideLine = 30;  // that names keep from lines
constexpr double kFine = 8;         // units between two points of a line that nobody tells apart
constexpr double kStatesBelowKm = 7000;  // across the map; wider ones have no state lines

struct MapInks {
  Color Paper{}, Ink{}, Faint{};
  Pen Coast{}, Border{}, State{}, Grid{}, Line{}, Laid{}, Frame{};
};

MapInks InksFor(bool black) {
  MapInks inks;
  inks.Paper = OnPaper(black).Paper;
  inks.Ink = OnPaper(black).Ink;
  inks.Faint = black ? Color{150, 150, 150} : Color{110, 110, 110};
  inks.Coast = {black ? Color{120, 170, 220} : Color{40, 90, 150}, 14, LineStyle::Solid};
  inks.Border = {black ? Color{170, 150, 120} : Color{130, 105, 70}, 10, LineStyle::Solid};
  inks.State = {black ? Color{110, 100, 85} : Color{185, 170, 145}, 7, LineStyle::Solid};
  inks.Grid = {black ? Color{60, 60, 60} : Color{215, 215, 215}, 5, LineStyle::Solid};
  inks.Line = {black ? Color{255, 170, 90} : Color{200, 80, 0}, 24, LineStyle::Solid};
  inks.Laid = {inks.Line.Ink, 18, LineStyle::Dash};
  inks.Frame = {inks.Ink, 14, LineStyle::Solid};
  return inks;
}

// What part of the globe a map shows, about, by which most lines are passed over: projecting all of
// them takes longer than everything else.
class Shown {
 public:
  Shown(const MapFrame& map, const Rect& on) {
    constexpr int kSteps = 24;
    std::vector<Place> places;
    for (int i = 0; i <= kSteps; ++i) {
      for (int k = 0; k <= kSteps; ++k) {
        const auto place =
            map.ToPlace({on.Left + on.Width() * i / kSteps, on.Top + on.Height() * k / kSteps});
        if (!place) return;  // beyond the globe: all of it may be on the map
        places.push_back(*place);
      }
    }
    middle_ = places[places.size() / 2].Lon;
    south_ = 90;
    north_ = -90;
    for (const Place& place : places) {
      south_ = std::min(south_, place.Lat);
      north_ = std::max(north_, place.Lat);
      beside_ = std::max(beside_, std::fabs(FromMiddle(place.Lon)));
    }
    // Between two samples there may be a little more.
    const double more = 1 + 2 * (north_ - south_) / kSteps;
    south_ -= more;
    north_ += more;
    beside_ += 1 + 4 * beside_ / kSteps;
    isLimited_ = true;
  }

  bool MayHold(const std::vector<Place>& line) const {
    if (!isLimited_) return true;
    bool isSouth = true, isNorth = true, isWest = true, isEast = true;
    for (const Place& place : line) {
      isSouth = isSouth && place.Lat < south_;
      isNorth = isNorth && place.Lat > north_;
      isWest = isWest && FromMiddle(place.Lon) < -beside_;
      isEast = isEast && FromMiddle(place.Lon) > beside_;
    }
    return !isSouth && !isNorth && !isWest && !isEast;
  }

 private:
  double FromMiddle(double lon) const { return std::remainder(lon - middle_, 360.0); }

  bool isLimited_ = false;
  double south_ = 0, north_ = 0, middle_ = 0, beside_ = 0;
};

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
      at_ = frame->On() == on_ ? *frame : frame->Placed(on_);
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
      const Shown shown(at_, on_);
      Graticule(shown);
      for (const MapLine& line : input_.Lines) {
        if (shown.MayHold(line.Points)) Lines(line);
      }
      Stations();
      Scale();
      GridLabels();
    } else if (!HasProjections()) {
      Text("missing", {on_.Left + 120, on_.Top + 240},
           "No map: this system lacks the library PROJ, which projects it.", kNote, AnchorX::Left,
           inks_.Ink);
    }
    Line("frame", OutlineOf(on_), inks_.Frame);
    return {std::move(Page), std::move(at_)};
  }

 private:
  // Whether a step leads across the cut of a map that goes around the globe.
  bool IsAcrossCut(const Place& from, const Place& to) const {
    const auto middle = at_.MiddleLon();
    return middle && std::fabs(std::remainder(to.Lon - *middle, 360.0) -
                               std::remainder(from.Lon - *middle, 360.0)) > 180;
  }

  // A line of places in pieces on the map. A step farther than the map is large leads around the
  // globe and is no part of the line.
  std::vector<std::vector<Point>> Pieces(const std::vector<Place>& places) const {
    const double most = 3 * (on_.Width() + on_.Height());
    std::vector<std::vector<Point>> pieces;
    std::vector<Point> run;
    const auto close = [&] {
      for (auto& piece : ClipPolyline(run, on_)) pieces.push_back(std::move(piece));
      run.clear();
    };
    for (std::size_t i = 0; i < places.size(); ++i) {
      const std::optional<Point> at = at_.ToPage(places[i]);
      const auto way = [&] { return std::hypot(at->X - run.back().X, at->Y - run.back().Y); };
      if (!at || (!run.empty() && (way() > most || IsAcrossCut(places[i - 1], places[i])))) close();
      if (at && (run.empty() || i + 1 == places.size() || way() >= kFine)) run.push_back(*at);
    }
    close();
    return pieces;
  }
  void Path(std::string_view tag, const std::vector<Place>& places, const Pen& pen) {
    for (auto& piece : Pieces(places)) {
      Page.Add(tag, Polyline{.Points = std::move(piece), .Stroke = pen});
    }
  }

  void Lines(const MapLine& line) {
    switch (line.Kind) {
      case LineKind::Coast:
        return Path("coast", line.Points, inks_.Coast);
      case LineKind::Border:
        return Path("border", line.Points, inks_.Border);
      case LineKind::State:
        if (KmAcross() < kStatesBelowKm) Path("state", line.Points, inks_.State);
        return;
    }
  }

  double KmAcross() const { return std::max(on_.Width(), on_.Height()) / at_.PerKm(); }

  // Lines of latitude and longitude that are so far apart that some ten cross the map. Near the
  // pole the meridians keep apart and end before it.
  void Graticule(const Shown& shown) {
    double step = 30;
    for (const double finer : {20.0, 10.0, 5.0, 2.0, 1.0, 0.5}) {
      if (KmAcross() / 111 < 8 * step) step = finer;
    }
    const auto middle = at_.ToPlace({(on_.Left + on_.Right) / 2, (on_.Top + on_.Bottom) / 2});
    const double narrow = middle ? std::cos(middle->Lat * std::numbers::pi / 180) : 1;
    double across = step;
    for (const double wider : {5.0, 10.0, 20.0, 30.0}) {
      if (across * narrow < 0.7 * step && wider > across) across = wider;
    }
    constexpr double kAlong = 1;  // degrees between two points of a line
    for (double lat = -90 + step; lat < 90; lat += step) {
      std::vector<Place> line;
      for (double lon = -180; lon <= 180; lon += kAlong) line.push_back({lat, lon});
      if (shown.MayHold(line)) GridLine(line, lat, lat > 0 ? "N" : "S", true);
    }
    for (double lon = -180; lon < 180; lon += across) {
      std::vector<Place> line;
      const double end = std::fmod(lon + 360, 90) == 0 ? 90 : 90 - std::max(step, kAlong);
      for (double lat = -end; lat <= end; lat += kAlong) line.push_back({lat, lon});
      if (shown.MayHold(line)) GridLine(line, lon, lon > 0 ? "E" : "W", false);
    }
  }

  // A line of the graticule, and where it is named: parallels at the left edge, meridians at the
  // lower one.
  void GridLine(const std::vector<Place>& line, double degrees, std::string_view side,
                bool isParallel) {
    constexpr double kClose = 1;  // unit
    for (const auto& piece : Pieces(line)) {
      Page.Add("graticule", Polyline{.Points = piece, .Stroke = inks_.Grid});
      for (const Point& end : {piece.front(), piece.back()}) {
        const bool isEdge = isParallel ? end.X - on_.Left < kClose : on_.Bottom - end.Y < kClose;
        if (!isEdge) continue;
        const bool isPlain = degrees == 0 || degrees == -180;
        gridLabels_.push_back(
            {end,
             Shortest(std::fabs(degrees)) + "°" + (isPlain ? std::string() : std::string(side)),
             isParallel});
      }
    }
  }

  void GridLabels() {
    LabelRoom& room = *room_;
    for (const GridLabel& label : gridLabels_) {
      const double width = TextWidth(label.Text, kNote);
      const Point middle = label.IsParallel
                               ? Point{on_.Left + width / 2 + 60, label.At.Y - 0.6 * kNote}
                               : Point{label.At.X + width / 2 + 40, on_.Bottom - 0.6 * kNote};
      const Rect taken{middle.X - width / 2, middle.Y - kNote / 2, middle.X + width / 2,
                       middle.Y + kNote / 2};
      if (!room.IsFree(taken)) continue;
      room.Take(taken);
      Text("degrees", middle, label.Text, kNote, AnchorX::Center, inks_.Faint);
    }
  }

  // A stretch of kilometres in the lower right corner, true in the middle of the map.
  void Scale() {
    if (at_.Kind() == ProjectionKind::World) return;
    double km = 1;
    for (const double longer : {2.0, 5.0, 10.0, 20.0, 50.0, 100.0, 200.0, 500.0, 1000.0, 2000.0}) {
      if (longer * at_.PerKm() < on_.Width() / 5) km = longer;
    }
    const Point right{on_.Right - 200, on_.Bottom - 260};
    const Point left{right.X - km * at_.PerKm(), right.Y};
    const Rect taken{left.X - 60, left.Y - 1.6 * kNote, right.X + 60, right.Y + 60};
    if (!room_->IsFree(taken)) return;
    room_->Take(taken);
    const Pen pen{inks_.Ink, 14, LineStyle::Solid};
    Page.Add("scale",
             Polyline{.Points = {{left.X, left.Y - 50}, left, right, {right.X, right.Y - 50}},
                      .Stroke = pen});
    Text("scale", {(left.X + right.X) / 2, left.Y - 0.8 * kNote}, Shortest(km) + " km", kNote,
         AnchorX::Center, inks_.Ink);
  }

  // Between stations the line is the shortest way.
  std::vector<Place> Way(const std::vector<Place>& over) const {
    std::vector<Place> way;
    for (std::size_t i = 1; i < over.size(); ++i) {
      for (const Place& place : GreatCircle(over[i - 1], over[i])) way.push_back(place);
    }
    return way;
  }

  // What a symbol covers stays free of names, and the station's own stands outside its circles, the
  // largest of which reaches so far.
  double TakeItemsFrom(std::size_t first, LabelRoom& room) const {
    double reach = 0;
    for (std::size_t i = first; i < Page.Items().size(); ++i) {
      if (const auto* line = std::get_if<Polyline>(&Page.Items()[i].Shape)) {
        room.AvoidLine(line->Points, kBesideLine);
      } else if (const auto* circle = std::get_if<Circle>(&Page.Items()[i].Shape)) {
        room.Avoid(circle->Center, circle->Radius);
        reach = std::max(reach, circle->Radius + circle->Stroke.Width / 2);
      }
    }
    return reach;
  }

  void Stations() {
    LabelRoom& room = room_.emplace(on_);
    reaches_.assign(input_.Stations.size(), 0);
    std::vector<Place> line;
    for (const MapStation& station : input_.Stations) {
      if (!station.IsAside) line.push_back(station.At);
    }
    if (input_.JoinsStations) {
      const std::vector<Place> way = Way(line);
      Path("section line", way, inks_.Line);
      for (const auto& piece : Pieces(way)) room.AvoidLine(piece, kBesideLine);
    }
    Path("laid line", Way(input_.Line), inks_.Laid);
    for (const bool isAside : {true, false}) Marks(isAside, room);
    for (const bool isAside : {false, true}) StationNames(isAside, room);
  }

  void Marks(bool isAside, LabelRoom& room) {
    for (std::size_t i = 0; i < input_.Stations.size(); ++i) {
      const MapStation& station = input_.Stations[i];
      const std::optional<Point> at = at_.ToPage(station.At);
      if (station.IsAside != isAside || !at || !on_.Contains(*at)) continue;
      const Color ink = isAside ? inks_.Faint : inks_.Ink;
      Page.Add(isAside ? "station aside" : "station mark",
               Circle{.Center = *at,
                      .Radius = isAside ? 36.0 : 42.0,
                      .Fill = {isAside ? inks_.Paper : ink},
                      .Stroke = {ink, 10, LineStyle::Solid}});
      room.Take({at->X - 60, at->Y - 60, at->X + 60, at->Y + 60});
      const std::size_t drawn = Page.Items().size();
      if (input_.Symbol) input_.Symbol(Page, *at, at_.NorthAt(station.At), i);
      reaches_[i] = TakeItemsFrom(drawn, room);
    }
  }

  void StationNames(bool isAside, LabelRoom& room) {
    for (std::size_t i = 0; i < input_.Stations.size(); ++i) {
      const MapStation& station = input_.Stations[i];
      const std::optional<Point> at = at_.ToPage(station.At);
      if (station.IsAside != isAside || !at || !on_.Contains(*at)) continue;
      const double width = TextWidth(station.Name, kNote);
      const double gap = std::max(90.0, reaches_[i] + kBesideLine);
      if (const auto middle = room.Beside(*at, width, kNote, gap)) {
        Text("station name", *middle, station.Name, kNote, AnchorX::Center,
             isAside ? inks_.Faint : inks_.Ink);
      }
    }
  }

  struct GridLabel {
    Point At{};
    std::string Text{};
    bool IsParallel = false;
  };

  const AreaMapInput& input_;
  MapInks inks_;
  PageLayout layout_{};
  Rect on_{};
  MapFrame at_{};
  std::vector<GridLabel> gridLabels_{};
  std::vector<double> reaches_{};  // of each station's symbol
  std::optional<LabelRoom> room_{};
};

}  // namespace

AreaMap PlotAreaMap(const AreaMapInput& input, const Surface& on, const MapFrame* frame) {
  return Drawing(input, on, frame).Draw();
}

std::optional<std::size_t> StationAt(const std::vector<MapStation>& stations, const MapFrame& on,
                                     Point at, double reach) {
  std::optional<std::size_t> nearest;
  for (std::size_t i = 0; i < stations.size(); ++i) {
    const std::optional<Point> place = on.ToPage(stations[i].At);
    if (!place) continue;
    const double way = std::hypot(place->X - at.X, place->Y - at.Y);
    if (way > reach) continue;
    reach = way;
    nearest = i;
  }
  return nearest;
}

}  // namespace vexa::map
