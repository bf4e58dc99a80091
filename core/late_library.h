// A library of the system that few runs need, opened when the first of its functions is called: a
// start then does not wait for it. Which libraries are opened so, and under what name, says the
// build (vexa_late_library).
#pragma once

#include <string>
#include <string_view>

#include "core/fault.h"

namespace vexa {

/// The number of the fault that follows from a library that is not there.
inline constexpr int kFaultNoLibrary = 48;

/// Says what cannot be done without a library, one that this system lacks or that the program was
/// built without; the data are not to blame.
inline Fault NoLibrary(std::string_view procedure, std::string_view detail) {
  return {kFaultNoLibrary, std::string(procedure), std::string(detail)};
}

class LateLibrary {
 public:
  /// Opens the library, once and for the whole run.
  ///
  /// file  as the loader knows it, "libproj.so.25"
  explicit LateLibrary(const char* file);

  bool IsOpen() const { return handle_ != nullptr; }
  /// Null where the library is not open or lacks it.
  template <class Function>
  Function* Find(const char* function) const {
    return reinterpret_cast<Function*>(Address(function));
  }

 private:
  void* Address(const char* function) const;

  void* handle_;
};

}  // namespace vexa

/// NameLibrary(), which opens the library at its first call, and HasName(), whether this system has
/// it.
#define VEXA_LATE_LIBRARY(name, file)        \
  const LateLibrary& name##Library() {       \
    static const LateLibrary kLibrary(file); \
    return kLibrary;                         \
  }                                          \
  bool Has##name() {                         \
    return name##Library().IsOpen();         \
  }                                          \
  static_assert(true)

/// Puts a name of this namespace before the function of the C header that it is called like, and
/// looks the function up in the library at its first call.
///
/// library  function that gives the LateLibrary, which must be open
#define VEXA_LATE_FUNCTION(library, function)                                              \
  constexpr auto function = [](auto... values) {                                           \
    static auto* const found = (library)().template Find<decltype(::function)>(#function); \
    return found(values...);                                                               \
  }
