#include "hodograph/hodogram_plot.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string>
#include <utility>

#include "core/numbers.h"
#include "core/units.h"
#include "hodograph/compass.h"
#include "hodograph/inks.h"
#include "picture/label_room.h"
#include "picture/layout.h"
#include "picture/plot_page.h"
#include "picture/text_width.h"

namespace vexa::hodograph {
namespace {

constexpr double kLeastReach = 1000;  // m
constexpr double kText = LetterSize(Type::Note);
constexpr double kTitleText = LetterSize(Type::Title);
constexpr double kFinest = 6;           // drawing units between points of a line
constexpr double kRiseShare = 5.0 / 3;  // of the height, by the plan's reach from its middle
// The plan reaches so far from the middle of its region, by the region's height and width: at any
// tilt all of it stays inside.
constexpr double kReachByHeight = 0.37;
constexpr double kReachByWidth = 0.42;

constexpr RegionRow kRegions[] = {
    {.Name = "title", .At = Place::Above, .LeastHeight = 1.3 * kTitleText, .Priority = 1},
    {.Name = "view", .At = Place::Main, .LeastWidth = 1800, .LeastHeight = 1800},
    {.Name = "captions", .At = Place::Foot, .LeastHeight = 2 * kLineStep, .Priority = 2}};

// From metres in space to the page, around the middle of the plan.
class View {
 public:
  View(const std::vector<TrajectoryPoint>& points, const Hodogram3DSettings& view,
       const Rect& region)
      : middle_{(region.Left + region.Right) / 2, (region.Top + region.Bottom) / 2},
        sinAzimuth_(std::sin(Radians(view.Azimuth))),
        cosAzimuth_(std::cos(Radians(view.Azimuth))),
        sinTilt_(std::sin(Radians(view.Tilt))),
        cosTilt_(std::cos(Radians(view.Tilt))) {
    // The station belongs to the plan.
    double west = 0;
    double east = 0;
    double south = 0;
    double north = 0;
    for (const TrajectoryPoint& point : points) {
      west = std::min(west, point.East);
      east = std::max(east, point.East);
      south = std::min(south, point.North);
      north = std::max(north, point.North);
      Top = std::max(Top, point.Height);
    }
    MiddleEast = (west + east) / 2;
    MiddleNorth = (south + north) / 2;
    Reach = std::max(std::hypot(east - west, north - south) / 2, kLeastReach);
    const double reach = std::min(kReachByHeight * region.Height(), kReachByWidth * region.Width());
    rise_ = kRiseShare * reach;
    PerMeter = reach / Reach;
    PerHeightMeter = rise_ / Top;
  }

  Point ToPage(const TrajectoryPoint& at) const {
    const double east = (at.East - MiddleEast) * PerMeter;
    const double north = (at.North - MiddleNorth) * PerMeter;
    const double up = at.Height * PerHeightMeter - rise_ / 2;
    const double right = east * cosAzimuth_ - north * sinAzimuth_;
    const double away = east * sinAzimuth_ + north * cosAzimuth_;
    return {middle_.X + right, middle_.Y - (up * cosTilt_ + away * sinTilt_)};
  }

  double MiddleEast = 0;
  double MiddleNorth = 0;
  double Reach = kLeastReach;  // m
  double Top = 1000;           // m
  double PerMeter = 1;         // drawing units, along the ground
  double PerHeightMeter = 1;

 private:
  Point middle_;
  double rise_ = 0;  // drawing units
  double sinAzimuth_;
  double cosAzimuth_;
  double sinTilt_;
  double cosTilt_;
};

double NiceStep(double most) {
  constexpr std::array<double, 3> kFactors = {2, 2.5, 2};
  double step = 1;
  for (std::size_t i = 0; step < most; ++i) step *= kFactors[i % kFactors.size()];
  return step;
}

class Drawing : PlotPage {
 public:
  Drawing(const Hodogram& hodogram, const Hodogram3DSettings& settings, const Surface& surface)
      : PlotPage(surface, InksFor(hodogram.Set, hodogram.Set.HodoInvert)),
        hodogram_(hodogram),
        settings_(settings),
        layout_(CutPage(surface, kRegions)),
        inks_(InksFor(hodogram.Set, hodogram.Set.HodoInvert)),
        view_(hodogram.Points, settings, *layout_.Find("view")),
        room_(*layout_.Find("view")) {}

