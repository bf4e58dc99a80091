#include "core/late_library.h"

#ifndef _WIN32  // where all libraries are linked
#include <dlfcn.h>

namespace vexa {

LateLibrary::LateLibrary(const char* file) : handle_(dlopen(file, RTLD_LAZY | RTLD_LOCAL)) {}

void* LateLibrary::Address(const char* function) const {
  return IsOpen() ? dlsym(handle_, function) : nullptr;
}

}  // namespace vexa
#endif
