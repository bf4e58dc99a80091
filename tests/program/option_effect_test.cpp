// No option is dead: changing it changes the drawing, the readout, a display, a listing or the
// exported values.
#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "config/catalogue.h"
#include "core/numbers.h"
#include "output/listings.h"
#include "program/displays.h"
#include "program/program.h"
#include "program/readout.h"
#include "support/document.h"
#include "support/soundings.h"

namespace vexa {
namespace {

// A text, or what a picture shows.
struct Part {
  Part(std::string text) : Text(std::move(text)) {}
  Part(const Picture& page) : Items(page.Items()), Paper(page.Paper()) {}
  bool operator==(const Part&) const = default;

  std::string Text{};
  std::vector<Item> Items{};
  Color Paper{};
};

std::vector<std::string> ValuesOf(const OptionRow& row) {
  std::vector<std::string> values;
  for (const std::string_view word : row.Words) values.emplace_back(word);
  for (const double number : row.Numbers) values.push_back(Shortest(number));
  if (!values.empty()) return values;
  const double middle = static_cast<double>(static_cast<int>((row.Least + row.Most) / 2));
  return {Shortest(row.Least), Shortest(middle), Shortest(middle + 1), Shortest(row.Most)};
}

// What a change of each option makes stale, as its form says: the parcels and categories of the
// program's tabs 2 and 3 and the soaring day are computed, whatever else there is is only shown.
TEST(Options, OnlyThoseOfAnalysesAreAnalysedAnew) {
  using Computed = Document::Computed;
  const std::set<std::string_view> ofStorm = {
      "Storm motion",       "Bunkers deviation factor", "Storm mover",
      "Storm motion mode",  "Manual storm direction",   "Manual storm speed",
      "Shear SR Layer Top", "Shear SR Layer Bot",       "Shear SR Layer Deg",
      "Shear SR Layer Pct"};
  const std::set<std::string_view> ofSoaring = {"SoarTm", "TriggerHgt", "LiftEq"};
  const auto expected = [&](const OptionRow& row) {
    if (ofStorm.contains(row.Key)) return Computed::StormMotion;
    if (ofSoaring.contains(row.Key)) return Computed::Everything;
    const bool isComputed = row.Place == "Program/Tab 2" || row.Place == "Program/Tab 3";
    return isComputed && row.Key != "CAPE depth display" ? Computed::Everything : Computed::Nothing;
  };
  Document document;
  document.Take(Document::GiveUpEdits(), {.Record = test::ReferenceConvective()});
  analysis::AdiabatTable table;
  const auto analyse = [&](const Options& set) { return document.Analyse(set, table, {}); };
  EXPECT_EQ(analyse({}), Computed::Everything);
  for (const OptionRow& row : Catalogue()) {
    std::vector<std::string> values = ValuesOf(row);
    if (row.Kind == OptionKind::Text) values = {"another text"};
    Options changed;
    for (const std::string& value : values) {
      if (changed != Options{}) break;
      EXPECT_TRUE(row.Read(changed, value)) << row.Key;
    }
    EXPECT_NE(changed, Options{}) << row.Key;
    EXPECT_EQ(analyse(changed), expected(row)) << row.Key;
    EXPECT_EQ(analyse({}), expected(row)) << row.Key;
  }
}

// What the displays, the readout and what leaves the program say under some options, part by part
// until `take` has enough.
void Tell(const Program& program, const std::function<bool(Part)>& take) {
  if (!take(program.Plot->Page)) return;
  const Readout readout = ReadDiagram(program, program.Plot->Mapping.ToPoint(10, 700));
  if (!take(readout.Grid + readout.Sounding + program.Plot->Warning + SoundingBanner(program))) {
    return;
  }
  const output::ListingSource from{program.Current.Record, program.Results, program.Set};
  for (const output::ListingRow& row : output::Listings()) {
    std::string text;
    for (const std::string& line : row.Make(from)) text += line + '\n';
    if (!take(std::move(text))) return;
  }
  for (const DisplayRow& display : program.DisplayTable) {
    const bool isShown = LackOf(display, program).empty();
    const bool goesOn = isShown ? take(DrawDisplay(display, program, ImageSurface(800, 600)))
                                : take(std::string(display.Id));
    if (!goesOn) return;
  }
}

// A sounding and some options, with what was told of it under these.
class Scene {
 public:
  Scene(const SoundingRecord& sounding, const Options& set) : Set(set) {
    program_.Doc.AskThrough(&silent_);
    test::Show(program_, sounding, "a.RAW");
    Tell(Under(set), [this](Part part) {
      parts_.push_back(std::move(part));
      return true;
    });
  }
  bool DiffersUnder(const Options& set) {
    std::size_t at = 0;
    bool isSame = true;
    Tell(Under(set), [&](const Part& part) {
      isSame = at < parts_.size() && part == parts_[at++];
      return isSame;
    });
    return !isSame || at != parts_.size();
  }

