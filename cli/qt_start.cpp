#include "cli/qt_start.h"

#include <cstdio>
#include <QGuiApplication>
#include <QString>

namespace vexa::cli {

QtSession::QtSession() {
  if (QCoreApplication::instance() != nullptr) return;
  qputenv("QT_QPA_PLATFORM", "offscreen");
  // Its remarks on the desktop it does not find are of no use to a command's user.
  qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
    if (type == QtCriticalMsg || type == QtFatalMsg) {
      std::fprintf(stderr, "vexa-cli: %s\n", qPrintable(text));
    }
  });
  application_ = std::make_unique<QGuiApplication>(wordCount_, programWords_);
}

QtSession::~QtSession() = default;

}  // namespace vexa::cli
