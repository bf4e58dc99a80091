#include "app/data_windows.h"

#include <QApplication>
#include <QClipboard>
#include <QMimeData>
#include <QUrl>
#include <string>

namespace vexa {

namespace {

// A name need not be UTF-8, as the toolkit's texts must be.
std::filesystem::path PathOf(const QUrl& url) {
#ifdef _WIN32
  return url.toLocalFile().toStdU16String();
#else
  return QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1()).toStdString();
#endif
}

}  // namespace

std::vector<std::filesystem::path> FilesOf(const QMimeData& data) {
  std::vector<std::filesystem::path> paths;
  for (const QUrl& url : data.urls()) {
    if (url.isLocalFile()) paths.push_back(PathOf(url));
  }
  return paths;
}
namespace {

void BringUp(QDialog& window) {
  window.show();
  window.raise();
  window.activateWindow();
}

}  // namespace

bool DataWindows::Run(Command command) {
  switch (command) {
    case Command::Listings:
      if (listings_.isNull()) {
        listings_ = new ListingWindow(program_, parent_);
        listings_->setAttribute(Qt::WA_DeleteOnClose);
      }
      BringUp(*listings_);
      return true;
    case Command::Download:
      if (download_.isNull()) {
        download_ = new DownloadWindow(
            program_,
            [this](const std::filesystem::path& file, int index) {
              events_.Changed(OpenSounding(program_, file, index));
            },
            parent_);
        download_->setAttribute(Qt::WA_DeleteOnClose);
      }
      BringUp(*download_);
      return true;
    case Command::DownloadTimer:
      ShowBatch();
      return true;
    case Command::DownloadTimerOff:
      if (!batch_.isNull()) batch_->SetTimer(false);
      return true;
    case Command::BeeperOff:
      if (!batch_.isNull()) batch_->SilenceBeeper();
      return true;
    case Command::Paste:
      if (const QMimeData* data = QApplication::clipboard()->mimeData()) {
        OpenData(*data);
      } else {
        OpenData(QMimeData());
      }
      return true;
    default:
      return false;
  }
}

void DataWindows::ShowBatch() {
  if (batch_.isNull()) batch_ = new BatchWindow(program_, events_.Entries, parent_);
  BringUp(*batch_);
}

void DataWindows::Follow() {
  if (!listings_.isNull()) listings_->Follow();
}

void DataWindows::OpenData(const QMimeData& data) {
  if (const auto files = FilesOf(data); !files.empty()) {
    events_.Open(files);
    return;
  }
  if (data.hasText() && !data.text().trimmed().isEmpty()) {
    events_.Changed(OpenText(program_, data.text().toStdString()));
    return;
  }
  program_.Doc.SetStatus("There is neither a file nor text to open.");
  events_.Changed({});
}

}  // namespace vexa
