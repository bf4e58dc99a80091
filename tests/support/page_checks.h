// What holds of every page, whatever it shows.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <vector>

#include "picture/picture.h"
#include "picture/surface.h"
#include "picture/text_width.h"

namespace vexa::test {

inline Rect PlaceOf(const Label& label) {
  const double width = TextWidth(label.Text, label.Size, label.Bold, label.Font);
  double left = label.At.X;
  if (label.Across == AnchorX::Right) left -= width;
  if (label.Across == AnchorX::Center) left -= width / 2;
  const double half = 0.4 * label.Size;
  const double middle = label.At.Y + (label.Down == AnchorY::Top ? half : 0);
  return {left, middle - half, left + width, middle + half};
}

/// No letter under the floor, every text inside the region and apart from its neighbours: on a line
/// a letter's width or as said.
inline void ExpectOrderly(const Picture& page, const Rect& region,
                          double apart = 3 * kUnitsPerPixel) {
  std::vector<const Label*> labels;
  constexpr double kAlmost = 1;
  for (const Item& item : page.Items()) {
    if (const auto* label = std::get_if<Label>(&item.Shape)) labels.push_back(label);
  }
  for (std::size_t i = 0; i < labels.size(); ++i) {
    const Rect at = PlaceOf(*labels[i]);
    EXPECT_GE(labels[i]->Size, LetterSize(Type::Note)) << labels[i]->Text;
    EXPECT_TRUE(at.Left >= region.Left - kAlmost && at.Right <= region.Right + kAlmost &&
                at.Top >= region.Top - kAlmost && at.Bottom <= region.Bottom + kAlmost)
        << labels[i]->Text;
    for (std::size_t j = 0; j < i; ++j) {
      const Rect other = PlaceOf(*labels[j]);
      EXPECT_FALSE(at.Left < other.Right + apart && other.Left < at.Right + apart &&
                   at.Top < other.Bottom && other.Top < at.Bottom)
          << labels[i]->Text << " | " << labels[j]->Text;
    }
  }
}

}  // namespace vexa::test
