#ifdef _WIN32
#define _CRT_SECURE_NO_WARNINGS
#ifndef NOMINMAX
#define NOMINMAX
#endif
#endif

#include "core/platform.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <new>
#include <string_view>
#include <utility>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>
#include <windows.h>
#else
#include <fcntl.h>
#include <pwd.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#ifdef __GLIBC__
#include <malloc.h>
#endif
#endif

namespace vexa {
namespace fs = std::filesystem;

namespace {

const char* endingProgram = "";  // the handler can reach nothing else

// Nothing here asks for memory.
[[noreturn]] void EndWithASentence() {
  const char* reason = "an error that nobody expected";
  try {
    if (std::current_exception()) throw;
  } catch (const std::bad_alloc&) {
    reason = "there is not enough memory";
  } catch (...) {
    static_cast<void>(reason);
  }
  std::fflush(stdout);
  for (const char* part : {endingProgram, ": ", reason, "\n"}) std::fputs(part, stderr);
  std::_Exit(EXIT_FAILURE);
}

}  // namespace

void EndInWords(const char* program) {
  endingProgram = program;
  std::set_terminate(EndWithASentence);
}

#ifdef _WIN32

namespace {

std::wstring Wide(std::string_view ascii) {
  return std::wstring(ascii.begin(), ascii.end());
}

std::string Utf8(const std::wstring& text) {
  const std::u8string bytes = fs::path(text).u8string();
  return std::string(bytes.begin(), bytes.end());
}

class OpenHandle final : public FileHold {
 public:
  explicit OpenHandle(HANDLE handle) : handle_(handle == INVALID_HANDLE_VALUE ? nullptr : handle) {}
  ~OpenHandle() override {
    if (handle_ != nullptr) CloseHandle(handle_);
  }
  HANDLE Get() const { return handle_; }  // null where there is none

