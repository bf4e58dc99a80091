#include "program/reference_tables.h"

#include <gtest/gtest.h>

#include "config/system_file.h"
#include "core/files.h"
#include "core/raw_file.h"
#include "support/soundings.h"

namespace vexa {
namespace {

namespace fs = std::filesystem;

TableState State(const ReferenceTable& table, const fs::path& root) {
  const Outcome<TableState> state = ReadOrBuild(table, root);
  EXPECT_TRUE(state) << (state ? "" : state.Error().Detail);
  return state ? state.Value() : TableState::Read;
}

std::vector<double> RecordOf(const ReferenceTable& table, const fs::path& root, double first) {
  SystemReader reader("", ReadFile(root / PathFromText(table.File)).Value());
  for (int i = 0; i < table.Records; ++i) {
    const auto record = reader.NumberRecord("", table.Record(0).size());
    if (record && record->front() == first) return *record;
  }
  ADD_FAILURE() << table.File << " has no record " << first;
  return std::vector<double>(table.Record(0).size());
}

// The files hold what published tables say: the ICAO atmosphere at 11 km (226.32 hPa, -56.5 C),
// vapour pressures after Goff and Gratch at -20 C (water 1.2540, ice 1.0318 hPa), and the saturated
// adiabat of 330 K at 1000 hPa.
TEST(ReferenceTables, HoldPublishedValues) {
  const test::TemporaryFolder folder;
  for (const ReferenceTable& table : ReferenceTables()) {
    EXPECT_EQ(State(table, folder.Path()), TableState::Built) << table.File;
  }
  const auto standard = RecordOf(ReferenceTables()[0], folder.Path(), 11000);
  EXPECT_NEAR(standard[1], 226.32, 0.01);
  EXPECT_NEAR(standard[2], -56.5, 1e-9);
  const auto vapor = RecordOf(ReferenceTables()[2], folder.Path(), -20);
  EXPECT_NEAR(vapor[1], 1.254, 0.001);
  EXPECT_NEAR(vapor[2], 1.032, 0.001);
  // 18.5395 C by a bisection written apart from the program.
  const auto adiabat = RecordOf(ReferenceTables()[1], folder.Path(), 330);
  EXPECT_NEAR(adiabat[2], 18.5395, 0.001);
}

TEST(ReferenceTables, AreReadWhenWholeAndRebuiltWhenDamaged) {
  const auto cutShort = [](std::string text) { return text.substr(0, text.size() / 2); };
  const auto changed = [](std::string text) {
    const std::size_t at = text.rfind('.') - 1;
    text[at] = text[at] == '7' ? '3' : '7';
    return text;
  };
  const auto emptied = [](const std::string&) { return std::string(); };
  const auto lengthened = [](const std::string& text) { return text + "1,2,3\r\n"; };
  for (const ReferenceTable& table : ReferenceTables()) {
    SCOPED_TRACE(table.File);
    const test::TemporaryFolder folder;
    const fs::path path = folder.Path() / PathFromText(table.File);
    State(table, folder.Path());
    const std::string whole = ReadFile(path).Value();
    EXPECT_EQ(State(table, folder.Path()), TableState::Read);
    for (const std::string& damaged :
         {cutShort(whole), changed(whole), emptied(whole), lengthened(whole)}) {
      ASSERT_NE(damaged, whole);
      ASSERT_FALSE(SaveFile(path, damaged));
      EXPECT_EQ(State(table, folder.Path()), TableState::Rebuilt);
      EXPECT_EQ(ReadFile(path).Value(), whole);
      EXPECT_EQ(ReadFile(fs::path(path) += ".bak").Value(), damaged);
    }
  }
}

TEST(ReferenceTables, AUsersReferenceSoundingStays) {
  const test::TemporaryFolder folder;
  const fs::path path = folder.Path() / "REFERENCE.DAT";
  const auto state = [&] { return ReadOrBuildReference(folder.Path()).Value(); };
  EXPECT_EQ(state(), TableState::Built);
  EXPECT_EQ(state(), TableState::Read);
  const std::string own = WriteRaw(test::ReferenceWinter());
  ASSERT_FALSE(SaveFile(path, own));
  EXPECT_EQ(state(), TableState::Read);
  EXPECT_EQ(ReadFile(path).Value(), own);
  ASSERT_FALSE(SaveFile(path, "no sounding"));
  EXPECT_EQ(state(), TableState::Rebuilt);
  EXPECT_EQ(ReadFile(folder.Path() / "REFERENCE.DAT.bak").Value(), "no sounding");
}

TEST(ReferenceTables, AFolderThatCannotBeWrittenIsAFault) {
  const test::TemporaryFolder folder;
  EXPECT_FALSE(ReadOrBuild(ReferenceTables()[0], folder.Path() / "absent"));
}

}  // namespace
}  // namespace vexa
