// The way of finished pages to paper: the printer that the platform's dialog chooses, or a PDF file
// where there is none.
#pragma once

#include <filesystem>
#include <optional>
#include <vector>

#include "core/fault.h"
#include "picture/picture.h"
#include "program/program.h"

class QWidget;

namespace vexa {

inline constexpr const char* kNoPrinter = "There is no printer. Pages can be saved as PDF.";

/// Writes pages as a PDF file. Fault 482 with "Cancelling Print" when the user stops.
std::optional<Fault> SaveSheetsAsPdf(Program& program, const std::vector<Picture>& pages,
                                     const std::filesystem::path& path);

/// Shows a printing fault; a cancelled print is no fault, and a box says so.
void TellOfPrinting(Program& program, const Fault& fault);

/// Prints pages with the platform's dialog. True when all are printed; a fault is told.
bool PrintSheets(Program& program, const std::vector<Picture>& pages, QWidget* parent);

/// Asks for a PDF file and writes the pages. True when it is written.
bool AskAndSavePdf(Program& program, const std::vector<Picture>& pages);

}  // namespace vexa
