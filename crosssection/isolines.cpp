#include "crosssection/isolines.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <utility>

#include "core/units.h"

namespace vexa::crosssection {
namespace {

// A vertex of the walk: a node of the grid, or the place on one of its edges where the level lies.
enum class Spot : std::uint32_t { Node, Right, Up };  // the edge to the right of a node, or up
using Vertex = std::uint32_t;

// The steps around what is inside the level: lines through cells, and the border of what has values
// where that is inside. Where two cells with values meet there is no border.
class Walk {
 public:
  Walk(const GridX& grid, double level)
      : grid_(grid), level_(level), columns_(grid.Columns()), rows_(grid.Rows()) {
    Mark();
    for (int row = 1; row < rows_; ++row) {
      for (int column = 1; column < columns_; ++column) {
        if (IsCell(column, row)) Cell(column, row);
      }
    }
  }

  // Closed rings of steps around what is inside, each as its vertices and whether the step that
  // leaves a vertex is a piece of a line.
  struct Ring {
    std::vector<Point> Points{};
    std::vector<bool> IsLine{};
  };
  std::vector<Ring> Rings() {
    std::vector<Ring> rings;
    for (const Vertex start : order_) {
      while (steps_[start].Left > 0) {
        Ring ring;
        Vertex at = start;
        do {
          const Step step = Take(at);
          ring.Points.push_back(PlaceOf(at));
          ring.IsLine.push_back(step.IsLine);
          at = step.To;
        } while (at != start && steps_[at].Left > 0);
        rings.push_back(std::move(ring));
      }
    }
    return rings;
  }

 private:
  struct Step {
    Vertex To = 0;
    bool IsLine = false;  // inside a cell, where the field has the level
  };
  // Two cells that touch with a corner alone have two steps there; a vertex never has more.
  struct Steps {
    std::array<Step, 2> Of{};
    std::uint8_t Count = 0;
    std::uint8_t Left = 0;  // not yet taken
  };

  std::size_t NodeIndex(int column, int row) const {
    return static_cast<std::size_t>(row - 1) * static_cast<std::size_t>(columns_) +
           static_cast<std::size_t>(column - 1);
  }
  bool IsInside(int column, int row) const { return inside_[NodeIndex(column, row)] != 0; }
  // Whether a cell, named by its lower left node, is on the grid and has values at its corners.
  bool IsCell(int column, int row) const {
    return column >= 1 && row >= 1 && column < columns_ && row < rows_ &&
           cells_[NodeIndex(column, row)] != 0;
  }

  void Mark() {
    const std::vector<float>& values = grid_.Values();
    inside_.resize(values.size());
    cells_.assign(values.size(), 0);
    steps_.resize(3 * values.size());
    for (std::size_t i = 0; i < values.size(); ++i) inside_[i] = values[i] >= level_ ? 1 : 0;
    for (int row = 1; row < rows_; ++row) {
      for (int column = 1; column < columns_; ++column) {
        cells_[NodeIndex(column, row)] = grid_.Has(column, row) && grid_.Has(column + 1, row) &&
                                                 grid_.Has(column, row + 1) &&
                                                 grid_.Has(column + 1, row + 1)
                                             ? 1
                                             : 0;
      }
    }
  }

  Vertex At(int column, int row, Spot spot) const {
    return static_cast<Vertex>(3 * NodeIndex(column, row)) + static_cast<Vertex>(spot);
  }
  Point PlaceOf(Vertex vertex) const {
    const int node = static_cast<int>(vertex / 3);
    const int row = node / columns_ + 1;
    const int column = node % columns_ + 1;
    const auto spot = static_cast<Spot>(vertex % 3);
    if (spot == Spot::Node) return {static_cast<double>(column), static_cast<double>(row)};
    const bool right = spot == Spot::Right;
    const double from = grid_(column, row);
    const double to = right ? grid_(column + 1, row) : grid_(column, row + 1);
    const double share = (level_ - from) / (to - from);
    return right ? Point{column + share, static_cast<double>(row)}
                 : Point{static_cast<double>(column), row + share};
  }

