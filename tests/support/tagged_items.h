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

inline int CountOf(const Picture& page, std::string_view tag) {
  return static_cast<int>(Tagged(page, tag).size());
}

/// Every text of a page on a line of its own.
inline std::string TextsOf(const Picture& page) {
  std::string texts;
  for (const Item& item : page.Items()) {
    if (const auto* label = std::get_if<Label>(&item.Shape)) texts += label->Text + '\n';
  }
  return texts;
}

inline std::vector<std::string> Texts(const Picture& page, std::string_view tag) {
  std::vector<std::string> texts;
  for (const Label& label : Tagged<Label>(page, tag)) texts.push_back(label.Text);
  return texts;
}

}  // namespace vexa::test
