#include "core/late_library.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace vexa {

#ifdef _WIN32
LateLibrary::LateLibrary(const char* file) : handle_(LoadLibraryA(file)) {}

void* LateLibrary::Address(const char* function) const {
  if (!IsOpen()) return nullptr;
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(handle_), function));
}
#else
LateLibrary::LateLibrary(const char* file) : handle_(dlopen(file, RTLD_LAZY | RTLD_LOCAL)) {}

void* LateLibrary::Address(const char* function) const {
  return IsOpen() ? dlsym(handle_, function) : nullptr;
}
#endif

}  // namespace vexa