  Picture Draw() && {
    Captions();
    if (hodogram_.Points.size() < 2) {
      const Rect& view = *layout_.Find("view");
      Text("remark", {(view.Left + view.Right) / 2, (view.Top + view.Bottom) / 2},
           hodogram_.Points.empty() ? "This sounding has no winds."
                                    : "This sounding has a single wind.",
           LetterSize(Type::Value), AnchorX::Center);
      return std::move(Page);
    }
    GroundGrid();
    HeightAxis();
    Shadow();
    Drops();
    Curve();
    if (settings_.NorthPointer) NorthPointer();
    HeightLabels();
    return std::move(Page);
  }

 private:
  bool Miles() const { return settings_.Distance == DistanceUnits::Miles; }
  double MetersPerUnit() const { return Miles() ? kMetersPerMile : 1000; }
  double GridStep() const { return NiceStep(view_.Reach / MetersPerUnit() / 5); }

  // Station left, the diagram's name right of it where both find room.
  void Title(const Rect& line) {
    constexpr std::string_view kName = "3-D Trajectory Diagram";
    const double y = (line.Top + line.Bottom) / 2;
    const FittedTitle title = FitTitle(hodogram_.Title, line.Width());
    Text("title", {line.Left, y}, title.Text, title.Size, AnchorX::Left, true);
    const double wide = TextWidth(title.Text, title.Size, true) + kTitleText;
    if (title.Size < kTitleText || wide + TextWidth(kName, kTitleText) > line.Width()) return;
    Text("diagram name", {line.Right, y}, std::string(kName), kTitleText, AnchorX::Right);
  }

  // Two captions on a line, the right one only where both have room.
  void Pair(std::string_view left, const std::string& leftText, const std::string& rightText,
            const Rect& line) {
    const double y = (line.Top + line.Bottom) / 2;
    const double wide = TextWidth(leftText, kText) + kText + TextWidth(rightText, kText);
    Text(left, {line.Left, y}, Elided(leftText, kText, line.Width()), kText, AnchorX::Left);
    if (wide > line.Width() || rightText.empty()) return;
    Text("scale caption", {line.Right, y}, rightText, kText, AnchorX::Right);
  }

  void Captions() {
    if (const Rect* title = layout_.Find("title")) Title(*title);
    const Rect* foot = layout_.Find("captions");
    if (foot == nullptr) return;
    const double middle = (foot->Top + foot->Bottom) / 2;
    const bool hasPath = hodogram_.Points.size() >= 2;
    const std::string step =
        hasPath ? Shortest(GridStep()) + (Miles() ? " Mile" : " Kilometer") + " Intervals" : "";
    const std::string tilt = "Vertical Tilt: " + Mask(settings_.Tilt, "##0");
    Pair("tilt caption", tilt, step, {foot->Left, foot->Top, foot->Right, middle});
    const std::string unit = Miles() ? "   Miles" : "Kilometers";
    const double taken = TextWidth(tilt + unit + step, kText) + 2 * kText;
    if (hasPath && taken <= foot->Width()) {
      Text("scale unit", {foot->Right - TextWidth(step, kText) - kText, (foot->Top + middle) / 2},
           unit, kText, AnchorX::Right);
    }
    Pair("azimuth caption",
         "Azimuth View: " + Mask(settings_.Azimuth, "##0") + " " +
             std::string(CompassName(ToWhole(settings_.Azimuth))),
         hasPath ? "Heights " + Mask(view_.PerHeightMeter / view_.PerMeter, "##0.0") +
                       " times the distances; rise of " + Shortest(kAscentRate) + " m/s"
                 : "",
         {foot->Left, middle, foot->Right, foot->Bottom});
  }

