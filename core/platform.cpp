#ifdef _WIN32
#define _CRT_SECURE_NO_WARNINGS
#define NOMINMAX
#endif

#include "core/platform.h"

#include <cerrno>
#include <cstdlib>
#include <string_view>

#ifdef _WIN32
#include <io.h>
#include <windows.h>
#else
#include <fcntl.h>
#include <pwd.h>
#include <unistd.h>
#ifdef __GLIBC__
#include <malloc.h>
#endif
#endif

namespace vexa {
namespace fs = std::filesystem;

#ifdef _WIN32

namespace {

std::wstring Wide(std::string_view ascii) {
  return std::wstring(ascii.begin(), ascii.end());
}

std::string Utf8(const std::wstring& text) {
  const std::u8string bytes = fs::path(text).u8string();
  return std::string(bytes.begin(), bytes.end());
}

}  // namespace

std::FILE* OpenFile(const fs::path& path, const char* mode) {
  return _wfopen(path.c_str(), Wide(mode).c_str());
}

std::error_code FlushToDisk(std::FILE* file) {
  if (std::fflush(file) != 0 || _commit(_fileno(file)) != 0) {
    return std::error_code(errno, std::generic_category());
  }
  return {};
}

void SyncFolder(const fs::path&) {}  // renames are journalled

fs::path UserDataFolder() {
  const std::optional<std::string> local = EnvironmentText("LOCALAPPDATA");
  if (!local) return ProgramFolder();
  return fs::path(std::u8string(local->begin(), local->end()));
}

fs::path ProgramFolder() {
  std::wstring name(32768, L'\0');
  const DWORD length = GetModuleFileNameW(nullptr, name.data(), static_cast<DWORD>(name.size()));
  name.resize(length);
  return fs::path(name).parent_path();
}

std::optional<std::string> EnvironmentText(const char* name) {
  const wchar_t* value = _wgetenv(Wide(name).c_str());
  if (value == nullptr || *value == L'\0') return std::nullopt;
  return Utf8(value);
}

void KeepFreedMemory() {}

#else

std::FILE* OpenFile(const fs::path& path, const char* mode) {
  return std::fopen(path.c_str(), mode);
}

std::error_code FlushToDisk(std::FILE* file) {
  if (std::fflush(file) != 0) return std::error_code(errno, std::generic_category());
  // A pipe or a file system without the call cannot do better than the system's buffer.
  if (::fsync(::fileno(file)) != 0 && errno != EINVAL && errno != ENOTSUP) {
    return std::error_code(errno, std::generic_category());
  }
  return {};
}

void SyncFolder(const fs::path& folder) {
  const int handle = ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_CLOEXEC);
  if (handle < 0) return;
  ::fsync(handle);
  ::close(handle);
}

fs::path UserDataFolder() {
  if (const std::optional<std::string> xdg = EnvironmentText("XDG_DATA_HOME")) {
    if (fs::path(*xdg).is_absolute()) return *xdg;  // a relative one is to be ignored
  }
  if (const std::optional<std::string> home = EnvironmentText("HOME")) {
    return fs::path(*home) / ".local" / "share";
  }
  const passwd* user = ::getpwuid(::getuid());
  if (user == nullptr) return ProgramFolder();
  return fs::path(user->pw_dir) / ".local" / "share";
}

fs::path ProgramFolder() {
  std::error_code failed;
  const fs::path program = fs::read_symlink("/proc/self/exe", failed);
  return failed ? fs::current_path(failed) : program.parent_path();
}

std::optional<std::string> EnvironmentText(const char* name) {
  const char* value = std::getenv(name);
  if (value == nullptr || *value == '\0') return std::nullopt;
  return std::string(value);
}

void KeepFreedMemory() {
#ifdef __GLIBC__
  constexpr int kMebibyte = 1 << 20;
  ::mallopt(M_MMAP_THRESHOLD, 32 * kMebibyte);
  ::mallopt(M_TRIM_THRESHOLD, 64 * kMebibyte);
#endif
}

#endif

}  // namespace vexa
