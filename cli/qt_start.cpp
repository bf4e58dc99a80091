#include "cli/qt_start.h"

#include <cstdio>
#include <QGuiApplication>
#include <QString>

namespace vexa::cli {

void StartQt() {
  if (QCoreApplication::instance() != nullptr) return;
  qputenv("QT_QPA_PLATFORM", "offscreen");
  // Its remarks on the desktop it does not find are of no use to a command's user.
  qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
    if (type == QtCriticalMsg || type == QtFatalMsg) {
      std::fprintf(stderr, "vexa-cli: %s\n", qPrintable(text));
    }
  });
  // The toolkit keeps the references and wants them alive as long as the program.
  static int count = 1;
  static char name[] = "vexa-cli";
  static char* words[] = {name, nullptr};
  static const QGuiApplication application(count, words);
}

}  // namespace vexa::cli
