// Editor of a sounding's source text. What is wrong with the text is said below it, with its line.
#pragma once

#include <functional>
#include <optional>
#include <QPlainTextEdit>
#include <string>

#include "app/editor_dialog.h"
#include "core/fault.h"
#include "program/source_edit.h"

class QLabel;

namespace vexa {

class TextEditor : public EditorDialog {
 public:
  /// accepted  takes the bytes of the edited text, or says why not: the window stays open then;
  ///           not called for a text that was left as it was
  /// remark    to be said below the text from the start
  TextEditor(const EditableText& source, const QString& title,
             std::function<std::optional<Fault>(const std::string&)> accepted,
             const std::string& remark, QWidget* parent);

  QPlainTextEdit* Edit() { return edit_; }
  bool Apply();

 protected:
  std::string Typed() const override { return edit_->toPlainText().toStdString(); }

 private:
  EditableText source_;
  QString shown_;  // as the text was before it was edited
  std::function<std::optional<Fault>(const std::string&)> accepted_;
  QPlainTextEdit* edit_ = nullptr;
  QLabel* place_ = nullptr;
  QLabel* remark_ = nullptr;
};

}  // namespace vexa
