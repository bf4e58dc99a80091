#include "core/files.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cerrno>
#include <chrono>
#include <utility>
#include <vector>

#include "core/platform.h"

namespace vexa {
namespace {

namespace fs = std::filesystem;

// The longest soundings run to some ten thousand levels of a hundred bytes.
constexpr std::uintmax_t kLargestFile = std::uintmax_t{256} * 1024 * 1024;

std::error_code LastError() {
  return std::error_code(errno, std::generic_category());
}

Fault FileFault(int number, std::string_view procedure, const fs::path& path,
                std::string_view reason) {
  return Fault{number, std::string(procedure), TextFromPath(path) + ": " + std::string(reason),
               TextFromPath(path.filename())};
}

class SystemOps final : public FileOps {};

// What a file in the making is called: its name, this, and a number.
constexpr std::string_view kTemporaryMark = ".tmp";
constexpr int kMostTemporaries = 100;

// A process locks what it writes as soon as it has made it; what is unlocked and not of this minute
// has nobody to finish it.
void RemoveIfLeft(const fs::path& path) {
  std::error_code failed;
  const FileFacts left = OwnFactsOf(path, failed);
  if (failed || left.Status.type() != fs::file_type::regular) return;
  if (fs::file_time_type::clock::now() - left.Written < std::chrono::minutes(1)) return;
  if (!IsLocked(path)) Remove(path);
}

bool Exists(fs::file_type type) {
  return type != fs::file_type::none && type != fs::file_type::not_found;
}

fs::file_type TypeOf(const fs::path& path) {
  std::error_code ignored;
  return FactsOf(path, ignored).Status.type();
}

bool IsTemporaryName(const fs::path& name) {
  const std::string ending = TextFromPath(name.extension());
  return ending.starts_with(kTemporaryMark) && ending.size() > kTemporaryMark.size() &&
         ending.find_first_not_of("0123456789", kTemporaryMark.size()) == std::string::npos;
}

}  // namespace

std::error_code FileOps::Write(std::FILE* file, std::string_view bytes) {
  if (std::fwrite(bytes.data(), 1, bytes.size(), file) != bytes.size()) return LastError();
  return {};
}

std::error_code FileOps::Flush(std::FILE* file) {
  return FlushToDisk(file);
}

std::error_code FileOps::Rename(const fs::path& from, const fs::path& to) {
  const std::error_code failed = RenameOver(from, to);
  if (!failed) SyncFolder(to.parent_path());
  return failed;
}

FileOps& SystemFileOps() {
  static SystemOps ops;
  return ops;
}

fs::path PathFromText(std::string_view utf8) {
  return fs::path(std::u8string(utf8.begin(), utf8.end()));
}

fs::path PathFromSetting(std::string_view utf8) {
  fs::path path = PathFromText(utf8);
  if (utf8.find('\\') != std::string_view::npos && !IsThere(path)) {
    std::u8string text(utf8.begin(), utf8.end());
    std::ranges::replace(text, u8'\\', static_cast<char8_t>(fs::path::preferred_separator));
    path = fs::path(text);
  }
  const fs::path::string_type drive = path.root_name().native();
  const bool isDrive = !drive.empty() && drive.back() == fs::path::value_type(':');
  if (isDrive && !path.has_root_directory()) {
    path = path.root_name() / fs::path("/").make_preferred() / path.relative_path();
  }
  return path;
}

std::string TextFromPath(const fs::path& path) {
  const std::u8string bytes = path.u8string();
  const std::string text(bytes.begin(), bytes.end());
  constexpr bool kHasForms = fs::path::preferred_separator == '\\';  // those of LongForm
  if (kHasForms && text.starts_with(R"(\\?\UNC\)")) return R"(\\)" + text.substr(8);
  if (kHasForms && text.starts_with(R"(\\?\)")) return text.substr(4);
  return text;
}

bool IsThere(const fs::path& path) {
  return Exists(TypeOf(path));
}

bool IsOrdinaryFile(const fs::path& path) {
  return TypeOf(path) == fs::file_type::regular;
}

bool IsFolder(const fs::path& path) {
  return TypeOf(path) == fs::file_type::directory;
}

std::optional<FileStamp> StampOf(const fs::path& path) {
  std::error_code failed;
  const FileFacts facts = FactsOf(path, failed);
  if (failed || facts.Status.type() != fs::file_type::regular) return std::nullopt;
  return FileStamp{facts.Written, facts.Size};
}

int FaultNumber(const std::error_code& error, int otherwise) {
  struct Row {
    std::errc Error;
    int Number;
  };
  static constexpr Row kRows[] = {
      {std::errc::no_space_on_device, kFaultDiskFull},
      {std::errc::file_too_large, kFaultDiskFull},
      {std::errc::no_such_file_or_directory, kFaultPathNotFound},
      {std::errc::not_a_directory, kFaultPathNotFound},
      {std::errc::permission_denied, kFaultAccessRefused},
      {std::errc::operation_not_permitted, kFaultAccessRefused},
      {std::errc::read_only_file_system, kFaultAccessRefused},
      {std::errc::too_many_files_open, kFaultTooManyFiles},
      {std::errc::too_many_files_open_in_system, kFaultTooManyFiles},
      {std::errc::not_enough_memory, kFaultNoMemory},
      {std::errc::io_error, kFaultDeviceError},
      {std::errc::no_such_device, kFaultDeviceUnavailable},
      {std::errc::no_such_device_or_address, kFaultDeviceUnavailable},
      {std::errc::is_a_directory, kFaultBadFileName},
      {std::errc::file_exists, kFaultBadFileName},  // a file where a folder should be
      {std::errc::filename_too_long, kFaultBadFileName},
      {std::errc::invalid_argument, kFaultBadFileName},
      {std::errc::too_many_symbolic_link_levels, kFaultBadFileName},
  };
#ifdef EDQUOT
  if (error.category() == std::generic_category() && error.value() == EDQUOT) return kFaultDiskFull;
#endif
  const auto row = std::ranges::find_if(
      kRows, [&error](const Row& candidate) { return error == candidate.Error; });
  return row == std::end(kRows) ? otherwise : row->Number;
}

Outcome<std::string> ReadFile(const fs::path& path) {
  const auto fault = [&path](int number, std::string_view reason) {
    return FileFault(number, "ReadFile", path, reason);
  };
  std::error_code failed;
  const FileFacts facts = FactsOf(path, failed);
  const fs::file_type type = facts.Status.type();
  if (type == fs::file_type::not_found) return fault(kFaultFileNotFound, "not found");
  if (failed) return fault(FaultNumber(failed), failed.message());
  if (type != fs::file_type::regular) return fault(kFaultBadFileName, "not an ordinary file");
  const std::uintmax_t size = facts.Size;
  if (size > kLargestFile) return fault(kFaultFormat, "larger than any sounding");

  std::FILE* file = OpenFile(path, "rb");
  if (file == nullptr) {
    const std::error_code reason = LastError();
    return fault(FaultNumber(reason), reason.message());
  }
  std::string bytes;
  bytes.reserve(static_cast<std::size_t>(size));
  std::array<char, 65536> block;  // not emptied: it is long
  while (const std::size_t got = std::fread(block.data(), 1, block.size(), file)) {
    bytes.append(block.data(), got);
  }
  const bool broken = std::ferror(file) != 0;
  const std::error_code reason = LastError();
  std::fclose(file);
  if (broken) return fault(FaultNumber(reason), reason.message());
  if (bytes.size() < size) return fault(kFaultEndOfFile, "became shorter while it was read");
  return bytes;
}

AtomicFile::AtomicFile(fs::path path, FileOps& ops, Links links)
    : path_(std::move(path)), ops_(ops) {
  std::error_code failed;
  if (links == Links::Replace || OwnFactsOf(path_, failed).Status.type() != fs::file_type::symlink)
    return;
  const fs::path target = fs::weakly_canonical(path_, failed);
  if (!failed) path_ = target;
}

AtomicFile::~AtomicFile() {
  Discard();
}

std::optional<Fault> AtomicFile::Failed(int number, std::string_view reason) {
  Discard();
  failed_ = FileFault(number, "AtomicFile", path_, reason);
  return failed_;
}

std::optional<Fault> AtomicFile::Open() {
  if (failed_ || file_ != nullptr) return failed_;
  if (path_.filename().empty()) return Failed(kFaultBadFileName, "no file name");
  std::error_code failed;
  const fs::file_status old = OwnFactsOf(path_, failed).Status;
  const bool isFile = old.type() == fs::file_type::regular;
  if (Exists(old.type()) && !isFile && old.type() != fs::file_type::symlink) {
    return Failed(kFaultBadFileName, "not an ordinary file");
  }
  constexpr fs::perms kWritable =
      fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
  if (isFile && (old.permissions() & kWritable) == fs::perms::none) {
    return Failed(kFaultAccessRefused, "read-only");
  }
  file_ = OpenTemporary();
  if (file_ == nullptr && errno == EEXIST) {
    return Failed(kFaultTooManyFiles,
                  std::to_string(kMostTemporaries) + " unfinished copies of it stand beside it");
  }
  if (file_ == nullptr) {
    const std::error_code reason = LastError();
    return Failed(FaultNumber(reason), reason.message());
  }
  if (isFile) GivePermissions(temporary_, old.permissions());
  return std::nullopt;
}

// Under a name that no other save of the same file uses at the same time; null with errno set.
std::FILE* AtomicFile::OpenTemporary() {
  const auto named = [this](int number) {
    fs::path name = path_;
    return name += std::string(kTemporaryMark) + std::to_string(number);
  };
  for (int i = 1; i <= kMostTemporaries; ++i) {
    const fs::path name = named(i);
    std::FILE* file = OpenFile(name, "wbx");
    if (file == nullptr && errno == EEXIST && i == 1) {
      for (int old = 1; old <= kMostTemporaries; ++old) RemoveIfLeft(named(old));
      file = OpenFile(name, "wbx");
    }
    if (file != nullptr) {
      LockWhileOpen(file);
      temporary_ = name;
      return file;
    }
    if (errno != EEXIST) return nullptr;
  }
  return nullptr;
}

void AtomicFile::Discard() {
  if (file_ != nullptr) std::fclose(file_);
  file_ = nullptr;
  if (!temporary_.empty()) Remove(temporary_);
  temporary_.clear();
}

std::optional<Fault> AtomicFile::Write(std::string_view bytes) {
  assert(!isSettled_);
  if (std::optional<Fault> fault = Open()) return fault;
  if (const std::error_code failed = ops_.Write(file_, bytes)) {
    return Failed(FaultNumber(failed), failed.message());
  }
  return std::nullopt;
}

std::optional<Fault> AtomicFile::Settle() {
  if (isSettled_) return failed_;
  if (std::optional<Fault> fault = Open()) return fault;
  std::error_code failed = ops_.Flush(file_);
  if (std::fclose(std::exchange(file_, nullptr)) != 0 && !failed) failed = LastError();
  if (failed) return Failed(FaultNumber(failed), failed.message());
  isSettled_ = true;
  return std::nullopt;
}

std::optional<Fault> AtomicFile::Commit() {
  if (std::optional<Fault> fault = Settle()) return fault;
  if (const std::error_code failed = ops_.Rename(temporary_, path_)) {
    return Failed(FaultNumber(failed), failed.message());
  }
  temporary_.clear();
  return std::nullopt;
}

std::optional<Fault> SaveFile(const fs::path& path, std::string_view bytes, FileOps& ops,
                              Links links) {
  AtomicFile file(path, ops, links);
  if (std::optional<Fault> fault = file.Write(bytes)) return fault;
  return file.Commit();
}

void RemoveLeftovers(const fs::path& folder) {
  for (const FolderEntry& entry : EntriesOf(folder)) {
    if (IsTemporaryName(entry.Path)) RemoveIfLeft(entry.Path);
  }
}

}  // namespace vexa
