#include "app/text_editor.h"

#include <QFontDatabase>
#include <QLabel>
#include <QPlainTextEdit>
#include <QVBoxLayout>
#include <utility>

#include "app/named_controls.h"
#include "app/qt_text.h"
#include "app/remark_label.h"

namespace vexa {

TextEditor::TextEditor(const EditableText& source, const QString& title,
                       std::function<std::optional<Fault>(const std::string&)> accepted,
                       const std::string& remark, QWidget* parent)
    : EditorDialog(parent), source_(source), accepted_(std::move(accepted)) {
  setObjectName(QStringLiteral("TextEditor"));
  setWindowTitle(title + QStringLiteral(" - ") + ToQString(source.Name));
  auto* layout = new QVBoxLayout(this);
  edit_ = new QPlainTextEdit(this);
  edit_->setObjectName(QStringLiteral("SourceText"));
  edit_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  edit_->setLineWrapMode(QPlainTextEdit::NoWrap);
  edit_->setTabChangesFocus(true);  // else no key would leave the text
  edit_->setPlainText(ToQString(source.Text));
  shown_ = edit_->toPlainText();
  layout->addWidget(edit_, 1);
  place_ = new QLabel(this);
  layout->addWidget(place_);
  connect(edit_, &QPlainTextEdit::cursorPositionChanged, this, [this] {
    const QTextCursor cursor = edit_->textCursor();
    place_->setText(QStringLiteral("Line %1, column %2")
                        .arg(cursor.blockNumber() + 1)
                        .arg(cursor.positionInBlock() + 1));
  });
  remark_ = new RemarkLabel(ToQString(remark), this);
  remark_->setObjectName(QStringLiteral("TextRemark"));
  layout->addWidget(remark_);
  AddOkAndCancel(*layout, this, [this] { return Apply(); });
  resize(760, 560);
}

bool TextEditor::Apply() {
  const QString edited = edit_->toPlainText();
  if (edited == shown_) return true;
  const Outcome<std::string> bytes = BytesOf(source_, edited.toStdString());
  const std::optional<Fault> fault = bytes ? accepted_(bytes.Value()) : bytes.Error();
  if (!fault) {
    Keep();
    return true;
  }
  remark_->setText(ToQString(fault->Detail.empty() ? "The text holds no sounding that can be read."
                                                   : fault->Detail));
  return false;
}

}  // namespace vexa
