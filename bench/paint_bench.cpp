// How long the parts of a page take to paint at 1600 x 1200: what a change to the painter costs.
#include <benchmark/benchmark.h>

#include <cmath>
#include <QImage>
#include <QPainter>
#include <string>
#include <utility>

#include "output/paint/paint.h"

namespace {

using vexa::Picture;
using vexa::Point;

constexpr vexa::Color kInk{160, 90, 30};

Picture Page() {
  return {12000, 9000, {255, 255, 255}};
}

vexa::Polyline Wave(int points, double height, const vexa::Pen& pen) {
  vexa::Polyline line{.Stroke = pen};
  for (int i = 0; i < points; ++i) {
    line.Points.push_back({1300 + 6600.0 * i / points, height + 300 * std::sin(i * 0.05)});
  }
  return line;
}

Picture GridLines() {
  Picture page = Page();
  for (int i = 0; i < 120; ++i) {
    page.Add("curve", Wave(60, 600 + 60.0 * i, {kInk, 10, vexa::LineStyle::Solid}));
  }
  return page;
}

Picture DashedLines() {
  Picture page = Page();
  for (int i = 0; i < 30; ++i) {
    page.Add("dash", Wave(60, 600 + 200.0 * i, {kInk, 12, vexa::LineStyle::Dash}));
  }
  return page;
}

Picture Traces() {
  Picture page = Page();
  for (int i = 0; i < 4; ++i) {
    page.Add("trace", Wave(3000, 3000 + 1000.0 * i, {kInk, 35, vexa::LineStyle::Solid}));
  }
  return page;
}

Picture Labels(vexa::Color halo) {
  Picture page = Page();
  for (int i = 0; i < 200; ++i) {
    page.Add("label", vexa::Label{.At = {500 + 1000.0 * (i % 11), 400 + 450.0 * (i / 11.0)},
                                  .Text = std::to_string(1000 - i) + " mb",
                                  .Across = static_cast<vexa::AnchorX>(i % 3),
                                  .Size = i % 2 == 0 ? 150.0 : 125.0,
                                  .Halo = halo});
  }
  return page;
}

void Paint(benchmark::State& state, const Picture& page) {
  QImage image(1600, 1200, QImage::Format_RGB32);
  for (auto _ : state) {
    QPainter painter(&image);
    vexa::paint::Paint(page, painter, image.rect());
  }
}
BENCHMARK_CAPTURE(Paint, empty, Page())->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Paint, grid120, GridLines())->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Paint, dashed30, DashedLines())->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Paint, traces4x3000, Traces())->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Paint, labels200, Labels({0, 0, 0, 0}))->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Paint, halos200, Labels({255, 255, 255}))->Unit(benchmark::kMillisecond);

}  // namespace
