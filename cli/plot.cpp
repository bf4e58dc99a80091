#include <algorithm>
#include <filesystem>
#include <optional>
#include <set>
#include <string>

#include "cli/commands.h"
#include "cli/qt_start.h"
#include "cli/settings.h"
#include "core/files.h"
#include "core/numbers.h"
#include "diagram/sounding_plot.h"
#include "hodograph/hodogram_plot.h"
#include "hodograph/hodograph_plot.h"
#include "output/paint/paint.h"

namespace vexa::cli {
namespace {

constexpr ArgumentRow kOptions[] = {
    {"--output", "-o", "OUT",
     "picture file: .png, .jpg, .bmp, .svg or .pdf; {name} stands for the"
     " input's name"},
    {"--diagram", "", "TYPE", "skewt, emagram or tephigram"},
    {"--display", "", "NAME", "sounding, hodograph or hodogram; sounding without it"},
    {"--size", "", "WxH", "size in pixels, 1600x1200 without it"},
    kRootOption,
    {"--dpi", "", "N", "resolution that the file states, 96 without it"},
    {"--quality", "", "N", "of a .jpg, 1 to 100, 92 without it"},
    {"--set", "", "\"KEY=VALUE\"", "sets an option by its label; may be repeated"},
};

constexpr std::string_view kNamePlace = "{name}";

std::string Extension(const std::string& output) {
  const std::string extension = TextFromPath(PathFromText(output).extension());
  return extension.empty() ? extension : extension.substr(1);
}

std::string OutputFor(const std::string& output, const std::string& file) {
  std::string name = output;
  if (const std::size_t place = name.find(kNamePlace); place != std::string::npos) {
    name.replace(place, kNamePlace.size(), TextFromPath(PathFromText(file).stem()));
  }
  return name;
}

// A number of an option within a range; its own value where the option is not given.
Outcome<int> WholeOption(const Arguments& arguments, std::string_view name, int own, int least,
                         int most) {
  const std::optional<std::string> text = arguments.Value(name);
  if (!text) return own;
  const std::optional<int> number = ParseWhole(*text);
  if (number && *number >= least && *number <= most) return *number;
  return Fault{kFaultInvalidValue, "WholeOption",
               std::string(name) + " takes a number from " + Shortest(least) + " to " +
                   Shortest(most) + ", not \"" + *text + "\""};
}

Picture DiagramPage(const AnalysedSounding& sounding, const SettingsStore& settings) {
  const Options& options = settings.Set;
  const hodograph::HodographInput hodograph{
      .Sounding = sounding.Record, .Results = sounding.Results, .Set = options};
  const std::optional<Picture> small = hodograph::PlotSmallHodograph(hodograph);
  return diagram::PlotSounding({.Sounding = sounding.Record,
                                .Results = sounding.Results,
                                .Set = options,
                                .Hodograph = small ? &*small : nullptr,
                                .Configuration = ConfigurationCaption(settings)})
      ->Page;
}

Picture HodographPage(const AnalysedSounding& sounding, const SettingsStore& settings) {
  const Options& options = settings.Set;
  return hodograph::PlotHodograph(
             {.Sounding = sounding.Record, .Results = sounding.Results, .Set = options})
      .Page;
}

Picture HodogramPage(const AnalysedSounding& sounding, const SettingsStore& settings) {
  return hodograph::PlotHodogram(hodograph::MakeHodogram(sounding.Record, settings.Set), {});
}

struct Display {
  std::string_view Name;
  Picture (*Page)(const AnalysedSounding& sounding, const SettingsStore& settings);
};

constexpr Display kDisplays[] = {
    {"sounding", DiagramPage}, {"hodograph", HodographPage}, {"hodogram", HodogramPage}};

std::optional<Fault> PlotFile(const std::string& file, const std::string& output, PixelSize size,
                              const paint::ImageSettings& image, const SettingsStore& settings,
                              const Display& display) {
  const Outcome<AnalysedSounding> sounding = LoadAndAnalyse(file, settings.Set);
  if (!sounding) return sounding.Error();
  const Picture page = display.Page(sounding.Value(), settings);
  const std::string extension = Extension(output);
  std::string bytes;
  if (extension == "svg") {
    bytes = ToSvg(page, size.Width, size.Height);
  } else {
    Outcome<std::string> encoded =
        paint::EncodePicture(page, extension, size.Width, size.Height, image);
    if (!encoded) return encoded.Error();
    bytes = std::move(encoded.Value());
  }
  return SaveFile(PathFromText(output), bytes);
}

int RunPlot(const Arguments& arguments, Console& console) {
  const std::optional<std::string> output = arguments.Value("--output");
  if (!output) return UsageError(console, kPlotCommand, "no output is given with -o");
  const std::string extension = Extension(*output);
  constexpr std::string_view kKinds[] = {"png", "jpg", "jpeg", "bmp", "svg", "pdf"};
  if (std::ranges::find(kKinds, extension) == std::end(kKinds)) {
    return UsageError(console, kPlotCommand,
                      "\"" + *output + "\" does not end in .png, .jpg, .bmp, .svg or .pdf");
  }
  if (arguments.Files.size() > 1 && output->find(kNamePlace) == std::string::npos) {
    return UsageError(console, kPlotCommand,
                      "several files need {name} in the output, as in -o {name}." + extension);
  }
  PixelSize size{1600, 1200};
  if (const auto text = arguments.Value("--size")) {
    const Outcome<PixelSize> given = ParseSize(*text);
    if (!given) return UsageError(console, kPlotCommand, given.Error().Detail);
    size = given.Value();
  }
  const Outcome<int> quality = WholeOption(arguments, "--quality", paint::kJpegQuality, 1, 100);
  if (!quality) return UsageError(console, kPlotCommand, quality.Error().Detail);
  constexpr int kLeastDpi = 10, kMostDpi = 2400;
  const Outcome<int> dpi =
      WholeOption(arguments, "--dpi", static_cast<int>(paint::kScreenDpi), kLeastDpi, kMostDpi);
  if (!dpi) return UsageError(console, kPlotCommand, dpi.Error().Detail);
  const paint::ImageSettings image{.JpegQuality = quality.Value(),
                                   .Dpi = static_cast<double>(dpi.Value())};
  Outcome<SettingsStore> settings = CommandSettings(arguments, console);
  if (!settings) return UsageError(console, kPlotCommand, settings.Error().Detail);
  Options& options = settings.Value().Set;
  if (const auto type = arguments.Value("--diagram")) {
    const auto words = Words(DiagramType{});
    const auto word = std::ranges::find(words, *type);
    if (word == words.end()) {
      return UsageError(console, kPlotCommand,
                        "--diagram takes skewt, emagram or tephigram, not \"" + *type + "\"");
    }
    options.Diagram = static_cast<DiagramType>(word - words.begin());
  }
  const std::string displayName = arguments.Value("--display").value_or("sounding");
  const auto display = std::ranges::find(kDisplays, displayName, &Display::Name);
  if (display == std::end(kDisplays)) {
    return UsageError(
        console, kPlotCommand,
        "--display takes sounding, hodograph or hodogram, not \"" + displayName + "\"");
  }
  std::optional<QtSession> toolkit;
  if (extension != "svg") toolkit.emplace();
  int exitCode = kExitOk;
  std::set<std::string> written;
  for (const std::string& file : arguments.Files) {
    const std::string name = OutputFor(*output, file);
    const auto fault = written.insert(name).second
                           ? PlotFile(file, name, size, image, settings.Value(), *display)
                           : Fault{kFaultBadFileName, "RunPlot",
                                   name + " holds the picture of another input already"};
    if (fault) {
      ReportFault(console, file, *fault);
      exitCode = kExitInputFailed;
    }
  }
  return exitCode;
}

}  // namespace

const Command kPlotCommand = {"plot", "FILE... -o OUT [options]",
                              "Draws the diagram of each sounding into a picture file.", kOptions,
                              RunPlot};

}  // namespace vexa::cli
