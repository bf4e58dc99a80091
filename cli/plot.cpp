#include <algorithm>
#include <cctype>
#include <filesystem>
#include <optional>
#include <set>
#include <string>

#include "cli/commands.h"
#include "cli/loaded_program.h"
#include "cli/toolkit.h"
#include "core/files.h"
#include "core/numbers.h"
#include "program/print_displays.h"

namespace vexa::cli {
namespace {

constexpr auto kDiagrams = Words(DiagramType{});

constexpr ArgumentRow kOptions[] = {
    {"--output", "-o", "OUT",
     "picture file: .png, .jpg, .bmp, .svg or .pdf; {name} stands for the"
     " input's name"},
    {"--diagram", "", "TYPE", "in place of the one that is set", kDiagrams},
    {"--display", "", "NAME",
     "the display to draw, sounding without it: hodograph, hodogram, SvrWx, Winter...;"
     " Overlay and Compare put all files on one diagram"},
    {"--size", "", "WxH", "size in pixels, 1600x1200 without it"},
    kRootOption,
    {"--dpi", "", "N", "resolution that the file states, 96 without it", {}, 10, 2400},
    {"--quality", "", "N", "of a .jpg, 92 without it", {}, 1, 100},
    kSoundingOption,
    kSetOption,
};

constexpr std::string_view kNamePlace = "{name}";

std::string Lower(std::string_view text) {
  std::string letters(text);
  std::ranges::transform(letters, letters.begin(), [](unsigned char letter) {
    return static_cast<char>(std::tolower(letter));
  });
  return letters;
}

// The ending in small letters, without its dot.
std::string Extension(const std::string& output) {
  const std::string extension = TextFromPath(PathFromText(output).extension());
  return extension.empty() ? extension : Lower(extension).substr(1);
}

std::string OutputFor(const std::string& output, const std::string& file) {
  std::string name = output;
  if (const std::size_t place = name.find(kNamePlace); place != std::string::npos) {
    name.replace(place, kNamePlace.size(), TextFromPath(PathFromText(file).stem()));
  }
  return name;
}

// The name of a display; "hodogram" is short for the one in three dimensions.
std::optional<std::string_view> DisplayNamed(std::string_view word) {
  constexpr std::string_view kShort = "hodogram", kLong = "Hodogram3D";
  for (const std::string_view name : AllPrintDisplays()) {
    if (Lower(name) == Lower(word) || (name == kLong && Lower(word) == kShort)) return name;
  }
  return std::nullopt;
}

Outcome<Picture> PageOf(const Program& program, std::string_view display) {
  for (const PrintDisplay& there : PrintDisplays(program)) {
    if (there.Name == display) return there.Draw(program, program.Set);
  }
  return Fault{kFaultTooFewLevels, "PageOf", "there is no " + std::string(display) + " of it"};
}

/// What a picture is saved on.
struct Canvas {
  PixelSize Size{};
  ImageSettings Image{};
  Toolkit* Tools = nullptr;  // not needed for SVG
};

std::optional<Fault> Save(const Picture& picture, const std::string& output, const Canvas& canvas) {
  const auto [width, height] = canvas.Size;
  const std::filesystem::path path = PathFromText(output);
  if (Extension(output) == "svg") return SaveFile(path, ToSvg(picture, width, height));
  return canvas.Tools->SavePicture(picture, path, width, height, canvas.Image);
}

// All files on one diagram, the first in work and the others beside it. A file that fails is told
// of and left out.
int PlotTogether(const Arguments& arguments, Console& console, const std::string& output,
                 const Canvas& canvas, LoadedProgram& loaded, std::string_view display) {
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
  const auto fault = drawn ? Save(drawn.Value(), output, canvas) : std::optional(drawn.Error());
  if (!fault) return exitCode;
  ReportFault(console, output, *fault);
  return kExitInputFailed;
}

std::optional<Fault> PlotFile(const std::string& file, const std::string& output,
                              const Canvas& canvas, LoadedProgram& loaded,
                              std::string_view display) {
  if (auto fault = loaded.Load(file)) return fault;
  const Outcome<Picture> drawn = PageOf(loaded.Get(), display);
  if (!drawn) return drawn.Error();
  return Save(drawn.Value(), output, canvas);
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
  if (extension != "svg" && console.Tools == nullptr) {
    return LacksToolkit(console, kPlotCommand, "." + extension + " pictures, only .svg");
  }
  const std::string displayName = arguments.Value("--display").value_or("sounding");
  const std::optional<std::string_view> display = DisplayNamed(displayName);
  if (!display) {
    const auto names = AllPrintDisplays();
    return UsageError(console, kPlotCommand,
                      "there is no display \"" + displayName + "\"" +
                          DidYouMean(displayName, names) + "; there are " + Joined(names));
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
  const ImageSettings image{
      .JpegQuality = arguments.Whole("--quality").value_or(kJpegQuality),
      .Dpi = static_cast<double>(arguments.Whole("--dpi").value_or(ToWhole(kScreenDpi)))};
  Outcome<CommandSetup> setup = SetupOf(arguments, console);
  if (!setup) return UsageError(console, kPlotCommand, setup.Error().Detail);
  Options& options = setup.Value().Settings.Set;
  if (const auto type = arguments.Value("--diagram")) {
    options.Diagram =
        static_cast<DiagramType>(std::ranges::find(kDiagrams, *type) - kDiagrams.begin());
  }
  for (const std::string& file : arguments.Files) {
    if (const auto fault = NotAnInput(arguments, OutputFor(*output, file))) {
      return UsageError(console, kPlotCommand, fault->Detail);
    }
  }
  const Canvas canvas{size, image, console.Tools};
  int exitCode = kExitOk;
  LoadedProgram loaded(setup.Value());
  if (together) {
    const std::string name = OutputFor(*output, arguments.Files.front());
    return PlotTogether(arguments, console, name, canvas, loaded, *display);
  }
  std::set<std::string> written;
  for (const std::string& file : arguments.Files) {
    const std::string name = OutputFor(*output, file);
    const auto fault = written.insert(name).second
                           ? PlotFile(file, name, canvas, loaded, *display)
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

const Command kPlotCommand = {{"plot", "FILE-OR-FOLDER... -o OUT.{png,jpg,bmp,svg,pdf} [options]",
                               "Draws the diagram of each sounding into a picture file.", kOptions},
                              RunPlot,
                              true};

}  // namespace vexa::cli
