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

#include "app/printing.h"
#include "app/qt_text.h"
#include "output/listings.h"
#include "output/paint/paint.h"
#include "program/print_displays.h"

namespace vexa {
namespace {

constexpr int kPreviewPx = 420;

template <class E>
QComboBox* Choice(const char* name, QWidget* parent) {
  auto* box = new QComboBox(parent);
  box->setObjectName(QString::fromLatin1(name));
  for (const std::string_view word : output::Words(E{})) box->addItem(ToQString(word));
  return box;
}

QCheckBox* Check(const char* name, const char* caption, bool isOn, QWidget* parent) {
  auto* box = new QCheckBox(QString::fromLatin1(caption), parent);
  box->setObjectName(QString::fromLatin1(name));
  box->setChecked(isOn);
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
  for (const PrintDisplay& there : PrintDisplays(program_)) {
    display_->addItem(ToQString(there.Name));
  }
  for (const output::ListingRow& row : output::Listings()) display_->addItem(ToQString(row.Name));
  orientation_ = Choice<output::Orientation>("Orientation", this);
  paper_ = Choice<output::Paper>("Paper", this);
  dataType_ = Check("IncludeDataType", " Include Data Type && # Data Levels", true, this);
  coordinates_ = Check("IncludeCoordinates", " Include Station Coordinates && Elev", true, this);
  darkLines_ = Check("DarkLines", " Dark lines", program_.Set.System.DarklinesMemory, this);
  title_ = new QLineEdit(ToQString(program_.Set.System.PrintTitleMemory), this);
  title_->setObjectName(QStringLiteral("PrintTitle"));
  allListings_ = Check("AllListings", " Print all 7 listings", false, this);
  page_ = new QSpinBox(this);
  page_->setObjectName(QStringLiteral("PreviewPage"));
  preview_ = new QLabel(this);
  preview_->setObjectName(QStringLiteral("Preview"));
  preview_->setMinimumSize(kPreviewPx, kPreviewPx);
  preview_->setAlignment(Qt::AlignCenter);
  print_ = new QPushButton(QStringLiteral("&Print"), this);
  print_->setObjectName(QStringLiteral("cmdPrint"));
  print_->setEnabled(HasPrinter());
  auto* toFile = new QPushButton(QStringLiteral("Print to P&DF..."), this);
  toFile->setObjectName(QStringLiteral("cmdPrintPdf"));
  auto* cancel = new QPushButton(QStringLiteral("&Cancel"), this);
  cancel->setObjectName(QStringLiteral("cmdCancel"));
  auto* noPrinter = new QLabel(QString::fromLatin1(kNoPrinter), this);
  noPrinter->setObjectName(QStringLiteral("NoPrinter"));
  noPrinter->setVisible(!HasPrinter());

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

output::PrintSetup PrintPlotWindow::Setup() const {
  return {.Sheet = static_cast<output::Paper>(paper_->currentIndex()),
          .Turn = static_cast<output::Orientation>(orientation_->currentIndex()),
          .Header = {.DataType = dataType_->isChecked(), .Coordinates = coordinates_->isChecked()},
          .AllListings = allListings_->isChecked()};
}

std::vector<const output::ListingRow*> PrintPlotWindow::ChosenListings() const {
  std::vector<const output::ListingRow*> rows;
  for (const output::ListingRow& row : output::Listings()) {
    if (allListings_->isChecked() || ToQString(row.Name) == display_->currentText()) {
      rows.push_back(&row);
    }
  }
  return rows;
}

std::vector<Picture> PrintPlotWindow::Pages() const {
  const output::ListingSource from{program_.Current.Record, program_.Results, program_.Set};
  const output::PrintSetup setup = Setup();
  std::vector<Picture> pages;
  for (const PrintDisplay& there : PrintDisplays(program_)) {
    if (display_->currentText() != ToQString(there.Name)) continue;
    output::ListingLines header = output::PageHeader(from, setup.Header);
    if (!there.Heading.empty()) header.insert(header.begin(), std::string(there.Heading));
    if (!title_->text().isEmpty()) header.insert(header.begin(), title_->text().toStdString());
    const Options set = PrintOptions(program_, darkLines_->isChecked());
    pages.push_back(output::DisplayPage(there.Draw(program_, set), header, setup));
  }
  for (Picture& page : output::PagesOfListings(ChosenListings(), from, setup)) {
    pages.push_back(std::move(page));
  }
  return pages;
}

void PrintPlotWindow::KeepChoices() {
  program_.Set.System.PrintTitleMemory = title_->text().toStdString();
  program_.Set.System.DarklinesMemory = darkLines_->isChecked();
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

std::optional<Fault> PrintPlotWindow::PrepareFiles() const {
  const output::ListingSource from{program_.Current.Record, program_.Results, program_.Set};
  if (program_.Where.Root.empty()) return std::nullopt;
  for (const output::ListingRow* row : ChosenListings()) {
    if (auto fault = output::PrepareListing(*row, from, Setup().Header, program_.Where.Root)) {
      return fault;
    }
  }
  return std::nullopt;
}

std::optional<Fault> PrintPlotWindow::PrintToPdf(const std::filesystem::path& path) {
  KeepChoices();
  if (auto fault = PrepareFiles()) return fault;
  return SaveSheetsAsPdf(program_, Pages(), path);
}

void PrintPlotWindow::PrintToFile() {
  KeepChoices();
  if (const auto fault = PrepareFiles()) return TellOfPrinting(program_, *fault);
  if (AskAndSavePdf(program_, Pages())) accept();
}

void PrintPlotWindow::Print() {
  KeepChoices();
  if (const auto fault = PrepareFiles()) return TellOfPrinting(program_, *fault);
  if (PrintSheets(program_, Pages(), this)) accept();
}

}  // namespace vexa
