// No option is dead: changing it changes the drawing, the readout, a display, a listing or the
// exported values.
#include <gtest/gtest.h>

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

// A program with a sounding under some options; false when it cannot be drawn.
bool Load(Program& program, SilentInteraction& silent, const SoundingRecord& sounding,
          const Options& set) {
  program.Doc.AskThrough(&silent);
  test::Show(program, sounding, "a.RAW");
  program.Set = set;
  return Refresh(program, {.Sounding = true});
}

// Everything that users see of a sounding under some options.
std::string Seen(const SoundingRecord& sounding, const Options& set) {
  SilentInteraction silent;
  Program program;
  if (!Load(program, silent, sounding, set)) return "";
  const Readout readout = ReadDiagram(program, program.Plot->Mapping.ToPoint(10, 700));
  return ToSvg(program.Plot->Page, 1600, 1200) + readout.Grid + readout.Sounding +
         program.Plot->Warning + SoundingBanner(program);
}

std::vector<std::string> ValuesOf(const OptionRow& row) {
  std::vector<std::string> values;
  for (const std::string_view word : row.Words) values.emplace_back(word);
  for (const double number : row.Numbers) values.push_back(Shortest(number));
  if (!values.empty()) return values;
  const double middle = static_cast<double>(static_cast<int>((row.Least + row.Most) / 2));
  return {Shortest(row.Least), Shortest(middle), Shortest(middle + 1), Shortest(row.Most)};
}

TEST(Options, NoneOfTheDiagramIsWithoutEffect) {
  // Read elsewhere: by the file dialog, the hodograph, the pages of the analysis box and with
  // several soundings.
  const std::set<std::string_view> elsewhere = {
      "Auto directory update", "Plot Hodo",       "Plot SM Vector",  "Hodo location",
      "Hodo Grid origin",      "Hodo depth mode", "Depth limit",     "Custom panel",
      "Thermo display type",   "ThermoNum",       "Overlay scaling", "Compare scaling"};
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
  struct Scene {
    const SoundingRecord& Sounding;
    const Options& Set;
  };
  const SoundingRecord frontal = test::ReferenceWinter();
  const Scene scenes[] = {{sounding, Options{}},
                          {sounding, manual},
                          {high, stretched},
                          {sounding, heights},
                          {frontal, Options{}}};
  std::vector<std::string> plain;
  for (const Scene& scene : scenes) plain.push_back(Seen(scene.Sounding, scene.Set));

  for (const OptionRow& row : Catalogue()) {
    const bool ofDiagram = row.Place.starts_with("Diagram") || row.Place == "Program/Tab 1";
    if (!ofDiagram || elsewhere.contains(row.Key) || row.Key.find("x-section") != row.Key.npos) {
      continue;
    }
    bool lives = false;
    for (std::size_t i = 0; i < std::size(scenes) && !lives; ++i) {
      for (const std::string& value : ValuesOf(row)) {
        Options set = scenes[i].Set;
        if (!row.Read(set, value) || set == scenes[i].Set) continue;
        lives = lives || Seen(scenes[i].Sounding, set) != plain[i];
      }
    }
    EXPECT_TRUE(lives) << row.Key;
  }
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

// Everything that the analysis, the displays and what leaves the program say under some options,
// part by part until `take` has enough.
void Tell(const SoundingRecord& sounding, const Options& set,
          const std::function<bool(std::string)>& take) {
  SilentInteraction silent;
  Program program;
  if (!Load(program, silent, sounding, set)) return;
  if (!take(ToSvg(program.Plot->Page, 1600, 1200))) return;
  const output::ListingSource from{sounding, program.Results, set};
  for (const output::ListingRow& row : output::Listings()) {
    std::string text;
    for (const std::string& line : row.Make(from)) text += line + '\n';
    if (!take(std::move(text))) return;
  }
  for (const DisplayRow& display : program.DisplayTable) {
    const bool isShown = LackOf(display, program).empty();
    std::string text(display.Id);
    if (isShown)
      text += ToSvg(DrawDisplay(display, program, ImageSurface(800, 600), set), 800, 600);
    if (!take(std::move(text))) return;
  }
}

// What was told of a sounding, to hold something else against it.
class Told {
 public:
  Told(const SoundingRecord& sounding, const Options& set) : sounding_(sounding) {
    Tell(sounding, set, [this](std::string part) {
      parts_.push_back(std::move(part));
      return true;
    });
  }
  bool DiffersUnder(const Options& set) const {
    std::size_t at = 0;
    bool isSame = true;
    Tell(sounding_, set, [&](const std::string& part) {
      isSame = at < parts_.size() && part == parts_[at++];
      return isSame;
    });
    return !isSame || at != parts_.size();
  }

 private:
  const SoundingRecord& sounding_;
  std::vector<std::string> parts_{};
};

TEST(Options, NoneOfTheAnalysisIsWithoutEffect) {
  SoundingRecord icy = test::ReferenceWinter();
  icy.StationTitle = "Winter";
  const SoundingRecord soundings[] = {test::ReferenceConvective(), icy};
  Options traditional;
  traditional.Motion = StormMotion::Traditional;
  traditional.Lpl = LiftSource::MostUnstable;
  traditional.CapeDepth = CapeDepthDisplay::Both;
  Options manual = traditional;
  manual.MultiLift = true;
  manual.MotionMode = Scaling::Manual;
  const std::set<std::string_view> ofLoops = {"Movie time", "Skiploop", "LoopNoReScaling"};
  const Options bases[] = {Options{}, traditional, manual};
  std::vector<std::vector<Told>> plain;
  for (const Options& base : bases) {
    std::vector<Told>& told = plain.emplace_back();
    for (const SoundingRecord& sounding : soundings) told.emplace_back(sounding, base);
  }
  const auto lives = [&](const OptionRow& row) {
    for (std::size_t i = 0; i < std::size(bases); ++i) {
      for (const Told& told : plain[i]) {
        for (const std::string& value : ValuesOf(row)) {
          Options set = bases[i];
          if (row.Read(set, value) && set != bases[i] && told.DiffersUnder(set)) return true;
        }
      }
    }
    return false;
  };
  std::vector<std::string> dead;
  for (const OptionRow& row : Catalogue()) {
    const bool isOfAnalysis = row.Place.starts_with("Program/") && row.Place != "Program/Tab 1";
    if (!isOfAnalysis || ofLoops.contains(row.Key)) continue;
    if (!lives(row)) dead.emplace_back(row.Key);
  }
  EXPECT_EQ(dead, std::vector<std::string>{});
}

}  // namespace
}  // namespace vexa
