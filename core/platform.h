// The few things that each system does its own way; the only file with system calls.
#pragma once

#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

namespace vexa {

/// Opens a file by a path that may hold any character; null on failure with errno set.
std::FILE* OpenFile(const std::filesystem::path& path, const char* mode);

/// Hands a stream's buffer to the system and the system's to the disk.
std::error_code FlushToDisk(std::FILE* file);

/// Hands a folder's entries to the disk, so that a rename in it outlives a power cut; no more than
/// an attempt.
void SyncFolder(const std::filesystem::path& folder);

/// Locks a file that is open for writing, until it is closed or the process ends, however it ends;
/// no more than an attempt.
void LockWhileOpen(std::FILE* file);

/// True while a process has it locked so, and where the system cannot tell.
bool IsLocked(const std::filesystem::path& path);

/// A file that is there while somebody holds it.
class FileHold {
 public:
  FileHold() = default;
  virtual ~FileHold() = default;
  FileHold(const FileHold&) = delete;
  FileHold& operator=(const FileHold&) = delete;
};

/// Holds a file until the hold is destroyed or the process ends, however it ends. Null when another
/// process, or another hold of this one, has it. Where the system cannot tell, the file is held.
std::unique_ptr<FileHold> HoldFile(const std::filesystem::path& path);

/// A file's bytes mapped into memory: several processes share them, and only what is touched is
/// read.
class MappedFile {
 public:
  /// Without bytes where the file is empty or cannot be read.
  explicit MappedFile(const std::filesystem::path& path);
  MappedFile(MappedFile&& other) noexcept : bytes_(std::exchange(other.bytes_, {})) {}
  MappedFile& operator=(MappedFile&&) = delete;
  ~MappedFile();
  std::string_view Bytes() const { return bytes_; }

 private:
  std::string_view bytes_{};
};

/// The user's data folder: XDG_DATA_HOME or ~/.local/share, LOCALAPPDATA on Windows.
std::filesystem::path UserDataFolder();

/// The folder of the running program.
std::filesystem::path ProgramFolder();

/// A variable of the environment in UTF-8; empty when unset or empty.
std::optional<std::string> EnvironmentText(const char* name);

/// Lets the program keep the memory it frees instead of handing it back at once: each analysis and
/// each redraw needs the same arrays again, and fresh pages cost more than the arithmetic in them.
/// To be called once, before work begins; without effect where the system keeps it anyway.
void KeepFreedMemory();

/// From now on an error that nobody has dealt with, as when memory runs out, ends the program with
/// a sentence on the error output and the exit code 1. To be called once, before work begins.
///
/// program  its name, "vexa"; must outlive the program
void EndInWords(const char* program);

/// From now on a wish of the system that the program end, at logout or shutdown, makes the handle
/// that is given readable instead of ending it. -1 where there is no such handle.
int AwaitEnding();

/// Has what is printed go out byte by byte, the ends of lines too, on every system alike. To be
/// called once, before anything is printed.
void PrintBytesAsTheyAre();

/// Has a write that goes past the size a file may have fail like one to a full disk, where the
/// system would end the program. To be called once, before work begins.
void LetLargeWritesFail();

}  // namespace vexa
