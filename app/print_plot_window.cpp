#include "app/print_plot_window.h"

#include <algorithm>
#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QPixmap>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>
#include <string>

#include "app/named_controls.h"
#include "app/printer.h"
#include "app/printing.h"
#include "app/qt_text.h"
#include "output/paint/paint.h"
#include "program/displays.h"
#include "program/print_work.h"

namespace vexa {
namespace {

constexpr int kPreviewPx = 420;

template <class E>
QComboBox* Choice(const char* name, E now, QWidget* parent) {
  auto* box = new QComboBox(parent);
  box->setObjectName(QString::fromLatin1(name));
  for (const std::string_view word : output::Words(now)) box->addItem(ToQString(word));
  box->setCurrentIndex(static_cast<int>(now));
  return box;
}

}  // namespace

PrintPlotWindow::PrintPlotWindow(Program& program, QWidget* parent)
    : QDialog(parent), program_(program) {
  setObjectName(QStringLiteral("PrintPlot"));
  setWindowTitle(QStringLiteral("Print"));
  BuildControls();
  ShowPreview();
}

void PrintPlotWindow::BuildControls() {
  display_ = new QComboBox(this);
  display_->setObjectName(QStringLiteral("DisplayToPrint"));
  for (const std::string_view name : PrintableNames(program_)) display_->addItem(ToQString(name));
  display_->setCurrentText(ToQString(DiagramNow(program_).Id));
  const output::PrintSetup last = LastPrintSetup(program_);
  orientation_ = Choice("Orientation", last.Turn, this);
  paper_ = Choice("Paper", last.Sheet, this);
  dataType_ = NamedCheck("IncludeDataType", " Include Data Type && # Data Levels",
                         last.Header.DataType, this);
  coordinates_ = NamedCheck("IncludeCoordinates", " Include Station Coordinates && Elev",
                            last.Header.Coordinates, this);
  darkLines_ = NamedCheck("DarkLines", " Dark lines", program_.Set.System.DarklinesMemory, this);
  title_ = new QLineEdit(ToQString(program_.Set.System.PrintTitleMemory), this);
  title_->setObjectName(QStringLiteral("PrintTitle"));
  allListings_ = NamedCheck("AllListings", " Print all 7 listings", last.AllListings, this);
  page_ = new QSpinBox(this);
  page_->setObjectName(QStringLiteral("PreviewPage"));
  preview_ = new QLabel(this);
  preview_->setObjectName(QStringLiteral("Preview"));
  preview_->setMinimumSize(kPreviewPx, kPreviewPx);
  preview_->setAlignment(Qt::AlignCenter);
  print_ = new QPushButton(QStringLiteral("&Print"), this);
  print_->setObjectName(QStringLiteral("cmdPrint"));
  const bool hasPrinter = FindPrinter() != nullptr;
  print_->setEnabled(hasPrinter);
  auto* toFile = new QPushButton(QStringLiteral("Print to P&DF..."), this);
  toFile->setObjectName(QStringLiteral("cmdPrintPdf"));
  auto* cancel = new QPushButton(QStringLiteral("&Cancel"), this);
  cancel->setObjectName(QStringLiteral("cmdCancel"));
  auto* noPrinter = new QLabel(QString::fromLatin1(kNoPrinter), this);
  noPrinter->setObjectName(QStringLiteral("NoPrinter"));
  noPrinter->setVisible(!hasPrinter);

  auto* form = new QFormLayout;
  form->addRow(QStringLiteral("&Display"), display_);
  form->addRow(QStringLiteral("&Orientation"), orientation_);
  form->addRow(QStringLiteral("P&aper"), paper_);
  form->addRow(QStringLiteral("&Title"), title_);
  for (QCheckBox* box : {dataType_, coordinates_, darkLines_, allListings_}) form->addRow(box);
  form->addRow(QStringLiteral("Preview of pa&ge"), page_);
  form->addRow(noPrinter);
  for (QPushButton* button : {print_, toFile, cancel}) form->addRow(button);
  auto* columns = new QHBoxLayout(this);
  columns->addLayout(form);
  columns->addWidget(preview_, 1);

  for (QComboBox* box : {display_, orientation_, paper_}) {
    connect(box, &QComboBox::currentIndexChanged, this, [this] { ShowPreview(); });
  }
  for (QCheckBox* box : {dataType_, coordinates_, darkLines_, allListings_}) {
    connect(box, &QCheckBox::toggled, this, [this] { ShowPreview(); });
  }
  connect(title_, &QLineEdit::editingFinished, this, [this] { ShowPreview(); });
  connect(page_, &QSpinBox::valueChanged, this, [this] { ShowPreview(); });
  connect(print_, &QPushButton::clicked, this, [this] { Print(); });
  connect(toFile, &QPushButton::clicked, this, [this] { PrintToFile(); });
  connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
}

PrintRequest PrintPlotWindow::Request() const {
  return {.Display = display_->currentText().toStdString(),
          .Title = title_->text().toStdString(),
          .DarkLines = darkLines_->isChecked(),
          .Setup = {.Sheet = static_cast<output::Paper>(paper_->currentIndex()),
                    .Turn = static_cast<output::Orientation>(orientation_->currentIndex()),
                    .Header = {.DataType = dataType_->isChecked(),
                               .Coordinates = coordinates_->isChecked()},
                    .AllListings = allListings_->isChecked()}};
}

std::vector<Picture> PrintPlotWindow::Pages() const {
  return PagesToPrint(program_, Request());
}

void PrintPlotWindow::ShowPreview() {
  const std::vector<Picture> pages = Pages();
  const QSignalBlocker silent(page_);
  page_->setRange(1, std::max(1, static_cast<int>(pages.size())));
  if (pages.empty()) return preview_->clear();
  const Picture& page = pages[static_cast<std::size_t>(page_->value()) - 1];
  const double scale = kPreviewPx / std::max(page.Width(), page.Height());
  preview_->setPixmap(QPixmap::fromImage(
      paint::ToImage(page, qRound(page.Width() * scale), qRound(page.Height() * scale))));
}

std::optional<Fault> PrintPlotWindow::Prepare() {
  const PrintRequest request = Request();
  program_.Set.System.PrintTitleMemory = request.Title;
  program_.Set.System.DarklinesMemory = request.DarkLines;
  const std::filesystem::path& folder = program_.Where.Root;
  if (folder.empty()) return std::nullopt;
  if (auto fault = WritePrinterFile(folder, request.Setup)) return fault;
  return PrepareToPrint(program_, request, folder);
}

void PrintPlotWindow::PrintToFile() {
  if (const auto fault = Prepare()) return TellOfPrinting(program_, *fault);
  if (AskAndSavePdf(program_, Pages())) accept();
}

void PrintPlotWindow::Print() {
  if (const auto fault = Prepare()) return TellOfPrinting(program_, *fault);
  if (PrintSheets(program_, Pages(), this)) accept();
}

}  // namespace vexa
