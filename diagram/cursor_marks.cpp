#include "diagram/cursor_marks.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "core/markers.h"
#include "diagram/plot_state.h"
#include "picture/clip.h"

namespace vexa::diagram {
namespace {

constexpr double kMostZoom = 20;
constexpr double kArm = 130;

// Moves a region so that it lies inside the frame.
Rect Inside(Rect region, const Rect& frame) {
  const double width = region.Width();
  const double height = region.Height();
  region.Left = std::clamp(region.Left, frame.Left, std::max(frame.Left, frame.Right - width));
  region.Top = std::clamp(region.Top, frame.Top, std::max(frame.Top, frame.Bottom - height));
  return {region.Left, region.Top, region.Left + width, region.Top + height};
}

// From the page to the whole diagram.
Point Whole(const DiagramMapping& mapping, Point at) {
  const Rect& frame = mapping.Frame();
  const Rect region = mapping.Region();
  return {region.Left + (at.X - frame.Left) * region.Width() / frame.Width(),
          region.Top + (at.Y - frame.Top) * region.Height() / frame.Height()};
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

Picture CursorMarks(const DiagramMapping& mapping, const SoundingRecord& sounding,
                    const CursorState& cursor, Color ink, Color paper) {
  Picture page(kPageWidth, kPageHeight, {0, 0, 0, 0});
  const Pen pen{ink, 10, LineStyle::Solid};
  if (cursor.Level) DrawLocked(page, mapping, sounding, cursor, pen, paper);
  if (cursor.At && mapping.Frame().Contains(*cursor.At)) {
    const Point at = *cursor.At;
    DrawSegment(page, "cursor", {at.X - kArm, at.Y}, {at.X + kArm, at.Y}, pen);
    DrawSegment(page, "cursor", {at.X, at.Y - kArm}, {at.X, at.Y + kArm}, pen);
  }
  if (cursor.Choosing) {
    const Rect& r = *cursor.Choosing;
    page.Add("chosen region", Polyline{.Points = {{r.Left, r.Top},
                                                  {r.Right, r.Top},
                                                  {r.Right, r.Bottom},
                                                  {r.Left, r.Bottom},
                                                  {r.Left, r.Top}},
                                       .Stroke = {ink, 10, LineStyle::Dash}});
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
  const Rect& frame = mapping.Frame();
  const Point from = Whole(mapping, {chosen.Left, chosen.Top});
  const Point to = Whole(mapping, {chosen.Right, chosen.Bottom});
  const double share = std::clamp(
      std::max(std::fabs(to.X - from.X) / frame.Width(), std::fabs(to.Y - from.Y) / frame.Height()),
      1 / kMostZoom, 1.0);
  const Point middle{(from.X + to.X) / 2, (from.Y + to.Y) / 2};
  const double width = share * frame.Width();
  const double height = share * frame.Height();
  return Inside(
      {middle.X - width / 2, middle.Y - height / 2, middle.X + width / 2, middle.Y + height / 2},
      frame);
}

std::optional<Rect> ZoomAbout(const DiagramMapping& mapping, Point fixed, double factor) {
  const Rect& frame = mapping.Frame();
  const Rect region = mapping.Region();
  const double share = std::max(region.Width() / frame.Width() / factor, 1 / kMostZoom);
  if (share >= 0.999) return std::nullopt;
  const Point whole = Whole(mapping, fixed);
  const double width = share * frame.Width();
  const double height = share * frame.Height();
  const double left = whole.X - (fixed.X - frame.Left) * share;
  const double top = whole.Y - (fixed.Y - frame.Top) * share;
  return Inside({left, top, left + width, top + height}, frame);
}

Rect PanBy(const DiagramMapping& mapping, double dx, double dy) {
  const Rect region = mapping.Region();
  const double share = region.Width() / mapping.Frame().Width();
  return Inside({region.Left - dx * share, region.Top - dy * share, region.Right - dx * share,
                 region.Bottom - dy * share},
                mapping.Frame());
}

}  // namespace vexa::diagram
