// What the parts of a section's picture share while it is drawn.
#pragma once

#include <string_view>
#include <vector>

#include "crosssection/section_plot.h"
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

struct SectionPage : PlotPage {
  SectionPage(const SectionInput& input, const Surface& on);

  const SectionInput& In;
  const SectionOptions& Set;
  const std::vector<Column>& Columns;
  SectionInks Inks;
  FieldContext Context;
  PageLayout Layout;
  SectionMapping At;
};

/// The field in colours and lines, with its scale.
void DrawContours(SectionPage& page);

/// Wind symbols along the columns, and what they are in.
void DrawWinds(SectionPage& page);

}  // namespace vexa::crosssection
