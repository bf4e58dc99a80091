// A section's picture: a field in colours under labelled lines or in boxes, the ground under the
// stations, their winds and names, tropopause and freezing level.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "config/view_settings.h"
#include "crosssection/section_grid.h"
#include "picture/picture.h"
#include "picture/surface.h"

namespace vexa::crosssection {

/// What a picture is drawn from.
struct SectionInput {
  const Section& Of;
  const SectionOptions& Set;
  const ViewSettings& Look;  // of the wind symbols: hemisphere, feathers, every n-th
  const FieldAnalysis& Field;
};

/// Places of the section to places of the page, and back.
class SectionMapping {
 public:
  SectionMapping() = default;
  SectionMapping(const Rect& frame, double fromX, double toX, const VerticalAxis& axis)
      : frame_(frame), fromX_(fromX), toX_(toX), axis_(axis) {}

  const Rect& Frame() const { return frame_; }
  const VerticalAxis& Axis() const { return axis_; }
  double X(double x) const { return frame_.Left + (x - fromX_) / (toX_ - fromX_) * frame_.Width(); }
  double Y(double coordinate) const {
    return frame_.Bottom - axis_.Share(coordinate) * frame_.Height();
  }
  double XAt(double x) const {
    return fromX_ + (x - frame_.Left) / frame_.Width() * (toX_ - fromX_);
  }
  double CoordinateAt(double y) const {
    return axis_.Bottom + (frame_.Bottom - y) / frame_.Height() * (axis_.Top - axis_.Bottom);
  }

 private:
  Rect frame_{};
  double fromX_ = 0;
  double toX_ = 1;
  VerticalAxis axis_{};
};

struct SectionPlot {
  Picture Page{};
  SectionMapping At{};
};

SectionPlot PlotSection(const SectionInput& input, const Surface& on);

/// "  VEXA Cross-Section for:  NAME"; "  VEXA Cross-Section" without a name.
std::string SectionTitle(const Section& section);

/// The column nearest to a place of the page; none outside the frame.
std::optional<std::size_t> ColumnAt(const Section& section, const SectionMapping& at, Point place);

/// What the pointer reads: position and elevation of the nearest sounding, the distance along the
/// section and the height; empty outside the frame.
std::string ReadSection(const SectionInput& input, const SectionMapping& at, Point place);

/// "Sounding:  NAME   -   Elev:  357 m".
std::string SoundingLine(const Column& column);

/// Every how many winds a symbol is drawn so that they stand a symbol's length apart on average in
/// every column; the setting's own number where it gives one.
int WindStep(const SectionInput& input, const SectionMapping& at);

}  // namespace vexa::crosssection
