#include "output/print_pages.h"

#include <gtest/gtest.h>

#include <string>

namespace vexa::output {
namespace {

// By hand: a page of 612 pt less two margins of 36 pt is 540 pt; letters of 7 pt are 4.2 pt wide,
// so that 128 of them stand on a line.
TEST(ListingPages, BreakLinesThatWouldBeTooSmallToRead) {
  struct Case {
    const char* about;
    std::string line;
    std::vector<std::string> printed;
    double sizePt;
  };
  const std::string words = std::string(100, 'a') + ' ' + std::string(40, 'b');
  const Case cases[] = {
      {"short lines keep the usual letters", "Pres  Height", {"Pres  Height"}, 10},
      {"the longest line in the least letters",
       std::string(128, 'x'),
       {std::string(128, 'x')},
       540 / (0.6 * 128)},
      {"a longer one goes on behind its last blank",
       words,
       {std::string(100, 'a'), "    " + std::string(40, 'b')},
       540 / (0.6 * 100)},
      {"without a blank it is cut",
       std::string(300, 'x'),
       {std::string(128, 'x'), "    " + std::string(124, 'x'), "    " + std::string(48, 'x')},
       540 / (0.6 * 128)},
      {"blanks alone", std::string(200, ' '), {std::string(128, ' '), "    "}, 540 / (0.6 * 128)},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.about);
    const std::vector<Picture> pages = ListingPages({c.line}, {}, {});
    ASSERT_EQ(pages.size(), 1u);
    std::vector<std::string> printed;
    for (const Item& item : pages[0].Items()) {
      const auto* label = std::get_if<Label>(&item.Shape);
      if (label == nullptr) continue;
      printed.push_back(label->Text);
      EXPECT_NEAR(label->Size / kUnitsPerPoint, c.sizePt, 0.01);
      EXPECT_GE(label->Size / kUnitsPerPoint, 7);
    }
    EXPECT_EQ(printed, c.printed);
  }
}

}  // namespace
}  // namespace vexa::output
