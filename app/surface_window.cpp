#include "app/surface_window.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QLabel>
#include <utility>

#include "app/qt_text.h"
#include "app/remark_label.h"
#include "core/markers.h"
#include "program/level_drag.h"
#include "program/surface_edit.h"

namespace vexa {

SurfaceWindow::SurfaceWindow(Program& program, std::function<void(Changes)> show, QWidget* parent)
    : QDialog(parent), program_(program), show_(std::move(show)), before_(program.Current.Record) {
  setObjectName(QStringLiteral("SurfaceValues"));
  setWindowTitle(QStringLiteral("Surface Values"));
  const SurfaceValues now = SurfaceOf(before_).value_or(SurfaceValues{});
  temp_ = AddNumber("SurfaceTemp", -90, 60, 1);
  dewpt_ = AddNumber("SurfaceDewpt", -120, 60, 1);
  dir_ = AddNumber("SurfaceDir", 1, 360, 0);
  spd_ = AddNumber("SurfaceSpd", 0, 250, 0);
  temp_->setValue(now.Temp);
  dewpt_->setValue(IsMissing(now.Dewpt) ? now.Temp : now.Dewpt);
  dir_->setEnabled(now.Dir.has_value());
  spd_->setEnabled(now.Spd.has_value());
  dir_->setValue(now.Dir.value_or(360));
  spd_->setValue(now.Spd.value_or(0));
  mix_ = new QCheckBox(QStringLiteral("&Mix the air above up to where it is warmer"), this);
  mix_->setObjectName(QStringLiteral("SurfaceMix"));
  message_ = new RemarkLabel(this);
  message_->setObjectName(QStringLiteral("SurfaceMessage"));
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  connect(buttons, &QDialogButtonBox::accepted, this, [this] { accept(); });
  connect(buttons, &QDialogButtonBox::rejected, this, [this] { reject(); });
  auto* form = new QFormLayout(this);
  form->addRow(QStringLiteral("&Temperature, C"), temp_);
  form->addRow(QStringLiteral("&Dew point, C"), dewpt_);
  form->addRow(QStringLiteral("Wind d&irection, degrees"), dir_);
  form->addRow(QStringLiteral("Wind &speed, kts"), spd_);
  form->addRow(mix_);
  form->addRow(message_);
  form->addRow(buttons);
  for (QDoubleSpinBox* box : {temp_, dewpt_, dir_, spd_}) {
    connect(box, &QDoubleSpinBox::valueChanged, this, [this] { Try(); });
  }
  connect(mix_, &QCheckBox::toggled, this, [this] { Try(); });
}

QDoubleSpinBox* SurfaceWindow::AddNumber(const char* name, double least, double most,
                                         int decimals) {
  auto* box = new QDoubleSpinBox(this);
  box->setObjectName(QString::fromUtf8(name));
  box->setLocale(QLocale::c());
  box->setDecimals(decimals);
  box->setKeyboardTracking(false);  // a number that is half typed is not taken
  box->setRange(least, most);
  return box;
}

void SurfaceWindow::Put(SoundingRecord record) {
  if (record == program_.Current.Record || !program_.Gate.IsOpen()) return;
  program_.Doc.Try(std::move(record));
  const Silenced quiet = program_.Doc.Quiet();
  show_({.Sounding = true});
}

void SurfaceWindow::Try() {
  SoundingRecord tried = before_;
  SurfaceValues to{temp_->value(), dewpt_->value(), {}, {}};
  if (dir_->isEnabled()) {
    to.Dir = dir_->value();
    to.Spd = spd_->value();
  }
  if (const auto fault = SetSurface(tried, to)) {
    message_->setText(ToQString(fault->Detail));
    return;
  }
  const bool mixed = mix_->isChecked() && HotMix(tried, program_.Set);
  message_->setText(mix_->isChecked() && !mixed
                        ? QStringLiteral("The air above is too stable to be mixed.")
                        : QString());
  Put(std::move(tried));
}

void SurfaceWindow::accept() {
  program_.Doc.Keep("change surface");
  show_({.View = true});  // the undo entry follows
  QDialog::accept();
}

void SurfaceWindow::reject() {
  Put(before_);
  QDialog::reject();
}

}  // namespace vexa
