// How long a redraw takes at 1600 x 1200: the picture built, built and painted, and built and
// painted over a ground that is kept, as the window does it.

#include <benchmark/benchmark.h>

#include <cmath>
#include <functional>
#include <optional>
#include <QImage>
#include <QPainter>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "analysis/adiabat_table.h"
#include "analysis/analysis.h"
#include "analysis/severe_table.h"
#include "config/options.h"
#include "core/raw_file.h"
#include "diagram/sounding_plot.h"
#include "display/side_boxes.h"
#include "hodograph/hodograph_plot.h"
#include "output/paint/paint.h"
#include "sounding/sounding_source.h"

namespace {

using vexa::SoundingRecord;

constexpr vexa::Surface kPage = vexa::WindowSurface(1600, 1200);

// A warm, moist troposphere under a tropopause at 200 hPa, with the fine structure that keeps a
// trace from being a straight line.
SoundingRecord MakeSounding(int levels) {
  SoundingRecord record;
  vexa::SetElevation(record, 350);
  record.StationTitle = "Benchmark";
  for (int i = 0; i < levels; ++i) {
    const double share = static_cast<double>(i) / (levels - 1);
    const double press = 965 * std::pow(10.0 / 965, share);
    const double height = 350 + 7400 * std::log(965 / press);
    const double wiggle = 0.4 * std::sin(77 * share) + 0.05 * std::sin(i * 1.7);
    const double temp = press > 200 ? 28 - 0.0067 * (height - 350) + wiggle : -58 + wiggle;
    record.AddTemp(press, temp, temp - 3 - 20 * share - 2 * std::sin(33 * share));
    record.AddWind(height, 180 + 80 * share, 15 + 90 * share);
  }
  return record;
}

void BuildPicture(benchmark::State& state) {
  const SoundingRecord sounding = MakeSounding(static_cast<int>(state.range(0)));
  const vexa::Options options;
  const auto results = vexa::analysis::Analyse(sounding, options);
  for (auto _ : state) {
    benchmark::DoNotOptimize(vexa::diagram::PlotSounding(
        {.Sounding = sounding, .Results = results, .Set = options, .On = kPage}));
  }
}
BENCHMARK(BuildPicture)->Arg(110)->Arg(3000)->Unit(benchmark::kMillisecond);

void BuildAndPaint(benchmark::State& state) {
  const SoundingRecord sounding = MakeSounding(static_cast<int>(state.range(0)));
  vexa::Options options;
  options.Diagram = static_cast<vexa::DiagramType>(state.range(1));
  const auto results = vexa::analysis::Analyse(sounding, options);
  for (auto _ : state) {
    const auto plot = vexa::diagram::PlotSounding(
        {.Sounding = sounding, .Results = results, .Set = options, .On = kPage});
    benchmark::DoNotOptimize(vexa::paint::ToImage(plot->Page, 1600, 1200));
  }
}
BENCHMARK(BuildAndPaint)
    ->ArgsProduct({{110, 3000}, {0, 1, 2}})
    ->ArgNames({"levels", "diagram"})
    ->Unit(benchmark::kMillisecond);

// From the bytes of a native file to a picture of the size of a window, all made anew but for the
// saturated adiabats.
void FileToPicture(benchmark::State& state) {
  SoundingRecord record = MakeSounding(static_cast<int>(state.range(0)));
  record.FileTag = "VEXA 5.7";
  const std::string text = vexa::WriteRaw(record);
  const vexa::Options options;
  vexa::analysis::AdiabatTable table;
  for (auto _ : state) {
    vexa::SoundingSource source(vexa::SourceText("long.RAW", text));
    const vexa::Loading loading = source.Load(0, {});
    if (!loading.Sounding) return state.SkipWithError("the file is not read");
    const SoundingRecord& sounding = loading.Sounding->Record;
    const auto results = vexa::analysis::Analyse(sounding, options, table);
    const auto plot = vexa::diagram::PlotSounding(
        {.Sounding = sounding, .Results = results, .Set = options, .On = kPage});
    benchmark::DoNotOptimize(vexa::paint::ToImage(plot->Page, 1600, 1200));
  }
}
BENCHMARK(FileToPicture)->Arg(110)->Arg(2800)->ArgName("levels")->Unit(benchmark::kMillisecond);

// Of a change of the sounding; the grid stays. The first picture is made before the clock runs.
void Repeat(benchmark::State& state, const vexa::diagram::PlotInput& input,
            const std::function<std::vector<vexa::PageBox>()>& boxes) {
  QImage window(1600, 1200, QImage::Format_RGB32);
  vexa::paint::KeptGround ground;
  std::optional<vexa::diagram::SoundingPlot> plot;
  const auto draw = [&] {
    vexa::diagram::PlotInput again = input;
    again.Boxes = boxes();
    again.Before = plot ? &*plot : nullptr;
    plot = vexa::diagram::PlotSounding(again);
    QPainter painter(&window);
    vexa::paint::Paint(plot->Page, painter, QRectF(0, 0, 1600, 1200), &ground);
  };
  draw();
  for (auto _ : state) draw();
}

void Redraw(benchmark::State& state) {
  const SoundingRecord sounding = MakeSounding(static_cast<int>(state.range(0)));
  const vexa::Options options;
  const auto results = vexa::analysis::Analyse(sounding, options);
  Repeat(state, {.Sounding = sounding, .Results = results, .Set = options, .On = kPage},
         [] { return std::vector<vexa::PageBox>(); });
}
BENCHMARK(Redraw)->Arg(110)->Arg(2800)->ArgName("levels")->Unit(benchmark::kMillisecond);

// The same of the first window, with all boxes of its layout.
void RedrawForecaster(benchmark::State& state) {
  const SoundingRecord sounding = MakeSounding(static_cast<int>(state.range(0)));
  const vexa::Options options;
  const auto results = vexa::analysis::Analyse(sounding, options);
  const vexa::analysis::SevereTable severe = vexa::analysis::DefaultSevereTable();
  Repeat(state,
         {.Sounding = sounding,
          .Results = results,
          .Set = options,
          .On = kPage,
          .Layout = vexa::FindLayout("forecaster")},
         [&] {
           auto boxes = vexa::display::PageBoxes({sounding, results, options, severe});
           const vexa::hodograph::HodographInput winds{
               .Sounding = sounding, .Results = results, .Set = options};
           if (auto box = vexa::hodograph::HodographBox(winds)) boxes.push_back(std::move(*box));
           return boxes;
         });
}
BENCHMARK(RedrawForecaster)->Arg(110)->Arg(2800)->ArgName("levels")->Unit(benchmark::kMillisecond);

// What the items of one kind cost to paint.
void PaintKind(benchmark::State& state, const std::string& tag) {
  const SoundingRecord sounding = MakeSounding(110);
  const vexa::Options options;
  const auto results = vexa::analysis::Analyse(sounding, options);
  const auto plot = vexa::diagram::PlotSounding(
      {.Sounding = sounding, .Results = results, .Set = options, .On = kPage});
  vexa::Picture part(plot->Page.Width(), plot->Page.Height(), plot->Page.Paper());
  for (const vexa::Item& item : plot->Page.Items()) {
    const bool isText = std::holds_alternative<vexa::Label>(item.Shape);
    if (tag == "all" || (tag == "texts" && isText) || item.Tag == tag) {
      std::visit([&](const auto& shape) { part.Add(item.Tag, shape); }, item.Shape);
    }
  }
  QImage window(1600, 1200, QImage::Format_RGB32);
  for (auto _ : state) {
    QPainter painter(&window);
    vexa::paint::Paint(part, painter, QRectF(0, 0, 1600, 1200));
  }
}
#define VEXA_KIND(name, tag) BENCHMARK_CAPTURE(PaintKind, name, tag)->Unit(benchmark::kMillisecond)
VEXA_KIND(all, "all");
VEXA_KIND(nothing, "nothing");
VEXA_KIND(texts, "texts");
VEXA_KIND(ground, "ground");
VEXA_KIND(dry, "dry adiabat");
VEXA_KIND(saturated, "saturation adiabat");
VEXA_KIND(mixing, "mixing ratio line");
VEXA_KIND(isotherms, "isotherm");
VEXA_KIND(temperature, "temperature");
VEXA_KIND(dewpoint, "dew point");
VEXA_KIND(cape, "CAPE area");
VEXA_KIND(parcel, "parcel");
VEXA_KIND(isobars, "pressure line");
VEXA_KIND(feathers, "wind feather");
VEXA_KIND(shafts, "wind shaft");
VEXA_KIND(heights, "height scale");

}  // namespace
