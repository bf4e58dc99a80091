// What of a picture carries a tag.
#pragma once

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

}  // namespace vexa::test
