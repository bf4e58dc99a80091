#include "diagram/cursor_marks.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "core/markers.h"
#include "diagram/plot_state.h"
#include "picture/clip.h"
#include "picture/shapes.h"

namespace vexa::diagram {
namespace {

constexpr double kMostZoom = 20;
constexpr double kArm = 130;

// Moves a part so that it lies inside the frame.
Rect Inside(const Rect& part) {
  const double width = part.Width();
  const double height = part.Height();
  const double left = std::clamp(part.Left, 0.0, std::max(0.0, 1 - width));
  const double top = std::clamp(part.Top, 0.0, std::max(0.0, 1 - height));
  return {left, top, left + width, top + height};
}

// The part of the whole diagram that is shown.
Rect ShownPart(const DiagramMapping& mapping) {
  const Rect& frame = mapping.Frame();
  const Rect region = mapping.Region();
  return {(region.Left - frame.Left) / frame.Width(), (region.Top - frame.Top) / frame.Height(),
          (region.Right - frame.Left) / frame.Width(),
          (region.Bottom - frame.Top) / frame.Height()};
}

// A place on the page as shares of the whole diagram.
Point Whole(const DiagramMapping& mapping, Point at) {
  const Rect& frame = mapping.Frame();
  const Rect part = ShownPart(mapping);
  return {part.Left + (at.X - frame.Left) / frame.Width() * part.Width(),
          part.Top + (at.Y - frame.Top) / frame.Height() * part.Height()};
}

void DrawLocked(Picture& page, const DiagramMapping& mapping, const SoundingRecord& sounding,
                const CursorState& cursor, const Pen& pen, Color paper) {
  const int level = *cursor.Level;
  if (level < 1 || level > sounding.NumTempLevels()) return;
  const Rect& frame = mapping.Frame();
  const double press = sounding.Press(level);
  if (press > mapping.BottomPress() || press < mapping.TopPress()) return;
  for (std::vector<Point>& piece : ClipPolyline(Isobar(mapping, press), frame)) {
    page.Add("locked cursor", Polyline{.Points = std::move(piece), .Stroke = pen});
  }
  for (const double temp : {sounding.Temp(level), sounding.Dewpt(level)}) {
    if (IsMissing(temp)) continue;
    const Point at = mapping.ToPoint(temp, press);
    if (!frame.Contains(at)) continue;
    page.Add("locked cursor", Circle{.Center = at, .Radius = 60, .Stroke = {pen.Ink, 18}});
  }
  // An isobar that enters the frame through its lower edge is told of there.
  const double y =
      std::clamp(mapping.IsobarY(press, frame.Left), frame.Top, frame.Bottom - kAxisText / 2);
  const bool above = y - frame.Top > 400;
  page.Add("locked cursor text", Label{.At = {frame.Left + 120, above ? y - 110 : y + 110},
                                       .Text = cursor.Text,
                                       .Size = kAxisText,
                                       .Ink = pen.Ink,
                                       .Halo = paper});
}

}  // namespace

Picture CursorMarks(const Picture& under, const DiagramMapping& mapping,
                    const SoundingRecord& sounding, const CursorState& cursor, Color ink,
                    Color paper) {
  Picture page(under.Width(), under.Height(), {0, 0, 0, 0});
  const Pen pen{ink, 10, LineStyle::Solid};
  if (cursor.Level) DrawLocked(page, mapping, sounding, cursor, pen, paper);
  if (cursor.At && mapping.Frame().Contains(*cursor.At)) {
    const Point at = *cursor.At;
    DrawSegment(page, "cursor", {at.X - kArm, at.Y}, {at.X + kArm, at.Y}, pen);
    DrawSegment(page, "cursor", {at.X, at.Y - kArm}, {at.X, at.Y + kArm}, pen);
  }
  if (cursor.Choosing) {
    const Rect& r = *cursor.Choosing;
    page.Add("chosen region",
             Polyline{.Points = OutlineOf(r), .Stroke = {ink, 10, LineStyle::Dash}});
  }
  return page;
}

std::optional<int> NearestLevel(const DiagramMapping& mapping, const SoundingRecord& sounding,
                                Point at) {
  const double press = mapping.ToCoordinates(at).Press;
  std::optional<int> nearest;
  double least = 0;
  for (int level = 1; level <= sounding.NumTempLevels(); ++level) {
    if (!(sounding.Press(level) > 0)) continue;
    const double apart = std::fabs(std::log(sounding.Press(level) / press));
    if (nearest && apart >= least) continue;
    nearest = level;
    least = apart;
  }
  return nearest;
}

Rect ZoomRegion(const DiagramMapping& mapping, const Rect& chosen) {
  const Point from = Whole(mapping, {chosen.Left, chosen.Top});
  const Point to = Whole(mapping, {chosen.Right, chosen.Bottom});
  const double share =
      std::clamp(std::max(std::fabs(to.X - from.X), std::fabs(to.Y - from.Y)), 1 / kMostZoom, 1.0);
  const Point middle{(from.X + to.X) / 2, (from.Y + to.Y) / 2};
  return Inside(
      {middle.X - share / 2, middle.Y - share / 2, middle.X + share / 2, middle.Y + share / 2});
}

std::optional<Rect> ZoomAbout(const DiagramMapping& mapping, Point fixed, double factor) {
  const Rect& frame = mapping.Frame();
  const double share = std::max(ShownPart(mapping).Width() / factor, 1 / kMostZoom);
  if (share >= 0.999) return std::nullopt;
  const Point whole = Whole(mapping, fixed);
  const double left = whole.X - (fixed.X - frame.Left) / frame.Width() * share;
  const double top = whole.Y - (fixed.Y - frame.Top) / frame.Height() * share;
  return Inside({left, top, left + share, top + share});
}

Rect PanBy(const DiagramMapping& mapping, double dx, double dy) {
  const Rect& frame = mapping.Frame();
  const Rect part = ShownPart(mapping);
  const double right = dx / frame.Width() * part.Width();
  const double down = dy / frame.Height() * part.Height();
  return Inside({part.Left - right, part.Top - down, part.Right - right, part.Bottom - down});
}

}  // namespace vexa::diagram
