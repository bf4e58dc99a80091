#include "core/files.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

#include "core/platform.h"

namespace vexa {
namespace {

namespace fs = std::filesystem;

// The longest soundings run to some ten thousand levels of a hundred bytes.
constexpr std::uintmax_t kLargestFile = std::uintmax_t{256} * 1024 * 1024;

// The reporter's number for what the system says; what it does not say in so many words is
// `otherwise`.
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
      {std::errc::permission_denied, kFaultPathAccess},
      {std::errc::operation_not_permitted, kFaultPathAccess},
      {std::errc::read_only_file_system, kFaultPathAccess},
      {std::errc::is_a_directory, kFaultPathAccess},
      {std::errc::no_such_device, kFaultDeviceUnavailable},
      {std::errc::no_such_device_or_address, kFaultDeviceUnavailable},
      {std::errc::filename_too_long, kFaultBadFileName},
      {std::errc::invalid_argument, kFaultBadFileName},
  };
  const auto row = std::ranges::find_if(
      kRows, [&error](const Row& candidate) { return error == candidate.Error; });
  return row == std::end(kRows) ? otherwise : row->Number;
}

std::error_code LastError() {
  return std::error_code(errno, std::generic_category());
}

Fault FileFault(int number, std::string_view procedure, const fs::path& path,
                std::string_view reason) {
  return Fault{number, std::string(procedure), TextFromPath(path) + ": " + std::string(reason),
               TextFromPath(path.filename())};
}

class SystemOps final : public FileOps {};

}  // namespace

std::error_code FileOps::Write(std::FILE* file, std::string_view bytes) {
  if (std::fwrite(bytes.data(), 1, bytes.size(), file) != bytes.size()) return LastError();
  return {};
}

std::error_code FileOps::Flush(std::FILE* file) {
  return FlushToDisk(file);
}

std::error_code FileOps::Rename(const fs::path& from, const fs::path& to) {
  std::error_code failed;
  fs::rename(from, to, failed);
  if (!failed) SyncFolder(to.parent_path());
  return failed;
}

FileOps& SystemFileOps() {
  static SystemOps ops;
  return ops;
}

fs::path PathFromText(std::string_view utf8) {
  std::u8string text(utf8.begin(), utf8.end());
  std::ranges::replace(text, u8'\\', static_cast<char8_t>(fs::path::preferred_separator));
  return fs::path(text);
}

std::string TextFromPath(const fs::path& path) {
  const std::u8string text = path.u8string();
  return std::string(text.begin(), text.end());
}

std::optional<FileStamp> StampOf(const std::filesystem::path& path) {
  std::error_code failed;
  const std::filesystem::file_time_type written = std::filesystem::last_write_time(path, failed);
  if (failed) return std::nullopt;
  const std::uintmax_t size = std::filesystem::file_size(path, failed);
  if (failed) return std::nullopt;
  return FileStamp{written, size};
}

Outcome<std::string> ReadFile(const fs::path& path) {
  const auto fault = [&path](int number, std::string_view reason) {
    return FileFault(number, "ReadFile", path, reason);
  };
  std::error_code failed;
  const fs::file_status status = fs::status(path, failed);
  if (status.type() == fs::file_type::not_found) return fault(kFaultFileNotFound, "not found");
  if (failed) return fault(FaultNumber(failed, kFaultPathAccess), failed.message());
  if (status.type() != fs::file_type::regular) {
    return fault(kFaultPathAccess, "not an ordinary file");
  }
  const std::uintmax_t size = fs::file_size(path, failed);
  if (failed) return fault(kFaultPathAccess, failed.message());
  if (size > kLargestFile) return fault(kFaultFormat, "larger than any sounding");

  std::FILE* file = OpenFile(path, "rb");
  if (file == nullptr) {
    const std::error_code reason = LastError();
    return fault(FaultNumber(reason, kFaultPathAccess), reason.message());
  }
  std::string bytes;
  bytes.reserve(static_cast<std::size_t>(size));
  std::array<char, 65536> block{};
  while (const std::size_t got = std::fread(block.data(), 1, block.size(), file)) {
    bytes.append(block.data(), got);
  }
  const bool broken = std::ferror(file) != 0;
  const std::error_code reason = LastError();
  std::fclose(file);
  if (broken) return fault(FaultNumber(reason, kFaultPathAccess), reason.message());
  if (bytes.size() < size) return fault(kFaultEndOfFile, "became shorter while it was read");
  return bytes;
}

AtomicFile::AtomicFile(fs::path path, FileOps& ops) : path_(std::move(path)), ops_(ops) {
  // What a link points to is replaced, not the link.
  std::error_code failed;
  if (fs::is_symlink(path_, failed)) {
    const fs::path target = fs::weakly_canonical(path_, failed);
    if (!failed) path_ = target;
  }
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
  const fs::file_status old = fs::status(path_, failed);
  const bool replaces = fs::exists(old);
  if (replaces && old.type() != fs::file_type::regular) {
    return Failed(kFaultPathAccess, "not an ordinary file");
  }
  constexpr fs::perms kWritable =
      fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
  if (replaces && (old.permissions() & kWritable) == fs::perms::none) {
    return Failed(kFaultPathAccess, "read-only");
  }

  // A name that no other save of the same file uses at the same time.
  constexpr int kMostNames = 100;
  fs::path name;
  for (int i = 1; i <= kMostNames && file_ == nullptr; ++i) {
    name = path_;
    name += ".tmp" + std::to_string(i);
    file_ = OpenFile(name, "wbx");
    if (file_ == nullptr && errno != EEXIST) break;
  }
  if (file_ == nullptr) {
    const std::error_code reason = LastError();
    return Failed(FaultNumber(reason, kFaultPathAccess), reason.message());
  }
  temporary_ = name;
  if (replaces) fs::permissions(temporary_, old.permissions(), failed);
  return std::nullopt;
}

void AtomicFile::Discard() {
  if (file_ != nullptr) std::fclose(file_);
  file_ = nullptr;
  std::error_code ignored;
  if (!temporary_.empty()) fs::remove(temporary_, ignored);
  temporary_.clear();
}

std::optional<Fault> AtomicFile::Write(std::string_view bytes) {
  if (std::optional<Fault> fault = Open()) return fault;
  if (const std::error_code failed = ops_.Write(file_, bytes)) {
    return Failed(FaultNumber(failed, kFaultDiskFull), failed.message());
  }
  return std::nullopt;
}

std::optional<Fault> AtomicFile::Commit() {
  if (std::optional<Fault> fault = Open()) return fault;
  std::error_code failed = ops_.Flush(file_);
  if (std::fclose(std::exchange(file_, nullptr)) != 0 && !failed) failed = LastError();
  if (!failed) failed = ops_.Rename(temporary_, path_);
  if (failed) return Failed(FaultNumber(failed, kFaultDiskFull), failed.message());
  temporary_.clear();
  return std::nullopt;
}

std::optional<Fault> SaveFile(const fs::path& path, std::string_view bytes, FileOps& ops) {
  AtomicFile file(path, ops);
  if (std::optional<Fault> fault = file.Write(bytes)) return fault;
  return file.Commit();
}

}  // namespace vexa
