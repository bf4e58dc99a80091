#include <optional>
#include <string>
#include <vector>

#include "analysis/turbulence.h"
#include "cli/answers.h"
#include "cli/commands.h"
#include "cli/inputs.h"
#include "cli/loaded_program.h"
#include "core/files.h"
#include "core/folders.h"
#include "core/numbers.h"
#include "core/platform.h"
#include "mountainwave/wave_listing.h"
#include "report/wave_json.h"

namespace vexa::cli {
namespace {

using mountainwave::MountainEntry;
using mountainwave::Site;
using mountainwave::Wave;
using mountainwave::WaveOptions;
using mountainwave::WaveResults;

constexpr std::string_view kUnits[] = {"english", "metric"};
constexpr std::string_view kDefaultMountain = "default";

constexpr ArgumentRow kWavesOptions[] = {
    {"--mountain", "-m", "H,B,AXIS",
     "crest above the sea, half-width, axis in degrees, 0 for any; or default, the mountain of the "
     "strongest wave"},
    {"--second", "", "H,B,AXIS,DISTANCE",
     "a second mountain and how far behind the first it stands"},
    {"--decay", "", "P,N", "lets waves decay by P % up to wavelength N"},
    {"--units", "", "UNITS",
     "english for ft, nm and fpm or metric for m, km and m/s; by GPM units without it", kUnits},
    kFormatOption,
    {"--explain", "", "", "tell how each wave came about, and why there is none elsewhere"},
    kRootOption,
    kSoundingOption,
    kSetOption,
};

// "a,b,c" as so many numbers.
std::optional<std::vector<double>> NumbersOf(const std::string& text, std::size_t count) {
  std::vector<double> numbers;
  for (std::size_t at = 0; at <= text.size();) {
    const std::size_t comma = std::min(text.find(',', at), text.size());
    const std::optional<double> number = ParseNumber(std::string_view(text).substr(at, comma - at));
    if (!number) return std::nullopt;
    numbers.push_back(*number);
    at = comma + 1;
  }
  if (numbers.size() != count) return std::nullopt;
  return numbers;
}

/// What the words of the command line ask for.
struct AskedWaves {
  WaveOptions Set{};
  bool TakesDefault = false;
  Site Given{};  // by the command line; else by station
};

Outcome<Site> GivenMountains(const Arguments& arguments, const mountainwave::WaveUnits& units) {
  const auto first = arguments.Value("--mountain");
  const auto second = arguments.Value("--second");
  if (!first || *first == kDefaultMountain) {
    if (second) return Wrong("waves", "--second needs a --mountain H,B,AXIS");
    return Site{};
  }
  const auto numbers = NumbersOf(*first, 3);
  if (!numbers) return Wrong("waves", "--mountain takes three numbers H,B,AXIS or default");
  MountainEntry entry{.Height = (*numbers)[0], .HalfWidth = (*numbers)[1], .Axis = (*numbers)[2]};
  if (second) {
    const auto more = NumbersOf(*second, 4);
    if (!more) return Wrong("waves", "--second takes four numbers H,B,AXIS,DISTANCE");
    entry.HasSecond = true;
    entry.Height2 = (*more)[0];
    entry.HalfWidth2 = (*more)[1];
    entry.Axis2 = (*more)[2];
    entry.Distance = (*more)[3];
  }
  if (const std::string_view name = OutOfRange(entry, units); !name.empty()) {
    return Wrong("waves", std::string(name) + "  " + std::string(mountainwave::kOutOfRange));
  }
  return Site{FromEntry(entry, units)};
}

Outcome<AskedWaves> AskedWavesBy(const Arguments& arguments, const CommandSetup& setup) {
  const Options& options = setup.Settings.Set;
  AskedWaves asked;
  const std::string units = arguments.Value("--units").value_or(
      options.GpmUnits == LengthUnits::Feet ? "english" : "metric");
  asked.Set.Units = units == "english" ? mountainwave::kEnglishUnits : mountainwave::kMetricUnits;
  if (const auto decay = arguments.Value("--decay")) {
    const auto numbers = NumbersOf(*decay, 2);
    const bool isGood = numbers && (*numbers)[0] >= 0 && (*numbers)[0] <= 100 &&
                        (*numbers)[1] >= 0.1 && (*numbers)[1] <= 100;
    if (!isGood)
      return Wrong("waves", "--decay takes a percentage and the number of a wavelength, 20,1");
    asked.Set.DecayOn = true;
    asked.Set.DecayPercent = (*numbers)[0];
    asked.Set.DecayWavelength = (*numbers)[1];
  }
  const Outcome<Site> given = GivenMountains(arguments, asked.Set.Units);
  if (!given) return given.Error();
  asked.Given = given.Value();
  asked.TakesDefault = arguments.Value("--mountain") == kDefaultMountain;
  return asked;
}

Site SiteFor(const SoundingRecord& sounding, const AskedWaves& asked, StationMountains& known) {
  if (asked.TakesDefault) return std::nullopt;
  return asked.Given ? asked.Given : known.Of(sounding);
}

constexpr std::string_view kWavesHeader =
    "file,station,kind,mountain,wavelength (km),amplitude (m),maximum vertical velocity (m/s),"
    "turbulence,interface pressure (hPa),interface height above station (m)";

std::string CsvRows(const ReportedSounding& sounding, const WaveResults& waves) {
  std::string rows;
  for (const Wave* wave : waves.All()) {
    const bool isFirst = wave->Kind == mountainwave::WaveKind::Predominant;
    const bool isHarmonic = wave->Kind == mountainwave::WaveKind::Harmonic;
    rows += CsvField(sounding.File) + "," + CsvField(sounding.Record.StationTitle) + "," +
            (isFirst      ? "predominant"
             : isHarmonic ? "harmonic"
                          : "subordinate") +
            "," + Shortest(wave->Mountain) + "," + Shortest(Rounded(wave->Of.LengthKm, 3)) + "," +
            Shortest(Rounded(wave->Amplitude, 1)) + "," + Shortest(Rounded(wave->MaxVelocity, 3)) +
            "," + std::string(analysis::WaveTurbulence(wave->MaxVelocity).Long) + "," +
            Shortest(Rounded(wave->At.Press, 2)) + "," + Shortest(Rounded(wave->At.Height, 1)) +
            "\n";
  }
  return rows;
}

Answer AnswerOf(const ReportedSounding& sounding, const mountainwave::WaveSource& source,
                bool explains) {
  return {
      .Text = [&,
               explains] { return Lines(explains ? ExplainWaves(source) : WaveListing(source)); },
      .Json =
          [&] {
            return report::JsonText(
                report::FoundJson(sounding.File, sounding.Record.StationTitle, sounding.Finding,
                                  report::WavesJson(source.Waves, source.Mountains, true)));
          },
      .Csv = [&] { return CsvRows(sounding, source.Waves); }};
}

bool IsBelowStation(const Site& given, const SoundingRecord& sounding) {
  return given &&
         (mountainwave::IsBelowStation(given->First.HeightFt, sounding) ||
          (given->HasSecond() && mountainwave::IsBelowStation(given->Second.HeightFt, sounding)));
}

int RunWaves(const Arguments& arguments, Console& console) {
  const Outcome<CommandSetup> setup = SetupOf(arguments, console);
  if (!setup) return UsageError(console, kWavesCommand, setup.Error().Detail);
  const Options& options = setup.Value().Settings.Set;
  const Outcome<AskedWaves> asked = AskedWavesBy(arguments, setup.Value());
  if (!asked) return UsageError(console, kWavesCommand, asked.Error().Detail);
  Inputs inputs(console, setup.Value().Stations, setup.Value().Index);
  Answers answers(arguments, kWavesHeader, console);
  StationMountains known(setup.Value().MountainFile, console);
  for (const std::string& file : arguments.Files) {
    std::optional<LoadedSounding> loaded = inputs.Load(file);
    if (!loaded) continue;
    const AnalysedSounding sounding(*std::move(loaded));
    const SoundingRecord& record = sounding.Record();
    if (IsBelowStation(asked.Value().Given, record)) {
      inputs.Fail(file, "Mountain height must be greater than the sounding station elevation.");
      continue;
    }
    const Site site = SiteFor(record, asked.Value(), known);
    const ReportedSounding told = report::ReportOf(sounding, file, options);
    const WaveResults waves = mountainwave::ComputeWaves(record, told.Results.Levels, site);
    answers.Add(
        AnswerOf(told, {record, site, waves, asked.Value().Set}, arguments.Has("--explain")));
  }
  answers.End();
  return inputs.ExitCode();
}

}  // namespace

const Command kWavesCommand = {{"waves", "FILE-OR-FOLDER... [options]",
                                "Prints the mountain waves of each sounding.", kWavesOptions},
                               RunWaves,
                               true};

}  // namespace vexa::cli
