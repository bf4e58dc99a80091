#include <algorithm>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "cli/answers.h"
#include "cli/commands.h"
#include "cli/inputs.h"
#include "cli/loaded_program.h"
#include "core/data_checks.h"
#include "core/files.h"
#include "core/numbers.h"
#include "forecast/listings.h"
#include "forecast/search.h"
#include "forecast/series_files.h"
#include "forecast/verification.h"
#include "ingest/sounding_files.h"
#include "report/forecast_json.h"
#include "sounding/sounding_walk.h"

namespace vexa::cli {
namespace {

using forecast::ForecastMode;
using forecast::ForecastSeries;
using forecast::ForecastSettings;
using forecast::ForecastStep;
using forecast::SeriesEnd;
using forecast::SharedProfile;
using forecast::Spread;

constexpr auto kForecastModes = Words(ForecastMode{});
constexpr auto kSpreads = Words(Spread{});

constexpr ArgumentRow kForecastOptions[] = {
    {"--among", "-a", "FOLDER",
     "where soundings around the station are looked for; may be repeated"},
    {"--hours", "", "N", "how far ahead, 6 without it", {}, 1, forecast::kMostHours},
    {"--output", "-o", "FOLDER", "where the native files of the hours and the time series go"},
    {"--replace", "", "", "replace files that are there already"},
    {"--mode", "", "MODE", "Single, by the station's own winds, or Multi, without it",
     kForecastModes},
    {"--main", "", "M", "depth of the main layer, m above ground; 0: off"},
    {"--boundary", "", "M", "depth of the boundary layer, m above ground; 0: off"},
    {"--radius", "", "KM", "in which soundings are near, 600 without it"},
    {"--percentage", "", "P", "of the layer's wind, 100 without it"},
    {"--surface", "", "C", "change of the surface temperature, degrees C per hour"},
    {"--spread", "", "DEPTH", "how far up it spreads, Medium without it", kSpreads},
    {"--upwind", "", "N,...", "soundings upwind by their number in the list, with --from"},
    {"--from", "", "DEG", "direction that the air comes from, with --upwind", {}, 1, 360},
    {"--verify", "", "",
     "tell how good forecasts between the soundings of the files and folders were"},
    kFormatOption,
    kRootOption,
    kSoundingOption,
    kSetOption,
};

Fault ForecastFault(std::string detail) {
  return {kFaultInvalidValue, "forecast", std::move(detail)};
}

template <class E, std::size_t kCount>
void TakeForecastWord(const Arguments& arguments, std::string_view name,
                      const std::array<std::string_view, kCount>& words, E& into) {
  const auto given = arguments.Value(name);
  if (given) into = static_cast<E>(std::ranges::find(words, *given) - words.begin());
}

// What the words of the command line ask for.
struct AskedForecast {
  ForecastSettings Set{};
  int Hours = 6;
  std::vector<std::size_t> Upwind{};  // by hand, from 0; none: automatic
  double From = 0;
};

template <class Value>
std::optional<Fault> EnterOption(const Arguments& arguments, std::string_view name,
                                 std::optional<Box> (*take)(std::string_view, Value&),
                                 Value& into) {
  const auto text = arguments.Value(name);
  if (!text) return std::nullopt;
  const std::optional<Box> box = take(*text, into);
  if (!box) return std::nullopt;
  return ForecastFault(std::string(name) + " " + *text + ": " + box->Text);
}

std::optional<Fault> TakeUpwindNumbers(const Arguments& arguments, AskedForecast& asked) {
  const auto numbers = arguments.Value("--upwind");
  const auto from = arguments.Whole("--from");
  if (numbers.has_value() != from.has_value()) {
    return ForecastFault("--upwind and --from go together");
  }
  if (!numbers) return std::nullopt;
  asked.From = *from;
  for (std::size_t at = 0; at <= numbers->size();) {
    const std::size_t comma = std::min(numbers->find(',', at), numbers->size());
    const auto number = ParseWhole(std::string_view(*numbers).substr(at, comma - at));
    if (!number || *number < 1) return ForecastFault("--upwind takes numbers of the list, 1,4");
    asked.Upwind.push_back(static_cast<std::size_t>(*number) - 1);
    at = comma + 1;
  }
  return std::nullopt;
}

Outcome<AskedForecast> AskedOfForecast(const Arguments& arguments) {
  AskedForecast asked;
  ForecastSettings& set = asked.Set;
  TakeForecastWord(arguments, "--mode", kForecastModes, set.Mode);
  TakeForecastWord(arguments, "--spread", kSpreads, set.SurfaceSpread);
  if (const auto fault = EnterOption(arguments, "--main", forecast::EnterDepth, set.MainDepth)) {
    return *fault;
  }
  if (const auto fault =
          EnterOption(arguments, "--boundary", forecast::EnterDepth, set.BoundaryDepth)) {
    return *fault;
  }
  if (const auto fault = EnterOption(arguments, "--radius", forecast::EnterRadius, set.RadiusKm)) {
    return *fault;
  }
  if (const auto fault =
          EnterOption(arguments, "--percentage", forecast::EnterPercentage, set.Percentage)) {
    return *fault;
  }
  if (const auto fault =
          EnterOption(arguments, "--surface", forecast::EnterSurfaceChange, set.SurfaceChange)) {
    return *fault;
  }
  if (const auto fault = TakeUpwindNumbers(arguments, asked)) return *fault;
  asked.Hours = arguments.Whole("--hours").value_or(asked.Hours);
  return asked;
}

class ForecastRun {
 public:
  ForecastRun(const Arguments& arguments, const AskedForecast& asked, const CommandSetup& setup,
              Console& console)
      : arguments_(arguments),
        asked_(asked),
        setup_(setup),
        console_(console),
        inputs_(console, setup.Stations, setup.Index) {}

