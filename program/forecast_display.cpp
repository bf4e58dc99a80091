#include "program/forecast_display.h"

#include <algorithm>
#include <utility>

#include "core/error_report.h"
#include "core/files.h"
#include "core/numbers.h"
#include "core/user_file.h"
#include "forecast/listings.h"
#include "forecast/search.h"
#include "forecast/series_files.h"
#include "hodograph/hodograph_plot.h"
#include "ingest/sounding_files.h"
#include "program/hodograph_commands.h"
#include "program/shipped_map.h"
#include "program/view_commands.h"

namespace vexa {
namespace {

using forecast::ForecastMode;
using forecast::ForecastStep;
using forecast::SeriesEnd;
using forecast::SharedProfile;

Answer AskAbout(const Program& program, const Box& box) {
  return program.Current.Ask == nullptr ? box.WhenSilent : program.Current.Ask->Ask(box);
}

std::filesystem::path WorkFolder(const Program& program) {
  return program.Where.Root.empty() ? std::filesystem::path{}
                                    : program.Where.Root / PathFromText(forecast::kWorkFolder);
}

// The folder that was chosen, else that of the sounding, else the program's.
std::filesystem::path SearchFolder(const Program& program, const ForecastView& view) {
  if (!view.Set.SearchFolder.empty()) return PathFromSetting(view.Set.SearchFolder);
  const std::filesystem::path beside =
      view.Original ? view.Original->From().File.parent_path() : std::filesystem::path{};
  return beside.empty() ? program.Where.Data : beside;
}

std::filesystem::path SaveFolder(const Program& program, const ForecastView& view) {
  return view.Set.SaveFolder.empty() ? program.Where.Forecast
                                     : PathFromSetting(view.Set.SaveFolder);
}

// Whether the sounding in work is what the series has put there.
bool IsOwn(const Program& program, const ForecastView& view) {
  if (!view.Original) return false;
  const SoundingRecord& now = program.Current.Record;
  if (view.Shown == 0) return view.Original->Record() == now;
  const auto& steps = view.Series.Steps();
  return view.Shown <= steps.size() && steps[view.Shown - 1].Sounding == now;
}

void BeginAnew(Program& program, ForecastView& view) {
  const CurrentSounding& now = program.Current;
  const std::filesystem::path file =
      now.FileName.empty() ? std::filesystem::path{} : now.FilePath();
  view.Original = std::make_shared<const AnalysedSounding>(
      LoadedSounding{.From = {.File = file,
                              .Index = program.Doc.IndexInFile(),
                              .Stamp = program.Doc.OnDiskStamp()},
                     .Record = now.Record});
  const SharedProfile main = forecast::ProfileOf(now.Record, TextFromPath(file), program.Set);
  view.Series =
      forecast::ForecastSeries(forecast::Region{.Main = main, .RadiusKm = view.Set.RadiusKm});
  view.IsSearched = false;
  view.Shown = 0;
  view.SavedSeries.clear();
  view.Description.clear();
  view.Status.clear();
  view.Drawing = {};
}

forecast::Catalogue KeptCatalogue(const std::filesystem::path& folder) {
  const std::filesystem::path file = folder / PathFromText(forecast::Catalogue::kFileName);
  if (folder.empty() || !StampOf(file)) return {};
  const Outcome<std::string> text = ReadFile(file);
  return text ? forecast::Catalogue(text.Value()) : forecast::Catalogue();
}

void KeepSearch(Program& program, const forecast::Catalogue& catalogue,
                const forecast::Region& region) {
  const std::filesystem::path folder = WorkFolder(program);
  if (folder.empty()) return;
  std::optional<Fault> fault = SaveWorkFiles(folder, region);
  if (!fault) {
    fault = SaveFile(folder / PathFromText(forecast::Catalogue::kFileName), catalogue.Text(),
                     SystemFileOps(), Links::Replace);
  }
  if (fault) program.Notices.push_back("The search is not kept: " + fault->Detail);
}

// Saves the last hour beside those before it, and the series; the user decides about files that are
// there already.
void SaveStep(Program& program, ForecastView& view, FileOps& ops) {
  const std::filesystem::path folder = SaveFolder(program, view);
  const std::size_t last = view.Series.Steps().size() - 1;
  const auto files = FilesOf(view.Series, program.Set, last);
  // The time series grows with its hours; it is asked about where it is not this series' own.
  const std::filesystem::path csv = folder / PathFromText(files.back().Name);
  std::vector<forecast::SeriesFile> asked = files;
  if (view.SavedSeries == csv) asked.pop_back();
  const std::vector<std::string> there = Existing(folder, asked);
  if (!there.empty() && AskAbout(program, forecast::ExistsBox(there)) != Answer::Yes) return;
  if (const auto fault = SaveTogether(folder, files, ops)) {
    program.Doc.Report(*fault);
    return;
  }
  view.SavedSeries = csv;
}

Picture ForecastSentence(std::string_view text, const Surface& on, bool black) {
  Picture page(on.Width, on.Height, black ? Color{0, 0, 0} : Color{255, 255, 255});
  page.Add("sentence", Label{.At = {300, 600},
                             .Text = std::string(text),
                             .Size = LetterSize(Type::Value),
                             .Ink = black ? Color{235, 235, 235} : Color{20, 20, 20}});
  return page;
}

bool IsBlack(const Options& set) {
  return set.Screen == ScreenColor::Black;
}

}  // namespace

ForecastView& ForecastViewOf(Program& program) {
  ForecastView& view = program.Displays.Of<ForecastView>();
  if (std::exchange(view.HasSettings, true) || program.Where.Root.empty()) return view;
  std::vector<std::string> notes;
  const auto text = ReadUserFile(program.Where.Root / forecast::ForecastSettingsFile(), notes);
  if (text) view.Set = forecast::ReadForecastSettings(*text);
  return view;
}

void SaveForecastSettings(Program& program) {
  if (program.Where.Root.empty()) return;
  const auto fault = SaveUserFile(program.Where.Root / forecast::ForecastSettingsFile(),
                                  Write(ForecastViewOf(program).Set),
                                  [](std::string_view) { return std::string(); });
  if (fault) program.Notices.push_back("The forecast's settings are not kept: " + fault->Detail);
}

ForecastView& FollowForecast(Program& program) {
  ForecastView& view = ForecastViewOf(program);
  if (!IsOwn(program, view)) BeginAnew(program, view);
  return view;
}

bool IsForecastFrom(const Program& program, const SharedSounding& original) {
  const ForecastView& view = program.Displays.Of<ForecastView>();
  return view.Shown > 0 && view.Original == original && IsOwn(program, view);
}

Picture PlotForecastHodo(const DisplayInput& from, const Surface& on) {
  return hodograph::PlotHodograph(HodographOf(from.In, from.Set), on).Page;
}

map::AreaMap ForecastMapOf(const Program& program, const Options& set, const Surface& on,
                           const map::MapFrame* frame) {
  const ForecastView& view = program.Displays.Of<ForecastView>();
  const bool black = IsBlack(set);
  if (!view.Original || view.Original->Record().LatHemi.empty()) {
    return {.Page = ForecastSentence("The position of the sounding is not known.", on, black)};
  }
  forecast::MapDrawing drawing = view.Drawing;
  if (!view.IsSearched) drawing.Told = forecast::kSearchFirstText;
  return forecast::PlotForecastMap({.Of = view.Series.Around(),
                                    .Lines = ShippedMapLines(),
                                    .Set = set,
                                    .OnBlack = black,
                                    .Drawing = drawing},
                                   on, frame);
}

Picture PlotForecastMap(const DisplayInput& from, const Surface& on) {
  return ForecastMapOf(from.In, from.Set, on).Page;
}

std::vector<std::string> ListForecast(const Program& program) {
  const ForecastView& view = program.Displays.Of<ForecastView>();
  if (!view.Original) return {"No forecast has been made."};
  std::vector<std::string> lines = RegionListing(view.Series.Around());
  for (const ForecastStep& step : view.Series.Steps()) {
    if (&step == &view.Series.Steps().front()) lines.insert(lines.end(), {"", "Forecast:"});
    lines.push_back(forecast::StepText(step));
  }
  return lines;
}

std::string ForecastStatus(const ForecastView& view) {
  const auto& steps = view.Series.Steps();
  if (view.Shown == 0 || view.Shown > steps.size()) return view.Status;
  const ForecastStep& step = steps[view.Shown - 1];
  std::string text = Shortest(static_cast<int>(view.Shown)) + " hrs";
  if (step.Choice.RateKt > 0) {
    text = "Advection rate: " + Mask(step.Choice.RateKt, "##0.0") + " kts from " +
           Mask(step.Choice.WindFrom, "##0") + "   " + text;
  }
  return view.Status.empty() ? text : text + "   " + view.Status;
}

namespace commands {

bool SearchSoundings(Program& program) {
  ForecastView& view = FollowForecast(program);
  const auto pass = program.Gate.Enter();
  if (!pass) return false;
  Progress progress = program.Current.Ask != nullptr ? Progress(*program.Current.Ask) : Progress();
  const std::filesystem::path folder = WorkFolder(program);
  forecast::Catalogue catalogue = KeptCatalogue(folder);
  const SharedProfile main = view.Series.Around().Main;
  if (!progress.Begin("Search for soundings . . .")) return false;
  forecast::SearchResult found = SearchAround(
      main->Sounding, view.Set.RadiusKm, ingest::FilesBelow(SearchFolder(program, view)), catalogue,
      {.Stations = &program.Stations}, program.Set, progress);
  if (found.Stopped) {
    KeepSearch(program, catalogue, view.Series.Around());
    view.Status = "The search was stopped.";
    return false;
  }
  forecast::Region region = RegionAround(main, found.Found, view.Set.RadiusKm);
  KeepSearch(program, catalogue, region);
  view.Series.SetRegion(std::move(region));
  view.IsSearched = true;
  view.Drawing = {};
  view.Status = view.Series.Around().HasUpwind() ? "" : std::string(forecast::kNoUpwindText);
  return true;
}

Changes StepForecast(Program& program, FileOps& ops) {
  ForecastView& view = FollowForecast(program);
  const bool needsSearch = view.Set.Mode == ForecastMode::Multi && !view.IsSearched;
  if (needsSearch && !SearchSoundings(program)) return {};
  view.Status.clear();
  const SeriesEnd end = view.Series.Advance(view.Set, program.Set, view.Description);
  if (end != SeriesEnd::No) {
    const Box box = EndBox(end);
    view.Status = box.Text;
    AskAbout(program, box);
    return {};
  }
  if (view.Set.AutoSave) SaveStep(program, view, ops);
  return ShowForecastHour(program, view.Series.Steps().size());
}

Changes ShowForecastHour(Program& program, std::size_t hour) {
  ForecastView& view = FollowForecast(program);
  if (hour > view.Series.Steps().size()) return {};
  auto leave = program.Doc.LeaveUnaltered();
  if (!leave) {
    const Box box{.Title = "Forecast",
                  .Text = "The sounding in work has unsaved changes, which will be lost.",
                  .Buttons = BoxButtons::OkCancel,
                  .WhenSilent = Answer::Cancel};
    if (AskAbout(program, box) == Answer::Cancel) return {};
    leave = Document::GiveUpEdits();
  }
  view.Shown = hour;
  if (hour == 0) {
    program.Doc.Take(*leave, {.From = view.Original->From(), .Record = view.Original->Record()});
    ShowAlone(program);
    return {.Sounding = true, .View = true};
  }
  const ForecastStep& step = view.Series.Steps()[hour - 1];
  const std::filesystem::path file =
      SaveFolder(program, view) /
      PathFromText(forecast::ForecastFileName(view.Series.Around().Main->Source, step.Choice.Hour));
  program.Doc.Take(*leave,
                   {.From = {.File = file, .Stamp = StampOf(file)}, .Record = step.Sounding});
  program.Others = {view.Original};
  program.View.Mode = diagram::MultiMode::Compare;
  return {.Sounding = true, .View = true};
}

Changes RestartForecast(Program& program) {
  ForecastView& view = FollowForecast(program);
  const Changes changes = ShowForecastHour(program, 0);
  if (view.Shown != 0) return changes;
  view.Series = forecast::ForecastSeries(view.Series.Around());
  view.SavedSeries.clear();
  view.Status.clear();
  return changes;
}

void ChooseUpwindByHand(Program& program, std::span<const std::size_t> boxed, double from) {
  ForecastView& view = FollowForecast(program);
  forecast::Region region = view.Series.Around();
  forecast::ChooseUpwind(region, boxed, from);
  view.Series.SetRegion(std::move(region));
}

void RestoreUpwind(Program& program) {
  ForecastView& view = FollowForecast(program);
  forecast::Region region = view.Series.Around();
  forecast::ChooseUpwind(region);
  view.Series.SetRegion(std::move(region));
  view.Drawing = {};
}

}  // namespace commands

}  // namespace vexa
