// Files read whole and written atomically: a new file is complete under a temporary name in the
// same folder, flushed to the disk and then renamed over the old one, so that a fault at any point
// leaves the old file as it was.
#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

#include "core/fault.h"

namespace vexa {

/// What writing a file asks of the system; tests put one in that fails at the n-th call.
class FileOps {
 public:
  virtual ~FileOps() = default;
  virtual std::error_code Write(std::FILE* file, std::string_view bytes);
  virtual std::error_code Flush(std::FILE* file);  // down to the disk
  virtual std::error_code Rename(const std::filesystem::path& from,
                                 const std::filesystem::path& to);
};

FileOps& SystemFileOps();

/// A path from UTF-8 text; backslashes of old settings become the system's separators.
std::filesystem::path PathFromText(std::string_view utf8);
/// UTF-8 text of a path, for messages and files.
std::string TextFromPath(const std::filesystem::path& path);

/// By which a file that another program has written is known from what it was.
struct FileStamp {
  std::filesystem::file_time_type Written{};
  std::uintmax_t Size = 0;
  bool operator==(const FileStamp&) const = default;
};

/// Of a file as it is now; empty when there is none.
std::optional<FileStamp> StampOf(const std::filesystem::path& path);

/// A file's bytes. Faults: 53 not found, 75 not readable or no ordinary file, 62 when it shrinks
/// while read, 1209 when it is larger than any sounding.
Outcome<std::string> ReadFile(const std::filesystem::path& path);

/// A file in the making. Nothing stands under its own name before Commit has succeeded; without
/// it the destructor removes the temporary file. Faults: 61 disk full, 75 access, 76 no such path.
class AtomicFile {
 public:
  explicit AtomicFile(std::filesystem::path path, FileOps& ops = SystemFileOps());
  ~AtomicFile();
  AtomicFile(const AtomicFile&) = delete;
  AtomicFile& operator=(const AtomicFile&) = delete;

  [[nodiscard]] std::optional<Fault> Write(std::string_view bytes);
  [[nodiscard]] std::optional<Fault> Commit();

 private:
  std::optional<Fault> Open();
  std::optional<Fault> Failed(int number, std::string_view reason);
  void Discard();

  std::filesystem::path path_;
  std::filesystem::path temporary_{};
  FileOps& ops_;
  std::FILE* file_ = nullptr;
  std::optional<Fault> failed_{};  // the first fault: nothing is committed after it
};

/// Writes a whole file atomically.
[[nodiscard]] std::optional<Fault> SaveFile(const std::filesystem::path& path,
                                            std::string_view bytes, FileOps& ops = SystemFileOps());

}  // namespace vexa
