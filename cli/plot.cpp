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
#include "program/section_display.h"
#include "program/view_commands.h"

namespace vexa::cli {
namespace {

constexpr auto kDiagrams = Words(DiagramType{});

constexpr ArgumentRow kPlotOptions[] = {
    {"--output", "-o", "OUT",
     "picture file: .png, .jpg, .bmp, .svg or .pdf; {name} stands for the"
     " input's name"},
    {"--diagram", "", "TYPE", "in place of the one that is set", kDiagrams},
    {"--display", "", "NAME",
     "the display to draw, sounding without it: hodograph, hodogram, SvrWx, Winter...;"
     " Overlay and Compare put all files on one diagram, CrossSection and AreaMapForm on one page"},
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

// A section is made of every sounding of all files.
bool TakesAll(const DisplayRow& display) {
  return display.Needs == NeedsSection;
}

// All files on one diagram, the first in work and the others beside it. A file that fails is told
// of and left out.
void PlotTogether(const Arguments& arguments, const std::string& output, const Canvas& canvas,
                  LoadedProgram& loaded, const DisplayRow& display) {
  const diagram::MultiMode mode = display.Mode;
  if (TakesAll(display)) {
    if (!loaded.LoadAll(arguments.Files)) return;
    return DrawAndSave(loaded.Get(), display, output, output, canvas, loaded.In());
  }
  int count = 0;
  for (const std::string& file : arguments.Files) {
    if (mode == diagram::MultiMode::Compare && count == 2) break;
    if (count == 0 ? loaded.Load(file) : loaded.LoadBeside(file, mode)) ++count;
  }
  if (count > 0) DrawAndSave(loaded.Get(), display, output, output, canvas, loaded.In());
}

/// What the words of the command line ask for.
struct AskedPlot {
  std::string Output{};
  const DisplayRow* Display = nullptr;
  const LayoutRow* Layout = nullptr;
  Canvas On{};
  bool Together() const {
    return Display->Mode != diagram::MultiMode::Single || TakesAll(*Display);
  }
};

// The display, which takes one file or several.
Outcome<const DisplayRow*> DisplayOf(const Arguments& arguments, const Console& console) {
  const std::string name = arguments.Value("--display").value_or("sounding");
  const DisplayRow* display = DisplayNamed(console.Displays, name);
  if (display == nullptr) {
    const auto names = DisplayNames(console.Displays);
    return Wrong("plot", "there is no display \"" + name + "\"" + DidYouMean(name, names) +
                             "; there are " + Joined(names));
  }
  if (display->Mode != diagram::MultiMode::Single && arguments.Files.size() < 2) {
    return Wrong("plot", std::string(display->Id) + " takes several files");
  }
  return display;
}

Outcome<Canvas> CanvasOf(const Arguments& arguments, const Console& console) {
  Canvas canvas{
      .Size = {1600, 1200},
      .Image = {.JpegQuality = arguments.Whole("--quality").value_or(kJpegQuality),
                .Dpi = static_cast<double>(arguments.Whole("--dpi").value_or(ToWhole(kScreenDpi)))},
      .Tools = console.Tools};
  if (const auto text = arguments.Value("--size")) {
    const Outcome<PixelSize> given = ParseSize(*text);
    if (!given) return given.Error();
    canvas.Size = given.Value();
  }
  return canvas;
}

Outcome<AskedPlot> AskedPlotBy(const Arguments& arguments, const Console& console) {
  AskedPlot asked{.Output = *arguments.Value("--output")};
  const Outcome<const DisplayRow*> display = DisplayOf(arguments, console);
  if (!display) return display.Error();
  asked.Display = display.Value();
  if (!asked.Together() && arguments.Files.size() > 1 &&
      asked.Output.find(kNamePlace) == std::string::npos) {
    return Wrong("plot", "several files need {name} in the output, as in -o {name}." +
                             Extension(asked.Output));
  }
  const Outcome<Canvas> canvas = CanvasOf(arguments, console);
  if (!canvas) return canvas.Error();
  asked.On = canvas.Value();
  if (const auto name = arguments.Value("--layout")) {
    const Outcome<const LayoutRow*> layout = LayoutNamed(*name);
    if (!layout) return layout.Error();
    asked.Layout = layout.Value();
  }
  for (const std::string& file : arguments.Files) {
    if (const auto fault = NotAnInput(arguments, OutputFor(asked.Output, file))) return *fault;
  }
  return asked;
}

// A picture for each file. A second one of the same name would replace the first.
void PlotEach(const Arguments& arguments, const AskedPlot& asked, LoadedProgram& loaded) {
  std::set<std::string> written;
  for (const std::string& file : arguments.Files) {
    const std::string name = OutputFor(asked.Output, file);
    if (!written.insert(name).second) {
      loaded.In().Fail(file, {kFaultBadFileName, "PlotEach",
                              name + " holds the picture of another input already"});
    } else if (loaded.Load(file)) {
      DrawAndSave(loaded.Get(), *asked.Display, file, name, asked.On, loaded.In());
    }
  }
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
  const Outcome<AskedPlot> read = AskedPlotBy(arguments, console);
  if (!read) return UsageError(console, kPlotCommand, read.Error().Detail);
  const AskedPlot& asked = read.Value();
  Outcome<CommandSetup> setup = SetupOf(arguments, console);
  if (!setup) return UsageError(console, kPlotCommand, setup.Error().Detail);
  if (const auto type = arguments.Value("--diagram")) {
    setup.Value().Settings.Set.Diagram =
        static_cast<DiagramType>(std::ranges::find(kDiagrams, *type) - kDiagrams.begin());
  }
  LoadedProgram loaded(setup.Value(), console);
  loaded.LayOut(asked.Layout);
  if (asked.Together()) {
    PlotTogether(arguments, OutputFor(*output, arguments.Files.front()), asked.On, loaded,
                 *asked.Display);
  } else {
    PlotEach(arguments, asked, loaded);
  }
  return loaded.In().ExitCode();
}

}  // namespace

const Command kPlotCommand = {
    {"plot", "FILE-OR-FOLDER... -o OUT.{png,jpg,bmp,svg,pdf} [options]",
     "Draws the diagram of each sounding into a picture file.", kPlotOptions},
    RunPlot,
    true};

}  // namespace vexa::cli
