#include <optional>
#include <string>
#include <vector>

#include "analysis/level_profile.h"
#include "cli/answers.h"
#include "cli/commands.h"
#include "cli/inputs.h"
#include "cli/loaded_program.h"
#include "cli/settings.h"
#include "core/numbers.h"
#include "fronts/front_text.h"
#include "report/front_json.h"

namespace vexa::cli {
namespace {

using fronts::FrontResults;
using fronts::FrontSource;

constexpr std::string_view kModes[] = {"Fixed", "Sliding", "Levels"};
constexpr std::string_view kAutomatic = "automatic";

constexpr ArgumentRow kFrontsOptions[] = {
    {"--interval",
     "",
     "M",
     "depth of the layers whose winds are compared, 100 to 3000 m",
     {},
     100,
     3000},
    {"--mode", "", "MODE", "how the layers follow each other", kModes},
    {"--slope", "", "N", "frontal slope 1/N, 20 to 500, or automatic: by the kind of front"},
    {"--gradient", "", "G", "least gradient of a front, 0.005 to 0.5 C/nm"},
    {"--angle",
     "",
     "A",
     "most by which the thermal winds of a front differ, 5 to 90 degrees",
     {},
     5,
     90},
    {"--lower", "", "M", "lower frontal limit, m above the station", {}, 0, 3000},
    {"--advection", "", "A", "least advection of a front, warm or cold, 0 to 5 C/h"},
    kFormatOption,
    {"--explain", "", "", "tell which layers were candidates and how the front came about"},
    kRootOption,
    kSoundingOption,
    kSetOption,
};

std::optional<double> NumberWithin(const std::string& text, double least, double most) {
  const std::optional<double> number = ParseNumber(text);
  if (!number || *number < least || *number > most) return std::nullopt;
  return number;
}

// The settings of the hodograph window, changed by the words of the command line.
Outcome<FrontSettings> SettingsOf(const Arguments& arguments, FrontSettings settings) {
  settings.Hold = false;
  if (const auto interval = arguments.Whole("--interval")) settings.IntervalM = *interval;
  if (const auto angle = arguments.Whole("--angle")) settings.AngularThreshold = *angle;
  if (const auto lower = arguments.Whole("--lower")) settings.LowerLimitM = *lower;
  if (const auto mode = arguments.Value("--mode")) {
    for (std::size_t i = 0; i < std::size(kModes); ++i) {
      if (kModes[i] == *mode) settings.Mode = static_cast<ThermalWindMode>(i);
    }
  }
  if (const auto gradient = arguments.Value("--gradient")) {
    const auto number = NumberWithin(*gradient, 0.005, 0.5);
    if (!number) return Wrong("fronts", "--gradient takes a number from 0.005 to 0.5");
    settings.GradientThreshold = *number;
  }
  if (const auto advection = arguments.Value("--advection")) {
    const auto number = NumberWithin(*advection, 0, 5);
    if (!number) return Wrong("fronts", "--advection takes a number from 0 to 5");
    settings.LeastAdvection = *number;
  }
  if (const auto slope = arguments.Value("--slope")) {
    settings.Control = *slope == kAutomatic ? FrontControl::Automatic : FrontControl::Manual;
    const auto number = NumberWithin(*slope, 20, 500);
    if (!number && *slope != kAutomatic) {
      return Wrong("fronts", "--slope takes a number from 20 to 500 or automatic");
    }
    settings.SlopeN = number.value_or(settings.SlopeN);
  }
  return settings;
}

constexpr std::string_view kFrontsHeader =
    "file,station,character,zone base (m above station),zone top (m above station),"
    "gradient (C/nm),advection (C/h),speed (kt),towards (deg),distance (km),"
    "vertical motion (m/h)";

std::string CsvRow(const std::string& file, const SoundingRecord& sounding,
                   const FrontResults& results) {
  std::string row = CsvField(file) + "," + CsvField(sounding.StationTitle);
  if (!results.Found) return row + ",none,,,,,,,,\n";
  const fronts::Front& front = *results.Found;
  const fronts::FrontLayer& zone = front.Zone.Whole;
  row += "," + std::string(Text(front.Kind));
  const auto cell = [&row](double value, int decimals) {
    row += "," + Shortest(Rounded(value, decimals));
  };
  cell(zone.Base, 1);
  cell(zone.Top, 1);
  cell(zone.Thermal.Gradient, 4);
  cell(zone.AdvectionCph, 3);
  cell(front.Speed, 2);
  cell(front.Motion, 1);
  cell(front.DistanceKm, 1);
  if (front.Lift) {
    cell(*front.Lift, 1);
  } else {
    row += ",";
  }
  return row + "\n";
}

std::string TextOf(const FrontSource& source) {
  std::string text = Lines(LayerTable(source)) + "\n" + Lines(Characterisation(source));
  if (!source.Fronts.WhyNone.empty()) text += source.Fronts.WhyNone + "\n";
  return text + "\n" + Lines(StatusBlock(source));
}

int RunFronts(const Arguments& arguments, Console& console) {
  const Outcome<CommandSetup> setup = SetupOf(arguments, console);
  if (!setup) return UsageError(console, kFrontsCommand, setup.Error().Detail);
  const Options& options = setup.Value().Settings.Set;
  const HodographSettings& hodograph = setup.Value().Settings.Hodograph;
  const Outcome<FrontSettings> settings = SettingsOf(arguments, hodograph.Front);
  if (!settings) return UsageError(console, kFrontsCommand, settings.Error().Detail);
  Answers answers(arguments, kFrontsHeader, console);
  Inputs inputs(console, setup.Value().Stations, setup.Value().Index);
  for (const std::string& file : arguments.Files) {
    const std::optional<LoadedSounding> loaded = inputs.Load(file);
    if (!loaded) continue;
    const SoundingRecord& sounding = loaded->Record;
    const FrontResults results =
        fronts::FindFronts(sounding, analysis::DeriveLevels(sounding, options), settings.Value());
    const FrontSource source{results, settings.Value(), options, hodograph.Distance};
    answers.Add({.Text =
                     [&] {
                       return sounding.StationTitle + "\n" +
                              (arguments.Has("--explain") ? Lines(ExplainFronts(source))
                                                          : TextOf(source));
                     },
                 .Json =
                     [&] {
                       return report::JsonText(
                           report::FoundJson(file, sounding.StationTitle, loaded->Finding,
                                             report::FrontsJson(results, true)));
                     },
                 .Csv = [&] { return CsvRow(file, sounding, results); }});
  }
  answers.End();
  return inputs.ExitCode();
}

}  // namespace

const Command kFrontsCommand = {
    {"fronts", "FILE-OR-FOLDER... [options]",
     "Prints the front that the winds of each sounding show.", kFrontsOptions},
    RunFronts,
    true};

}  // namespace vexa::cli
