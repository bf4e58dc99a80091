// A diagram as a test asks for it, and what stands on its page by tag.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "analysis/analysis.h"
#include "config/options.h"
#include "diagram/sounding_plot.h"
#include "support/tagged_items.h"

namespace vexa::diagram {

using test::Tagged;

inline std::vector<std::string> Texts(const Picture& page, std::string_view tag) {
  std::vector<std::string> texts;
  for (const Item* item : Tagged(page, tag)) texts.push_back(std::get<Label>(item->Shape).Text);
  return texts;
}

/// The lines of a tag, each with its points.
inline std::vector<std::vector<Point>> Lines(const Picture& page, std::string_view tag) {
  std::vector<std::vector<Point>> lines;
  for (const Item* item : Tagged(page, tag)) {
    if (const auto* line = std::get_if<Polyline>(&item->Shape)) lines.push_back(line->Points);
  }
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
                          .On = kPage,
                          .Mode = Mode,
                          .Others = Others,
                          .Layers = Layers,
                          .LoopHoldTime = HoldTime,
                          .Reference = Reference,
                          .Lines = Extra,
                          .Zoom = Zoom});
  }
  SoundingRecord Sounding;
  Options Set{};
  MultiMode Mode = MultiMode::Single;
  std::vector<OverlaySounding> Others{};
  std::vector<LayerMark> Layers{};
  std::optional<double> HoldTime{};
  const SoundingRecord* Reference = nullptr;
  ExtraLines Extra{};
  std::optional<Rect> Zoom{};
  analysis::AnalysisResults Results{};
};

}  // namespace vexa::diagram
