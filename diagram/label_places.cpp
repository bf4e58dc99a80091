#include "diagram/label_places.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <iterator>
#include <variant>
#include <vector>

#include "picture/clip.h"
#include "picture/text_width.h"

namespace vexa::diagram {
namespace {

constexpr double kLineReach = 18;  // of a line to each side, drawing units

// Lines that may not run through a text; the grid may.
constexpr std::array<std::string_view, 17> kLines = {"temperature",
                                                     "dew point",
                                                     "virtual temperature",
                                                     "parcel",
                                                     "other temperature",
                                                     "other dew point",
                                                     "reference temperature",
                                                     "reference dew point",
                                                     "standard atmosphere",
                                                     "surface line",
                                                     "freezing level",
                                                     "tropopause",
                                                     "custom line",
                                                     "inversion",
                                                     "layer",
                                                     "soaring",
                                                     "contrail"};

struct Shift {
  double In = 0;  // away from the anchor's side
  double Down = 0;
  double Cost() const { return std::fabs(Down) + 0.3 * In; }
};

std::vector<Shift> Shifts() {
  std::vector<Shift> shifts;
  for (int in = 0; in <= 14; ++in) {
    for (const double down : {0.0, -80.0, 80.0, -110.0, 110.0, -160.0, 160.0, -240.0, 240.0}) {
      shifts.push_back({in * 200.0, down});
    }
  }
  std::ranges::stable_sort(shifts, {}, &Shift::Cost);
  return shifts;
}

// What a place has to be beside free.
using IsGood = std::function<bool(Point at, const Rect& place)>;

std::optional<Point> TakeOneOf(const std::vector<Shift>& shifts, LabelRoom& room, Point wanted,
                               std::string_view text, double size, AnchorX across,
                               const IsGood& isGood) {
  const double inward = across == AnchorX::Right ? -1 : 1;
  for (const Shift& shift : shifts) {
    const Point at{wanted.X + inward * shift.In, wanted.Y + shift.Down};
    const Rect place = TextPlace(at, text, size, across);
    if (!room.IsFree(place) || !isGood(at, place)) continue;
    room.Take(place);
    return at;
  }
  return std::nullopt;
}

}  // namespace

Rect TextPlace(Point at, std::string_view text, double size, AnchorX across) {
  const double width = TextWidth(text, size);
  const double half = 0.45 * size;
  double left = at.X;
  if (across == AnchorX::Center) left -= width / 2;
  if (across == AnchorX::Right) left -= width;
  return {left, at.Y - half, left + width, at.Y + half};
}

LabelRoom RoomOn(const Plot& plot) {
  const Rect& frame = plot.At.Frame();
  LabelRoom room(frame);
  for (const Item& item : plot.Page.Items()) {
    if (const auto* label = std::get_if<Label>(&item.Shape)) {
      if (frame.Contains(label->At)) {
        room.Take(TextPlace(label->At, label->Text, label->Size, label->Across));
      }
    } else if (const auto* line = std::get_if<Polyline>(&item.Shape)) {
      if (std::ranges::find(kLines, item.Tag) != kLines.end()) {
        room.AvoidLine(line->Points, kLineReach);
      }
    }
  }
  return room;
}

void DrawBesideTexts(Plot& plot, std::string_view tag, const std::vector<Point>& line,
                     const Pen& pen) {
  constexpr double kGap = 2 * kUnitsPerPixel;
  std::vector<std::vector<Point>> pieces = {line};
  for (const Item& item : plot.Page.Items()) {
    const auto* label = std::get_if<Label>(&item.Shape);
    if (label == nullptr || !plot.At.Frame().Contains(label->At)) continue;
    const Rect text = TextPlace(label->At, label->Text, label->Size, label->Across);
    const Rect hole{text.Left - kGap, text.Top, text.Right + kGap, text.Bottom};
    std::vector<std::vector<Point>> left;
    for (const std::vector<Point>& piece : pieces) {
      std::ranges::move(CutOut(piece, hole), std::back_inserter(left));
    }
    pieces = std::move(left);
  }
  for (std::vector<Point>& piece : pieces) {
    plot.Page.Add(tag, Polyline{.Points = std::move(piece), .Stroke = pen});
  }
}

std::vector<Rect> LinesWithin(const Plot& plot, const Rect& place) {
  std::vector<Rect> found;
  for (const Item& item : plot.Page.Items()) {
    const auto* line = std::get_if<Polyline>(&item.Shape);
    if (line == nullptr || std::ranges::find(kLines, item.Tag) == kLines.end()) continue;
    for (const std::vector<Point>& piece : ClipPolyline(line->Points, place)) {
      const auto [left, right] = std::ranges::minmax(piece, {}, &Point::X);
      const auto [top, bottom] = std::ranges::minmax(piece, {}, &Point::Y);
      found.push_back(
          {left.X - kLineReach, top.Y - kLineReach, right.X + kLineReach, bottom.Y + kLineReach});
    }
  }
  return found;
}

std::optional<Point> TakePlace(LabelRoom& room, Point wanted, std::string_view text, double size,
                               AnchorX across) {
  for (const bool overLines : {false, true}) {
    const auto isGood = [&](Point, const Rect& place) {
      return overLines || room.IsOffLines(place);
    };
    const auto at = TakeOneOf(Shifts(), room, wanted, text, size, across, isGood);
    if (at) return at;
  }
  return std::nullopt;
}

std::optional<Point> TakePlaceNear(LabelRoom& room, Point wanted, std::string_view text,
                                   double size, AnchorX across, std::optional<LeaderOf> leader) {
  constexpr double kNear = 600;
  std::vector<Shift> near = Shifts();
  std::erase_if(near, [](const Shift& shift) { return shift.In > kNear; });
  return TakeOneOf(near, room, wanted, text, size, across, [&](Point at, const Rect& place) {
    if (!room.IsOffLines(place)) return false;
    if (!leader) return true;
    const double before = across == AnchorX::Right ? leader->Gap : -leader->Gap;
    const Point end{at.X + before, at.Y};
    if (!room.IsOffTexts(leader->From, end)) return false;
    // The ticks of the marks lie at the edge, the lines of levels end before.
    const double edge = room.Within().Right - kTickReach - 2 * kLineReach;
    if (end.X > edge || leader->From.X < edge) return true;
    const double share = (leader->From.X - edge) / (leader->From.X - end.X);
    return room.IsOffLines({edge, leader->From.Y + share * (end.Y - leader->From.Y)}, end);
  });
}

}  // namespace vexa::diagram
