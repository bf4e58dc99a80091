#ifdef _WIN32
#define _CRT_SECURE_NO_WARNINGS
#ifndef NOMINMAX
#define NOMINMAX
#endif
#endif

#include "core/platform.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <exception>
#include <new>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>
#include <windows.h>

#include <shellapi.h>

#include "core/path_forms.h"
#else
#include <dlfcn.h>
#include <fcntl.h>
#include <pwd.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#ifdef __GLIBC__
#include <malloc.h>
#endif

#include "core/late_library.h"
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

std::optional<std::chrono::sys_days> LocalDay(std::time_t at) {
  std::tm local{};
#ifdef _WIN32
  const bool isKnown = ::localtime_s(&local, &at) == 0;
#else
  const bool isKnown = ::localtime_r(&at, &local) != nullptr;
#endif
  if (!isKnown) return std::nullopt;
  constexpr int kFirstYear = 1900;
  return std::chrono::sys_days(std::chrono::year(kFirstYear + local.tm_year) /
                               std::chrono::month(static_cast<unsigned>(local.tm_mon + 1)) /
                               std::chrono::day(static_cast<unsigned>(local.tm_mday)));
}

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

// The files a pattern matches, each as the pattern would name it; the pattern where there is none.
void AppendMatches(const std::wstring& pattern, std::vector<std::string>& words) {
  const std::size_t before = words.size();
  WIN32_FIND_DATAW found{};
  const HANDLE search = FindFirstFileW(pattern.c_str(), &found);
  if (search != INVALID_HANDLE_VALUE) {
    const std::size_t folder = pattern.find_last_of(L"/\\:");
    const std::wstring in = folder == std::wstring::npos ? L"" : pattern.substr(0, folder + 1);
    do {
      const bool isFolder = (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
      if (!isFolder) words.push_back(Utf8(in + found.cFileName));
    } while (FindNextFileW(search, &found));
    FindClose(search);
  }
  if (words.size() == before) words.push_back(Utf8(pattern));
  std::sort(words.begin() + static_cast<std::ptrdiff_t>(before), words.end());
}

// In one step for those, too, who read the old file; the plain way on systems that cannot.
bool Supersede(const fs::path& from, const fs::path& to) {
  const OpenHandle file(CreateFileW(from.c_str(), DELETE | SYNCHRONIZE,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
  if (!file.Get()) return false;
  const std::wstring name = WholePath(to).make_preferred().wstring();
  const std::size_t size = sizeof(FILE_RENAME_INFO) + name.size() * sizeof(wchar_t);
  std::vector<std::max_align_t> room(size / sizeof(std::max_align_t) + 1);
  auto* const wish = reinterpret_cast<FILE_RENAME_INFO*>(room.data());
  constexpr DWORD kReplaceWhileRead = 0x3;  // replace, and leave the old file to its readers
  wish->Flags = kReplaceWhileRead;
  wish->FileNameLength = static_cast<DWORD>(name.size() * sizeof(wchar_t));
  std::ranges::copy(name, wish->FileName);
  constexpr auto kRenameByFlags = static_cast<FILE_INFO_BY_HANDLE_CLASS>(22);
  return SetFileInformationByHandle(file.Get(), kRenameByFlags, wish, static_cast<DWORD>(size)) !=
         0;
}

UINT consoleBefore = 0;  // what the program's end can reach

}  // namespace

fs::path ReachablePath(fs::path path) {
  constexpr std::size_t kLongestPlain =
      240;  // a folder's own limit is 247, with room for ".tmp100"
  const std::wstring plain = NormalPath(WholePath(path)).make_preferred().wstring();
  if (plain.size() < kLongestPlain || plain.starts_with(LR"(\\?\)")) return path;
  if (plain.starts_with(LR"(\\)")) return fs::path(LR"(\\?\UNC\)" + plain.substr(2));
  return fs::path(LR"(\\?\)" + plain);
}

std::error_code RenameOver(const fs::path& from, const fs::path& to) {
  constexpr int kTries = 10;
  constexpr DWORD kPauseMs = 50;
  for (int i = 0;; ++i) {
    if (Supersede(from, to)) return {};
    if (MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
      return {};
    }
    const DWORD reason = GetLastError();
    const bool isHeld = reason == ERROR_SHARING_VIOLATION || reason == ERROR_ACCESS_DENIED ||
                        reason == ERROR_LOCK_VIOLATION || reason == ERROR_USER_MAPPED_FILE;
    if (isHeld && i + 1 < kTries) {
      Sleep(kPauseMs);
      continue;
    }
    if (isHeld) return std::make_error_code(std::errc::permission_denied);
    return std::error_code(static_cast<int>(reason), std::system_category());
  }
}

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

void KeepFreedMemory(int) {}

void LetLargeWritesFail() {}

void PrintBytesAsTheyAre() {
  // A program of windows has no console of its own, and its streams lead nowhere.
  const bool hasNone = _get_osfhandle(_fileno(stdout)) < 0 && AttachConsole(ATTACH_PARENT_PROCESS);
  if (hasNone) {
    for (std::FILE* stream : {stdout, stderr}) {
      if (std::freopen("CONOUT$", "w", stream) == nullptr) return;
    }
  }
  for (std::FILE* stream : {stdout, stderr}) _setmode(_fileno(stream), _O_BINARY);
  DWORD mode = 0;
  if (!GetConsoleMode(GetStdHandle(STD_OUTPUT_HANDLE), &mode) && !hasNone) return;
  consoleBefore = GetConsoleOutputCP();
  if (SetConsoleOutputCP(CP_UTF8)) std::atexit([] { SetConsoleOutputCP(consoleBefore); });
}

std::vector<std::string> ProgramWords(int, char**) {
  int count = 0;
  wchar_t** const given = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::string> words;
  for (int i = 1; i < count; ++i) {
    const std::wstring word = given[i];
    if (word.find_first_of(L"*?") != std::wstring::npos && !word.starts_with(L'-')) {
      AppendMatches(word, words);
    } else {
      words.push_back(Utf8(word));
    }
  }
  LocalFree(static_cast<HLOCAL>(given));
  return words;
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

fs::path ReachablePath(fs::path path) {
  return path;
}

std::error_code RenameOver(const fs::path& from, const fs::path& to) {
  std::error_code failed;
  fs::rename(from, to, failed);
  return failed;
}

std::vector<std::string> ProgramWords(int argc, char** argv) {
  return std::vector<std::string>(argv + std::min(argc, 1), argv + argc);
}

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

void KeepFreedMemory([[maybe_unused]] int largest) {
#ifdef __GLIBC__
  constexpr int kMebibyte = 1 << 20;
  ::mallopt(M_MMAP_THRESHOLD, largest * kMebibyte);
  ::mallopt(M_TRIM_THRESHOLD, 2 * largest * kMebibyte);
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

// On Windows every library is linked.
LateLibrary::LateLibrary(const char* file) : handle_(::dlopen(file, RTLD_LAZY | RTLD_LOCAL)) {}

void* LateLibrary::Address(const char* function) const {
  return IsOpen() ? ::dlsym(handle_, function) : nullptr;
}

#endif

}  // namespace vexa
