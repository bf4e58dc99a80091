#include "app/loop_window.h"

#include <QCheckBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>

#include "app/option_control.h"
#include "config/catalogue.h"
#include "program/sounding_loop.h"

namespace vexa {

bool EditLoop(Program& program, QWidget* parent) {
  QDialog dialog(parent);
  dialog.setObjectName(QStringLiteral("LoopOptions"));
  dialog.setWindowTitle(QStringLiteral("Loop Options"));
  auto* form = new QFormLayout(&dialog);
  QDoubleSpinBox* hold = MakeNumberBox(*FindOption("Movie time"), &dialog);
  hold->setObjectName(QStringLiteral("MovieTime"));
  hold->setValue(program.Set.System.MovieTime);
  form->addRow(QStringLiteral("&Image hold time"), hold);
  auto* skip = new QCheckBox(QStringLiteral("Skip &bad soundings"), &dialog);
  skip->setObjectName(QStringLiteral("Skiploop"));
  skip->setChecked(program.Set.System.SkipLoop);
  form->addRow(skip);
  auto* keep = new QCheckBox(QStringLiteral("&Keep the axes of the first picture"), &dialog);
  keep->setObjectName(QStringLiteral("LoopNoReScaling"));
  keep->setChecked(program.Set.System.LoopNoRescaling);
  form->addRow(keep);
  if (!CanLoop(program)) {
    form->addRow(new QLabel(QStringLiteral("Open several soundings together to loop through them."),
                            &dialog));
  }
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
  auto* start = buttons->addButton(QStringLiteral("&Start Loop"), QDialogButtonBox::ActionRole);
  start->setObjectName(QStringLiteral("StartLoop"));
  start->setEnabled(CanLoop(program));
  form->addRow(buttons);
  bool starts = false;
  QObject::connect(start, &QPushButton::clicked, &dialog, [&] {
    starts = true;
    dialog.accept();
  });
  QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
  QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
  if (dialog.exec() != QDialog::Accepted) return false;
  program.Set.System.MovieTime = hold->value();
  program.Set.System.SkipLoop = skip->isChecked();
  program.Set.System.LoopNoRescaling = keep->isChecked();
  return starts;
}

}  // namespace vexa
