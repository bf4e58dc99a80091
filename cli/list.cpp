#include <string>

#include "cli/commands.h"
#include "cli/loaded_program.h"
#include "output/listings.h"
#include "program/wave_view.h"

namespace vexa::cli {
namespace {

constexpr ArgumentRow kListOptions[] = {
    {"--listing", "-l", "LISTING",
     "summary, complete, interval, analyses, weather, indices or cape; may be repeated, all seven "
     "without it"},
    kRootOption,
    kSoundingOption,
    kSetOption,
};

std::vector<std::string_view> ListingWords() {
  std::vector<std::string_view> words;
  for (const output::ListingRow& row : output::Listings()) words.push_back(row.Word);
  return words;
}

void PrintListings(const Program& program, const std::vector<const output::ListingRow*>& rows,
                   Console& console) {
  const output::ListingSource from{program.Current.Record, program.Results, program.Set,
                                   MountainsNow(program)};
  std::string text;
  for (const std::string& line : output::PageHeader(from, {})) text += line + "\n";
  for (const output::ListingRow* row : rows) {
    text += row == rows.front() ? "\n" : std::string(output::kNewPage) + "\n";
    for (const std::string& line : row->Make(from)) text += line + "\n";
  }
  console.Out(text);
}

int RunList(const Arguments& arguments, Console& console) {
  const Outcome<CommandSetup> setup = SetupOf(arguments, console);
  if (!setup) return UsageError(console, kListCommand, setup.Error().Detail);
  std::vector<const output::ListingRow*> rows;
  for (const std::string& word : arguments.Values("--listing")) {
    rows.push_back(output::FindListing(word));
    if (rows.back() == nullptr) {
      return UsageError(console, kListCommand,
                        "there is no listing \"" + word + "\"" + DidYouMean(word, ListingWords()) +
                            "; there are " + Joined(ListingWords()));
    }
  }
  if (rows.empty()) {
    for (const output::ListingRow& row : output::Listings()) rows.push_back(&row);
  }
  LoadedProgram loaded(setup.Value(), console);
  for (const std::string& file : arguments.Files) {
    if (loaded.Load(file)) PrintListings(loaded.Get(), rows, console);
  }
  return loaded.In().ExitCode();
}

}  // namespace

const Command kListCommand = {
    {"list", "FILE-OR-FOLDER... [options]", "Prints the listings of each sounding.", kListOptions},
    RunList,
    true};

}  // namespace vexa::cli
