#include "app/parcel_dock.h"

#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QHeaderView>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QTableWidget>
#include <QVBoxLayout>
#include <vector>

#include "app/qt_text.h"
#include "program/parcel_table.h"

namespace vexa {

ParcelDock::ParcelDock(const Program& program, QWidget* parent)
    : Panel(QStringLiteral("Four Parcels"), parent), program_(program) {
  setObjectName(QStringLiteral("FourParcels"));
}

void ParcelDock::Build() {
  auto* inside = new QWidget(this);
  auto* layout = new QVBoxLayout(inside);
  table_ = new QTableWidget(0, kShownParcels, inside);
  table_->setObjectName(QStringLiteral("ParcelTable"));
  table_->setAccessibleName(QStringLiteral("Four parcels side by side"));
  table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  table_->setTabKeyNavigation(false);
  QStringList titles;
  for (const std::string& title : ParcelTitles()) {
    titles << ToQString(title).replace(QLatin1Char(' '), QLatin1Char('\n'));
  }
  table_->setHorizontalHeaderLabels(titles);
  table_->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
  layout->addWidget(table_);
  press_ = AddNumber("OwnPress", 100, 1100);
  temp_ = AddNumber("OwnTemp", -90, 60);
  dewpt_ = AddNumber("OwnDewpt", -120, 60);
  auto* form = new QFormLayout;
  form->addRow(QStringLiteral("Own &pressure, mb"), press_);
  form->addRow(QStringLiteral("Own &temperature, C"), temp_);
  form->addRow(QStringLiteral("Own &dew point, C"), dewpt_);
  layout->addLayout(form);
  auto* surface = new QPushButton(QStringLiteral("As at the &surface"), inside);
  surface->setObjectName(QStringLiteral("OwnFromSurface"));
  connect(surface, &QPushButton::clicked, this, [this] {
    isSet_ = false;
    Follow();
  });
  layout->addWidget(surface);
  setWidget(inside);
}

QDoubleSpinBox* ParcelDock::AddNumber(const char* name, double least, double most) {
  auto* box = new QDoubleSpinBox(this);
  box->setObjectName(QString::fromUtf8(name));
  box->setLocale(QLocale::c());
  box->setDecimals(1);
  box->setRange(least, most);
  connect(box, &QDoubleSpinBox::valueChanged, this, [this] {
    isSet_ = true;
    Fill();
  });
  return box;
}

void ParcelDock::Follow() {
  if (!isVisible()) return;
  if (!isSet_) {
    const analysis::ParcelStart start = OwnParcel(program_);
    const QSignalBlocker quiet[] = {QSignalBlocker(press_), QSignalBlocker(temp_),
                                    QSignalBlocker(dewpt_)};
    if (start.Exists()) {
      press_->setValue(start.Press);
      temp_->setValue(start.Temp);
      dewpt_->setValue(start.Dewpt);
    }
  }
  Fill();
}

void ParcelDock::Fill() {
  const std::vector<ParcelLine> lines =
      ParcelTable(program_, {press_->value(), temp_->value(), dewpt_->value()});
  table_->setRowCount(static_cast<int>(lines.size()));
  int row = 0;
  for (const ParcelLine& line : lines) {
    table_->setVerticalHeaderItem(row, new QTableWidgetItem(ToQString(line.Label)));
    int column = 0;
    for (const std::string& value : line.Values) {
      auto* item = new QTableWidgetItem(ToQString(value));
      item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
      table_->setItem(row, column++, item);
    }
    ++row;
  }
  // Four columns side by side are what the panel is for: none may be scrolled out of sight.
  table_->setMinimumWidth(table_->verticalHeader()->sizeHint().width() +
                          table_->horizontalHeader()->length() + 2 * table_->frameWidth() +
                          table_->verticalScrollBar()->sizeHint().width());
}

}  // namespace vexa
