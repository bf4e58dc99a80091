// A dialog with fields and tables in which Enter ends an entry and does not accept the whole.
#pragma once

#include <QDialog>
#include <QKeyEvent>

namespace vexa {

class EditorDialog : public QDialog {
 public:
  using QDialog::QDialog;

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    // A button in focus has taken its Enter already.
    if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter) {
      QDialog::keyPressEvent(event);
    }
  }
};

}  // namespace vexa
