#include <string>

#include "cli/commands.h"
#include "core/files.h"
#include "core/raw_file.h"

namespace vexa::cli {
namespace {

constexpr ArgumentRow kOptions[] = {
    {"--output", "-o", "OUT.RAW", "native sounding file to write"},
    kSoundingOption,
};

int RunConvert(const Arguments& arguments, Console& console) {
  const std::optional<std::string> output = arguments.Value("--output");
  if (!output) return UsageError(console, kConvertCommand, "no output is given with -o");
  const std::string& file = arguments.Files.front();
  std::optional<Fault> fault = NotAnInput(arguments, *output);
  if (fault) return UsageError(console, kConvertCommand, fault->Detail);
  const Outcome<AnalysedSounding> sounding = LoadAndAnalyse(file, SoundingIndex(arguments), {});
  if (!sounding) {
    fault = sounding.Error();
  } else if (sounding.Value().Record.NumTempLevels() == 0) {
    fault = Fault{kFaultTooFewLevels, "RunConvert", "winds alone cannot be kept in a native file"};
  } else {
    fault = SaveFile(PathFromText(*output), WriteRaw(sounding.Value().Record));
    if (const std::string lost = LostBelowSea(sounding.Value().Record); !fault && !lost.empty()) {
      console.Err("vexa-cli: " + *output + ": " + lost + '\n');
    }
  }
  if (!fault) return kExitOk;
  ReportFault(console, file, *fault);
  return kExitInputFailed;
}

}  // namespace

const Command kConvertCommand = {
    {"convert", "FILE -o OUT.RAW [options]",
     "Writes a sounding of any format as a native sounding file.", kOptions, 1, 1},
    RunConvert};

}  // namespace vexa::cli
