// Controls with the object names by which the help, the tests and --show know them.
#pragma once

#include <QBoxLayout>
#include <QCheckBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QString>

namespace vexa {

/// A button at the end of a row, which Enter does not press by itself.
template <class Does>
QPushButton* AddButton(QBoxLayout& row, QWidget* parent, const char* name, const char* caption,
                       Does does) {
  auto* button = new QPushButton(QString::fromLatin1(caption), parent);
  button->setObjectName(QString::fromLatin1(name));
  button->setAutoDefault(false);
  QObject::connect(button, &QPushButton::clicked, parent, does);
  row.addWidget(button);
  return button;
}

inline QCheckBox* NamedCheck(const char* name, const char* caption, bool isOn, QWidget* parent) {
  auto* box = new QCheckBox(QString::fromLatin1(caption), parent);
  box->setObjectName(QString::fromLatin1(name));
  box->setChecked(isOn);
  return box;
}

/// Ok and Cancel at the end of an editor; Ok closes it when what was entered can be applied.
template <class Apply>
void AddOkAndCancel(QBoxLayout& layout, QDialog* editor, Apply apply) {
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, editor);
  QObject::connect(buttons, &QDialogButtonBox::accepted, editor, [editor, apply] {
    if (apply()) editor->accept();
  });
  QObject::connect(buttons, &QDialogButtonBox::rejected, editor, &QDialog::reject);
  layout.addWidget(buttons);
}

}  // namespace vexa
