#include "config/settings_store.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <sstream>

#include "config/catalogue.h"
#include "config/random_settings.h"
#include "config/system_file.h"
#include "support/settings.h"
#include "support/soundings.h"

namespace vexa {
namespace {

namespace fs = std::filesystem;
using Notes = std::vector<std::string>;

template <class S>
void Randomise(S& settings, std::mt19937& random) {
  for (const SettingRow<S>& row : RowsOf(settings)) {
    ASSERT_TRUE(row.Read(settings, test::AnyValue(row, random))) << row.Key;
  }
}

SettingsStore AnyStore(std::mt19937& random) {
  SettingsStore store;
  do {
    for (const OptionRow& row : Catalogue()) {
      EXPECT_TRUE(row.Read(store.Set, test::AnyValue(row, random))) << row.Key;
    }
  } while (CheckOptions(store.Set));
  Randomise(store.System, random);
  Randomise(store.Window, random);
  Randomise(store.Hodograph, random);
  Randomise(store.Hodogram3D, random);
  Randomise(store.Listing, random);
  Randomise(store.Soaring, random);
  store.Active = store.System.Current;
  return store;
}

std::map<std::string, std::string> FilesIn(const fs::path& folder) {
  std::map<std::string, std::string> files;
  for (const auto& entry : fs::directory_iterator(folder)) {
    files[entry.path().filename().string()] = ReadFile(entry.path()).Value();
  }
  return files;
}

SettingsStore Loaded(const fs::path& folder, Notes& notes) {
  SettingsStore store;
  store.Set.TempMin = -77;  // must not outlive the load
  LoadSettings(folder, store, notes);
  return store;
}

// Leaves it to the system when the bytes reach the disk: thousands of files are written here.
class UnhurriedOps : public FileOps {
 public:
  std::error_code Flush(std::FILE*) override { return {}; }
  std::error_code Rename(const fs::path& from, const fs::path& to) override {
    std::error_code failed;
    fs::rename(from, to, failed);
    return failed;
  }
};

TEST(Settings, WhatIsWrittenReadsBackTheSame) {
  std::mt19937 random(21);
  UnhurriedOps ops;
  for (int i = 0; i < 200; ++i) {
    const test::TemporaryFolder folder;
    SettingsStore store = AnyStore(random);
    ASSERT_FALSE(test::SaveAllSettings(folder.Path(), store, ops));
    const auto first = FilesIn(folder.Path());
    EXPECT_EQ(first.size(), 7U);

    Notes notes;
    SettingsStore back = Loaded(folder.Path(), notes);
    EXPECT_EQ(notes, Notes{});
    ASSERT_EQ(back, store);
    ASSERT_FALSE(test::SaveAllSettings(folder.Path(), back, ops));
    ASSERT_EQ(FilesIn(folder.Path()), first);
  }
}

TEST(Settings, TheFilesAsTheyStand) {
  const test::TemporaryFolder folder;
  SettingsStore store;
  store.System.Configurations[0] = {"Gliding", ""};
  store.System.Configurations[1] = {"6\" dish, 5%", "Z\xC3\xBCrich"};
  store.Set.SoarTm = 31.5;
  ASSERT_FALSE(test::SaveAllSettings(folder.Path(), store));
  auto files = FilesIn(folder.Path());
  const std::string header = "\"This is a VEXA system file -- Do Not Alter.\"\r\n";
  EXPECT_EQ(files["VEXA.SYS"], header +
                                   "\"VEXA56+\"\r\n"
                                   "\"0\",\"true\",\"true\"\r\n"
                                   "\"Gliding\",\"\"\r\n"
                                   "\"6%22 dish, 5%25\",\"Z\xC3\xBCrich\"\r\n"
                                   "800,1\r\n");
  const std::string keyed = header + "\"Each value stands behind its key.\"\r\n";
  EXPECT_EQ(files["VEXAsoar.CFG"],
            keyed +
                "\"TriggerHgt\",3000,\"LiftEq\",1,\"SoarHgtMode\",\"MSL\"\r\n"
                "\"SoarTm\",31.5\r\n"
                "\"height unit\",\"FEET\",\"lift unit\",\"FT/MIN\",\"temperature unit\",\"C\"\r\n");
  for (const char* name :
       {"VEXA56+.RAW", "VEXA56+.HOD", "VEXA56+.H3D", "VEXA56+.THM", "VEXAMAIN.SYS"}) {
    EXPECT_TRUE(files[name].starts_with(keyed)) << name;
  }
}

TEST(Settings, OneHomeForEachOption) {
  // Changing the owner's file must not touch the main settings, and the other way round.
  const test::TemporaryFolder folder;
  SettingsStore store;
  ASSERT_FALSE(test::SaveAllSettings(folder.Path(), store));
  const auto before = FilesIn(folder.Path());
  struct Case {
    const char *Assignment, *File;
  };
  const Case cases[] = {
      {"TriggerHgt=4000", "VEXAsoar.CFG"},   {"HodoInvert=true", "VEXA56+.HOD"},
      {"SortMode=date", "VEXA56+.RAW"},      {"DumpData4=F", "VEXA56+.RAW"},
      {"Freeze line=false", "VEXAMAIN.SYS"}, {"Autoload=true", "VEXAMAIN.SYS"},
  };
  for (const Case& c : cases) {
    SettingsStore changed;
    ASSERT_FALSE(SetOption(changed.Set, c.Assignment));
    ASSERT_FALSE(test::SaveAllSettings(folder.Path(), changed));
    for (const auto& [name, bytes] : FilesIn(folder.Path())) {
      EXPECT_EQ(bytes != before.at(name), name == c.File) << c.Assignment << ' ' << name;
    }
  }
}

template <class S>
bool Assign(S& settings, std::string_view key, std::string_view value) {
  for (const SettingRow<S>& row : RowsOf(settings)) {
    if (row.Key == key) return row.Read(settings, value);
  }
  return false;
}

// The defaults but for "key=value;key=value".
SettingsStore DefaultsBut(const std::string& changes) {
  SettingsStore store;
  std::istringstream parts(changes);
  for (std::string change; std::getline(parts, change, ';');) {
    const std::string key = change.substr(0, change.find('='));
    const std::string value = change.substr(key.size() + 1);
    EXPECT_TRUE(Assign(store.System, key, value) || Assign(store.Soaring, key, value) ||
                FindOption(key)->Read(store.Set, value))
        << change;
  }
  store.Active = store.System.Current;
  return store;
}

TEST(Settings, DamageCostsNoMoreThanItTouches) {
  struct Case {
    const char* About;
    SettingsFile File;
    std::string Text;  // behind the header, with ' for " and plain line ends
    const char *Note, *Kept;
  };
  const char* const tag = "VEXA.SYS, line 2: the version tag is not VEXA56+.";
  const std::string keyed = "'Each value stands behind its key.'\n";
  const Case cases[] = {
      {"another version's tag", SettingsFile::System,
       "'VEXA56'\n'1','false','true'\n'a','b'\n'c','d'\n900,2\n", tag, ""},
      {"a tag with more behind it", SettingsFile::System, "'VEXA56+ '\n'1','false','true'\n", tag,
       ""},
      {"nothing but the header", SettingsFile::System, "",
       "VEXA.SYS, line 2: the file ends where the version tag should stand.", ""},
      {"the right tag, then the end", SettingsFile::System,
       "'VEXA56+'\n'2','false','true'\n'a','b'\n",
       "VEXA.SYS, line 5: the file ends where name of configuration 2 should stand.",
       "current configuration=2;caption enabled=false;name of configuration 1=a;"
       "description of configuration 1=b"},
      {"a configuration that does not exist", SettingsFile::System,
       "'VEXA56+'\n'3','true','true'\n'',''\n'',''\n900,2\n",
       "VEXA.SYS, line 3: current configuration does not take \"3\" and keeps its default.",
       "minimum screen width=900;screen scale factor=2"},
      {"a word not in the list, a value out of range", SettingsFile::Soaring,
       "99999,2,'sideways'\n''\n'METER','M/S','F'\n",
       "VEXAsoar.CFG, line 2: TriggerHgt does not take \"99999\" and keeps its default.",
       "LiftEq=2;SoarTm=;height unit=METER;lift unit=M/S;temperature unit=F"},
      {"a record that lacks a field", SettingsFile::Soaring, "4000,2\n12.5\n'METER','FT/MIN','C'\n",
       "VEXAsoar.CFG, line 2: the data end where SoarHgtMode should stand.",
       "TriggerHgt=4000;LiftEq=2;SoarTm=12.5;height unit=METER"},
      {"a record with a field too many", SettingsFile::Soaring,
       "4000,2,'AGL',7\n12.5\n'METER','FT/MIN','C'\n",
       "VEXAsoar.CFG, line 2: the record has more fields than this version knows.",
       "TriggerHgt=4000;LiftEq=2;SoarHgtMode=AGL;SoarTm=12.5;height unit=METER"},
      {"a torn text ends with its line", SettingsFile::Soaring,
       "4000,2,'AGL\n12.5\n'METER','FT/MIN','C'\n",
       "VEXAsoar.CFG, line 2: a text lacks its closing quote.",
       "TriggerHgt=4000;LiftEq=2;SoarTm=12.5;height unit=METER"},
      {"more records than known", SettingsFile::Soaring,
       "3000,2,'MSL'\n12.5\n'FEET','FT/MIN','C'\n1,2\n",
       "VEXAsoar.CFG, line 5: the file has more records than this version knows.",
       "LiftEq=2;SoarTm=12.5"},
      {"a key that is none, behind it all goes on", SettingsFile::Soaring,
       keyed + "'TriggerHight',4000,'LiftEq',2\n'SoarTm',12.5\n",
       "VEXAsoar.CFG, line 3: there is no setting \"TriggerHight\".", "LiftEq=2;SoarTm=12.5"},
      {"a value that its key does not take", SettingsFile::Soaring,
       keyed + "'SoarTm',12.5,'LiftEq',3,'TriggerHgt',4000\n",
       "VEXAsoar.CFG, line 3: LiftEq does not take \"3\" and keeps its default.",
       "SoarTm=12.5;TriggerHgt=4000"},
      {"a key without a value", SettingsFile::Soaring,
       keyed + "'SoarTm',12.5,'LiftEq'\n'TriggerHgt',4000\n",
       "VEXAsoar.CFG, line 3: the data end where the value of LiftEq should stand.",
       "SoarTm=12.5;TriggerHgt=4000"},
      {"the first of two faults is told, wherever its row stands", SettingsFile::Soaring,
       keyed + "'height unit','ELL'\n'TriggerHgt',-1\n",
       "VEXAsoar.CFG, line 3: height unit does not take \"ELL\" and keeps its default.", ""},
      {"a foreign file", SettingsFile::Listing, "TTAA 51231 72357\n99970 28009\n",
       "VEXA56+.THM, line 2: the data end where height interval should stand.", ""},
      {"bytes that are no text", SettingsFile::Hodogram3D, "\xFF\xFE\x01',\r,,'\n\x80",
       "VEXA56+.H3D, line 2: the record has more fields than this version knows.", ""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.About);
    const test::TemporaryFolder folder;
    const std::string name = SettingsFileName(c.File, Configuration::None);
    std::string bytes = "\"any header\"\r\n";
    for (const char one : c.Text)
      bytes += one == '\n' ? "\r\n" : one == '\'' ? "\"" : std::string(1, one);
    folder.Write(name, bytes);
    Notes notes;
    SettingsStore store = Loaded(folder.Path(), notes);
    ASSERT_EQ(notes.size(), 1U);
    EXPECT_TRUE(notes[0].starts_with(c.Note)) << notes[0];
    EXPECT_TRUE(store == DefaultsBut(c.Kept));

    // The first save keeps a copy, the second leaves the copy alone.
    ASSERT_FALSE(SaveSettingsFile(folder.Path(), c.File, store));
    ASSERT_FALSE(SaveSettingsFile(folder.Path(), c.File, store));
    const auto files = FilesIn(folder.Path());
    EXPECT_EQ(files.at(name + ".bak"), bytes);
    EXPECT_NE(files.at(name), bytes);
    EXPECT_EQ(files.size(), 2U);
  }
}

// A row that is new, gone or elsewhere in another version's file costs nothing.
TEST(Settings, ValuesAreFoundByTheirKeysWhereverTheyStand) {
  const test::TemporaryFolder folder;
  folder.Write("VEXAMAIN.SYS",
               "\"a header\"\r\n\"Each value stands behind its key.\"\r\n"
               "\"Line #2 Style\",\"dots\"\r\n"
               "\"Temp MAX\",35,\"RH%25\",71\r\n\r\n"
               "\"Header file\",\"a %22b%22, c\",\"Above 100mb\",\"YES\"\r\n");
  SettingsStore expected;
  expected.Set.CustomLines[1].Style = CustomLineStyle::Dots;
  expected.Set.TempMax = 35;
  expected.Set.ContrailRh = 71;
  expected.Set.System.HeaderFile = "a \"b\", c";
  expected.Set.Above100mb = true;
  Notes notes;
  EXPECT_EQ(Loaded(folder.Path(), notes), expected);
  EXPECT_EQ(notes, Notes{});
}

// As an editor of the other system, or of none, leaves them.
TEST(Settings, TheirFilesAreReadWithEitherLineEnds) {
  std::mt19937 random(5);
  const test::TemporaryFolder folder;
  SettingsStore store = AnyStore(random);
  ASSERT_FALSE(test::SaveAllSettings(folder.Path(), store));
  const auto written = FilesIn(folder.Path());
  for (const std::string ends : {"\n", "\r\n"}) {
    for (const auto& [name, text] : written) {
      ASSERT_EQ(std::ranges::count(text, '\r'), std::ranges::count(text, '\n')) << name;
      std::string edited;
      for (const char c : text) {
        if (c != '\r') edited += c == '\n' ? ends : std::string(1, c);
      }
      ASSERT_FALSE(SaveFile(folder.Path() / name, edited + ends));
    }
    Notes notes;
    EXPECT_EQ(Loaded(folder.Path(), notes), store);
    EXPECT_EQ(notes, Notes{});
  }
}

// Written by hand from the places that values had in the files of before; some of each record
// differ from the defaults.
TEST(Settings, FilesWithoutKeysAreReadOnceByTheirPlaces) {
  const test::TemporaryFolder folder;
  for (const auto& entry : fs::directory_iterator(test::TestData("settings_without_keys"))) {
    fs::copy(entry.path(), folder.Path());
  }
  const auto old = FilesIn(folder.Path());
  ASSERT_EQ(old.size(), 6U);
  Notes notes;
  SettingsStore store = Loaded(folder.Path(), notes);
  EXPECT_EQ(notes, Notes{});
  const std::pair<const char*, const char*> cases[] = {
      {"Above 100mb", "yes"},     {"RH%", "70"},
      {"CAPE interval", "5"},     {"VGP depth", "1"},
      {"Height mode", "AGL"},     {"Temp MAX", "35"},
      {"Dry Ref Val", "310"},     {"Custom panel", "KI,TT"},
      {"ICAO None/5/10", "one"},  {"Line #1 Height", "1500"},
      {"Line #5 Style", "solid"}, {"TriggerHgt", "4000"},
      {"SoarTm", "31.5"},         {"Storm mover", "LM"},
      {"HodoInvert", "true"},     {"SortMode", "date"},
      {"DumpData7", "true"},      {"PrintTitleMemory", "Case"}};
  for (const auto& [key, value] : cases) {
    EXPECT_EQ(FindOption(key)->Write(store.Set), value) << key;
  }
  EXPECT_EQ(store.Hodograph.RingLimit, 120);
  EXPECT_TRUE(store.Hodograph.SkipPlot);
  EXPECT_EQ(store.Hodogram3D.RotationMs, 250);
  EXPECT_EQ(store.Window.Left, -5);
  EXPECT_EQ(store.Window.RecentFiles[4], "5.RAW");
  EXPECT_EQ(store.Listing.Height, 480);
  EXPECT_EQ(store.Soaring.Lift, LiftUnits::MetersPerSecond);

  // From then on they have keys and say the same.
  ASSERT_FALSE(test::SaveAllSettings(folder.Path(), store));
  for (const auto& [name, bytes] : FilesIn(folder.Path())) {
    EXPECT_EQ(bytes.find("Each value stands behind its key.") != bytes.npos, old.contains(name))
        << name;
  }
  EXPECT_EQ(Loaded(folder.Path(), notes), store);
  EXPECT_EQ(notes, Notes{});
}

TEST(Settings, WhateverAFileHoldsTheResultIsUsable) {
  std::mt19937 random(22);
  const auto below = [&random](std::size_t count) {
    return std::uniform_int_distribution<std::size_t>(0, count - 1)(random);
  };
  UnhurriedOps ops;
  const test::TemporaryFolder folder;
  SettingsStore store = AnyStore(random);
  ASSERT_FALSE(test::SaveAllSettings(folder.Path(), store, ops));
  const std::string name = SettingsFileName(SettingsFile::Main, store.Active);
  const std::string whole = ReadFile(folder.Path() / name).Value();
  for (int i = 0; i < 150; ++i) {
    std::string bytes = whole;
    for (std::size_t n = below(6) + 1; n > 0; --n) {
      const std::string_view kinds = "\"\r\n,%\x1A-9\xFF";
      bytes[below(bytes.size())] = kinds[below(kinds.size())];
      if (below(3) == 0) bytes.erase(below(bytes.size()), below(40));
    }
    ASSERT_FALSE(SaveFile(folder.Path() / name, bytes, ops));
    SettingsStore read = store;
    Notes notes;
    LoadSettingsFile(folder.Path(), SettingsFile::Main, read, notes);
    EXPECT_LE(notes.size(), 1U);
    EXPECT_EQ(CheckOptions(read.Set), std::nullopt);
    for (const OptionRow& row : Catalogue()) {
      Options back;
      EXPECT_TRUE(row.Read(back, row.Write(read.Set))) << row.Key;
    }
    EXPECT_EQ(read.Set.System.SortMode, store.Set.System.SortMode);  // of another file
  }
}

TEST(Settings, OptionsThatDoNotGoTogetherFallBack) {
  const test::TemporaryFolder folder;
  SettingsStore store;
  store.Set.TempMin = 30;
  store.Set.FreezeLine = false;
  ASSERT_FALSE(test::SaveAllSettings(folder.Path(), store));
  Notes notes;
  const SettingsStore back = Loaded(folder.Path(), notes);
  EXPECT_EQ(notes, Notes{"VEXAMAIN.SYS: Temp MAX must lie between Temp MIN + 40 and 60."});
  EXPECT_EQ(back.Set.TempMin, -40);
  EXPECT_FALSE(back.Set.FreezeLine);
}

TEST(Settings, WhatCannotBeWrittenNamesItsFileAndStaysAsItWas) {
  const test::TemporaryFolder folder;
  SettingsStore store;
  ASSERT_FALSE(test::SaveAllSettings(folder.Path(), store));
  const fs::path locked = folder.Path() / "VEXA56+.HOD";
  fs::permissions(locked, fs::perms::owner_read);
  const std::string before = ReadFile(locked).Value();
  store.Hodograph.Hold = true;
  store.Listing.TopDown = true;
  const std::optional<Fault> fault = test::SaveAllSettings(folder.Path(), store);
  ASSERT_TRUE(fault);
  EXPECT_EQ(fault->Number, kFaultAccessRefused);
  EXPECT_EQ(fault->File, "VEXA56+.HOD");
  EXPECT_EQ(ReadFile(locked).Value(), before);
  Notes notes;
  EXPECT_TRUE(Loaded(folder.Path(), notes).Listing.TopDown);  // the others were written
  fs::permissions(locked, fs::perms::owner_all);
}

TEST(Settings, WhatIsSetForOneRunIsNotKept) {
  const test::TemporaryFolder folder;
  SettingsStore before;
  before.Set.TempMin = -50;
  ASSERT_FALSE(test::SaveAllSettings(folder.Path(), before));
  Notes notes;
  SettingsStore store = Loaded(folder.Path(), notes);
  const auto kept = [&] { return Loaded(folder.Path(), notes).Set; };
  // CAPE depth takes the EHI depth along.
  ASSERT_FALSE(SetForThisRun(store, {"Temp MIN=-30", "CAPE depth xKm depth=2", "SortMode=date"}));
  EXPECT_EQ(store.Set.TempMin, -30);
  EXPECT_NE(store.Set.EhiDepthKm, before.Set.EhiDepthKm);
  SettingsStore written = store;

  store.Set.FreezeLine = !store.Set.FreezeLine;  // something else is saved, in the same files
  store.Window.RecentFiles[0] = "a.RAW";
  ASSERT_FALSE(SaveChangedSettings(folder.Path(), store, written));
  Options expected = before.Set;
  expected.FreezeLine = store.Set.FreezeLine;
  EXPECT_EQ(kept(), expected);
  EXPECT_EQ(store.Set.TempMin, -30) << "it stays in force";

  // The user changes one of them, and later back to what was set for the run.
  written = store;
  store.Set.TempMin = -35;
  ASSERT_FALSE(SaveChangedSettings(folder.Path(), store, written));
  EXPECT_EQ(kept().TempMin, -35);
  store.Set.TempMin = -30;
  ASSERT_FALSE(test::SaveAllSettings(folder.Path(), store));
  EXPECT_EQ(kept().TempMin, -30);
  EXPECT_EQ(kept().EhiDepthKm, before.Set.EhiDepthKm);

  // Another configuration has values of its own.
  ASSERT_FALSE(SwitchConfiguration(folder.Path(), Configuration::First, store, notes));
  EXPECT_EQ(store.Set.EhiDepthKm, Options{}.EhiDepthKm);
  store.Set.EhiDepthKm = 2;
  ASSERT_FALSE(test::SaveAllSettings(folder.Path(), store));
  EXPECT_EQ(kept().EhiDepthKm, 2);

  EXPECT_TRUE(SetForThisRun(store, {"Temp MIN=30"})) << "Temp MAX lies too near";
  EXPECT_NE(store.Set.TempMin, 30);
}

TEST(SwitchConfiguration, EachHasItsOwnMainSettings) {
  const test::TemporaryFolder folder;
  SettingsStore store;
  store.System.Configurations = {{{"Gliding", ""}, {"Storms", ""}}};
  store.Set.TempMin = -60;
  store.Set.System.SortMode = FileOrder::Date;  // lives with the window, for all of them
  Notes notes;
  EXPECT_EQ(ConfigurationCaption(store), "");
  ASSERT_FALSE(SwitchConfiguration(folder.Path(), Configuration::First, store, notes));
  EXPECT_EQ(ConfigurationCaption(store), "VEXA Config #1: Gliding");
  EXPECT_EQ(store.Set.TempMin, -40);
  EXPECT_EQ(store.Set.System.SortMode, FileOrder::Date);
  store.Set.TempMin = -70;
  ASSERT_FALSE(SwitchConfiguration(folder.Path(), Configuration::Second, store, notes));
  EXPECT_EQ(ConfigurationCaption(store), "VEXA Config #2: Storms");
  ASSERT_FALSE(SwitchConfiguration(folder.Path(), Configuration::None, store, notes));
  EXPECT_EQ(store.Set.TempMin, -60);
  ASSERT_FALSE(SwitchConfiguration(folder.Path(), Configuration::First, store, notes));
  EXPECT_EQ(store.Set.TempMin, -70);
  EXPECT_EQ(notes, Notes{});
  // The next start finds the same configuration active.
  const SettingsStore next = Loaded(folder.Path(), notes);
  EXPECT_EQ(next.Active, Configuration::First);
  EXPECT_EQ(next.Set.TempMin, -70);
  for (const std::string name : {"VEXAMAIN.SYS", "VEXA1MAIN.SYS", "VEXA2MAIN.SYS"}) {
    EXPECT_TRUE(fs::exists(folder.Path() / name)) << name;
  }
  for (bool SystemSettings::*flag :
       {&SystemSettings::CaptionEnabled, &SystemSettings::CaptionOnDiagram}) {
    SettingsStore hidden = store;
    hidden.System.*flag = false;
    EXPECT_EQ(ConfigurationCaption(hidden), "");
  }
}

TEST(SwitchConfiguration, TheCopyOfADamagedFileOutlivesAFault) {
  const test::TemporaryFolder folder;
  const fs::path main = folder.Write("VEXAMAIN.SYS", "\"header\"\r\n\"torn\r\n");
  Notes notes;
  SettingsStore store = Loaded(folder.Path(), notes);
  EXPECT_EQ(notes.size(), 1U);
  fs::create_directory(folder.Path() / "VEXA.SYS");
  ASSERT_TRUE(SwitchConfiguration(folder.Path(), Configuration::First, store, notes));
  ASSERT_FALSE(SaveSettingsFile(folder.Path(), SettingsFile::Main, store));
  EXPECT_EQ(ReadFile(folder.Path() / "VEXAMAIN.SYS.bak").Value(), "\"header\"\r\n\"torn\r\n");
}

TEST(SwitchConfiguration, AFaultChangesNothing) {
  const test::TemporaryFolder folder;
  SettingsStore store;
  ASSERT_FALSE(test::SaveAllSettings(folder.Path(), store));
  store.Set.System.MovieTime += 1;  // there is something to write
  for (const char* name : {"VEXAMAIN.SYS", "VEXA.SYS"}) {
    fs::permissions(folder.Path() / name, fs::perms::owner_read);
    const SettingsStore before = store;
    Notes notes;
    const auto fault = SwitchConfiguration(folder.Path(), Configuration::First, store, notes);
    ASSERT_TRUE(fault);
    EXPECT_EQ(fault->File, name);
    EXPECT_EQ(store, before);
    fs::permissions(folder.Path() / name, fs::perms::owner_all);
  }
}

}  // namespace
}  // namespace vexa