  void Add(Vertex from, Vertex to, bool isLine) {
    Steps& steps = steps_[from];
    if (steps.Count == 0) order_.push_back(from);
    steps.Of[steps.Count++] = {to, isLine};
    ++steps.Left;
  }
  Step Take(Vertex from) {
    Steps& steps = steps_[from];
    return steps.Of[static_cast<std::size_t>(steps.Count - steps.Left--)];
  }

  void Cell(int column, int row) {
    struct Corner {
      int Column, Row;
    };
    const std::array<Corner, 4> corners = {
        {{column, row}, {column + 1, row}, {column + 1, row + 1}, {column, row + 1}}};
    // The side behind each corner, anticlockwise: whether it is a border.
    const std::array<bool, 4> border = {!IsCell(column, row - 1), !IsCell(column + 1, row),
                                        !IsCell(column, row + 1), !IsCell(column - 1, row)};
    std::array<bool, 4> inside{};
    int count = 0;
    for (std::size_t k = 0; k < 4; ++k) {
      inside[k] = IsInside(corners[k].Column, corners[k].Row);
      count += inside[k] ? 1 : 0;
    }
    if (count == 0 || (count == 4 && std::ranges::none_of(border, std::identity{}))) return;
    const std::array<Vertex, 4> edges = {
        At(column, row, Spot::Right), At(column + 1, row, Spot::Up),
        At(column, row + 1, Spot::Right), At(column, row, Spot::Up)};
    const auto node = [&](std::size_t k) {
      return At(corners[k].Column, corners[k].Row, Spot::Node);
    };
    const bool isSaddle = count == 2 && inside[0] == inside[2];
    if (isSaddle && !JoinsInside(column, row)) {
      for (std::size_t k = 0; k < 4; ++k) {
        if (!inside[k]) continue;
        const std::size_t before = (k + 3) % 4;
        if (border[before]) Add(edges[before], node(k), false);
        if (border[k]) Add(node(k), edges[k], false);
        Add(edges[k], edges[before], true);
      }
      return;
    }
    // Around the cell: along its border where that is inside, across it from where the border
    // leaves the inside to where it comes back.
    struct Turn {
      Vertex At = 0;
      bool IsLine = false;  // what leaves it
      bool IsBorder = false;
    };
    std::array<Turn, 8> ring{};
    std::size_t length = 0;
    for (std::size_t k = 0; k < 4; ++k) {
      const std::size_t next = (k + 1) % 4;
      if (inside[k]) ring[length++] = {node(k), false, border[k]};
      if (inside[k] != inside[next]) ring[length++] = {edges[k], inside[k], border[k]};
    }
    for (std::size_t i = 0; i < length; ++i) {
      if (ring[i].IsLine || ring[i].IsBorder) {
        Add(ring[i].At, ring[(i + 1) % length].At, ring[i].IsLine);
      }
    }
  }

  bool JoinsInside(int column, int row) const {
    return SaddleValue(grid_(column, row), grid_(column + 1, row), grid_(column + 1, row + 1),
                       grid_(column, row + 1)) >= level_;
  }

