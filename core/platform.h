// The few things that each system does its own way: platform_posix.cpp and platform_windows.cpp
// are the only files with system calls.
#pragma once

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace vexa {

/// What the system tells of what lies at a path.
struct FileFacts {
  std::filesystem::file_status Status{std::filesystem::file_type::none};
  std::uintmax_t Size = 0;  // bytes of an ordinary file
  std::filesystem::file_time_type Written{};
};

/// One thing in a folder: its path, the folder's as it was given with its name behind, and what it
/// is itself; a link is a link, whatever it leads to.
struct FolderEntry {
  std::filesystem::path Path{};
  std::filesystem::file_type Type{};
};

// All that follow take paths of any length, also where the system takes long ones only in a form of
// their own. The standard library of such systems does not, so that what asks for files asks here.

/// Opens a file by a path that may hold any character; null on failure with errno set.
std::FILE* OpenFile(const std::filesystem::path& path, const char* mode);

/// Of a file, a folder, or what a link leads to. Where nothing is there the status says so and
/// `failed` is set, as by std::filesystem::status.
FileFacts FactsOf(const std::filesystem::path& path, std::error_code& failed);

/// The same of a link itself.
FileFacts OwnFactsOf(const std::filesystem::path& path, std::error_code& failed);

/// Whether two paths, both there, lead to one file or folder.
bool AreOne(const std::filesystem::path& a, const std::filesystem::path& b);

/// What lies in a folder, in no order; nothing where it cannot be read.
std::vector<FolderEntry> EntriesOf(const std::filesystem::path& folder);

/// Makes a folder and those in which it lies, as far as they are not there.
std::error_code MakeFolders(const std::filesystem::path& folder);

/// Removes a file, a link or an empty folder; no error when nothing is there.
std::error_code Remove(const std::filesystem::path& path);

/// Gives a file what another may be used for; no more than an attempt.
void GivePermissions(const std::filesystem::path& path, std::filesystem::perms allowed);

/// Gives a file another file's name in one step, also while others read that file. What holds it
/// for a moment only, a scanner or an indexer, is waited for; who holds it longer is an error.
std::error_code RenameOver(const std::filesystem::path& from, const std::filesystem::path& to);

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

/// The day that the clock on the wall shows at a moment, in the zone in which the program runs;
/// none for a moment that the system cannot tell.
std::optional<std::chrono::sys_days> LocalDay(std::time_t at);

/// The words of the command line behind the program's name, in UTF-8 and with patterns such as
/// *.RAW as the files that they match, where the system leaves that to programs. Words that are no
/// text stay as they are.
std::vector<std::string> ProgramWords(int argc, char** argv);

/// A variable of the environment in UTF-8; empty when unset or empty.
std::optional<std::string> EnvironmentText(const char* name);

/// Lets the program keep the memory it frees instead of handing it back at once: each analysis and
/// each redraw needs the same arrays again, and fresh pages cost more than the arithmetic in them.
/// To be called once, before work begins; without effect where the system keeps it anyway.
///
/// largest  MiB of a block that is kept; larger ones go back
void KeepFreedMemory(int largest = 32);

/// From now on an error that nobody has dealt with, as when memory runs out, ends the program with
/// a sentence on the error output and the exit code 1. To be called once, before work begins.
///
/// program  its name, "vexa"; must outlive the program
void EndInWords(const char* program);

/// From now on a wish of the system that the program end, at logout or shutdown, makes the handle
/// that is given readable instead of ending it. -1 where there is no such handle.
int AwaitEnding();

/// Has what is printed go out byte by byte, the ends of lines too, on every system alike, and a
/// console, that of the caller where the program has none, show it as UTF-8. To be called once,
/// before anything is printed.
void PrintBytesAsTheyAre();

/// Has a write that goes past the size a file may have fail like one to a full disk, where the
/// system would end the program. To be called once, before work begins.
void LetLargeWritesFail();

}  // namespace vexa
