// Packed sources: archives of one file and of many.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/files.h"
#include "ingest/archive.h"
#include "ingest/decoder.h"
#include "ingest/unpack.h"
#include "support/soundings.h"

namespace vexa::ingest {
namespace {

std::string FileText(const std::string& name) {
  return ReadFile(test::TestData(name)).Value();
}

// Packed by other programs: the first file of the archive is stored, the second deflated.
TEST(Unpack, GzipAndZip) {
  const Outcome<std::vector<PackedFile>> gzip = Unpack(FileText("packed.txt.gz"));
  ASSERT_TRUE(gzip);
  EXPECT_EQ(gzip.Value().at(0).Bytes, FileText("spc_text.spc"));
  const std::string archive = FileText("packed.zip");
  const Outcome<std::vector<PackedFile>> zip = Unpack(archive);
  ASSERT_TRUE(zip) << zip.Error().Detail;
  ASSERT_EQ(zip.Value().size(), 2U);
  EXPECT_EQ(zip.Value()[0].Name, "folder/readme.txt");
  EXPECT_EQ(zip.Value()[0].Bytes, "read me\n");
  EXPECT_EQ(zip.Value()[1].Bytes, FileText("spc_text.spc"));
  for (const std::string& whole : {archive, FileText("packed.txt.gz")}) {
    for (std::size_t size = 4; size < whole.size(); size += 7) {
      EXPECT_FALSE(Unpack(whole.substr(0, size))) << size;
    }
  }
  std::string damaged = archive;
  damaged[damaged.find("read me\n")] = 'R';
  EXPECT_EQ(Unpack(damaged).Value()[0].Trouble, "the archive has a wrong check sum");
  EXPECT_EQ(Unpack(damaged).Value()[1].Bytes, FileText("spc_text.spc"));

  CurrentSounding current;
  SilentInteraction quiet;
  current.Ask = &quiet;
  ASSERT_EQ(LoadSounding(current, test::TestData("packed.zip")), Status::Ok) << current.StatusText;
  EXPECT_EQ(current.Record.DataFormat, "SPC");
  EXPECT_EQ(current.LoadNotes.at(0),
            "Of the archive readme.txt was left out: in none of the known formats.");
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
  LoadContext context{.Index = 2};
  SoundingRecord record;
  ASSERT_FALSE(DecodeSounding(archive, context, record));
  EXPECT_EQ(record.Time.Month, 4);
  EXPECT_EQ(context.Count, 4);
}

}  // namespace
}  // namespace vexa::ingest
