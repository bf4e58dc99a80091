// `report`: one folder that lets a colleague repeat the case.
#include <filesystem>
#include <string>

#include "cli/commands.h"
#include "cli/loaded_program.h"
#include "cli/toolkit.h"
#include "core/files.h"
#include "report/report_folder.h"

namespace vexa::cli {
namespace {

constexpr ArgumentRow kReportFolderOptions[] = {
    {"--output", "-o", "FOLDER", "folder to write; it is made where it is missing"},
    kRootOption,
    kSoundingOption,
    kSetOption,
};

std::optional<Fault> WriteFolder(const Program& program, const std::filesystem::path& folder,
                                 Toolkit& tools) {
  return report::WriteReport(
      program, folder,
      {.Program = "vexa-cli",
       .Toolkit = tools.JpegLibraryVersion(),
       .EncodePicture = [&tools](const Picture& picture, const std::string& extension, int widthPx,
                                 int heightPx) {
         return tools.EncodePicture(picture, extension, widthPx, heightPx);
       }});
}

int RunReport(const Arguments& arguments, Console& console) {
  const std::optional<std::string> output = arguments.Value("--output");
  if (!output) return UsageError(console, kReportCommand, "no folder is given with -o");
  if (const auto fault = NotAnInput(arguments, *output)) {
    return UsageError(console, kReportCommand, fault->Detail);
  }
  if (console.Tools == nullptr) return LacksToolkit(console, kReportCommand, "PNG images");
  const Outcome<CommandSetup> setup = SetupOf(arguments, console);
  if (!setup) return UsageError(console, kReportCommand, setup.Error().Detail);
  const std::string& file = arguments.Files.front();
  LoadedProgram loaded(setup.Value(), console);
  if (!loaded.Load(file)) return loaded.In().ExitCode();
  if (const auto fault = WriteFolder(loaded.Get(), PathFromText(*output), *console.Tools)) {
    loaded.In().Fail(*output, *fault);
  }
  return loaded.In().ExitCode();
}

}  // namespace

const Command kReportCommand = {
    {"report", "FILE -o FOLDER [options]", "Writes a folder with which the case can be repeated.",
     kReportFolderOptions, 1, 1},
    RunReport};

}  // namespace vexa::cli
