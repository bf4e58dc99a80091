#include "program/print_work.h"

#include <algorithm>
#include <iterator>
#include <system_error>
#include <type_traits>
#include <utility>

#include "core/files.h"
#include "core/key_lines.h"
#include "core/numbers.h"
#include "core/raw_file.h"
#include "core/source_text.h"
#include "core/user_file.h"
#include "ingest/archive.h"
#include "ingest/decoder.h"
#include "program/displays.h"
#include "program/wave_view.h"
#include "sounding/sounding_walk.h"

namespace vexa {
namespace {

using output::ListingLines;
using output::ListingRow;
using output::PrintSetup;

output::ListingSource SourceOf(const Program& program) {
  return {program.Current.Record, program.Results, program.Set, MountainsNow(program)};
}

ListingLines LinesOf(const std::string& bytes) {
  const SourceText text("text", bytes);
  ListingLines lines;
  for (int i = 1; i <= text.LineCount(); ++i) lines.emplace_back(text.Line(i));
  return lines;
}

ListingLines NoteLines(const Program& program) {
  const ListingLines& notes = program.Current.LoadNotes;
  return notes.empty() ? ListingLines{"There are no notes on this file."} : notes;
}
ListingLines RawLines(const Program& program) {
  const Outcome<ListingLines> lines = SourceLines(program);
  return lines ? lines.Value() : ListingLines{};
}

/// A text that is printed under the header as a listing is, while there is any of it.
struct PrintText {
  std::string_view Name;
  ListingLines (*Make)(const Program& program);
  bool (*IsThere)(const Program& program);
};

bool HasSounding(const Program& program) {
  return program.Current.Record.NumTempLevels() > 0;
}

constexpr PrintText kTexts[] = {
    {"NotePad", DecodedLines, HasSounding},
    {"NoteRaw", RawLines,
     [](const Program& program) {
       return !program.Current.FileName.empty() && IsOrdinaryFile(program.Current.FilePath());
     }},
    {"Notes", NoteLines, HasSounding},
};

std::vector<const ListingRow*> ListingsOf(const PrintRequest& request) {
  std::vector<const ListingRow*> rows;
  for (const ListingRow& row : output::Listings()) {
    if (request.Setup.AllListings || row.Name == request.Display) rows.push_back(&row);
  }
  return rows;
}

/// A line of the printer file: its key and the member it sets.
struct PrinterLine {
  std::string_view Key;
  std::string_view (*Word)(const PrintSetup& setup);
  bool (*Take)(PrintSetup& setup, std::string_view word);  // false: it does not know the word
};

template <auto kMember>
std::string_view WordOf(const PrintSetup& setup) {
  return output::Words(setup.*kMember)[static_cast<std::size_t>(setup.*kMember)];
}
template <auto kMember>
bool TakeWord(PrintSetup& setup, std::string_view word) {
  const auto words = output::Words(setup.*kMember);
  const auto found = std::ranges::find(words, word);
  if (found == words.end()) return false;
  setup.*kMember =
      static_cast<std::remove_reference_t<decltype(setup.*kMember)>>(found - words.begin());
  return true;
}
constexpr std::string_view YesOrNo(bool is) {
  return is ? "Yes" : "No";
}
bool TakeFlag(bool& flag, std::string_view word) {
  if (word != YesOrNo(true) && word != YesOrNo(false)) return false;
  flag = word == YesOrNo(true);
  return true;
}

constexpr PrinterLine kPrinterLines[] = {
    {"Orientation", WordOf<&PrintSetup::Turn>, TakeWord<&PrintSetup::Turn>},
    {"Paper", WordOf<&PrintSetup::Sheet>, TakeWord<&PrintSetup::Sheet>},
    {"Include Data Type", [](const PrintSetup& setup) { return YesOrNo(setup.Header.DataType); },
     [](PrintSetup& setup, std::string_view word) {
       return TakeFlag(setup.Header.DataType, word);
     }},
    {"Include Station Coordinates",
     [](const PrintSetup& setup) { return YesOrNo(setup.Header.Coordinates); },
     [](PrintSetup& setup, std::string_view word) {
       return TakeFlag(setup.Header.Coordinates, word);
     }},
    {"Print all 7 listings", [](const PrintSetup& setup) { return YesOrNo(setup.AllListings); },
     [](PrintSetup& setup, std::string_view word) { return TakeFlag(setup.AllListings, word); }},
};

// What is not understood of a printer file's text, a line each.
std::vector<std::string> ReadPrinterText(std::string_view text, PrintSetup& into) {
  std::vector<std::string> unknown;
  for (const KeyLines::Entry& entry : KeyLines(text).Entries()) {
    const auto* row = std::ranges::find(kPrinterLines, entry.Key, &PrinterLine::Key);
    if (row != std::end(kPrinterLines) && row->Take(into, entry.Value)) continue;
    unknown.push_back(AtLine(kPrinterFile, entry.Line, '"' + entry.Whole + "\" is not understood"));
  }
  return unknown;
}

// The pages of the sounding in work.
std::vector<Picture> PagesOf(const Program& program, const PrintRequest& request) {
  const output::ListingSource from = SourceOf(program);
  const ListingLines header = output::PageHeader(from, request.Setup.Header);
  std::vector<Picture> pages;
  const DisplayRow* display = FindDisplay(program.DisplayTable, request.Display);
  if (display != nullptr && LackOf(*display, program).empty()) {
    ListingLines above = header;
    if (!display->Heading.empty()) above.insert(above.begin(), std::string(display->Heading));
    if (!request.Title.empty()) above.insert(above.begin(), request.Title);
    const Options set = PrintOptions(program, request.DarkLines);
    const Surface on = output::DisplayRoom(above, request.Setup);
    pages.push_back(
        output::DisplayPage(DrawDisplay(*display, program, on, set), above, request.Setup));
  }
  const auto add = [&pages](std::vector<Picture> more) {
    std::ranges::move(more, std::back_inserter(pages));
  };
  for (const PrintText& text : kTexts) {
    if (text.Name != request.Display || !text.IsThere(program)) continue;
    add(output::ListingPages(text.Make(program), header, request.Setup));
  }
  add(output::PagesOfListings(ListingsOf(request), from, request.Setup));
  return pages;
}

}  // namespace

Options PrintOptions(const Program& program, bool darkLines) {
  Options set = program.Set;
  set.Screen = ScreenColor::White;
  if (darkLines) {
    set.Darklines = true;
    set.Scheme = ColorScheme::Darker;
  }
  return set;
}

std::vector<std::string_view> PrintableNames(const Program& program) {
  std::vector<std::string_view> names;
  for (const DisplayRow& display : program.DisplayTable) {
    if (LackOf(display, program).empty()) names.push_back(display.Id);
  }
  for (const PrintText& text : kTexts) {
    if (text.IsThere(program)) names.push_back(text.Name);
  }
  for (const ListingRow& row : output::Listings()) names.push_back(row.Name);
  return names;
}

std::vector<std::string_view> AllPrintableNames(std::span<const DisplayRow> displays) {
  std::vector<std::string_view> names = DisplayNames(displays);
  for (const PrintText& text : kTexts) names.push_back(text.Name);
  for (const ListingRow& row : output::Listings()) names.push_back(row.Name);
  return names;
}

std::vector<Picture> PagesToPrint(const Program& program, const PrintRequest& request) {
  std::vector<Picture> pages = PagesOf(program, request);
  if (program.View.Mode != diagram::MultiMode::Compare) return pages;
  const DisplayRow* display = FindDisplay(program.DisplayTable, request.Display);
  // The pages of the second sounding are those of a program that has it in work; what shows both
  // is there already.
  PrintRequest rest = request;
  if (display != nullptr && display->Mode != diagram::MultiMode::Single) rest.Display.clear();
  for (const SharedSounding& other : program.Others) {
    Program beside;
    beside.Settings = program.Settings;
    beside.Severe = program.Severe;
    beside.Where = program.Where;
    beside.Displays.Of<WaveView>() = program.Displays.Of<WaveView>();
    beside.View.Layout = program.View.Layout;
    beside.View.Lines = program.View.Lines;
    beside.Doc.Take(Document::GiveUpEdits(), {.From = other->From(),
                                              .Record = other->Record(),
                                              .Notes = other->Notes(),
                                              .Finding = other->Finding()});
    beside.Doc.Analyse(beside.Set, beside.Adiabats, {});
    FollowCatalogue(beside);
    std::ranges::move(PagesOf(beside, rest), std::back_inserter(pages));
  }
  return pages;
}

std::optional<Fault> PrepareToPrint(const Program& program, const PrintRequest& request,
                                    const std::filesystem::path& folder) {
  const output::ListingSource from = SourceOf(program);
  for (const ListingRow* row : ListingsOf(request)) {
    if (auto fault = output::PrepareListing(*row, from, request.Setup.Header, folder)) {
      return fault;
    }
  }
  return std::nullopt;
}

ListingLines DecodedLines(const Program& program) {
  return LinesOf(WriteRaw(program.Current.Record));
}

Outcome<ListingLines> SourceLines(const Program& program) {
  const int inFile = program.Doc.IndexInFile();
  const auto taken = SoundingWalk(program.Current.FilePath()).Take(inFile);
  if (!taken) return taken.Error();
  const SoundingWalk::Place& part = taken.Value();
  const ingest::SoundingPlace place = ingest::PlaceOf(part.Source.Text(), inFile - part.Before);
  const std::vector<ingest::SourceEntry> entries = ingest::ListSoundings(*place.Text);
  const auto index = static_cast<std::size_t>(place.Index);
  if (index >= entries.size() || entries[index].FirstLine == 0) {
    return LinesOf(place.Text->Bytes());
  }
  const int end = entries[index].EndLine;
  return LinesOf(
      place.Text->Part(entries[index].FirstLine, end > 0 ? end : place.Text->LineCount() + 1)
          .Bytes());
}

PrintSetup ReadPrinterFile(const std::filesystem::path& folder, std::vector<std::string>* notes) {
  PrintSetup setup;
  std::vector<std::string> told;
  if (const auto text = ReadUserFile(folder / PathFromText(kPrinterFile), told)) {
    for (const std::string& unknown : ReadPrinterText(*text, setup)) told.push_back(unknown + '.');
  }
  if (notes != nullptr) notes->insert(notes->end(), told.begin(), told.end());
  return setup;
}

PrintSetup LastPrintSetup(Program& program) {
  if (program.Where.Root.empty()) return {};
  return ReadPrinterFile(program.Where.Root, &program.Notices);
}

std::optional<Fault> WritePrinterFile(const std::filesystem::path& folder,
                                      const PrintSetup& setup) {
  const std::filesystem::path path = folder / PathFromText(kPrinterFile);
  const Outcome<std::string> before = ReadFile(path);
  KeyLines lines(before ? before.Value() : "");
  for (const PrinterLine& row : kPrinterLines) lines.Set(row.Key, row.Word(setup));
  return SaveUserFile(path, lines.Text(), [](std::string_view text) {
    PrintSetup read;
    const std::vector<std::string> unknown = ReadPrinterText(text, read);
    return unknown.empty() ? std::string() : unknown.front();
  });
}

}  // namespace vexa
