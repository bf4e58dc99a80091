#include "program/view_commands.h"

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "analysis/index_table.h"
#include "analysis/interpolate.h"
#include "core/error_report.h"
#include "core/files.h"
#include "core/markers.h"
#include "core/numbers.h"
#include "core/shown_values.h"
#include "program/command_line.h"
#include "program/forecast_display.h"
#include "program/front_displays.h"
#include "program/listed_soundings.h"
#include "program/page_boxes.h"
#include "program/readout.h"
#include "program/reference_tables.h"
#include "program/settings_commands.h"
#include "program/sounding_loop.h"
#include "program/wave_view.h"

namespace vexa {
namespace {

using diagram::MultiMode;

constexpr std::string_view kLockedAlready =
    "Because you already specified a Data-Locked Cursor,\n"
    "you must first activate a screen REFRESH from the Main Menu,\n"
    "before another Cursor can be positioned on the diagram.";

// Loads a sounding beside the one in work; null when it cannot be read, which is told. Doubtful
// data are told too: alone a sounding is shown all the same, one of several is left out.
SharedSounding LoadOld(Program& program, const std::filesystem::path& path,
                       bool isOneOfSeveral = false, int index = 0) {
  CurrentSounding beside = program.Doc.Beside();
  beside.FileName = TextFromPath(path.filename());
  beside.DatasetMode = isOneOfSeveral;
  Outcome<SharedSounding> loaded = LoadAnalysed({.File = path, .Index = index}, PolicyOf(program));
  if (!loaded) {
    ErrorReport(beside, loaded.Error());
    return nullptr;
  }
  const QcFinding& finding = loaded.Value()->Finding();
  if (finding.Number == 0) return std::move(loaded.Value());
  ErrorReport(beside, {kFaultUnusable, "LoadOld", beside.FileName + ": " + FindingText(finding)});
  return isOneOfSeveral ? nullptr : std::move(loaded.Value());
}

FileQuestion QuestionFor(const Program& program, std::string_view title) {
  const std::filesystem::path& folder =
      program.Current.DataFolder.empty() ? program.Where.Data : program.Current.DataFolder;
  return {.Title = std::string(title), .Folder = TextFromPath(folder), .Filter = "All files (*)|*"};
}

Changes PlotOldSounding(Program& program, MultiMode mode, std::vector<SharedSounding> others) {
  if (others.empty()) return {};
  StopLoop(program);
  program.Others = std::move(others);
  program.View.Mode = mode;
  return {.View = true};
}

}  // namespace

std::optional<diagram::SoundingPlot> PlotShown(const Program& program, const Options& set,
                                               const Surface& on, Progress progress,
                                               std::optional<MultiMode> mode) {
  const ViewState& view = program.View;
  diagram::PlotInput input{.Sounding = program.Current.Record,
                           .Results = program.Results,
                           .Set = set,
                           .On = on,
                           .Mode = mode.value_or(view.Looping ? MultiMode::Loop : view.Mode),
                           .Layout = view.Layout,
                           .Boxes = PageBoxesOf(program, set),
                           .Configuration = ConfigurationCaption(program.Settings),
                           .Lines = view.Lines,
                           .Zoom = view.Zoom,
                           .Before = program.Plot ? &*program.Plot : nullptr};
  // In the mode of one sounding the others are not drawn.
  if (mode != MultiMode::Single) {
    const bool isCompared = input.Mode == MultiMode::Compare;
    for (const SharedSounding& other : program.Others) {
      input.Others.push_back({.Sounding = &other->Record(),
                              .Results = isCompared ? &other->Results(set) : nullptr,
                              .IsFaint = IsForecastFrom(program, other)});
    }
  }
  input.OthersScaling = view.Mode == MultiMode::Compare ? set.CompareScaling : set.OverlayScaling;
  if (view.ShowsReference && view.Reference) input.Reference = &view.Reference->Record();
  input.Spread = program.Usual.Shown();
  if (view.Looping) input.LoopHoldTime = program.Set.System.MovieTime;
  if (view.LoopScale) input.Scale = &*view.LoopScale;
  input.Fronts = FrontMarks(program, set);
  input.Advection = AdvectionBars(program);
  input.Layers = WaveMarks(program, set);
  return diagram::PlotSounding(input, progress);
}

const LayoutRow& LayoutInForce(const Program& program) {
  return program.View.Layout == nullptr ? PageLayouts().front() : *program.View.Layout;
}

Outcome<const LayoutRow*> LayoutNamed(const std::string& name) {
  if (const LayoutRow* layout = FindLayout(name)) return layout;
  std::vector<std::string_view> names;
  for (const LayoutRow& row : PageLayouts()) names.push_back(row.Name);
  return Fault{kFaultInvalidValue, "LayoutNamed",
               "there is no layout \"" + name + "\"" + DidYouMean(name, names) + "; there are " +
                   Joined(names)};
}

Changes ChooseLayout(Program& program, std::string_view name) {
  const LayoutRow* chosen = FindLayout(name);
  if (chosen == nullptr || chosen == &LayoutInForce(program)) return {};
  program.View.Layout = chosen;
  program.Settings.Window.Layout = name;
  return {.View = true};
}

Changes ZoomInSizer(Program& program, const Rect& chosen) {
  if (!program.Plot) return {};
  program.View.Zoom = diagram::ZoomRegion(program.Plot->Mapping, chosen);
  return {.View = true};
}

Changes ZoomBy(Program& program, Point about, double factor) {
  if (!program.Plot || factor <= 0) return {};
  const auto region = diagram::ZoomAbout(program.Plot->Mapping, about, factor);
  if (region == program.View.Zoom) return {};
  program.View.Zoom = region;
  return {.View = true};
}

Changes Pan(Program& program, double dx, double dy) {
  if (!program.Plot || !program.View.Zoom) return {};
  const Rect region = diagram::PanBy(program.Plot->Mapping, dx, dy);
  if (region == *program.View.Zoom) return {};
  program.View.Zoom = region;
  return {.View = true};
}

diagram::CursorState CursorShown(const Program& program) {
  diagram::CursorState cursor{.At = program.View.Cursor.At,
                              .Level = program.Doc.LockedLevel(),
                              .Choosing = program.View.Cursor.Choosing};
  if (cursor.Level) cursor.Text = CursorDataLabels(program, *cursor.Level);
  return cursor;
}

void CursorSetup(Program& program, Point at) {
  if (!program.Plot || !program.Plot->Mapping.Frame().Contains(at)) return;
  if (program.Doc.LockedLevel()) {
    if (program.Current.Ask == nullptr) return;
    program.Current.Ask->Ask(Box{.Title = "VEXA", .Text = std::string(kLockedAlready)});
    return;
  }
  if (program.Settings.Window.Cursor == CursorMode::Free) {
    program.View.Cursor.At = at;
    return;
  }
  RemoveCursor(program);
  const auto level = diagram::NearestLevel(program.Plot->Mapping, program.Current.Record, at);
  if (level) program.Doc.Lock(*level);
}

void RemoveCursor(Program& program) {
  program.View.Cursor = {};
  program.Doc.Unlock();
}

bool StepCursor(Program& program, int step) {
  const std::optional<int> level = program.Doc.LockedLevel();
  if (level) program.Doc.Lock(*level + step);
  return level.has_value();
}

std::string SwitchCursor(Program& program) {
  CursorMode& mode = program.Settings.Window.Cursor;
  mode = mode == CursorMode::Free ? CursorMode::Locked : CursorMode::Free;
  RemoveCursor(program);
  return mode == CursorMode::Free ? "Mouse Cursor" : "Data-Locked Cursor";
}

std::string CursorDataLabels(const Program& program, int level) {
  const SoundingRecord& record = program.Current.Record;
  if (level < 1 || level > record.NumTempLevels()) return {};
  const Options& set = program.Set;
  std::string text = "#" + Shortest(level) + "  " + Mask(record.Press(level), "###0.0") + " " +
                     std::string(analysis::PressureWord(set.Pressure));
  if (level > program.Results.Levels.Count()) return text;
  const double height = program.Results.Levels.Height(level);
  if (HasHeight(height)) {
    const double shown = set.Heights == HeightMode::Agl ? height - record.ElevM : height;
    text += "  " + LengthText(shown, set.GpmUnits) + (set.Heights == HeightMode::Agl ? " AGL" : "");
  }
  text += "  " + TempsText(record.Temp(level), record.Dewpt(level), set.TempGridUnits);
  const analysis::WindSample wind = analysis::WindAtHeight(record, height);
  if (wind.Ok()) text += "  Wind:" + WindText(wind.Value, set.Speed);
  return text;
}

namespace commands {

Changes DrawAgain(Program& program) {
  RemoveCursor(program);
  return {.View = true};
}

Changes ShowAlone(Program& program) {
  const bool looped = StopLoop(program).Any();
  if (program.View.Mode == MultiMode::Single && program.Others.empty() && !looped) return {};
  program.View.Mode = MultiMode::Single;
  program.Others.clear();
  return {.View = true};
}

Changes ZoomOutSizer(Program& program) {
  if (!program.View.Zoom) return {};
  program.View.Zoom.reset();
  return {.View = true};
}

Changes CompareAnother(Program& program) {
  if (program.View.Mode == MultiMode::Compare) return ShowAlone(program);
  const auto name = program.Current.Ask->ChooseFile(QuestionFor(program, "Sounding Comparison"));
  if (!name) return {};
  std::vector<SharedSounding> others;
  if (SharedSounding old = LoadOld(program, PathFromText(*name))) others.push_back(std::move(old));
  return PlotOldSounding(program, MultiMode::Compare, std::move(others));
}

Changes OverlaySeveral(Program& program) {
  if (program.View.Mode == MultiMode::Overlay) return ShowAlone(program);
  std::vector<SoundingSet::Member> chosen;
  for (const std::string& name :
       program.Current.Ask->ChooseFiles(QuestionFor(program, "Sounding Overlay"))) {
    chosen.push_back({.File = PathFromText(name)});
  }
  return OverlayMembers(program, chosen);
}

Changes OverlayMembers(Program& program, const std::vector<SoundingSet::Member>& soundings) {
  std::vector<SharedSounding> others;
  Progress progress(*program.Current.Ask);
  for (std::size_t i = 0; i < soundings.size(); ++i) {
    const std::string step =
        Shortest(static_cast<int>(i) + 1) + " of " + Shortest(static_cast<int>(soundings.size()));
    const double done = static_cast<double>(i) / static_cast<double>(soundings.size());
    if (!progress.Begin("Loading sounding " + step + " . . .", done)) return {};
    const SoundingSet::Member& one = soundings[i];
    if (SharedSounding old = LoadOld(program, one.File, true, one.Index)) {
      others.push_back(std::move(old));
    }
  }
  return PlotOldSounding(program, MultiMode::Overlay, std::move(others));
}

Changes ToggleIsa(Program& program) {
  program.Set.IcaoLine = !program.Set.IcaoLine;
  return {.View = true};
}

Changes ToggleReference(Program& program) {
  ViewState& view = program.View;
  if (!view.ShowsReference && !view.Reference) {
    std::filesystem::path path = program.Where.Reference / kReferenceSounding;
    if (!IsThere(path)) {
      const auto name = program.Current.Ask->ChooseFile(QuestionFor(program, "Reference Sounding"));
      if (!name) return {};
      path = PathFromText(*name);
    }
    view.Reference = LoadOld(program, path);
    if (!view.Reference) return {};
  }
  view.ShowsReference = !view.ShowsReference;
  return {.View = true};
}

}  // namespace commands
}  // namespace vexa
