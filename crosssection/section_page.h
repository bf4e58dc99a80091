// What the parts of a section's picture share while it is drawn.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "crosssection/section_plot.h"
#include "picture/label_room.h"
#include "picture/layout.h"
#include "picture/plot_page.h"

namespace vexa::crosssection {

inline constexpr double kNote = LetterSize(Type::Note);
inline constexpr double kLabel = LetterSize(Type::Label);
inline constexpr std::string_view kColorScale = "color scale";
inline constexpr std::string_view kCaptions = "captions";

struct SectionInks : PaperAndInk {
  Color Faint{}, Ground{}, Freezing{}, Tropopause{}, Made{};
  Pen Frame{}, Grid{}, Line{}, Thick{}, Sub{};
};

/// A name under the axis: where its column stands, where its middle, and in which row.
struct PlacedName {
  std::string Text{};
  double X = 0;
  double Middle = 0;
  std::size_t Row = 0;
};

struct SectionPage : PlotPage {
  SectionPage(const SectionInput& input, const Surface& on);

  /// A text that comes over lines and symbols, when these have been drawn.
  void PutOnTop(std::string_view tag, Point at, std::string text, double size, bool bold = false,
                double angle = 0) {
    OnTop.push_back({std::string(tag), Label{.At = at,
                                             .Text = std::move(text),
                                             .Across = AnchorX::Center,
                                             .Size = size,
                                             .Ink = Inks.Ink,
                                             .Bold = bold,
                                             .Angle = angle,
                                             .Halo = Inks.Paper}});
  }

  const SectionInput& In;
  const SectionOptions& Set;
  const std::vector<Column>& Columns;
  SectionInks Inks;
  FieldContext Context;
  PageLayout Layout;
  std::vector<PlacedName> Names;
  SectionMapping At;
  LabelRoom Room;  // of the texts in the frame
  std::vector<Item> OnTop{};
};

/// The field in colours and lines, with its scale.
void DrawContours(SectionPage& page);

/// Wind symbols along the columns, and what they are in.
void DrawWinds(SectionPage& page);

}  // namespace vexa::crosssection
