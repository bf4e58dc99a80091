#include "app/printer.h"

#include "app/printer_module.h"
#include "core/late_library.h"

namespace vexa {
namespace {

using MakePrinter = decltype(VexaPrinter);

#ifdef VEXA_PRINTER_MODULE
MakePrinter* PrinterMaker() {
  static const LateLibrary kModule(VEXA_PRINTER_MODULE);
  return kModule.Find<MakePrinter>("VexaPrinter");
}
#else
MakePrinter* PrinterMaker() {
  return &VexaPrinter;
}
#endif

}  // namespace

std::unique_ptr<Printer> FindPrinter() {
  MakePrinter* const make = PrinterMaker();
  return std::unique_ptr<Printer>(make == nullptr ? nullptr : make());
}

}  // namespace vexa
