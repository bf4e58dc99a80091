#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "core/files.h"
#include "core/known_stations.h"
#include "core/station.h"
#include "core/station_file.h"
#include "core/station_list.h"
#include "support/soundings.h"

namespace vexa {
namespace {

namespace fs = std::filesystem;

const std::string kHeader = "VEXA STATION LISTING, 2020\r\nWMO numbers rise\r\n";
const std::string kHeathrow =
    "3772,\"EGLL\",\"LONDON\",\"UNITED KINGDOM\",25,51.48,\"N\",0.45,\"W\"\r\n";
const std::string kDarwin = "94120,YPDN,DARWIN,NT,30,12.42,S,130.89,E\r\n";

std::string Row(const std::string& number, const std::string& position) {
  return number + ",ID,NAME,REGION,100," + position + "\r\n";
}

StationList ReadWhole(const std::string& text) {
  const StationReading reading = ReadStations(text, "VEXA.STN");
  EXPECT_EQ(reading.Finding.Kind, StationTrouble::None) << reading.Finding.Detail;
  return reading.List;
}

TEST(StationFile, FirstFaultAndTheStationsAround) {
  const std::string good = "35.0,N,97.4,W";
  struct Case {
    const char* about;
    std::string text;
    StationTrouble kind;
    int number;
    int stations;  // that a lookup can still find
  };
  const Case cases[] = {
      {"nothing is read behind the end", kHeader + kHeathrow + "99999\r\nrubbish,\"", {}, 0, 1},
      {"title is missing", "WMO numbers\n" + kHeathrow + "99999", StationTrouble::Header, 0, 1},
      {"the same number twice", kHeader + kHeathrow + kHeathrow + kDarwin + "99999",
       StationTrouble::Sequence, 3772, 2},
      {"the number falls", kHeader + kDarwin + kHeathrow + "99999", StationTrouble::Sequence, 3772,
       2},
      {"below the first previous number", kHeader + Row("-1", good) + "99999",
       StationTrouble::Sequence, -1, 1},
      {"no decimal point", kHeader + Row("72357", "35,N,97.4,W") + kDarwin + "99999",
       StationTrouble::Format, 72357, 1},
      {"a comma too few", kHeader + "72357,ID,NAME REGION,100," + good + "\r\n" + kDarwin + "99999",
       StationTrouble::Format, 72357, 1},
      {"a comma too many", kHeader + Row("72357", good + ",") + Row("72358", good + ",x") + "99999",
       StationTrouble::Format, 72358, 2},
      {"hemisphere of the longitude", kHeader + Row("72357", "35.0,N,97.4,N") + "99999",
       StationTrouble::Quadrant, 72357, 0},
      {"no end", kHeader + kHeathrow, StationTrouble::EndOfFile, 3772, 1},
      {"an open quote, and a station behind it",
       kHeader + kHeathrow + "72357,\"KOUN,NORMAN,OK,345," + good + "\r\n" + kDarwin + "99999",
       StationTrouble::Format, 72357, 2},
      {"a remark between stations", kHeader + kHeathrow + "mine:\r\n" + kDarwin + "99999",
       StationTrouble::Format, 3772, 2},
      {"an open quote", kHeader + kHeathrow + "94120,\"YPDN\r\n99999", StationTrouble::Format,
       94120, 1},
      {"elevation that is none", kHeader + "1,A,B,C,high,35.0,N,97.4,W\r\n99999",
       StationTrouble::Format, 1, 0},
      {"an empty file", "", StationTrouble::Header, 0, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.about);
    const StationReading reading = ReadStations(c.text, "VEXA.STN");
    EXPECT_EQ(reading.Finding.Kind, c.kind) << reading.Finding.Detail;
    EXPECT_EQ(reading.Finding.Number, c.number);
    EXPECT_EQ(reading.List.Count(), c.stations);
  }
  EXPECT_NE(ReadStations(kHeader + kHeathrow + kHeathrow + "99999", "VEXA.STN")
                .Finding.Detail.find("VEXA.STN, line 4:"),
            std::string::npos);
}

// Lines as the program writes them are read in one go, others field by field: quotes about the
// texts must change nothing.
TEST(StationFile, QuotesChangeNothing) {
  const char* const kRows[] = {
      "72357,'KOUN','NORMAN','OK',345,35.18,'N',97.44,'W'",
      "72357,' KOUN ','','',-999,35.18,'N',97.44,'W',",  // blanks, empty texts, no elevation
      "72357,'KOUN','NORMAN','OK',345.5,90.0,'S',180.0,'E'",
      "72357,'KOUN','NORMAN','OK',high,35.18,'N',97.44,'W'",
      "72357,'KOUN','NORMAN','OK',345,35,'N',97.44,'W'",
      "72357,'KOUN','NORMAN','OK',345,0.0,'N',0.0,'W'",
      "72357,'KOUN','NORMAN','OK',345,90.01,'N',97.44,'W'",
      "72357,'KOUN','NORMAN','OK',345,35.18,'N',180.01,'W'",
      "72357,'KOUN','NORMAN','OK',345,-0.1,'N',97.44,'W'",
      "72357,'KOUN','NORMAN','OK',345,35.18,'W',97.44,'W'",
      "72357,'KOUN','NORMAN','OK',345,35.18,'N',97.44,'WE'",
      "72357,'KOUN','NORMAN','OK',345,35.18,'N',97.44",
      "72357,'KOUN','NORMAN','OK',345,35.18,'N',97.44,'W',5",
      "3772,'TWICE','NORMAN','OK',345,35.18,'N',97.44,'W'",
      "12.5,'KOUN','NORMAN','OK',345,35.18,'N',97.44,'W'",
      "99999,'KOUN','NORMAN','OK',345,35.18,'N',97.44,'W'",
      "-1,'KOUN','NORMAN','OK',345,35.18,'N',97.44,'W'",
  };
  for (const std::string row : kRows) {
    SCOPED_TRACE(row);
    std::string quoted = row, bare = row;
    std::ranges::replace(quoted, '\'', '"');
    std::erase(bare, '\'');
    const auto read = [](const std::string& line) {
      return ReadStations(kHeader + kHeathrow + line + "\r\n" + kDarwin + "99999", "VEXA.STN");
    };
    EXPECT_EQ(read(quoted).List.All(), read(bare).List.All());
    EXPECT_EQ(read(quoted).Finding.Kind, read(bare).Finding.Kind);
    EXPECT_EQ(read(quoted).Finding.Detail, read(bare).Finding.Detail);
    EXPECT_EQ(read(quoted).List.Unread().size(), read(bare).List.Unread().size());
  }
}

TEST(StationFile, TellsTheUserAtStartUp) {
  test::TemporaryFolder folder;
  test::ScriptedInteraction user;
  CurrentSounding current;
  current.Ask = &user;
  StationList list;
  const auto load = [&](const std::string& text) {
    folder.Write("VEXA.STN", text);
    return LoadStations(current, folder.Path(), list);
  };
  user.Expect("VEXA", Answer::Ok);
  EXPECT_EQ(LoadStations(current, folder.Path(), list), Status::Error);
  EXPECT_EQ(user.Boxes.back().Text.substr(0, 24), "VEXA.STN does not exist.");

  EXPECT_EQ(load(kHeader + kHeathrow + "99999"), Status::Ok);

  user.Expect("Warning ...", Answer::Ok);
  EXPECT_EQ(load(kHeader + kHeathrow + kHeathrow + "99999"), Status::Error);
  EXPECT_EQ(user.Boxes.back().Text,
            "The  VEXA.STN  Locator File contains one or more errors.\n"
            "Fix or Replace this file from the Distribution Disk.\n"
            "Note: WMO numbers must be in numerical sequence.\n"
            "          Placement of commas and Lat/Lon decimals are critical.\n"
            "          Coordinates must be in Degrees & Minutes.\n"
            "Error is at or before ... 3772 - \n"
            "VEXA.STN, line 4: the number does not rise");
  EXPECT_EQ(current.StatusText, "error");
  user.Expect("Warning ...", Answer::Ok);
  load(kHeader + Row("72357", "35.0,E,97.4,W") + "99999");
  EXPECT_TRUE(user.Boxes.back().Text.ends_with("VEXA.STN, line 3: N or S: should be N or S"));
}

// What is no station stays in its place when the list is saved, and the file as it was beside it.
TEST(StationFile, SavingLosesNothing) {
  struct Case {
    const char* about;
    std::string text;
    std::vector<std::string> kept;
  };
  const std::string torn = "72357,\"KOUN,\"NORMAN\",\"OK\",345,35.18,\"N\",97.44,\"W\"";
  const Case cases[] = {
      {"a quote is missing", kHeader + kHeathrow + torn + "\r\n" + kDarwin + "99999\r\n", {torn}},
      {"a remark", kHeader + "my own:\r\n" + kHeathrow + kDarwin + "99999\r\n", {"my own:"}},
      {"a number twice",
       kHeader + kHeathrow + "3772,AGAIN,,,1,1.0,N,1.0,E\r\n" + kDarwin + "99999",
       {"3772,AGAIN,,,1,1.0,N,1.0,E"}},
      {"fields too many",
       kHeader + Row("3772", "51.5,N,0.5,W,more,x") + kDarwin + "99999",
       {"more,x"}},
      {"notes behind the end",
       kHeader + kHeathrow + kDarwin + "99999\r\nmy notes\r\nand more",
       {"my notes\r\nand more"}},
      {"no end", kHeader + kHeathrow + kDarwin, {}},
      {"the only one", kHeader + torn + "\r\n99999", {torn}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.about);
    const test::TemporaryFolder folder;
    folder.Write("VEXA.STN", c.text);
    const StationReading reading = ReadStations(c.text, "VEXA.STN");
    StationList list = reading.List;
    ASSERT_FALSE(list.Add({.Number = 50000, .Name = "NEW", .Lat = 1, .Lon = 2}));
    ASSERT_FALSE(SaveStations(folder.Path(), list));
    const std::string saved = ReadFile(folder.Path() / "VEXA.STN").Value();
    std::size_t at = 0;
    for (const std::string& kept : c.kept) {
      at = saved.find(kept, at);
      EXPECT_NE(at, std::string::npos) << kept << " is not in\n" << saved;
    }
    EXPECT_EQ(ReadStations(saved, "VEXA.STN").List, list);
    const bool wasSound = reading.Finding.Kind == StationTrouble::None;
    const Outcome<std::string> aside = ReadFile(folder.Path() / "VEXA.STN.bak");
    EXPECT_EQ(aside ? aside.Value() : "", wasSound ? "" : c.text);
  }
}

TEST(StationFile, LookupFillsTheHeader) {
  const StationList list = ReadWhole(kHeader + kHeathrow + kDarwin +
                                     "95000,,BUOY,,-999,0.0,S,180.0,W\r\n"
                                     "95001,,,SEA,0,0.0,S,180.0,W\r\n99999\r\n");
  SoundingRecord record = test::Profile({{1000, 20, 10}});
  const SoundingRecord before = record;
  EXPECT_FALSE(FindStation(list, 3773, record));
  EXPECT_EQ(record, before);

  ASSERT_TRUE(FindStation(list, 3772, record));
  EXPECT_EQ(record.StationTitle, "03772 - EGLL - LONDON, UNITED KINGDOM");
  EXPECT_EQ(record.ElevM, 25);
  EXPECT_EQ(record.ElevFt, 82);  // 82.02
  EXPECT_EQ(record.LatSigned, 51.48);
  EXPECT_EQ(record.LonSigned, -0.45);
  EXPECT_EQ(record.LatHemi + record.LonHemi, "NW");
  EXPECT_EQ(record.NumTempLevels(), 1);

  ASSERT_TRUE(FindStation(list, 94120, record));
  EXPECT_EQ(record.LatSigned, -12.42);
  EXPECT_EQ(record.LonSigned, 130.89);
  EXPECT_EQ(record.ElevFt, 98);  // 98.4

  ASSERT_TRUE(FindStation(list, 95000, record));
  EXPECT_EQ(record.StationTitle, "95000 - BUOY");
  EXPECT_TRUE(record.ElevUnknown);
  EXPECT_EQ(record.LatHemi + record.LonHemi, "SW");
  ASSERT_TRUE(FindStation(list, 95001, record));
  EXPECT_EQ(record.StationTitle, "95001 - SEA");
}

// The file that the program ships: sound, written as the program writes, and with stations where
// an atlas has the towns, those among them whose lists contradict each other.
TEST(StationFile, ShippedFile) {
  const auto text = ReadFile(test::SourceFolder() / "share" / "VEXA.STN");
  ASSERT_TRUE(text);
  const StationList list = ReadWhole(text.Value());
  EXPECT_GT(list.Count(), 3000);
  EXPECT_EQ(WriteStations(list), text.Value());
  EXPECT_FALSE(NeedsConversion(list));
  for (const Station& station : list.All()) {
    EXPECT_TRUE(StationFrom(TextsOf(station))) << station.Number;
  }
  const struct {
    int number;
    const char* name;
    double lat, lon;
    int elevM;
  } places[] = {{72357, "NORMAN", 35.18, -97.44, 345},  {72681, "BOISE", 43.56, -116.21, 874},
                {10410, "ESSEN", 51.40, 6.97, 153},     {94120, "DARWIN", -12.42, 130.89, 30},
                {56029, "YUSHU", 33.0, 96.95, 3717},    {87576, "EZEIZA", -34.81, -58.53, 20},
                {71802, "ST JOHN", 47.51, -52.78, 114}, {61641, "DAKAR", 14.73, -17.50, 24}};
  for (const auto& place : places) {
    const Station* station = list.Find(place.number);
    ASSERT_NE(station, nullptr) << place.number;
    EXPECT_NE(station->Name.find(place.name), std::string::npos) << station->Name;
    EXPECT_NEAR(station->LatSigned(), place.lat, 0.1) << place.number;
    EXPECT_NEAR(station->LonSigned(), place.lon, 0.1) << place.number;
    EXPECT_NEAR(station->ElevM, place.elevM, 40) << place.number;
  }
}

TEST(StationList, EditorChanges) {
  StationList list = ReadWhole(kHeader + kHeathrow + kDarwin + "99999");
  Station norman{.Number = 72357, .Name = "NORMAN", .Lat = 35.18, .Lon = 97.44, .LonHemi = "W"};
  EXPECT_FALSE(list.Add(norman));
  ASSERT_EQ(list.Count(), 3);
  EXPECT_EQ(list.All()[1], norman);

  const StationList before = list;
  const auto refused = [&](const std::optional<Fault>& fault, const std::string& reason) {
    ASSERT_TRUE(fault);
    EXPECT_EQ(fault->Number, 380);
    EXPECT_EQ(fault->Detail, reason);
    EXPECT_EQ(list, before);
  };
  refused(list.Add(norman), "Station 72357 is in the list already");
  refused(list.Delete(1), "Station 00001 is not in the list");
  refused(list.Change(1, norman), "Station 00001 is not in the list");
  Station moved = norman;
  moved.Number = 3772;
  refused(list.Change(72357, moved), "Station 03772 is in the list already");
  moved.Number = 99999;
  refused(list.Change(72357, moved), "Station number: lies outside 0 to 99998");

  moved.Number = 95000;
  EXPECT_FALSE(list.Change(72357, moved));
  EXPECT_EQ(list.All()[2], moved);
  EXPECT_EQ(list.Find(72357), nullptr);
  EXPECT_FALSE(list.Delete(94120));
  EXPECT_EQ(ReadWhole(WriteStations(list)), list);
}

TEST(StationList, FieldsAsTyped) {
  struct Case {
    StationField field;
    const char* text;
    const char* fault;  // empty: accepted
  };
  const Case cases[] = {
      {StationField::Number, "3772", ""},
      {StationField::Number, "", "Station number: is missing"},
      {StationField::Number, "72357.5", "Station number: should be a whole number"},
      {StationField::Name, "O\"HARE", "Name: must not hold a double quote or a line end"},
      {StationField::Region, "", ""},
      {StationField::Elevation, "-999", ""},
      {StationField::Elevation, "-998", "Elevation: lies outside -500 to 6000"},
      {StationField::Elevation, "-500", ""},
      {StationField::Elevation, "-501", "Elevation: lies outside -500 to 6000"},
      {StationField::Elevation, "6000", ""},
      {StationField::Elevation, "6001", "Elevation: lies outside -500 to 6000"},
      {StationField::Number, "0", ""},
      {StationField::Number, "99998", ""},
      {StationField::Number, "99999", "Station number: lies outside 0 to 99998"},
      {StationField::Latitude, "0", ""},
      {StationField::Latitude, "90.1", "Latitude: lies outside 0 to 90"},
      {StationField::Longitude, "180", ""},
      {StationField::Elevation, "345,5", "Elevation: should be a number"},
      {StationField::Latitude, "90", ""},
      {StationField::Latitude, "-35.2", "Latitude: lies outside 0 to 90"},
      {StationField::Longitude, "180.1", "Longitude: lies outside 0 to 180"},
      {StationField::LatHemi, "W", "N or S: should be N or S"},
      {StationField::LonHemi, "EW", "E or W: should be E or W"},
  };
  for (const Case& c : cases) {
    const std::optional<Fault> fault = CheckStationField(c.field, c.text);
    EXPECT_EQ(fault ? fault->Detail : "", c.fault) << c.text;
  }
}

TEST(StationList, SearchForAPickList) {
  const StationList list =
      ReadWhole(kHeader + "03101,,OUNDLE,UNITED KINGDOM,20,52.5,N,0.5,W\n" + kHeathrow +
                "31010,OUN,NORMAN,OK,345,35.2,N,97.4,W\n72210,KTBW,TAMPA BAY,FL,13,27.7,N,82.4,W\n"
                "72211,,PLANT CITY NEAR TAMPA,FL,13,27.9,N,82.1,W\n99999");
  struct Case {
    const char* text;
    std::vector<int> numbers;
  };
  const Case cases[] = {
      {"310", {31010, 3101}},      // numbers as they stand ahead of numbers without zeros
      {"0310", {3101}},            //
      {"9", {}},                   //
      {"oun", {31010, 3101}},      // identifier ahead of name
      {"tampa", {72210, 72211}},   // beginning ahead of middle
      {" kingdom  LON ", {3772}},  // all words, in any field
      {"tampa ok", {}},            //
      {"", {}},                    //
      {"n", {31010, 3101, 3772}},  // no more than wanted
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    std::vector<int> numbers;
    for (const Station* station : SearchStations(list, c.text, 3)) {
      numbers.push_back(station->Number);
    }
    EXPECT_EQ(numbers, c.numbers);
  }
}

// 35.50 is 35 degrees 50 minutes, 97.2636 is 97 degrees 26 minutes 36 seconds: by hand.
TEST(StationConversion, AsksKeepsTheOldFileAndSaysSo) {
  test::TemporaryFolder folder;
  const fs::path file = folder.Path() / "VEXA.STN";
  const std::string old = "VEXA STATION LISTING\r\nWMO numbers must be sequential\r\nours\r\n" +
                          Row("72357", "35.50,N,97.2636,W") + "99999\r\n";
  ASSERT_FALSE(SaveFile(file, old));
  test::ScriptedInteraction user;
  CurrentSounding current;
  current.Ask = &user;
  StationList list;
  ASSERT_EQ(LoadStations(current, folder.Path(), list), Status::Ok);

  user.Expect("VEXA", Answer::Cancel);
  user.Expect("VEXA", Answer::Ok);
  EXPECT_EQ(ConvertStationFile(current, folder.Path(), list), Status::Error);
  ASSERT_EQ(user.Boxes.size(), 2u);
  EXPECT_EQ(ReadFile(file).Value(), old);

  user.Expect("VEXA", Answer::Ok);
  user.Expect("VEXA", Answer::Ok);
  EXPECT_EQ(ConvertStationFile(current, folder.Path(), list), Status::Ok);
  EXPECT_EQ(user.Boxes[3].Text,
            "VEXA.STN has been updated\nYour prior locator file is now VEXASTN.BAK.");
  EXPECT_EQ(ReadFile(folder.Path() / "VEXASTN.BAK").Value(), old);
  EXPECT_EQ(ReadFile(file).Value(),
            "VEXA STATION LISTING\r\n"
            "WMO numbers must be sequential.      Coordinates are in decimal degrees.\r\n"
            "ours\r\n"
            "72357,\"ID\",\"NAME\",\"REGION\",100,35.8333,\"N\",97.4433,\"W\"\r\n99999\r\n");
  // Converted once, it asks no more; neither does a file with positions that have no minutes.
  EXPECT_EQ(ConvertStationFile(current, folder.Path(), list), Status::Ok);
  EXPECT_FALSE(NeedsConversion(ReadWhole(kHeader + kDarwin + "99999")));
}

TEST(StationName, IsTheShortestThatATitleGives) {
  constexpr std::pair<std::string_view, std::string_view> kCases[] = {
      {"72357 - OUN - Norman  00Z 04 May 1999", "OUN"},
      {"82244 - Santarem-Aeroporto  00Z", "Santarem-Aerop"},
      {"82244 - Santarem", "Santarem"},
      {"Vienna/Hohe Warte", "Vienna"},
      {"MILANO, IT // 12 UTC", "MILANO"},
      {"Station 95", "Station 95"},
      {"  ", ""},
  };
  for (const auto& [title, name] : kCases) EXPECT_EQ(ShortStationName(title), name);
  EXPECT_EQ(StationNumberInTitle("03772 - EGLL - LONDON"), 3772);
  for (const char* title : {"", "72357", "7235 - OUN", "OUN12 - Norman", "2024 - 5", "-1234 - x"}) {
    EXPECT_EQ(StationNumberInTitle(title), 0) << title;
  }
}

// A list that is read later is read once, for all its copies; one that is changed stands alone.
TEST(StationList, IsReadWhenItIsLookedInto) {
  int read = 0;
  const StationList later = StationList::ReadLater([&read] {
    ++read;
    StationList list;
    list.Insert({.Number = 72357, .Ident = "KOUN"});
    list.SetTrailer("end");
    return list;
  });
  StationList changed = later;
  const StationList copy = later;
  EXPECT_EQ(read, 0);
  EXPECT_FALSE(changed.Insert({.Number = 72357, .Ident = "KXXX"}));
  ASSERT_FALSE(changed.Delete(72357));
  EXPECT_EQ(changed.Trailer(), "end");
  EXPECT_EQ(changed.Count(), 0);
  ASSERT_NE(StationOfLetters(copy, "OUN"), nullptr);
  EXPECT_EQ(later.Find(72357), copy.Find(72357));
  EXPECT_EQ(later, copy);
  EXPECT_FALSE(later == changed);
  EXPECT_EQ(read, 1);
}

// A station that is looked up alone is that of the list read whole, and none is where that has none
// or, of an identifier, several.
TEST(KnownStations, AreThoseOfTheWholeList) {
  const auto shipped = test::SourceFolder() / "share";
  const test::TemporaryFolder folder;
  const StationList whole = ReadWhole(ReadFile(shipped / "VEXA.STN").Value());
  const StationList known = KnownStations(folder.Path(), shipped);
  int idents = 0;
  for (std::size_t i = 0; i < whole.All().size(); i += 29) {
    const Station& station = whole.All()[i];
    const Station* found = known.Find(station.Number);
    ASSERT_NE(found, nullptr) << station.Number;
    EXPECT_EQ(*found, station);
    EXPECT_EQ(known.Find(station.Number + 1) == nullptr, whole.Find(station.Number + 1) == nullptr)
        << station.Number + 1;
    if (station.Ident.size() != 4) continue;
    const Station* named = StationOfLetters(known, station.Ident);
    const Station* expected = StationOfLetters(whole, station.Ident);
    ASSERT_EQ(named == nullptr, expected == nullptr) << station.Ident;
    if (named == nullptr) continue;
    EXPECT_EQ(*named, *expected);
    ++idents;
  }
  EXPECT_GT(idents, 20);
  EXPECT_EQ(known.Find(99999), nullptr);
  for (const char* letters : {"QQQQ", "UKKK"}) {  // the second has two stations
    EXPECT_EQ(StationOfLetters(known, letters), nullptr);
    EXPECT_EQ(StationOfLetters(whole, letters), nullptr);
  }
  EXPECT_EQ(known.Find(1001), known.Find(1001));
  EXPECT_EQ(known, whole);

  ASSERT_FALSE(SaveFile(folder.Path() / "VEXA.STN", kHeader + kHeathrow + "99999"));
  const StationList own = KnownStations(folder.Path(), shipped);
  EXPECT_EQ(own.Count(), 1);
  EXPECT_EQ(own.Find(1001), nullptr);
}

// Degrees with minutes have none beyond 59: one such number shows decimals.
TEST(StationFile, MinutesEndAt59) {
  for (const auto& [position, isOld] : {std::pair{"35.59,N,97.0,W", true},
                                        {"35.60,N,97.0,W", false},
                                        {"35.0,N,97.59,W", true},
                                        {"35.0,N,97.61,W", false}}) {
    EXPECT_EQ(NeedsConversion(ReadWhole(kHeader + Row("72357", position) + "99999")), isOld)
        << position;
  }
  const std::string decimal = "VEXA STATION LISTING, WMO, decimal degrees\r\n";
  EXPECT_FALSE(NeedsConversion(ReadWhole(decimal + Row("72357", "35.5,N,97.0,W") + "99999")));
  const StationList converted =
      ConvertStations(ReadWhole(kHeader + Row("72357", "35.30,N,97.15,W") + "99999"));
  EXPECT_EQ(converted.Find(72357)->Lat, 35.5);
  EXPECT_EQ(converted.Find(72357)->Lon, 97.25);
}

}  // namespace
}  // namespace vexa
