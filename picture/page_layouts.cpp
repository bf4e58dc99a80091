#include "picture/page_layouts.h"

#include <algorithm>
#include <array>

namespace vexa {
namespace {

constexpr double kBoxWidth = Px(264);

// The regions of every layout of the diagram.
constexpr RegionRow kTitle{
    .Name = "title", .At = Place::Above, .LeastHeight = Px(28), .Priority = 1};
constexpr RegionRow kDiagram{
    .Name = "diagram", .At = Place::Main, .LeastWidth = Px(250), .LeastHeight = Px(200)};
// Without it the marks stand inside the frame: on a narrow page the boxes are worth more.
constexpr RegionRow kGutter{.Name = "marks",
                            .At = Place::Beside,
                            .LeastWidth = Px(128),
                            .Priority = 14,
                            .MainAspect = 0.95};
constexpr RegionRow kWind{.Name = "wind", .At = Place::Beside, .LeastWidth = Px(64), .Priority = 3};
constexpr RegionRow kWindNumbers{
    .Name = "wind", .At = Place::Beside, .LeastWidth = Px(124), .Priority = 3};
constexpr RegionRow kAdvection{.Name = "advection",
                               .At = Place::Beside,
                               .LeastWidth = Px(72),
                               .Priority = 15,
                               .MainAspect = 0.95,
                               .Caption = "advection",
                               .Elsewhere = "Frontal Analysis"};
constexpr RegionRow kLegend{
    .Name = "legend", .At = Place::Under, .LeastHeight = Px(18), .Priority = 5};
constexpr RegionRow kFullLegend{
    .Name = "legend", .At = Place::Under, .LeastHeight = Px(36), .Priority = 2};
constexpr RegionRow kStatus{
    .Name = "status", .At = Place::Foot, .LeastHeight = Px(16), .Priority = 2};

constexpr RegionRow Box(std::string_view name, double lines, int priority, std::string_view caption,
                        std::string_view elsewhere, double stretch = 0) {
  return {.Name = name,
          .At = Place::Side,
          .LeastWidth = kBoxWidth,
          .LeastHeight = BoxHeight(lines),
          .Priority = priority,
          .Stretch = stretch,
          .Caption = caption,
          .Elsewhere = elsewhere};
}

constexpr RegionRow kHodograph{.Name = "hodograph",
                               .At = Place::Side,
                               .LeastWidth = kBoxWidth,
                               .LeastHeight = Px(196),
                               .Priority = 10,
                               .Stretch = 1,
                               .IsSquare = true,
                               .Caption = "hodograph",
                               .Elsewhere = "menu Displays"};
constexpr RegionRow kStorm = Box("storm", 7, 12, "storm motion", "Hodograph");
constexpr RegionRow kParcels = Box("parcels", 7, 9, "parcels", "F4", 1);
constexpr RegionRow kIndices = Box("indices", 6, 11, "indices", "F4", 3);
constexpr RegionRow kLayers = Box("layers", 5, 13, "layers", "Layer Analyzer", 2);
// For very wide pages; elsewhere nobody misses it.
constexpr RegionRow kWeather = Box("weather", 9, 20, "", "", 1);
constexpr RegionRow kLines = Box("lines", 12, 4, "what each line says", "F1", 1);
constexpr RegionRow kAnalysis = Box("analysis", 16, 11, "analysis", "F4", 1);

constexpr std::array kDiagramRegions = {kTitle,  kDiagram, kGutter,    kWind,
                                        kLegend, kStatus,  kHodograph, kAnalysis};
constexpr std::array kForecasterRegions = {kTitle,   kDiagram, kGutter,    kWind,  kAdvection,
                                           kLegend,  kStatus,  kHodograph, kStorm, kParcels,
                                           kIndices, kLayers,  kWeather};
constexpr std::array kPilotRegions = {kTitle,
                                      kDiagram,
                                      kGutter,
                                      kWindNumbers,
                                      kLegend,
                                      kStatus,
                                      Box("clouds", 5, 9, "clouds", "F4", 1),
                                      Box("thermals", 7, 10, "thermals", "menu Displays"),
                                      Box("freezing", 5, 11, "freezing level and icing", "F4", 1),
                                      Box("inversions", 5, 12, "inversions", "F4", 1),
                                      Box("winds", 6, 13, "winds by height", "F4", 2)};
constexpr std::array kTeachingRegions = {kTitle,      kDiagram, kGutter, kWind,
                                         kFullLegend, kStatus,  kLines};

constexpr std::array kLayouts = {
    LayoutRow{"diagram", "Diagram", "The diagram with hodograph and analysis", kDiagramRegions},
    LayoutRow{"forecaster", "Forecaster",
              "Hodograph, storm motion, parcels, indices and layers beside the diagram",
              kForecasterRegions},
    LayoutRow{"pilot",
              "Pilot",
              "The lowest 6 km by height, winds as numbers, clouds, thermals, icing",
              kPilotRegions,
              {.Depth = 6000, .HeightsFirst = true, .WindNumbers = true}},
    LayoutRow{"teaching",
              "Teaching",
              "The diagram alone with every line explained",
              kTeachingRegions,
              {.FullLegend = true}},
};

}  // namespace

std::span<const LayoutRow> PageLayouts() {
  return kLayouts;
}

const LayoutRow* FindLayout(std::string_view name) {
  const auto row = std::ranges::find(kLayouts, name, &LayoutRow::Name);
  return row == kLayouts.end() ? nullptr : &*row;
}

}  // namespace vexa
