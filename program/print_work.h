// What one print puts on paper: the display or listing, the header and the sheet, chosen in the
// print window or by the words of the command line, which both give the same pages.
#pragma once

#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/fault.h"
#include "output/listings.h"
#include "output/print_pages.h"
#include "picture/picture.h"
#include "program/program.h"

namespace vexa {

struct PrintRequest {
  std::string Display = "Sounding";  // or the name of a text or listing, "SummaryData"
  std::string Title{};               // above the header of a display
  bool DarkLines = false;
  output::PrintSetup Setup{};
};

/// The names that can be printed now: displays, texts and listings.
std::vector<std::string_view> PrintableNames(const Program& program);

/// All of them, those too that there is nothing of now.
std::vector<std::string_view> AllPrintableNames(std::span<const DisplayRow> displays);

/// The options under which a display is printed: on white paper, with dark lines where wanted.
Options PrintOptions(const Program& program, bool darkLines);

/// The pages of a print. A name of which there is nothing now gives no page.
std::vector<Picture> PagesToPrint(const Program& program, const PrintRequest& request);

/// Writes the files of the listings to be printed into a folder.
[[nodiscard]] std::optional<Fault> PrepareToPrint(const Program& program,
                                                  const PrintRequest& request,
                                                  const std::filesystem::path& folder);

/// The text of the sounding as it was decoded, and its file as it came; empty without a file.
output::ListingLines DecodedLines(const Program& program);
Outcome<output::ListingLines> SourceLines(const Program& program);

inline constexpr std::string_view kPrinterFile = "PRINTER.DAT";

/// The sheet and header of the last print, from kPrinterFile in the program's folder. What the
/// file does not say, or says in no known word, has its default.
///
/// notes  where a sentence goes for each line that is not understood; null: nowhere
output::PrintSetup ReadPrinterFile(const std::filesystem::path& folder,
                                   std::vector<std::string>* notes = nullptr);
/// That of the program's folder; the default while there is none. What is not understood of it goes
/// to the notices.
output::PrintSetup LastPrintSetup(Program& program);
/// Faults as of SaveUserFile.
[[nodiscard]] std::optional<Fault> WritePrinterFile(const std::filesystem::path& folder,
                                                    const output::PrintSetup& setup);

}  // namespace vexa
