#include <algorithm>
#include <filesystem>
#include <optional>
#include <set>
#include <string>

#include "cli/commands.h"
#include "cli/qt_start.h"
#include "cli/settings.h"
#include "core/files.h"
#include "diagram/sounding_plot.h"
#include "output/paint/paint.h"

namespace vexa::cli {
namespace {

constexpr ArgumentRow kOptions[] = {
    {"--output", "-o", "OUT",
     "picture file: .png, .jpg, .bmp, .svg or .pdf; {name} stands for the"
     " input's name"},
    {"--diagram", "", "TYPE", "skewt, emagram or tephigram"},
    {"--size", "", "WxH", "size in pixels, 1600x1200 without it"},
    kRootOption,
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

std::optional<Fault> PlotFile(const std::string& file, const std::string& output, PixelSize size,
                              const SettingsStore& settings) {
  const Options& options = settings.Set;
  const Outcome<AnalysedSounding> sounding = LoadAndAnalyse(file, options);
  if (!sounding) return sounding.Error();
  const std::optional<diagram::SoundingPlot> plot =
      diagram::PlotSounding({.Sounding = sounding.Value().Record,
                             .Results = sounding.Value().Results,
                             .Set = options,
                             .Configuration = ConfigurationCaption(settings)});
  const std::string extension = Extension(output);
  std::string bytes;
  if (extension == "svg") {
    bytes = ToSvg(plot->Page, size.Width, size.Height);
  } else {
    Outcome<std::string> encoded =
        paint::EncodePicture(plot->Page, extension, size.Width, size.Height);
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
  std::optional<QtSession> toolkit;
  if (extension != "svg") toolkit.emplace();
  int exitCode = kExitOk;
  std::set<std::string> written;
  for (const std::string& file : arguments.Files) {
    const std::string name = OutputFor(*output, file);
    const auto fault = written.insert(name).second
                           ? PlotFile(file, name, size, settings.Value())
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
