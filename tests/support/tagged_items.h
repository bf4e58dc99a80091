// What of a picture carries a tag.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "picture/picture.h"

namespace vexa::test {

inline std::vector<const Item*> Tagged(const Picture& page, std::string_view tag) {
  std::vector<const Item*> found;
  for (const Item& item : page.Items()) {
    if (item.Tag == tag) found.push_back(&item);
  }
  return found;
}

/// Those of them that are of a shape.
template <class Shape>
std::vector<Shape> Tagged(const Picture& page, std::string_view tag) {
  std::vector<Shape> found;
  for (const Item* item : Tagged(page, tag)) {
    if (const auto* shape = std::get_if<Shape>(&item->Shape)) found.push_back(*shape);
  }
  return found;
}

inline std::vector<std::string> Texts(const Picture& page, std::string_view tag) {
  std::vector<std::string> texts;
  for (const Label& label : Tagged<Label>(page, tag)) texts.push_back(label.Text);
  return texts;
}

}  // namespace vexa::test
