// On which platform of the toolkit the programs run.
#pragma once

#include <QtGlobal>

namespace vexa::paint {

/// Where this one has letters drawn by an engine of the system's own, the toolkit's is taken instead:
/// with the same fonts a picture is the same everywhere, from the window and from the command line. To
/// be called before the application is made; what the user has chosen stays.
inline void ChooseLetters() {
#ifdef _WIN32
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
    qputenv("QT_QPA_PLATFORM", "windows:fontengine=freetype");
  }
#endif
}

/// For pictures alone, without a display where the system knows such programs.
inline void ChooseNoDisplay() {
#ifdef _WIN32
  ChooseLetters();
#else
  qputenv("QT_QPA_PLATFORM", "offscreen");
#endif
}

}  // namespace vexa::paint
