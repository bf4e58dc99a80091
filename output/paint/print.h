// Puts finished pages on a printer, a PDF file or any other paged device.
#pragma once

#include <filesystem>
#include <optional>
#include <QPagedPaintDevice>
#include <span>

#include "core/fault.h"
#include "core/interaction.h"
#include "picture/picture.h"

namespace vexa::paint {

inline constexpr const char* kPrintCancelled = "Cancelling Print";

/// Before the number of the fault, when the device refuses the paper or its orientation.
inline constexpr const char* kSetPrinterFailed = "SetPrinter Failed. Error code: ";

/// Sets the device's paper to the page's size, which is given in units of so many a point, without
/// margins: pages bring their own.
bool SetPaper(QPagedPaintDevice& device, const Picture& page, double unitsPerPoint);

/// The fault to tell when SetPaper was in vain: kSetPrinterFailed and its number.
Fault PaperRefused();

/// Paints every page, each on a sheet of its own. Fault 482 when the device fails, with
/// kSetPrinterFailed when it takes neither the paper nor its orientation, with kPrintCancelled when
/// the user stops between two pages.
[[nodiscard]] std::optional<Fault> PrintPages(std::span<const Picture> pages, double unitsPerPoint,
                                              QPagedPaintDevice& device, Progress progress = {});

/// The pages as the bytes of a PDF document.
Outcome<std::string> PagesAsPdf(std::span<const Picture> pages, double unitsPerPoint,
                                Progress progress = {});

}  // namespace vexa::paint
