// A column of marks: short texts that belong to heights on the page. They keep their place where
// they can and move apart where they would stand on each other, with a leader to their own height.
#pragma once

#include <string>
#include <vector>

#include "picture/picture.h"

namespace vexa::diagram {

struct Mark {
  double Y = 0;  // where it belongs
  std::string Text{};
  std::string Tag{};
  Color Ink{};
  int Priority = 0;     // where not all fit, those with the highest numbers leave
  std::string Short{};  // where the frame has no room for the text; empty: the mark leaves then
  double PlacedY = 0;   // where it stands; set by Arrange
};

class MarkColumn {
 public:
  void Add(Mark mark) { marks_.push_back(std::move(mark)); }
  bool Empty() const { return marks_.empty(); }

  /// Gives each mark its place: in the order of their heights, at least gap apart, between top and
  /// bottom, with the smallest sum of squared shifts. Those that do not fit are dropped.
  const std::vector<Mark>& Arrange(double top, double bottom, double gap);

 private:
  std::vector<Mark> marks_{};
};

}  // namespace vexa::diagram
