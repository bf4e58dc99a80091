// A long file in pieces: the soundings in their order, whatever the size of a piece and the
// packing.
#include "ingest/source_stream.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "core/files.h"
#include "ingest/decoder.h"
#include "ingest/packed_files.h"
#include "support/soundings.h"

namespace vexa::ingest {
namespace {

namespace fs = std::filesystem;

// Soundings of one station on the days of a January.
std::string StationFile(int soundings) {
  std::string text;
  for (int day = 1; day <= soundings; ++day) {
    text += "#CIM00085999 2000 01 " + std::string(day < 10 ? "0" : "") + std::to_string(day) +
            " 00 2330    2 ncdc-gts ncdc-gts -334500  -705000\n"
            "21     0  96600   520B  201B-9999    10    10    10 \n"
            "10 -9999  85000  1580B  100B-9999    50    20    50 \n";
  }
  return text;
}

std::string DayTitle(int day) {
  return "85999  00Z " + std::string(day < 10 ? "0" : "") + std::to_string(day) + " Jan 2000";
}

struct Streamed {
  std::vector<std::string> Titles{}, Notes{};
  std::string Reason{};  // of the fault at the end
  int Pieces = 0;
};

Streamed Stream(const fs::path& file, std::size_t piece) {
  Streamed streamed;
  auto stream = SourceStream::Open(file, piece);
  if (!stream) {
    streamed.Reason = stream.Error().Detail;
    return streamed;
  }
  for (;;) {
    const auto next = stream.Value().Next();
    for (const std::string& note : stream.Value().TakeNotes()) streamed.Notes.push_back(note);
    if (!next) streamed.Reason = next.Error().Detail;
    if (!next || !next.Value()) break;
    ++streamed.Pieces;
    LoadContext context;
    do {
      SoundingRecord record;
      const auto fault = DecodeSounding(*next.Value(), context, record);
      streamed.Titles.push_back(fault ? fault->Detail : record.StationTitle);
    } while (++context.Index < context.Count);
  }
  EXPECT_TRUE(stream.Value().TakeNotes().empty());
  return streamed;
}

std::vector<std::string> DayTitles(int first, int last) {
  std::vector<std::string> titles;
  for (int day = first; day <= last; ++day) titles.push_back(DayTitle(day));
  return titles;
}

void Write(const fs::path& path, std::string_view bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

void WriteGzip(const fs::path& path, const std::string& text, const char* mode = "wb") {
  gzFile file = gzopen(path.string().c_str(), mode);
  EXPECT_EQ(gzwrite(file, text.data(), static_cast<unsigned>(text.size())),
            static_cast<int>(text.size()));
  gzclose(file);
}

TEST(SourceStream, ALongSeriesComesInPieces) {
  const test::TemporaryFolder folder;
  const std::string text = StationFile(9);
  const std::size_t one = text.size() / 9;
  const fs::path plain = folder.Path() / "s.txt", packed = folder.Path() / "s.txt.gz",
                 archive = folder.Path() / "s.zip", marked = folder.Path() / "m.txt";
  Write(plain, text);
  Write(marked, "\xEF\xBB\xBF" + text);
  WriteGzip(packed, text);
  WriteZip(archive, {{"folder/s.txt", text}});
  const struct {
    const char* About;
    std::size_t Piece;
    int Pieces;
  } cases[] = {{"less than a sounding", one / 2, 9},
               {"two and a half soundings", 5 * one / 2, 4},
               {"all but a byte", text.size() - 1, 2},
               {"all", text.size() + 1, 1}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.About);
    for (const fs::path& path : {plain, packed, archive, marked}) {
      SCOPED_TRACE(path.filename().string());
      const Streamed streamed = Stream(path, c.Piece);
      EXPECT_EQ(streamed.Titles, DayTitles(1, 9));
      EXPECT_EQ(streamed.Reason, "");
      EXPECT_TRUE(streamed.Notes.empty());
      const bool isOneMore = path == marked && streamed.Pieces == c.Pieces + 1;
      EXPECT_TRUE(isOneMore || streamed.Pieces == c.Pieces) << streamed.Pieces;
    }
  }
  EXPECT_EQ(Stream(plain, text.size()).Pieces, 1);
}

// The lines of a fault are those of the whole file.
TEST(SourceStream, FaultsCountTheLinesOfTheFile) {
  const test::TemporaryFolder folder;
  std::string text = StationFile(9);
  text.replace(text.rfind(" 85000 "), 7, " 8500x ");
  Write(folder.Path() / "s.txt", text);
  const Streamed streamed = Stream(folder.Path() / "s.txt", text.size() / 4);
  ASSERT_EQ(streamed.Titles.size(), 9U);
  EXPECT_EQ(streamed.Titles[8], "s.txt, line 27: \"8500x\" is not a number");
}

TEST(SourceStream, WhatIsNoSeriesComesWhole) {
  const test::TemporaryFolder folder;
  const std::string bulletins = ReadFile(test::TestData("coded_bulletins_20240305.txt")).Value();
  Write(folder.Path() / "b_20240305.txt", bulletins);
  EXPECT_EQ(Stream(folder.Path() / "b_20240305.txt", 100).Pieces, 1);
  Write(folder.Path() / "n.txt", "a line without an end");
  EXPECT_EQ(Stream(folder.Path() / "n.txt", 5).Titles,
            std::vector<std::string>{"n.txt: in none of the known formats"});
  EXPECT_NE(Stream(folder.Path() / "absent.txt", 5).Reason, "");
}

TEST(SourceStream, ACutStreamGivesWhatIsWhole) {
  const test::TemporaryFolder folder;
  std::string text;
  std::vector<std::string> titles;
  for (int month = 0; month < 12; ++month) {
    text += StationFile(31);
    for (const std::string& title : DayTitles(1, 31)) titles.push_back(title);
  }
  WriteGzip(folder.Path() / "s.gz", text, "wb0");  // stored: the cut costs the last ten bytes
  const std::string packed = ReadFile(folder.Path() / "s.gz").Value();
  Write(folder.Path() / "cut.gz", packed.substr(0, packed.size() - 10));
  const Streamed streamed = Stream(folder.Path() / "cut.gz", 4000);
  EXPECT_EQ(streamed.Reason, "cut: the archive is damaged or cut off");
  const std::size_t count = streamed.Titles.size();
  ASSERT_GT(count, 300U);
  titles.resize(count);
  EXPECT_EQ(streamed.Titles, titles);
}

TEST(SourceStream, MembersOfAnArchiveInGroups) {
  const test::TemporaryFolder folder;
  const std::string two = StationFile(2), nine = StationFile(9);
  const fs::path path = folder.Path() / "many.zip";
  WriteZip(path, {{"a.txt", two},
                  {"folder/", ""},
                  {"readme", "read me"},
                  {"b.txt", two},
                  {"c.txt", nine},
                  {"d.txt", two}});
  std::vector<std::string> titles;
  for (const int soundings : {2, 2, 9, 2}) {
    for (const std::string& title : DayTitles(1, soundings)) titles.push_back(title);
  }
  const std::vector<std::string> notes = {"readme was left out: in none of the known formats."};
  const struct {
    std::size_t Piece;
    int Pieces;
  } cases[] = {{3 * two.size(), 4}, {two.size() - 1, 6}};
  for (const auto& c : cases) {
    const Streamed streamed = Stream(path, c.Piece);
    EXPECT_EQ(streamed.Titles, titles);
    EXPECT_EQ(streamed.Notes, notes);
    EXPECT_EQ(streamed.Reason, "");
    EXPECT_GE(streamed.Pieces, c.Pieces);
  }
  const fs::path none = folder.Path() / "none.zip";
  WriteZip(none, {{"readme", std::string(100, 'x')}});
  const Streamed nothing = Stream(none, 50);
  EXPECT_EQ(nothing.Reason, "none.zip: nothing in the archive is a sounding");
  EXPECT_EQ(nothing.Notes.size(), 1U);

  // Damage in the middle of a long member costs the rest of it.
  std::string bytes = ReadFile(path).Value();
  bytes[bytes.find("c.txt") + 60] ^= 0x55;
  Write(folder.Path() / "damaged.zip", bytes);
  const Streamed damaged = Stream(folder.Path() / "damaged.zip", two.size());
  EXPECT_EQ(damaged.Reason, "");
  EXPECT_EQ(damaged.Notes.size(), 2U);
  ASSERT_GE(damaged.Titles.size(), 6U);
  EXPECT_EQ(damaged.Titles.back(), DayTitle(2));
}

// The day is the one that the archive states, whatever the zone of this computer.
TEST(SourceStream, MembersHaveTheDayOfTheArchive) {
  const test::TemporaryFolder folder;
  const fs::path path = folder.Path() / "dated.zip";
  const std::string text = StationFile(2);
  const auto day = std::chrono::year(2024) / 3 / 5;
  for (const unsigned minute : {10U, 23 * 60 + 50U}) {
    WriteZip(path, {{"a.txt", text}, {"b.txt", text}}, PackedOn{day, minute});
    auto stream = SourceStream::Open(path, text.size() + 1);
    ASSERT_TRUE(stream.Ok());
    const auto piece = stream.Value().Next();
    ASSERT_TRUE(piece && piece.Value());
    ASSERT_EQ(piece.Value()->Members().size(), 2U);
    for (const SourceText& member : piece.Value()->Members()) {
      EXPECT_EQ(member.WrittenOn(), day) << minute;
    }
  }
}

}  // namespace
}  // namespace vexa::ingest
