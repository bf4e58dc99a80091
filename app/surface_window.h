// The dialog that sets temperature, dew point and wind at the surface and mixes the air above; the
// diagram follows while it is open.
#pragma once

#include <functional>
#include <QDialog>

#include "core/sounding_record.h"
#include "program/program.h"

class QCheckBox;
class QDoubleSpinBox;
class QLabel;

namespace vexa {

class SurfaceWindow : public QDialog {
 public:
  SurfaceWindow(Program& program, std::function<void(Changes)> show, QWidget* parent);

  /// Keeps the sounding as it is shown, as one edit.
  void accept() override;
  /// Brings back the sounding from before.
  void reject() override;

 private:
  QDoubleSpinBox* AddNumber(const char* name, double least, double most, int decimals);
  void Try();
  void Put(SoundingRecord record);

  Program& program_;
  std::function<void(Changes)> show_;
  SoundingRecord before_;
  QDoubleSpinBox* temp_ = nullptr;
  QDoubleSpinBox* dewpt_ = nullptr;
  QDoubleSpinBox* dir_ = nullptr;
  QDoubleSpinBox* spd_ = nullptr;
  QCheckBox* mix_ = nullptr;
  QLabel* message_ = nullptr;
};

}  // namespace vexa
