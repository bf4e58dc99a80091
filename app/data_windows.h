// The windows through which data come in and leave as text: listings, download, batch processing,
// the clipboard as a source. One of each at most; the main window hands its commands on.
#pragma once

#include <filesystem>
#include <functional>
#include <QPointer>
#include <span>

#include "app/batch_window.h"
#include "app/download_window.h"
#include "app/listing_window.h"
#include "app/window_table.h"
#include "program/program.h"

class QMimeData;

namespace vexa {

/// The files on this machine that are dragged or copied.
std::vector<std::filesystem::path> FilesOf(const QMimeData& data);

class DataWindows {
 public:
  struct Events {
    std::function<void(Changes)> Changed{};  // show what became stale
    std::function<void(const std::vector<std::filesystem::path>& files)> Open{};
    std::function<void()> Entries{};  // menu entries come or go
  };
  DataWindows(Program& program, QWidget* parent, Events events)
      : program_(program), parent_(parent), events_(std::move(events)) {}

  void ShowListings();
  void ShowDownload();
  void ShowBatch();
  void StopTimer();
  void StopBeeper();
  /// Opens what is on the clipboard.
  void Paste();
  /// The sounding has changed.
  void Follow();
  /// Opens files or text that were dropped or pasted; the status line says when there is neither.
  void OpenData(const QMimeData& data);

 private:
  Program& program_;
  QWidget* parent_;
  Events events_;
  QPointer<ListingWindow> listings_{};
  QPointer<DownloadWindow> download_{};
  QPointer<BatchWindow> batch_{};
};

std::span<const WindowRow> DataWindowRows();

}  // namespace vexa
