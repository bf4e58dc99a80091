#include "app/editor_dialog.h"

#include <QAbstractItemView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QShowEvent>

namespace vexa {

void EditorDialog::reject() {
  if (user_ != nullptr && !user_->Unattended() && Typed() != kept_ &&
      user_->Ask({.Title = windowTitle().toStdString(),
                  .Text = "What was changed here has not been taken over.\n"
                          "Do you want to drop it?",
                  .Icon = BoxIcon::Question,
                  .Buttons = BoxButtons::YesNo,
                  .WhenSilent = Answer::No}) != Answer::Yes) {
    return;
  }
  QDialog::reject();
}

std::string EditorDialog::TypingIn(const QAbstractItemView& table) {
  const auto* cell = table.viewport()->findChild<QLineEdit*>();
  return cell != nullptr && cell->isModified() ? cell->text().toStdString() + "\n" : std::string();
}

void EditorDialog::keyPressEvent(QKeyEvent* event) {
  // A button in focus has taken its Enter already.
  if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter) {
    QDialog::keyPressEvent(event);
  }
}

void EditorDialog::showEvent(QShowEvent* event) {
  if (!wasShown_) Keep();
  wasShown_ = true;
  QDialog::showEvent(event);
}

}  // namespace vexa
