#include <algorithm>
#include <cctype>
#include <filesystem>
#include <optional>
#include <set>
#include <string>

#include "cli/commands.h"
#include "cli/loaded_program.h"
#include "cli/qt_start.h"
#include "core/files.h"
#include "core/numbers.h"
#include "output/paint/paint.h"
#include "program/print_displays.h"

namespace vexa::cli {
namespace {

constexpr ArgumentRow kOptions[] = {
    {"--output", "-o", "OUT",
     "picture file: .png, .jpg, .bmp, .svg or .pdf; {name} stands for the"
     " input's name"},
    {"--diagram", "", "TYPE", "skewt, emagram or tephigram"},
    {"--display", "", "NAME",
     "the display to draw, sounding without it: hodograph, hodogram, SvrWx, Winter...;"
     " Overlay and Compare put all files on one diagram"},
    {"--size", "", "WxH", "size in pixels, 1600x1200 without it"},
    kRootOption,
    {"--dpi", "", "N", "resolution that the file states, 96 without it"},
    {"--quality", "", "N", "of a .jpg, 1 to 100, 92 without it"},
    kSoundingOption,
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

// The name of a display; "hodogram" is short for the one in three dimensions.
std::optional<std::string_view> DisplayNamed(std::string_view word) {
  constexpr std::string_view kShort = "hodogram", kLong = "Hodogram3D";
  const auto lower = [](std::string_view text) {
    std::string letters(text);
    std::ranges::transform(letters, letters.begin(), [](unsigned char letter) {
      return static_cast<char>(std::tolower(letter));
    });
    return letters;
  };
  for (const std::string_view name : AllPrintDisplays()) {
    if (lower(name) == lower(word) || (name == kLong && lower(word) == kShort)) return name;
  }
  return std::nullopt;
}

Outcome<Picture> PageOf(const Program& program, std::string_view display) {
  for (const PrintDisplay& there : PrintDisplays(program)) {
    if (there.Name == display) return there.Draw(program, program.Set);
  }
  return Fault{kFaultTooFewLevels, "PageOf", "there is no " + std::string(display) + " of it"};
}

// All files on one diagram, the first in work and the others beside it. A file that fails is told
// of and left out.
int PlotTogether(const Arguments& arguments, Console& console, const std::string& output,
                 PixelSize size, const paint::ImageSettings& image, LoadedProgram& loaded,
                 std::string_view display) {
  const diagram::MultiMode mode = *ModeOfDisplay(display);
  int exitCode = kExitOk;
  int count = 0;
  for (const std::string& file : arguments.Files) {
    if (mode == diagram::MultiMode::Compare && count == 2) break;
    const auto fault = count == 0 ? loaded.Load(file) : loaded.LoadBeside(file, mode);
    if (fault) {
      ReportFault(console, file, *fault);
      exitCode = kExitInputFailed;
    } else {
      ++count;
    }
  }
  if (count == 0) return exitCode;
  const Outcome<Picture> drawn = PageOf(loaded.Get(), display);
  const auto fault = drawn ? paint::SavePicture(drawn.Value(), PathFromText(output), size.Width,
                                                size.Height, image)
                           : std::optional(drawn.Error());
  if (!fault) return exitCode;
  ReportFault(console, output, *fault);
  return kExitInputFailed;
}

std::optional<Fault> PlotFile(const std::string& file, const std::string& output, PixelSize size,
                              const paint::ImageSettings& image, LoadedProgram& loaded,
                              std::string_view display) {
  if (auto fault = loaded.Load(file)) return fault;
  const Outcome<Picture> drawn = PageOf(loaded.Get(), display);
  if (!drawn) return drawn.Error();
  return paint::SavePicture(drawn.Value(), PathFromText(output), size.Width, size.Height, image);
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
  const std::string displayName = arguments.Value("--display").value_or("sounding");
  const std::optional<std::string_view> display = DisplayNamed(displayName);
  if (!display) {
    std::string names;
    for (const std::string_view name : AllPrintDisplays()) names += " " + std::string(name);
    return UsageError(console, kPlotCommand,
                      "there is no display \"" + displayName + "\"; there are" + names);
  }
  const bool together = ModeOfDisplay(*display).has_value();
  if (together && arguments.Files.size() < 2) {
    return UsageError(console, kPlotCommand, std::string(*display) + " takes several files");
  }
  if (!together && arguments.Files.size() > 1 && output->find(kNamePlace) == std::string::npos) {
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
  Outcome<CommandSetup> setup = SetupOf(arguments, console);
  if (!setup) return UsageError(console, kPlotCommand, setup.Error().Detail);
  Options& options = setup.Value().Settings.Set;
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
  for (const std::string& file : arguments.Files) {
    if (const auto fault = NotAnInput(arguments, OutputFor(*output, file))) {
      return UsageError(console, kPlotCommand, fault->Detail);
    }
  }
  int exitCode = kExitOk;
  LoadedProgram loaded(setup.Value());
  if (together) {
    const std::string name = OutputFor(*output, arguments.Files.front());
    return PlotTogether(arguments, console, name, size, image, loaded, *display);
  }
  std::set<std::string> written;
  for (const std::string& file : arguments.Files) {
    const std::string name = OutputFor(*output, file);
    const auto fault = written.insert(name).second
                           ? PlotFile(file, name, size, image, loaded, *display)
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
