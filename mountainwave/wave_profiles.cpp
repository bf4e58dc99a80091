#include <algorithm>
#include <cmath>

#include "core/numbers.h"
#include "core/units.h"
#include "mountainwave/wave_page.h"

namespace vexa::mountainwave {
namespace {

std::optional<Rect> Column(WavePage& page, std::string_view name) {
  const std::optional<Rect> column = ColumnOf(page, name);
  if (column) page.Line("profile frame", OutlineOf(*column), page.Inks.Frame);
  return column;
}
void ColumnTexts(WavePage& page, const Rect& column, std::string first, std::string second,
                 std::string least, std::string most, Color ink) {
  const double middle = (column.Left + column.Right) / 2;
  page.Text("profile title", {middle, column.Top - 330}, std::move(first), kNote, AnchorX::Center,
            ink, true);
  page.Text("profile title", {middle, column.Top - 130}, std::move(second), kNote, AnchorX::Center,
            ink);
  page.Text("profile range", {column.Left, column.Bottom + 150}, std::move(least), kNote,
            AnchorX::Left, page.Inks.Ink);
  page.Text("profile range", {column.Right, column.Bottom + 150}, std::move(most), kNote,
            AnchorX::Right, page.Inks.Ink);
}

void WindProfile(WavePage& page) {
  const auto column = Column(page, kWind);
  if (!column || page.In.From.Waves.Ridges.empty()) return;
  const bool isKnots = page.In.From.Set.Units.Wind == SpeedUnits::Knots;
  double most = 10;
  const std::vector<FlowLevel>& levels = page.In.From.Waves.Ridges.front().Flow.Levels;
  const auto shown = [&](const FlowLevel& level) {
    return isKnots ? level.Wind / kKnotToMs : level.Wind;
  };
  for (const FlowLevel& level : levels) {
    if (level.Height / 1000 <= page.At.TopKm()) most = std::max(most, shown(level));
  }
  const double step = RoundStep(most, 3);
  most = std::ceil(most / step) * step;
  ColumnTexts(page, *column, "Normal", std::string("  Wind  ") + (isKnots ? "kts" : "m/s"), "0",
              Mask(most, "##0"), page.Inks.Wind);
  std::vector<Point> points;
  for (const FlowLevel& level : levels) {
    if (level.Height / 1000 > page.At.TopKm()) break;
    points.push_back(
        {column->Left + shown(level) / most * column->Width(), page.At.Y(level.Height / 1000)});
  }
  if (points.size() > 1) page.Line("normal wind", points, {page.Inks.Wind, 24, LineStyle::Solid});
}

// The least of these ranges in which four fifths of the air have their l².
double ScorerRange(const WavePage& page, const std::vector<ScorerLayer>& layers) {
  double range = 1;
  for (; range < 64; range *= 2) {
    double inside = 0;
    double all = 0;
    for (const ScorerLayer& layer : layers) {
      if (layer.Top / 1000 > page.At.TopKm()) break;
      all += layer.Top - layer.Base;
      if (std::fabs(layer.L2()) <= range) inside += layer.Top - layer.Base;
    }
    constexpr double kShare = 0.8;
    if (inside >= kShare * all) break;
  }
  return range;
}

void ScorerColumn(WavePage& page) {
  const auto column = Column(page, kScorer);
  if (!column || page.In.From.Waves.Ridges.empty()) return;
  const std::vector<ScorerLayer>& layers = page.In.From.Waves.Ridges.front().Layers;
  const double most = ScorerRange(page, layers);  // km⁻²
  const double least = -most / 4;
  const auto x = [&](double l2) {
    return column->Left + (std::clamp(l2, least, most) - least) / (most - least) * column->Width();
  };
  ColumnTexts(page, *column, "Scorer", "l\xC2\xB2 km\xE2\x81\xBB\xC2\xB2", Shortest(least),
              Shortest(most), page.Inks.Scorer);
  page.Line("grid", {{x(0), column->Top}, {x(0), column->Bottom}}, page.Inks.Grid);
  std::vector<Point> points;
  for (const ScorerLayer& layer : layers) {
    if (layer.Top / 1000 > page.At.TopKm()) break;
    points.push_back({x(layer.L2()), page.At.Y(layer.Base / 1000)});
    points.push_back({x(layer.L2()), page.At.Y(layer.Top / 1000)});
  }
  if (points.size() > 1)
    page.Line("Scorer parameter", points, {page.Inks.Scorer, 20, LineStyle::Solid});
}

}  // namespace

std::optional<Rect> ColumnOf(const WavePage& page, std::string_view name) {
  const Rect* place = page.Layout.Find(name);
  if (place == nullptr) return std::nullopt;
  return Rect{place->Left + 100, page.At.Frame().Top, place->Right - 100, page.At.Frame().Bottom};
}

void DrawProfiles(WavePage& page) {
  WindProfile(page);
  ScorerColumn(page);
}

}  // namespace vexa::mountainwave
