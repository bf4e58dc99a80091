// The catalogue of soundings: a database with a row for each sounding, what is kept of it, and for
// each file what of it has been entered. Everything is entered in transactions, so a catalogue is
// whole whenever a process ends.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "archive/columns.h"
#include "archive/database.h"
#include "core/fault.h"

namespace vexa::archive {

/// What a catalogue knows of a file.
struct FileState {
  std::int64_t Id = 0;
  std::string Path{};
  std::int64_t Size = 0;
  std::int64_t Written = 0;  // ns of the file system's clock
  std::int64_t Stamp = 0;    // hash of its bytes
  std::string Settings{};    // fingerprint
  int Done = 0;              // soundings entered or refused
  bool IsWhole = false;      // there are no more
  std::string Trouble{};     // why the rest could not be read
};

struct CatalogueCounts {
  std::int64_t Files = 0;
  std::int64_t Soundings = 0;
  std::int64_t Refused = 0;   // soundings
  std::int64_t Troubled = 0;  // files
};

class Catalogue {
 public:
  /// Opens a catalogue, or makes one where the opening says so. A catalogue of an older program
  /// gets the columns that it lacks when it may be written. Faults: see the messages of the
  /// database; 1209 for a database of another kind and for a catalogue of a newer program.
  static Outcome<Catalogue> Open(const std::filesystem::path& path, const Opening& opening = {});

  // What follows throws StoreError.

  Database& Store() { return database_; }
  std::optional<FileState> Find(std::string_view path);
  /// Begins a file, anew where it was there; gives its state with the id.
  FileState Begin(FileState file);
  void Update(const FileState& file);
  void Enter(std::int64_t file, const Entered& entered);
  void Refuse(std::int64_t file, int sounding, std::string_view reason);
  void NameSettings(std::string_view fingerprint, std::string_view text);
  /// A number that is another one whenever something was entered.
  std::int64_t Changes();
  void CountChange();
  CatalogueCounts Counts();
  /// Whether it has this column: one of an older program may lack those of new indices.
  bool Has(const Column& column) const;

 private:
  explicit Catalogue(Database database) : database_(std::move(database)) {}
  void Make();
  void Adjust(bool mayWrite);

  Database database_;
  std::vector<bool> has_{};  // by column of the table
  std::string insert_{};
};

/// What `archive check` finds wrong; a sentence for each.
///
/// files  whether the files are compared with what was entered of them
Outcome<std::vector<std::string>> CheckCatalogue(Catalogue& catalogue, bool files);

/// Of a file as it is now: size, time and, where asked for, the hash of its bytes. None where it is
/// no file that can be read.
std::optional<FileState> StateOf(const std::filesystem::path& path, bool withStamp);

}  // namespace vexa::archive