  // Lines across a round ground, so that no turn moves its corners over the captions.
  void GroundGrid() {
    const double step = GridStep() * MetersPerUnit();
    const double half = view_.Reach;
    const auto lines = [&](double middle, auto&& ends) {
      for (double at = std::ceil((middle - half) / step) * step; at <= middle + half; at += step) {
        const auto [from, to] = ends(at, std::sqrt(half * half - (at - middle) * (at - middle)));
        Line("ground grid", {view_.ToPage(from), view_.ToPage(to)}, inks_.Ground);
      }
    };
    const double east = view_.MiddleEast;
    const double north = view_.MiddleNorth;
    using Ends = std::pair<TrajectoryPoint, TrajectoryPoint>;
    lines(east, [&](double at, double reach) {
      return Ends{{0, at, north - reach}, {0, at, north + reach}};
    });
    lines(north, [&](double at, double reach) {
      return Ends{{0, east - reach, at}, {0, east + reach, at}};
    });
    std::vector<Point> edge;
    for (int degrees = 0; degrees <= 360; degrees += 4) {
      edge.push_back(view_.ToPage({0, east + half * std::sin(Radians(degrees)),
                                   north + half * std::cos(Radians(degrees))}));
    }
    Line("ground edge", std::move(edge), inks_.Ground);
    // The distance scale: one interval from the station eastwards, or westwards where the ground
    // ends before.
    const Point from = view_.ToPage({0, 0, 0});
    const bool isInside = std::hypot(step - east, north) <= half;
    const Point to = view_.ToPage({0, isInside ? step : -step, 0});
    Line("distance scale", {from, to}, {inks_.Ink, 30, LineStyle::Solid});
    const Point below{(from.X + to.X) / 2, (from.Y + to.Y) / 2 + 0.8 * kText};
    const std::string length = Shortest(GridStep()) + (Miles() ? " mi" : " km");
    const double width = TextWidth(length, kText) / 2;
    room_.Take({below.X - width, below.Y - kText / 2, below.X + width, below.Y + kText / 2});
    Text("distance scale", below, length, kText, AnchorX::Center);
  }

  bool Feet() const { return hodogram_.Set.GpmUnits == LengthUnits::Feet; }
  double MetersPerHeight() const { return Feet() ? 1000 * kMetersPerFoot : 1000; }
  double HeightStep() const {
    return NiceStep(view_.Top / MetersPerHeight() / 9) * MetersPerHeight();
  }

  void HeightAxis() {
    Line("height axis", {view_.ToPage({0, 0, 0}), view_.ToPage({view_.Top, 0, 0})}, inks_.Axis);
    for (double height = HeightStep(); height <= view_.Top; height += HeightStep()) {
      const Point at = view_.ToPage({height, 0, 0});
      Line("height tick", {{at.X - 60, at.Y}, {at.X + 60, at.Y}}, inks_.Axis);
    }
  }

  // Over the curve; seen from above they would stand on one another, or on the pointer's name.
  void HeightLabels() {
    for (double height = HeightStep(); height <= view_.Top; height += HeightStep()) {
      const Point at = view_.ToPage({height, 0, 0});
      const std::string text = Mask(height / MetersPerHeight(), "##0") + (Feet() ? " kft" : " km");
      const double width = TextWidth(text, kText);
      const auto place = [&](bool left) {
        const double from = left ? at.X - 90 - width : at.X + 90;
        return Rect{from, at.Y - kText / 2, from + width, at.Y + kText / 2};
      };
      // On the side that the balloon's path leaves free, else where no other text stands.
      std::optional<bool> left;
      for (const bool overLines : {false, true}) {
        for (const bool side : {true, false}) {
          const Rect there = place(side);
          if (!left && room_.IsFree(there) && (overLines || room_.IsOffLines(there))) left = side;
        }
      }
      if (!left) continue;
      room_.Take(place(*left));
      Text("height label", {at.X + (*left ? -90 : 90), at.Y}, text, kText,
           *left ? AnchorX::Right : AnchorX::Left);
    }
  }

  // The path on the ground below the balloon.
  void Shadow() {
    std::vector<Point> points;
    for (const TrajectoryPoint& at : hodogram_.Points) {
      AddPoint(points, view_.ToPage({0, at.East, at.North}));
    }
    Line("shadow", std::move(points), {inks_.Faint, 14, LineStyle::Dots});
  }

  void Drops() {
    for (const TrajectoryPoint& at : hodogram_.Points) {
      const bool edge = std::ranges::any_of(
          kBandTopsKm, [&](double km) { return std::fabs(at.Height - km * 1000) < 1e-6; });
      if (!edge && &at != &hodogram_.Points.back()) continue;
      Line("drop", {view_.ToPage(at), view_.ToPage({0, at.East, at.North})}, inks_.Ground);
    }
  }

