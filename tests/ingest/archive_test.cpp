// Packed sources: archives of one file and of many.
#include <gtest/gtest.h>
#include <zlib.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include "core/files.h"
#include "ingest/archive.h"
#include "ingest/decoded.h"
#include "ingest/packed_files.h"
#include "ingest/sounding_files.h"
#include "ingest/source_stream.h"
#include "ingest/unpack.h"
#include "sounding/analysed_sounding.h"
#include "support/soundings.h"

namespace vexa::ingest {
namespace {

namespace fs = std::filesystem;

// Packed by other programs: the first file of the archive is stored, the second deflated.
TEST(Unpack, GzipAndZip) {
  UnpackRoom room;
  const Outcome<std::vector<PackedFile>> gzip = Unpack(FileText("packed.txt.gz"), room);
  ASSERT_TRUE(gzip);
  EXPECT_EQ(gzip.Value().at(0).Bytes, FileText("spc_text.spc"));
  const std::string archive = FileText("packed.zip");
  const Outcome<std::vector<PackedFile>> zip = Unpack(archive, room);
  ASSERT_TRUE(zip) << zip.Error().Detail;
  ASSERT_EQ(zip.Value().size(), 2U);
  EXPECT_EQ(zip.Value()[0].Name, "folder/readme.txt");
  EXPECT_EQ(zip.Value()[0].Bytes, "read me\n");
  EXPECT_EQ(zip.Value()[1].Bytes, FileText("spc_text.spc"));
  UnpackRoom justEnough{.Files = 3}, tooFew{.Files = 2};
  EXPECT_TRUE(Unpack(archive, justEnough));
  EXPECT_EQ(justEnough.Files, 0);
  EXPECT_FALSE(Unpack(archive, tooFew));
  EXPECT_TRUE(tooFew.IsUsedUp);
  for (const std::string& whole : {archive, FileText("packed.txt.gz")}) {
    for (std::size_t size = 4; size < whole.size(); size += 7) {
      EXPECT_FALSE(Unpack(whole.substr(0, size), room)) << size;
    }
  }
  std::string damaged = archive;
  damaged[damaged.find("read me\n")] = 'R';
  EXPECT_EQ(Unpack(damaged, room).Value()[0].Trouble, "the archive has a wrong check sum");
  EXPECT_EQ(Unpack(damaged, room).Value()[1].Bytes, FileText("spc_text.spc"));

  const Loading loading = LoadSounding({.File = test::TestData("packed.zip")}, {});
  ASSERT_TRUE(loading.Sounding) << loading.Failed->Detail;
  EXPECT_EQ(loading.Sounding->Record.DataFormat, "SPC");
  EXPECT_EQ(loading.Sounding->Notes.at(0),
            "Of the archive readme.txt was left out: in none of the known formats.");
}

std::string Gzipped(std::size_t zeros) {
  z_stream stream{};
  EXPECT_EQ(deflateInit2(&stream, 1, Z_DEFLATED, MAX_WBITS + 16, 9, Z_DEFAULT_STRATEGY), Z_OK);
  std::string piece(std::size_t{1} << 20, '\0'), packed;
  std::string out(std::size_t{1} << 16, '\0');
  int state = Z_OK;
  while (state != Z_STREAM_END) {
    if (stream.avail_in == 0 && zeros > 0) {
      stream.next_in = reinterpret_cast<Bytef*>(piece.data());
      stream.avail_in = static_cast<uInt>(std::min(zeros, piece.size()));
      zeros -= stream.avail_in;
    }
    stream.next_out = reinterpret_cast<Bytef*>(out.data());
    stream.avail_out = static_cast<uInt>(out.size());
    state = deflate(&stream, zeros == 0 ? Z_FINISH : Z_NO_FLUSH);
    packed.append(out, 0, out.size() - stream.avail_out);
  }
  deflateEnd(&stream);
  return packed;
}

std::string Zipped(const fs::path& path,
                   const std::vector<std::pair<std::string, std::string>>& files) {
  WriteZip(path, files);
  return ReadFile(path).Value();
}

// Messages without a month take it from the day of their file: the same one wherever it is read.
// These tests run in a zone five and a half hours ahead; scripts/windows-test adds zones with
// summer time.
TEST(Unpack, DaysAreThoseThatArchivesAndFilesState) {
  using std::chrono::sys_days, std::chrono::year, std::chrono::minutes;
  const test::TemporaryFolder folder;
  // Winter, summer, and the days around both changes of the clock in Europe and North America.
  const std::chrono::year_month_day days[] = {
      year(2024) / 1 / 15,  year(2024) / 7 / 15, year(2024) / 3 / 10, year(2024) / 3 / 31,
      year(2024) / 10 / 27, year(2024) / 11 / 3, year(1999) / 12 / 31};
  for (const sys_days day : days) {
    for (const unsigned minute : {10U, 2 * 60 + 30U, 23 * 60 + 50U}) {
      SCOPED_TRACE(testing::PrintToString(day.time_since_epoch().count()) + ", minute " +
                   std::to_string(minute));
      const fs::path path = folder.Path() / "dated.zip";
      WriteZip(path, {{"a.txt", "text"}}, PackedOn{day, minute});
      UnpackRoom room;
      const auto files = Unpack(ReadFile(path).Value(), room);
      ASSERT_TRUE(files) << files.Error().Detail;
      EXPECT_EQ(files.Value().at(0).WrittenOn, day);

      // A file's own time is that of the world.
      const auto moment = day + minutes(minute);
      fs::last_write_time(path, fs::file_time_type::clock::now() +
                                    std::chrono::duration_cast<fs::file_time_type::duration>(
                                        moment - std::chrono::system_clock::now()));
      fs::path text = folder.Path() / "dated.txt";
      std::ofstream(text) << "text";
      fs::last_write_time(text, fs::last_write_time(path));
      std::vector<std::string> notes;
      const auto read = ReadSource(text, notes);
      ASSERT_TRUE(read);
      EXPECT_EQ(read.Value().WrittenOn(), day);
    }
  }
}

// Thousands of small members may wait in a piece: each is to take no more room than it fills.
TEST(SourceStream, SmallMembersTakeLittleRoom) {
  const test::TemporaryFolder folder;
  const std::string text =
      ReadFile(test::SourceFolder() / "examples" / "severe_norman_1999.RAW").Value();
  constexpr std::size_t kMembers = 40;
  std::vector<std::pair<std::string, std::string>> files;
  for (std::size_t i = 0; i < kMembers; ++i) files.emplace_back(std::to_string(i) + ".RAW", text);
  Zipped(folder.Path() / "small.zip", files);
  auto stream = SourceStream::Open(folder.Path() / "small.zip", 10 * text.size());
  ASSERT_TRUE(stream.Ok());
  std::size_t members = 0;
  for (auto piece = stream.Value().Next(); piece && piece.Value(); piece = stream.Value().Next()) {
    for (const SourceText& member : piece.Value()->Members()) {
      EXPECT_EQ(member.Bytes(), text);
      EXPECT_LT(member.Bytes().capacity(), 2 * text.size());
      ++members;
    }
  }
  EXPECT_EQ(members, kMembers);
  // One cut off has no list of its files: the reason is told, as where it is read whole.
  const fs::path cut = folder.Path() / "cut.zip";
  const std::string whole = ReadFile(folder.Path() / "small.zip").Value();
  std::ofstream(cut, std::ios::binary) << whole.substr(0, whole.size() / 2);
  stream = SourceStream::Open(cut, 1000);
  ASSERT_FALSE(stream.Ok());
  EXPECT_NE(stream.Error().Detail.find("cut.zip"), std::string::npos) << stream.Error().Detail;
}

// Archives in an archive share one room: together they unpack no more than 256 MB.
TEST(Unpack, BombsEndTheOpening) {
  const test::TemporaryFolder folder;
  const std::string small = Gzipped(std::size_t{100} << 20);
  ASSERT_LT(small.size(), std::size_t{1} << 20);
  std::vector<std::pair<std::string, std::string>> files;
  for (int i = 0; i < 20; ++i) files.emplace_back("bomb" + std::to_string(i) + ".gz", small);
  const auto reasonOf = [](std::string bytes) {
    std::vector<std::string> notes;
    const Outcome<SourceText> source = ReadSource("bomb", std::move(bytes), notes);
    return source ? "opened" : source.Error().Detail;
  };
  EXPECT_NE(reasonOf(Zipped(folder.Path() / "many.zip", files)).find("more than 256 MB"),
            std::string::npos);
  EXPECT_NE(reasonOf(small + small + small).find("more than 256 MB"), std::string::npos);

  UnpackRoom room{.Bytes = 1000};
  EXPECT_FALSE(Unpack(Gzipped(1001), room));
  EXPECT_TRUE(room.IsUsedUp);
  room = {.Bytes = 1000};
  EXPECT_TRUE(Unpack(Gzipped(1000), room));
  EXPECT_EQ(room.Bytes, 0U);
  // A file that says that it is too large costs no other.
  room = {.Bytes = 900};
  const std::string zip = Zipped(folder.Path() / "two.zip",
                                 {{"a", std::string(2000, 'a')}, {"b", std::string(900, 'b')}});
  const Outcome<std::vector<PackedFile>> two = Unpack(zip, room);
  ASSERT_TRUE(two);
  EXPECT_NE(two.Value()[0].Trouble, "");
  EXPECT_EQ(two.Value()[1].Bytes.size(), 900U);
  room = {};
  EXPECT_EQ(Unpack(Zipped(folder.Path() / "byte.zip", {{"a", "x"}}), room).Value()[0].Bytes, "x");
  room = {.Files = 1};
  EXPECT_FALSE(Unpack(zip, room));
  EXPECT_TRUE(room.IsUsedUp);
}

// Two bulletins with the parts of the same ascents, a packed station file of two soundings and a
// file of one.
TEST(Unpack, AnArchiveOfManySoundings) {
  std::vector<std::string> notes;
  const Outcome<SourceText> source = ReadSource(test::TestData("packed_many.zip"), notes);
  ASSERT_TRUE(source) << source.Error().Detail;
  EXPECT_EQ(notes.size(), 1U);
  const std::vector<SourceEntry> entries = ListSoundings(source.Value());
  std::vector<std::string> formats;
  LoadContext context;
  do {
    SoundingRecord record;
    const auto fault = DecodeSounding(source.Value(), context, record);
    ASSERT_FALSE(fault) << fault->Detail;
    formats.push_back(record.DataFormat + ' ' + std::to_string(record.NumTempLevels()) + ' ' +
                      std::to_string(record.NumWindLevels()));
  } while (++context.Index < context.Count);
  EXPECT_EQ(formats, (std::vector<std::string>{"CODED 15 23", "CODED 5 5", "IGRA 3 4", "IGRA 2 2",
                                               "SPC 3 4"}));
  ASSERT_EQ(entries.size(), formats.size());
  EXPECT_EQ(entries[0].Station.Number, 1234);
  EXPECT_EQ(entries[2].Time.Year, 1999);
  EXPECT_EQ(entries[4].Title, "spc_text.spc");
  const SoundingPlace place = PlaceOf(source.Value(), 3);
  EXPECT_EQ(place.Text->Name() + ' ' + std::to_string(place.Index), "igra_station.txt 1");

  context.Index = 5;
  SoundingRecord record;
  EXPECT_TRUE(DecodeSounding(source.Value(), context, record));
}

// Of other days, bulletins stay apart: the day of the month would be taken for the same.
TEST(Unpack, BulletinsOfTwoMonthsStayApart) {
  const std::string text = FileText("coded_bulletins_20240305.txt");
  std::vector<std::string> notes;
  const SourceText archive = MakeArchive(
      "two.zip", {SourceText("20240305.txt", text), SourceText("20240405.txt", text)}, notes);
  EXPECT_EQ(DecodeSource(archive, 2).Record.Time.Month, 4);
  EXPECT_EQ(ListSoundings(archive).size(), 4U);
}

TEST(SoundingFiles, OfAFolderAndOfThoseBelowIt) {
  const test::TemporaryFolder folder;
  fs::create_directories(folder.Path() / "below");
  fs::create_directories(folder.Path() / ".hidden");
  const fs::path one = folder.Write("b.txt", "x");
  const fs::path other = folder.Write("below/a.txt", "x");
  folder.Write(".c.txt", "x");
  folder.Write(".hidden/d.txt", "x");
  EXPECT_EQ(FilesIn(folder.Path()), std::vector<fs::path>{one});
  EXPECT_EQ(FilesBelow(folder.Path()), (std::vector<fs::path>{one, other}));
  EXPECT_EQ(FilesBelow(other), std::vector<fs::path>{other});
}

}  // namespace
}  // namespace vexa::ingest
