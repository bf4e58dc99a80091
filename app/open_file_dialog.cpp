#include "app/open_file_dialog.h"

#include <algorithm>
#include <QFile>
#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>
#include <QListWidget>
#include <system_error>

#include "app/qt_text.h"
#include "core/files.h"
#include "core/platform.h"
#include "core/utf8.h"

namespace vexa {

std::vector<std::filesystem::path> FilesWithOtherNames(const std::filesystem::path& folder) {
  std::vector<std::filesystem::path> found;
  for (const FolderEntry& entry : EntriesOf(folder)) {
    const bool hasOther = !IsUtf8(TextFromPath(entry.Path.filename()));
    if (hasOther && IsOrdinaryFile(entry.Path)) found.push_back(entry.Path);
  }
  std::ranges::sort(found);
  return found;
}

OpenFileDialog::OpenFileDialog(QWidget* parent, const QString& title, const QString& folder,
                               const QStringList& filters, QFileDialog::FileMode mode)
    : QFileDialog(parent, title) {
  setOption(QFileDialog::DontUseNativeDialog);
  setAcceptMode(QFileDialog::AcceptOpen);
  setFileMode(mode);
  setNameFilters(filters);
  caption_ = new QLabel(QStringLiteral("Names in &other encodings:"), this);
  others_ = new QListWidget(this);
  others_->setObjectName(QStringLiteral("OtherNames"));
  others_->setMaximumHeight(5 * others_->fontMetrics().lineSpacing());
  if (mode == QFileDialog::ExistingFiles) {
    others_->setSelectionMode(QAbstractItemView::ExtendedSelection);
  }
  caption_->setBuddy(others_);
  if (auto* grid = qobject_cast<QGridLayout*>(layout())) {
    const int row = grid->rowCount();
    grid->addWidget(caption_, row, 0, Qt::AlignTop);
    grid->addWidget(others_, row, 1, 1, -1);
  }
  connect(others_, &QListWidget::itemActivated, this, [this] { TakeOthers(); });
  connect(this, &QFileDialog::directoryEntered, this, [this] { ListOthers(); });
  const QFileInfo at(folder);
  setDirectory(folder.isEmpty() || at.isDir() ? folder : at.path());
  if (at.isFile()) selectFile(at.fileName());
  ListOthers();
}

void OpenFileDialog::ListOthers() {
  const QByteArray folder = QFile::encodeName(directory().absolutePath());
  names_ = FilesWithOtherNames(PathFromText(folder.toStdString()));
  others_->clear();
  for (const std::filesystem::path& name : names_) {
    others_->addItem(ToQString(TextFromPath(name.filename())));
  }
  others_->setVisible(!names_.empty());
  caption_->setVisible(!names_.empty());
}

void OpenFileDialog::TakeOthers() {
  for (const QModelIndex& index : others_->selectionModel()->selectedIndexes()) {
    taken_.push_back(TextFromPath(names_[static_cast<std::size_t>(index.row())]));
  }
  if (!taken_.empty()) done(QDialog::Accepted);
}

std::vector<std::string> OpenFileDialog::Chosen() const {
  if (!taken_.empty()) return taken_;
  std::vector<std::string> names;
  for (const QString& name : selectedFiles()) names.push_back(name.toStdString());
  return names;
}

}  // namespace vexa
