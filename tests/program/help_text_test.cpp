#include "program/help_text.h"

#include <gtest/gtest.h>

#include <set>
#include <utility>

#include "analysis/index_table.h"
#include "config/catalogue.h"
#include "core/numbers.h"
#include "program/menu.h"
#include "support/soundings.h"

namespace vexa {
namespace {

std::vector<HelpTopic> Shipped() {
  Program program;
  program.HelpFile = test::SourceFolder() / "share" / "VEXA.HLP";
  return HelpTopics(program);
}

TEST(HelpText, TopicsHaveUniqueNamesAndNoLinkLeadsAstray) {
  const std::vector<HelpTopic> topics = Shipped();
  EXPECT_GT(topics.size(), 20u);
  std::set<std::string> ids, windows;
  for (const HelpTopic& topic : topics) {
    SCOPED_TRACE(topic.Id);
    EXPECT_TRUE(ids.insert(topic.Id).second);
    EXPECT_FALSE(Trim(topic.Text).empty());
    EXPECT_EQ(topic.Text.find("{{"), std::string::npos);
    for (const std::string& window : topic.Windows) EXPECT_TRUE(windows.insert(window).second);
  }
  for (const HelpTopic& topic : topics) {
    for (std::size_t at = 0; (at = topic.Text.find("](#", at)) != std::string::npos; ++at) {
      const std::string id = topic.Text.substr(at + 3, topic.Text.find(')', at) - at - 3);
      EXPECT_TRUE(ids.contains(id)) << topic.Id << " leads to " << id;
    }
  }
  for (const MenuRow& row : MenuTree()) {
    if (row.In != "mnuHelp") continue;
    EXPECT_NE(FindTopic(topics, row.Does.At), nullptr) << row.Name;
  }
}

// A new index, option, key or entry must come into the help by itself.
TEST(HelpText, TellsOfEveryIndexOptionAndKey) {
  std::string all;
  for (const HelpTopic& topic : Shipped()) {
    for (const char c : topic.Text) {
      if (c != '\\') all += c;
    }
  }
  for (const auto& row : analysis::IndexTable()) {
    EXPECT_NE(all.find(row.Formula), std::string::npos) << row.Name;
  }
  for (const OptionRow& row : Catalogue()) {
    EXPECT_NE(all.find("| " + std::string(row.Caption.empty() ? row.Key : row.Caption) + " |"),
              std::string::npos)
        << row.Key;
  }
  for (const MenuRow& row : MenuTree()) {
    EXPECT_NE(all.find("| " + std::string(row.Key)), std::string::npos) << row.Name;
  }
}

TEST(HelpText, DamageIsNamedAndLeavesWhatTheTablesKnow) {
  const std::pair<const char*, const char*> cases[] = {
      {"", "h, line 1: no topic"},
      {"# Title\ntext\n", "h, line 1: a topic's heading without its name"},
      {"# A {#a}\n\n{{birds}}\n", "h, line 3: a part that is not known"},
      {"# A {#a}\n{{}}\n", "h, line 2: a part that is not known"},
      {"text\n# A {#a}\n", "h, line 1: text ahead of the first topic"},
  };
  for (const auto& [text, detail] : cases) {
    const auto topics = ReadHelp(text, "h");
    ASSERT_FALSE(topics) << detail;
    EXPECT_EQ(topics.Error().Detail, detail);
  }
  const std::vector<HelpTopic> bare = HelpTopics(Program());
  EXPECT_NE(FindTopic(bare, "contents"), nullptr);
  EXPECT_NE(FindTopic(bare, "indices"), nullptr);
  const auto two = ReadHelp("# A b {#a W1 W2}\nx\n# C {#c}\ny\n", "h");
  ASSERT_TRUE(two);
  EXPECT_EQ(TopicOf(two.Value(), "W2")->Title, "A b");
  EXPECT_EQ(TopicOf(two.Value(), "W3"), nullptr);
}

}  // namespace
}  // namespace vexa