  const GridX& grid_;
  double level_;
  int columns_;
  int rows_;
  std::vector<std::uint8_t> inside_{};  // of each node
  std::vector<std::uint8_t> cells_{};   // of each cell, by its lower left node
  std::vector<Steps> steps_{};
  std::vector<Vertex> order_{};
};

// The ring begun at a place where the border becomes a line, so that no line is cut in two.
void BeginAtLine(Walk::Ring& ring) {
  const std::size_t count = ring.Points.size();
  for (std::size_t i = 0; i < count; ++i) {
    if (!ring.IsLine[i] || ring.IsLine[(i + count - 1) % count]) continue;
    std::ranges::rotate(ring.Points, ring.Points.begin() + static_cast<std::ptrdiff_t>(i));
    std::rotate(ring.IsLine.begin(), ring.IsLine.begin() + static_cast<std::ptrdiff_t>(i),
                ring.IsLine.end());
    return;
  }
}

std::vector<Point> Cut(std::vector<Point> line, bool isClosed, int passes) {
  for (int pass = 0; pass < passes; ++pass) line = CutCorners(line, isClosed);
  return line;
}

// Takes a ring apart into its lines and puts it together again with the lines smoothed.
void TakeRing(Walk::Ring ring, int corners, Contour& into) {
  const bool isLine = std::ranges::all_of(ring.IsLine, [](bool line) { return line; });
  if (isLine) {
    ring.Points.push_back(ring.Points.front());
    std::vector<Point> line = Cut(std::move(ring.Points), true, corners);
    into.Region.push_back(line);
    into.Lines.push_back({into.Level, std::move(line), true});
    return;
  }
  BeginAtLine(ring);
  std::vector<Point> region;
  const std::size_t count = ring.Points.size();
  for (std::size_t i = 0; i < count;) {
    if (!ring.IsLine[i]) {
      region.push_back(ring.Points[i++]);
      continue;
    }
    std::vector<Point> line;
    for (; i < count && ring.IsLine[i]; ++i) line.push_back(ring.Points[i]);
    line.push_back(ring.Points[i % count]);
    line = Cut(std::move(line), false, corners);
    region.insert(region.end(), line.begin(), line.end() - 1);
    into.Lines.push_back({into.Level, std::move(line), false});
  }
  region.push_back(region.front());
  into.Region.push_back(std::move(region));
}

Point Between(const Point& from, const Point& to, double share) {
  return {from.X + (to.X - from.X) * share, from.Y + (to.Y - from.Y) * share};
}

double Distance(const Point& a, const Point& b) {
  return std::hypot(b.X - a.X, b.Y - a.Y);
}

}  // namespace

double SaddleValue(double v1, double v2, double v3, double v4) {
  return (v1 * v3 - v2 * v4) / (v1 + v3 - v2 - v4);
}

std::vector<Point> CutCorners(const std::vector<Point>& line, bool isClosed) {
  if (line.size() < 3) return line;
  std::vector<Point> cut;
  cut.reserve(2 * line.size());
  if (!isClosed) cut.push_back(line.front());
  for (std::size_t i = 0; i + 1 < line.size(); ++i) {
    if (isClosed || i > 0) cut.push_back(Between(line[i], line[i + 1], 0.25));
    if (isClosed || i + 2 < line.size()) cut.push_back(Between(line[i], line[i + 1], 0.75));
  }
  cut.push_back(isClosed ? cut.front() : line.back());
  return cut;
}

Contour TraceContour(const GridX& grid, double level, double interval, int corners) {
  constexpr double kShift = 1e-6;  // of the interval
  Contour contour{.Level = level};
  const bool isNode = std::ranges::any_of(
      grid.Values(), [level](float value) { return static_cast<double>(value) == level; });
  Walk walk(grid, isNode ? level + kShift * interval : level);
  for (Walk::Ring& ring : walk.Rings()) TakeRing(std::move(ring), corners, contour);
  std::ranges::stable_partition(contour.Lines, [](const Isoline& line) { return !line.IsClosed; });
  return contour;
}

std::optional<LabelPlace> PlaceLabel(const std::vector<Point>& line, double least, double span) {
  std::vector<double> along = {0};
  for (std::size_t i = 1; i < line.size(); ++i) {
    along.push_back(along.back() + Distance(line[i - 1], line[i]));
  }
  if (line.size() < 2 || along.back() < least || along.back() < span) return std::nullopt;
  // The stretch of the span that is nearest to a straight one: its ends lie farthest apart.
  double best = -1;
  LabelPlace place;
  std::size_t end = 0;
  for (std::size_t begin = 0; begin + 1 < line.size(); ++begin) {
    while (end + 1 < line.size() && along[end] - along[begin] < span) ++end;
    const double way = along[end] - along[begin];
    if (way < span) break;
    const double straight = Distance(line[begin], line[end]) / way;
    if (straight <= best + 1e-9) continue;
    best = straight;
    std::size_t middle = begin;
    while (along[middle + 1] - along[begin] < way / 2) ++middle;
    const double step = along[middle + 1] - along[middle];
    const double share = step > 0 ? (along[begin] + way / 2 - along[middle]) / step : 0;
    place.At = Between(line[middle], line[middle + 1], share);
    const double dx = line[end].X - line[begin].X;
    const double dy = line[end].Y - line[begin].Y;
    place.Angle = std::atan2(-dy, dx) * kDegPerRadian;
    if (place.Angle > 90) place.Angle -= 180;
    if (place.Angle <= -90) place.Angle += 180;
  }
  return place;
}

}  // namespace vexa::crosssection