  void Curve() {
    int band = BandOf(hodogram_.Points.front().Height);
    std::vector<Point> points;
    for (const TrajectoryPoint& at : hodogram_.Points) {
      const Point here = view_.ToPage(at);
      if (const int now = BandOf(at.Height); now != band) {
        const Point joint = points.back();
        DrawBand(std::exchange(points, {joint}), band);
        band = now;
      }
      AddPoint(points, here);
    }
    if (points.back() != view_.ToPage(hodogram_.Points.back())) {
      points.push_back(view_.ToPage(hodogram_.Points.back()));
    }
    DrawBand(std::move(points), band);
  }

  void DrawBand(std::vector<Point> points, int band) {
    Pen pen = inks_.Band[static_cast<std::size_t>(band)];
    pen.Width = std::max(pen.Width, 30.0);
    room_.AvoidLine(points, 35);
    if (pen.Style != LineStyle::Solid) {
      Line("trajectory core", points, {pen.Ink, 8, LineStyle::Solid});
    }
    Line("trajectory", std::move(points), pen);
  }

  static void AddPoint(std::vector<Point>& points, Point at) {
    if (!points.empty() && std::hypot(points.back().X - at.X, points.back().Y - at.Y) < kFinest) {
      return;
    }
    points.push_back(at);
  }

  void NorthPointer() {
    // At the edge of the ground, off the trajectory as a rule.
    const double reach = view_.Reach;
    const auto at = [&](double aside, double along) {
      return view_.ToPage({0, view_.MiddleEast + aside * reach, view_.MiddleNorth + along * reach});
    };
    const Point to = at(0, 0.98);
    Line("north pointer", {at(0, 0.7), to}, inks_.North);
    Page.Add("north pointer",
             Area{.Rings = {{to, at(-0.025, 0.91), at(0.025, 0.91)}}, .Fill = {inks_.North.Ink}});
    const Point name = at(0, 1.07);
    const double half = TextWidth("North", kText, true) / 2;
    room_.Take({name.X - half, name.Y - kText / 2, name.X + half, name.Y + kText / 2});
    Text("north pointer", name, "North", kText, AnchorX::Center, true);
  }

  const Hodogram& hodogram_;
  const Hodogram3DSettings& settings_;
  PageLayout layout_;
  Inks inks_;
  View view_;
  LabelRoom room_;
};

}  // namespace

std::vector<TrajectoryPoint> Trajectory(const SoundingRecord& sounding,
                                        const ViewSettings& options) {
  std::vector<TrajectoryPoint> points;
  std::optional<analysis::WindVector> below;
  for (const TracePiece& piece : CutAtBands(WindProfile(sounding, options))) {
    for (const ProfileWind& wind : piece.Winds) {
      if (!below) {
        points.push_back({std::max(wind.Height, 0.0), 0, 0});
        below = wind.Vector;
        continue;
      }
      const TrajectoryPoint& last = points.back();
      const double rise = wind.Height - last.Height;
      if (rise <= 0) {
        below = wind.Vector;
        continue;
      }
      const double carried = rise / kAscentRate * kKnotToMs;  // m per knot
      points.push_back({wind.Height, last.East - carried * (below->U + wind.Vector.U) / 2,
                        last.North - carried * (below->V + wind.Vector.V) / 2});
      below = wind.Vector;
    }
  }
  return points;
}

Hodogram MakeHodogram(const SoundingRecord& sounding, const ViewSettings& options) {
  return {sounding.StationTitle, Trajectory(sounding, options), options};
}

Picture PlotHodogram(const Hodogram& hodogram, const Hodogram3DSettings& view,
                     const Surface& surface) {
  return Drawing(hodogram, view, surface).Draw();
}

Hodogram3DSettings Turned(Hodogram3DSettings view, double azimuth, double tilt) {
  view.Azimuth = std::fmod(std::fmod(view.Azimuth + azimuth, 360.0) + 360.0, 360.0);
  view.Tilt = std::clamp(view.Tilt + tilt, -90.0, 90.0);
  return view;
}

}  // namespace vexa::hodograph
