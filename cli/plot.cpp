#include <algorithm>
#include <filesystem>
#include <optional>
#include <set>
#include <string>

#include "cli/commands.h"
#include "cli/loaded_program.h"
#include "cli/toolkit.h"
#include "core/files.h"
#include "core/letter_case.h"
#include "core/numbers.h"
#include "program/displays.h"

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
    {"--layout", "", "NAME", "layout of the diagram's page: diagram, forecaster, pilot, teaching"},
    kRootOption,
    {"--dpi",
     "",
     "N",
     "resolution that the file states, 96 without it",
     {},
     kLeastImageDpi,
     kMostImageDpi},
    {"--quality", "", "N", "of a .jpg, 92 without it", {}, 1, 100},
    kSoundingOption,
    kSetOption,
};

constexpr std::string_view kNamePlace = "{name}";

// The ending in small letters, without its dot.
std::string Extension(const std::string& output) {
  const std::string extension = TextFromPath(PathFromText(output).extension());
  return extension.empty() ? extension : Lower(extension).substr(1);
}

std::string OutputFor(const std::string& output, const std::string& file) {
  const std::string stem = TextFromPath(PathFromText(file).stem());
  std::string name;
  std::size_t from = 0;
  for (std::size_t at = 0; (at = output.find(kNamePlace, from)) != std::string::npos;) {
    name += output.substr(from, at - from) + stem;
    from = at + kNamePlace.size();
  }
  return name + output.substr(from);
}

/// What a picture is saved on.
struct Canvas {
  PixelSize Size{};
  ImageSettings Image{};
  Toolkit* Tools = nullptr;  // not needed for SVG
};

Outcome<Picture> PageOf(const Program& program, const DisplayRow& display, const Canvas& canvas) {
  const auto [width, height] = canvas.Size;
  if (LackOf(display, program).empty()) {
    return DrawDisplay(display, program, ImageSurface(width, height, canvas.Image.Dpi));
  }
  return Fault{kFaultTooFewLevels, "PageOf", "there is no " + std::string(display.Id) + " of it"};
}

std::optional<Fault> Save(const Picture& picture, const std::string& output, const Canvas& canvas) {
  const auto [width, height] = canvas.Size;
  const std::filesystem::path path = PathFromText(output);
  if (Extension(output) == "svg") return SaveFile(path, ToSvg(picture, width, height));
  return canvas.Tools->SavePicture(picture, path, width, height, canvas.Image);
}

void DrawAndSave(const Program& program, const DisplayRow& display, const std::string& file,
                 const std::string& output, const Canvas& canvas, Inputs& inputs) {
  const Outcome<Picture> drawn = PageOf(program, display, canvas);
  if (!drawn) return inputs.Fail(file, drawn.Error());
  if (const auto fault = Save(drawn.Value(), output, canvas)) inputs.Fail(output, *fault);
}

// All files on one diagram, the first in work and the others beside it. A file that fails is told
// of and left out.
void PlotTogether(const Arguments& arguments, const std::string& output, const Canvas& canvas,
                  LoadedProgram& loaded, const DisplayRow& display) {
  const diagram::MultiMode mode = display.Mode;
  int count = 0;
  for (const std::string& file : arguments.Files) {
    if (mode == diagram::MultiMode::Compare && count == 2) break;
    if (count == 0 ? loaded.Load(file) : loaded.LoadBeside(file, mode)) ++count;
  }
  if (count > 0) DrawAndSave(loaded.Get(), display, output, output, canvas, loaded.In());
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
  const DisplayRow* display = DisplayNamed(console.Displays, displayName);
  if (display == nullptr) {
    const auto names = DisplayNames(console.Displays);
    return UsageError(console, kPlotCommand,
                      "there is no display \"" + displayName + "\"" +
                          DidYouMean(displayName, names) + "; there are " + Joined(names));
  }
  const bool together = display->Mode != diagram::MultiMode::Single;
  if (together && arguments.Files.size() < 2) {
    return UsageError(console, kPlotCommand, std::string(display->Id) + " takes several files");
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
  const LayoutRow* layout = nullptr;
  if (const auto name = arguments.Value("--layout")) {
    layout = FindLayout(*name);
    if (layout == nullptr) {
      std::vector<std::string_view> names;
      for (const LayoutRow& row : PageLayouts()) names.push_back(row.Name);
      return UsageError(console, kPlotCommand,
                        "there is no layout \"" + *name + "\"" + DidYouMean(*name, names) +
                            "; there are " + Joined(names));
    }
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
  LoadedProgram loaded(setup.Value(), console);
  loaded.LayOut(layout);
  if (together) {
    PlotTogether(arguments, OutputFor(*output, arguments.Files.front()), canvas, loaded, *display);
    return loaded.In().ExitCode();
  }
  std::set<std::string> written;
  for (const std::string& file : arguments.Files) {
    const std::string name = OutputFor(*output, file);
    if (!written.insert(name).second) {
      loaded.In().Fail(file, {kFaultBadFileName, "RunPlot",
                              name + " holds the picture of another input already"});
    } else if (loaded.Load(file)) {
      DrawAndSave(loaded.Get(), *display, file, name, canvas, loaded.In());
    }
  }
  return loaded.In().ExitCode();
}

}  // namespace

const Command kPlotCommand = {{"plot", "FILE-OR-FOLDER... -o OUT.{png,jpg,bmp,svg,pdf} [options]",
                               "Draws the diagram of each sounding into a picture file.", kOptions},
                              RunPlot,
                              true};

}  // namespace vexa::cli
