// A dialog with fields and tables in which Enter ends an entry and does not accept the whole, and
// in which nothing that was typed is dropped without a question: Escape, Cancel and the window's
// cross ask first.
#pragma once

#include <QDialog>
#include <string>

#include "core/interaction.h"

class QAbstractItemView;

namespace vexa {

class EditorDialog : public QDialog {
 public:
  using QDialog::QDialog;

  /// Who is asked before something is dropped; null: nobody, it goes.
  void AskThrough(Interaction* user) { user_ = user; }
  void reject() override;

 protected:
  /// All that the user can type or choose here, as one text.
  virtual std::string Typed() const = 0;
  /// What is typed now has been taken over and may go.
  void Keep() { kept_ = Typed(); }
  Interaction* User() const { return user_; }
  /// A mark for Typed while a cell of a table is being typed into.
  static std::string TypingIn(const QAbstractItemView& table);

  void keyPressEvent(QKeyEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  Interaction* user_ = nullptr;
  bool wasShown_ = false;
  std::string kept_{};
};

}  // namespace vexa
