#define _CRT_SECURE_NO_WARNINGS
#ifndef NOMINMAX
#define NOMINMAX
#endif

#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>
#include <windows.h>

#include <shellapi.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <ratio>

#include "core/freed_memory.h"
#include "core/path_forms.h"
#include "core/platform.h"

namespace vexa {
namespace fs = std::filesystem;

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

// What lies at a path, a link's target, held open but neither read nor written.
class Opened {
 public:
  explicit Opened(const fs::path& path)
      : handle_(CreateFileW(LongForm(path).c_str(), 0,
                            FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                            OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr)),
        isThere_(handle_.Get() != nullptr && GetFileInformationByHandle(handle_.Get(), &found_)) {}
  bool IsThere() const { return isThere_; }
  const BY_HANDLE_FILE_INFORMATION& Found() const { return found_; }

 private:
  BY_HANDLE_FILE_INFORMATION found_{};
  OpenHandle handle_;
  bool isThere_;
};

// The files a pattern matches, each as the pattern would name it; the pattern where there is none.
void AppendMatches(const std::wstring& pattern, std::vector<std::string>& words) {
  const std::size_t before = words.size();
  WIN32_FIND_DATAW found{};
  const HANDLE search = FindFirstFileW(LongForm(pattern).c_str(), &found);
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

// In the words of the standard, where it has them.
std::error_code FailureOf(DWORD reason) {
  switch (reason) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_NAME:
    case ERROR_BAD_PATHNAME:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
      return std::make_error_code(std::errc::no_such_file_or_directory);
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_USER_MAPPED_FILE:
      return std::make_error_code(std::errc::permission_denied);
    default:
      return std::error_code(static_cast<int>(reason), std::system_category());
  }
}

std::error_code LastFailure() {
  return FailureOf(GetLastError());
}

// Other tags mark files that are kept elsewhere or packed, which are read like any other.
fs::file_status StatusFrom(DWORD attributes, DWORD tag) {
  const bool isTagged = (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
  const bool isLink =
      isTagged && (tag == IO_REPARSE_TAG_SYMLINK || tag == IO_REPARSE_TAG_MOUNT_POINT);
  const bool isFolder = (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  const bool isReadOnly = (attributes & FILE_ATTRIBUTE_READONLY) != 0;
  constexpr fs::perms kRead =
      fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read;
  return fs::file_status(isLink     ? fs::file_type::symlink
                         : isFolder ? fs::file_type::directory
                                    : fs::file_type::regular,
                         isReadOnly && !isFolder ? kRead : fs::perms::all);
}

DWORD TagOf(const fs::path& reach) {
  WIN32_FIND_DATAW found{};
  const HANDLE search = FindFirstFileW(reach.c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return 0;
  FindClose(search);
  return found.dwReserved0;
}

// The system counts tenths of microseconds since the year 1601.
fs::file_time_type TimeFrom(const FILETIME& time) {
  using Ticks = std::chrono::duration<std::int64_t, std::ratio<1, 10'000'000>>;
  constexpr std::int64_t kUnixEpoch = 116'444'736'000'000'000;
  const auto count = static_cast<std::int64_t>(
      (static_cast<std::uint64_t>(time.dwHighDateTime) << 32) | time.dwLowDateTime);
  return fs::file_time_type::clock::from_sys(
      std::chrono::sys_time<Ticks>(Ticks(count - kUnixEpoch)));
}

template <class Found>
FileFacts FactsFrom(const Found& found, DWORD tag) {
  return {.Status = StatusFrom(found.dwFileAttributes, tag),
          .Size = (static_cast<std::uintmax_t>(found.nFileSizeHigh) << 32) | found.nFileSizeLow,
          .Written = TimeFrom(found.ftLastWriteTime)};
}

UINT consoleBefore = 0;  // what the program's end can reach

}  // namespace

FileFacts OwnFactsOf(const fs::path& path, std::error_code& failed) {
  failed.clear();
  const fs::path reach = LongForm(path);
  WIN32_FILE_ATTRIBUTE_DATA found{};
  if (!GetFileAttributesExW(reach.c_str(), GetFileExInfoStandard, &found)) {
    failed = LastFailure();
    const bool isNone = failed == std::errc::no_such_file_or_directory;
    return {.Status = fs::file_status(isNone ? fs::file_type::not_found : fs::file_type::none)};
  }
  const bool mayBeLink = (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
  return FactsFrom(found, mayBeLink ? TagOf(reach) : 0);
}

FileFacts FactsOf(const fs::path& path, std::error_code& failed) {
  FileFacts own = OwnFactsOf(path, failed);
  if (own.Status.type() != fs::file_type::symlink) return own;
  const Opened target(path);
  if (!target.IsThere()) {
    failed = LastFailure();
    return {.Status = fs::file_status(fs::file_type::not_found)};
  }
  return FactsFrom(target.Found(), 0);
}

bool AreOne(const fs::path& a, const fs::path& b) {
  const Opened first(a);  // both stay open while they are compared: numbers are given anew
  const Opened second(b);
  return first.IsThere() && second.IsThere() &&
         first.Found().dwVolumeSerialNumber == second.Found().dwVolumeSerialNumber &&
         first.Found().nFileIndexHigh == second.Found().nFileIndexHigh &&
         first.Found().nFileIndexLow == second.Found().nFileIndexLow;
}

std::vector<FolderEntry> EntriesOf(const fs::path& folder) {
  std::vector<FolderEntry> entries;
  WIN32_FIND_DATAW found{};
  // One character longer than the folder's own path may be.
  const HANDLE search = FindFirstFileW(LongForm(folder / L"*").c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return entries;
  do {
    const std::wstring_view name = found.cFileName;
    if (name == L"." || name == L"..") continue;
    const fs::file_status status = StatusFrom(found.dwFileAttributes, found.dwReserved0);
    entries.push_back({folder / name, status.type()});
  } while (FindNextFileW(search, &found));
  FindClose(search);
  return entries;
}

std::error_code MakeFolders(const fs::path& folder) {
  std::error_code failed;
  const FileFacts there = FactsOf(folder, failed);
  if (there.Status.type() == fs::file_type::directory) return {};
  if (!failed) return std::make_error_code(std::errc::not_a_directory);
  const fs::path above = folder.parent_path();
  if (!above.empty() && above != folder) {
    if (const std::error_code none = MakeFolders(above)) return none;
  }
  // Another process may have made it meanwhile.
  const bool isMade = CreateDirectoryW(LongForm(folder).c_str(), nullptr) != 0;
  return isMade || GetLastError() == ERROR_ALREADY_EXISTS ? std::error_code() : LastFailure();
}

std::error_code Remove(const fs::path& path) {
  const fs::path reach = LongForm(path);
  if (DeleteFileW(reach.c_str())) return {};
  const std::error_code failed = LastFailure();
  if (failed == std::errc::no_such_file_or_directory || RemoveDirectoryW(reach.c_str())) return {};
  return failed;
}

void GivePermissions(const fs::path&, fs::perms) {}  // what is read-only is never written over

std::error_code RenameOver(const fs::path& named, const fs::path& target) {
  const fs::path from = LongForm(named);
  const fs::path to = LongForm(target);
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
    return FailureOf(reason);
  }
}

std::FILE* OpenFile(const fs::path& path, const char* mode) {
  const std::string_view asked = mode;
  if (asked.find('x') == std::string_view::npos) {
    return _wfopen(LongForm(path).c_str(), Wide(mode).c_str());
  }
  // The system's older C library knows no exclusive creation by this letter.
  const int file = _wopen(LongForm(path).c_str(), _O_CREAT | _O_EXCL | _O_WRONLY | _O_BINARY,
                          _S_IREAD | _S_IWRITE);
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
  const HANDLE handle = CreateFileW(LongForm(path).c_str(), GENERIC_WRITE | DELETE, 0, nullptr,
                                    CREATE_ALWAYS, FILE_FLAG_DELETE_ON_CLOSE, nullptr);
  if (handle == INVALID_HANDLE_VALUE && GetLastError() == ERROR_SHARING_VIOLATION) return nullptr;
  return std::make_unique<OpenHandle>(handle);
}

MappedFile::MappedFile(const fs::path& path) {
  const OpenHandle file(CreateFileW(LongForm(path).c_str(), GENERIC_READ,
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

void GiveBackFreedMemory() {}

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

}  // namespace vexa
