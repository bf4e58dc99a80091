#include <algorithm>
#include <cmath>

#include "core/numbers.h"
#include "crosssection/color_map.h"
#include "crosssection/section_page.h"
#include "picture/text_width.h"

namespace vexa::crosssection {
namespace {

// From columns and rows of the grid to the page.
Point OnPage(const SectionPage& page, const Point& node) {
  const GridX& grid = page.In.Field.Grid;
  const Rect& frame = page.At.Frame();
  const double x =
      page.Columns.front().X + (node.X - 1) / (grid.Columns() - 1) * page.In.Of.RangeX();
  return {page.At.X(x), frame.Bottom - (node.Y - 1) / (grid.Rows() - 1) * frame.Height()};
}
std::vector<Point> OnPage(const SectionPage& page, const std::vector<Point>& line) {
  std::vector<Point> points;
  points.reserve(line.size());
  for (const Point& node : line) points.push_back(OnPage(page, node));
  return points;
}
// The colour of the values between two levels.
Color BandColor(const SectionPage& page, double from, double to) {
  const bool black = page.Set.Background == ScreenColor::Black;
  const FieldAnalysis& field = page.In.Field;
  const double first = field.Contours.front().Level - field.Interval;
  const double last = field.Contours.back().Level + field.Interval;
  const double middle = (from + to) / 2;
  if (field.Field->Colors == FieldColors::Rising) {
    return RisingColor((middle - first) / (last - first), black);
  }
  const double zero =
      field.Field->Unit == FieldUnit::Temperature ? FreezingIn(page.Context.Temp) : 0;
  const double most = std::max(std::fabs(first - zero), std::fabs(last - zero));
  return SignedColor((middle - zero) / most, black);
}

void Fill(SectionPage& page, const Contour& contour, const Color& ink) {
  Area area{.Fill = {ink, FillStyle::Plain}};
  for (const auto& ring : contour.Region) area.Rings.push_back(OnPage(page, ring));
  if (!area.Rings.empty()) page.Page.Add("band", std::move(area));
}

std::string LevelText(const SectionPage& page, double level) {
  return Mask(level, page.In.Field.Field->Mask);
}

Pen PenOf(const SectionPage& page, double level) {
  const double zero = std::fabs(level) < page.In.Field.Interval * 1e-6;
  if (zero && page.In.Field.Field->Colors == FieldColors::Signed) return page.Inks.Thick;
  Pen pen = page.Inks.Line;
  if (page.In.Field.Field->IsMoisture && page.Set.DotMoisture) {
    pen.Style = LineStyle::Dots;
  } else if (level < 0 && !zero) {
    pen.Style = LineStyle::Dash;
  }
  return pen;
}

std::string_view TagOf(const Isoline& line, const Pen& pen) {
  constexpr std::size_t kCircle = 12;  // nodes; corner cutting has doubled them
  if (line.IsClosed && line.Points.size() < 2 * kCircle) return "Isoline Circles";
  if (pen.Style == LineStyle::Dots) return "Dot-Isoline";
  return pen.Style == LineStyle::Dash ? "Dash-Isoline" : "Line-Isoline";
}

void Isolines(SectionPage& page, const Contour& contour) {
  const Pen pen = PenOf(page, contour.Level);
  const std::string text = LevelText(page, contour.Level);
  const double width = TextWidth(text, kNote);
  for (const Isoline& line : contour.Lines) {
    std::vector<Point> points = OnPage(page, line.Points);
    const std::string_view tag = TagOf(line, pen);
    const auto place = tag == "Isoline Circles" ? std::nullopt
                                                : PlaceLabel(points, page.At.Frame().Width() / 6,
                                                             std::max(3 * width, 600.0));
    page.Line(tag, std::move(points), pen);
    if (!place) continue;
    const double half = (width + kNote) / 2;
    const Rect taken{place->At.X - half, place->At.Y - kNote, place->At.X + half,
                     place->At.Y + kNote};
    if (!page.Room.IsFree(taken)) continue;
    page.Room.Take(taken);
    page.PutOnTop("Num-Isoline", place->At, text, kNote, false, place->Angle);
  }
}

void MaxMin(SectionPage& page, const Extremum& extremum) {
  const Point at =
      OnPage(page, Point{static_cast<double>(extremum.Column), static_cast<double>(extremum.Row)});
  const Rect taken{at.X - 200, at.Y - 1.6 * kNote, at.X + 200, at.Y + kNote};
  if (!page.Room.IsFree(taken)) return;
  page.Room.Take(taken);
  page.PutOnTop("MaxMin", {at.X, at.Y - 0.55 * kLabel}, extremum.IsMaximum ? "H" : "L", kLabel,
                true);
  page.PutOnTop("MaxMin", {at.X, at.Y + 0.55 * kNote},
                LevelText(page, static_cast<double>(extremum.Value)), kNote);
}

void DrawScale(SectionPage& page) {
  const Rect* place = page.Layout.Find(kColorScale);
  if (place == nullptr) return;
  const std::vector<Contour>& contours = page.In.Field.Contours;
  const double interval = page.In.Field.Interval;
  const Rect& frame = page.At.Frame();
  const double height = frame.Height() / static_cast<double>(contours.size() + 1);
  const Rect bar{place->Left + 60, frame.Top, place->Left + 260, frame.Bottom};
  double below = frame.Bottom + kNote;
  for (std::size_t i = 0; i <= contours.size(); ++i) {
    const double bottom = bar.Bottom - static_cast<double>(i) * height;
    const double from = i == 0 ? contours.front().Level - interval : contours[i - 1].Level;
    page.Page.Add("color scale",
                  Area{.Rings = {OutlineOf({bar.Left, bottom - height, bar.Right, bottom})},
                       .Fill = {BandColor(page, from, from + interval), FillStyle::Plain}});
    if (i == 0 || below - bottom < 1.1 * kNote) continue;
    below = bottom;
    page.Text("scale value", {bar.Right + 50, bottom}, LevelText(page, from), kNote, AnchorX::Left,
              page.Inks.Ink);
  }
  page.Line("color scale frame", OutlineOf(bar), page.Inks.Grid);
  page.Text("scale unit", {bar.Left, bar.Top - 110}, UnitOf(*page.In.Field.Field, page.Context),
            kNote, AnchorX::Left, page.Inks.Ink);
}

}  // namespace

// Each region over the one of the level below: no seams, and the colours end at the lines.
void DrawContours(SectionPage& page) {
  const FieldAnalysis& field = page.In.Field;
  const double interval = field.Interval;
  if (page.Set.Filled) {
    const double least = field.Grid.Range().Least - interval;
    const double first = field.Contours.front().Level;
    Fill(page, TraceContour(field.Drawn, least, interval, 0),
         BandColor(page, first - interval, first));
    for (const Contour& contour : field.Contours) {
      Fill(page, contour, BandColor(page, contour.Level, contour.Level + interval));
    }
    DrawScale(page);
  }
  if (page.Set.Lines) {
    for (const Contour& contour : field.Between) {
      for (const Isoline& line : contour.Lines) {
        page.Line("Sub-Isoline", OnPage(page, line.Points), page.Inks.Sub);
      }
    }
    for (const Contour& contour : field.Contours) Isolines(page, contour);
  }
  if (field.Freezing) {
    for (const Isoline& line : field.Freezing->Lines) {
      page.Line("freezing isotherm", OnPage(page, line.Points),
                {page.Inks.Freezing, 38, LineStyle::Solid});
    }
  }
  for (const Extremum& extremum : field.Extrema) MaxMin(page, extremum);
}

}  // namespace vexa::crosssection
