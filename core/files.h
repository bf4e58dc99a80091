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

/// A path from UTF-8 text, just as it stands.
std::filesystem::path PathFromText(std::string_view utf8);
/// A path from a settings file, which may come from another system: backslashes become separators
/// unless something of the very name is there.
std::filesystem::path PathFromSetting(std::string_view utf8);
/// UTF-8 text of a path, for messages and files.
std::string TextFromPath(const std::filesystem::path& path);

/// Whether something is there, an ordinary file, a folder: at the path or where a link leads.
bool IsThere(const std::filesystem::path& path);
bool IsOrdinaryFile(const std::filesystem::path& path);
bool IsFolder(const std::filesystem::path& path);

/// By which a file that another program has written is known from what it was.
struct FileStamp {
  std::filesystem::file_time_type Written{};
  std::uintmax_t Size = 0;
  bool operator==(const FileStamp&) const = default;
};

/// Of a file as it is now; empty when there is none.
std::optional<FileStamp> StampOf(const std::filesystem::path& path);

/// The reporter's number for what the system says: 52 a name that cannot be a file's, 57 device
/// error, 61 disk full, 67 too many files, 70 access refused, 76 no such path; `otherwise` for what
/// it does not say in so many words.
int FaultNumber(const std::error_code& error, int otherwise = kFaultDeviceError);

/// A file's bytes. Faults: 53 not found, 52 no ordinary file, 62 when it shrinks while read, 1209
/// when it is larger than any sounding; else as FaultNumber.
Outcome<std::string> ReadFile(const std::filesystem::path& path);

/// What a link becomes whose place is written to: the user's own are followed, so that what they
/// point to is replaced; files that the program makes by itself take the link's place.
enum class Links { Follow, Replace };

/// A file in the making. Nothing stands under its own name before Commit has succeeded; without
/// it the destructor removes the temporary file, NAME.tmp1. What a process that was killed has left
/// under such a name is removed by the next. Faults as FaultNumber.
class AtomicFile {
 public:
  explicit AtomicFile(std::filesystem::path path, FileOps& ops = SystemFileOps(),
                      Links links = Links::Follow);
  ~AtomicFile();
  AtomicFile(const AtomicFile&) = delete;
  AtomicFile& operator=(const AtomicFile&) = delete;

  [[nodiscard]] std::optional<Fault> Write(std::string_view bytes);
  /// Has all bytes on the disk, so that what is left to do needs no more room. To be called before
  /// the first Commit where several files are to appear together.
  [[nodiscard]] std::optional<Fault> Settle();
  [[nodiscard]] std::optional<Fault> Commit();

 private:
  std::optional<Fault> Open();
  std::FILE* OpenTemporary();
  std::optional<Fault> Failed(int number, std::string_view reason);
  void Discard();

  std::filesystem::path path_;
  std::filesystem::path temporary_{};
  FileOps& ops_;
  std::FILE* file_ = nullptr;
  bool isSettled_ = false;         // the temporary file is whole
  std::optional<Fault> failed_{};  // the first fault: nothing is committed after it
};

/// Writes a whole file atomically.
[[nodiscard]] std::optional<Fault> SaveFile(const std::filesystem::path& path,
                                            std::string_view bytes, FileOps& ops = SystemFileOps(),
                                            Links links = Links::Follow);

/// Removes what killed processes have left of files in the making in a folder.
void RemoveLeftovers(const std::filesystem::path& folder);

}  // namespace vexa
