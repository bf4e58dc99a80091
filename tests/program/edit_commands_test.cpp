#include "program/edit_commands.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "core/files.h"
#include "core/markers.h"
#include "core/raw_file.h"
#include "core/record_edits.h"
#include "program/session_commands.h"
#include "program/source_edit.h"
#include "program/view_commands.h"
#include "support/document.h"
#include "support/igra_file.h"
#include "support/soundings.h"

namespace vexa {
namespace {

namespace fs = std::filesystem;

class EditCommands : public test::ProgramAtHome {
 protected:
  EditCommands() { program.Where.Data = folder.Path(); }
  fs::path Native(const std::string& name) { return Saved(name, test::ReferenceWinter()); }
  // A program that starts where another's session was left.
  Changes Begin(Program& next, Answer answer) {
    next.Doc.AskThrough(&user);
    next.Where.Root = folder.Path();
    user.Expect("VEXA", answer);
    return OfferSession(next);
  }
  // The system lets go of what a program held that crashed.
  static void CutOff(Program& of) { of.OwnSession = {}; }
  void DeleteLevel(int level) {
    SoundingRecord edited = program.Current.Record;
    ASSERT_FALSE(DeleteTempLevel(edited, level));
    ASSERT_TRUE(AdoptEdit(program, std::move(edited)).Sounding);
  }
  int LevelsIn(const fs::path& path) {
    SoundingRecord record;
    std::vector<RefusedWind> refused;
    EXPECT_FALSE(ReadRaw(ReadFile(path).Value(), "", RawVariant::Plain, record, refused));
    return record.NumTempLevels();
  }
};

TEST_F(EditCommands, StepsAreNamedByWhatTheyDid) {
  const SoundingRecord before = test::ReferenceConvective();
  struct Case {
    const char* name;
    void (*edit)(SoundingRecord&);
  };
  const Case cases[] = {
      {"delete level 17", [](SoundingRecord& r) { (void)DeleteTempLevel(r, 17); }},
      {"delete level 27", [](SoundingRecord& r) { (void)DeleteTempLevel(r, 27); }},
      {"add level 28", [](SoundingRecord& r) { r.AddTemp(5, -40, kMissing); }},
      {"change level 1", [](SoundingRecord& r) { r.Temp(1) -= 1; }},
      {"edit levels", [](SoundingRecord& r) { r.Temp(2) -= 1, r.Temp(4) -= 1; }},
      {"delete wind level 3", [](SoundingRecord& r) { (void)DeleteWindLevel(r, 3); }},
      {"add cloud layer 1",
       [](SoundingRecord& r) {
         r.Clouds.Add({"CU", 40, "60", 0});
       }},
      {"edit sounding", [](SoundingRecord& r) { r.Temp(2) -= 1, r.WindSpd(1) += 1; }},
      {"edit heading", [](SoundingRecord& r) { r.StationTitle = "Elsewhere"; }},
  };
  for (const Case& c : cases) {
    SoundingRecord after = before;
    c.edit(after);
    EXPECT_EQ(EditName(before, after), c.name);
  }
}

TEST_F(EditCommands, EditsAreUndoneRestoredAndWrittenOnlyOnSaving) {
  const fs::path path = Native("a.RAW");
  ASSERT_TRUE(OpenSoundings(program, {path}).Sounding);
  const SoundingRecord loaded = program.Current.Record;
  const int count = loaded.NumTempLevels();
  EXPECT_FALSE(program.Doc.CanRestore());
  DeleteLevel(3);
  DeleteLevel(2);
  EXPECT_EQ(program.Doc.History().UndoText(), "Undo delete level 2");
  EXPECT_EQ(LevelsIn(path), count);

  EXPECT_TRUE(RunCommand(program, "mnuUndo").Sounding);
  EXPECT_EQ(program.Doc.History().RedoText(), "Redo delete level 2");
  EXPECT_TRUE(RunCommand(program, "mnuRestore").Sounding);
  EXPECT_FALSE(program.Doc.IsAltered());
  EXPECT_EQ(program.Current.Record, loaded);
  EXPECT_TRUE(RunCommand(program, "mnuUndo").Sounding);
  EXPECT_EQ(program.Current.Record.NumTempLevels(), count - 1);

  user.Chosen = {TextFromPath(folder.Path() / "b")};
  EXPECT_TRUE(RunCommand(program, "mnuSaveAs").Any());
  EXPECT_EQ(LevelsIn(folder.Path() / "b.RAW"), count - 1);
  EXPECT_EQ(LevelsIn(path), count);
  EXPECT_FALSE(program.Doc.History().IsChanged());
  EXPECT_EQ(program.Current.FileName, "b.RAW");
  EXPECT_EQ(user.Asked.back().Folder, TextFromPath(folder.Path() / "a.RAW"));
}

TEST_F(EditCommands, ALockedCursorStaysAtItsPressure) {
  ASSERT_TRUE(OpenSoundings(program, {Native("a.RAW")}).Sounding);
  const Levels<double> press = program.Current.Record.Press;
  const double nearest =
      press(4) - press(5) < press(3) - press(4) ? press(5) : press(3);  // to the fourth
  const auto locked = [this] {
    return program.Current.Record.Press(program.Doc.LockedLevel().value_or(1));
  };
  program.Doc.Lock(0);
  program.Doc.Lock(program.Current.Record.NumTempLevels() + 1);
  EXPECT_FALSE(program.Doc.LockedLevel()) << "there are no such levels";
  program.Doc.Lock(4);
  DeleteLevel(2);
  EXPECT_EQ(locked(), press(4));
  DeleteLevel(3);  // its own: the nearest one takes its place
  EXPECT_EQ(locked(), nearest);
  EXPECT_TRUE(RunCommand(program, "mnuUndo").Sounding);
  EXPECT_TRUE(RunCommand(program, "mnuUndo").Sounding);
  EXPECT_EQ(locked(), nearest);
  ASSERT_TRUE(OpenSoundings(program, {Native("b.RAW")}).Sounding);
  EXPECT_FALSE(program.Doc.LockedLevel()) << "another sounding";
}

TEST_F(EditCommands, AListingIsNeverWrittenOver) {
  const std::string listing = ReadFile(test::TestData("wyoming_text.txt")).Value();
  const fs::path path = Saved("list.txt", listing);
  ASSERT_TRUE(OpenSoundings(program, {path}).Sounding);
  DeleteLevel(2);
  user.Chosen = {TextFromPath(path)};
  user.Expect("VEXA", Answer::Ok);
  EXPECT_FALSE(RunCommand(program, "mnuSaveAs").Any());
  // Nor on leaving: a name is asked for, and without one the program stays.
  user.Expect("Exit VEXA . . .", Answer::Yes);
  user.Expect("VEXA", Answer::Ok);
  EXPECT_FALSE(MayExit(program));
  EXPECT_EQ(ReadFile(path).Value(), listing);
  EXPECT_EQ(program.Current.FileName, "list.txt");

  // An added extension may meet a native file: that is asked.
  Native("old.RAW");
  user.Chosen = {TextFromPath(folder.Path() / "old")};
  user.Expect("VEXA", Answer::No);
  EXPECT_FALSE(RunCommand(program, "mnuSaveAs").Any());
  EXPECT_TRUE(program.Doc.History().IsChanged());
}

TEST_F(EditCommands, LeavingAsksForChangesOnly) {
  const fs::path path = Native("a.RAW");
  ASSERT_TRUE(OpenSoundings(program, {path}).Sounding);
  EXPECT_TRUE(MayExit(program));
  const int count = program.Current.Record.NumTempLevels();
  DeleteLevel(2);

  user.Expect("Exit VEXA . . .", Answer::Cancel);
  EXPECT_FALSE(MayExit(program));
  user.Expect("Exit VEXA . . .", Answer::No);
  EXPECT_TRUE(MayExit(program));
  EXPECT_EQ(LevelsIn(path), count);
  user.Expect("Open Sounding", Answer::Cancel);  // another sounding would lose them, too
  EXPECT_FALSE(OpenSoundings(program, {Native("b.RAW")}).Any());
  EXPECT_EQ(program.Current.FileName, "a.RAW");
  user.Expect("Exit VEXA . . .", Answer::Yes);
  EXPECT_TRUE(MayExit(program));
  EXPECT_EQ(LevelsIn(path), count - 1);
}

TEST_F(EditCommands, ANewSoundingHasNoFileUntilItIsSaved) {
  Native("NEW.RAW");  // somebody else's
  ASSERT_TRUE(AdoptNew(program, test::Profile({{1000, 20, 10}, {900, 14, 8}})).Sounding);
  user.Expect("Exit VEXA . . .", Answer::Yes);
  EXPECT_FALSE(MayExit(program));  // no name was given
  EXPECT_GT(LevelsIn(folder.Path() / "NEW.RAW"), 2);
}

TEST_F(EditCommands, AFaultAfterALoadIsCorrectedOrTheSoundingStays) {
  ASSERT_TRUE(OpenSoundings(program, {Native("good.RAW")}).Sounding);
  const CurrentSounding before = program.Current;
  const fs::path bad =
      Saved("bad.RAW", test::Profile({{1000, 20, 10}, {900, 14, 8}, {850, 5, 9}, {700, 0, 0}}));
  user.Expect("Data Error", Answer::Cancel);
  EXPECT_FALSE(OpenSoundings(program, {bad}).Any());
  EXPECT_EQ(program.Current.Record, before.Record);
  EXPECT_EQ(program.Current.FileName, "good.RAW");
  EXPECT_FALSE(program.Doc.Correction());

  user.Expect("Data Error", Answer::Ok);
  EXPECT_TRUE(OpenSoundings(program, {bad}).Sounding);
  EXPECT_EQ(program.Doc.Correction(), (QcFinding{5, 3}));
  SoundingRecord mended = program.Current.Record;
  mended.Dewpt(3) = 4;
  AdoptEdit(program, mended);
  EXPECT_EQ(FaultIndicator(program), "");

  SilentInteraction nobody;
  program.Doc.AskThrough(&nobody);
  EXPECT_FALSE(OpenSoundings(program, {bad}).Any()) << "nobody said that the edits may go";
  EXPECT_EQ(program.Current.Record, mended);
  program.Doc.Undo();
  EXPECT_TRUE(OpenSoundings(program, {bad}).Sounding);
  EXPECT_FALSE(program.Doc.Correction());
  for (const Box& box : nobody.Boxes) EXPECT_NE(box.Title, "Data Error");
}

TEST_F(EditCommands, TheFilterThinsHighDensityOnly) {
  test::Show(program, test::ReferenceWinter());
  user.Expect("Filter Sounding Data", Answer::Ok);
  EXPECT_FALSE(RunCommand(program, "mnuFilter").Any());

  SoundingRecord dense = test::Profile({});
  for (int i = 0; i < 900; ++i) dense.AddTemp(1000 - i, 20 - 0.06 * i, 10 - 0.06 * i);
  test::Show(program, dense);
  user.Expect("Filter Sounding Data", Answer::Ok);
  EXPECT_TRUE(RunCommand(program, "mnuFilter").Sounding);
  EXPECT_LT(program.Current.Record.NumTempLevels(), 450);
  EXPECT_EQ(program.Doc.History().UndoText(), "Undo filter");
  EXPECT_TRUE(RunCommand(program, "mnuRestore").Sounding);
  EXPECT_EQ(program.Current.Record, dense);
}

TEST_F(EditCommands, SourceTextKeepsItsBytesAndLineEnds) {
  const std::string bytes = "M\xFCnchen\r\nsecond\r\n";
  const Outcome<EditableText> text = TextToEdit(bytes, "x");
  ASSERT_TRUE(text);
  EXPECT_EQ(text.Value().Text, "M\xC3\xBCnchen\nsecond\n");
  EXPECT_EQ(BytesOf(text.Value(), text.Value().Text).Value(), bytes);
  EXPECT_EQ(BytesOf(text.Value(), "\xE2\x82\xAC").Error().Number, kFaultInvalidValue);  // euro
  const std::string utf8 = "caf\xC3\xA9\n";
  EXPECT_EQ(BytesOf(TextToEdit(utf8, "x").Value(), utf8).Value(), utf8);
  for (const char* packed : {"packed.txt.gz", "packed.zip", "bufr_five.bufr"}) {
    EXPECT_FALSE(TextToEdit(ReadFile(test::TestData(packed)).Value(), packed)) << packed;
  }
}

TEST_F(EditCommands, AnEditedSourceBecomesTheSoundingOrSaysWhyNot) {
  const fs::path path = Native("a.RAW");
  ASSERT_TRUE(OpenSoundings(program, {path}).Sounding);
  const SoundingRecord loaded = program.Current.Record;
  SoundingRecord other = test::ReferenceWinter();
  other.StationTitle = "Changed by hand";
  const std::string bytes = WriteRaw(other);

  Changes changes;
  EXPECT_TRUE(AdoptSource(program, "no sounding\n", changes));
  EXPECT_TRUE(SaveSource(program, "no sounding\n", changes));
  EXPECT_FALSE(changes.Any());
  EXPECT_EQ(program.Current.Record, loaded);

  EXPECT_EQ(SourceRemark(program), "");
  EXPECT_FALSE(AdoptSource(program, bytes, changes));
  EXPECT_NE(SourceRemark(program).find("not saved"), std::string::npos);
  EXPECT_EQ(program.Current.Record.StationTitle, "Changed by hand");
  EXPECT_TRUE(program.Doc.History().IsChanged());
  EXPECT_NE(ReadFile(path).Value(), bytes);
  EXPECT_FALSE(SaveSource(program, bytes, changes));
  EXPECT_EQ(ReadFile(path).Value(), bytes);
  EXPECT_FALSE(program.Doc.History().IsChanged());
}

// What another program has put in the file's place since goes only when the user wants it to.
TEST_F(EditCommands, AFileThatWasChangedSinceIsNotReplacedUnasked) {
  const fs::path path = Native("a.RAW");
  ASSERT_TRUE(OpenSoundings(program, {path}).Sounding);
  DeleteLevel(2);
  const std::string others = WriteRaw(test::ReferenceConvective());
  Saved("a.RAW", others);
  Changes changes;
  user.Expect("VEXA", Answer::No);
  EXPECT_TRUE(SaveSource(program, WriteRaw(test::ReferenceWinter()), changes));
  EXPECT_NE(SourceRemark(program).find("another program"), std::string::npos);

  user.Expect("Exit VEXA . . .", Answer::Yes);
  user.Expect("VEXA", Answer::No);
  EXPECT_FALSE(MayExit(program)) << "and no other name was given";
  EXPECT_EQ(ReadFile(path).Value(), others);
  user.Expect("Exit VEXA . . .", Answer::Yes);
  user.Expect("VEXA", Answer::Yes);
  EXPECT_TRUE(MayExit(program));
  EXPECT_EQ(LevelsIn(path), program.Current.Record.NumTempLevels());
  DeleteLevel(2);
  user.Expect("Exit VEXA . . .", Answer::Yes);
  EXPECT_TRUE(MayExit(program)) << "its own writing is none to ask about";
}

// The second of two soundings: the editor has its lines alone, and an edit changes it and not the
// first one.
TEST_F(EditCommands, TheSourceOfOneOfSeveralSoundingsIsItsOwn) {
  const std::string whole = ReadFile(test::TestData("fsl_two.fsl")).Value();
  program.ChooseSoundings = [](const auto& titles) {
    EXPECT_EQ(titles.size(), 2u);
    return std::vector<int>{0, 1};
  };
  ASSERT_TRUE(OpenSoundings(program, {Saved("two.fsl", whole)}).Sounding);
  ASSERT_TRUE(SequenceSounding(program, 1).Sounding);
  const int time = program.Current.Record.Time.Hour;
  const Outcome<EditableText> part = SourceToEdit(program, false);
  ASSERT_TRUE(part);
  std::string text = part.Value().Text;
  EXPECT_TRUE(text.starts_with("    254     12      4"));
  EXPECT_EQ(part.Value().Before + text, whole);
  EXPECT_EQ(BytesOf(part.Value(), text).Value(), whole);
  EXPECT_EQ(SourceToEdit(program, true).Value().Text, whole);

  text.replace(text.find("    156  32767"), 14, "    140  32767");  // 850 hPa
  Changes changes;
  EXPECT_FALSE(AdoptSource(program, BytesOf(part.Value(), text).Value(), changes));
  EXPECT_TRUE(changes.Sounding);
  EXPECT_EQ(program.Current.Record.Time.Hour, time);
  const auto& temps = program.Current.Record.Temp.Values();
  EXPECT_EQ(std::count(temps.begin(), temps.end(), 14.0), 1);
}

// A file of some 6 MB is read in pieces: the editor has a sounding behind the first of them with
// what stands around it there, and not the file.
TEST_F(EditCommands, TheSourceInALongFileComesWithItsPieceAlone) {
  constexpr int kDays = 14000, kDay = 10000;
  std::string whole;
  for (int day = 0; day < kDays; ++day) {
    whole += test::IgraSounding(72558, 1950 + day / 360, 1 + day / 30 % 12, 1 + day % 30, 12,
                                day == kDay ? 1.5 : 0);
  }
  program.ChooseSoundings = [](const auto&) { return std::vector<int>{kDay}; };
  ASSERT_TRUE(OpenSoundings(program, {Saved("long.txt", whole)}).Sounding);
  EXPECT_NEAR(program.Current.Record.Temp(1), 29.5, 1e-9);
  const Outcome<EditableText> part = SourceToEdit(program, false);
  ASSERT_TRUE(part);
  const EditableText& source = part.Value();
  EXPECT_EQ(source.Text, test::IgraSounding(72558, 1977, 10, 11, 12, 1.5));
  const std::string piece = source.Before + source.Text + source.After;
  EXPECT_LT(piece.size(), whole.size() * 2 / 3);
  EXPECT_NE(whole.find(piece), std::string::npos);

  std::string text = source.Text;
  text.replace(text.find("  295 "), 6, "  305 ");  // the first temperature, tenths
  Changes changes;
  EXPECT_FALSE(AdoptSource(program, BytesOf(source, text).Value(), changes));
  EXPECT_NEAR(program.Current.Record.Temp(1), 30.5, 1e-9);
  EXPECT_EQ(program.Current.Record.Time.Year, 1977);
  EXPECT_FALSE(SaveSource(program, whole, changes));
  EXPECT_NEAR(program.Current.Record.Temp(1), 29.5, 1e-9);
}

TEST_F(EditCommands, ChecksAreSwitchedOffByTheirOptions) {
  const fs::path good = Native("good.RAW");
  const fs::path bad =
      Saved("bad.RAW", test::Profile({{1000, 20, 10}, {900, 14, 8}, {850, 5, 9}, {700, 0, 0}}));
  program.Set.System.StepChecks = false;
  ASSERT_TRUE(OpenSoundings(program, {good, bad}).Sounding);
  EXPECT_TRUE(SequenceSounding(program, 1).Sounding);  // no box
  EXPECT_EQ(FaultIndicator(program), "");
  EXPECT_FALSE(program.Doc.Correction());
  user.Expect("Data Error", Answer::Ok);
  EXPECT_TRUE(OpenSoundings(program, {bad}).Sounding);
  EXPECT_NE(FaultIndicator(program), "");
  program.Set.System = {.DataChecks = false};
  EXPECT_TRUE(OpenSoundings(program, {bad}).Sounding);
  EXPECT_EQ(FaultIndicator(program), "");  // not that of the load before
}

TEST_F(EditCommands, ASessionCutOffComesBackAsItWasLookedAt) {
  program.ChooseSoundings = [](const auto&) { return std::vector<int>{0, 1}; };
  ASSERT_TRUE(
      OpenSoundings(program, {Saved("two.fsl", ReadFile(test::TestData("fsl_two.fsl")).Value())})
          .Sounding);
  ASSERT_TRUE(Refresh(program, SequenceSounding(program, 1)));
  program.View.Zoom = Rect{0.125, 0.25, 0.375, 0.5};
  program.Doc.Lock(2);
  program.View.Lines.Contrail = true;
  program.View.Lines.PressHeights = false;
  program.Set.MotionMode = Scaling::Manual;
  program.Set.ManualMotionDir = 215;
  program.Set.ManualMotionSpd = 33.5;
  EXPECT_FALSE(KeepSession(program));
  CutOff(program);

  Program next;
  ASSERT_TRUE(Refresh(next, Begin(next, Answer::Yes)));  // without asking which of the two
  EXPECT_EQ(next.Current.Record, program.Current.Record);
  EXPECT_EQ(next.Listed.At(1).Index, 1);
  EXPECT_EQ(next.View.Zoom, program.View.Zoom);
  EXPECT_EQ(next.View.Lines, program.View.Lines);
  EXPECT_EQ(next.Set, program.Set);
  EXPECT_EQ(next.Doc.LockedLevel(), 2);
}

// Edits that mended the order come back without a question about the file, which still has the
// fault.
TEST_F(EditCommands, ASessionWithMendedOrderComesBackUnasked) {
  SoundingRecord twice = test::ReferenceWinter();
  const double height = twice.WindHgt(3);
  twice.WindHgt(3) = twice.WindHgt(2);
  user.Expect("Data Error", Answer::Ok);
  ASSERT_TRUE(OpenSoundings(program, {Saved("twice.RAW", twice)}).Sounding);
  EXPECT_EQ(program.Doc.Finding(), (QcFinding{2, 2}));
  SoundingRecord mended = program.Current.Record;
  mended.WindHgt(3) = height;
  ASSERT_TRUE(program.Doc.Adopt(mended, "edit"));
  EXPECT_FALSE(KeepSession(program));
  CutOff(program);

  Program next;
  ASSERT_TRUE(Refresh(next, Begin(next, Answer::Yes)));
  EXPECT_EQ(next.Current.Record, mended);
  EXPECT_EQ(FaultIndicator(next), "");
  EXPECT_TRUE(next.Doc.IsAltered());
  next.Doc.ForgetEdits(Document::GiveUpEdits());
  user.Expect("Data Error", Answer::Cancel);  // the flag was for once
  EXPECT_FALSE(OpenSoundings(next, {folder.Path() / "twice.RAW"}).Sounding);
}

TEST_F(EditCommands, ASessionCutOffIsOfferedWithItsEdits) {
  const fs::path a = Native("a.RAW");
  const fs::path b = Native("b.RAW");
  ASSERT_TRUE(OpenSoundings(program, {fs::proximate(a), fs::proximate(b)}).Sounding);
  SequenceSounding(program, 1);
  DeleteLevel(2);
  EXPECT_FALSE(KeepSession(program));
  const SoundingRecord edited = program.Current.Record;

  Program beside;  // while the first still runs
  beside.Doc.AskThrough(&user);
  beside.Where.Root = folder.Path();
  EXPECT_FALSE(OfferSession(beside).Any());
  EndSession(beside);
  fs::remove(folder.Path() / "VEXA.SES");
  EXPECT_FALSE(KeepSession(program));
  EXPECT_TRUE(fs::exists(folder.Path() / "VEXA.SES")) << "kept anew though nothing has changed";
  CutOff(program);

  // What comes back, and whether its file was changed meanwhile.
  const auto comesBack = [&](bool hasChanged) {
    Program next;
    EXPECT_TRUE(Begin(next, Answer::Yes).Sounding);
    EXPECT_EQ(next.Current.Record, edited);
    EXPECT_EQ(next.Current.FileName, "b.RAW");
    EXPECT_EQ(next.Listed.Now(), 1u);
    ASSERT_EQ(next.Listed.Size(), 2u);
    EXPECT_TRUE(next.Listed.At(0).File.is_absolute());
    EXPECT_TRUE(fs::equivalent(next.Listed.At(0).File, a));
    EXPECT_TRUE(next.Doc.History().IsChanged());
    EXPECT_EQ(next.Doc.ChangedOnDisk(), hasChanged);
    CutOff(next);
  };
  comesBack(false);
  Saved("b.RAW", test::ReferenceConvective());
  comesBack(true);
  {
    Program other;  // closes the box without an answer, works on something else and ends well
    EXPECT_FALSE(Begin(other, Answer::Cancel).Any());
    ASSERT_TRUE(OpenSoundings(other, {a}).Sounding);
    EXPECT_FALSE(KeepSession(other));
    EndSession(other);
  }
  comesBack(true);
  fs::remove(b);  // the edits survive their file
  Program alone;
  EXPECT_TRUE(Begin(alone, Answer::Yes).Sounding);
  EXPECT_EQ(alone.Current.Record, edited);
  CutOff(alone);

  Program declined;
  EXPECT_FALSE(Begin(declined, Answer::No).Any());
  EXPECT_FALSE(OfferSession(declined).Any());  // an unforeseen box would fail here
}

// The window keeps the session every 20 seconds, while a box of the start stands too, and ends it
// when the system logs off: neither may take away what nobody has answered for yet.
TEST_F(EditCommands, ASessionStaysUntilItsQuestionIsAnswered) {
  const fs::path kept = folder.Path() / "VEXA.SES";
  ASSERT_TRUE(OpenSoundings(program, {Native("a.RAW")}).Sounding);
  DeleteLevel(2);
  ASSERT_FALSE(KeepSession(program));
  CutOff(program);

  struct Waiting : test::ScriptedInteraction {
    Program* Of = nullptr;
    Answer Ask(const Box& box) override {
      EXPECT_FALSE(KeepSession(*Of));
      EndSession(*Of);
      return test::ScriptedInteraction::Ask(box);
    }
  };
  Waiting slow;
  Program next;
  slow.Of = &next;
  next.Doc.AskThrough(&slow);
  next.Where.Root = folder.Path();
  EXPECT_FALSE(KeepSession(next));  // before it is asked
  slow.Expect("VEXA", Answer::Cancel);
  EXPECT_FALSE(OfferSession(next).Any());
  EndSession(next);
  EXPECT_TRUE(fs::exists(kept));
}

}  // namespace
}  // namespace vexa
