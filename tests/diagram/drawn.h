// A diagram as a test asks for it, and what stands on its page by tag.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "analysis/analysis.h"
#include "config/options.h"
#include "diagram/sounding_plot.h"
#include "support/soundings.h"
#include "support/tagged_items.h"

namespace vexa::diagram {

using test::Tagged;
using test::Texts;
using LabelTexts = std::vector<std::string>;

inline std::string FirstText(const Picture& page, std::string_view tag) {
  const LabelTexts texts = Texts(page, tag);
  return texts.empty() ? std::string() : texts.front();
}

/// What the pointer reads on the things of a tag.
inline LabelTexts SpotsOf(const SoundingPlot& plot, std::string_view tag) {
  LabelTexts texts;
  for (const HotSpot& spot : plot.Page.HotSpots()) {
    if (spot.Tag == tag) texts.push_back(spot.Text);
  }
  return texts;
}

/// The lines of a tag, each with its points.
inline std::vector<std::vector<Point>> Lines(const Picture& page, std::string_view tag) {
  std::vector<std::vector<Point>> lines;
  for (const Polyline& line : Tagged<Polyline>(page, tag)) lines.push_back(line.Points);
  return lines;
}

/// A window of usual size.
inline constexpr Surface kPage = WindowSurface(1600, 1200);

struct Drawn {
  explicit Drawn(SoundingRecord record) : Sounding(std::move(record)) {}
  SoundingPlot operator()() {
    Results = analysis::Analyse(Sounding, Set);
    return *PlotSounding({.Sounding = Sounding,
                          .Results = Results,
                          .Set = Set,
                          .On = On,
                          .Mode = Mode,
                          .Others = Others,
                          .Fronts = Fronts,
                          .Advection = Bars,
                          .Layers = Layers,
                          .Layout = Layout,
                          .Configuration = Configuration,
                          .LoopHoldTime = HoldTime,
                          .Reference = Reference,
                          .Spread = Spread,
                          .Lines = Extra,
                          .Zoom = Zoom,
                          .Scale = Scale});
  }
  SoundingRecord Sounding;
  Options Set{};
  Surface On = kPage;
  MultiMode Mode = MultiMode::Single;
  std::vector<OverlaySounding> Others{};
  std::vector<FrontMark> Fronts{};
  std::vector<LayerMark> Layers{};
  std::string Configuration{};
  std::vector<AdvectionBar> Bars{};
  const Usual* Spread = nullptr;
  std::optional<double> HoldTime{};
  const SoundingRecord* Reference = nullptr;
  ExtraLines Extra{};
  std::optional<Rect> Zoom{};
  const DiagramMapping* Scale = nullptr;
  const LayoutRow* Layout = nullptr;
  analysis::AnalysisResults Results{};  // of the page drawn last
};

inline SoundingRecord PlainSounding() {
  return test::Profile(
      {{1000, 20, 10}, {850, 12, 5}, {500, -12, -30}, {250, -48, -60}, {100, -60, -80}},
      {{100, 180, 10}, {5000, 270, 40}});
}

// From -40 to 40 degrees, 1050 to 100 hPa, on the emagram.
inline Drawn OnEmagram(SoundingRecord sounding = PlainSounding()) {
  Drawn drawn(std::move(sounding));
  drawn.Set.Diagram = DiagramType::Emagram;
  drawn.Set.TempScaling = Scaling::Manual;
  return drawn;
}

}  // namespace vexa::diagram
