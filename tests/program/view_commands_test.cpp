// Other soundings, the loop, the cursor, dragging, the surface and the four parcels, without a
// window.
#include "program/view_commands.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "core/files.h"
#include "core/markers.h"
#include "program/edit_commands.h"
#include "program/hodograph_commands.h"
#include "program/level_drag.h"
#include "program/parcel_table.h"
#include "program/print_work.h"
#include "program/sounding_loop.h"
#include "program/surface_edit.h"
#include "support/document.h"
#include "support/tagged_items.h"

namespace vexa {
namespace {

class ViewTest : public test::ProgramAtHome {
 protected:
  ViewTest() { Do(OpenSoundings(program, {Saved("a.RAW", test::ReferenceConvective())})); }
  std::vector<std::string> Texts(std::string_view tag) const {
    return test::Texts(program.Plot->Page, tag);
  }
};

TEST_F(ViewTest, LoadingManyBesideOneAnotherTellsItsShareAndStops) {
  for (const char* name : {"1.RAW", "2.RAW", "3.RAW", "4.RAW"}) {
    user.Chosen.push_back(TextFromPath(Saved(name, test::ReferenceWinter())));
  }
  user.StopAfter = static_cast<int>(user.Statuses.size()) + 2;
  EXPECT_FALSE(RunCommand(program, "mnuOverlay").Any());
  EXPECT_TRUE(program.Others.empty());
  EXPECT_EQ(user.Statuses.back(), "Loading sounding 3 of 4 . . .");
  user.StopAfter = -1;
  Do("mnuOverlay");
  EXPECT_EQ(program.Others.size(), 4u);
  // A quarter more for each file, then the steps of the diagram.
  EXPECT_FALSE(std::ranges::search(user.Shares, std::vector{0.0, 0.25, 0.5, 0.75, 0.0}).empty());
}

TEST_F(ViewTest, DoubtfulDataBesideAreToldAndOneOfSeveralIsLeftOut) {
  const auto hot = Saved("hot.RAW", test::Profile({{1000, 71, 10}, {900, 20, 10}}));
  const auto good = Saved("b.RAW", test::ReferenceWinter());
  user.Chosen = {TextFromPath(hot), TextFromPath(good)};
  user.Expect("VEXA", Answer::Ok);
  Do("mnuOverlay");
  ASSERT_EQ(program.Others.size(), 1u);
  EXPECT_EQ(program.Others[0]->From().File, good);
  EXPECT_TRUE(
      user.Boxes.back().Text.ends_with("\nhot.RAW: Temperature is greater than 70C. Level 1."));
  Do("mnuSounding");
  user.Chosen = {TextFromPath(hot)};
  user.Expect("VEXA", Answer::Ok);
  Do("mnuCompare");
  EXPECT_EQ(program.Others.size(), 1u);
  EXPECT_TRUE(user.Boxes.back().Text.starts_with("VEXA encountered one of the following problems"));
}

TEST_F(ViewTest, AnEnteredStormMotionEndsWithItsSoundingUnlessHeld) {
  const auto next = Saved("b.RAW", test::ReferenceWinter());
  Do(EnterStormMotion(program, {200, 40}));
  EXPECT_TRUE(program.Results.Storm.ChosenIsManual);
  Do(OpenSoundings(program, {next}));
  EXPECT_FALSE(program.Results.Storm.ChosenIsManual);
  Do(EnterStormMotion(program, {200, 40}));
  Do(HoldStormMotion(program, true));
  Do(OpenSoundings(program, {folder.Path() / "a.RAW"}));
  EXPECT_TRUE(program.Results.Storm.ChosenIsManual);
  EXPECT_EQ(program.Results.Storm.ChosenName(), "right mover, manual");
}

TEST_F(ViewTest, ComparesOverlaysAndGoesBack) {
  Do("mnuCompare");  // cancelled
  EXPECT_EQ(program.View.Mode, diagram::MultiMode::Single);
  user.Chosen = {TextFromPath(Saved("b.RAW", test::ReferenceWinter())),
                 TextFromPath(Saved("c.RAW", test::ReferenceConvective()))};
  Do("mnuCompare");
  EXPECT_EQ(user.Asked.back().Title, "Sounding Comparison");
  ASSERT_EQ(Texts("other title").size(), 2u);
  EXPECT_TRUE(Texts("other title")[0].starts_with("#1 - Reference A, convective // "));
  EXPECT_TRUE(Texts("other title")[1].starts_with("#2 - Reference B, winter // "));
  EXPECT_EQ(SoundingBanner(program), "VEXA  -  Reference A, convective  -  Sounding Comparison");
  Do("mnuOverlay");
  EXPECT_EQ(Texts("other title").size(), 3u);
  Do("mnuSounding");
  EXPECT_TRUE(Texts("other title").empty());

  // A file that is no sounding is told of, and nothing is compared.
  folder.Write("bad.txt", "no sounding\n");
  user.Chosen = {TextFromPath(folder.Path() / "bad.txt")};
  user.Expect("VEXA", Answer::Ok);
  Do("mnuCompare");
  EXPECT_EQ(program.View.Mode, diagram::MultiMode::Single);

  EXPECT_TRUE(Texts("trace name").size() == 2u);
  Saved("REFERENCE.DAT", test::ReferenceWinter());
  Do("mnuReference");
  EXPECT_EQ(Texts("trace name").back(), "Reference");
  Do("mnuReference");
  EXPECT_EQ(Texts("trace name").size(), 2u);
}

// The second sounding is told from the first by its strokes and has what the first has: indices in
// its line, its winds in the hodograph, its pages in print.
TEST_F(ViewTest, TheComparedSoundingIsShownWhole) {
  std::map<std::string, std::size_t> alone;
  for (const std::string& name : {std::string(output::Listings().front().Name),
                                  std::string("NotePad"), std::string("SvrWx")}) {
    alone[name] = PagesToPrint(program, {.Display = name}).size();
    EXPECT_GE(alone[name], 1u) << name;
  }
  user.Chosen = {TextFromPath(Saved("b.RAW", test::ReferenceWinter()))};
  Do("mnuCompare");
  for (const char* tag : {"other temperature", "other dew point"}) {
    const Polyline line = test::Tagged<Polyline>(program.Plot->Page, tag).at(0);
    EXPECT_EQ(line.Stroke.Style, LineStyle::Dash) << tag;
  }
  // As computed from the published formulas by a script.
  const std::vector<std::string> titles = Texts("other title");
  EXPECT_NE(titles.at(0).find(" // CAPE total 3365 J/kg"), std::string::npos) << titles[0];
  EXPECT_NE(titles.at(1).find("CAPE total 0 J/kg"), std::string::npos) << titles[1];
  const std::vector<hodograph::ComparedWinds> winds = HodographOf(program).Compared;
  ASSERT_EQ(winds.size(), 1u);
  EXPECT_EQ(winds[0].Title, "Reference B, winter");
  EXPECT_EQ(static_cast<int>(winds[0].Winds.size()), test::ReferenceWinter().NumWindLevels());
  for (const auto& [name, pages] : alone) {
    EXPECT_EQ(PagesToPrint(program, {.Display = name}).size(), 2 * pages) << name;
  }
  EXPECT_EQ(PagesToPrint(program, {.Display = "Compare"}).size(), 1u) << "it shows both";
  Do("mnuSounding");
  EXPECT_TRUE(HodographOf(program).Compared.empty());
}

TEST_F(ViewTest, LoopsThroughTheListAndSkipsWhatIsBad) {
  EXPECT_FALSE(StartLoop(program).Any());  // one sounding is no loop
  const auto a = folder.Path() / "a.RAW";
  const auto hot = Saved("hot.RAW", test::Profile({{1000, 71, 10}, {900, 20, 10}}));
  const auto b = Saved("b.RAW", test::ReferenceWinter());
  Do(OpenSoundings(program, {a, hot, b}));
  program.Set.System.MovieTime = 2.5;
  program.Set.System.LoopNoRescaling = true;
  Do(StartLoop(program));
  const double least = program.Plot->Mapping.TempMin();
  Do(StepLoop(program));
  EXPECT_EQ(program.Listed.Now(), 1u);
  program.Set.System.SkipLoop = true;
  Do(StepLoop(program));
  EXPECT_EQ(program.Current.FileName, "b.RAW");
  EXPECT_EQ(program.Plot->Mapping.TempMin(), least);
  Do(StepLoop(program));
  Do(StepLoop(program));  // past the hot one
  EXPECT_EQ(program.Current.FileName, "b.RAW");
  Do("mnuSpecial");
  EXPECT_TRUE(Texts("hold time").empty());
  EXPECT_FALSE(StepLoop(program).Any());
}

TEST_F(ViewTest, ALoopAsksBeforeEditsGoAndStopsWhenTheSoundingIsEdited) {
  const auto a = folder.Path() / "a.RAW";
  const auto b = Saved("b.RAW", test::ReferenceWinter());
  Do(OpenSoundings(program, {a, b}));
  const auto edit = [&] {
    SoundingRecord edited = program.Doc.Record();
    edited.Temp(1) += 1;
    Do(AdoptEdit(program, edited));
  };
  edit();
  user.Expect("Open Sounding", Answer::Cancel);
  EXPECT_FALSE(StartLoop(program).Any());
  EXPECT_TRUE(program.Doc.IsAltered());
  user.Expect("Open Sounding", Answer::No);
  Do(StartLoop(program));
  Do(StepLoop(program));
  EXPECT_EQ(program.Current.FileName, "b.RAW");
  edit();
  Do(StepLoop(program));
  EXPECT_FALSE(program.View.Looping);
  EXPECT_EQ(TakeNotices(program), "The loop stopped: b.RAW was changed.  ");
  EXPECT_EQ(program.Current.FileName, "b.RAW");
  EXPECT_TRUE(program.Doc.History().CanUndo());
}

TEST_F(ViewTest, WhatALoopPassesOverLeavesTheSoundingInWorkWhole) {
  const auto a = folder.Path() / "a.RAW";
  const auto hot = Saved("hot.RAW", test::Profile({{1000, 71, 10}, {900, 20, 10}}));
  Do(OpenSoundings(program, {a, hot}));
  program.Set.System.SkipLoop = true;
  Do(StartLoop(program));
  Do(StepLoop(program));  // past the hot one, back to the first
  Do("mnuSpecial");
  SoundingRecord edited = test::ReferenceConvective();
  edited.Temp(1) += 1;
  Do(AdoptEdit(program, edited));
  Do("mnuRestore");
  EXPECT_EQ(program.Doc.Record().Temp(1), test::ReferenceConvective().Temp(1));
  EXPECT_FALSE(program.Doc.ChangedOnDisk());
}

TEST_F(ViewTest, WhatCannotBeReadIsSteppedOver) {
  const auto a = folder.Path() / "a.RAW";
  folder.Write("bad.txt", "no sounding\n");
  const auto b = Saved("b.RAW", test::ReferenceWinter());
  Do(OpenSoundings(program, {a, folder.Path() / "bad.txt", b}));
  user.Expect("VEXA", Answer::Ok);
  Do(StepListed(program, 1));
  EXPECT_EQ(program.Current.FileName, "b.RAW");
  EXPECT_EQ(TakeNotices(program), "2/3  bad.txt cannot be shown.  ");
  user.Expect("VEXA", Answer::Ok);
  Do(StepListed(program, -1));
  EXPECT_EQ(program.Current.FileName, "a.RAW");
  EXPECT_FALSE(StepListed(program, -1).Any());
}

// A second sounding that reaches 40 degrees lower widens the axes, or not.
TEST_F(ViewTest, FurtherSoundingsScaleTheAxesAsTheOptionsSay) {
  SoundingRecord cold = test::ReferenceConvective();
  for (int i = 1; i <= cold.NumTempLevels(); ++i) {
    cold.Temp(i) -= 40;
    cold.Dewpt(i) = kMissing;
  }
  user.Chosen = {TextFromPath(Saved("cold.RAW", cold))};
  const auto coldest = [this] { return program.Plot->Mapping.TempMin(); };
  const double alone = coldest();
  for (const std::string_view command : {"mnuCompare", "mnuOverlay"}) {
    program.Set.CompareScaling = program.Set.OverlayScaling = Scaling::Auto;
    Do(command);
    EXPECT_LT(coldest(), alone);
    Scaling& its =
        command == "mnuCompare" ? program.Set.CompareScaling : program.Set.OverlayScaling;
    its = Scaling::Manual;
    Do({.View = true});
    EXPECT_EQ(coldest(), alone);
    Do(command);
  }
}

TEST_F(ViewTest, ALockedCursorStepsLevelsUntilTheDiagramIsRefreshed) {
  EXPECT_EQ(SwitchCursor(program), "Data-Locked Cursor");
  const Point at = program.Plot->Mapping.ToPoint(0, 705);
  CursorSetup(program, at);
  EXPECT_EQ(program.Doc.LockedLevel(), 10);
  EXPECT_NE(CursorShown(program).Text.find("700.0 mb"), std::string::npos);
  EXPECT_NE(CursorShown(program).Text.find("Temp:8.6 C  Td:-3.2 C"), std::string::npos);
  program.Set.TempGridUnits = TempUnits::Fahrenheit;  // 8.6 x 1.8 + 32 = 47.48
  ASSERT_TRUE(Refresh(program, {.View = true}));
  EXPECT_NE(CursorShown(program).Text.find("Temp:47.5 F  Td:26.2 F"), std::string::npos);
  ASSERT_TRUE(StepCursor(program, 1));
  EXPECT_NE(CursorShown(program).Text.find("650.0 mb"), std::string::npos);
  user.Expect("VEXA", Answer::Ok);
  CursorSetup(program, at);
  EXPECT_NE(user.Boxes.back().Text.find("Data-Locked Cursor"), std::string::npos);
  Do("mnuRefreshed");
  EXPECT_FALSE(program.Doc.LockedLevel());
}

TEST_F(ViewTest, TheCrossStaysAtItsTemperatureAndPressure) {
  const Point at = program.Plot->Mapping.ToPoint(-20, 450);
  CursorSetup(program, at);
  const auto there = [&] { return program.Plot->Mapping.ToCoordinates(*program.View.Cursor.At); };
  Do(ZoomBy(program, {at.X + 900, at.Y + 500}, 2));
  EXPECT_NEAR(there().Press, 450, 0.1);
  EXPECT_NEAR(there().Temp, -20, 0.1);
  program.Set.Diagram = DiagramType::Emagram;
  Do({.View = true});
  EXPECT_NEAR(there().Press, 450, 0.1);
  EXPECT_NEAR(there().Temp, -20, 0.1);
  // Zoomed away it is not drawn, and it is back with the whole diagram.
  const Rect frame = program.Plot->Mapping.Frame();
  Do(ZoomBy(program, {frame.Right, frame.Bottom}, 8));
  const auto crosses = [&] {
    return diagram::CursorMarks(program.Plot->Page, program.Plot->Mapping, program.Current.Record,
                                CursorShown(program), {}, {})
        .Items()
        .size();
  };
  EXPECT_EQ(crosses(), 0U);
  Do(ZoomBy(program, {frame.Right, frame.Bottom}, 0.01));
  EXPECT_EQ(crosses(), 2U);
  EXPECT_NEAR(there().Press, 450, 0.1);
}

TEST_F(ViewTest, ADragIsOneEditThatCanBeTakenBackOrUndone) {
  program.Set.TephigramWarning = false;
  const SoundingRecord before = program.Current.Record;
  const diagram::DiagramMapping at = program.Plot->Mapping;
  const Point held = at.ToPoint(8.6, 700);
  const auto grip = CursorTTorTD(program, held, 100);
  ASSERT_EQ(grip, (Grip{Dragged::Temp, 10}));
  EXPECT_FALSE(CursorTTorTD(program, at.ToPoint(35, 400), 100));

  for (const DiagramType type :
       {DiagramType::SkewT, DiagramType::Emagram, DiagramType::Tephigram}) {
    SCOPED_TRACE(static_cast<int>(type));
    program.Set.Diagram = type;
    Do(Changes{.View = true});
    LevelDrag drag(program, *grip, program.Plot->Mapping.ToPoint(8.6, 700));
    Do(drag.Move(program, program.Plot->Mapping.ToPoint(11.3, 700)));
    EXPECT_NEAR(program.Current.Record.Temp(10), 11.3, 1e-9);
    EXPECT_EQ(program.Results.Levels.Temp(10), program.Current.Record.Temp(10));
    Do(drag.TakeBack(program));
    EXPECT_EQ(program.Current.Record, before);
    EXPECT_FALSE(program.Doc.History().CanUndo());
  }
  program.Set.Diagram = DiagramType::SkewT;
  Do(Changes{.View = true});

  // Colder than its dew point: the dew point goes along.
  LevelDrag drag(program, *grip, held);
  Do(drag.Move(program, at.ToPoint(0, 700)));
  Do(drag.Move(program, at.ToPoint(-6, 700)));
  drag.Finish(program);
  EXPECT_NEAR(program.Current.Record.Dewpt(10), -6, 1e-9);
  EXPECT_EQ(program.Doc.History().UndoText(), "Undo drag temperature of level 10");
  ASSERT_TRUE(program.Doc.Undo());
  EXPECT_EQ(program.Current.Record, before);

  // The dew point stops at the temperature.
  LevelDrag wet(program, {Dragged::Dewpt, 10}, at.ToPoint(-3.2, 700));
  Do(wet.Move(program, at.ToPoint(20, 700)));
  EXPECT_NEAR(program.Current.Record.Dewpt(10), 8.6, 1e-9);
  Do(wet.TakeBack(program));
}

TEST_F(ViewTest, AWindFollowsThePointer) {
  program.Set.WindPlotRatio = 1;  // every wind, crowded or not
  Refresh(program, {.View = true});
  // Level 2, 165 degrees and 20 kt: the arrow's tip lies 5.2 kt to the east and 19.3 to the south.
  const HotSpot* spot = nullptr;
  for (const HotSpot& each : program.Plot->Page.HotSpots()) {
    if (each.Tag == "wind" && each.Text.find("165/20") != std::string::npos) spot = &each;
  }
  ASSERT_NE(spot, nullptr);
  const Point held{(spot->Where.Left + spot->Where.Right) / 2,
                   (spot->Where.Top + spot->Where.Bottom) / 2};
  const auto grip = CursorTTorTD(program, held, 100);
  ASSERT_EQ(grip, (Grip{Dragged::Wind, 2}));
  LevelDrag drag(program, *grip, held);
  // 30 kt to the west: (-24.8, -19.3), 31.4 kt from 232 degrees.
  Do(drag.Move(program, {held.X - 30 * LevelDrag::kUnitsPerKnot, held.Y}));
  EXPECT_EQ(program.Current.Record.WindDir(2), 232);
  EXPECT_EQ(program.Current.Record.WindSpd(2), 31);
  Do(drag.TakeBack(program));
  EXPECT_EQ(program.Current.Record.WindDir(2), 165);
}

TEST(SurfaceEdit, HeatsAndMixes) {
  SoundingRecord record = test::Profile(
      {{1000, 20, 10}, {950, 20, 8}, {900, 18, 2}, {850, 17, -5}, {700, 5, -15}}, {{0, 180, 5}});
  const SoundingRecord before = record;
  ASSERT_FALSE(SetSurface(record, {30, 10, 200, 12}));
  EXPECT_EQ(record.WindDir(1), 200);
  EXPECT_EQ(record.Temp(2), 20);
  ASSERT_TRUE(HotMix(record, Options{}));
  // 303.16 K x (p/1000)^0.2856 - 273.16, by hand: the adiabat leaves the air between 900 and 850.
  EXPECT_NEAR(record.Temp(2), 25.59, 0.02);
  EXPECT_NEAR(record.Temp(3), 21.01, 0.02);
  ASSERT_EQ(record.NumTempLevels(), 6);
  const double top = record.Press(4);
  EXPECT_GT(top, 850);
  EXPECT_LT(top, 900);
  EXPECT_NEAR(record.Temp(4) + 273.16, 303.16 * std::pow(top / 1000, 0.2856), 0.02);
  EXPECT_EQ(record.Temp(5), 17);
  // One mixing ratio everywhere: the dew point falls by some 1.8 degrees in a kilometre, far less
  // than the temperature, and was drier above and moister below before.
  EXPECT_LT(record.Dewpt(1), 10);
  EXPECT_GT(record.Dewpt(3), 2);
  EXPECT_NEAR(record.Dewpt(1) - record.Dewpt(3), 1.7, 0.3);

  SoundingRecord stable = before;
  EXPECT_FALSE(HotMix(stable, Options{}));
  EXPECT_EQ(stable, before);
  EXPECT_TRUE(SetSurface(stable, {80, 10, {}, {}}));
  EXPECT_EQ(stable, before);
}

TEST_F(ViewTest, TheOwnParcelFromTheSurfaceIsTheSurfaceParcel) {
  const auto value = [](const std::vector<ParcelLine>& lines, const std::string& label,
                        std::size_t column) {
    for (const ParcelLine& line : lines) {
      if (line.Label == label) return line.Values[column];
    }
    return std::string("no such line");
  };
  const auto same = ParcelTable(program, OwnParcel(program));
  for (const ParcelLine& line : same) EXPECT_EQ(line.Values[0], line.Values[3]) << line.Label;
  EXPECT_NE(value(same, "CAPE J/kg", 0), "0");
  const auto dry = ParcelTable(program, {970, 28, -10});
  EXPECT_EQ(value(dry, "CAPE J/kg", 3), "0");
  EXPECT_EQ(value(ParcelTable(program, {1050, 28, 18}), "CAPE J/kg", 3), "--");
}

}  // namespace
}  // namespace vexa
