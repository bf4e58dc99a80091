// Editor of a sounding's source text. What is wrong with the text is said below it, with its line.
#pragma once

#include <functional>
#include <optional>
#include <QDialog>
#include <string>

#include "core/fault.h"
#include "program/source_edit.h"

class QLabel;
class QPlainTextEdit;

namespace vexa {

class TextEditor : public QDialog {
 public:
  /// accepted  takes the bytes of the edited text, or says why not: the window stays open then
  TextEditor(const EditableText& source, const QString& title,
             std::function<std::optional<Fault>(const std::string&)> accepted, QWidget* parent);

  QPlainTextEdit* Edit() { return edit_; }
  bool Apply();

 private:
  EditableText source_;
  std::function<std::optional<Fault>(const std::string&)> accepted_;
  QPlainTextEdit* edit_ = nullptr;
  QLabel* place_ = nullptr;
  QLabel* remark_ = nullptr;
};

}  // namespace vexa
