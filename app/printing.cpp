#include "app/printing.h"

#include <memory>
#include <string>

#include "app/printer.h"
#include "app/qt_text.h"
#include "core/error_report.h"
#include "core/files.h"
#include "output/paint/print.h"
#include "output/print_pages.h"
#include "program/displays.h"

namespace vexa {
namespace {

Progress ProgressOf(Program& program) {
  return program.Current.Ask == nullptr ? Progress() : Progress(*program.Current.Ask);
}

}  // namespace

std::optional<Fault> SaveSheetsAsPdf(Program& program, const std::vector<Picture>& pages,
                                     const std::filesystem::path& path) {
  const Outcome<std::string> bytes =
      paint::PagesAsPdf(pages, output::kUnitsPerPoint, ProgressOf(program));
  if (!bytes) return bytes.Error();
  std::optional<Fault> fault = SaveFile(path, bytes.Value());
  if (!fault) ProgressOf(program).Begin("Printed", 1);
  return fault;
}

void TellOfPrinting(Program& program, const Fault& fault) {
  if (program.Current.Ask == nullptr) return;
  if (fault.Detail == paint::kPrintCancelled) {
    program.Current.Ask->Ask(Box{.Title = std::string(kErrorBoxTitle), .Text = fault.Detail});
    return;
  }
  program.Doc.Report(fault);
}

bool AskAndSavePdf(Program& program, const std::vector<Picture>& pages) {
  if (program.Current.Ask == nullptr || pages.empty()) return false;
  const auto name = program.Current.Ask->ChooseFile(
      {.Title = "Print to PDF",
       .Folder = TextFromPath(program.Where.Export / PathFromText(PictureName(program))),
       .Filter = "PDF Files (*.PDF)|*.PDF",
       .Saving = true});
  if (!name) {
    TellOfPrinting(program, {kFaultPrinter, "AskAndSavePdf", paint::kPrintCancelled});
    return false;
  }
  const auto fault = SaveSheetsAsPdf(program, pages, PathFromText(*name));
  if (fault) TellOfPrinting(program, *fault);
  return !fault;
}

bool PrintSheets(Program& program, const std::vector<Picture>& pages, QWidget* parent) {
  if (pages.empty()) return false;
  const std::unique_ptr<Printer> printer = FindPrinter();
  if (printer == nullptr) {
    program.Current.Ask->Ask(Box{
        .Title = std::string(kErrorBoxTitle), .Text = kNoPrinter, .Icon = BoxIcon::Information});
    return AskAndSavePdf(program, pages);
  }
  if (!paint::SetPaper(printer->Device(), pages.front(), output::kUnitsPerPoint)) {
    TellOfPrinting(program, paint::PaperRefused());
    return false;
  }
  printer->Name(ToQString("VEXA " + program.Current.FileName));
  if (!printer->Choose(parent)) {
    TellOfPrinting(program, {kFaultPrinter, "PrintSheets", paint::kPrintCancelled});
    return false;
  }
  const auto fault =
      paint::PrintPages(pages, output::kUnitsPerPoint, printer->Device(), ProgressOf(program));
  if (!fault) return true;
  if (fault->Detail == paint::kPrintCancelled) printer->Abort();
  TellOfPrinting(program, *fault);
  return false;
}

}  // namespace vexa
