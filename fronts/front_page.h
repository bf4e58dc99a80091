// What the parts of the display of fronts share while it is drawn.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "fronts/front_plot.h"
#include "fronts/front_text.h"
#include "hodograph/inks.h"
#include "picture/layout.h"

namespace vexa::fronts {

inline constexpr double kText = LetterSize(Type::Label);
inline constexpr double kNote = LetterSize(Type::Note);

struct FrontPage {
  const FrontPlotInput& In;
  FrontPlot& Plot;
  hodograph::Inks Colors{};
  FrontInks Fronts{};

  const DisplaySettings& Set() const { return In.Winds.Set; }
  const Front* Found() const { return In.Fronts.Found ? &*In.Fronts.Found : nullptr; }
  FrontSource Source() const {
    return {In.Fronts, In.Winds.Window.Front, Set(), In.Winds.Window.Distance};
  }
};

void Write(FrontPage& page, std::string_view tag, Point at, std::string text, double size,
           AnchorX across = AnchorX::Left, bool bold = false, Face face = Face::Sans);
void DrawFrame(FrontPage& page, const Rect& box, std::string_view tag);

/// An ink that lets through what lies beneath.
Color Faded(Color ink, std::uint8_t alpha);

/// The height above the station up to which the page shows winds and layers, m.
double Depth(const FrontPage& page);

/// A layer in a line, for the pointer.
std::string LayerText(const FrontLayer& layer, const DisplaySettings& set);

/// The normal wind by pressure, the frontal zone and its jump.
void DrawProfile(FrontPage& page, const Rect& region);

/// What is said of the front and of the settings; the room that these want, in lines.
void DrawTexts(FrontPage& page, const Rect& region);
double TextLines(const FrontPage& page);

/// The layers in rows and, in what they leave, how the front came about; the room for them.
void DrawLayers(FrontPage& page, const Rect& region);
struct Room {
  double Width = 0;
  double Height = 0;
};
Room LayersRoom(const FrontPage& page);

}  // namespace vexa::fronts