  const Options Set;

 private:
  const Program& Under(const Options& set) {
    program_.Set = set;
    EXPECT_TRUE(Refresh(program_, {.Sounding = true}));
    return program_;
  }

  SilentInteraction silent_{};
  Program program_{};
  std::vector<Part> parts_{};
};

// Some value of an option makes a difference to one of the scenes. That which showed the last
// option comes first: options that stand side by side are seen in the same places.
bool LivesIn(std::deque<Scene>& scenes, std::size_t& first, const OptionRow& row) {
  for (std::size_t i = 0; i < scenes.size(); ++i) {
    Scene& scene = scenes[(first + i) % scenes.size()];
    for (const std::string& value : ValuesOf(row)) {
      Options set = scene.Set;
      if (!row.Read(set, value) || set == scene.Set) continue;
      if (!scene.DiffersUnder(set)) continue;
      first = (first + i) % scenes.size();
      return true;
    }
  }
  return false;
}

TEST(Options, NoneIsWithoutEffect) {
  // Read elsewhere: by the file dialog, on another page, in loops, with several soundings and with
  // a catalogue.
  const std::set<std::string_view> elsewhere = {"Auto directory update",
                                                "Custom panel",
                                                "Movie time",
                                                "Skiploop",
                                                "LoopNoReScaling",
                                                "Overlay scaling",
                                                "Compare scaling",
                                                "Usual temperatures",
                                                "Usual winds"};
  SoundingRecord sounding = test::ReferenceConvective();
  sounding.StationTitle = "Norman  00Z 04 MAY 1999";
  SoundingRecord high = sounding;  // reaches above the tephigram's top
  high.AddTemp(60, -60, 999.9);
  high.AddTemp(20, -55, 999.9);

  Options manual;
  manual.AutoMbSelect = manual.AutoHighEmagram = false;
  manual.MbLimit = 200;
  manual.TempScaling = Scaling::Manual;
  manual.IcaoLine = true;
  manual.TraceCircles = true;
  for (ReferenceLine* line : {&manual.DryRef, &manual.SatRef, &manual.MixRef}) line->Plot = true;
  manual.DryRef.Value = 310;
  for (CustomLine& line : manual.CustomLines) line.Plot = true;
  Options heights = manual;
  heights.YGridUnits = GridUnits::Kilometers;
  heights.YGridInterval = 1;
  heights.Diagram = DiagramType::Emagram;
  Options stretched;
  stretched.Above100mb = true;
  stretched.Diagram = DiagramType::Tephigram;
  stretched.AutoHighEmagram = false;
  stretched.Pressure = PressureUnits::InHg;
  Options traditional;
  traditional.Motion = StormMotion::Traditional;
  traditional.Lpl = LiftSource::MostUnstable;
  traditional.CapeDepth = CapeDepthDisplay::Both;
  Options lifted = traditional;
  lifted.MultiLift = true;
  lifted.MotionMode = Scaling::Manual;
  lifted.HodoDepthMode = HodoDepth::Limit;
  std::deque<Scene> scenes;
  for (const Options& set : {manual, heights, Options{}, traditional, lifted}) {
    scenes.emplace_back(sounding, set);
  }
  scenes.emplace_back(high, stretched);
  scenes.emplace_back(test::ReferenceWinter(), Options{});
  std::size_t first = 0;
  for (const OptionRow& row : Catalogue()) {
    if (!row.Place.starts_with("Diagram") && !row.Place.starts_with("Program/")) continue;
    if (elsewhere.contains(row.Key) || row.Key.find("x-section") != row.Key.npos) continue;
    EXPECT_TRUE(LivesIn(scenes, first, row)) << row.Key;
  }
  // What stayed of one set of options would make others differ.
  for (Scene& scene : scenes) EXPECT_FALSE(scene.DiffersUnder(scene.Set));
}

}  // namespace
}  // namespace vexa
