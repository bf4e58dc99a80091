// The panel of four parcels side by side; the fourth is the user's own.
#pragma once

#include "analysis/analysis.h"
#include "app/panel.h"
#include "program/program.h"

class QDoubleSpinBox;
class QTableWidget;

namespace vexa {

class ParcelDock : public Panel {
 public:
  ParcelDock(const Program& program, QWidget* parent);

  /// Fills in the parcels of the sounding in work. The own parcel starts as the surface's until the
  /// user has set it.
  void Follow() override;

 private:
  void Build() override;
  QDoubleSpinBox* AddNumber(const char* name, double least, double most);
  void Fill();

  const Program& program_;
  QTableWidget* table_ = nullptr;
  QDoubleSpinBox* press_ = nullptr;
  QDoubleSpinBox* temp_ = nullptr;
  QDoubleSpinBox* dewpt_ = nullptr;
  bool isSet_ = false;
};

}  // namespace vexa
