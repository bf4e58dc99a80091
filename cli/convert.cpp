#include <optional>
#include <string>

#include "cli/commands.h"
#include "cli/inputs.h"
#include "core/files.h"
#include "core/raw_file.h"

namespace vexa::cli {
namespace {

constexpr ArgumentRow kConvertOptions[] = {
    {"--output", "-o", "OUT.RAW", "native sounding file to write"},
    kSoundingOption,
};

int RunConvert(const Arguments& arguments, Console& console) {
  const std::optional<std::string> output = arguments.Value("--output");
  if (!output) return UsageError(console, kConvertCommand, "no output is given with -o");
  const std::string& file = arguments.Files.front();
  std::optional<Fault> fault = NotAnInput(arguments, *output);
  if (fault) return UsageError(console, kConvertCommand, fault->Detail);
  Inputs inputs(console, Stations(), SoundingIndex(arguments));
  const std::optional<LoadedSounding> sounding = inputs.Load(file);
  if (!sounding) return inputs.ExitCode();
  const SoundingRecord& record = sounding->Record;
  if (record.NumTempLevels() == 0) {
    inputs.Fail(file,
                {kFaultTooFewLevels, "RunConvert", "winds alone cannot be kept in a native file"});
  } else if ((fault = SaveFile(PathFromText(*output), WriteRaw(record)))) {
    inputs.Fail(*output, *fault);
  }
  return inputs.ExitCode();
}

}  // namespace

const Command kConvertCommand = {
    {"convert", "FILE -o OUT.RAW [options]",
     "Writes a sounding of any format as a native sounding file.", kConvertOptions, 1, 1},
    RunConvert};

}  // namespace vexa::cli
