#include "app/printer_module.h"

#include <QPrintDialog>
#include <QPrinter>
#include <QPrinterInfo>

namespace {

class PlatformPrinter : public vexa::Printer {
 public:
  QPagedPaintDevice& Device() override { return printer_; }
  void Name(const QString& job) override { printer_.setDocName(job); }
  bool Choose(QWidget* parent) override {
    return QPrintDialog(&printer_, parent).exec() == QDialog::Accepted;
  }
  void Abort() override { printer_.abort(); }

 private:
  QPrinter printer_{QPrinter::HighResolution};
};

}  // namespace

vexa::Printer* VexaPrinter() {
  return QPrinterInfo::availablePrinterNames().isEmpty() ? nullptr : new PlatformPrinter;
}
