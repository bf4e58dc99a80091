// Coded messages with one group damaged: deleted, doubled, a figure changed into each of the others
// or lost. What such a message still passes off as measured must be what the whole one says: a
// level whose temperature differs by more than 2 °C, or whose height by more than 3 %, has to be
// left out, named by a note or found by the checks. The whole message is its own reference.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>
#include <vector>

#include "analysis/analysis_settings.h"
#include "analysis/interpolate.h"
#include "core/data_checks.h"
#include "core/files.h"
#include "core/known_stations.h"
#include "core/numbers.h"
#include "ingest/decoded.h"
#include "support/soundings.h"

namespace vexa::ingest {
namespace {

constexpr double kWrongTemp = 2;       // °C
constexpr double kWrongHeight = 0.03;  // of the height
constexpr double kLeastHeight = 30;    // m, below which a whole hPa at the ground says no more
constexpr double kWrongWind = 15;      // knots
constexpr std::string_view kFigures = "0123456789";

struct Damage {
  std::string About{}, Text{};
};

bool IsBlank(char c) {
  return static_cast<unsigned char>(c) <= ' ';
}

// Beginnings and lengths of the groups between a part's name and the end of its report.
std::vector<std::pair<std::size_t, std::size_t>> GroupsOf(const std::string& text) {
  std::vector<std::pair<std::size_t, std::size_t>> groups;
  bool isOpen = false;
  for (std::size_t at = 0; at < text.size();) {
    if (IsBlank(text[at]) || text[at] == '=') {
      isOpen = isOpen && text[at] != '=';
      ++at;
      continue;
    }
    std::size_t end = at;
    while (end < text.size() && !IsBlank(text[end]) && text[end] != '=') ++end;
    const std::string_view group = std::string_view(text).substr(at, end - at);
    isOpen = isOpen || (group.size() == 4 && group[0] == group[1] && group[2] == group[3] &&
                        std::string_view("TPUX").find(group[0]) != std::string_view::npos);
    if (isOpen) groups.emplace_back(at, end - at);
    at = end;
  }
  return groups;
}

std::vector<Damage> DamagesOf(const std::string& text) {
  std::vector<Damage> damages;
  for (const auto& [at, length] : GroupsOf(text)) {
    const std::string group = text.substr(at, length);
    const auto add = [&, at = at, length = length](const std::string& instead) {
      damages.push_back({"at " + std::to_string(at) + ' ' + group + " -> " + instead,
                         std::string(text).replace(at, length, instead)});
    };
    add("");
    add(group + ' ' + group);
    for (std::size_t i = 0; i < length; ++i) {
      if (kFigures.find(group[i]) == std::string_view::npos) continue;
      add(std::string(group).erase(i, 1));
      for (const char other : kFigures) {
        if (other != group[i]) add(std::string(group).replace(i, 1, 1, other));
      }
    }
  }
  return damages;
}

struct Ascent {
  SoundingRecord Record{};
  analysis::LevelProfile Levels{};
  std::vector<std::string> Notes{};
};

// The soundings of a text that the checks pass.
std::vector<Ascent> Decode(const std::string& name, const std::string& text,
                           const StationList& stations) {
  std::vector<Ascent> ascents;
  const SourceText source(name, text);
  LoadContext context{.Stations = &stations};
  do {
    context.Notes.clear();
    Ascent ascent;
    if (DecodeSounding(source, context, ascent.Record)) continue;
    if (CheckRecord(ascent.Record) != QcFinding{}) continue;
    ascent.Levels = analysis::DeriveLevels(ascent.Record, {});
    ascent.Notes = context.Notes;
    ascents.push_back(std::move(ascent));
  } while (++context.Index < context.Count);
  return ascents;
}

bool IsTold(const Ascent& ascent, const Ascent& whole, const std::string& name) {
  return std::ranges::any_of(ascent.Notes, [&](const std::string& note) {
    return note.find(name) != note.npos &&
           std::ranges::find(whole.Notes, note) == whole.Notes.end();
  });
}

bool Differ(double height, double expected) {
  const double apart = std::fabs(height - expected);
  return apart > kLeastHeight && apart > kWrongHeight * std::fabs(expected);
}

// What an ascent passes off as measured where the whole message has something else.
std::vector<std::string> WrongIn(const Ascent& ascent, const Ascent& whole) {
  std::vector<std::string> wrong;
  const auto add = [&wrong](const char* what, double where, double is) {
    wrong.push_back(what + (" at " + Shortest(where)) + ": " + Shortest(is));
  };
  const SoundingRecord& record = ascent.Record;
  for (int i = 1; i <= record.NumTempLevels(); ++i) {
    const double press = record.Press(i);
    if (IsTold(ascent, whole, ' ' + Shortest(press) + " hPa")) continue;
    const analysis::Sample temp = analysis::SampleAt(whole.Levels, press, analysis::Quantity::Temp);
    if (!temp.Ok() || std::fabs(record.Temp(i) - temp.Value) > kWrongTemp + 1e-9) {
      add("temperature", press, record.Temp(i));
    }
    const analysis::Sample height = analysis::HeightAt(whole.Levels, press);
    if (!record.ElevUnknown && height.Ok() && Differ(ascent.Levels.Height(i), height.Value)) {
      add("height", press, ascent.Levels.Height(i));
    }
  }
  // A wind of the message at a height where the whole message has another one.
  for (int i = 1; i <= record.NumWindLevels(); ++i) {
    const double height = record.WindHgt(i);
    std::optional<double> was;
    for (int k = 1; k <= whole.Record.NumWindLevels(); ++k) {
      if (whole.Record.WindDir(k) != record.WindDir(i) ||
          std::fabs(whole.Record.WindSpd(k) - record.WindSpd(i)) > 0.01) {
        continue;
      }
      const double other = whole.Record.WindHgt(k);
      if (!was || std::fabs(other - height) < std::fabs(*was - height)) was = other;
    }
    if (!was || !Differ(height, *was)) continue;
    if (IsTold(ascent, whole, ' ' + Mask(height, "0") + " m ")) continue;
    const analysis::WindSample there = analysis::WindAtHeight(whole.Record, height);
    const auto [u, v] = analysis::Components({record.WindDir(i), record.WindSpd(i)});
    const auto [wholeU, wholeV] = analysis::Components(there.Value);
    if (there.Ok() && std::hypot(u - wholeU, v - wholeV) > kWrongWind) add("wind", *was, height);
  }
  return wrong;
}

struct Tally {
  int Damages = 0, Levels = 0, Kept = 0;
  std::vector<std::string> Wrong{};  // the damages with which something wrong was passed
};

// Every so many damages, or as many as the variable VEXA_DAMAGES says: 1 tries all.
void Try(const std::string& name, const std::string& text, const StationList& stations,
         std::size_t usualStep, Tally& tally) {
  const char* const given = std::getenv("VEXA_DAMAGES");
  const std::size_t step = given == nullptr ? usualStep : std::stoul(given);
  const std::vector<Ascent> whole = Decode(name, text, stations);
  ASSERT_FALSE(whole.empty()) << name;
  const std::vector<Damage> damages = DamagesOf(text);
  for (std::size_t i = 0; i < damages.size(); i += step) {
    ++tally.Damages;
    for (const Ascent& ascent : whole) tally.Levels += ascent.Record.NumTempLevels();
    std::string all;
    for (const Ascent& ascent : Decode(name, damages[i].Text, stations)) {
      tally.Kept += ascent.Record.NumTempLevels();
      std::vector<std::string> least = WrongIn(ascent, whole.front());
      for (std::size_t k = 1; k < whole.size() && !least.empty(); ++k) {
        std::vector<std::string> other = WrongIn(ascent, whole[k]);
        if (other.size() < least.size()) least = std::move(other);
      }
      for (const std::string& wrong : least) all += ", " + wrong;
    }
    if (!all.empty()) tally.Wrong.push_back(name + ' ' + damages[i].About + all);
  }
}

const char* const kReal[] = {
    "42182_New_Delhi_20260206_00z.txt", "72712_Caribou_20220713_00z.txt",
    "72293_San_Diego_20220713_00z.txt", "89009_South_Pole_20220713_00z.txt",
    "24688_Oymyakon_20260206_00z.txt",  "94672_Adelaide_20260206_00z.txt",
    "04360_Tasiilaq_20260206_00z.txt",  "15420_Bucuresti_20260206_00z.txt",
    "72357_Norman_day07_00z.txt",       "83779_Marte_20230223_12z.txt",
    "ship_9ZT9MRK_20260206_00z.txt",    "dropsonde_Maria_20170920_0231z.txt",
    "70398_Annette_COR_day10_12z.txt",  "91348_Pohnpei_20220713_00z.txt",
    "10548_Meiningen_20260206_00z.txt", "11952_Poprad_20260206_00z.txt",
};

// A figure changed by a few degrees cannot be told where nothing else speaks of that level.
void ExpectFew(const Tally& tally) {
  constexpr double kMostWrong = 0.008, kLeastKept = 0.97;
  EXPECT_GE(tally.Kept, kLeastKept * tally.Levels);
  EXPECT_LE(static_cast<double>(tally.Wrong.size()), kMostWrong * tally.Damages)
      << testing::PrintToString(tally.Wrong);
}

TEST(CodedDamage, OfTheSample) {
  const char* const name = "coded_bulletins_20240305.txt";
  Tally tally;
  Try(name, ReadFile(test::TestData(name)).Value(), StationList(), 29, tally);
  EXPECT_GT(tally.Damages, 170);
  ExpectFew(tally);
}

TEST(CodedDamage, OfRealMessages) {
  VEXA_REAL_DATA(folder, "temp");
  const StationList stations = KnownStations("", test::SourceFolder() / "share");
  ASSERT_GT(stations.Count(), 0);
  Tally tally;
  for (const char* name : kReal) Try(name, ReadFile(folder / name).Value(), stations, 1009, tally);
  ExpectFew(tally);
}

// Nothing of a message as it was sent is taken for garbled, but where its sender erred, and few
// values are doubted; every ascent passes the checks or has too few levels to be one.
TEST(CodedDamage, WholeMessagesStayWhole) {
  VEXA_REAL_DATA(folder, "temp");
  const StationList stations = KnownStations("", test::SourceFolder() / "share");
  int soundings = 0, levels = 0, doubts = 0;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    const std::string name = entry.path().filename().string();
    SCOPED_TRACE(name);
    const SourceText source(name, ReadFile(entry.path()).Value());
    const auto count = static_cast<int>(ListSoundings(source).size());
    EXPECT_EQ(count == 0, name.starts_with("no_ascent"));
    for (int index = 0; index < count; ++index) {
      const Decoded decoded = DecodeSource(source, index, &stations);
      if (decoded.Failed) {
        EXPECT_EQ(decoded.Failed->Number, kFaultTooFewLevels) << decoded.Failed->Detail;
        continue;
      }
      ++soundings;
      levels += decoded.Record.NumTempLevels();
      EXPECT_EQ(CheckRecord(decoded.Record), QcFinding{}) << index;
      for (const char* fault : {"does not fit", "is garbled", "out of order", "differ in"}) {
        EXPECT_FALSE(decoded.HasNote(fault)) << index << ' ' << fault;
      }
      doubts += static_cast<int>(std::ranges::count_if(decoded.Notes, [](const std::string& note) {
        return note.find("may be garbled") != note.npos;
      }));
    }
  }
  EXPECT_GT(soundings, 60);
  EXPECT_LE(doubts, levels / 75);
}

}  // namespace
}  // namespace vexa::ingest
