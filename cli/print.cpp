// `print`: displays and listings on the pages that the print window makes, as one PDF document.
#include <algorithm>
#include <iterator>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "cli/commands.h"
#include "cli/loaded_program.h"
#include "cli/toolkit.h"
#include "core/files.h"
#include "core/letter_case.h"
#include "program/displays.h"
#include "program/print_work.h"

namespace vexa::cli {
namespace {

constexpr auto kPapers = output::Words(output::Paper{});
constexpr auto kTurns = output::Words(output::Orientation{});

constexpr ArgumentRow kPrintOptions[] = {
    {"--output", "-o", "OUT", "PDF document to write"},
    {"--display", "-d", "NAME",
     "display, text or listing to print, \"Sounding\" without it; may be repeated"},
    {"--all-listings", "", "", "prints the seven listings too"},
    {"--paper", "", "SIZE", "of the sheet", kPapers},
    {"--orientation", "", "TURN", "of the sheet", kTurns},
    {"--title", "", "TEXT", "a line above the header of displays"},
    {"--dark-lines", "", "", "draws with dark lines"},
    {"--no-data-type", "", "", "leaves data type and number of levels out of the header"},
    {"--no-coordinates", "", "", "leaves coordinates and elevation out of the header"},
    kRootOption,
    kSoundingOption,
    kSetOption,
};

// Sets an enum by an option whose values are its words.
template <class E>
void TakeWord(const Arguments& arguments, std::string_view option, E& into) {
  const std::optional<std::string> given = arguments.Value(option);
  if (!given) return;
  const auto words = output::Words(into);
  into = static_cast<E>(std::ranges::find(words, *given) - words.begin());
}

bool ShowsSeveral(std::string_view name, std::span<const DisplayRow> displays) {
  const DisplayRow* display = FindDisplay(displays, name);
  return display != nullptr && display->Mode != diagram::MultiMode::Single;
}

// The printed name that a word means: a name in any case, or a listing's word of `list`.
std::optional<std::string> NameOf(std::string_view word, std::span<const DisplayRow> displays) {
  if (const output::ListingRow* row = output::FindListing(Lower(word))) {
    return std::string(row->Name);
  }
  for (const std::string_view name : AllPrintableNames(displays)) {
    if (SameText(name, word)) return std::string(name);
  }
  return std::nullopt;
}

/// What was asked for: the sheet, and a request for each name.
struct AskedPrint {
  PrintRequest Print{};
  std::vector<std::string> Names{};
};

Outcome<AskedPrint> ReadRequest(const Arguments& arguments, const CommandSetup& setup) {
  const auto wrong = [](std::string detail) {
    return Fault{kFaultInvalidValue, "ReadRequest", std::move(detail)};
  };
  AskedPrint asked;
  PrintRequest& print = asked.Print;
  if (!setup.Root.empty()) print.Setup = ReadPrinterFile(setup.Root);
  const SystemOptions& system = setup.Settings.Set.System;
  print.Title = arguments.Value("--title").value_or(system.PrintTitleMemory);
  print.DarkLines = system.DarklinesMemory || arguments.Has("--dark-lines");
  TakeWord(arguments, "--paper", print.Setup.Sheet);
  TakeWord(arguments, "--orientation", print.Setup.Turn);
  if (arguments.Has("--no-data-type")) print.Setup.Header.DataType = false;
  if (arguments.Has("--no-coordinates")) print.Setup.Header.Coordinates = false;
  if (arguments.Has("--all-listings")) print.Setup.AllListings = true;
  for (const std::string& word : arguments.Values("--display")) {
    const std::optional<std::string> name = NameOf(word, setup.Displays);
    if (!name) {
      std::vector<std::string_view> names;
      for (const std::string_view one : AllPrintableNames(setup.Displays)) {
        if (!ShowsSeveral(one, setup.Displays)) names.push_back(one);
      }
      return wrong("nothing to print is called \"" + word + "\"" + DidYouMean(word, names) +
                   "; there are " + Joined(names));
    }
    if (ShowsSeveral(*name, setup.Displays)) {
      return wrong(*name + " shows several files together; plot draws it");
    }
    asked.Names.push_back(*name);
  }
  if (asked.Names.empty()) asked.Names.push_back(print.Display);
  return asked;
}

void AddPages(const std::string& file, LoadedProgram& loaded, const AskedPrint& asked,
              std::vector<Picture>& pages) {
  if (!loaded.Load(file)) return;
  PrintRequest request = asked.Print;
  for (std::size_t i = 0; i < asked.Names.size(); ++i) {
    request.Display = asked.Names[i];
    // All seven follow the last name.
    request.Setup.AllListings = asked.Print.Setup.AllListings && i + 1 == asked.Names.size();
    std::vector<Picture> more = PagesToPrint(loaded.Get(), request);
    if (more.empty()) {
      return loaded.In().Fail(
          file, {kFaultTooFewLevels, "AddPages", "there is no " + request.Display + " of it"});
    }
    std::ranges::move(more, std::back_inserter(pages));
  }
}

int RunPrint(const Arguments& arguments, Console& console) {
  const std::optional<std::string> output = arguments.Value("--output");
  if (!output) return UsageError(console, kPrintCommand, "no output is given with -o");
  if (!SameText(TextFromPath(PathFromText(*output).extension()), ".pdf")) {
    return UsageError(console, kPrintCommand, "\"" + *output + "\" does not end in .pdf");
  }
  if (const auto fault = NotAnInput(arguments, *output)) {
    return UsageError(console, kPrintCommand, fault->Detail);
  }
  const Outcome<CommandSetup> setup = SetupOf(arguments, console);
  if (!setup) return UsageError(console, kPrintCommand, setup.Error().Detail);
  const Outcome<AskedPrint> asked = ReadRequest(arguments, setup.Value());
  if (!asked) return UsageError(console, kPrintCommand, asked.Error().Detail);
  if (console.Tools == nullptr) return LacksToolkit(console, kPrintCommand, "PDF documents");
  LoadedProgram loaded(setup.Value(), console);
  std::vector<Picture> pages;
  for (const std::string& file : arguments.Files) AddPages(file, loaded, asked.Value(), pages);
  if (pages.empty()) return loaded.In().ExitCode();
  const Outcome<std::string> bytes = console.Tools->PagesAsPdf(pages);
  const std::optional<Fault> fault =
      bytes ? SaveFile(PathFromText(*output), bytes.Value()) : std::optional(bytes.Error());
  if (fault) loaded.In().Fail(*output, *fault);
  return loaded.In().ExitCode();
}

}  // namespace

const Command kPrintCommand = {{"print", "FILE-OR-FOLDER... -o OUT.pdf [options]",
                                "Prints displays and listings to a PDF document.", kPrintOptions},
                               RunPrint,
                               true};

}  // namespace vexa::cli
