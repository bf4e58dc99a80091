// The windows through which data come in and leave as text: listings, download, batch processing,
// the clipboard as a source. One of each at most; the main window hands its commands on.
#pragma once

#include <filesystem>
#include <functional>
#include <QPointer>

#include "app/batch_window.h"
#include "app/download_window.h"
#include "app/listing_window.h"
#include "program/program.h"

class QMimeData;

namespace vexa {

class DataWindows {
 public:
  struct Events {
    std::function<void(Changes)> Changed{};                         // show what became stale
    std::function<void(const std::filesystem::path& file)> Open{};  // open this file
    std::function<void()> Entries{};                                // menu entries come or go
  };
  DataWindows(Program& program, QWidget* parent, Events events)
      : program_(program), parent_(parent), events_(std::move(events)) {}

  /// Carries out a command of these windows; false for any other.
  bool Run(Command command);
  /// The sounding has changed.
  void Follow();
  /// Opens text that was dropped or pasted as a sounding; false when there is none.
  bool OpenText(const QMimeData& data);

 private:
  void ShowBatch();

  Program& program_;
  QWidget* parent_;
  Events events_;
  QPointer<ListingWindow> listings_{};
  QPointer<DownloadWindow> download_{};
  QPointer<BatchWindow> batch_{};
};

}  // namespace vexa
