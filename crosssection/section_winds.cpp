#include <algorithm>
#include <cmath>

#include "analysis/interpolate.h"
#include "core/markers.h"
#include "core/numbers.h"
#include "core/units.h"
#include "crosssection/section_page.h"
#include "diagram/wind_symbol.h"

namespace vexa::crosssection {
namespace {

// Symbols at every n-th level, and none on the one before.
bool ColumnWinds(SectionPage& page, const Column& column, double x, int step,
                 const ViewSettings& look) {
  const SoundingRecord& sounding = column.Sounding;
  const Rect& frame = page.At.Frame();
  const double apart = 0.6 * diagram::SizeOf(page.Set.Barbs).Shaft;
  const Pen pen{column.IsInterpolated ? page.Inks.Made : page.Inks.Ink, 14, LineStyle::Solid};
  double last = 1e9;
  bool any = false;
  for (int i = 1; i <= sounding.NumWindLevels(); i += step) {
    if (!sounding.HasWind(i)) continue;
    const double height = sounding.WindHgt(i);
    const double press = analysis::GetPRESS(column.Levels, height);
    if (!HasHeight(press)) continue;
    const double y = page.At.Y(page.At.Axis().Of(press, height, column.Ground()));
    if (y < frame.Top || y > frame.Bottom || last - y < apart) continue;
    // The shaft ends inside the frame.
    const double shaft = diagram::SizeOf(page.Set.Barbs).Shaft;
    if (y - shaft * std::cos(Radians(sounding.WindDir(i))) < frame.Top) continue;
    last = y;
    diagram::DrawWindSymbol(page.Page, {x, y}, {sounding.WindDir(i), sounding.WindSpd(i)}, look,
                            pen);
    any = true;
  }
  return any;
}

}  // namespace

void DrawWinds(SectionPage& page) {
  const int step = WindStep(page.In, page.At);
  ViewSettings look = page.In.Look;
  look.Speed = page.Set.Speed;
  look.BarbSize = page.Set.Barbs;
  look.Winds = page.Set.Symbols == SymbolKind::Flags ? WindDisplay::Flags : WindDisplay::Barbs;
  const double apart = 1.5 * diagram::SizeOf(page.Set.Barbs).Shaft;
  double lastX = -1e9;
  for (const Column& column : page.Columns) {
    const double x = page.At.X(column.X);
    if (x - lastX < apart) continue;
    if (ColumnWinds(page, column, x, step, diagram::SymbolOptions(look, column.Sounding)))
      lastX = x;
  }
  const Rect* place = page.Layout.Find(kCaptions);
  if (place == nullptr) return;
  std::string caption = "Winds plotted in " + std::string(Word(page.Set.Speed));
  if (step > 1) caption = "Plotted every " + Shortest(step) + "th wind.  " + caption;
  page.Text("wind caption", {place->Left + 100, (place->Top + place->Bottom) / 2}, caption, kNote,
            AnchorX::Left, page.Inks.Faint);
}

int WindStep(const SectionInput& input, const SectionMapping& at) {
  if (input.Look.WindPlotSectionRatio > 0) return input.Look.WindPlotSectionRatio;
  const double apart = diagram::SizeOf(input.Set.Barbs).Shaft;
  double densest = 0;  // symbols in the room of one
  for (const Column& column : input.Of.Columns) {
    int count = 0;
    double lowest = 0;
    double highest = 0;
    for (int i = 1; i <= column.Sounding.NumWindLevels(); ++i) {
      if (!column.Sounding.HasWind(i)) continue;
      const double height = column.Sounding.WindHgt(i);
      const double press = analysis::GetPRESS(column.Levels, height);
      if (!HasHeight(press)) continue;
      const double y = at.Y(at.Axis().Of(press, height, column.Ground()));
      if (y < at.Frame().Top || y > at.Frame().Bottom) continue;
      if (count++ == 0) lowest = y;
      highest = y;
    }
    if (count > 1 && lowest > highest) {
      densest = std::max(densest, (count - 1) * apart / (lowest - highest));
    }
  }
  return std::max(1, static_cast<int>(std::ceil(densest - 1e-9)));
}

}  // namespace vexa::crosssection