  int Run() {
    arguments_.Has("--verify") ? Verify() : Forecast();
    return inputs_.ExitCode();
  }

 private:
  const AnalysisSettings& Analysis() const { return setup_.Settings.Set; }
  LoadPolicy Policy() const { return {.Stations = &setup_.Stations}; }

  std::vector<std::filesystem::path> FilesToSearch() const {
    std::vector<std::filesystem::path> files;
    for (const std::string& folder : arguments_.Values("--among")) {
      const auto below = ingest::FilesBelow(PathFromText(folder));
      files.insert(files.end(), below.begin(), below.end());
    }
    return files;
  }

  std::filesystem::path WorkFolder() const {
    return setup_.Root.empty() ? std::filesystem::path()
                               : setup_.Root / PathFromText(forecast::kWorkFolder);
  }

  // The soundings around the main one. With a program folder its catalogue is used and kept, and
  // the working files are written.
  forecast::Region Search(const SharedProfile& main) {
    const std::filesystem::path folder = WorkFolder();
    const std::filesystem::path file = folder / PathFromText(forecast::Catalogue::kFileName);
    forecast::Catalogue catalogue;
    if (!folder.empty() && StampOf(file)) {
      if (const auto text = ReadFile(file)) catalogue = forecast::Catalogue(text.Value());
    }
    forecast::SearchResult result = SearchAround(
        main->Sounding, asked_.Set.RadiusKm, FilesToSearch(), catalogue, Policy(), Analysis(), {});
    for (const auto& [name, fault] : result.Failed) inputs_.Fail(name, fault);
    forecast::Region region = RegionAround(main, result.Found, asked_.Set.RadiusKm);
    if (!asked_.Upwind.empty()) ChooseUpwind(region, asked_.Upwind, asked_.From);
    if (folder.empty()) return region;
    if (const auto fault = SaveWorkFiles(folder, region)) inputs_.Fail("forecast", *fault);
    if (const auto fault = SaveFile(file, catalogue.Text())) inputs_.Fail("forecast", *fault);
    return region;
  }

  void Forecast() {
    const std::string& file = arguments_.Files.front();
    std::optional<LoadedSounding> loaded = inputs_.Load(file);
    if (!loaded) return;
    const SharedProfile main = forecast::ProfileOf(std::move(loaded->Record), file, Analysis());
    if (asked_.Set.Mode == ForecastMode::Multi && main->Sounding.LatHemi.empty()) {
      return inputs_.Fail(file, "the sounding has no position, so nothing is around it");
    }
    ForecastSeries series(asked_.Set.Mode == ForecastMode::Multi ? Search(main)
                                                                 : forecast::Region{.Main = main});
    for (const std::size_t number : asked_.Upwind) {
      if (number < series.Around().Near.size()) continue;
      return inputs_.Fail("forecast", "there is no sounding #" +
                                          Shortest(static_cast<int>(number) + 1) + " nearby");
    }
    SeriesEnd end = SeriesEnd::No;
    for (int i = 0; i < asked_.Hours && end == SeriesEnd::No; ++i) {
      end = series.Advance(asked_.Set, Analysis());
    }
    if (end != SeriesEnd::No) {
      const Box box = EndBox(end);
      inputs_.Fail("forecast", box.Title + ": " + box.Text);
    }
    Tell(series);
    if (!series.Steps().empty()) Save(series);
  }

