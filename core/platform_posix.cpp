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

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>

#include "core/freed_memory.h"
#include "core/late_library.h"
#include "core/platform.h"

namespace vexa {
namespace fs = std::filesystem;

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

FileFacts FactsFrom(const struct stat& found, int answer, std::error_code& failed) {
  failed.clear();
  if (answer != 0) {
    failed = std::error_code(errno, std::generic_category());
    const bool isNone = errno == ENOENT || errno == ENOTDIR;
    return {.Status = fs::file_status(isNone ? fs::file_type::not_found : fs::file_type::none)};
  }
  const fs::file_type type = S_ISREG(found.st_mode)   ? fs::file_type::regular
                             : S_ISDIR(found.st_mode) ? fs::file_type::directory
                             : S_ISLNK(found.st_mode) ? fs::file_type::symlink
                                                      : fs::file_type::unknown;
  const std::chrono::sys_time<std::chrono::nanoseconds> written(
      std::chrono::seconds(found.st_mtim.tv_sec) + std::chrono::nanoseconds(found.st_mtim.tv_nsec));
  return {.Status = fs::file_status(type, static_cast<fs::perms>(found.st_mode) & fs::perms::mask),
          .Size = static_cast<std::uintmax_t>(found.st_size),
          .Written = fs::file_time_type::clock::from_sys(written)};
}

bool IsSameFile(int handle, const fs::path& path) {
  struct stat own {};
  struct stat there {};
  return ::fstat(handle, &own) == 0 && ::stat(path.c_str(), &there) == 0 &&
         own.st_dev == there.st_dev && own.st_ino == there.st_ino;
}

}  // namespace

FileFacts FactsOf(const fs::path& path, std::error_code& failed) {
  struct stat found {};
  return FactsFrom(found, ::stat(path.c_str(), &found), failed);
}

FileFacts OwnFactsOf(const fs::path& path, std::error_code& failed) {
  struct stat found {};
  return FactsFrom(found, ::lstat(path.c_str(), &found), failed);
}

bool AreOne(const fs::path& a, const fs::path& b) {
  struct stat first {};
  struct stat second {};
  return ::stat(a.c_str(), &first) == 0 && ::stat(b.c_str(), &second) == 0 &&
         first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

std::vector<FolderEntry> EntriesOf(const fs::path& folder) {
  std::vector<FolderEntry> entries;
  std::error_code failed;
  for (fs::directory_iterator at(folder, failed), end; !failed && at != end; at.increment(failed)) {
    std::error_code ignored;
    entries.push_back({at->path(), at->symlink_status(ignored).type()});
  }
  return entries;
}

std::error_code MakeFolders(const fs::path& folder) {
  std::error_code failed;
  fs::create_directories(folder, failed);
  if (!failed && !fs::is_directory(folder, failed) && !failed) {
    failed = std::make_error_code(std::errc::not_a_directory);
  }
  return failed;
}

std::error_code Remove(const fs::path& path) {
  std::error_code failed;
  fs::remove(path, failed);
  return failed;
}

void GivePermissions(const fs::path& path, fs::perms allowed) {
  std::error_code ignored;
  fs::permissions(path, allowed, ignored);
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

void GiveBackFreedMemory() {
#ifdef __GLIBC__
  ::malloc_trim(0);
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

}  // namespace vexa
