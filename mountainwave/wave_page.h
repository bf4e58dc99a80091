// What the parts of the wave diagram share while it is drawn.
#pragma once

#include <optional>
#include <string_view>

#include "mountainwave/wave_plot.h"
#include "picture/label_room.h"
#include "picture/layout.h"
#include "picture/plot_page.h"

namespace vexa::mountainwave {

inline constexpr double kNote = LetterSize(Type::Note);
inline constexpr double kLabel = LetterSize(Type::Label);
inline constexpr std::string_view kWind = "wind";
inline constexpr std::string_view kScorer = "scorer";

struct WaveInks : PaperAndInk {
  Color Faint{}, Rock{}, Terrain{}, Meadow{}, Interface{}, Wind{}, Scorer{}, Rotor{};
  Pen Frame{}, Grid{}, Stream{};
};

struct WavePage : PlotPage {
  WavePage(const WavePlotInput& input, const Surface& on);

  const WavePlotInput& In;
  WaveInks Inks;
  PageLayout Layout;
  WaveMapping At{};
  LabelRoom Labels{Rect{}};
};

/// A column at the side with the diagram's heights; none where it found no room.
std::optional<Rect> ColumnOf(const WavePage& page, std::string_view name);

/// The wind across the ridge and the Scorer parameter, each in its column.
void DrawProfiles(WavePage& page);

}  // namespace vexa::mountainwave