  void Tell(const ForecastSeries& series) {
    const std::string format = arguments_.Value("--format").value_or("text");
    if (format == "json") {
      console_.Out(report::JsonText(report::ForecastJson(series)) + "\n");
    } else if (format == "csv") {
      console_.Out(SeriesCsv(series, Analysis()));
    } else {
      std::string text;
      if (asked_.Set.Mode == ForecastMode::Multi)
        text = Lines(RegionListing(series.Around())) + "\n";
      for (const ForecastStep& step : series.Steps()) {
        text += StepText(step) + "\n";
      }
      console_.Out(text);
    }
  }

  void Save(const ForecastSeries& series) {
    const auto output = arguments_.Value("--output");
    if (!output) return;
    const std::filesystem::path folder = PathFromText(*output);
    std::vector<forecast::SeriesFile> files = FilesOf(series, Analysis());
    files.push_back({TextFromPath(PathFromText(files.back().Name).replace_extension(".JSON")),
                     report::JsonText(report::ForecastJson(series)) + "\n"});
    const std::vector<std::string> there = Existing(folder, files);
    if (!there.empty() && !arguments_.Has("--replace")) {
      return inputs_.Fail(TextFromPath(folder / PathFromText(there.front())),
                          "File already exists; --replace replaces it");
    }
    if (const auto fault = SaveTogether(folder, files)) inputs_.Fail(*output, *fault);
  }

  void Verify() {
    std::vector<SharedProfile> all;
    for (const std::string& given : arguments_.Files) {
      for (const std::filesystem::path& file : ingest::FilesBelow(PathFromText(given))) {
        const std::string name = TextFromPath(file);
        SoundingWalk walk(file);
        while (std::optional<Loading> loading = walk.Next(Policy())) {
          // What stands in a folder beside the soundings is no fault; a file that was named is one.
          if (loading->Failed && name == given) inputs_.Fail(name, *loading->Failed);
          if (!loading->Sounding) continue;
          all.push_back(
              forecast::ProfileOf(std::move(loading->Sounding->Record), name, Analysis()));
        }
      }
    }
    const forecast::Verification found = forecast::Verify(all, asked_.Set, Analysis());
    console_.Out(arguments_.Value("--format") == "csv" ? VerificationCsv(found)
                                                       : Lines(VerificationText(found)));
    if (found.Forecasts == 0) inputs_.Fail("forecast", "no forecast could be compared");
  }

  const Arguments& arguments_;
  const AskedForecast& asked_;
  const CommandSetup& setup_;
  Console& console_;
  Inputs inputs_;
};

// Why these words do not go together; empty when they do.
std::string WhyNoForecast(const Arguments& arguments) {
  const bool verifies = arguments.Has("--verify");
  if (verifies && (arguments.Has("--among") || arguments.Has("--output"))) {
    return "--verify takes files and folders, and neither --among nor -o";
  }
  if (verifies && arguments.Value("--format") == "json") return "--verify writes text or csv";
  if (verifies) return {};
  if (arguments.Files.size() != 1) return "forecasts one sounding; give one file";
  if (arguments.Value("--mode") != "Single" && !arguments.Has("--among")) {
    return "where to look for soundings around is said with --among FOLDER";
  }
  return {};
}

int RunForecast(const Arguments& arguments, Console& console) {
  if (const std::string why = WhyNoForecast(arguments); !why.empty()) {
    return UsageError(console, kForecastCommand, why);
  }
  const Outcome<CommandSetup> setup = SetupOf(arguments, console);
  if (!setup) return UsageError(console, kForecastCommand, setup.Error().Detail);
  const Outcome<AskedForecast> asked = AskedOfForecast(arguments);
  if (!asked) return UsageError(console, kForecastCommand, asked.Error().Detail);
  return ForecastRun(arguments, asked.Value(), setup.Value(), console).Run();
}

}  // namespace

const Command kForecastCommand = {
    {"forecast", "FILE --among FOLDER [-o FOLDER] [options], or --verify FILE-OR-FOLDER...",
     "Steps a sounding ahead by the air upwind, and tells how good that is.", kForecastOptions},
    RunForecast};

}  // namespace vexa::cli
