// On which platform of the toolkit the programs run.
#pragma once

#include <cstdio>
#include <memory>
#include <optional>
#include <QtGlobal>

#include "core/fault.h"
#include "core/platform.h"

namespace vexa::paint {

/// Where this one has letters drawn by an engine of the system's own, the toolkit's is taken
/// instead: with the same fonts a picture is the same everywhere, from the window and from the
/// command line. To be called before the application is made; what the user has chosen stays.
inline void ChooseLetters() {
#ifdef _WIN32
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
    qputenv("QT_QPA_PLATFORM", "windows:fontengine=freetype");
  }
#endif
}

/// Whether so many more files can be open at the same time.
inline bool CanOpenFiles([[maybe_unused]] int count) {
#ifndef _WIN32
  if (count <= 0) return true;
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> one(OpenFile("/dev/null", "r"),
                                                            std::fclose);
  return one != nullptr && CanOpenFiles(count - 1);
#else
  return true;
#endif
}

/// What the toolkit lacks to be started; it would end the program over it.
inline std::optional<Fault> Lacks() {
  constexpr int kFiles = 3;  // what its events wake it by, and a file of its own
  if (CanOpenFiles(kFiles)) return std::nullopt;
  return Fault{kFaultTooManyFiles, "StartToolkit", "no window and no picture can be made"};
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
