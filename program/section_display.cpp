#include "program/section_display.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

#include "core/files.h"
#include "core/numbers.h"
#include "core/user_file.h"
#include "diagram/sounding_plot.h"
#include "ingest/sounding_files.h"
#include "mountainwave/mountain_file.h"
#include "program/listed_soundings.h"
#include "program/needs.h"
#include "program/section_work.h"
#include "program/session_memory.h"
#include "sounding/sounding_source.h"

namespace vexa {
namespace {

using crosssection::Column;
using crosssection::Dataset;
using crosssection::DatasetRead;
using crosssection::DatasetRefusal;
using crosssection::FieldAnalysis;
using crosssection::FieldRow;
using crosssection::Section;
using crosssection::SectionKind;

constexpr double kSamePlaceKm = 50;
constexpr std::size_t kMostSearched = 1000;  // files of a folder that an update looks into

// The dataset is the last one and the first of the recent ones.
void NoteDataset(SectionView& view, const std::filesystem::path& path) {
  view.State.LastDataset = TextFromPath(path);
  auto& recent = view.State.Recent;
  const auto known = std::ranges::find(recent, view.State.LastDataset);
  std::rotate(recent.begin(), known == recent.end() ? recent.end() - 1 : known,
              known == recent.end() ? recent.end() : known + 1);
  recent.front() = view.State.LastDataset;
}

// The files that a section came from and those beside them.
std::vector<std::filesystem::path> FilesAround(const Section& section) {
  std::vector<std::filesystem::path> files;
  std::set<std::filesystem::path> folders;
  const auto add = [&](const std::filesystem::path& file) {
    if (std::ranges::find(files, file) == files.end()) files.push_back(file);
  };
  for (const Column& column : section.Columns) {
    const std::filesystem::path file = PathFromText(column.Source);
    add(file);
    folders.insert(file.parent_path());
  }
  for (const std::filesystem::path& folder : folders) {
    if (folder.empty()) continue;
    for (const std::filesystem::path& file : ingest::FilesIn(folder)) {
      if (files.size() < kMostSearched && ingest::HoldsSounding(file)) add(file);
    }
  }
  return files;
}

bool SameMembers(const std::vector<SoundingSet::Member>& one,
                 const std::vector<SoundingSet::Member>& other) {
  return std::ranges::equal(one, other, [](const auto& a, const auto& b) {
    return a.File == b.File && a.Index == b.Index;
  });
}

std::filesystem::path MountainsOf(const Program& program) {
  return program.Where.Root.empty() ? std::filesystem::path{}
                                    : program.Where.Root / mountainwave::kMountainFileName;
}

// Soundings of one place are a section in time, others one along a line.
SectionKind KindOf(const Section& section) {
  if (section.Columns.empty()) return SectionKind::Distance;
  const SoundingRecord& first = section.Columns.front().Sounding;
  const bool onePlace = std::ranges::all_of(section.Columns, [&](const Column& column) {
    return crosssection::DistanceKm(first.LatSigned, first.LonSigned, column.Sounding.LatSigned,
                                    column.Sounding.LonSigned) < kSamePlaceKm;
  });
  return onePlace ? SectionKind::Time : SectionKind::Distance;
}

// What is loaded, parted into the soundings of the section and those beside it.
void PartLoaded(SectionView& view) {
  std::vector<Column>& columns = view.Of.Columns;
  std::ranges::move(view.Aside, std::back_inserter(columns));
  view.Aside.clear();
  const auto isIn = [&](const Column& column) {
    return !view.Out.contains(column.Order) && IsChosen(column.Sounding.Time, view.Span);
  };
  const auto aside = std::ranges::stable_partition(columns, isIn);
  std::ranges::move(aside, std::back_inserter(view.Aside));
  columns.erase(aside.begin(), aside.end());
}

void Arranged(SectionView& view, SectionWork& work) {
  PartLoaded(view);
  view.Of.Kind = view.Kind.value_or(KindOf(view.Of));
  view.Of.Direction = view.State.Direction;
  view.Why = WhyNoSection(view.Of);
  view.Remarks.clear();
  if (!view.Why.empty()) return;
  Arrange(view.Of);
  view.Remarks = SectionRemarks(view.Of);
  if (view.Interpolates) work.Interpolate(view.Of);
}

void DropInterpolated(Section& section) {
  std::erase_if(section.Columns, [](const Column& column) { return column.IsInterpolated; });
}

std::string SettingsText(const Program& program, const std::string& file) {
  std::vector<std::string> notes;
  if (program.Where.Root.empty()) return {};
  return ReadUserFile(program.Where.Root / file, notes).value_or(std::string());
}

Picture Sentence(const std::string& text, const Surface& on, ScreenColor screen) {
  const bool black = screen == ScreenColor::Black;
  Picture page(on.Width, on.Height, black ? Color{0, 0, 0} : Color{255, 255, 255});
  page.Add("sentence", Label{.At = {300, 600},
                             .Text = text,
                             .Size = LetterSize(Type::Value),
                             .Ink = black ? Color{235, 235, 235} : Color{20, 20, 20}});
  return page;
}

const FieldRow& FieldOf(const SectionView& view) {
  const FieldRow* field = crosssection::FindField(view.State.Field);
  return field != nullptr ? *field : crosssection::Fields().front();
}

bool Ask(const Program& program, const Box& box) {
  return program.Current.Ask == nullptr || program.Current.Ask->Ask(box) != Answer::Cancel;
}

bool IsSoundingFolder(const Program& program, const std::filesystem::path& path) {
  return !program.Where.Data.empty() &&
         crosssection::SameFolder(path.parent_path(), program.Where.Data);
}

}  // namespace

std::string_view NeedsSection(const Program& program) {
  const SectionView& view = program.Displays.Of<SectionView>();
  const bool isThere = !view.Of.Columns.empty() || !view.Aside.empty();
  return isThere || program.Listed.Size() > 1 ? "" : "needs several soundings opened together";
}

SectionView SectionViewOnce(const Program& program) {
  SectionView view;
  view.Set = SectionOptionsFor(program.Where.Root, program.Set);
  view.Intervals = crosssection::ReadIntervals(SettingsText(program, crosssection::IntervalFile()));
  SectionWork work(program.Set, MountainsOf(program));
  work.Load(program.Listed.Members(), {}, {.Stations = &program.Stations}, {}, view.Of);
  Arranged(view, work);
  return view;
}

SectionView& SectionViewOf(Program& program) {
  SectionView& view = program.Displays.Of<SectionView>();
  if (std::exchange(view.HasSettings, true)) return view;
  view.Set = SectionOptionsFor(program.Where.Root, program.Set);
  view.Intervals = crosssection::ReadIntervals(SettingsText(program, crosssection::IntervalFile()));
  view.State =
      crosssection::ReadSectionState(SettingsText(program, crosssection::SectionStateFile()));
  return view;
}

void SaveSectionSettings(Program& program) {
  if (program.Where.Root.empty()) return;
  const SectionView& view = SectionViewOf(program);
  const auto save = [&](const std::string& name, const std::string& text) {
    const auto fault = SaveUserFile(program.Where.Root / name, text,
                                    [](std::string_view) { return std::string(); });
    if (fault)
      program.Notices.push_back("The cross-section's settings are not kept: " + fault->Detail);
  };
  save(crosssection::SectionOptionsFile(), Write(view.Set));
  save(crosssection::SectionStateFile(), Write(view.State));
  save(crosssection::IntervalFile(), Write(view.Intervals));
}

void ArrangeSection(Program& program) {
  SectionView& view = SectionViewOf(program);
  DropInterpolated(view.Of);
  SectionWork work(program.Set, MountainsOf(program));
  Arranged(view, work);
}

bool ReadSectionAgain(Program& program) {
  // No other command begins meanwhile, and Escape stops this one.
  const auto pass = program.Gate.Enter();
  SectionView& view = SectionViewOf(program);
  const std::vector<SoundingSet::Member>& members = program.Listed.Members();
  SectionWork work(program.Set, MountainsOf(program));
  Progress progress = program.Current.Ask != nullptr ? Progress(*program.Current.Ask) : Progress();
  Section made;
  const bool isDone =
      work.Load(members, view.Span, {.Stations = &program.Stations}, progress, made);
  if (program.Current.Ask != nullptr) program.Current.Ask->Share(1);
  view.MadeOf = members;  // what was stopped is not begun again by itself
  if (!isDone) return false;
  view.Of = std::move(made);
  view.Aside.clear();
  view.Out.clear();
  view.IsDataset = false;
  if (!work.Troubles().empty()) {
    program.Notices.push_back(Shortest(static_cast<int>(work.Troubles().size())) +
                              " of the soundings could not be read or are doubtful: " +
                              work.Troubles().front().Name + ".");
  }
  view.Under = program.Set;
  Arranged(view, work);
  return true;
}

std::size_t BytesOf(const SectionView& view) {
  return BytesOf(view.Of.Columns) + BytesOf(view.Aside);
}

Picture MiniSounding(Program& program, std::size_t column, const Surface& on) {
  const SoundingRecord& sounding = SectionViewOf(program).Of.Columns.at(column).Sounding;
  const analysis::AnalysisResults results =
      analysis::Analyse(sounding, program.Set, program.Adiabats);
  auto plot = diagram::PlotSounding(
      {.Sounding = sounding, .Results = results, .Set = program.Set, .On = on});
  return plot ? std::move(plot->Page) : Picture(on.Width, on.Height, Color{255, 255, 255});
}

bool FollowSoundings(Program& program) {
  SectionView& view = SectionViewOf(program);
  const bool isNew =
      program.Listed.Size() > 1 && !SameMembers(view.MadeOf, program.Listed.Members());
  if (isNew) {
    view.Span = {};
    view.Kind.reset();
    return ReadSectionAgain(program);
  }
  const bool sameAnalysis = view.Under == static_cast<const AnalysisSettings&>(program.Set);
  if (sameAnalysis) return true;
  SectionWork work(program.Set, MountainsOf(program));
  DropInterpolated(view.Of);
  for (std::vector<Column>* columns : {&view.Of.Columns, &view.Aside}) {
    for (Column& column : *columns) {
      const int order = column.Order;
      column = work.ColumnOf(column.Sounding, column.Source);
      column.Order = order;
    }
  }
  view.Under = program.Set;
  Arranged(view, work);
  return true;
}

Picture PlotCrossSection(const DisplayInput& from, const Surface& on) {
  const SectionView& kept = from.In.Displays.Of<SectionView>();
  std::optional<SectionView> made;
  if (kept.Of.Columns.empty() && kept.Aside.empty()) made = SectionViewOnce(from.In);
  const SectionView& view = made ? *made : kept;
  if (!view.Why.empty()) return Sentence(view.Why, on, view.Set.Background);
  const Outcome<FieldAnalysis> field =
      AnalyzeField(view.Of, FieldOf(view), view.Set, view.Intervals);
  if (!field) {
    return Sentence("VEXA encountered an unexpected error.  " + field.Error().Detail, on,
                    view.Set.Background);
  }
  return crosssection::PlotSection({view.Of, view.Set, from.Set, field.Value()}, on).Page;
}

std::vector<std::string> ListCrossSection(const Program& program) {
  const SectionView& view = program.Displays.Of<SectionView>();
  std::vector<std::string> lines = {SectionTitle(view.Of), ""};
  if (!view.Why.empty()) lines.push_back(view.Why);
  const bool isTime = view.Of.Kind == SectionKind::Time;
  lines.push_back(PadLeft(isTime ? "hours" : std::string(Word(view.Set.Length)), 9) +
                  "     Lat     Lon  Elev  Time         Levels  Winds  Sounding");
  for (const Column& column : view.Of.Columns) {
    const SoundingRecord& sounding = column.Sounding;
    const double x = isTime ? column.X : crosssection::FromKm(column.X, view.Set.Length);
    lines.push_back(
        PadLeft(Mask(x, "#####0.0"), 9) + PadLeft(Mask(sounding.LatSigned, "#0.00"), 8) +
        PadLeft(Mask(sounding.LonSigned, "##0.00"), 8) + PadLeft(Shortest(sounding.ElevM), 6) +
        "  " + PadRight(crosssection::TimeText(sounding.Time), 12) +
        PadLeft(Shortest(sounding.NumTempLevels()), 7) +
        PadLeft(Shortest(sounding.NumWindLevels()), 7) + "  " +
        std::string(Trim(sounding.StationTitle)));
  }
  for (const std::string& remark : view.Remarks) lines.push_back(remark);
  lines.push_back(Mask(static_cast<double>(BytesOf(view)) / 1e6, "####0.0") +
                  " MB of memory, about, for all that is loaded.");
  return lines;
}

namespace commands {

bool ChooseField(Program& program, std::string_view code) {
  SectionView& view = SectionViewOf(program);
  const FieldRow* field = crosssection::FindField(code);
  if (field == nullptr) return false;
  if (program.Current.Ask != nullptr) {
    program.Current.Ask->Status("Analyzing: " + std::string(field->Button));
  }
  for (const Box& box : ChecksFor(view.Of, *field, view.Set)) {
    if (!Ask(program, box)) return false;
  }
  view.State.Field = std::string(field->Code);
  return true;
}

void ChooseKind(Program& program, SectionKind kind) {
  SectionViewOf(program).Kind = kind;
  ArrangeSection(program);
}

void TurnSection(Program& program) {
  SectionView& view = SectionViewOf(program);
  FlipTime(view.Of);
  view.State.Direction = view.Of.Direction;
}

void InterpolateSection(Program& program, bool on) {
  SectionViewOf(program).Interpolates = on;
  ArrangeSection(program);
}

bool OpenDataset(Program& program, const std::filesystem::path& path, DatasetUse use) {
  const std::string name = TextFromPath(path.filename());
  if (IsSoundingFolder(program, path)) {
    Ask(program, crosssection::WrongFolderBox(program.Where.CrossSection));
    return false;
  }
  const Outcome<std::string> text = ReadFile(path);
  if (!text) {
    program.Doc.Report(text.Error());
    return false;
  }
  DatasetRead read = crosssection::ReadDataset(text.Value(), name);
  if (read.Why == DatasetRefusal::OlderVersion && use == DatasetUse::Edit) {
    Ask(program, crosssection::CannotEditBox(name));
    return false;
  }
  if (read.Why != DatasetRefusal::None) {
    Ask(program, RefusalBox(read.Why, name, read.Place));
    return false;
  }
  SectionView& view = SectionViewOf(program);
  SectionWork work(program.Set, MountainsOf(program));
  Section section;
  for (const Dataset::Member& member : read.Held.Members) {
    section.Columns.push_back(work.ColumnOf(member.Sounding, member.Source));
    section.Columns.back().Order = static_cast<int>(section.Columns.size());
  }
  section.Name = TextFromPath(path.stem());
  view.Of = std::move(section);
  view.Aside.clear();
  view.Out.clear();
  view.Span = {};
  view.Kind = read.Held.Kind;
  view.State.Direction = read.Held.Direction;
  NoteDataset(view, path);
  view.IsDataset = true;
  view.MadeOf = program.Listed.Members();
  view.Under = program.Set;
  Arranged(view, work);
  return true;
}

bool SaveDataset(Program& program, const std::filesystem::path& path) {
  SectionView& view = SectionViewOf(program);
  if (IsSoundingFolder(program, path)) {
    Ask(program, crosssection::WrongFolderBox(program.Where.CrossSection));
    return false;
  }
  const Dataset dataset = DatasetOf(view.Of);
  if (const auto fault = SaveFile(path, Write(dataset))) {
    program.Doc.Report(*fault);
    return false;
  }
  std::vector<std::string> files;
  for (const Dataset::Member& member : dataset.Members) {
    if (std::ranges::find(files, member.Source) == files.end()) files.push_back(member.Source);
  }
  if (const auto fault = WriteList(path.parent_path(), crosssection::kDatasetListFile, files)) {
    program.Notices.push_back("The list of the section's files is not kept: " + fault->Detail);
  }
  view.Of.Name = TextFromPath(path.stem());
  NoteDataset(view, path);
  view.IsDataset = true;
  return true;
}

void AutoLoadSection(Program& program) {
  SectionView& view = SectionViewOf(program);
  view.State.AutoLoad = !view.State.AutoLoad;
  const char* const text =
      view.State.AutoLoad
          ? "This cross-section will be automicatlly displayed next time VEXA is activated."
          : "A blank cross-section will be automicatlly displayed next time VEXA is activated.";
  Ask(program, {.Title = "Cross-Section", .Text = text, .Icon = BoxIcon::Information});
  SaveSectionSettings(program);
}

void RestoreSection(Program& program) {
  const SectionView& view = SectionViewOf(program);
  if (!view.State.AutoLoad || view.State.LastDataset.empty()) return;
  OpenDataset(program, PathFromText(view.State.LastDataset));
}

int UpdateSection(Program& program) {
  const auto pass = program.Gate.Enter();
  SectionView& view = SectionViewOf(program);
  DropInterpolated(view.Of);
  if (view.Of.Kind != SectionKind::Time || view.Of.Columns.empty()) return 0;
  const Box box{.Title = "Cross-Section Auto-Update ...",
                .Text =
                    "Select YES for VEXA to automatically search for original sounding data "
                    "files\nand then update the current cross-section with new sounding data. ",
                .Icon = BoxIcon::Question,
                .Buttons = BoxButtons::YesNo,
                .WhenSilent = Answer::Yes};
  int added = 0;
  if (program.Current.Ask == nullptr || program.Current.Ask->Ask(box) == Answer::Yes) {
    const Column* latest = &view.Of.Columns.front();
    for (const Column& column : view.Of.Columns) {
      const ObservationTime& time = column.Sounding.Time;
      if (crosssection::HoursBetween(latest->Sounding.Time, time) > 0) latest = &column;
    }
    const SoundingRecord last = latest->Sounding;
    SectionWork work(program.Set, MountainsOf(program));
    Section found;
    Progress progress =
        program.Current.Ask != nullptr ? Progress(*program.Current.Ask) : Progress();
    work.Load(FilesAround(view.Of), {.From = last.Time}, {.Stations = &program.Stations}, progress,
              found);
    if (program.Current.Ask != nullptr) program.Current.Ask->Share(1);
    for (Column& column : found.Columns) {
      const SoundingRecord& sounding = column.Sounding;
      const bool isNewer = crosssection::HoursBetween(last.Time, sounding.Time) > 0;
      const bool isHere =
          crosssection::DistanceKm(last.LatSigned, last.LonSigned, sounding.LatSigned,
                                   sounding.LonSigned) < kSamePlaceKm;
      const bool isKnown = std::ranges::any_of(view.Of.Columns, [&](const Column& known) {
        return known.Sounding.Time == sounding.Time;
      });
      if (!isNewer || !isHere || isKnown) continue;
      column.Order = static_cast<int>(view.Of.Columns.size() + view.Aside.size()) + 1;
      view.Of.Columns.push_back(std::move(column));
      ++added;
    }
  }
  ArrangeSection(program);
  return added;
}

Changes TransferToSounding(Program& program, std::size_t column) {
  const SectionView& view = SectionViewOf(program);
  if (column >= view.Of.Columns.size()) return {};
  auto leave = program.Doc.LeaveUnaltered();
  if (!leave) {
    const Box box{.Title = "Cross-Section",
                  .Text = "The sounding in work has unsaved changes, which will be lost.",
                  .Buttons = BoxButtons::OkCancel,
                  .WhenSilent = Answer::Cancel};
    if (!Ask(program, box)) return {};
    leave = Document::GiveUpEdits();
  }
  program.Doc.Take(*leave, {.From = {.File = PathFromText(view.Of.Columns[column].Source)},
                            .Record = view.Of.Columns[column].Sounding});
  return {.Sounding = true, .View = true};
}

}  // namespace commands

}  // namespace vexa
