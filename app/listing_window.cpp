#include "app/listing_window.h"

#include <cstddef>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>
#include <string>
#include <utility>

#include "app/named_controls.h"
#include "app/printing.h"
#include "app/qt_text.h"
#include "core/error_report.h"
#include "core/files.h"
#include "output/print_pages.h"
#include "program/print_work.h"
#include "program/wave_view.h"

namespace vexa {
namespace {

output::ListingSource SourceOf(const Program& program) {
  return {program.Current.Record, program.Results, program.Set, MountainsNow(program)};
}

// "SummaryData" is the page "Summary".
std::string CaptionOfTab(std::string_view name) {
  return std::string(name.substr(0, name.size() - std::string_view("Data").size()));
}

}  // namespace

ListingWindow::ListingWindow(Program& program, QWidget* parent)
    : QDialog(parent), program_(program) {
  setObjectName(QStringLiteral("Listings"));
  setWindowTitle(QStringLiteral("Listings"));
  tabs_ = new QTabWidget(this);
  for (const output::ListingRow& row : output::Listings()) {
    auto* text = new QPlainTextEdit(tabs_);
    text->setObjectName(ToQString(row.Name));
    text->setReadOnly(true);
    text->setLineWrapMode(QPlainTextEdit::NoWrap);
    text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    tabs_->addTab(text, ToQString(CaptionOfTab(row.Name)));
    texts_.push_back(text);
  }
  auto* buttons = new QHBoxLayout;
  const auto add = [&](const char* name, const char* caption, auto does) {
    return AddButton(*buttons, this, name, caption, does);
  };
  add("cmdSave", "&Save...", [this] {
    const auto chosen = program_.Current.Ask->ChooseFile(
        {.Title = "Save Listing",
         .Folder = TextFromPath(program_.Where.Export / PathFromText(Shown().File)),
         .Filter = "*.dat|*.dat|*.txt|*.txt|*.*|*.*",
         .Saving = true});
    if (!chosen) return;
    const std::string text = output::ListingFileText(Shown().Make(SourceOf(program_)));
    if (const auto fault = SaveFile(PathFromText(*chosen), text)) {
      program_.Doc.Report(*fault);
    }
  });
  add("cmdCopy", "&Copy", [this] {
    auto* text = texts_[static_cast<std::size_t>(tabs_->currentIndex())];
    text->selectAll();
    text->copy();
  });
  add("cmdPrint", "&Print...", [this] {
    const output::ListingRow* row = &Shown();
    const auto from = SourceOf(program_);
    const output::PrintSetup setup = LastPrintSetup(program_);
    if (!program_.Where.Root.empty()) {
      if (const auto fault =
              output::PrepareListing(*row, from, setup.Header, program_.Where.Root)) {
        program_.Doc.Report(*fault);
        return;
      }
    }
    PrintSheets(program_, output::PagesOfListings({&row, 1}, from, setup), this);
  });
  add("cmdClose", "C&lose", [this] { close(); });
  auto* column = new QVBoxLayout(this);
  column->addWidget(tabs_, 1);
  column->addLayout(buttons);
  resize(760, 540);
  Follow();
}

const output::ListingRow& ListingWindow::Shown() const {
  return output::Listings()[static_cast<std::size_t>(tabs_->currentIndex())];
}

void ListingWindow::Follow() {
  const auto from = SourceOf(program_);
  for (std::size_t i = 0; i < texts_.size(); ++i) {
    QString shown;
    for (const std::string& line : output::Listings()[i].Make(from)) {
      if (line != output::kNewPage) shown += ToQString(line);
      shown += QLatin1Char('\n');
    }
    texts_[i]->setPlainText(shown);
  }
}

}  // namespace vexa
