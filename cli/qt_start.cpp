#include "cli/qt_start.h"

#include <QGuiApplication>

namespace vexa::cli {

void StartQt() {
  if (QCoreApplication::instance() != nullptr) return;
  qputenv("QT_QPA_PLATFORM", "offscreen");
  // The toolkit keeps the references and wants them alive as long as the program.
  static int count = 1;
  static char name[] = "vexa-cli";
  static char* words[] = {name, nullptr};
  static const QGuiApplication application(count, words);
}

}  // namespace vexa::cli
