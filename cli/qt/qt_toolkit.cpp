#include "cli/qt/qt_toolkit.h"

#include <cstdio>
#include <QGuiApplication>
#include <QString>

#include "download/net/network.h"
#include "output/paint/paint.h"
#include "output/paint/print.h"
#include "output/paint/toolkit_platform.h"
#include "output/print_pages.h"

namespace vexa::cli {

QtToolkit::QtToolkit() = default;
QtToolkit::~QtToolkit() = default;

std::optional<Fault> QtToolkit::Start() {
  if (QCoreApplication::instance() != nullptr) return std::nullopt;
  if (auto fault = paint::Lacks()) return fault;
  paint::ChooseNoDisplay();
  // Its remarks on the desktop it does not find are of no use to a command's user.
  qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
    if (type == QtCriticalMsg || type == QtFatalMsg) {
      std::fprintf(stderr, "vexa-cli: %s\n", qPrintable(text));
    }
  });
  application_ = std::make_unique<QGuiApplication>(wordCount_, programWords_);
  return std::nullopt;
}

Outcome<std::string> QtToolkit::EncodePicture(const Picture& picture, const std::string& extension,
                                              int widthPx, int heightPx) {
  if (auto fault = Start()) return *fault;
  return paint::EncodePicture(picture, extension, widthPx, heightPx);
}

std::optional<Fault> QtToolkit::SavePicture(const Picture& picture,
                                            const std::filesystem::path& path, int widthPx,
                                            int heightPx, const ImageSettings& settings) {
  if (auto fault = Start()) return *fault;
  return paint::SavePicture(picture, path, widthPx, heightPx, settings);
}

Outcome<std::string> QtToolkit::PagesAsPdf(std::span<const Picture> pages) {
  if (auto fault = Start()) return *fault;
  return paint::PagesAsPdf(pages, output::kUnitsPerPoint);
}

std::string QtToolkit::JpegLibraryVersion() {
  if (Start()) return {};
  return paint::JpegLibraryVersion();
}

std::unique_ptr<download::Fetcher> QtToolkit::MakeFetcher() {
  if (QCoreApplication::instance() == nullptr) {
    if (paint::Lacks()) {
      return download::NoNetwork(
          Fault{kFaultTooManyFiles, "MakeFetcher", "too many files are open"});
    }
    application_ = std::make_unique<QCoreApplication>(wordCount_, programWords_);
  }
  return download::OpenNetwork();
}

std::unique_ptr<Toolkit> MakeToolkit() {
  return std::make_unique<QtToolkit>();
}

}  // namespace vexa::cli
