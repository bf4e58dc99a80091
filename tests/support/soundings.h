// What the tests share: soundings made in a line, two reference soundings, an interaction that
// follows a script, and the way to the collection of real files where it is present.
#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <filesystem>
#include <functional>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/interaction.h"
#include "core/record_edits.h"
#include "core/sounding_record.h"

namespace vexa::test {

struct TempRow {
  double Press, Temp, Dewpt;
};
struct WindRow {
  double Height, Dir, Spd;
};

/// A native sounding of these levels.
SoundingRecord Profile(std::initializer_list<TempRow> temps,
                       std::initializer_list<WindRow> winds = {}, int elevM = 0);

SoundingRecord ReferenceConvective();  // REF-A: 35.2 N 97.4 W, 357 m
SoundingRecord ReferenceWinter();      // REF-B: 45.0 N 8.0 E, 120 m

/// The project's own folder.
std::filesystem::path SourceFolder();

/// The same with further wind levels that have no wind, below, between and above the others: in
/// each another marker stands for it.
SoundingRecord WithEmptyWinds(const SoundingRecord& sounding);

/// The same without any wind; without the levels above a pressure.
SoundingRecord WithoutWinds(SoundingRecord sounding);
SoundingRecord EndingAt(SoundingRecord sounding, double press);

/// The same weather on the other hemisphere, south and north exchanged.
SoundingRecord Mirrored(SoundingRecord sounding);

/// Changes the wind of every level as an edit would.
void ChangeWinds(SoundingRecord& sounding, const std::function<void(WindLevel&)>& change);

/// A small file written for the tests.
std::filesystem::path TestData(const std::string& name);

/// A file or folder of the collection of real soundings; empty when the collection is absent.
std::optional<std::filesystem::path> RealData(const std::string& name);

// Skips the test, saying so, where the collection of real soundings is absent.
#define VEXA_REAL_DATA(variable, name)                                                     \
  const auto variable##Found = ::vexa::test::RealData(name);                               \
  if (!variable##Found) GTEST_SKIP() << "the collection of real soundings is not present"; \
  const std::filesystem::path variable = *variable##Found

/// A folder of its own for a test's files, removed with it.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  const std::filesystem::path& Path() const { return path_; }
  /// Writes a file below it and gives its path; a sounding becomes a native file.
  std::filesystem::path Write(const std::string& name, std::string_view bytes) const;
  std::filesystem::path Write(const std::string& name, const SoundingRecord& sounding) const;

 private:
  std::filesystem::path path_;
};

/// Answers the boxes it expects, by title, in order; any other box fails the test.
class ScriptedInteraction : public Interaction {
 public:
  void Expect(std::string title, Answer answer) { script_.emplace_back(std::move(title), answer); }
  ~ScriptedInteraction() override { EXPECT_TRUE(script_.empty()) << "a box was not shown"; }

  Answer Ask(const Box& box) override {
    Boxes.push_back(box);
    if (script_.empty() || script_.front().first != box.Title) {
      ADD_FAILURE() << "unforeseen box \"" << box.Title << "\": " << box.Text;
      return Answer::Cancel;
    }
    const Answer answer = script_.front().second;
    script_.pop_front();
    return answer;
  }
  std::optional<std::string> ChooseFile(const FileQuestion& question) override {
    Asked.push_back(question);
    return Chosen.empty() ? std::nullopt : std::optional(Chosen.front());
  }
  std::vector<std::string> ChooseFiles(const FileQuestion& question) override {
    Asked.push_back(question);
    return Chosen;
  }
  void Status(std::string_view text) override { Statuses.emplace_back(text); }
  void Share(double done) override { Shares.push_back(done); }
  bool Yield() override {
    if (OnYield && !OnYield()) return false;
    return StopAfter < 0 || static_cast<int>(Statuses.size()) <= StopAfter;
  }

  std::vector<std::string> Chosen{};  // as files; none where the user cancels
  std::vector<FileQuestion> Asked{};
  std::vector<Box> Boxes{};
  std::vector<std::string> Statuses{};
  std::vector<double> Shares{};
  std::function<bool()> OnYield{};
  int StopAfter = -1;  // the user stops once this many steps have begun

 private:
  std::deque<std::pair<std::string, Answer>> script_{};
};

}  // namespace vexa::test
