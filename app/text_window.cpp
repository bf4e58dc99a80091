#include "app/text_window.h"

#include <algorithm>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <utility>

#include "app/named_controls.h"
#include "app/printing.h"
#include "app/qt_text.h"
#include "core/error_report.h"
#include "core/files.h"
#include "output/print_pages.h"
#include "program/print_work.h"

namespace vexa {

TextWindow::TextWindow(Program& program, ShownText text, QWidget* parent)
    : QDialog(parent), program_(program) {
  view_ = new QPlainTextEdit(this);
  view_->setObjectName(QStringLiteral("Text"));
  view_->setReadOnly(true);
  view_->setLineWrapMode(QPlainTextEdit::NoWrap);
  view_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  auto* buttons = new QHBoxLayout;
  const auto add = [&](const char* name, const char* caption, auto does) {
    return AddButton(*buttons, this, name, caption, does);
  };
  add("cmdSave", "&Save...", [this] { Save(); });
  add("cmdCopy", "&Copy", [this] {
    view_->selectAll();
    view_->copy();
  });
  add("cmdPrint", "&Print...", [this] { Print(); });
  add("cmdClose", "C&lose", [this] { close(); });
  auto* column = new QVBoxLayout(this);
  column->addWidget(view_, 1);
  column->addLayout(buttons);
  resize(760, 540);
  Show(std::move(text));
}

void TextWindow::Show(ShownText text) {
  text_ = std::move(text);
  setObjectName(ToQString(text_.Name));
  setWindowTitle(ToQString(text_.Title));
  QString shown;
  for (const std::string& line : text_.Lines) {
    if (line != output::kNewPage) shown += ToQString(line);
    shown += QLatin1Char('\n');
  }
  view_->setPlainText(shown);
}

std::vector<Picture> TextWindow::Pages() const {
  return output::ListingPages(text_.Lines, text_.Header, LastPrintSetup(program_));
}

std::optional<Fault> TextWindow::SaveAs(const std::filesystem::path& path) const {
  return SaveFile(path, output::ListingFileText(text_.Lines));
}

void TextWindow::Save() {
  const auto name = program_.Current.Ask->ChooseFile(
      {.Title = "Save Text",
       .Folder = TextFromPath(program_.Where.Export / PathFromText(text_.FileName)),
       .Filter = "*.txt|*.txt|*.dat|*.dat|*.*|*.*",
       .Saving = true});
  if (!name) return;
  if (const auto fault = SaveAs(PathFromText(*name))) program_.Doc.Report(*fault);
}

void TextWindow::Print() {
  PrintSheets(program_, Pages(), this);
}

}  // namespace vexa
