#include "app/data_windows.h"

#include <QApplication>
#include <QClipboard>
#include <QMimeData>
#include <QUrl>
#include <string>

#include "app/sounding_window.h"

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

void DataWindows::ShowListings() {
  if (listings_.isNull()) {
    listings_ = new ListingWindow(program_, parent_);
    listings_->setAttribute(Qt::WA_DeleteOnClose);
  }
  BringUp(*listings_);
}

void DataWindows::ShowDownload() {
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
}

void DataWindows::StopTimer() {
  if (!batch_.isNull()) batch_->SetTimer(false);
}

void DataWindows::StopBeeper() {
  if (!batch_.isNull()) batch_->SilenceBeeper();
}

void DataWindows::Paste() {
  const QMimeData* data = QApplication::clipboard()->mimeData();
  const QMimeData nothing;
  OpenData(data == nullptr ? nothing : *data);
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

namespace {

template <void (DataWindows::*kDoes)()>
void With(const Opening& opening) {
  (opening.Over.Data().*kDoes)();
}

constexpr WindowRow kRows[] = {
    {.Name = "Listings", .Open = With<&DataWindows::ShowListings>, .WhileBusy = true},
    {.Name = "Download", .Open = With<&DataWindows::ShowDownload>, .WhileBusy = true},
    {.Name = "BatchProcessing", .Open = With<&DataWindows::ShowBatch>, .WhileBusy = true},
    {"TimerOff", With<&DataWindows::StopTimer>, false, true},
    {"BeeperOff", With<&DataWindows::StopBeeper>, false, true},
    {.Name = "Paste", .Open = With<&DataWindows::Paste>, .IsWindow = false},
};

}  // namespace

std::span<const WindowRow> DataWindowRows() {
  return kRows;
}

}  // namespace vexa
