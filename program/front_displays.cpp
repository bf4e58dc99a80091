#include "program/front_displays.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <iterator>
#include <utility>

#include "core/files.h"
#include "core/numbers.h"
#include "display/shown_texts.h"
#include "display/weather.h"
#include "fronts/front_series.h"
#include "fronts/front_text.h"
#include "program/hodograph_commands.h"
#include "program/listed_soundings.h"

namespace vexa {
namespace {

FrontSettings& SettingsOf(Program& program) {
  return program.Settings.Hodograph.Front;
}

// Which sounding is in work, whatever is edited of it.
std::string SoundingKey(const Program& program) {
  return TextFromPath(program.Current.FilePath()) + '#' + Shortest(program.Doc.IndexInFile()) +
         program.Current.Record.StationTitle;
}

void Forget(Program& program) {
  program.Displays.Of<FrontState>().Zone.reset();
}

fronts::FrontSource FrontSourceOf(const Program& program, const fronts::FrontResults& results,
                                  const Options& set) {
  const HodographSettings& window = program.Settings.Hodograph;
  return {results, window.Front, set, window.Distance};
}

// ---- the layer analyzer

display::SheetBlock FrontBlock(const display::Shown& shown, const fronts::FrontResults& results) {
  const display::Texts texts(shown);
  display::SheetBlock block{.Heading = "Frontal zones"};
  const double ground = shown.Record.ElevM;
  for (const fronts::FrontZone& zone : results.Zones) {
    if (zone.Why != fronts::Missed::No) continue;
    const fronts::FrontLayer& whole = zone.Whole;
    const bool isFront = results.Found && results.Found->Zone.Whole.Base == whole.Base;
    std::string name = isFront          ? std::string(Text(results.Found->Kind))
                       : whole.IsWarm() ? "Warm zone"
                                        : "Cold zone";
    block.Rows.push_back({std::move(name),
                          texts.Span({.Press = whole.BasePress, .Height = ground + whole.Base},
                                     {.Press = whole.TopPress, .Height = ground + whole.Top}),
                          (whole.IsWarm() ? "+" : "") + Mask(whole.AdvectionCph, "##0.0") +
                              " \xC2\xB0"
                              "C/h"});
  }
  if (block.Rows.empty()) block.Rows.push_back({"none"});
  return block;
}

// ---- fronts in time

bool IsSameStation(const SoundingRecord& one, const SoundingRecord& other) {
  constexpr double kNear = 0.2;  // degrees: one station's positions differ that much among sources
  if (one.WmoNumber != 0 && one.WmoNumber == other.WmoNumber) return true;
  if (one.LatHemi.empty() || other.LatHemi.empty()) return false;
  return std::fabs(one.LatSigned - other.LatSigned) <= kNear &&
         std::fabs(one.LonSigned - other.LonSigned) <= kNear;
}

// Since the year 0, which only differences see.
double HoursOf(const ObservationTime& time) {
  const std::chrono::sys_days day = std::chrono::year(time.Year) / time.Month / time.Day;
  return 24.0 * static_cast<double>(day.time_since_epoch().count()) + time.Hour +
         time.Minute / 60.0;
}

std::string ShortTime(const ObservationTime& time) {
  constexpr std::string_view kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                          "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  const auto two = [](int number) { return (number < 10 ? "0" : "") + Shortest(number); };
  const auto month = static_cast<std::size_t>(std::clamp(time.Month, 1, 12) - 1);
  return two(time.Hour) + (time.Minute == 0 ? "" : two(time.Minute)) + "Z " + two(time.Day) + " " +
         std::string(kMonths[month]);
}

// One sounding for each time, this station's only.
std::vector<fronts::FrontMoment> FrontMoments(const Program& program) {
  const SoundingRecord& here = program.Current.Record;
  std::vector<fronts::FrontMoment> moments;
  const auto add = [&](const SoundingRecord& sounding, const fronts::FrontResults& results) {
    if (!sounding.Time.Known() || !IsSameStation(here, sounding)) return;
    const double hours = HoursOf(sounding.Time);
    const bool isKnown =
        std::ranges::any_of(moments, [hours](const auto& one) { return one.Hours == hours; });
    if (isKnown) return;
    moments.push_back({hours, ShortTime(sounding.Time), sounding.StationTitle, results.Found});
  };
  add(here, FrontsOf(program));
  for (const SharedSounding& other : SoundingsBeside(program)) {
    const SoundingRecord& sounding = other->Record();
    if (!IsSameStation(here, sounding)) continue;
    add(sounding, fronts::FindFronts(sounding, analysis::DeriveLevels(sounding, program.Set),
                                     program.Settings.Hodograph.Front));
  }
  double first = moments.empty() ? 0 : moments.front().Hours;
  for (const fronts::FrontMoment& moment : moments) first = std::min(first, moment.Hours);
  for (fronts::FrontMoment& moment : moments) moment.Hours -= first;
  return moments;
}

// ---- the controls

Changes PressAutomatic(Program& program, double) {
  return FrontsAutomatic(program);
}

double Control(const Program& program) {
  return static_cast<double>(program.Settings.Hodograph.Front.Control);
}
Changes SetControl(Program& program, double control) {
  return SetFrontControl(program, static_cast<FrontControl>(control));
}

double IsHeld(const Program& program) {
  return program.Settings.Hodograph.Front.Hold && FrontZoneInForce(program) ? 1 : 0;
}
Changes SetHeld(Program& program, double hold) {
  return HoldFront(program, hold != 0);
}

double IsImageMode(const Program& program) {
  return program.Displays.Of<FrontState>().ImageMode ? 1 : 0;
}
Changes SetImageMode(Program& program, double on) {
  program.Displays.Of<FrontState>().ImageMode = on != 0;
  return {.View = true};
}

constexpr auto kControlWords = Words(FrontControl{});

constexpr ControlRow kFrontControls[] = {
    {.Name = "cmdAutomatic", .Text = "AUTOMATIC", .Set = PressAutomatic},
    {.Name = "cboControl",
     .Kind = ControlKind::Choice,
     .Get = Control,
     .Set = SetControl,
     .Words = kControlWords},
    {.Name = "chkHold", .Text = "hold", .Kind = ControlKind::Switch, .Get = IsHeld, .Set = SetHeld},
    {.Name = "chkImageMode",
     .Text = "Image Mode",
     .Kind = ControlKind::Switch,
     .Get = IsImageMode,
     .Set = SetImageMode},
};

}  // namespace

std::optional<fronts::HeldZone> FrontZoneInForce(const Program& program) {
  const FrontState& state = program.Displays.Of<FrontState>();
  const bool holds = program.Settings.Hodograph.Front.Hold || state.Of == SoundingKey(program);
  return holds ? state.Zone : std::nullopt;
}

fronts::FrontResults FrontsOf(const Program& program) {
  return fronts::FindFronts(program.Current.Record, program.Results.Levels,
                            program.Settings.Hodograph.Front, FrontZoneInForce(program));
}

std::optional<double> FrontNormal(const Program& program) {
  const fronts::FrontResults results = FrontsOf(program);
  return results.Found ? std::optional(results.Found->Motion) : std::nullopt;
}

std::vector<diagram::FrontMark> FrontMarks(const Program& program, const Options& set) {
  std::vector<diagram::FrontMark> marks;
  if (!set.ShowFronts) return marks;
  const fronts::FrontResults results = FrontsOf(program);
  const double ground = program.Current.Record.ElevM;
  const auto add = [&](const fronts::FrontLayer& zone, bool isFront, std::string info) {
    marks.push_back({.Cold = !zone.IsWarm(),
                     .Height = ground + zone.Top,
                     .BaseHeight = ground + zone.Base,
                     .IsFront = isFront,
                     .Info = std::move(info)});
  };
  for (const fronts::FrontZone& zone : results.Zones) {
    const bool isFront = results.Found && results.Found->Zone.Whole.Base == zone.Whole.Base;
    if (isFront || zone.Why != fronts::Missed::No) continue;
    add(zone.Whole, false,
        "A weaker zone of " + std::string(zone.Whole.IsWarm() ? "warm" : "cold") +
            " advection than the front");
  }
  if (results.Found) {
    add(results.Found->Zone.Whole, true,
        std::string(Text(results.Found->Kind)) + ": " +
            Characterisation(FrontSourceOf(program, results, set))[1]);
  }
  return marks;
}

std::vector<diagram::AdvectionBar> AdvectionBars(const Program& program) {
  constexpr double kWeather = 12000;  // m above the station
  const SoundingRecord& sounding = program.Current.Record;
  // Layers that do not overlap, whatever the search for fronts uses.
  FrontSettings settings = program.Settings.Hodograph.Front;
  settings.Mode = ThermalWindMode::Fixed;
  const fronts::FrontResults results =
      fronts::FindFronts(sounding, program.Results.Levels, settings);
  std::vector<diagram::AdvectionBar> bars;
  for (const fronts::FrontLayer& layer : results.Layers) {
    if (layer.Top > kWeather) break;
    bars.push_back({layer.BasePress, layer.TopPress, layer.AdvectionCph});
  }
  return bars;
}

fronts::FrontPlot PlotFrontsOf(const Program& program, const Options& set, const Surface& on) {
  const fronts::FrontResults results = FrontsOf(program);
  const bool isInForce = FrontZoneInForce(program).has_value();
  const bool isHeld = isInForce && program.Settings.Hodograph.Front.Hold;
  return fronts::PlotFronts({.Winds = HodographOf(program, set),
                             .Fronts = results,
                             .IsHeld = isHeld,
                             .IsChosen = isInForce && !isHeld},
                            on);
}

Picture PlotFrontDisplay(const DisplayInput& from, const Surface& on) {
  return PlotFrontsOf(from.In, from.Set, on).Page;
}

std::vector<std::string> ListFronts(const Program& program) {
  const fronts::FrontResults results = FrontsOf(program);
  const fronts::FrontSource source = FrontSourceOf(program, results, program.Set);
  std::vector<std::string> lines;
  const auto add = [&lines](const std::vector<std::string>& part) {
    if (!lines.empty()) lines.emplace_back();
    lines.insert(lines.end(), part.begin(), part.end());
  };
  add(LayerTable(source));
  add(Characterisation(source));
  add(StatusBlock(source));
  add(ExplainFronts(source));
  return lines;
}

std::span<const ControlRow> FrontControls() {
  return kFrontControls;
}

Picture PlotLayers(const DisplayInput& from, const Surface& on) {
  const display::Shown shown{from.In.Current.Record, from.In.Results, from.Set, from.In.Severe};
  display::Sheet sheet = display::LayerSheet(shown);
  // Behind the inversions, with which fronts are compared.
  sheet.Blocks.insert(sheet.Blocks.begin() + 1, FrontBlock(shown, FrontsOf(from.In)));
  return display::DrawSheet(sheet, from.Set, on);
}

std::string_view NeedsFrontTimes(const Program& program) {
  const SoundingRecord& sounding = program.Current.Record;
  if (sounding.NumWindLevels() == 0) return "needs a sounding with winds";
  const bool hasOthers = program.Listed.Size() > 1 || !program.Others.empty();
  return hasOthers ? "" : "needs several soundings of one station";
}

Picture PlotFrontTimes(const DisplayInput& from, const Surface& on) {
  return fronts::PlotFrontSeries(FrontMoments(from.In), from.In.Current.Record.StationTitle,
                                 from.Set, on);
}

std::vector<std::string> ListFrontTimes(const Program& program) {
  return fronts::ListFrontSeries(FrontMoments(program), program.Set);
}

Changes ChooseFrontLayers(Program& program, std::size_t from, std::size_t to) {
  const std::vector<fronts::FrontLayer> layers = FrontsOf(program).Layers;
  if (std::max(from, to) >= layers.size()) return {};
  FrontState& state = program.Displays.Of<FrontState>();
  state.Zone = fronts::HeldZone{std::min(layers[from].Base, layers[to].Base),
                                std::max(layers[from].Top, layers[to].Top)};
  state.Of = SoundingKey(program);
  SettingsOf(program).Control = FrontControl::Manual;
  return {.View = true};
}

Changes FrontsAutomatic(Program& program) {
  SettingsOf(program) = FrontSettings{.Speed = SettingsOf(program).Speed};
  Forget(program);
  return {.View = true};
}

Changes SetFrontControl(Program& program, FrontControl control) {
  SettingsOf(program).Control = control;
  if (control == FrontControl::Automatic && !SettingsOf(program).Hold) Forget(program);
  return {.View = true};
}

Changes HoldFront(Program& program, bool hold) {
  FrontState& state = program.Displays.Of<FrontState>();
  if (hold) {
    const fronts::FrontResults results = FrontsOf(program);
    if (!results.Found) return {.View = true};
    state.Zone = fronts::HeldZone{results.Found->Zone.Whole.Base, results.Found->Zone.Whole.Top};
    state.Of = SoundingKey(program);
  } else if (SettingsOf(program).Control == FrontControl::Automatic) {
    Forget(program);
  }
  SettingsOf(program).Hold = hold;
  return {.View = true};
}

}  // namespace vexa
