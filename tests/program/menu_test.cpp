#include "program/menu.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

namespace vexa {
namespace {

TEST(MenuTree, NamesAndKeysAreUniqueAndMenusComeFirst) {
  std::set<std::string_view> names = {""};
  std::set<std::string_view> keys;
  for (const MenuRow& row : MenuTree()) {
    SCOPED_TRACE(row.Name);
    EXPECT_TRUE(names.contains(row.In));
    EXPECT_TRUE(names.insert(row.Name).second);
    EXPECT_TRUE(row.Key.empty() || keys.insert(row.Key).second);
    EXPECT_NE(!row.Does.IsMenu(), row.Hint.empty());
  }
}

// One display's entry may follow another's; none is lost for naming an entry that is not there.
TEST(MenuTree, EveryDisplayHasItsEntry) {
  const DisplayRow rows[] = {{.Id = "Second", .Entry = "mnuSecond", .After = "mnuFirst"},
                             {.Id = "First", .Entry = "mnuFirst"},
                             {.Id = "Third", .Entry = "mnuThird", .After = "mnuSecond"}};
  const auto tree = MenuTree(rows);
  const auto first = std::ranges::find(tree, "mnuFirst", &MenuRow::Name);
  ASSERT_GE(tree.end() - first, 3);
  EXPECT_EQ(first[1].Name, "mnuSecond");
  EXPECT_EQ(first[2].Name, "mnuThird");
  for (const DisplayRow& display : AllDisplays()) {
    if (display.Entry.empty()) continue;
    EXPECT_NE(FindEntry(MenuTree(), display.Entry), nullptr)
        << display.Id << " follows \"" << display.After << "\", which is no entry";
  }
}

}  // namespace
}  // namespace vexa
