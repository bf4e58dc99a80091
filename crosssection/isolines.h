// Isolines of a grid and the regions between them. Marching squares (Lorensen and Cline 1987, in
// two dimensions) with the asymptotic decider of Nielson and Hamann (1991): the line passes where
// the bilinear surface through a cell's corners has the level. Lines and regions come from the same
// walk, so that colours end where the lines run.
#pragma once

#include <optional>
#include <vector>

#include "crosssection/grid.h"
#include "picture/picture.h"

namespace vexa::crosssection {

/// A line of one level, in columns and rows of the grid from 1. Larger values lie at its left, as
/// it runs up the rows.
struct Isoline {
  double Level = 0;
  std::vector<Point> Points{};  // the first again at the end of a closed line
  bool IsClosed = false;
};

/// Where a field reaches a level: its lines, open ones first, and the area of all values from the
/// level up as rings (even-odd) that end at the border of what has values.
struct Contour {
  double Level = 0;
  std::vector<Isoline> Lines{};
  std::vector<std::vector<Point>> Region{};
};

/// The contour of a level. A level that a node has exactly counts as 1e-6 of the interval higher.
/// Cells that lack a node have no part in it. `corners` passes of corner cutting smooth the lines,
/// and the regions with them.
Contour TraceContour(const GridX& grid, double level, double interval, int corners = 1);

/// Value of the bilinear surface at the saddle of a cell whose corners hold v1 … v4 in turn.
double SaddleValue(double v1, double v2, double v3, double v4);

/// The corner cutting of Chaikin (1974): each stretch keeps its middle half. Open ends stay.
std::vector<Point> CutCorners(const std::vector<Point>& line, bool isClosed);

/// Place for a label: the middle of the straightest part of a line of about so much length, with
/// the line's direction there; none for a line shorter than `least`. Lengths are those of the
/// points' plane.
struct LabelPlace {
  Point At{};
  double Angle = 0;  // degrees anticlockwise with y downwards, -90 to 90
};
std::optional<LabelPlace> PlaceLabel(const std::vector<Point>& line, double least, double span);

}  // namespace vexa::crosssection