 private:
  HANDLE handle_;
};

}  // namespace

std::FILE* OpenFile(const fs::path& path, const char* mode) {
  const std::string_view asked = mode;
  if (asked.find('x') == std::string_view::npos) {
    return _wfopen(path.c_str(), Wide(mode).c_str());
  }
  // The system's older C library knows no exclusive creation by this letter.
  const int file =
      _wopen(path.c_str(), _O_CREAT | _O_EXCL | _O_WRONLY | _O_BINARY, _S_IREAD | _S_IWRITE);
  return file < 0 ? nullptr : _fdopen(file, "wb");
}

std::error_code FlushToDisk(std::FILE* file) {
  if (std::fflush(file) != 0 || _commit(_fileno(file)) != 0) {
    return std::error_code(errno, std::generic_category());
  }
  return {};
}

void SyncFolder(const fs::path&) {}  // renames are journalled

void LockWhileOpen(std::FILE*) {}

bool IsLocked(const fs::path&) {
  return false;  // what is open cannot be removed
}

std::unique_ptr<FileHold> HoldFile(const fs::path& path) {
  const HANDLE handle = CreateFileW(path.c_str(), GENERIC_WRITE | DELETE, 0, nullptr, CREATE_ALWAYS,
                                    FILE_FLAG_DELETE_ON_CLOSE, nullptr);
  if (handle == INVALID_HANDLE_VALUE && GetLastError() == ERROR_SHARING_VIOLATION) return nullptr;
  return std::make_unique<OpenHandle>(handle);
}

MappedFile::MappedFile(const fs::path& path) {
  const OpenHandle file(CreateFileW(path.c_str(), GENERIC_READ,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  LARGE_INTEGER size{};
  if (!file.Get() || !GetFileSizeEx(file.Get(), &size) || size.QuadPart == 0) return;
  const OpenHandle mapping(CreateFileMappingW(file.Get(), nullptr, PAGE_READONLY, 0, 0, nullptr));
  if (!mapping.Get()) return;
  const void* at = MapViewOfFile(mapping.Get(), FILE_MAP_READ, 0, 0, 0);
  if (at) bytes_ = {static_cast<const char*>(at), static_cast<std::size_t>(size.QuadPart)};
}

MappedFile::~MappedFile() {
  if (!bytes_.empty()) UnmapViewOfFile(bytes_.data());
}

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

void LetLargeWritesFail() {}

void PrintBytesAsTheyAre() {
  for (std::FILE* stream : {stdout, stderr}) _setmode(_fileno(stream), _O_BINARY);
}

int AwaitEnding() {
  return -1;
}

#else

namespace {

class LockedFile final : public FileHold {
 public:
  LockedFile(int handle, fs::path path) : handle_(handle), path_(std::move(path)) {}
  ~LockedFile() override {
    if (handle_ < 0) return;
    ::unlink(path_.c_str());
    ::close(handle_);
  }

 private:
  int handle_;
  fs::path path_;
};

std::array<int, 2> endingPipe = {-1, -1};  // a signal's handler can reach nothing else

void TellEnding(int) {
  const int before = errno;
  const char byte = 0;
  [[maybe_unused]] const auto written = ::write(endingPipe[1], &byte, 1);
  errno = before;
}

bool IsSameFile(int handle, const fs::path& path) {
  struct stat own {};
  struct stat there {};
  return ::fstat(handle, &own) == 0 && ::stat(path.c_str(), &there) == 0 &&
         own.st_dev == there.st_dev && own.st_ino == there.st_ino;
}

}  // namespace

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

void LockWhileOpen(std::FILE* file) {
  ::flock(::fileno(file), LOCK_EX | LOCK_NB);
}

bool IsLocked(const fs::path& path) {
  const int handle = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
  if (handle < 0) return true;
  const bool isFree = ::flock(handle, LOCK_EX | LOCK_NB) == 0;
  ::close(handle);
  return !isFree;
}

MappedFile::MappedFile(const fs::path& path) {
  const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) return;
  struct stat about {};
  if (::fstat(file, &about) == 0 && S_ISREG(about.st_mode) && about.st_size > 0) {
    const auto size = static_cast<std::size_t>(about.st_size);
    const void* at = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file, 0);
    if (at != MAP_FAILED) bytes_ = {static_cast<const char*>(at), size};
  }
  ::close(file);
}

MappedFile::~MappedFile() {
  if (!bytes_.empty()) ::munmap(const_cast<char*>(bytes_.data()), bytes_.size());
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

std::unique_ptr<FileHold> HoldFile(const fs::path& path) {
  constexpr int kTries = 10;
  for (int i = 0; i < kTries; ++i) {
    const int handle = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0666);
    if (handle >= 0 && ::flock(handle, LOCK_EX | LOCK_NB) == 0) {
      if (IsSameFile(handle, path)) return std::make_unique<LockedFile>(handle, path);
      ::close(handle);  // it was removed before it was locked
      continue;
    }
    const bool isElsewhere = handle >= 0 && errno == EWOULDBLOCK;
    if (handle >= 0) ::close(handle);
    return isElsewhere ? nullptr : std::make_unique<LockedFile>(-1, path);
  }
  return nullptr;
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

int AwaitEnding() {
  if (endingPipe[0] >= 0 || ::pipe2(endingPipe.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
    return endingPipe[0];
  }
  struct sigaction once {};
  once.sa_handler = TellEnding;
  once.sa_flags = SA_RESTART | static_cast<int>(SA_RESETHAND);  // a second wish ends it at once
  for (const int wish : {SIGTERM, SIGHUP, SIGINT}) {
    struct sigaction before {};
    const bool isIgnored = ::sigaction(wish, nullptr, &before) == 0 && before.sa_handler == SIG_IGN;
    if (!isIgnored) ::sigaction(wish, &once, nullptr);
  }
  return endingPipe[0];
}

void PrintBytesAsTheyAre() {}

void LetLargeWritesFail() {
  std::signal(SIGXFSZ, SIG_IGN);
}

#endif

}  // namespace vexa
