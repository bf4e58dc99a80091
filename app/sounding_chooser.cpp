#include "app/sounding_chooser.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/qt_text.h"

namespace vexa {

SoundingChooser::SoundingChooser(const std::vector<std::string>& titles, QWidget* parent)
    : QDialog(parent) {
  setObjectName(QStringLiteral("ChooseSounding"));
  setWindowTitle(QStringLiteral("Soundings of This File"));
  auto* label =
      new QLabel(QStringLiteral("The file holds %1 &soundings. Several can be chosen for stepping.")
                     .arg(titles.size()),
                 this);
  label->setWordWrap(true);
  list_ = new QListWidget(this);
  list_->setObjectName(QStringLiteral("SoundingsOfFile"));
  list_->setSelectionMode(QAbstractItemView::ExtendedSelection);
  list_->setUniformItemSizes(true);
  for (const std::string& title : titles) list_->addItem(ToQString(title));
  list_->setCurrentRow(0);
  label->setBuddy(list_);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  auto* all = buttons->addButton(QStringLiteral("Choose &all"), QDialogButtonBox::ActionRole);
  all->setObjectName(QStringLiteral("cmdAll"));
  all->setAutoDefault(false);  // Enter after it takes what is chosen
  connect(all, &QPushButton::clicked, list_, &QListWidget::selectAll);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  connect(list_, &QListWidget::itemDoubleClicked, this, &QDialog::accept);
  auto* column = new QVBoxLayout(this);
  column->addWidget(label);
  column->addWidget(list_, 1);
  column->addWidget(buttons);
  resize(480, 420);
}

std::vector<int> SoundingChooser::Chosen() const {
  std::vector<int> chosen;
  for (int row = 0; row < list_->count(); ++row) {
    if (list_->item(row)->isSelected()) chosen.push_back(row);
  }
  return chosen;
}

std::vector<int> SoundingChooser::Ask(const std::vector<std::string>& titles, QWidget* parent) {
  SoundingChooser window(titles, parent);
  if (window.exec() != QDialog::Accepted) return {};
  return window.Chosen();
}

}  // namespace vexa
